"""Expected values of the unit tests, computed independently of the program.

Single precision is had by rounding every result of a float operation (struct 'f'). Run it with python3;
it prints the numbers in check_report_test.cpp, prediction_test.cpp and predict_run_test.cpp.
"""
import math
import struct


def f32(x):
    if math.isnan(x) or math.isinf(x):
        return x
    try:
        return struct.unpack("f", struct.pack("f", x))[0]
    except OverflowError:
        return math.copysign(math.inf, x)


def div(a, b):
    """IEEE division."""
    if b != 0 or math.isnan(a):
        return a / b
    if a == 0:
        return math.nan
    return math.copysign(math.inf, a) * math.copysign(1.0, b)


def sqrt(x):
    return math.nan if x < 0 else math.sqrt(x)


def mean(v):
    return f32(math.fsum(v) / len(v)) if v else 0.0


def fit(x, y):
    """Slope, intercept, error: float arithmetic, sums in double."""
    x, y, n = [f32(v) for v in x], [f32(v) for v in y], len(x)
    xy = [f32(a * b) for a, b in zip(y[1:], x[1:])]
    xx = [f32(a * a) for a in x[1:]]
    mx, my = mean(x), mean(y)
    top = f32(f32(mean(xy) * n) - f32(mx * f32(my * n)))
    bottom = f32(f32(mean(xx) * n) - f32(mx * f32(mx * n)))
    a = f32(div(top, bottom))
    b = f32(my - f32(a * mx))
    residuals = [f32(v - f32(f32(u * a) + b)) for u, v in list(zip(x, y))[1:]]
    spread = f32(sqrt(div(math.fsum(r * r for r in residuals), len(residuals) - 1.0)))
    return a, b, f32(div(spread, f32(math.sqrt(n))))


def factor(x, average, deviation):
    difference = f32(f32(x) - f32(average))
    z = (1.0 / f32(deviation)) * difference
    return math.exp(-0.5 * (z * z))


def times(product, by):
    return f32(product * by)


def predict(shifts, cs, prior_cis, prior_trans, cg=9999.0):
    """P and PN from 18 shifts, {index: (avg_cis, avg_trans, std_cis, std_trans)} and the priors."""
    cis = trans = 1.0
    for k, x in enumerate(shifts):
        if f32(x) > 99:
            continue
        cis = times(cis, factor(x, cs[k][0], cs[k][2]))
        trans = times(trans, factor(x, cs[k][1], cs[k][3]))
    a, b = f32(cis * prior_cis), f32(trans * prior_trans)
    if not f32(cg) >= 999:
        a = times(a, factor(cg, cs[18][0], cs[18][2]))
        b = times(b, factor(cg, cs[18][1], cs[18][3]))
    p = f32(div(a, f32(a + b)))
    return p, f32(div(p, p + 19.0 * (1.0 - p))), a, b


# --- The run of run_files.h -----------------------------------------------------------------------

ATOMS = ["N", "HA", "C", "CA", "CB", "HN"]
SEQUENCE = " MKAPGSPEKPA"
RC = {
    "A": [124, 4.25, 178, 52.5, 19, 8.25], "E": [120.5, 4.25, 176.5, 56.5, 30, 8.5],
    "G": [109, 3.96, 174, 45, 0, 8.25], "K": [120.5, 4.25, 176.5, 56.5, 33, 8.25],
    "M": [119.5, 4.5, 176, 55.5, 33, 8.25], "P": [136.5, 4.5, 177, 63.5, 32, 0],
    "S": [116, 4.5, 174.5, 58.5, 64, 8.25],
}
OWN = {"P": {"CA": -0.25}}
PREVIOUS = {"A": {"N": -0.5}, "P": {"N": 1.0}}
NEXT = {"P": {"CA": -2.0, "HA": 0.25, "C": -1.5}}
LIMITS = {"N": 8, "HA": 1, "C": 5, "CA": 4, "CB": 5, "HN": 2}
SHIFTS = {
    3: {"N": 123.2, "HA": 4.55, "C": 175.1, "CA": 50.7, "CB": 18.2, "HN": 8.05},
    4: {"N": 135, "HA": 4.7, "C": 176.2, "CA": 63.1, "CB": 33.4},
    5: {"N": 109.5, "HA2": 3.9, "HA3": 4.1, "C": 173.8, "CA": 45.3, "HN": 8.4},
    6: {"HA": 4.6, "CA": 56.2},
    7: {"HA": 4.4, "C": 176.9, "CA": 63.9, "CB": 31.7},
    8: {"N": 121, "HA": 4.3, "C": 183, "CA": 57, "CB": 29.6, "HN": 8.6},
}
CG = {4: 26.5}
CS = dict(enumerate([
    (-3, -1.5, 4, 4), (-0.2, 0.01, 0.5, 0.4), (0.8, 0.3, 1.5, 1.7), (0.3, 0.9, 1.6, 1.5), (0.4, -0.5, 1.9, 1.6),
    (-0.3, -0.1, 0.7, 0.6), (0, 0, 1, 1), (0.05, -0.02, 0.4, 0.3), (-0.7, 0.2, 1.5, 1.6), (-0.4, 0.3, 1.1, 1.2),
    (2.1, -0.2, 0.9, 0.8), (0, 0, 1, 1), (-0.8, -1.1, 4.2, 4.1), (-0.1, -0.06, 0.5, 0.45), (0.3, 0.1, 1.8, 1.7),
    (0.4, 0.5, 1.8, 1.7), (-0.2, -0.3, 1.9, 1.8), (-0.1, -0.05, 0.7, 0.65), (24.7, 27.4, 0.7, 0.6)]))
