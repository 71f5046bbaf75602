#ifndef TQ_POINT3D_H
#define TQ_POINT3D_H

/// \file Point3D.h
/// Points and vectors in space, and the measures of molecular geometry: distance, angle, torsion,
/// RMS deviation, centroid, rotation. Points own nothing; one coordinate buffer and the cosine and
/// sine of the last angle about each axis live as long as the process. Angles are in degrees.

#include "tq_export.h"

#include <cmath>

/// A point or vector in Cartesian space: three doubles, copied by value.
///
/// Arrays of points are plain runs of x, y, z triples. Nothing here reports an error: where a
/// direction is asked of points that coincide, the result is the one stated with the function or
/// holds NaN. Lengths have the unit of the coordinates; limits that are absolute are chosen for
/// angstroms.
///
/// Sums and products are evaluated as written, from left to right, and never fused, so that
/// results are equal to the bit whatever the compiler and its optimisation level.
class TQ_API tqPoint3D {
public:
  /// The origin.
  tqPoint3D() = default;
  tqPoint3D(const tqPoint3D&) = default;
  tqPoint3D(double xCoordinate, double yCoordinate, double zCoordinate)
      : x(xCoordinate), y(yCoordinate), z(zCoordinate) {}
  /// Copies the first three elements of `xyz`; null gives the origin.
  tqPoint3D(const double* xyz) { setXYZARR(xyz); }

  /// \name Coordinates
  /// @{
  double X() const { return x; }
  double Y() const { return y; }
  double Z() const { return z; }
  void setX(double value) { x = value; }
  void setY(double value) { y = value; }
  void setZ(double value) { z = value; }

  void XYZ(double& xOut, double& yOut, double& zOut) const {
    xOut = x;
    yOut = y;
    zOut = z;
  }
  void setXYZ(double xCoordinate, double yCoordinate, double zCoordinate) {
    x = xCoordinate;
    y = yCoordinate;
    z = zCoordinate;
  }

  /// The coordinates in an array of three, for routines that want one.
  ///
  /// Kept: all points share one array, so the next call on any point overwrites it. Use the
  /// coordinates before calling again, or take them with `XYZ`.
  double* XYZARR() const;

  /// Takes the first three elements of `xyz`; null gives the origin.
  void setXYZARR(const double* xyz) {
    if (xyz)
      setXYZ(xyz[0], xyz[1], xyz[2]);
    else
      setXYZ(0.0, 0.0, 0.0);
  }
  /// @}

  /// \name Arithmetic, coordinate by coordinate
  /// @{
  tqPoint3D& operator=(const tqPoint3D&) = default;
  tqPoint3D& operator+=(const tqPoint3D& p) {
    x += p.x;
    y += p.y;
    z += p.z;
    return *this;
  }
  tqPoint3D& operator-=(const tqPoint3D& p) {
    x -= p.x;
    y -= p.y;
    z -= p.z;
    return *this;
  }
  tqPoint3D operator-(const tqPoint3D& p) const { return {x - p.x, y - p.y, z - p.z}; }

  /// The point a share `t` of the way to `p`: `t` = 0 gives this point, 1 gives `p` up to
  /// rounding. Values outside 0 to 1 go on along the line.
  tqPoint3D frac(const tqPoint3D& p, double t) const {
    return {x + (p.x - x) * t, y + (p.y - y) * t, z + (p.z - z) * t};
  }
  /// @}

  /// \name Bounding boxes
  /// @{

  /// The smaller value of each coordinate; that of `p` where one of the two is NaN.
  tqPoint3D minXYZ(const tqPoint3D& p) const {
    return {x < p.x ? x : p.x, y < p.y ? y : p.y, z < p.z ? z : p.z};
  }
  /// The larger value of each coordinate; that of `p` where one of the two is NaN.
  tqPoint3D maxXYZ(const tqPoint3D& p) const {
    return {p.x < x ? x : p.x, p.y < y ? y : p.y, p.z < z ? z : p.z};
  }

  /// Widens the box from `lo` to `hi` so that it holds this point. The box is the caller's to
  /// start, usually with the first point as both corners; a coordinate that is NaN leaves it alone.
  void minmaxXYZ(tqPoint3D& lo, tqPoint3D& hi) const {
    if (x < lo.x) lo.x = x;
    if (y < lo.y) lo.y = y;
    if (z < lo.z) lo.z = z;
    if (hi.x < x) hi.x = x;
    if (hi.y < y) hi.y = y;
    if (hi.z < z) hi.z = z;
  }
  /// @}

  /// \name Vectors
  /// @{

  /// Scales this vector to length 1. A vector of length 0 becomes NaN in every coordinate.
  void normalize() {
    const double length = std::sqrt(x * x + y * y + z * z);
    x /= length;
    y /= length;
    z /= length;
  }

  /// The cross product of this vector and `v`, in this order: x cross y is z.
  tqPoint3D crossProduct(const tqPoint3D& v) const {
    return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
  }

  /// A vector of length 1 at right angles to this vector and `v`, along their cross product.
  ///
  /// Where the two are parallel (every coordinate of the cross product below 1e-6 in size, so for
  /// very short vectors too) some perpendicular is made up: from the difference of the two, turned
  /// by a quarter, or, when they are equal, from the y axis.
  ///
  /// Kept: holds NaN when that leaves nothing either, as for two equal vectors on the y axis or
  /// when this vector is zero; nothing guards the division.
  tqPoint3D crossNormal(const tqPoint3D& v) const;
  /// @}

  /// \name Distances
  /// @{

