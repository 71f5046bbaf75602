#include "Base.h"

#include "Trigger.h"

#include <climits>
#include <cstring>

// Process-wide state: made on first use and never destroyed, so that objects with static storage
// may be destroyed at any time.
tqBaseList* selectedList = nullptr;  // made by the application
tqBaseList* tqBase::_tbdList = nullptr;

namespace {

constexpr int handleTableSize = 10000;
constexpr int selectionEvent = 4179;
constexpr int deletionEvent = 4;
constexpr int deletionDepthLimit = 1000;

unsigned oidCounter = 0;  // numbers objects and handles alike
unsigned mappings = 0;    // entries that are mapped
OIDHndTbl* oidHandleTable = nullptr;
HndOIDTbl* handleOidTable = nullptr;

// The registry of objects. OIDs count up and nobody sees this table from outside, so entries lie in
// pages by OID: a look-up is two array accesses. A session may be long and most of what it made be
// dead: once few OIDs of a page are left, they move to the survivors, a hash table, and the page
// goes.
struct RegistryEntry {
  bool used() const { return oid != 0; }
  unsigned spread() const { return spreadBits(std::uint64_t{oid}); }
  tqBase* object;
  unsigned mappedOid;
  unsigned oid;  // 0 when there is none; the others are then 0 as well
};

RegistryEntry nobody;  // what unknown OIDs lead to
OpenIndex<RegistryEntry> survivors;

template <class T> T* newZeros(unsigned count) {
  return static_cast<T*>(tqAllocated(std::calloc(count, sizeof(T))));
}

struct RegistryPage {
  static constexpr unsigned bits = 10, size = 1u << bits;
  unsigned live;
  RegistryEntry entries[size];
};

// By the upper bits of the OID; null before the first one, and once they are survivors or dead.
RegistryPage** pages = nullptr;
unsigned pageCount = 0;
unsigned newestPage = 0;  // the one page that OIDs may still be added to

// Pages given up, all zero, for OIDs to come: each large block taken from the C heap makes it tidy
// up all small ones, which cost a fifth of the time of making and destroying objects.
constexpr unsigned mostSpare = 128;
RegistryPage* spare[mostSpare];
unsigned spareCount = 0;

RegistryPage*& pageOf(unsigned oid) { return pages[oid >> RegistryPage::bits]; }

inline RegistryEntry& entryOf(unsigned oid) {
  if (oid >> RegistryPage::bits >= pageCount) return nobody;
  if (RegistryPage* const page = pageOf(oid)) return page->entries[oid % RegistryPage::size];
  const RegistryEntry sought{nullptr, 0, oid};
  RegistryEntry* const survivor = survivors.find(
      sought.spread(), [oid](const RegistryEntry& entry) { return entry.oid == oid; });
  return survivor ? *survivor : nobody;
}

// Gives up a page that no OIDs will be added to, if few are left of it.
void giveUp(RegistryPage*& page) {
  if (!page || page->live > RegistryPage::size / 8) return;
  for (RegistryEntry* entry = page->entries; page->live > 0; ++entry) {
    if (entry->oid == 0) continue;
    survivors.add(*entry);
    *entry = RegistryEntry{};
    --page->live;
  }
  if (spareCount < mostSpare)
    spare[spareCount++] = page;
  else
    std::free(page);
  page = nullptr;
}

// Out of line, once in 1024 objects.
void makePage(unsigned oid) {
  const unsigned number = oid >> RegistryPage::bits;
  if (number >= pageCount) {
    const unsigned count = number < 8 ? 16 : 2 * number;
    pages = static_cast<RegistryPage**>(
        tqAllocated(std::realloc(pages, std::size_t{count} * sizeof *pages)));
    std::memset(pages + pageCount, 0, std::size_t{count - pageCount} * sizeof *pages);
    pageCount = count;
  }
  giveUp(pages[newestPage]);
  newestPage = number;
  pages[number] = spareCount > 0 ? spare[--spareCount] : newZeros<RegistryPage>(1);
}

template <class Table> void makeTable(Table*& table) {
  if (!table) table = tqAllocated(new (std::nothrow) Table(handleTableSize));
}

// The next OID, 0 when there are none left.
unsigned nextOid() {
  if (oidCounter == UINT_MAX) {
    Error("no object identifiers are left\n");
    return 0;
  }
  return ++oidCounter;
}

void map(RegistryEntry& entry, unsigned mappedOid) {
  if (entry.mappedOid != 0) --mappings;
  if (mappedOid != 0) ++mappings;
  entry.mappedOid = mappedOid;
}

// Out of line, which keeps plain look-ups free of its registers: 1.7 ns instead of 3.3.
[[gnu::noinline]] tqBase* mappedObject(const RegistryEntry& first) {
  const RegistryEntry* entry = &first;
  // A chain longer than all mappings goes round in a circle.
  for (unsigned steps = 0; entry->mappedOid != 0; entry = &entryOf(entry->mappedOid))
    if (steps++ > mappings) return nullptr;
  return entry->object;
}

tqBaseList& queueOfDeletions() {
  if (!tqBase::_tbdList) {
    tqBase::_tbdList = tqAllocated(new (std::nothrow) tqBaseList(0));
    tqBase::_tbdList->ordered(1);
  }
  return *tqBase::_tbdList;
}

// Most events queue nothing: with the filter inline, one watcher takes 8 ns instead of 11.
void emptyQueue() {
  if (!tqBase::_tbdList || tqBase::_tbdList->count() > 0) tqBase::deleteTBDObjects();
}

}  // namespace

