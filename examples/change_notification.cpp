// Change notification: objects tell of events, triggers remember whom they concern, and the
// application looks when it has time.

#include "Platform.h"
#include "Trigger.h"

#include <cstdio>

namespace {

constexpr int moved = 0x2000;

int failures = 0;

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "change_notification: %s\n", what);
  ++failures;
}

int redrawn = 0;

void redraw(const tqNamedGroup& group) {
  for (int i = 0; i < group.count(); ++i)
    if (const tqBase* atom = group.member(i)) {  // null once it is destroyed
      std::printf("redraw %u\n", atom->oid());
      ++redrawn;
    }
}

//! [drain]
void drain(NotificationOption option) {
  tqTriggerList* const queue = fired_triggers[option];
  while (queue && queue->count() > 0) {
    tqTrigger* const trigger = queue->item(0);
    queue->remove(0);
    trigger->fired = 0;  // from here on it may join the queue again
    redraw(*trigger->touchedObjects);
    trigger->touchedObjects->clear();
  }
  for (tqTrigger* trigger : *deleted_triggers) delete trigger;
  deleted_triggers->remove_all();
}
//! [drain]

void notifyLater() {
  tqTreeNode atom;
  //! [trigger]
  tqTrigger* const trigger = new tqTrigger(TRIGGER_PLAIN);
  trigger->addEvent(moved);
  trigger->addObject(&atom);
  trigger->setWhenNotify(NOTIFY_FIRST);

  atom.doTrigger(moved);  // after each change of the atom
  atom.doTrigger(moved);  // recorded again, queued once
  //! [trigger]
  expect(trigger->fired && fired_triggers[NOTIFY_FIRST]->count() == 1, "queued once");
  drain(NOTIFY_FIRST);
  expect(redrawn == 2 && fired_triggers[NOTIFY_FIRST]->count() == 0, "drained");

  //! [end]
  trigger->setDeleted();  // hears nothing more; whoever drains the queues deletes it
  //! [end]
  atom.doTrigger(moved);
  drain(NOTIFY_FIRST);
  expect(redrawn == 2 && deleted_triggers->count() == 0 && atom.numTriggers() == 0, "deleted");
}

void notifyAtOnce() {
  tqTreeNode* const atom = new tqTreeNode;
  const unsigned number = atom->oid();
  //! [immediate]
  tqImmediateTrigger watch(TRIGGER_PLAIN);
  watch.addEvent(moved);
  watch.addObject(atom);
  watch.callback = [](tqBase* object, tqTrigger*, int) { object->deferredDelete(); };
  atom->doTrigger(moved);  // calls back; the atom goes as this call ends
  //! [immediate]
  expect(!tqBase::validated(number, 0), "deleted from its own trigger");
}

}  // namespace

int main() {
  notifyLater();
  notifyAtOnce();
  return failures == 0 ? 0 : 1;
}
