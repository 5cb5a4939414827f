"""What `script/web build` makes, and whether it is there."""
import functools
import os
import pathlib
import re
import subprocess
import unittest

from zorvela_tests import program

WEB = pathlib.Path(os.environ.get("ZORVELA_WEB", program.SOURCE / "build" / "web"))
SITE = WEB / "site"
NPM = WEB / "npm"


def needs_module(test):
    """Skips a class of tests where the module has not been built."""
    return unittest.skipUnless((NPM / "zorvela.wasm").exists(), f"no {NPM}: script/web build makes it")(test)


@functools.lru_cache
def formats():
    """The report formats, as the program's help names them."""
    text = program.kit("run", "--help").stdout
    return re.search(r"--format\b[^{]*\{([^}]*)\}", " ".join(text.split()))[1].split(",")


def node(code, *arguments, **options):
    return subprocess.run(["node", "--input-type=module", "-e", code, *arguments], capture_output=True, text=True,
                          timeout=300, check=False, **options)
