#ifndef TQ_NUMBER_TEXT_COMPARE_H
#define TQ_NUMBER_TEXT_COMPARE_H

// Compares the text of attribute values with what snprintf gives for the same bits, which needs
// the "C" locale. Part of the tests with a small count, and of the program beside it.

#include "AttrValue.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>

namespace number_text {

template <class T> T fromBits(std::uint64_t bits) {
  T value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

// Numbers as people write them: few digits, small exponents.
inline double shortDecimal(std::uint64_t bits) {
  static constexpr double scales[] = {1, 10, 100, 1000, 1e4, 1e5, 1e6, 1e8};
  return static_cast<double>(static_cast<int>(bits >> 32) >> (bits & 31)) / scales[bits >> 5 & 7];
}

// 1 when value and format give the same text; otherwise tells both.
template <class Shown>
int same(const char* kind, const AttrValue& value, const char* format, Shown shown) {
  char text[80], expected[80];
  value.writeToString(text, sizeof text);
  std::snprintf(expected, sizeof expected, format, shown);
  if (std::strcmp(text, expected) == 0) return 1;
  std::printf("%s: \"%s\" instead of \"%s\"\n", kind, text, expected);
  return 0;
}

// The differences among `count` random values of each kind.
inline long compare(long count, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  long matches = 0;
  for (long i = 0; i < count; ++i) {
    const std::uint64_t bits = random();
    const auto number = static_cast<unsigned>(bits);
    const auto single = fromBits<float>(bits);
    const auto decimal = shortDecimal(random());
    const auto shortSingle = static_cast<float>(decimal);
    matches += same("int", AttrValue(static_cast<int>(number)), "%d", static_cast<int>(number));
    matches += same("unsigned", AttrValue(number), "%d", static_cast<int>(number));
    matches += same("float", AttrValue(single), "%.8G", static_cast<double>(single));
    matches += same("double", AttrValue(fromBits<double>(bits)), "%.17G", fromBits<double>(bits));
    matches +=
        same("short float", AttrValue(shortSingle), "%.8G", static_cast<double>(shortSingle));
    matches += same("short double", AttrValue(decimal), "%.17G", decimal);
  }
  return 6 * count - matches;
}

}  // namespace number_text

#endif
