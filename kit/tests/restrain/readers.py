"""Readers of what each program reads: from text to the bonds that it declares, without the comments.

A bond is (chain, number before, number of the proline); a chain or number that a format does not name is None.
Atoms are (chain, number, name).
"""
import ast
import re
import xml.etree.ElementTree as ElementTree


def without_comments(text, mark):
    return [line for line in (line.split(mark)[0].rstrip() for line in text.splitlines()) if line]


def cyana_sequence(text):
    """(name, number) of each residue."""
    return [(name, int(number)) for name, number in (line.split() for line in without_comments(text, "#"))]


def cyana(text):
    residues = cyana_sequence(text)
    return [(None, str(residues[i - 1][1]), str(number)) for i, (name, number) in enumerate(residues) if name == "cPRO"]


def angles(text):
    """Lines of CYANA and of makeANG_RST."""
    bonds = []
    for line in without_comments(text, "#"):
        number, residue, angle, lower, upper = line.split()
        assert (residue, angle, float(lower), float(upper)) == ("PRO", "OMEGA", -20, 20), line
        bonds.append((None, None, number))
    return bonds


SELECTION = r'\((?:segid "(\S{1,4})" and )?resid (-?\d+)\)'


def cns(text):
    bonds = []
    for line in without_comments(text, "!"):
        chain, before, other, proline = re.fullmatch(rf"patch CIPP reference=-={SELECTION} reference=\+={SELECTION} end", line).groups()
        assert chain == other, line
        bonds.append((chain or "", before, proline))
    return bonds


def topallhdg(text):
    found = [re.fullmatch(rf"patch CISP reference=NIL={SELECTION} end", line).groups() for line in without_comments(text, "!")]
    return [(chain or "", before, None) for chain, before in found]


def xplor_python(text):
    bonds = []
    modules = set()
    for statement in ast.parse(text).body:
        if isinstance(statement, ast.Import):
            modules |= {alias.name for alias in statement.names}
            continue
        call = statement.value
        assert call.func.value.id in modules and call.func.attr == "cisPeptide"
        before, chain = [ast.literal_eval(argument) for argument in call.args]
        bonds.append((chain, str(int(before)), None))
    return bonds


def aria(text):
    data = ElementTree.fromstring("<data>" + text + "</data>")
    assert {element.tag for element in data} <= {"cispropatch"}
    return [(element.attrib["segid"], None, element.attrib["residue"]) for element in data]


def tbl_atoms(text):
    words = " ".join(without_comments(text, "!"))
    restraints = []
    for statement in words.split("assign")[1:]:
        atoms = re.findall(r'\((?:segid "(\S{1,4})" and )?resid (-?\d+) and name (\w+)\)', statement)
        energy, angle, width, exponent = re.sub(r"\([^)]*\)", "", statement).split()
        assert (float(energy) > 0, float(angle), float(width), int(exponent)) == (True, 0, 20, 2)
        restraints.append(atoms)
    return restraints


def loops(text):
    """The loops of STAR text of plain words, as lists of {tag: value}."""
    words = [word for line in text.splitlines() for word in re.sub(r"(^|\s)#.*", "", line).split()]
    found, at = [], 0
    while "loop_" in words[at:]:
        at = words.index("loop_", at) + 1
        tags = []
        while words[at].startswith("_"):
            tags.append(words[at])
            at += 1
        values = []
        while at < len(words) and words[at] != "stop_" and not words[at].startswith(("loop_", "save_", "data_")):
            values.append(words[at])
            at += 1
        assert values and len(values) % len(tags) == 0, (tags, values)
        found.append([dict(zip(tags, values[i:i + len(tags)])) for i in range(0, len(values), len(tags))])
    return found


def nef_atoms(text):
    restraints = []
    for loop in loops(text):
        if "_nef_dihedral_restraint.index" not in loop[0]:
            continue
        for i, row in enumerate(loop, 1):
            row = {tag.split(".")[1]: value for tag, value in row.items()}
            assert (row["index"], row["restraint_id"], row["restraint_combination_id"], row["name"]) == (str(i), str(i), ".", "OMEGA")
            assert (float(row["weight"]), float(row["target_value"])) == (1, 0)
            assert (float(row["lower_limit"]), float(row["upper_limit"])) == (-20, 20)
            assert row["residue_name_3"] == row["residue_name_4"] == "PRO" and row["residue_name_1"] == row["residue_name_2"]
            restraints.append([tuple(row[f"{part}_{k}"] for part in ("chain_code", "sequence_code", "atom_name")) for k in range(1, 5)])
    return restraints


def rosetta_atoms(text):
    restraints = []
    for line in without_comments(text, "#"):
        words = line.split()
        assert (words[0], words[9:]) == ("Dihedral", ["CIRCULARHARMONIC", "0.0", "0.17"]), line
        restraints.append([(place[-1], place[:-1], name) for name, place in zip(words[1:9:2], words[2:9:2])])
    return restraints


def amber_atoms(text):
    """Numbers of atoms."""
    restraints = []
    for line in without_comments(text, "#"):
        atoms, r1, r2, r3, r4 = re.fullmatch(
            r" &rst iat = (\d+, \d+, \d+, \d+), r1 = (\S+), r2 = (\S+), r3 = (\S+), r4 = (\S+), rk2 = 2.0, rk3 = 2.0, &end", line).groups()
        assert float(r1) < float(r2) < 0 < float(r3) < float(r4)
        restraints.append([int(atom) for atom in atoms.split(",")])
    return restraints


def bonds_of_atoms(atoms_reader):
    def read(text):
        bonds = []
        for atoms in atoms_reader(text):
            (chain, before, ca), (_, same, c), (_, proline, n), (_, also, other) = atoms
            assert (ca, c, n, other) == ("CA", "C", "N", "CA") and (before, proline) == (same, also), atoms
            assert {atom[0] for atom in atoms} == {chain}
            bonds.append((chain, before, proline))
        return bonds
    return read


def cispep(text):
    """Dictionaries of the columns."""
    rows = []
    for line in text.splitlines():
        if line.startswith("REMARK   6 "):
            continue
        assert line.startswith("CISPEP "), line
        column = lambda first, last: line[first - 1:last].strip()
        rows.append({"serial": column(8, 10), "before": (column(16, 16), column(12, 14), column(18, 21) + column(22, 22)),
                     "proline": (column(30, 30), column(26, 28), column(32, 35) + column(36, 36)),
                     "model": column(44, 46), "omega": float(line[53:59])})
        between = [7, 11, 15, 17, *range(23, 26), 29, 31, *range(37, 44), *range(47, 54)]
        assert all(line[i - 1] == " " for i in between) and len(line) == 59, line
    return rows


READERS = {"cyana": cyana, "cyana-aco": angles, "cns": cns, "topallhdg": topallhdg, "xplor-python": xplor_python,
           "aria": aria, "tbl": bonds_of_atoms(tbl_atoms), "nef": bonds_of_atoms(nef_atoms),
           "rosetta": bonds_of_atoms(rosetta_atoms), "amber": angles}
COMMENTS = {"cns": "! ", "topallhdg": "! ", "tbl": "! ", "aria": "<!-- "}
