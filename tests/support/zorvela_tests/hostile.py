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


# --- Parts of STAR files ----------------------------------------------------------------------------

ROWS = ("loop_\n_Atom_chem_shift.Entity_assembly_ID\n_Atom_chem_shift.Comp_index_ID\n_Atom_chem_shift.Comp_ID\n"
        "_Atom_chem_shift.Atom_ID\n_Atom_chem_shift.Val\n")
BARE_ROWS = ("loop_ _Atom_chem_shift.Comp_index_ID _Atom_chem_shift.Comp_ID _Atom_chem_shift.Atom_ID "
             "_Atom_chem_shift.Val\n")
NEF_HEAD = ("data_x\nsave_nef_nmr_meta_data\n_nef_nmr_meta_data.sf_category nef_nmr_meta_data\n"
            "_nef_nmr_meta_data.format_name nmr_exchange_format\nsave_\n")
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
    return "loop_\n_Entity_assembly.ID\n_Entity_assembly.Entity_ID\n" + lines(count, "%d 1\n") + "stop_\n"


def lists(count, rows):
    return "".join("save_l%d\n%s%sstop_\nsave_\n" % (i, BARE_ROWS, rows) for i in range(count))


# --- Files as they should be ------------------------------------------------------------------------

def star3_entry(residues):
    """Rows in all the columns of a BMRB entry."""
    columns = ("ID Assembly_atom_ID Entity_assembly_ID Entity_ID Comp_index_ID Seq_ID Comp_ID Atom_ID Atom_type "
               "Atom_isotope_number Val Val_err Assign_fig_of_merit Ambiguity_code Occupancy Resonance_ID "
               "Auth_entity_assembly_ID Auth_asym_ID Auth_seq_ID Auth_comp_ID Auth_atom_ID Details Entry_ID "
               "Assigned_chem_shift_list_ID").split()
    isotopes = {"H": 1, "C": 13, "N": 15}
    rows = []
    for i in range(1, residues + 1):
        name = NAMES[(i - 1) % 10]
        for atom, value in BACKBONE:
            rows.append("%6d . 1 1 %5d %5d %s %-4s %s %2d %8.3f 0.020 . 1 . . . A %5d %s %-4s . 99999 1\n" % (
                len(rows), i, i, name, atom, atom[0], isotopes[atom[0]], value, i, name, atom))
    return (entity(letters(residues)) + "loop_\n" + "".join("_Atom_chem_shift.%s\n" % name for name in columns) +
            "".join(rows))


def star2_entry(residues):
    return ("data_x\nsave_m\n_Saveframe_category monomeric_polymer\n_Mol_residue_sequence\n;\n%s\n;\nsave_\n"
            "save_s\n_Saveframe_category assigned_chemical_shifts\nloop_\n_Residue_seq_code\n_Residue_label\n"
            "_Atom_name\n_Chem_shift_value\n" % letters(residues) + backbone(residues, "%d %s %s %.3f\n") +
            "stop_\nsave_\n")


def nef_entry(residues):
    return (NEF_HEAD + "save_nef_molecular_system\n_nef_molecular_system.sf_category nef_molecular_system\nloop_\n"
            "_nef_sequence.index\n_nef_sequence.chain_code\n_nef_sequence.sequence_code\n"
            "_nef_sequence.residue_name\n_nef_sequence.linking\n" +
            "".join("%d A %d %s middle\n" % (i + 1, i + 1, NAMES[i % 10]) for i in range(residues)) + "stop_\nsave_\n"
            "save_nef_chemical_shift_list_1\n_nef_chemical_shift_list.sf_category nef_chemical_shift_list\nloop_\n"
            "_nef_chemical_shift.chain_code\n_nef_chemical_shift.sequence_code\n_nef_chemical_shift.residue_name\n"
            "_nef_chemical_shift.atom_name\n_nef_chemical_shift.value\n" +
            backbone(residues, "A %d %s %s %.3f\n") + "stop_\nsave_\n")


def csv_file(residues):
    return "resid,resname,atom,shift\n" + backbone(residues, "%d,%s,%s,%.3f\n")


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


