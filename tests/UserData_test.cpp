#include "UserData.h"

#include "Platform.h"
#include "comma_locale.h"

#include <clocale>
#include <memory>
#include <string>
#include <vector>

namespace {

std::string textOf(const tqUserData& data, const char* name) {
  char room[200] = "unset";
  data.findUserDataString(name, room, sizeof room);
  return room;
}

unsigned referenceOf(tqTreeNode* node, const char* name) {
  unsigned oid = 77;
  node->userData()->findUserData(name, oid);
  return oid;
}

const int ints[] = {1, -2, 3};
const unsigned oids[] = {4000000000u, 5, 6};
const float floats[] = {0.5f, 1.5f, 2.5f};
const double doubles[] = {0.25, 1.25, 2.25};
const double points[][3] = {{1, 2, 3}, {4, 5, 6}};

// One attribute of every kind, named after it.
void fill(tqUserData& data) {
  data.addUserData("int", 7);
  data.addUserData("uint", 8u);
  data.addUserData("float", 0.5f);
  data.addUserData("double", 0.25);
  data.addUserData("point", doubles);
  data.addUserData("ints", 3, ints);
  data.addUserData("oids", 3, oids);
  data.addUserData("floats", 3, floats);
  data.addUserData("doubles", 3, doubles);
  data.addUserData("points", 2, points);
  data.addUserData("string", "abcdef");
}

template <class T> int scalarFound(const tqUserData& data, const char* name) {
  T out = 99;
  const int found = data.findUserData(name, out);
  EXPECT_EQ(out == T(99), !found) << name;
  return found;
}

template <class T> std::string arrayFound(const tqUserData& data, const char* name, int capacity) {
  T out[4] = {};
  int n = capacity;
  const int found = data.findUserData(name, n, out);
  return std::to_string(found) + ":" + std::to_string(n);
}

}  // namespace

TEST(UserDataLookup, FindsEachKindAsThatKindOnly) {
  tqUserData data;
  fill(data);
  ASSERT_EQ(data.count(), 11);
  for (int i = 0; i < data.count(); ++i) {
    const char* const name = data.name(i);
    const std::string kind = name;
    EXPECT_EQ(scalarFound<int>(data, name), kind == "int");
    EXPECT_EQ(scalarFound<unsigned>(data, name), kind == "uint");
    EXPECT_EQ(scalarFound<float>(data, name), kind == "float");
    EXPECT_EQ(scalarFound<double>(data, name), kind == "double");
    EXPECT_EQ(arrayFound<int>(data, name, 4), kind == "ints" ? "1:3" : "0:0") << kind;
    EXPECT_EQ(arrayFound<unsigned>(data, name, 4), kind == "oids" ? "1:3" : "0:0") << kind;
    EXPECT_EQ(arrayFound<float>(data, name, 4), kind == "floats" ? "1:3" : "0:0") << kind;
    EXPECT_EQ(arrayFound<double>(data, name, 4), kind == "doubles" ? "1:3" : "0:0") << kind;
    EXPECT_EQ(arrayFound<double[3]>(data, name, 4), kind == "points" ? "1:2" : "0:0") << kind;
    int n = -1;
    EXPECT_EQ(data.type(i, n), i + 1) << "kinds come in the order of their codes";
    EXPECT_EQ(data.type(name, n), i + 1);
  }
  EXPECT_EQ(arrayFound<int>(data, "ints", 2), "1:2");
  EXPECT_EQ(arrayFound<int>(data, "ints", 0), "1:0");
  EXPECT_EQ(arrayFound<int>(data, "ints", -3), "1:0");
}

TEST(UserDataLookup, ReadsASinglePointFromAnArrayOfPointsOnly) {
  tqUserData data;
  fill(data);
  double xyz[3] = {9, 9, 9};
  EXPECT_EQ(data.findUserData("point", xyz), 0);
  EXPECT_EQ(xyz[0], 9);
  EXPECT_EQ(data.findUserData("points", xyz), 1);
  EXPECT_EQ(xyz[2], 3);
  data.addUserData("points", 0, points);
  EXPECT_EQ(data.findUserData("points", xyz), 0) << "an empty array has no first point";
}

TEST(UserDataLookup, AnswersZeroForTextsAndTellsByN) {
  tqUserData data;
  fill(data);
  const struct {
    const char* name;
    int n, nAfter;
    const char* text;
  } cases[] = {{"string", 4, 4, "abc"}, {"string", 20, 7, "abcdef"}, {"string", 1, 1, ""},
               {"string", 0, 0, "?"},   {"string", -5, 0, "?"},      {"int", 9, 0, "?"},
               {"none", 9, 0, "?"}};
  for (const auto& c : cases) {
    char room[24] = "?";
    int n = c.n;
    EXPECT_EQ(data.findUserData(c.name, n, room), 0) << c.name;
    EXPECT_EQ(n, c.nAfter) << c.name << c.n;
    EXPECT_STREQ(room, c.text);
  }
}

