#include "Point2D.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>
#include <type_traits>

static_assert(std::is_standard_layout_v<tqPoint2D> && sizeof(tqPoint2D) == 2 * sizeof(double));

namespace {

TEST(Point2DAngle, IsBelow180CounterClockwiseAndAddsAHalfTurnClockwise) {
  const std::tuple<const char*, double, double, double, double> cases[] = {
      {"counter-clockwise", 0, 1, 90, 90},
      {"in line", 3, 0, 0, 0},
      {"straight", -2, 0, 180, 180},
      {"Kept: 45 clockwise", 1, -1, 45, 225},
      {"Kept: 135 clockwise", -1, -1, 135, 315},
      {"Kept: a short arm", 1e-4, 0, 89.994270, 89.994270}};
  for (const auto& [label, x, y, angle, angle360] : cases) {
    EXPECT_NEAR(tqPoint2D::angle(1, 0, 0, 0, x, y), angle, 1e-6) << label;
    EXPECT_NEAR(tqPoint2D::angle360(1, 0, 0, 0, x, y), angle360, 1e-6) << label;
  }
}

TEST(Point2DRotation, AgreesWithTheAngleTheDistanceAndTheSide) {
  std::mt19937_64 engine(1);
  std::uniform_real_distribution<double> spread(1.0, 179.0);
  for (int i = 0; i < 100; ++i) {
    const double degrees = spread(engine);
    const tqPoint2D p(spread(engine), -spread(engine));
    tqPoint2D q = p, back = p;
    q.rotate(degrees);
    EXPECT_NEAR(tqPoint2D::angle360(p.x, p.y, 0, 0, q.x, q.y), degrees, 1e-6);
    EXPECT_TRUE(tqPoint2D().isClockwise(q, p) && !tqPoint2D().isClockwise(p, q));
    EXPECT_NEAR(q.distToLine({}, p), p.dist({}) * std::sin(degrees * M_PI / 180), 1e-9);
    EXPECT_NEAR(back.rotate(degrees).rotate(-degrees).dist(p), 0.0, 1e-9);
  }
  EXPECT_FALSE(tqPoint2D(1, 1).isClockwise({2, 2}, {3, 3}));  // in line
}

TEST(Point2DPolar, KeptMeasuresFromTheYAxisAndBackFromTheXAxis) {
  for (const double sign : {1.0, -1.0}) {
    EXPECT_EQ(tqPoint2D(3 * sign, 4 * sign).cartesianToPolar().radius(), 5.0);
    EXPECT_DOUBLE_EQ(tqPoint2D(3 * sign, 4 * sign).cartesianToPolar().angle(), std::atan(0.75));
  }
  EXPECT_EQ(tqPoint2D(1, 0).cartesianToPolar().angle(), M_PI / 2);
  EXPECT_LT(tqPolarCoord2D(2, M_PI / 2).polarToCartesian().dist({0, 2}), 1e-12);
}

TEST(Point2DArray, KeptIsOneBufferForAllPoints) {
  const double* first = tqPoint2D(1, 2).XYARR();
  tqPoint2D p(7, 8);
  EXPECT_EQ(p.XYARR(), first);
  p.setXYARR(nullptr);
  EXPECT_EQ((p -= {3, 4}).dist({0, 0}), 5.0);
}

}  // namespace
