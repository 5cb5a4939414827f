"""zorvela-kit run --structure: models as many programs write them, with answers that are worked out here.

A case is a file and the copies of the protein that it holds, for each model. The omega of each bond is calculated
from the coordinates of these copies, not read from the file: what the program says must be the same.
"""
import math

import made_pair
import made_structure as made
from made_pair import OTHER, chain

SEQUENCE = made_pair.SEQUENCE
PROLINES = [i + 1 for i, letter in enumerate(SEQUENCE) if letter == "P"]
# Another protein with prolines, all of them cis where it is built so.
STRANGER = "GHHTRWCPNNYYDDPLLVVQQKKEEPSSTTRRFFMMAAGG"


# --- The independent calculator --------------------------------------------------------------------

def atom(residue, name):
    return next((tuple(round(x, 3) for x in a[1]) for a in residue.atoms if a[0] == name), None)


def omega(before, after):
    """From the normals of the two planes; None for atoms without a peptide bond."""
    a, b, c, d = atom(before, "CA"), atom(before, "C"), atom(after, "N"), atom(after, "CA")
    if None in (a, b, c, d) or made.distance(b, c) > 2.01:
        return None
    first = made.cross(made.sub(b, a), made.sub(c, b))
    second = made.cross(made.sub(c, b), made.sub(d, c))
    cosine = sum(x * y for x, y in zip(made.unit(first), made.unit(second)))
    return math.degrees(math.acos(max(-1, min(1, cosine))))


def states(models):
    """{proline: (cis, trans, twisted)} over all copies of all models."""
    counts = {}
    for position in PROLINES:
        sizes = [omega(copy[position - 2], copy[position - 1]) for copies in models for copy in copies]
        sizes = [size for size in sizes if size is not None]
        cis, trans = sum(s <= 30 for s in sizes), sum(s >= 150 for s in sizes)
        counts[position] = (cis, trans, len(sizes) - cis - trans)
    return counts


# --- Files -----------------------------------------------------------------------------------------

def lines(residues, chain_id="A", segid="", names=None):
    """ATOM lines; names: {residue name: the name in columns 18-21}."""
    result = []
    for line in made.pdb_atoms(chain_id, residues):
        name = (names or {}).get(line[17:20])
        if name:
            line = line[:17] + "%-4s" % name + line[21:]
        result.append("%-72s%-4s" % (line[:72], segid))
    return result


def text(*parts, end="END"):
    return "\n".join([line for part in parts for line in ([part] if isinstance(part, str) else part)] + [end, ""])


def far(residues, by=90):
    return made.moved(residues, by)


def renumbered(residues, first):
    return [made.Residue(r.name, first + i, r.atoms, r.code, r.het) for i, r in enumerate(residues)]


def hetero(residue, name):
    return made.Residue(name, residue.number, residue.atoms, residue.code, True)


def broken(residues, position):
    """The rest of the chain from this residue on is 5 A away."""
    return residues[:position - 1] + far(residues[position - 1:], 5)


def without(residues, *positions):
    return [r for i, r in enumerate(residues, 1) if i not in positions]


CIS, TRANS = chain(cis=[17]), chain()
COPY, SECOND = far(chain(cis=[9])), far(chain(cis=[26, 36]), 180)
STRANGE = far(chain(sequence=STRANGER, cis=[8, 15, 26]), 270)
OTHERS = far(chain(sequence=OTHER), 270)


def linker(first, count, name="LL5"):
    return ["ATOM  %5d  Q1  %-4s%1s%4d    %8.3f%8.3f%8.3f  1.00  0.00" % (1, name, "", n, n, 50, 50)
            for n in range(first, first + count)]


CASES = []


def case(name, content, models, *notes):
    CASES.append((name, content, models, notes))


# --- The first lines of a file ---
for record in ("AUTHOR    SOMEBODY", "USER     MADE", "HELIX    1   1 ALA A    3  GLY A    8  1",
               "METHOD    NMR", "# a comment", "; another one", "! and another", "", "JRNL        AUTH   N.N.",
               "KEYWDS    NMR", "SSBOND   1 CYS A    3    CYS A    9", "SHEET    1   A 2 THR A   1", "DBREF  1ABC A 1 40",
               "NUMMDL    1", "SOURCE    MADE", "Model of a protein, atoms below", "TER", "LINK", "ORIGX1      1.0"):
    case("begins with " + record[:10], text(record, lines(CIS)), [[CIS]])