// One dispatch under way. They are linked from the innermost out, so that the destructor can tell
// those of its object that there is nothing left to walk. One that a callback leaves by throwing is
// unlinked all the same.
struct tqBase::Dispatch {
  explicit Dispatch(const tqBase* dispatching) : object(dispatching), outer(dispatches_) {
    dispatches_ = this;
  }
  ~Dispatch() { dispatches_ = outer; }
  Dispatch(const Dispatch&) = delete;
  Dispatch& operator=(const Dispatch&) = delete;

  const tqBase* object;  // null once it is destroyed
  Dispatch* const outer;
};

tqBase::Dispatch* tqBase::dispatches_ = nullptr;

tqBase::tqBase(int withOid) : oid_(withOid ? make_oid(this) : 0) {}

tqBase::tqBase(const tqBase& other) : oid_(make_oid(this)), sourceOid_(other.oid_) {}

tqBase::~tqBase() {
  leaveDeletionQueue();
  if (selected_) tqBase::unselect(0);
  // No destructor runs inside this dispatch that could end it, so it need not be found.
  const tqBase* const self = this;
  dispatch(deletionEvent, self);
  remove_oid(oid_);
  for (int i = numTriggers() - 1; i >= 0; --i)
    if (tqTrigger* trigger = triggers_->item(i)) trigger->removeObject(this);
  delete triggers_;
  for (Dispatch* running = dispatches_; running; running = running->outer)
    if (running->object == this) running->object = nullptr;
}

void* tqBase::operator new(std::size_t size) noexcept { return std::malloc(size); }

void tqBase::operator delete(void* memory) { std::free(memory); }

unsigned tqBase::make_oid(void* object) {
  const unsigned oid = nextOid();
  if (oid == 0) return 0;
  if (oid >> RegistryPage::bits >= pageCount || !pageOf(oid)) makePage(oid);
  RegistryPage* const page = pageOf(oid);
  page->entries[oid % RegistryPage::size] = RegistryEntry{static_cast<tqBase*>(object), 0, oid};
  ++page->live;
  return oid;
}

void tqBase::remove_oid(unsigned oid) {
  RegistryEntry& entry = entryOf(oid);
  if (entry.oid == 0) return;
  map(entry, 0);
  RegistryPage*& page = pageOf(oid);
  if (!page) return survivors.remove(&entry);
  entry = RegistryEntry{};
  --page->live;
  if (oidCounter >> RegistryPage::bits > oid >> RegistryPage::bits) giveUp(page);
}

tqBase* tqBase::validated(unsigned oid, int followMapping) {
  const RegistryEntry& entry = entryOf(oid);
  return followMapping && entry.mappedOid != 0 ? mappedObject(entry) : entry.object;
}

int tqBase::setMapping(unsigned oid, unsigned mappedOid) {
  RegistryEntry& entry = entryOf(oid);
  if (entry.oid == 0) return 0;
  map(entry, mappedOid);
  return 1;
}

void tqBase::clearMapping() {
  if (mappings == 0) return;
  for (unsigned i = 0; i < pageCount; ++i) {
    if (!pages[i]) continue;
    for (RegistryEntry& entry : pages[i]->entries) map(entry, 0);
  }
  for (RegistryEntry& entry : survivors) map(entry, 0);
}

void tqBase::addTrigger(tqTrigger* trigger) {
  if (!triggers_) triggers_ = tqAllocated(new (std::nothrow) tqTriggerList(0));
  triggers_->append(trigger);
}

