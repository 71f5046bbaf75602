#include "Trigger.h"

#include "Platform.h"

// Constant-initialised, so that triggers with static storage may be made and destroyed at any time.
int triggers_active = 1;
tqTriggerList* all_triggers = nullptr;
tqTriggerList* global_trigger_list = nullptr;
tqTriggerList* fired_triggers[2] = {nullptr, nullptr};
tqTriggerList* fired_graphics_triggers = nullptr;
tqTriggerList* deleted_triggers = nullptr;

namespace {

constexpr unsigned allClasses = 2000;
constexpr int deletionEvent = 4;

// A list that exists is never replaced: triggers may stand on it already.
tqTriggerList& made(tqTriggerList*& list) {
  if (!list) list = tqAllocated(new (std::nothrow) tqTriggerList(0));
  return *list;
}

tqTriggerList& madeOrdered(tqTriggerList*& list) {
  if (!list) made(list).ordered(1);
  return *list;
}

// Two lists exist before the first trigger does, for applications that walk them at any time.
[[maybe_unused]] const struct Initialiser {
  Initialiser() {
    made(all_triggers);
    made(deleted_triggers);
  }
} initialiser;

tqTriggerList** queueOf(NotificationOption option) {
  return option == NOTIFY_FIRST || option == NOTIFY_SECOND ? &fired_triggers[option] : nullptr;
}

// The old array goes last: the new values may come from it.
template <class T> void replaceArray(T*& array, int& count, const T* values, int n) {
  T* copy = nullptr;
  if (!values || n < 0) n = 0;
  if (n > 0) {
    const std::size_t size = static_cast<std::size_t>(n) * sizeof(T);
    copy = static_cast<T*>(tqAllocated(std::malloc(size)));
    std::memcpy(copy, values, size);
  }
  std::free(array);
  array = copy;
  count = n;
}

}  // namespace

tqTrigger::tqTrigger(TriggerType type) : tqBase(1), tqCopyable(), type_(type) {
  made(all_triggers).append(this);
}

tqTrigger::tqTrigger(const tqTrigger& other)
    // Kept: `fired` comes along, the place on the queue does not.
    : tqBase(1), tqCopyable(), type_(other.type_), objects(other.objects),
      touchedObjects(other.touchedObjects), triggeredObjects(other.triggeredObjects),
      active(other.active), fired(other.fired), whenNotify(other.whenNotify) {
  replaceArray(objectTypes, numObjectTypes, other.objectTypes, other.numObjectTypes);
  replaceArray(events, numEvents, other.events, other.numEvents);
  made(all_triggers).append(this);
}

tqTrigger::~tqTrigger() {
  while (objects && objects->count() > 0) {
    tqBase* const object = objects->item(0);
    if (object)
      object->removeTrigger(this);
    else if (global_trigger_list)
      global_trigger_list->removeLast(this);
    objects->remove(0);
  }
  delete objects;
  // Kept: `deleted_triggers` and `fired_graphics_triggers` are the application's to clear.
  if (tqTriggerList** queue = queueOf(whenNotify))
    if (*queue) (*queue)->removeLast(this);
  if (all_triggers) all_triggers->removeLast(this);
  delete touchedObjects;
  delete triggeredObjects;
  std::free(objectTypes);
  std::free(events);
}

void tqTrigger::setObjectTypes(const unsigned* ids, int n) {
  replaceArray(objectTypes, numObjectTypes, ids, n);
}

void tqTrigger::setEvents(const int* codes, int n) { replaceArray(events, numEvents, codes, n); }

void tqTrigger::addEvent(int event) {
  if (!events) return setEvents(&event, 1);
  for (int i = 0; i < numEvents; ++i)
    if (events[i] == event) return;
  const std::size_t size = (static_cast<std::size_t>(numEvents) + 1) * sizeof(int);
  events = static_cast<int*>(tqAllocated(std::realloc(events, size)));
  events[numEvents++] = event;
}

tqBase* tqTrigger::object(int i) const { return objects ? objects->item(i) : nullptr; }

void tqTrigger::addObject(tqBase* object) {
  if (!objects) objects = tqAllocated(new (std::nothrow) tqBaseList(0));
  objects->append(object);
  if (object)
    object->addTrigger(this);
  else
    made(global_trigger_list).append(this);
}

void tqTrigger::removeObject(tqBase* object) {
  if (objects) objects->removeFirst(object);
  unregister(object);
}

void tqTrigger::removeObjectAt(int i) {
  if (!objects) return;
  tqBase* const object = objects->item(i);
  objects->remove(i);
  unregister(object);
}

void tqTrigger::unregister(tqBase* object) {
  if (object) return object->removeTrigger(this);
  if (!global_trigger_list) return;
  // Kept: the count is taken once and the index moves on after a removal, so a removal before the
  // last index ends in a range error, as documented to the callers.
  const int count = global_trigger_list->count();
  for (int i = 0; i < count; ++i)
    if (global_trigger_list->item(i) == this) global_trigger_list->remove(i);
}

