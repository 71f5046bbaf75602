#include "Hybrid36.h"

#include <algorithm>
#include <string_view>

namespace molreport {

namespace {

constexpr int base = 36;

int power(int number, int exponent) {
  int result = 1;
  while (exponent-- > 0) result *= number;
  return result;
}

// Value of a digit when letters are those that start with `firstLetter`; -1 for anything else.
int digitOf(char c, char firstLetter) {
  if (c >= '0' && c <= '9') return c - '0';
  return c >= firstLetter && c < firstLetter + 26 ? c - firstLetter + 10 : -1;
}

std::string_view trimmed(const char* text, int width) {
  std::string_view all(text, static_cast<std::size_t>(width));
  const std::size_t first = all.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return all.substr(first, all.find_last_not_of(' ') - first + 1);
}

bool readDecimal(std::string_view digits, int& value) {
  const bool negative = digits.front() == '-';
  if (negative || digits.front() == '+') digits.remove_prefix(1);
  if (digits.empty()) return false;
  int sum = 0;
  for (const char c : digits) {
    if (c < '0' || c > '9') return false;
    sum = sum * 10 + (c - '0');
  }
  value = negative ? -sum : sum;
  return true;
}

}  // namespace

int readHybrid36(const char* text, int width, int& value) {
  const std::string_view digits = trimmed(text, width);
  if (digits.empty()) return 0;
  if (readDecimal(digits, value)) return 1;
  const char firstLetter = digits.front() >= 'a' ? 'a' : 'A';
  if (width > 5 || static_cast<int>(digits.size()) != width ||
      digitOf(digits.front(), firstLetter) < 10)
    return 0;
  int sum = 0;
  for (const char c : digits) {
    const int digit = digitOf(c, firstLetter);
    if (digit < 0) return 0;
    sum = sum * base + digit;
  }
  const int letters = firstLetter == 'a' ? 26 * power(base, width - 1) : 0;
  value = sum - 10 * power(base, width - 1) + power(10, width) + letters;
  return 1;
}

std::string writeHybrid36(int value, int width) {
  const auto columns = static_cast<std::size_t>(width);
  std::string text(columns, '*');
  if (value < power(10, width)) {
    const std::string decimal = std::to_string(value);
    if (decimal.size() <= columns) text = std::string(columns - decimal.size(), ' ') + decimal;
    return text;
  }
  const int perCase = 26 * power(base, width - 1);
  int rest = value - power(10, width);
  if (rest >= 2 * perCase) return text;
  const char firstLetter = rest >= perCase ? 'a' : 'A';
  rest = rest % perCase + 10 * power(base, width - 1);
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit, rest /= base) {
    const int worth = rest % base;
    *digit = static_cast<char>(worth < 10 ? '0' + worth : firstLetter + worth - 10);
  }
  return text;
}

}  // namespace molreport