SHARES = {"A": (0.05, 0.06, 0.08, 0.07), "G": (0.09, 0.1, 0.06, 0.08), "S": (0.1, 0.07, 0.07, 0.075),
          "E": (0.06, 0.05, 0.065, 0.09), "K": (0.04, 0.05, 0.06, 0.06)}


def secondary(resid, k, clip):
    name, atom = SEQUENCE[resid], ATOMS[k]
    before, after = SEQUENCE[resid - 1], SEQUENCE[resid + 1]
    reference = f32(RC[name][k])
    for part in (OWN.get(name), PREVIOUS.get(before), NEXT.get(after)):
        reference = f32(reference + f32((part or {}).get(atom, 0.0)))
    observed = SHIFTS[resid].get(atom)
    if name == "G" and atom == "HA":
        observed = f32(f32(f32(SHIFTS[resid]["HA2"]) + f32(SHIFTS[resid]["HA3"])) * 0.5)
    if observed is None or (name == "P" and atom in ("N", "HN")):
        return 9999.0
    shift = f32(float("%.6g" % f32(f32(observed) - reference)))
    if clip:
        shift = max(min(shift, LIMITS[atom]), -LIMITS[atom])
    return float("%.6g" % shift)


def run(clip=True):
    for r in (4, 7):
        shifts = [secondary(q, k, clip) for q in (r - 1, r, r + 1) for k in range(6)]
        before, after = SHARES[SEQUENCE[r - 1]], SHARES[SEQUENCE[r + 1]]
        prior_cis = f32(f32(before[0]) * f32(after[1]))
        prior_trans = f32(f32(before[2]) * f32(after[3]))
        p, pn, _, _ = predict(shifts, CS, prior_cis, prior_trans, CG.get(r, 9999.0))
        print(r, "clipped" if clip else "unclipped", ["%.6g" % s for s in shifts])
        print("   P %.6g %.3f   PN %.6g %.3f   float %s" % (p, p, pn, pn, p.hex()))


if __name__ == "__main__":
    for x, y in (([0, 1, 2, 3], [1, 3, 5, 7]), ([1, 2], [3, 5]), ([2], [3]), ([1, 1, 1], [1, 2, 3])):
        print("fit", x, y, "%.9g %.9g %.9g" % fit(x, y))
    # Residues 10, 11, 12 and 9, in the order of their numbers as text; None: no such shift.
    ca, cb = [0.5, 1.5, 0.2, 1.0], [4.0, 3.4, 4.5, 2.5]
    ha, carbonyl = [0.4, 0.2, None, 0.3], [-1.2, -0.3, -1.0, None]
    d = [f32(a - b) for a, b in zip(ca, cb)]
    for atom, y in (("CA", ca), ("CB", cb), ("HA", ha), ("C'", carbonyl)):
        pairs = [(u, v) for u, v in zip(d, y) if v is not None]
        a, b, err = fit([u for u, _ in pairs], [v for _, v in pairs])
        print("offset %-2s %7.3f error %6.3f size %d" % (atom, b, err, len(pairs)))
    run()
    run(clip=False)
    flat = {k: (0, 0, 1, 1) for k in range(19)}

    def both(what, shifts, cs, priors, cg=9999.0):
        p, pn, a, b = predict(shifts, cs, *priors, cg)
        print(what, "P %s %.9g PN %s %.9g A %g B %g" % (p.hex(), p, pn.hex(), pn, a, b))

    absent = [9999.0] * 18
    both("priors alone", absent, flat, (f32(f32(0.05) * f32(0.1)), f32(f32(0.08) * f32(0.07))))
    near = dict(flat)
    near[0] = (99, 97, 1, 1)
    both("a shift of 99", [99.0] + absent[1:], near, (1.0, 1.0))
    cgs = dict(flat)
    cgs[18] = (998, 996, 1, 1)
    both("CG 998", absent, cgs, (1.0, 1.0), 998.0)
    rare = {k: (0.0, 0.01, 1, 1) for k in range(19)}
    both("denormal products", [3.3] * 18, rare, (1.0, 1.0))
    both("one class underflows", [6.5] * 18, {k: (0, 6.25, 1, 1) for k in range(19)}, (1.0, 1.0))
    both("the other class underflows", [6.5] * 18, {k: (6.25, 0, 1, 1) for k in range(19)}, (1.0, 1.0))
    odd = {k: (0.1 * k, 0.07 * k + 0.3, 1.1 + 0.05 * k, 1.3 + 0.03 * k) for k in range(19)}
    both("every index its own", [0.1 * (k + 1) for k in range(18)], odd, (f32(0.3), f32(0.7)), 2.5)
