#include "Matrix.h"

#include "Warn.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <new>

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

// The kernel of products, which the reduction shares. Wherever it adds up products, each is rounded
// by itself, and those of one element are added in the order of the terms: vectors run along the
// columns, so an element never leaves its place in them.

using TwoDoubles = double __attribute__((vector_size(16)));
using FourDoubles = double __attribute__((vector_size(32)));
#define TQ_ALWAYS_INLINE inline __attribute__((always_inline))  // or it is not compiled for AVX2

/// The elements of a matrix from (i, j) on, to the right and down.
struct Block {
  Block(const MMatrix& m, int i, int j) : first(&m.at(i, j)), stride(m.nCol()) {}
  Block(double* element, std::ptrdiff_t rowToRow) : first(element), stride(rowToRow) {}
  double* row(std::ptrdiff_t i) const { return first + i * stride; }
  Block from(std::ptrdiff_t i, std::ptrdiff_t j) const { return {row(i) + j, stride}; }

  double* first;
  std::ptrdiff_t stride;
};

// By way of a vector of its own, or GCC 12 keeps the array that `to` or `from` is part of in
// memory.
template <class Vector> TQ_ALWAYS_INLINE void load(Vector& to, const double* from) {
  Vector vector;
  std::memcpy(&vector, from, sizeof vector);
  to = vector;
}
template <class Vector> TQ_ALWAYS_INLINE void store(double* to, const Vector& from) {
  const Vector vector = from;
  std::memcpy(to, &vector, sizeof vector);
}

constexpr int tileRows = 4;  // with two vectors of columns: 8 sums, which keep both adders busy

/// Adds to `tileRows` rows of sums the products of as many rows of factors with the rows of `b`,
/// which has `vectors` vectors of columns and no gaps.
template <class Vector, int vectors>
TQ_ALWAYS_INLINE void addToTile(double* const* sumRows, const double* const* factorRows,
                                const double* b, int terms) {
  constexpr int size = sizeof(Vector) / sizeof(double);
  Vector sums[tileRows][vectors];
  for (int r = 0; r < tileRows; ++r)
    for (int v = 0; v < vectors; ++v) load(sums[r][v], sumRows[r] + v * size);
  for (int k = 0; k < terms; ++k, b += vectors * size) {
    Vector row[vectors];
    for (int v = 0; v < vectors; ++v) load(row[v], b + v * size);
    for (int r = 0; r < tileRows; ++r)
      for (int v = 0; v < vectors; ++v) sums[r][v] += factorRows[r][k] * row[v];
  }
  for (int r = 0; r < tileRows; ++r)
    for (int v = 0; v < vectors; ++v) store(sumRows[r] + v * size, sums[r][v]);
}

constexpr int termsAtOnce = 256;  // 16 KiB of `b` beside a few rows of `a` in the first-level cache

/// Adds `a` times `b` to `c`, in `vectors` vectors of columns.
template <class Vector, int vectors>
TQ_ALWAYS_INLINE void addToColumns(const Block& c, const Block& a, const Block& b, int rows,
                                   int terms) {
  constexpr int width = vectors * int{sizeof(Vector) / sizeof(double)};
  double packed[termsAtOnce * width];  // rows a power of two apart would push each other out
  for (int k = 0; k < terms; ++k) std::copy_n(b.row(k), width, packed + k * width);
  for (int i = 0; i < rows; i += tileRows) {
    double* sumRows[tileRows];
    const double* factorRows[tileRows];
    for (int r = 0; r < tileRows; ++r) {
      // Below the last row the last is computed again, from the same sums to the same result.
      sumRows[r] = c.row(std::min(i + r, rows - 1));
      factorRows[r] = a.row(std::min(i + r, rows - 1));
    }
    addToTile<Vector, vectors>(sumRows, factorRows, packed, terms);
  }
}

