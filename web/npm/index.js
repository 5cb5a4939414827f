// The package in browsers; bundlers find zorvela.wasm by this form of its address.
import { fetched, libraryOf } from "./library.js";

export { PredictionError } from "./library.js";
export const { load, predict, report, shiftTables, contents, flaggedNef, restraints, versions } =
  // A script that is not a module has no address.
  libraryOf(() => (import.meta.url ? new URL("./zorvela.wasm", import.meta.url) : undefined), fetched);
