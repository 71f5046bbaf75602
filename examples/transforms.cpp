// Moves points with matrices: rotations in both conventions, rigid motions and their inverse, and
// a line fitted with matrices of other sizes. Prints each result, and exits with 1 when one is off.

#include "Matrix.h"
#include "Matrix3x3.h"
#include "Matrix4x4.h"

#include <cmath>
#include <cstdio>

namespace {

int failures = 0;

void show(const char* what, const tqPoint3D& p, const tqPoint3D& expected) {
  const bool right = p.dist2(expected) < 1e-18;
  if (!right) ++failures;
  std::printf("%-44s %9.4f %9.4f %9.4f  %s\n", what, p.x, p.y, p.z, right ? "ok" : "WRONG");
}

void rotatePoints() {
  //! [axis]
  // A third of a turn about the diagonal carries x to y; no matrix is needed for that.
  tqPoint3D p(1, 0, 0);
  p.rotateAboutAxis({1, 1, 1}, 120);
  //! [axis]
  show("x turned about the diagonal", p, {0, 1, 0});
}

void compareConventions() {
  //! [conventions]
  tqMatrix3x3 quarter;
  quarter.rotateAboutAxis({0, 0, 1}, 90);  // the axis must have length 1
  const tqPoint3D x(1, 0, 0);
  const tqPoint3D asRow = x * quarter;     // (0 1 0): counter-clockwise, like rotateZ(90)
  const tqPoint3D asColumn = quarter * x;  // (0 -1 0): the other way
  //! [conventions]
  show("row vector times matrix", asRow, {0, 1, 0});
  show("matrix times column vector", asColumn, {0, -1, 0});
  show("matrix times column vector, transposed", quarter.t() * x, {0, 1, 0});

  //! [product]
  // As rows, the left factor comes first: a quarter about z, then a quarter about x.
  tqMatrix3x3 tilt;
  tilt.rotateAboutAxis({1, 0, 0}, 90);
  const tqPoint3D both = x * (quarter * tilt);
  const tqPoint3D undone = both * ~(quarter * tilt);
  //! [product]
  show("x to y, then y to z", both, {0, 0, 1});
  show("and back by the inverse", undone, x);
}

void moveRigidly() {
  //! [motion]
  tqMatrix3x3 quarter;
  quarter.rotateAboutAxis({0, 0, 1}, 90);
  const tqMatrix4x4 motion(quarter, {10, 20, 30});  // rotate, then move
  const tqPoint3D moved = motion.multPointMatrix({1, 0, 0});
  const tqPoint3D back = (~motion).multPointMatrix(moved);

  double x = 1, y = 0, z = 0;  // coordinates kept apart are changed in place
  (motion * motion).multCoordMatrix(x, y, z);
  //! [motion]
  show("rotated and moved", moved, {10, 21, 30});
  show("back again", back, {1, 0, 0});
  show("moved twice", {x, y, z}, {-11, 30, 60});
}

void fitLine() {
  //! [fit]
  // The straight line y = a + b x nearest to four points, by the normal equations.
  const double xs[] = {0, 1, 2, 3}, ys[] = {1.1, 2.9, 5.1, 6.9};
  const double ones[] = {1, 1, 1, 1};
  const MMatrix design = MMatrix(4, 1, ones) & MMatrix(4, 1, xs);
  const MMatrix line = ~(design.t() * design) * design.t() * MMatrix(4, 1, ys);
  //! [fit]
  show("line fitted: intercept, slope", {line(0, 0), line(1, 0), 0}, {1.06, 1.96, 0});
}

void reduce() {
  //! [reduce]
  // The size of a determinant of any size: reduced, it is the product of the diagonal.
  const double elements[] = {2, 1, 0, 3, 4, 5, 1, 1, 2, 2, 6, 1, 8, 1, 1, 7};
  MMatrix m(4, 4, elements);
  const MMatrix before = m, operations = m.upperTriangle();
  const double determinant = det(m);  // no rows were switched, so the sign is right too
  const MMatrix same = operations * before;
  //! [reduce]
  show("determinant; operations times matrix", {determinant, same(3, 3), 0}, {-336, m(3, 3), 0});
}

}  // namespace

int main() {
  rotatePoints();
  compareConventions();
  moveRigidly();
  fitLine();
  reduce();
  return failures == 0 ? 0 : 1;
}
