#include "Rms.h"

#include "Matching.h"
#include "Text.h"

#include <fmt/format.h>

namespace molreport {

Deviation deviationOf(const Model& model, const Model& from) {
  std::vector<tqPoint3D> points, others;
  for (const auto& [atom, other] : matchAtoms(model, from)) {
    points.push_back(atom->position());
    others.push_back(other->position());
  }
  const int count = static_cast<int>(points.size());
  return {count, count > 0 ? tqPoint3D::rms(points.data(), others.data(), count) : 0.0};
}

void printRms(std::FILE* out, const Structure& structure) {
  const Model& first = *structure.models()[0];
  if (structure.models().count() == 1)
    return fmt::print(out, "  nothing to compare: model {} is the only one\n", first.number());
  fmt::print(out, "  RMS deviation from model {} in angstroms, nothing superposed\n\n",
             first.number());
  fmt::print(out, "  model      atoms    matched        rms\n");
  for (const Model* model : structure.models()) {
    int atoms = 0;
    forEachAtom(*model, [&atoms](const Chain&, const Residue&, const Atom&) { ++atoms; });
    const Deviation deviation = deviationOf(*model, first);
    fmt::print(out, "  {:>5} {:>10} {:>10} {}\n", model->number(), atoms, deviation.matched,
               deviation.matched > 0 ? fixed(deviation.rms, 10, 3) : fmt::format("{:>10}", "-"));
  }
}

}  // namespace molreport
