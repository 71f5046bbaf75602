#include "ColorList.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<int> colors(tqColorList& list) {
  std::vector<int> all;
  for (int i = -1; i <= list.count(); ++i) all.push_back(list.colorAt(i));  // 0 at either end
  return all;
}

TEST(ColorList, HoldsACopyOfTheColoursOrNoneWithTheKindKept) {
  const int rgb[] = {10, 20, 30};
  const std::tuple<const int*, int, std::vector<int>> cases[] = {
      {rgb, 3, {0, 10, 20, 30, 0}}, {nullptr, 5, {0, 0}}, {rgb, 0, {0, 0}}, {rgb, -2, {0, 0}}};
  for (const auto& [source, n, held] : cases) {
    tqColorList made(COLOR_RGB, source, n), copy(made), set(COLOR_INDEX, rgb, 2), assigned;
    set.setColorList(COLOR_RGB, source, n), assigned = made;
    for (int i : {-1, 0, 3}) made.setColorAt(i, 7);
    for (tqColorList* list : {&copy, &set, &assigned})
      EXPECT_TRUE(colors(*list) == held && list->type() == COLOR_RGB) << n;
    EXPECT_EQ(made.colorAt(0), n > 0 && source ? 7 : 0);
  }
}

}  // namespace
