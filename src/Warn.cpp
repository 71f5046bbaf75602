#include "Warn.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

// Process-wide and constant-initialised, so that static constructors may trace.
int nestingDepth = 0;
int debugLevel = 0;
int levelSaved = 0;
int firstLevel = 0;

void indent() {
  for (int unit = 0; unit < nestingDepth; ++unit) std::fputs("  ", stderr);
}

TQ_PRINTF(1, 0) void writeMessage(const char* format, va_list arguments) {
  std::vfprintf(stderr, format, arguments);
  std::fflush(stderr);
}

TQ_PRINTF(2, 0) void report(const char* prefix, const char* format, va_list arguments) {
  indent();
  std::fputs(prefix, stderr);
  writeMessage(format, arguments);
}

TQ_PRINTF(1, 0) void enter(const char* format, va_list arguments) {
  indent();
  std::fprintf(stderr, "enter[%02d]: ", nestingDepth);
  writeMessage(format, arguments);
  ++nestingDepth;
}

TQ_PRINTF(1, 0) void leave(const char* format, va_list arguments) {
  --nestingDepth;
  indent();
  std::fprintf(stderr, "leave[%02d]: ", nestingDepth);
  writeMessage(format, arguments);
}

}  // namespace

int debug_lvlset(int level) {
  if (!levelSaved) {
    firstLevel = debugLevel;
    levelSaved = 1;
  }
  debugLevel = level;
  return firstLevel;  // Kept: never the level replaced.
}

int debug_lvlget() { return debugLevel; }

void Error(const char* format, ...) {
  if (debug_lvlget() <= 0) return;
  va_list arguments;
  va_start(arguments, format);
  report("error: ", format, arguments);
  va_end(arguments);
}

void Warn(const char* format, ...) {
  if (debug_lvlget() <= 0) return;
  va_list arguments;
  va_start(arguments, format);
  report("warning: ", format, arguments);
  va_end(arguments);
}

void Debug(const char* format, ...) {
  if (debug_lvlget() < 7) return;
  va_list arguments;
  va_start(arguments, format);
  report("debug: ", format, arguments);
  va_end(arguments);
}

void Print(const char* format, ...) {
  if (debug_lvlget() < 8) return;
  va_list arguments;
  va_start(arguments, format);
  writeMessage(format, arguments);
  va_end(arguments);
}

void Enter(const char* format, ...) {
  if (debug_lvlget() < 9) return;
  va_list arguments;
  va_start(arguments, format);
  enter(format, arguments);
  va_end(arguments);
}

void Leave(const char* format, ...) {
  if (debug_lvlget() < 9) return;
  va_list arguments;
  va_start(arguments, format);
  leave(format, arguments);
  va_end(arguments);
}

void Before(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  enter(format, arguments);
  va_end(arguments);
}

void After(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  leave(format, arguments);
  va_end(arguments);
}

void tqOutOfMemory() {
  std::fputs("out of memory\n", stderr);
  std::abort();
}
