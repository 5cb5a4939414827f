"""Documents, comments and the page are plain English: none has a phrase of this list.

To check another document, add its name to CHECKED.
"""
import pathlib
import re
import unittest

from zorvela_tests.program import SOURCE

# A phrase to avoid, and a better one; case does not matter.
PHRASES = [
    (r"(?<!there )\b(is|are|was|were) no (?!longer|more)", "is not a, has no"),
    (r"\bstands?\b(?! for)", "is"),
    (r"\bsay(s|ing)? (what|so|how|which|where|from)\b", "tells, names, shows"),
    (r"\bbut for\b", "except"),
    (r"\bmend(s|ed|ing)?\b", "fix"),
    (r"\bas well\b(?! as)", "too"),
    (r"\bin place of\b", "instead of"),
    (r"\bwithout a word\b", "silently"),
    (r"\b(takes?|taken|took) (\w+ ){0,4}down\b", "index, record"),
    (r"\b(?<!white )rooms?\b", "module"),
    (r"\bwords of (a|the) file\b|\bfile's (own )?words\b", "raw content"),
    (r"\b(aside|stray)s?\b", "note"),
    (r"\bnot used (is|are)\b", "X is not used"),
]

# A doc comment begins with a verb, or with the name of a thing.
DOC_COMMENT = re.compile(r"^ *(?:.*; +)?///<? ?(?:What|The same|Whether|How)\b.*", re.MULTILINE)

CHECKED = [
    "CHANGELOG.md",
    "CONTRIBUTING.md",
    "README.md",
    "bench/*.*",
    "data/README.md",
    "doc/*.md",
    "doc/*.1",
    "doc/architecture.svg",
    "kit/**/*.cpp",
    "kit/**/*.h",
    "kit/report/run.schema.json",
    "kit/tests/**/*.py",
    "src/**/*.h",
    "src/*.cpp",
    "python/*.*",
    "python/*/*.py*",
    "script/*",
    "tests/docs/[!w]*",
    "tests/program/*.py",
    "tests/support/*.*",
    "tests/support/*/*.py",
    "tests/unit/*",
    "web/*.*",
    "web/module/*",
    "web/npm/*",
    "web/page/*",
    "web/tests/*.*",
]

# What a document may contain: our words where they are explained, and names of members.
EXCEPTIONS = {
    "doc/architecture.md": ["words of a file, raw content", "| aside |"],
}


# The comments and messages of a source, the labels of a picture; a file of another kind is a page, whose code does not count.
COMMENTS = {
    (".h", ".cpp"): r'//[/<]*(.*)|"((?:[^"\\\n]|\\.)*)"',
    (".js", ".mjs", ".ts", ".in", ".css"): r"(?:^|\s)(?://|/?\*+(?!/))(.*)",
    (".py", ".pyi", ".cmake", ".txt", ""): r'(?:^|\s)#(.*)|"""([^"]+)"""',
    (".svg", ".html"): r">([^<]+)<(?!/style)",
}


def prose(name, text):
    """Returns a text without code: comments and messages of a source, labels of a picture, a page without its code."""
    patterns = [pattern for suffixes, pattern in COMMENTS.items() if pathlib.PurePath(name).suffix in suffixes]
    for pattern in patterns:
        text = "\n".join(group for found in re.finditer(pattern, text, re.MULTILINE) for group in found.groups() if group)
    text = re.sub(r"^```.*?^```$", "", text, flags=re.MULTILINE | re.DOTALL)
    text = re.sub(r"`[^`\n]*`", "CODE", text)
    for allowed in EXCEPTIONS.get(name, []):
        text = text.replace(allowed, "")
    return " ".join(text.split())


def faults(name, text):
    """The phrases to avoid in a text, each with the words around it and its replacement."""
    text = prose(name, text)
    return [f'{name}: "...{text[max(0, found.start() - 30):found.end() + 20]}..."; better: {better}'
            for phrase, better in PHRASES for found in re.finditer(phrase, text, re.IGNORECASE)]


class Wording(unittest.TestCase):
    def test_documents_are_plain(self):
        source = pathlib.Path(SOURCE)
        for pattern in CHECKED:
            files = sorted(file for file in source.glob(pattern) if file.is_file())
            self.assertTrue(files, pattern)
            for file in files:
                name = file.relative_to(source).as_posix()
                with self.subTest(document=name):
                    text = file.read_text(encoding="utf-8")
                    self.assertEqual(faults(name, text), [])
                    self.assertEqual(DOC_COMMENT.findall(text), [])

    def test_each_phrase_is_found(self):
        for sentence in ("This is no shift file.", "The format stands in a table.", "A note says what was read.",
                         "All but for one.", "Errors that you can mend.", "The file is kept as well.",
                         "HA in place of CB.", "A row is skipped without a word.", "It takes the rows down.",
                         "Each room has tests.", "It reads the file's own words.", "An aside.",
                         "Not used is its N."):
            with self.subTest(sentence=sentence):
                self.assertEqual(len(faults("page.md", sentence)), 1)
                self.assertEqual(len(faults("file.h", f"int a;  ///< {sentence}\n")), 1)

    def test_a_doc_comment_without_a_verb_is_found(self):
        text = "/// What a file holds.\nint a;\nint b;  ///< The same for b\n/// Returns what a file holds.\n"
        self.assertEqual(DOC_COMMENT.findall(text), ["/// What a file holds.", "int b;  ///< The same for b"])

    def test_code_is_not_read(self):
        self.assertEqual(faults("page.md", "There is no prediction. See `room`.\n\n```console\nis no shift file\n```\n"), [])
        self.assertEqual(faults("page.svg", "<style>.room {}</style><text>kit/run</text>"), [])
        self.assertEqual(faults("file.cpp", 'room.stand = "\\"";\n'), [])
        self.assertEqual(len(faults("file.cpp", 'throw Error("is "\n      "no number");\n')), 1)
        for name, comment in (("a.py", 'fail("is no number")  # It stands here.\n'), ("script", "# It stands here.\n"),
                              ("a.py", '"""It stands here."""\n'), ("a.js", '/** It stands here. */\n"is no number"\n'),
                              ("a.html", '<p class="room">It stands here.</p>\n')):
            self.assertEqual(len(faults(name, comment)), 1, comment)
