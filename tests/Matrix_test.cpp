#include "Matrix.h"

#include "geometry_testing.h"

#include <csignal>
#include <functional>
#include <utility>

namespace {

MMatrix randomMatrix(RandomPoints& random, int r, int c) {
  MMatrix m(r, c, nullptr);
  for (int i = 0; i < r; ++i)
    for (int j = 0; j < c; ++j) m(i, j) = random.coordinate();
  return m;
}

double largestDifference(const MMatrix& a, const MMatrix& b) {
  return std::max(norm(a - b), norm(b - a));
}

// Equal to the bit, the sign of zeros included; any NaN is as good as another.
bool sameBits(double a, double b) {
  return a == b ? std::signbit(a) == std::signbit(b) : std::isnan(a) && std::isnan(b);
}

// The inverse as it is defined, block by block; `exists` turns false where it ends the process.
MMatrix plainInverse(const MMatrix& a, bool& exists) {
  const int n = a.nRow();
  if (n == 1) return {1, 1.0 / a(0, 0)};
  MMatrix u(a);
  const MMatrix operations = u.upperTriangle();
  exists = exists && (n < 4 || u.isUpperTriangle()) && det(u) != 0.0;
  if (!exists) return operations;
  const MMatrix w = plainInverse(u.coFactor(0, 0), exists), b(1, n - 1, &u(0, 1));
  if (!exists) return operations;
  const MMatrix top = MMatrix(1, 1.0 / u(0, 0)) & ((-1.0 / u(0, 0)) * b) * w;
  MMatrix r(n, n, nullptr);
  r.row(0, top.row(0));
  return r.coFactor(0, 0, w) * operations;
}

TEST(MatrixInverse, TimesTheMatrixIsTheIdentityAtAnySize) {
  RandomPoints random;
  for (const int n : {1, 2, 3, 4, 5, 17, 200}) {
    const MMatrix m = randomMatrix(random, n, n);
    EXPECT_LT(largestDifference(~m * m, MMatrix(n, 1.0)), 1e-6) << n;
  }
}

TEST(MatrixInverse, EqualsTheRecursiveDefinitionToTheBit) {
  RandomPoints random;
  const double oddValues[] = {0.0, -0.0, -3.0, 1e200, -1e-200, 1e-310, INFINITY};
  int compared = 0, unbounded = 0;
  for (int round = 0; round < 20000; ++round) {
    const int n = round == 0 ? 40 : 1 + round % 6;
    MMatrix m = randomMatrix(random, n, n);
    for (int odd = 0; odd < round % 8; ++odd) {  // odd values 0 to 6 in places chosen at random
      const int place = static_cast<int>((random.coordinate() + 10) * n * n / 20);
      m(place / n, place % n) = oddValues[odd];
    }
    for (int i = 1; round % 5 == 0 && i < n; ++i) m(i, 0) = 0.0;
    bool exists = true;
    const MMatrix expected = plainInverse(m, exists);
    if (!exists) continue;
    ++compared;
    unbounded += std::isnan(expected(n - 1, 0));
    const MMatrix inverse = ~m;
    for (int i = 0; i < n * n; ++i)
      ASSERT_PRED2(sameBits, inverse(i / n, i % n), expected(i / n, i % n)) << round;
  }
  EXPECT_GT(compared, 5000);
  EXPECT_GT(unbounded, 100);
}

TEST(MatrixReduction, LeavesExactZerosAndReturnsTheRowOperations) {
  RandomPoints random;
  const std::pair<int, int> sizes[] = {{3, 3}, {6, 6}, {4, 7}, {7, 4}, {5, 1}, {0, 2}, {30, 30}};
  for (const auto& [r, c] : sizes)
    for (int round = 0; round < 20; ++round) {
      MMatrix m = randomMatrix(random, r, c);
      for (int i = 0; i < r * c; ++i)
        if (round > 0 && random.coordinate() < 0) m(i / c, i % c) = 0.0;
      const MMatrix before = m, operations = m.upperTriangle();
      EXPECT_TRUE(m.isUpperTriangle()) << r << "x" << c;
      const double growth = largestDifference(operations, MMatrix(r, 0.0)) + 1;
      EXPECT_LT(largestDifference(operations * before, m), 1e-11 * growth) << r << "x" << c;
    }
}

TEST(MatrixProduct, RoundsEveryTermAndSumsFromTheFirst) {
  RandomPoints random;
  for (const int n : {1, 3, 4, 19}) {
    const MMatrix a = randomMatrix(random, n, n + 2), b = randomMatrix(random, n + 2, n + 1);
    const MMatrix product = a * b;
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

// One element in `rarity` is one of the first `kinds` numbers that sums and factors may trip over.
MMatrix oddMatrix(RandomPoints& random, int r, int c, int rarity, int kinds) {
  const double oddValues[] = {0.0, -0.0, 1e300, 1e-310, -1e-310, INFINITY, -INFINITY, NAN};
  MMatrix m = randomMatrix(random, r, c);
  for (int i = 0; i < r * c; ++i) {
    const int odd = static_cast<int>((random.coordinate() + 10) / 20 * kinds * rarity);
    if (odd < kinds) m(i / c, i % c) = oddValues[odd];
  }
  return m;
}

bool sameBits(const MMatrix& a, const MMatrix& b) {
  int same = 0;
  for (int i = 0; i < a.nRow() * a.nCol(); ++i)
    same += sameBits(a(i / a.nCol(), i % a.nCol()), b(i / a.nCol(), i % a.nCol()));
  return same == b.nRow() * b.nCol();
}

TEST(MatrixProduct, EqualsRowTimesColumnToTheBitWhereverTilesEnd) {
  RandomPoints random;
  const int sizes[][3] = {{1, 9, 40}, {4, 300, 1},   {5, 1, 7},    {7, 257, 13}, {9, 513, 8},
                          {4, 0, 5},  {17, 256, 12}, {33, 31, 30}, {64, 2, 11}};
  for (const auto& [rows, terms, columns] : sizes)
    for (const int rarity : {1, 40, 1 << 20}) {
      const MMatrix a = oddMatrix(random, rows, terms, rarity, 8);
      const MMatrix b = oddMatrix(random, terms, columns, rarity, 8);
      MMatrix expected(rows, columns, nullptr);
      for (int i = 0; i < rows * columns; ++i)
        expected(i / columns, i % columns) = a.row(i / columns) ^ b.col(i % columns);
      EXPECT_TRUE(sameBits(a * b, expected)) << rows << "x" << terms << "x" << columns;
    }
}

// The reduction as it is defined, whole rows at a time.
MMatrix plainReduction(MMatrix& m) {
  MMatrix operations(m.nRow(), 1.0);
  for (int k = 0; k < m.nCol() && !m.isUpperTriangle(); ++k) {
    int last = m.nRow() - 1;
    for (int r = k;;) {
      while (k < last && m(last, k) == 0.0) --last;
      while (r < last && m(r, k) != 0.0) ++r;
      if (r >= last) break;
      m.switchRows(last, r);
      operations.switchRows(last, r);
    }
    for (int i = k + 1; i <= last; ++i) {
      const double f = -m(i, k) / m(k, k);
      m.combineRows(i, f, k);
      operations.combineRows(i, f, k);
      m(i, k) = 0.0;
    }
  }
  return operations;
}

TEST(MatrixReduction, EqualsTheDefinitionToTheBitInBlocksAndOutOfThem) {
  RandomPoints random;
  const std::pair<int, int> sizes[] = {{5, 5},   {8, 8},   {17, 17}, {40, 40},
                                       {33, 50}, {50, 33}, {9, 1},   {20, 64}};
  const std::pair<int, int> oddities[] = {{2, 2}, {40, 2}, {20, 8}, {1000, 8}, {1 << 25, 8}};
  for (const auto& [r, c] : sizes)
    for (const auto& [rarity, kinds] : oddities) {
      MMatrix m = oddMatrix(random, r, c, rarity, kinds), plain = m;
      const MMatrix operations = m.upperTriangle(), expected = plainReduction(plain);
      EXPECT_TRUE(sameBits(m, plain) && sameBits(operations, expected))
          << r << "x" << c << ", one odd in " << rarity;
    }
}

TEST(MatrixElements, ComeFromArraysDiagonalsViewsAndOtherMatrices) {
  const double six[] = {1, 2, 3, 4, 5, 6}, turned[] = {1, 4, 2, 5, 3, 6}, two[] = {7, 8};
  const double joined[] = {1, 2, 3, 7, 0, 4, 5, 6, 0, 8}, ended[] = {28, 2, 18, 28, 8, 18};
  const MMatrix a(2, 3, six);
  EXPECT_TRUE(a.t() == MMatrix(3, 2, turned));
  EXPECT_TRUE((a & MMatrix(2, two)) == MMatrix(2, 5, joined));
  EXPECT_TRUE(MMatrix(a.row(1)) == MMatrix(1, 3, six + 3));
  EXPECT_TRUE(MMatrix(a.col(2)).t() == MMatrix(1, 2, turned + 4));
  MMatrix large(5, 1.0), copy = large;  // more elements than an object holds
  copy(4, 4) = 2.0;
  EXPECT_TRUE(!(large == copy) && (large = copy) == copy);
  MMatrix b = a;
  b.switchRows(0, 1);
  b.combineRows(0, 1.0, 1);  // 5 7 9, 1 2 3
  b.col(0) += b.col(2);
  b.row(1, b.row(0));
  b.col(1, a.col(0));
  b *= 2.0;
  EXPECT_TRUE(b == MMatrix(2, 3, ended));
}

TEST(MatrixKept, DeterminantHasThreeTermsFor3x3AndNormIgnoresNegatives) {
  const double full[] = {1, 2, 3, 4, 5, 6, 7, 8, 10}, diagonal[] = {2, 3, 4, 5};
  const MMatrix m(3, 3, full);
  EXPECT_EQ(det(m), 14.0);
  EXPECT_EQ(det(MMatrix(2, 2, full)), -2.0);
  MMatrix triangular(4, diagonal);
  triangular(0, 3) = 7.0;
  EXPECT_EQ(det(triangular), 120.0);
  EXPECT_EQ(norm(triangular), 7.0);
  EXPECT_EQ(norm(-m), 0.0);
  const double minor[] = {1, 2, 4, 5}, filled[] = {0, 1, 3, 1, 0, 6, 7, 8, 10},
               turn[] = {0, 1, 1, 0};
  EXPECT_TRUE(m.coFactor(2, 2) == MMatrix(2, 2, minor));
  EXPECT_TRUE(m.coFactor(2, 2, MMatrix(2, 2, turn)) == MMatrix(3, 3, filled));
}

TEST(MatrixDeathTest, EveryBrokenSizeOrIndexRuleAborts) {
  static MMatrix a(2, 3, nullptr), square(3, 1.0), full(4, 1.0);
  static const double uneven[] = {1e200, 1e-150, 1e-150, 1e-150};
  full(3, 0) = 1.0;
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"negative size", [] { MMatrix(-1, 2, nullptr); }},
      {"row index", [] { a(2, 0); }},
      {"column index", [] { a(0, -1); }},
      {"view", [] { a.col(3); }},
      {"assignment", [] { a = square; }},
      {"row assignment", [] { a.row(0) = full.row(0); }},
      {"column assignment", [] { a.col(0) = square.col(0); }},
      {"column sum", [] { a.col(0) += square.col(0); }},
      {"dot product", [] { a.row(0) ^ a.col(0); }},
      {"switched row", [] { a.switchRows(0, 2); }},
      {"combined row", [] { a.combineRows(-1, 1.0, 0); }},
      {"sum", [] { a + square; }},
      {"difference", [] { a - square; }},
      {"product", [] { norm(a * a); }},
      {"join", [] { norm(a & square); }},
      {"point times other than 3x3", [] { tqPoint3D(1, 2, 3) * full; }},
      {"Kept: minor of row 1", [] { square.coFactor(1, 0); }},
      {"Kept: minor of column 1", [] { square.coFactor(0, 1, MMatrix(2, 1.0)); }},
      {"minor out of range", [] { square.coFactor(3, 0); }},
      {"minor of another size", [] { square.coFactor(0, 0, square); }},
      {"determinant of 2x3", [] { det(a); }},
      {"Kept: determinant of a full 4x4", [] { det(full); }},
      {"inverse of nothing", [] { ~MMatrix(0, 1.0); }},
      {"singular", [] { ~MMatrix(2, 0.0); }},
      {"product of the diagonal underflows", [] { ~MMatrix(4, 1e-100); }},
      {"and from the second row on", [] { ~MMatrix(4, uneven); }}};
  for (const auto& [label, call] : cases)
    EXPECT_EXIT(call(), testing::KilledBySignal(SIGABRT), "^$") << label;
}

}  // namespace
