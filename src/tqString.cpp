#include "tqString.h"

#include "CLocale.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <endian.h>
#include <utility>

// Process-wide, made when the first text is interned and kept until the process ends;
// constant-initialised, so that static strings may intern.
tqUniqueStringTable* tqUniqueString::table_ = nullptr;
tqUniqueStringPool* tqUniqueString::pool_ = nullptr;

namespace {

constexpr int unmeasured = -1;

// Characters that a text and a length stand for.
int counted(const char* text, int length) {
  if (!text || length < unmeasured) return 0;
  if (length != unmeasured) return length;
  const std::size_t measured = std::strlen(text);
  return measured > INT_MAX ? INT_MAX : static_cast<int>(measured);
}

int counted(const tqString& text) { return counted(text.data, text.length); }

std::size_t size(int length) { return static_cast<std::size_t>(length); }

// The first n bytes of `text` against those of `other`, NULs where it is shorter.
int order(const tqString& text, const tqString& other) {
  const int n = counted(text);
  const int both = n < counted(other) ? n : counted(other);
  const int first = both > 0 ? std::memcmp(text.data, other.data, size(both)) : 0;
  if (first != 0) return first;
  for (int i = both; i < n; ++i)
    if (text.data[i] != '\0') return 1;
  return 0;
}

int order(const tqString& text, const char* other) {
  return std::strncmp(text.data, other, size(counted(text)));
}

// Kept: as the right side of an ordering, a text that is not measured yet is empty.
bool isEmptyRight(const tqString& text) { return text.length <= 0; }
bool isEmptyRight(const char* text) { return !text || *text == '\0'; }

// Kept: the left text alone says how many bytes are compared, and against an empty right side it is
// both greater and less.
template <class Right> int isGreater(const tqString& left, const Right& right) {
  if (counted(left) == 0) return 0;
  return isEmptyRight(right) || order(left, right) > 0;
}

template <class Right> int isLess(const tqString& left, const Right& right) {
  if (counted(left) == 0) return !isEmptyRight(right);
  return isEmptyRight(right) || order(left, right) < 0;
}

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::uint64_t eightBytes(const char* text) {
  std::uint64_t bytes;
  std::memcpy(&bytes, text, sizeof bytes);
  return le64toh(bytes);
}

// The hash's fold, h = (h << 1) ^ byte from 0, over the first four and the last four of eight
// bytes: neighbours are joined into pairs, all pairs at once, and pairs into fours.
std::uint64_t foldedFours(std::uint64_t h) {
  h = ((h & 0x00ff00ff00ff00ff) << 1) ^ ((h >> 8) & 0x00ff00ff00ff00ff);
  return ((h & 0x0000ffff0000ffff) << 2) ^ ((h >> 16) & 0x0000ffff0000ffff);
}

unsigned joined(std::uint64_t fours) { return static_cast<unsigned>((fours << 4) ^ (fours >> 32)); }

unsigned foldedSixteen(const char* text) {
  return joined((foldedFours(eightBytes(text)) << 8) ^ foldedFours(eightBytes(text + 8)));
}

// The fold over a whole text. Each byte moves up by one bit with every byte behind it: 32 bytes
// further on, nothing is left of it.
unsigned folded(const char* text, int n) {
  if (n >= 32) return (foldedSixteen(text + n - 32) << 16) ^ foldedSixteen(text + n - 16);
  unsigned h = 0;
  if (n < 8) {
    for (int i = 0; i < n; ++i) h = (h << 1) ^ static_cast<unsigned char>(text[i]);
    return h;
  }
  if (const int odd = n % 8; odd != 0) {
    // NULs in front do not count: the first `odd` bytes move to the end of the eight.
    h = joined(foldedFours(eightBytes(text) << (64 - 8 * odd)));
    text += odd;
  }
  for (int i = 0; i < n / 8; ++i) h = (h << 8) ^ joined(foldedFours(eightBytes(text + 8 * i)));
  return h;
}

long readLong(const char* text, char** end) { return std::strtol(text, end, 0); }

template <class Number>
int converted(const tqString& text, Number& value, Number (*read)(const char*, char**)) {
  const tqNullTerminatedString characters(text);
  const CLocaleScope cLocale;
  char* end = nullptr;
  value = read(characters.data, &end);
  return end != characters.data;
}

}  // namespace

tqString::tqString(const char* text) : length(counted(text, unmeasured)), data(text) {}

unsigned tqString::hash() {
  if (hashValid) return hashValue;
  if (data && length == unmeasured) length = counted(*this);
  const unsigned h = folded(data, counted(*this));
  return hashValue = h ^ (h >> 10) ^ (h >> 20);
}