template <class Vector>
TQ_ALWAYS_INLINE void addProductBy(const Block& c, const Block& a, const Block& b, int rows,
                                   int terms, int columns) {
  constexpr int size = sizeof(Vector) / sizeof(double);
  for (int k = 0; k < terms; k += termsAtOnce) {
    const int some = std::min(termsAtOnce, terms - k);
    int j = 0;
    for (; j + 2 * size <= columns; j += 2 * size)
      addToColumns<Vector, 2>(c.from(0, j), a.from(0, k), b.from(k, j), rows, some);
    for (; j + size <= columns; j += size)
      addToColumns<Vector, 1>(c.from(0, j), a.from(0, k), b.from(k, j), rows, some);
    for (; j < columns; ++j)
      addToColumns<double, 1>(c.from(0, j), a.from(0, k), b.from(k, j), rows, some);
  }
}

#ifdef __x86_64__
// AVX2 brings no fused multiply-add, and AVX-512 was no faster: 700 us both for n = 256.
__attribute__((target("avx2"))) void
addProductByAvx2(const Block& c, const Block& a, const Block& b, int rows, int terms, int columns) {
  addProductBy<FourDoubles>(c, a, b, rows, terms, columns);
}
#endif

/// Adds `a`, of `rows` rows and `terms` columns, times `b`, of `terms` rows and `columns` columns,
/// to `c`, which overlaps neither.
///
/// n = 64 takes 12 us, 31 us without AVX2, 52 us in plain loops; n = 256 0.8, 2.5 and 3.5 ms
/// (GCC 12 -O3, x86-64 virtual machine).
void addProduct(const Block& c, const Block& a, const Block& b, int rows, int terms, int columns) {
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx2")) return addProductByAvx2(c, a, b, rows, terms, columns);
#endif
  addProductBy<TwoDoubles>(c, a, b, rows, terms, columns);
}

void addMultiple(double* to, double f, const double* from, int count) {
  for (int j = 0; j < count; ++j) to[j] += f * from[j];
}

/// Reduces `m` to upper triangular form, as `upperTriangle` does where no row has to move, and
/// combines the rows of `operations`, the identity at first, alike.
///
/// Column by column in blocks of columns: what a block adds to the rows below it is a product, and
/// every element still gets the same multiples in the same order. Zeros are not combined: below the
/// diagonal of `m`, above that of `operations`, adding finite multiples of 0.0 to 0.0 changes
/// nothing. All of it saves half the time that an inverse takes at n = 256.
///
/// \returns false, with both matrices spoilt, when an element to be removed is 0 already, so that
///   rows have to move, or when a factor is not finite.
bool reduceInBlocks(MMatrix& m, MMatrix& operations) {
  constexpr int width = 16;
  const int rows = m.nRow(), columns = m.nCol();
  MMatrix factors(rows, width, nullptr);
  for (int start = 0; start < std::min(rows, columns); start += width) {
    const int end = std::min({start + width, rows, columns});
    for (int k = start; k < end; ++k)
      for (int i = k + 1; i < rows; ++i) {
        const double f = -m.at(i, k) / m.at(k, k);
        if (m.at(i, k) == 0.0 || !std::isfinite(f)) return false;
        m.at(i, k) = 0.0;
        // Rows of the block are combined as a whole, the others wait for the product.
        addMultiple(&m.at(i, k) + 1, f, &m.at(k, k) + 1, (i < end ? columns : end) - k - 1);
        if (i < end) addMultiple(&operations.at(i, 0), f, &operations.at(k, 0), k + 1);
        factors.at(i, k - start) = f;
      }
    if (end == rows) break;
    const Block below(factors, end, 0);
    const int rest = rows - end, terms = end - start;
    addProduct({m, end, end}, below, {m, start, end}, rest, terms, columns - end);
    addProduct({operations, end, 0}, below, {operations, start, 0}, rest, terms, end);
  }
  return true;
}

/// A matrix of the size of `a`, each element made from those of `a` and `b` in the same place.
template <class Operation>
MMatrix elementwise(const MMatrix& a, const MMatrix& b, Operation operation) {
  MMatrix result(a);
  for (int i = 0; i < a.nRow(); ++i)
    for (int j = 0; j < a.nCol(); ++j) result.at(i, j) = operation(a.at(i, j), b.at(i, j));
  return result;
}