  /// Distance between the points (x1, y1, z1) and (x2, y2, z2).
  static double dist(double x1, double y1, double z1, double x2, double y2, double z2) {
    return std::sqrt((x1 - x2) * (x1 - x2) + (y1 - y2) * (y1 - y2) + (z1 - z2) * (z1 - z2));
  }

  /// Squared distance to `p`: enough to compare distances, without the square root.
  /// \snippet measure_geometry.cpp distance
  double dist2(const tqPoint3D& p) const {
    return (x - p.x) * (x - p.x) + (y - p.y) * (y - p.y) + (z - p.z) * (z - p.z);
  }

  /// Distance to the line through `p1` and `p2`, taken endless. NaN when the two are equal.
  double distToLine(const tqPoint3D& p1, const tqPoint3D& p2) const;

  /// Squared distance to the plane through `p1` whose normal points from `p1` to `p2`.
  ///
  /// \param side 1 when this point lies on the side of `p2`, -1 on the other side. Kept: a point in
  ///   the plane is on side -1, so that every point has one of two sides.
  /// \returns 0.0 when `p1` and `p2` are a thousandth or less apart (squared, 1e-6): no plane then.
  /// \snippet measure_geometry.cpp plane
  double dist2ToPlane(const tqPoint3D& p1, const tqPoint3D& p2, int& side) const;

  /// The distance whose square `dist2ToPlane` gives, with the same `side`.
  double distToPlane(const tqPoint3D& p1, const tqPoint3D& p2, int& side) const;
  /// @}

  /// \name Angles, in degrees
  /// Each point is an x, y, z triple, so that callers with plain arrays need not build points.
  /// @{

  /// Angle at point 2 between points 1 and 3, 0 to 180.
  ///
  /// Kept: close to 90, whatever the directions, when the squared lengths of the two arms multiply
  /// to 1e-7 or less: arms that short have no direction worth measuring.
  /// \snippet measure_geometry.cpp angle
  static double angle(double x1, double y1, double z1, double x2, double y2, double z2, double x3,
                      double y3, double z3);

  /// Torsion angle of the chain of points 1-2-3-4 about the bond 2-3, -180 to 180.
  ///
  /// 0 is cis (1 and 4 eclipsed), 180 is trans; seen from 2 towards 3, point 4 clockwise of point 1
  /// is positive: the IUPAC-IUB convention (J. Mol. Biol. 52, 1, 1970).
  ///
  /// \returns 0.0 when 1-2-3 or 2-3-4 lie in line: the cross product of the two bonds has a squared
  ///   length below 1e-5. For ordinary bonds in angstroms that is about 0.1 degree off straight; in
  ///   nanometres it would be 8.
  /// \snippet measure_geometry.cpp dihedral
  static double dihedral(double x1, double y1, double z1, double x2, double y2, double z2,
                         double x3, double y3, double z3, double x4, double y4, double z4);

  /// The turns that bring point 2 onto the +x axis and point 3 into the xy plane, on its side of
  /// positive y, as seen from point 1.
  ///
  /// Apply `rotateZ(rz)`, then `rotateY(ry)`, then `rotateX(rx)` to any point less point 1. Each
  /// turn is measured with `angle` and shares its limit: with points 1 and 2 a distance d apart,
  /// in a direction within 0.0003 / d radians of the z axis, point 2 ends that far from x.
  /// \snippet measure_geometry.cpp align
  static void XAxisAlign(double x1, double y1, double z1, double x2, double y2, double z2,
                         double x3, double y3, double z3, double& rz, double& ry, double& rx);
  /// @}

  /// \name Rotation about the origin
  /// In place, by degrees, right-handed: counter-clockwise for one who looks from the positive end
  /// of the axis at the origin. Turning many points by the same angle computes its cosine and sine
  /// once.
  ///
  /// Kept: each coordinate axis starts out as if it had last turned by -999.99 degrees with cosine
  /// and sine 0, so a first ever turn by exactly that sets the two coordinates to 0.
  /// @{
  tqPoint3D& rotateX(double degrees);
  tqPoint3D& rotateY(double degrees);
  tqPoint3D& rotateZ(double degrees);

  /// Rotates about the line through the origin along `axis`, which may be this very point. The axis
  /// need not have length 1, but much shorter ones lose accuracy (see `XAxisAlign`), and nothing
  /// useful is left at 0.0003.
  /// \snippet transforms.cpp axis
  tqPoint3D& rotateAboutAxis(const tqPoint3D& axis, double degrees);
  /// @}

  /// \name Sets of points
  /// @{

  /// Root-mean-square deviation of `n` points `p` from `n` points `q`, pair by pair as they stand:
  /// nothing is superposed. NaN for `n` = 0; -0.0 for `n` < 0. A null array counts as `n` = 0.
  static double rms(const tqPoint3D* p, const tqPoint3D* q, int n);

  /// Centroid of `n` points. NaN coordinates for `n` = 0, -0.0 for `n` < 0. A null array counts as
  /// `n` = 0.
  /// \snippet measure_geometry.cpp sets
  static tqPoint3D center(const tqPoint3D* p, int n);
  /// @}

  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

/// Every coordinate times `n`. The factor is an int, and a double passed here loses its fraction on
/// the way; to scale by one, take `tqPoint3D().frac(p, factor)`.
inline tqPoint3D operator*(const tqPoint3D& p, int n) {
  const double factor = n;
  return {p.x * factor, p.y * factor, p.z * factor};
}

/// Every coordinate divided by `n`, an int as in `operator*`. Infinite or NaN for `n` = 0.
inline tqPoint3D operator/(const tqPoint3D& p, int n) {
  const double divisor = n;
  return {p.x / divisor, p.y / divisor, p.z / divisor};
}

#endif
