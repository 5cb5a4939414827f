"""Blocks of a document with the output of a program, and the output that they should have.

In a document, a comment before a fenced block tells its kind:
  <!-- file: NAME -->           a file for the commands that follow
  <!-- run: COMMAND -->         a command of zorvela or zorvela-kit, and its output; it must end with status 0
  <!-- run 255: COMMAND -->     the same with another status
  <!-- content: NAME -->        a file that the last command wrote
The commands run in a folder that holds tab/, examples/ and kit/ of the checkout. tests/docs/check_docs.py --update
writes the real output into the documents.
"""
import pathlib
import re
import shlex
import shutil
import subprocess
import tempfile

from zorvela_tests.program import KIT, SOURCE, ZORVELA, environment

DOCUMENTS = [SOURCE / "README.md", SOURCE / "CONTRIBUTING.md", *sorted((SOURCE / "doc").glob("*.md"))]
PROGRAMS = {"zorvela": ZORVELA, "zorvela-kit": KIT}

BLOCK = re.compile(r"<!-- (?P<kind>file|run|content)(?: (?P<status>\d+))?: (?P<what>.+?) -->\n```\w*\n"
                   r"(?P<text>.*?)^```$", re.MULTILINE | re.DOTALL)
RUNNING_TIME = re.compile(r"^ Running time: \S+ seconds$", re.MULTILINE)


def masked(text):
    return RUNNING_TIME.sub(" Running time: # seconds", text)


def run(directory, *arguments, program=ZORVELA):
    """Runs the program in a directory, with no main directory set."""
    return subprocess.run([str(program), *arguments], cwd=directory, env=environment(), stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=120, check=False)


class Workplace:
    """An empty directory with the tables, the examples and the files of the companion in it."""

    def __enter__(self):
        self.path = pathlib.Path(tempfile.mkdtemp())
        for name in ("tab", "examples", "kit"):
            (self.path / name).symlink_to(SOURCE / name)
        return self.path

    def __exit__(self, *unused):
        shutil.rmtree(self.path)


def real_block(directory, block):
    """Returns the text that a block should have."""
    kind, what = block["kind"], block["what"]
    if kind == "file":
        (directory / what).write_text(block["text"], encoding="utf-8")
        return block["text"]
    if kind == "content":
        return (directory / what).read_text(encoding="utf-8")
    name, *arguments = shlex.split(what)
    done = run(directory, *arguments, program=PROGRAMS[name])
    if done.returncode != int(block["status"] or 0):
        raise ValueError(f"{what}: status {done.returncode}, standard error: {done.stderr.decode()}")
    return f"$ {what}\n{done.stderr.decode()}{done.stdout.decode()}"


def blocks_of(document):
    """Returns pairs of a block in the document and the text that it should have."""
    text = document.read_text(encoding="utf-8")
    with Workplace() as directory:
        return text, [(block, real_block(directory, block)) for block in BLOCK.finditer(text)]


def update(document):
    """Writes the real output into a document, unless only a running time differs."""
    text, blocks = blocks_of(document)
    for block, real in reversed(blocks):
        if masked(block["text"]) != masked(real):
            text = text[: block.start("text")] + real + text[block.end("text") :]
            print(f"{document.relative_to(SOURCE)}: {block['what']}: rewritten")
    document.write_text(text, encoding="utf-8")
