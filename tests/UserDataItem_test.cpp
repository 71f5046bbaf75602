#include "UserDataItem.h"

#include "Platform.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

std::string textOf(tqUserDataItem& item) {
  char text[80];
  return item.writeValueToString(text, sizeof text);
}

std::string named(std::size_t length) { return std::string(length, 'n'); }

}  // namespace

TEST(UserDataName, HashMixesEveryByteAsUnsigned) {
  EXPECT_EQ(hash_ud_name(nullptr), 0u);
  EXPECT_EQ(hash_ud_name(""), 0u);
  EXPECT_EQ(hash_ud_name("a"), 97u);
  EXPECT_EQ(hash_ud_name("\xff\xff"), 257u);
  EXPECT_EQ(hash_ud_name("temperature_factor"), 11421285u);
}

TEST(UserDataName, IsInternedFromEightCharactersOn) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process without names
  const auto intern = [] {
    const tqUserDataItem shortNamed("1234567"), null(nullptr);
    const bool untouched = !tqUserDataItem::_stringTable && !tqUserDataItem::_stringPool;
    const tqUserDataItem longNamed("12345678");
    std::exit(!untouched || tqUserDataItem::_stringTable->bucketCount() != 256 ||
              tqUserDataItem::_stringPool->capacity != 800 ||
              longNamed.name() != tqUserDataItem::_stringPool->block);
  };
  EXPECT_EXIT(intern(), testing::ExitedWithCode(0), "");
}

TEST(UserDataName, IsSharedByAllItemsWhenLong) {
  tqUserDataItem item(named(40).c_str(), 5), other(named(40).c_str()), copy(item);
  EXPECT_EQ(item.name(), other.name());
  EXPECT_EQ(item.name(), copy.name());
  EXPECT_EQ(item.name(), named(40));
  char* pooled = nullptr;
  EXPECT_EQ(tqUserDataItem::_stringTable->find(pooled, named(40).c_str()), 1);
  EXPECT_EQ(pooled, item.name());

  for (const char* name : {"", "1234567", "12345678", "1234", "different_5678"}) {
    item.setName(name);
    EXPECT_STREQ(item.name(), name);
    EXPECT_STREQ(tqUserDataItem(item).name(), name);
  }
  item.setName(item.name() + 3);
  EXPECT_STREQ(item.name(), "ferent_5678");
  item.setName(nullptr);
  EXPECT_STREQ(item.name(), "");
  EXPECT_EQ(item.type(), ATTR_INT) << "a new name keeps the value";
}

TEST(UserDataNamePool, FillsItsBlockThenStartsAFreshOneBehindTheSameHead) {
  for (const unsigned size :
       {800u, 2000u, 100u}) {  // a smaller head still gets fresh blocks of 800
    SCOPED_TRACE(size);
    tqUDStringPool pool(size);
    for (unsigned i = 0; i < 200; ++i) {
      char* const block = pool.block;
      const unsigned used = pool.used, length = 799 - i * 37 % 800;
      const char* const copy = pool.add(named(length).c_str());
      const bool fits = used + length + 1 <= size;
      EXPECT_EQ(copy, fits ? block + used : pool.block);
      EXPECT_EQ(copy, named(length));
      EXPECT_EQ(pool.used, fits ? used + length + 1 : length + 1);
      EXPECT_EQ(pool.capacity, size);
      if (fits) continue;
      EXPECT_EQ(pool.next->block, block);
      EXPECT_EQ(pool.next->used, used);
    }
  }
}

TEST(UserDataNamePool, OwnBlockIsRecordedWithoutCapacityAndNul) {
  tqUDStringPool pool(800);
  char* const first = pool.add("first");
  for (const std::size_t length : {800u, 801u, 5000u}) {
    const char* const own = pool.add(named(length).c_str());
    EXPECT_EQ(own, named(length));
    EXPECT_EQ(own, pool.next->block);
    EXPECT_EQ(pool.next->capacity, 0u);
    EXPECT_EQ(pool.next->used, length);
  }
  EXPECT_EQ(pool.add("second"), first + 6) << "the head's free space is left alone";
}

// By constructor and by setter.
template <class... Value> void expectItem(int type, const char* text, Value... value) {
  tqUserDataItem made("name", value...), set;
  set.setValue(value...);
  for (tqUserDataItem* item : {&made, &set}) {
    EXPECT_EQ(item->type(), type);
    EXPECT_EQ(textOf(*item), text);
    AttrValue out;
    item->value(out);
    EXPECT_EQ(out.type(), type);
    EXPECT_EQ(item->numElements(), out.length());
    item->setValue(AttrValue(7));
    int number = 0;
    EXPECT_EQ(item->value(number), 1);
    EXPECT_EQ(number, 7);
    item->clear();
    EXPECT_EQ(item->type(), ATTR_NONE);
  }
}

