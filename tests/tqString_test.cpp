#include "tqFilename.h"
#include "tqString.h"

#include "comma_locale.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <tuple>
#include <unistd.h>

namespace {

// Characters without anything behind them, so that valgrind and sanitizers see every byte too many.
struct Exact {
  Exact(const std::string& text) : characters(text.begin(), text.end()) {}
  tqString view() const { return {characters.data(), static_cast<int>(characters.size())}; }
  std::vector<char> characters;
};

// The answers to == != > >= < <=, as digits.
template <class... Answer> std::string digits(Answer... answer) {
  return (std::to_string(static_cast<int>(answer)) + ...);
}
template <class Left, class Right> std::string compared(const Left& a, const Right& b) {
  return digits(a == b, a != b, a > b, a >= b, a < b, a <= b);
}
std::string expected(const std::string& a, std::string b, bool equal) {
  const bool empty = b.empty();
  b.resize(a.size());
  const bool greater = !a.empty() && (empty || a > b);
  const bool less = a.empty() ? !empty : empty || a < b;
  return digits(equal, !equal, greater, !less, less, !greater);
}

template <class Left> class StringComparison : public testing::Test {};
using StringClasses =
    testing::Types<tqString, tqCopyString, tqNullTerminatedString, tqUniqueString, tqFilename>;
TYPED_TEST_SUITE(StringComparison, StringClasses, );

TYPED_TEST(StringComparison, KeptTakesAsManyBytesAsTheLeftTextHas) {
  constexpr bool byAddress = std::is_same_v<TypeParam, tqUniqueString>;
  const std::string texts[] = {"", "a", "ab", "abc", "b", "B", "\x80", "abcdefghij", "abd"};
  for (const std::string& a : texts) {
    for (const std::string& b : texts) {
      SCOPED_TRACE("'" + a + "' with '" + b + "'");
      const Exact exactA(a), exactB(b);
      const TypeParam left(exactA.view());
      const tqString right = exactB.view();
      const std::string other = expected(a, b, a == b && !byAddress);
      EXPECT_EQ(compared(left, right), other);
      EXPECT_EQ(compared(left, tqCopyString(right)), other);
      EXPECT_EQ(compared(left, tqNullTerminatedString(right)), other);
      EXPECT_EQ(compared(left, tqFilename(right)), other);
      EXPECT_EQ(compared(left, tqUniqueString(right)), expected(a, b, a == b));
      EXPECT_EQ(compared(left, b.c_str()), expected(a, b, a == b));
    }
    const char* const null = nullptr;
    EXPECT_EQ(compared(TypeParam(a.c_str()), null), expected(a, "", a.empty())) << a;
  }
}

TEST(StringComparison, SeesBytesBehindANulInCountedTextsOnly) {
  EXPECT_EQ(compared(tqString("a\0b", 3), tqString("a", 1)), "011100");
  EXPECT_EQ(compared(tqString("a\0", 2), tqString("a", 1)), "010101");
  EXPECT_EQ(compared(tqString("a\0b", 3), "a"), "010101");
}

TEST(StringComparison, KeptLengthsCountAsTheyStand) {
  const tqString text("abc"), unmeasured("abc", -1), bad("abc", -7);
  EXPECT_EQ(compared(unmeasured, text), "010101");
  EXPECT_EQ(compared(text, unmeasured), "011010");
  EXPECT_EQ(compared(unmeasured, "abc"), "010101");
  EXPECT_EQ(digits(unmeasured == tqString("abc", -1), unmeasured == tqString("ab", -1)), "10");
  EXPECT_EQ(compared(bad, text) + digits(bad == bad), "0100111");
}

TEST(StringComparison, IgnoresTheCaseOfAsciiLettersAlone) {
  for (const auto& [a, b] : {std::pair("aZ9", "Az9"), {"@[", "@["}, {"", nullptr}})
    EXPECT_EQ(tqString(a).case_insensitive_equal(b), 1) << a;
  for (const auto& [a, b] : {std::pair("ab", "ABC"), {"@", "`"}, {"[", "{"}, {"\xc4", "\xe4"}})
    EXPECT_EQ(tqString(a).case_insensitive_equal(b), 0) << a;
}

TEST(StringView, KeptIsTheWholeTextOutsideOfIt) {
  for (const std::string text : {"", "x", "abca", "abcdef"}) {
    const int size = static_cast<int>(text.size());
    for (const int start : {INT_MIN, -7, -6, -4, -3, -1, 0, 1, 3, 4, 5, 6, INT_MAX}) {
      const bool within = start < size && start >= -size;
      const int from = start < 0 ? size + start : start;
      for (const int len : {INT_MIN, -1, 0, 1, 2, 3, 5, 6, INT_MAX}) {
        SCOPED_TRACE(text + " from " + std::to_string(start) + " for " + std::to_string(len));
        tqString narrowed(text.c_str());
        narrowed.hashValid = 1;
        const tqString view = narrowed.substr(start, len);
        const bool whole = !within || len > size - from;
        EXPECT_EQ(view.data - text.c_str(), whole ? 0 : from);
        EXPECT_EQ(view.length, whole ? size : len < 0 ? size - from : len);
        EXPECT_EQ(view.hashValid, whole);
        narrowed.set_to_substr(start, len);
        EXPECT_TRUE(narrowed.data == view.data && narrowed.length == view.length);
      }
      const auto at = static_cast<std::size_t>(from);
      const auto found = start < 0 ? text.rfind('a', at) : text.find('a', at);
      EXPECT_EQ(Exact(text).view().search(start, 'a'), within ? static_cast<int>(found) : -1);
    }
  }
}

TEST(StringHash, IsThatOfEveryByteInEveryClass) {
  std::string text;
  for (int n = 0; n < 100; ++n, text += static_cast<char>(n * 37 + 101)) {
    unsigned h = 0;
    for (const char c : text) h = (h << 1) ^ static_cast<unsigned char>(c);
    h ^= (h >> 10) ^ (h >> 20);
    EXPECT_EQ(Exact(text).view().hash(), h) << n;
    EXPECT_EQ(tqCopyString(text.c_str()).hash(), h) << n;
  }
  EXPECT_EQ(tqString("a", -7).hash() + tqString(nullptr, -1).hash(), 0u);
}

TEST(StringHash, KeptIsValidOnlyOnceTheCallerSaysSo) {
  tqString text("a", -1);
  EXPECT_EQ(text.hash(), 97u);
  EXPECT_TRUE(text.length == 1 && text.hashValue == 97 && text.hashValid == 0);
  text.hashValue = 5, text.hashValid = 1;
  EXPECT_EQ((tqString("c") = tqString(text)).hash(), 5u);
  EXPECT_EQ((text = "b").hash(), 98u);
}

template <class Number> std::pair<int, Number> converted(const tqString& text) {
  Number number = 7;
  const int read = text.convert(number);
  return {read, number};
}

TEST(StringConversion, ReadsAsTheCLocaleDoesInEveryLocale) {
  using Case = std::tuple<const char*, int, long, double>;
  const Case cases[] = {{"0x1F", 1, 31, 31}, {" -012abc", 1, -10, -12},
                        {"abc", 0, 0, 0},    {"1e400", 1, 1, HUGE_VAL},
                        {"1.5e", 1, 1, 1.5}, {"", 0, 0, 0},
                        {"2,5", 1, 2, 2},    {"99999999999999999999", 1, LONG_MAX, 1e20}};
  const CommaLocale comma;
  for (const char* const locale : {"C", "comma"}) {
    if (!std::setlocale(LC_ALL, locale)) GTEST_SKIP() << "localedef made no German locale";
    for (const auto& [text, read, i, x] : cases) {
      EXPECT_EQ(converted<int>(tqCopyString(text)), std::pair(read, static_cast<int>(i))) << text;
      EXPECT_EQ(converted<long>(Exact(text).view()), std::pair(read, i)) << text;
      EXPECT_EQ(converted<float>(tqUniqueString(text)), std::pair(read, static_cast<float>(x)));
      EXPECT_EQ(converted<double>(tqString(text, -1)), std::pair(read, x)) << text;
    }
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), locale);
  }
  std::setlocale(LC_ALL, "C");
}

