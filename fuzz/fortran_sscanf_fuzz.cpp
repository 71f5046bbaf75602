// The input is how many targets there are, '0' to '8', a format, a '|' and the line. Line, format
// and targets are blocks of their own: the address sanitizer sees what is touched beside them.
#include "fortran_io.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace {

// Texts of up to 99 characters fit the targets; formats with wider ones are passed over.
constexpr std::size_t targetSize = 100;

bool hasWideText(std::string_view format) {
  for (std::size_t a = format.find('a'); a != format.npos; a = format.find('a', a + 1))
    if (format.substr(a + 1, 3).find_first_not_of("0123456789") == format.npos &&
        format.size() - a > 3)
      return true;
  return false;
}

std::unique_ptr<char[]> terminated(std::string_view text) {
  std::unique_ptr<char[]> block(new char[text.size() + 1]);
  *std::copy(text.begin(), text.end(), block.get()) = '\0';
  return block;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const int maxValues = (data[0] + 256 - '0') % 256 % 9;
  const std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::string_view format = input.substr(0, input.find('|'));
  const std::string_view line = input.substr(std::min(format.size() + 1, input.size()));
  if (hasWideText(format)) return 0;

  std::array<std::unique_ptr<char[]>, 8> targets;
  for (auto& target : targets) target.reset(new char[targetSize]);
  const int result =
      fortran_sscanf(terminated(line).get(), terminated(format).get(), maxValues, targets[0].get(),
                     targets[1].get(), targets[2].get(), targets[3].get(), targets[4].get(),
                     targets[5].get(), targets[6].get(), targets[7].get());
  if (result != 0 && result != 1) std::abort();
  return 0;
}
