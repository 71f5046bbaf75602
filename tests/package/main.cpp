// Uses the installed library from both sides: the library calls the application layer, which
// derives from the library.
#include "Platform.h"
#include "tq.h"

int main() {
  tqPlatformStart();
  tqTreeNode node;
  node.select(0);
  tqTrigger trigger(TRIGGER_PLAIN);
  trigger.addEvent(1);
  trigger.addObject(&node);
  node.doTrigger(7);
  const bool notified = trigger.fired && trigger.touchedObjects->member(0) == &node;
  return notified && selectedList->isMember(&node) ? 0 : 1;
}
