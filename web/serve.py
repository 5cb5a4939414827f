"""Serves a folder on the loopback address and prints the address: python3 serve.py FOLDER [PORT]"""
import functools
import http.server
import sys

folder = sys.argv[1]
port = int(sys.argv[2]) if len(sys.argv) > 2 else 8000


class Handler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *arguments):
        pass


handler = functools.partial(Handler, directory=folder)
try:
    server = http.server.ThreadingHTTPServer(("127.0.0.1", port), handler)
except OSError:  # another program has the port
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
print(f"Open http://127.0.0.1:{server.server_address[1]}/ in a browser; Ctrl-C ends.", flush=True)
try:
    server.serve_forever()
except KeyboardInterrupt:
    print()
