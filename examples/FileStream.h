#ifndef FILESTREAM_H
#define FILESTREAM_H

#include "io_streams.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

/// \file FileStream.h
/// A stream of lines that reads and writes a real file: an example of deriving from `io_streams`,
/// for an application to take and adapt. It owns its open files and closes them.

/// Reads a file line by line, or writes one.
///
/// Reading and writing are separate: a stream may have one file of each kind open. What fails
/// leaves its reason in `error()`, and in `errno`.
class FileStream : public io_streams {
public:
  /// \param path copied whole; `filename` shows its first 99 characters.
  FileStream(const char* path) : io_streams(path), path_(path ? path : "") {}
  FileStream(const FileStream&) = delete;
  FileStream& operator=(const FileStream&) = delete;

  /// "file: reason" of the last operation that failed, empty when none did.
  const std::string& error() const { return error_; }
  /// True when the last line read is complete: what was longer than the caller's room comes with
  /// the next call.
  bool isWholeLine() const { return isWholeLine_; }

  ~FileStream() override = default;
  /// Opens the file for reading, from its start: 1, or 0 when it cannot be read. A directory
  /// cannot.
  int open_input() override {
    used_ = filled_ = 0;
    input_.reset(std::fopen(path_.c_str(), "rb"));
    struct stat status;
    if (input_ && fstat(fileno(input_.get()), &status) == 0 && S_ISDIR(status.st_mode)) {
      input_.reset();
      errno = EISDIR;
    }
    return input_ ? 1 : fail(0);
  }
  /// Opens the file for writing, empty: 1, or 0.
  int open_output() override { return openForWriting("wb"); }
  /// Opens the file for writing at its end: 1, or 0.
  int open_append() override { return openForWriting("ab"); }
  /// 1, also when nothing was open.
  int close_input() override {
    input_.reset();
    return 1;
  }
  /// Writes out what is buffered: 1, or 0 when that fails, a full disk for one.
  int close_output() override {
    if (!output_) return 1;
    const bool isWritten = !std::ferror(output_.get());
    return std::fclose(output_.release()) == 0 && isWritten ? 1 : fail(0);
  }

  /// Reads the next line into `line`, without its line end (LF or CR LF) and with a NUL behind it.
  ///
  /// \param line room for `max` characters, the NUL among them; nothing is read into null, or when
  ///   `max` is below 2.
  /// \returns the characters read, NULs in the file counted; -1 at the end of the file, and, with
  ///   `error()`, when reading fails or no file is open.
  int get_oneline(char*& line, int max) override {
    if (!line || max < 2) return -1;
    if (!input_) {
      errno = EBADF;
      return fail(-1);
    }
    const std::size_t room = static_cast<std::size_t>(max) - 1;
    std::size_t length = 0;
    isWholeLine_ = false;
    while (length < room && !isWholeLine_ && (used_ < filled_ || fill()))
      length += take(line + length, room - length);
    if (length == 0 && !isWholeLine_) return std::ferror(input_.get()) ? fail(-1) : -1;
    // What fills the room exactly may be a whole line all the same.
    if (!isWholeLine_ && (used_ < filled_ || fill())) {
      isWholeLine_ = buffer_[used_] == '\n';
      used_ += isWholeLine_ ? 1 : 0;
    } else {
      isWholeLine_ = true;
    }
    if (length > 0 && isWholeLine_ && line[length - 1] == '\r') --length;
    line[length] = '\0';
    return static_cast<int>(length);
  }

  /// Writes the text and a line end: the characters of the text, or -1 when that fails. What is
  /// buffered may still fail in `close_output`.
  int put_oneline(const char* line) override {
    if (!line) line = "";
    if (!output_) {
      errno = EBADF;
      return fail(-1);
    }
    if (std::fputs(line, output_.get()) < 0 || std::fputc('\n', output_.get()) == EOF)
      return fail(-1);
    return static_cast<int>(std::strlen(line));
  }

private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  using File = std::unique_ptr<std::FILE, Close>;

  int fail(int result) {
    const int reason = errno;
    error_ = path_ + ": " + std::strerror(reason);
    errno = reason;
    return result;
  }

  int openForWriting(const char* mode) {
    output_.reset(std::fopen(path_.c_str(), mode));
    return output_ ? 1 : fail(0);
  }

  // Takes at most `room` characters out of the buffer, and the newline behind them.
  std::size_t take(char* to, std::size_t room) {
    const char* const first = buffer_ + used_;
    const std::size_t most = std::min(room, filled_ - used_);
    const auto* const newline = static_cast<const char*>(std::memchr(first, '\n', most));
    const std::size_t size = newline ? static_cast<std::size_t>(newline - first) : most;
    std::memcpy(to, first, size);
    isWholeLine_ = newline != nullptr;
    used_ += size + (newline ? 1 : 0);
    return size;
  }

  bool fill() {
    used_ = 0;
    filled_ = std::fread(buffer_, 1, sizeof buffer_, input_.get());
    return filled_ > 0;
  }

  std::string path_;
  std::string error_;
  File input_;
  File output_;
  bool isWholeLine_ = true;
  std::size_t used_ = 0;
  std::size_t filled_ = 0;
  char buffer_[1 << 16];
};

#endif
