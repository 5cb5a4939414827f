// Reads, predicts and writes reports in a thread of its own, so that the page never waits.
//
// The page sends {type: "files", id, files, choices} with files as [{name, blob}]; {type: "predict", id, choices} for the
// same files with other choices; and {type: "save", id, what, index, program, chainAs} with the id of the result on show.
// A newer request, or {type: "stop", id}, ends the prediction before it.
import { InputError, LARGEST_INPUT, unpacked } from "./gzip.js";
import { Fault, ModuleFailure, Zorvela } from "./zorvela.js";

const module = fetch(new URL("zorvela.wasm", import.meta.url))
  .then((response) => response.arrayBuffer())
  .then((bytes) => WebAssembly.compile(bytes));
const start = async () => Zorvela.start(await module);

let newest = 0;
// Each file is {name, kind, bytes} or {name, fault}; shift files get `contents` once these are known.
let shiftFiles = [];
let structures = [];
let sequences = [];
let current = null; // {id, run, zorvela, files, proteins} of the last result

let resumed = 0; // when the last messages of the page were handled, in ms

/** Lets the worker handle messages of the page, but not after each small file: a timer takes 4 ms. */
async function others() {
  if (performance.now() - resumed < 50) return;
  await new Promise((resume) => setTimeout(resume));
  resumed = performance.now();
}

/** Reads and unpacks a file at once, so that later changes on the disk do not matter. */
async function readFile(zorvela, { name, blob }) {
  try {
    if (blob.size > LARGEST_INPUT) throw new InputError(Fault.tooLarge);
    const bytes = await unpacked(new Uint8Array(await blob.arrayBuffer()));
    return { name, bytes, kind: zorvela.kindOf(bytes) };
  } catch (error) {
    if (error instanceof InputError) return { name, fault: error.fault };
    const isMemory = error instanceof RangeError || error instanceof ModuleFailure;
    return { name, fault: isMemory ? Fault.noMemory : Fault.unreadable };
  }
}

const stemOf = (name) => name.replace(/\.gz$/i, "").replace(/\.[^.]*$/, "");

/** Returns the sequence of a shift file: the text given, the file of the same stem, or the only one for the only file. */
function sequenceOf({ name }, { sequence }) {
  if (sequence) return { name: "the text given", bytes: new TextEncoder().encode(sequence) };
  if (sequences.length === 1 && shiftFiles.length === 1) return sequences[0];
  return sequences.find((one) => stemOf(one.name) === stemOf(name)) ?? { name: "" };
}

/** Adds a file to a run, or the reason why it cannot be read. */
function addFile(run, { name, kind, bytes, fault }, sequence) {
  if (fault !== undefined) return run.addFault(name, fault);
  if (kind === "structure") return run.addStructure(name, bytes);
  run.setSequence(sequence.name, sequence.bytes);
  return run.add(name, bytes);
}

/** Predicts all files in a run with its own memory. Returns null if a newer request has come. */
async function runAll(id, files, choices) {
  const zorvela = await start();
  const run = zorvela.newRun(choices);
  for (const [index, file] of files.entries()) {
    try {
      addFile(run, file, sequenceOf(file, choices));
    } catch (error) {
      if (!(error instanceof ModuleFailure)) throw error;
      // The module cannot be used any more: predict the others again without this file.
      const without = { name: file.name, fault: Fault.noMemory };
      return runAll(id, files.map((other) => (other === file ? without : other)), choices);
    }
    postMessage({ type: "progress", id, done: index + 1, total: files.length });
    await others();
    if (id !== newest) return null;
  }
  return { zorvela, run };
}

/** Finds the chains and shift lists of each file; a file that cannot be read has none, and the run has its error. */
async function findContents(id) {
  let zorvela = await start();
  for (const file of shiftFiles) {
    file.contents = [];
    try {
      if (file.bytes !== undefined) file.contents = zorvela.contents(file.name, file.bytes);
    } catch {
      zorvela = await start(); // memory ran out; the run has the error
    }
    await others();
    if (id !== newest) return;
  }
  postMessage({ type: "contents", id, contents: shiftFiles.map(({ contents }) => contents) });
}

