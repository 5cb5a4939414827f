// Cis or trans prolines from chemical shifts, for Node and browsers.
import { InputError, LARGEST_INPUT, unpacked } from "./gzip.js";
import { Fault, ModuleFailure, Zorvela } from "./zorvela.js";

let compiled; // the module, once for all calls

async function compile() {
  const address = new URL("./zorvela.wasm", import.meta.url);
  if (address.protocol !== "file:") return WebAssembly.compile(await (await fetch(address)).arrayBuffer());
  const { readFile } = await import("node:fs/promises");
  return WebAssembly.compile(await readFile(address));
}

function start() {
  compiled ??= compile().catch((error) => {
    compiled = undefined; // the next call tries again
    throw error;
  });
  return compiled.then((module) => Zorvela.start(module));
}

/** The shifts cannot be predicted; `message` says why, and what to do. */
export class PredictionError extends Error {
  name = "PredictionError";
}

const CHOICES = { chains: "names", lists: "names", asReferenced: "flag", name: "text" };

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

function bytesOf(input) {
  if (typeof input === "string") return new TextEncoder().encode(input);
  if (input instanceof ArrayBuffer) return new Uint8Array(input);
  if (ArrayBuffer.isView(input)) return new Uint8Array(input.buffer, input.byteOffset, input.byteLength);
  throw new TypeError("give the content of a shift file: a string, an ArrayBuffer or an array of bytes");
}

async function addFile(run, name, input) {
  const bytes = bytesOf(input);
  try {
    if (bytes.length > LARGEST_INPUT) throw new InputError(Fault.tooLarge);
    run.add(name, await unpacked(bytes));
  } catch (error) {
    if (!(error instanceof InputError)) throw error;
    run.addFault(name, error.fault);
  }
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

/** Predicts every proline in the content of a shift file; see index.d.ts. */
export async function predict(input, options = {}) {
  return (await reportsOf(input, options)).result;
}

/** The same as a report, in HTML unless `options.format` says otherwise. */
export async function report(input, { format = "html", ...options } = {}) {
  const formats = (await start()).about().formats;
  if (!formats.includes(format)) throw new TypeError(`there is no format "${format}"; there are ${formats.join(", ")}`);
  return (await reportsOf(input, options, format)).text;
}

/** The versions of the library and of the reference tables in it. */
export async function versions() {
  const { version, tables } = (await start()).about();
  return { version, tables };
}
