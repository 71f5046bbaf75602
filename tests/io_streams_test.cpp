#include "io_streams.h"

#include <gtest/gtest.h>

#include <string>

TEST(LineStreamBase, AnswersEveryOperationWithSuccess) {
  io_streams stream("atoms.pdb");
  EXPECT_EQ(stream.open_input() + stream.open_output() + stream.open_append(), 3);
  char text[] = "abc";
  char* line = text;
  EXPECT_EQ(stream.get_oneline(line, 1), 3);
  EXPECT_STREQ(line, "abc");
  EXPECT_EQ(stream.put_oneline("ab"), 2);
  EXPECT_EQ(stream.close_input() + stream.close_output(), 2);
}

TEST(LineStreamBase, CutsLongNamesAndTakesNullForEmpty) {
  const std::string name(250, 'n');
  EXPECT_EQ(io_streams(name.c_str()).filename, name.substr(0, 99));
  io_streams nameless(nullptr);
  EXPECT_STREQ(nameless.filename, "");
  char* nothing = nullptr;
  EXPECT_EQ(nameless.get_oneline(nothing, 10), 0);
  EXPECT_EQ(nameless.put_oneline(nullptr), 0);
}
