#include "peers.h"

#include "Matrix.h"
#include "Matrix3x3.h"
#include "Matrix4x4.h"

#include <cmath>
#include <memory>

#if __has_include(<Eigen/Dense>)
#include <Eigen/Dense>
#define TQ_PEER_EIGEN 1
static const bool eigenNoted = noteVersion("Eigen", std::to_string(EIGEN_WORLD_VERSION) + "." +
                                                        std::to_string(EIGEN_MAJOR_VERSION) + "." +
                                                        std::to_string(EIGEN_MINOR_VERSION));
#endif
#if __has_include(<glm/glm.hpp>)
#include <glm/glm.hpp>
#define TQ_PEER_GLM 1
static const bool glmNoted = noteVersion("glm", std::to_string(GLM_VERSION));
#endif
#ifdef TQ_PEER_OPENBLAS
#include <cblas.h>
static const bool blasNoted = noteVersion("OpenBLAS", openblas_get_config());
// All peers have one thread.
static const bool blasAlone = (openblas_set_num_threads(1), true);
#endif

namespace {

// Of each peer, a matrix of one size or of any, with its product and inverse. `make` takes the
// elements row by row; `at` is for checking alone.

struct Tq {
  using Matrix = MMatrix;
  static Matrix make(int n, const double* elements) { return {n, n, elements}; }
  static Matrix product(const Matrix& a, const Matrix& b) { return a * b; }
  static Matrix inverse(const Matrix& a) { return ~a; }
  static double at(const Matrix& m, int i, int j) { return m(i, j); }
};
struct Tq3x3 : Tq {
  using Matrix = tqMatrix3x3;
  static Matrix make(int, const double* e) {
    return {e[0], e[1], e[2], e[3], e[4], e[5], e[6], e[7], e[8]};
  }
  static Matrix product(const Matrix& a, const Matrix& b) { return a * b; }
  static Matrix inverse(const Matrix& a) { return ~a; }
};
struct Tq4x4 : Tq {
  using Matrix = tqMatrix4x4;
  static Matrix make(int, const double* elements) {
    Matrix m;
    for (int i = 0; i < 16; ++i) m(i / 4, i % 4) = elements[i];
    return m;
  }
  static Matrix product(const Matrix& a, const Matrix& b) { return a * b; }
  static Matrix inverse(const Matrix& a) { return ~a; }
};

#ifdef TQ_PEER_EIGEN
template <int size> struct EigenMatrix {
  using Matrix = Eigen::Matrix<double, size, size>;
  static Matrix make(int n, const double* elements) {
    using RowByRow = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
    return Eigen::Map<const RowByRow>(elements, n, n);
  }
  static Matrix product(const Matrix& a, const Matrix& b) { return a * b; }
  static Matrix inverse(const Matrix& a) { return a.inverse(); }
  static double at(const Matrix& m, int i, int j) { return m(i, j); }
};
// A rigid motion that is known to be one.
struct EigenIsometry {
  using Matrix = Eigen::Isometry3d;
  static Matrix make(int, const double* elements) {
    return Matrix(EigenMatrix<4>::make(4, elements).transpose());
  }
  static Matrix inverse(const Matrix& a) { return a.inverse(); }
  static double at(const Matrix& m, int i, int j) { return m(j, i); }
};
#endif

#ifdef TQ_PEER_GLM
template <int size> struct Glm {
  using Matrix = glm::mat<size, size, double>;
  static Matrix make(int, const double* elements) {
    Matrix m(0.0);
    for (int i = 0; i < size; ++i)
      for (int j = 0; j < size; ++j) m[j][i] = elements[size * i + j];
    return m;
  }
  static Matrix product(const Matrix& a, const Matrix& b) { return a * b; }
  static Matrix inverse(const Matrix& a) { return glm::inverse(a); }
  static double at(const Matrix& m, int i, int j) { return m[j][i]; }
};
#endif

#ifdef TQ_PEER_OPENBLAS
struct Blas {
  struct Matrix {
    explicit Matrix(int size)
        : n(size), elements(new double[static_cast<std::size_t>(size * size)]) {}
    int n;
    std::unique_ptr<double[]> elements;
  };
  static Matrix make(int n, const double* elements) {
    Matrix m(n);
    std::copy_n(elements, n * n, m.elements.get());
    return m;
  }
  static Matrix product(const Matrix& a, const Matrix& b) {
    Matrix c(a.n);
    cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasNoTrans, a.n, a.n, a.n, 1.0, a.elements.get(),
                a.n, b.elements.get(), a.n, 0.0, c.elements.get(), a.n);
    return c;
  }
  static double at(const Matrix& m, int i, int j) {
    return m.elements[static_cast<std::size_t>(m.n * i + j)];
  }
};
#endif

// Seeded matrices, of random elements or of rigid motions for points as rows.
using Elements = std::vector<double>;

Elements anyElements(int n, unsigned seed) {
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<double> within(-1.0, 1.0);
  Elements elements(static_cast<std::size_t>(n * n));
  for (double& one : elements) one = within(random);
  return elements;
}

Elements rigidElements(int, unsigned seed) {
  const Elements random = anyElements(3, seed);
  tqPoint3D axis(random.data());
  axis.normalize();
  tqMatrix3x3 rotation;
  rotation.rotateAboutAxis(axis, 180.0 * random[3]);
  const tqMatrix4x4 m(rotation, random.data() + 4);
  return {&m(0, 0), &m(0, 0) + 16};
}

