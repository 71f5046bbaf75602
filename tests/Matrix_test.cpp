#include "Matrix.h"

#include "geometry_testing.h"

#include <csignal>
#include <cstring>
#include <functional>
#include <vector>

namespace {

MMatrix randomMatrix(RandomPoints& random, int r, int c) {
  MMatrix m(r, c, nullptr);
  for (int i = 0; i < r; ++i)
    for (int j = 0; j < c; ++j) m(i, j) = random.coordinate();
  return m;
}

testing::AssertionResult near(const MMatrix& a, const MMatrix& b, double tolerance) {
  if (norm(a - b) <= tolerance && norm(b - a) <= tolerance) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "differ by " << norm(a - b) << " and " << norm(b - a);
}

// Equal to the bit, the sign of zeros included; any NaN is as good as another.
testing::AssertionResult sameBits(const MMatrix& a, const MMatrix& b) {
  for (int i = 0; i < a.nRow(); ++i)
    for (int j = 0; j < a.nCol(); ++j)
      if (std::memcmp(&a(i, j), &b(i, j), sizeof(double)) != 0 &&
          !(std::isnan(a(i, j)) && std::isnan(b(i, j))))
        return testing::AssertionFailure() << i << ", " << j << ": " << a(i, j) << ", " << b(i, j);
  return testing::AssertionSuccess();
}

// The inverse as it is defined, block by block; `exists` turns false where it ends the process.
MMatrix plainInverse(const MMatrix& a, bool& exists) {
  const int n = a.nRow();
  if (n == 1) return {1, 1.0 / a(0, 0)};
  MMatrix u(a);
  const MMatrix operations = u.upperTriangle();
  exists = exists && (n < 4 || u.isUpperTriangle()) && det(u) != 0.0;
  if (!exists) return operations;
  MMatrix b(1, n - 1, nullptr), r(n, n, nullptr);
  for (int j = 1; j < n; ++j) b(0, j - 1) = u(0, j);
  const MMatrix w = plainInverse(u.coFactor(0, 0), exists);
  if (!exists) return operations;
  const MMatrix top = ((-1.0 / u(0, 0)) * b) * w;
  r(0, 0) = 1.0 / u(0, 0);
  for (int j = 1; j < n; ++j) r(0, j) = top(0, j - 1);
  return r.coFactor(0, 0, w) * operations;
}

TEST(MatrixInverse, TimesTheMatrixIsTheIdentityAtAnySize) {
  RandomPoints random;
  for (const int n : {1, 2, 3, 4, 5, 17, 200}) {
    const MMatrix m = randomMatrix(random, n, n);
    EXPECT_TRUE(near(~m * m, MMatrix(n, 1.0), 1e-6)) << n;
    EXPECT_TRUE(near(m * ~m, MMatrix(n, 1.0), 1e-6)) << n;
  }
}

TEST(MatrixInverse, EqualsTheRecursiveDefinitionToTheBit) {
  RandomPoints random;
  const double oddValues[] = {0.0, -0.0, 1.0, -3.0, 1e200, -1e-200, 1e-310, INFINITY};
  int compared = 0, unbounded = 0;
  for (int round = 0; round < 20000; ++round) {
    const int n = 1 + round % 6, oddities = round / 6 % 8;
    MMatrix m = randomMatrix(random, n, n);
    for (int i = 0; i < n * n; ++i) {
      const unsigned pick = static_cast<unsigned>(random.coordinate() * 1000 + 10000);
      if (oddities > 0 && pick % 4 == 0)
        m(i / n, i % n) = oddValues[pick / 4 % static_cast<unsigned>(oddities + 1)];
    }
    bool exists = true;
    const MMatrix expected = plainInverse(m, exists);
    if (!exists) continue;
    ++compared;
    unbounded += std::isnan(expected(n - 1, 0));
    ASSERT_TRUE(sameBits(~m, expected)) << round;
  }
  EXPECT_GT(compared, 5000);
  EXPECT_GT(unbounded, 100);
  bool exists = true;
  const MMatrix m = randomMatrix(random, 40, 40);
  EXPECT_TRUE(sameBits(~m, plainInverse(m, exists)));
}

TEST(MatrixReduction, LeavesExactZerosAndReturnsTheRowOperations) {
  RandomPoints random;
  const struct {
    int r, c;
  } sizes[] = {{3, 3}, {6, 6}, {4, 7}, {7, 4}, {1, 5}, {5, 1}, {0, 2}, {30, 30}};
  for (const auto& size : sizes)
    for (int round = 0; round < 20; ++round) {
      MMatrix m = randomMatrix(random, size.r, size.c);
      for (int i = 0; i < size.r * size.c; ++i)
        if (round > 0 && random.coordinate() < 0) m(i / size.c, i % size.c) = 0.0;
      const MMatrix before = m, operations = m.upperTriangle();
      EXPECT_TRUE(m.isUpperTriangle()) << size.r << "x" << size.c;
      const double growth = std::max(norm(operations), norm(-operations)) + 1;
      EXPECT_TRUE(near(operations * before, m, 1e-11 * growth)) << size.r << "x" << size.c;
    }
}

TEST(MatrixProduct, RoundsEveryTermAndSumsFromTheFirst) {
  RandomPoints random;
  for (const int n : {1, 3, 4, 19}) {
    const MMatrix a = randomMatrix(random, n, n + 2), b = randomMatrix(random, n + 2, n + 1);
    const MMatrix product = a * b;
    ASSERT_TRUE(product.sameSize(n, n + 1));
    for (int i = 0; i < n; ++i)
      for (int j = 0; j < n + 1; ++j) {
        double sum = 0.0;
        for (int k = 0; k < n + 2; ++k) {
          volatile double term = a(i, k) * b(k, j);
          sum += term;
        }
        EXPECT_EQ(product(i, j), sum);
        EXPECT_EQ(a.row(i) ^ b.col(j), sum);
      }
  }
  const double rows[] = {1, 2, 3, 4, 5, 6, 7, 8, 10};
  EXPECT_TRUE(same(tqPoint3D(1, 10, 100) * MMatrix(3, 3, rows), {741, 852, 1063}));
}

TEST(MatrixElements, ComeFromArraysDiagonalsViewsAndOtherMatrices) {
  const double six[] = {1, 2, 3, 4, 5, 6}, turned[] = {1, 4, 2, 5, 3, 6}, two[] = {7, 8};
  const double joined[] = {1, 2, 3, 7, 0, 4, 5, 6, 0, 8}, changed[] = {5, 7, 9, 1, 2, 3};
  const MMatrix a(2, 3, six);
  EXPECT_TRUE(a.t() == MMatrix(3, 2, turned));
  EXPECT_TRUE((a & MMatrix(2, two)) == MMatrix(2, 5, joined));
  EXPECT_TRUE(MMatrix(2, 3, nullptr) == a - a);
  EXPECT_TRUE(MMatrix(2, 2.0) + MMatrix(2, -2.0) == MMatrix(2, 2, nullptr));
  EXPECT_TRUE(MMatrix(a.row(1)) == MMatrix(1, 3, six + 3));
  EXPECT_TRUE(MMatrix(a.col(2)).t() == MMatrix(1, 2, turned + 4));
  EXPECT_FALSE(a == a.t());
  MMatrix large(5, 1.0), copy = large;  // more elements than an object holds
  copy(4, 4) = 2.0;
  EXPECT_EQ(large(4, 4), 1.0);
  EXPECT_TRUE((large = copy) == copy);
  MMatrix b = a;
  b.switchRows(0, 1);
  b.combineRows(0, 1.0, 1);
  EXPECT_TRUE(b == MMatrix(2, 3, changed));
  b.col(0) += b.col(2);
  b.row(1, b.row(0));
  b.col(1, a.col(0));
  b *= 2.0;
  const double ended[] = {28, 2, 18, 28, 8, 18};
  EXPECT_TRUE(b == MMatrix(2, 3, ended));
}

TEST(MatrixKept, DeterminantHasThreeTermsFor3x3AndNormIgnoresNegatives) {
  const double full[] = {1, 2, 3, 4, 5, 6, 7, 8, 10}, diagonal[] = {2, 3, 4, 5};
  EXPECT_EQ(det(MMatrix(3, 3, full)), 14.0);
  EXPECT_EQ(det(MMatrix(2, 2, full)), -2.0);
  MMatrix triangular(4, diagonal);
  triangular(0, 3) = 7.0;
  EXPECT_EQ(det(triangular), 120.0);
  EXPECT_EQ(norm(triangular), 7.0);
  EXPECT_EQ(norm(-MMatrix(3, 3, full)), 0.0);
  const double minor[] = {1, 2, 4, 5}, filled[] = {9, 9, 3, 9, 9, 6, 7, 8, 10};
  EXPECT_TRUE(MMatrix(3, 3, full).coFactor(2, 2) == MMatrix(2, 2, minor));
  const double nines[] = {9, 9, 9, 9};
  EXPECT_TRUE(MMatrix(3, 3, full).coFactor(2, 2, MMatrix(2, 2, nines)) == MMatrix(3, 3, filled));
}

TEST(MatrixDeathTest, EveryBrokenSizeOrIndexRuleAborts) {
  static MMatrix a(2, 3, nullptr), square(3, 1.0), full(4, 1.0);
  full(3, 0) = 1.0;
  const double singular[] = {1, 2, 2, 4};
  const MMatrix s(2, 2, singular);
  const struct {
    const char* label;
    std::function<void()> call;
  } cases[] = {{"negative size", [] { MMatrix(-1, 2, nullptr); }},
               {"row index", [] { a(2, 0); }},
               {"column index", [] { a(0, -1); }},
               {"row view", [] { a.row(2); }},
               {"column view", [] { a.col(3); }},
               {"assignment", [] { a = square; }},
               {"row assignment", [] { a.row(0) = full.row(0); }},
               {"column assignment", [] { a.col(0) = square.col(0); }},
               {"column sum", [] { a.col(0) += square.col(0); }},
               {"dot product", [] { a.row(0) ^ a.col(0); }},
               {"switched row", [] { a.switchRows(0, 2); }},
               {"combined row", [] { a.combineRows(-1, 1.0, 0); }},
               {"sum", [] { a + square; }},
               {"difference", [] { a - square; }},
               {"product", [] { a* a; }},
               {"join", [] { a& square; }},
               {"point times other than 3x3", [] { tqPoint3D(1, 2, 3) * full; }},
               {"Kept: minor of row 1", [] { square.coFactor(1, 0); }},
               {"Kept: minor of column 1", [] { square.coFactor(0, 1, MMatrix(2, 1.0)); }},
               {"minor out of range", [] { square.coFactor(3, 0); }},
               {"minor of another size", [] { square.coFactor(0, 0, square); }},
               {"determinant of 2x3", [] { det(a); }},
               {"Kept: determinant of a full 4x4", [] { det(full); }},
               {"inverse of 2x3", [] { ~a; }},
               {"inverse of nothing", [] { ~MMatrix(0, 1.0); }},
               {"singular", [&s] { ~s; }},
               {"product of the diagonal underflows", [] { ~MMatrix(4, 1e-100); }}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EXIT(c.call(), testing::KilledBySignal(SIGABRT), "^$");
  }
}

}  // namespace
