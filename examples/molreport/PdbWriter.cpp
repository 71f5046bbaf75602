#include "PdbWriter.h"

#include "Hybrid36.h"
#include "Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace molreport {

namespace {

// Breaks a text at blanks into lines of at most `width`; what has no blank is cut.
std::vector<std::string> wrapped(const std::string& text, std::size_t width) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (text.size() - start > width) {
    const std::size_t blank = text.rfind(' ', start + width);
    const bool isBroken = blank != std::string::npos && blank > start;
    const std::size_t end = isBroken ? blank : start + width;
    lines.push_back(text.substr(start, end - start));
    start = isBroken ? end + 1 : end;
  }
  lines.push_back(text.substr(start));
  return lines;
}

// What was read from these columns, with fewer decimals where it takes more room than it did.
std::string fitted(double value, int width, int decimals) {
  std::string text;
  do text = fixed(value, width, decimals);
  while (static_cast<int>(text.size()) > width && decimals-- > 0);
  return text;
}

// Columns 18 to 27: residue name, chain, number and insertion code.
std::string residueColumns(const Chain& chain, const Residue& residue) {
  return fmt::format("{:<4}{}{}{}", fmt::format("{:>3}", residue.name().text()), chain.id(),
                     writeHybrid36(residue.number(), 4), residue.insertionCode());
}

std::string chargeColumns(int charge) {
  return charge == 0 ? "  " : fmt::format("{}{}", std::abs(charge), charge < 0 ? '-' : '+');
}

}  // namespace

void PdbWriter::writeTitle(const std::string& text) {
  int number = 0;
  for (const std::string& line : wrapped(text, 69)) {
    ++number;
    if (number == 1)
      fmt::print(out_, "TITLE     {}\n", line);
    else
      fmt::print(out_, "TITLE   {:2} {}\n", number, line);
  }
}

void PdbWriter::writeRemark(const std::string& text) {
  for (const std::string& line : wrapped(text, 68)) fmt::print(out_, "REMARK   6 {}\n", line);
}

void PdbWriter::writeNoCrystal() {
  fmt::print(out_, "CRYST1{0}{0}{0}{1}{1}{1} {2:<10} {3:4}\n", fixed(1.0, 9, 3), fixed(90.0, 7, 2),
             "P 1", 1);
}

void PdbWriter::writeModelCount(int count) { fmt::print(out_, "NUMMDL    {}\n", count); }

std::string PdbWriter::writeModel(const Model& model, int number) {
  fmt::print(out_, "MODEL     {:4}\n", number);
  serial_ = 0;
  for (const Chain* chain : model.chains())
    for (const Residue* residue : chain->residues()) {
      for (const Atom* atom : residue->atoms()) {
        std::string fault = writeAtom(*chain, *residue, *atom);
        if (!fault.empty()) return fault;
      }
      if (residue->isChainEnd()) writeTer(*chain, *residue);
    }
  fmt::print(out_, "ENDMDL\n");
  return {};
}

std::string PdbWriter::writeAtom(const Chain& chain, const Residue& residue, const Atom& atom) {
  const tqPoint3D& at = atom.position();
  std::string coordinates;
  for (const double value : {at.x, at.y, at.z}) {
    const std::string text = fixed(value, 8, 3);
    if (text.size() != 8)
      return fmt::format("atom {} of residue {}: the coordinate {} does not fit 8 columns",
                         atom.name().text(), shownResidue(chain, residue), text);
    coordinates += text;
  }
  const std::string name = std::string(static_cast<std::size_t>(atom.nameOffset()), ' ');
  fmt::print(
      out_, "{:<6}{} {:<4}{}{}   {}{}{}          {:>2}{}\n", atom.isHetero() ? "HETATM" : "ATOM",
      writeHybrid36(++serial_, 5), name + std::string(atom.name().text()), atom.location(),
      residueColumns(chain, residue), coordinates, fitted(atom.occupancy(), 6, 2),
      fitted(atom.temperatureFactor(), 6, 2), atom.element().text(), chargeColumns(atom.charge()));
  ++atoms_;
  return {};
}

void PdbWriter::writeTer(const Chain& chain, const Residue& residue) {
  fmt::print(out_, "TER   {}      {}\n", writeHybrid36(++serial_, 5),
             residueColumns(chain, residue));
}

void PdbWriter::writeEnd() { fmt::print(out_, "END\n"); }

}  // namespace molreport