template <class Peer> Elements elementsOf(const typename Peer::Matrix& m, int n) {
  Elements elements;
  for (int i = 0; i < n * n; ++i) elements.push_back(Peer::at(m, i / n, i % n));
  return elements;
}

Elements plainProduct(int n, const Elements& a, const Elements& b) {
  const auto at = [n](int i, int j) { return static_cast<std::size_t>(n * i + j); };
  Elements c(a.size());
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j)
      for (int k = 0; k < n; ++k) c[at(i, j)] += a[at(i, k)] * b[at(k, j)];
  return c;
}

bool close(const Elements& a, const Elements& b) {
  return std::equal(a.begin(), a.end(), b.begin(),
                    [](double x, double y) { return std::fabs(x - y) <= 1e-8; });
}

// `count` matrices, to be taken in turn.
template <class Peer> struct Matrices {
  std::vector<Elements> plain;
  std::vector<typename Peer::Matrix> made;
  Matrices(Elements (*elements)(int, unsigned), int n, unsigned count, unsigned seed) {
    for (unsigned i = 0; i < count; ++i) {
      plain.push_back(elements(n, seed + i));
      made.push_back(Peer::make(n, plain.back().data()));
    }
  }
};

constexpr unsigned fixedCount =
    32;  // of the fixed sizes: enough to be unlike, and within the cache

template <class Peer> void multiply(benchmark::State& state, int n, unsigned count) {
  const Matrices<Peer> a(anyElements, n, count, 1), b(anyElements, n, count, 1000);
  for (unsigned i = 0; i < count; ++i)
    if (!close(elementsOf<Peer>(Peer::product(a.made[i], b.made[i]), n),
               plainProduct(n, a.plain[i], b.plain[i])))
      return state.SkipWithError("wrong product");
  for (auto _ : state)
    for (unsigned i = 0; i < count; ++i)
      benchmark::DoNotOptimize(Peer::product(a.made[i], b.made[i]));
  state.SetItemsProcessed(state.iterations() * std::int64_t{count});
}

template <class Peer>
void invert(benchmark::State& state, Elements (*elements)(int, unsigned), int n, unsigned count) {
  const Matrices<Peer> a(elements, n, count, 1);
  Elements identity(a.plain[0].size());
  for (std::size_t i = 0; i < identity.size(); i += static_cast<std::size_t>(n) + 1)
    identity[i] = 1.0;
  for (unsigned i = 0; i < count; ++i)
    if (!close(plainProduct(n, a.plain[i], elementsOf<Peer>(Peer::inverse(a.made[i]), n)),
               identity))
      return state.SkipWithError("wrong inverse");
  for (auto _ : state)
    for (unsigned i = 0; i < count; ++i) benchmark::DoNotOptimize(Peer::inverse(a.made[i]));
  state.SetItemsProcessed(state.iterations() * std::int64_t{count});
}

// Turns and motions are composed and undone, one small matrix after the other.
template <class Peer> void Product3x3(benchmark::State& state) {
  multiply<Peer>(state, 3, fixedCount);
}
template <class Peer> void Product4x4(benchmark::State& state) {
  multiply<Peer>(state, 4, fixedCount);
}
template <class Peer> void Inverse3x3(benchmark::State& state) {
  invert<Peer>(state, anyElements, 3, fixedCount);
}
template <class Peer> void InverseRigid4x4(benchmark::State& state) {
  invert<Peer>(state, rigidElements, 4, fixedCount);
}

// Fits: normal equations are set up and solved.
template <class Peer> void MatrixProduct(benchmark::State& state) {
  multiply<Peer>(state, static_cast<int>(state.range(0)), 1);
}
template <class Peer> void MatrixInverse(benchmark::State& state) {
  invert<Peer>(state, anyElements, static_cast<int>(state.range(0)), 1);
}

#define TQ_SIZES Arg(16)->Arg(64)->Arg(256)
TQ_BENCH(Product3x3, Tq3x3, "tq");
TQ_BENCH(Product4x4, Tq4x4, "tq");
TQ_BENCH(Inverse3x3, Tq3x3, "tq");
TQ_BENCH(InverseRigid4x4, Tq4x4, "tq");
TQ_BENCH(MatrixProduct, Tq, "tq")->TQ_SIZES;
TQ_BENCH(MatrixInverse, Tq, "tq")->TQ_SIZES;
#ifdef TQ_PEER_EIGEN
TQ_BENCH(Product3x3, EigenMatrix<3>, "Eigen");
TQ_BENCH(Product4x4, EigenMatrix<4>, "Eigen");
TQ_BENCH(Inverse3x3, EigenMatrix<3>, "Eigen");
TQ_BENCH(InverseRigid4x4, EigenMatrix<4>, "Eigen");
TQ_BENCH(InverseRigid4x4, EigenIsometry, "Eigen Isometry3d");
TQ_BENCH(MatrixProduct, EigenMatrix<Eigen::Dynamic>, "Eigen")->TQ_SIZES;
TQ_BENCH(MatrixInverse, EigenMatrix<Eigen::Dynamic>, "Eigen")->TQ_SIZES;
#endif
#ifdef TQ_PEER_GLM
TQ_BENCH(Product3x3, Glm<3>, "glm");
TQ_BENCH(Product4x4, Glm<4>, "glm");
TQ_BENCH(Inverse3x3, Glm<3>, "glm");
TQ_BENCH(InverseRigid4x4, Glm<4>, "glm");
#endif
#ifdef TQ_PEER_OPENBLAS
TQ_BENCH(MatrixProduct, Blas, "OpenBLAS")->TQ_SIZES;
#endif

}  // namespace

BENCHMARK_MAIN();
