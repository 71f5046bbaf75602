// A colour scheme as a value: it is made from an array, copied, changed and handed around, and
// what lies outside it reads as 0 and cannot be written.

#include "ColorList.h"

#include <cstdio>

namespace {

constexpr int rgb(int red, int green, int blue) { return red << 16 | green << 8 | blue; }

void print(const char* label, tqColorList& scheme) {
  std::printf("%s:", label);
  for (int i = 0; i < scheme.count(); ++i)
    std::printf(" #%06x", static_cast<unsigned>(scheme.colorAt(i)));
  std::printf("\n");
}

}  // namespace

int main() {
  // Carbon, nitrogen, oxygen, as molecular graphics shows them.
  enum { carbon, nitrogen, oxygen, elements };
  const int byElement[elements] = {rgb(200, 200, 200), rgb(143, 143, 255), rgb(240, 0, 0)};

  tqColorList scheme(COLOR_RGB, byElement, elements);
  tqColorList printed(scheme);  // paper is white: a scheme of its own with darker carbons
  printed.setColorAt(carbon, rgb(64, 64, 64));
  printed.setColorAt(elements, rgb(1, 2, 3));  // there is no such element: ignored
  print("screen", scheme);
  print("paper", printed);

  tqColorList indexed;
  const int colourMap[] = {7, 4, 1};
  indexed.setColorList(COLOR_INDEX, colourMap, elements);

  const bool right = scheme.colorAt(carbon) == byElement[carbon] &&
                     printed.colorAt(carbon) == 0x404040 && printed.count() == elements &&
                     printed.colorAt(elements) == 0 && indexed.type() == COLOR_INDEX &&
                     indexed.colorAt(oxygen) == 1;
  return right ? 0 : 1;
}
