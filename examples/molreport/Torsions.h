#ifndef MOLREPORT_TORSIONS_H
#define MOLREPORT_TORSIONS_H

#include "Structure.h"

#include <cstdio>
#include <vector>

/// \file Torsions.h
/// The backbone torsion angles of proteins.

namespace molreport {

/// Two residues are linked when C of the one and N of the next are this close, in angstroms. The
/// peptide bond has 1.33; atoms that are not bonded stay 2.7 or more apart.
constexpr double longestPeptideBond = 2.0;

/// A torsion angle in degrees, -180 to 180; or none.
struct Torsion {
  bool isDefined = false;
  double degrees = 0.0;
};

/// The torsion of four points in a chain; none when three that follow each other lie in line.
Torsion torsionOf(const tqPoint3D& a, const tqPoint3D& b, const tqPoint3D& c, const tqPoint3D& d);

/// The torsions of residue i, linked with residues i-1 and i+1:
/// phi C(i-1)-N(i)-CA(i)-C(i), psi N(i)-CA(i)-C(i)-N(i+1), omega CA(i)-C(i)-N(i+1)-CA(i+1).
///
/// Each residue is taken at its main location. An angle is undefined where the residue is not
/// linked on that side, an atom is missing or three of the four atoms lie in line.
struct BackboneTorsions {
  const Chain* chain;
  const Residue* residue;
  Torsion phi;
  Torsion psi;
  Torsion omega;
};

/// The torsions of all residues of a model that have N, CA and C, in file order. Residues that
/// share a position (their number and insertion code) as alternatives are linked side by side.
std::vector<BackboneTorsions> torsionsOf(const Model& model);

/// Prints a table of all models.
void printTorsions(std::FILE* out, const Structure& structure);

}  // namespace molreport

#endif
