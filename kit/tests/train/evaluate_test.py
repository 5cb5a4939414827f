"""zorvela-kit evaluate: figures worked out anew from its list of predictions; the same probabilities as zorvela."""
import csv
import json
import math
import os
import subprocess

import made_data
from zorvela_tests import folder
from zorvela_tests.program import KIT, ZORVELA
from zorvela_tests.tables import rows_of



def run(arguments):
    return subprocess.run([KIT, *arguments], capture_output=True, text=True, check=False)


def auc(labels, scores):
    """By definition: the share of pairs in the right order, ties half."""
    cis = [s for l, s in zip(labels, scores) if l]
    trans = [s for l, s in zip(labels, scores) if not l]
    return sum((a > b) + 0.5 * (a == b) for a in cis for b in trans) / (len(cis) * len(trans))


def mcc(labels, calls):
    tp = sum(l and c for l, c in zip(labels, calls))
    fn = sum(l and not c for l, c in zip(labels, calls))
    fp = sum(not l and c for l, c in zip(labels, calls))
    tn = sum(not l and not c for l, c in zip(labels, calls))
    product = (tp + fp) * (tp + fn) * (tn + fp) * (tn + fn)
    return (tp * tn - fp * fn) / math.sqrt(product) if product else 0


class Evaluate(folder.InFolder):
    def setUp(self):
        super().setUp()
        self.data = made_data.Data(self.folder)
        # Overlapping classes; every third protein without CG.
        for i in range(12):
            self.data.add(f"c{i}", made_data.sequence(i), "cis", 0.5 + 0.3 * (i % 5), None if i % 3 == 0 else
                          24.5 + 0.4 * (i % 4), cluster=f"k{i // 2}")
        for i in range(30):
            self.data.add(f"t{i}", made_data.sequence(50 + i), "trans", -0.5 + 0.25 * (i % 7), None if i % 3 == 0
                          else 26.5 + 0.5 * (i % 4), cluster=f"m{i // 2}")
        self.data.write_labels()
        result = run(self.data.train("tab", "--widen-proline", "3", "--widen-neighbours", "6"))
        self.assertEqual(0, result.returncode, result.stderr)

    def evaluate(self, *options):
        result = run(["evaluate", *self.data.proteins(), *options])
        self.assertEqual("", result.stderr)
        self.assertEqual(0, result.returncode)
        return result.stdout

    def with_tables(self, *options):
        return self.evaluate("--tables", self.data.path("tab"), *options)

    def predictions(self):
        self.with_tables("--predictions", self.data.path("predictions.csv"))
        with open(self.data.path("predictions.csv"), encoding="utf-8") as file:
            return list(csv.DictReader(file))

    def test_figures(self):
        report = json.loads(self.with_tables("--json", "--bootstrap", "200"))
        rows = self.predictions()
        self.assertEqual(42, len(rows))
        groups = {group["group"]: group for group in report["groups"]}
        with_both = [row for row in rows if row["cb_minus_cg"]]
        for key, chosen in (("all", rows), ("with_cb_and_cg", with_both),
                            ("without_cb_minus_cg", [row for row in rows if not row["cb_minus_cg"]])):
            labels = [row["label_structure"] == "cis" for row in chosen]
            p = [float(row["p_cis_norm"]) for row in chosen]
            calls = [x > 0.5 for x in p]
            group = groups[key]
            self.assertEqual((len(chosen), sum(labels)), (group["n"], group["cis"]))
            kept = [min(max(x, 0.001), 0.999) for x in p]
            expected = {
                "auc": auc(labels, p),
                "mcc": mcc(labels, calls),
                "sensitivity": sum(l and c for l, c in zip(labels, calls)) / sum(labels),
                "specificity": sum(not l and not c for l, c in zip(labels, calls)) / labels.count(False),
                "brier": sum((x - l) ** 2 for x, l in zip(p, labels)) / len(p),
                "log_loss": -sum(math.log(x if l else 1 - x) for x, l in zip(kept, labels)) / len(p)}
            for name, value in expected.items():
                self.assertAlmostEqual(value, group[name]["value"], places=5, msg=f"{key} {name}")
                self.assertLessEqual(group[name]["low"], group[name]["high"])
        rule = groups["with_cb_and_cg_rule"]
        labels = [row["label_structure"] == "cis" for row in with_both]
        difference = [float(row["cb_minus_cg"]) for row in with_both]
        self.assertEqual("rule", rule["method"])
        self.assertAlmostEqual(auc(labels, difference), rule["auc"]["value"], places=9)
        self.assertAlmostEqual(mcc(labels, [d > 7.1 for d in difference]), rule["mcc"]["value"], places=9)
        self.assertIsNone(rule["log_loss"])

    def test_the_same_probabilities_as_the_program(self):
        for row in self.predictions():
            subprocess.run([ZORVELA, "-in", os.path.join(self.data.path("entries"), row["entry"] + ".tab"), "-tabDir",
                            self.data.path("tab"), "-out", self.data.path("pred.tab")], check=True,
                           stdout=subprocess.DEVNULL)
            predicted = rows_of(self.data.path("pred.tab"))
            self.assertEqual([row["resid"]], [p["RESID"] for p in predicted])
            self.assertAlmostEqual(float(row["p_cis"]), float(predicted[0]["P_CIS"]), delta=0.0005001)
            self.assertAlmostEqual(float(row["p_cis_norm"]), float(predicted[0]["P_CIS_NORM"]), delta=0.0005001)

    def test_published_data_beside_the_labels(self):
        os.makedirs(self.data.path("random_coil"))
        for name, place in (("counts.csv", "proline_neighbour_counts.csv"),
                            ("coil.csv", "random_coil/nielsen_mulder_2018.csv"),
                            ("effects.csv", "random_coil/nielsen_mulder_2018_neighbours.csv")):
            with open(self.data.path(name), encoding="utf-8") as file:
                self.data.put(place, file.read())
        self.assertEqual(self.evaluate("--cross-validate", "5", *self.data.sources()),
                         self.evaluate("--cross-validate", "5"))

    def test_calibration_and_roc(self):
        self.with_tables("--calibration", self.data.path("cal.csv"), "--roc", self.data.path("roc.csv"))
        rows = self.predictions()
        with open(self.data.path("cal.csv"), encoding="utf-8") as file:
            bins = list(csv.DictReader(file))
        self.assertEqual(42, sum(int(b["n"]) for b in bins))
        for b in bins:
            inside = [r for r in rows if float(b["from"]) <= float(r["p_cis_norm"]) < float(b["below"])]
            self.assertEqual(len(inside), int(b["n"]))
            self.assertEqual(sum(r["label_structure"] == "cis" for r in inside), int(b["cis"]))
            if inside:
                mean = sum(float(r["p_cis_norm"]) for r in inside) / len(inside)
                self.assertAlmostEqual(mean, float(b["mean_probability"]), places=5)
        with open(self.data.path("roc.csv"), encoding="utf-8") as file:
            curve = [r for r in csv.DictReader(file) if r["group"] == "all"]
        self.assertEqual(("1", "1"), (curve[-1]["false_positive_rate"], curve[-1]["true_positive_rate"]))
        labels = [r["label_structure"] == "cis" for r in rows]
        scores = [float(r["p_cis_norm"]) for r in rows]
        area, x, y = 0.0, 0.0, 0.0
        for point in curve:
            next_x, next_y = float(point["false_positive_rate"]), float(point["true_positive_rate"])
            area += (next_x - x) * (y + next_y) / 2
            x, y = next_x, next_y
        self.assertAlmostEqual(auc(labels, scores), area, places=4)

    def test_more_folds_than_clusters(self):
        result = run(["evaluate", *self.data.proteins(), "--cross-validate", "22", *self.data.sources()])
        self.assertEqual((result.stderr, result.stdout, result.returncode), (
            "zorvela-kit: " + self.data.path("labels.csv") + ": has 21 clusters, fewer than folds; ask for fewer folds "
            "with --cross-validate\n", "", 1))

    def test_entries_whose_names_are_formulas(self):
        """Such a name is marked in the CSV that `label` and `evaluate` write, and read without the mark."""
        names = ["=c1", "'=c1", "+c1"]
        for i, name in enumerate(names):
            self.data.add(name, made_data.sequence(90 + i), "cis", 2.0, 25.0)
            self.data.labels[-1] = "'" + self.data.labels[-1]
        self.data.write_labels()
        self.with_tables("--predictions", self.data.path("p.csv"))
        with open(self.data.path("p.csv"), encoding="utf-8", newline="") as file:
            entries = [row["entry"] for row in csv.DictReader(file)]
        self.assertEqual(["'" + name for name in names], [entry for entry in entries if entry[0] == "'"])
