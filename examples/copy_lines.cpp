// Reads and writes files line by line through a class derived from io_streams.

#include "FileStream.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

//! [copy]
// Copies a file line by line and counts the lines; -1 when reading or writing fails.
int copyLines(FileStream& from, FileStream& to) {
  if (!from.open_input() || !to.open_output()) return -1;
  char room[16];  // short on purpose: longer lines come in several parts
  char* part = room;
  std::string line;
  int count = 0;
  while (from.get_oneline(part, sizeof room) >= 0) {
    line += part;
    if (!from.isWholeLine()) continue;
    if (to.put_oneline(line.c_str()) < 0) return -1;
    line.clear();
    ++count;
  }
  const bool isWritten = to.close_output() != 0;
  return from.error().empty() && isWritten ? count : -1;
}
//! [copy]

int failed(const char* what) {
  std::fprintf(stderr, "copy_lines: %s\n", what);
  return EXIT_FAILURE;
}

}  // namespace

int main() {
  char folder[] = "/tmp/copy_lines_XXXXXX";
  if (!mkdtemp(folder)) return failed("no temporary folder");
  const std::string source = std::string(folder) + "/source", copy = std::string(folder) + "/copy";

  FileStream original(source.c_str());
  if (!original.open_output()) return failed(original.error().c_str());
  for (const char* line : {"short\r", "", "exactly fifteen", "a line longer than the room for it"})
    original.put_oneline(line);
  if (!original.close_output()) return failed(original.error().c_str());

  FileStream from(source.c_str()), to(copy.c_str());
  const int lines = copyLines(from, to);
  if (lines < 0) return failed((from.error() + to.error()).c_str());
  std::printf("%d lines copied\n", lines);

  FileStream nowhere((std::string(folder) + "/missing").c_str());
  if (nowhere.open_input()) return failed("a missing file was opened");
  std::printf("and as expected: %s\n", std::strerror(errno));

  // The copy has the same lines, with plain line ends.
  char room[80];
  char* line = room;
  std::string read;
  FileStream again(copy.c_str());
  again.open_input();
  while (again.get_oneline(line, sizeof room) >= 0) read += std::string(line) + "|";
  std::remove(source.c_str());
  std::remove(copy.c_str());
  std::remove(folder);
  const bool isSame = read == "short||exactly fifteen|a line longer than the room for it|";
  return isSame && lines == 4 ? EXIT_SUCCESS : failed(("read back: " + read).c_str());
}
