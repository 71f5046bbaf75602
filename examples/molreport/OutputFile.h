#ifndef MOLREPORT_OUTPUTFILE_H
#define MOLREPORT_OUTPUTFILE_H

#include <cstdio>
#include <string>

/// \file OutputFile.h
/// A file that is there whole or not at all.

namespace molreport {

/// Collects what is written in a temporary beside the file, which takes the file's place at the
/// end. Without `commit` the temporary is removed, and what was there stays.
class OutputFile {
public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  /// Opens the temporary. Returns what is wrong, empty when nothing is: the path is that of `input`
  /// under whatever name, of a directory or device, or cannot be written.
  std::string open(const std::string& path, const std::string& input);
  /// Null until the file is open.
  std::FILE* stream() const { return stream_; }
  /// Puts the file in its place. Returns what is wrong, likewise.
  std::string commit();

private:
  std::string shownPath_;
  std::string path_;
  std::string temporary_;
  std::FILE* stream_ = nullptr;
};

}  // namespace molreport

#endif
