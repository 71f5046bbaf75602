#include "peers.h"

#include "UserData.h"

#include <string>
#include <unordered_map>
#include <variant>

#if __has_include(<QObject>)
#include <QObject>
#include <QVariant>
#define TQ_PEER_QT 1
static const bool qtNoted = noteVersion("Qt", QT_VERSION_STR);
#endif

namespace {

// What a program keeps of an atom: some names are short, most are words, some start or end alike.
const char* const names[] = {"serial",
                             "name",
                             "occupancy",
                             "temperature_factor",
                             "charge",
                             "element",
                             "alternate_location",
                             "bonded",
                             "residue_name",
                             "residue_number",
                             "chain",
                             "segment",
                             "partial_charge",
                             "van_der_waals_radius",
                             "covalent_radius",
                             "atomic_number",
                             "mass",
                             "hybridization",
                             "hydrogen_bond_donor",
                             "hydrogen_bond_acceptor",
                             "solvent_accessibility",
                             "colour",
                             "label",
                             "label_colour",
                             "visible",
                             "selected",
                             "force_constant_x",
                             "force_constant_y",
                             "force_constant_z",
                             "anisotropic_u11",
                             "anisotropic_u22",
                             "anisotropic_u33"};

// The attributes of one object: a value by name.

struct Tq {
  void set(const char* name, double value) { data.addUserData(name, value); }
  int find(const char* name, double& value) const { return data.findUserData(name, value); }
  tqUserData data;
};

using Value = std::variant<int, unsigned, double, std::string>;

template <class Map> struct Mapped {
  void set(const char* name, double value) { map[name] = value; }
  int find(const char* name, double& value) const {
    const auto found = map.find(name);
    if (found == map.end()) return 0;
    const double* const number = std::get_if<double>(&found->second);
    if (number) value = *number;
    return number ? 1 : 0;
  }
  Map map;
};
#ifdef TQ_PEER_ABSL_MAP
using Absl = Mapped<absl::flat_hash_map<std::string, Value>>;
#endif
using Std = Mapped<std::unordered_map<std::string, Value>>;

#ifdef TQ_PEER_QT
struct Qt {
  void set(const char* name, double value) { object.setProperty(name, value); }
  int find(const char* name, double& value) const {
    const QVariant found = object.property(name);
    if (found.typeId() != QMetaType::Double) return 0;
    value = found.toDouble();
    return 1;
  }
  QObject object;
};
#endif

// An object with as many attributes, and their names in the order of the questions.
template <class Peer> struct Filled {
  Filled(std::int64_t count)
      : questions(shuffled(std::vector<const char*>(names, names + count), 1)) {
    for (std::int64_t i = 0; i < count; ++i) peer.set(names[i], static_cast<double>(i));
  }
  bool holds(double first) const {
    double value = 0;
    for (std::size_t i = 0; i < questions.size(); ++i)
      if (!peer.find(names[i], value) || value != first + static_cast<double>(i)) return false;
    return !peer.find("no_such_name", value) && !peer.find("none", value);
  }
  Peer peer;
  std::vector<const char*> questions;
};

// A dialogue, or a report, reads every attribute of an object once.
template <class Peer> void FindAttribute(benchmark::State& state) {
  const Filled<Peer> filled(state.range(0));
  if (!filled.holds(0)) return state.SkipWithError("wrong value");
  double value = 0;
  for (auto _ : state)
    for (const char* name : filled.questions) {
      filled.peer.find(name, value);
      benchmark::DoNotOptimize(value);
    }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// A calculation gives every attribute of an object a new value.
template <class Peer> void SetAttribute(benchmark::State& state) {
  Filled<Peer> filled(state.range(0));
  for (std::int64_t i = 0; i < state.range(0); ++i)
    filled.peer.set(names[i], 0.5 + static_cast<double>(i));
  if (!filled.holds(0.5)) return state.SkipWithError("wrong value");
  double value = 0;
  for (auto _ : state)
    for (const char* name : filled.questions) filled.peer.set(name, value += 1);
  if (!filled.peer.find(filled.questions.back(), value)) return state.SkipWithError("lost value");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

#define TQ_JOBS(Peer, name)                                                                        \
  TQ_BENCH(FindAttribute, Peer, name)->Arg(4)->Arg(8)->Arg(32);                                    \
  TQ_BENCH(SetAttribute, Peer, name)->Arg(4)->Arg(8)->Arg(32)
TQ_JOBS(Tq, "tq");
TQ_JOBS(Std, "std map");
#ifdef TQ_PEER_ABSL_MAP
TQ_JOBS(Absl, "absl flat map");
#endif
#ifdef TQ_PEER_QT
TQ_JOBS(Qt, "QObject");
#endif

}  // namespace

BENCHMARK_MAIN();
