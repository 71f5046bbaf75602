#ifndef MOLREPORT_SELECTION_H
#define MOLREPORT_SELECTION_H

#include "Structure.h"

#include <string>
#include <vector>

/// \file Selection.h
/// Naming atoms and residues on the command line: CHAIN/RESIDUE/ATOM.

namespace molreport {

/// Which residues or atoms are meant.
///
/// "A/-3/CA", "A/59B/N" with an insertion code, "/7/O" in the chain without id; "*" for every
/// chain, residue or atom. "A/-3" means the residue itself.
struct Selection {
  bool anyChain = false;
  char chain = ' ';
  bool anyResidue = false;
  int number = 0;
  char insertionCode = ' ';
  bool ofResidues = false;  ///< there is no part for atoms
  bool anyAtom = false;
  Name atom;

  /// Reads a selection from text. Returns what is wrong with it; empty when nothing is.
  std::string parse(const std::string& text);

  bool matches(const Chain& candidate) const;
  bool matches(const Residue& candidate) const;
  bool matches(const Atom& candidate) const;
};

/// The atom that a selection without "*" names in a model, at the main location of its residue;
/// null when there is none.
Atom* findAtom(const Model& model, const Selection& selection);

/// As a selection writes it: "A/59B" and "A/59B/CA".
std::string selectionOf(const Chain& chain, const Residue& residue);
std::string selectionOf(const Atom& atom);

}  // namespace molreport

#endif
