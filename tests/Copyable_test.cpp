#include "Copyable.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// A part that refers to others.
struct Part : tqCopyable {
  static std::vector<Part*> made;  // all of them, copies included
  std::vector<Part*> parts;
  bool copyable = true;
  Part() { made.push_back(this); }
  Part(const Part& other) : tqCopyable(), parts(other.parts) { made.push_back(this); }
  tqCopyable* shallowCopy() const override { return copyable ? new Part(*this) : nullptr; }
  void deepenShallowCopy() override {
    for (Part*& part : parts) part = static_cast<Part*>(part->deepCopy());
  }
};
std::vector<Part*> Part::made;

class CopyableTest : public testing::Test {
public:
  Part *whole = new Part, *left = new Part, *right = new Part, *shared = new Part;
  CopyableTest() {
    whole->parts = {left, right}, left->parts = {shared}, right->parts = {shared, whole, right};
  }
  ~CopyableTest() override {
    tqCopyable::deleteCopyTable();
    for (Part* part : Part::made) delete part;
    Part::made.clear();
  }
};

TEST_F(CopyableTest, SharedPartsAndCyclesAreCopiedOnceAndStayShared) {
  auto* const copy = static_cast<Part*>(whole->deepCopy());
  Part *const leftCopy = copy->parts[0], *const rightCopy = copy->parts[1];
  EXPECT_EQ(Part::made.size(), 8u);
  shared->copyable = false;
  EXPECT_EQ(static_cast<Part*>(left->deepCopy())->parts[0], nullptr) << "it has no shallow copy";
  EXPECT_NE(leftCopy->parts[0], shared);
  EXPECT_EQ(rightCopy->parts, (std::vector<Part*>{leftCopy->parts[0], copy, rightCopy}));
}

TEST_F(CopyableTest, EveryOutermostCopyIsNewUnlessATableIsHeldOpen) {
  EXPECT_NE(left->deepCopy(), left->deepCopy());
  const std::pair<int, int> hints[] = {{3, 32}, {-1, 32}, {50000, 65536}, {20000, 32768}};
  for (auto [hint, slots] : hints) {
    tqCopyable::setCopyTableSize(hint);
    EXPECT_EQ(tqCopyable::_copyTableSize, hint < 10 ? 10 : hint);
    tqCopyable::makeCopyTable();
    const CopyableTable* const table = tqCopyable::_deepCopyTable;
    const tqCopyable* const copy = left->deepCopy();
    tqCopyable::makeCopyTable();
    EXPECT_EQ(static_cast<Part*>(whole->deepCopy())->parts[0], copy);
    EXPECT_TRUE(tqCopyable::_deepCopyTable == table && table->bucketCount() == slots);
    tqCopyable::deleteCopyTable();
    EXPECT_TRUE(!tqCopyable::_deepCopyTable && left->deepCopy() != copy);
  }
}

}  // namespace
