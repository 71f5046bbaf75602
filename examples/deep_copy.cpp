// Deep copies: a class takes part with two small functions, what is shared in the source is shared
// in the copy, cycles end, and several copies may be made as one.

#include "Copyable.h"

#include <cstdio>

namespace {

/// A force-field parameter that many bonds share.
class BondType : public tqCopyable {
public:
  explicit BondType(double angstroms) : length(angstroms) {}
  tqCopyable* shallowCopy() const override { return new BondType(*this); }
  void deepenShallowCopy() override {}  // it has no parts

  double length;
};

/// A bond in a ring: it refers to its type, which others share, and to the next bond, around the
/// ring and back to itself.
class Bond : public tqCopyable {
public:
  explicit Bond(BondType* shared) : type(shared) {}

  /// First step: a new object that still refers to the source's parts.
  tqCopyable* shallowCopy() const override { return new Bond(*this); }
  /// Second step, on the copy: each part is replaced by its own copy. `deepCopy` makes that at the
  /// first request and hands the same one out at every other.
  void deepenShallowCopy() override {
    type = static_cast<BondType*>(type->deepCopy());
    next = static_cast<Bond*>(next->deepCopy());
  }

  BondType* type;
  Bond* next = nullptr;
};

int failures = 0;

void expect(bool holds, const char* what) {
  std::printf("  %s: %s\n", holds ? "yes" : "NO", what);
  if (!holds) ++failures;
}

Bond* ringOfSix(BondType* type) {
  Bond* const first = new Bond(type);
  Bond* last = first;
  for (int i = 1; i < 6; ++i) last = last->next = new Bond(type);
  last->next = first;
  return first;
}

void destroyRing(Bond* ring) {
  for (Bond* bond = ring->next; bond != ring;) {
    Bond* const next = bond->next;
    delete bond;
    bond = next;
  }
  delete ring;
}

int size(const Bond* ring) {
  int bonds = 1;
  for (const Bond* bond = ring->next; bond != ring; bond = bond->next) ++bonds;
  return bonds;
}

void copyARing(Bond* ring) {
  std::printf("A ring of six bonds that share one type\n");
  Bond* const copy = static_cast<Bond*>(ring->deepCopy());
  expect(copy != ring && size(copy) == 6, "the copy is a ring of six bonds of its own");
  expect(copy->type != ring->type, "with a type of its own");
  expect(copy->type == copy->next->type, "which its bonds share");
  delete copy->type;
  destroyRing(copy);
}

void copyTwoRingsAsOne(Bond* first, Bond* second) {
  std::printf("Two rings that share their type, copied as one\n");
  tqCopyable::makeCopyTable();  // held open, it keeps what is shared over all copies
  Bond* const one = static_cast<Bond*>(first->deepCopy());
  Bond* const two = static_cast<Bond*>(second->deepCopy());
  expect(first->deepCopy() == one, "the same source gives the same copy");
  tqCopyable::deleteCopyTable();
  expect(one->type == two->type && one->type != first->type, "both copies share one new type");
  delete one->type;
  destroyRing(one);
  destroyRing(two);
}

}  // namespace

int main() {
  BondType aromatic(1.39);
  Bond* const benzene = ringOfSix(&aromatic);
  Bond* const pyridine = ringOfSix(&aromatic);
  copyARing(benzene);
  copyTwoRingsAsOne(benzene, pyridine);
  destroyRing(benzene);
  destroyRing(pyridine);
  return failures == 0 ? 0 : 1;
}
