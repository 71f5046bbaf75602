#ifndef TQ_BENCH_PEERS_H
#define TQ_BENCH_PEERS_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#if __has_include(<boost/unordered/unordered_flat_map.hpp>)
#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/version.hpp>
#define TQ_PEER_BOOST_MAP 1
#endif
#if __has_include(<absl/container/flat_hash_map.h>)
#include <absl/container/flat_hash_map.h>
#define TQ_PEER_ABSL_MAP 1
#endif

/// \file peers.h
/// What the benchmark programs share: naming, seeded data, and the hash maps that stand for what an
/// application would use in place of the library's tables.

/// Registers `Job<Peer>` as Job/name, to which each argument adds a size.
#define TQ_BENCH(Job, Peer, name) BENCHMARK_TEMPLATE(Job, Peer)->Name(#Job "/" name)

/// Notes the version of a peer in the context of the results.
inline bool noteVersion(const std::string& peer, const std::string& version) {
  benchmark::AddCustomContext("version of " + peer, version);
  return true;
}

#ifdef TQ_PEER_BOOST_MAP
inline const bool boostNoted = noteVersion("boost", BOOST_LIB_VERSION);
#endif
#ifdef TQ_PEER_ABSL_MAP
inline const bool abslNoted = noteVersion("absl", std::to_string(ABSL_LTS_RELEASE_VERSION));
#endif
inline const bool compilerNoted = noteVersion("compiler",
#ifdef __clang__
                                              __VERSION__);
#else
                                              "GCC " __VERSION__);
#endif

/// The same items in an order that has nothing to do with theirs.
template <class T> std::vector<T> shuffled(std::vector<T> items, unsigned seed) {
  std::mt19937 random(seed);
  std::shuffle(items.begin(), items.end(), random);
  return items;
}

#endif
