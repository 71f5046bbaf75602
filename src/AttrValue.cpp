#include "AttrValue.h"

#include "Base.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr int floatDigits = 8;    // "%.8G"
constexpr int doubleDigits = 17;  // "%.17G": enough to read any double back exactly

// Room for any number, the longest being of 24 characters ("-2.2250738585072014E-308"), and for the
// longest element: a point, three of them with two parentheses, two blanks and a NUL.
constexpr int numberSize = 27;
constexpr int elementSize = 80;

// Bytes of one scalar in a block of this kind.
std::size_t scalarWidth(AttrType type) {
  switch (type) {
  case ATTR_INT_ARRAY:
  case ATTR_UINT_ARRAY:
  case ATTR_FLOAT_ARRAY:
    return 4;
  default:
    return 8;
  }
}

// Kept: identifiers too are written as signed numbers.
char* writeInteger(int number, char* out) {
  return std::to_chars(out, out + numberSize, number).ptr;
}

// As "%.*G" in the "C" locale, in a fifth of the time of sprintf; gives the end. The general form
// of std::to_chars is "%.*g", of which 'G' raises the letters: "inf" and "nan", which no digit
// follows, or the 'e' in front of an exponent's sign and two or three digits
// (fuzz/number_text_compare.cpp compares).
char* writeNumber(double number, int digits, char* out) {
  char* const end =
      std::to_chars(out, out + numberSize, number, std::chars_format::general, digits).ptr;
  if (end[-1] > '9') {
    for (char* at = end - 3; at != end; ++at) *at = static_cast<char>(*at - 'a' + 'A');
  } else if (end - out > 4) {
    char& mark = end[end[-4] == 'e' ? -4 : -5];
    if (mark == 'e') mark = 'E';
  }
  return end;
}

char* writePoint(const double* point, char* out) {
  *out++ = '(';
  for (int i = 0; i < 3; ++i) {
    if (i > 0) *out++ = ' ';
    out = writeNumber(point[i], doubleDigits, out);
  }
  *out++ = ')';
  return out;
}

// Gives the end of the element's text. std::to_chars writes zeros that it takes back: `out` is
// elementSize long, whatever the text is.
char* writeElement(const void* element, AttrType kind, char* out) {
  switch (kind) {
  case ATTR_INT:
  case ATTR_UINT:
    return writeInteger(*static_cast<const int*>(element), out);
  case ATTR_FLOAT:
    return writeNumber(*static_cast<const float*>(element), floatDigits, out);
  case ATTR_DOUBLE:
    return writeNumber(*static_cast<const double*>(element), doubleDigits, out);
  case ATTR_POINT:
    return writePoint(static_cast<const double*>(element), out);
  default:
    return out;
  }
}

char* copyOf(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  char* const copy = tqAllocated(new (std::nothrow) char[size]);
  std::memcpy(copy, text, size);
  return copy;
}

}  // namespace

AttrValue& AttrValue::operator=(const AttrValue& other) {
  if (this == &other) return *this;
  clear();
  copyAttrValue(other);
  return *this;
}

int AttrValue::length() const {
  switch (type_) {
  case ATTR_INT_ARRAY:
  case ATTR_UINT_ARRAY:
  case ATTR_FLOAT_ARRAY:
  case ATTR_DOUBLE_ARRAY:
  case ATTR_RESERVED:
    return value_.block->count;
  case ATTR_POINT_ARRAY:
    return value_.block->count / 3;
  case ATTR_STRING:
    return static_cast<int>(std::strlen(value_.text));
  default:
    return 1;  // Kept: also for an empty value.
  }
}

const void* AttrValue::pvalue() const {
  if (type_ == ATTR_STRING) return value_.text;
  if (type_ == ATTR_NONE || type_ > ATTR_STRING) return nullptr;
  if (type_ <= ATTR_DOUBLE) return &value_;
  return value_.block + 1;
}

int AttrValue::value(const double*& numbers) const {
  if (type_ != ATTR_DOUBLE_ARRAY && type_ != ATTR_POINT && type_ != ATTR_POINT_ARRAY) return 0;
  return getElements(type_, numbers);
}

void AttrValue::setValue(const double* point) {
  static constexpr double origin[3] = {};
  setArray(ATTR_POINT, point ? point : origin, 3);
}

void AttrValue::setValue(const char* text) {
  char* const copy = copyOf(text ? text : "");
  clear();
  value_.text = copy;
  type_ = ATTR_STRING;
}

void AttrValue::setValue(const double (*points)[3], int n) {
  if (!points || n < 0) n = 0;
  if (n > INT_MAX / 3) tqOutOfMemory();
  setArray(ATTR_POINT_ARRAY, points, 3 * n);
}

