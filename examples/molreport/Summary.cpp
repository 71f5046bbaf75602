#include "Summary.h"

#include "Text.h"

#include <fmt/format.h>

#include <cmath>
#include <vector>

namespace molreport {

namespace {

/// Prints one row of counts, of the first model and of the whole file.
void printRow(std::FILE* out, int indent, const std::string& label, int first, int whole) {
  fmt::print(out, "{:{}}{:<{}} {:>10} {:>12}\n", "", indent, label, 28 - indent, first, whole);
}

// What is in the first model is also in the file.
void printTable(std::FILE* out, int indent, const std::map<std::string, int>& first,
                const std::map<std::string, int>& whole) {
  for (const auto& [label, count] : whole) {
    const auto found = first.find(label);
    printRow(out, indent, label, found == first.end() ? 0 : found->second, count);
  }
}

int total(const std::map<std::string, int>& counts) {
  int sum = 0;
  for (const auto& entry : counts) sum += entry.second;
  return sum;
}

void printCounts(std::FILE* out, int number, const Counts& first, const Counts& whole) {
  fmt::print(out, "  {:<26} {:>10} {:>12}\n", "", fmt::format("model {}", number), "whole file");
  printRow(out, 2, "models", first.models, whole.models);
  printRow(out, 2, "chains", first.chains, whole.chains);
  printRow(out, 2, "residues", first.residues, whole.residues);
  printRow(out, 4, "water", first.waters, whole.waters);
  printRow(out, 4, "hetero groups", total(first.heteroGroups), total(whole.heteroGroups));
  printTable(out, 6, first.heteroGroups, whole.heteroGroups);
  printRow(out, 2, "atoms", first.atoms, whole.atoms);
  printTable(out, 4, first.elements, whole.elements);
  printRow(out, 4, "at alternate locations", first.alternates, whole.alternates);
}

void printPoint(std::FILE* out, const char* label, const tqPoint3D& point) {
  fmt::print(out, "    {:<18} {} {} {}\n", label, fixed(point.x, 10, 3), fixed(point.y, 10, 3),
             fixed(point.z, 10, 3));
}

void printExtent(std::FILE* out, const Extent& extent) {
  printPoint(out, "lowest", extent.lowest);
  printPoint(out, "highest", extent.highest);
  printPoint(out, "box", extent.highest - extent.lowest);
  printPoint(out, "centroid", extent.centroid);
  fmt::print(out, "    {:<18} {}\n", "radius of gyration", fixed(extent.radiusOfGyration, 10, 3));
}

std::string shownChains(const Model& model) {
  std::string text;
  for (const Chain* chain : model.chains()) text += ' ' + shownChain(chain->id());
  return text;
}

}  // namespace

void Counts::add(const Model& model) {
  ++models;
  for (const Chain* chain : model.chains()) {
    ++chains;
    for (const Residue* residue : chain->residues()) {
      ++residues;
      if (isWater(residue->name()))
        ++waters;
      else if (residue->isHetero())
        ++heteroGroups[std::string(shownName(residue->name()))];
    }
  }
  forEachAtom(model, [this](const Chain&, const Residue&, const Atom& atom) {
    ++atoms;
    ++elements[std::string(atom.element().text())];
    if (atom.location() != ' ') ++alternates;
  });
}

Extent extentOf(const Model& model) {
  std::vector<tqPoint3D> points;
  forEachAtom(model, [&points](const Chain&, const Residue&, const Atom& atom) {
    points.push_back(atom.position());
  });
  const int count = static_cast<int>(points.size());
  Extent extent{points[0], points[0], tqPoint3D::center(points.data(), count), 0.0};
  for (const tqPoint3D& point : points) point.minmaxXYZ(extent.lowest, extent.highest);
  const std::vector<tqPoint3D> centroids(points.size(), extent.centroid);
  extent.radiusOfGyration = tqPoint3D::rms(points.data(), centroids.data(), count);
  return extent;
}

void printSummary(std::FILE* out, const std::string& path, const Reading& reading) {
  const Structure& structure = *reading.structure;
  const Model& model = *structure.models()[0];
  Counts first, whole;
  first.add(model);
  for (const Model* each : structure.models()) whole.add(*each);

  fmt::print(out, "{}\n", path);
  fmt::print(out, "  title   {}\n",
             structure.title().empty() ? "(no TITLE record)" : structure.title());
  fmt::print(out, "  lines   {} read, {} refused, {} with a remark\n", reading.lines,
             reading.refused, reading.remarked);
  fmt::print(out, "  chains {}\n\n", shownChains(model));
  printCounts(out, model.number(), first, whole);
  fmt::print(out, "\n  Model {}, in angstroms, over its {} atoms with equal weight:\n",
             model.number(), first.atoms);
  printExtent(out, extentOf(model));
}

}  // namespace molreport
