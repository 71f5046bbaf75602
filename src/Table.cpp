#include "Table.h"

#include <cstring>

unsigned ProtoTable::hash(const char* text) {
  unsigned h = 17944;
  // Kept: the first character is passed over; the terminating zero is mixed in.
  if (text && *text) {
    do {
      ++text;
      h = (h << 1) ^ static_cast<unsigned char>(*text);
    } while (*text);
  }
  return h * 67108863u / 1023u;
}

unsigned ProtoTable::hash(int key) { return static_cast<unsigned>(key) * 2654435767u; }

unsigned ProtoTable::hash(double key) {
  std::uint64_t bits;
  static_assert(sizeof bits == sizeof key);
  std::memcpy(&bits, &key, sizeof bits);
  return static_cast<unsigned>(bits >> 32) ^ static_cast<unsigned>(bits);
}

namespace {

constexpr std::uint64_t odd = 0x9E3779B97F4A7C15u;  // 2^64 over the golden ratio

// Every bit of a factor reaches the middle of the product of 128 bits, from where folding spreads
// it both ways: names that differ in a few characters share nothing.
std::uint64_t mixed(std::uint64_t a, std::uint64_t b) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = Wide{a ^ odd} * b;
  return static_cast<std::uint64_t>(product >> 64) ^ static_cast<std::uint64_t>(product);
}

template <class Word> std::uint64_t word(const char* text) {
  Word word;
  std::memcpy(&word, text, sizeof word);
  return word;
}

}  // namespace

// By loads of a fixed size, which overlap where the length is odd: to copy `length` bytes is a
// call, and interning a known name takes twice as long.
unsigned spreadBits(const char* text, std::size_t length) {
  const char* const end = text + length;
  std::uint64_t h = length * odd, first = 0, last = 0;
  if (length >= 16) {
    for (; end - text > 16; text += 16)
      h = mixed(word<std::uint64_t>(text), word<std::uint64_t>(text + 8) ^ h);
    first = word<std::uint64_t>(end - 16);
    last = word<std::uint64_t>(end - 8);
  } else if (length >= 8) {
    first = word<std::uint64_t>(text);
    last = word<std::uint64_t>(end - 8);
  } else if (length >= 4) {
    first = word<std::uint32_t>(text);
    last = word<std::uint32_t>(end - 4);
  } else if (length > 0) {
    first = word<std::uint8_t>(text);
    last = word<std::uint8_t>(text + length / 2) << 8 | word<std::uint8_t>(end - 1);
  }
  return static_cast<unsigned>(mixed(first, last ^ h) >> 32);
}
