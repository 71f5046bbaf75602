#include "AttrValue.h"

#include "../fuzz/number_text_compare.h"
#include "Base.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

std::string textOf(const AttrValue& value, int size = 400) {
  std::vector<char> buffer(static_cast<std::size_t>(size) + 1, '#');
  EXPECT_EQ(value.writeToString(buffer.data(), size), buffer.data());
  EXPECT_EQ(buffer.back(), '#') << "wrote past a buffer of " << size;
  return buffer.data();
}

// The name, when the getter of type T accepts the value.
template <class T> std::string getter(const AttrValue& value, const char* name) {
  T out{};
  if (!value.value(out)) return "";
  if constexpr (std::is_pointer_v<T>) {
    EXPECT_EQ(out, value.pvalue());
  }
  return name;
}

std::string getters(const AttrValue& value) {
  return getter<int>(value, "int") + getter<unsigned>(value, "unsigned") +
         getter<float>(value, "float") + getter<double>(value, "double") +
         getter<const int*>(value, "int*") + getter<const unsigned*>(value, "unsigned*") +
         getter<const float*>(value, "float*") + getter<const double*>(value, "double*") +
         getter<const char*>(value, "char*");
}

const int ints[] = {1, -22, 333};
const unsigned oids[] = {7, 4294967295u};
const float floats[] = {0.1f, -2.5f};
const double doubles[] = {0.1, 1e300, -0.0};
const double points[][3] = {{1, 2, 3}, {4, 5, 6.5}};

}  // namespace

TEST(AttrValue, HoldsEachKindWithItsLengthElementTextAndGetter) {
  const struct {
    AttrValue value;
    int type, length, element, width;
    const char *text, *getters;
  } cases[] = {
      {{}, 0, 1, 0, 0, "", ""},
      {-5, 1, 1, 1, 0, "-5", "int"},
      {4294967295u, 2, 1, 2, 0, "-1", "unsigned"},
      {0.1f, 3, 1, 3, 0, "0.1", "float"},
      {0.1, 4, 1, 4, 0, "0.10000000000000001", "double"},
      {points[1], 5, 1, 5, 0, "(4 5 6.5)", "double*"},
      {{ints, 3}, 6, 3, 1, 4, "1 -22 333", "int*"},
      {{oids, 2}, 7, 2, 2, 4, "7 -1", "unsigned*"},
      {{floats, 2}, 8, 2, 3, 4, "0.1 -2.5", "float*"},
      {{doubles, 3}, 9, 3, 4, 8, "0.10000000000000001 1.0000000000000001E+300 -0", "double*"},
      {{points, 2}, 10, 2, 5, 24, "(1 2 3) (4 5 6.5)", "double*"},
      {"six by", 11, 6, 11, 0, "six by", "char*"},
  };
  AttrValue assigned, set("to be replaced");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.type);
    assigned = c.value;
    set.copyAttrValue((set.clear(), c.value));
    for (const AttrValue& value : {c.value, AttrValue(c.value), assigned, set}) {
      int width = -1;
      EXPECT_EQ(value.type(), c.type);
      EXPECT_EQ(value.length(), c.length);
      EXPECT_EQ(value.scalarType(&width), c.element);
      EXPECT_EQ(width, c.width);
      EXPECT_EQ(textOf(value), c.text);
      EXPECT_EQ(getters(value), c.getters);
      EXPECT_EQ(value.pvalue() == nullptr, c.type == 0);
    }
  }
}

TEST(AttrValue, GettersOfAnotherKindLeaveTheirArgument) {
  const double* array = doubles;
  EXPECT_EQ(AttrValue("x").value(array) + AttrValue(floats, 2).value(array), 0);
  EXPECT_EQ(array, doubles);
}

TEST(AttrValue, EmptyAndMissingInputIsStoredAsEmpty) {
  EXPECT_EQ(textOf(static_cast<const char*>(nullptr)), "");
  EXPECT_EQ(textOf(static_cast<const double*>(nullptr)), "(0 0 0)");
  const AttrValue arrays[] = {{ints, 0},
                              {floats, -4},
                              {points, INT_MIN},
                              {static_cast<const int*>(nullptr), 3},
                              {static_cast<const unsigned*>(nullptr), 3},
                              {static_cast<const double*>(nullptr), 3},
                              {static_cast<const double(*)[3]>(nullptr), INT_MAX}};
  for (const AttrValue& array : arrays) {
    EXPECT_EQ(array.length(), 0) << array.type();
    EXPECT_EQ(textOf(array), "") << array.type();
    EXPECT_NE(array.pvalue(), nullptr) << array.type();
  }
  EXPECT_EXIT(AttrValue(points, INT_MAX / 3 + 1), testing::KilledBySignal(SIGABRT),
              "out of memory");
}

TEST(AttrValue, SettersTakeTheValuesOwnTextAndArray) {
  AttrValue value("prefix");
  const char* text = nullptr;
  value.value(text);
  value.setValue(text + 3);
  EXPECT_EQ(textOf(value), "fix");
  value = *&value;
  EXPECT_EQ(textOf(value), "fix");

  value.setValue(points, 2);
  const double* numbers = nullptr;
  value.value(numbers);
  value.setValue(numbers + 3);
  EXPECT_EQ(textOf(value), "(4 5 6.5)");
  value.value(numbers);
  value.setValue(numbers + 1, 2);
  EXPECT_EQ(textOf(value), "5 6.5");
}

