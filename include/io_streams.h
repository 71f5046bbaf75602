#ifndef TQ_IO_STREAMS_H
#define TQ_IO_STREAMS_H

#include "tq_export.h"

/// \file io_streams.h
/// The base of line-oriented text streams that are bound to one file name. It keeps the name and
/// answers every operation with success; the classes derived from it open, read and write.

/// A stream of lines that does nothing yet.
///
/// What derived classes keep to: opening and closing give 1 on success, the line operations a count
/// of characters. `examples/FileStream.h` is one for files.
class TQ_API io_streams {
public:
  /// \param name copied, and cut at 99 characters; null counts as the empty name.
  io_streams(const char* name);

  // Virtual slots: applications override these, the order counts.
  virtual ~io_streams();
  virtual int open_input();    ///< 1
  virtual int open_output();   ///< 1
  virtual int open_append();   ///< 1
  virtual int close_input();   ///< 1
  virtual int close_output();  ///< 1
  /// Length of the text that `line` points to, 0 for null. Derived classes put the next line there,
  /// in at most `max` characters.
  virtual int get_oneline(char*& line, int max);
  /// Length of the text, 0 for null. Derived classes write it.
  virtual int put_oneline(const char* line);

  char filename[100];  ///< NUL-terminated
};

#endif
