#ifndef TQ_FORTRAN_IO_H
#define TQ_FORTRAN_IO_H

#include "tq_export.h"

/// \file fortran_io.h
/// Reading of fixed-column text, as Fortran programs write it: every field is cut out of the line
/// by its width, not by white space, so that columns may touch. Nothing is kept between calls.

/// Reads the fields of one line into the targets that follow, as the format says.
///
/// An item of the format is an optional repeat count, a letter and a width; a count or width that
/// is missing or below 1 counts as 1.
///
/// | item | target    | reads                                                                   |
/// |------|-----------|-------------------------------------------------------------------------|
/// | `iN` | `int*`    | a decimal number from N columns, as `%d` does                           |
/// | `sN` | `short*`  | likewise, as `%hd`                                                      |
/// | `lN` | `long*`   | likewise, as `%ld`                                                      |
/// | `fN` | `double*` | likewise, as `%lf`                                                      |
/// | `aN` | `char*`   | N characters and a NUL, padded with blanks behind the end of the line   |
/// | `xN` | none      | skips N columns                                                         |
///
/// Items are separated by `,`; white space before an item is skipped. `(` opens a group, after `)`
/// an item is expected. At the end of a format that opened a group, while columns of the line are
/// left, reading goes on behind the last `(`, unless the group moved no column.
///
/// The line ends at its NUL, and the fields behind it are blank. A newline cuts a field short, but
/// columns are counted on across it. A field that is blank or begins with no number reads as 0;
/// what follows a number in its field is ignored, and numbers out of range are those of the C
/// library (the nearest `long`, then narrowed). Numbers are read as in the "C" locale, whatever the
/// process's locale is.
///
/// \param line null counts as empty.
/// \param format null counts as empty.
/// \param maxValues reading ends, with 1, as soon as this many targets are filled; at once when it
///   is 0 or less.
/// \param ... one target for each value, in the order of the format; the field of a null target is
///   skipped. An `a` target has room for N + 1 characters.
/// \returns 1, or 0 when the format is at fault: standard error then gets "fortran_sscanf: illegal
///   comma found in format string" or "fortran_sscanf: unknown entity found in format string", the
///   format, and a `^` under the place, whatever the debug level. Targets filled before keep their
///   values; the item that the fault belongs to is not read.
/// \snippet fixed_columns.cpp fields
extern "C" TQ_API int fortran_sscanf(const char* line, const char* format, int maxValues, ...);

#endif
