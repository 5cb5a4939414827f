// Cis or trans prolines from chemical shifts: what index.js and node.js have in common.
import { InputError, LARGEST_INPUT, unpacked } from "./gzip.js";
import { Fault, ModuleFailure, Zorvela } from "./zorvela.js";

const HINT = "copy zorvela.wasm of the package there, or give its address or bytes to load()";

/** The bytes at an address; an error that says what is wrong with it. */
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

/** The shifts cannot be predicted; `message` says why, and what to do. */
export class PredictionError extends Error {
  name = "PredictionError";
}

const CHOICES = { chains: "names", lists: "names", asReferenced: "flag", deuterated: "flag", name: "text" };

function checkOptions(options) {
  for (const [name, value] of Object.entries(options)) {
    const isRight = {
      names: (v) => Array.isArray(v) && v.every((item) => typeof item === "string"),
      flag: (v) => typeof v === "boolean",
      text: (v) => typeof v === "string",
    }[CHOICES[name]];
    if (isRight === undefined) throw new TypeError(`there is no option "${name}"; there are ${Object.keys(CHOICES).join(", ")}`);
    if (value !== undefined && !isRight(value)) throw new TypeError(`option "${name}" cannot be ${JSON.stringify(value)}`);
  }
}

async function bytesOf(input) {
  if (typeof input === "string") return new TextEncoder().encode(input);
  if (input instanceof ArrayBuffer) return new Uint8Array(input);
  if (typeof input?.arrayBuffer === "function") return new Uint8Array(await input.arrayBuffer());
  if (ArrayBuffer.isView(input)) return new Uint8Array(input.buffer, input.byteOffset, input.byteLength);
  throw new TypeError("give the content of a shift file: a string, a File or Blob, an ArrayBuffer or an array of bytes");
}

async function addFile(run, name, input) {
  const bytes = await bytesOf(input);
  try {
    if (bytes.length > LARGEST_INPUT) throw new InputError(Fault.tooLarge);
    run.add(name, await unpacked(bytes));
  } catch (error) {
    if (!(error instanceof InputError)) throw error;
    run.addFault(name, error.fault);
  }
}

/**
 * The functions of the package, see index.d.ts. The module comes from `findDefault()`, an address or bytes, unless the
 * user gives another; `read(address)` gives the bytes at an address.
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

  /** The bytes of the JSON, and of the report in another format where one is wanted. */
  async function reportsOf(input, options, format) {
    checkOptions(options);
    const { name = "input", ...choices } = options;
    const zorvela = await start();
    try {
      const run = zorvela.newRun(choices);
      await addFile(run, name, input);
      const decoder = new TextDecoder();
      const result = JSON.parse(decoder.decode(run.report("json")));
      if (result.errors.length > 0) throw new PredictionError(result.errors[0].message);
      return { result, text: format === undefined ? "" : decoder.decode(run.report(format)) };
    } catch (error) {
      if (!(error instanceof ModuleFailure)) throw error;
      throw new PredictionError(`${name}: does not fit into memory; give a smaller file`, { cause: error });
    }
  }

  async function predict(input, options = {}) {
    return (await reportsOf(input, options)).result;
  }

  async function report(input, { format = "html", ...options } = {}) {
    const formats = (await start()).about().formats;
    if (!formats.includes(format)) throw new TypeError(`there is no format "${format}"; there are ${formats.join(", ")}`);
    return (await reportsOf(input, options, format)).text;
  }

  async function versions() {
    const { version, tables } = (await start()).about();
    return { version, tables };
  }

  return { load, predict, report, versions };
}
