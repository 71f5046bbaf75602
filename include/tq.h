#ifndef TQ_H
#define TQ_H

/// \file tq.h
/// The whole library in one include, and its version. A program that uses one family includes that
/// family's header alone.

/// The version, as major.minor.patch (https://semver.org).
#define TQ_VERSION "0.1.0"

#include "Warn.h"

#endif
