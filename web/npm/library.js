// The functions of the package, for index.js and node.js.
import { InputError, LARGEST_INPUT, unpacked } from "./gzip.js";
import { Fault, ModuleFailure, Zorvela } from "./zorvela.js";

const HINT = "copy zorvela.wasm of the package there, or give its address or bytes to load()";

/** Returns the bytes at an address. Rejects with an error that names the address and the remedy. */
export async function fetched(address) {
  let response;
  try {
    response = await fetch(address);
  } catch (error) {
    throw new Error(`${address}: cannot be fetched (${error.message}); ${HINT}`, { cause: error });
  }
  if (!response.ok) throw new Error(`${address}: cannot be fetched (HTTP status ${response.status}); ${HINT}`);
  return response.arrayBuffer();
}

async function compile(source, read) {
  if (source === undefined) throw new Error("the address of zorvela.wasm is not known; give it, or the bytes, to load()");
  const isBytes = source instanceof ArrayBuffer || ArrayBuffer.isView(source);
  const bytes = isBytes ? source : await read(source);
  try {
    return await WebAssembly.compile(bytes);
  } catch (error) {
    throw new Error(`${isBytes ? "the bytes" : source}: not zorvela.wasm (${error.message}); ${HINT}`, { cause: error });
  }
}

/** The shifts cannot be predicted; `message` tells why, and what to do. */
export class PredictionError extends Error {
  name = "PredictionError";
}

const CHOICES = { chains: "names", lists: "names", asReferenced: "flag", deuterated: "flag", name: "text",
                  structures: "files", sequence: "files", firstResidue: "number" };

const IS_RIGHT = {
  names: (v) => Array.isArray(v) && v.every((item) => typeof item === "string"),
  flag: (v) => typeof v === "boolean",
  text: (v) => typeof v === "string",
  number: (v) => Number.isInteger(v) && Math.abs(v) < 2 ** 31,
  files: () => true, // checked when they are read
};

function checkOneOf(names, name, what) {
  if (!names.includes(name)) throw new TypeError(`there is no ${what} "${name}"; there are ${names.join(", ")}`);
}

function checkOptions(options, more = {}) {
  const choices = { ...CHOICES, ...more };
  for (const [name, value] of Object.entries(options)) {
    checkOneOf(Object.keys(choices), name, "option");
    if (value !== undefined && !IS_RIGHT[choices[name]](value)) throw new TypeError(`option "${name}" cannot be ${JSON.stringify(value)}`);
  }
}

/** Returns one or several inputs as [{name, content}], numbered if they have no names. */
function namedInputs(inputs, called = "input") {
  const all = Array.isArray(inputs) ? inputs : [inputs];
  return all.map((input, index) => ({
    name: input?.name ?? (all.length === 1 ? called : `${called} ${index + 1}`),
    content: input?.content ?? input,
  }));
}

async function bytesOf(input) {
  if (typeof input === "string") return new TextEncoder().encode(input);
  if (input instanceof ArrayBuffer) return new Uint8Array(input);
  if (typeof input?.arrayBuffer === "function") return new Uint8Array(await input.arrayBuffer());
  if (ArrayBuffer.isView(input)) return new Uint8Array(input.buffer, input.byteOffset, input.byteLength);
  throw new TypeError("give the content of a file: a string, a File or Blob, an ArrayBuffer or an array of bytes");
}

/** Unpacks a file, passes the bytes to a function of the run, and returns them. */
async function addFile(run, { name, content }, add) {
  let bytes = await bytesOf(content);
  try {
    if (bytes.length > LARGEST_INPUT) throw new InputError(Fault.tooLarge);
    bytes = await unpacked(bytes);
    run[add](name, bytes);
  } catch (error) {
    if (!(error instanceof InputError)) throw error;
    run.addFault(name, error.fault);
  }
  return bytes;
}

const decoded = (bytes) => new TextDecoder().decode(bytes);

