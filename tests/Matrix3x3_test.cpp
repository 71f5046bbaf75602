#include "Matrix3x3.h"

#include "Platform.h"
#include "geometry_testing.h"

#include <utility>

namespace {

TEST(Matrix3x3Rotation, TurnsRowsLikeThePointAndColumnsTheOtherWay) {
  RandomPoints random;
  for (int i = 0; i < 100; ++i) {
    tqPoint3D axis = random.point();
    axis.normalize();
    const tqPoint3D p = random.point();
    const double degrees = random.coordinate() * 40;
    tqMatrix3x3 m;
    m.rotateAboutAxis(axis, degrees);
    EXPECT_TRUE(near(p * m, tqPoint3D(p).rotateAboutAxis(axis, degrees)));
    EXPECT_TRUE(near(m * p, tqPoint3D(p).rotateAboutAxis(axis, -degrees)));
    EXPECT_TRUE(near(m * p, p * m.t()));
    EXPECT_TRUE(near(p * (m * ~std::as_const(m)), p));
  }
}

TEST(Matrix3x3Rotation, KeptAFirstCallWith0DegreesProjectsOntoTheAxis) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto firstCalls = [] {
    tqMatrix3x3 first, later;
    first.rotateAboutAxis({1, 2, 3}, 0);
    later.rotateAboutAxis({0, 0, 1}, 90);
    later.rotateAboutAxis({0, 0, 1}, 0);
    const bool kept = first == tqMatrix3x3(1, 2, 3, 2, 4, 6, 3, 6, 9);
    std::exit(kept && later == MMatrix(3, 1.0) ? 0 : 1);
  };
  EXPECT_EXIT(firstCalls(), testing::ExitedWithCode(0), "");
}

TEST(Matrix3x3Elements, LieRowByRow) {
  const tqMatrix3x3 oneToNine(1, 2, 3, 4, 5, 6, 7, 8, 9);
  tqMatrix3x3 m = oneToNine;
  EXPECT_TRUE(same(oneToNine * tqPoint3D(1, 0, 0), {1, 4, 7}));
  m.setRow(0, {7, 7, 7});
  m.setCol(2, {0, 1, 2});
  m.setRow(3, {5, 5, 5});
  m.setCol(-1, {5, 5, 5});
  EXPECT_TRUE(m == tqMatrix3x3(7, 7, 0, 4, 5, 1, 7, 8, 2));
  EXPECT_EQ((m * oneToNine)(2, 1), m.row(2) ^ oneToNine.col(1));
}

TEST(Matrix3x3Inverse, HoldsAtAnyScaleAndIsZeroForSingularMatrices) {
  const tqMatrix3x3 m(2, 1, -1, 3, 5, 2, 1, -2, 6);
  for (const double scale : {1.0, 1e-250, 1e250}) {
    tqMatrix3x3 scaled = m;
    for (int j = 0; j < 6; ++j) scaled(j % 2, j / 2) *= scale;  // the first two rows
    tqMatrix3x3 inverse = ~scaled;
    for (int j = 0; j < 6; ++j) inverse(j / 2, j % 2) *= scale;
    EXPECT_TRUE(near(tqPoint3D(1, 2, 3) * inverse * m, {1, 2, 3}, 1e-14)) << scale;
  }
  for (const double corner : {9.0, double{INFINITY}, double{NAN}}) {
    tqMatrix3x3 singular(1, 2, 3, 4, 5, 6, 7, 8, corner);
    int status = -1;
    dmatinv_(&singular(0, 0), &singular(0, 0), &status);
    EXPECT_TRUE(status == 1 && singular == tqMatrix3x3()) << corner;
  }
}

TEST(Matrix3x3Inverse, OfAMatrixScaledByAPowerOf2IsScaledBackToTheBit) {
  RandomPoints random;
  for (int round = 0; round < 200; ++round) {
    tqMatrix3x3 m, large;
    for (int i = 0; i < 9; ++i) m(i / 3, i % 3) = i == round % 20 ? 0.0 : random.coordinate();
    for (int i = 0; i < 9; ++i) large(i / 3, i % 3) = std::ldexp(m(i / 3, i % 3), 400);
    const tqMatrix3x3 inverse = ~m, small = ~large;
    for (int i = 0; i < 9; ++i)
      ASSERT_EQ(std::ldexp(small(i / 3, i % 3), 400), inverse(i / 3, i % 3)) << round;
  }
}

}  // namespace
