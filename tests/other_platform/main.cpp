// The library runs with the layer beside this file: its trigger puts objects into that layer's
// group.
#include "Platform.h"
#include "Trigger.h"

int main() {
  tqTreeNode node;
  tqTrigger trigger(TRIGGER_PLAIN);
  trigger.addEvent(1);
  trigger.addObject(&node);
  node.doTrigger(7);
  return trigger.fired && trigger.touchedObjects->last == &node ? 0 : 1;
}
