#include "peers.h"

#include "Trigger.h"

#include <memory>
#include <numeric>

#if __has_include(<sigc++/sigc++.h>)
#include <sigc++/sigc++.h>
#include <sigc++config.h>
#define TQ_PEER_SIGC 1
static const bool sigcNoted = noteVersion("sigc++", std::to_string(SIGCXX_MAJOR_VERSION) + "." +
                                                        std::to_string(SIGCXX_MINOR_VERSION));
#endif
#if __has_include(<boost/signals2.hpp>)
#include <boost/signals2.hpp>
#define TQ_PEER_SIGNALS2 1
#endif
#if __has_include(<QObject>)
#include <QObject>
#define TQ_PEER_QT 1
static const bool qtNoted = noteVersion("Qt", QT_VERSION_STR);
#endif

namespace {

// Of each peer, a source of events and a watcher that attaches itself to it, is called for each
// event, and leaves the source when it is destroyed.

struct Tq {
  static constexpr int changed = 0x2001;
  struct Source : tqBase {
    Source() : tqBase(1) {}
    void notify() { doTrigger(changed); }
  };
  struct Watcher : tqImmediateTrigger {
    explicit Watcher(Source& source) : tqImmediateTrigger(TRIGGER_PLAIN) {
      addEvent(changed);
      callback = [](tqBase*, tqTrigger* self, int) { ++static_cast<Watcher*>(self)->heard; };
      addObject(&source);
    }
    int heard = 0;
  };
};

#ifdef TQ_PEER_SIGC
struct Sigc {
  struct Source {
    void notify() { signal.emit(1); }
    sigc::signal<void(int)> signal;
  };
  struct Watcher : sigc::trackable {
    explicit Watcher(Source& source) {
      source.signal.connect(sigc::mem_fun(*this, &Watcher::hear));
    }
    void hear(int) { ++heard; }
    int heard = 0;
  };
};
#endif

#ifdef TQ_PEER_SIGNALS2
struct Signals2 {
  struct Source {
    void notify() { signal(1); }
    boost::signals2::signal<void(int)> signal;
  };
  struct Watcher {
    explicit Watcher(Source& source)
        : connection(source.signal.connect([this](int) { ++heard; })) {}
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;
    boost::signals2::scoped_connection connection;
    int heard = 0;
  };
};
#endif

#ifdef TQ_PEER_QT
struct Qt {
  // Of all signals `destroyed` is the one that can be sent from outside, with no code generated.
  struct Source : QObject {
    void notify() { destroyed(nullptr); }
  };
  struct Watcher : QObject {
    explicit Watcher(Source& source) {
      connect(&source, &QObject::destroyed, this, &Watcher::hear);
    }
    void hear(QObject*) { ++heard; }
    int heard = 0;
  };
};
#endif

template <class Peer> struct Watched {
  explicit Watched(std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i)
      watchers.emplace_back(new typename Peer::Watcher(source));
  }
  bool allHeard(int times) const {
    return std::all_of(watchers.begin(), watchers.end(),
                       [times](const auto& watcher) { return watcher->heard == times; });
  }
  typename Peer::Source source;
  std::vector<std::unique_ptr<typename Peer::Watcher>> watchers;
};

// An atom moves, and the monitors of it are told.
template <class Peer> void Event(benchmark::State& state) {
  Watched<Peer> watched(state.range(0));
  watched.source.notify();
  if (!watched.allHeard(1)) return state.SkipWithError("event lost");
  for (auto _ : state) watched.source.notify();
  state.SetItemsProcessed(state.iterations());
}
#define TQ_SIZES Arg(1)->Arg(10)->Arg(1000)
TQ_BENCH(Event, Tq, "tq")->TQ_SIZES;
#ifdef TQ_PEER_SIGC
TQ_BENCH(Event, Sigc, "sigc++")->TQ_SIZES;
#endif
#ifdef TQ_PEER_SIGNALS2
TQ_BENCH(Event, Signals2, "boost signals2")->TQ_SIZES;
#endif
#ifdef TQ_PEER_QT
TQ_BENCH(Event, Qt, "Qt signal")->TQ_SIZES;
#endif
#undef TQ_SIZES

// Monitors are attached to one object and destroyed again.
enum Order { FirstToLast, LastToFirst, AnyOrder };

template <class Peer, Order order> void attachAndDestroy(benchmark::State& state) {
  std::vector<std::size_t> leaving(static_cast<std::size_t>(state.range(0)));
  std::iota(leaving.begin(), leaving.end(), std::size_t{0});
  if (order == LastToFirst) std::reverse(leaving.begin(), leaving.end());
  if (order == AnyOrder) leaving = shuffled(std::move(leaving), 4);
  {
    Watched<Peer> watched(state.range(0));
    watched.watchers[leaving[0]].reset(new typename Peer::Watcher(watched.source));
    watched.source.notify();
    if (!watched.allHeard(1)) return state.SkipWithError("event lost");
  }
  for (auto _ : state) {
    Watched<Peer> watched(state.range(0));
    for (std::size_t i : leaving) watched.watchers[i].reset();
  }
  state.SetItemsProcessed(state.iterations());
}
template <class Peer> void LeaveFirstToLast(benchmark::State& state) {
  attachAndDestroy<Peer, FirstToLast>(state);
}
template <class Peer> void LeaveLastToFirst(benchmark::State& state) {
  attachAndDestroy<Peer, LastToFirst>(state);
}
template <class Peer> void LeaveInAnyOrder(benchmark::State& state) {
  attachAndDestroy<Peer, AnyOrder>(state);
}
#define TQ_LEAVE(Peer, name)                                                                       \
  TQ_BENCH(LeaveFirstToLast, Peer, name)->Arg(10000)->Unit(benchmark::kMillisecond);               \
  TQ_BENCH(LeaveLastToFirst, Peer, name)->Arg(10000)->Unit(benchmark::kMillisecond);               \
  TQ_BENCH(LeaveInAnyOrder, Peer, name)->Arg(10000)->Unit(benchmark::kMillisecond)
TQ_LEAVE(Tq, "tq");
#ifdef TQ_PEER_SIGC
TQ_LEAVE(Sigc, "sigc++");
#endif
#ifdef TQ_PEER_SIGNALS2
TQ_LEAVE(Signals2, "boost signals2");
#endif
#ifdef TQ_PEER_QT
TQ_LEAVE(Qt, "Qt signal");
#endif

}  // namespace

BENCHMARK_MAIN();
