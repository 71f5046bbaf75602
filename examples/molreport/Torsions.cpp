#include "Torsions.h"

#include "Text.h"

#include <fmt/format.h>

namespace molreport {

namespace {

/// A residue with a complete backbone, and its neighbours in the polymer as indices, -1 for none.
struct Backbone {
  const Residue* residue;
  const Atom* n;
  const Atom* ca;
  const Atom* c;
  int previous = -1;
  int next = -1;
};

std::vector<Backbone> backbonesOf(const Chain& chain) {
  static const Name n = "N", ca = "CA", c = "C";
  std::vector<Backbone> backbones;
  for (const Residue* residue : chain.residues()) {
    const Backbone found = {residue, residue->find(n, &n), residue->find(ca, &c),
                            residue->find(c, &c)};
    if (found.n && found.ca && found.c) backbones.push_back(found);
  }
  return backbones;
}

bool sharePosition(const Backbone& a, const Backbone& b) {
  return a.residue->number() == b.residue->number() &&
         a.residue->insertionCode() == b.residue->insertionCode();
}

bool areLinked(const Backbone& first, const Backbone& second) {
  const double limit = longestPeptideBond * longestPeptideBond;
  return first.c->position().dist2(second.n->position()) <= limit;
}

// The residue after i that it is linked to: among those at the next position; -1 for none.
int findNext(const std::vector<Backbone>& chain, int i) {
  const auto at = [&](int index) -> const Backbone& {
    return chain[static_cast<std::size_t>(index)];
  };
  const int count = static_cast<int>(chain.size());
  int next = i + 1;
  while (next < count && sharePosition(at(i), at(next))) ++next;
  for (int first = next; next < count && sharePosition(at(first), at(next)); ++next)
    if (areLinked(at(i), at(next))) return next;
  return -1;
}

void link(std::vector<Backbone>& chain) {
  for (std::size_t i = 0; i < chain.size(); ++i) {
    chain[i].next = findNext(chain, static_cast<int>(i));
    if (chain[i].next < 0) continue;
    Backbone& next = chain[static_cast<std::size_t>(chain[i].next)];
    if (next.previous < 0) next.previous = static_cast<int>(i);
  }
}

// Whether three atoms lie in line, by the limit at which `tqPoint3D::dihedral` gives up.
bool areInLine(const tqPoint3D& a, const tqPoint3D& b, const tqPoint3D& c) {
  return (b - a).crossProduct(c - b).dist2(tqPoint3D()) < 1e-5;
}

Torsion torsion(const Atom* first, const Atom* second, const Atom* third, const Atom* fourth) {
  return torsionOf(first->position(), second->position(), third->position(), fourth->position());
}

std::string shown(const Torsion& angle) {
  return angle.isDefined ? fixed(angle.degrees, 8, 2) : fmt::format("{:>8}", "-");
}

}  // namespace

Torsion torsionOf(const tqPoint3D& a, const tqPoint3D& b, const tqPoint3D& c, const tqPoint3D& d) {
  if (areInLine(a, b, c) || areInLine(b, c, d)) return {};
  return {true, tqPoint3D::dihedral(a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z, d.x, d.y, d.z)};
}

std::vector<BackboneTorsions> torsionsOf(const Model& model) {
  std::vector<BackboneTorsions> all;
  for (const Chain* chain : model.chains()) {
    std::vector<Backbone> backbones = backbonesOf(*chain);
    link(backbones);
    for (const Backbone& own : backbones) {
      BackboneTorsions torsions = {chain, own.residue, {}, {}, {}};
      if (own.previous >= 0) {
        const Backbone& previous = backbones[static_cast<std::size_t>(own.previous)];
        torsions.phi = torsion(previous.c, own.n, own.ca, own.c);
      }
      if (own.next >= 0) {
        const Backbone& next = backbones[static_cast<std::size_t>(own.next)];
        torsions.psi = torsion(own.n, own.ca, own.c, next.n);
        torsions.omega = torsion(own.ca, own.c, next.n, next.ca);
      }
      all.push_back(torsions);
    }
  }
  return all;
}

void printTorsions(std::FILE* out, const Structure& structure) {
  bool isEmpty = true;
  for (const Model* model : structure.models()) {
    for (const BackboneTorsions& row : torsionsOf(*model)) {
      if (isEmpty) fmt::print(out, "  model  chain    residue         phi      psi    omega\n");
      isEmpty = false;
      fmt::print(out, "  {:>5}  {:<7}  {:<4} {:>6}  {} {} {}\n", model->number(),
                 shownChain(row.chain->id()), shownName(row.residue->name()), row.residue->label(),
                 shown(row.phi), shown(row.psi), shown(row.omega));
    }
  }
  if (isEmpty) fmt::print(out, "  no backbone torsions: no residue has the atoms N, CA and C\n");
}

}  // namespace molreport
