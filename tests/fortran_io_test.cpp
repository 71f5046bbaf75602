#include "fortran_io.h"

#include "../fuzz/fortran_fields_compare.h"
#include "comma_locale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>

namespace {

// What standard error gets from a scan of "12345678" that must fail.
std::string faultOf(const char* format) {
  int a = 0, b = 0, c = 0;
  testing::internal::CaptureStderr();
  EXPECT_EQ(fortran_sscanf("12345678", format, 3, &a, &b, &c), 0) << format;
  return testing::internal::GetCapturedStderr();
}

}  // namespace

TEST(FortranFields, AreCutByWidthAndReadByType) {
  int i = -1;
  short s = -1;
  long l = -1;
  double f = -1;
  char a[5] = "zzzz";
  const char* line = "12345-123 9999999999 1.5E1xxabcd";
  EXPECT_EQ(fortran_sscanf(line, "i3,x2,s4,l11, f6,2x1,a4", 5, &i, &s, &l, &f, a), 1);
  EXPECT_EQ(i, 123);
  EXPECT_EQ(s, -123);
  EXPECT_EQ(l, 9999999999);
  EXPECT_EQ(f, 15.0);
  EXPECT_STREQ(a, "abcd");
}

TEST(FortranFields, ReadBlankShortAndWordyFieldsAsZeroOrBlanks) {
  const struct {
    const char* line;
    int first, second;
  } cases[] = {{"   42", 42, 0}, {"  1  2", 1, 2},  {"", 0, 0},       {"   \n 7", 0, 0},
               {" -7 x", -7, 0}, {"0x1 12", 0, 12}, {"4\t5+6", 4, 6}, {"99", 99, 0}};
  for (const auto& c : cases) {
    int first = -1, second = -1;
    const char* format = std::strlen(c.line) == 5 && c.first == 42 ? "i5,i5" : "2i3";
    EXPECT_EQ(fortran_sscanf(c.line, format, 2, &first, &second), 1);
    EXPECT_EQ(first, c.first) << c.line;
    EXPECT_EQ(second, c.second) << c.line;
  }
}

TEST(FortranFields, EndAtANewlineAndCountColumnsAcrossIt) {
  char text[7] = "zzzzzz";
  int behind = -1;
  EXPECT_EQ(fortran_sscanf("ab\ncde12", "a5,i3", 2, text, &behind), 1);
  EXPECT_STREQ(text, "ab   ");
  EXPECT_EQ(behind, 0);
  EXPECT_EQ(fortran_sscanf("ab\ncd12", "a5,i3", 2, text, &behind), 1);
  EXPECT_EQ(behind, 12);
}

TEST(FortranFields, NumbersOutOfRangeSaturateAsLongAndAreNarrowed) {
  int i = 7;
  short s = 7;
  long l = 7;
  const char* huge = "99999999999999999999  4294967301-99999999999999999999";
  EXPECT_EQ(fortran_sscanf(huge, "i20,i12,l21", 3, &i, &i, &l), 1);
  EXPECT_EQ(i, 5);
  EXPECT_EQ(l, INT64_MIN);
  EXPECT_EQ(fortran_sscanf(huge, "i20", 1, &i), 1);
  EXPECT_EQ(i, -1);
  EXPECT_EQ(fortran_sscanf("70000", "s5", 1, &s), 1);
  EXPECT_EQ(s, 70000 - 65536);
}

TEST(FortranFormat, StopsWhenTheTargetsAreUsedUp) {
  int values[4] = {-1, -1, -1, -1};
  EXPECT_EQ(fortran_sscanf("1234", "4i1,q", 3, values, values + 1, values + 2), 1);
  EXPECT_EQ(values[2], 3);
  EXPECT_EQ(values[3], -1);
  EXPECT_EQ(fortran_sscanf("1", ",", 0), 1);
  EXPECT_EQ(fortran_sscanf(nullptr, nullptr, 1, values), 1);
  EXPECT_EQ(values[0], 1) << "an empty format fills nothing";
}

TEST(FortranFormat, CountsBelowOneAndMissingOnesAreOne) {
  int values[3] = {};
  EXPECT_EQ(fortran_sscanf("123", "0i,i0,0x0,i", 3, values, values + 1, values + 2), 1);
  EXPECT_EQ(values[0] * 100 + values[1] * 10 + values[2], 120);
  EXPECT_EQ(fortran_sscanf("12", "99999999999i2147483647", 1, values), 1) << "ends at once";
  EXPECT_EQ(values[0], 12);
}

