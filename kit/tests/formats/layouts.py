"""Writes a protein's shifts in the layouts of assignment programs, by the rules of each."""
import csv
import io

from zorvela_tests import tables

NAMES = dict(zip("ACDEFGHIKLMNPQRSTVWY", "ALA CYS ASP GLU PHE GLY HIS ILE LYS LEU MET ASN PRO GLN ARG SER THR VAL TRP "
                                         "TYR".split()))
NUCLEI = {"C": "13C", "N": "15N", "H": "1H"}


class Protein:
    """A sequence by number, "?" for residues that are not known, and (number, atom, value as text) rows."""
    def __init__(self, letters, shifts, first=1):
        self.letters = dict(enumerate(letters, first))
        self.shifts = shifts

    def name(self, number):
        return NAMES.get(self.letters[number], "UNK")

    def named(self):
        """All residues by number, with the state of cysteines and a name for unknown ones."""
        return [(n, {"C": "CYSH", "c": "CYSS"}.get(letter, self.name(n))) for n, letter in self.letters.items()]

    def known(self):
        return [n for n, letter in self.letters.items() if letter != "?"]

    def wide(self, atoms, missing):
        """A row of cells for each residue with shifts."""
        values = {(n, atom): value for n, atom, value in self.shifts}
        return [(n, [values.get((n, atom), missing) for atom in atoms])
                for n in self.known() if any((n, atom) in values for atom in atoms)]

    def seen_from_next(self):
        """The rows with (number, "-1") for those of prolines, under the residue after each."""
        return [(n + 1, "-1", atom, value) if self.letters[n] == "P" and n + 1 in self.letters else
                (n, "", atom, value) for n, atom, value in self.shifts]

    def with_rows(self, rows, by=0):
        """The same sequence, perhaps with other numbers, and these rows."""
        return Protein("".join(self.letters.values()), rows, min(self.letters) + by)

    def only(self, keep):
        """With the rows alone for which keep(number, atom) is true."""
        return self.with_rows([row for row in self.shifts if keep(row[0], row[1])])

    def renumbered(self, by):
        return self.with_rows([(n + by, atom, value) for n, atom, value in self.shifts], by)

    def of_residue(self, number):
        """Its values by atom."""
        return {atom: value for n, atom, value in self.shifts if n == number}


def of_table(text):
    """The protein of a shift table."""
    return Protein(*tables.shifts_of(text))


def nucleus(atom):
    return NUCLEI[atom[0]]


# --- Sequences ------------------------------------------------------------------------------------

def seq(protein):
    """Numbers only where they jump; prolines and cysteines as the program calls them; a comment."""
    lines = ["# sequence"]
    for n in protein.known():
        number = "" if n - 1 in protein.known() and n % 10 else "%6d" % n
        lines.append(protein.name(n) + number)
    return "\n".join(lines + ["SS 901"]) + "\n"


def whole_seq(protein):
    return "".join("%s %d\n" % (name, n) for n, name in protein.named())


def seq_of_chain(protein):
    return "".join("%-5s A%d\n" % (protein.name(n), n) for n in protein.known())


def seq_lower(protein):
    """NMRView: lower case, a number where it jumps."""
    return "".join("%s%s\n" % (protein.name(n).lower(), "" if n - 1 in protein.known() else " %d" % n)
                   for n in protein.known())


def fasta(protein):
    return ">protein | START: %d\n%s\n" % (min(protein.letters), "".join(protein.letters.values()).replace("?", "X"))


# --- Lists with a sequence beside them --------------------------------------------------------------

def xeasy(protein, chain="", names=False):
    lines = ["# Chemical shift file", ""]
    others = [(n, atom, "999.000") for n in protein.known()[:9] for atom in ("QQD", "O", "HT", "SG", "CD1/2")]
    for i, (n, atom, value) in enumerate(protein.shifts + others, 3884):
        line = "%5d %7s %5.3f %-5s %3s" % (i, value, 0, atom, chain + str(n))
        lines.append(line + ("  %s %s" % (protein.name(n), protein.letters[n]) if names else "") + ("  # x" * (i % 7 == 0)))
    return "\n".join(lines) + "\n"


