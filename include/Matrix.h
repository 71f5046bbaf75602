#ifndef TQ_MATRIX_H
#define TQ_MATRIX_H

/// \file Matrix.h
/// Dense matrices of doubles of any size, with row and column views, for geometry and small fits. A
/// matrix owns its elements; views own nothing and stay valid only while their matrix lives.
/// Whoever breaks a size or index rule ends the process: see `MMatrix`.

#include "Point3D.h"
#include "tq_export.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

class MMatrixCol;
class MMatrixRow;

/// A matrix of nRow x nCol doubles, stored row by row.
///
/// Unequal sizes, indices out of range, negative sizes and singular matrices end the process with
/// `abort()`, without a message: they are faults of the caller, and wrong coordinates would be
/// worse. The exception is `at`, which checks nothing.
///
/// Every element of a sum or product is evaluated as written, from the first term to the last, and
/// never fused, so that results are equal to the bit whatever the compiler and its optimisation
/// level.
///
/// Up to 16 elements lie in the object itself, so that 3x3 and 4x4 transforms, which come and go by
/// the million, need no heap.
/// \snippet transforms.cpp fit
class TQ_API MMatrix {
public:
  /// \name Construction
  /// @{

  /// `r` x `c`, with the elements row by row from `init`; null gives zeros.
  MMatrix(int r, int c, const double* init) {
    v_alloc(r, c);
    if (init)
      std::copy_n(init, count(), elements_);
    else
      std::fill_n(elements_, count(), 0.0);
  }
  /// `n` x `n`, with `diag`'s `n` values on the diagonal and zeros elsewhere; null gives zeros.
  MMatrix(int n, const double* diag);
  /// `n` x `n`, with `d` all along the diagonal and zeros elsewhere: 1.0 gives the identity.
  MMatrix(int n, double d);
  MMatrix(const MMatrix& m) {
    v_alloc(m.nRow_, m.nCol_);
    std::copy_n(m.elements_, count(), elements_);
  }
  /// 1 x nCol, a copy of a row.
  MMatrix(const MMatrixRow& row);
  /// nRow x 1, a copy of a column.
  MMatrix(const MMatrixCol& col);

  /// Copies the elements. The sizes must be equal already: assigning never resizes.
  MMatrix& operator=(const MMatrix& m) {
    if (!m.sameSize(nRow_, nCol_)) sizeError("operator=", m, nRow_, nCol_);
    std::copy_n(m.elements_, count(), elements_);
    return *this;
  }
  /// @}

  /// Virtual, and the only virtual function of this class.
  virtual ~MMatrix() {
    if (elements_ != inside_) delete[] elements_;
  }

  /// \name Elements
  /// Elements of a constant matrix can be written too: constant is its size.
  /// @{
  int nRow() const { return nRow_; }
  int nCol() const { return nCol_; }
  bool sameSize(int r, int c) const { return nRow_ == r && nCol_ == c; }

  /// Element (i, j), unchecked.
  double& at(int i, int j) const { return elements_[std::ptrdiff_t{i} * nCol_ + j]; }

  /// Element (i, j), checked.
  double& operator()(int i, int j) const {
    if (i < 0 || i >= nRow_ || j < 0 || j >= nCol_) std::abort();
    return at(i, j);
  }

  /// True when the sizes are equal and so is every element, exactly; NaN equals nothing.
  bool operator==(const MMatrix& m) const;
  /// @}

  /// \name Rows and columns
  /// @{
  MMatrixRow row(int i) const;
  MMatrixCol col(int j) const;
  /// Copies `r`, a row of this or another matrix and of the same length, into row `i`; returns
  /// that row.
  MMatrixRow row(int i, const MMatrixRow& r) const;
  /// As for rows.
  MMatrixCol col(int j, const MMatrixCol& c) const;
  void switchRows(int i, int j);
  /// Adds `f` times row `k` to row `i`, element by element.
  void combineRows(int i, double f, int k);
  /// @}

  /// \name Algebra
  /// Sums, products and joins are free functions, below.
  /// @{

  /// The transpose.
  MMatrix t() const;
  MMatrix& operator*=(double s);

  /// The inverse, by Gaussian elimination without scaling. It suits well-conditioned matrices of
  /// any size; a pivot of 0, or a diagonal whose product underflows to 0, counts as singular.
  MMatrix operator~() const;

  /// True when every element below the diagonal is exactly 0.0.
  bool isUpperTriangle() const;

  /// Reduces this matrix, in place, to upper triangular form: exact zeros below the diagonal.
  ///
  /// Rows with a 0 in the column at hand are moved below the others; nothing else is pivoted or
  /// scaled.
  ///
  /// \returns the row operations, as an nRow x nRow matrix: that matrix times this one as it was is
  ///   this one as it is now, up to rounding.
  /// \snippet transforms.cpp reduce
  MMatrix upperTriangle();

  /// The minor: this matrix without row `i` and column `j`. No sign is applied.
  ///
  /// Kept: index 1, as row or column, ends the process as if it were out of range; minors of the
  /// second row or column need a transposed or row-switched copy. `det` of full matrices ends
  /// there.
  MMatrix coFactor(int i, int j) const;

  /// The reverse: a copy of this matrix whose elements outside row `i` and column `j` come from
  /// `m`, row by row. `m` must be a row and a column smaller. Kept: index 1 is refused here too.
  MMatrix coFactor(int i, int j, const MMatrix& m) const;
  /// @}

  /// Ends the process, for operation `op` on a matrix that is not of the `r` x `c` it should be.
  /// Nothing is printed.
  [[noreturn]] static void sizeError(const char* op, const MMatrix& m, int r, int c);

protected:
  /// As the third argument, leaves the elements unset, for matrices that fill themselves.
  struct Unset {};
  MMatrix(int r, int c, Unset) { v_alloc(r, c); }

