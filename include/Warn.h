#ifndef TQ_WARN_H
#define TQ_WARN_H

#include "tq_export.h"

/// \file Warn.h
/// Diagnostics: error, warning, debug and trace messages on standard error, gated by one
/// process-wide debug level that is 0 (silent) until the application raises it. Traces indent by a
/// process-wide nesting depth, so that nested operations read as a tree.
///
/// No function here adds a line end, stops the program or reports a failure of its own. Formats and
/// arguments are those of `printf`, in the process's locale.

/// Sets the debug level that the functions below compare with.
///
/// Kept: the result is not the level replaced but the one in force at the first call ever (0), on
/// every call; callers use it to ask what the process started with. `debug_lvlget` gives the
/// present level.
extern "C" TQ_API int debug_lvlset(int level);

/// The present debug level.
extern "C" TQ_API int debug_lvlget();

/// Writes "error: " and the message when the level is above 0.
TQ_API void Error(const char* format, ...) TQ_PRINTF(1, 2);

/// Writes "warning: " and the message when the level is above 0.
TQ_API void Warn(const char* format, ...) TQ_PRINTF(1, 2);

/// Writes "debug: " and the message when the level is 7 or more.
TQ_API void Debug(const char* format, ...) TQ_PRINTF(1, 2);

/// Writes the bare message, neither indented nor prefixed, when the level is 8 or more.
TQ_API void Print(const char* format, ...) TQ_PRINTF(1, 2);

/// Opens a traced operation when the level is 9 or more: writes "enter[NN]: " and the message, then
/// raises the nesting depth.
TQ_API void Enter(const char* format, ...) TQ_PRINTF(1, 2);

/// Closes what `Enter` opened, when the level is 9 or more: lowers the nesting depth, then writes
/// "leave[NN]: " and the message.
TQ_API void Leave(const char* format, ...) TQ_PRINTF(1, 2);

/// As `Enter`, at any level. Pair it with `After`: a mixed pair leaves the depth unbalanced
/// whenever the level is below 9.
TQ_API void Before(const char* format, ...) TQ_PRINTF(1, 2);

/// As `Leave`, at any level.
TQ_API void After(const char* format, ...) TQ_PRINTF(1, 2);

/// Writes "out of memory" to standard error, at any level, and ends the process with `abort()`.
[[noreturn]] TQ_API void tqOutOfMemory();

/// Passes an allocation on, or ends the process through `tqOutOfMemory` when it is null.
template <class T> T* tqAllocated(T* memory) {
  if (!memory) tqOutOfMemory();
  return memory;
}

#endif
