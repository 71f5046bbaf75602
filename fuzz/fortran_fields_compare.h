#ifndef TQ_FORTRAN_FIELDS_COMPARE_H
#define TQ_FORTRAN_FIELDS_COMPARE_H

// Compares fortran_sscanf on random fields with the two steps that define it, which need the "C"
// locale: cut the field with "%<w>[^\n]", read it with "%<w>d" and its kind. Part of the tests with
// a small count, and of the program beside it.

#include "fortran_io.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

namespace fortran_fields {

constexpr int maxWidth = 40;
constexpr int maxColumn = 12;

// What one field reads as, by each descriptor.
struct Readings {
  int integer;
  short shortInteger;
  long longInteger;
  double real;
  char text[maxWidth + 1];
};

// The conversions of every width and the formats of every width and column, made once.
struct Formats {
  static constexpr const char* conversions[] = {"d", "hd", "ld", "lf", "[^\n]"};
  static constexpr char letters[] = {'i', 's', 'l', 'f', 'a'};
  std::array<std::array<std::string, 5>, maxWidth + 1> plain;
  std::array<std::array<std::array<std::string, 5>, maxWidth + 1>, maxColumn + 1> tq;

  Formats() {
    for (std::size_t width = 1; width <= maxWidth; ++width)
      for (std::size_t kind = 0; kind < 5; ++kind) {
        plain[width][kind] = "%" + std::to_string(width) + conversions[kind];
        const std::string item = letters[kind] + std::to_string(width);
        tq[0][width][kind] = item;
        for (std::size_t column = 1; column <= maxColumn; ++column)
          tq[column][width][kind] = std::to_string(column) + "x," + item;
      }
  }
};

template <class T> T readPlainly(const char* text, const std::string& conversion) {
  T value;
  return std::sscanf(text, conversion.c_str(), &value) == 1 ? value : 0;
}

inline Readings readPlainly(const char* field, int width, const Formats& formats) {
  const auto& plain = formats.plain[static_cast<std::size_t>(width)];
  char scratch[maxWidth + 1] = "";
  std::sscanf(field, plain[4].c_str(), scratch);
  Readings readings;
  readings.integer = readPlainly<int>(scratch, plain[0]);
  readings.shortInteger = readPlainly<short>(scratch, plain[1]);
  readings.longInteger = readPlainly<long>(scratch, plain[2]);
  readings.real = readPlainly<double>(scratch, plain[3]);
  std::snprintf(readings.text, sizeof readings.text, "%-*s", width, scratch);
  return readings;
}

inline Readings readByLibrary(const char* line, int column, int width, const Formats& formats) {
  const auto& tq = formats.tq[static_cast<std::size_t>(column)][static_cast<std::size_t>(width)];
  Readings readings;
  fortran_sscanf(line, tq[0].c_str(), 1, &readings.integer);
  fortran_sscanf(line, tq[1].c_str(), 1, &readings.shortInteger);
  fortran_sscanf(line, tq[2].c_str(), 1, &readings.longInteger);
  fortran_sscanf(line, tq[3].c_str(), 1, &readings.real);
  fortran_sscanf(line, tq[4].c_str(), 1, readings.text);
  return readings;
}

// Bit for bit: -0.0 is not 0.0, and NaNs count.
inline bool same(const Readings& a, const Readings& b) {
  return a.integer == b.integer && a.shortInteger == b.shortInteger &&
         a.longInteger == b.longInteger && std::memcmp(&a.real, &b.real, sizeof a.real) == 0 &&
         std::strcmp(a.text, b.text) == 0;
}

// Makes fields: numbers as files hold them, numbers gone wrong, and what only looks like one.
class FieldMaker {
public:
  explicit FieldMaker(unsigned long seed) : random_(seed) {}

  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  std::string next() {
    std::string field = below(3) == 0 ? pieces() : number();
    for (int edits = below(6) - 2; edits > 0; --edits) edit(field);
    return field;
  }

  char oddCharacter() {
    static constexpr char odd[] = "0123456789+-. \t\v\f\r\neExXpPnNaAiIfFtTyYdD()_,";
    const int i = below(static_cast<int>(sizeof odd) + 7);
    return i < static_cast<int>(sizeof odd) - 1 ? odd[i] : static_cast<char>(1 + below(255));
  }

private:
  std::string number() {
    char text[64];
    const double value =
        static_cast<double>(static_cast<long>(random_())) / (1e19 / powerOfTen(below(19)));
    const int width = below(20);
    switch (below(5)) {
    case 0:
      std::snprintf(text, sizeof text, "%*d", width, static_cast<int>(std::fmod(value, 1e9)));
      break;
    case 1:
      std::snprintf(text, sizeof text, "%-*.*f", width, below(8), value);
      break;
    case 2:
      std::snprintf(text, sizeof text, "%*.*E", width, below(18), value);
      break;
    default:
      std::snprintf(text, sizeof text, "%*.*f", width, below(8), value);
    }
    return text;
  }

  static double powerOfTen(int exponent) {
    double power = 1;
    while (exponent-- > 0) power *= 10;
    return power;
  }

  std::string pieces() {
    static constexpr const char* parts[] = {"0x",
                                            "0x1p3",
                                            "inf",
                                            "infinity",
                                            "nan",
                                            "nan(",
                                            "nan(12)",
                                            "1e400",
                                            "4.9e-324",
                                            "e",
                                            "1.5e",
                                            "e+",
                                            "e-30",
                                            "1e-400",
                                            "99999",
                                            "0000",
                                            "-",
                                            "+",
                                            ".",
                                            "  ",
                                            "12",
                                            "9223372036854775807",
                                            "9007199254740993",
                                            "p-3",
                                            "2147483648"};
    std::string text;
    for (int count = 1 + below(4); count > 0; --count)
      text += parts[static_cast<std::size_t>(below(static_cast<int>(std::size(parts))))];
    return text;
  }

  void edit(std::string& field) {
    const auto place = static_cast<std::size_t>(below(static_cast<int>(field.size()) + 1));
    switch (below(3)) {
    case 0:
      field.insert(place, 1, oddCharacter());
      break;
    case 1:
      field.erase(place, 1);
      break;
    default:
      field.replace(place, 1, 1, oddCharacter());
    }
  }

  std::mt19937_64 random_;
};

// The differences among `count` random fields.
inline long compare(long count, unsigned long seed) {
  const Formats formats;
  FieldMaker make(seed);
  long differences = 0;
  for (long i = 0; i < count; ++i) {
    const int column = make.below(maxColumn + 1);
    std::string line;
    while (line.size() < static_cast<std::size_t>(column)) line += make.oddCharacter();
    line += make.next();
    // A field is often all that is left of the line, or cut out of longer text.
    const int left = static_cast<int>(line.size()) - column;
    const int width = std::clamp(make.below(2) ? left : 1 + make.below(maxWidth), 1, maxWidth);
    if (make.below(4) == 0) line += make.next();
    if (same(readByLibrary(line.c_str(), column, width, formats),
             readPlainly(line.c_str() + column, width, formats)))
      continue;
    if (++differences <= 20)
      std::printf("%d columns from column %d of \"%s\"\n", width, column, line.c_str());
  }
  return differences;
}

}  // namespace fortran_fields

#endif
