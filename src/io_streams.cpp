#include "io_streams.h"

#include <cstdio>
#include <cstring>

namespace {

int lengthOf(const char* text) { return text ? static_cast<int>(std::strlen(text)) : 0; }

}  // namespace

io_streams::io_streams(const char* name) {
  std::snprintf(filename, sizeof filename, "%s", name ? name : "");
}

io_streams::~io_streams() = default;

int io_streams::open_input() { return 1; }

int io_streams::open_output() { return 1; }

int io_streams::open_append() { return 1; }

int io_streams::close_input() { return 1; }

int io_streams::close_output() { return 1; }

int io_streams::get_oneline(char*& line, int) { return lengthOf(line); }

int io_streams::put_oneline(const char* line) { return lengthOf(line); }
