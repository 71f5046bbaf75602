#include "List.h"

#include <climits>
#include <cstdio>

int ProtoList::bestNewCount(int n, unsigned elementSize) {
  // Each block and the 16-byte header of its allocator fill a power of two.
  constexpr unsigned smallest = 1u << 6, largest = 1u << 26, header = 16;
  const unsigned need = static_cast<unsigned>(n) * elementSize;
  if (elementSize == 0) return n;
  for (unsigned power = smallest; power <= largest; power *= 2)
    if (power - header > need) return static_cast<int>((power - header) / elementSize);
  return n;
}

int ProtoList::grownCount(int last) {
  if (last == INT_MAX) tqOutOfMemory();
  // From 2^30 elements on the byte count above wraps and answers a small number.
  const int best = bestNewCount(last + 1, 4);
  return best > last ? best : last + 1;
}

void ProtoList::rangeError(int i) {
  std::fprintf(stderr, "ProtoList internal error: index %d out of range\n", i);
  std::abort();
}

void ProtoList::noDeepCopy(const char* elementName, int count) {
  for (int i = 0; i < count; ++i) std::fprintf(stderr, "%s: no deep copy\n", elementName);
  std::abort();
}
