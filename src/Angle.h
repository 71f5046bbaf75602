#ifndef TQ_ANGLE_H
#define TQ_ANGLE_H

// What the geometry families share about angles: degrees and radians, the rule that turns a dot
// product into an angle, and the cosine and sine kept for the next turn by the same angle.
//
// The calls of cos, sin and acos stand in the library's sources and never in a public header: a
// compiler may evaluate them itself for constant arguments, and would round differently from the
// mathematics library.

#include <cmath>

constexpr double radiansPerDegree = 0.017453292519943295;
constexpr double degreesPerRadian = 57.29577951308232;

inline double clampedCosine(double cosine) {
  // One test that nearly always fails: with two, of which GCC 12 makes a maximum, an angle takes
  // 13.0 ns instead of 12.6 (-O3, x86-64 virtual machine).
  if (__builtin_expect(std::fabs(cosine) > 1.0, 0)) return cosine > 1.0 ? 1.0 : -1.0;
  return cosine;
}

/// Angle in degrees between two arms, from their dot product and the product of their squared
/// lengths.
///
/// Kept: arms whose squared lengths multiply to 1e-7 or less are not normalised, so the answer is
/// close to 90 whatever their directions; nothing is divided by zero.
inline double degreesBetween(double dotProduct, double squaredLengths) {
  const double cosine =
      squaredLengths > 1e-7 ? clampedCosine(dotProduct / std::sqrt(squaredLengths)) : dotProduct;
  return std::acos(cosine) * degreesPerRadian;
}

/// Cosine and sine of the angle asked for last: turning many points by one angle computes them
/// once. Before the first computation both are 0, which a first call with exactly the initial
/// angle gets to see.
struct CachedTurn {
  double degrees;
  double radians = 0.0;
  double cosine = 0.0;
  double sine = 0.0;

  const CachedTurn& to(double newDegrees) {
    if (newDegrees != degrees) {
      radians = newDegrees * radiansPerDegree;
      cosine = std::cos(radians);
      sine = std::sin(radians);
      degrees = newDegrees;
    }
    return *this;
  }
};

#endif
