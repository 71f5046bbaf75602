#include "Base.h"
#include "tqList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

const auto killed = testing::KilledBySignal(SIGABRT);

// The documented list over a plain vector.
template <class Element> struct Model {
  std::vector<Element*> held;
  int capacity = 0, ordered = 0;

  int count() const { return static_cast<int>(held.size()); }
  void insert(int i, Element* item) {
    if (i < 0) return;
    for (int power = 64; capacity <= std::max(i, count()); power *= 2) capacity = (power - 16) / 4;
    // Past the end the item lies beyond the elements in use, which gain a null.
    held.insert(held.begin() + std::min(i, count()), i > count() ? nullptr : item);
  }
  void remove(int i) {
    if (i < 0 || i > count() || held.empty()) return;
    if (i == count() || !ordered) {
      if (i < count()) held[static_cast<std::size_t>(i)] = held.back();
      i = count() - 1;
    }
    held.erase(held.begin() + i);
  }
};

// Lists never look at their elements, so any address serves.
template <class List> class PointerListTest : public testing::Test {
public:
  using Element = typename List::Element;
  static Element* e(std::uintptr_t n) { return reinterpret_cast<Element*>(16 * n); }
};
using Lists = testing::Types<tqBaseList, tqTriggerList, tqStringList, tqUserDataItemList>;
TYPED_TEST_SUITE(PointerListTest, Lists, );

TYPED_TEST(PointerListTest, AgreesWithAPlainVectorHoweverItIsUsed) {
  for (int kind = 0; kind < 6; ++kind) {  // unordered, ordered, a queue; the same with pinned slots
    std::mt19937 random(static_cast<unsigned>(kind));
    TypeParam list(0);
    Model<typename TypeParam::Element> model;
    list.ordered(model.ordered = kind % 3);
    auto** slots = kind >= 3 ? list.array(0) : nullptr;
    for (int step = 0, room = 0; step < 10000; ++step, room = list.capacity()) {
      const int any = static_cast<int>(random() % (model.held.size() + 4)) - 1;
      auto* const item = this->e(1 + random() % 400);
      const auto first = std::find(model.held.begin(), model.held.end(), item);
      const auto last = std::find(model.held.rbegin(), model.held.rend(), item);
      PointerList_Iterator search(list);
      ASSERT_EQ(search.canFind(item), first != model.held.end());
      ASSERT_EQ(list.isMember(item) + list.member(item), 2 * search.canFind(item));
      ASSERT_EQ(search.index(), search.canFind(item) ? first - model.held.begin() : 0);
      const unsigned choice = random() % 16, appends = step / 1500 % 2 == 0 ? 8 : 4;
      if (choice < appends) {
        list.append(item), model.insert(model.count(), item);
      } else if (choice == 12) {
        ASSERT_EQ(list.removeLast(item), last != model.held.rend());
        if (last != model.held.rend()) model.remove(static_cast<int>(model.held.rend() - last) - 1);
      } else if (choice < 12) {
        const int i = kind % 3 == 2 ? 0 : any;
        list.remove(i), model.remove(i);
      } else if (choice < 15) {
        list.insert(any, item), model.insert(any, item);
      } else {
        list.replace(any, item);
        if (any >= model.count()) model.insert(model.count(), item);
        if (any >= 0) model.held[static_cast<std::size_t>(std::min(any, model.count() - 1))] = item;
      }
      ASSERT_TRUE(kind < 3 || list.capacity() != room || list.array(0) == slots) << "it moved";
      if (kind >= 3) slots = list.array(0);
      TypeParam copy(list);
      for (const auto* same : {&copy, &list}) {
        ASSERT_EQ(std::vector(same->begin(), same->end()), model.held) << kind << ", " << step;
        ASSERT_TRUE(same->capacity() == model.capacity && same->ordered() == model.ordered);
      }
    }
  }
}

TYPED_TEST(PointerListTest, HasRoomOnTheLadderOfFourByteElementsAndNullsBeforeAnItemPastTheEnd) {
  const std::pair<int, int> cases[] = {{-3, 0}, {0, 0}, {1, 12}, {11, 12}, {12, 28}, {28, 60}};
  for (auto [initial, capacity] : cases) {
    TypeParam list(initial);
    EXPECT_EQ(list.capacity(), capacity) << initial;
    EXPECT_TRUE(list.count() + list.ordered() == 0 && !list.array(0) == !capacity);
    list.insert(30, this->e(9));
    EXPECT_TRUE(list.count() == 1 && !*list.array(0) && !*list.array(29) && list.capacity() == 60);
    EXPECT_EQ(*TypeParam(list).array(30), this->e(9)) << "a copy takes all slots";
  }
}

TYPED_TEST(PointerListTest, AssignmentAndInitializeDoNotFreeThePreviousSlotArray) {
  TypeParam list(0);
  list.ordered(1), list.append(this->e(1));
  auto** const first = list.array(0);
  list = static_cast<const TypeParam&>(list);
  auto** const second = list.array(0);
  EXPECT_TRUE(first != second && *first == *second && list.ordered() == 1);
  list.initialize(12);
  EXPECT_TRUE(list.capacity() == 28 && list.ordered() == 0);
  std::free(first), std::free(second);
}

TEST(ListDeathTest, IndicesOutOfRangeEndTheProcess) {
  tqBaseList list(12);
  EXPECT_EXIT(list.item(0), killed, "^ProtoList internal error: index 0 out of range\n$");
  EXPECT_EXIT(static_cast<const tqBaseList&>(list).item(-1), killed, "index -1 out of range\n$");
  EXPECT_EXIT(list.insert(2147483647, nullptr), killed, "^out of memory\n$");
  EXPECT_EXIT(tqListImpl_range_error(7), killed,
              "^tqList internal error: list index 7 out of range\n$");
}

template <class List> void expectNoDeepCopy(const char* lineTwice) {
  List list(0);
  EXPECT_TRUE(list.classId() == 21 && list.isA(21) && list.isA(1) && !list.isA(0));
  EXPECT_EXIT(list.deepCopy(), killed, "^$") << "an empty list";
  list.append(nullptr), list.append(nullptr);
  EXPECT_EXIT(list.deepenShallowCopy(), killed, lineTwice);
}

TEST(ListDeathTest, ADeepCopyIsRefusedWithALineForEachElement) {
  expectNoDeepCopy<tqBaseList>("^(tqBase[*]: no deep copy\n){2}$");
  expectNoDeepCopy<tqTriggerList>("^(tqTrigger [*]: no deep copy\n){2}$");
  expectNoDeepCopy<tqStringList>("^(tqString[*]: no deep copy\n){2}$");
}

TEST(ListGrowth, TakesTheFirstBlockStrictlyLargerThanTheNeed) {
  const int wraps = 1 << 30;  // the need is 0 modulo 2^32
  const std::tuple<int, unsigned, int> cases[] = {
      {12, 4, 28}, {6, 8, 14}, {47, 1, 48},   {16777211, 4, 16777212}, {20000000, 4, 20000000},
      {-1, 4, -1}, {5, 0, 5},  {wraps, 4, 12}};
  for (auto [n, size, best] : cases) {
    EXPECT_EQ(ProtoList::bestNewCount(n, size), best) << n << " of " << size;
    EXPECT_EQ(tqListImpl_best_new_count(n, size), best) << n << " of " << size;
  }
}

}  // namespace
