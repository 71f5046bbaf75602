#include "Point3D.h"

#include "geometry_testing.h"

#include <tuple>
#include <type_traits>
#include <vector>

static_assert(std::is_standard_layout_v<tqPoint3D> && sizeof(tqPoint3D) == 3 * sizeof(double));

namespace {

double dot(const tqPoint3D& a, const tqPoint3D& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

bool hasNaN(const tqPoint3D& p) { return std::isnan(p.x) || std::isnan(p.y) || std::isnan(p.z); }

// Rodrigues' formula: an independent way to turn `p` about `axis`.
tqPoint3D rodrigues(const tqPoint3D& p, tqPoint3D axis, double degrees) {
  axis.normalize();
  const double c = std::cos(degrees * M_PI / 180), s = std::sin(degrees * M_PI / 180);
  const tqPoint3D across = axis.crossProduct(p), foot = tqPoint3D().frac(axis, dot(axis, p));
  return tqPoint3D().frac(across, s) += foot.frac(p, c);
}

TEST(Point3DRotation, TurnsCounterClockwiseSeenFromThePositiveEnd) {
  EXPECT_TRUE(near(tqPoint3D(0, 1, 5).rotateX(90).rotateY(90).rotateZ(90), {5, 1, 0}));
  RandomPoints random;
  std::vector<tqPoint3D> axes = {{1, 0, 0},  {0, 1, 0},  {0, 0, 1}, {-1, 0, 0},
                                 {0, -1, 0}, {0, 0, -1}, {1, 1, 0}, {0, 3, -3}};
  for (int i = 0; i < 100; ++i) axes.push_back(random.point());
  for (const tqPoint3D& axis : axes) {
    const double degrees = random.coordinate() * 40;
    const tqPoint3D p = random.point();
    tqPoint3D turned = p, itself = axis;
    EXPECT_TRUE(near(turned.rotateAboutAxis(axis, degrees), rodrigues(p, axis, degrees)));
    EXPECT_TRUE(near(turned.rotateAboutAxis(axis, -degrees), p));
    EXPECT_TRUE(near(itself.rotateAboutAxis(itself, degrees), axis));
  }
}

TEST(Point3DRotation, GivesTheSameBitsForAnAngleAndAxisWhateverCameBetween) {
  const auto turns = [](const tqPoint3D& axis, double a) {
    return tqPoint3D(1, 2, 3).rotateX(a).rotateY(33).rotateZ(a).rotateAboutAxis(axis, 66);
  };
  const tqPoint3D first = turns({1, 2, -3}, 11);
  EXPECT_TRUE(same(turns({1, 2, -3}, 11), first));
  for (const tqPoint3D& other : {tqPoint3D(0, 2, -3), tqPoint3D(1, 0, -3), tqPoint3D(1, 2, 0)}) {
    EXPECT_FALSE(same(turns(other, 11), first) || same(turns(other, 12), turns(other, 11)));
    EXPECT_TRUE(same(turns({1, 2, -3}, 11), first));
  }
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

TEST(Point3DRotation, KeptStartsWithCosineAndSineOf0ForMinus999Point99) {
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
  const std::tuple<const char*, tqPoint3D, tqPoint3D, double> cases[] = {
      {"cosine above 1 is clamped", {.1, .1, .1}, {3 * .1, 3 * .1, 3 * .1}, 0.0},
      {"cosine below -1 is clamped", {.1, .1, .1}, {-3 * .1, -3 * .1, -3 * .1}, 180.0},
      {"sixty", {1, 1, 0}, {0, 1, 1}, 60.0},
      {"Kept: short arms are not normalised", {0.01, 0, 0}, {0.01, 0, 0}, 89.994270},
      {"no arm", {0, 0, 0}, {1, 0, 0}, 90.0}};
  for (const auto& [label, p, q, degrees] : cases)
    EXPECT_NEAR(tqPoint3D::angle(p.x, p.y, p.z, 0, 0, 0, q.x, q.y, q.z), degrees, 1e-6) << label;
}

TEST(Point3DDihedral, IsPositiveForClockwiseTurnsSeenAlongTheBond) {
  const std::tuple<const char*, tqPoint3D, tqPoint3D, double> cases[] = {
      {"cis", {0, 1, 0}, {1, 1, 0}, 0.0},
      {"clockwise", {0, 1, 0}, {1, 1, 1}, 45.0},
      {"trans", {0, 1, 0}, {1, -1, 0}, 180.0},
      {"counter-clockwise", {0, 1, 0}, {1, 1, -1}, -45.0},
      {"the first three in line", {-1, 0, 0}, {1, 1, 1}, 0.0},
      {"the last three in line", {0, 1, 1}, {2, 0.003, 0}, 0.0},
      {"just off the line", {0, 1, 0}, {2, 0, 0.0032}, 90.0}};
  for (const auto& [label, p, q, degrees] : cases)
    EXPECT_NEAR(tqPoint3D::dihedral(p.x, p.y, p.z, 0, 0, 0, 1, 0, 0, q.x, q.y, q.z), degrees, 1e-9)
        << label;
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
    EXPECT_TRUE(near(w, {w.x, std::fabs(w.y), 0}, 1e-6));
  }
}

TEST(Point3DDistance, IsTakenToLinesAndPlanes) {
  EXPECT_EQ(tqPoint3D(7, 3, 4).distToLine({1, 0, 0}, {3, 0, 0}), 5.0);
  EXPECT_TRUE(std::isnan(tqPoint3D(7, 3, 4).distToLine({1, 0, 0}, {1, 0, 0})));
  const std::tuple<const char*, double, double, double, int> cases[] = {
      {"above", 3, 3, 2.0, 1},
      {"below", -3, 3, 4.0, -1},
      {"Kept: in the plane", 1, 3, 0.0, -1},
      {"no normal", 9, 1.0005, 0.0, 1}};
  for (const auto& [label, z, z2, distance, side] : cases) {
    int side1 = 0, side2 = 0;
    EXPECT_EQ(tqPoint3D(5, 6, z).distToPlane({0, 0, 1}, {0, 0, z2}, side1), distance) << label;
    EXPECT_EQ(tqPoint3D(5, 6, z).dist2ToPlane({0, 0, 1}, {0, 0, z2}, side2), distance * distance);
    EXPECT_TRUE(side1 == side && side2 == side) << label;
  }
}

TEST(Point3DCrossNormal, IsAUnitVectorAtRightAnglesEvenToParallelVectorsOrNaN) {
  std::vector<std::pair<tqPoint3D, tqPoint3D>> pairs = {
      {{1, 0, 0}, {2, 0, 0}}, {{0, 1, 0}, {0, -4, 0}}, {{1, 2, 3}, {2, 4, 6}},
      {{1, 2, 0}, {3, 6, 0}}, {{1, 0, 2}, {3, 0, 6}},  {{1, 2, 3}, {1, 2, 3}}};
  RandomPoints random;
  for (int i = 0; i < 50; ++i) pairs.emplace_back(random.point(), random.point());
  for (const auto& [a, b] : pairs) {
    const tqPoint3D n = a.crossNormal(b);
    EXPECT_TRUE(near({dot(n, n), dot(n, a), dot(n, b)}, {1, 0, 0}));
  }
  EXPECT_TRUE(same(tqPoint3D(1, 0, 0).crossNormal({1, 0, 0}), {0, 0, 1}));
  EXPECT_TRUE(same(tqPoint3D(1, 0, 2).crossNormal({3, 0, 6}), {0, -1, 0}));
  // Kept: NaN where no perpendicular can be made up.
  EXPECT_TRUE(hasNaN(tqPoint3D(0, 2, 0).crossNormal({0, 2, 0})));
  EXPECT_TRUE(hasNaN(tqPoint3D().crossNormal({})) && hasNaN(tqPoint3D().crossNormal({1, 2, 3})));
}

TEST(Point3DArithmetic, WorksCoordinateByCoordinate) {
  EXPECT_TRUE(same(tqPoint3D(1, -2, 3) * 3, {3, -6, 9}));
  EXPECT_TRUE(same(tqPoint3D(1, -2, 3) / 4, {0.25, -0.5, 0.75}));
  EXPECT_TRUE(same((tqPoint3D(1, -2, 3) += {1, 1, 1}) -= {0, 1, 2}, {2, -2, 2}));
  EXPECT_TRUE(same(tqPoint3D(1, 2, 3).frac({3, 2, -1}, 0.25), {1.5, 2, 2}));
  EXPECT_TRUE(same(tqPoint3D(1, 5, 3).minXYZ({2, 4, 3}), {1, 4, 3}));
  EXPECT_TRUE(same(tqPoint3D(1, 5, 3).maxXYZ({2, 4, 3}), {2, 5, 3}));
  tqPoint3D lo(0, 0, 0), hi(1, 1, 1);
  tqPoint3D(-1, 0.5, 2).minmaxXYZ(lo, hi);
  EXPECT_TRUE(same(lo, {-1, 0, 0}) && same(hi, {1, 1, 2}));
}

TEST(Point3DArray, KeptIsOneBufferForAllPoints) {
  const double* first = tqPoint3D(1, 2, 3).XYZARR();
  EXPECT_TRUE(tqPoint3D(4, 5, 6).XYZARR() == first && same(first, {4, 5, 6}));
  EXPECT_TRUE(same(static_cast<const double*>(nullptr), {0, 0, 0}));
}

TEST(Point3DSets, HaveADeviationAndACentroidUnlessEmpty) {
  const tqPoint3D p[] = {{1, 2, 3}, {4, 5, 6}, {4, 2, -3}},
                  q[] = {{1, 2, 3}, {4, 5, 9}, {8, 2, -3}};
  EXPECT_DOUBLE_EQ(tqPoint3D::rms(p, q, 3), std::sqrt(25.0 / 3.0));
  EXPECT_TRUE(same(tqPoint3D::center(p, 3), {3, 3, 2}));
  EXPECT_TRUE(std::isnan(tqPoint3D::rms(p, q, 0)) && std::isnan(tqPoint3D::rms(p, nullptr, 3)));
  EXPECT_TRUE(hasNaN(tqPoint3D::center(p, 0)) && hasNaN(tqPoint3D::center(nullptr, 2)));
}

}  // namespace
