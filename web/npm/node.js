// The package in Node, whose fetch() does not accept addresses of files.
import { readFile } from "node:fs/promises";

import { fetched, libraryOf } from "./library.js";

const read = (address) => (String(address).startsWith("file:") ? readFile(new URL(address)) : fetched(address));

export { PredictionError } from "./library.js";
export const { load, predict, report, shiftTables, contents, flaggedNef, restraints, versions } =
  libraryOf(() => new URL("./zorvela.wasm", import.meta.url), read);
