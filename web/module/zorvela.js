// The library for JavaScript: the module's functions with strings, bytes and errors of JavaScript. The page's worker
// and the npm package use it; binding.cpp is the other half.

/** Why the bytes of a file could not be read. The library has the messages, in the order of `InputFault`. */
export const Fault = Object.freeze({ unreadable: 0, damagedGzip: 1, cutGzip: 2, tooLarge: 3, noMemory: 4 });

const encoder = new TextEncoder();
const decoder = new TextDecoder();

/** Returns the functions that the module imports: it has no files, no environment and no streams. */
function hostFunctions(memoryOf) {
  const kNotSupported = 58; // number of this error in WASI
  const ok = () => 0;
  return {
    env: { emscripten_notify_memory_growth() {} },
    wasi_snapshot_preview1: {
      proc_exit(status) {
        throw new WebAssembly.RuntimeError(`ended with status ${status}`);
      },
      environ_sizes_get(count, size) {
        const view = new DataView(memoryOf().buffer);
        view.setUint32(count, 0, true);
        view.setUint32(size, 0, true);
        return 0;
      },
      environ_get: ok,
      fd_close: ok,
      fd_read: () => kNotSupported,
      fd_write: () => kNotSupported,
      fd_seek: () => kNotSupported,
    },
  };
}

/** Memory ran out or the module failed; the module must not be used any more. */
export class ModuleFailure extends Error {}

/** The module with its own memory. */
export class Zorvela {
  #exports;

  /** @param {WebAssembly.Module} module  the compiled zorvela.wasm */
  static async start(module) {
    const zorvela = new Zorvela();
    const instance = await WebAssembly.instantiate(module, hostFunctions(() => zorvela.#exports.memory));
    zorvela.#exports = instance.exports;
    instance.exports._initialize();
    return zorvela;
  }

  /** Calls a function of the module. A trap, such as a stack overflow, is a ModuleFailure. */
  call(name, ...values) {
    try {
      return this.#exports[name](...values);
    } catch (error) {
      throw new ModuleFailure(`${name}: ${error.message}`, { cause: error });
    }
  }

  #pointer(name, ...values) {
    const pointer = this.call(name, ...values);
    if (pointer === 0) throw new ModuleFailure(`${name}: no memory is left`);
    return pointer;
  }

  /** Calls `use` with the bytes, or with a string in UTF-8, as an object of the module. */
  withText(content, use) {
    const bytes = typeof content === "string" ? encoder.encode(content) : content;
    const text = this.#pointer("text_new", bytes.length);
    new Uint8Array(this.#exports.memory.buffer, this.call("text_data", text) >>> 0, bytes.length).set(bytes);
    const result = use(text);
    this.call("text_delete", text);
    return result;
  }

  /** Returns the bytes of a text that a function of the module returns. */
  takeBytes(name, ...values) {
    const text = this.#pointer(name, ...values);
    const bytes = new Uint8Array(this.#exports.memory.buffer, this.call("text_data", text) >>> 0,
                                 this.call("text_size", text) >>> 0).slice();
    this.call("text_delete", text);
    return bytes;
  }

  takeText(name, ...values) {
    return decoder.decode(this.takeBytes(name, ...values));
  }

  /**
   * Returns {version, tables, formats, restraints}: the versions of the library and its reference tables, the names of
   * its report formats, and for each restraint format {name, writes, ending, needsModel}.
   */
  about() {
    return JSON.parse(this.takeText("about"));
  }

  /** Returns [{chain, list}], the chains and shift lists of a file; empty if it cannot be read. */
  contents(name, bytes) {
    return JSON.parse(this.withText(name, (n) => this.withText(bytes, (b) => this.takeText("contents", n, b))));
  }

  /** Returns the kind of unpacked bytes: "nef", "structure", "sequence", or for anything else "shifts". */
  kindOf(bytes) {
    return ["shifts", "nef", "structure", "sequence"][this.withText(bytes, (b) => this.call("kind_of", b))];
  }

  /** Starts a run with choices {chains, lists, asReferenced, deuterated, firstResidue}, the options of `zorvela-kit run`. */
  newRun({ chains = [], lists = [], asReferenced = false, deuterated, firstResidue } = {}) {
    const flags = [asReferenced, deuterated === true, deuterated === false].map(Number);
    const run = this.#pointer("run_new", ...flags);
    if (firstResidue !== undefined) this.call("run_first_residue", run, firstResidue);
    return new Run(this, run, chains, lists);
  }
}

/** Files predicted one after the other, with the same choices. */
class Run {
  #zorvela;
  #run;

  constructor(zorvela, run, chains, lists) {
    this.#zorvela = zorvela;
    this.#run = run;
    for (const chain of chains) zorvela.withText(chain, (text) => zorvela.call("run_choose_chain", run, text));
    for (const list of lists) zorvela.withText(list, (text) => zorvela.call("run_choose_list", run, text));
  }

  #with(name, bytes, use) {
    return this.#zorvela.withText(name, (n) => this.#zorvela.withText(bytes, (b) => use(n, b)));
  }

  /** Predicts the prolines in the unpacked bytes of a file. The report has its errors. */
  add(name, bytes) {
    this.#with(name, bytes, (n, b) => this.#zorvela.call("run_add", this.#run, n, b));
  }

  /** Sets the sequence of the files after it; without bytes they have none. */
  setSequence(name, bytes = new Uint8Array()) {
    this.#with(name, bytes, (n, b) => this.#zorvela.call("run_sequence", this.#run, n, b));
  }

  /** Adds a structure to compare the files after it with. */
  addStructure(name, bytes) {
    this.#with(name, bytes, (n, b) => this.#zorvela.call("run_add_structure", this.#run, n, b));
  }

  /** Adds a file that could not be read to the report, with a reason of `Fault`. */
  addFault(name, fault) {
    this.#zorvela.withText(name, (n) => this.#zorvela.call("run_add_fault", this.#run, n, fault));
  }

  /** Returns the bytes of a report in the format "table", "csv", "json" or "html". */
  report(format) {
    return this.#zorvela.withText(format, (f) => this.#zorvela.takeBytes("run_report", this.#run, f));
  }

  /** Returns {proteins: [{file, chain, list}], errors, warnings, notes, needsSequence, structures}; the last is a count. */
  summary() {
    return JSON.parse(this.#zorvela.takeText("run_summary", this.#run));
  }

  /** Returns the bytes of the shift table of a protein of the report, counted from 0. */
  shiftTable(index) {
    return this.#zorvela.takeBytes("run_shift_table", this.#run, index);
  }

  #outcome(bytes) {
    return { bytes, ...JSON.parse(this.#zorvela.takeText("run_outcome", this.#run)) };
  }

  /** Returns {bytes, notes, error}: a NEF file of the run with the calls as flags. `error` is empty, or tells why not. */
  flaggedNef(name, bytes, { trans = false, replace = false } = {}) {
    return this.#outcome(this.#with(name, bytes, (n, b) =>
      this.#zorvela.takeBytes("run_flagged_nef", this.#run, n, b, trans ? 1 : 0, replace ? 1 : 0)));
  }

  /**
   * Returns {bytes, notes, error}: the cis prolines of all files, for a name of `about().restraints`. `chainAs` renames
   * chains: "OLD=NEW" or "NEW".
   */
  restraints(program, chainAs = []) {
    return this.#outcome(this.#with(program, chainAs.join("\n"),
      (p, c) => this.#zorvela.takeBytes("run_restraints", this.#run, p, c)));
  }

  /** Frees the memory of the run. */
  end() {
    this.#zorvela.call("run_delete", this.#run);
  }
}