def nmrview(protein, chain="", tab=False):
    rows = protein.shifts + [(n, atom, "1.000") for n in protein.known()[:9] for atom in ("HG1#", "HB1/HB2", "QQD")]
    return "".join(("%s%d.%s\t%s\t%d\n" if tab else "%s%3d.%-8s %s %d\n") %
                   (chain, n, {"HN": "H"}.get(atom, atom), value, 1) for n, atom, value in rows).replace(
                       ": ", ":")


def cns(protein):
    return "".join("do ( store1 = %s ) ( resid %d and name %s )\n" % (value, n, atom) for n, atom, value in protein.shifts)


def without_names(protein):
    return "resid\tatom\tshift\n" + "".join("%d\t%s\t%s\n" % row for row in protein.shifts)


def shift_table(protein, sequence=""):
    return sequence + "VARS RESID ATOMNAME SHIFT\nFORMAT %4d %4s %8.3f\n\n" + "".join(
        "%4d %4s %s\n" % row for row in protein.shifts)


# --- Lists with names -------------------------------------------------------------------------------

def sparky(protein, header=True, neighbours=False):
    lines = [" Group   Atom  Nuc    Shift   SDev  Assignments", ""] if header else []
    rows = protein.seen_from_next() if neighbours else [(n, "", a, v) for n, a, v in protein.shifts]
    for n, step, atom, value in rows:
        lines.append("%7s %6s %4s %8s %6.3f %6d" % (protein.letters[n] + str(n) + step, atom, nucleus(atom), value, 0, 2))
    for group in ("X205", "?", "g24"):
        lines.append("%7s %6s %4s %8s %6.3f %6d" % (group, "CA", "13C", "55.100", 0, 1))
    return "\n".join(lines) + "\n"


def written(rows, delimiter=",", **options):
    out = io.StringIO()
    csv.writer(out, delimiter=delimiter, lineterminator="\n", **options).writerows(rows)
    return out.getvalue()


def ccpnmr3(protein, delimiter=",", hidden=False, older=False):
    """Titles hold line feeds in quotes. Offset residues have no type; where columns are hidden, NmrAtom alone says."""
    feed = " " if older else "\n"
    titles = ["Unique ID" if older else "ID", "Value%s(ppm)" % feed, "Value Error%s(ppm)" % feed]
    titles += ["NmrAtom"] if hidden else ["ChainCode", "SequenceCode", "ResidueType", "AtomName"]
    rows = [titles + ["Total%sPeak Count" % feed, "Comment"]]
    for i, (n, step, atom, value) in enumerate(protein.seen_from_next()):
        kind = "" if step else protein.name(n)
        label = ["NA:A.%d%s.%s.%s" % (n, step, kind, atom)] if hidden else ["A", "%d%s" % (n, step), kind or "None", atom]
        rows.append([i + 1, value + "000001", "None"] + label + ["", ""])
    unassigned = ["NA:@-.@12..CA"] if hidden else ["@-", "@12", "None", "CA"]
    return written(rows + [[9999, "55.1", "None"] + unassigned + ["", "two\nlines"]], delimiter)


def nef(protein):
    rows = "".join("  A %d %s .\n" % row for row in protein.named())
    text = ("data_x\nsave_nef_molecular_system\n_nef_molecular_system.sf_category nef_molecular_system\nloop_\n"
            "_nef_sequence.chain_code\n_nef_sequence.sequence_code\n_nef_sequence.residue_name\n_nef_sequence.linking\n" +
            rows + "stop_\nsave_\nsave_nef_chemical_shift_list_s\n"
            "_nef_chemical_shift_list.sf_category nef_chemical_shift_list\nloop_\n" +
            "".join("_nef_chemical_shift.%s\n" % tag
                    for tag in "chain_code sequence_code residue_name atom_name value".split()))
    for n, step, atom, value in protein.seen_from_next():
        text += "  A %d%s %s %s %s\n" % (n, step, "." if step else protein.name(n), {"HN": "H"}.get(atom, atom), value)
    return text + "  @- @1-1 . CA 59.29\n  '#2 ' @1 . H 8.5\nstop_\nsave_\n"


