// Trees of objects: nodes own their children, move between parents, are copied with all that is
// below them, and are destroyed with it; groups keep numbers of nodes that may die meanwhile.

#include "Platform.h"

#include <cstdio>
#include <initializer_list>
#include <string>

namespace {

/// A node of the application's own: a structure, a chain, a residue. It overrides `shallowCopy`, so
/// that copies of trees consist of its own class.
class Node : public tqTreeNode {
public:
  explicit Node(const char* name) : name_(name) {}
  Node(const Node& other) : tqTreeNode(other), name_(other.name_) {}
  ~Node() override { destroyed += name_ + " "; }

  const std::string& name() const { return name_; }
  tqCopyable* shallowCopy() const override { return new Node(*this); }

  static std::string destroyed;  // names in the order that nodes were destroyed

private:
  std::string name_;
};
std::string Node::destroyed;

int failures = 0;

void expect(bool holds, const char* what) {
  std::printf("  %s: %s\n", holds ? "yes" : "NO", what);
  if (!holds) ++failures;
}

/// A tree on one line: "1abc(A(GLY ALA) B)".
std::string text(const tqTreeNode* node) {
  std::string all = static_cast<const Node*>(node)->name();
  for (int i = 0; i < node->childCount(); ++i) all += (i == 0 ? "(" : " ") + text(node->child(i));
  return node->childCount() > 0 ? all + ")" : all;
}

void expectTree(const tqTreeNode* root, const char* expected, const char* what) {
  std::printf("  %s\n", text(root).c_str());
  expect(text(root) == expected, what);
}

void rearrange(Node* structure, Node* a, Node* b, Node* gly) {
  std::printf("Nodes move, but never below themselves\n");
  expectTree(structure, "1abc(A(GLY ALA) B)", "children stand in the order added");
  b->addChild(gly);
  expectTree(structure, "1abc(A(ALA) B(GLY))", "a node leaves its former parent");
  for (Node* impossible : {gly, b, structure, static_cast<Node*>(nullptr)})
    gly->addChild(impossible);
  a->removeChild(gly);  // no child of A
  expectTree(structure, "1abc(A(ALA) B(GLY))", "the impossible is ignored");
  expect(gly->hasAncestor(structure) && gly->hasAncestor(gly), "a node is among its own ancestors");
  expect(!gly->hasAncestor(a) && !gly->hasAncestor(nullptr), "a chain that it left is not");
  expect(gly->parent() == b && !b->child(1) && !b->child(-1), "out of range there is no child");
}

void copyAndDestroy(Node* structure, Node* b) {
  std::printf("Copies\n");
  delete structure->shallowCopy();
  expectTree(structure, "1abc(A(ALA) B(GLY))", "a shallow copy never owned the children");
  tqTreeNode* const copy = structure->copyTree();
  tqTreeNode* const chain = b->copyTree();
  expectTree(copy, "1abc(A(ALA) B(GLY))", "the copy is a tree of its own");
  expect(copy->child(1) != b && copy->child(1)->original() == b,
         "of nodes that know their sources");
  expect(!copy->parent() && !chain->parent(), "a copy has no parent, whatever its source has");

  std::printf("Destruction\n");
  structure->removeChild(b);  // handed back: it is the caller's now
  Node::destroyed.clear();
  delete structure;
  std::printf("  destroyed: %s\n", Node::destroyed.c_str());
  expect(Node::destroyed == "1abc A ALA ", "a node goes with all that is below it");
  delete copy->child(0);
  expectTree(copy, "1abc(B(GLY))", "a node that is destroyed leaves its parent");
  delete copy;
  delete chain;
  expectTree(b, "B(GLY)", "what was handed back is still there");
  delete b;
}

void groupNodes() {
  std::printf("A group of nodes\n");
  Node* const ala = new Node("ALA");
  Node val("VAL");
  tqNamedGroup group("active site", 1, 1, 1);
  for (tqBase* member : {static_cast<tqBase*>(ala), static_cast<tqBase*>(&val)}) group.add(member);
  delete ala;
  std::printf("  %s: %d members\n", group.name(), group.count());
  expect(!group.member(0) && group.member(1) == &val, "a destroyed member reads as null");
}

}  // namespace

int main() {
  Node* const structure = new Node("1abc");
  Node *const a = new Node("A"), *const b = new Node("B");
  Node* const gly = new Node("GLY");
  structure->addChild(a);
  structure->addChild(b);
  a->addChild(gly);
  a->addChild(new Node("ALA"));
  rearrange(structure, a, b, gly);
  copyAndDestroy(structure, b);
  groupNodes();
  return failures == 0 ? 0 : 1;
}
