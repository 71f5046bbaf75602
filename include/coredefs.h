#ifndef TQ_COREDEFS_H
#define TQ_COREDEFS_H

#include "tq_export.h"

/// \file coredefs.h
/// Class ids: one numbering for the classes of the library and of the application, so that a class
/// can be written and read as text. Ids 0 to 23 are foundation classes, ids from 1000 application
/// classes; 2000, "All", stands for every class in a trigger's filter.
///
/// An object answers for itself with `classId()`, `className()` and `isA(id)`, which is 1 for the
/// class's own id and those of its bases.

/// Null, for every id.
///
/// Kept: the search stops at id 0, which the table of names begins with, so no name is ever found.
/// Callers rely on the null to print the number instead; an object's name is its `className()`.
TQ_API const char* ClassIdToString(unsigned id);

/// The id of the class named, letter for letter; 4294967295 when there is none (null included).
TQ_API unsigned StringToClassId(const char* name);

#endif
