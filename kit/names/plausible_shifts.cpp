// The ranges as `script/plausible-shifts DATA` prints them.
#include "names/plausible_shifts.h"

#include <array>
#include <cctype>
#include <cstddef>

namespace zorvela {

namespace {

// N, HN, HA, C, CA, CB, CG.
constexpr std::size_t kColumns = 7;

struct ResidueRanges {
  char residue;
  std::array<PlausibleRange, kColumns> atoms;  // empty: too few shifts to know
};

// Percentiles 0.5 and 99.5 of the observed shifts in 1,707 BMRB entries, re-referenced by RefDB, each moved
// outward by half the distance between them.
constexpr ResidueRanges kRanges[] = {
    {'A', {{{104.1, 143.0}, {4.8, 11.7}, {1.2, 7.4}, {165.9, 187.4}, {44.8, 61.0}, {10.9, 30.0}, {}}}},
    {'C', {{{98.0, 141.8}, {4.7, 12.2}, {-0.1, 8.2}, {165.4, 185.0}, {43.9, 73.0}, {12.9, 62.4}, {}}}},
    {'D', {{{99.5, 141.7}, {4.8, 12.2}, {2.5, 6.9}, {167.6, 184.8}, {45.7, 63.3}, {32.9, 50.7}, {}}}},
    {'E', {{{101.9, 140.4}, {4.9, 12.2}, {1.8, 7.1}, {167.5, 185.5}, {48.0, 66.4}, {21.1, 41.2}, {}}}},
    {'F', {{{98.7, 142.0}, {4.1, 12.4}, {1.5, 7.7}, {165.6, 185.6}, {46.3, 70.1}, {29.5, 51.1}, {}}}},
    {'G', {{{87.8, 138.7}, {3.1, 13.1}, {0.5, 6.9}, {163.5, 186.3}, {39.5, 52.0}, {}, {}}}},
    {'H', {{{96.6, 143.2}, {4.0, 12.6}, {0.9, 7.8}, {165.5, 185.4}, {44.8, 69.3}, {19.7, 42.8}, {}}}},
    {'I', {{{94.3, 144.3}, {4.4, 12.0}, {1.4, 7.2}, {166.1, 185.1}, {50.6, 72.6}, {28.4, 49.5}, {}}}},
    {'K', {{{100.2, 141.5}, {4.8, 11.9}, {1.5, 7.1}, {167.1, 186.0}, {47.9, 65.9}, {23.0, 44.1}, {}}}},
    {'L', {{{101.6, 142.7}, {4.6, 12.1}, {1.7, 7.1}, {167.3, 186.3}, {46.8, 64.1}, {32.7, 53.4}, {}}}},
    {'M', {{{100.4, 140.4}, {4.5, 12.4}, {1.3, 7.4}, {165.2, 186.2}, {46.4, 66.4}, {21.4, 46.4}, {}}}},
    {'N', {{{96.5, 140.3}, {4.5, 12.7}, {2.4, 7.1}, {166.5, 184.1}, {44.8, 63.0}, {30.5, 49.4}, {}}}},
    {'P', {{{}, {}, {1.5, 7.0}, {168.2, 184.5}, {55.9, 70.9}, {23.6, 40.3}, {20.2, 35.2}}}},
    {'Q', {{{100.4, 139.9}, {4.9, 11.8}, {1.8, 7.1}, {166.6, 185.5}, {47.6, 65.4}, {20.4, 40.1}, {}}}},
    {'R', {{{99.8, 141.1}, {4.8, 11.8}, {1.1, 7.3}, {166.7, 185.9}, {47.0, 66.5}, {20.7, 42.7}, {}}}},
    {'S', {{{96.3, 137.4}, {4.8, 12.0}, {2.0, 7.3}, {166.4, 183.5}, {49.2, 68.6}, {56.2, 72.9}, {}}}},
    {'T', {{{89.0, 141.2}, {4.4, 12.3}, {1.8, 7.2}, {165.3, 184.5}, {51.6, 74.7}, {57.9, 79.3}, {}}}},
    {'V', {{{93.9, 144.3}, {4.5, 12.0}, {1.2, 7.2}, {166.6, 185.3}, {51.5, 73.9}, {25.0, 41.9}, {}}}},
    {'W', {{{97.2, 144.8}, {3.8, 12.3}, {1.6, 8.2}, {166.6, 185.5}, {46.1, 70.1}, {18.2, 47.2}, {}}}},
    {'Y', {{{97.3, 143.7}, {4.2, 12.5}, {1.3, 7.9}, {166.1, 185.1}, {46.9, 69.6}, {27.5, 51.0}, {}}}},
};

// The widest of all types.
constexpr ResidueRanges kAnyResidue = {
    '?',
    {{{87.8, 144.8}, {3.1, 13.1}, {-0.1, 8.2}, {163.5, 187.4}, {39.5, 74.7}, {10.9, 79.3}, {20.2, 35.2}}}};

/// HA2 and HA3 are as HA.
std::size_t columnOf(Atom atom) {
  constexpr std::array<std::size_t, kAtomCount> columns = {0, 2, 3, 4, 5, 1, 2, 2, 6};
  return columns[indexOf(atom)];
}

bool isKnown(const PlausibleRange& range) {
  return range.low < range.high;
}

}  // namespace

PlausibleRange plausibleRange(char residue, Atom atom) {
  const std::size_t column = columnOf(atom);
  const int type = std::toupper(static_cast<unsigned char>(residue));
  for (const ResidueRanges& ranges : kRanges)
    if (ranges.residue == type && isKnown(ranges.atoms[column])) return ranges.atoms[column];
  return kAnyResidue.atoms[column];
}

bool isPlausible(char residue, Atom atom, double ppm) {
  const PlausibleRange range = plausibleRange(residue, atom);
  return !isKnown(range) || (ppm >= range.low && ppm <= range.high);
}

}  // namespace zorvela