tqString& tqString::operator=(const tqString& other) {
  data = other.data;
  length = other.length;
  hashValid = other.hashValid;
  if (hashValid) hashValue = other.hashValue;
  return *this;
}

tqString& tqString::operator=(const char* text) {
  set(text);
  return *this;
}

int tqString::operator==(const tqString& other) const {
  // Kept: lengths are compared as they stand, so -1 equals -1 alone.
  if (length != other.length) return 0;
  const int n = counted(*this);
  if (n != counted(other)) return 0;
  return n == 0 || std::memcmp(data, other.data, size(n)) == 0;
}

int tqString::operator==(const char* text) const {
  if (length == 0) return !text || *text == '\0';
  const int n = counted(*this);
  // Kept: a text that is not measured yet equals none.
  if (n != length || !text || *data != *text) return 0;
  return std::strlen(text) == size(n) && std::memcmp(data, text, size(n)) == 0;
}

int tqString::operator!=(const tqString& other) const { return !(*this == other); }
int tqString::operator!=(const char* text) const { return !(*this == text); }
int tqString::operator>(const tqString& other) const { return isGreater(*this, other); }
int tqString::operator>(const char* text) const { return isGreater(*this, text); }
int tqString::operator>=(const tqString& other) const { return !(*this < other); }
int tqString::operator>=(const char* text) const { return !(*this < text); }
int tqString::operator<(const tqString& other) const { return isLess(*this, other); }
int tqString::operator<(const char* text) const { return isLess(*this, text); }
int tqString::operator<=(const tqString& other) const { return !(*this > other); }
int tqString::operator<=(const char* text) const { return !(*this > text); }

int tqString::case_insensitive_equal(const tqString& other) const {
  const int n = counted(*this);
  if (length != other.length || n != counted(other)) return 0;
  for (int i = 0; i < n; ++i)
    if (lowered(data[i]) != lowered(other.data[i])) return 0;
  return 1;
}

int tqString::case_insensitive_equal(const char* text) const {
  return case_insensitive_equal(tqString(text));
}

tqString tqString::substr(int start, int len) const {
  tqString view(*this);
  view.set_to_substr(start, len);
  return view;
}

void tqString::set_to_substr(int start, int len) {
  const std::int64_t whole = length;
  const std::int64_t from = start >= 0 ? start : whole + start;
  // Kept: what lies outside leaves the whole text.
  if (start >= whole || start < -whole || from + len > whole) return;
  if (data) data += from;
  length = !data ? 0 : len >= 0 ? len : static_cast<int>(whole - from);
  hashValid = 0;
}

int tqString::search(int start, char c) const {
  if (!data || start >= length || start < -std::int64_t{length}) return -1;
  if (start >= 0) {
    const void* const found = std::memchr(data + start, c, size(length - start));
    return found ? static_cast<int>(static_cast<const char*>(found) - data) : -1;
  }
  int i = length + start;
  while (i >= 0 && data[i] != c) --i;
  return i;
}

int tqString::null_terminated() const { return 0; }

int tqString::convert(int& value) const {
  long wide;
  const int done = converted(*this, wide, readLong);
  value = static_cast<int>(static_cast<unsigned>(wide));
  return done;
}

int tqString::convert(long& value) const { return converted(*this, value, readLong); }

int tqString::convert(float& value) const {
  double wide;
  const int done = converted(*this, wide, std::strtod);
  value = static_cast<float>(wide);
  return done;
}

int tqString::convert(double& value) const { return converted(*this, value, std::strtod); }

void tqString::set(const char* text) { tqString::set(text, counted(text, unmeasured)); }

void tqString::set(const char* text, int n) {
  data = text;
  length = text ? n : 0;
  hashValid = 0;
}

int tqString::operator==(const tqUniqueString& other) const {
  return *this == static_cast<const tqString&>(other);
}

int tqString::operator!=(const tqUniqueString& other) const {
  return *this != static_cast<const tqString&>(other);
}

const char* tqOwnedCharacters::copy(const char* text, int n) {
  char* const block = tqAllocated(new (std::nothrow) char[sizeof(Copy) + size(n) + 1]);
  latest_ = new (block) Copy{latest_};
  char* const characters = block + sizeof(Copy);
  if (n > 0) std::strncpy(characters, text, size(n));  // Kept: fills up with NULs behind a NUL.
  characters[n] = '\0';
  return characters;
}

void tqOwnedCharacters::dropEarlier() {
  if (!latest_) return;
  tqOwnedCharacters earlier;
  std::swap(earlier.latest_, latest_->earlier);
}

void tqOwnedCharacters::drop() {
  while (Copy* const copy = latest_) {
    latest_ = copy->earlier;
    delete[] reinterpret_cast<char*>(copy);
  }
}

