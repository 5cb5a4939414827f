"""The whole run worked out a second time, in plain Python, to tell the tests what to expect.

The program's own sources are not used here. Texts are Python strings in which each character stands for one byte
(latin-1), so that any input, binary noise included, is read as the program reads it. Single-precision numbers are
Python floats that went through `single`, which rounds to the nearest 32-bit float.
"""

import math
import os
import platform
import re
import struct

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
MISSING = 9999.0
ATOMS = ("N", "HA", "C", "CA", "CB", "HN")
OPTION_NAMES = ("zorvelaDir", "tabDir", "predDir", "in", "sum", "out", "rand", "adj", "prev", "next", "first", "last",
                "clip", "noclip", "nodetail", "tpct", "dbpct", "check", "help")
FLAGS = ("noclip", "nodetail", "check")
BLANKS = "\t\n\v\f\r "
TIME_LINE = " Running time: <masked> seconds\n"

USAGE = """ZORVELA: Proline Omega Angle Prediction from Chemical Shift.
Version 1.01 (build 2009.1102.12)<credit>

Directory Settings: 
 -zorvelaDir mDir    [.]          ZORVELA Main Directory: ZORVELA_DIR.
 -tabDir     tDir    [tab]        Subdirectory of master tables.
 -predDir    pDir    [pred]       Directory for prediction results.

File Name Settings:
 -in         inName  [None]           Input Shift Table.
 -sum        sumName [pred.tab]       Prediction Summary Output.

Random Coil and Secondary Shift Tables:
 -rand       rName   [randcoil.tab]   Random Coil Shift Table.
 -adj        aName   [rcadj.tab]      Adjustment Table.
                                      (None for no adjustment).
 -prev       pName   [rcprev.tab]     Previous Residue Adjustment.
                                      (None for no adjustment).
 -next       nName   [rcnext.tab]     Next Residue Adjustment.
                                      (None for no adjustment).
 -limits     lName   [sslimit.tab]    Secondary Shift Limits.
                                      (Used only with -clip).

Other Options:
 -first      resID1  [First]          First RESID to use.
 -last       resIDN  [Last]           Last RESID to use.
 -clip                                Clip Extreme Shifts (Default).
 -noclip                              No Clipping of Shifts.

Examples:
 zorvela -in ubiq.tab     Form predictions from the given shifts.
"""


# --- Numbers ----------------------------------------------------------------------------------------

def default_nan():
    """The not-a-number that an invalid operation gives: negative on x86, positive elsewhere."""
    sign = -1.0 if platform.machine() in ("x86_64", "AMD64", "i686", "i386") else 1.0
    return math.copysign(math.nan, sign)


def single(value):
    """The nearest 32-bit float."""
    if math.isnan(value) or math.isinf(value):
        return value
    try:
        return struct.unpack("<f", struct.pack("<f", value))[0]
    except OverflowError:
        return math.copysign(math.inf, value)


def divide(a, b):
    """IEEE division, zero divisors included."""
    if b != 0 or math.isnan(b):
        return a / b
    if math.isnan(a):
        return a
    if a == 0:
        return default_nan()
    return math.copysign(math.inf, a) * math.copysign(1.0, b)


def total(values):
    """The sum in double precision, one value after the other."""
    result = 0.0
    for value in values:
        result += value
    return result


_REAL = re.compile(r"[\t\n\v\f\r ]*([+-]?)(?:"
                   r"(0[xX](?:[0-9a-fA-F]+\.?[0-9a-fA-F]*|\.[0-9a-fA-F]+)(?:[pP][+-]?[0-9]+)?)"
                   r"|([iI][nN][fF])|([nN][aA][nN])"
                   r"|((?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][+-]?[0-9]+)?))")
_INTEGER = re.compile(r"[\t\n\v\f\r ]*([+-]?)0*([0-9]+)")


def real(text):
    """The leading number of a text as a double; 0 where there is none."""
    found = _REAL.match(text)
    if not found:
        return 0.0
    sign = -1.0 if found.group(1) == "-" else 1.0
    if found.group(2):
        try:
            return sign * float.fromhex(found.group(2))
        except OverflowError:
            return sign * math.inf
    if found.group(3):
        return sign * math.inf
    if found.group(4):
        return math.copysign(math.nan, sign)
    return sign * float(found.group(5))


def integer(text):
    """The leading decimal integer of a text, held in 64 bits, then wrapped to 32; 0 where there is none."""
    found = _INTEGER.match(text)
    if not found:
        return 0
    value = int(found.group(1) + found.group(2)[:25])  # more digits are beyond 64 bits whatever they are
    return wrap32(max(-2 ** 63, min(2 ** 63 - 1, value)))