TEST(FortranFormat, GoesBackToTheLastGroupWhileColumnsAreLeft) {
  int v[6] = {};
  const auto scan = [&](const char* line, const char* format) {
    std::fill(v, v + 6, 0);
    return fortran_sscanf(line, format, 6, v, v + 1, v + 2, v + 3, v + 4, v + 5);
  };
  EXPECT_EQ(scan("123456", "i1,(i1)(i2)"), 1);
  EXPECT_EQ(v[2] * 100 + v[3], 3456);
  EXPECT_EQ(v[4], 0);
  EXPECT_EQ(scan("12", "(i1"), 1);
  EXPECT_EQ(v[1], 2);
  EXPECT_EQ(scan("12345", "i1,("), 1) << "a group that moves no column ends the scan";
  EXPECT_EQ(scan("12345", "(x1)"), 1);
  EXPECT_EQ(scan("12345", "i1"), 1);
  EXPECT_EQ(v[1], 0) << "without a group the format ends";
}

TEST(FortranFormat, HasNoCommaBehindAGroup) {
  EXPECT_NE(faultOf("(i2),i2").find("illegal comma"), std::string::npos);
  int first = 0, second = 0;
  EXPECT_EQ(fortran_sscanf("1234", "(i2)i2", 2, &first, &second), 1);
  EXPECT_EQ(second, 34);
}

TEST(FortranFormat, FaultsAreReportedWithACaretUnderTheirPlace) {
  const struct {
    const char* format;
    const char* what;
    int place;
  } cases[] = {{"i5,,i5", "illegal comma", 3},  {",i5", "illegal comma", 0},
               {"i5,q3", "unknown entity", 3},  {"I5", "unknown entity", 0},
               {"i2,3", "unknown entity", 4},   {"i2 ,i2", "unknown entity", 2},
               {"2(i2)", "unknown entity", 1},  {"i2.1", "unknown entity", 2},
               {"()", "unknown entity", 1},     {"2 i2", "unknown entity", 1},
               {"i2,\xe9", "unknown entity", 3}};
  for (const auto& c : cases) {
    const std::string expected = std::string("fortran_sscanf: ") + c.what +
                                 " found in format string\n\t" + c.format + "\n\t" +
                                 std::string(static_cast<std::size_t>(c.place), ' ') + "^\n";
    EXPECT_EQ(faultOf(c.format), expected);
  }
  int kept = 0, untouched = -1;
  testing::internal::CaptureStderr();
  EXPECT_EQ(fortran_sscanf("1234", "i2,i2!", 2, &kept, &untouched), 0);
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(kept, 12) << "values stored before the fault stay";
  EXPECT_EQ(untouched, -1) << "the item at fault is not carried out";
}

// fuzz/fortran_fields_compare.cpp goes on for as long as one likes.
TEST(FortranFields, ReadAsTheCLibraryDoesInTwoSteps) {
  EXPECT_EQ(fortran_fields::compare(200000, 1), 0);
}

TEST(FortranFields, OfRealsReadHexadecimalNumbersAndNames) {
  double values[5] = {};
  EXPECT_EQ(fortran_sscanf("0x10  -inf0x1p-1 1.5e-0x", "2f5,f6,f5,f3", 5, values, values + 1,
                           values + 2, values + 3, values + 4),
            1);
  EXPECT_EQ(values[0], 16);
  EXPECT_EQ(values[1], -INFINITY);
  EXPECT_EQ(values[2], 0.5);
  EXPECT_EQ(values[3], 1.5);
  EXPECT_TRUE(values[4] == 0 && std::signbit(values[4])) << "the width ends the number";
  EXPECT_EQ(fortran_sscanf("nan(7)", "f6", 1, values), 1);
  EXPECT_TRUE(std::isnan(values[0]));
}

TEST(FortranFields, OfNullTargetsAreSkipped) {
  int behind = 0;
  EXPECT_EQ(fortran_sscanf("1 2abc4", "f2,l1,a3,i1", 4, static_cast<double*>(nullptr),
                           static_cast<long*>(nullptr), static_cast<char*>(nullptr), &behind),
            1);
  EXPECT_EQ(behind, 4);
}

TEST(FortranFields, OfAnyLengthAreReadWhole) {
  const std::string number = "0x" + std::string(100000, '1') + "p-400000";
  double value = 0;
  EXPECT_EQ(fortran_sscanf(number.c_str(), "f2147483647", 1, &value), 1);
  EXPECT_DOUBLE_EQ(value, 1.0 / 15.0);
  char text[] = "zzzz";
  EXPECT_EQ(fortran_sscanf("7", "2147483647x2147483647,2a2", 1, text), 1);
  EXPECT_EQ(std::string(text, 4), std::string("  \0z", 4));
}

TEST(FortranFields, KeepThePointWhateverTheProcessLocale) {
  const CommaLocale comma;
  if (!std::setlocale(LC_ALL, "comma")) GTEST_SKIP() << "localedef made no German locale";
  double plain = 0, odd = 0;
  fortran_sscanf("     1.50x+1.5", "x1,f8,x1,f4", 2, &plain, &odd);
  double hex = 0;
  fortran_sscanf("0x1.8p1", "f7", 1, &hex);
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(plain, 1.5);
  EXPECT_EQ(odd, 1.5);
  EXPECT_EQ(hex, 3.0);
}