  /// Makes this matrix the product of `a` and `b`, other matrices; all three are n x n, unchecked.
  /// Each element is what `operator^` of row and column gives. Columns go in pairs, an odd one by
  /// itself: compilers find no pairs in plain loops, and take 29 ns instead of 8 for 4x4 (GCC 12
  /// -O3, x86-64 virtual machine).
  template <int n> void setProduct(const MMatrix& a, const MMatrix& b) {
    using Pair = double __attribute__((vector_size(16)));
    const double* from = b.elements_;
    Pair pairs[n][n / 2];
    for (int k = 0; k < n; ++k)
      for (int j = 0; j < n / 2; ++j)
        pairs[k][j] = Pair{from[k * n + 2 * j], from[k * n + 2 * j + 1]};
    for (int i = 0; i < n; ++i) {
      const double* row = a.elements_ + i * n;
      double* to = elements_ + i * n;
      Pair sums[n / 2] = {};
      double last = 0.0;
      for (int k = 0; k < n; ++k) {
        for (int j = 0; j < n / 2; ++j) sums[j] += row[k] * pairs[k][j];
        if (n % 2 == 1) last += row[k] * from[k * n + n - 1];
      }
      for (int j = 0; j < n / 2; ++j) {
        to[2 * j] = sums[j][0];
        to[2 * j + 1] = sums[j][1];
      }
      if (n % 2 == 1) to[n - 1] = last;
    }
  }

private:
  static constexpr int insideCount = 16;

  std::ptrdiff_t count() const { return std::ptrdiff_t{nRow_} * nCol_; }

  // Sets the size and finds room for the elements, which it leaves unset.
  void v_alloc(int r, int c) {
    if (r < 0 || c < 0) std::abort();
    nRow_ = r;
    nCol_ = c;
    elements_ = count() <= insideCount ? inside_ : onHeap(count());
  }
  static double* onHeap(std::ptrdiff_t count);

  int nRow_;
  int nCol_;
  double* elements_;
  mutable double inside_[insideCount];  // mutable, as elements of constant matrices can be written
};

/// One row of a matrix, to read and write in place.
///
/// Copying a view gives another view; assigning to one copies elements. Lengths must be equal, or
/// the process ends.
class TQ_API MMatrixRow {
public:
  MMatrixRow(const MMatrixRow&) = default;

  int nCol() const { return matrix_.nCol(); }
  /// Element `k`, unchecked.
  double& at(int k) const { return matrix_.at(index_, k); }

  /// Copies the elements of `row` into the matrix viewed.
  MMatrixRow& operator=(const MMatrixRow& row);

  /// The dot product with a column, summed from 0.0 in the order of the elements.
  double operator^(const MMatrixCol& col) const;

private:
  friend class MMatrix;
  MMatrixRow(const MMatrix& matrix, int index) : index_(index), matrix_(matrix) {}

  int index_;
  const MMatrix& matrix_;
};

/// One column of a matrix, to read and write in place, as `MMatrixRow` is for rows.
class TQ_API MMatrixCol {
public:
  MMatrixCol(const MMatrixCol&) = default;

  int nRow() const { return matrix_.nRow(); }
  /// Element `k`, unchecked.
  double& at(int k) const { return matrix_.at(k, index_); }

  /// Copies the elements of `col` into the matrix viewed.
  MMatrixCol& operator=(const MMatrixCol& col);
  /// Adds the elements of `col` to those of the column viewed.
  MMatrixCol& operator+=(const MMatrixCol& col);

private:
  friend class MMatrix;
  MMatrixCol(const MMatrix& matrix, int index) : index_(index), matrix_(matrix) {}

  int index_;
  const MMatrix& matrix_;
};

/// \name Matrix algebra
/// @{
TQ_API MMatrix operator+(const MMatrix& a, const MMatrix& b);
TQ_API MMatrix operator-(const MMatrix& a, const MMatrix& b);
TQ_API MMatrix operator-(const MMatrix& a);
TQ_API MMatrix operator*(double s, const MMatrix& a);

/// The matrix product; `a` must have as many columns as `b` has rows.
TQ_API MMatrix operator*(const MMatrix& a, const MMatrix& b);

/// `a` and `b` side by side: the columns of `a`, then those of `b`; the row counts must be equal.
TQ_API MMatrix operator&(const MMatrix& a, const MMatrix& b);

/// The point as a row vector times a 3x3 matrix. `tqMatrix3x3` times a point is the other
/// convention.
inline tqPoint3D operator*(const tqPoint3D& p, const MMatrix& m) {
  if (!m.sameSize(3, 3)) std::abort();
  const auto column = [&](int j) {
    return 0.0 + p.x * m.at(0, j) + p.y * m.at(1, j) + p.z * m.at(2, j);
  };
  return {column(0), column(1), column(2)};
}

/// The determinant, of matrices up to 2x2 and of triangular ones.
///
/// Kept: for 3x3 the result is a00*a11*a22 - a20*a12*a01 + a21*a02*a01, which is exact for upper
/// triangular matrices and not the determinant of others: 14 for (1 2 3, 4 5 6, 7 8 10), whose
/// determinant is -3. From 4x4 on a matrix that is not upper triangular ends the process, because
/// the expansion needs minors that `coFactor` refuses; so does one that is not square. The size of
/// any determinant is that of a copy reduced with `upperTriangle`; its sign turns over with every
/// two rows switched. The inverse relies on no more. 0.0 for a matrix without elements.
TQ_API double det(const MMatrix& a);

/// The largest element.
///
/// Kept: signs are not removed and the search starts from 0.0, so a matrix of negative elements
/// gives 0.0.
TQ_API double norm(const MMatrix& a);
/// @}

#endif
