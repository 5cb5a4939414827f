// Takes files that are dropped, chosen or pasted, or the example, as [{name, blob}].

const EXAMPLE = "nuclease.str";

/** Numbers files of the same name, so that all names differ. */
export function withOwnNames(files, numbered = (name, count) => `${name} (${count})`) {
  const seen = new Map();
  return files.map((file) => {
    const count = (seen.get(file.name) ?? 0) + 1;
    seen.set(file.name, count);
    return count === 1 ? file : { ...file, name: numbered(file.name, count) };
  });
}

const fromFileList = (list) => [...list].map((file) => ({ name: file.name, blob: file }));

/** Calls `take(files)` when the user gives files or text, and `fail(text)` if there is nothing in it. */
export function listenForFiles(take, fail) {
  const drop = document.getElementById("drop");
  const chooser = document.getElementById("files");
  const pasteButton = document.getElementById("paste");
  const pasting = document.getElementById("pasting");
  const pasted = document.getElementById("pasted");

  const takeAll = (files) => {
    if (files.length > 0) take(withOwnNames(files));
    else fail("No file was given: drop or choose a file with chemical shifts.");
  };
  const takeText = (text) => {
    if (text.trim() === "") fail("The text is empty: paste the lines of a shift file.");
    else take([{ name: "pasted text", blob: new Blob([text]) }]);
  };

  // The whole page takes drops: beside the box the browser would open the file and lose the page.
  addEventListener("dragover", (event) => {
    event.preventDefault();
    drop.classList.add("over");
  });
  addEventListener("dragleave", (event) => {
    if (event.relatedTarget === null) drop.classList.remove("over");
  });
  addEventListener("drop", (event) => {
    event.preventDefault();
    drop.classList.remove("over");
    const { files } = event.dataTransfer;
    const text = event.dataTransfer.getData("text/plain");
    if (files.length === 0 && text !== "") takeText(text);
    else takeAll(fromFileList(files));
  });

  chooser.addEventListener("change", () => {
    takeAll(fromFileList(chooser.files));
    chooser.value = ""; // so that the same file can be chosen again after a change
  });

  document.getElementById("example").addEventListener("click", async () => {
    try {
      const response = await fetch(EXAMPLE);
      if (!response.ok) throw new Error(response.statusText);
      take([{ name: EXAMPLE, blob: await response.blob() }]);
    } catch {
      fail("The example cannot be loaded: reload the page when there is a network.");
    }
  });

  pasteButton.addEventListener("click", () => {
    pasting.hidden = !pasting.hidden;
    pasteButton.setAttribute("aria-expanded", String(!pasting.hidden));
    if (!pasting.hidden) pasted.focus();
  });
  document.getElementById("predict").addEventListener("click", () => takeText(pasted.value));
  addEventListener("paste", (event) => {
    if (event.target.matches("input, textarea")) return;
    if (event.clipboardData.files.length > 0) takeAll(fromFileList(event.clipboardData.files));
    else takeText(event.clipboardData.getData("text/plain"));
  });
}
