#include "Connections.h"

#include "UserData.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>

namespace molreport {

namespace {

constexpr int serialWidth = 5;
constexpr int firstColumns[] = {7, 12, 17, 22, 27};  // of the atom and up to four partners

/// The atoms of a model by serial. Of several with one serial, the first counts.
class AtomsBySerial {
public:
  explicit AtomsBySerial(const Model& model) {
    forEachAtom(model, [this](const Chain&, const Residue&, Atom& atom) {
      if (const int serial = atom.serial()) atoms_.emplace_back(serial, &atom);
    });
    std::stable_sort(atoms_.begin(), atoms_.end(), precedes);
  }

  Atom* find(int serial) const {
    const auto at = std::lower_bound(atoms_.begin(), atoms_.end(),
                                     std::pair<int, Atom*>(serial, nullptr), precedes);
    return at != atoms_.end() && at->first == serial ? at->second : nullptr;
  }

private:
  static bool precedes(const std::pair<int, Atom*>& a, const std::pair<int, Atom*>& b) {
    return a.first < b.first;
  }

  std::vector<std::pair<int, Atom*>> atoms_;
};

}  // namespace

std::string Connections::add(const Line& line, int lineNumber) {
  std::vector<int> serials;
  for (const int first : firstColumns) {
    const int last = first + serialWidth - 1;
    const std::string field = line.field(first, last);
    if (field.empty()) continue;
    serials.push_back(0);
    if (!readNumber(line, first, last, serials.back()))
      return fmt::format("serial \"{}\" is not a number", field);
  }
  if (serials.size() < 2 || line.columns(firstColumns[0], 11).empty())
    return "the record does not connect two atoms";
  records_.push_back({lineNumber, serials[0], {serials.begin() + 1, serials.end()}});
  return {};
}

void Connections::join(const Structure& structure, const Complaint& complain) const {
  if (records_.empty()) return;
  std::vector<Found> found(records_.size());
  for (const Model* model : structure.models()) joinModel(*model, found);
  for (std::size_t i = 0; i < records_.size(); ++i) {
    const Record& record = records_[i];
    if (!found[i].first)
      complain(record.lineNumber, fmt::format("no atom has serial {}", record.serial), true);
    else if (found[i].missing)
      complain(record.lineNumber, fmt::format("no atom has serial {}", found[i].missing), false);
  }
}

void Connections::joinModel(const Model& model, std::vector<Found>& found) const {
  const AtomsBySerial atoms(model);
  std::map<unsigned, std::vector<unsigned>> bonds;  // by the OID of the atom
  for (std::size_t i = 0; i < records_.size(); ++i) {
    const Atom* const first = atoms.find(records_[i].serial);
    if (!first) continue;
    found[i].first = true;
    for (const int serial : records_[i].partners) {
      if (const Atom* partner = atoms.find(serial))
        bonds[first->oid()].push_back(partner->oid());
      else
        found[i].missing = serial;
    }
  }
  for (const auto& [oid, partners] : bonds) {
    Atom* const atom = static_cast<Atom*>(tqBase::validated(oid, 0));
    atom->userData()->addUserData(facts::bonds, static_cast<int>(partners.size()), partners.data());
  }
}

}  // namespace molreport
