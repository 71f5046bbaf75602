// What triggers can be told to listen to: whole groups of events, all objects of a class, the end
// of an object, and the changes that another application makes.

#include "Trigger.h"

#include "Platform.h"

#include <cstdio>

namespace {

// The application's own event codes. One with bit 0x1000 set is also heard by those who ask for
// the whole group.
constexpr int movedEvent = 0x1001;
constexpr int recolouredEvent = 0x1002;
constexpr int deletedEvent = 4;  // sent by the library when an object is destroyed

/// An atom that tells its triggers when it changes.
class Atom : public tqBase {
public:
  explicit Atom(const char* name) : tqBase(1), name_(name) {}

  const char* name() const { return name_; }
  void move() { doTrigger(movedEvent); }
  void recolour() { doTrigger(recolouredEvent); }

  unsigned classId() const override { return 1006; }
  const char* className() const override { return "Atom"; }
  int isA(unsigned id) const override { return id == 1006 ? 1 : tqBase::isA(id); }

private:
  const char* name_;
};

int failures = 0;

void expect(bool holds, const char* what) {
  std::printf("  %s: %s\n", holds ? "yes" : "NO", what);
  if (!holds) ++failures;
}

/// Takes every fired trigger off a queue, reports what it was fired for, and resets it, so that it
/// may fire again. Returns how many there were.
int drain(tqTriggerList* queue) {
  int drained = 0;
  while (queue && queue->count() > 0) {
    tqTrigger* const trigger = queue->item(0);
    queue->remove(0);
    tqNamedGroup* const touched = trigger->touchedObjects;
    std::printf("  trigger %u was touched by", trigger->oid());
    for (int i = 0; i < touched->count(); ++i) {
      const tqBase* const object = touched->member(i);
      std::printf(" %s", object ? static_cast<const Atom*>(object)->name() : "(destroyed)");
    }
    std::printf("\n");
    touched->clear();
    trigger->fired = 0;
    ++drained;
  }
  return drained;
}

void watchEverythingOfAClass() {
  std::printf("A trigger that watches all atoms, for any event of the group\n");
  tqTrigger all(TRIGGER_TYPED);
  const unsigned atoms = 1006;
  all.addEvent(0x1000);
  all.setObjectTypes(&atoms, 1);
  all.addObject(nullptr);  // null: every object
  all.setWhenNotify(NOTIFY_FIRST);

  Atom oxygen("O"), hydrogen("H");
  oxygen.recolour();
  tqBase(1).doTrigger(recolouredEvent);  // no atom
  expect(drain(fired_triggers[NOTIFY_FIRST]) == 1, "it heard of the atom alone");

  triggers_active = 0;  // the master switch: off, say, while a file is read
  hydrogen.move();
  triggers_active = 1;
  expect(drain(fired_triggers[NOTIFY_FIRST]) == 0, "it hears nothing while the switch is off");
}

void watchForTheEnd() {
  std::printf("A trigger that hears of the end of an object\n");
  tqTrigger ends(TRIGGER_PLAIN);
  ends.addEvent(deletedEvent);
  Atom* const oxygen = new Atom("O");
  ends.addObject(oxygen);
  delete oxygen;
  expect(ends.numObjects() == 0, "what is destroyed is watched no more");
  expect(drain(fired_triggers[NOTIFY_SECOND]) == 1, "the notification came all the same");
}

void fireForOneApplication() {
  std::printf("A trigger for one application\n");
  tqApplObject viewer, editor;
  Atom atom("CA");
  tqApplTrigger redraw(TRIGGER_PLAIN);
  redraw.addEvent(movedEvent);
  redraw.addObject(&atom);
  redraw.setDestAppl(&viewer);
  redraw.setCommand("redraw");
  redraw.mode = tqApplTrigger::MODE_OTHER_APPL;  // the viewer need not hear of its own changes

  tqApplObject::setCurrent(&viewer);
  atom.move();
  expect(drain(fired_triggers[NOTIFY_SECOND]) == 0, "silent while the viewer works");
  tqApplObject::setCurrent(&editor);
  atom.move();
  std::printf("  the viewer is told to %s\n", redraw.command());
  expect(drain(fired_triggers[NOTIFY_SECOND]) == 1, "told of what the editor did");
}

}  // namespace

int main() {
  watchEverythingOfAClass();
  watchForTheEnd();
  fireForOneApplication();
  return failures == 0 ? 0 : 1;
}
