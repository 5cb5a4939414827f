#!/usr/bin/env python3
"""Compares the documents, help texts, man pages and the schema with the programs.

  check_docs.py             the programs of build/release; all checks
  check_docs.py --update    write the real output into the documents and the options into the man page
  check_docs.py --build build/sanitize
"""
import argparse
import os
import pathlib
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
SUPPORT = HERE.parent / "support"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "release")
    parser.add_argument("--update", action="store_true", help="write the real output into the documents")
    arguments = parser.parse_args()
    os.environ.update(ZORVELA_SOURCE=str(ROOT), ZORVELA_PROGRAM=str(arguments.build.resolve() / "zorvela"),
                      ZORVELA_KIT=str(arguments.build.resolve() / "kit" / "zorvela-kit"), PYTHONPATH=str(SUPPORT))
    if arguments.update:
        sys.path.insert(0, str(SUPPORT))
        import blocks  # pylint: disable=import-outside-toplevel  # they read the environment
        import man_page  # pylint: disable=import-outside-toplevel
        for document in blocks.DOCUMENTS:
            blocks.update(document)
        man_page.MAN_PAGE.write_text(man_page.renewed(), encoding="utf-8")
        return 0
    tests = map(str, sorted(HERE.glob("*_test.py")))
    return subprocess.run([sys.executable, "-B", "-m", "zorvela_tests", *tests], check=False).returncode


if __name__ == "__main__":
    sys.exit(main())
