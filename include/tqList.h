#ifndef TQ_TQLIST_H
#define TQ_TQLIST_H

#include "List.h"

/// \file tqList.h
/// The growth ladder and the range error of the lists, for list code of the application's own.

/// As `ProtoList::bestNewCount`.
TQ_API int tqListImpl_best_new_count(int n, unsigned elementSize);

/// Writes "tqList internal error: list index %d out of range\n" to standard error and aborts.
[[noreturn]] TQ_API void tqListImpl_range_error(int i);

#endif
