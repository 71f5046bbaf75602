#ifndef TQ_TABLE_H
#define TQ_TABLE_H

#include "Warn.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

/// \file Table.h
/// Chained hash tables: one template, from which every table of the library is a thin named class
/// that states its key, value, hash and equality. A table owns its entries and its bucket array,
/// never what keys and values point to.
///
/// Slots, growth points, chain order and iteration order are part of the interface: code that
/// walks a table relies on them. Finding and removing take constant time all the same, whatever
/// the slots.

/// General hash functions for tables of the application; the library's own tables use none of them.
class TQ_API ProtoTable {
public:
  /// Hash of a text; null counts as the empty one.
  ///
  /// Kept: the first character only decides whether there is a text, it is never mixed in, so "a"
  /// and "b" share a hash; hashes stored by old files would change otherwise.
  static unsigned hash(const char* text);
  /// Multiplicative hash: the key times 2654435767, modulo 2^32.
  static unsigned hash(int key);
  /// The high word of the number's IEEE-754 form XOR its low word.
  static unsigned hash(double key);
};

/// The low 32 bits of an address: what a table hashes of a pointer.
inline unsigned lowWord(const void* address) {
  return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(address));
}

/// Spreads numbers that differ anywhere over all 32 bits: the high word of the number times 2^64
/// over the golden ratio (multiplicative hashing, Knuth, The Art of Computer Programming 3, 6.4).
inline unsigned spreadBits(std::uint64_t number) {
  return static_cast<unsigned>((number * 0x9E3779B97F4A7C15u) >> 32);
}
inline unsigned spreadBits(const void* address) {
  return spreadBits(std::uint64_t{reinterpret_cast<std::uintptr_t>(address)});
}

/// The same for the characters of a text, all of which count.
TQ_API unsigned spreadBits(const char* text, std::size_t length);

template <class Rule> class ChainedTable;
template <class Rule> class ChainedTable_Iterator;

/// One link of a chain. The table that it is linked in deletes it.
template <class Key, class Value> struct ChainedTable_Entry {
  ChainedTable_Entry() = default;
  /// Copies the flag, the key and the value, not the link.
  ChainedTable_Entry(const ChainedTable_Entry& other)
      : inTable(other.inTable), key(other.key), value(other.value) {}
  ChainedTable_Entry& operator=(const ChainedTable_Entry&) = delete;

  int inTable = 0;  ///< 1 while linked in a table

private:
  template <class> friend class ChainedTable;
  unsigned short growths_ = 0;  // how often the table had grown when the entry came
  bool fromArena_ = false;      // the table's own memory, not `new`

public:
  Key key{};
  Value value{};
  ChainedTable_Entry* next = nullptr;  ///< the following entry of the same slot, or null

private:
  ChainedTable_Entry** back_ = nullptr;  // the pointer that leads to this entry
  ChainedTable_Entry* equal_ = nullptr;  // the following entry of an equal key
};

