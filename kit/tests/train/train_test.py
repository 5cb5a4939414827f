"""zorvela-kit train: known means and deviations are found, bad input is named."""
import os
import statistics
import subprocess

import made_data
from zorvela_tests import folder
from zorvela_tests.program import KIT
from zorvela_tests.tables import rows_of, shift_table

CIS = [1.0, 2.0, 3.0, 6.0]
TRANS = [-2.0, -1.0, 0.0, 0.5, 1.0, 3.5]
CIS_CG = [24.0, 25.0, 24.5, 24.7]
TRANS_CG = [27.0, 27.5, 28.0, 27.2, 27.3, 26.8]
# Every value counts, none is clipped, each class has its own deviation, nothing is widened.
PLAIN = ["--limit-percent", "0", "--trim", "0", "--pool", "none", "--widen-proline", "1", "--widen-neighbours",
         "1"]


def run(arguments):
    return subprocess.run([KIT, *arguments], capture_output=True, text=True, check=False)


def three(value):
    return "%.3f" % value


class Train(folder.InFolder):
    def setUp(self):
        super().setUp()
        self.data = made_data.Data(self.folder)
        self.add("cis", CIS, CIS_CG)
        self.add("trans", TRANS, TRANS_CG)
        self.data.write_labels()

    def add(self, label, shifts, cgs=()):
        for i, shift in enumerate(shifts):
            self.data.add(label[0] + str(i), made_data.sequence(i + 50 * (label == "trans")), label, shift,
                          cgs[i] if cgs else None)

    def train(self, *options, output="tab"):
        result = run(self.data.train(output, *options))
        self.assertEqual("", result.stderr)
        self.assertEqual(f"Seven tables written to {self.data.path(output)}\n", result.stdout)
        self.assertEqual(0, result.returncode)
        return self.data.path(output)

    def rows(self, name, *options):
        """The rows of a table by their first cell."""
        rows = rows_of(os.path.join(self.train(*options), name))
        return {next(iter(row.values())): row for row in rows}

    # --- What is found ---

    def test_finds_means_and_deviations(self):
        # Neither a label without structure nor a proline with too few shifts counts.
        self.data.add("unlabelled", made_data.sequence(80), "", 9.0, 20.0)
        self.data.add("poor", made_data.sequence(81), "cis", 9.0, 20.0)
        rows = [(4, "CA", 95.0), (5, "CA", 95.0)] + [(6, a, 9.0) for a in made_data.ATOMS]
        self.data.put("entries/poor.tab", shift_table(made_data.sequence(81), rows))
        self.data.write_labels()
        rows = self.rows("Pro.cs.tab", *PLAIN)
        self.assertEqual([str(i) for i in range(19)], list(rows))
        for index, row in enumerate(rows.values()):
            cis, trans = (CIS_CG, TRANS_CG) if index == 18 else (CIS, TRANS)
            if index in (6, 11):
                expected = ["0.000", "0.000", "1.000", "1.000", "0", "0"]
            else:
                expected = [three(statistics.mean(cis)), three(statistics.mean(trans)),
                            three(statistics.stdev(cis)), three(statistics.stdev(trans)), "4", "6"]
            columns = ["avg_cis", "avg_trans", "std_cis", "std_trans", "n_cis", "n_trans"]
            self.assertEqual(expected, [row[c] for c in columns], f"index {index}")

    def test_a_shift_that_one_class_lacks_says_nothing(self):
        self.add("cis", CIS)  # without CG, instead of those with it
        row = self.rows("Pro.cs.tab", *PLAIN)["18"]
        mean, deviation = three(statistics.mean(TRANS_CG)), three(statistics.stdev(TRANS_CG))
        self.assertEqual([mean, mean, deviation, deviation, "0", "6"],
                         [row["avg_cis"], row["avg_trans"], row["std_cis"], row["std_trans"], row["n_cis"],
                          row["n_trans"]])

    # --- The other tables ---

    def test_limits_are_percentiles(self):
        rows = self.rows("sslimit.tab", "--limit-percent", "10")
        self.assertEqual(list(made_data.TYPES) + ["c", "p"], list(rows))
        # Each protein gives N two values, both in alanine: 20 in all, fewer than a type needs, so all
        # types have the limits of all: percentile 10 lies at place 1.9 of the sorted values, 90 at 17.1.
        values = sorted(CIS * 2 + TRANS * 2)
        low = values[1] + 0.9 * (values[2] - values[1])
        high = values[17] + 0.1 * (values[18] - values[17])
        for name in "AGW":
            self.assertEqual([three(low), three(high)], [rows[name]["N_MIN"], rows[name]["N_MAX"]])
        self.assertEqual(["0.000", "0.000"], [rows["P"]["N_MIN"], rows["P"]["HN_MAX"]])  # never used
        self.assertEqual(rows["P"]["CB_MAX"], rows["p"]["CB_MAX"])

    def test_limits_of_a_type_with_enough_shifts_are_its_own(self):
        self.data.labels.clear()
        for i in range(30):  # alanine: 60 values an atom, proline 30
            shift = i / 10
            self.data.add(f"e{i}", "GDEAPAGGGG", "cis" if i % 2 else "trans", shift, own=0.05 + shift)
        self.data.write_labels()
        rows = self.rows("sslimit.tab", "--limit-percent", "0")
        self.assertEqual(["0.000", "2.900"], [rows["A"]["CB_MIN"], rows["A"]["CB_MAX"]])
        self.assertEqual(["0.000", "2.950"], [rows["P"]["CB_MIN"], rows["P"]["CB_MAX"]])

    def test_shares_add_up_to_one(self):
        by_name = self.rows("Pro.seq.tab")
        self.assertEqual(list(made_data.TYPES) + ["c", "p"] + list("BJOUX?"), list(by_name))
        # Counts of cis_prev are 0 to 19, one added to each: 210 in all.
        for i, name in enumerate(made_data.TYPES):
            self.assertEqual("%.6f" % ((i + 1) / 210), by_name[name]["cis_prev"])
            self.assertEqual("%.6f" % ((2 * i + 1) / 400), by_name[name]["cis_next"])
            self.assertEqual("0.050000", by_name[name]["trans_prev"])
            self.assertEqual("%.6f" % ((20 - i) / 210), by_name[name]["trans_next"])
        for column in ("cis_prev", "cis_next", "trans_prev", "trans_next"):
            self.assertAlmostEqual(1.0, sum(float(by_name[t][column]) for t in made_data.TYPES), delta=2e-5)
            self.assertEqual(by_name["C"][column], by_name["c"][column])
            self.assertEqual(by_name["P"][column], by_name["p"][column])
            self.assertEqual("0.050000", by_name["?"][column])

    def test_random_coil_and_neighbour_effects(self):
        lines = ["res," + ",".join(made_data.ATOMS)]
        for i, name in enumerate(made_data.TYPES):
            cb = "" if name == "G" else "30.5"
            lines.append(f"{name},{100 + i}.25,4.125,175,55,{cb},{0 if name == 'P' else 8}")
        self.data.put("coil.csv", "\n".join(lines) + "\n")
        effects = ["neighbour,atom,nbr_at_i-1,nbr_at_i+1"]
        effects += [f"{t},{a},{i + 0.5},{-i - 0.25}" for i, t in enumerate(made_data.TYPES)
                    for a in made_data.ATOMS]
        self.data.put("effects.csv", "\n".join(effects) + "\n")
        coil, previous, after, adjustments = map(self.rows, ("randcoil.tab", "rcprev.tab", "rcnext.tab", "rcadj.tab"))
        names = list(made_data.TYPES) + ["c", "p"]
        for rows in (coil, previous, after, adjustments):
            self.assertEqual(names, list(rows))
        self.assertEqual("9999.000", coil["G"]["CB"])
        self.assertEqual("9999.000", coil["P"]["HN"])
        self.assertEqual(["101.250", "30.500"], [coil["C"]["N"], coil["C"]["CB"]])
        # Oxidised less reduced cysteine: -0.2, 0.16, 0, -2.8, 13.1, 0.11 ppm.
        self.assertEqual(["101.050", "4.285", "175.000", "52.200", "43.600", "8.110"],
                         [coil["c"][a] for a in made_data.ATOMS])
        for i, name in enumerate(made_data.TYPES):
            self.assertEqual([three(i + 0.5), three(-i - 0.25)], [previous[name]["CA"], after[name]["CA"]])
        self.assertEqual(["1.500", "-1.250"], [previous["c"]["N"], after["c"]["N"]])
        self.assertEqual({"0.000"}, {adjustments[n][a] for n in names for a in made_data.ATOMS})

    # --- Bad input ---

    def fails(self, message, *options):
        result = run(self.data.train("tab", *options))
        self.assertEqual(("zorvela-kit: " + message + "\n", "", 1),
                         (result.stderr, result.stdout, result.returncode))
        self.assertFalse(os.path.exists(self.data.path("tab")))

    def test_no_cis_at_all(self):
        self.data.labels = self.data.labels[len(CIS):]
        self.data.write_labels()
        self.fails(self.data.path("labels.csv") + ": no cis proline with enough shifts is labelled by structure; "
                   "add entries with cis prolines")

    def test_entry_without_a_file(self):
        os.remove(self.data.path("entries/t1.tab"))
        self.fails(self.data.path("labels.csv") + ":7: there is no shift table " +
                   self.data.path("entries") + "/t1.tab for entry t1; add the file or remove the lines of the entry")

    def test_malformed_labels(self):
        remedy = "; correct or remove the line"
        for line, cause in (
                ("c3,5,cis,,c3,more\n", "6 fields where the header has 5" + remedy),
                ("c3\n", "1 field where the header has 5" + remedy),
                ("c3,five,cis,,c3\n", 'resid is "five", not a whole number' + remedy),
                ("c3,99999999999,cis,,c3\n", 'resid is "99999999999", not a whole number' + remedy),
                ("c3,5,sis,,c3\n", 'label_structure is "sis", not cis, trans or empty' + remedy),
                ("c3,5,cis,maybe,c3\n", 'label_shift is "maybe", not cis, trans, unclear or empty' + remedy),
                ("c3,5,cis,,\n", "cluster is empty; give each protein a cluster"),
                (",5,cis,,c3\n", 'entry is "", not the name of a shift table' + remedy),
                ("../c3,5,cis,,c3\n", 'entry is "../c3", not the name of a shift table' + remedy),
                ('"c3,5,cis,,c3\n', "a quote is not closed; close it on the same line"),
                *((f"c3,{resid},cis,,c3\n", f"residue {resid} of c3 is outside the sequence of 10 residues" + remedy)
                  for resid in (11, 0, -3)),
                ("c3,6,cis,,c3\n", "residue 6 of c3 is A, not a proline" + remedy),
                ("c1,5,cis,,c1\n", "residue 5 of c1 is labelled twice; remove one of the lines"),
                ("c1,2,cis,,x\n", "c1 is in cluster x here and in c1 above; give each protein one cluster")):
            self.data.labels[3] = line
            self.data.write_labels()
            self.fails(self.data.path("labels.csv") + ":5: " + cause)

    def test_labels_that_are_not_there(self):
        for text, cause in (("", ": is empty; give a CSV file with a header line"),
                            (made_data.LABELS, ": has no prolines; give a file with a line for each proline"),
                            ("entry,resid,label_structure\nc1,5,cis\n",
                             ":1: the header has no column cluster; add the column or give another file")):
            self.data.put("labels.csv", text)
            self.fails(self.data.path("labels.csv") + cause)
        os.remove(self.data.path("labels.csv"))
        self.fails(self.data.path("labels.csv") + ": cannot be read: No such file or directory; check the name "
                   "and the permissions")

    def test_entry_that_is_no_table(self):
        self.data.put("entries/t1.tab", "VARS A B\nFORMAT %x %s\n")
        self.fails(self.data.path("entries") + "/t1.tab:2: Bad format syntax '%x '; write VARS RESID RESNAME ATOMNAME "
                   "SHIFT and FORMAT %4d %1s %4s  %8.3f above the rows")

    def test_bad_published_data(self):
        atoms = ",".join(made_data.ATOMS)
        good = {name: open(self.data.path(name), encoding="utf-8").read()
                for name in ("coil.csv", "effects.csv", "counts.csv")}
        for name, text, cause in (
                ("coil.csv", f"res,{atoms}\nA,120,4,175,55,x,8\n",
                 ':2: CB is "x", not a number; correct or remove the line'),
                ("coil.csv", f"res,{atoms}\nA,120,4,175,55,nan,8\n",
                 ':2: CB is "nan", not a number; correct or remove the line'),
                ("coil.csv", f"res,{atoms}\nA,120,4,175,55,30,8\n",
                 ": has no line for residue type C; add the line"),
                ("effects.csv", "neighbour,atom,nbr_at_i-1,nbr_at_i+1\nA,CD,0,0\n",
                 ':2: atom is "CD", not one of N, HA, C, CA, CB, HN; correct or remove the line'),
                ("counts.csv", "resname,cis_prev,cis_next,trans_prev,trans_next\nA,-1,0,0,0\n",
                 ":2: cis_prev is negative; give the count"),
                ("counts.csv", "resname,cis_prev,cis_next,trans_prev,trans_next\nZ,1,0,0,0\n",
                 ':2: resname is "Z", not one of the 20 residue types; correct or remove the line'),
                ("counts.csv", "resname,cis_prev,cis_next,trans_prev,trans_next\nA,1,0,0,0\n",
                 ": has no line for residue type C; add the line"),
                ("coil.csv", good["coil.csv"] + "A,1,1,1,1,1,1\n",
                 ":22: A has a line before this one; remove one of the lines"),
                ("effects.csv", good["effects.csv"] + "A,N,1,1\n",
                 ":122: N beside A has a line before this one; remove one of the lines"),
                ("counts.csv", good["counts.csv"] + "A,1,1,1,1\n",
                 ":22: A has a line before this one; remove one of the lines")):
            self.data.put(name, text)
            self.fails(self.data.path(name) + cause)
            self.data.put(name, good[name])

    def test_no_counts(self):
        self.data.put("counts.csv", "resname,cis_prev,cis_next,trans_prev,trans_next\n" +
                      "".join(f"{t},1,0,1,1\n" for t in made_data.TYPES))
        self.fails(self.data.path("counts.csv") + ": cis_next holds no counts; give the counts", "--pseudocount",
                   "0")

    def test_a_class_without_spread_still_has_a_deviation(self):
        self.data.labels.clear()
        self.add("cis", [1.0] * 3, [25.0] * 3)
        self.add("trans", [0.0, 0.001, 0.002], [27.0] * 3)
        self.data.write_labels()
        rows = self.rows("Pro.cs.tab", *PLAIN)
        # Cis takes the deviation of trans where it has none; the table holds 0.001 at least.
        self.assertEqual(["0.001", "0.001"], [rows["0"]["std_cis"], rows["0"]["std_trans"]])
        self.assertEqual(["1.000", "1.000"], [rows["18"]["std_cis"], rows["18"]["std_trans"]])  # neither has one

    def test_folder_that_cannot_be_made(self):
        result = run(self.data.train("labels.csv"))
        self.assertEqual(1, result.returncode)
        self.assertTrue(result.stderr.startswith("zorvela-kit: " + self.data.path("labels.csv") + ": cannot be made"),
                        result.stderr)
