// Prints the report on files as zorvela-kit run does: node run.mjs PACKAGE FORMAT FILE...
import { readFileSync, writeSync } from "node:fs";
import { pathToFileURL } from "node:url";

const [folder, format, ...files] = process.argv.slice(2);
const { Zorvela } = await import(pathToFileURL(`${folder}/zorvela.js`));
const { unpacked } = await import(pathToFileURL(`${folder}/gzip.js`));

const zorvela = await Zorvela.start(await WebAssembly.compile(readFileSync(`${folder}/zorvela.wasm`)));
const run = zorvela.newRun();
for (const file of files) run.add(file, await unpacked(readFileSync(file)));
for (let rest = run.report(format); rest.length > 0;) rest = rest.subarray(writeSync(1, rest));