/// Chains of entries over an array of slots whose number is a power of two, 32 at least.
///
/// `Rule` gives the types `Key` and `Value` and the static functions `unsigned hash(key)`, whose
/// low bits select the slot, `unsigned spread(key)`, a second hash that has nothing to do with
/// slots and uses all its bits (`spreadBits` makes one), and `equal(stored key, sought key)`.
///
/// Equal keys are not refused: the newest hides the older ones until it is removed. (Growing turns
/// them over, see `insert`.) An owner that wants one entry per key asks `find` first.
//
// The documented slots may crowd all entries into a few chains (aligned addresses, similar names),
// and code seldom looks at them. So keys are found through an open-addressing index with a hash of
// its own, and the chains are made when somebody looks: `probe`, `insertEntry` or an iterator.
// Until then the entries hang in one chain, newest first, and each knows how often the table had
// grown when it came, which is all that its place in the chains depends on (see `makeChains`).
// Entries link back to what points at them, so that removing one needs no walk.
template <class Rule> class TQ_API ChainedTable {
public:
  using Key = typename Rule::Key;
  using Value = typename Rule::Value;
  using Entry = ChainedTable_Entry<Key, Value>;
  using Iterator = ChainedTable_Iterator<Rule>;

  /// An empty table; see `initialize` for the hint.
  ChainedTable(int sizeHint) { initialize(sizeHint); }
  /// Deletes the entries, not what they point to.
  virtual ~ChainedTable() {
    deleteEntries();
    std::free(buckets_);
    std::free(index_);
  }
  ChainedTable(const ChainedTable&) = delete;
  ChainedTable& operator=(const ChainedTable&) = delete;

  /// Entries held.
  int count() const { return count_; }
  /// Slots, a power of two.
  int bucketCount() const { return mask_ + 1; }

  /// 1 and the value of the first entry of the key in its chain, or 0 with `value` untouched.
  int find(Value& value, Key key) const {
    const Place* place = locate(key);
    const Entry* entry = place ? place->entry : nullptr;
    while (entry && entry->inTable != 1) entry = entry->equal_;
    if (!entry) return 0;
    value = entry->value;
    return 1;
  }

  /// Adds an entry in front of its slot's chain.
  ///
  /// Grows first when the entries number more than twice the slots: to the smallest power of two
  /// not below the number of entries, that is fourfold when filled one by one.
  ///
  /// Kept: a key that is present is not refused, its newest entry hides the older ones; and growing
  /// turns every chain over, equal keys included. Iteration follows the chains.
  void insert(Key key, Value value) {
    if (count_ > 2 * std::int64_t{bucketCount()}) grow();
    Entry* entry = newEntry();
    entry->key = key;
    entry->value = value;
    add(entry);
  }

  /// Links an entry made with `new` in front of its slot's chain, without growing; the table
  /// deletes it from now on. Null is ignored.
  void insertEntry(Entry* entry) {
    if (!entry) return;
    makeChains();
    foreign_ = true;
    add(entry);
  }

  /// As `find`, and the entry found is deleted.
  int find_and_remove(Value& value, Key key) {
    Place* place = locate(key);
    if (!place) return 0;
    value = place->entry->value;
    removeAt(place);
    return 1;
  }

  /// Deletes the first entry of the key in its chain; nothing when there is none.
  void remove(Key key) {
    if (Place* place = locate(key)) removeAt(place);
  }

  /// Deletes every entry; the slots stay.
  void clear() {
    deleteEntries();
    forgetEntries();
    if (buckets_) std::memset(buckets_, 0, bytes(bucketCount()));
  }

  /// Address of the key's slot, which holds the first entry of its chain. For reading: entries are
  /// linked and unlinked by the table.
  Entry** probe(Key key) {
    makeChains();
    return slot(key);
  }

  /// Replaces the slots by empty ones: 32, doubled until they number at least `sizeHint`; a hint
  /// above 2^30 counts as 2^30.
  ///
  /// Kept: entries still linked are not deleted. It is for empty tables; an owner that linked
  /// entries of its own and still holds them may start over with it. Others call `clear` first.
  void initialize(int sizeHint) {
    if (count_ == 0) deleteEntries();  // the arena of those removed before
    std::free(buckets_);
    buckets_ = nullptr;
    mask_ = slotCountFor(sizeHint) - 1;
    arena_ = nullptr;
    free_ = nullptr;
    fresh_ = freshEnd_ = nullptr;
    forgetEntries();
  }

private:
  friend class ChainedTable_Iterator<Rule>;

  // A place of the index; null entry when empty.
  struct Place {
    Entry* entry;
    unsigned spread;
  };
  // A block of entries, whose first one only links the blocks.
  union Cell {
    Cell() {}
    ~Cell() {}
    Cell* next;
    Entry entry;
  };

  static int slotCountFor(int sizeHint) {
    constexpr int most = 1 << 30;
    int slots = 32;
    while (slots < sizeHint && slots < most) slots *= 2;
    return slots;
  }

  static std::size_t bytes(int slots) { return static_cast<std::size_t>(slots) * sizeof(Entry*); }

  static Entry** newSlots(int slots) {
    return static_cast<Entry**>(tqAllocated(std::calloc(1, bytes(slots))));
  }

  // The chains.

  Entry** slot(Key key) const {
    return buckets_ + (Rule::hash(key) & static_cast<unsigned>(mask_));
  }

  static void link(Entry** head, Entry* entry) {
    entry->next = *head;
    entry->back_ = head;
    if (*head) (*head)->back_ = &entry->next;
    *head = entry;
  }

  void add(Entry* entry) {
    addToIndex(entry);
    entry->inTable = 1;
    entry->growths_ = growths_;
    link(buckets_ ? slot(entry->key) : &unchained_, entry);
    ++count_;
  }

  // An entry goes to the head of its chain, and every growth turns the chain over; it never parts
  // entries that a smaller table held together. So those that saw an even number of growths end
  // before those that saw an odd number, the former newest first, the latter oldest first.
  void makeChains() const {
    if (buckets_) return;
    buckets_ = newSlots(bucketCount());
    Entry* newestFirst = unchained_;
    Entry* oldestFirst = nullptr;
    unchained_ = nullptr;
    while (Entry* entry = newestFirst) {
      newestFirst = entry->next;
      if ((growths_ - entry->growths_) % 2 != 0) {
        link(slot(entry->key), entry);
      } else {
        entry->next = oldestFirst;
        oldestFirst = entry;
      }
    }
    while (Entry* entry = oldestFirst) {
      oldestFirst = entry->next;
      link(slot(entry->key), entry);
    }
  }

  void grow() {
    Entry** const old = buckets_;
    const int oldMask = mask_;
    mask_ = slotCountFor(count_) - 1;
    ++growths_;
    turnEqualsOver();
    if (!old) return;
    buckets_ = newSlots(bucketCount());
    for (int i = 0; i <= oldMask; ++i) {
      while (Entry* entry = old[i]) {
        old[i] = entry->next;
        link(slot(entry->key), entry);
      }
    }
    std::free(old);
  }

  // The index.

  Place* locate(Key key) const {
    if (keys_ == 0) return nullptr;
    const unsigned spread = Rule::spread(key);
    for (unsigned i = home(spread); index_[i].entry; i = (i + 1) & indexMask_)
      if (index_[i].spread == spread && Rule::equal(index_[i].entry->key, key)) return &index_[i];
    return nullptr;
  }

  void addToIndex(Entry* entry) {
    if (Place* place = locate(entry->key)) {
      entry->equal_ = place->entry;
      place->entry = entry;
      return;
    }
    if (keys_ >= indexMask_ / 4 * 3) growIndex();
    entry->equal_ = nullptr;
    place(Place{entry, Rule::spread(entry->key)});
    ++keys_;
  }

  // The upper bits, which multiplying spreads best.
  unsigned home(unsigned spread) const { return spread >> indexShift_; }

  void place(const Place& what) {
    unsigned i = home(what.spread);
    while (index_[i].entry) i = (i + 1) & indexMask_;
    index_[i] = what;
  }

  void growIndex() {
    Place* const old = index_;
    const unsigned oldSize = old ? indexMask_ + 1 : 0;
    const unsigned size = old ? 2 * oldSize : 32;
    index_ = static_cast<Place*>(tqAllocated(std::calloc(size, sizeof(Place))));
    indexMask_ = size - 1;
    indexShift_ = old ? indexShift_ - 1 : 27;
    for (unsigned i = 0; i < oldSize; ++i)
      if (old[i].entry) place(old[i]);
    std::free(old);
  }

  void removeAt(Place* place) {
    Entry* const entry = place->entry;
    *entry->back_ = entry->next;
    if (entry->next) entry->next->back_ = entry->back_;
    --count_;
    place->entry = entry->equal_;
    if (!place->entry) {
      --keys_;
      closeGap(static_cast<unsigned>(place - index_));
    }
    deleteEntry(entry);
  }

  // Moves back what the empty place would hide from `locate`.
  void closeGap(unsigned gap) {
    for (unsigned i = (gap + 1) & indexMask_; index_[i].entry; i = (i + 1) & indexMask_) {
      if (((i - home(index_[i].spread)) & indexMask_) < ((i - gap) & indexMask_)) continue;
      index_[gap] = index_[i];
      index_[i].entry = nullptr;
      gap = i;
    }
  }

  void turnEqualsOver() {
    if (static_cast<unsigned>(count_) == keys_) return;
    for (unsigned i = 0; i <= indexMask_; ++i) {
      Entry* turned = nullptr;
      while (Entry* entry = index_[i].entry) {
        index_[i].entry = entry->equal_;
        entry->equal_ = turned;
        turned = entry;
      }
      index_[i].entry = turned;
    }
  }

  // The entries' memory: blocks that grow with the table, given back as a whole.

  Entry* newEntry() {
    if (free_) {
      Cell* const cell = free_;
      free_ = cell->next;
      return construct(cell);
    }
    if (fresh_ == freshEnd_) {
      constexpr int first = 15, most = 4095;
      const int size = count_ < first ? first : count_ < most ? count_ : most;
      Cell* const block = static_cast<Cell*>(
          tqAllocated(std::malloc((static_cast<std::size_t>(size) + 1) * sizeof(Cell))));
      block->next = arena_;
      arena_ = block;
      fresh_ = block + 1;
      freshEnd_ = fresh_ + size;
    }
    return construct(fresh_++);
  }

  static Entry* construct(Cell* cell) {
    Entry* const entry = new (cell) Entry;
    entry->fromArena_ = true;
    return entry;
  }

  void deleteEntry(Entry* entry) {
    if (!entry->fromArena_) {
      delete entry;
      return;
    }
    entry->~Entry();
    Cell* const cell = reinterpret_cast<Cell*>(entry);
    cell->next = free_;
    free_ = cell;
  }

  // Entries of the arena go with it, unless they need their destructors.
  void deleteEntries() {
    constexpr bool plain = std::is_trivially_destructible_v<Entry>;
    if (!plain || foreign_) {
      for (unsigned i = 0; index_ && i <= indexMask_; ++i) {
        while (Entry* entry = index_[i].entry) {
          index_[i].entry = entry->equal_;
          deleteEntry(entry);
        }
      }
    }
    while (Cell* block = arena_) {
      arena_ = block->next;
      std::free(block);
    }
    free_ = nullptr;
    fresh_ = freshEnd_ = nullptr;
  }

  void forgetEntries() {
    std::free(index_);
    index_ = nullptr;
    indexMask_ = 0;
    keys_ = 0;
    count_ = 0;
    growths_ = 0;
    foreign_ = false;
    unchained_ = nullptr;
  }

  int mask_ = 0;
  int count_ = 0;
  mutable Entry** buckets_ = nullptr;   // null until somebody looks
  mutable Entry* unchained_ = nullptr;  // the entries until then, newest first
  Place* index_ = nullptr;
  unsigned indexMask_ = 0;   // places of the index less 1
  unsigned indexShift_ = 0;  // 32 less the bits of a place
  unsigned keys_ = 0;        // distinct keys: places in use
  unsigned short growths_ = 0;
  bool foreign_ = false;  // some entries were made with `new`
  Cell* arena_ = nullptr;
  Cell* free_ = nullptr;
  Cell* fresh_ = nullptr;
  Cell* freshEnd_ = nullptr;
};

