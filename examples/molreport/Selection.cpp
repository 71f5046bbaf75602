#include "Selection.h"

#include <fmt/format.h>

#include <charconv>

namespace molreport {

namespace {

std::vector<std::string> partsOf(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator)
      parts.emplace_back();
    else
      parts.back() += c;
  }
  return parts;
}

}  // namespace

std::string Selection::parse(const std::string& text) {
  const std::vector<std::string> parts = partsOf(text, '/');
  if (parts.size() < 2 || parts.size() > 3)
    return fmt::format("\"{}\" is not of the form CHAIN/RESIDUE/ATOM", text);
  *this = Selection();
  if (parts[0].size() > 1)
    return fmt::format("chain \"{}\" in \"{}\" is longer than one character", parts[0], text);
  anyChain = parts[0] == "*";
  if (!parts[0].empty()) chain = parts[0][0];

  anyResidue = parts[1] == "*";
  const char* const end = parts[1].data() + parts[1].size();
  const std::from_chars_result read = std::from_chars(parts[1].data(), end, number);
  const bool isNumber = read.ec == std::errc() && end - read.ptr <= 1;
  if (isNumber && read.ptr != end) insertionCode = *read.ptr;
  if (!anyResidue && !isNumber)
    return fmt::format("residue \"{}\" in \"{}\" is not a number with an insertion code or none",
                       parts[1], text);

  ofResidues = parts.size() == 2;
  if (ofResidues) return {};
  anyAtom = parts[2] == "*";
  atom = Name(parts[2].c_str());
  return atom.isEmpty() ? fmt::format("\"{}\" names no atom", text) : std::string();
}

bool Selection::matches(const Chain& candidate) const {
  return anyChain || candidate.id() == chain;
}

bool Selection::matches(const Residue& candidate) const {
  return anyResidue || (candidate.number() == number && candidate.insertionCode() == insertionCode);
}

bool Selection::matches(const Atom& candidate) const { return anyAtom || candidate.name() == atom; }

Atom* findAtom(const Model& model, const Selection& selection) {
  for (Chain* chain : model.chains()) {
    if (!selection.matches(*chain)) continue;
    for (Residue* residue : chain->residues()) {
      if (!selection.matches(*residue)) continue;
      if (Atom* atom = residue->find(selection.atom)) return atom;
    }
  }
  return nullptr;
}

std::string selectionOf(const Chain& chain, const Residue& residue) {
  const std::string id = chain.id() == ' ' ? "" : std::string(1, chain.id());
  return fmt::format("{}/{}", id, residue.label());
}

std::string selectionOf(const Atom& atom) {
  const Residue& residue = static_cast<const Residue&>(*atom.parent());
  return fmt::format("{}/{}", selectionOf(static_cast<const Chain&>(*residue.parent()), residue),
                     atom.name().text());
}

}  // namespace molreport
