"""Small files that could ask for gigabytes or minutes, at any size, and what a program takes for them.

The bound: memory below 64 MiB plus 24 times the unpacked bytes, processor time below 1 s plus 1 s for each unpacked
MiB.
"""
import dataclasses
import gzip
import os
import pathlib
import resource
import subprocess
import sys
import tempfile
import typing

from zorvela_tests import program, tables

MIB = 1 << 20
# A program that ignores the bound does not take the machine with it.
MOST_ADDRESSES = 6 << 30
MOST_SECONDS = 300
# A program's peak of memory counts that of the process which starts it, so a small one does.
MEASURE = """
import resource, subprocess, sys
status = subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL).returncode
usage = resource.getrusage(resource.RUSAGE_CHILDREN)
print(status, usage.ru_maxrss, usage.ru_utime + usage.ru_stime)
"""


def memory_bound(unpacked):
    """Bytes."""
    return 64 * MIB + 24 * unpacked


def time_bound(unpacked):
    """Seconds."""
    return 1 + unpacked / MIB


@dataclasses.dataclass
class Taken:
    """What one run of zorvela-kit took."""
    status: int
    message: str
    packed: int  # bytes
    unpacked: int  # bytes
    memory: int  # bytes
    seconds: float

    def memory_bound(self):
        return memory_bound(self.unpacked)

    def figures(self):
        """For the message of a test: what the program says can be long."""
        return dataclasses.replace(self, message=self.message[-300:])

    def is_bounded(self):
        return self.memory < self.memory_bound() and self.seconds < time_bound(self.unpacked)


def measured(files, arguments):
    """Runs zorvela-kit on files (name: text), each gzipped where its name ends in .gz; `arguments` name them as
    they are there."""
    unpacked = packed = 0
    with tempfile.TemporaryDirectory() as folder:
        for name, text in files.items():
            data = text.encode()
            unpacked += len(data)
            if name.endswith(".gz"):
                data = gzip.compress(data, 6)
            packed += len(data)
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(data)
        ended = subprocess.run([sys.executable, "-S", "-c", MEASURE, program.KIT, *arguments], cwd=folder,
                               env=program.environment(ZORVELA_DIR=program.SOURCE), stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=MOST_SECONDS, check=True,
                               preexec_fn=None if is_sanitized() else limit_addresses)
    status, kilobytes, seconds = ended.stdout.split()
    return Taken(int(status), ended.stderr.decode(), packed, unpacked, int(kilobytes) * 1024,
                 float(seconds))


def is_sanitized():
    """Sanitizers take their own share of time, memory and addresses."""
    return bool(os.environ.get("ZORVELA_SANITIZE"))


def limit_addresses():
    resource.setrlimit(resource.RLIMIT_AS, (MOST_ADDRESSES, MOST_ADDRESSES))


# --- Parts of files ---------------------------------------------------------------------------------

def loop(category, tags):
    """The heading of a loop."""
    return "loop_\n" + "".join("_%s.%s\n" % (category, tag) for tag in tags.split())


ROWS = loop("Atom_chem_shift", "Entity_assembly_ID Comp_index_ID Comp_ID Atom_ID Val")
BARE_ROWS = loop("Atom_chem_shift", "Comp_index_ID Comp_ID Atom_ID Val")
ONE_SHIFT = BARE_ROWS + "2 PRO CA 63\n"
NEF_HEAD = ("data_x\nsave_nef_nmr_meta_data\n_nef_nmr_meta_data.sf_category nef_nmr_meta_data\n"
            "_nef_nmr_meta_data.format_name nmr_exchange_format\nsave_\n")
NEF_SEQUENCE = loop("nef_sequence", "chain_code sequence_code residue_name")
NEF_ROWS = loop("nef_chemical_shift", "chain_code sequence_code residue_name atom_name value")
STAR2_ROWS = "loop_\n_Residue_seq_code\n_Residue_label\n_Atom_name\n_Chem_shift_value\n"
CSV_HEAD = "resid,resname,atom,shift\n"
BARE_ATOMS = "data_x\n" + loop("atom_site", "label_atom_id label_comp_id label_asym_id label_seq_id Cartn_x Cartn_y Cartn_z")
ATOMS_OF_MODELS = BARE_ATOMS + "_atom_site.pdbx_PDB_model_num\n"
BACKBONE = (("H", 8.1), ("HA", 4.2), ("C", 175.1), ("CA", 55.1), ("CB", 30.2), ("N", 120.3))
NAMES = "GLY ALA SER PRO VAL THR LEU LYS GLU GLN".split()
LETTERS = "GASPVTLKEQ"


