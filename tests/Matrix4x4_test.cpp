#include "Matrix4x4.h"

#include "geometry_testing.h"

#include <cstring>
#include <utility>

namespace {

TEST(Matrix4x4Motion, RotatesThenMovesRowsAndItsInverseUndoesThat) {
  RandomPoints random;
  for (int i = 0; i < 100; ++i) {
    tqPoint3D axis = random.point();
    axis.normalize();
    const tqPoint3D p = random.point(), shift = random.point();
    tqMatrix3x3 r;
    r.rotateAboutAxis(axis, random.coordinate() * 40);
    tqMatrix4x4 m(r, shift);
    const tqPoint3D moved = m.multPointMatrix(p);
    EXPECT_TRUE(near(moved, (p * r) += shift));
    EXPECT_TRUE(near((m * m * ~m).multPointMatrix(p), moved));
    EXPECT_TRUE(near((m * m).multPointMatrix(p), m.multPointMatrix(moved)));
    tqPoint3D q = p;
    m.multCoordMatrix(q.x, q.y, q.z);
    EXPECT_TRUE(same(q, moved));
    tqMatrix4x4 forColumns;  // the same motion in the other convention
    static_cast<MMatrix&>(forColumns) = static_cast<const MMatrix&>(m).t();
    EXPECT_TRUE(same(forColumns * q, m.multPointMatrix(q)));
    EXPECT_TRUE(same(std::as_const(forColumns) * q, m.multPointMatrix(q)));
  }
}

TEST(Matrix4x4Motion, KeptTheConstructorsTranslationIsForRowsOnly) {
  const tqMatrix3x3 identity(1, 0, 0, 0, 1, 0, 0, 0, 1), quarter(0, 1, 0, -1, 0, 0, 0, 0, 1);
  const tqMatrix4x4 m(identity, {1, 2, 3}), still(quarter, {});
  EXPECT_TRUE(same(m.multPointMatrix({}), {1, 2, 3}));
  EXPECT_TRUE(same(m * tqPoint3D(), {0, 0, 0}));
  EXPECT_TRUE(m.hasTranslation());
  EXPECT_TRUE(~m == tqMatrix4x4(identity, {-1, -2, -3}));
  EXPECT_FALSE(still.hasTranslation());
  EXPECT_TRUE(~still == tqMatrix4x4(quarter.t(), {}));
  EXPECT_TRUE(tqMatrix4x4().hasTranslation());  // element (3, 3) is not 1
}

TEST(Matrix4x4Motion, InverseIgnoresTheLastColumnAndCountsZeroTranslationAsNone) {
  tqMatrix4x4 m(tqMatrix3x3(0, 1, 0, -1, 0, 0, 0, 0, 1), {1, 2, 3});
  const tqMatrix4x4 inverse = ~m;
  for (int i = 0; i < 3; ++i) m(i, 3) = 7.0;
  EXPECT_TRUE(~m == inverse);
  const tqMatrix4x4 unbounded(tqMatrix3x3(INFINITY, 0, 0, 0, 1, 0, 0, 0, 1), {});
  EXPECT_EQ((~unbounded)(3, 0), 0.0);
}

TEST(Matrix4x4Product, EqualsThatOfOtherSizesToTheBitAndSoDoes3x3) {
  RandomPoints random;
  const auto compare = [&](auto a, auto b, int zeroColumn) {
    const int n = a.nRow();
    for (int i = 0; i < n * n; ++i) {
      a(i / n, i % n) = random.coordinate();
      b(i / n, i % n) = random.coordinate() * (i % n == zeroColumn ? 0.0 : 1.0);
    }
    const MMatrix &anyA = a, &anyB = b, &product = a * b, expected = anyA * anyB;
    const auto size = static_cast<std::size_t>(n * n) * sizeof(double);
    EXPECT_EQ(std::memcmp(&product(0, 0), &expected(0, 0), size), 0);
  };
  for (int round = 0; round < 100; ++round) {
    compare(tqMatrix3x3(), tqMatrix3x3(), round % 3);
    compare(tqMatrix4x4(), tqMatrix4x4(), round % 4);
  }
}

}  // namespace