TEST(AttrValue, CopyingOverAValueDoesNotReleaseWhatItHeld) {
  AttrValue value("held over");
  const char* text = nullptr;
  value.value(text);
  value.copyAttrValue(AttrValue(5));
  EXPECT_EQ(textOf(value), "5");
  EXPECT_STREQ(text, "held over");
  delete[] text;
}

TEST(AttrValue, TextIsCutToAnyBuffer) {
  const AttrValue values[] = {{ints, 3}, {points, 2}, "abcdefghij",
                              -1234567,  AttrValue(), {oids, 0}};
  for (const AttrValue& value : values) {
    const std::string whole = textOf(value);
    for (int size = 1; size <= static_cast<int>(whole.size()) + 2; ++size) {
      const std::string text = textOf(value, size);
      EXPECT_LT(text.size(), static_cast<std::size_t>(size));
      EXPECT_EQ(text, whole.substr(0, text.size()));
      // An element is begun only when two characters are left: a blank may go missing, no more.
      const std::size_t room = std::min(whole.size(), static_cast<std::size_t>(size) - 1);
      EXPECT_TRUE(text.size() == room || whole[text.size()] == ' ') << whole << size;
    }
  }
  const int digits[] = {1, 22, 333};
  EXPECT_EQ(textOf({digits, 3}, 5), "1 22");
  EXPECT_EQ(textOf({digits, 3}, 4), "1 2");
  EXPECT_EQ(textOf({digits, 3}, 3), "1 ");

  char untouched[] = "as it was";
  EXPECT_EQ(values[0].writeToString(untouched, 0), untouched);
  EXPECT_EQ(values[2].writeToString(untouched, -1), untouched);
  EXPECT_STREQ(untouched, "as it was");
  EXPECT_EQ(values[2].writeToString(nullptr, 10), nullptr);
}

TEST(AttrValue, NumberTextOfOddNumbersIsThatOfSprintf) {
  const double nan = std::numeric_limits<double>::quiet_NaN(), infinity = HUGE_VAL;
  const struct {
    double number;
    const char *asDouble, *asFloat;
  } cases[] = {{-0.0, "-0", "-0"},
               {infinity, "INF", "INF"},
               {-infinity, "-INF", "-INF"},
               {std::copysign(nan, 1.0), "NAN", "NAN"},
               {std::copysign(nan, -1.0), "-NAN", "-NAN"},
               {5e-324, "4.9406564584124654E-324", "0"},
               {-DBL_MIN, "-2.2250738585072014E-308", "-0"},
               {FLT_TRUE_MIN, "1.4012984643248171E-45", "1.4012985E-45"},
               {1e17, "1E+17", "9.9999998E+16"},
               {123456789, "123456789", "1.2345679E+08"},
               {1e-4, "0.0001", "9.9999997E-05"}};
  for (const auto& c : cases) {
    EXPECT_EQ(textOf(c.number), c.asDouble);
    EXPECT_EQ(textOf(static_cast<float>(c.number)), c.asFloat);
  }
  const double longest[] = {-DBL_MIN, -DBL_MIN, -DBL_MIN};
  EXPECT_EQ(textOf(longest).size(), 76u);
  EXPECT_EQ(number_text::compare(50000, 3), 0);
}

TEST(AttrValue, EmptyValueAnswersLengthOne) { EXPECT_EQ(AttrValue().length(), 1); }

TEST(AttrValue, IdentifiersAreWrittenAsSignedNumbers) {
  char out[80] = "not empty";
  EXPECT_EQ(textOf(4000000000u), "-294967296");
  EXPECT_EQ(AttrValue().encodeScalar(&oids[1], ATTR_UINT, out), 2);
  EXPECT_STREQ(out, "-1");
  EXPECT_EQ(AttrValue().encodeScalar(ints, ATTR_INT_ARRAY, out), 0) << "no element";
  EXPECT_STREQ(out, "");
  EXPECT_EQ(AttrValue().encodeScalar(nullptr, ATTR_INT, out), 0);
}

TEST(AttrValue, ValidatingZeroesIdentifiersThatLeadToNoObject) {
  tqBase alive(1), mapped(1);
  auto* const dying = new tqBase(1);
  const unsigned stale = dying->oid();
  const unsigned listed[] = {alive.oid(), 0, stale, mapped.oid()};
  AttrValue one(stale), array(listed, 4), number(static_cast<int>(stale));
  one.validateObjects();
  EXPECT_EQ(textOf(one), std::to_string(stale)) << "while the object lives";
  delete dying;
  tqBase::setMapping(mapped.oid(), stale);  // leads to nobody
  for (AttrValue* value : {&one, &array, &number}) value->validateObjects();
  tqBase::clearMapping();
  EXPECT_EQ(textOf(one), "0");
  EXPECT_EQ(textOf(array), std::to_string(alive.oid()) + " 0 0 0");
  EXPECT_EQ(textOf(number), std::to_string(stale)) << "no identifier";
}
