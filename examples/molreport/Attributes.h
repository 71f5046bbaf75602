#ifndef MOLREPORT_ATTRIBUTES_H
#define MOLREPORT_ATTRIBUTES_H

#include "Structure.h"

#include <cstdio>
#include <string>
#include <vector>

/// \file Attributes.h
/// The attributes of residues and atoms, as text.

namespace molreport {

/// Prints the attributes of what a selection means (see `Selection`), in every model, one to a row.
/// After the number of an object comes the atom that it is.
///
/// \param settings texts of the form "NAME=VALUE": each selected node is given these first, by
///   `tqUserData::addUserDataString`, so that an attribute keeps its kind and a new one is a text
/// \returns what is wrong with the selection or a setting, and then nothing is printed; else empty
std::string printAttributes(std::FILE* out, const Structure& structure,
                            const std::string& selection, const std::vector<std::string>& settings);

}  // namespace molreport

#endif
