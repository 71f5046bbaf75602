// Copies a tree of objects with its attributes: references inside the tree follow.

#include "Platform.h"
#include "UserData.h"

#include <cstdio>
#include <cstdlib>

namespace {

unsigned referenceOf(tqTreeNode* node, const char* name) {
  unsigned oid = 0;
  node->userData()->findUserData(name, oid);
  return oid;
}

}  // namespace

int main() {
  //! [copy]
  tqTreeNode molecule, outside;
  auto* const donor = new tqTreeNode;
  auto* const acceptor = new tqTreeNode;
  molecule.addChild(donor);  // the molecule owns both now
  molecule.addChild(acceptor);
  tqBase settings(1);  // no node of any tree

  donor->userData()->addUserData("bonded", acceptor->oid());
  donor->userData()->addUserData("solvent", outside.oid());
  donor->userData()->addUserData("settings", settings.oid());

  tqTreeNode* const copy = molecule.copyTree();
  tqTreeNode* const donorCopy = copy->child(0);
  // bonded: the copy of the acceptor; solvent: 0, it lies outside; settings: the same object
  //! [copy]
  std::printf("bonded %u -> %u, solvent %u, settings %u\n", acceptor->oid(),
              referenceOf(donorCopy, "bonded"), referenceOf(donorCopy, "solvent"),
              referenceOf(donorCopy, "settings"));

  const bool isRight = donorCopy->original() == donor &&
                       referenceOf(donorCopy, "bonded") == copy->child(1)->oid() &&
                       referenceOf(donorCopy, "solvent") == 0 &&
                       referenceOf(donorCopy, "settings") == settings.oid();
  delete copy;
  return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
