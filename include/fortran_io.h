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
/// Items are separated by `,`; white space before an item is skipped. `(` opens a group. At the end
/// of a format that opened one, while columns of the line are left, reading goes on behind the last
/// `(`, unless the group moved no column.
///
/// The line ends at its NUL, and the fields behind it are blank. A newline cuts a field short too.
/// A field that is blank or begins with no number reads as 0; read it as `a` where that matters.
/// What follows a number in its field is ignored. Numbers are read as in the "C" locale, whatever
/// the process's locale is.
///
/// Kept: after `)` an item is expected, so "(i5),i5" has an illegal comma; write "(i5)i5".
///
/// Kept: columns are counted on across a newline, which is one of them; cut a text into lines
/// first.
///
/// Kept: numbers out of range are those of the C library, the nearest `long`, then narrowed:
/// 4294967301 reads as 5 into an `int`. Read wide fields with `l`.
///
/// Kept: `f` reads all that the C library takes for a number, "0x10", "inf" and "nan" included, for
/// which `i` gives 0. Ask `std::isfinite` where a field may hold such words.
///
/// Kept: once `maxValues` targets are filled, the rest of the format goes unread, faults and all.
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
