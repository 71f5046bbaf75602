#include "Platform.h"
#include "Trigger.h"

#include <cstdio>

// Objects of an application derive from the library's classes.
class Atom : public tqTreeNode {
public:
  explicit Atom(const char* text) : name(text) {}

  void move(double by) {
    x += by;
    doTrigger(moved);  // whoever watches this atom learns of it
  }

  static constexpr int moved = 0x2000;
  const char* name;
  double x = 0.0;
};

int main() {
  tqTreeNode residue;  // owns its atoms
  Atom* const calpha = new Atom("CA");
  residue.addChild(new Atom("N"));
  residue.addChild(calpha);

  tqTrigger watch(TRIGGER_PLAIN);
  watch.addEvent(Atom::moved);
  watch.addObject(calpha);
  calpha->move(1.5);
  calpha->move(0.5);

  // When it suits the application: one notification, however often the atom moved.
  for (tqBase* trigger : *fired_triggers[NOTIFY_SECOND]) {
    const auto* group = static_cast<tqTrigger*>(trigger)->touchedObjects;
    const auto* atom = static_cast<Atom*>(group->member(0));
    std::printf("%s is now at %.1f\n", atom->name, atom->x);
  }

  // A number names the atom for ever; a pointer would dangle here.
  const unsigned number = calpha->oid();
  delete calpha;
  std::printf("%d child left, atom %u is %s\n", residue.childCount(), number,
              tqBase::validated(number, 0) ? "alive" : "gone");
}