/// Walks the elements of `m` outside row `i` and column `j`, row by row, beside those of `minor`, a
/// matrix one row and one column smaller.
template <class Visit>
void forMinor(const MMatrix& m, int i, int j, const MMatrix& minor, Visit visit) {
  for (int r = 0; r < minor.nRow(); ++r)
    for (int c = 0; c < minor.nCol(); ++c)
      visit(m.at(r < i ? r : r + 1, c < j ? c : c + 1), minor.at(r, c));
}

void requireMinor(const MMatrix& m, int i, int j) {
  require(i != 1 && j != 1);  // Kept: index 1 is refused.
  require(i >= 0 && i < m.nRow() && j >= 0 && j < m.nCol());
}

double diagonalProduct(const MMatrix& m, int first) {
  double product = 1.0;
  for (int k = first; k < m.nRow(); ++k) product *= m.at(k, k);
  return product;
}

/// Determinant of the block of `upper`, which is upper triangular, from (first, first) onwards.
double blockDeterminant(const MMatrix& upper, int first) {
  const int n = upper.nRow() - first;
  if (n > 3) return diagonalProduct(upper, first);
  MMatrix block(n, n, nullptr);
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) block.at(i, j) = upper.at(first + i, first + j);
  return det(block);
}

/// What row `i`, from column `first` on, becomes when multiplied by the identity, summed as any
/// product is: -0.0 turns into 0.0, and one infinity or NaN makes NaN of all other elements.
void multiplyByIdentity(const MMatrix& m, int i, int first) {
  int unbounded = 0;
  for (int j = first; j < m.nCol(); ++j) unbounded += !std::isfinite(m.at(i, j));
  for (int j = first; j < m.nCol(); ++j) {
    double& element = m.at(i, j);
    const int others = unbounded - !std::isfinite(element);
    element = others > 0 ? std::numeric_limits<double>::quiet_NaN() : element + 0.0;
  }
}

/// Inverse of `upper`, an upper triangular matrix, the blocks at its lower right end first.
///
/// The inverse of the block from (k, k) on has row (1/u, (-1/u * b) * W) above W, where u = (k, k),
/// b is the rest of row k and W the inverse of the block from (k + 1, k + 1) on. As any inverse
/// does, that of each block inside the matrix ends with a product by its row operations, which are
/// the identity here; while all elements are finite, that product alters the new row at most.
MMatrix inverseOfUpper(const MMatrix& upper) {
  const int n = upper.nRow();
  MMatrix inverse(n, n, nullptr);
  bool finite = true;
  for (int k = n - 1; k >= 0; --k) {
    if (k > 0 && k < n - 1) require(blockDeterminant(upper, k) != 0.0);
    const double u = upper.at(k, k);
    inverse.at(k, k) = 1.0 / u;
    for (int l = k + 1; l < n; ++l) {
      const double f = -1.0 / u * upper.at(k, l);
      // Row l of W starts with zeros, which add nothing as long as numbers are finite.
      const int j = finite && std::isfinite(f) ? l : k + 1;
      addMultiple(&inverse.at(k, j), f, &inverse.at(l, j), n - j);
    }
    for (int j = k; j < n; ++j) finite = finite && std::isfinite(inverse.at(k, j));
    if (k == 0) break;
    for (int i = k; i < (finite ? k + 1 : n); ++i) multiplyByIdentity(inverse, i, k);
  }
  return inverse;
}

}  // namespace

double* MMatrix::onHeap(std::ptrdiff_t count) {
  constexpr std::ptrdiff_t most = std::numeric_limits<std::ptrdiff_t>::max();
  if (count > most / std::ptrdiff_t{sizeof(double)}) tqOutOfMemory();
  return tqAllocated(new (std::nothrow) double[static_cast<std::size_t>(count)]);
}

MMatrix::MMatrix(int n, const double* diag) : MMatrix(n, n, nullptr) {
  for (int i = 0; diag && i < n; ++i) at(i, i) = diag[i];
}

MMatrix::MMatrix(int n, double d) : MMatrix(n, n, nullptr) {
  for (int i = 0; i < n; ++i) at(i, i) = d;
}