tqCopyString::tqCopyString(const char* text) { tqCopyString::set(text); }

tqCopyString::tqCopyString(const char* text, int n) { tqCopyString::set(text, n); }

tqCopyString::tqCopyString(const tqString& other) : tqCopyString(other.data, other.length) {}

tqCopyString::tqCopyString(const tqCopyString& other) : tqCopyString(other.data, other.length) {}

tqCopyString& tqCopyString::operator=(const tqCopyString& other) {
  *this = static_cast<const tqString&>(other);
  return *this;
}

void tqCopyString::free() {
  characters_.drop();
  tqString::set(nullptr);
}

// The earlier text goes last: the new one may be a view of it.
tqString& tqCopyString::operator=(const tqString& other) {
  set(other.data, other.length);
  characters_.dropEarlier();
  return *this;
}

tqString& tqCopyString::operator=(const char* text) {
  set(text);
  characters_.dropEarlier();
  return *this;
}

int tqCopyString::null_terminated() const { return 1; }

void tqCopyString::set(const char* text) { set(text, counted(text, unmeasured)); }

// Kept: the copies made before stay.
void tqCopyString::set(const char* text, int n) {
  length = counted(text, n);
  data = characters_.copy(text, length);
  hashValid = 0;
}

tqNullTerminatedString::tqNullTerminatedString() : tqString("") {}

tqNullTerminatedString::tqNullTerminatedString(const tqString& other) : tqString() {
  assign(other);
}

tqNullTerminatedString::tqNullTerminatedString(const tqNullTerminatedString& other) : tqString() {
  assign(other);
}

tqNullTerminatedString& tqNullTerminatedString::operator=(const tqNullTerminatedString& other) {
  assign(other);
  return *this;
}

// A copy held so far goes when the next one is made, no earlier: the text may be a view of it, and
// may still be one after it was borrowed.
void tqNullTerminatedString::assign(const tqString& other) {
  const int n = counted(other);
  const bool borrows = other.null_terminated() && (!other.data || other.data[n] == '\0');
  if (borrows) {
    data = other.data ? other.data : "";
  } else {
    data = characters_.copy(other.data, n);
    characters_.dropEarlier();
  }
  length = n;
  hashValid = 0;
  owned = !borrows;
}

void tqNullTerminatedString::free() {
  if (!owned) return;
  characters_.drop();
  set("");
}

tqString& tqNullTerminatedString::operator=(const tqString& other) {
  assign(other);
  return *this;
}

tqString& tqNullTerminatedString::operator=(const char* text) {
  assign(tqString(text));
  return *this;
}

int tqNullTerminatedString::null_terminated() const { return 1; }

void tqNullTerminatedString::set(const char* text) {
  tqString::set(text ? text : "");
  owned = 0;
}

void tqNullTerminatedString::set(const char* text, int n) { assign(tqString(text, n)); }

tqUniqueString::tqUniqueString(const char* text) { init(tqString(text)); }

tqUniqueString::tqUniqueString(const char* text, int n) { init(tqString(text, n)); }

tqUniqueString::tqUniqueString(const tqString& other) { init(other); }

tqUniqueString& tqUniqueString::operator=(const tqUniqueString& other) {
  *this = static_cast<const tqString&>(other);
  return *this;
}

void tqUniqueString::init(const tqString& text) {
  const tqString sought(text.data, counted(text));
  if (!table_) table_ = tqAllocated(new (std::nothrow) tqUniqueStringTable(256));
  tqString stored;
  if (table_->find(stored, sought)) {
    tqString::operator=(stored);
    return;
  }
  if (!pool_)
    pool_ = tqAllocated(new (std::nothrow) tqUniqueStringPool(tqUniqueStringPool::blockSize));
  set(pool_->add(sought.data, static_cast<unsigned>(sought.length)), sought.length);
  table_->insert(*this, *this);
}

unsigned tqUniqueString::hash() { return lowWord(data); }

// Kept: identity, not content.
int tqUniqueString::operator==(const tqString& other) const {
  return data == other.data && length == other.length;
}

int tqUniqueString::operator==(const char* text) const { return tqString::operator==(text); }

int tqUniqueString::null_terminated() const { return 0; }

unsigned tqUniqueStringTableRule::spread(const tqString& text) {
  return spreadBits(text.data, size(counted(text)));
}

char* tqUniqueStringPool::add(const char* text, unsigned n) {
  if (!text) n = 0;
  char* const place = take(n);
  if (n > 0) std::strncpy(place, text, n);  // Kept: fills up with NULs behind a NUL.
  return place;
}
