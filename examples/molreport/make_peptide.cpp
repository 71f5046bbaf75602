// Writes data/peptide.pdb to standard output: a peptide with ideal bonds and angles, folded by the
// torsions of IdealPeptide.h, with a zinc ion, waters, and the records of two assemblies.

#include "IdealPeptide.h"
#include "Text.h"

#include <fmt/format.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace molreport;

// Bond lengths in angstroms and angles in degrees: R. A. Engh and R. Huber, Acta Cryst. A47,
// 392-400 (1991), the values for residues other than glycine and proline.
constexpr double bondNCa = 1.458, bondCaC = 1.525, bondCN = 1.329, bondCO = 1.231;
constexpr double bondCaCb = 1.530, bondCbOg = 1.417, bondCbSg = 1.808;
constexpr double angleNCaC = 111.2, angleCaCN = 116.2, angleCNCa = 121.7, angleCaCO = 120.8;
constexpr double angleNCaCb = 110.5, angleCCaCb = 110.1;
constexpr double angleCaCbOg = 111.1, angleCaCbSg = 114.4;
// A zinc ion near a cysteine, for something to connect: tetrahedral, at about the usual distance.
constexpr double bondSgZn = 2.33, angleCbSgZn = 109.5;

double radians(double degrees) { return degrees * std::acos(-1.0) / 180.0; }

tqPoint3D sum(const tqPoint3D& origin, const tqPoint3D& along, double share) {
  return {origin.x + along.x * share, origin.y + along.y * share, origin.z + along.z * share};
}

/// The point d at a distance from c, with the angle b-c-d and the torsion a-b-c-d.
tqPoint3D place(const tqPoint3D& a, const tqPoint3D& b, const tqPoint3D& c, double distance,
                double angle, double torsion) {
  tqPoint3D along = c - b;
  along.normalize();
  tqPoint3D normal = (b - a).crossProduct(along);
  normal.normalize();
  const tqPoint3D across = normal.crossProduct(along);
  const double ahead = -distance * std::cos(radians(angle));
  const double aside = distance * std::sin(radians(angle));
  tqPoint3D d = sum(c, along, ahead);
  d = sum(d, across, aside * std::cos(radians(torsion)));
  return sum(d, normal, aside * std::sin(radians(torsion)));
}

/// The torsion C-N-CA-CB of an L amino acid, from the three angles at CA.
double torsionOfCb() {
  const double between =
      std::cos(radians(angleCCaCb)) - std::cos(radians(angleNCaC)) * std::cos(radians(angleNCaCb));
  const double sines = std::sin(radians(angleNCaC)) * std::sin(radians(angleNCaCb));
  return -std::acos(between / sines) * 180.0 / std::acos(-1.0);
}

/// Writes the lines of one model.
class ModelWriter {
public:
  explicit ModelWriter(const IdealTorsions* torsions) : torsions_(torsions) {}

  void write();
  /// Serials of the two atoms that are connected beyond the polymer, once written.
  int sulphurSerial() const { return sulphurSerial_; }
  int zincSerial() const { return zincSerial_; }

private:
  struct Backbone {
    tqPoint3D n, ca, c;
  };
  std::vector<Backbone> fold() const;
  void writeResidue(const IdealResidue& residue, const Backbone& at, double psi);
  void writeSideChain(const IdealResidue& residue, const Backbone& at);
  void writeIons();
  void atom(const char* record, const char* name, char location, const IdealResidue& residue,
            char chain, const tqPoint3D& at, double occupancy, const char* symbol);
  void atom(const char* name, const IdealResidue& residue, const tqPoint3D& at) {
    atom("ATOM", name, ' ', residue, 'A', at, 1.0, name[0] == ' ' ? name + 1 : name);
  }

  const IdealTorsions* torsions_;
  int serial_ = 0;
  int sulphurSerial_ = 0;
  int zincSerial_ = 0;
  tqPoint3D zinc_;
};

std::vector<ModelWriter::Backbone> ModelWriter::fold() const {
  Backbone at;
  at.ca = {bondNCa, 0.0, 0.0};
  at.c = place({0.0, 1.0, 0.0}, at.n, at.ca, bondCaC, angleNCaC, torsions_[0].phi);
  std::vector<Backbone> chain = {at};
  for (int i = 1; i < idealLength; ++i) {
    const Backbone last = chain.back();
    const IdealTorsions& before = torsions_[i - 1];
    at.n = place(last.n, last.ca, last.c, bondCN, angleCaCN, before.psi);
    at.ca = place(last.ca, last.c, at.n, bondNCa, angleCNCa, before.omega);
    at.c = place(last.c, at.n, at.ca, bondCaC, angleNCaC, torsions_[i].phi);
    chain.push_back(at);
  }
  return chain;
}

void ModelWriter::write() {
  const std::vector<Backbone> chain = fold();
  for (int i = 0; i < idealLength; ++i)
    writeResidue(idealResidues[i], chain[static_cast<std::size_t>(i)], torsions_[i].psi);
  const IdealResidue& last = idealResidues[idealLength - 1];
  const Backbone& end = chain.back();
  atom(" OXT", last,
       place(end.n, end.ca, end.c, bondCO, angleCaCO, torsions_[idealLength - 1].psi));
  fmt::print("TER   {:5}      {} A{:4}{}\n", ++serial_, last.name, last.number, last.insertionCode);
  writeIons();
}

