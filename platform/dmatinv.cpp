#include "Platform.h"

#include <algorithm>
#include <cmath>

/// The adjugate over the determinant.
///
/// Every column is scaled by a power of two first, so that matrices of very large or very small
/// elements, or of both, do not overflow or underflow on the way.
/// Elements of the inverse too large for a double become infinite. `result` may be `source`.
///
/// A matrix counts as singular when its determinant, as computed, is exactly 0 or not finite.
void dmatinv_(double* source, double* result, int* status) {
  double m[3][3];  // m[j] is column j
  int exponent[3];
  for (int j = 0; j < 3; ++j) {
    const double* column = source + 3 * j;
    double largest = 0.0;
    for (int i = 0; i < 3; ++i) largest = std::max(largest, std::fabs(column[i]));
    exponent[j] = 0;
    if (std::isfinite(largest)) std::frexp(largest, &exponent[j]);
    for (int i = 0; i < 3; ++i) m[j][i] = std::ldexp(column[i], -exponent[j]);
  }

  // The minor of the other two rows and columns in cyclic order, which has the cofactor's sign.
  const auto cofactor = [&m](int j, int i) {
    const int j1 = (j + 1) % 3, j2 = (j + 2) % 3, i1 = (i + 1) % 3, i2 = (i + 2) % 3;
    return m[j1][i1] * m[j2][i2] - m[j1][i2] * m[j2][i1];
  };
  const double determinant =
      m[0][0] * cofactor(0, 0) + m[0][1] * cofactor(0, 1) + m[0][2] * cofactor(0, 2);
  *status = determinant == 0.0 || !std::isfinite(determinant);
  for (int j = 0; j < 3; ++j)
    for (int i = 0; i < 3; ++i)
      result[3 * j + i] = *status ? 0.0 : std::ldexp(cofactor(i, j) / determinant, -exponent[i]);
}
