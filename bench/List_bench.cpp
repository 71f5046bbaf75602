#include "peers.h"

#include "List.h"

#if __has_include(<QList>)
#include <QList>
#define TQ_PEER_QT 1
static const bool qtNoted = noteVersion("Qt", QT_VERSION_STR);
#endif

namespace {

using Item = tqBase*;

// Lists store addresses and never look behind them, so any will do.
Item item(std::int64_t i) { return reinterpret_cast<Item>((i + 1) * 64); }

// One list of the kind `List`, the operations spelt as that kind spells them.

struct Tq {
  int count() const { return list.count(); }
  Item at(int i) const { return list.item(i); }
  void append(Item item) { list.append(item); }
  bool holds(Item item) const { return list.isMember(item) != 0; }
  void swapRemove(int i) { list.remove(i); }
  void keepOrder() { list.ordered(1); }
  void removeFirst() { list.remove(0); }
  tqBaseList list{0};
};

template <class List> struct Sequence {
  int count() const { return static_cast<int>(list.size()); }
  Item at(int i) const { return list.at(static_cast<typename List::size_type>(i)); }
  void append(Item item) { list.push_back(item); }
  bool holds(Item item) const { return std::find(list.begin(), list.end(), item) != list.end(); }
  void swapRemove(int i) {
    list[static_cast<typename List::size_type>(i)] = list.back();
    list.pop_back();
  }
  void keepOrder() {}
  void removeFirst() { list.erase(list.begin()); }
  List list;
};
using Vector = Sequence<std::vector<Item>>;
#ifdef TQ_PEER_QT
using Qt = Sequence<QList<Item>>;
#endif

template <class List> void fill(List& list, std::int64_t count) {
  for (std::int64_t i = 0; i < count; ++i) list.append(item(i));
}

// The children of a node: a new list, filled one by one.
template <class List> void Append(benchmark::State& state) {
  List checked;
  fill(checked, state.range(0));
  for (int i = 0; i < state.range(0); ++i)
    if (checked.count() != state.range(0) || checked.at(i) != item(i))
      return state.SkipWithError("wrong item");
  for (auto _ : state) {
    List list;
    fill(list, state.range(0));
    benchmark::DoNotOptimize(list);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Is this atom in the selection? For atoms all along the list.
template <class List> void Member(benchmark::State& state) {
  List list;
  fill(list, state.range(0));
  constexpr int questions = 16;
  Item wanted[questions];
  for (int i = 0; i < questions; ++i) {
    wanted[i] = item((state.range(0) - 1) * i / (questions - 1));
    if (!list.holds(wanted[i])) return state.SkipWithError("not found");
  }
  if (list.holds(item(state.range(0)))) return state.SkipWithError("found what is not");
  for (auto _ : state)
    for (Item& one : wanted) {
      benchmark::DoNotOptimize(one);
      benchmark::DoNotOptimize(list.holds(one));
    }
  state.SetItemsProcessed(state.iterations() * questions);
}

// Atoms leave and enter a selection, at places that follow no order.
template <class List> void SwapRemoveAppend(benchmark::State& state) {
  List list;
  fill(list, state.range(0));
  std::vector<int> places(1024);
  std::mt19937 random(3);
  for (int& place : places)
    place = static_cast<int>(random() % static_cast<unsigned>(list.count()));
  const Item last = list.at(list.count() - 1);
  list.swapRemove(0);
  list.append(item(0));
  if (list.at(0) != last || list.at(list.count() - 1) != item(0))
    return state.SkipWithError("wrong item");
  for (auto _ : state)
    for (int place : places) {
      const Item taken = list.at(place);
      list.swapRemove(place);
      list.append(taken);
      benchmark::ClobberMemory();
    }
  state.SetItemsProcessed(state.iterations() * std::int64_t{1024});
}

// A queue: the first leaves, one comes at the end.
template <class List> void FirstOffOrdered(benchmark::State& state) {
  List list;
  list.keepOrder();
  fill(list, state.range(0));
  list.removeFirst();
  list.append(item(0));
  if (list.at(0) != item(1) || list.at(list.count() - 1) != item(0))
    return state.SkipWithError("wrong item");
  for (auto _ : state) {
    const Item first = list.at(0);
    list.removeFirst();
    list.append(first);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations());
}

TQ_BENCH(Append, Tq, "tq")->Arg(12)->Arg(1000000);
TQ_BENCH(Append, Vector, "std vector")->Arg(12)->Arg(1000000);
TQ_BENCH(Member, Tq, "tq")->Arg(1000)->Arg(10000000);
TQ_BENCH(Member, Vector, "std vector")->Arg(1000)->Arg(10000000);
TQ_BENCH(SwapRemoveAppend, Tq, "tq")->Arg(1000);
TQ_BENCH(SwapRemoveAppend, Vector, "std vector")->Arg(1000);
TQ_BENCH(FirstOffOrdered, Tq, "tq")->Arg(1000)->Arg(100000);
TQ_BENCH(FirstOffOrdered, Vector, "std vector")->Arg(1000)->Arg(100000);
#ifdef TQ_PEER_QT
TQ_BENCH(Append, Qt, "QList")->Arg(12)->Arg(1000000);
TQ_BENCH(Member, Qt, "QList")->Arg(1000)->Arg(10000000);
TQ_BENCH(SwapRemoveAppend, Qt, "QList")->Arg(1000);
TQ_BENCH(FirstOffOrdered, Qt, "QList")->Arg(1000)->Arg(100000);
#endif

}  // namespace

BENCHMARK_MAIN();
