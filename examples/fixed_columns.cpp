// Reads fixed-column records, as Fortran programs write them.

#include "fortran_io.h"

#include <cstdio>
#include <cstdlib>

int main() {
  // A station, its number, its position and a remark; the columns touch where numbers are wide.
  const char* const lines[] = {"ALPHA   17   1.250-12.375 north pier",
                               "BETA 10234 101.500   4.000",  //
                               "GAMMA"};
  double sum = 0.0;
  for (const char* line : lines) {
    //! [fields]
    char name[5 + 1];
    char remark[11 + 1];
    int number = 0;
    double x = 0.0, y = 0.0;
    if (!fortran_sscanf(line, "a5,i5,2f8,a11", 5, name, &number, &x, &y, remark)) return 1;
    std::printf("[%s] %5d %8.3f %8.3f [%s]\n", name, number, x, y, remark);
    //! [fields]
    sum += number + x + y;
  }

  // Format reversion: the group is read again while there are columns left.
  int row[6];
  const int isRead =
      fortran_sscanf("row  1  2  3  4  5", "x3,(i3)", 5, row, row + 1, row + 2, row + 3, row + 4);

  // A fault in the format is reported with its place, and ends the reading.
  int value = 0;
  std::fflush(stdout);
  const int isRefused = !fortran_sscanf("12345", "i2,,i3", 2, &value, &value);

  const bool isRight = sum == 17 + 1.25 - 12.375 + 10234 + 101.5 + 4.0 && isRead && row[0] == 1 &&
                       row[4] == 5 && isRefused && value == 12;
  return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
