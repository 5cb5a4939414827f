"""python3 -m zorvela: the program zorvela-kit, with the reference tables of this package."""
import os
import pathlib
import sys

folder = pathlib.Path(__file__).parent
program = str(folder / "zorvela-kit")
os.environ.setdefault("ZORVELA_DIR", str(folder))
os.execv(program, [program, *sys.argv[1:]])
