#ifndef MOLREPORT_MATCHING_H
#define MOLREPORT_MATCHING_H

#include "Structure.h"

#include <utility>
#include <vector>

/// \file Matching.h
/// Which atom of one model is which of another.

namespace molreport {

/// The atoms that two models both have, in pairs, sorted by what they have in common: chain id,
/// residue number and insertion code, the letter of the alternate location (none is a letter of its
/// own), and the atom name in its columns.
///
/// The names of residues do not count. Where several atoms of a model agree in all of this, the
/// first is paired with the first, the second with the second, in file order.
std::vector<std::pair<Atom*, Atom*>> matchAtoms(const Model& first, const Model& second);

}  // namespace molreport

#endif
