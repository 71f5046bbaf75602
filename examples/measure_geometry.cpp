// Measures a small molecule: distances, angles, torsions, planes, boxes, deviations. A chain of
// four atoms is built from bond lengths and angles, so that what should come out is known.
// Prints each result beside what is expected, and exits with 1 when one is off.

#include "Point2D.h"
#include "Point3D.h"

#include <cmath>
#include <cstdio>

namespace {

int failures = 0;

void show(const char* what, double value, double expected) {
  const bool right = std::fabs(value - expected) < 1e-9;
  if (!right) ++failures;
  std::printf("%-44s %12.6f  %s\n", what, value, right ? "ok" : "WRONG");
}

// The chain H1-O1-O2-H2, in angstroms and degrees: hydrogen peroxide in round numbers.
const double bondOH = 0.97, bondOO = 1.46, angleHOO = 100, torsionHOOH = 112;

void measureBonds(const tqPoint3D& h1, const tqPoint3D& o1, const tqPoint3D& o2,
                  const tqPoint3D& h2) {
  //! [distance]
  const double bond = tqPoint3D::dist(o1.x, o1.y, o1.z, o2.x, o2.y, o2.z);
  const bool bonded = o1.dist2(o2) < 1.6 * 1.6;  // comparing needs no square root
  //! [distance]
  show("O-O bond, angstroms", bond, bondOO);
  show("bonded within 1.6", bonded, 1);

  //! [angle]
  const double bend = tqPoint3D::angle(h1.x, h1.y, h1.z, o1.x, o1.y, o1.z, o2.x, o2.y, o2.z);
  //! [angle]
  show("H-O-O angle, degrees", bend, angleHOO);

  //! [dihedral]
  const double torsion = tqPoint3D::dihedral(h1.x, h1.y, h1.z, o1.x, o1.y, o1.z,  //
                                             o2.x, o2.y, o2.z, h2.x, h2.y, h2.z);
  //! [dihedral]
  show("H-O-O-H torsion, degrees", torsion, torsionHOOH);
}

void measurePlane(const tqPoint3D& h1, const tqPoint3D& o1, const tqPoint3D& o2,
                  const tqPoint3D& h2) {
  //! [plane]
  // How far is H2 from the plane of the other three atoms, and on which side?
  const tqPoint3D normal = (o2 - o1).crossNormal(h1 - o1);
  tqPoint3D tip = o1;
  tip += normal;
  int side;
  const double height = h2.distToPlane(o1, tip, side);
  //! [plane]
  const double fromAxis = bondOH * std::sin(angleHOO * M_PI / 180);
  show("H2 off the plane H1-O1-O2", height, fromAxis * std::sin(torsionHOOH * M_PI / 180));
  show("side of the plane", side, 1);
  show("H2 off the line O1-O2", h2.distToLine(o1, o2), fromAxis);
}

void measureSets(const tqPoint3D* atoms) {
  //! [sets]
  const tqPoint3D middle = tqPoint3D::center(atoms, 4);
  tqPoint3D lo = atoms[0], hi = atoms[0];
  tqPoint3D moved[4];
  for (int i = 0; i < 4; ++i) {
    atoms[i].minmaxXYZ(lo, hi);
    moved[i] = atoms[i];
    moved[i] += {0.0, 0.3, 0.4};
  }
  const double deviation = tqPoint3D::rms(atoms, moved, 4);
  //! [sets]
  show("centroid along the O-O bond", middle.x, bondOO / 2);
  show("box along the O-O bond", (hi - lo).x,
       bondOO + 2 * -bondOH * std::cos(angleHOO * M_PI / 180));
  show("RMS deviation after a shift by 0.5", deviation, 0.5);
}

void alignWithAxes(const tqPoint3D& p1, const tqPoint3D& p2, const tqPoint3D& p3) {
  //! [align]
  // Turn the molecule so that p1 is the origin, p2 on the x axis and p3 in the xy plane.
  double rz, ry, rx;
  tqPoint3D::XAxisAlign(p1.x, p1.y, p1.z, p2.x, p2.y, p2.z, p3.x, p3.y, p3.z, rz, ry, rx);
  tqPoint3D onX = p2 - p1, inXY = p3 - p1;
  onX.rotateZ(rz).rotateY(ry).rotateX(rx);
  inXY.rotateZ(rz).rotateY(ry).rotateX(rx);
  //! [align]
  show("point 2 along x", onX.x, std::sqrt(p1.dist2(p2)));
  show("point 2 along y and z", std::fabs(onX.y) + std::fabs(onX.z), 0);
  show("point 3 along z", inXY.z, 0);
}

void measureInThePlane() {
  //! [turn]
  // In a diagram: which way do the bonds from (0, 0) to (1, 0) and to (1, -1) turn?
  const double turn = tqPoint2D::angle360(1, 0, 0, 0, 1, -1);
  const double fullTurn = turn > 180 ? 540 - turn : turn;
  const bool clockwise = tqPoint2D(0, 0).isClockwise({1, 0}, {1, -1});
  //! [turn]
  show("45 degrees clockwise, with its side", turn, 225);
  show("the same as a part of the full turn", fullTurn, 315);
  show("clockwise", clockwise, 1);
}

}  // namespace

int main() {
  // O1 at the origin, O2 on the x axis; both hydrogens are first put into the xy plane, H2 is then
  // turned about the O-O bond. Seen from O1 to O2, turning about +x is clockwise.
  const tqPoint3D o1, o2(bondOO, 0, 0);
  tqPoint3D h1(bondOH, 0, 0), h2(-bondOH, 0, 0);
  h1.rotateZ(angleHOO);
  h2.rotateZ(-angleHOO).rotateX(torsionHOOH);
  h2 += o2;

  measureBonds(h1, o1, o2, h2);
  measurePlane(h1, o1, o2, h2);
  const tqPoint3D atoms[] = {h1, o1, o2, h2};
  measureSets(atoms);
  alignWithAxes(h1, o2, h2);
  measureInThePlane();
  return failures == 0 ? 0 : 1;
}
