#ifndef MOLREPORT_MONITOR_H
#define MOLREPORT_MONITOR_H

#include "Structure.h"
#include "Trigger.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

/// \file Monitor.h
/// Measures that follow the atoms they are taken from: distances, angles and torsions that hear of
/// every move, and are taken again when the queue of fired triggers is drained.

namespace molreport {

/// A distance between two atoms, an angle at the second of three, or a torsion of four.
///
/// It watches its atoms through a trigger of its own: an atom that moves, or goes missing, puts the
/// trigger on the queue, once, however many of them do. The value stays what it was until `drain`.
class Monitor : public tqBase {
public:
  enum class State {
    measured,
    missing,   ///< an atom is not there
    undefined  ///< an angle with two of its atoms in one place, a torsion with three in line
  };

  /// Measures at once. \param atoms 2, 3 or 4, in order; they outlive the monitor.
  explicit Monitor(const std::vector<Atom*>& atoms);
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

  /// "distance", "angle" or "torsion".
  const char* kind() const;
  const std::vector<Atom*>& atoms() const { return atoms_; }
  State state() const { return state_; }
  /// In angstroms or degrees; that of the last time when there is none.
  double value() const { return value_; }
  /// The value in a column, or what there is in its place.
  std::string shown(int width) const;

  /// Takes the monitors that heard of a change off the queue, has them look again at the atoms that
  /// were touched, and resets their triggers, so that these can fire again. Triggers of others stay
  /// on the queue. Returns the number of monitors.
  static int drain();

  unsigned classId() const override;       ///< 1022, 1023 or 1153
  const char* className() const override;  ///< "DistanceMonitor", "AngleMonitor", "TorsionMonitor"
  int isA(unsigned id) const override;     ///< 1 for its own, 1021 ("Monitor") and 0

private:
  /// Leads from the queue back to the monitor.
  struct Trigger : tqTrigger {
    explicit Trigger(Monitor& owner) : tqTrigger(TRIGGER_PLAIN), monitor(owner) {}
    Monitor& monitor;
  };
  struct Place {
    bool isTaken = false;
    tqPoint3D position;
  };

  void look(const Atom& atom);
  void look(const tqNamedGroup& touched);
  void measure();

  std::vector<Atom*> atoms_;
  std::vector<Place> places_;  // of the atoms when they were looked at last
  State state_ = State::missing;
  double value_ = 0.0;
  Trigger trigger_;
};

/// One model whose atoms are moved to where the models of a structure have them, so that whatever
/// watches an atom can follow it.
class WorkingModel {
public:
  /// A copy of the structure's first model; the structure is left as it is.
  explicit WorkingModel(const Structure& structure);

  const Model& model() const { return *model_; }
  /// Moves every atom that lies elsewhere in `model`, and sets those absent that it lacks. Atoms
  /// are matched as by `matchAtoms`.
  void stepTo(const Model& model);

private:
  std::unique_ptr<Model> model_;
};

/// Makes monitors from texts such as "A/-3/CA,A/20/CA", steps through the models and prints the
/// values, one row per model. The atoms are those of the first model.
///
/// \returns what is wrong with the texts, and then nothing is printed; else empty
std::string printMonitors(std::FILE* out, const Structure& structure,
                          const std::vector<std::string>& specs);

}  // namespace molreport

#endif