def mmcif_file(residues, chains=1, models=1):
    columns = ("group_PDB id type_symbol label_atom_id label_alt_id label_comp_id label_asym_id label_entity_id "
               "label_seq_id Cartn_x Cartn_y Cartn_z occupancy auth_seq_id auth_asym_id pdbx_PDB_model_num").split()
    text = ["data_x\nloop_\n", *("_atom_site.%s\n" % column for column in columns)]
    for model in range(1, models + 1):
        for chain in range(chains):
            for i in range(residues):
                for number, atom in enumerate(("N", "CA", "C", "O")):
                    text.append("ATOM 1 %s %s . %s A%d 1 %d %.3f %d 0 1.0 %d A%d %d\n" % (
                        atom[0], atom, NAMES[i % 10], chain, i + 1, 1.27 * i + 0.4 * number, number % 2, i + 1,
                        chain, model))
    return "".join(text)


BARE_ATOMS = ("data_x\nloop_\n_atom_site.label_atom_id\n_atom_site.label_comp_id\n_atom_site.label_asym_id\n"
              "_atom_site.label_seq_id\n_atom_site.Cartn_x\n_atom_site.Cartn_y\n_atom_site.Cartn_z\n")


def bare_mmcif(residues, chains):
    """The least that is read: one CA atom for each residue."""
    return BARE_ATOMS + "".join("CA %s A%d %d %d 0 0\n" % (NAMES[i % 10], chain, i + 1, 4 * i)
                                for chain in range(chains) for i in range(residues))


# --- The attacks ------------------------------------------------------------------------------------

@dataclasses.dataclass
class Attack:
    """A file at a size, and the command that reads it."""
    title: str
    name: str  # of the file
    make: typing.Callable[[int], str]
    sizes: typing.Tuple[int, ...]
    command: typing.Tuple[str, ...] = ("import",)
    others: typing.Callable[[int], typing.Dict[str, str]] = lambda size: {}  # files beside it

    def taken(self, size):
        packed = self.name + ".gz"
        files = {packed: self.make(size), **self.others(size)}
        arguments = [packed if part == "FILE" else part for part in self.command]
        return measured(files, arguments if "FILE" in self.command else [*arguments, packed])


def lists_times_copies(n):
    return entity("GP") + copies(n) + lists(n, "2 PRO CA 63\n")


def lists_times_copies_times_residues(n):
    return entity("P" * n) + copies(n) + lists(n, "2 PRO CA 63\n")


def bonds_times_copies(n):
    return (entity("CCP") + copies(n) + "loop_\n_Entity_bond.Type\n_Entity_bond.Entity_ID\n"
            "_Entity_bond.Comp_index_ID_1\n_Entity_bond.Comp_index_ID_2\n" + "disulfide 1 1 2\n" * (100 * n))


def long_name_times_copies(n):
    return entity("GAP", "n" * (5000 * n)) + copies(n) + ROWS + "1 3 PRO CA 63\n"


def many_entities(n):
    return "data_x loop_ _Entity.ID\n" + "1\n" * n


def long_sequence_of_a_table(n):
    return ("DATA SEQUENCE " + "P" * n + "\nVARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n\n"
            "   2 P CA 63.0\n")


def columns_of_a_table(n):
    return ("DATA SEQUENCE AP\nVARS RESID RESNAME ATOMNAME SHIFT " + "a " * n + "\nFORMAT %4d %1s %4s %8.3f\n\n" +
            "2 P CA 63.0 " + "1 " * n + "\n")


def cells_of_a_table(n):
    return ("DATA SEQUENCE AP\nVARS RESID RESNAME ATOMNAME SHIFT " + " ".join(map(str, range(300))) +
            "\nFORMAT %4d %1s %4s %8.3f\n\n" + ("2 P CA 63.0 " + "1 " * 300 + "\n") * n)


def rows_of_a_table(n):
    return ("DATA SEQUENCE AP\nVARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n\n" +
            "   2 P CA 63.0\n" * n)


def remarks_of_a_table(n):
    return "REMARK Residue 1 here is residue 17 there\n" * n + shift_table(30)


def cells_above_a_header(n):
    return ("a," * n + "\n") * 50 + csv_file(10)


