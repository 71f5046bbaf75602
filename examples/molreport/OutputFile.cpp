#include "OutputFile.h"

#include "tqFilename.h"

#include <fmt/format.h>

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace molreport {

namespace fs = std::filesystem;

namespace {

std::string temporaryFor(const std::string& path) {
  const tqCopyString directory = tqFilename(path.c_str()).directory();
  const std::string folder(directory.data, static_cast<std::size_t>(directory.length));
  return fmt::format("{}.{}.{}.tmp", folder, path.substr(folder.size()), getpid());
}

}  // namespace

OutputFile::~OutputFile() {
  if (stream_) std::fclose(stream_);
  if (!temporary_.empty()) std::remove(temporary_.c_str());
}

std::string OutputFile::open(const std::string& path, const std::string& input) {
  if (path.empty()) return "the name of the file to write is empty";
  shownPath_ = path_ = path;
  std::error_code ignored;
  const fs::file_status status = fs::status(path, ignored);
  if (fs::exists(status)) {
    if (fs::equivalent(path, input, ignored)) return path + ": this is the input itself";
    if (fs::is_directory(status)) return fmt::format("{}: {}", path, std::strerror(EISDIR));
    if (!fs::is_regular_file(status)) return path + ": not a regular file";
    if (access(path.c_str(), W_OK) != 0) return fmt::format("{}: {}", path, std::strerror(errno));
    path_ = fs::canonical(path, ignored).string();  // what a link leads to, not the link
  }
  const std::string temporary = temporaryFor(path_);
  stream_ = std::fopen(temporary.c_str(), "wx");
  if (!stream_) return fmt::format("{}: {}", path, std::strerror(errno));
  temporary_ = temporary;
  if (fs::exists(status)) fs::permissions(temporary_, status.permissions(), ignored);
  return {};
}

std::string OutputFile::commit() {
  const bool isWritten = std::fflush(stream_) == 0 && !std::ferror(stream_);
  const int reason = errno;
  const bool isClosed = std::fclose(stream_) == 0;
  stream_ = nullptr;
  if (!isWritten || !isClosed)
    return fmt::format("{}: {}", shownPath_, std::strerror(isWritten ? errno : reason));
  if (std::rename(temporary_.c_str(), path_.c_str()) != 0)
    return fmt::format("{}: {}", shownPath_, std::strerror(errno));
  temporary_.clear();
  return {};
}

}  // namespace molreport
