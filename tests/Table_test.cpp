#include "Base.h"
#include "UserDataItem.h"
#include "tqString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

// Key or value number n; of an address only the low word selects a slot.
template <class T> T number(std::uintptr_t n) {
  if constexpr (std::is_pointer_v<T>)
    return reinterpret_cast<T>((std::uintptr_t{7} << 32) + n);
  else
    return static_cast<T>(n);
}
template <> const char* number(std::uintptr_t n) {
  static std::map<std::uintptr_t, std::string> names;
  return names.try_emplace(n, std::to_string(n)).first->second.c_str();
}
template <> tqString number(std::uintptr_t n) { return number<const char*>(n); }

// What selects the slot of key n: all of it, alignment bits of an address included, but for
// handles.
template <class Table> unsigned hashOf(unsigned n) { return n; }
template <> unsigned hashOf<HndOIDTbl>(unsigned n) { return n >> 2; }
template <> unsigned hashOf<tqUDStringTable>(unsigned n) {
  return hash_ud_name(number<const char*>(n));
}
template <> unsigned hashOf<tqUniqueStringTable>(unsigned n) { return number<tqString>(n).hash(); }

// The documented table, written down plainly: chains of the numbers of keys and values.
template <class Table> struct Model {
  using Chain = std::vector<std::pair<unsigned, unsigned>>;
  std::vector<Chain> slots = std::vector<Chain>(32);
  std::size_t count = 0;

  Chain& chain(unsigned key) { return slots[hashOf<Table>(key) % slots.size()]; }
  void insert(unsigned key, unsigned value) {
    if (count > 2 * slots.size()) {
      std::vector<Chain> old(slots.size() * 4);
      old.swap(slots);
      for (const Chain& pairs : old)
        for (const auto& pair : pairs) chain(pair.first).insert(chain(pair.first).begin(), pair);
    }
    chain(key).insert(chain(key).begin(), {key, value});
    ++count;
  }
  // The value of the key, 0 when there is none.
  unsigned find(unsigned key, bool andRemove) {
    Chain& pairs = chain(key);
    const auto pair =
        std::find_if(pairs.begin(), pairs.end(), [&](auto& p) { return p.first == key; });
    const unsigned value = pair == pairs.end() ? 0 : pair->second;
    if (value && andRemove) pairs.erase(pair), --count;
    return value;
  }
};

template <class Table> class ChainedTableTest : public testing::Test {};
using Tables = testing::Types<OIDPtrTbl, OIDHndTbl, HndOIDTbl, CopyableTable, tqUDStringTable,
                              tqUniqueStringTable>;
TYPED_TEST_SUITE(ChainedTableTest, Tables, );

template <class Table> void expectSame(const Table& table, const Model<Table>& model) {
  ASSERT_EQ(static_cast<std::size_t>(table.count()), model.count);
  ASSERT_EQ(static_cast<std::size_t>(table.bucketCount()), model.slots.size());
  typename Table::Iterator i(table);
  for (const auto& pairs : model.slots) {
    for (auto [key, value] : pairs) {
      ASSERT_TRUE(i.more() && i.current && i.current->inTable == 1);
      ASSERT_TRUE(i.current->key == number<typename Table::Key>(key));
      ASSERT_TRUE(i.cur_value() == number<typename Table::Value>(value));
      i.next();
    }
  }
  EXPECT_FALSE(i.more() || i.next() || i.current);
}

TYPED_TEST(ChainedTableTest, AgreesWithThePlainTableInSlotsGrowthAndOrderEqualKeysIncluded) {
  for (unsigned firstLook : {1u, 70u, 300u, 1500u, 5999u}) {  // chains may be made late
    std::mt19937 random(firstLook);
    TypeParam table(0);
    Model<TypeParam> model;
    for (unsigned step = 1; step < 6000; ++step) {
      const unsigned n = 1 + static_cast<unsigned>(random() % 700), choice = random() % 16;
      const auto key = number<typename TypeParam::Key>(n);
      auto value = number<typename TypeParam::Value>(step);
      if (choice < 11) {
        table.insert(key, value), model.insert(n, step);
      } else if (choice == 15) {
        table.remove(key), model.find(n, true);
      } else {
        const int found = choice < 13 ? table.find(value, key) : table.find_and_remove(value, key);
        const unsigned expected = model.find(n, choice >= 13);
        ASSERT_EQ(found, expected ? 1 : 0);
        ASSERT_TRUE(value == number<typename TypeParam::Value>(expected ? expected : step));
      }
      if (step >= firstLook && (step < 300 || step % 100 == 99)) expectSame(table, model);
    }
    table.clear();
    EXPECT_EQ(table.bucketCount(), 2048) << "clearing or removing shrank it";
    expectSame(table, {std::vector<typename decltype(model)::Chain>(2048)});
  }
}

