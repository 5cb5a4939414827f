// A whole run in a directory of its own: a small protein with three prolines, and all reference tables.
//
// Proline 4 has all it needs; proline 7 follows a poor residue, has no CG and is followed by a
// carbonyl to clip; proline 10 and the residue before it are both poor. Random-coil shifts and most
// others are exact in single precision. tests/program/reference.py predicts the same.
#pragma once

#include <map>
#include <string>

#include "support.h"

namespace support {

class RunFiles : public TempDir {
 public:
  RunFiles() {
    std::filesystem::create_directory(file("tab"));
    write("shifts.tab",
          "DATA SEQUENCE MKAPGSPEKPA\n"
          "VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n" +
              shiftsOfSecondProline() + shiftsOfFirstProline() + "10 P HA 4.5\n11 A CA 52\n");
    write("tab/randcoil.tab",
          "VARS RESNAME N HA C CA CB HN\nFORMAT %s %f %f %f %f %f %f\n"
          "A 124 4.25 178 52.5 19 8.25\n"
          "E 120.5 4.25 176.5 56.5 30 8.5\n"
          "G 109 3.96 174 45 0 8.25\n"
          "K 120.5 4.25 176.5 56.5 33 8.25\n"
          "M 119.5 4.5 176 55.5 33 8.25\n"
          "P 136.5 4.5 177 63.5 32 0\n"
          "S 116 4.5 174.5 58.5 64 8.25\n");
    write("tab/rcadj.tab", "VARS RESNAME CA\nFORMAT %s %f\nP -0.25\n");
    write("tab/rcprev.tab", "VARS RESNAME N\nFORMAT %s %f\nA -0.5\nP 1\n");
    write("tab/rcnext.tab", "VARS RESNAME CA HA C\nFORMAT %s %f %f %f\nP -2 0.25 -1.5\n");
    writeLimits();
    writeDatabases();
  }

  /// The options of the run; the output goes to pred.tab in the directory.
  std::map<std::string, std::string> args() const {
    return {{"in", file("shifts.tab")}, {"tabDir", file("tab")}, {"sum", file("pred.tab")}};
  }
  /// The progress lines of the run.
  std::string progress() const {
    const auto line = [&](const std::string& what, const std::string& name) {
      return "Reading " + what + " from " + file("tab/" + name) + "\n";
    };
    return line("Random Coil Shifts", "randcoil.tab") + line("RC Adjustments", "rcadj.tab") +
           line("Previous Residue RC Adjustments", "rcprev.tab") +
           line("Next Residue RC Adjustments", "rcnext.tab") + line("Secondary Shift Limits", "sslimit.tab");
  }

 private:
  static std::string shiftsOfFirstProline() {
    return "3 A N 123.2\n3 A HA 4.55\n3 A C 175.1\n3 A CA 50.7\n3 A CB 18.2\n3 A HN 8.05\n"
           "4 P N 135\n4 P HA 4.7\n4 P C 176.2\n4 P CA 63.1\n4 P CB 33.4\n4 P CG 26.5\n"
           "5 G N 109.5\n5 G HA2 3.9\n5 G HA3 4.1\n5 G C 173.8\n5 G CA 45.3\n5 G HN 8.4\n";
  }
  static std::string shiftsOfSecondProline() {
    return "6 S HA 4.6\n6 S CA 56.2\n"
           "7 P HA 4.4\n7 P C 176.9\n7 P CA 63.9\n7 P CB 31.7\n"
           "8 E N 121\n8 E HA 4.3\n8 E C 183\n8 E CA 57\n8 E CB 29.6\n8 E HN 8.6\n";
  }
  void writeLimits() const {
    std::string text =
        "VARS RESNAME N_MIN N_MAX HA_MIN HA_MAX C_MIN C_MAX CA_MIN CA_MAX CB_MIN CB_MAX HN_MIN HN_MAX\n"
        "FORMAT %s %f %f %f %f %f %f %f %f %f %f %f %f\n";
    for (const char residue : std::string("AEGKMPS"))
      text += std::string(1, residue) + " -8 8 -1 1 -5 5 -4 4 -5 5 -2 2\n";
    write("tab/sslimit.tab", text);
  }
  void writeDatabases() const {
    write("tab/Pro.cs.tab",
          "VARS index avg_cis avg_trans std_cis std_trans\nFORMAT %d %f %f %f %f\n"
          "0 -3 -1.5 4 4\n1 -0.2 0.01 0.5 0.4\n2 0.8 0.3 1.5 1.7\n3 0.3 0.9 1.6 1.5\n"
          "4 0.4 -0.5 1.9 1.6\n5 -0.3 -0.1 0.7 0.6\n6 0 0 1 1\n7 0.05 -0.02 0.4 0.3\n"
          "8 -0.7 0.2 1.5 1.6\n9 -0.4 0.3 1.1 1.2\n10 2.1 -0.2 0.9 0.8\n11 0 0 1 1\n"
          "12 -0.8 -1.1 4.2 4.1\n13 -0.1 -0.06 0.5 0.45\n14 0.3 0.1 1.8 1.7\n15 0.4 0.5 1.8 1.7\n"
          "16 -0.2 -0.3 1.9 1.8\n17 -0.1 -0.05 0.7 0.65\n18 24.7 27.4 0.7 0.6\n");
    write("tab/Pro.seq.tab",
          "VARS resname cis_prev cis_next trans_prev trans_next\nFORMAT %s %f %f %f %f\n"
          "A 0.05 0.06 0.08 0.07\nG 0.09 0.1 0.06 0.08\nS 0.1 0.07 0.07 0.075\nE 0.06 0.05 0.065 0.09\n"
          "K 0.04 0.05 0.06 0.06\n");
  }
};

}  // namespace support