TEST(UserDataNames, PassOverEmptyItemsWhenFindingButNotWhenAdding) {
  tqUserData data;
  tqUserDataItem* const empty = data.findOrAdd("x");
  EXPECT_FALSE(data.find("x") || data.canFind("x"));
  EXPECT_EQ(data.index("x"), 0);
  EXPECT_EQ(data.findOrAdd("x"), empty);
  auto* const second = new tqUserDataItem("x", 5);
  data.append(second);
  data.append(nullptr);
  EXPECT_EQ(data.find("x"), second) << "the first one with a value";
  data.removeUserData("x");
  EXPECT_EQ(data.index("x"), 1) << "the last slot, which is null, took the place of the empty one";
  data.addUserData("a name of more than seven", 1);
  data.addUserData("a name of more than seven", "two");
  EXPECT_EQ(textOf(data, "a name of more than seven"), "two");
  EXPECT_EQ(data.count(), 3);
  data.addUserData(nullptr, 3);
  EXPECT_EQ(textOf(data, ""), "3");
  data.removeUserData("no such name");
  data.clearUserData();
  data.clearUserData();
  EXPECT_EQ(data.count(), 0);
}

TEST(UserDataNames, AreToldApartByEveryCharacterHoweverLong) {
  const char* const names[] = {"",         "A",        "Ab",          "ab",          "seven_a",
                               "Seven_a",  "eight_ab", "\xe9ight_ab", "an_eight_ab", "no_eight_ab",
                               "eight_abc"};
  tqUserData data;
  for (const char* name : names) data.findOrAdd(name);
  ASSERT_EQ(data.count(), 11);
  for (int i = 0; i < data.count(); ++i) EXPECT_EQ(data.index(names[i]), i) << names[i];
}

TEST(UserDataIndex, OutOfRangeIsAnsweredAndBehavioursAreMadeOnlyByTheirFlags) {
  tqUserData data;
  data.addUserData("a", 1);
  for (const int i : {-1, 1}) {
    int n = 5;
    AttrValue value(3);
    data.value(i, value);
    data.setValue(i, AttrValue(4));
    data.setVisible(i, 1);
    EXPECT_TRUE(!data.name(i) && !data.behavior(i) && data.type(i, n) == ATTR_NONE && n == 0);
    EXPECT_EQ(value.type(), ATTR_NONE);
    EXPECT_EQ(data.isPersistent(i) + data.isVisible(i), 0);
    EXPECT_EQ(data.copyOption(i), UD_COPY_NO_ATTRIBUTE);
    EXPECT_EQ(data.setCopyOption(i, UD_COPY_VALUE), 0);
  }
  EXPECT_EQ(data.copyOption(0), UD_COPY_DEFAULT);
  EXPECT_EQ(data.setCopyOption(0, UD_COPY_VALUE), 0) << "without a behaviour";
  EXPECT_FALSE(data.behavior(0));
  tqUDBehavior shared;
  data.setBehavior("a", &shared);
  EXPECT_EQ(data.setCopyOption(0, UD_COPY_NEVER), 1);
  data.setPersistent(0, 0);
  EXPECT_EQ(shared.copyOption * 10 + shared.persistent, 20);
}

TEST(UserDataText, IsReadAsTheKindThatTheAttributeHas) {
  const CommaLocale comma;
  if (!std::setlocale(LC_ALL, "comma")) std::setlocale(LC_ALL, "C");
  const struct {
    const char* name;
    const char* text;
    const char* result;
  } cases[] = {{"int", "0x1F rest", "31"},
               {"int", "010", "8"},
               {"int", "word", "0"},
               {"float", " 2.5e0", "2.5"},
               {"double", "1,5", "1"},
               {"point", "1.5 2 x", "(1.5 2 0)"},
               {"ints", "4 0x5 6 7", "4 5 6"},
               {"floats", "1.5", "1.5 0 0"},
               {"doubles", "1e1 , 2", "10 0 0"},
               {"points", "1 2 3 4 5 6 7", "(1 2 3) (4 5 6)"},
               {"string", " as is ", " as is "},
               {"new", "12", "12"}};
  for (const auto& c : cases) {
    tqUserData data;
    fill(data);
    const int before = data.count();
    data.addUserDataString(c.name, c.text);
    int n;
    const AttrType type = data.type(c.name, n);
    EXPECT_EQ(textOf(data, c.name), c.result) << c.name << " from " << c.text;
    EXPECT_EQ(type == ATTR_STRING, data.count() > before || std::string(c.name) == "string");
  }
  std::setlocale(LC_ALL, "C");
  tqUserData data;
  fill(data);
  data.addUserDataString("uint", "-1");
  unsigned number = 0;
  EXPECT_EQ(data.findUserData("uint", number), 1);
  EXPECT_EQ(number, 4294967295u);
}

