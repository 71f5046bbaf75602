#include "ColorList.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

const int rgb[] = {10, 20, 30};

void expectColors(tqColorList& list, ColorType type, const std::vector<int>& colors) {
  EXPECT_EQ(list.type(), type);
  ASSERT_EQ(list.count(), static_cast<int>(colors.size()));
  for (int i = -1; i <= list.count(); ++i)
    EXPECT_EQ(list.colorAt(i),
              i >= 0 && i < list.count() ? colors[static_cast<std::size_t>(i)] : 0);
}

TEST(ColorList, HoldsACopyOfTheColoursOrNoneWithTheKindKept) {
  const std::tuple<const int*, int, std::vector<int>> cases[] = {
      {rgb, 3, {10, 20, 30}}, {rgb, 1, {10}}, {nullptr, 5, {}}, {rgb, 0, {}}, {rgb, -2, {}}};
  for (const auto& [colors, n, held] : cases) {
    tqColorList made(COLOR_RGB, colors, n), copy(made), set(COLOR_INDEX, rgb, 2), assigned;
    set.setColorList(COLOR_RGB, colors, n);
    assigned = made;
    made.setColorAt(0, 7);
    for (tqColorList* list : {&copy, &set, &assigned}) expectColors(*list, COLOR_RGB, held);
  }
}

TEST(ColorList, IgnoresIndicesOutOfRangeAndAnswersForItsClassAlone) {
  tqColorList list(COLOR_INDEX, rgb, 3), empty;
  for (int i : {-1, 1, 3}) list.setColorAt(i, 7), empty.setColorAt(i, 7);
  list = static_cast<const tqColorList&>(list);
  expectColors(list, COLOR_INDEX, {10, 7, 30}), expectColors(empty, COLOR_NONE, {});
  EXPECT_TRUE(list.classId() == 1122 && list.isA(1122) && !list.isA(0));
  EXPECT_STREQ(list.className(), "ColorList");
}

}  // namespace
