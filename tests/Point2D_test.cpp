#include "Point2D.h"

#include <gtest/gtest.h>

#include <random>
#include <type_traits>

static_assert(std::is_standard_layout_v<tqPoint2D> && sizeof(tqPoint2D) == 2 * sizeof(double),
              "arrays of points are runs of x, y pairs");

namespace {

TEST(Point2DAngle, IsBelow180CounterClockwiseAndAddsAHalfTurnClockwise) {
  const struct {
    const char* label;
    double x, y, angle, angle360;
  } cases[] = {{"counter-clockwise", 0, 1, 90, 90},
               {"in line", 3, 0, 0, 0},
               {"straight", -2, 0, 180, 180},
               {"Kept: a quarter clockwise", 0, -1, 90, 270},
               {"Kept: 45 clockwise", 1, -1, 45, 225},
               {"Kept: 135 clockwise", -1, -1, 135, 315},
               {"Kept: a short arm", 1e-4, 0, 89.994270, 89.994270}};
  for (const auto& c : cases) {
    EXPECT_NEAR(tqPoint2D::angle(1, 0, 0, 0, c.x, c.y), c.angle, 1e-6) << c.label;
    EXPECT_NEAR(tqPoint2D::angle360(1, 0, 0, 0, c.x, c.y), c.angle360, 1e-6) << c.label;
  }
}

TEST(Point2DRotation, AgreesWithTheAngleTheDistanceAndTheSide) {
  std::mt19937_64 engine(1);
  std::uniform_real_distribution<double> spread(1.0, 179.0);
  for (int i = 0; i < 100; ++i) {
    const double degrees = spread(engine);
    const tqPoint2D p(spread(engine), -spread(engine));
    tqPoint2D q = p, back = p;
    EXPECT_EQ(&q.rotate(degrees), &q);
    EXPECT_NEAR(tqPoint2D::angle(p.x, p.y, 0, 0, q.x, q.y), degrees, 1e-6);
    EXPECT_NEAR(tqPoint2D::angle360(p.x, p.y, 0, 0, q.x, q.y), degrees, 1e-6);
    EXPECT_FALSE(tqPoint2D().isClockwise(p, q));
    EXPECT_TRUE(tqPoint2D().isClockwise(q, p));
    const double height = p.dist({0, 0}) * std::sin(degrees * M_PI / 180);
    EXPECT_NEAR(q.distToLine({0, 0}, p), height, 1e-9);
    EXPECT_NEAR(back.rotate(degrees).rotate(-degrees).dist(p), 0.0, 1e-9);
  }
}

TEST(Point2DLine, HasNoSideOnItAndNoDistanceWithoutLength) {
  EXPECT_FALSE(tqPoint2D(1, 1).isClockwise({2, 2}, {3, 3}));
  EXPECT_EQ(tqPoint2D(0, 1).distToLine({0, 0}, {2, 0}), 1.0);
  EXPECT_TRUE(std::isnan(tqPoint2D(0, 1).distToLine({2, 0}, {2, 0})));
}

TEST(Point2DPolar, MeasuresFromTheYAxisAndBackFromTheXAxis) {
  const struct {
    double x, y, radius, angle;
  } cases[] = {
      {0, 1, 1, 0}, {1, 0, 1, M_PI / 2}, {3, 4, 5, std::atan(0.75)}, {-3, -4, 5, std::atan(0.75)}};
  for (const auto& c : cases) {
    const tqPolarCoord2D polar = tqPoint2D(c.x, c.y).cartesianToPolar();
    EXPECT_EQ(polar.radius(), c.radius);
    EXPECT_DOUBLE_EQ(polar.angle(), c.angle);
  }
  EXPECT_LT(tqPolarCoord2D(2, M_PI / 2).polarToCartesian().dist({0, 2}), 1e-12);
}

TEST(Point2DArray, IsOneBufferForAllPoints) {
  const double* first = tqPoint2D(1, 2).XYARR();
  tqPoint2D p(7, 8);
  EXPECT_EQ(p.XYARR(), first);
  p.setXYARR(nullptr);
  EXPECT_EQ(p.dist({3, 4}), 5.0);
  p.setXYARR(first);
  EXPECT_EQ((p -= {7, 8}).dist({0, 0}), 0.0);
}

}  // namespace
