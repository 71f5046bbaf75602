#ifndef MOLREPORT_READER_H
#define MOLREPORT_READER_H

#include "Structure.h"

#include <memory>
#include <string>
#include <vector>

/// \file Reader.h
/// Reading a structure file in PDB format, of version 3.3 or an older release, into a tree.
///
/// Read are TITLE, MODEL, ENDMDL, ATOM, HETATM, TER, CONECT and END; REMARK 350 is kept for later,
/// and other lines are passed over. Atoms before the first MODEL open a model, as do those after an
/// ENDMDL or END without a new MODEL; `TreeBuilder` says how they are sorted into chains and
/// residues.

namespace molreport {

/// A line kept as it is.
struct RemarkLine {
  int number;
  std::string text;
};

/// What became of a file.
struct Reading {
  std::unique_ptr<Structure> structure;  ///< null when the file cannot be used at all
  std::vector<RemarkLine> remarks350;    ///< about assemblies (see `readAssembly`)
  int lines = 0;
  int refused = 0;   ///< lines that could not be used
  int remarked = 0;  ///< lines that were used, but are odd or had a field replaced
};

/// Reads a file. `file:line: message` goes to standard error for each line that is refused or
/// remarked on, and `molreport: file: message` when the file cannot be read or has no atoms.
Reading readStructure(const std::string& path);

}  // namespace molreport

#endif
