"""A small made data set: ten-residue proteins with one proline, whose shifts are known by construction."""
import os

from zorvela_tests.tables import shift_table

ATOMS = ["N", "HA", "C", "CA", "CB", "HN"]
TYPES = "ACDEFGHIKLMNPQRSTVWY"
# One random-coil value an atom, whatever the residue, and no neighbour effects: secondary shifts are
# then the observed shifts less these.
COIL = {"N": 120.0, "HA": 4.0, "C": 175.0, "CA": 55.0, "CB": 30.0, "HN": 8.0}
PROLINE = 5
LABELS = "entry,resid,label_structure,label_shift,cluster\n"


def sequence(number):
    """Another sequence for each number below 100; alanine, proline, alanine in the middle."""
    other = "DEFHIKLMNQ"
    return "G" + other[number % 10] + other[number // 10] + "APAGGGG"


class Data:
    """Writes the data set into a folder, and makes the command line for it."""

    def __init__(self, folder):
        self.folder = folder
        self.labels = []
        os.makedirs(os.path.join(folder, "entries"))
        self.put("coil.csv", "res," + ",".join(ATOMS) + "\n" +
                 "".join(t + "," + ",".join(str(COIL[a]) for a in ATOMS) + "\n" for t in TYPES))
        self.put("effects.csv", "neighbour,atom,nbr_at_i-1,nbr_at_i+1\n" +
                 "".join(f"{t},{a},0,0\n" for t in TYPES for a in ATOMS))
        self.put("counts.csv", "resname,cis_prev,cis_next,trans_prev,trans_next\n" +
                 "".join(f"{t},{i},{2 * i},{3},{19 - i}\n" for i, t in enumerate(TYPES)))

    def path(self, name):
        return os.path.join(self.folder, name)

    def put(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)

    def add(self, name, letters, label, secondary, cg=None, cluster=None, own=None):
        """A protein with the same secondary shift at all atoms of residues 4 and 6, and `own` (else the
        same) at the proline."""
        own = secondary if own is None else own
        rows = [(4, a, COIL[a] + secondary) for a in ATOMS]
        rows += [(PROLINE, a, COIL[a] + own) for a in ("HA", "C", "CA", "CB")]
        if cg is not None:
            rows.append((PROLINE, "CG", cg))
        rows += [(6, a, COIL[a] + secondary) for a in ATOMS]
        self.put(f"entries/{name}.tab", shift_table(letters, rows))
        self.labels.append(f"{name},{PROLINE},{label},,{cluster or name}\n")

    def write_labels(self):
        self.put("labels.csv", LABELS + "".join(self.labels))

    def sources(self):
        return ["--neighbours", self.path("counts.csv"), "--random-coil", self.path("coil.csv"),
                "--neighbour-effects", self.path("effects.csv")]

    def proteins(self):
        return ["--entries", self.path("entries"), "--labels", self.path("labels.csv")]

    def train(self, output, *options):
        return ["train", *self.proteins(), *self.sources(), "--output", self.path(output), *options]
