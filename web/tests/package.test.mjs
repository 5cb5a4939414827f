// The installed package, for `node --test`. native.* are the reports of the program for the same file.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { test } from "node:test";
import { gzipSync } from "node:zlib";

import {
  PredictionError, contents, flaggedNef, load, predict, report, restraints, shiftTables, versions,
} from "zorvela";

const content = await readFile("nuclease.str");
const name = "nuclease.str";

test("the result is the program's, number for number", async () => {
  assert.deepEqual(await predict(content, { name }), JSON.parse(await readFile("native.json", "utf8")));
});

test("reports are the program's, byte for byte", async () => {
  for (const format of ["csv", "json", "table", "html"])
    assert.equal(await report(content, { name, format }), await readFile(`native.${format}`, "utf8"));
  assert.equal(await report(content, { name }), await report(content, { name, format: "html" }));
});

test("content can be text, an array of bytes, a buffer, gzipped", async () => {
  const wanted = await predict(content);
  const alone = new Uint8Array(content).buffer;
  for (const input of [content.toString(), alone, new Uint8Array(alone), gzipSync(content), new Blob([content])])
    assert.deepEqual(await predict(input), wanted);
  await assert.rejects(predict(5), TypeError);
});

test("a file that cannot be predicted is an error with the program's message", async () => {
  await assert.rejects(predict("", { name: "a.csv" }), (error) => {
    assert.ok(error instanceof PredictionError);
    assert.equal(error.message, "a.csv: is empty; give a file with chemical shifts");
    return true;
  });
  await assert.rejects(predict(content, { chains: ["Z"] }), PredictionError);
});

test("shifts are used with or without corrections", async () => {
  const kept = (await predict(content, { asReferenced: true })).proteins[0];
  const corrected = (await predict(content, { deuterated: true })).proteins[0];
  assert.equal(corrected.deuteration, 1);
  assert.deepEqual(corrected.prolines.map((proline) => proline.p_cis_norm_as_referenced),
                   kept.prolines.map((proline) => proline.p_cis_norm));
  assert.notDeepEqual(corrected.prolines.map((proline) => proline.p_cis_norm),
                      kept.prolines.map((proline) => proline.p_cis_norm));
  for (const options of [{ deuterated: false }, {}, { asReferenced: true }])
    assert.equal((await predict(content, options)).proteins[0].deuteration, undefined);
});

test("files can be many, and have names", async () => {
  const files = [new File([content], name), { name: "b.str", content }, new Blob([""]), content];
  const { proteins, errors } = await predict(files);
  assert.deepEqual(proteins.map(({ file }) => file), [name, "b.str", "input 4"]);
  assert.deepEqual(errors, [{ file: "input 3", message: "input 3: is empty; give a file with chemical shifts" }]);
  assert.match(await report(files, { format: "csv" }), /^input 4,/m);
  await assert.rejects(predict([""]), PredictionError);
  assert.equal((await predict(new File([content], "mine.str"))).proteins[0].file, "mine.str");
});

test("a list without residue names takes them from a sequence", async () => {
  const list = { name: "list.prot", content: await readFile("list.prot") };
  const sequence = { name: "list.fasta", content: await readFile("list.fasta") };
  const wanted = JSON.parse(await readFile("list.json", "utf8"));
  assert.deepEqual(await predict(list, { sequence, firstResidue: 17 }), wanted);
  const { proteins: [{ prolines }] } = await predict(list, { sequence: await readFile("list.fasta", "utf8"), firstResidue: 17 });
  assert.deepEqual(prolines.map(({ resid, p_cis_norm }) => [resid, p_cis_norm]),
                   wanted.proteins[0].prolines.map(({ resid, p_cis_norm }) => [resid, p_cis_norm]));
  await assert.rejects(predict(list, { sequence }), { name: "PredictionError", message: /17/ });
  await assert.rejects(predict(list), PredictionError);
  await assert.rejects(predict(content, { sequence: "17" }), { name: "PredictionError", message: /^option sequence:1: is not a sequence/ });
  await assert.rejects(predict(list, { sequence, firstResidue: 1.5 }), /option "firstResidue" cannot be 1.5/);
});

test("results beside a structure are the program's", async () => {
  const structures = { name: "nuclease.pdb.gz", content: await readFile("nuclease.pdb.gz") };
  for (const format of ["csv", "json", "table", "html"])
    assert.equal(await report(content, { name, format, structures }), await readFile(`compared.${format}`, "utf8"));
  await assert.rejects(predict(content, { name, structures: [content] }),
                       { name: "PredictionError", message: /^input: has shifts, not a structure/ });
});

test("shift tables, flags and restraints are the program's", async () => {
  const tables = await shiftTables(content, { name });
  const list = "assigned_chem_shift_list_1";
  assert.deepEqual(tables, [{ file: name, chain: "1", list, table: await readFile("native.tab", "utf8") }]);
  assert.deepEqual(await contents(gzipSync(content)), [{ file: "input", chain: "1", list }]);
  assert.deepEqual(await contents(""), []);
  const { text, notes } = await restraints(content, { name, program: "rosetta", chainAs: ["1=A"] });
  assert.equal(text, await readFile("native.cst", "utf8"));
  assert.ok(Array.isArray(notes));
  await assert.rejects(restraints(content, { program: "rosetta" }), /--chain-as/);
  await assert.rejects(restraints(content, { program: "none" }), /there is no program "none"; there are cyana,/);
  await assert.rejects(restraints(content, { program: "pdb" }), PredictionError);
  const nef = { name: "flagged.nef", content: await readFile("flagged.nef") };
  assert.equal((await flaggedNef(nef)).text, await readFile("flags.nef", "utf8"));
  const replaced = await flaggedNef(nef, { replace: true });
  assert.equal(replaced.text, await readFile("replaced.nef", "utf8"));
  assert.match(replaced.notes[0], /PRO 3 was false, the shifts predict cis; replaced/);
  await assert.rejects(flaggedNef(content, { name }), PredictionError);
});

test("options are checked", async () => {
  await assert.rejects(predict(content, { chain: "A" }), /there is no option "chain"/);
  await assert.rejects(predict(content, { chains: "A" }), /option "chains" cannot be "A"/);
  await assert.rejects(report(content, { format: "pdf" }), /there is no format "pdf"/);
});

test("the module can be given, and its faults are errors", async () => {
  const address = new URL("node_modules/zorvela/zorvela.wasm", import.meta.url);
  await assert.rejects(load(new URL("none.wasm", address)), /none\.wasm/);
  await assert.rejects(load(content), /^Error: the bytes: not zorvela\.wasm/);
  await assert.rejects(load("http://127.0.0.1:9/zorvela.wasm"), /cannot be fetched .*give its address or bytes to load/);
  for (const source of [address, address.href, await readFile(address), undefined]) {
    await load(source);
    assert.equal((await predict(content)).proteins.length, 1);
  }
});

test("many calls at once do not disturb each other", async () => {
  const table = "resid,resname,atom,shift\n1,ALA,CA,52.1\n2,PRO,CB,32.0\n3,ALA,CA,52.0\n";
  const results = await Promise.all(Array.from({ length: 20 }, (_, i) => predict(i % 2 ? table : content)));
  results.forEach((result, i) => assert.equal(result.proteins[0].prolines.length, i % 2 ? 1 : 5));
});

test("the version is that of the package", async () => {
  const { version: packed } = JSON.parse(await readFile("node_modules/zorvela/package.json", "utf8"));
  const { version, tables } = await versions();
  assert.equal(version, packed);
  assert.match(await report(content), new RegExp(`${version}, reference tables ${tables}`));
});
