#ifndef TQ_MATRIX4X4_H
#define TQ_MATRIX4X4_H

/// \file Matrix4x4.h
/// Rigid motions of space, a rotation and a translation in one 4x4 matrix, that move points. A
/// matrix owns its elements; nothing here lives longer than its object.

#include "Matrix3x3.h"
#include "tq_export.h"

/// A 4x4 matrix.
///
/// Kept: two conventions meet here, and each has its own place for the translation:
/// - `multPointMatrix` and `multCoordMatrix` take the point as a row, (x y z 1) times matrix, with
///   the translation in the bottom row, where the constructor puts it;
/// - `m * p` takes the point as a column, with the translation in the last column. A matrix made by
///   the constructor has zeros there, so `m * p` does not move by its translation.
///
/// No division by a fourth coordinate takes place.
/// \snippet transforms.cpp motion
class TQ_API tqMatrix4x4 : public MMatrix {
public:
  /// All zeros.
  tqMatrix4x4() : MMatrix(4, 4, nullptr) {}
  tqMatrix4x4(const tqMatrix4x4&) = default;
  /// For points as rows: rotates by `r`, then moves by `t`.
  tqMatrix4x4(const tqMatrix3x3& r, const tqPoint3D& t) : tqMatrix4x4(Unset()) {
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) at(i, j) = r.at(i, j);
      at(i, 3) = 0.0;
    }
    at(3, 0) = t.x;
    at(3, 1) = t.y;
    at(3, 2) = t.z;
    at(3, 3) = 1.0;
  }
  tqMatrix4x4& operator=(const tqMatrix4x4&) = default;

  /// The point as a row vector times this matrix.
  tqPoint3D multPointMatrix(const tqPoint3D& p) const {
    return {at(0, 0) * p.x + at(1, 0) * p.y + at(2, 0) * p.z + at(3, 0),
            at(0, 1) * p.x + at(1, 1) * p.y + at(2, 1) * p.z + at(3, 1),
            at(0, 2) * p.x + at(1, 2) * p.y + at(2, 2) * p.z + at(3, 2)};
  }
  /// As `multPointMatrix`, in place.
  void multCoordMatrix(double& x, double& y, double& z) const {
    multPointMatrix({x, y, z}).XYZ(x, y, z);
  }

  /// False when the bottom row is exactly (0 0 0 1).
  bool hasTranslation() const {
    return at(3, 0) != 0.0 || at(3, 1) != 0.0 || at(3, 2) != 0.0 || at(3, 3) != 1.0;
  }

  /// The inverse motion, for points as rows: the rotation transposed, the translation turned back.
  ///
  /// Right only for rigid motions, whose upper left 3x3 block is orthonormal; that is not checked,
  /// and the last column is ignored. For anything else take `~MMatrix(m)`.
  tqMatrix4x4 operator~() const {
    tqMatrix4x4 inverse{Unset()};
    const bool moves = hasTranslation();
    const double x = -at(3, 0), y = -at(3, 1), z = -at(3, 2);
    for (int j = 0; j < 3; ++j) {
      for (int i = 0; i < 3; ++i) inverse.at(i, j) = at(j, i);
      inverse.at(3, j) = moves ? 0.0 + x * at(j, 0) + y * at(j, 1) + z * at(j, 2) : 0.0;
      inverse.at(j, 3) = 0.0;
    }
    inverse.at(3, 3) = 1.0;
    return inverse;
  }

  /// \name Virtual functions
  /// In slot order, after the destructor; the order is part of the binary interface. Both do what
  /// the operators of the same name for constant matrices do.
  /// @{
  virtual tqMatrix4x4 operator~();
  virtual tqPoint3D operator*(tqPoint3D& p);
  /// @}

private:
  explicit tqMatrix4x4(Unset unset) : MMatrix(4, 4, unset) {}
  friend tqMatrix4x4 operator*(const tqMatrix4x4& a, const tqMatrix4x4& b);
};

/// The matrix times the point as a column, moved by the last column; the bottom row is not used.
inline tqPoint3D operator*(const tqMatrix4x4& m, const tqPoint3D& p) {
  return {m.at(0, 0) * p.x + m.at(0, 1) * p.y + m.at(0, 2) * p.z + m.at(0, 3),
          m.at(1, 0) * p.x + m.at(1, 1) * p.y + m.at(1, 2) * p.z + m.at(1, 3),
          m.at(2, 0) * p.x + m.at(2, 1) * p.y + m.at(2, 2) * p.z + m.at(2, 3)};
}

/// The matrix product. With points as rows, `a * b` does first what `a` does.
inline tqMatrix4x4 operator*(const tqMatrix4x4& a, const tqMatrix4x4& b) {
  tqMatrix4x4 result{tqMatrix4x4::Unset()};
  result.setProduct<4>(a, b);
  return result;
}

#endif
