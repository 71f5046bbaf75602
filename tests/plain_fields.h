#ifndef PLAIN_FIELDS_H
#define PLAIN_FIELDS_H

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

/// \file plain_fields.h
/// Reading of one numeric field in the two steps that define it, and odd fields to compare with.

/// The field cut out with "%<w>[^\n]", then converted with "%<w><conversion>"; 0 when either finds
/// nothing. To be called in the "C" locale.
template <class T> T plainField(const char* line, int width, const char* conversion) {
  const std::string cut = "%" + std::to_string(width) + "[^\n]";
  const std::string read = "%" + std::to_string(width) + conversion;
  std::string scratch(static_cast<std::size_t>(width) + 1, '\0');
  T value{};
  if (std::sscanf(line, cut.c_str(), scratch.data()) != 1) return T{};
  return std::sscanf(scratch.c_str(), read.c_str(), &value) == 1 ? value : T{};
}

/// Fields of all lengths: plain numbers mostly, and everything that number readers disagree about.
class OddFields {
public:
  explicit OddFields(unsigned seed) : random_(seed) {}

  unsigned below(unsigned n) { return static_cast<unsigned>(random_() % n); }

  std::string next() {
    static const char* const words[] = {"inf",
                                        "-INFINITY",
                                        "nan",
                                        "nan(x1)",
                                        "0x1p3",
                                        "0X.8",
                                        "1.5e",
                                        "1e+",
                                        "1e-400",
                                        "1e400",
                                        "0x",
                                        "+-1",
                                        "9223372036854775808",
                                        "-99999999999999999999",
                                        "4294967296"};
    static const char odd[] = "0123456789.eE+-xXpPnaif() \t\r\v,dD\x80\xff";
    std::string field(below(4), ' ');
    switch (below(8)) {
    case 0:
      field += words[below(sizeof words / sizeof *words)];
      break;
    case 1:
      for (unsigned n = below(12); n > 0; --n) field += odd[below(sizeof odd - 1)];
      break;
    default:
      if (below(3) == 0) field += below(5) == 0 ? '+' : '-';
      for (unsigned n = below(7); n > 0; --n) field += static_cast<char>('0' + below(10));
      if (below(2) == 0) field += '.';
      for (unsigned n = below(below(10) == 0 ? 20 : 5); n > 0; --n)
        field += static_cast<char>('0' + below(10));
      if (below(12) == 0) field += "e" + std::to_string(static_cast<int>(below(700)) - 350);
    }
    field.append(below(3) / 2, ' ');
    if (below(16) == 0) field += odd[below(sizeof odd - 1)];
    return field;
  }

private:
  std::mt19937 random_;
};

#endif
