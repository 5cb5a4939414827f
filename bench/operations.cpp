// Benchmarks of the operations that take the time of a run, some beside the standard way.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "ZORVELA.h"
#include "residue_rows.h"

namespace {

const std::string kTypes = "ACDEFGHIKLMNQRSTVWYP";
const std::vector<std::string> kAtoms = {"N", "HN", "HA", "C", "CA", "CB", "HB"};

// A protein with seven rows a residue, a proline in every 20.
GDB madeProtein(int residues) {
  GDB table;
  table.presetClass("KIVRA_SHIFT");
  for (int resid = 1; resid <= residues; ++resid) {
    const std::string name(1, kTypes[static_cast<std::size_t>(resid - 1) % kTypes.size()]);
    table.residNames[resid] = name;
    for (const std::string& atom : kAtoms) {
      table.addEntry("RESID", std::to_string(resid));
      const int row = table.getEntryCount();
      table.setEntry(row, "RESNAME", name);
      table.setEntry(row, "ATOMNAME", atom);
      table.setEntry(row, "SHIFT", std::to_string(50 + row % 100) + "." + std::to_string(100 + row % 900));
    }
  }
  return table;
}

// --- Finding rows -------------------------------------------------------------------------------

// The next residue to look for, anywhere in the protein.
int jump(int resid, int residues) {
  return (resid + 7919) % residues + 1;
}

void searchByWalk(benchmark::State& state) {
  const int residues = static_cast<int>(state.range(0));
  const GDB table = madeProtein(residues);
  int resid = 0;
  for (auto _ : state) {
    resid = jump(resid, residues);
    benchmark::DoNotOptimize(table.findEntry("RESID", std::to_string(resid), "ATOMNAME", "CB", 1));
  }
}
BENCHMARK(searchByWalk)->RangeMultiplier(10)->Range(50, 50000)->Unit(benchmark::kMicrosecond);

void searchByResidue(benchmark::State& state) {
  const int residues = static_cast<int>(state.range(0));
  const GDB table = madeProtein(residues);
  const ResidueRows rows(table);
  int resid = 0;
  for (auto _ : state) {
    resid = jump(resid, residues);
    benchmark::DoNotOptimize(rows.of(resid).find("CB"));
  }
}
BENCHMARK(searchByResidue)->RangeMultiplier(10)->Range(50, 50000)->Unit(benchmark::kMicrosecond);

void indexByResidue(benchmark::State& state) {
  const GDB table = madeProtein(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(ResidueRows(table));
}
BENCHMARK(indexByResidue)->RangeMultiplier(10)->Range(50, 50000)->Unit(benchmark::kMicrosecond);

// --- Numbers ------------------------------------------------------------------------------------

void numberToText(benchmark::State& state) {
  ZORVELA zorvela;
  float shift = -3.0F;
  for (auto _ : state) {
    shift += 0.013F;
    benchmark::DoNotOptimize(zorvela.ftoa(shift, zorvela.numBuffer, 'g', 6));
  }
}
BENCHMARK(numberToText);

void numberToTextByPrintf(benchmark::State& state) {
  char text[32];
  float shift = -3.0F;
  for (auto _ : state) {
    shift += 0.013F;
    benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%.6lg", static_cast<double>(shift)));
  }
}
BENCHMARK(numberToTextByPrintf);

void textToNumber(benchmark::State& state) {
  const std::string text = "175.250";
  for (auto _ : state) benchmark::DoNotOptimize(GDB::toFloat(text));
}
BENCHMARK(textToNumber);

void textToNumberByStrtod(benchmark::State& state) {
  const std::string text = "175.250";
  for (auto _ : state) benchmark::DoNotOptimize(std::strtod(text.c_str(), nullptr));
}
BENCHMARK(textToNumberByStrtod);

// --- Steps of a run -----------------------------------------------------------------------------

// A run object with a made protein and the tables of the directory ZORVELA_DIR.
void prepare(ZORVELA& zorvela, int residues) {
  zorvela.setArgs({{"last", std::to_string(residues)}});
  zorvela.rcTable.loadGDB(zorvela.rcName);
  zorvela.adjTable.loadGDB(zorvela.adjName);
  zorvela.prevTable.loadGDB(zorvela.prevName);
  zorvela.nextTable.loadGDB(zorvela.nextName);
  zorvela.limitTable.loadGDB(zorvela.limitName);
  zorvela.getProCSValue(zorvela.proCsName);
  zorvela.getProSeqOccurence(zorvela.proSeqName);
  zorvela.csTable = madeProtein(residues);
}

void secondaryShifts(benchmark::State& state) {
  ZORVELA zorvela;
  prepare(zorvela, static_cast<int>(state.range(0)));
  for (auto _ : state) zorvela.getResInfo();
  state.SetComplexityN(state.range(0));
}
BENCHMARK(secondaryShifts)
    ->RangeMultiplier(10)
    ->Range(50, 50000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

// Includes the walk through all rows that one prediction takes.
void predictProline(benchmark::State& state) {
  const int residues = static_cast<int>(state.range(0));
  ZORVELA zorvela;
  prepare(zorvela, residues);
  zorvela.getResInfo();
  for (auto _ : state) benchmark::DoNotOptimize(zorvela.predictProline(residues / 2));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(predictProline)
    ->RangeMultiplier(10)
    ->Range(50, 50000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
