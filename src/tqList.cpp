#include "tqList.h"

#include <cstdio>

int tqListImpl_best_new_count(int n, unsigned elementSize) {
  return ProtoList::bestNewCount(n, elementSize);
}

void tqListImpl_range_error(int i) {
  std::fprintf(stderr, "tqList internal error: list index %d out of range\n", i);
  std::abort();
}