/**
 * Returns the functions of the package, see index.d.ts. `findDefault()` gives the address of the module unless the user
 * gives another; `read(address)` gives the bytes at an address.
 */
export function libraryOf(findDefault, read) {
  let compiled; // the module, once for all calls

  function load(source) {
    const loading = (async () => compile(source ?? findDefault(), read))();
    compiled = loading;
    return loading.then(() => {}, (error) => {
      if (compiled === loading) compiled = undefined; // the next call tries again
      throw error;
    });
  }

  async function start() {
    if (compiled === undefined) await load();
    return Zorvela.start(await compiled);
  }

  /**
   * Predicts files in a run and returns the value of `use(run, result, bytes)`, with the bytes of the last file. Rejects
   * if no file can be predicted, or a structure or sequence cannot be read.
   */
  async function withRun(inputs, { structures = [], sequence, name, ...choices }, use) {
    const files = namedInputs(inputs);
    if (files.length === 1 && name !== undefined) files[0].name = name;
    const models = namedInputs(structures);
    const sequences = sequence === undefined ? [] : namedInputs(sequence, "option sequence");
    const beside = [...models, ...sequences].map((one) => one.name);
    const zorvela = await start();
    try {
      const run = zorvela.newRun(choices);
      for (const model of models) await addFile(run, model, "addStructure");
      for (const one of sequences) await addFile(run, one, "setSequence");
      let bytes;
      for (const file of files) bytes = await addFile(run, file, "add");
      const result = JSON.parse(decoded(run.report("json")));
      const fatal = result.proteins.length === 0 ? result.errors[0]
        : result.errors.find(({ file }) => beside.includes(file));
      if (fatal !== undefined) throw new PredictionError(fatal.message);
      return use(run, result, bytes);
    } catch (error) {
      if (!(error instanceof ModuleFailure)) throw error;
      const what = files.length === 1 ? `${files[0].name}: does` : "the files do";
      throw new PredictionError(`${what} not fit into memory; give less`, { cause: error });
    }
  }

  async function predict(inputs, options = {}) {
    checkOptions(options);
    return withRun(inputs, options, (run, result) => result);
  }

  async function report(inputs, { format = "html", ...options } = {}) {
    checkOptions(options, { format: "text" });
    checkOneOf((await start()).about().formats, format, "format");
    return withRun(inputs, options, (run) => decoded(run.report(format)));
  }

  async function shiftTables(inputs, options = {}) {
    checkOptions(options);
    return withRun(inputs, options, (run, { proteins }) => proteins.map(({ file, chain, list }, index) =>
      ({ file, chain, list, table: decoded(run.shiftTable(index)) })));
  }

  async function contents(inputs) {
    const zorvela = await start();
    const found = [];
    for (const { name, content } of namedInputs(inputs)) {
      const bytes = await unpacked(await bytesOf(content)).catch(() => new Uint8Array()); // predict() has the error
      for (const { chain, list } of zorvela.contents(name, bytes))
        found.push({ file: name, chain: chain || null, list: list || null });
    }
    return found;
  }

  const writtenText = ({ bytes, notes, error }) => {
    if (error) throw new PredictionError(error);
    return { text: decoded(bytes), notes };
  };

  async function flaggedNef(input, { trans, replace, ...options } = {}) {
    checkOptions({ trans, replace, ...options }, { trans: "flag", replace: "flag" });
    return withRun([input], options, (run, { proteins }, bytes) =>
      writtenText(run.flaggedNef(proteins[0].file, bytes, { trans, replace })));
  }

  async function restraints(inputs, { program, chainAs, ...options } = {}) {
    checkOptions({ program, chainAs, ...options }, { program: "text", chainAs: "names" });
    checkOneOf((await start()).about().restraints.map(({ name }) => name), program, "program");
    return withRun(inputs, options, (run) => writtenText(run.restraints(program, chainAs)));
  }

  async function versions() {
    const { version, tables } = (await start()).about();
    return { version, tables };
  }

  return { load, predict, report, shiftTables, contents, flaggedNef, restraints, versions };
}
