#include "tqFilename.h"

#include <cstring>

tqFilename::tqFilename(const char* path) : tqCopyString(path) {}

tqFilename::tqFilename(const tqString& path) : tqCopyString(path) {}

tqFilename& tqFilename::operator=(const tqFilename& other) {
  *this = static_cast<const tqString&>(other);
  return *this;
}

// Where the last part's extension starts, -1 when it has none: a '.' before the last '/' belongs to
// the directory.
int tqFilename::extensionDot() const {
  const int dot = search(-1, '.');
  return dot < search(-1, '/') ? -1 : dot;
}

tqFilename tqFilename::directory() const {
  const int slash = search(-1, '/');
  return slash < 0 ? tqFilename() : tqFilename(substr(0, slash + 1));
}

tqFilename tqFilename::name() const {
  const int start = search(-1, '/') + 1;
  const int dot = extensionDot();
  const int end = dot < 0 ? length : dot;
  return start == end ? tqFilename() : tqFilename(substr(start, end - start));
}

tqFilename tqFilename::extension() const {
  const int dot = extensionDot();
  // Kept: behind a '.' at the end there is nothing to view, so the substring is the whole path.
  return dot < 0 ? tqFilename() : tqFilename(substr(dot + 1, -1));
}

tqFilename& tqFilename::replace_extension(const tqFilename& extension) {
  const int dot = extensionDot();
  const tqNullTerminatedString stem(substr(0, dot < 0 ? length : dot));
  const tqNullTerminatedString added(extension);
  const std::size_t size = std::strlen(stem.data) + std::strlen(added.data) + sizeof ".";
  char* const path = tqAllocated(new (std::nothrow) char[size]);
  std::strcpy(path, stem.data);
  std::strcat(path, ".");
  std::strcat(path, added.data);
  *this = tqString(path);
  delete[] path;
  return *this;
}
