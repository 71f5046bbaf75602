// Objects: numbers that outlive pointers, lists and tables of them, copies that know their source,
// and deletion at a safe time.

#include "Platform.h"

#include <cstdio>

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "objects: %s\n", what);
  ++failures;
}

void nameObjects() {
  //! [identity]
  tqBase* const atom = new tqBase(1);
  const unsigned number = atom->oid();                 // keep this where the atom may be destroyed
  tqBase* const found = tqBase::validated(number, 0);  // the atom
  delete atom;
  tqBase* const gone = tqBase::validated(number, 0);  // null, for good: no number comes back
  //! [identity]
  expect(number != 0 && found == atom && !gone, "identity");

  //! [handle]
  FILE* const window = stdout;  // something that is not of this library
  const int handle = make_handle_oid(window);
  void* const same = oid_to_handle(handle);
  delete_handle_oid(handle);  // before the thing itself goes
  //! [handle]
  expect(same == window && !oid_to_handle(handle), "handle");
}

void keepLists() {
  tqBase first(1), second(1), third(1);
  //! [list]
  tqBaseList atoms(0);  // room is made as it fills
  atoms.ordered(1);     // otherwise removal moves the last element into the hole
  atoms.append(&first);
  atoms.append(&second);
  atoms.append(&third);
  atoms.remove(0);
  for (const tqBase* atom : atoms) std::printf("atom %u\n", atom->oid());
  //! [list]
  expect(atoms.count() == 2 && atoms.item(0) == &second, "list");

  //! [table]
  int bonds = 0;
  HndOIDTbl bondsOf(100);  // a hint: about as many slots
  bondsOf.insert(&first, 4);
  if (bondsOf.find(bonds, &first)) std::printf("%d bonds\n", bonds);
  //! [table]
  expect(bonds == 4 && !bondsOf.find(bonds, &second), "table");
}

void copyTree() {
  //! [copy]
  tqTreeNode molecule;
  molecule.addChild(new tqTreeNode);
  tqTreeNode* const copy = molecule.copyTree();
  tqBase* const source = copy->child(0)->original();  // the node that it was copied from
  //! [copy]
  expect(copy->childCount() == 1 && source == molecule.child(0), "copy");
  delete copy;
}

void deleteLater() {
  //! [deletion]
  tqBase* const atom = new tqBase(1);
  const unsigned number = atom->oid();
  atom->deferredDelete();      // stays whole while callers up the stack still use it
  tqBase::deleteTBDObjects();  // here by hand; every notification ends with it
  //! [deletion]
  expect(!tqBase::validated(number, 0), "deletion");
}

}  // namespace

int main() {
  nameObjects();
  keepLists();
  copyTree();
  deleteLater();
  return failures == 0 ? 0 : 1;
}
