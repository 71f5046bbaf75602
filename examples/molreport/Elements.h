#ifndef MOLREPORT_ELEMENTS_H
#define MOLREPORT_ELEMENTS_H

#include "Name.h"

/// \file Elements.h
/// Which element an atom is, from the columns of its line: the element's own ones where they hold a
/// symbol, else the columns of the atom's name.

namespace molreport {

/// The element of an atom, in capitals: "C", "FE", "D" for deuterium; "X" when it cannot be told.
///
/// \param symbolColumns columns 77-78; used when they hold a symbol. Releases before 1996 keep the
///   entry code and the line number there.
/// \param nameColumns columns 13-16. The symbol is right-justified in the first two, so "CA  " is
///   calcium and " CA " the alpha carbon; a hydrogen whose name takes all four columns starts in
///   the first ("HD11").
/// \param inStandardResidue 1: the first letter of the name counts alone, since many programs
///   shift the names of common residues to the left.
Name elementOf(const char* symbolColumns, const char* nameColumns, int inStandardResidue);

/// 1 for the names of amino acids, nucleotides and water, whose atoms all have one-letter symbols.
int isStandardResidue(std::string_view residueName);

/// 1 when columns 77-78 hold the symbol of an element, "D" and "X" included.
int isElementSymbol(const char* columns);

}  // namespace molreport

#endif
