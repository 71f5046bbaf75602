#ifndef TQ_GEOMETRY_TESTING_H
#define TQ_GEOMETRY_TESTING_H

// What the geometry tests share: seeded random points, and comparisons that print the points.

#include "Point3D.h"

#include <gtest/gtest.h>

#include <random>

class RandomPoints {
public:
  double coordinate() { return spread_(engine_); }
  tqPoint3D point() { return {coordinate(), coordinate(), coordinate()}; }

private:
  std::mt19937_64 engine_{1};
  std::uniform_real_distribution<double> spread_{-10.0, 10.0};
};

inline testing::AssertionResult near(const tqPoint3D& p, const tqPoint3D& q, double off = 1e-9) {
  if (p.dist2(q) <= off * off) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "(" << p.x << ", " << p.y << ", " << p.z << ") is not ("
                                     << q.x << ", " << q.y << ", " << q.z << ")";
}

inline auto same(const tqPoint3D& p, const tqPoint3D& q) { return near(p, q, 0.0); }

#endif
