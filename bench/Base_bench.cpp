#include "peers.h"

#include "Base.h"

#include <malloc.h>

#include <map>
#include <memory>

#if __has_include(<QObject>)
#include <QObject>
#define TQ_PEER_QT 1
static const bool qtNoted = noteVersion("Qt", QT_VERSION_STR);
#endif

namespace {

#ifdef TQ_PEER_BOOST_MAP
template <class Key, class Value> using BoostMap = boost::unordered_flat_map<Key, Value>;
#endif
#ifdef TQ_PEER_ABSL_MAP
template <class Key, class Value> using AbslMap = absl::flat_hash_map<Key, Value>;
#endif
template <class Key, class Value> using StdMap = std::unordered_map<Key, Value>;

// Objects alive, and their identifiers in the order of the questions. They stay alive to the end,
// so that the repetitions of a benchmark may alternate with others.
struct Live {
  std::vector<tqBase*> objects;
  std::vector<unsigned> oids;
};

// `count` objects, of which each is the one that survived, any one, of `outOf` made together.
const Live& live(std::int64_t count, int outOf) {
  static std::map<std::pair<std::int64_t, int>, Live> made;
  Live& result = made[{count, outOf}];
  if (!result.objects.empty()) return result;
  std::mt19937 random(6);
  std::vector<std::unique_ptr<tqBase>> together(static_cast<std::size_t>(outOf));
  for (std::int64_t i = 0; i < count; ++i) {
    for (auto& object : together) object.reset(new tqBase(1));
    result.objects.push_back(together[random() % together.size()].release());
    result.oids.push_back(result.objects.back()->oid());
  }
  result.oids = shuffled(std::move(result.oids), 1);
  return result;
}

// The registries, filled with the same objects under the same identifiers.

struct TqRegistry {
  TqRegistry(const Live&) {}
  tqBase* find(unsigned oid) const { return oid_to_base(static_cast<int>(oid)); }
};

template <template <class, class> class Map> struct MapRegistry {
  MapRegistry(const Live& live) {
    for (tqBase* object : live.objects) map.emplace(object->oid(), object);
  }
  tqBase* find(unsigned oid) const {
    const auto found = map.find(oid);
    return found == map.end() ? nullptr : found->second;
  }
  Map<unsigned, tqBase*> map;
};

struct ArrayRegistry {
  ArrayRegistry(const Live& live) : slots(live.objects.back()->oid() + 1) {
    for (tqBase* object : live.objects) slots[object->oid()] = object;
  }
  tqBase* find(unsigned oid) const { return oid < slots.size() ? slots[oid] : nullptr; }
  std::vector<tqBase*> slots;
};

template <class Registry> void find(benchmark::State& state, const Live& live) {
  static std::map<const Live*, std::unique_ptr<Registry>> filled;
  std::unique_ptr<Registry>& made = filled[&live];
  if (!made) made.reset(new Registry(live));
  const Registry& registry = *made;
  for (tqBase* object : live.objects)
    if (registry.find(object->oid()) != object) return state.SkipWithError("wrong object");
  if (registry.find(0) || registry.find(~0u)) return state.SkipWithError("found what is not");
  std::uintptr_t sum = 0;  // so that what is found is read as well
  for (auto _ : state) {
    for (unsigned oid : live.oids) sum += reinterpret_cast<std::uintptr_t>(registry.find(oid));
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Redraw: look up every live object once, in an order unrelated to its creation.
template <class Registry> void FindLiveOID(benchmark::State& state) {
  find<Registry>(state, live(state.range(0), 1));
}
#define TQ_SIZES Arg(1000)->Arg(100000)->Arg(10000000)
TQ_BENCH(FindLiveOID, TqRegistry, "tq")->TQ_SIZES;
#ifdef TQ_PEER_BOOST_MAP
TQ_BENCH(FindLiveOID, MapRegistry<BoostMap>, "boost flat map")->TQ_SIZES;
#endif
#ifdef TQ_PEER_ABSL_MAP
TQ_BENCH(FindLiveOID, MapRegistry<AbslMap>, "absl flat map")->TQ_SIZES;
#endif
TQ_BENCH(FindLiveOID, MapRegistry<StdMap>, "std map")->TQ_SIZES;
TQ_BENCH(FindLiveOID, ArrayRegistry, "plain array")->TQ_SIZES;
#undef TQ_SIZES

// The same after a long session: of 16 objects made together, one is left.
template <class Registry> void FindSurvivingOID(benchmark::State& state) {
  find<Registry>(state, live(state.range(0), 16));
}
#define TQ_SIZES Arg(1000)->Arg(100000)->Arg(1000000)
TQ_BENCH(FindSurvivingOID, TqRegistry, "tq")->TQ_SIZES;
#ifdef TQ_PEER_BOOST_MAP
TQ_BENCH(FindSurvivingOID, MapRegistry<BoostMap>, "boost flat map")->TQ_SIZES;
#endif
#ifdef TQ_PEER_ABSL_MAP
TQ_BENCH(FindSurvivingOID, MapRegistry<AbslMap>, "absl flat map")->TQ_SIZES;
#endif
TQ_BENCH(FindSurvivingOID, MapRegistry<StdMap>, "std map")->TQ_SIZES;
TQ_BENCH(FindSurvivingOID, ArrayRegistry, "plain array")->TQ_SIZES;
#undef TQ_SIZES

// Objects that enter a registry when made and leave it when destroyed. One registry serves all
// iterations, as it serves a process.

struct TqOwner {
  using Object = tqBase;
  Object* make() { return new tqBase(1); }
  void destroy(Object* object) { delete object; }
  static bool knows(Object* object) { return oid_to_base(static_cast<int>(object->oid())); }
};

// Of the size of a tqBase, and destroyed through a virtual function as well.
struct Plain {
  explicit Plain(unsigned identifier) : id(identifier) {}
  virtual ~Plain() = default;
  unsigned id;
  unsigned source = 0;
  int selected = 0;
  void* watchers = nullptr;
};
static_assert(sizeof(Plain) == sizeof(tqBase));

template <template <class, class> class Map> struct MapOwner {
  using Object = Plain;
  Object* make() {
    Plain* const object = new Plain(++counter);
    map.emplace(object->id, object);
    return object;
  }
  void destroy(Object* object) {
    map.erase(object->id);
    delete object;
  }
  bool knows(Object* object) const { return map.count(object->id) == 1; }
  Map<unsigned, Plain*> map;
  unsigned counter = 0;
};

struct SharedOwner {
  using Object = Plain;
  Object* make() {
    const unsigned id = ++counter;
    return map.emplace(id, std::make_shared<Plain>(id)).first->second.get();
  }
  void destroy(Object* object) { map.erase(object->id); }
  bool knows(Object* object) const { return map.count(object->id) == 1; }
  std::unordered_map<unsigned, std::shared_ptr<Plain>> map;
  unsigned counter = 0;
};

#ifdef TQ_PEER_QT
struct QtOwner {
  using Object = QObject;
  Object* make() { return new QObject; }
  void destroy(Object* object) { delete object; }
  static bool knows(Object* object) { return !object->signalsBlocked(); }
};
#endif

// A measuring tool of the application: made, used once and gone (1); a structure read in and
// closed again (100000).
template <class Owner> void CreateDestroy(benchmark::State& state) {
  static Owner owner;
  std::vector<typename Owner::Object*> objects(static_cast<std::size_t>(state.range(0)));
  for (auto& object : objects) object = owner.make();
  for (auto& object : objects)
    if (!owner.knows(object)) return state.SkipWithError("unknown object");
  for (auto& object : objects) owner.destroy(object);
  for (auto _ : state) {
    for (auto& object : objects) benchmark::DoNotOptimize(object = owner.make());
    for (auto& object : objects) owner.destroy(object);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
TQ_BENCH(CreateDestroy, TqOwner, "tq")->Arg(1)->Arg(100000);
#ifdef TQ_PEER_BOOST_MAP
TQ_BENCH(CreateDestroy, MapOwner<BoostMap>, "new + boost flat map")->Arg(1)->Arg(100000);
#endif
TQ_BENCH(CreateDestroy, SharedOwner, "shared_ptr in std map")->Arg(1)->Arg(100000);
#ifdef TQ_PEER_QT
TQ_BENCH(CreateDestroy, QtOwner, "QObject")->Arg(1)->Arg(100000);
#endif

// What the registry costs in memory, per object alive and beyond the object's own bytes; blocks
// count as what the allocator gives away, its headers included.

std::size_t allocated() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

template <class Owner> void memory(benchmark::State& state, unsigned outOf) {
  const auto count = static_cast<std::size_t>(state.range(0));
  std::vector<typename Owner::Object*> objects(count);
  double bytes = 0;
  for (auto _ : state) {
    const std::size_t before = allocated();
    const auto owner = std::make_unique<Owner>();
    for (auto& object : objects) object = owner->make();
    for (std::size_t i = 0; i < count; ++i)
      if (i % outOf != 0) owner->destroy(objects[i]);
    const double alive = static_cast<double>((count + outOf - 1) / outOf);
    bytes = static_cast<double>(allocated() - before) / alive - sizeof(typename Owner::Object);
    for (std::size_t i = 0; i < count; i += outOf) owner->destroy(objects[i]);
  }
  state.counters["bytes"] = bytes;
}

// Once only: a registry that has grown stays as large as it is.
#define TQ_ONCE Iterations(1)->Repetitions(1)
// A large structure.
template <class Owner> void MemoryPerObject(benchmark::State& state) { memory<Owner>(state, 1); }
TQ_BENCH(MemoryPerObject, TqOwner, "tq")->Arg(1000000)->TQ_ONCE;
#ifdef TQ_PEER_BOOST_MAP
TQ_BENCH(MemoryPerObject, MapOwner<BoostMap>, "boost flat map")->Arg(1000000)->TQ_ONCE;
#endif
#ifdef TQ_PEER_ABSL_MAP
TQ_BENCH(MemoryPerObject, MapOwner<AbslMap>, "absl flat map")->Arg(1000000)->TQ_ONCE;
#endif
TQ_BENCH(MemoryPerObject, MapOwner<StdMap>, "std map")->Arg(1000000)->TQ_ONCE;

// What is left of it when one object in 16 is kept.
template <class Owner> void MemoryPerSurvivor(benchmark::State& state) { memory<Owner>(state, 16); }
TQ_BENCH(MemoryPerSurvivor, TqOwner, "tq")->Arg(1000000)->TQ_ONCE;
#ifdef TQ_PEER_BOOST_MAP
TQ_BENCH(MemoryPerSurvivor, MapOwner<BoostMap>, "boost flat map")->Arg(1000000)->TQ_ONCE;
#endif
#ifdef TQ_PEER_ABSL_MAP
TQ_BENCH(MemoryPerSurvivor, MapOwner<AbslMap>, "absl flat map")->Arg(1000000)->TQ_ONCE;
#endif
TQ_BENCH(MemoryPerSurvivor, MapOwner<StdMap>, "std map")->Arg(1000000)->TQ_ONCE;

#undef TQ_ONCE

// Foreign objects that have a handle identifier, in the order of the questions.
const std::vector<const void*>& handles(std::int64_t count) {
  static std::map<std::int64_t, std::vector<const void*>> made;
  std::vector<const void*>& result = made[count];
  if (!result.empty()) return result;
  for (std::int64_t i = 0; i < count; ++i) {
    void* const handle = new double[4];
    result.push_back(handle);
    make_handle_oid(handle);
  }
  return result = shuffled(std::move(result), 2);
}

struct TqHandles {
  TqHandles(const std::vector<const void*>&) {}
  int find(const void* handle) const { return handle_to_oid(handle); }
};

template <template <class, class> class Map> struct MapHandles {
  MapHandles(const std::vector<const void*>& handles) {
    for (const void* handle : handles) map.emplace(handle, handle_to_oid(handle));
  }
  int find(const void* handle) const {
    const auto found = map.find(handle);
    return found == map.end() ? 0 : found->second;
  }
  Map<const void*, int> map;
};

// An event of the window system names a foreign object; the application wants its identifier.
template <class Handles> void HandleToOID(benchmark::State& state) {
  static std::map<std::int64_t, std::unique_ptr<Handles>> filled;
  const std::vector<const void*>& questions = handles(state.range(0));
  std::unique_ptr<Handles>& made = filled[state.range(0)];
  if (!made) made.reset(new Handles(questions));
  for (const void* handle : questions)
    if (oid_to_handle(made->find(handle)) != handle) return state.SkipWithError("wrong handle");
  if (made->find(&state) != 0) return state.SkipWithError("found what is not");
  unsigned sum = 0;
  for (auto _ : state) {
    for (const void* handle : questions) sum += static_cast<unsigned>(made->find(handle));
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
TQ_BENCH(HandleToOID, TqHandles, "tq")->Arg(100000)->Arg(1000000);
#ifdef TQ_PEER_BOOST_MAP
TQ_BENCH(HandleToOID, MapHandles<BoostMap>, "boost flat map")->Arg(100000)->Arg(1000000);
#endif
#ifdef TQ_PEER_ABSL_MAP
TQ_BENCH(HandleToOID, MapHandles<AbslMap>, "absl flat map")->Arg(100000)->Arg(1000000);
#endif
TQ_BENCH(HandleToOID, MapHandles<StdMap>, "std map")->Arg(100000)->Arg(1000000);

}  // namespace

BENCHMARK_MAIN();
