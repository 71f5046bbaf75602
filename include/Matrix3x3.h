#ifndef TQ_MATRIX3X3_H
#define TQ_MATRIX3X3_H

/// \file Matrix3x3.h
/// Rotations and other linear maps of space, as 3x3 matrices that turn points. A matrix owns its
/// elements; the cosine and sine of the last angle live as long as the process. Angles are in
/// degrees.

#include "Matrix.h"
#include "Point3D.h"
#include "tq_export.h"

/// A 3x3 matrix.
///
/// Kept: two conventions meet here, and mixing them up turns the other way:
/// - `m * p` takes the point as a column: matrix times point;
/// - `p * m` (an operator of `MMatrix`) takes it as a row: point times matrix. `rotateAboutAxis`
///   makes matrices for this one, and `tqMatrix4x4::multPointMatrix` follows it.
///
/// \snippet transforms.cpp conventions
/// \snippet transforms.cpp product
class TQ_API tqMatrix3x3 : public MMatrix {
public:
  /// All zeros.
  tqMatrix3x3() : MMatrix(3, 3, nullptr) {}
  /// The elements row by row.
  tqMatrix3x3(double m00, double m01, double m02, double m10, double m11, double m12, double m20,
              double m21, double m22)
      : tqMatrix3x3() {
    setRow(0, {m00, m01, m02});
    setRow(1, {m10, m11, m12});
    setRow(2, {m20, m21, m22});
  }

  /// Row `i` becomes the coordinates of `p`; an index out of range is ignored.
  void setRow(int i, const tqPoint3D& p) {
    if (i < 0 || i >= 3) return;
    at(i, 0) = p.x;
    at(i, 1) = p.y;
    at(i, 2) = p.z;
  }
  /// Column `j` becomes the coordinates of `p`; an index out of range is ignored.
  void setCol(int j, const tqPoint3D& p) {
    if (j < 0 || j >= 3) return;
    at(0, j) = p.x;
    at(1, j) = p.y;
    at(2, j) = p.z;
  }

  /// Makes this the rotation by `degrees` about the line through the origin along `axis`.
  ///
  /// With points as rows, `p * m`, it turns counter-clockwise seen from the axis's end, as
  /// `tqPoint3D::rotateAboutAxis` does; `m * p` turns the other way. `axis` is taken as it is: with
  /// any length but 1 the result is no rotation.
  ///
  /// Kept: the cosine and sine of the last angle are kept for all matrices and start as 0 for 0
  /// degrees. A first ever call with exactly 0 therefore gives the projection onto the axis, not
  /// the identity; any other angle before it puts that right.
  void rotateAboutAxis(const tqPoint3D& axis, double degrees);

  /// The transpose, which is the inverse of a rotation.
  tqMatrix3x3 t() const;

  /// The inverse, by the application's `dmatinv_`. A singular matrix gives whatever that routine
  /// gives; the default one, zeros.
  tqMatrix3x3 operator~() const;

  /// \name Virtual functions
  /// In slot order, after the destructor; the order is part of the binary interface. Both do what
  /// the operators of the same name for constant matrices do.
  /// @{
  virtual tqPoint3D operator*(tqPoint3D& p);
  virtual tqMatrix3x3 operator~();
  /// @}

private:
  explicit tqMatrix3x3(Unset unset) : MMatrix(3, 3, unset) {}
  friend tqMatrix3x3 operator*(const tqMatrix3x3& a, const tqMatrix3x3& b);
};

/// The matrix times the point as a column.
inline tqPoint3D operator*(const tqMatrix3x3& m, const tqPoint3D& p) {
  return {m.at(0, 0) * p.x + m.at(0, 1) * p.y + m.at(0, 2) * p.z,
          m.at(1, 0) * p.x + m.at(1, 1) * p.y + m.at(1, 2) * p.z,
          m.at(2, 0) * p.x + m.at(2, 1) * p.y + m.at(2, 2) * p.z};
}

/// The matrix product. With points as rows, `a * b` does first what `a` does.
inline tqMatrix3x3 operator*(const tqMatrix3x3& a, const tqMatrix3x3& b) {
  tqMatrix3x3 result{tqMatrix3x3::Unset()};
  result.setProduct<3>(a, b);
  return result;
}

#endif