TEST(UserDataItem, TakesEachKindOfValue) {
  const int ints[] = {1, 2};
  const unsigned oids[] = {0, 0};
  const float floats[] = {0.5f, 1};
  const double doubles[] = {0.5, 1}, points[][3] = {{1, 2, 3}, {4, 5, 6}};
  expectItem(ATTR_INT, "-1", -1);
  expectItem(ATTR_UINT, "0", 0u);
  expectItem(ATTR_FLOAT, "0.5", 0.5f);
  expectItem(ATTR_DOUBLE, "0.25", 0.25);
  expectItem(ATTR_POINT, "(4 5 6)", &points[1][0]);
  expectItem(ATTR_INT_ARRAY, "1 2", 2, &ints[0]);
  expectItem(ATTR_UINT_ARRAY, "0 0", 2, &oids[0]);
  expectItem(ATTR_FLOAT_ARRAY, "0.5 1", 2, &floats[0]);
  expectItem(ATTR_DOUBLE_ARRAY, "0.5", 1, &doubles[0]);
  expectItem(ATTR_POINT_ARRAY, "(1 2 3) (4 5 6)", 2, &points[0]);
  expectItem(ATTR_STRING, "text", "text");
  expectItem(ATTR_INT_ARRAY, "", -2, &ints[0]);
}

TEST(UserDataItem, ReadingForgetsObjectsThatDiedSinceTheLastRead) {
  auto object = std::make_unique<tqBase>(1);
  const unsigned oid = object->oid(), oids[] = {oid, oid};
  tqUserDataItem one("one", oid), two("two", 2, oids);
  AttrValue out;
  one.value(out);
  unsigned read = 0;
  EXPECT_EQ(out.value(read), 1);
  EXPECT_EQ(read, oid);
  object.reset();
  EXPECT_EQ(one.value(read), 1);
  EXPECT_EQ(read, oid) << "the plain getter does not look the object up";
  one.value(out);
  EXPECT_EQ(one.value(read), 1);
  EXPECT_EQ(read, 0u);
  EXPECT_EQ(textOf(two), "0 0");
}

TEST(UserDataItem, CopyingOutsideATreeCopyForgetsNodes) {
  const tqTreeNode node;
  const tqBase object(1), target(1);
  tqBase::setMapping(object.oid(), target.oid());
  const unsigned oids[] = {node.oid(), object.oid(), 0};
  const tqUserDataItem item("name", 3, oids);
  tqUserDataItem copy(item);
  tqBase::clearMapping();
  EXPECT_EQ(textOf(copy), "0 " + std::to_string(target.oid()) + " 0");
}

TEST(UserDataItem, SharedBehaviorChangesForAll) {
  tqUserDataItem first("first", 1), second("second", 2);
  EXPECT_EQ(first.isPersistent() + first.isVisible(), 2);
  EXPECT_EQ(first.behavior(), nullptr);
  first.setPersistent(0);
  ASSERT_NE(first.behavior(), nullptr);
  EXPECT_EQ(first.isPersistent(), 0);
  EXPECT_EQ(first.isVisible(), 1);
  EXPECT_EQ(first.behavior()->copyOption, UD_COPY_DEFAULT);
  second.setBehavior(first.behavior());
  second.setVisibility(0);
  EXPECT_EQ(first.isVisible(), 0);
  EXPECT_EQ(tqUserDataItem(first).behavior(), first.behavior());
}

TEST(UserDataItemList, DeepCopyCopiesEachItemOnceAndKeepsNullSlots) {
  for (const int n : {3, 5000}) {
    SCOPED_TRACE(n);
    tqUserDataItemList list(0);
    for (int i = 0; i < n; ++i) list.append(new tqUserDataItem("number", i));
    for (int i = 0; i < n; ++i) list.append(list.item(i));
    list.append(nullptr);
    const std::unique_ptr<tqCopyable> owner(list.deepCopy());
    const auto& copy = static_cast<tqUserDataItemList&>(*owner);
    ASSERT_EQ(copy.count(), 2 * n + 1);
    EXPECT_EQ(copy.item(2 * n), nullptr);
    for (int i = 0; i < n; ++i) {
      int number = -1;
      EXPECT_EQ(copy.item(i)->value(number), 1);
      EXPECT_EQ(number, i);
      EXPECT_EQ(copy.item(n + i), copy.item(i));
      EXPECT_NE(copy.item(i), list.item(i));
      delete copy.item(i);
      delete list.item(i);
    }
  }
}
