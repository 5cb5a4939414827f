// The page: hands files to the worker, shows what comes back, saves what is asked for.
import { listenForFiles } from "./intake.js";
import { followWidth, showReport, showTrans } from "./report-frame.js";

const byId = (id) => document.getElementById(id);
const worker = startWorker();

/** By way of a blob, the worker is bound by the policy of this page; by its address it would not be. */
function startWorker() {
  const code = `import ${JSON.stringify(new URL("worker.js", import.meta.url))};`;
  return new Worker(URL.createObjectURL(new Blob([code], { type: "text/javascript" })), { type: "module" });
}

let newest = 0; // number of the last request to predict
let files = [];
let shown = null; // the last result: its request, files and summary

// --- Words ----------------------------------------------------------------------------------------

const counted = (count, one, many) => `${count} ${count === 1 ? one : many}`;

/**
 * Names and messages as they may be shown, with the same signs as in the library's reports (`shown` in
 * kit/util/text.cpp): no control character, and none that turns the direction of writing.
 */
function visible(text) {
  return text.replace(/[\u0000-\u001f\u007f-\u009f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]/g, "?");
}

function say(text) {
  byId("status").textContent = visible(text);
}

function sayFailure(text) {
  byId("progress").hidden = true;
  say(text);
}

/** "a.str: 5 prolines in 1 chain, 1 cis, 4 trans." */
function outcomeInWords({ calls, proteins, errors }) {
  const count = calls.cis + calls.trans + calls.undecided + calls.none;
  const parts = [`${counted(count, "proline", "prolines")} in ${counted(proteins.length, "chain", "chains")}`,
                 `${calls.cis} cis`, `${calls.trans} trans`];
  if (calls.undecided > 0) parts.push(`${calls.undecided} undecided`);
  if (calls.none > 0) parts.push(`${calls.none} without a prediction`);
  const found = `${nameOfResult()}: ${parts.join(", ")}.`;
  if (errors.length === 0) return found;
  const failed = `${counted(errors.length, "file", "files")} could not be predicted.`;
  return proteins.length === 0 ? failed : `${found} ${failed}`;
}

/** A list of texts; whatever is in them, it is shown as text. */
function fillList(list, texts) {
  list.replaceChildren(...texts.map((text) => {
    const item = document.createElement("li");
    item.textContent = visible(text);
    return item;
  }));
}

function fillSelect(select, options) {
  const before = select.value;
  select.replaceChildren(...options.map(([value, text]) => new Option(visible(text), value)));
  if (options.some(([value]) => value === before)) select.value = before;
}

// --- Predicting -----------------------------------------------------------------------------------

// An empty value stands for the library's own choice, which no name of a file can take the place of.
const OWN_CHOICE = "";

function choices() {
  const named = (id) => (byId(id).value === OWN_CHOICE ? [] : [byId(id).value.slice(1)]);
  return { chains: named("chain"), lists: named("list"), asReferenced: byId("as-referenced").checked };
}

function offerChoices({ chains, lists }) {
  const named = (names) => names.map((name) => [`=${name}`, name]);
  fillSelect(byId("chain"), [[OWN_CHOICE, "all"], ...named(chains)]);
  fillSelect(byId("list"), [[OWN_CHOICE, "with most shifts"], ["=all", "all"], ...named(lists)]);
  byId("chain-choice").hidden = chains.length < 2;
  byId("list-choice").hidden = lists.length < 2;
}

const wantsTrans = () => byId("prolines").value === "all";

function predict(isNew) {
  say(`Reading ${files.length === 1 ? files[0].name : `${files.length} files`} …`);
  worker.postMessage({ type: "predict", id: ++newest, files, choices: choices(), isNew });
}

function take(given) {
  files = given;
  offerChoices({ chains: [], lists: [] });
  predict(true);
}

function showProgress({ done, total, name }) {
  if (total === 1) return;
  const progress = byId("progress");
  progress.hidden = false;
  progress.max = total;
  progress.value = done;
  progress.textContent = `${done} of ${total}`;
  progress.title = visible(name);
}

