// The page: passes files to the worker, shows the results, and saves files.
import { listenForFiles, withOwnNames } from "./intake.js";
import { printReport, showReport, showTrans, tableText } from "./report-frame.js";
import { zipped } from "./zip.js";

const byId = (id) => document.getElementById(id);
const worker = startWorker();

/** A worker from a blob is bound by the policy of this page; a worker from its address is not. */
function startWorker() {
  const code = `import ${JSON.stringify(new URL("worker.js", import.meta.url))};`;
  return new Worker(URL.createObjectURL(new Blob([code], { type: "text/javascript" })), { type: "module" });
}

let newest = 0; // number of the last request to predict
let given = []; // names of the files that were dropped last
let shown = null; // the last result: its request and summary
let programs = []; // that have restraints

// --- Messages -------------------------------------------------------------------------------------

const counted = (count, one, many) => `${count} ${count === 1 ? one : many}`;

// The library's messages name options of the program; the page has these fields instead.
const FIELDS = {
  "--sequence": 'the field "Sequence of the protein"',
  "--first-residue": '"Number of the first residue"',
  "--as-referenced": '"Use the shifts without corrections"',
  "--deuterated": '"Sample: deuterated"',
  "--chain-as": '"Chain name in the restraints"',
  "--chain": '"Chain"',
  "--structure": "a structure",
  "--into": "zorvela-kit restrain --into",
  "--for ": "",
};
const OPTIONS = new RegExp(`(^|[ (])(${Object.keys(FIELDS).join("|")})(?: FILE| NAME)?`, "g");

/**
 * Returns a name or message as the page shows it: with its fields, and without control characters and signs that turn
 * the direction of writing, as in the library's reports (`shown` in kit/util/text.cpp).
 */
function visible(text) {
  return text.replace(OPTIONS, (_, before, option) => before + FIELDS[option])
    .replace(/[\u0000-\u001f\u007f-\u009f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]/g, "?");
}

const nameOf = (names) => (names.length === 1 ? names[0] : counted(names.length, "file", "files"));

function say(text) {
  byId("status").textContent = visible(text);
}

function sayFailure(text) {
  byId("working").hidden = true;
  say(text);
}

/** Returns the first line: the answer of the report, and how many files it lacks. */
function outcomeInWords({ names, errors, proteins, leftOut }, answer) {
  const parts = proteins.length === 0 ? [] : [`${nameOf(names)}: ${answer}`];
  if (leftOut > 0) parts.push(`${counted(leftOut, "file does", "files do")} not have the chosen chain or shift list.`);
  if (errors.length > 0) parts.push(`${counted(errors.length, "file", "files")} could not be predicted.`);
  return parts.join(" ");
}

/** Shows texts, never as HTML, in a list that is hidden if there are none. */
function fillList(list, texts) {
  list.hidden = texts.length === 0;
  list.replaceChildren(...texts.map((text) => {
    const item = document.createElement("li");
    item.textContent = visible(text);
    return item;
  }));
}

function fillSelect(select, options) {
  const before = select.value;
  select.replaceChildren(...options.map(([value, text]) => new Option(visible(text), value)));
  if (options.some(([value]) => String(value) === before)) select.value = before;
}

// --- Predicting -----------------------------------------------------------------------------------

// An empty value stands for the library's own choice. It differs from every name in a file.
const OWN_CHOICE = "";

function choices() {
  const named = (id) => (byId(id).value === OWN_CHOICE ? [] : [byId(id).value.slice(1)]);
  const deuterated = { yes: true, no: false }[byId("deuteration").value];
  const first = byId("first-residue").value;
  return { chains: named("chain"), lists: named("list"), asReferenced: byId("as-referenced").checked, deuterated,
           sequence: byId("sequence").value.trim(), firstResidue: first === "" ? undefined : Number(first) };
}

