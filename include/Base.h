#ifndef TQ_BASE_H
#define TQ_BASE_H

#include "List.h"

#include <cstddef>

/// \file Base.h
/// The root of the object model: identity that outlives pointers, membership in the selection,
/// triggers that watch the object, deferred deletion; and identifiers for handles of foreign
/// objects. The tables behind the identifiers live as long as the process; all of it is meant for
/// one thread.

/// What an OID leads to.
struct OIDEntry {
  OIDEntry(void* named) : object(static_cast<tqBase*>(named)) {}

  tqBase* object;
  unsigned mappedOid = 0;  ///< the OID that look-ups are redirected to, or 0
};

/// Slot by the number itself: OIDs are handed out in sequence and spread evenly.
struct OIDPtrTblRule : PlainRule<unsigned, OIDEntry*> {
  static unsigned hash(unsigned oid) { return oid; }
};
/// From an OID to its entry. Owns its links, never what the values point to.
class TQ_API OIDPtrTbl : public ChainedTable<OIDPtrTblRule> {
public:
  using ChainedTable::ChainedTable;
};
using OIDPtrTbl_Entry = OIDPtrTbl::Entry;
using OIDPtrTbl_Iterator = OIDPtrTbl::Iterator;

/// Slot by the number itself.
struct OIDHndTblRule : PlainRule<int, void*> {
  static unsigned hash(int oid) { return static_cast<unsigned>(oid); }
};
/// From a handle's OID to the handle.
class TQ_API OIDHndTbl : public ChainedTable<OIDHndTblRule> {
public:
  using ChainedTable::ChainedTable;
};
using OIDHndTbl_Entry = OIDHndTbl::Entry;
using OIDHndTbl_Iterator = OIDHndTbl::Iterator;

/// Slot by the low 32 bits of the address, taken as signed, without the two that alignment zeroes.
struct HndOIDTblRule : PlainRule<void*, int> {
  static unsigned hash(const void* handle) {
    return static_cast<unsigned>(static_cast<std::int32_t>(lowWord(handle)) >> 2);
  }
};
/// From a handle to its OID.
class TQ_API HndOIDTbl : public ChainedTable<HndOIDTblRule> {
public:
  using ChainedTable::ChainedTable;
};
using HndOIDTbl_Entry = HndOIDTbl::Entry;
using HndOIDTbl_Iterator = HndOIDTbl::Iterator;

/// The selected objects in the order selected. The application makes this list before the first
/// `select` (`tqPlatformStart` does); while it is null, selecting sets the objects' flags alone.
extern TQ_API tqBaseList* selectedList;

/// An object with an identity.
///
/// Its object identifier (OID) is a positive number, never used twice in a process, that names the
/// object wherever a pointer should not be kept: once the object is gone, the number leads nowhere.
/// \snippet objects.cpp identity
class TQ_API tqBase {
public:
  /// \param withOid nonzero: the object gets an OID. Zero: it has none (0) and no look-up finds it.
  tqBase(int withOid);

  /// A copy is an object of its own: it gets a fresh OID (also when `other` has none), remembers
  /// whose copy it is (see `original`), is not selected and has no triggers.
  tqBase(const tqBase& other);

  /// Keeps the target's identity, selection and triggers: there is nothing else to assign.
  tqBase& operator=(const tqBase&) { return *this; }