def ccpnmr2_measurements(protein, delimiter="\t"):
    rows = [["Number", "#", "Resonance", "Value (ppm)", "SD", "Chain", "Isotope", "Fig of Merit", "Peaks", "Details"]]
    for i, (n, atom, value) in enumerate(protein.shifts, 1):
        label = "%d%s%s" % (n, protein.name(n).capitalize(), atom.capitalize())
        rows.append([i, i, label, value + "00", "0.0", "MS1:A", nucleus(atom), "1.0", "1", ""])
    return written(rows + [[999, 999, "{5}[123]", "55.10000", "0.0", "", "13C", "1.0", "1", ""]], delimiter)


def ccpnmr2_table(protein):
    atoms = "N HN C CA CB HA".split()
    text = "! %s\n" % " ".join(atom.capitalize() for atom in atoms)
    for n, cells in protein.wide(atoms + ["HA2", "CG"], "-"):
        cells = cells[:len(atoms)]
        values = protein.of_residue(n)
        pair = [values[atom] for atom in ("HA2", "HA3") if atom in values]
        others = [values["CG"] + ":Cg"] if "CG" in values else []
        if len(pair) == 2:
            cells[atoms.index("HA")] = ",".join(pair)
        elif pair:
            others.append(pair[0] + ":Ha2")
        text += " ".join([str(n), protein.name(n).capitalize()] + cells + others) + "\n"
    return text


def star_csv(protein):
    """The loop of an entry as CSV, its first line the tags."""
    tags = "ID Comp_index_ID Seq_ID Comp_ID Atom_ID Atom_type Val Val_err Ambiguity_code".split()
    return written([["_Atom_chem_shift." + tag for tag in tags]] +
                   [[i, n, n, protein.name(n), atom, atom[0], value, "0.1", "1"]
                    for i, (n, atom, value) in enumerate(protein.shifts, 1)])


def database_dump(protein):
    tags = "Entry_ID Comp_index_ID Comp_ID Atom_ID Val".split()
    return written([tags] + [[1, n, protein.name(n), atom, value] for n, atom, value in protein.shifts],
                   quoting=csv.QUOTE_ALL)


def frame_csv(protein):
    """The first column of a data frame counts the rows and has no name."""
    return written([["", "residue", "name", "atom", "shift"]] +
                   [[i, n, protein.name(n), atom, value] for i, (n, atom, value) in enumerate(protein.shifts)])


def frame_printed(protein):
    """The rows of a printed data frame have one word more than its header."""
    return "      residue name atom    shift\n" + "".join(
        "%-5d %7d %4s %4s %8s\n" % (i, n, protein.name(n), atom, value)
        for i, (n, atom, value) in enumerate(protein.shifts)) + "\n[%d rows x 4 columns]\n" % len(protein.shifts)


def star_without_entity(protein):
    """NMR-STAR with a sequence of ID and Comp_ID alone, and rows that name no entity."""
    return ("data_x\nsave_e\n_Entity.Sf_category entity\nloop_\n_Entity_comp_index.ID\n_Entity_comp_index.Comp_ID\n" +
            "".join("%d %s\n" % (n, NAMES.get(letter, "UNK")) for n, letter in protein.letters.items()) +
            "stop_\nsave_\nsave_l\n_Assigned_chem_shift_list.Sf_category assigned_chemical_shifts\nloop_\n" +
            "".join("_Atom_chem_shift.%s\n" % tag for tag in "ID Comp_index_ID Seq_ID Comp_ID Atom_ID Val".split()) +
            "".join("%d %d %d %s %s %s\n" % (i, n, n, protein.name(n), atom, value)
                    for i, (n, atom, value) in enumerate(protein.shifts, 1)) + "stop_\nsave_\n")


def eight_words(protein):
    return "".join("%d %d %s %s %s %s 1.000 0\n" % (i, n, protein.name(n), {"HN": "H"}.get(atom, atom), atom[0], value)
                   for i, (n, atom, value) in enumerate(protein.shifts, 1))


AUTOASSIGN = "HN N CO-1 CA-1 CB-1 HA-1 CO CA CB HA".split()


def autoassign(protein):
    """Own and i-1 columns, empty cells by place, a tail in brackets. Prolines have no row."""
    values = {(n, {"C": "CO"}.get(atom, atom)): value for n, atom, value in protein.shifts}
    text = "%-6s" % "AA" + "".join("%9s" % {"N": "N15"}.get(title, title) for title in AUTOASSIGN) + "\n"
    for n in protein.known():
        cells = [values.get((n - 1, title[:-2]) if title.endswith("-1") else (n, title), "") for title in AUTOASSIGN]
        if protein.letters[n] != "P" and any(cells):
            text += "%-6s" % (protein.letters[n] + str(n)) + "".join("%9s" % cell for cell in cells) + "  (GS178 115.HSQC)\n"
    return text