/// Stands on the entries one after the other: slots in ascending order, within a slot in chain
/// order. The table must not change meanwhile.
///
/// ```
/// for (OIDPtrTbl_Iterator i(table); i.more(); i.next()) use(i.current->key, i.cur_value());
/// ```
template <class Rule> class TQ_API ChainedTable_Iterator {
public:
  using Table = ChainedTable<Rule>;

  /// Stands on the first entry.
  ChainedTable_Iterator(const Table& table) {
    table.makeChains();
    slot_ = table.buckets_;
    last_ = table.buckets_ + table.mask_;
    settle();
  }

  /// Moves to the following entry: 1, or 0 at the end.
  int next() {
    if (!current) return 0;
    current = current->next;
    if (!current) {
      ++slot_;
      settle();
    }
    return current ? 1 : 0;
  }

  /// 1 until `next` has passed the last entry.
  int more() const { return slot_ <= last_ ? 1 : 0; }

  /// Value of the current entry; a zero value at the end.
  typename Table::Value cur_value() const {
    return current ? current->value : typename Table::Value{};
  }

  typename Table::Entry* current = nullptr;  ///< null at the end

private:
  void settle() {
    while (slot_ <= last_ && !(current = *slot_)) ++slot_;
  }

  typename Table::Entry** slot_;
  typename Table::Entry** last_;
};

#endif
