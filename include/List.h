#ifndef TQ_LIST_H
#define TQ_LIST_H

#include "Copyable.h"

#include <cstring>

/// \file List.h
/// Growable lists of pointers: one template, from which the four lists of the library are thin
/// named classes. A list owns its slot array, never the objects that its elements point to, and it
/// needs no definition of their class.
///
/// Capacities climb a fixed ladder of block sizes; removal moves the last element into the hole
/// unless the list is ordered.

class tqBase;
class tqTrigger;
class tqString;
class tqUserDataItem;

/// What all lists share: the growth ladder and the fatal errors.
class TQ_API ProtoList {
public:
  /// Elements to allocate for at least `n`: what fits the smallest block strictly larger than
  /// `n * elementSize` bytes (modulo 2^32) among 48, 112, 240, ... 2^26 - 16 bytes; `n` itself when
  /// the ladder is exhausted. A size of 0 gives `n`.
  static int bestNewCount(int n, unsigned elementSize);

  /// Writes "ProtoList internal error: index %d out of range\n" to standard error and aborts.
  [[noreturn]] static void rangeError(int i);

  /// Capacity of a full list that needs slot `last`: `bestNewCount(last + 1, 4)`, and never less
  /// than `last + 1`. Runs out of memory when an int cannot count that far.
  static int grownCount(int last);

  /// Index of the first slot from `from` on, below `to`, that holds exactly this address; -1 when
  /// there is none. The array may be of any pointer type.
  static int firstIndexOf(const void* item, const void* slots, int from, int to);
  /// Index of the last such slot below `to`, likewise.
  static int lastIndexOf(const void* item, const void* slots, int to);

  /// Writes "%s: no deep copy\n" with the element's name to standard error, `count` times, and
  /// aborts, also when `count` is 0.
  [[noreturn]] static void noDeepCopy(const char* elementName, int count);
};

