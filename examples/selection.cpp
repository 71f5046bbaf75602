// Objects beyond their numbers: copies that know their source, look-ups that are redirected, and
// the selection.

#include "Base.h"
#include "Platform.h"

#include <cstdio>

namespace {

/// A class of the application: it answers for its identity with an id of the application's own.
class Atom : public tqBase {
public:
  Atom() : tqBase(1) {}

  unsigned classId() const override { return 1006; }
  const char* className() const override { return "Atom"; }
  int isA(unsigned id) const override { return id == 1006 ? 1 : tqBase::isA(id); }
};

int failures = 0;

void expect(bool holds, const char* what) {
  std::printf("  %s: %s\n", holds ? "yes" : "NO", what);
  if (!holds) ++failures;
}

void replaceAnObjectForAWhile() {
  std::printf("Copies, and look-ups that are redirected\n");
  Atom measured;
  Atom edited(measured);
  std::printf("  atom %u is a copy of atom %u\n", edited.oid(), edited.sourceOid());
  expect(edited.original() == &measured, "the copy knows its original");

  // Whoever holds the number of the measured atom sees the edited one until the mapping ends.
  tqBase::setMapping(measured.oid(), edited.oid());
  expect(tqBase::validated(measured.oid(), 1) == &edited, "look-ups find the replacement");
  expect(tqBase::validated(measured.oid(), 0) == &measured, "unless asked for the object itself");
  tqBase::clearMapping();
  expect(tqBase::validated(measured.oid(), 1) == &measured, "the mapping is over");
}

void selectAndCollect() {
  std::printf("The selection\n");
  tqPlatformStart();  // the application makes the list of selected objects
  const tqBaseList* const made = selectedList;
  tqPlatformStart();  // once
  expect(made && made == selectedList && made->ordered(), "there is one ordered list");
  Atom nitrogen, oxygen;
  tqBase plain(1);
  oxygen.select(1);  // 1: the object's triggers hear of it
  nitrogen.select(1);
  plain.select(1);
  std::printf("  selected, in this order:");
  for (const tqBase* object : *selectedList)
    std::printf(" %s %u", object->className(), object->oid());
  std::printf("\n");

  tqBaseList atoms(0);
  for (tqBase* object : *selectedList) object->coerce(1006, &atoms);
  expect(!nitrogen.coerce(0, &atoms) && !nitrogen.coerce(1006, nullptr), "by their class alone");
  expect(atoms.count() == 2, "two of the three are atoms");
  oxygen.unselect(1);
  expect(selectedList->count() == 2 && selectedList->item(0) == &nitrogen, "the others stay");
}  // a destroyed object leaves the selection by itself

}  // namespace

int main() {
  replaceAnObjectForAWhile();
  selectAndCollect();
  expect(selectedList->count() == 0, "nothing is selected at the end");
  return failures == 0 ? 0 : 1;
}
