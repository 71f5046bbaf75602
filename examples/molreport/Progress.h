#ifndef MOLREPORT_PROGRESS_H
#define MOLREPORT_PROGRESS_H

#include <chrono>
#include <string>

/// \file Progress.h
/// A line on standard error that says how far a long read has come, for someone who waits at a
/// terminal. Nothing is shown when standard error is no terminal, or when the read is short.

namespace molreport {

class Progress {
public:
  /// \param bytes size of the file; 0 when it is not known (a pipe): then lines are counted.
  Progress(std::string path, long long bytes);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { clear(); }

  /// Tells of one more line of this many bytes.
  void advance(int bytes);
  /// Takes the line off the terminal, so that something else can be printed.
  void clear();

private:
  void show();

  std::string path_;
  long long bytes_;
  long long bytesRead_ = 0;
  long long lines_ = 0;
  bool isTerminal_;
  bool isShown_ = false;
  std::chrono::steady_clock::time_point next_;
};

}  // namespace molreport

#endif