/// The list of pointers to `Rule::Element`.
///
/// `Rule` names the list class itself (`List`), its element class (`Element`) and the text that
/// the refusal of a deep copy prints (`elementName`).
template <class Rule> class TQ_API PointerList : public tqCopyable {
public:
  using List = typename Rule::List;
  using Element = typename Rule::Element;

  /// An empty, unordered list with room for `initialCount` elements and more (see `bestNewCount`,
  /// with element size 4 whatever a pointer's size is); no room at all for 0 or less.
  PointerList(int initialCount) { initialize(initialCount); }

  /// A list of its own over the same elements, capacity and order flag included.
  PointerList(const PointerList& other) : tqCopyable() { copySlots(other); }

  /// As copying.
  ///
  /// Kept: the slot array held so far is not freed. Callers that took its address with `array`
  /// may go on reading it; a list that is assigned often is better emptied and refilled.
  PointerList& operator=(const PointerList& other) {
    copySlots(other);
    return *this;
  }

  /// Elements in use.
  int count() const { return count_; }
  /// Slots allocated.
  int capacity() const { return capacity_; }
  /// 1 when removal keeps the order.
  int ordered() const { return ordered_; }

  /// The slot of element i; an index outside 0 .. count - 1 ends in `ProtoList::rangeError`. The
  /// reference lasts until the list changes.
  Element*& item(int i) { return slots_[checked(i)]; }
  Element* item(int i) const { return slots_[checked(i)]; }

  /// Address of slot i, unchecked. It stays that slot's address until the list grows or dies.
  Element** array(int i) {
    pin();
    return slots_ + i;
  }

  Element** begin() { return slots_; }
  Element** end() { return slots_ + count_; }
  Element* const* begin() const { return slots_; }
  Element* const* end() const { return slots_ + count_; }

  /// 1 when some element is exactly this pointer, else 0.
  int isMember(const Element* item) const { return indexOf(item) >= 0 ? 1 : 0; }
  /// Same as `isMember`.
  int member(const Element* item) const { return isMember(item); }

  /// Nonzero: removal keeps the order, at the price of moving what follows.
  void ordered(int flag) { ordered_ = flag; }

  /// Adds an element at the end; grows when full.
  void append(Element* item) {
    if (count_ >= limit_) makeRoom(count_);
    slots_[count_++] = item;
  }

  /// Inserts before element i, moving i and what follows up by one; `i == count()` appends.
  ///
  /// A negative i does nothing. Past the end, the item goes to slot i (the array grows to hold
  /// it) and the slots skipped become null.
  ///
  /// Kept: the count rises by one only, wherever the item goes, so an item past the end is no
  /// element yet; callers that fill slots from the far end rely on the address of `array(i)`.
  void insert(int i, Element* item) {
    if (i < 0) return;
    const int last = i > count_ ? i : count_;
    if (last >= limit_) makeRoom(last);
    if (i < count_) std::memmove(slots_ + i + 1, slots_ + i, bytes(count_ - i));
    for (int skipped = count_; skipped < i; ++skipped) slots_[skipped] = nullptr;
    slots_[i] = item;
    ++count_;
  }

  /// Takes element i out. Unordered lists move their last element into its place; ordered ones
  /// move what follows down, in constant time when i is 0.
  ///
  /// Kept: `remove(count())` drops the last element; loops that count down from `count()` rely on
  /// it. Other indices out of range do nothing.
  void remove(int i) {
    if (i < 0 || i > count_) return;
    if (count_ < 2) return remove_all();
    --count_;
    if (i > count_) return;
    if (!ordered_) {
      slots_[i] = slots_[count_];
    } else if (i == 0 && !pinned_) {
      ++slots_;
      ++lead_;
      if (limit_ > blockSize_ - lead_) limit_ = blockSize_ - lead_;
    } else {
      std::memmove(slots_ + i, slots_ + i + 1, bytes(count_ - i));
    }
  }

  /// Takes out the first element that is exactly this pointer: 1, or 0 when there is none.
  int removeFirst(const Element* item) {
    const int i = indexOf(item);
    if (i >= 0) remove(i);
    return i >= 0 ? 1 : 0;
  }

  /// Takes out the last element that is exactly this pointer, likewise.
  int removeLast(const Element* item) {
    int i = count_ - 1;
    const int near = count_ - nearSlots;
    while (i >= 0 && i >= near && slots_[i] != item) --i;
    if (i >= 0 && i < near) i = ProtoList::lastIndexOf(item, slots_, i + 1);
    if (i >= 0) remove(i);
    return i >= 0 ? 1 : 0;
  }

  /// Empties the list; the slots stay.
  void remove_all() {
    count_ = 0;
    if (lead_ > 0) moveTo(block());  // an idle queue points to the start of its block
  }

  /// Puts the item in the place of element i; past the end it is appended, a negative i does
  /// nothing.
  void replace(int i, Element* item) {
    if (i < 0) return;
    if (i < count_)
      slots_[i] = item;
    else
      append(item);
  }

  /// Makes a fresh, empty slot array for n elements, none for 0 or less, and drops the order flag.
  ///
  /// Kept: the previous array is not freed and the count stays (cut to the new capacity): it is a
  /// constructor's step, for new lists only. `remove_all` empties a list.
  void initialize(int n) {
    newSlots(n > 0 ? ProtoList::bestNewCount(n, elementSize) : 0);
    if (count_ > capacity_) count_ = capacity_;
    ordered_ = 0;
  }

  // Virtual slots: those of tqCopyable, then these; the order counts.
  ~PointerList() override { std::free(block()); }
  /// A new list over the same elements.
  tqCopyable* shallowCopy() const override {
    return new (std::nothrow) List(static_cast<const List&>(*this));
  }
  /// Refuses: writes "%s: no deep copy\n" once per element and aborts.
  void deepenShallowCopy() override { ProtoList::noDeepCopy(Rule::elementName, count_); }
  virtual unsigned classId() const { return 21; }
  virtual const char* className() const { return "List"; }
  virtual int isA(unsigned id) const { return id == 21 || id == 1 ? 1 : 0; }

protected:
  /// Index of the first element that is exactly this pointer, -1 when there is none.
  int indexOf(const Element* item) const {
    const int near = count_ < nearSlots ? count_ : nearSlots;
    for (int i = 0; i < near; ++i)
      if (slots_[i] == item) return i;
    return count_ > near ? ProtoList::firstIndexOf(item, slots_, near, count_) : -1;
  }

private:
  template <class> friend class PointerList_Iterator;

  // Kept: the ladder is that of 4-byte elements whatever a pointer's size is, so that capacities
  // and growth points agree everywhere.
  static constexpr unsigned elementSize = 4;
  // Slots searched in place; longer lists are handed to the wide search.
  static constexpr int nearSlots = 8;

  static std::size_t bytes(int slots) { return static_cast<std::size_t>(slots) * sizeof(Element*); }

  int checked(int i) const {
    if (i < 0 || i >= count_) ProtoList::rangeError(i);
    return i;
  }

  Element** block() const { return slots_ ? slots_ - lead_ : nullptr; }

  void newSlots(int capacity) {
    slots_ = nullptr;
    if (capacity > 0)
      slots_ = static_cast<Element**>(
          tqAllocated(std::calloc(static_cast<std::size_t>(capacity), sizeof(Element*))));
    capacity_ = limit_ = blockSize_ = capacity;
    lead_ = 0;
    pinned_ = false;
  }

  void copySlots(const PointerList& other) {
    const Element* const* const source = other.slots_;  // `other` may be this list
    const int used = other.limit_;
    newSlots(other.capacity_);
    if (used > 0) std::memcpy(slots_, source, bytes(used));
    count_ = other.count_;
    ordered_ = other.ordered_;
  }

  // Slot 0 opens the block again and stays there from now on.
  void pin() {
    if (lead_ > 0) moveTo(block());
    pinned_ = true;
  }

  // Moves the elements to the front of `block`, which holds blockSize_ slots. Out of line, as
  // growth is: inlined into a caller whose list is known, gcc warns of an overflow that cannot
  // happen.
  [[gnu::noinline]] void moveTo(Element** block) {
    if (count_ > 0) std::memmove(block, slots_, bytes(count_));
    slots_ = block;
    lead_ = 0;
    limit_ = blockSize_ < capacity_ ? blockSize_ : capacity_;
  }

  // Makes slot `last` usable: by growing when it lies beyond the capacity, otherwise by winning
  // back the lead. A lead shorter than the list is left behind in favour of a block of twice the
  // capacity, so that a queue moves each element a bounded number of times.
  [[gnu::noinline]] void makeRoom(int last) {
    if (last < capacity_ && lead_ >= count_) return moveTo(block());
    Element** const old = block();
    const int capacity = last < capacity_ ? capacity_ : ProtoList::grownCount(last);
    const std::size_t size = bytes(capacity) * (last < capacity_ ? 2 : 1);
    if (lead_ == 0) {
      slots_ = static_cast<Element**>(tqAllocated(std::realloc(old, size)));
    } else {
      Element** const block = static_cast<Element**>(tqAllocated(std::malloc(size)));
      std::memcpy(block, slots_, bytes(count_));
      std::free(old);
      slots_ = block;
      lead_ = 0;
    }
    blockSize_ = static_cast<int>(size / sizeof(Element*));
    capacity_ = limit_ = capacity;
  }

  Element** slots_ = nullptr;
  int capacity_ = 0;
  int count_ = 0;
  int ordered_ = 0;
  // A queue drops its first element by moving slot 0 along its block of `blockSize_` slots:
  // `lead_` of them lie given up before it. The capacity is that of the ladder, whatever the block
  // holds, and sets the growth points; `limit_` of its slots are there to be used.
  int limit_ = 0;
  int lead_ = 0;
  int blockSize_ = 0;
  bool pinned_ = false;  // the address of a slot is out: slot 0 moves no more
};