template <class String> class OwningString : public testing::Test {};
using OwningClasses = testing::Types<tqCopyString, tqNullTerminatedString, tqFilename>;
TYPED_TEST_SUITE(OwningString, OwningClasses, );

TYPED_TEST(OwningString, MayBeNarrowedAndAssignedItsOwnCharacters) {
  TypeParam text(tqString("12345678"));
  const TypeParam& itself = text;
  EXPECT_STREQ((text = itself).data, "12345678");
  EXPECT_STREQ((text = text.substr(1, 6)).data, "234567");
  EXPECT_STREQ((text = text.data + 1).data, "34567");
  text.set_to_substr(1, 2);
  EXPECT_EQ(converted<int>(text), std::pair(1, 45));
  EXPECT_STREQ((text = static_cast<const tqString&>(text)).data, "45");
  const TypeParam borrowed(text);
  EXPECT_STREQ((text = borrowed).data, "45");
  EXPECT_TRUE((text = tqString("xyz", -1)) == "xyz" && text.length == 3);
  EXPECT_STREQ((text = tqString("xyz", -7)).data, "");
  text = "xyz";
  text.free();
  EXPECT_TRUE(text == "" && (text = static_cast<const char*>(nullptr)) == "");
}

TEST(CopyString, KeptSetLeavesTheFormerCharactersToTheirViews) {
  tqCopyString text("former");
  const tqString view = text;
  text.set("later");
  text.set(text.data + 2, -1);
  EXPECT_TRUE(view == "former" && text == "ter");
}