function nameOfResult() {
  return files.length === 1 ? files[0].name : counted(files.length, "file", "files");
}

function nameOfChain({ file, chain, list }, proteins) {
  const several = proteins.filter((other) => other.file === file && other.chain === chain).length > 1;
  return [file, chain === null ? "" : `chain ${chain}`, several ? list : ""].filter((part) => part !== "").join(", ");
}

function showResult({ id, html, summary }) {
  const isFirst = shown === null;
  shown = { id, files, proteins: summary.proteins };
  byId("progress").hidden = true;
  byId("result").hidden = false;
  document.body.classList.add("has-result");
  byId("result-title").textContent = visible(nameOfResult());
  fillList(byId("errors"), summary.errors);
  byId("errors").hidden = summary.errors.length === 0;
  fillList(byId("notes").querySelector("ul"), summary.notes);
  byId("notes").querySelector("summary").textContent = counted(summary.notes.length, "note", "notes") + " on reading";
  byId("notes").hidden = summary.notes.length === 0;
  fillSelect(byId("table"), summary.proteins.map((protein, index) => [index, nameOfChain(protein, summary.proteins)]));
  byId("table-choice").hidden = summary.proteins.length < 2;
  document.querySelector("[data-save=tab]").hidden = summary.proteins.length === 0;
  showReport(byId("report"), new TextDecoder().decode(html), wantsTrans());
  say(outcomeInWords(summary));
  if (isFirst) byId("result").scrollIntoView({ block: "nearest" });
}

// --- Saving ---------------------------------------------------------------------------------------

const TYPES = { html: "text/html", csv: "text/csv", json: "application/json", tab: "text/plain" };

function stem(name) {
  return name.replace(/\.gz$/i, "").replace(/\.[^.]*$/, "") || name;
}

function fileName(what, index) {
  if (what !== "tab") return `${shown.files.length === 1 ? stem(shown.files[0].name) : "zorvela"}.${what}`;
  const { file, chain } = shown.proteins[index];
  return `${stem(file)}${chain === null ? "" : `_${chain}`}.tab`;
}

function saveBytes({ what, index, bytes }) {
  const link = document.createElement("a");
  const url = URL.createObjectURL(new Blob([bytes], { type: TYPES[what] }));
  link.href = url;
  link.download = visible(fileName(what, index));
  link.click();
  setTimeout(() => URL.revokeObjectURL(url), 60000);
  say(`Saved ${link.download}.`);
}

for (const button of document.querySelectorAll("[data-save]"))
  button.addEventListener("click", () => {
    worker.postMessage({ type: "save", id: shown.id, what: button.dataset.save, index: Number(byId("table").value) });
  });

// --- Events ---------------------------------------------------------------------------------------

worker.onmessage = ({ data }) => {
  if (data.type === "ready") {
    byId("version").textContent = `${data.about.version}, reference tables ${data.about.tables}`;
    return;
  }
  // What is shown can be saved while newer files are predicted.
  if (data.type === "saved") {
    if (data.id === shown.id) saveBytes(data);
    return;
  }
  if (data.id !== undefined && data.id !== newest) return;
  if (data.type === "progress") showProgress(data);
  else if (data.type === "result") showResult(data);
  else if (data.type === "contents") offerChoices(data.contents);
  else sayFailure(`This went wrong: ${data.message}. Load the page again.`);
};
worker.onerror = () => sayFailure("The calculation cannot be started in this browser; a newer one can.");

for (const id of ["chain", "list", "as-referenced"]) byId(id).addEventListener("change", () => predict(false));
byId("prolines").addEventListener("change", () => showTrans(byId("report"), wantsTrans()));
byId("choices").addEventListener("submit", (event) => event.preventDefault());

listenForFiles(take, sayFailure);
followWidth(byId("report"));

// Keeps the page's files, so that it opens without a network. Only pages of the web can have that.
if ("serviceWorker" in navigator) {
  navigator.serviceWorker.register("service-worker.js");
  navigator.serviceWorker.ready.then(() => {
    byId("offline").textContent = "It works without a network from now on.";
  });
}
