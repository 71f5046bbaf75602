#ifndef TQ_TRIGGER_H
#define TQ_TRIGGER_H

#include "Base.h"

/// \file Trigger.h
/// Change notification. A trigger watches objects for events; when one happens it records which
/// objects were touched and queues itself. The application drains the queues when it sees fit: it
/// notifies, empties the groups and resets `fired`; nothing in the library does. The lists below
/// are made on first need and live as long as the process.
///
/// Event codes are the application's own, but for these: a trigger that listens to 1 hears every
/// event, one that listens to 0x1000 hears every event with that bit set, 4 is sent when an object
/// is destroyed, and 4179 when it is selected or unselected. With event 4 an object answers for its
/// class as a bare `tqBase`, since the destructors of its own classes have run.

class tqNamedGroup;
class tqApplObject;

/// What a trigger's type switches on.
enum TriggerType : int {
  TRIGGER_PLAIN = 0,  ///< fires for any object that it watches
  TRIGGER_TYPED = 1   ///< tests the object's class first, and records the triggered objects too
};

/// Which queue a fired trigger joins.
enum NotificationOption : int {
  NOTIFY_FIRST = 0,
  NOTIFY_SECOND = 1,
  NOTIFY_NEVER = 2  ///< refused by `setWhenNotify`
};

/// Master switch, 1 at first: while it is 0 no trigger of any kind fires.
extern TQ_API int triggers_active;
/// Every trigger alive.
extern TQ_API tqTriggerList* all_triggers;
/// The triggers that watch all objects.
extern TQ_API tqTriggerList* global_trigger_list;
/// The queues of fired triggers, by notification option. Ordered.
extern TQ_API tqTriggerList* fired_triggers[2];
/// The queue of fired internal triggers. Ordered.
extern TQ_API tqTriggerList* fired_graphics_triggers;
/// The triggers marked with `setDeleted`, for the application to delete.
extern TQ_API tqTriggerList* deleted_triggers;

/// Watches objects and, when it fires, stands on the queue of its notification option once,
/// however often it fires before the application resets it.
///
/// A copy shares the lists and groups of its source: whoever makes a plain copy keeps it from being
/// destroyed beside its source, or gives it lists of its own first. It is registered with none of
/// the objects. A deep copy ends in the abort of its object list, if it has one.
///
/// Kept: the copy of a fired trigger is marked fired but stands on no queue, and joins none until
/// the application resets it; notifications are not to be doubled by copying.
/// \snippet change_notification.cpp trigger
class TQ_API tqTrigger : public tqBase, public tqCopyable {
  TriggerType type_;  // the first field: the data below follow in an order that counts

public:
  /// An active trigger that watches nothing, hears no event, and notifies second.
  tqTrigger(TriggerType type);
  tqTrigger(const tqTrigger& other);
  tqTrigger& operator=(const tqTrigger&) = delete;

  TriggerType type() const { return type_; }
  int isActive() const { return active; }

  /// Replaces the classes that a typed or global trigger fires for; 2000 stands for all classes.
  /// The ids are copied; null or n of 0 or less leaves none, and then it fires for no object.
  void setObjectTypes(const unsigned* ids, int n);
  /// Replaces the events heard, likewise; with none it never fires.
  void setEvents(const int* codes, int n);
  /// Adds an event, unless it is heard already.
  void addEvent(int event);

  /// Watched objects, counting those watched twice twice.
  int numObjects() const { return objects ? objects->count() : 0; }
  /// Watched object i, null for "all objects"; null when nothing was ever watched, otherwise an
  /// index out of range ends in `ProtoList::rangeError`.
  tqBase* object(int i) const;
  /// Watches one more object, which learns of it; null watches all objects.
  void addObject(tqBase* object);
  /// Stops watching an object: drops the first entry of it here, and the first entry of this
  /// trigger there, also when it was not watched.
  ///
  /// Kept: for null, every entry of this trigger leaves `global_trigger_list` in a walk over the
  /// length that the list had before; unless only its last entry goes, the walk ends beyond the
  /// shortened list, in `ProtoList::rangeError`. Destroying the trigger, or `setDeleted`, is safe.
  void removeObject(tqBase* object);
  /// Likewise for entry i, which is range-checked; nothing when nothing was ever watched.
  void removeObjectAt(int i);

  /// Adds an object (or null) to `touchedObjects`, and makes that group first if need be: with
  /// automatic removal switched off when the trigger hears event 4.
  void addTouchedObject(tqBase* object);
  /// Likewise for `triggeredObjects`.
  void addTriggeredObject(tqBase* object);

  /// Deactivates the trigger and puts it on `deleted_triggers`, once more at every call.
  ///
  /// Kept: it is not taken off that list when it is destroyed; who deletes it from there empties
  /// the list.
  void setDeleted();

  /// 1 when the object's class, or a base of it, is among the object types, or 2000 is; null is an
  /// object of no class.
  int checkObjectType(const tqBase* object) const;
  /// 1 when the event is heard.
  int checkEvent(int event) const {
    // Most hear one event, and the loop takes jumps: a fifth of the time to reach a watcher.
    if (numEvents > 0 && events[0] == event) return 1;
    for (int i = 0; i < numEvents; ++i) {
      const int code = events[i];
      if (code == event || code == everyEvent || (code == eventBit && (event & eventBit))) return 1;
    }
    return 0;
  }

  /// Chooses the queue; a trigger that stands on one moves over. `NOTIFY_NEVER` is refused.
  void setWhenNotify(NotificationOption option);