void tqBase::removeTrigger(tqTrigger* trigger) {
  if (triggers_) triggers_->removeFirst(trigger);
}

unsigned tqBase::classId() const { return 0; }

const char* tqBase::className() const { return "Base"; }

int tqBase::isA(unsigned id) const { return id == 0 ? 1 : 0; }

tqBase* tqBase::original() {
  if (sourceOid_ == 0) return this;
  if (tqBase* source = validated(sourceOid_, 0)) return source->original();
  sourceOid_ = 0;
  return this;
}

void tqBase::select(int notify) {
  if (selected_) return;
  selected_ = 1;
  if (selectedList) selectedList->append(this);
  if (notify) doTrigger(selectionEvent);
}

void tqBase::unselect(int notify) {
  if (!selected_) return;
  selected_ = 0;
  if (selectedList) selectedList->removeLast(this);
  if (notify) doTrigger(selectionEvent);
}

int tqBase::isSelected() const { return selected_; }

int tqBase::isSelected(const int*) { return isSelected(); }

void tqBase::doTrigger(int event) {
  Dispatch running(this);
  dispatch(event, running.object);
}

// The order of the tests shows: checkMode of an application trigger calls the application. `alive`
// becomes null when the object is destroyed.
void tqBase::dispatch(int event, const tqBase* const& alive) {
  const int own = numTriggers();
  for (int i = 0; i < own && alive; ++i) {
    tqTrigger* trigger = triggers_->item(i);
    if (!trigger || !trigger->isActive() || !trigger->checkEvent(event) || !trigger->checkMode())
      continue;
    if (trigger->type() == TRIGGER_TYPED && !trigger->checkObjectType(this)) continue;
    trigger->fire(this, this, event);
  }
  emptyQueue();
  const int global = alive && global_trigger_list ? global_trigger_list->count() : 0;
  for (int i = 0; i < global && alive; ++i) {
    tqTrigger* trigger = global_trigger_list->item(i);
    if (!trigger || !trigger->isActive() || !trigger->checkObjectType(this) ||
        !trigger->checkEvent(event) || !trigger->checkMode())
      continue;
    trigger->fire(this, nullptr, event);
  }
  emptyQueue();
}

int tqBase::coerce(unsigned id, tqBaseList* out) {
  if (!out || classId() != id) return 0;
  out->append(this);
  return 1;
}

void tqBase::deferredDelete() {
  if (queued_ < 0) return;
  ++queued_;
  queueOfDeletions().append(this);
}

void tqBase::leaveDeletionQueue() {
  for (; queued_ > 0; --queued_) queueOfDeletions().removeFirst(this);
  queued_ = -1;
}

void tqBase::deleteTBDObjects() {
  static int depth = 0;
  tqBaseList& queue = queueOfDeletions();
  if (depth >= deletionDepthLimit) return;
  ++depth;
  while (queue.count() > 0) {
    tqBase* object = queue.item(0);
    queue.remove(0);
    if (object && object->queued_ > 0) --object->queued_;
    delete object;
  }
  --depth;
}

int tqBase::isValidObject() const { return 1; }

int make_handle_oid(void* handle) {
  makeTable(oidHandleTable);
  makeTable(handleOidTable);
  if (const int known = handle_to_oid(handle)) return known;  // Kept: never for a null handle.
  const int oid = static_cast<int>(nextOid());
  if (oid == 0) return 0;
  oidHandleTable->insert(oid, handle);
  handleOidTable->insert(handle, oid);
  return oid;
}

void* oid_to_handle(int oid) {
  void* handle = nullptr;
  if (oidHandleTable && oid != 0) oidHandleTable->find(handle, oid);
  return handle;
}

int handle_to_oid(const void* handle) {
  int oid = 0;
  if (handleOidTable && handle) handleOidTable->find(oid, const_cast<void*>(handle));
  return oid;
}

void delete_handle_oid(int oid) {
  void* handle = nullptr;
  if (oidHandleTable && oidHandleTable->find_and_remove(handle, oid))
    handleOidTable->remove(handle);
}

void delete_handle_ptr(const void* handle) {
  int oid = 0;
  if (handleOidTable && handleOidTable->find_and_remove(oid, const_cast<void*>(handle)))
    oidHandleTable->remove(oid);
}

tqBase* oid_to_base(int oid) { return tqBase::validated(static_cast<unsigned>(oid), 1); }
