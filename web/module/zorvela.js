// The library for JavaScript: the module's functions with texts, bytes and errors as JavaScript has them. The
// page's worker and the npm package stand on it; binding.cpp is the other half.

/** Why the bytes of a file could not be handed over. The library has the words; the order is that of `InputFault`. */
export const Fault = Object.freeze({ unreadable: 0, damagedGzip: 1, cutGzip: 2, tooLarge: 3, noMemory: 4 });

const encoder = new TextEncoder();
const decoder = new TextDecoder();

/** What the module asks of its host: it has no files, no environment and no streams. */
function hostFunctions(memoryOf) {
  const kNotSupported = 58; // as WASI numbers its errors
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

/** Memory ran out, or the module failed; it must not be used any more. */
export class ModuleFailure extends Error {}

/** The module with a memory of its own. */
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

  /** Calls a function of the module. A trap, as for a stack that overflows, is a ModuleFailure. */
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

  /** Runs `use` with the bytes, or a string in UTF-8, as an object of the module. */
  withText(content, use) {
    const bytes = typeof content === "string" ? encoder.encode(content) : content;
    const text = this.#pointer("text_new", bytes.length);
    new Uint8Array(this.#exports.memory.buffer, this.call("text_data", text) >>> 0, bytes.length).set(bytes);
    const result = use(text);
    this.call("text_delete", text);
    return result;
  }

  /** The bytes of a text that a function of the module returns. */
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
   * {version, tables, formats, restraints}: of the library and its reference tables, the names of its report formats,
   * and for each structure calculation program {name, writes, ending, needsModel}.
   */
  about() {
    return JSON.parse(this.takeText("about"));
  }

  /** [{chain, list}]: what can be chosen in a file; empty where it cannot be read. */
  contents(name, bytes) {
    return JSON.parse(this.withText(name, (n) => this.withText(bytes, (b) => this.takeText("contents", n, b))));
  }

  /** What the (unpacked) bytes of a file hold: "shifts", also for what is not known, "nef" or "structure". */
  kindOf(bytes) {
    return ["shifts", "nef", "structure"][this.withText(bytes, (b) => this.call("kind_of", b))];
  }

  /** A run with choices {chains, lists, asReferenced, deuterated}, as the options of zorvela-kit run have them. */
  newRun({ chains = [], lists = [], asReferenced = false, deuterated } = {}) {
    const flags = [asReferenced, deuterated === true, deuterated === false].map(Number);
    return new Run(this, this.#pointer("run_new", ...flags), chains, lists);
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

  /** Predicts the prolines in the (unpacked) bytes of a file. What is wrong with it is in the report. */
  add(name, bytes) {
    this.#with(name, bytes, (n, b) => this.#zorvela.call("run_add", this.#run, n, b));
  }

  /** Takes the bytes of a structure, with which the files after it are compared. */
  addStructure(name, bytes) {
    this.#with(name, bytes, (n, b) => this.#zorvela.call("run_add_structure", this.#run, n, b));
  }

  /** Puts a file that could not be handed over into the report, with one of the reasons in `Fault`. */
  addFault(name, fault) {
    this.#zorvela.withText(name, (n) => this.#zorvela.call("run_add_fault", this.#run, n, fault));
  }

  /** The bytes of a report in the format "table", "csv", "json" or "html". */
  report(format) {
    return this.#zorvela.withText(format, (f) => this.#zorvela.takeBytes("run_report", this.#run, f));
  }

  /** The bytes of the shift table of a protein of the report, counted from 0. */
  shiftTable(index) {
    return this.#zorvela.takeBytes("run_shift_table", this.#run, index);
  }

  #outcome(bytes) {
    return { bytes, ...JSON.parse(this.#zorvela.takeText("run_outcome", this.#run)) };
  }

  /** {bytes, notes, error}: a NEF file of the run with the calls as flags; `error` is empty, or why there are none. */
  flaggedNef(name, bytes, { trans = false, replace = false } = {}) {
    return this.#outcome(this.#with(name, bytes, (n, b) =>
      this.#zorvela.takeBytes("run_flagged_nef", this.#run, n, b, trans ? 1 : 0, replace ? 1 : 0)));
  }

  /** The same of the cis prolines of all files, for a program of `about().restraints`; chains by names "OLD=NEW" or "NEW". */
  restraints(program, chainAs = []) {
    return this.#outcome(this.#with(program, chainAs.join("\n"),
      (p, c) => this.#zorvela.takeBytes("run_restraints", this.#run, p, c)));
  }

  /** Frees the memory of the run. */
  end() {
    this.#zorvela.call("run_delete", this.#run);
  }
}