def long_chain_name(n):
    """In the CSV and the table of `run` each row has it."""
    return entity(letters(2000), "n" * n) + BARE_ROWS + backbone(2000, "%d %s %s %.3f\n")


def chains_of_csv(n):
    return "chain,resid,resname,atom,shift\n" + lines(n, "c%d,1,ALA,CA,52\n")


def columns_of_csv(n):
    return "resid,resname," + ",".join("CA" for _ in range(n)) + "\n1,ALA" + ",52.1" * n + "\n"


def quotes_of_csv(n):
    return "resid,resname,atom,shift\n" + '1,ALA,"CA""",52\n' * n


def line_feeds_of_csv(n):
    return "resid,resname,atom,shift\n" + '1,ALA,"CA\n\n",52\n' * n


def open_quotes_of_csv(n):
    return "resid,resname,atom,shift\n" + ',"' + '""a,"' * n


def far_residues_of_csv(n):
    return "resid,resname,atom,shift\n" + "".join("%d,PRO,CA,63\n" % (1 + 1000 * i) for i in range(n))


def quotes_of_star(n):
    """On one line: its end is far from each."""
    return "data_x " + "'' " * n


def plain_text(n):
    return "neither shifts nor anything else 1.5 2.5\n" * n


def words_of_frames(n):
    return "data_x _a " + "$a " * n


def frame_words_as_shifts(n):
    return "data_x loop_ _Atom_chem_shift.Val " + "$a " * n


def many_frames(n):
    return "".join("save_a%d _b c\n" % i for i in range(n))


def all_lists(n):
    return entity("GP" * n) + lists(n, "2 PRO CA 63\n")


def nef_residues(n):
    return (NEF_HEAD + "loop_ _nef_sequence.chain_code _nef_sequence.sequence_code _nef_sequence.residue_name\n" +
            lines(n, "A %d PRO\n") + "stop_ loop_ _nef_chemical_shift.chain_code _nef_chemical_shift.sequence_code "
            "_nef_chemical_shift.residue_name _nef_chemical_shift.atom_name _nef_chemical_shift.value\n"
            "A 2 PRO CA 63\n")


def star2_residues(n):
    return ("data_x save_m _Saveframe_category monomeric_polymer loop_ _Residue_seq_code _Residue_label\n" +
            lines(n, "%d PRO\n") + "save_\nsave_s _Saveframe_category assigned_chemical_shifts loop_ _Residue_seq_code "
            "_Residue_label _Atom_name _Chem_shift_value\n2 PRO CA 63\nsave_\n")


def star3_residues(n):
    return ("data_x save_e _Entity.ID 1\nloop_ _Entity_comp_index.ID _Entity_comp_index.Comp_ID\n" +
            lines(n, "%d PRO\n") + "save_ " + BARE_ROWS + "2 PRO CA 63\n")


def gaps_of_many_chains(n):
    return "data_x " + ROWS + "".join("%d %d PRO CA 63\n" % (chain, 1 + 1000 * i)
                                      for chain in range(1, n + 1) for i in range(20))


def offsets_of_many_chains(n):
    rows = "".join("%d %d GLY CA 45\n" % (chain, 1001 + 2 * i) for chain in range(1, n + 1) for i in range(5))
    return entity("GP" * 50) + copies(n) + ROWS + rows


def many_entries(n):
    one = "data_x%d _Entity.ID 1 _Entity.Polymer_seq_one_letter_code GP " + BARE_ROWS + "2 PRO CA 63\n"
    return "".join(one % i for i in range(n))


def prolines_of_mmcif(n):
    return BARE_ATOMS + "".join("CA PRO A %d %.1f 0 0\n" % (i, 3.8 * i) for i in range(n))


def chains_of_mmcif(n):
    return BARE_ATOMS + "".join("CA PRO A%d %d 0 0 0\n" % (i, i) for i in range(n))


def models_in_turn_of_mmcif(n):
    return (BARE_ATOMS + "_atom_site.pdbx_PDB_model_num\n" +
            "".join("CA PRO A %d 0 0 0 %d\n" % (i, i % 5000) for i in range(n)))


def scattered_residues_of_mmcif(n):
    """The atoms of a residue are far from one another."""
    return BARE_ATOMS + "".join("%s PRO A %d 0 0 0\n" % (atom, i * 7919 % n)
                                for atom in ("N", "CA", "C") for i in range(n))