TYPED_TEST(ChainedTableTest, ThatNobodyLookedAtWhileItFilledHasTheChainsOfThePlainTable) {
  for (unsigned pairs : {1u, 40u, 300u, 1500u}) {
    std::mt19937 random(pairs);
    TypeParam table(0);
    Model<TypeParam> model;
    while (table.count() < static_cast<int>(pairs)) {
      const unsigned n = 1 + static_cast<unsigned>(random() % 4000);
      const auto key = number<typename TypeParam::Key>(n);
      typename TypeParam::Value value{};
      if (table.find(value, key)) {
        ASSERT_TRUE(value == number<typename TypeParam::Value>(n));
        table.remove(key), model.find(n, true);
      } else {
        table.insert(key, number<typename TypeParam::Value>(n)), model.insert(n, n);
      }
    }
    expectSame(table, model);
  }
}

TYPED_TEST(ChainedTableTest, FindsWhatTheCallerWroteIntoAnEntry) {
  const auto key = number<typename TypeParam::Key>(5);
  auto value = number<typename TypeParam::Value>(1), other = number<typename TypeParam::Value>(2);
  TypeParam table(0);
  table.insert(key, value);
  typename TypeParam::Entry* const entry = *table.probe(key);
  entry->value = other;
  EXPECT_TRUE(table.find(value, key) && value == other);
  entry->inTable = 0;
  EXPECT_FALSE(table.find(value, key));
}

TYPED_TEST(ChainedTableTest, EntriesLinkedByTheCallerStayItsOwnWhenInitializedAgain) {
  std::vector<typename TypeParam::Entry> entries(100);
  TypeParam table(32);
  for (auto& entry : entries) {
    table.insertEntry(&entry);
    EXPECT_EQ(*table.probe(entry.key), &entry);
  }
  EXPECT_TRUE(table.count() == 100 && table.bucketCount() == 32) << "only insert grows";
  const typename TypeParam::Entry copy(entries[99]);
  EXPECT_TRUE(copy.inTable == 1 && !copy.next && entries[99].next);
  const std::pair<int, std::size_t> hints[] = {
      {-5, 32}, {0, 32}, {32, 32}, {33, 64}, {10000, 16384}};
  for (auto [hint, slots] : hints) {
    table.initialize(hint);
    expectSame(table, {std::vector<typename Model<TypeParam>::Chain>(slots)});
    table.insert({}, {}), table.remove({});  // memory of its own comes back
  }
}

TEST(ProtoTableHash, MatchesTheArithmeticAndPassesOverTheFirstCharacter) {
  // (17944 * 2 XOR 0xff) * 2 = 72094, times 67108863 modulo 2^32, over 1023
  const auto byHand = static_cast<unsigned>(72094ull * 67108863ull % 4294967296ull / 1023ull);
  const std::pair<const char*, unsigned> texts[] = {{nullptr, 1574383u}, {"", 1574383u},
                                                    {"a", 3148767u},     {"b", 3148767u},
                                                    {"ab", 2361532u},    {"a\xff", byHand}};
  for (auto [text, hash] : texts) EXPECT_EQ(ProtoTable::hash(text), hash) << (text ? text : "null");
  EXPECT_EQ(ProtoTable::hash(1), 2654435767u);
  EXPECT_EQ(ProtoTable::hash(-2), 4294967296u - 1013904238u);
  EXPECT_EQ(ProtoTable::hash(1.0), 1072693248u);
  EXPECT_EQ(ProtoTable::hash(-0.0), 2147483648u);
}

}  // namespace
