// Compares fortran_sscanf with the C library's two steps on random fields, for as long as one
// likes:
//
//   fortran_fields_compare [fields, 10,000,000 by default] [seed, 1 by default]
//
// Exits with 1 when any field reads differently.
#include "fortran_fields_compare.h"

#include <cstdlib>

int main(int argc, char** argv) {
  const long count = argc > 1 ? std::atol(argv[1]) : 10000000;
  const unsigned long seed = argc > 2 ? std::strtoul(argv[2], nullptr, 0) : 1;
  const long differences = fortran_fields::compare(count, seed);
  std::printf("%ld fields, each by 5 descriptors, seed %lu: %ld differences\n", count, seed,
              differences);
  return differences == 0 ? 0 : 1;
}
