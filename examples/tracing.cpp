// Diagnostics: the library and the application are silent until the debug level is raised; traces
// of nested operations read as a tree. They go to standard error.

#include "Warn.h"

#include <cstdio>
#include <initializer_list>

namespace {

/// Reads a residue, which fails for number 13. The failure is reported, and the caller told.
bool readResidue(int number) {
  Enter("residue %d\n", number);
  const bool readable = number != 13;
  if (!readable) Error("residue %d has no atoms\n", number);
  Debug("residue %d is %s\n", number, readable ? "complete" : "left out");
  Leave("residue %d\n", number);
  return readable;
}

int readChain(int level) {
  debug_lvlset(level);
  std::fprintf(stderr, "-- level %d\n", debug_lvlget());
  int residues = 0;
  Enter("chain A\n");
  for (int number = 12; number < 15; ++number) residues += readResidue(number) ? 1 : 0;
  Leave("chain A: %d residues\n", residues);
  debug_lvlset(0);
  return residues;
}

}  // namespace

int main() {
  // 0: silent, 1: errors and warnings, 7: debug messages too, 9: every operation with its end.
  for (int level : {0, 1, 7, 9})
    if (readChain(level) != 2) return 1;
  return 0;
}
