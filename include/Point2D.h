#ifndef TQ_POINT2D_H
#define TQ_POINT2D_H

/// \file Point2D.h
/// Points and vectors in the plane, and polar coordinates. Points own nothing; one coordinate
/// buffer lives as long as the process. Angles are in degrees, except the polar angle, which is in
/// radians.

#include "tq_export.h"

#include <cmath>

class tqPolarCoord2D;

/// A point or vector in the plane: two doubles, copied by value.
///
/// Arrays of points are plain runs of x, y pairs. As for `tqPoint3D`, nothing reports an error, and
/// sums are evaluated as written, from left to right.
class TQ_API tqPoint2D {
public:
  /// The origin.
  tqPoint2D() = default;
  tqPoint2D(const tqPoint2D&) = default;
  tqPoint2D(double xCoordinate, double yCoordinate) : x(xCoordinate), y(yCoordinate) {}

  /// \name Coordinates
  /// @{
  double X() const { return x; }
  double Y() const { return y; }
  void setX(double value) { x = value; }
  void setY(double value) { y = value; }

  /// The coordinates in an array of two, for routines that want one.
  ///
  /// Kept: all points share one array, so the next call on any point overwrites it.
  double* XYARR() const;

  /// Takes the first two elements of `xy`; null gives the origin.
  void setXYARR(const double* xy) {
    x = xy ? xy[0] : 0.0;
    y = xy ? xy[1] : 0.0;
  }
  /// @}

  tqPoint2D& operator=(const tqPoint2D&) = default;
  tqPoint2D& operator-=(const tqPoint2D& p) {
    x -= p.x;
    y -= p.y;
    return *this;
  }

  /// \name Distances
  /// @{

  /// Distance to `p`.
  double dist(const tqPoint2D& p) const { return dist(x, y, p.x, p.y); }

  /// Distance between the points (x1, y1) and (x2, y2).
  static double dist(double x1, double y1, double x2, double y2) {
    return std::sqrt((x1 - x2) * (x1 - x2) + (y1 - y2) * (y1 - y2));
  }

  /// Distance to the line through `p1` and `p2`, taken endless. NaN when the two are equal.
  double distToLine(const tqPoint2D& p1, const tqPoint2D& p2) const;
  /// @}

  /// \name Angles, in degrees
  /// Each point is an x, y pair, so that callers with plain arrays need not build points.
  /// @{

  /// Angle at point 2 between points 1 and 3, 0 to 180.
  ///
  /// Kept: close to 90, whatever the directions, when the squared lengths of the two arms multiply
  /// to 1e-7 or less, as for `tqPoint3D::angle`.
  static double angle(double x1, double y1, double x2, double y2, double x3, double y3);

  /// Angle at point 2 from point 1 to point 3, told apart by side: `angle` where point 3 lies
  /// counter-clockwise of point 1 or in line with it.
  ///
  /// Kept: on the clockwise side the result is `angle` + 180, 180 to 360, and not 360 - `angle`:
  /// a point 45 degrees clockwise gives 225, one just short of straight nearly 360. Results above
  /// 180 mark the clockwise side; 540 less such a result is the angle of the full turn.
  /// \snippet measure_geometry.cpp turn
  static double angle360(double x1, double y1, double x2, double y2, double x3, double y3);

  /// True when the way from this point over `q` to `r` turns clockwise; false when the three lie
  /// in line.
  bool isClockwise(const tqPoint2D& q, const tqPoint2D& r) const {
    return (q.x - x) * (r.y - y) - (r.x - x) * (q.y - y) < 0.0;
  }
  /// @}

  /// Rotates in place about the origin, counter-clockwise for positive `degrees`.
  tqPoint2D& rotate(double degrees);

  /// Radius and angle of this point.
  ///
  /// Kept: the angle is atan(x / y), measured from the y axis and the same for opposite points, so
  /// `tqPolarCoord2D::polarToCartesian` does not lead back; for that, build the coordinates from
  /// `dist` and `atan2(y, x)`. NaN at the origin.
  tqPolarCoord2D cartesianToPolar() const;

  double x = 0.0;
  double y = 0.0;
};

/// A radius and an angle in radians.
class TQ_API tqPolarCoord2D {
public:
  tqPolarCoord2D(double radius, double angle) : radius_(radius), angle_(angle) {}
  virtual ~tqPolarCoord2D() = default;

  double radius() const { return radius_; }
  double angle() const { return angle_; }

  /// The point at this radius, with the angle measured counter-clockwise from the x axis.
  ///
  /// Kept: not the inverse of `tqPoint2D::cartesianToPolar`, which measures from the y axis.
  tqPoint2D polarToCartesian() const;

private:
  double radius_;
  double angle_;
};

#endif