def seen_by_autoassign(protein):
    def has_row(n):
        return protein.letters.get(n, "?") not in "?P"
    return protein.only(lambda n, atom: (has_row(n) and atom in "HN N C CA CB HA".split()) or
                        (has_row(n + 1) and atom in "C CA CB HA".split()))


def garret(protein):
    text = ""
    for n in protein.known():
        rows = "".join("%s %s\n" % row for row in protein.of_residue(n).items())
        text += "%d %s\n%s;\n" % (n, protein.name(n), rows) if rows else ""
    return text


def pipp(protein):
    text = "SHIFT_FL_FRMT RES_SIAD\nFIRST_RES_IN_SEQ %d\n\n" % min(protein.letters)
    for n in protein.known():
        text += "RES_ID %d\nRES_TYPE %s\nSPIN_SYSTEM_ID %d\nHETEROGENEITY 100\n%s    HG2|HG3 2.05\nEND_RES_DEF\n\n" % (
            n, protein.name(n), n, "".join("    %s  %s\n" % row for row in protein.of_residue(n).items()))
    return text


def abacus(protein):
    text = ""
    for n in protein.known():
        rows = protein.of_residue(n)
        if rows:
            text += "%d %s 4 %s 106\n" % (n, protein.letters[n], rows.pop("C", "0.000"))
            text += "".join("%s %s 2.100 HG2\n" % (value, atom) for atom, value in rows.items())
    return text + "Q\n"


def one_row_per_residue(protein):
    atoms = "HA HA2 HA3 CA CB CO N HN CG".split()
    renamed = protein.with_rows([(n, {"C": "CO"}.get(a, a), v) for n, a, v in protein.shifts])
    return "#NUM AA %s\n" % " ".join(atoms) + "".join(
        "%d %s %s\n" % (n, protein.letters[n], " ".join(cells)) for n, cells in renamed.wide(atoms, "0.0000"))


def rosetta(protein):
    return "".join("%s %d %s\n" % (protein.letters[n], n, " ".join(cells))
                   for n, cells in protein.wide("C CA CB HA N".split(), "9999.00"))


# --- Peak lists -----------------------------------------------------------------------------------

PEAK_LISTS = {
    "XEASY": "# Number of dimensions 2\n#INAME 1 H\n#INAME 2 N\n   1   8.310 109.200 1 U 1.0E+05 0.0E+00 e 0 7 8 0\n",
    "Sparky": "      Assignment         w1         w2\n\n        G12N-HN    109.200      8.310\n        A13N-HN    123.100      8.050\n",
    "NMRView": "label dataset sw sf\nH N\nhsqc.nv\n{8000.0} {2000.0}\n{600.1} {60.8}\n"
               " H.L H.P H.W N.L N.P N.W vol int stat\n0 {12.H} 8.310 0.02 {12.N} 109.200 0.2 1.0 1.0 0\n",
    "CcpNmr 3": "#,Pid,Assign F1,Assign F2,Pos F1,Pos F2,Height\n1,PK:hsqc.1.1,A.12.GLY.H,A.12.GLY.N,8.310,109.200,1.0\n",
    "CcpNmr 2": "Number\t#\tPosition F1\tPosition F2\tAssign F1\tAssign F2\tHeight\n1\t1\t8.310\t109.200\t12GlyH\t12GlyN\t1.0\n",
    "processing": "VARS   INDEX X_AXIS Y_AXIS X_PPM Y_PPM ASS\nFORMAT %5d %9.3f %9.3f %8.3f %8.3f %s\n1 10.0 20.0 8.310 109.200 G12\n",
    "NEF": "data_x\nsave_nef_nmr_spectrum_a\n_nef_nmr_spectrum.sf_category nef_nmr_spectrum\nloop_\n_nef_peak.index\n"
           "_nef_peak.position_1\n_nef_peak.chain_code_1\n_nef_peak.sequence_code_1\n_nef_peak.residue_name_1\n"
           "_nef_peak.atom_name_1\n1 8.310 A 12 GLY H\nstop_\nsave_\n",
}
