#ifndef MOLREPORT_PDBWRITER_H
#define MOLREPORT_PDBWRITER_H

#include "Structure.h"

#include <cstdio>
#include <string>

/// \file PdbWriter.h
/// Writing models as records of the PDB format, version 3.3.

namespace molreport {

/// Writes records to an open file, which it does not own. Whether they arrived there is for the
/// caller to ask the file.
class PdbWriter {
public:
  explicit PdbWriter(std::FILE* out) : out_(out) {}

  /// TITLE, in as many lines as the text takes.
  void writeTitle(const std::string& text);
  /// REMARK 6, likewise: a remark of free text.
  void writeRemark(const std::string& text);
  /// What says that coordinates belong to no crystal: a CRYST1 of unit values.
  void writeNoCrystal();
  /// NUMMDL
  void writeModelCount(int count);

  /// A model between MODEL and ENDMDL, chain by chain, with a TER where one stood in the file that
  /// it was read from. Serials count from 1 in each model, decimal and then hybrid-36.
  ///
  /// \returns what does not fit its columns, and then the record is not written; else empty
  std::string writeModel(const Model& model, int number);
  void writeEnd();

  /// Atom records written so far.
  long long atoms() const { return atoms_; }

private:
  std::string writeAtom(const Chain& chain, const Residue& residue, const Atom& atom);
  void writeTer(const Chain& chain, const Residue& residue);

  std::FILE* out_;
  long long atoms_ = 0;
  int serial_ = 0;
};

}  // namespace molreport

#endif
