#include "Platform.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

std::string ended;  // names of the nodes destroyed, in order

struct Node : tqTreeNode {
  char name;
  explicit Node(char is, tqTreeNode* parent = nullptr) : name(is) {
    if (parent) parent->addChild(this);
  }
  ~Node() override { ended += name; }
  tqCopyable* shallowCopy() const override {
    EXPECT_TRUE(_copyRoot && hasAncestor(_copyRoot)) << "not in the tree that is copied";
    return tqTreeNode::shallowCopy();
  }
};

TEST(TreeNode, KnowsTheRootOfTheCopyMeanwhileAndMayBeQueuedTogetherWithThoseBelow) {
  Node *const a = new Node('a'), *const b = new Node('b', a), *const c = new Node('c', b);
  delete a->copyTree(), delete b->copyTree();
  EXPECT_EQ(tqTreeNode::_copyRoot, nullptr);
  for (Node* node : {a, b, c}) node->deferredDelete();
  tqBase::deleteTBDObjects();
  EXPECT_EQ(ended, "abc");
}

TEST(NamedGroup, HoldsMembersByIdentifierInTheOrderAdded) {
  auto* object = new tqBase(1);
  tqBase other(1);
  const unsigned members[] = {object->oid(), other.oid(), object->oid(), 0, 0};
  tqNamedGroup group("touched", 1, 1, 1);
  for (tqBase* member : {object, &other, object, static_cast<tqBase*>(nullptr)}) group.add(member);
  const std::unique_ptr<tqNamedGroup> copy(static_cast<tqNamedGroup*>(group.deepCopy()));
  EXPECT_EQ(group.autoRemove(), 1);
  group.clear(), group.setAutoRemove(0), delete object;
  for (int i = 0; i < 5; ++i) EXPECT_EQ(copy->memberOid(i), members[i]) << i;
  EXPECT_TRUE(copy->member(1) == &other && !copy->member(0) && copy->memberOid(-1) == 0);
  EXPECT_TRUE(copy->count() == 4 && group.count() == 0 && group.autoRemove() == 0);
  EXPECT_STREQ(copy->name(), "touched");
  EXPECT_STREQ(tqNamedGroup(nullptr, 0, 0, 0).name(), "");
}

TEST(ApplObject, IsCurrentUntilAnotherOneIsOrItIsDestroyed) {
  {
    tqApplObject one, two;
    tqApplObject::setCurrent(&one), tqApplObject::setCurrent(&two);
    EXPECT_EQ(tqz_CurrentApplicationObject(), two.oid());
  }
  EXPECT_EQ(tqz_CurrentApplicationObject(), 0u);
}

}  // namespace
