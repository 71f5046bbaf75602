#ifndef MOLREPORT_ASSEMBLY_H
#define MOLREPORT_ASSEMBLY_H

#include "Matrix4x4.h"
#include "Reader.h"

#include <cstdio>
#include <string>
#include <vector>

/// \file Assembly.h
/// Biological assemblies: what the molecule is in the living, built from copies of the chains of a
/// file as its REMARK 350 records say.

namespace molreport {

/// One motion of an assembly and the chains that it places.
struct Placement {
  int number = 0;      ///< of the operator in the file
  tqMatrix4x4 motion;  ///< for points as rows: `motion.multPointMatrix(p)`
  std::string chains;  ///< their ids, each once
};

/// An assembly, as motions in the order of the file. Motions that several groups of chains have in
/// common are one: the chains that they place keep together.
using Assembly = std::vector<Placement>;

/// Reads one assembly from the REMARK 350 records of a file.
///
/// A BIOMT operator is written for points as columns, x' = R x + t; here it becomes the
/// `tqMatrix4x4` of the transpose of R and of t, for points as rows.
///
/// \param path of the file, for messages
/// \returns what is wrong, as "FILE: message" or "FILE:LINE: message"; else empty
std::string readAssembly(const std::string& path, const std::vector<RemarkLine>& lines, int id,
                         Assembly& assembly);

/// Copies the chains that a placement names out of a model and moves them. The caller owns the new
/// model, which has no chains when the model has none of them.
Model* place(const Placement& placement, const Model& model, int number);

/// Builds an assembly from the first model of a file and writes it in PDB format, a MODEL for each
/// motion. Alternate locations stay; ANISOU and CONECT records are left out.
///
/// \param input path of the file read
/// \param output path of the file to write, which appears only when all went well
/// \param report where a line about what was written is printed
/// \returns what is wrong, empty when nothing is
std::string writeAssembly(std::FILE* report, const std::string& input, const Reading& reading,
                          int id, const std::string& output);

}  // namespace molreport

#endif