def lines(count, line):
    """The line with 1, 2, ... in it."""
    return "".join(line % i for i in range(1, count + 1))


def letters(count):
    """A sequence with every tenth residue a proline."""
    return (LETTERS * (count // 10 + 1))[:count]


def backbone(residues, row):
    """A row (number, name, atom, ppm) for each backbone shift."""
    return "".join(row % (i, NAMES[(i - 1) % 10], atom, ppm)
                   for i in range(1, residues + 1) for atom, ppm in BACKBONE)


def entity(sequence, name="protein"):
    return ("data_x\nsave_e\n_Entity.ID 1\n_Entity.Name %s\n_Entity.Polymer_type polypeptide(L)\n"
            "_Entity.Polymer_seq_one_letter_code\n;\n%s\n;\nsave_\n" % (name, sequence))


def copies(count):
    return loop("Entity_assembly", "ID Entity_ID") + lines(count, "%d 1\n") + "stop_\n"


def lists(count, rows="2 PRO CA 63\n"):
    return "".join("save_l%d\n%s%sstop_\nsave_\n" % (i, BARE_ROWS, rows) for i in range(count))


def table_of(sequence="AP", columns="", rows="   2 P CA 63.0\n"):
    """A shift table whose formats may be too few for its columns."""
    return ("DATA SEQUENCE " + sequence + "\nVARS RESID RESNAME ATOMNAME SHIFT " + columns +
            "\nFORMAT %4d %1s %4s %8.3f\n\n" + rows)


# --- Files as they should be ------------------------------------------------------------------------

def star3_entry(residues):
    """Rows in all the columns of a BMRB entry."""
    isotopes = {"H": 1, "C": 13, "N": 15}
    rows = []
    for i in range(1, residues + 1):
        name = NAMES[(i - 1) % 10]
        for atom, value in BACKBONE:
            rows.append("%6d . 1 1 %5d %5d %s %-4s %s %2d %8.3f 0.020 . 1 . . . A %5d %s %-4s . 99999 1\n" % (
                len(rows), i, i, name, atom, atom[0], isotopes[atom[0]], value, i, name, atom))
    return entity(letters(residues)) + loop(
        "Atom_chem_shift", "ID Assembly_atom_ID Entity_assembly_ID Entity_ID Comp_index_ID Seq_ID Comp_ID Atom_ID Atom_type "
        "Atom_isotope_number Val Val_err Assign_fig_of_merit Ambiguity_code Occupancy Resonance_ID "
        "Auth_entity_assembly_ID Auth_asym_ID Auth_seq_ID Auth_comp_ID Auth_atom_ID Details Entry_ID "
        "Assigned_chem_shift_list_ID") + "".join(rows)


def star2_entry(residues):
    return ("data_x\nsave_m\n_Saveframe_category monomeric_polymer\n_Mol_residue_sequence\n;\n%s\n;\nsave_\n"
            "save_s\n_Saveframe_category assigned_chemical_shifts\n" % letters(residues) + STAR2_ROWS +
            backbone(residues, "%d %s %s %.3f\n") + "stop_\nsave_\n")


def nef_entry(residues):
    return (NEF_HEAD + "save_nef_molecular_system\n_nef_molecular_system.sf_category nef_molecular_system\n" +
            loop("nef_sequence", "index chain_code sequence_code residue_name linking") +
            "".join("%d A %d %s middle\n" % (i + 1, i + 1, NAMES[i % 10]) for i in range(residues)) + "stop_\nsave_\n"
            "save_nef_chemical_shift_list_1\n_nef_chemical_shift_list.sf_category nef_chemical_shift_list\n" + NEF_ROWS +
            backbone(residues, "A %d %s %s %.3f\n") + "stop_\nsave_\n")


def csv_file(residues):
    return CSV_HEAD + backbone(residues, "%d,%s,%s,%.3f\n")


def prot_file(residues):
    rows = [row.split() for row in backbone(residues, "%d %s %s %.3f\n").splitlines()]
    return "".join("%d %s 0.000 %s %s %s\n" % (i, shift, atom, number, name)
                   for i, (number, name, atom, shift) in enumerate(rows))


def shift_table(residues):
    return tables.full_table(letters(residues))


def pdb_file(residues, models=1, chains="A", first=1):
    """Residues on a line, four backbone atoms each."""
    text = []
    for model in range(1, models + 1):
        text.append("MODEL %8d\n" % model)
        for chain in chains:
            for i in range(residues):
                for number, atom in enumerate(("N", "CA", "C", "O")):
                    text.append("ATOM  %5d  %-3s %s %s%4d    %8.3f%8.3f%8.3f  1.00  0.00           %s\n" % (
                        0, atom, NAMES[i % 10], chain, (first + i) % 10000, 1.27 * (i % 7000) + 0.4 * number,
                        number % 2, 0, atom[0]))
            text.append("TER\n")
        text.append("ENDMDL\n")
    return "".join(text) + "END\n"


def mmcif_file(residues, chains=1):
    return "data_x\n" + loop(
        "atom_site", "group_PDB id type_symbol label_atom_id label_alt_id label_comp_id label_asym_id label_entity_id "
        "label_seq_id Cartn_x Cartn_y Cartn_z occupancy auth_seq_id auth_asym_id pdbx_PDB_model_num") + "".join(
            "ATOM 1 %s %s . %s A%d 1 %d %.3f %d 0 1.0 %d A%d 1\n" % (
                atom[0], atom, NAMES[i % 10], chain, i + 1, 1.27 * i + 0.4 * number, number % 2, i + 1, chain)
            for chain in range(chains) for i in range(residues) for number, atom in enumerate(("N", "CA", "C", "O")))


def ca_chains(names, residues, step=3.8):
    """The least that is read: chains with the sequence of `letters`, CA atoms alone."""
    return BARE_ATOMS + "".join("CA %s %s %d %.1f 0 0\n" % (NAMES[i % 10], name, i + 1, step * i)
                                for name in names for i in range(residues))


def bare_mmcif(residues, chains):
    return ca_chains(numbered_names(chains), residues, 4)


def numbered_names(count, name="A%d"):
    return [name % i for i in range(1, count + 1)]


def prolines_of_mmcif(n):
    return BARE_ATOMS + "".join("CA PRO A %d %.1f 0 0\n" % (i, 3.8 * i) for i in range(n))


# --- The attacks ------------------------------------------------------------------------------------

@dataclasses.dataclass
class Attack:
    """A file at a size, and the command that reads it."""
    title: str
    name: str  # of the file
    make: typing.Callable[[int], str]
    sizes: typing.Tuple[int, ...]
    command: typing.Tuple[str, ...] = ("import",)
    beside: typing.Optional[typing.Callable[[int], str]] = None  # the first file of the command

    def taken(self, size):
        packed = self.name + ".gz"
        files = {packed: self.make(size)}
        if self.beside:
            files[self.command[1]] = self.beside(size)
        arguments = [packed if part == "FILE" else part for part in self.command]
        return measured(files, arguments if "FILE" in self.command else [*arguments, packed])


def star_of_chains(chains, residues, rows):
    """Copies of one molecule, each with the rows of a list that names its copy."""
    return entity(letters(residues)) + copies(chains) + ROWS + lines(chains, rows)


def blocks_of_copies(n):
    """Entries of 1,000 copies each, whose shifts are of none of them."""
    one = entity("GP" * 50)[len("data_x\n"):] + copies(999) + BARE_ROWS + "2 PRO XX 63\nstop_\n"
    return "".join("data_x%d\n%s" % (i, one) for i in range(n)) + "data_y\n" + entity("GP")[len("data_x\n"):] + ONE_SHIFT


RUN = ("run", "--format", "json")
BESIDE_CSV = ("run", "x.csv", "--structure", "FILE")
BESIDE_STAR = ("run", "x.str", "--structure", "FILE")
BESIDE_STAR_JSON = (*BESIDE_STAR, "--format", "json")
ANNOTATE = ("annotate", "FILE", "--output", "out.nef")
ALL_LISTS = ("run", "--list", "all")
USUAL = (100, 1000, 10000)  # residues: few, as usual, more than any known protein has

FORMATS = [
    *(Attack(title, name, make, USUAL, RUN) for title, name, make in (
        ("NMR-STAR 3", "a.str", star3_entry), ("NMR-STAR 2.1", "a.str", star2_entry), ("NEF", "a.nef", nef_entry),
        ("CSV", "a.csv", csv_file), ("assignment list", "a.prot", prot_file), ("shift table", "a.tab", shift_table))),
    Attack("HTML report", "a.csv", csv_file, USUAL, ("run", "--format", "html")),
    Attack("explained", "a.csv", csv_file, USUAL, ("run", "--explain")),
    Attack("annotated", "a.nef", nef_entry, USUAL, ANNOTATE),
    Attack("PDB, models", "a.pdb", lambda n: pdb_file(100, n), (1, 10, 100), BESIDE_CSV, lambda n: csv_file(100)),
    Attack("PDB, residues", "a.pdb", pdb_file, (100, 1000, 3500), BESIDE_CSV, csv_file),
    Attack("mmCIF, chains", "a.cif", lambda n: mmcif_file(100, n), (1, 10, 100), BESIDE_CSV, lambda n: csv_file(100)),
    Attack("mmCIF, residues", "a.cif", mmcif_file, (100, 1000, 3500), BESIDE_CSV, csv_file),
]

ATTACKS = [
    Attack("lists x copies", "a.str", lambda n: entity("GP") + copies(n) + lists(n), (10, 100, 1000)),
    Attack("lists x copies x residues", "a.str", lambda n: entity("P" * n) + copies(n) + lists(n), (10, 100, 1000)),
    Attack("lists x copies, all", "a.str", lambda n: entity("GP") + copies(n) + lists(n), (10, 100, 1000),
           ("import", "--list", "all")),
    Attack("bond rows x copies", "a.str", lambda n: entity("CCP") + copies(n) + loop(
        "Entity_bond", "Type Entity_ID Comp_index_ID_1 Comp_index_ID_2") + "disulfide 1 1 2\n" * (100 * n), (10, 100, 1000)),
    Attack("long name x copies", "a.str", lambda n: entity("GAP", "n" * (5000 * n)) + copies(n) + ROWS + "1 3 PRO CA 63\n",
           (10, 100, 1000)),
    Attack("molecules", "a.str", lambda n: "data_x loop_ _Entity.ID\n" + "1\n" * n, (1000, 100000, 19900000)),
    Attack("residues, NMR-STAR 3", "a.str", lambda n: "data_x save_e _Entity.ID 1\n" + loop(
        "Entity_comp_index", "ID Comp_ID") + lines(n, "%d PRO\n") + "save_ " + ONE_SHIFT, (1000, 40000, 1000000)),
    Attack("residues, NMR-STAR 2.1", "a.str", lambda n: (
        "data_x save_m _Saveframe_category monomeric_polymer loop_ _Residue_seq_code _Residue_label\n" +
        lines(n, "%d PRO\n") + "save_\nsave_s _Saveframe_category assigned_chemical_shifts " + STAR2_ROWS +
        "2 PRO CA 63\nsave_\n"), (1000, 40000, 1000000)),
    Attack("residues, NEF", "a.nef", lambda n: NEF_HEAD + NEF_SEQUENCE + lines(n, "A %d PRO\n") + "stop_ " + NEF_ROWS +
           "A 2 PRO CA 63\n", (1000, 40000, 1000000)),
    Attack("letters, NMR-STAR 3", "a.str", lambda n: entity("P" * n) + ONE_SHIFT, (10000, 1000000, 50000000)),
    Attack("letters, shift table", "a.tab", lambda n: table_of("P" * n), (10000, 1000000, 50000000)),
    Attack("rows, shift table", "a.tab", lambda n: table_of(rows="   2 P CA 63.0\n" * n), (1000, 90000, 2000000)),
    Attack("columns, shift table", "a.tab", lambda n: table_of(columns="a " * n, rows="2 P CA 63.0 " + "1 " * n + "\n"),
           (1000, 100000, 5000000)),
    Attack("cells, shift table", "a.tab", lambda n: table_of(
        columns=" ".join(map(str, range(300))), rows=("2 P CA 63.0 " + "1 " * 300 + "\n") * n), (100, 3000, 50000)),
    Attack("remarks, shift table", "a.tab", lambda n: "REMARK Residue 1 here is residue 17 there\n" * n + shift_table(30),
           (1000, 30000, 1000000)),
    Attack("cells above a header", "a.csv", lambda n: ("a," * n + "\n") * 50 + csv_file(10), (1000, 40000, 1200000)),
    # In the CSV and the table of `run` each row has it.
    *(Attack(title, "a.str", lambda n: entity(letters(2000), "n" * n) + BARE_ROWS + backbone(2000, "%d %s %s %.3f\n"),
             (1000, 100000, 1000000), command)
      for title, command in (("chain name", ("run", "--format", "csv")), ("chain name, table", ("run",)))),
    Attack("chains, CSV", "a.csv", lambda n: "chain," + CSV_HEAD + lines(n, "c%d,1,ALA,CA,52\n"), (100, 1000, 1000000),
           ("run",)),
    Attack("columns, CSV", "a.csv", lambda n: "resid,resname" + ",CA" * n + "\n1,ALA" + ",52.1" * n + "\n",
           (100, 10000, 1000000)),
    *(Attack(title + ", CSV", "a.csv", make, (1000, 50000, 2000000)) for title, make in (
        ("quotes", lambda n: CSV_HEAD + '1,ALA,"CA""",52\n' * n),
        ("line feeds in quotes", lambda n: CSV_HEAD + '1,ALA,"CA\n\n",52\n' * n),
        ("open quotes", lambda n: CSV_HEAD + ',"' + '""a,"' * n))),
    Attack("rows, assignment list", "a.out", lambda n: "1.C 1.\n" * n, (1000, 90000, 2000000)),
    Attack("words, assignment list", "a.prot", lambda n: "1 1.0 " * n + "\n", (1000, 90000, 2000000)),
    Attack("far residues, CSV", "a.csv", lambda n: CSV_HEAD + "".join("%d,PRO,CA,63\n" % (1 + 1000 * i) for i in range(n)),
           (10, 100, 100000)),
    Attack("no shifts", "a.txt", lambda n: "neither shifts nor anything else 1.5 2.5\n" * n, (1000, 50000, 2000000)),
    # On one line: its end is far from each.
    Attack("quoted words", "a.str", lambda n: "data_x " + "'' " * n, (10000, 1000000, 9000000)),
    Attack("$words", "a.str", lambda n: "data_x _a " + "$a " * n, (10000, 1000000, 19000000)),
    Attack("$words for shifts", "a.str", lambda n: "data_x loop_ _Atom_chem_shift.Val " + "$a " * n,
           (10000, 1000000, 19000000)),
    Attack("save frames", "a.str", lambda n: lines(n, "save_a%d _b c\n"), (1000, 90000, 1000000)),
    *(Attack(title, "a.str", lambda n: entity("GP" * n) + lists(n), sizes, (*ALL_LISTS, *report))
      for title, sizes, report in (
          ("all lists", (10, 30, 70), ("--format", "json")), ("all lists, pictures", (10, 30, 70), ("--format", "html")),
          ("all lists, explained", (10, 30, 70), ("--explain",)),
          ("too many lists", (200, 400, 900), ("--format", "json")))),
    Attack("gaps x chains", "a.str", lambda n: "data_x " + ROWS + "".join(
        "%d %d PRO CA 63\n" % (chain, 1 + 1000 * i) for chain in range(1, n + 1) for i in range(20)), (2, 100, 900)),
    Attack("offsets of chains", "a.str", lambda n: entity("GP" * 50) + copies(n) + ROWS + "".join(
        "%d %d GLY CA 45\n" % (chain, 1001 + 2 * i) for chain in range(1, n + 1) for i in range(5)), (10, 100, 400)),
    Attack("entries in a file", "a.str", lambda n: lines(
        n, "data_x%d _Entity.ID 1 _Entity.Polymer_seq_one_letter_code GP " + ONE_SHIFT), (10, 900, 20000)),
    Attack("chains x chains, PDB", "a.pdb", lambda n: pdb_file(20, 1, "".join(chr(65 + i) for i in range(26)) * n),
           (1, 10, 33), BESIDE_CSV, lambda n: "chain," + CSV_HEAD + "".join(
               "c%d,%d,%s,CA,55\n" % (c, i + 1, NAMES[i % 10]) for c in range(30 * n) for i in range(20))),
    Attack("chains that are aligned", "a.cif", lambda n: bare_mmcif(1400, n), (1, 10, 100), BESIDE_STAR,
           lambda n: entity("GP" * 5000) + ONE_SHIFT),
    *(Attack(title + ", mmCIF", "a.cif", make, sizes, BESIDE_CSV, lambda n: csv_file(100)) for title, sizes, make in (
        ("prolines", (1000, 29000, 1000000), prolines_of_mmcif),
        ("chains", (1000, 29000, 1000000),
         lambda n: BARE_ATOMS + "".join("CA PRO A%d %d 0 0 0\n" % (i, i) for i in range(n))),
        ("models in turn", (1000, 29000, 1000000),
         lambda n: ATOMS_OF_MODELS + "".join("CA PRO A %d 0 0 0 %d\n" % (i, i % 5000) for i in range(n))),
        # The atoms of a residue are far from one another.
        ("scattered residues", (1000, 29000, 1000000), lambda n: BARE_ATOMS + "".join(
            "%s PRO A %d 0 0 0\n" % (atom, i * 7919 % n) for atom in ("N", "CA", "C") for i in range(n))),
        ("atoms given again", (1000, 50000, 3000000), lambda n: prolines_of_mmcif(10) + "CA PRO A 1 0 0 0\n" * n),
        ("atoms without place", (1000, 50000, 1000000),
         lambda n: prolines_of_mmcif(10) + "".join("CA PRO A %d . 0 0\n" % i for i in range(n))),
        ("words", (10000, 1000000, 50000000), lambda n: "data_x\nloop_\n_a\n" + "a " * n + "\n" + prolines_of_mmcif(10)),
        ("lost value", (10000, 1000000, 20000000),
         lambda n: "data_x\nloop_\n_a\n_b\n" + "a a\n" * n + "a\n" + prolines_of_mmcif(10)))),
    Attack("prolines", "a.str", lambda n: entity("GP" * n) + ONE_SHIFT, (50, 500, 5000), RUN),
]

# Where one part of a file is looked up in another one.
PRODUCTS = [
    *(Attack("chains x equal " + what, "a.cif", lambda n, name=name: ca_chains(numbered_names(2 * n, name), 5),
             (10, 100, 990), BESIDE_STAR_JSON, lambda n: star_of_chains(n, 5, "%d 3 SER CA 58\n"))
      for what, name in (("proteins", "A%d"), ("names", "%d"))),
    Attack("chains x prolines", "a.cif", lambda n: ca_chains(numbered_names(n), 100), (10, 100, 300), BESIDE_STAR_JSON,
           lambda n: star_of_chains(n, 100, "%d 4 PRO CB 32\n")),
    Attack("long names of chains", "a.cif", lambda n: ca_chains(["A1" + "a" * (400 * n)], 5), (10, 100, 990),
           BESIDE_STAR_JSON, lambda n: star_of_chains(n, 5, "%d 3 SER CA 58\n")),
    *(Attack("long names of " + what, "a.cif", make, (10, 100, 990), BESIDE_STAR_JSON,
             lambda n: star_of_chains(n, 10, "%d 4 PRO CA 58\n")) for what, make in (
                 ("residues", lambda n: ca_chains(["A1"], 10).replace("CA PRO", "CA P" + "X" * (400 * n))),
                 ("models", lambda n: ca_chains(["A1"], 10).replace(BARE_ATOMS, ATOMS_OF_MODELS).replace(
                     " 0 0\n", " 0 0 " + "m" * (400 * n) + "\n")))),
    Attack("chains of one long protein", "a.cif", lambda n: bare_mmcif(1, n), (100, 1000, 15000), BESIDE_STAR,
           lambda n: entity("GP" * 5000) + ONE_SHIFT),
    # One chain that is interrupted after each residue.
    Attack("pieces of a chain", "a.cif", lambda n: BARE_ATOMS + "".join(
        "CA PRO A %d %d 0 0\n" % (2 * i + 1, 100 * i) for i in range(n)), (1000, 10000, 29000), BESIDE_STAR,
           lambda n: entity("P") + BARE_ROWS + "1 PRO CA 63\n"),
    # One model has the bonds of its prolines, all others have one atom each.
    Attack("models without bonds", "a.cif", lambda n: (
        ATOMS_OF_MODELS + "".join("CA PRO A %d %.1f 0 0 1\n" % (i, 3.8 * i) for i in range(n)) +
        "".join("CA PRO A 1 0 0 0 %d\n" % i for i in range(2, n // 2))), (100, 1000, 15000), BESIDE_STAR_JSON,
           lambda n: entity("P" * 100) + ONE_SHIFT),
    # One frame with as many tags as loops: where is _Entity.ID among them?
    Attack("loops of bonds", "a.str", lambda n: (
        entity("GP") + ONE_SHIFT + "stop_\nsave_b\n" + lines(n, "_a%d 1\n") + "_Entity.ID 1\n" +
        "loop_\n_Entity_bond.Type\n1\nstop_\n" * n + "save_\n"), (1000, 10000, 90000)),
    # Each list fits each chain.
    Attack("rows of no chain", "a.str", lambda n: (
        "data_x\n" + loop("Entity", "ID Polymer_type Polymer_seq_one_letter_code") +
        lines(n, "%d polypeptide(L) " + "GP" * 20 + "\n") + "stop_\n" +
        lists(n, "".join("%d PRO CA 63\n" % (2 + 2 * (i % 20)) for i in range(300)))), (10, 100, 990)),
    # A frame with a list in each row, and as many frames behind it.
    Attack("list numbers x frames", "a.str", lambda n: (
        entity("GP") + BARE_ROWS + "_Atom_chem_shift.Assigned_chem_shift_list_ID\n" + lines(n, "2 PRO CA 63 %d\n") +
        "stop_\n" + lists(n)), (1000, 10000, 90000)),
    # The sequence has a loop for each residue; the lines end far from it.
    Attack("sequence loops, one line", "a.nef", lambda n: (
        NEF_HEAD + lines(n, NEF_SEQUENCE.replace("\n", " ") + "A %d PRO stop_ ") + "\n" + NEF_ROWS +
        "A 2 PRO CB 32\nA 2 PRO CG 27\n"), (300, 3000, 30000), ANNOTATE),
    Attack("blocks of copies", "a.str", blocks_of_copies, (10, 100, 900)),
    Attack("loops of one row", "a.str", lambda n: entity("P" * 10000) + lists(n // 100) + "".join(
        BARE_ROWS + "%d PRO CA 63\nstop_\n" % (1 + i % 10000) for i in range(n)), (1000, 10000, 90000)),
    # The residues do not say whose they are: they are of the frame's.
    Attack("long name of an entity", "a.str", lambda n: (
        "data_x\nsave_e\n_Entity.ID " + "e" * (4 * n) + "\n" + loop("Entity_comp_index", "ID Comp_ID") +
        lines(n, "%d PRO\n") + "stop_\nsave_\n" + ONE_SHIFT), (1000, 30000, 320000)),
    # Just so many shifts that each is predicted.
    Attack("prolines with shifts", "a.csv", lambda n: "resid,resname,CA,CB,HA\n" + lines(n, "%d,P,63,32,4\n"),
           (100, 1000, 9900), RUN),
]


def attack(title):
    return next(one for one in ATTACKS + PRODUCTS if one.title == title)
