#include "Point3D.h"

#include "geometry_testing.h"

#include <type_traits>
#include <vector>

static_assert(std::is_standard_layout_v<tqPoint3D> && sizeof(tqPoint3D) == 3 * sizeof(double),
              "arrays of points are runs of x, y, z triples");

namespace {

double dot(const tqPoint3D& a, const tqPoint3D& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

bool hasNaN(const tqPoint3D& p) { return std::isnan(p.x) || std::isnan(p.y) || std::isnan(p.z); }

double angleAt(const tqPoint3D& p1, const tqPoint3D& p2, const tqPoint3D& p3) {
  return tqPoint3D::angle(p1.x, p1.y, p1.z, p2.x, p2.y, p2.z, p3.x, p3.y, p3.z);
}

// Rodrigues' formula: an independent way to turn `p` about `axis`.
tqPoint3D rodrigues(const tqPoint3D& p, tqPoint3D axis, double degrees) {
  axis.normalize();
  const double c = std::cos(degrees * M_PI / 180), s = std::sin(degrees * M_PI / 180);
  const tqPoint3D across = axis.crossProduct(p);
  const double along = dot(axis, p) * (1 - c);
  return {p.x * c + across.x * s + axis.x * along, p.y * c + across.y * s + axis.y * along,
          p.z * c + across.z * s + axis.z * along};
}

TEST(Point3DRotation, TurnsCounterClockwiseSeenFromThePositiveEnd) {
  EXPECT_TRUE(near(tqPoint3D(0, 1, 5).rotateZ(90), {-1, 0, 5}));
  EXPECT_TRUE(near(tqPoint3D(5, 0, 1).rotateX(90), {5, -1, 0}));
  EXPECT_TRUE(near(tqPoint3D(1, 5, 0).rotateY(90), {0, 5, -1}));
  RandomPoints random;
  std::vector<tqPoint3D> axes = {{1, 0, 0},  {0, 1, 0},  {0, 0, 1}, {-1, 0, 0},
                                 {0, -1, 0}, {0, 0, -1}, {1, 1, 0}, {0, 3, -3}};
  for (int i = 0; i < 100; ++i) axes.push_back(random.point());
  for (const tqPoint3D& axis : axes) {
    const double degrees = random.coordinate() * 40;
    for (int i = 0; i < 3; ++i) {
      const tqPoint3D p = random.point();
      tqPoint3D turned = p;
      EXPECT_TRUE(near(turned.rotateAboutAxis(axis, degrees), rodrigues(p, axis, degrees)));
      EXPECT_TRUE(near(turned.rotateAboutAxis(axis, -degrees), p));
    }
  }
  tqPoint3D itself(1, 2, 3);
  EXPECT_TRUE(near(itself.rotateAboutAxis(itself, 120), {1, 2, 3}));
}

TEST(Point3DRotation, GivesTheSameBitsForAnAngleAndAxisWhateverCameBetween) {
  const tqPoint3D axis(1, 2, -3);
  const auto allTurns = [&axis] {
    return tqPoint3D(1, 2, 3).rotateX(33).rotateY(44).rotateZ(55).rotateAboutAxis(axis, 66);
  };
  const tqPoint3D first = allTurns();
  EXPECT_TRUE(same(allTurns(), first));
  tqPoint3D(3, 2, 1).rotateX(1).rotateY(2).rotateZ(3).rotateAboutAxis({0, 1, 1}, 4);
  EXPECT_TRUE(same(allTurns(), first));
}

// A compiler that fuses a product and a sum rounds once where these steps round twice.
TEST(Point3DRotation, RoundsEveryProductAndSumByItself) {
  RandomPoints random;
  for (int i = 0; i < 1000; ++i) {
    const double degrees = random.coordinate() * 40;
    volatile double c = std::cos(degrees * 0.017453292519943295);
    volatile double s = std::sin(degrees * 0.017453292519943295);
    const tqPoint3D p = random.point();
    volatile double xc = p.x * c, yc = p.y * c, zc = p.z * c;
    volatile double xs = p.x * s, ys = p.y * s, zs = p.z * s;
    ASSERT_TRUE(same(tqPoint3D(p).rotateX(degrees), {p.x, yc - zs, ys + zc}));
    ASSERT_TRUE(same(tqPoint3D(p).rotateY(degrees), {xc + zs, p.y, zc - xs}));
    ASSERT_TRUE(same(tqPoint3D(p).rotateZ(degrees), {xc - ys, yc + xs, p.z}));
  }
}

TEST(Point3DRotation, StartsWithCosineAndSineOfZeroForMinus999Point99) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto firstTurns = [] {
    const tqPoint3D p(1, 2, 3);
    bool kept = same(tqPoint3D(p).rotateX(-999.99), {1, 0, 0});
    kept = kept && same(tqPoint3D(p).rotateY(-999.99), {0, 2, 0});
    kept = kept && same(tqPoint3D(p).rotateZ(-999.99), {0, 0, 3});
    const tqPoint3D later = tqPoint3D(p).rotateX(0).rotateX(-999.99);
    std::exit(kept && near(later, rodrigues(p, {1, 0, 0}, -999.99)) ? 0 : 1);
  };
  EXPECT_EXIT(firstTurns(), testing::ExitedWithCode(0), "");
}

TEST(Point3DAngle, IsMeasuredAtTheMiddlePoint) {
  const struct {
    const char* label;
    tqPoint3D p1, p3;
    double degrees;
  } cases[] = {{"right", {1, 0, 0}, {0, 1, 0}, 90.0},
               {"straight", {1, 0, 0}, {-1, 0, 0}, 180.0},
               {"cosine above 1 is clamped", {0.1, 0.2, 0.3}, {0.7, 1.4, 2.1}, 0.0},
               {"half", {2, 0, 0}, {0, 3, 3}, 90.0},
               {"sixty", {1, 1, 0}, {0, 1, 1}, 60.0},
               {"short arms are not normalised", {0.01, 0, 0}, {0.01, 0, 0}, 89.994270},
               {"no arm", {0, 0, 0}, {1, 0, 0}, 90.0}};
  for (const auto& c : cases) EXPECT_NEAR(angleAt(c.p1, {}, c.p3), c.degrees, 1e-6) << c.label;
}

TEST(Point3DDihedral, IsPositiveForClockwiseTurnsSeenAlongTheBond) {
  const struct {
    const char* shape;
    tqPoint3D p1, p4;
    double degrees;
  } cases[] = {{"cis", {0, 1, 0}, {1, 1, 0}, 0.0},
               {"clockwise", {0, 1, 0}, {1, 1, 1}, 45.0},
               {"trans", {0, 1, 0}, {1, -1, 0}, 180.0},
               {"counter-clockwise", {0, 1, 0}, {1, 1, -1}, -45.0},
               {"the first three in line", {-1, 0, 0}, {1, 1, 1}, 0.0},
               {"the last three in line", {0, 1, 1}, {2, 0.003, 0}, 0.0},
               {"just off the line", {0, 1, 0}, {2, 0, 0.0032}, 90.0}};
  for (const auto& c : cases)
    EXPECT_NEAR(
        tqPoint3D::dihedral(c.p1.x, c.p1.y, c.p1.z, 0, 0, 0, 1, 0, 0, c.p4.x, c.p4.y, c.p4.z),
        c.degrees, 1e-9)
        << c.shape;
}

TEST(Point3DAlign, BringsPoint2OntoXAndPoint3IntoTheUpperPlane) {
  RandomPoints random;
  for (int i = 0; i < 200; ++i) {
    const tqPoint3D p1 = random.point(), p2 = random.point(), p3 = random.point();
    double rz, ry, rx;
    tqPoint3D::XAxisAlign(p1.x, p1.y, p1.z, p2.x, p2.y, p2.z, p3.x, p3.y, p3.z, rz, ry, rx);
    tqPoint3D u = p2 - p1, w = p3 - p1;
    EXPECT_TRUE(near(u.rotateZ(rz).rotateY(ry).rotateX(rx), {std::sqrt(p2.dist2(p1)), 0, 0}, 1e-6));
    w.rotateZ(rz).rotateY(ry).rotateX(rx);
    EXPECT_GE(w.y, 0.0);
    EXPECT_NEAR(w.z, 0.0, 1e-6);
  }
}

TEST(Point3DDistance, IsTakenToPointsLinesAndPlanes) {
  EXPECT_EQ(tqPoint3D::dist(1, 2, 3, 3, 5, 9), 7.0);
  EXPECT_EQ(tqPoint3D(1, 2, 3).dist2({3, 5, 9}), 49.0);
  EXPECT_EQ(tqPoint3D(7, 3, 4).distToLine({1, 0, 0}, {3, 0, 0}), 5.0);
  EXPECT_TRUE(std::isnan(tqPoint3D(7, 3, 4).distToLine({1, 0, 0}, {1, 0, 0})));
  const struct {
    const char* label;
    tqPoint3D p, p1, p2;
    double distance;
    int side;
  } cases[] = {{"above", {5, 6, 3}, {0, 0, 1}, {0, 0, 3}, 2.0, 1},
               {"below", {5, 6, -3}, {0, 0, 1}, {0, 0, 3}, 4.0, -1},
               {"Kept: in the plane", {5, 6, 1}, {0, 0, 1}, {0, 0, 3}, 0.0, -1},
               {"no normal", {5, 6, 9}, {0, 0, 0}, {0, 0, 0.001}, 0.0, 1}};
  for (const auto& c : cases) {
    int side = 0, sideOfSquare = 0;
    EXPECT_EQ(c.p.distToPlane(c.p1, c.p2, side), c.distance) << c.label;
    EXPECT_EQ(c.p.dist2ToPlane(c.p1, c.p2, sideOfSquare), c.distance * c.distance) << c.label;
    EXPECT_EQ(side, c.side) << c.label;
    EXPECT_EQ(sideOfSquare, c.side) << c.label;
  }
}

TEST(Point3DCrossNormal, IsAUnitVectorAtRightAnglesEvenToParallelVectors) {
  std::vector<std::pair<tqPoint3D, tqPoint3D>> pairs = {
      {{1, 0, 0}, {2, 0, 0}}, {{0, 1, 0}, {0, -4, 0}}, {{1, 2, 3}, {2, 4, 6}},
      {{1, 2, 0}, {3, 6, 0}}, {{1, 0, 2}, {3, 0, 6}},  {{1, 2, 3}, {1, 2, 3}}};
  RandomPoints random;
  for (int i = 0; i < 50; ++i) pairs.emplace_back(random.point(), random.point());
  for (const auto& [a, b] : pairs) {
    const tqPoint3D n = a.crossNormal(b);
    EXPECT_NEAR(dot(n, n), 1.0, 1e-12);
    EXPECT_NEAR(dot(n, a), 0.0, 1e-9);
    EXPECT_NEAR(dot(n, b), 0.0, 1e-9);
  }
  EXPECT_TRUE(same(tqPoint3D(1, 0, 0).crossNormal({0, 2, 0}), {0, 0, 1}));
  EXPECT_TRUE(same(tqPoint3D(1, 0, 0).crossNormal({1, 0, 0}), {0, 0, 1}));
}

TEST(Point3DCrossNormal, IsNaNForEqualVectorsOnYAndForZeroVectors) {
  EXPECT_TRUE(hasNaN(tqPoint3D(0, 2, 0).crossNormal({0, 2, 0})));
  EXPECT_TRUE(hasNaN(tqPoint3D().crossNormal({})) && hasNaN(tqPoint3D().crossNormal({1, 2, 3})));
}

TEST(Point3DArithmetic, WorksCoordinateByCoordinate) {
  tqPoint3D p(1, -2, 3);
  EXPECT_TRUE(same(p * 3, {3, -6, 9}));
  EXPECT_TRUE(same(p / 4, {0.25, -0.5, 0.75}));
  EXPECT_TRUE(same((p += {1, 1, 1}) -= {0, 1, 2}, {2, -2, 2}));
  EXPECT_TRUE(same(tqPoint3D(1, 2, 3).frac({3, 2, -1}, 0.25), {1.5, 2, 2}));
  EXPECT_TRUE(same(tqPoint3D(1, 5, 3).minXYZ({2, 4, 3}), {1, 4, 3}));
  EXPECT_TRUE(same(tqPoint3D(1, 5, 3).maxXYZ({2, 4, 3}), {2, 5, 3}));
  tqPoint3D lo(0, 0, 0), hi(1, 1, 1);
  tqPoint3D(-1, 0.5, 2).minmaxXYZ(lo, hi);
  EXPECT_TRUE(same(lo, {-1, 0, 0}) && same(hi, {1, 1, 2}));
  tqPoint3D unit(2, -3, 6), zero;
  unit.normalize();
  zero.normalize();
  EXPECT_TRUE(near(unit, {2.0 / 7, -3.0 / 7, 6.0 / 7}));
  EXPECT_TRUE(hasNaN(zero));
}

TEST(Point3DArray, IsOneBufferForAllPoints) {
  const double* first = tqPoint3D(1, 2, 3).XYZARR();
  EXPECT_EQ(tqPoint3D(4, 5, 6).XYZARR(), first);
  EXPECT_TRUE(same(first, {4, 5, 6}));
  EXPECT_TRUE(same(static_cast<const double*>(nullptr), {0, 0, 0}));
}

TEST(Point3DSets, HaveADeviationAndACentroid) {
  const tqPoint3D p[] = {{1, 2, 3}, {4, 5, 6}, {4, 2, -3}};
  const tqPoint3D q[] = {{1, 2, 3}, {4, 5, 9}, {8, 2, -3}};
  EXPECT_EQ(tqPoint3D::rms(p, p, 3), 0.0);
  EXPECT_DOUBLE_EQ(tqPoint3D::rms(p, q, 3), std::sqrt(25.0 / 3.0));
  EXPECT_TRUE(same(tqPoint3D::center(p, 3), {3, 3, 2}));
  EXPECT_TRUE(std::isnan(tqPoint3D::rms(p, q, 0)) && std::isnan(tqPoint3D::rms(p, nullptr, 3)));
  EXPECT_TRUE(hasNaN(tqPoint3D::center(p, 0)) && hasNaN(tqPoint3D::center(nullptr, 2)));
  EXPECT_TRUE(std::signbit(tqPoint3D::rms(p, q, -1)));
}

}  // namespace