  // Virtual slots: those of tqBase, then these; the order counts.
  ~tqTrigger() override;
  unsigned classId() const override;       ///< 1124
  const char* className() const override;  ///< "Trigger"
  int isA(unsigned id) const override;     ///< 1 for 1124 and 0
  /// Queues the trigger for deletion and deactivates it.
  void deferredDelete() override;
  /// A copy that shares lists and groups; null when memory is exhausted.
  tqCopyable* shallowCopy() const override;
  /// Gives the copy lists and groups of its own.
  ///
  /// Kept: `triggeredObjects` stays shared, so only one of the two may own it in the end; a copy
  /// that is to be destroyed beside its source has it set to null first.
  void deepenShallowCopy() override;
  /// Records `object`, and `other` when the type is `TRIGGER_TYPED`, and joins the queue. Nothing
  /// while the trigger or the master switch is off.
  virtual void fire(tqBase* object, tqBase* other, int event);
  /// 1 when the trigger may fire for the application that is current; always, here.
  virtual int checkMode() const;

  // What the application reads and resets when it drains the queues.
  int numObjectTypes = 0;
  unsigned* objectTypes = nullptr;           ///< from malloc, owned
  tqBaseList* objects = nullptr;             ///< owned; null entries mean all objects
  tqNamedGroup* touchedObjects = nullptr;    ///< owned
  tqNamedGroup* triggeredObjects = nullptr;  ///< owned
  int numEvents = 0;
  int* events = nullptr;  ///< from malloc, owned
  int active = 1;
  int fired = 0;  ///< 1 while on a queue; the library only sets it
  NotificationOption whenNotify = NOTIFY_SECOND;

protected:
  /// Joins the queue, made ordered if need be, unless the trigger has fired already.
  void enqueue(tqTriggerList*& queue);
  /// The second half of `fire`: adds to the groups.
  void record(tqBase* object, tqBase* other);

private:
  static constexpr int everyEvent = 1, eventBit = 0x1000;

  void addToGroup(tqNamedGroup*& group, tqBase* object);
  void unregister(tqBase* object);
};

/// A trigger that fires for a chosen application, or for all others.
///
/// A copy shares the command text: destroy a copy or its source, not both, once one is set.
class TQ_API tqApplTrigger : public tqTrigger {
public:
  enum : int { MODE_OTHER_APPL = 0, MODE_ANY_APPL = 1, MODE_SAME_APPL = 2 };

  tqApplTrigger(TriggerType type) : tqTrigger(type) {}
  tqApplTrigger(const tqApplTrigger& other);

  /// The application it is meant for, null at first; not owned.
  tqApplObject* destAppl() const { return destAppl_; }
  void setDestAppl(tqApplObject* application) { destAppl_ = application; }

  /// The text that the application interprets when notified, null at first; owned.
  char* command() const { return command_; }
  /// Stores a copy of the text; null counts as the empty one.
  ///
  /// Kept: the previous text is not freed, since copies of the trigger share it.
  void setCommand(const char* text);

  ~tqApplTrigger() override;
  unsigned classId() const override;       ///< 1125
  const char* className() const override;  ///< "ApplicationTrigger"
  int isA(unsigned id) const override;     ///< 1 for 1125, 1124 and 0
  tqCopyable* shallowCopy() const override;
  /// By `mode`, 0: the current application is another one (or none is set). 2: it is that one.
  /// Others: always 1. The application is asked only when a destination is set.
  int checkMode() const override;

private:
  tqApplObject* destAppl_ = nullptr;
  char* command_ = nullptr;

public:
  int mode = MODE_ANY_APPL;
};

/// A trigger that joins `fired_graphics_triggers` instead of the notification queues.
///
/// Kept: it is not taken off that queue when it is destroyed; what drains the queue takes note.
class TQ_API tqInternalTrigger : public tqTrigger {
public:
  tqInternalTrigger(TriggerType type) : tqTrigger(type) {}
  tqInternalTrigger(const tqInternalTrigger& other) : tqTrigger(other), state(other.state) {}

  ~tqInternalTrigger() override;
  unsigned classId() const override;       ///< 1126
  const char* className() const override;  ///< "InternalTrigger"
  int isA(unsigned id) const override;     ///< 1 for 1126, 1124 and 0
  tqCopyable* shallowCopy() const override;
  void fire(tqBase* object, tqBase* other, int event) override;

  int state = 0;  ///< the application's own
};

/// Called by an immediate trigger: the object changed, the trigger, the event.
using tqTriggerCallback = void (*)(tqBase* object, tqTrigger* trigger, int event);

/// A trigger that calls a function at once: it records nothing and joins no queue.
///
/// Kept: it has no `shallowCopy` of its own, so a deep copy is a plain `tqTrigger` without
/// callback.
class TQ_API tqImmediateTrigger : public tqTrigger {
public:
  tqImmediateTrigger(TriggerType type) : tqTrigger(type) {}
  tqImmediateTrigger(const tqImmediateTrigger& other)
      : tqTrigger(other), callback(other.callback) {}

  ~tqImmediateTrigger() override;
  unsigned classId() const override;       ///< 1175
  const char* className() const override;  ///< "ImmediateTrigger"
  int isA(unsigned id) const override;     ///< 1 for 1175, 1124 and 0
  /// Calls `callback`, unless it is null, `fired` is set, or the trigger or the master switch is
  /// off.
  void fire(tqBase* object, tqBase* other, int event) override;

  tqTriggerCallback callback = nullptr;
};

#endif
