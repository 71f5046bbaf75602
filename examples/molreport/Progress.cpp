#include "Progress.h"

#include <fmt/format.h>

#include <unistd.h>

#include <utility>

namespace molreport {

namespace {

constexpr int linesBetweenLooks = 1024;  // at the clock
constexpr auto beforeFirst = std::chrono::milliseconds(500);
constexpr auto between = std::chrono::milliseconds(100);

}  // namespace

Progress::Progress(std::string path, long long bytes)
    : path_(std::move(path)), bytes_(bytes), isTerminal_(isatty(STDERR_FILENO) == 1),
      next_(std::chrono::steady_clock::now() + beforeFirst) {}

void Progress::advance(int bytes) {
  bytesRead_ += bytes;
  if (!isTerminal_ || ++lines_ % linesBetweenLooks != 0) return;
  if (std::chrono::steady_clock::now() >= next_) show();
}

void Progress::show() {
  next_ = std::chrono::steady_clock::now() + between;
  isShown_ = true;
  if (bytes_ > 0)
    fmt::print(stderr, "\rreading {}: {:3} %\x1b[K", path_, bytesRead_ * 100 / bytes_);
  else
    fmt::print(stderr, "\rreading {}: {} lines\x1b[K", path_, lines_);
  std::fflush(stderr);
}

void Progress::clear() {
  if (!isShown_) return;
  isShown_ = false;
  fmt::print(stderr, "\r\x1b[K");
  std::fflush(stderr);
}

}  // namespace molreport
