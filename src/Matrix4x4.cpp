#include "Matrix4x4.h"

#include <utility>

tqMatrix4x4 tqMatrix4x4::operator~() { return ~std::as_const(*this); }

tqPoint3D tqMatrix4x4::operator*(tqPoint3D& p) { return std::as_const(*this) * std::as_const(p); }
