#include "Warn.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// What `run` writes to standard error at a debug level.
template <class Run> std::string written(int level, Run run) {
  debug_lvlset(level);
  testing::internal::CaptureStderr();
  run();
  return testing::internal::GetCapturedStderr();
}

TEST(Warn, EachFunctionWritesFromItsOwnLevelOn) {
  const std::string text(100000, 'x');  // messages have no length limit
  const std::tuple<void (*)(const char*, ...), int, const char*> cases[] = {
      {Error, 1, "error: "}, {Warn, 1, "warning: "},    {Debug, 7, "debug: "},
      {Print, 8, ""},        {Enter, 9, "enter[00]: "}, {Leave, 9, "leave[00]: "}};
  for (auto [write, level, prefix] : cases) {
    const auto run = [&, print = write] { print("%s %d\n", text.c_str(), 3); };
    EXPECT_EQ(written(level - 1, run), "") << prefix;
    EXPECT_EQ(written(level, run), prefix + text + " 3\n");
  }
}

TEST(Warn, TracesIndentAsATreeAndAMixedPairLeavesTheDepthUnbalanced) {
  const auto tree = [] {
    Before("f\n"), Enter("g\n"), Before("h\n"), Error("bad\n"), Print("plain\n");
    After("h\n"), Leave("g\n"), After("f\n");
  };
  EXPECT_EQ(written(9, tree), "enter[00]: f\n  enter[01]: g\n    enter[02]: h\n"
                              "      error: bad\nplain\n"
                              "    leave[02]: h\n  leave[01]: g\nleave[00]: f\n");
  EXPECT_EQ(written(0, tree), "enter[00]: f\n  enter[01]: h\n  leave[01]: h\nleave[00]: f\n");
  const auto mixed = [] { Enter("silent\n"), After("f\n"), Error("bad\n"), Before("g\n"); };
  EXPECT_EQ(written(8, mixed), "leave[-1]: f\nerror: bad\nenter[-1]: g\n");
}

TEST(Warn, SettingTheLevelAnswersTheFirstOneEverNotTheOneReplaced) {
  for (int level : {5, 9, 0}) {
    EXPECT_EQ(debug_lvlset(level), 0);
    EXPECT_EQ(debug_lvlget(), level);
  }
}

}  // namespace
