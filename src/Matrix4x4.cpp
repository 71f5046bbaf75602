#include "Matrix4x4.h"

#include <utility>

tqMatrix4x4 tqMatrix4x4::operator~() const {
  const tqMatrix3x3 back(at(0, 0), at(1, 0), at(2, 0), at(0, 1), at(1, 1), at(2, 1), at(0, 2),
                         at(1, 2), at(2, 2));
  if (!hasTranslation()) return {back, {}};
  return {back, tqPoint3D(-at(3, 0), -at(3, 1), -at(3, 2)) * back};
}

tqMatrix4x4 tqMatrix4x4::operator~() { return ~std::as_const(*this); }

tqPoint3D tqMatrix4x4::operator*(tqPoint3D& p) { return std::as_const(*this) * std::as_const(p); }
