// Compares the text of random numbers with snprintf, for as long as one likes:
//
//   number_text_compare [values of each kind, 10,000,000 by default] [seed, 1 by default]
//
// Exits with 1 when any text differs.
#include "number_text_compare.h"

#include <cstdlib>

int main(int argc, char** argv) {
  const long count = argc > 1 ? std::atol(argv[1]) : 10000000;
  const unsigned long seed = argc > 2 ? std::strtoul(argv[2], nullptr, 0) : 1;
  const long differences = number_text::compare(count, seed);
  std::printf("%ld values of each of 6 kinds, seed %lu: %ld differences\n", count, seed,
              differences);
  return differences == 0 ? 0 : 1;
}