def wrap32(value):
    return (value + 2 ** 31) % 2 ** 32 - 2 ** 31


def print_real(width, digits, conversion, value, left=False):
    """A number as printf writes it under %[-]width.digits{f,g}."""
    if math.isnan(value):
        text = "-nan" if math.copysign(1.0, value) < 0 else "nan"
    else:
        text = "%.*{}".format(conversion) % (digits, value)
    return text.ljust(width) if left else text.rjust(width)


def as_text(value):
    """A real as the tables in memory hold it: six significant digits."""
    return print_real(0, 6, "g", value)


# --- Texts and tables -------------------------------------------------------------------------------

def simplify(text):
    return " ".join(words(text))


def words(text):
    return [word for word in re.split("[%s]+" % BLANKS, text) if word]


def pieces(separator, text):
    return [piece for piece in text.split(separator) if piece]


def format_is_valid(item):
    return re.fullmatch("%[.0-9-]*[sdf]", simplify(item)) is not None


class Ended(Exception):
    """The run ends before its last step, with this exit status; None for an abnormal end."""

    def __init__(self, status):
        super().__init__(status)
        self.status = status


class Table:
    def __init__(self):
        self.columns = []
        self.rows = []
        self.pairs = []
        self.names = {}
        self._indices = {}

    def first(self, **cells):
        """The first row whose cells have these values; None where there is none. A lacking cell reads as ''."""
        columns = tuple(cells)
        index = self._indices.get(columns)
        if index is None:
            index = {}
            for row in self.rows:
                index.setdefault(tuple(row.get(column, "") for column in columns), row)
            self._indices[columns] = index
        return index.get(tuple(cells.values()))

    def data(self, key):
        result = ""
        for pair in self.pairs:
            head, blank, rest = pair.partition(" ")
            if head == key:
                result += rest if blank else pair
        return result


def read_table(path, run):
    """Reads one table file; `run` takes the messages."""
    table = Table()
    if os.path.isdir(run.path(path)):
        return table
    try:
        with open(run.path(path), "rb") as file:
            lines = file.read().decode("latin-1").split("\n")
    except OSError:
        run.error("\tCan't open file " + path + " for reading\n")
        raise Ended(0) from None
    if lines[-1] == "":
        lines.pop()
    format_seen = False
    for line in lines:
        cells = words(line)
        if not cells:
            continue
        if format_seen and table.columns and len(cells) == len(table.columns):
            table.rows.append(dict(zip(table.columns, cells)))
        if cells[0] == "REMARK":
            cut(line, 7)
        elif cells[0] == "DATA":
            table.pairs.append(cut(line, 5))
        elif cells[0] == "VARS":
            table.columns = pieces(" ", simplify(cut(line, 4)))
            table.rows = []
        elif cells[0] == "FORMAT":
            format_seen = True
            table.rows = []
            check_formats(cut(line, 6), len(table.columns), run)
    number = table.data("FIRST_RESID")
    start = integer(number) if number else 1
    for letter in table.data("SEQUENCE"):
        if "A" <= letter <= "Y" or letter in "cp?":
            table.names[wrap32(start + len(table.names))] = letter
    return table


def cut(line, position):
    if position > len(line):
        raise Ended(None)  # a bare REMARK or DATA line
    return line[position:]


def cells_of(row, *columns):
    """The numbers of these cells in single precision; 0 where the row lacks one."""
    return {column: single(real(row.get(column, ""))) for column in columns}


def check_formats(text, column_count, run):
    text = " " + text
    if text.count("%") != column_count or column_count == 0:
        return
    parts = pieces("%", text)[1:]
    for part in parts + [""] * (column_count - len(parts)):
        item = "%" + part
        if not format_is_valid(item):
            run.error("\tBad format syntax '" + item + "'\n")
            raise Ended(0)


# --- The run ----------------------------------------------------------------------------------------

