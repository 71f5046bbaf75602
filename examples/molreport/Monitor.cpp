#include "Monitor.h"

#include "Matching.h"
#include "Selection.h"
#include "Text.h"
#include "Torsions.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

namespace molreport {

namespace {

struct Kind {
  std::size_t atoms;
  unsigned classId;
  const char* className;
  const char* name;
  int decimals;
};
constexpr Kind kinds[] = {{2, 1022, "DistanceMonitor", "distance", 3},
                          {3, 1023, "AngleMonitor", "angle", 2},
                          {4, 1153, "TorsionMonitor", "torsion", 2}};
constexpr unsigned monitorId = 1021;

const Kind* kindOf(std::size_t atoms) {
  for (const Kind& kind : kinds)
    if (kind.atoms == atoms) return &kind;
  return nullptr;
}

// An angle needs two arms: `tqPoint3D::angle` answers about 90 without them.
bool coincide(const tqPoint3D& a, const tqPoint3D& b) { return a.dist2(b) < 1e-6; }

// Finds the atoms of one text, separated by commas; returns what is wrong.
std::string findAtoms(const std::string& spec, const Model& model, std::vector<Atom*>& atoms) {
  for (std::size_t start = 0, comma = 0; comma < spec.size(); start = comma + 1) {
    comma = std::min(spec.find(',', start), spec.size());
    const std::string text = spec.substr(start, comma - start);
    Selection selection;
    std::string fault = selection.parse(text);
    if (!fault.empty()) return fault;
    if (selection.anyChain || selection.anyResidue || selection.anyAtom || selection.ofResidues)
      return fmt::format("\"{}\" does not name one atom", text);
    Atom* const atom = findAtom(model, selection);
    if (!atom) return fmt::format("model {} has no atom {}", model.number(), text);
    if (std::find(atoms.begin(), atoms.end(), atom) != atoms.end())
      return fmt::format("{} is named twice", text);
    atoms.push_back(atom);
  }
  if (kindOf(atoms.size())) return {};
  return fmt::format("a distance takes 2 atoms, an angle 3, a torsion 4, not {}", atoms.size());
}

using Monitors = std::vector<std::unique_ptr<Monitor>>;

void printHeader(std::FILE* out, const Monitors& monitors) {
  std::string columns = "  model";
  for (std::size_t i = 0; i < monitors.size(); ++i) {
    fmt::print(out, "  {:>3}  {:<8}", i + 1, monitors[i]->kind());
    for (const Atom* atom : monitors[i]->atoms()) {
      fmt::print(out, "  {}", selectionOf(*atom));
      if (atom->location() != ' ') fmt::print(out, "({})", atom->location());
    }
    fmt::print(out, "\n");
    columns += fmt::format(" {:>10}", i + 1);
  }
  fmt::print(out, "\n{}\n", columns);
}

void printRow(std::FILE* out, int model, const Monitors& monitors) {
  fmt::print(out, "  {:>5}", model);
  for (const auto& monitor : monitors) fmt::print(out, " {}", monitor->shown(10));
  fmt::print(out, "\n");
}

}  // namespace

Monitor::Monitor(const std::vector<Atom*>& atoms)
    : tqBase(1), atoms_(atoms), places_(atoms.size()), trigger_(*this) {
  trigger_.addEvent(movedEvent);
  for (Atom* atom : atoms_) {
    trigger_.addObject(atom);
    look(*atom);
  }
  measure();
}

const char* Monitor::kind() const { return kindOf(atoms_.size())->name; }

std::string Monitor::shown(int width) const {
  if (state_ == State::measured) return fixed(value_, width, kindOf(atoms_.size())->decimals);
  return fmt::format("{:>{}}", state_ == State::missing ? "missing" : "undefined", width);
}

int Monitor::drain() {
  tqTriggerList* const queue = fired_triggers[NOTIFY_SECOND];
  int monitors = 0;
  for (int i = 0; queue && i < queue->count();) {
    Trigger* const trigger = dynamic_cast<Trigger*>(queue->item(i));
    if (!trigger) {
      ++i;
      continue;
    }
    queue->remove(i);
    trigger->fired = 0;
    trigger->monitor.look(*trigger->touchedObjects);
    trigger->touchedObjects->clear();
    ++monitors;
  }
  return monitors;
}

void Monitor::look(const Atom& atom) {
  const auto at = std::find(atoms_.begin(), atoms_.end(), &atom) - atoms_.begin();
  places_[static_cast<std::size_t>(at)] = {atom.isValidObject() != 0, atom.position()};
}

void Monitor::look(const tqNamedGroup& touched) {
  for (int i = 0; i < touched.count(); ++i)
    if (const tqBase* member = touched.member(i)) look(static_cast<const Atom&>(*member));
  measure();
}

void Monitor::measure() {
  state_ = State::missing;
  for (const Place& place : places_)
    if (!place.isTaken) return;
  state_ = State::measured;
  const tqPoint3D& a = places_[0].position;
  const tqPoint3D& b = places_[1].position;
  if (places_.size() == 2) {
    value_ = tqPoint3D::dist(a.x, a.y, a.z, b.x, b.y, b.z);
    return;
  }
  const tqPoint3D& c = places_[2].position;
  if (places_.size() == 3) {
    if (coincide(a, b) || coincide(b, c))
      state_ = State::undefined;
    else
      value_ = tqPoint3D::angle(a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z);
    return;
  }
  const Torsion torsion = torsionOf(a, b, c, places_[3].position);
  if (torsion.isDefined)
    value_ = torsion.degrees;
  else
    state_ = State::undefined;
}

unsigned Monitor::classId() const { return kindOf(atoms_.size())->classId; }

const char* Monitor::className() const { return kindOf(atoms_.size())->className; }

int Monitor::isA(unsigned id) const {
  return id == classId() || id == monitorId ? 1 : tqBase::isA(id);
}

WorkingModel::WorkingModel(const Structure& structure)
    : model_(static_cast<Model*>(structure.models()[0]->copyTree())) {}

void WorkingModel::stepTo(const Model& model) {
  std::unordered_set<const Atom*> present;
  for (const auto& [atom, target] : matchAtoms(*model_, model)) {
    present.insert(atom);
    const tqPoint3D &from = atom->position(), &to = target->position();
    const bool isThere =
        atom->isValidObject() && from.x == to.x && from.y == to.y && from.z == to.z;
    if (!isThere) atom->moveTo(to);
  }
  forEachAtom(*model_, [&present](const Chain&, const Residue&, Atom& atom) {
    if (present.count(&atom) == 0) atom.setAbsent();
  });
}

std::string printMonitors(std::FILE* out, const Structure& structure,
                          const std::vector<std::string>& specs) {
  WorkingModel working(structure);
  Monitors monitors;
  for (const std::string& spec : specs) {
    std::vector<Atom*> atoms;
    const std::string fault = findAtoms(spec, working.model(), atoms);
    if (!fault.empty()) return fmt::format("\"{}\": {}", spec, fault);
    monitors.push_back(std::make_unique<Monitor>(atoms));
  }
  printHeader(out, monitors);
  for (const Model* model : structure.models()) {
    working.stepTo(*model);
    Monitor::drain();
    printRow(out, model->number(), monitors);
  }
  return {};
}

}  // namespace molreport
