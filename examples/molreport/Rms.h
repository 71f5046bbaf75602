#ifndef MOLREPORT_RMS_H
#define MOLREPORT_RMS_H

#include "Structure.h"

#include <cstdio>

/// \file Rms.h
/// How far the models of a structure lie apart.

namespace molreport {

/// The deviation of one model from another.
struct Deviation {
  int matched = 0;   ///< atoms that both have (see `matchAtoms`)
  double rms = 0.0;  ///< over these, in angstroms; 0 when there are none
};

/// The root mean square deviation of a model from another, as they stand: nothing is superposed.
Deviation deviationOf(const Model& model, const Model& from);

/// Prints a table of all models, each against the first.
void printRms(std::FILE* out, const Structure& structure);

}  // namespace molreport

#endif