/** Returns the files with the chosen chains and lists; if none has them, all files, whose errors name what they have. */
function filesWith({ chains, lists }) {
  const fits = (chosen, name) => chosen.length === 0 || chosen.includes(name);
  const ofAnyList = lists[0] === "all";
  const fitting = shiftFiles.filter(({ contents }) => contents === undefined ||
    contents.some(({ chain, list }) => fits(chains, chain) && (ofAnyList || fits(lists, list))));
  return fitting.length === 0 || chains.length + lists.length === 0 ? shiftFiles : fitting;
}

async function predict({ id, choices }) {
  const fitting = filesWith(choices);
  const files = [...structures, ...fitting];
  const result = await runAll(id, files, choices);
  if (result === null) return;
  const html = result.run.report("html");
  const summary = result.run.summary();
  const nefs = new Set(files.filter(({ kind }) => kind === "nef").map(({ name }) => name));
  for (const protein of summary.proteins) protein.isNef = nefs.has(protein.file);
  current = { ...result, id, files, proteins: summary.proteins };
  const names = fitting.map(({ name }) => name);
  postMessage({ type: "result", id, html, summary: { ...summary, names, leftOut: shiftFiles.length - names.length } });
  if (shiftFiles.some(({ contents }) => contents === undefined)) await findContents(id);
}

const NONE_OF_THE_FILES = { chains: [], lists: [], sequence: "", firstResidue: undefined };

/** Takes files. Structures and sequences alone belong to the shifts before them, or wait for the first shifts. */
async function takeFiles({ id, files, choices }) {
  const zorvela = await start();
  const read = await Promise.all(files.map((file) => readFile(zorvela, file)));
  if (id !== newest) return;
  const ofKind = (wanted) => read.filter(({ kind }) => kind === wanted);
  const newShifts = read.filter(({ kind }) => kind !== "structure" && kind !== "sequence");
  const isOther = newShifts.length > 0 && shiftFiles.length > 0;
  const beside = (before, now) => (now.length > 0 || isOther ? now : before);
  structures = beside(structures, ofKind("structure"));
  sequences = beside(sequences, ofKind("sequence"));
  if (newShifts.length > 0) shiftFiles = newShifts;
  const keepsChoices = read.every(({ kind }) => kind === "structure");
  if (!keepsChoices) postMessage({ type: "other files", id });
  if (shiftFiles.length === 0) postMessage({ type: "waiting", id, names: read.map(({ name }) => name) });
  else await predict({ id, choices: keepsChoices ? choices : { ...choices, ...NONE_OF_THE_FILES } });
}

/** Returns {bytes, notes, error} of a file to save; `index` is that of a protein. */
function written({ what, index, program, chainAs }) {
  const { run, files, proteins } = current;
  if (what === "restraints") return run.restraints(program, chainAs);
  if (what === "tab") return { bytes: run.shiftTable(index) };
  if (what !== "nef") return { bytes: run.report(what) };
  const { name, bytes } = files.find((file) => file.name === proteins[index].file);
  return run.flaggedNef(name, bytes);
}

/** Lists all files to save, except restraints, which are for one program. */
function everything() {
  const { proteins } = current;
  const nefs = new Map(proteins.flatMap(({ file, isNef }, index) => (isNef ? [[file, index]] : [])));
  return [...["html", "csv", "json"].map((what) => ({ what })), ...proteins.map((_, index) => ({ what: "tab", index })),
          ...[...nefs.values()].map((index) => ({ what: "nef", index }))];
}

function save({ id, what, ...chosen }) {
  if (id !== current.id) return; // a newer result is about to be shown
  const parts = what === "zip" ? everything() : [{ what, ...chosen }];
  postMessage({ type: "saved", id, what, parts: parts.map((part) => ({ ...part, ...written(part) })) });
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
