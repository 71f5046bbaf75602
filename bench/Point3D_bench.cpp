#include "peers.h"

#include "Point3D.h"

#include <cmath>

#if __has_include(<Eigen/Geometry>)
#include <Eigen/Geometry>
#define TQ_PEER_EIGEN 1
static const bool eigenNoted = noteVersion("Eigen", std::to_string(EIGEN_WORLD_VERSION) + "." +
                                                        std::to_string(EIGEN_MAJOR_VERSION) + "." +
                                                        std::to_string(EIGEN_MINOR_VERSION));
#endif
#if __has_include(<glm/glm.hpp>)
#define GLM_ENABLE_EXPERIMENTAL
#include <glm/glm.hpp>
#include <glm/gtx/rotate_vector.hpp>
#define TQ_PEER_GLM 1
static const bool glmNoted = noteVersion("glm", std::to_string(GLM_VERSION));
#endif
#if __has_include(<openbabel/math/vector3.h>)
#include <openbabel/babelconfig.h>
#include <openbabel/math/matrix3x3.h>
#include <openbabel/math/vector3.h>
#define TQ_PEER_BABEL 1
static const bool babelNoted = noteVersion("OpenBabel", BABEL_VERSION);
#endif

namespace {

constexpr double degreesPerRadian = 57.29577951308232;

// Of each peer, a point and the measures that the library has for it, angles in degrees: the peer's
// own function where it has one, or else what its users write with its vectors.

struct Tq {
  using Point = tqPoint3D;
  using Points = std::vector<Point>;
  static double distance(const Point& p, const Point& q) {
    return Point::dist(p.x, p.y, p.z, q.x, q.y, q.z);
  }
  static double angle(const Point& p, const Point& q, const Point& r) {
    return Point::angle(p.x, p.y, p.z, q.x, q.y, q.z, r.x, r.y, r.z);
  }
  static double dihedral(const Point& p, const Point& q, const Point& r, const Point& s) {
    return Point::dihedral(p.x, p.y, p.z, q.x, q.y, q.z, r.x, r.y, r.z, s.x, s.y, s.z);
  }
  static Point centroid(const Points& p) {
    return Point::center(p.data(), static_cast<int>(p.size()));
  }
  static double rms(const Points& p, const Points& q) {
    return Point::rms(p.data(), q.data(), static_cast<int>(p.size()));
  }
  static void rotate(Point& p, const Point& axis, double degrees) {
    p.rotateAboutAxis(axis, degrees);
  }
  static tqPoint3D plain(const Point& p) { return p; }
};

#ifdef TQ_PEER_EIGEN
struct EigenVector {
  using Point = Eigen::Vector3d;
  using Points = std::vector<Point>;
  static double distance(const Point& p, const Point& q) { return (p - q).norm(); }
  static double angle(const Point& p, const Point& q, const Point& r) {
    const Point a = p - q, b = r - q;
    return std::acos(a.dot(b) / std::sqrt(a.squaredNorm() * b.squaredNorm())) * degreesPerRadian;
  }
  static double dihedral(const Point& p, const Point& q, const Point& r, const Point& s) {
    const Point a = q - p, b = r - q, c = s - r, far = b.cross(c);
    return std::atan2(b.norm() * a.dot(far), a.cross(b).dot(far)) * degreesPerRadian;
  }
  static Point centroid(const Points& p) {
    Point sum = Point::Zero();
    for (const Point& one : p) sum += one;
    return sum / static_cast<double>(p.size());
  }
  static double rms(const Points& p, const Points& q) {
    const double sum = (coordinates(p) - coordinates(q)).squaredNorm();
    return std::sqrt(sum / static_cast<double>(p.size()));
  }
  static void rotate(Point& p, const Point& axis, double degrees) {
    p = Eigen::AngleAxisd(degrees / degreesPerRadian, axis) * p;
  }
  static tqPoint3D plain(const Point& p) { return {p.x(), p.y(), p.z()}; }

private:
  static Eigen::Map<const Eigen::VectorXd> coordinates(const Points& p) {
    return {p[0].data(), static_cast<Eigen::Index>(3 * p.size())};
  }
};
#endif

// Sums over points, for the peers that have points only.
template <class Vector> struct SumsOfPoints {
  using Point = Vector;
  using Points = std::vector<Point>;
  static Point centroid(const Points& p) {
    Point sum(0.0, 0.0, 0.0);
    for (const Point& one : p) sum += one;
    return sum / static_cast<double>(p.size());
  }
};

#ifdef TQ_PEER_GLM
struct Glm : SumsOfPoints<glm::dvec3> {
  static double distance(const Point& p, const Point& q) { return glm::distance(p, q); }
  static double angle(const Point& p, const Point& q, const Point& r) {
    const Point a = p - q, b = r - q;
    return std::acos(glm::dot(a, b) / std::sqrt(glm::dot(a, a) * glm::dot(b, b))) *
           degreesPerRadian;
  }
  static double dihedral(const Point& p, const Point& q, const Point& r, const Point& s) {
    const Point a = q - p, b = r - q, c = s - r, far = glm::cross(b, c);
    return std::atan2(glm::length(b) * glm::dot(a, far), glm::dot(glm::cross(a, b), far)) *
           degreesPerRadian;
  }
  static double rms(const Points& p, const Points& q) {
    double sum = 0.0;
    for (std::size_t i = 0; i < p.size(); ++i) {
      const Point d = p[i] - q[i];
      sum += glm::dot(d, d);
    }
    return std::sqrt(sum / static_cast<double>(p.size()));
  }
  static void rotate(Point& p, const Point& axis, double degrees) {
    p = glm::rotate(p, degrees / degreesPerRadian, axis);
  }
  static tqPoint3D plain(const Point& p) { return {p.x, p.y, p.z}; }
};
#endif

#ifdef TQ_PEER_BABEL
struct Babel : SumsOfPoints<OpenBabel::vector3> {
  static double distance(const Point& p, const Point& q) { return std::sqrt(p.distSq(q)); }
  static double angle(const Point& p, const Point& q, const Point& r) {
    return OpenBabel::vectorAngle(p - q, r - q);
  }
  static double dihedral(const Point& p, const Point& q, const Point& r, const Point& s) {
    return OpenBabel::CalcTorsionAngle(p, q, r, s);
  }
  static double rms(const Points& p, const Points& q) {
    double sum = 0.0;
    for (std::size_t i = 0; i < p.size(); ++i) sum += p[i].distSq(q[i]);
    return std::sqrt(sum / static_cast<double>(p.size()));
  }
  static void rotate(Point& p, const Point& axis, double degrees) {
    OpenBabel::matrix3x3 rotation;
    rotation.RotAboutAxisByAngle(axis, -degrees);  // it turns clockwise
    p *= rotation;
  }
  static tqPoint3D plain(const Point& p) { return {p.x(), p.y(), p.z()}; }
};
#endif

// The answers, by formulas other than those measured and from the coordinates alone.
struct Expected {
  using Point = tqPoint3D;
  using Points = std::vector<Point>;
  static double dot(const Point& a, const Point& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
  static double length(const Point& a) { return std::hypot(a.x, a.y, a.z); }
  static double distance(const Point& p, const Point& q) { return length(p - q); }
  static double angle(const Point& p, const Point& q, const Point& r) {
    const Point a = p - q, b = r - q;
    return std::atan2(length(a.crossProduct(b)), dot(a, b)) * degreesPerRadian;
  }
  // The angle between what the two outer bonds have across the middle one, with its sign.
  static double dihedral(const Point& p, const Point& q, const Point& r, const Point& s) {
    Point axis = r - q;
    axis.normalize();
    const Point a = (p - q) - along(axis, p - q), c = (s - r) - along(axis, s - r);
    return std::atan2(dot(axis, a.crossProduct(c)), dot(a, c)) * degreesPerRadian;
  }
  static Point centroid(const Points& p) {
    long double sum[3] = {};
    for (const Point& one : p) sum[0] += one.x, sum[1] += one.y, sum[2] += one.z;
    for (long double& one : sum) one /= static_cast<long double>(p.size());
    return {static_cast<double>(sum[0]), static_cast<double>(sum[1]), static_cast<double>(sum[2])};
  }
  static double rms(const Points& p, const Points& q) {
    long double sum = 0.0;
    for (std::size_t i = 0; i < p.size(); ++i) sum += dot(p[i] - q[i], p[i] - q[i]);
    return static_cast<double>(std::sqrt(sum / static_cast<long double>(p.size())));
  }
  // Rodrigues' formula; the axis has length 1.
  static void rotate(Point& p, const Point& axis, double degrees) {
    const double c = std::cos(degrees / degreesPerRadian), s = std::sin(degrees / degreesPerRadian);
    const Point foot = along(axis, p), side = axis.crossProduct(p);
    p = foot.frac(p, c) += Point().frac(side, s);
  }
  static Point along(const Point& axis, const Point& v) { return Point().frac(axis, dot(axis, v)); }
  static Point plain(const Point& p) { return p; }
};

// The atoms of a structure, within 50 angstroms of its middle.
template <class Peer> typename Peer::Points atoms(std::int64_t count, unsigned seed) {
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<double> within(-50.0, 50.0);
  typename Peer::Points points;
  for (std::int64_t i = 0; i < count; ++i) {
    const double x = within(random), y = within(random), z = within(random);
    points.emplace_back(x, y, z);
  }
  return points;
}

template <class Peer> struct Atoms {
  typename Peer::Points p, q;
  explicit Atoms(std::int64_t count) : p(atoms<Peer>(count, 1)), q(atoms<Peer>(count, 2)) {}
  std::size_t count() const { return p.size(); }
};

bool close(double a, double b) { return std::fabs(a - b) <= 1e-6; }
bool close(const tqPoint3D& p, const tqPoint3D& q) { return p.dist2(q) <= 1e-12; }

// What is measured at atom `i`.
struct DistanceAt {
  template <class Peer> static double of(const Atoms<Peer>& atoms, std::size_t i) {
    return Peer::distance(atoms.p[i], atoms.q[i]);
  }
};
struct AngleAt {
  template <class Peer> static double of(const Atoms<Peer>& atoms, std::size_t i) {
    return Peer::angle(atoms.p[i], atoms.p[i + 1], atoms.p[i + 2]);
  }
};
struct DihedralAt {
  template <class Peer> static double of(const Atoms<Peer>& atoms, std::size_t i) {
    return Peer::dihedral(atoms.p[i], atoms.p[i + 1], atoms.p[i + 2], atoms.p[i + 3]);
  }
};

template <class Peer, class Measure> void measureAlong(benchmark::State& state) {
  const Atoms<Peer> atoms(state.range(0) + 3);
  const Atoms<Expected> expected(state.range(0) + 3);
  const auto count = static_cast<std::size_t>(state.range(0));
  for (std::size_t i = 0; i < count; ++i)
    if (!close(Measure::of(atoms, i), Measure::of(expected, i)))
      return state.SkipWithError("wrong answer");
  for (auto _ : state)
    for (std::size_t i = 0; i < count; ++i) benchmark::DoNotOptimize(Measure::of(atoms, i));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Bond lengths, bond angles and torsions, one after the other along a chain.
template <class Peer> void Distance(benchmark::State& state) {
  measureAlong<Peer, DistanceAt>(state);
}
template <class Peer> void Angle(benchmark::State& state) { measureAlong<Peer, AngleAt>(state); }
template <class Peer> void Dihedral(benchmark::State& state) {
  measureAlong<Peer, DihedralAt>(state);
}

// The middle of a residue's or of a whole structure's atoms.
template <class Peer> void Centroid(benchmark::State& state) {
  const Atoms<Peer> atoms(state.range(0));
  if (!close(Peer::plain(Peer::centroid(atoms.p)),
             Expected::centroid(Atoms<Expected>(state.range(0)).p)))
    return state.SkipWithError("wrong answer");
  for (auto _ : state) {
    benchmark::DoNotOptimize(atoms.p.data());
    benchmark::DoNotOptimize(Peer::centroid(atoms.p));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// How far one model of a structure is from another.
template <class Peer> void Rms(benchmark::State& state) {
  const Atoms<Peer> atoms(state.range(0));
  const Atoms<Expected> expected(state.range(0));
  if (!close(Peer::rms(atoms.p, atoms.q), Expected::rms(expected.p, expected.q)))
    return state.SkipWithError("wrong answer");
  for (auto _ : state) {
    benchmark::DoNotOptimize(Peer::rms(atoms.p, atoms.q));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// A side chain turns about a bond, a call per atom: no call knows the next.
template <class Peer> void RotateAboutAxis(benchmark::State& state) {
  Atoms<Peer> atoms(state.range(0));
  Atoms<Expected> expected(state.range(0));
  tqPoint3D plainAxis(1.0, -2.0, 3.0);
  plainAxis.normalize();
  typename Peer::Point axis(plainAxis.x, plainAxis.y, plainAxis.z);
  double degrees = 12.5;
  const auto turnAll = [&] {
    for (auto& p : atoms.p) {
      benchmark::DoNotOptimize(axis);
      benchmark::DoNotOptimize(degrees);
      Peer::rotate(p, axis, degrees);
    }
    benchmark::ClobberMemory();
  };
  turnAll();
  for (std::size_t i = 0; i < atoms.count(); ++i) {
    Expected::rotate(expected.p[i], plainAxis, degrees);
    if (!close(Peer::plain(atoms.p[i]), expected.p[i])) return state.SkipWithError("wrong answer");
  }
  for (auto _ : state) turnAll();
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

#define TQ_POINT_JOBS(Peer, name)                                                                  \
  TQ_BENCH(Distance, Peer, name)->Arg(1000);                                                       \
  TQ_BENCH(Angle, Peer, name)->Arg(1000);                                                          \
  TQ_BENCH(Dihedral, Peer, name)->Arg(1000);                                                       \
  TQ_BENCH(Centroid, Peer, name)->Arg(1000)->Arg(1000000);                                         \
  TQ_BENCH(Rms, Peer, name)->Arg(1000)->Arg(1000000);                                              \
  TQ_BENCH(RotateAboutAxis, Peer, name)->Arg(1000)
TQ_POINT_JOBS(Tq, "tq");
#ifdef TQ_PEER_EIGEN
TQ_POINT_JOBS(EigenVector, "Eigen");
#endif
#ifdef TQ_PEER_GLM
TQ_POINT_JOBS(Glm, "glm");
#endif
#ifdef TQ_PEER_BABEL
TQ_POINT_JOBS(Babel, "OpenBabel");
#endif

}  // namespace

BENCHMARK_MAIN();