void tqTrigger::addToGroup(tqNamedGroup*& group, tqBase* object) {
  if (!group) {
    group = new tqNamedGroup("", 1, 1, 1);
    if (!group) return;
    if (checkEvent(deletionEvent)) group->setAutoRemove(0);
  }
  group->add(object);
}

void tqTrigger::addTouchedObject(tqBase* object) { addToGroup(touchedObjects, object); }

void tqTrigger::addTriggeredObject(tqBase* object) { addToGroup(triggeredObjects, object); }

void tqTrigger::setDeleted() {
  active = 0;
  made(deleted_triggers).append(this);
}

int tqTrigger::checkObjectType(const tqBase* object) const {
  for (int i = 0; i < numObjectTypes; ++i)
    if (objectTypes[i] == allClasses || (object && object->isA(objectTypes[i]))) return 1;
  return 0;
}

void tqTrigger::setWhenNotify(NotificationOption option) {
  if (option == whenNotify || option == NOTIFY_NEVER) return;
  if (fired) {
    tqTriggerList** const from = queueOf(whenNotify);
    if (from && *from) (*from)->removeLast(this);
    if (tqTriggerList** const to = queueOf(option)) madeOrdered(*to).append(this);
  }
  whenNotify = option;
}

unsigned tqTrigger::classId() const { return 1124; }

const char* tqTrigger::className() const { return "Trigger"; }

int tqTrigger::isA(unsigned id) const { return id == 1124 ? 1 : tqBase::isA(id); }

void tqTrigger::deferredDelete() {
  tqBase::deferredDelete();
  active = 0;
}

// Kept: that of an immediate trigger, too.
tqCopyable* tqTrigger::shallowCopy() const { return new tqTrigger(*this); }

// Kept: `triggeredObjects` stays the source's.
void tqTrigger::deepenShallowCopy() {
  if (objects) objects = static_cast<tqBaseList*>(objects->deepCopy());
  if (touchedObjects) touchedObjects = static_cast<tqNamedGroup*>(touchedObjects->deepCopy());
}

void tqTrigger::enqueue(tqTriggerList*& queue) {
  if (fired) return;
  madeOrdered(queue).append(this);
  fired = 1;
}

void tqTrigger::record(tqBase* object, tqBase* other) {
  addTouchedObject(object);
  if (type_ == TRIGGER_TYPED) addTriggeredObject(other);
}

void tqTrigger::fire(tqBase* object, tqBase* other, int) {
  if (!triggers_active || !active) return;
  if (tqTriggerList** queue = queueOf(whenNotify)) enqueue(*queue);
  record(object, other);
}

int tqTrigger::checkMode() const { return 1; }

tqApplTrigger::tqApplTrigger(const tqApplTrigger& other)
    : tqTrigger(other), destAppl_(other.destAppl_), command_(other.command_), mode(other.mode) {}

tqApplTrigger::~tqApplTrigger() { std::free(command_); }

void tqApplTrigger::setCommand(const char* text) {
  if (!text) text = "";
  const std::size_t size = std::strlen(text) + 1;
  // Kept: copies of this trigger may share the previous text, which stays allocated.
  command_ = static_cast<char*>(tqAllocated(std::malloc(size)));
  std::memcpy(command_, text, size);
}

unsigned tqApplTrigger::classId() const { return 1125; }

const char* tqApplTrigger::className() const { return "ApplicationTrigger"; }

int tqApplTrigger::isA(unsigned id) const { return id == 1125 ? 1 : tqTrigger::isA(id); }

tqCopyable* tqApplTrigger::shallowCopy() const { return new tqApplTrigger(*this); }

int tqApplTrigger::checkMode() const {
  const int same = destAppl_ && destAppl_->oid() == tqz_CurrentApplicationObject() ? 1 : 0;
  if (mode == MODE_OTHER_APPL) return !same;
  if (mode == MODE_SAME_APPL) return same;
  return 1;
}

tqInternalTrigger::~tqInternalTrigger() = default;

unsigned tqInternalTrigger::classId() const { return 1126; }

const char* tqInternalTrigger::className() const { return "InternalTrigger"; }

int tqInternalTrigger::isA(unsigned id) const { return id == 1126 ? 1 : tqTrigger::isA(id); }

tqCopyable* tqInternalTrigger::shallowCopy() const { return new tqInternalTrigger(*this); }

void tqInternalTrigger::fire(tqBase* object, tqBase* other, int) {
  if (!triggers_active || !active) return;
  enqueue(fired_graphics_triggers);
  record(object, other);
}

tqImmediateTrigger::~tqImmediateTrigger() = default;

unsigned tqImmediateTrigger::classId() const { return 1175; }

const char* tqImmediateTrigger::className() const { return "ImmediateTrigger"; }

int tqImmediateTrigger::isA(unsigned id) const { return id == 1175 ? 1 : tqTrigger::isA(id); }

void tqImmediateTrigger::fire(tqBase* object, tqBase*, int event) {
  if (!triggers_active || !active || fired) return;
  if (callback) callback(object, this, event);
}