# --- Two molecules in one chain id ---
for label, first, second in (("A", "A", "A"), ("blank", " ", " ")):
    case(label + ": two copies with TER", text(lines(CIS, first), "TER", lines(COPY, second), "TER"), [[CIS, COPY]],
         "holds 2 molecules")
    case(label + ": two copies without TER", text(lines(CIS, first), lines(COPY, second)), [[CIS, COPY]],
         "holds 2 molecules")
    case(label + ": the stranger after TER", text(lines(CIS, first), "TER", lines(STRANGE, second)), [[CIS]],
         "residues 1-40 (40 residues) has no shifts")
    case(label + ": the stranger before TER", text(lines(STRANGE, first), "TER", lines(CIS, second)), [[CIS]],
         "residues 1-40 (40 residues) has no shifts")
    case(label + ": numbers run on with TER", text(lines(CIS, first), "TER", lines(renumbered(COPY, 41), second)),
         [[CIS, COPY]])
    case(label + ": numbers run on without TER", text(lines(CIS, first), lines(renumbered(COPY, 41), second)),
         [[CIS, COPY]])
    case(label + ": numbers run on after a gap", text(lines(CIS, first), lines(renumbered(COPY, 101), second)),
         [[CIS, COPY]])
    case(label + ": a gap and TER", text(lines(CIS, first), "TER", lines(renumbered(COPY, 101), second)), [[CIS, COPY]])
    case(label + ": the stranger runs on", text(lines(CIS, first), lines(renumbered(STRANGE, 41), second)), [[CIS]],
         "residues that match no shift file: 41-80")
    case(label + ": after the stranger", text(lines(STRANGE, first), lines(renumbered(CIS, 41), second)), [[CIS]],
         "residues that match no shift file: 1-40")
    case(label + ": a peptide runs on", text(lines(CIS, first), lines(renumbered(OTHERS[:12], 101), second)), [[CIS]],
         "residues that match no shift file: 101-112")
    case(label + ": three copies", text(lines(CIS, first), lines(COPY, second), lines(SECOND, second)),
         [[CIS, COPY, SECOND]], "holds 3 molecules")
    for name in ("LL5", "PL", "LL"):
        case(label + ": linkers " + name, text(lines(CIS, first), linker(41, 20, name), lines(renumbered(COPY, 61), second)),
             [[CIS, COPY]])
case("linkers, then the stranger", text(lines(CIS, " "), linker(41, 20), lines(renumbered(STRANGE, 61), " ")), [[CIS]],
     "residues 61-100 (40 residues) has no shifts")
case("SEGID alone", text(lines(CIS, " ", "PROA"), lines(COPY, " ", "PROB")), [[CIS, COPY]])
case("SEGID alone, numbers run on", text(lines(CIS, " ", "A"), lines(renumbered(COPY, 41), " ", "B")), [[CIS, COPY]])
case("SEGID of a stranger", text(lines(CIS, " ", "A"), lines(STRANGE, " ", "B")), [[CIS]], "chain B (40 residues)")
case("SEGID in one chain id", text(lines(CIS, "A", "M1"), lines(COPY, "A", "M2")), [[CIS, COPY]], "holds 2 molecules")
case("homodimer", text(lines(CIS), "TER", lines(COPY, "B"), "TER"), [[CIS, COPY]])
case("chain names of two letters", text([line[:20] + "SA" + line[22:] for line in lines(CIS)],
                                        [line[:20] + "SB" + line[22:] for line in lines(COPY)]), [[CIS, COPY]])
case("copies lack the first residues", text(lines(without(CIS, 1, 2), " "), lines(COPY, " ")),
     [[CIS, COPY]])
case("copies lack a loop", text(lines(without(CIS, 12, 13), " "), lines(without(COPY, 12, 13), " ")), [[CIS, COPY]])
case("the other protein has a loop missing", text(lines(CIS, " "), lines(renumbered(without(STRANGE, 12, 13), 201), " ")),
     [[CIS]], "match no shift file")
case("superposed copies", text(lines(CIS), lines(far(CIS, 0.2)), lines(far(CIS, 0.4))),
     [[CIS, CIS, CIS]], "holds 3 molecules")

# --- One molecule that looks like several ---
case("a missing loop with TER", text(lines(CIS[:11]), "TER", lines(CIS[14:])), [[CIS]])
case("a missing loop", text(lines(CIS[:11]), lines(CIS[14:])), [[CIS]])
case("TER between bonded residues", text(lines(CIS[:16]), "TER", lines(CIS[16:])), [[CIS]])
case("numbers fall along the chain", text(lines(renumbered(CIS[:10], 201)), lines(renumbered(CIS[10:], 1))), [[CIS]])
case("negative numbers", text(lines(renumbered(CIS, -10))), [[CIS]])
for place in (1, 16, 17, 18):
    mse = hetero(CIS[place - 1], "MSE" if SEQUENCE[place - 1] == "M" else
                 {"P": "HYP"}.get(SEQUENCE[place - 1], CIS[place - 1].name))
    case("residue %d after TER" % place, text(lines(without(CIS, place)), "TER", lines([mse])), [[CIS]])
    case("residue %d after TER and water" % place, text(
        lines(without(CIS, place)), "TER", lines([mse]),
        "HETATM 9999  O   HOH A 301       0.000   0.000   0.000  1.00  0.00           O"), [[CIS]])
