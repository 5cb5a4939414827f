"""The options in the man page of zorvela-kit, as the program lists them.

In doc/zorvela-kit.1 a comment `.\\" options: SUBCOMMAND` begins them and `.\\" end of options` ends them.
tests/docs/check_docs.py --update writes the lines between them.
"""
import re
import subprocess
import textwrap

from zorvela_tests.program import KIT, SOURCE

MAN_PAGE = SOURCE / "doc" / "zorvela-kit.1"
REGION = re.compile(r'(?<=^\.\\" options: )(\w+)\n.*?(?=^\.\\" end of options$)', re.MULTILINE | re.DOTALL)


def listed_options():
    """Returns rows of sub-command, names, name and range of the value, default, heading, text."""
    done = subprocess.run([KIT, "--list-options"], capture_output=True, text=True, check=True)
    return [line.split("\t") for line in done.stdout.splitlines()]


def item(names, value, default, text):
    """Returns an option in mdoc, each sentence on its own lines."""
    name, _, values = value.partition(":")
    flags = " , ".join("Fl " + flag[1:] for flag in names.split(","))
    argument = " Ar " + name.lower().replace("|", " | ") if name else ""
    sentences = re.split(r"(?<=\.) (?=[A-Z])", text)
    if values:
        sentences.append("Values: " + re.sub(",(?! )", ", ", values.strip("{}")))
    if default:
        sentences.append("Default: " + default)
    lines = [line for sentence in sentences
             for line in textwrap.wrap(sentence if sentence[-1] in ".?" else sentence + ".", 79)]
    return f".It {flags}{argument}\n" + "".join(re.sub(r"^(?=[.'])", r"\\&", line) + "\n" for line in lines)


def options_of(command):
    """Returns the options of a sub-command in mdoc, under their headings."""
    rows = [row[1:] for row in listed_options() if row[0] == command]
    text = ""
    for heading in dict.fromkeys(row[3] for row in rows):
        if heading != "Options":
            text += f".Pp\n{heading}:\n"
        items = "".join(item(*row[:3], row[4]) for row in rows if row[3] == heading)
        text += f".Bl -tag -width Ds\n{items}.El\n"
    return text


def renewed():
    """Returns the man page with the current options."""
    return REGION.sub(lambda region: f"{region[1]}\n{options_of(region[1])}", MAN_PAGE.read_text(encoding="utf-8"))