TEST(UserDataReferences, OfDestroyedObjectsBecomeZeroInTheAttributeToo) {
  tqUserData data;
  auto dead = std::make_unique<tqBase>(1);
  tqBase alive(1);
  const unsigned both[] = {dead->oid(), alive.oid()};
  data.addUserData("both", 2, both);
  dead.reset();
  unsigned out[2] = {};
  int n = 2;
  EXPECT_EQ(data.findUserData("both", n, out), 1);
  EXPECT_EQ(out[0], both[0]) << "an array is copied as it stands";
  EXPECT_EQ(textOf(data, "both"), "0 " + std::to_string(alive.oid()));
  data.findUserData("both", n, out);
  EXPECT_EQ(out[0], 0u);
}

TEST(UserDataCopy, CopiesAnItemThatStandsTwiceOnce) {
  tqUserData data;
  data.addUserData("a", 1);
  data.append(data.item(0));
  std::unique_ptr<tqCopyable> copy(data.deepCopy());
  const auto& items = static_cast<tqUserData&>(*copy);
  ASSERT_EQ(items.count(), 2);
  EXPECT_EQ(items.item(0), items.item(1));
  EXPECT_NE(items.item(0), data.item(0));
}

TEST(TreeAttributes, FollowReferencesIntoTheCopyAndDropThoseThatLeaveIt) {
  tqTreeNode root, outside;
  tqBase other(1);
  auto* const a = new tqTreeNode;
  auto* const b = new tqTreeNode;
  root.addChild(a);
  a->addChild(b);
  auto dead = std::make_unique<tqBase>(1);
  const unsigned all[] = {root.oid(), b->oid(), outside.oid(), other.oid(), dead->oid(), 0};
  a->userData()->addUserData("references", 6, all);
  b->userData()->addUserData("parent", a->oid());
  dead.reset();

  std::unique_ptr<tqTreeNode> copy(root.copyTree());
  EXPECT_FALSE(tqTreeNode::_copyRoot || tqCopyable::_deepCopyTable);
  std::unique_ptr<tqTreeNode> again(copy->copyTree());
  for (tqTreeNode* const top : {copy.get(), again.get()}) {
    tqTreeNode* const aCopy = top->child(0);
    unsigned oidsOfCopy[6];
    int n = 6;
    ASSERT_EQ(aCopy->userData()->findUserData("references", n, oidsOfCopy), 1);
    const unsigned expected[] = {top->oid(), aCopy->child(0)->oid(), 0, other.oid(), 0, 0};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(oidsOfCopy[i], expected[i]) << i;
    EXPECT_EQ(referenceOf(aCopy->child(0), "parent"), aCopy->oid());
    EXPECT_EQ(aCopy->original(), a);
  }
}

TEST(TreeAttributes, FollowAChainOf200000ReferencesWithoutRecursion) {
  tqTreeNode root;
  constexpr int length = 200000;
  tqTreeNode* last = nullptr;
  for (int i = 0; i < length; ++i) {
    auto* const node = new tqTreeNode;
    root.addChild(node);
    if (last) last->userData()->addUserData("next", node->oid());
    last = node;
  }
  std::unique_ptr<tqTreeNode> copy(root.copyTree());
  ASSERT_EQ(copy->childCount(), length);
  for (int i = 0; i + 1 < length; ++i)
    ASSERT_EQ(referenceOf(copy->child(i), "next"), copy->child(i + 1)->oid());
}

TEST(TreeAttributes, StayTheSourcesWhileACopyIsShallow) {
  tqTreeNode root;
  root.addChild(new tqTreeNode);
  root.userData()->addUserData("x", 1);
  delete root.shallowCopy();
  EXPECT_EQ(root.childCount(), 1);
  EXPECT_EQ(textOf(*root.userData(), "x"), "1");
  tqCopyable::makeCopyTable();
  tqTreeNode* const once = root.copyTree();
  EXPECT_EQ(root.copyTree(), once) << "within one copy table there is one copy";
  tqCopyable::deleteCopyTable();
  EXPECT_EQ(textOf(*once->userData(), "x"), "1");
  delete once;
}

TEST(TreeAttributes, AreThereWhileTheChildrenAreDestroyed) {
  struct Leaf : tqTreeNode {
    Leaf(tqTreeNode* root, std::string* seen) : root_(root), seen_(seen) {}
    ~Leaf() override { *seen_ = textOf(*root_->userData(), "a name that is long"); }
    tqTreeNode* root_;
    std::string* seen_;
  };
  std::string seen;
  auto root = std::make_unique<tqTreeNode>();
  root->userData()->addUserData("a name that is long", "a value that is long, too");
  root->addChild(new Leaf(root.get(), &seen));
  root.reset();
  EXPECT_EQ(seen, "a value that is long, too");
}
