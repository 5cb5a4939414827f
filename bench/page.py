"""Prints the size of the module and how long a user waits for it: script/web bench"""
import gzip
import os
import pathlib
import statistics
import subprocess
import tempfile

import browser
import web
from zorvela_tests import program

REPEATS = 9
NUCLEASE = program.SOURCE / "examples" / "nuclease.str"

# Time by the browser's clock from the drop to the first line of the result; the text is repeated in a number of files.
WAIT_FOR_DROP = """
const [text, repeats, files, done] = arguments;
const status = document.getElementById("status");
status.textContent = "";
const transfer = new DataTransfer();
const content = text.repeat(repeats);
for (let n = 0; n < files; ++n) transfer.items.add(new File([content], `${n}`));
const start = performance.now();
new MutationObserver((_, observer) => {
  if (!status.textContent.endsWith(".")) return;
  observer.disconnect();
  done(performance.now() - start);
}).observe(status, { childList: true });
dispatchEvent(new DragEvent("drop", { dataTransfer: transfer, cancelable: true }));
"""

PREDICT = """
import { readFileSync } from "node:fs";
const [folder, file, repeats] = process.argv.slice(1);
const { Zorvela } = await import(`${folder}/zorvela.js`);
const zorvela = await Zorvela.start(await WebAssembly.compile(readFileSync(`${folder}/zorvela.wasm`)));
const bytes = readFileSync(file);
for (let i = 0; i < repeats; ++i) {
  const run = zorvela.newRun();
  const start = performance.now();
  const used = process.cpuUsage();
  run.add("shifts", bytes);
  console.log(performance.now() - start, process.cpuUsage(used).user / 1000);
  run.end();
}
"""


def drops(page, count, text=NUCLEASE.read_text(), repeats=1, files=1):
    return [page.driver.execute_async_script(WAIT_FOR_DROP, text, repeats, files) for _ in range(count)]


def many_shifts():
    """CSV of 2 MB: 17,000 residues with six shifts each, far more than any protein has."""
    atoms = (("N", 120.1), ("HN", 8.2), ("CA", 55.9), ("CB", 33.1), ("C", 175.9), ("HA", 4.4))
    names = "ALA SER PRO VAL THR LEU LYS GLU GLN ILE".split()
    rows = (f"{i},{names[i % 10]},{atom},{value + i % 13 / 10:.3f}\n" for i in range(1, 17001) for atom, value in atoms)
    return "resid,resname,atom,shift\n" + "".join(rows)


def predict(path, repeats):
    """Milliseconds by the clock and of the processor, for each of the repeats in Node."""
    result = subprocess.run(["node", "--input-type=module", "-e", PREDICT, str(web.NPM), str(path), str(repeats)],
                            capture_output=True, text=True, check=True)
    return [tuple(map(float, line.split())) for line in result.stdout.splitlines()]


def main():
    print(f"load {os.getloadavg()[0]:.1f} on {os.cpu_count()} cores")
    wasm = (web.SITE / "zorvela.wasm").read_bytes()
    print(f"zorvela.wasm: {len(wasm) / 1e3:.0f} kB, gzipped {len(gzip.compress(wasm, 9)) / 1e3:.0f} kB")

    server = browser.Server()
    firsts, later = [], []
    for _ in range(3):
        page = browser.Page(server.address)
        first, *others = drops(page, REPEATS)
        many = min(drops(page, 3, (program.SOURCE / "examples" / "ubiquitin.tab").read_text(), files=200))
        refused = min(drops(page, 3, "a,b,c,d\n", repeats=3_750_000))
        page.close()
        firsts.append(first)
        later += others
    server.stop()
    print(f"nuclease (812 shifts) in Chromium, from the drop to the result: first {statistics.median(firsts):.0f} ms, "
          f"later {statistics.median(later):.0f} ms")
    print(f"200 files: {many / 1000:.1f} s; 30 MB of CSV without shifts refused: {refused / 1000:.1f} s")

    (first, _), *others = predict(NUCLEASE, REPEATS)
    wall, processor = (statistics.median(times) for times in zip(*others))
    print(f"read and predicted in Node: first {first:.0f} ms, later {wall:.0f} ms, {processor:.0f} ms of the processor")
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "many.csv"
        path.write_text(many_shifts())
        wall, processor = min(predict(path, 3))
        size = path.stat().st_size / 1e6
    print(f"{size:.1f} MB of CSV in Node: {wall / 1000:.1f} s, {processor / 1000:.1f} s of the processor")


if __name__ == "__main__":
    main()
