#include "peers.h"

#include "Copyable.h"

#include <memory>

namespace {

// A node that owns two others and shares a third with its neighbours, as atoms share the record of
// their element.
class Part : public tqCopyable {
public:
  static constexpr int links = 3;

  Part() { enlist(); }
  Part(const Part& other) : tqCopyable(other) {
    std::copy(other.parts, other.parts + links, parts);
    enlist();
  }
  Part& operator=(const Part&) = delete;

  tqCopyable* shallowCopy() const override { return new Part(*this); }
  void deepenShallowCopy() override {
    for (Part*& part : parts)
      if (part) part = static_cast<Part*>(part->deepCopy());
  }

  // The same copy with a memo of the caller's.
  template <class Memo> Part* copyWith(Memo& memo) const {
    const auto [place, isNew] = memo.try_emplace(this, nullptr);
    if (!isNew) return place->second;
    Part* const copy = new Part(*this);
    place->second = copy;  // before the parts: they move the places
    for (Part*& part : copy->parts)
      if (part) part = part->copyWith(memo);
    return copy;
  }

  // Destroys the parts made since `last` was the newest.
  static void destroyBackTo(Part* last) {
    while (newest != last) delete std::exchange(newest, newest->older_);
  }

  Part* parts[links] = {};
  static inline Part* newest = nullptr;

private:
  void enlist() { older_ = std::exchange(newest, this); }

  Part* older_ = nullptr;
};

// A binary tree of three quarters of the nodes, each of which refers to one of the others too.
Part* makeGraph(std::int64_t count) {
  const auto size = static_cast<std::size_t>(count);
  const std::size_t inTree = size - size / 4;
  std::vector<Part*> nodes(size);
  for (Part*& node : nodes) node = new Part;
  std::mt19937 random(5);
  for (std::size_t i = 0; i < inTree; ++i) {
    for (std::size_t child = 2 * i + 1; child <= 2 * i + 2 && child < inTree; ++child)
      nodes[i]->parts[child - 2 * i - 1] = nodes[child];
    // Each of the others is referred to at least once.
    nodes[i]->parts[2] = nodes[inTree + (i < size - inTree ? i : random() % (size - inTree))];
  }
  return nodes[0];
}

// Both have the same shape, sharing included, and no node in common.
bool sameShape(const Part* a, const Part* b, std::unordered_map<const Part*, const Part*>& pairs) {
  if (!a || !b) return a == b;
  const auto [pair, isNew] = pairs.emplace(a, b);
  if (!isNew) return pair->second == b;
  if (a == b) return false;
  for (int i = 0; i < Part::links; ++i)
    if (!sameShape(a->parts[i], b->parts[i], pairs)) return false;
  return true;
}

struct Tq {
  static Part* copy(Part* root) { return static_cast<Part*>(root->deepCopy()); }
};

template <class Memo> struct WithMemo {
  static Part* copy(Part* root) {
    Memo memo;
    return root->copyWith(memo);
  }
};
using StdMemo = WithMemo<std::unordered_map<const Part*, Part*>>;
#ifdef TQ_PEER_BOOST_MAP
using BoostMemo = WithMemo<boost::unordered_flat_map<const Part*, Part*>>;
#endif
#ifdef TQ_PEER_ABSL_MAP
using AbslMemo = WithMemo<absl::flat_hash_map<const Part*, Part*>>;
#endif

// Copy and paste of a residue, a chain, a structure. Small copies go in batches, so that stopping
// the clock while they are destroyed does not show.
template <class Peer> void DeepCopy(benchmark::State& state) {
  Part* const before = Part::newest;
  Part* const root = makeGraph(state.range(0));
  Part* const last = Part::newest;
  std::unordered_map<const Part*, const Part*> pairs;
  const Part* const copy = Peer::copy(root);
  if (!sameShape(root, copy, pairs) || static_cast<std::int64_t>(pairs.size()) != state.range(0))
    state.SkipWithError("wrong copy");
  Part::destroyBackTo(last);
  const std::int64_t batch = std::max<std::int64_t>(1, 10000 / state.range(0));
  for (auto _ : state) {
    for (std::int64_t i = 0; i < batch; ++i) benchmark::DoNotOptimize(Peer::copy(root));
    state.PauseTiming();
    Part::destroyBackTo(last);
    state.ResumeTiming();
  }
  Part::destroyBackTo(before);
  state.SetItemsProcessed(state.iterations() * batch * state.range(0));
}
#define TQ_SIZES Arg(10)->Arg(10000)->Arg(100000)->Arg(1000000)
TQ_BENCH(DeepCopy, Tq, "tq")->TQ_SIZES;
#ifdef TQ_PEER_BOOST_MAP
TQ_BENCH(DeepCopy, BoostMemo, "boost flat map")->TQ_SIZES;
#endif
#ifdef TQ_PEER_ABSL_MAP
TQ_BENCH(DeepCopy, AbslMemo, "absl flat map")->TQ_SIZES;
#endif
TQ_BENCH(DeepCopy, StdMemo, "std map")->TQ_SIZES;

}  // namespace

BENCHMARK_MAIN();
