#include "peers.h"

#include "AttrValue.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <strings.h>

#if __has_include(<fmt/core.h>)
#include <fmt/core.h>
#define TQ_PEER_FMT 1
static const bool fmtNoted = noteVersion("fmt", std::to_string(FMT_VERSION));
#endif

namespace {

constexpr int roomSize = 80;

// Write a number, terminated, where it is to stand.

struct Tq {
  template <class Number> static void write(Number number, char* out) {
    AttrValue(number).writeToString(out, roomSize);
  }
};

struct Sprintf {
  static void write(int number, char* out) { std::snprintf(out, roomSize, "%d", number); }
  static void write(float number, char* out) {
    std::snprintf(out, roomSize, "%.8G", static_cast<double>(number));
  }
  static void write(double number, char* out) { std::snprintf(out, roomSize, "%.17G", number); }
};

// Lower-case letters: as good for a program that need not match old files.
struct ToChars {
  static void write(int number, char* out) { *std::to_chars(out, out + roomSize, number).ptr = 0; }
  static void write(float number, char* out) { write(number, 8, out); }
  static void write(double number, char* out) { write(number, 17, out); }

private:
  static void write(double number, int digits, char* out) {
    *std::to_chars(out, out + roomSize, number, std::chars_format::general, digits).ptr = 0;
  }
};

#ifdef TQ_PEER_FMT
struct Fmt {
  static void write(int number, char* out) { *fmt::format_to(out, "{:d}", number) = 0; }
  static void write(float number, char* out) {
    *fmt::format_to(out, "{:.8G}", static_cast<double>(number)) = 0;
  }
  static void write(double number, char* out) { *fmt::format_to(out, "{:.17G}", number) = 0; }
};
#endif

// Half of them coordinates, up to 512 with all digits, half of many sizes; integers of 1 to 10
// digits.
template <class Number> std::vector<Number> numbers() {
  std::mt19937_64 random(1);
  std::vector<Number> result;
  for (int i = 0; i < 1000; ++i) {
    const auto bits = static_cast<std::int64_t>(random());
    if constexpr (std::is_integral_v<Number>)
      result.push_back(static_cast<Number>(bits >> (32 + i % 32)));
    else
      result.push_back(static_cast<Number>(
          std::ldexp(static_cast<double>(bits), i % 2 ? -54 : -63 + i % 200 - 100)));
  }
  return result;
}

// A file is written: the numbers, one after the other.
template <class Number, class Peer> void writeNumbers(benchmark::State& state) {
  char text[roomSize], expected[roomSize];
  const std::vector<Number> all = numbers<Number>();
  for (Number number : all) {
    Peer::write(number, text);
    Sprintf::write(number, expected);
    if (strcasecmp(text, expected) != 0) return state.SkipWithError("wrong text");
  }
  for (auto _ : state)
    for (Number number : all) {
      Peer::write(number, text);
      benchmark::DoNotOptimize(text);
    }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(all.size()));
}
template <class Peer> void WriteInt(benchmark::State& state) { writeNumbers<int, Peer>(state); }
template <class Peer> void WriteFloat(benchmark::State& state) { writeNumbers<float, Peer>(state); }
template <class Peer> void WriteDouble(benchmark::State& state) {
  writeNumbers<double, Peer>(state);
}

#define TQ_JOBS(Peer, name)                                                                        \
  TQ_BENCH(WriteDouble, Peer, name);                                                               \
  TQ_BENCH(WriteFloat, Peer, name);                                                                \
  TQ_BENCH(WriteInt, Peer, name)
TQ_JOBS(Tq, "tq");
TQ_JOBS(Sprintf, "sprintf");
TQ_JOBS(ToChars, "std::to_chars");
#ifdef TQ_PEER_FMT
TQ_JOBS(Fmt, "fmt");
#endif

}  // namespace

BENCHMARK_MAIN();