TEST(CopyString, KeptTurnsWhatFollowsANulIntoNuls) {
  EXPECT_TRUE(tqCopyString("a\0b", 3) == tqString("a\0\0", 3));
  const tqUniqueString first("n\0x", 3), second("n\0x", 3);
  EXPECT_TRUE(first != second && tqString(first) == tqString("n\0\0", 3));
}

TEST(NullTerminatedString, BorrowsOnlyWhereANulFollows) {
  tqCopyString source("abc");
  const tqNullTerminatedString whole(source), view(source.substr(0, 2)), none{tqCopyString()};
  source.set_to_substr(0, 1);
  tqNullTerminatedString narrowed(source);
  EXPECT_TRUE(whole.data == source.data && whole.owned == 0 && none.owned == 0);
  EXPECT_TRUE(view == "ab" && view.owned == 1 && view.data[2] == '\0');
  EXPECT_TRUE(narrowed == "a" && narrowed.owned == 1 && narrowed.data[1] == '\0');
  narrowed.set(Exact("678").view().data, 2);
  EXPECT_STREQ(narrowed.data, "67");
  narrowed.set(nullptr);
  EXPECT_TRUE(*narrowed.data == '\0' && *none.data == '\0');
  narrowed.set(source.data);
  narrowed.free();
  EXPECT_TRUE(narrowed.data == source.data && narrowed.length == 3);
}

TEST(UniqueString, GivesOneAddressToOneText) {
  const tqUniqueString name("abc"), view(tqString("xabcx").substr(1, 3)), counted("abcd", 3);
  EXPECT_TRUE(name.data == view.data && name.data == counted.data && name == view);
  EXPECT_EQ(tqUniqueString(tqString("abc", -1)).hash(), lowWord(name.data));
  EXPECT_TRUE(tqUniqueString("").data && tqUniqueString("") == tqUniqueString(nullptr, 4));
  tqString stored;
  EXPECT_EQ(tqUniqueString::table_->find(stored, name), 1);
  EXPECT_TRUE(stored.data == name.data && stored.length == 3);
}

TEST(UniqueString, KeptComparesAddressesAndBorrowsWhatIsAssigned) {
  const tqCopyString text("assigned");
  const tqUniqueString interned("assigned");
  EXPECT_TRUE(interned != text && text == interned && interned == "assigned");
  tqUniqueString name("before");
  EXPECT_EQ((name = text).data, text.data);
  EXPECT_EQ((name = interned).data, interned.data);
  EXPECT_NE((name = "literal").data, tqUniqueString("literal").data);
}

TEST(UniqueStringPool, PacksTextsAndGivesLongOnesTheirOwnBlock) {
  tqUniqueStringPool pool(800);
  const std::string big(801, 'b'), full(800, 'f');
  char* const first = pool.add("abc", 3);
  char* const own = pool.add(big.data(), 801);
  EXPECT_TRUE(pool.next->block == own && pool.next->capacity == 801 && pool.next->used == 801);
  EXPECT_EQ(pool.add(full.data(), 797) - first, 3);
  EXPECT_EQ(pool.add("", 0) - first, 800);
  EXPECT_TRUE(pool.block == first && pool.used == 800 && pool.next->next == nullptr);
  EXPECT_EQ(pool.add(full.data(), 800), pool.block);
  EXPECT_TRUE(pool.next->block == first && pool.next->used == 800 && pool.next->next->block == own);
  EXPECT_EQ(std::string(first, 4) + std::string(own, 801), "abcf" + big);
}

}  // namespace
