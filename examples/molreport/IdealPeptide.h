#ifndef MOLREPORT_IDEALPEPTIDE_H
#define MOLREPORT_IDEALPEPTIDE_H

/// \file IdealPeptide.h
/// The peptide of `data/peptide.pdb`: what it is made of and how each of its models is folded.
/// `make_peptide` builds the file from it; the tests measure the file and compare.

namespace molreport {

struct IdealResidue {
  const char* name;
  int number;
  char insertionCode;
};

/// Degrees. Omega is that of the link to the next residue, so the last one has none, nor a psi; the
/// first has no phi. What is not measured in the file still places the atoms at its ends.
struct IdealTorsions {
  double phi;
  double psi;
  double omega;
};

constexpr int idealModels = 3;
constexpr int idealLength = 12;

constexpr IdealResidue idealResidues[idealLength] = {
    {"GLY", -2, ' '}, {"ALA", -1, ' '}, {"SER", 1, ' '}, {"ALA", 2, ' '},
    {"ALA", 3, ' '},  {"CYS", 4, ' '},  {"ALA", 5, ' '}, {"GLY", 5, 'A'},
    {"ALA", 6, ' '},  {"SER", 7, ' '},  {"ALA", 8, ' '}, {"GLY", 9, ' '}};

constexpr IdealTorsions alphaHelix = {-57.0, -47.0, 180.0};
constexpr IdealTorsions leftHelix = {57.0, 47.0, 180.0};
constexpr IdealTorsions betaStrand = {-119.0, 113.0, 180.0};
constexpr IdealTorsions polyproline = {-75.0, 145.0, 180.0};
constexpr IdealTorsions cisLink = {-75.0, 160.0, 0.0};
constexpr IdealTorsions twistedLink = {-90.0, 120.0, -170.0};

/// The first model goes through the regions of the Ramachandran plot, the second is a strand, the
/// third a helix.
constexpr IdealTorsions idealTorsions[idealModels][idealLength] = {
    {betaStrand, betaStrand, polyproline, cisLink, alphaHelix, alphaHelix, alphaHelix, leftHelix,
     twistedLink, betaStrand, polyproline, betaStrand},
    {betaStrand, betaStrand, betaStrand, betaStrand, betaStrand, betaStrand, betaStrand, betaStrand,
     betaStrand, betaStrand, betaStrand, betaStrand},
    {alphaHelix, alphaHelix, alphaHelix, alphaHelix, alphaHelix, alphaHelix, alphaHelix, alphaHelix,
     alphaHelix, alphaHelix, alphaHelix, alphaHelix}};

}  // namespace molreport

#endif
