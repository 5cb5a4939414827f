"""The evidence of each proline against a calculation of its own, in Python and in double precision."""
import math
import sys
import tempfile
import unittest

from zorvela_tests import program

sys.path[:0] = [str(program.SOURCE / "tests" / "program")]
import reference

ATOMS = ("N", "HA", "C", "CA", "CB", "HN")
NAMES = [prefix + atom for prefix in ("prev_", "", "next_") for atom in ATOMS] + ["CG"]
SHARED = 50  # of the shared proteins, spread over all
PRIOR = math.log(1 / 19)
TRANS_UP_TO = math.log(0.05 / 0.95)  # log-odds of the bounds of a call
CIS_FROM = 0.0


def files():
    entries = program.real_entries()
    return [*program.EXAMPLES, *entries[::max(1, len(entries) // SHARED)][:SHARED]]


def run_of(path):
    with tempfile.TemporaryDirectory() as folder:
        return reference.Run(["-in", str(path)], {"ZORVELA_DIR": str(program.SOURCE)}, folder)


def entropy(log_odds):
    cis = 1 / (1 + math.exp(-log_odds))
    return -sum(p * math.log2(p) for p in (cis, 1 - cis) if p > 0)


def density(x, mean, deviation):
    return math.exp(-0.5 * ((x - mean) / deviation) ** 2) / (deviation * math.sqrt(2 * math.pi))


def promise(log_odds, shift, lowest, highest):
    """Expected gain and chance to decide: Simpson's rule over the mixture, in ppm."""
    cis, trans = ((shift[kind + "_mean"], shift[kind + "_deviation"]) for kind in ("cis", "trans"))
    start = min(mean - 8 * deviation for mean, deviation in (cis, trans))
    end = max(mean + 8 * deviation for mean, deviation in (cis, trans))
    points = 4001
    step = (end - start) / (points - 1)
    p = 1 / (1 + math.exp(-log_odds))
    after, decided = 0.0, 0.0
    for i in range(points):
        x = start + i * step
        weight = (1 if i in (0, points - 1) else 4 if i % 2 else 2) * step / 3
        mixture = p * density(x, *cis) + (1 - p) * density(x, *trans)
        used = min(max(x, lowest), highest)
        posterior = log_odds + (((used - trans[0]) / trans[1]) ** 2 - ((used - cis[0]) / cis[1]) ** 2) / 2
        after += weight * mixture * entropy(posterior)
        decided += weight * mixture * (posterior >= CIS_FROM or posterior <= TRANS_UP_TO)
    return entropy(log_odds) - after, decided


class Evidence(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.runs = []
        for path in files():
            (protein,) = program.proteins("--as-referenced", path)
            cls.runs.append((path, run_of(path), protein))

    def prolines(self):
        for path, run, protein in self.runs:
            for proline in protein["prolines"]:
                with self.subTest(file=path.name, proline=proline["resid"]):
                    yield run, proline

    def predicted(self):
        return ((run, proline, proline["evidence"]) for run, proline in self.prolines() if proline["evidence"])

    def test_is_there_where_there_are_enough_shifts(self):
        for run, proline in self.prolines():
            self.assertEqual(proline["evidence"] is not None, proline["position"] in run.predictions)
            if proline["evidence"] is None:
                self.assertEqual(proline["next_shifts"], [])
        self.assertGreater(len(list(self.predicted())), 8)

    def test_each_contribution(self):
        for run, proline, evidence in self.predicted():
            expected = run.contributions(proline["position"])
            self.assertAlmostEqual(evidence["prior"], PRIOR, delta=1e-12)
            for side in ("prev", "next"):
                self.assertAlmostEqual(evidence[side]["nats"], expected[side][2], delta=1e-6)
            self.assertEqual(list(evidence["shifts"]), NAMES)
            for index, name in enumerate(NAMES):
                shift = evidence["shifts"][name]
                if index not in expected:
                    self.assertEqual((shift["used"], shift["nats"], shift["observed"]), (None, None, None))
                    continue
                used, clipped, nats = expected[index]
                self.assertAlmostEqual(shift["used"], used, delta=1e-5)
                self.assertEqual(shift["clipped"], clipped)
                self.assertAlmostEqual(shift["nats"], nats, delta=1e-4 * max(1, abs(nats)))
                if index < 18 and not clipped:
                    self.assertAlmostEqual(shift["observed"] - shift["reference"], used, delta=1e-3)

    def test_adds_up_to_the_probability(self):
        for run, proline, evidence in self.predicted():
            terms = [evidence["prior"], evidence["prev"]["nats"], evidence["next"]["nats"],
                     *(s["nats"] for s in evidence["shifts"].values() if s["nats"] is not None)]
            self.assertAlmostEqual(evidence["log_odds"], math.fsum(terms), delta=1e-9)
            norm = float(run.predictions[proline["position"]][1])
            if not 0 < norm < 1:
                # The product is too small for single precision, or 1 is the nearest number: the sum tells which way.
                self.assertGreater(abs(evidence["log_odds"]), 15)
                self.assertTrue(math.isnan(norm) or (norm == 1) == (evidence["log_odds"] > 0))
                continue
            # Single precision: 24 bits in each of 40 factors, and what is left of them beside 1.
            tolerance = 40 * 2.0 ** -24 * (1 + 1 / min(norm, 1 - norm)) if norm > 0.5 else 1e-4
            self.assertAlmostEqual(math.log(norm / (1 - norm)), evidence["log_odds"], delta=max(tolerance, 1e-4))

    def test_what_to_measure_next(self):
        checked = 0
        for run, proline, evidence in self.predicted():
            if checked >= 150:
                continue
            bits = [promise_["bits"] for promise_ in proline["next_shifts"]]
            self.assertEqual(bits, sorted(bits, reverse=True))
            for missing in proline["next_shifts"]:
                index = NAMES.index(missing["shift"])
                shift = evidence["shifts"][missing["shift"]]
                self.assertIsNone(shift["used"])
                lowest, highest = -1e3, 1e3
                if index < 18:
                    residue = proline["position"] - 1 + index // 6
                    lowest, highest = (run.clipped(residue, ATOMS[index % 6], x) for x in (-1e3, 998.0))
                gain, decided = promise(evidence["log_odds"], shift, lowest, highest)
                self.assertAlmostEqual(missing["bits"], max(0.0, gain), delta=1e-4)
                self.assertEqual(missing["decides"] is not None, proline["call"] == "undecided")
                if missing["decides"] is not None:
                    self.assertAlmostEqual(missing["decides"], decided, delta=0.005)
                checked += 1
        self.assertGreater(checked, 0)

    def test_only_what_can_be_measured_is_offered(self):
        for run, proline, evidence in self.predicted():
            names = {p["shift"] for p in proline["next_shifts"]}
            expected = set()
            for index, name in enumerate(NAMES):
                if evidence["shifts"][name]["used"] is not None:
                    continue
                residue = proline["position"] - 1 + index // 6 if index < 18 else proline["position"]
                kind, atom = run.sequence[residue], name.split("_")[-1]
                amide = atom in ("N", "HN") and (kind in "Pp" or residue == 1)
                if index == 18 or not (amide or (kind, atom) == ("G", "CB") or kind not in "ACDEFGHIKLMNPQRSTVWYcp"):
                    expected.add(name)
            self.assertEqual(names, expected)