/** Offers the chains and lists in the files, each with the number of files that have it unless all do. */
function offerChoices(contents) {
  const named = (key) => {
    const counts = new Map();
    for (const name of contents.flatMap((file) => [...new Set(file.map((protein) => protein[key]))]))
      if (name !== "") counts.set(name, (counts.get(name) ?? 0) + 1);
    return [...counts].map(([name, count]) =>
      [`=${name}`, count === contents.length ? name : `${name} (in ${count} of ${contents.length} files)`]);
  };
  const chains = named("chain");
  const lists = named("list");
  fillSelect(byId("chain"), [[OWN_CHOICE, "all"], ...chains]);
  fillSelect(byId("list"), [[OWN_CHOICE, "with most shifts"], ["=all", "all"], ...lists]);
  byId("chain-choice").hidden = chains.length < 2;
  byId("list-choice").hidden = lists.length < 2;
}

const wantsTrans = () => byId("prolines").value === "all";

/** Predicts new files, or the same files with other choices. */
function predict(message) {
  say(`Reading ${nameOf(given)} …`);
  worker.postMessage({ ...message, id: ++newest, choices: choices() });
}

function take(files) {
  given = files.map(({ name }) => name);
  predict({ type: "files", files });
}

/** Choices for other files do not apply to new ones. */
function forgetChoices() {
  byId("sequence").value = byId("first-residue").value = "";
  offerChoices([]);
}

/** Structures and sequences alone have no prolines to predict: the shifts may come before or after them. */
function waitForShifts({ names }) {
  sayFailure(`${nameOf(names)}: no shifts yet. Drop the chemical shifts too.`);
}

function showProgress({ done, total }) {
  if (total === 1) return;
  byId("working").hidden = false;
  byId("progress").max = total;
  byId("progress").value = done;
  say(done < total ? `${done} of ${total} files predicted …` : "Writing the report …");
}

function stop() {
  worker.postMessage({ type: "stop", id: ++newest });
  sayFailure("Stopped.");
}

function nameOfChain({ file, chain, list }, proteins) {
  const several = proteins.filter((other) => other.file === file && other.chain === chain).length > 1;
  return [file, chain && `chain ${chain}`, several && list].filter(Boolean).join(", ");
}

/** Offers the files of the chosen protein, and restraints for the programs whose model, if needed, is there. */
function offerFiles({ proteins, structures }) {
  fillSelect(byId("table"), proteins.map((protein, index) => [index, nameOfChain(protein, proteins)]));
  byId("table-choice").hidden = proteins.length < 2;
  document.querySelector("[data-save=tab]").hidden = proteins.length === 0;
  document.querySelector("[data-save=nef]").hidden = !proteins[byId("table").value]?.isNef;
  fillSelect(byId("program"), programs.filter(({ needsModel }) => !needsModel || structures === 1)
    .map(({ name, writes }) => [name, writes]));
  byId("restraints").hidden = proteins.length === 0;
}

async function showResult({ id, html, summary }) {
  const isFirst = shown === null;
  shown = { id, ...summary };
  byId("working").hidden = true;
  byId("result").hidden = false;
  document.body.classList.add("has-result");
  byId("result-title").textContent = visible(nameOf(summary.names));
  fillList(byId("errors"), summary.errors);
  fillList(byId("warnings"), summary.warnings);
  fillList(byId("notes").querySelector("ul"), summary.notes);
  byId("notes").querySelector("summary").textContent = counted(summary.notes.length, "note", "notes") + " about the files";
  byId("notes").hidden = summary.notes.length === 0;
  if (summary.needsSequence) byId("sequence-choice").open = true;
  offerFiles(summary);
  const answer = await showReport(byId("report"), new TextDecoder().decode(html), wantsTrans());
  if (id !== newest) return;
  document.title = visible(byId("report").contentDocument.title);
  say(outcomeInWords(summary, answer));
  if (isFirst) byId("result").scrollIntoView({ block: "nearest" });
}

// --- Saving ---------------------------------------------------------------------------------------

const TYPES = { html: "text/html", csv: "text/csv", json: "application/json", tab: "text/plain" };

function stem(name) {
  return name.replace(/\.gz$/i, "").replace(/\.[^.]*$/, "") || name;
}

