#include "ColorList.h"

#include "Warn.h"

#include <cstdlib>
#include <cstring>

tqColorList::tqColorList(ColorType type, const int* colors, int n) { assign(type, colors, n); }

tqColorList::tqColorList(const tqColorList& other) {
  assign(other.type_, other.colors_, other.count_);
}

tqColorList& tqColorList::operator=(const tqColorList& other) {
  assign(other.type_, other.colors_, other.count_);
  return *this;
}

tqColorList::~tqColorList() { std::free(colors_); }

unsigned tqColorList::classId() const { return 1122; }

const char* tqColorList::className() const { return "ColorList"; }

int tqColorList::isA(unsigned id) const { return id == 1122 ? 1 : 0; }

int tqColorList::colorAt(int i) { return i >= 0 && i < count_ ? colors_[i] : 0; }

void tqColorList::setColorAt(int i, int color) {
  if (i >= 0 && i < count_ && colors_[i] != color) colors_[i] = color;
}

void tqColorList::setColorList(ColorType type, const int* colors, int n) {
  assign(type, colors, n);
}

// The colours may be this list's own, so they are copied before the old array goes.
void tqColorList::assign(ColorType type, const int* colors, int n) {
  int* copy = nullptr;
  if (!colors || n <= 0) n = 0;
  if (n > 0) {
    const std::size_t size = static_cast<std::size_t>(n) * sizeof(int);
    copy = static_cast<int*>(tqAllocated(std::malloc(size)));
    std::memcpy(copy, colors, size);
  }
  std::free(colors_);
  type_ = type;
  count_ = n;
  colors_ = copy;
}