void ModelWriter::writeResidue(const IdealResidue& residue, const Backbone& at, double psi) {
  atom(" N", residue, at.n);
  atom(" CA", residue, at.ca);
  atom(" C", residue, at.c);
  atom(" O", residue, place(at.n, at.ca, at.c, bondCO, angleCaCO, psi + 180.0));
  if (residue.name != std::string("GLY")) writeSideChain(residue, at);
}

void ModelWriter::writeSideChain(const IdealResidue& residue, const Backbone& at) {
  const tqPoint3D cb = place(at.c, at.n, at.ca, bondCaCb, angleNCaCb, torsionOfCb());
  atom(" CB", residue, cb);
  if (residue.name == std::string("SER")) {
    const auto oxygen = [&](double chi) {
      return place(at.n, at.ca, cb, bondCbOg, angleCaCbOg, chi);
    };
    atom("ATOM", " OG", 'A', residue, 'A', oxygen(62.0), 0.6, "O");
    atom("ATOM", " OG", 'B', residue, 'A', oxygen(-60.0), 0.4, "O");
  } else if (residue.name == std::string("CYS")) {
    const tqPoint3D sg = place(at.n, at.ca, cb, bondCbSg, angleCaCbSg, -60.0);
    atom(" SG", residue, sg);
    sulphurSerial_ = serial_;
    zinc_ = place(at.ca, cb, sg, bondSgZn, angleCbSgZn, 180.0);
  }
}

void ModelWriter::writeIons() {
  atom("HETATM", "ZN", ' ', {"ZN", 101, ' '}, 'A', zinc_, 1.0, "ZN");
  zincSerial_ = serial_;
  atom("HETATM", " O", ' ', {"HOH", 1, ' '}, 'W', {12.0, -9.5, 4.25}, 1.0, "O");
  atom("HETATM", " O", ' ', {"HOH", 2, ' '}, 'W', {-8.125, 6.5, 0.0}, 1.0, "O");
}

void ModelWriter::atom(const char* record, const char* name, char location,
                       const IdealResidue& residue, char chain, const tqPoint3D& at,
                       double occupancy, const char* symbol) {
  const std::string element = symbol == std::string("ZN") ? symbol : std::string(1, symbol[0]);
  fmt::print("{:<6}{:5} {:<4}{}{:>3} {}{:4}{}   {}{}{}{:6.2f}{:6.2f}          {:>2}{}\n", record,
             ++serial_, name, location, residue.name, chain, residue.number, residue.insertionCode,
             fixed(at.x, 8, 3), fixed(at.y, 8, 3), fixed(at.z, 8, 3), occupancy, 10.0, element,
             element == "ZN" ? "2+" : "  ");
}

/// One operator of an assembly: a turn about z by degrees and a shift.
void writeOperator(int number, double degrees, const tqPoint3D& shift) {
  const double cosine = std::cos(radians(degrees));
  const double sine = std::sin(radians(degrees));
  const double rows[3][4] = {
      {cosine, -sine, 0, shift.x}, {sine, cosine, 0, shift.y}, {0, 0, 1, shift.z}};
  for (int row = 0; row < 3; ++row)
    fmt::print("REMARK 350   BIOMT{} {:3}{}{}{}     {}\n", row + 1, number,
               fixed(rows[row][0], 10, 6), fixed(rows[row][1], 10, 6), fixed(rows[row][2], 10, 6),
               fixed(rows[row][3], 10, 5));
}

void writeAssemblies() {
  fmt::print("REMARK 350\n"
             "REMARK 350 BIOMOLECULE: 1\n"
             "REMARK 350 APPLY THE FOLLOWING TO CHAINS: A\n");
  writeOperator(1, 0.0, {});
  writeOperator(2, 180.0, {4.0, 30.0, 0.0});
  fmt::print("REMARK 350\n"
             "REMARK 350 BIOMOLECULE: 2\n"
             "REMARK 350 APPLY THE FOLLOWING TO CHAINS: A,\n"
             "REMARK 350                    AND CHAINS: W\n");
  writeOperator(1, 0.0, {});
  writeOperator(2, 120.0, {0.0, 0.0, 12.5});
  writeOperator(3, 240.0, {0.0, 0.0, 25.0});
}

}  // namespace

int main() {
  fmt::print("HEADER    MODEL PEPTIDE\n"
             "TITLE     PEPTIDE WITH IDEAL BONDS AND ANGLES, IN THREE FOLDS: MIXED,\n"
             "TITLE    2 STRAND AND HELIX\n"
             "EXPDTA    THEORETICAL MODEL\n"
             "NUMMDL    {}\n",
             idealModels);
  writeAssemblies();
  int sulphurSerial = 0, zincSerial = 0;  // the same in each model
  for (int model = 0; model < idealModels; ++model) {
    fmt::print("MODEL     {:4}\n", model + 1);
    ModelWriter writer(idealTorsions[model]);
    writer.write();
    sulphurSerial = writer.sulphurSerial();
    zincSerial = writer.zincSerial();
    fmt::print("ENDMDL\n");
  }
  fmt::print("CONECT{0:5}{1:5}\nCONECT{1:5}{0:5}\nEND\n", sulphurSerial, zincSerial);
  return 0;
}
