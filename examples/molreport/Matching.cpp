#include "Matching.h"

#include <algorithm>
#include <tuple>

namespace molreport {

namespace {

struct Keyed {
  std::tuple<char, int, char, char, int, std::string_view> key;
  Atom* atom;
};

std::vector<Keyed> sortedAtoms(const Model& model) {
  std::vector<Keyed> atoms;
  forEachAtom(model, [&atoms](const Chain& chain, const Residue& residue, Atom& atom) {
    atoms.push_back({{chain.id(), residue.number(), residue.insertionCode(), atom.location(),
                      atom.nameOffset(), atom.name().text()},
                     &atom});
  });
  std::stable_sort(atoms.begin(), atoms.end(),
                   [](const Keyed& a, const Keyed& b) { return a.key < b.key; });
  return atoms;
}

}  // namespace

std::vector<std::pair<Atom*, Atom*>> matchAtoms(const Model& first, const Model& second) {
  const std::vector<Keyed> ours = sortedAtoms(first);
  const std::vector<Keyed> theirs = sortedAtoms(second);
  std::vector<std::pair<Atom*, Atom*>> pairs;
  auto own = ours.begin();
  auto other = theirs.begin();
  while (own != ours.end() && other != theirs.end()) {
    if (own->key < other->key)
      ++own;
    else if (other->key < own->key)
      ++other;
    else
      pairs.emplace_back((own++)->atom, (other++)->atom);
  }
  return pairs;
}

}  // namespace molreport