  /// Objects come from the C heap. Null when it is exhausted, so that `new` gives null then.
  static void* operator new(std::size_t size) noexcept;
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* memory);
  static void operator delete(void*, void*) {}

  /// This object's identifier, 0 when it has none.
  unsigned oid() const { return oid_; }
  /// Identifier of the object that this one was copied from; 0 when it was built from scratch, or
  /// when `original` has found the source gone.
  unsigned sourceOid() const { return sourceOid_; }

  /// Gives the object the next identifier, 1 for the first of the process. When all 2^32 - 1 are
  /// used up, reports an error and gives 0.
  static unsigned make_oid(void* object);
  /// Takes an identifier out of use; 0 and unknown ones are ignored.
  static void remove_oid(unsigned oid);

  /// The object that an identifier names; null for 0, for objects destroyed and for handles.
  ///
  /// \param followMapping nonzero: mappings set with `setMapping` are followed to their end (null
  ///   when that is unknown, or when they go round in a circle).
  static tqBase* validated(unsigned oid, int followMapping);

  /// Redirects look-ups of `oid` to `mappedOid`, or ends that with 0. 1, or 0 when `oid` is
  /// unknown.
  static int setMapping(unsigned oid, unsigned mappedOid);
  /// Ends all redirections.
  static void clearMapping();

  /// Triggers that watch this object.
  int numTriggers() const { return triggers_ ? triggers_->count() : 0; }
  /// Their list, null before the first one; the object owns it.
  tqTriggerList* triggers() { return triggers_; }
  /// Adds a trigger to the list, once more if it is there. `tqTrigger::addObject` calls this.
  void addTrigger(tqTrigger* trigger);
  /// Takes the first entry of the trigger off the list. `tqTrigger::removeObject` calls this.
  void removeTrigger(tqTrigger* trigger);

  /// Destroys the objects queued with `deferredDelete`, first queued, first destroyed, until the
  /// queue is empty.
  ///
  /// It runs nested, since each destructor dispatches event 4. From 1,000 deep on, a call leaves
  /// the rest of the queue to the calls under it.
  static void deleteTBDObjects();

  /// The objects waiting for deletion; null before the first one. Ordered.
  static tqBaseList* _tbdList;

  // Virtual slots: applications override these, the order counts.

  /// Unselects the object without notice, dispatches event 4 while the OID still leads here, ends
  /// the OID, then detaches the triggers, last first.
  virtual ~tqBase();
  virtual unsigned classId() const;       ///< 0
  virtual const char* className() const;  ///< "Base"
  /// 1 for the id of the object's class or one of its bases.
  virtual int isA(unsigned id) const;
  /// The oldest object alive that this one was copied from, through copies of copies; this object
  /// when there is none.
  virtual tqBase* original();
  /// Adds the object to the selection; dispatches event 4179 when `notify` is nonzero. Nothing when
  /// it is selected already.
  virtual void select(int notify);
  /// Takes the object out of the selection, likewise.
  virtual void unselect(int notify);
  virtual int isSelected() const;
  /// As `isSelected()`; the argument is ignored.
  virtual int isSelected(const int*);
  /// Tells the triggers of an event; see `Trigger.h` for the codes.
  ///
  /// The object's own triggers come first, then the objects queued for deletion are destroyed, then
  /// come the triggers that watch all objects, then the queue is emptied again. Both walks take the
  /// number of triggers once, and a trigger that is taken off the list meanwhile ends in
  /// `ProtoList::rangeError`: a handler that deletes objects or triggers calls `deferredDelete`.
  /// Once this object itself is destroyed, the triggers still to come are skipped.
  virtual void doTrigger(int event);
  /// Appends the object to `out` and gives 1 when its `classId()` is exactly this (bases do not
  /// count); otherwise, or when `out` is null, 0.
  virtual int coerce(unsigned classId, tqBaseList* out);
  /// Queues the object for deletion; it stays fully alive until then. An object whose destructor
  /// runs, whoever destroys it, leaves the queue and is not queued again.
  virtual void deferredDelete();
  /// 1; a derived class answers 0 for objects that are logically dead.
  virtual int isValidObject() const;

protected:
  /// Takes the object off the queue of deletions for good. The destructor of a class that destroys
  /// other objects calls it first: their triggers empty the queue, and must not find this object.
  void leaveDeletionQueue();

private:
  struct Dispatch;
  static Dispatch* dispatches_;

  void dispatch(int event, const tqBase* const& alive);

  unsigned oid_;
  unsigned sourceOid_ = 0;
  int selected_ = 0;
  int queued_ = 0;  // entries on the queue of deletions, -1 once the object is being destroyed
  tqTriggerList* triggers_ = nullptr;
};

extern "C" {
/// The OID of a foreign handle, made at the first call for it. It comes from the counter of the
/// objects, and leads back to the handle only: `oid_to_base` knows nothing of it.
///
/// Kept: null is given a new OID at every call, since no look-up finds a null handle; callers use
/// it to reserve a number.
TQ_API int make_handle_oid(void* handle);
/// The handle of an OID; null for 0 and unknown ones.
TQ_API void* oid_to_handle(int oid);
/// The OID of a handle; 0 for null and unknown ones.
TQ_API int handle_to_oid(const void* handle);
/// Forgets a handle by its OID; unknown ones are ignored. The OID is not used again.
TQ_API void delete_handle_oid(int oid);
/// Forgets a handle, likewise.
TQ_API void delete_handle_ptr(const void* handle);
/// `tqBase::validated` with mappings followed.
TQ_API tqBase* oid_to_base(int oid);
}

#endif
