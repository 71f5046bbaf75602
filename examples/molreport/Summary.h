#ifndef MOLREPORT_SUMMARY_H
#define MOLREPORT_SUMMARY_H

#include "Reader.h"

#include <cstdio>
#include <map>
#include <string>

/// \file Summary.h
/// What a file holds, counted, and how large it is.

namespace molreport {

/// How much there is of everything, in one model or in several.
struct Counts {
  int models = 0;
  int chains = 0;
  int residues = 0;  ///< waters and hetero groups included
  int waters = 0;
  int atoms = 0;       ///< atom records: an atom with two locations counts twice
  int alternates = 0;  ///< atoms with the letter of a location
  std::map<std::string, int> heteroGroups;  ///< residues of HETATM records, water aside, by name
  std::map<std::string, int> elements;      ///< atoms by element

  /// Counts one model more.
  void add(const Model& model);
};

/// Where the atoms of a model lie, in angstroms. Every atom record counts, with the same weight.
struct Extent {
  tqPoint3D lowest;   ///< of the bounding box
  tqPoint3D highest;  ///< of the bounding box
  tqPoint3D centroid;
  double radiusOfGyration = 0.0;  ///< root mean square distance from the centroid
};
/// \param model has an atom
Extent extentOf(const Model& model);

/// Prints the report on a file that could be read.
void printSummary(std::FILE* out, const std::string& path, const Reading& reading);

}  // namespace molreport

#endif
