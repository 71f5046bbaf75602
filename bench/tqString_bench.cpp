#include "peers.h"

#include "tqString.h"

#include <cstring>
#include <memory>
#include <string_view>
#include <unordered_set>

#ifdef TQ_PEER_BOOST_MAP
#include <boost/flyweight.hpp>
#include <boost/flyweight/no_locking.hpp>
#include <boost/unordered/unordered_flat_set.hpp>
#endif
#ifdef TQ_PEER_ABSL_MAP
#include <absl/container/flat_hash_set.h>
#endif

namespace {

// What interns a text: gives the address of the one copy of its characters, or what holds it.

const char* characters(const char* handle) { return handle; }

struct Tq {
  using Handle = const char*;
  // The library interns for the whole process: start over.
  Tq() {
    delete std::exchange(tqUniqueString::table_, nullptr);
    delete std::exchange(tqUniqueString::pool_, nullptr);
  }
  const char* intern(const char* text) { return tqUniqueString(text).data; }
};

template <class Set> class Pooled {
public:
  using Handle = const char*;
  const char* intern(const char* text) {
    const std::string_view sought(text);
    if (const auto found = texts_.find(sought); found != texts_.end()) return found->data();
    const std::string_view stored(store(sought), sought.size());
    texts_.insert(stored);
    return stored.data();
  }

private:
  const char* store(std::string_view text) {
    if (used_ + text.size() > blockSize) {
      blocks_.push_back(std::make_unique<char[]>(blockSize));
      used_ = 0;
    }
    char* const place = blocks_.back().get() + used_;
    std::memcpy(place, text.data(), text.size());
    used_ += text.size();
    return place;
  }

  static constexpr std::size_t blockSize = 4096;
  Set texts_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t used_ = blockSize;
};
using Std = Pooled<std::unordered_set<std::string_view>>;
#ifdef TQ_PEER_BOOST_MAP
using Boost = Pooled<boost::unordered_flat_set<std::string_view>>;

// The default configuration, but without locks: one hashed factory for the process, in which a text
// stays as long as a flyweight of it.
struct Flyweight {
  using Handle = boost::flyweight<std::string, boost::flyweights::no_locking>;
  Handle intern(const char* text) { return Handle(text); }
};
const char* characters(const Flyweight::Handle& handle) { return handle.get().data(); }
#endif
#ifdef TQ_PEER_ABSL_MAP
using Absl = Pooled<absl::flat_hash_set<std::string_view>>;
#endif

// Names of atoms with their residues, alike but for a few digits.
std::vector<std::string> names(std::int64_t count) {
  std::vector<std::string> all;
  for (std::int64_t i = 0; i < count; ++i)
    all.push_back("CHAIN-" + std::to_string(i / 5000) + ":RES" + std::to_string(i / 12) + ".ATOM" +
                  std::to_string(i % 12));
  return all;
}

template <class Interner> using Handles = std::vector<typename Interner::Handle>;

template <class Interner>
void internAll(Interner& interner, const std::vector<std::string>& texts,
               Handles<Interner>& handles) {
  handles.reserve(texts.size());
  for (const std::string& text : texts) handles.push_back(interner.intern(text.c_str()));
}

// Interns the texts for the first time, and says whether each stays at one address of its own.
template <class Interner>
bool internsEach(Interner& interner, const std::vector<std::string>& texts,
                 Handles<Interner>& handles) {
  internAll(interner, texts, handles);
  std::unordered_set<const char*> addresses;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const char* const stored = characters(handles[i]);
    if (texts[i].compare(0, texts[i].size(), stored, texts[i].size()) != 0) return false;
    addresses.insert(stored);
  }
  for (const std::string& text : shuffled(texts, 2))
    if (addresses.count(characters(interner.intern(text.c_str()))) != 1) return false;
  return addresses.size() == texts.size();
}

// A file is read whose names are known, in an order of its own.
template <class Interner> void InternKnown(benchmark::State& state) {
  Interner interner;
  Handles<Interner> handles;
  const std::vector<std::string> texts = names(state.range(0));
  if (!internsEach(interner, texts, handles)) return state.SkipWithError("wrong text");
  const std::vector<std::string> sought = shuffled(texts, 1);
  for (auto _ : state)
    for (const std::string& text : sought) benchmark::DoNotOptimize(interner.intern(text.c_str()));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The first file: every name is new, and atoms hold it.
template <class Interner> void InternNew(benchmark::State& state) {
  const std::vector<std::string> texts = shuffled(names(state.range(0)), 1);
  {
    Interner interner;
    Handles<Interner> handles;
    if (!internsEach(interner, texts, handles)) return state.SkipWithError("wrong text");
  }
  for (auto _ : state) {
    Interner interner;
    Handles<Interner> handles;
    internAll(interner, texts, handles);
    benchmark::DoNotOptimize(handles.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

struct TqHash {
  static std::size_t hash(const char* text, int n) { return tqString(text, n).hash(); }
};
struct StdHash {
  static std::size_t hash(const char* text, int n) {
    return std::hash<std::string_view>()({text, static_cast<std::size_t>(n)});
  }
};

// Texts of one length, each hashed once.
template <class Hasher> void Hash(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  constexpr int count = 64;
  std::mt19937 random(4);
  std::vector<char> characters(static_cast<std::size_t>(n) * count);
  for (char& c : characters) c = static_cast<char>(random());
  const std::string copy(characters.data(), characters.size());
  for (int i = 0; i < count; ++i)
    if (Hasher::hash(characters.data() + i * n, n) != Hasher::hash(copy.data() + i * n, n))
      return state.SkipWithError("equal texts hash differently");
  for (auto _ : state)
    for (int i = 0; i < count; ++i)
      benchmark::DoNotOptimize(Hasher::hash(characters.data() + i * n, n));
  state.SetItemsProcessed(state.iterations() * count);
}

TQ_BENCH(InternKnown, Tq, "tq")->Arg(10000)->Arg(100000);
TQ_BENCH(InternKnown, Std, "std set")->Arg(10000)->Arg(100000);
TQ_BENCH(InternNew, Tq, "tq")->Arg(10000)->Arg(100000);
TQ_BENCH(InternNew, Std, "std set")->Arg(10000)->Arg(100000);
#ifdef TQ_PEER_BOOST_MAP
TQ_BENCH(InternKnown, Boost, "boost flat set")->Arg(10000)->Arg(100000);
TQ_BENCH(InternNew, Boost, "boost flat set")->Arg(10000)->Arg(100000);
TQ_BENCH(InternKnown, Flyweight, "boost flyweight")->Arg(10000)->Arg(100000);
TQ_BENCH(InternNew, Flyweight, "boost flyweight")->Arg(10000)->Arg(100000);
#endif
#ifdef TQ_PEER_ABSL_MAP
TQ_BENCH(InternKnown, Absl, "absl flat set")->Arg(10000)->Arg(100000);
TQ_BENCH(InternNew, Absl, "absl flat set")->Arg(10000)->Arg(100000);
#endif
TQ_BENCH(Hash, TqHash, "tq")->Arg(12)->Arg(32)->Arg(1024);
TQ_BENCH(Hash, StdHash, "std hash")->Arg(12)->Arg(32)->Arg(1024);

}  // namespace

BENCHMARK_MAIN();