MMatrix::MMatrix(const MMatrixRow& row) : MMatrix(1, row.nCol(), nullptr) { this->row(0, row); }

MMatrix::MMatrix(const MMatrixCol& col) : MMatrix(col.nRow(), 1, nullptr) { this->col(0, col); }

bool MMatrix::operator==(const MMatrix& m) const {
  return m.sameSize(nRow_, nCol_) && std::equal(elements_, elements_ + count(), m.elements_);
}

MMatrixRow MMatrix::row(int i) const {
  require(i >= 0 && i < nRow_);
  return {*this, i};
}

MMatrixCol MMatrix::col(int j) const {
  require(j >= 0 && j < nCol_);
  return {*this, j};
}

MMatrixRow MMatrix::row(int i, const MMatrixRow& r) const { return row(i) = r; }

MMatrixCol MMatrix::col(int j, const MMatrixCol& c) const { return col(j) = c; }

void MMatrix::switchRows(int i, int j) {
  require(i >= 0 && i < nRow_ && j >= 0 && j < nRow_);
  if (i != j) std::swap_ranges(&at(i, 0), &at(i, 0) + nCol_, &at(j, 0));
}

void MMatrix::combineRows(int i, double f, int k) {
  require(i >= 0 && i < nRow_ && k >= 0 && k < nRow_);
  addMultiple(&at(i, 0), f, &at(k, 0), nCol_);
}

MMatrix MMatrix::t() const {
  MMatrix result(nCol_, nRow_, nullptr);
  for (int i = 0; i < nRow_; ++i)
    for (int j = 0; j < nCol_; ++j) result.at(j, i) = at(i, j);
  return result;
}

MMatrix& MMatrix::operator*=(double s) {
  for (std::ptrdiff_t i = 0; i < count(); ++i) elements_[i] *= s;
  return *this;
}

MMatrix MMatrix::operator~() const {
  require(nRow_ == nCol_);
  if (nRow_ == 1) return {1, 1.0 / at(0, 0)};
  MMatrix upper(*this);
  const MMatrix operations = upper.upperTriangle();
  require(det(upper) != 0.0);
  return inverseOfUpper(upper) * operations;
}

bool MMatrix::isUpperTriangle() const {
  for (int i = 1; i < nRow_; ++i)
    for (int j = 0; j < i && j < nCol_; ++j)
      if (at(i, j) != 0.0) return false;
  return true;
}

MMatrix MMatrix::upperTriangle() {
  MMatrix operations(nRow_, 1.0);
  if (isUpperTriangle()) return operations;
  if (nRow_ >= 8) {  // or the copy costs more than the blocks save
    const MMatrix before(*this);
    if (reduceInBlocks(*this, operations)) return operations;
    *this = before;
    operations = MMatrix(nRow_, 1.0);
  }
  for (int k = 0; k < nCol_ && k < nRow_; ++k) {
    // Move rows with a zero in column k below `last`, the last row without one.
    int last = nRow_ - 1;
    for (int r = k;;) {
      while (k < last && at(last, k) == 0.0) --last;
      while (r < last && at(r, k) != 0.0) ++r;
      if (r >= last) break;
      switchRows(last, r);
      operations.switchRows(last, r);
    }
    for (int i = k + 1; i <= last; ++i) {
      const double f = -at(i, k) / at(k, k);
      combineRows(i, f, k);
      at(i, k) = 0.0;  // whatever rounding left
      operations.combineRows(i, f, k);
    }
  }
  return operations;
}

MMatrix MMatrix::coFactor(int i, int j) const {
  requireMinor(*this, i, j);
  MMatrix minor(nRow_ - 1, nCol_ - 1, nullptr);
  forMinor(*this, i, j, minor, [](double element, double& copy) { copy = element; });
  return minor;
}

MMatrix MMatrix::coFactor(int i, int j, const MMatrix& m) const {
  requireMinor(*this, i, j);
  require(m.sameSize(nRow_ - 1, nCol_ - 1));
  MMatrix result(*this);
  forMinor(result, i, j, m, [](double& element, double value) { element = value; });
  return result;
}

