// Reads, predicts and writes reports, away from the page, so that the page never waits.
//
// The page sends {type: "files", id, files, choices} with files as [{name, blob}], {type: "predict", id, choices} for the
// same files with other choices, and for what it wants to save {type: "save", id, what, index} with the id of the
// result on show. A newer request, {type: "stop", id} too, ends the prediction before.
import { InputError, LARGEST_INPUT, unpacked } from "./gzip.js";
import { Fault, ModuleFailure, Zorvela } from "./zorvela.js";

const module = fetch(new URL("zorvela.wasm", import.meta.url))
  .then((response) => response.arrayBuffer())
  .then((bytes) => WebAssembly.compile(bytes));

let newest = 0;
let given = []; // [{name, bytes or fault, contents}] of the files to predict; contents once they are known
let current = null; // {id, run, zorvela, files, proteins} of the last result

const others = () => new Promise((resume) => setTimeout(resume)); // lets the page's messages in

/** Reads a file while it is there: what happens to it on the disk later on changes no result. */
async function readFile({ name, blob }) {
  if (blob.size > LARGEST_INPUT) return { name, fault: Fault.tooLarge };
  try {
    return { name, bytes: new Uint8Array(await blob.arrayBuffer()) };
  } catch (error) {
    return { name, fault: error instanceof RangeError ? Fault.noMemory : Fault.unreadable };
  }
}

/** Adds a file to a run: its prolines, or why there are none. */
async function addFile(run, { name, bytes, fault }) {
  if (fault !== undefined) return run.addFault(name, fault);
  let content;
  try {
    content = await unpacked(bytes);
  } catch (error) {
    return run.addFault(name, error instanceof InputError ? error.fault : Fault.noMemory);
  }
  return run.add(name, content);
}

/** All files in a run with a memory of its own. Null where a newer one has been asked for. */
async function runAll(id, files, choices) {
  const zorvela = await Zorvela.start(await module);
  const run = zorvela.newRun(choices);
  for (const [index, file] of files.entries()) {
    try {
      await addFile(run, file);
    } catch (error) {
      if (!(error instanceof ModuleFailure)) throw error;
      // The module is beyond use. The others are predicted anew without this file.
      const without = { name: file.name, fault: Fault.noMemory };
      return runAll(id, files.map((other) => (other === file ? without : other)), choices);
    }
    postMessage({ type: "progress", id, done: index + 1, total: files.length });
    await others();
    if (id !== newest) return null;
  }
  return { zorvela, run };
}

/** The chains and shift lists of each file; none of one that cannot be read: the run says what is wrong with it. */
async function findContents(id) {
  let zorvela = await Zorvela.start(await module);
  for (const file of given) {
    file.contents = [];
    try {
      if (file.bytes !== undefined) file.contents = zorvela.contents(file.name, await unpacked(file.bytes));
    } catch (error) {
      if (error instanceof ModuleFailure) zorvela = await Zorvela.start(await module);
    }
    await others();
    if (id !== newest) return;
  }
  postMessage({ type: "contents", id, contents: given.map(({ contents }) => contents) });
}

/** The files that have what is chosen; all of them where none has, as their errors say what there is. */
function filesWith({ chains, lists }) {
  const fits = (chosen, name) => chosen.length === 0 || chosen.includes(name);
  const ofAnyList = lists[0] === "all";
  const fitting = given.filter(({ contents }) => contents === undefined ||
    contents.some(({ chain, list }) => fits(chains, chain) && (ofAnyList || fits(lists, list))));
  return fitting.length === 0 || chains.length + lists.length === 0 ? given : fitting;
}

/** What the page shows around the report. */
function summaryOf(json) {
  const { proteins, errors } = JSON.parse(new TextDecoder().decode(json));
  const calls = { cis: 0, trans: 0, undecided: 0, none: 0 };
  for (const { prolines } of proteins) for (const { call } of prolines) ++calls[call];
  return {
    proteins: proteins.map(({ file, chain, list }) => ({ file, chain, list })),
    notes: proteins.flatMap(({ file, chain, notes }) =>
      notes.map((note) => `${chain === null ? file : `${file}, chain ${chain}`}: ${note}`)),
    errors: errors.map(({ message }) => message),
    calls,
  };
}

async function predict({ id, choices }) {
  const files = filesWith(choices);
  const result = await runAll(id, files, choices);
  if (result === null) return;
  const summary = summaryOf(result.run.report("json"));
  current = { ...result, id, files, proteins: summary.proteins };
  postMessage({ type: "result", id, html: result.run.report("html"), summary, leftOut: given.length - files.length });
  if (given.some(({ contents }) => contents === undefined)) await findContents(id);
}

async function takeFiles({ id, files, choices }) {
  const read = await Promise.all(files.map(readFile));
  if (id !== newest) return;
  given = read;
  await predict({ id, choices });
}

/** The shift table of the protein at `index` of the result. */
async function shiftTable(index) {
  const { run, files, proteins } = current;
  const { file: name } = proteins[index];
  const before = proteins.slice(0, index).filter(({ file }) => file === name).length;
  return run.shiftTable(name, await unpacked(files.find((file) => file.name === name).bytes), before);
}

async function save({ id, what, index }) {
  if (id !== current.id) return; // a newer result is about to be shown
  const parts = what !== "zip" ? [{ what, index }]
    : [...["html", "csv", "json"].map((format) => ({ what: format })),
       ...current.proteins.map((_, protein) => ({ what: "tab", index: protein }))];
  for (const part of parts)
    part.bytes = part.what === "tab" ? await shiftTable(part.index) : current.run.report(part.what);
  postMessage({ type: "saved", id, what, parts });
}

onmessage = async ({ data }) => {
  try {
    if (data.type !== "save") newest = data.id;
    await { files: takeFiles, predict, save, stop() {} }[data.type](data);
  } catch (error) {
    postMessage({ type: "failed", id: data.id, message: String(error.message) });
  }
};

module
  .then(async (compiled) => postMessage({ type: "ready", about: (await Zorvela.start(compiled)).about() }))
  .catch((error) => postMessage({ type: "failed", message: String(error.message) }));
