// Unpacking, for `node --test` in a folder with the installed package.
import assert from "node:assert/strict";
import { test } from "node:test";
import { gzipSync } from "node:zlib";

import { predict } from "zorvela";

const table = "resid,resname,atom,shift\n1,ALA,CA,52.1\n2,PRO,CB,32.0\n3,ALA,CA,52.0\n".padEnd(5000);
const packed = gzipSync(table);
const messageOf = (bytes) => predict(bytes, { name: "a.gz" }).then(() => "", (error) => error.message);

test("several parts are one text", async () => {
  const parts = [0, 30, 31, 4000].map((from, i, all) => gzipSync(table.slice(from, all[i + 1])));
  assert.deepEqual(await predict(Buffer.concat(parts)), await predict(table));
});

test("a file that ends too early is an error", async () => {
  for (const length of [2, 10, 40, packed.length - 1])
    assert.equal(await messageOf(packed.subarray(0, length)), "a.gz: the gzip file ends too early; fetch it again");
});

test("a damaged file is an error", async () => {
  for (const at of [3, 12, packed.length - 6]) {
    const damaged = Buffer.from(packed);
    damaged[at] ^= 0xff;
    assert.equal(await messageOf(damaged), "a.gz: the gzip file is damaged; fetch it again");
  }
});

test("a file that unpacks to more than the library accepts is not unpacked to its end", async () => {
  const bomb = gzipSync(Buffer.alloc(257 * 2 ** 20));
  assert.equal(await messageOf(bomb),
               "a.gz: is larger than 256 MiB; give the part that is needed");
});
