"""Prints the size of the module and how long a user waits for it: script/web bench"""
import gzip
import statistics
import subprocess

import browser
import web
from zorvela_tests import program

REPEATS = 9
NUCLEASE = program.SOURCE / "examples" / "nuclease.str"

# From the drop to the words of the outcome, as the browser's own clock has it.
WAIT_FOR_DROP = """
const [bytes, done] = arguments;
const status = document.getElementById("status");
status.textContent = "";
const transfer = new DataTransfer();
transfer.items.add(new File([new Uint8Array(bytes)], "nuclease.str"));
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
  run.add("nuclease.str", bytes);
  console.log(performance.now() - start);
  run.end();
}
"""


def drops(page, count):
    content = list(NUCLEASE.read_bytes())
    return [page.driver.execute_async_script(WAIT_FOR_DROP, content) for _ in range(count)]


def main():
    wasm = (web.SITE / "zorvela.wasm").read_bytes()
    print(f"zorvela.wasm: {len(wasm) / 1e3:.0f} kB, gzipped {len(gzip.compress(wasm, 9)) / 1e3:.0f} kB")

    server = browser.Server()
    firsts, later = [], []
    for _ in range(3):
        page = browser.Page(server.address)
        first, *others = drops(page, REPEATS)
        page.close()
        firsts.append(first)
        later += others
    server.stop()
    print(f"nuclease (812 shifts) in Chromium, from the drop to the result: first {statistics.median(firsts):.0f} ms, "
          f"later {statistics.median(later):.0f} ms")

    result = subprocess.run(["node", "--input-type=module", "-e", PREDICT, str(web.NPM), str(NUCLEASE), str(REPEATS)],
                            capture_output=True, text=True, check=True)
    first, *others = map(float, result.stdout.split())
    print(f"read and predicted in Node: first {first:.0f} ms, later {statistics.median(others):.0f} ms")


if __name__ == "__main__":
    main()