void AttrValue::setArray(AttrType type, const void* elements, int count) {
  if (!elements || count < 0) count = 0;
  const std::size_t size = static_cast<std::size_t>(count) * scalarWidth(type);
  auto* const block =
      static_cast<BlockHeader*>(tqAllocated(std::malloc(sizeof(BlockHeader) + size)));
  *block = {count, 0};
  if (size > 0) std::memcpy(block + 1, elements, size);
  clear();
  value_.block = block;
  type_ = type;
}

void AttrValue::release() {
  if (type_ == ATTR_STRING)
    delete[] value_.text;
  else
    std::free(value_.block);
}

void AttrValue::copyAttrValue(const AttrValue& source) {
  type_ = source.type_;                // Kept: what the value held is not released.
  if (type_ == ATTR_RESERVED) return;  // Kept: the code without its block.
  if (type_ <= ATTR_DOUBLE) {
    value_ = source.value_;
  } else if (type_ == ATTR_STRING) {
    value_.text = copyOf(source.value_.text);
  } else {
    const int count = source.value_.block->count;
    const std::size_t size =
        sizeof(BlockHeader) + static_cast<std::size_t>(count) * scalarWidth(type_);
    value_.word = std::memcpy(tqAllocated(std::malloc(size)), source.value_.block, size);
  }
}

// The identifiers that the value holds, null when its kind is another.
unsigned int* AttrValue::identifiers(int& n) {
  if (type_ != ATTR_UINT && type_ != ATTR_UINT_ARRAY) return nullptr;
  n = length();
  return static_cast<unsigned int*>(const_cast<void*>(pvalue()));
}

void AttrValue::validateObjects() {
  int n = 0;
  unsigned int* const oids = identifiers(n);
  for (int i = 0; i < n; ++i)
    if (oids[i] != 0 && !tqBase::validated(oids[i], 1)) oids[i] = 0;
}

AttrType AttrValue::scalarType(int* width) const {
  static constexpr int widths[] = {4, 4, 4, 8, 24};  // of an element of the kinds 6 to 10
  const bool isArray = type_ >= ATTR_INT_ARRAY && type_ <= ATTR_POINT_ARRAY;
  if (width) *width = isArray ? widths[type_ - ATTR_INT_ARRAY] : 0;
  return isArray ? static_cast<AttrType>(type_ - ATTR_INT_ARRAY + ATTR_INT) : type_;
}

int AttrValue::encodeScalar(const void* element, AttrType kind, char* out) const {
  if (!out) return 0;
  char text[elementSize];
  const char* const end = element ? writeElement(element, kind, text) : text;
  const auto length = static_cast<std::size_t>(end - text);
  std::memcpy(out, text, length);
  out[length] = '\0';
  return static_cast<int>(length);
}

// One number, the most common value, goes straight into the caller's buffer when any would fit:
// "%d" takes 6 ns so and 11 in the loop (GCC 12, -O3).
char* AttrValue::writeToString(char* buffer, int size) const {
  if (!buffer || size < elementSize) return writeCut(buffer, size);
  char* end;
  switch (type_) {
  case ATTR_INT:
  case ATTR_UINT:
    end = writeInteger(value_.signedNumber, buffer);
    break;
  case ATTR_FLOAT:
    end = writeNumber(value_.singleNumber, floatDigits, buffer);
    break;
  case ATTR_DOUBLE:
    end = writeNumber(value_.doubleNumber, doubleDigits, buffer);
    break;
  default:
    return writeCut(buffer, size);
  }
  *end = '\0';
  return buffer;
}

char* AttrValue::writeCut(char* buffer, int size) const {
  if (!buffer || size < 1) return buffer;
  char* out = buffer;
  char* const last = buffer + size - 1;  // for the NUL
  const auto put = [&](const char* text, std::size_t length) {
    length = std::min(length, static_cast<std::size_t>(last - out));
    std::memcpy(out, text, length);
    out += length;
  };
  if (type_ == ATTR_STRING) {
    put(value_.text, std::strlen(value_.text));
  } else if (type_ != ATTR_NONE) {
    int width;
    const AttrType kind = scalarType(&width);
    const int count = length();
    const auto* element = static_cast<const char*>(pvalue());
    for (int i = 0; i < count && out < last; ++i, element += width) {
      if (i > 0) *out++ = ' ';
      char text[elementSize];
      put(text, static_cast<std::size_t>(writeElement(element, kind, text) - text));
    }
  }
  *out = '\0';
  return buffer;
}