def atoms_given_again_of_mmcif(n):
    return prolines_of_mmcif(10) + "CA PRO A 1 0 0 0\n" * n


def atoms_without_place_of_mmcif(n):
    return prolines_of_mmcif(10) + "".join("CA PRO A %d . 0 0\n" % i for i in range(n))


def words_of_mmcif(n):
    return "data_x\nloop_\n_a\n" + "a " * n + "\n" + prolines_of_mmcif(10)


def lost_value_of_mmcif(n):
    return "data_x\nloop_\n_a\n_b\n" + "a a\n" * n + "a\n" + prolines_of_mmcif(10)


def star_of_chains(chains, residues, rows):
    """Copies of one molecule, each with the rows of a list that names its copy."""
    return (entity(letters(residues)) + "loop_\n_Entity_assembly.ID\n_Entity_assembly.Entity_ID\n" +
            lines(chains, "%d 1\n") + "stop_\n" + ROWS + "".join(rows % i for i in range(1, chains + 1)))


def ca_chains(chains, residues, name="A%d"):
    """Chains of an mmCIF file with the sequence of `letters`, CA atoms alone."""
    return BARE_ATOMS + "".join("CA %s %s %d %.1f 0 0\n" % (NAMES[i % 10], name % chain, i + 1, 3.8 * i)
                                for chain in range(1, chains + 1) for i in range(residues))


def loops_of_bonds(n):
    """One frame with as many tags as loops: where is _Entity.ID among them?"""
    return (entity("GP") + BARE_ROWS + "2 PRO CA 63\nstop_\nsave_b\n" + lines(n, "_a%d 1\n") + "_Entity.ID 1\n" +
            "loop_\n_Entity_bond.Type\n1\nstop_\n" * n + "save_\n")


def rows_of_no_chain(n):
    """Each list fits each chain."""
    return ("data_x\nloop_\n_Entity.ID\n_Entity.Polymer_type\n_Entity.Polymer_seq_one_letter_code\n" +
            lines(n, "%d polypeptide(L) " + "GP" * 20 + "\n") + "stop_\n" +
            lists(n, "".join("%d PRO CA 63\n" % (2 + 2 * (i % 20)) for i in range(300))))


def list_numbers(n):
    """A frame with a list in each row, and as many frames behind it."""
    return (entity("GP") + BARE_ROWS.replace("_Atom_chem_shift.Val",
                                            "_Atom_chem_shift.Val _Atom_chem_shift.Assigned_chem_shift_list_ID") +
            lines(n, "2 PRO CA 63 %d\n") + "stop_\n" + lists(n, "2 PRO CA 63\n"))


def sequence_loops_on_one_line(n):
    """A NEF file whose sequence has a loop for each residue; the lines end far from it."""
    return (NEF_HEAD + " ".join("loop_ _nef_sequence.chain_code _nef_sequence.sequence_code "
                                "_nef_sequence.residue_name A %d PRO stop_" % i for i in range(1, n + 1)) +
            "\nloop_ _nef_chemical_shift.chain_code _nef_chemical_shift.sequence_code "
            "_nef_chemical_shift.residue_name _nef_chemical_shift.atom_name _nef_chemical_shift.value\n"
            "A 2 PRO CB 32\nA 2 PRO CG 27\n")


def blocks_of_copies(n):
    """Entries of 1,000 copies each, whose shifts are of none of them."""
    one = (entity("GP" * 50)[len("data_x\n"):] + copies(999) + BARE_ROWS + "2 PRO XX 63\nstop_\n")
    return "".join("data_x%d\n%s" % (i, one) for i in range(n)) + "data_y\n" + entity("GP")[len("data_x\n"):] + (
        BARE_ROWS + "2 PRO CA 63\n")