class Run:
    """One run of the program: what it prints, in order, its exit status and the table that it writes."""

    def __init__(self, arguments, environment, directory, wide_fit=False):
        self.arguments = arguments
        self.environment = environment
        self.directory = directory
        self.wide_fit = wide_fit  # whether the straight-line fit holds its intermediate results in double precision
        self.stdout = self.stderr = ""
        self.status = None        # None: ended abnormally
        self.table_name = None    # where the prediction table goes, once it is to be saved
        self.table_text = None
        self.predictions = {}     # residue number to (P_CIS, P_CIS_NORM) in single precision
        try:
            self.run()
            self.status = 0
        except Ended as end:
            self.status = end.status

    def write(self, text):
        self.stdout += text

    def error(self, text):
        self.stderr += text

    def path(self, name):
        return os.path.join(self.directory, name.encode("latin-1").decode("utf-8", "surrogateescape")) if name else ""

    def usage(self):
        self.error(USAGE)
        raise Ended(0)

    def run(self):
        main_directory, separator = self.main_directory()
        if not self.arguments:
            self.usage()
        self.settings(self.options(), main_directory, separator)
        self.load()
        self.write("Analyzing " + self.in_name + ":\n")
        self.assemble()
        if self.check:
            self.report()
            raise Ended(255)
        self.predict()
        self.write(TIME_LINE)

    # -- command line and environment

    def main_directory(self):
        directory = self.environment.get("ZORVELA_DIR")
        shown_by = self.environment.get("PATH", "\\") if directory is None else directory
        separator = "/" if "/" in shown_by else "\\" if "\\" in shown_by else ""
        return (directory if directory is not None and separator else "."), separator

    def options(self):
        options = {}
        for piece in pieces(" -", "".join(" " + argument for argument in self.arguments)):
            name, blank, value = piece.partition(" ")
            value = simplify(value if blank else piece)
            if name not in OPTION_NAMES:
                self.error(" Invaid arg name -" + name + "\n")
                raise Ended(0)
            options[name] = "true" if name in FLAGS else value
        return options

    def settings(self, options, main_directory, separator):
        def given(name, default):
            return options.get(name) or default

        if given("help", ""):
            self.usage()
        tables = given("tabDir", main_directory + separator + "tab")
        self.in_name = given("in", "")
        self.sum_name = given("out", given("sum", "pred.tab"))
        self.names = {name: tables + separator + name + ".tab"
                      for name in ("randcoil", "rcadj", "rcprev", "rcnext", "sslimit", "Pro.cs", "Pro.seq")}
        for option in ("adj", "prev", "next"):
            self.names["rc" + option] = given(option, self.names["rc" + option])
        self.first = integer(given("first", "1"))
        self.last = integer(given("last", "9999"))
        self.clip = not given("noclip", "")
        self.check = bool(given("check", ""))

    # -- tables

    def load(self):
        self.shifts = read_table(self.in_name, self)
        self.tables = {}
        for name, text in (("randcoil", "Random Coil Shifts"), ("rcadj", "RC Adjustments"),
                           ("rcprev", "Previous Residue RC Adjustments"), ("rcnext", "Next Residue RC Adjustments"),
                           ("sslimit", "Secondary Shift Limits")):
            self.write("Reading " + text + " from " + self.names[name] + "\n")
            self.tables[name] = read_table(self.names[name], self)
        self.statistics = {integer(row.get("index", "")): cells_of(row, "avg_cis", "std_cis", "avg_trans", "std_trans")
                           for row in read_table(self.names["Pro.cs"], self).rows}
        self.factors = {row.get("resname", ""): cells_of(row, "cis_prev", "cis_next", "trans_prev", "trans_next")
                        for row in read_table(self.names["Pro.seq"], self).rows}

    def table_value(self, table, residue, column, absent):
        row = self.tables[table].first(RESNAME=residue)
        return absent if row is None else single(real(row.get(column, "")))

    # -- secondary shifts

    def assemble(self):
        self.sequence = dict(self.shifts.names)
        self.length = len(self.sequence)
        self.limit_range()
        self.secondary = {}    # (residue number, atom) to the secondary shift, as the text of six digits gives it
        self.missing = {}
        self.cg = {}
        for number in range(1, self.length + 1):
            self.assemble_residue(number)

    def limit_range(self):
        lowest, highest = 999, -999
        for row in self.shifts.rows:
            number = integer(row.get("RESID", ""))
            lowest, highest = min(lowest, number), max(highest, number)
            header, name = self.sequence.get(number, ""), row.get("RESNAME", "")
            if header != name:
                self.error("WARNING: Unmatched name for residue %d between header (%s) and chemical shift table (%s)\n"
                           % (number, header, name))
        if highest < self.length:
            highest += 1
        self.first, self.last = sorted(min(max(end, lowest), highest) for end in (self.first, self.last))
        self.lowest, self.highest = lowest, highest

    def observed(self, number, atom):
        """The observed shift, or None where the input has no such row."""
        row = self.shifts.first(RESID=str(number), ATOMNAME=atom)
        return None if row is None else single(real(row.get("SHIFT", "")))

    def reference(self, number, atom):
        name = self.sequence.get(number, "")
        result = self.table_value("randcoil", name, atom, MISSING)
        for table, residue in (("rcadj", name), ("rcprev", self.sequence.get(number - 1, "")),
                               ("rcnext", self.sequence.get(number + 1, ""))):
            result = single(result + self.table_value(table, residue, atom, 0.0))
        return result

    def assemble_residue(self, number):
        name = self.sequence.get(number, "")
        missing = 0
        for atom in ATOMS:
            reference = self.reference(number, atom)
            shift = self.observed(number, atom)
            if (name, atom) == ("G", "HA"):
                shift = self.glycine_alpha(number)
                missing += shift == MISSING
                value = single(shift - reference) if reference < 999 else shift
            elif shift is None:
                missing += 1
                value = MISSING
            else:
                value = MISSING if reference >= 999 else single(shift - reference)
            if name == "P" and atom in ("N", "HN", "H"):
                value = MISSING
            self.secondary[number, atom] = single(real(as_text(value)))
        self.missing[number] = missing
        if name == "P":
            gamma = self.observed(number, "CG")
            self.cg[number] = MISSING if gamma is None else gamma

    def glycine_alpha(self, number):
        both = [self.observed(number, atom) for atom in ("HA2", "HA3")]
        present = [shift for shift in both if shift is not None and shift < 999]
        if not present:
            return MISSING
        return single(single(sum(present)) * 0.5) if len(present) == 2 else present[0]

    def clipped(self, number, atom, shift):
        row = self.tables["sslimit"].first(RESNAME=self.sequence.get(number, "")) or {}
        lowest, highest = cells_of(row, atom + "_MIN", atom + "_MAX").values()
        if shift < 999:
            return lowest if shift < lowest else highest if shift > highest else shift
        return shift

    # -- check report

    def report(self):
        self.write("\nChemical shift outlier checking...\n")
        for number in range(1, self.length + 1):
            for atom in ATOMS:
                shift = self.secondary[number, atom]
                limit = self.clipped(number, atom, shift)
                if limit != shift:
                    factor = 3 if atom == "HA" else 2
                    mark = " !" if abs(shift) > factor * abs(limit) else ""
                    self.write("  %3d %s %3s Secondary Shift: %s    Limit: %s%s\n" % (
                        number, self.sequence.get(number, ""), atom, print_real(8, 3, "f", shift),
                        print_real(8, 3, "f", limit), mark))
        self.write("\nChemical shift referencing checking...\n")
        series = {atom: ([], []) for atom in ("CA", "CB", "HA", "C")}
        for number in sorted(range(1, self.length + 1), key=str):
            shift = {atom: self.secondary[number, atom] for atom in series}
            if not (shift["CA"] < 999 and shift["CB"] < 999):
                continue
            difference = single(shift["CA"] - shift["CB"])
            if not difference < 0:
                continue
            for atom, (x, y) in series.items():
                if shift[atom] < 999:
                    x.append(difference)
                    y.append(shift[atom])
        for atom, label, bound in (("CA", "CA", 1.0), ("CB", "CB", 1.0), ("HA", "HA", 0.25), ("C", "C'", 1.0)):
            offset, error = self.fit(*series[atom])
            self.write("  Estimated %s shift referencing offset %s ppm (fitting error: %s, size: %3d)%s\n" % (
                label, print_real(7, 3, "f", offset), print_real(6, 3, "f", error), len(series[atom][1]),
                " A referencing correction is recommended!" if abs(offset) > bound else ""))

    def fit(self, x, y):
        """Intercept and error of the straight line through the pairs; the first pair counts in the means only."""
        keep = (lambda value: value) if self.wide_fit else single
        count = len(x)

        def mean(values):
            return single(total(values) / len(values)) if values else 0.0

        mean_x, mean_y = mean(x), mean(y)
        mean_xy = mean([single(b * a) for a, b in zip(x[1:], y[1:])])
        mean_xx = mean([single(a * a) for a in x[1:]])
        slope = single(divide(keep(keep(mean_xy * count) - keep(mean_x * keep(mean_y * count))),
                              keep(keep(mean_xx * count) - keep(mean_x * keep(mean_x * count)))))
        offset = single(mean_y - keep(slope * mean_x))
        residuals = [single(b - keep(keep(a * slope) + offset)) for a, b in zip(x[1:], y[1:])]
        spread = single(math.sqrt(divide(total(r * r for r in residuals), len(residuals) - 1)))
        return offset, single(divide(spread, single(math.sqrt(count))))

    # -- prediction

    def predict(self):
        rows = []
        # Only residues 2 to length - 1 can have both neighbours, however wide the range is.
        for number in range(max(self.first, self.lowest, 2), min(self.last, self.highest, self.length - 1) + 1):
            sparse = sum(self.missing.get(number + step, 0) > 3 for step in (-1, 0, 1))
            if sparse <= 1 and self.sequence.get(number, "") == "P":
                rows.append(self.predict_residue(number))
        self.write("\nZorvela Predictions:\n\n  #RES1 RES2 RES3 P_CIS  P_CIS_NORM\n\n")
        for row in rows:
            self.write("   %1s%-3d %1s%-3d %1s%-3d %s %s\n" % (
                row["prev"], row["number"] - 1, "P", row["number"], row["next"], row["number"] + 1,
                print_real(6, 3, "f", real(row["cis"]), left=True),
                print_real(6, 3, "f", real(row["norm"]), left=True)))
        self.save(rows)

    def predict_residue(self, number):
        before, after = self.sequence.get(number - 1, ""), self.sequence.get(number + 1, "")
        none = dict.fromkeys(("cis_prev", "cis_next", "trans_prev", "trans_next"), 0.0)
        prior = {kind: single(self.factors.get(before, none)[kind + "_prev"]
                              * self.factors.get(after, none)[kind + "_next"]) for kind in ("cis", "trans")}
        like = {"cis": 1.0, "trans": 1.0}
        for index in range(18):
            atom = ATOMS[index % 6]
            residue = number - 1 + index // 6
            shift = self.secondary[residue, atom]
            if self.clip:
                shift = single(real(as_text(self.clipped(residue, atom, shift))))
            if shift > 99:
                continue
            for kind in like:
                like[kind] = single(like[kind] * self.evidence(index, kind, shift))
        both = {kind: single(like[kind] * prior[kind]) for kind in like}
        gamma = self.cg.get(number, 0.0)
        if not gamma >= 999:
            both = {kind: single(both[kind] * self.evidence(18, kind, gamma)) for kind in both}
        cis = single(divide(both["cis"], single(both["cis"] + both["trans"])))
        norm = single(divide(cis, single(cis + single(19 * single(1 - cis)))))
        self.predictions[number] = (cis, norm)
        return {"number": number, "prev": before, "next": after,
                "counts": [6 - self.missing.get(number + step, 0) for step in (-1, 0, 1)],
                "gamma": as_text(gamma), "cis": as_text(cis), "norm": as_text(norm)}

    def evidence(self, index, kind, shift):
        statistics = self.statistics.get(index, {})
        mean, deviation = statistics.get("avg_" + kind, 0.0), statistics.get("std_" + kind, 0.0)
        z = divide(1.0, deviation) * single(shift - mean)
        return math.exp(-0.5 * z * z)

    def contributions(self, number):
        """What the log-odds of P_CIS_NORM are made of, in double precision: "prev" and "next" for the residue
        types, the shift index for each shift that is used, as (used shift, whether it was clipped, nats)."""
        def balance(index, shift):
            statistics = self.statistics[index]
            cis, trans = ((shift - statistics["avg_" + kind]) / statistics["std_" + kind] for kind in ("cis", "trans"))
            return (trans * trans - cis * cis) / 2

        result = {}
        for side, name in (("prev", self.sequence[number - 1]), ("next", self.sequence[number + 1])):
            shares = self.factors[name]
            result[side] = (None, False, math.log(shares["cis_" + side] / shares["trans_" + side]))
        for index in range(18):
            residue, atom = number - 1 + index // 6, ATOMS[index % 6]
            shift = self.secondary[residue, atom]
            if shift <= 99:
                used = self.clipped(residue, atom, shift)
                result[index] = (used, used != shift, balance(index, used))
        if self.cg[number] < 999:
            result[18] = (self.cg[number], False, balance(18, self.cg[number]))
        return result

    def save(self, rows):
        self.table_name = self.sum_name
        text = ("\n\nVARS   RESID RESNAME_PREV RESNAME RESNAME_NEXT CS_CNT1 CS_CNT2 CS_CNT3 CG_SHIFT P_CIS P_CIS_NORM \n"
                "FORMAT %2d %1s %1s %1s %2d %2d %2d %8.3f %8.3f %8.3f \n\n")
        for row in rows:
            text += "%2d %1s %1s %1s %2d %2d %2d " % (row["number"], row["prev"], "P", row["next"], *row["counts"])
            for key in ("gamma", "cis", "norm"):
                text += print_real(8, 3, "f", real(row[key])) + " "
            text += "\n"
        self.table_text = text
        folder, target = os.path.dirname(self.path(self.sum_name)), self.path(self.sum_name)
        if not self.sum_name or not os.path.isdir(folder or ".") or os.path.isdir(target):
            self.error("\tCan't save file " + self.sum_name + "\n")
            self.table_text = None
