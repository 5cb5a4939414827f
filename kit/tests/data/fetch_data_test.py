"""script/fetch-data against a small server on the loopback address."""
import gzip
import http.server
import os
import pathlib
import subprocess
import sys
import tempfile
import threading
import unittest

from zorvela_tests.program import SOURCE

ENTRY = b"data_16585\n" + b"_x 1\n" * 50000
MODEL = gzip.compress(b"data_1STN\n_y 2\n" * 1000, mtime=0)


class Server(http.server.BaseHTTPRequestHandler):
    """Serves two files. `cut`: bytes after which the next transfers break off; `busy`: answers 503 so often."""
    files = {"/b/16585": ENTRY, "/p/st/1stn": MODEL}
    requests, cut, busy = [], [], 0

    def do_GET(self):
        Server.requests.append(self.path)
        if Server.busy:
            Server.busy -= 1
            return self.send_error(503)
        if self.path not in self.files:
            return self.send_error(404)
        content = self.files[self.path]
        self.send_response(200)
        self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        self.wfile.write(content[:Server.cut.pop(0)] if Server.cut else content)
        self.close_connection = True

    def log_message(self, *arguments):
        pass


class FetchData(unittest.TestCase):
    def setUp(self):
        Server.requests, Server.cut, Server.busy = [], [], 0
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Server)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def fetch(self, wanted="16585 1STN\n", *options):
        (self.folder / "wanted.txt").write_text(wanted, encoding="utf-8")
        base = "http://127.0.0.1:%d" % self.server.server_address[1]
        return subprocess.run(
            [sys.executable, "-B", SOURCE / "script" / "fetch-data", "wanted.txt", "data", "--pause", "0.01", "--timeout", "5",
             "--bmrb", base + "/b/{id}", "--pdb", base + "/p/{middle}/{id}", *options],
            cwd=self.folder, capture_output=True, text=True, check=False, timeout=60,
            env={k: v for k, v in os.environ.items() if "proxy" not in k.lower()})

    def read(self, name):
        return (self.folder / "data" / name).read_bytes()

    def test_fetches_each_file_once(self):
        result = self.fetch("# two\nbmr16585\n1stn 16585\n")
        self.assertEqual((result.returncode, result.stdout), (0, "2 fetched, 0 there already, 0 failed\n"), result.stderr)
        self.assertEqual((self.read("bmrb/bmr16585.str"), self.read("structures/1stn.cif.gz")), (ENTRY, MODEL))
        self.assertEqual(self.fetch().stdout, "0 fetched, 2 there already, 0 failed\n")
        self.assertEqual(len(Server.requests), 2)

    def test_a_busy_server_and_a_cut_line_are_asked_again(self):
        Server.busy, Server.cut = 1, [10]
        self.assertEqual(self.fetch("1stn\n").returncode, 0)
        self.assertEqual(len(Server.requests), 3)
        self.assertEqual(self.read("structures/1stn.cif.gz"), MODEL)
        Server.cut = [10, 10, 10, 10]
        result = self.fetch("16585\n")
        self.assertEqual(result.returncode, 1)
        self.assertIn("run the same command again later", result.stderr)
        self.assertFalse((self.folder / "data" / "bmrb").exists())

    def test_what_is_not_there_is_named_and_the_rest_fetched(self):
        result = self.fetch("99999 1stn\n")
        self.assertEqual((result.returncode, result.stdout), (1, "1 fetched, 0 there already, 1 failed\n"))
        self.assertEqual(len(result.stderr.splitlines()), 1)
        self.assertIn("404", result.stderr)

    def test_bad_lists(self):
        for wanted, message in (("", "has no accession numbers"), ("16585\n../x\n", 'wanted.txt:2: "../x" is no accession')):
            result = self.fetch(wanted)
            self.assertEqual(result.returncode, 1)
            self.assertIn(message, result.stderr)
        self.assertEqual(Server.requests, [])