def loops_of_one_row(n):
    return (entity("P" * 10000) + lists(n // 100, "2 PRO CA 63\n") +
            "".join(BARE_ROWS + "%d PRO CA 63\nstop_\n" % (1 + i % 10000) for i in range(n)))


def long_entity_name(n):
    """The residues do not say whose they are: they are of the frame's."""
    return ("data_x\nsave_e\n_Entity.ID " + "e" * (4 * n) + "\nloop_\n_Entity_comp_index.ID\n"
            "_Entity_comp_index.Comp_ID\n" + lines(n, "%d PRO\n") + "stop_\nsave_\n" + BARE_ROWS + "2 PRO CA 63\n")


def models_without_bonds(n):
    """One model has the bonds of its prolines, all others have one atom each."""
    return (BARE_ATOMS + "_atom_site.pdbx_PDB_model_num\n" +
            "".join("CA PRO A %d %.1f 0 0 1\n" % (i, 3.8 * i) for i in range(n)) +
            "".join("CA PRO A 1 0 0 0 %d\n" % i for i in range(2, n // 2)))


def prolines_with_shifts(n):
    """Just so many shifts that each is predicted."""
    return "resid,resname,CA,CB,HA\n" + lines(n, "%d,P,63,32,4\n")


def pieces_of_mmcif(n):
    """One chain that is interrupted after each residue."""
    return BARE_ATOMS + "".join("CA PRO A %d %d 0 0\n" % (2 * i + 1, 100 * i) for i in range(n))


RUN = ("run", "--format", "json")
BESIDE_CSV = ("run", "x.csv", "--structure", "FILE")
BESIDE_STAR = ("run", "x.str", "--structure", "FILE")
USUAL = (100, 1000, 10000)  # residues: few, as usual, more than any known protein has

FORMATS = [
    *(Attack(title, name, make, USUAL, RUN) for title, name, make in (
        ("NMR-STAR 3", "a.str", star3_entry), ("NMR-STAR 2.1", "a.str", star2_entry), ("NEF", "a.nef", nef_entry),
        ("CSV", "a.csv", csv_file), ("assignment list", "a.prot", prot_file), ("shift table", "a.tab", shift_table))),
    Attack("HTML report", "a.csv", csv_file, USUAL, ("run", "--format", "html")),
    Attack("explained", "a.csv", csv_file, USUAL, ("run", "--explain")),
    Attack("annotated", "a.nef", nef_entry, USUAL, ("annotate", "FILE", "--output", "out.nef")),
    Attack("PDB, models", "a.pdb", lambda n: pdb_file(100, n), (1, 10, 100), BESIDE_CSV,
           lambda n: {"x.csv": csv_file(100)}),
    Attack("PDB, residues", "a.pdb", pdb_file, (100, 1000, 3500), BESIDE_CSV,
           lambda n: {"x.csv": csv_file(n)}),
    Attack("mmCIF, chains", "a.cif", lambda n: mmcif_file(100, n), (1, 10, 100), BESIDE_CSV,
           lambda n: {"x.csv": csv_file(100)}),
    Attack("mmCIF, residues", "a.cif", mmcif_file, (100, 1000, 3500), BESIDE_CSV,
           lambda n: {"x.csv": csv_file(n)}),
]

ATTACKS = [
    Attack("lists x copies", "a.str", lists_times_copies, (10, 100, 1000)),
    Attack("lists x copies x residues", "a.str", lists_times_copies_times_residues, (10, 100, 1000)),
    Attack("lists x copies, all", "a.str", lists_times_copies, (10, 100, 1000), ("import", "--list", "all")),
    Attack("bond rows x copies", "a.str", bonds_times_copies, (10, 100, 1000)),
    Attack("long name x copies", "a.str", long_name_times_copies, (10, 100, 1000)),
    Attack("molecules", "a.str", many_entities, (1000, 100000, 19900000)),
    Attack("residues, NMR-STAR 3", "a.str", star3_residues, (1000, 40000, 1000000)),
    Attack("residues, NMR-STAR 2.1", "a.str", star2_residues, (1000, 40000, 1000000)),
    Attack("residues, NEF", "a.nef", nef_residues, (1000, 40000, 1000000)),
    Attack("letters, NMR-STAR 3", "a.str", lambda n: entity("P" * n) + BARE_ROWS + "2 PRO CA 63\n",
           (10000, 1000000, 50000000)),
    Attack("letters, shift table", "a.tab", long_sequence_of_a_table, (10000, 1000000, 50000000)),
    Attack("rows, shift table", "a.tab", rows_of_a_table, (1000, 90000, 2000000)),
    Attack("columns, shift table", "a.tab", columns_of_a_table, (1000, 100000, 5000000)),
    Attack("cells, shift table", "a.tab", cells_of_a_table, (100, 3000, 50000)),
    Attack("remarks, shift table", "a.tab", remarks_of_a_table, (1000, 30000, 1000000)),
    Attack("cells above a header", "a.csv", cells_above_a_header, (1000, 40000, 1200000)),
    Attack("chain name", "a.str", long_chain_name, (1000, 100000, 1000000), ("run", "--format", "csv")),
    Attack("chain name, table", "a.str", long_chain_name, (1000, 100000, 1000000), ("run",)),
    Attack("chains, CSV", "a.csv", chains_of_csv, (100, 1000, 1000000), ("run",)),
    Attack("columns, CSV", "a.csv", columns_of_csv, (100, 10000, 1000000)),
    Attack("quotes, CSV", "a.csv", quotes_of_csv, (1000, 50000, 2000000)),
    Attack("line feeds in quotes, CSV", "a.csv", line_feeds_of_csv, (1000, 50000, 2000000)),
    Attack("open quotes, CSV", "a.csv", open_quotes_of_csv, (1000, 50000, 2000000)),
    Attack("rows, assignment list", "a.out", lambda n: "1.C 1.\n" * n, (1000, 90000, 2000000)),
    Attack("words, assignment list", "a.prot", lambda n: "1 1.0 " * n + "\n", (1000, 90000, 2000000)),
    Attack("far residues, CSV", "a.csv", far_residues_of_csv, (10, 100, 100000)),
    Attack("no shifts", "a.txt", plain_text, (1000, 50000, 2000000)),
    Attack("quoted words", "a.str", quotes_of_star, (10000, 1000000, 9000000)),
    Attack("$words", "a.str", words_of_frames, (10000, 1000000, 19000000)),
    Attack("$words for shifts", "a.str", frame_words_as_shifts, (10000, 1000000, 19000000)),
    Attack("save frames", "a.str", many_frames, (1000, 90000, 1000000)),
    Attack("all lists", "a.str", all_lists, (10, 30, 70), ("run", "--list", "all", "--format", "json")),
    Attack("all lists, pictures", "a.str", all_lists, (10, 30, 70), ("run", "--list", "all", "--format", "html")),
    Attack("all lists, explained", "a.str", all_lists, (10, 30, 70), ("run", "--list", "all", "--explain")),
    Attack("too many lists", "a.str", all_lists, (200, 400, 900), ("run", "--list", "all", "--format", "json")),
    Attack("gaps x chains", "a.str", gaps_of_many_chains, (2, 100, 900)),
    Attack("offsets of chains", "a.str", offsets_of_many_chains, (10, 100, 400)),
    Attack("entries in a file", "a.str", many_entries, (10, 900, 20000)),
    Attack("chains x chains, PDB", "a.pdb", lambda n: pdb_file(20, 1, "".join(chr(65 + i) for i in range(26)) * n),
           (1, 10, 33), BESIDE_CSV,
           lambda n: {"x.csv": "chain,resid,resname,atom,shift\n" + "".join(
               "c%d,%d,%s,CA,55\n" % (c, i + 1, NAMES[i % 10]) for c in range(30 * n) for i in range(20))}),
    Attack("chains that are aligned", "a.cif", lambda n: bare_mmcif(1400, n), (1, 10, 100), BESIDE_STAR,
           lambda n: {"x.str": entity("GP" * 5000) + BARE_ROWS + "2 PRO CA 63\n"}),
    *(Attack(title + ", mmCIF", "a.cif", make, sizes, BESIDE_CSV,
             lambda n: {"x.csv": csv_file(100)}) for title, make, sizes in (
                 ("prolines", prolines_of_mmcif, (1000, 29000, 1000000)),
                 ("chains", chains_of_mmcif, (1000, 29000, 1000000)),
                 ("models in turn", models_in_turn_of_mmcif, (1000, 29000, 1000000)),
                 ("scattered residues", scattered_residues_of_mmcif, (1000, 29000, 1000000)),
                 ("atoms given again", atoms_given_again_of_mmcif, (1000, 50000, 3000000)),
                 ("atoms without place", atoms_without_place_of_mmcif, (1000, 50000, 1000000)),
                 ("words", words_of_mmcif, (10000, 1000000, 50000000)),
                 ("lost value", lost_value_of_mmcif, (10000, 1000000, 20000000)))),
    Attack("prolines", "a.str", lambda n: entity("GP" * n) + BARE_ROWS + "2 PRO CA 63\n", (50, 500, 5000), RUN),
]

# Where one part of a file is looked up in another one.
PRODUCTS = [
    Attack("chains x equal proteins", "a.cif", lambda n: ca_chains(2 * n, 5), (10, 100, 990),
           (*BESIDE_STAR, "--format", "json"),
           lambda n: {"x.str": star_of_chains(n, 5, "%d 3 SER CA 58\n")}),
    Attack("chains x equal names", "a.cif", lambda n: ca_chains(2 * n, 5, "%d"), (10, 100, 990),
           (*BESIDE_STAR, "--format", "json"),
           lambda n: {"x.str": star_of_chains(n, 5, "%d 3 SER CA 58\n")}),
    Attack("chains x prolines", "a.cif", lambda n: ca_chains(n, 100), (10, 100, 300),
           (*BESIDE_STAR, "--format", "json"),
           lambda n: {"x.str": star_of_chains(n, 100, "%d 4 PRO CB 32\n")}),
    Attack("long names of chains", "a.cif", lambda n: ca_chains(1, 5, "A%d" + "a" * (400 * n)), (10, 100, 990),
           (*BESIDE_STAR, "--format", "json"),
           lambda n: {"x.str": star_of_chains(n, 5, "%d 3 SER CA 58\n")}),
    Attack("long names of residues", "a.cif",
           lambda n: ca_chains(1, 10).replace("CA PRO", "CA P" + "X" * (400 * n)), (10, 100, 990),
           (*BESIDE_STAR, "--format", "json"),
           lambda n: {"x.str": star_of_chains(n, 10, "%d 4 PRO CA 58\n")}),
    Attack("long names of models", "a.cif",
           lambda n: (ca_chains(1, 10).replace("Cartn_z\n", "Cartn_z\n_atom_site.pdbx_PDB_model_num\n")
                      .replace(" 0 0\n", " 0 0 " + "m" * (400 * n) + "\n")), (10, 100, 990),
           (*BESIDE_STAR, "--format", "json"),
           lambda n: {"x.str": star_of_chains(n, 10, "%d 4 PRO CA 58\n")}),
    Attack("chains of one long protein", "a.cif", lambda n: bare_mmcif(1, n), (100, 1000, 15000), BESIDE_STAR,
           lambda n: {"x.str": entity("GP" * 5000) + BARE_ROWS + "2 PRO CA 63\n"}),
    Attack("pieces of a chain", "a.cif", pieces_of_mmcif, (1000, 10000, 29000), BESIDE_STAR,
           lambda n: {"x.str": entity("P") + BARE_ROWS + "1 PRO CA 63\n"}),
    Attack("models without bonds", "a.cif", models_without_bonds, (100, 1000, 15000),
           (*BESIDE_STAR, "--format", "json"),
           lambda n: {"x.str": entity("P" * 100) + BARE_ROWS + "2 PRO CA 63\n"}),
    Attack("loops of bonds", "a.str", loops_of_bonds, (1000, 10000, 90000)),
    Attack("rows of no chain", "a.str", rows_of_no_chain, (10, 100, 990)),
    Attack("list numbers x frames", "a.str", list_numbers, (1000, 10000, 90000)),
    Attack("sequence loops, one line", "a.nef", sequence_loops_on_one_line, (300, 3000, 30000),
           ("annotate", "FILE", "--output", "out.nef")),
    Attack("blocks of copies", "a.str", blocks_of_copies, (10, 100, 900)),
    Attack("loops of one row", "a.str", loops_of_one_row, (1000, 10000, 90000)),
    Attack("long name of an entity", "a.str", long_entity_name, (1000, 30000, 320000)),
    Attack("prolines with shifts", "a.csv", prolines_with_shifts, (100, 1000, 9900), RUN),
]
