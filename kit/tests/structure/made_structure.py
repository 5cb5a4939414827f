"""Builds protein backbones from chosen omegas, and writes them as PDB or mmCIF.

Atoms are placed one after the other from bond length, bond angle and dihedral, so the omega of each bond is
what the test chose, whatever program reads the file.
"""
import math

THREE = {"A": "ALA", "C": "CYS", "D": "ASP", "E": "GLU", "F": "PHE", "G": "GLY", "H": "HIS", "I": "ILE",
         "K": "LYS", "L": "LEU", "M": "MET", "N": "ASN", "P": "PRO", "Q": "GLN", "R": "ARG", "S": "SER",
         "T": "THR", "V": "VAL", "W": "TRP", "Y": "TYR"}


def sub(a, b):
    return tuple(x - y for x, y in zip(a, b))


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def unit(a):
    length = math.sqrt(sum(x * x for x in a))
    return tuple(x / length for x in a)


def distance(a, b):
    return math.sqrt(sum(x * x for x in sub(a, b)))


def place(a, b, c, length, angle, dihedral):
    """The atom after a, b and c (A and degrees)."""
    theta, phi = math.radians(angle), math.radians(dihedral)
    along = unit(sub(c, b))
    normal = unit(cross(sub(b, a), along))
    side = cross(normal, along)
    step = (-length * math.cos(theta), length * math.sin(theta) * math.cos(phi),
            length * math.sin(theta) * math.sin(phi))
    return tuple(c[i] + step[0] * along[i] + step[1] * side[i] + step[2] * normal[i] for i in range(3))


class Residue:
    """One residue; `atoms`: list of (name, position, conformation letter or "", occupancy)."""

    def __init__(self, name, number, atoms, code="", het=False):
        self.name, self.number, self.atoms, self.code, self.het = name, number, atoms, code, het


def backbone(sequence, omegas=None, first=1):
    """Residues with N, CA and C; omegas: {index from 0: omega before that residue}, others 180."""
    omegas = omegas or {}
    atoms = [(0.0, 0.0, 0.0), (1.46, 0.0, 0.0)]
    atoms.append(place((0.0, 1.0, 0.0), atoms[0], atoms[1], 1.525, 111, -60))
    for i in range(1, len(sequence)):
        omega = omegas.get(i, 180.0)
        atoms.append(place(*atoms[-3:], 1.336, 117, 120 + 17 * (i % 5)))
        atoms.append(place(*atoms[-3:], 1.46, 127 if abs(omega) < 90 else 122, omega))
        atoms.append(place(*atoms[-3:], 1.525, 111, -70 - 11 * (i % 3)))
    return [Residue(THREE[letter], first + i,
                    [(name, atoms[3 * i + k], "", 1.0) for k, name in enumerate(("N", "CA", "C"))])
            for i, letter in enumerate(sequence)]


def moved(residues, by):
    """The same further along x."""
    return [Residue(r.name, r.number, [(n, (x + by, y, z), a, o) for n, (x, y, z), a, o in r.atoms], r.code, r.het)
            for r in residues]


def trace(residues):
    """CA alone."""
    return [Residue(r.name, r.number, [a for a in r.atoms if a[0] == "CA"], r.code, r.het) for r in residues]


def pdb_atoms(chain, residues, serial=1):
    lines = []
    for r in residues:
        for name, (x, y, z), alternate, occupancy in r.atoms:
            lines.append("%-6s%5d  %-3s%1s%3s %1s%4d%1s   %8.3f%8.3f%8.3f%6.2f%6.2f          %2s" % (
                "HETATM" if r.het else "ATOM", serial, name, alternate or " ", r.name, chain, r.number, r.code or " ",
                x, y, z, occupancy, 20.0, name[0]))
            serial += 1
    return lines


def pdb(*models):
    """PDB text; a model is a list of (chain, residues)."""
    lines = []
    for number, model in enumerate(models, 1):
        if len(models) > 1:
            lines.append("MODEL     %4d" % number)
        for chain, residues in model:
            lines += pdb_atoms(chain, residues) + ["TER"]
        if len(models) > 1:
            lines.append("ENDMDL")
    return "\n".join(lines + ["END", ""])


def mmcif(*models):
    """mmCIF text of the same."""
    lines = ["data_MADE", "loop_"]
    lines += ["_atom_site." + tag for tag in (
        "group_PDB id type_symbol label_atom_id label_alt_id label_comp_id label_asym_id label_seq_id pdbx_PDB_ins_code "
        "Cartn_x Cartn_y Cartn_z occupancy B_iso_or_equiv auth_seq_id auth_asym_id pdbx_PDB_model_num").split()]
    serial = 0
    for number, model in enumerate(models, 1):
        for chain, residues in model:
            for place_in_chain, r in enumerate(residues, 1):
                for name, (x, y, z), alternate, occupancy in r.atoms:
                    serial += 1
                    lines.append("%s %d %s %s %s %s %s %d %s %.3f %.3f %.3f %.2f 20.0 %d %s %d" % (
                        "HETATM" if r.het else "ATOM", serial, name[0], name, alternate or ".", r.name, chain,
                        place_in_chain, r.code or "?", x, y, z, occupancy, r.number, chain, number))
    return "\n".join(lines + ["#", ""])
