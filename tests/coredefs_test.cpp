#include "coredefs.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned none = 4294967295u;

TEST(ClassId, NamesLeadToTheirFirstIdLetterForLetter) {
  const std::pair<const char*, unsigned> cases[] = {
      {"Base", 0},     {"Table", 23},      {"Atom", 1006},    {"DistanceMonitor", 1022},
      {"Frame", 1049}, {"2DWindow", 1118}, {"HitList", 1130}, {"All", 2000},
      {"atom", none},  {"Atom ", none},    {"Ato", none},     {"", none},
      {nullptr, none}};
  for (auto [name, id] : cases) EXPECT_EQ(StringToClassId(name), id) << (name ? name : "null");
}

TEST(ClassId, NoIdHasAName) {
  for (unsigned id : {0u, 1u, 1006u, 2000u, none}) EXPECT_EQ(ClassIdToString(id), nullptr) << id;
}

}  // namespace
