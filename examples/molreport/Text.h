#ifndef MOLREPORT_TEXT_H
#define MOLREPORT_TEXT_H

#include "Structure.h"

#include <string>
#include <string_view>

/// \file Text.h
/// How the reports show names and numbers.

namespace molreport {

/// A chain id, or "(blank)".
std::string shownChain(char id);

/// A name, or "?" for an empty one, so that columns stay columns.
std::string_view shownName(Name name);

/// As "ARG A 59B".
std::string shownResidue(const Chain& chain, const Residue& residue);

/// A number with this many decimals, right-justified; zero without a sign.
std::string fixed(double value, int width, int decimals);

}  // namespace molreport

#endif