function fileName({ what, index, program }) {
  if (what === "tab" || what === "nef") {
    const { file, chain } = shown.proteins[index];
    return visible(stem(file) + (what === "nef" ? "_flags.nef" : `${chain && `_${chain}`}.tab`));
  }
  const name = shown.names.length === 1 ? stem(shown.names[0]) : "zorvela";
  if (what !== "restraints") return visible(`${name}.${what}`);
  return visible(`${name}_${program}.${programs.find((one) => one.name === program).ending}`);
}

/** Returns the content of a saved file: one part, or an archive of all, each under its own name. */
function blobOf(what, parts) {
  if (what !== "zip") return new Blob([parts[0].bytes], { type: TYPES[what] });
  const files = parts.map((part) => ({ name: fileName(part).replaceAll(/[/\\]/g, "_"), bytes: part.bytes }));
  return zipped(withOwnNames(files, (name, count) => name.replace(/\.[^.]*$/, (end) => `_${count}${end}`)));
}

/** Saves a file and shows its notes, or shows why it cannot be written. */
function saveParts({ what, parts }) {
  if (what !== "zip" && parts[0].error) return sayFailure(parts[0].error);
  const link = document.createElement("a");
  const url = URL.createObjectURL(blobOf(what, parts.filter(({ error }) => !error)));
  link.href = url;
  link.download = fileName(what === "zip" ? { what } : parts[0]);
  link.click();
  setTimeout(() => URL.revokeObjectURL(url), 60000);
  return say([`Saved ${link.download}.`, ...parts.flatMap(({ notes = [] }) => notes.map((note) => `${note}.`))].join(" "));
}

for (const button of document.querySelectorAll("[data-save]"))
  button.addEventListener("click", () => {
    worker.postMessage({ type: "save", id: shown.id, what: button.dataset.save, index: Number(byId("table").value),
                         program: byId("program").value, chainAs: byId("chain-as").value.match(/\S+/g) ?? [] });
  });

async function copyTable() {
  try {
    await navigator.clipboard.writeText(tableText(byId("report")));
    say("Copied the table.");
  } catch {
    say("The browser does not let this page copy: save the CSV instead.");
  }
}

// --- Events ---------------------------------------------------------------------------------------

worker.onmessage = ({ data }) => {
  if (data.type === "ready") {
    byId("version").textContent = `${data.about.version}, reference tables ${data.about.tables}`;
    programs = data.about.restraints;
    return;
  }
  // The result on show can be saved while newer files are predicted.
  if (data.type === "saved") {
    if (data.id === shown.id) saveParts(data);
    return;
  }
  if (data.id !== undefined && data.id !== newest) return;
  if (data.type === "progress") showProgress(data);
  else if (data.type === "result") showResult(data);
  else if (data.type === "other files") forgetChoices();
  else if (data.type === "contents") offerChoices(data.contents);
  else if (data.type === "waiting") waitForShifts(data);
  else sayFailure(`The calculation failed: ${data.message}. Reload the page.`);
};
worker.onerror = () => sayFailure("This browser cannot run the calculation: use a newer one.");

for (const id of ["chain", "list", "as-referenced", "deuteration"]) byId(id).addEventListener("change", () => predict({ type: "predict" }));
byId("use-sequence").addEventListener("click", () => predict({ type: "predict" }));
byId("stop").addEventListener("click", stop);
byId("copy").addEventListener("click", copyTable);
byId("table").addEventListener("change", () => offerFiles(shown));
byId("prolines").addEventListener("change", () => showTrans(byId("report"), wantsTrans()));
byId("choices").addEventListener("submit", (event) => event.preventDefault());

listenForFiles(take, sayFailure);
printReport(byId("report"), document.querySelector("link[rel=stylesheet]"));

// The service worker keeps the page's files, so that it opens without a network. Browsers allow it only over https.
if ("serviceWorker" in navigator) {
  navigator.serviceWorker.register("service-worker.js");
  navigator.serviceWorker.ready.then(() => {
    byId("offline").textContent = "It works without a network from now on.";
  });
}