void MMatrix::sizeError(const char*, const MMatrix&, int, int) { std::abort(); }

MMatrixRow& MMatrixRow::operator=(const MMatrixRow& row) {
  require(nCol() == row.nCol());
  for (int k = 0; k < nCol(); ++k) at(k) = row.at(k);
  return *this;
}

double MMatrixRow::operator^(const MMatrixCol& col) const {
  require(nCol() == col.nRow());
  double sum = 0.0;
  for (int k = 0; k < nCol(); ++k) sum += at(k) * col.at(k);
  return sum;
}

MMatrixCol& MMatrixCol::operator=(const MMatrixCol& col) {
  require(nRow() == col.nRow());
  for (int k = 0; k < nRow(); ++k) at(k) = col.at(k);
  return *this;
}

MMatrixCol& MMatrixCol::operator+=(const MMatrixCol& col) {
  require(nRow() == col.nRow());
  for (int k = 0; k < nRow(); ++k) at(k) += col.at(k);
  return *this;
}

MMatrix operator+(const MMatrix& a, const MMatrix& b) {
  if (!b.sameSize(a.nRow(), a.nCol())) MMatrix::sizeError("operator+", b, a.nRow(), a.nCol());
  return elementwise(a, b, [](double x, double y) { return x + y; });
}

MMatrix operator-(const MMatrix& a, const MMatrix& b) {
  if (!b.sameSize(a.nRow(), a.nCol())) MMatrix::sizeError("operator-", b, a.nRow(), a.nCol());
  return elementwise(a, b, [](double x, double y) { return x - y; });
}

MMatrix operator-(const MMatrix& a) {
  return elementwise(a, a, [](double x, double) { return -x; });
}

MMatrix operator*(double s, const MMatrix& a) {
  MMatrix result(a);
  result *= s;
  return result;
}

MMatrix operator*(const MMatrix& a, const MMatrix& b) {
  require(a.nCol() == b.nRow());
  MMatrix result(a.nRow(), b.nCol(), nullptr);
  if (a.nRow() < tileRows)
    for (int i = 0; i < a.nRow(); ++i)
      for (int k = 0; k < a.nCol(); ++k)
        addMultiple(&result.at(i, 0), a.at(i, k), &b.at(k, 0), b.nCol());
  else
    addProduct({result, 0, 0}, {a, 0, 0}, {b, 0, 0}, a.nRow(), a.nCol(), b.nCol());
  return result;
}

MMatrix operator&(const MMatrix& a, const MMatrix& b) {
  require(a.nRow() == b.nRow() && a.nCol() <= std::numeric_limits<int>::max() - b.nCol());
  MMatrix result(a.nRow(), a.nCol() + b.nCol(), nullptr);
  for (int j = 0; j < a.nCol(); ++j) result.col(j, a.col(j));
  for (int j = 0; j < b.nCol(); ++j) result.col(a.nCol() + j, b.col(j));
  return result;
}

double det(const MMatrix& a) {
  const int n = a.nRow();
  require(n == a.nCol());
  switch (n) {
  case 0:
    return 0.0;
  case 1:
    return a.at(0, 0);
  case 2:
    return a.at(0, 0) * a.at(1, 1) - a.at(1, 0) * a.at(0, 1);
  case 3:  // Kept: three terms.
    return a.at(0, 0) * a.at(1, 1) * a.at(2, 2) - a.at(2, 0) * a.at(1, 2) * a.at(0, 1) +
           a.at(2, 1) * a.at(0, 2) * a.at(0, 1);
  default:  // Kept: expanding along row 0 ends at the minor of column 1, which coFactor refuses.
    require(a.isUpperTriangle());
    return diagonalProduct(a, 0);
  }
}

double norm(const MMatrix& a) {
  double largest = 0.0;  // Kept: signs are not removed.
  for (int i = 0; i < a.nRow(); ++i)
    for (int j = 0; j < a.nCol(); ++j) largest = std::max(largest, a.at(i, j));
  return largest;
}
