#ifndef TQ_CLOCALE_H
#define TQ_CLOCALE_H

/// \file CLocale.h
/// Number text in the "C" locale: for the library's own calls of the C library's number reading and
/// writing, whatever locale the application has set. Internal.

#include "Warn.h"

#include <locale.h>

/// While it lives, this thread reads and writes text as in the "C" locale; then as before.
///
/// Only the calling thread is switched: the process's locale, and so other threads, never change.
/// Scopes nest. A switch costs a few nanoseconds, so one around a single conversion is fine.
class CLocaleScope {
public:
  CLocaleScope() : callers_(uselocale(cLocale())) {}
  ~CLocaleScope() { uselocale(callers_); }
  CLocaleScope(const CLocaleScope&) = delete;
  CLocaleScope& operator=(const CLocaleScope&) = delete;

private:
  /// Made on first use, kept as long as the process.
  static locale_t cLocale() {
    static const locale_t made = tqAllocated(newlocale(LC_ALL_MASK, "C", nullptr));
    return made;
  }

  locale_t callers_;
};

#endif