case("two residues after TER", text(lines(without(CIS, 8, 9)), "TER", lines([hetero(r, r.name) for r in CIS[7:9]])), [[CIS]])
case("residue 17 after TER in two copies of one name", text(
    lines(without(CIS, 17)), "TER", lines(without(COPY, 17)), "TER", lines([hetero(CIS[16], "PRO")]), "TER",
    lines([hetero(COPY[16], "PRO")])), [[CIS, COPY]])

# --- Residue names of four letters ---
NAMES = {"LYS": "LYS+", "ARG": "ARG+", "ASP": "ASP-", "GLU": "GLU-", "HIS": "HIS+"}
for name in ("cPRO", "CPRO", "NPRO"):
    case("name " + name, text(lines(CIS, "A", "", {**NAMES, "PRO": name})), [[CIS]])
    case("blank chain, name " + name, text(lines(CIS, " ", "", {**NAMES, "PRO": name})), [[CIS]])

# --- Models ---
def models(*parts, heads=None, tail="ENDMDL"):
    heads = heads or ["MODEL     %4d" % i for i in range(1, len(parts) + 1)]
    return [line for head, part in zip(heads, parts) for line in [head, *lines(part), "TER"] + ([tail] if tail else [])]


case("models", text(models(CIS, TRANS, CIS)), [[CIS], [TRANS], [CIS]])
case("models, line ends of Windows", text(models(CIS, TRANS, CIS)).replace("\n", "\r\n"), [[CIS], [TRANS], [CIS]])
case("no ENDMDL", text(models(CIS, TRANS, CIS, tail="")), [[CIS], [TRANS], [CIS]], "without ENDMDL")
case("one ENDMDL missing", text(models(CIS, tail=""), models(TRANS, CIS, heads=["MODEL 2", "MODEL 3"])),
     [[CIS], [TRANS], [CIS]], "without ENDMDL")
case("the last ENDMDL missing", text(models(CIS, TRANS)[:-1]), [[CIS], [TRANS]], "without ENDMDL")
case("words behind the number", text(models(CIS, TRANS, heads=["MODEL 3 REFINED", "MODEL        4 REFINED"])),
     [[CIS], [TRANS]])
case("models of one number", text(models(CIS, TRANS, heads=["MODEL        1"] * 2)), [[CIS], [TRANS]], "number of another")
case("END between models", text(lines(CIS), "END", lines(TRANS)), [[CIS], [TRANS]])
case("an impossible bond in one model", text(models(CIS, broken(CIS, 17), CIS)),
     [[CIS], [broken(CIS, 17)], [CIS]])
case("an impossible bond in the first model", text(models(broken(CIS, 17), CIS)), [[broken(CIS, 17)], [CIS]])
case("models of two copies", text(*(["MODEL %d" % n, *lines(a, " "), *lines(b, " "), "ENDMDL"]
                                    for n, a, b in ((1, CIS, COPY), (2, TRANS, SECOND)))),
     [[CIS, COPY], [TRANS, SECOND]], "holds 2 molecules")
for name, parts in (("mmCIF", [("A", CIS)]), ("mmCIF, two chains", [("A", CIS), ("B", COPY)]),
                    ("mmCIF, copies of one chain", [("A", CIS), ("A", COPY)]),
                    ("mmCIF, numbers run on", [("A", CIS), ("A", renumbered(COPY, 41))]),
                    ("mmCIF, a residue at the end", [("A", without(CIS, 17) + [hetero(CIS[16], "HYP")])])):
    CASES.append((name, made.mmcif(parts), [[CIS, COPY] if len(parts) == 2 else [CIS]], ()))


class HardModels(made_pair.Case):
    def test_every_case(self):
        self.assertGreaterEqual(len(CASES), 60)
        for name, content, copies, notes in CASES:
            with self.subTest(name):
                found = {int(position): tuple(int(row["models_" + state]) for state in ("cis", "trans", "twisted"))
                         for position, row in self.rows(content).items()}
                self.assertEqual(found, states(copies), self.stderr)
                for note in notes:
                    self.assertIn(note, self.stderr)

    def test_copies_are_named_apart(self):
        self.put("model.pdb", text(lines(CIS, " "), lines(renumbered(COPY, 41), " ")))
        result = self.run_kit("shifts.tab", "--structure", "model.pdb", "--format", "html")
        for part in ("residues 1-40", "residues 41-80"):
            self.assertIn("chain without a name, " + part, result.stdout)

    def test_models_without_the_bond_are_counted_and_named(self):
        content = text(models(TRANS, broken(TRANS, 17), TRANS, broken(TRANS, 17)))
        self.assertIn("the structure is trans in 2 of 4 models (mean |omega| 180 degrees); no bond in 2 of 4 models (2, 4).",
                      self.rows(content)["17"]["structure_sentence"])
