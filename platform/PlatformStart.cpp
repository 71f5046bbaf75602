#include "Platform.h"

void tqPlatformStart() {
  if (selectedList) return;
  selectedList = tqAllocated(new (std::nothrow) tqBaseList(0));
  selectedList->ordered(1);
}