/// Searches a list. The list must outlive it.
template <class Rule> class TQ_API PointerList_Iterator {
public:
  /// Stands at index 0.
  PointerList_Iterator(const PointerList<Rule>& list) : list_(list), count_(list.count()) {}

  /// Searches from index 0 over the elements present now: on a hit stands there and gives 1, else
  /// gives 0 and stays.
  int canFind(const typename Rule::Element* item) {
    const int found = list_.indexOf(item);
    if (found < 0) return 0;
    index_ = found;
    return 1;
  }

  /// Where it stands.
  int index() const { return index_; }
  /// Elements in the list when the iterator was made.
  int count() const { return count_; }

private:
  const PointerList<Rule>& list_;
  int index_ = 0;
  int count_;
};

class tqBaseList;
class tqTriggerList;
class tqStringList;
class tqUserDataItemList;

struct tqBaseListRule {
  using List = tqBaseList;
  using Element = tqBase;
  static constexpr const char* elementName = "tqBase*";
};
/// List of objects.
class TQ_API tqBaseList : public PointerList<tqBaseListRule> {
public:
  using PointerList::PointerList;
};
using tqBaseList_Iterator = PointerList_Iterator<tqBaseListRule>;

struct tqTriggerListRule {
  using List = tqTriggerList;
  using Element = tqTrigger;
  static constexpr const char* elementName = "tqTrigger *";
};
/// List of triggers.
class TQ_API tqTriggerList : public PointerList<tqTriggerListRule> {
public:
  using PointerList::PointerList;
};
using tqTriggerList_Iterator = PointerList_Iterator<tqTriggerListRule>;

struct tqStringListRule {
  using List = tqStringList;
  using Element = tqString;
  static constexpr const char* elementName = "tqString*";
};
/// List of strings.
class TQ_API tqStringList : public PointerList<tqStringListRule> {
public:
  using PointerList::PointerList;
};
using tqStringList_Iterator = PointerList_Iterator<tqStringListRule>;

struct tqUserDataItemListRule {
  using List = tqUserDataItemList;
  using Element = tqUserDataItem;
  static constexpr const char* elementName = "tqUserDataItem*";
};
/// List of attribute items: the one kind that has a deep copy.
class TQ_API tqUserDataItemList : public PointerList<tqUserDataItemListRule> {
public:
  using PointerList::PointerList;
  /// Replaces every item by a new copy of it, once each: an item that stands twice becomes one new
  /// item that stands twice. The list's owner owns the new items.
  void deepenShallowCopy() override;
};
using tqUserDataItemList_Iterator = PointerList_Iterator<tqUserDataItemListRule>;

#endif
