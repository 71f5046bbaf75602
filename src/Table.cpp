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

// Every bit of a factor reaches the middle of the product of 128 bits, from where folding spreads
// it both ways: names that differ in a few characters share nothing.
std::uint64_t mixed(std::uint64_t bits) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = Wide{bits} * 0x9E3779B97F4A7C15u;
  return static_cast<std::uint64_t>(product >> 64) ^ static_cast<std::uint64_t>(product);
}

}  // namespace

unsigned spreadBits(const char* text, std::size_t length) {
  std::uint64_t h = length;
  std::uint64_t word = 0;
  for (; length >= sizeof word; text += sizeof word, length -= sizeof word) {
    std::memcpy(&word, text, sizeof word);
    h = mixed(h ^ word);
  }
  // The rest, by loads of a fixed size, which may overlap: to copy `length` bytes is a call, and
  // interning a known name takes twice as long.
  word = 0;
  if (length >= 4) {
    std::uint32_t first, last;
    std::memcpy(&first, text, 4);
    std::memcpy(&last, text + length - 4, 4);
    word = std::uint64_t{first} << 32 | last;
  } else if (length > 0) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
    word = std::uint64_t{bytes[0]} << 32 | unsigned{bytes[length / 2]} << 16 | bytes[length - 1];
  }
  return spreadBits(mixed(h ^ word));
}
