// Reads, predicts and writes reports, away from the page, so that the page never waits.
//
// The page sends {type: "predict", id, files, choices} with files as [{name, blob}], and for what it wants to save
// {type: "save", id, what, index} with the id of the result on show. A newer "predict" ends the one before.
import { InputError, LARGEST_INPUT, unpacked } from "./gzip.js";
import { Fault, ModuleFailure, Zorvela } from "./zorvela.js";

// Up to so many files are asked which chains and lists they hold; with more, nobody chooses by name.
const MOST_ASKED = 20;

const module = fetch(new URL("zorvela.wasm", import.meta.url))
  .then((response) => response.arrayBuffer())
  .then((bytes) => WebAssembly.compile(bytes));

let newest = 0;
let current = null; // {id, run, zorvela, files, proteins} of the last result

/** The unpacked bytes of a file. */
async function bytesOf(file) {
  if (file.blob.size > LARGEST_INPUT) throw new InputError(Fault.tooLarge);
  let packed;
  try {
    packed = new Uint8Array(await file.blob.arrayBuffer());
  } catch (error) {
    throw new InputError(error instanceof RangeError ? Fault.noMemory : Fault.unreadable);
  }
  return unpacked(packed);
}

/** Adds a file to a run: its prolines, or why there are none. */
async function addFile(run, file) {
  if (file.fault !== undefined) return run.addFault(file.name, file.fault);
  let bytes;
  try {
    bytes = await bytesOf(file);
  } catch (error) {
    return run.addFault(file.name, error instanceof InputError ? error.fault : Fault.noMemory);
  }
  return run.add(file.name, bytes);
}

/** All files in a run with a memory of its own. Null where a newer one has been asked for. */
async function runAll(id, files, choices) {
  const zorvela = await Zorvela.start(await module);
  const run = zorvela.newRun(choices);
  for (const [index, file] of files.entries()) {
    postMessage({ type: "progress", id, done: index, total: files.length, name: file.name });
    try {
      await addFile(run, file);
    } catch (error) {
      if (!(error instanceof ModuleFailure)) throw error;
      // The module is beyond use. The others are predicted anew without this file.
      file.fault = Fault.noMemory;
      return runAll(id, files, choices);
    }
    await new Promise((resume) => setTimeout(resume)); // lets the page's messages in
    if (id !== newest) return null;
  }
  return { zorvela, run };
}

/** What there is to choose: names of chains and lists, in the order of the files. */
async function contentsOf(files) {
  const chains = new Set();
  const lists = new Set();
  if (files.length <= MOST_ASKED) {
    for (const file of files) {
      try {
        const zorvela = await Zorvela.start(await module);
        for (const { chain, list } of zorvela.contents(file.name, await bytesOf(file))) {
          chains.add(chain);
          lists.add(list);
        }
      } catch {
        // The run says what is wrong with the file.
      }
    }
  }
  chains.delete("");
  lists.delete("");
  return { chains: [...chains], lists: [...lists] };
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

async function predict({ id, files, choices, isNew }) {
  newest = id;
  const result = await runAll(id, files, choices);
  if (result === null) return;
  const summary = summaryOf(result.run.report("json"));
  current = { ...result, id, files, proteins: summary.proteins };
  postMessage({ type: "result", id, html: result.run.report("html"), summary });
  if (!isNew) return;
  const contents = await contentsOf(files);
  if (id === newest) postMessage({ type: "contents", id, contents });
}

/** The shift table of the protein at `index` of the result. */
async function shiftTable(index) {
  const { run, files, proteins } = current;
  const { file: name } = proteins[index];
  const before = proteins.slice(0, index).filter(({ file }) => file === name).length;
  return run.shiftTable(name, await bytesOf(files.find((file) => file.name === name)), before);
}

async function save({ id, what, index }) {
  if (id !== current.id) return; // a newer result is about to be shown
  const bytes = what === "tab" ? await shiftTable(index) : current.run.report(what);
  postMessage({ type: "saved", id, what, index, bytes });
}

onmessage = async ({ data }) => {
  try {
    await (data.type === "predict" ? predict(data) : save(data));
  } catch (error) {
    postMessage({ type: "failed", id: data.id, message: String(error.message) });
  }
};

module
  .then(async (compiled) => postMessage({ type: "ready", about: (await Zorvela.start(compiled)).about() }))
  .catch((error) => postMessage({ type: "failed", message: String(error.message) }));
