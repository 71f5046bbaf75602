#ifndef TQ_TABLE_H
#define TQ_TABLE_H

#include "Warn.h"

#include <cstdint>
#include <cstdlib>
#include <new>

/// \file Table.h
/// Chained hash tables: one template, from which every table of the library is a thin named class
/// that states its key, value, hash and equality. A table owns its entries and its bucket array,
/// never what keys and values point to.
///
/// Slots, growth points, chain order and iteration order are part of the interface: code that
/// walks a table relies on them.

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

/// One link of a chain. The table that it is linked in deletes it.
template <class Key, class Value> struct ChainedTable_Entry {
  ChainedTable_Entry() = default;
  /// Copies the flag, the key and the value, not the link.
  ChainedTable_Entry(const ChainedTable_Entry& other)
      : inTable(other.inTable), key(other.key), value(other.value) {}
  ChainedTable_Entry& operator=(const ChainedTable_Entry&) = delete;

  int inTable = 0;  ///< 1 while linked in a table
  Key key{};
  Value value{};
  ChainedTable_Entry* next = nullptr;  ///< the older entry of the same slot, or null
};

template <class Rule> class ChainedTable_Iterator;

/// Chains of entries over an array of slots whose number is a power of two, 32 at least.
///
/// `Rule` gives the types `Key` and `Value` and the static functions `unsigned hash(key)`, whose
/// low bits select the slot, and `equal(stored key, sought key)`.
///
/// Equal keys are not refused: the newest hides the older ones until it is removed. An owner that
/// wants one entry per key asks `find` first.
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
    clear();
    std::free(buckets_);
  }
  ChainedTable(const ChainedTable&) = delete;
  ChainedTable& operator=(const ChainedTable&) = delete;

  /// Entries held.
  int count() const { return count_; }
  /// Slots, a power of two.
  int bucketCount() const { return mask_ + 1; }

  /// 1 and the newest value of the key, or 0 with `value` untouched.
  int find(Value& value, Key key) const {
    for (const Entry* entry = *slot(key); entry; entry = entry->next) {
      if (!Rule::equal(entry->key, key) || entry->inTable != 1) continue;
      value = entry->value;
      return 1;
    }
    return 0;
  }

  /// Adds an entry in front of its slot's chain, also when the key is present.
  ///
  /// Grows first when the entries number more than twice the slots: to the smallest power of two
  /// not below the number of entries, that is fourfold when filled one by one. Growing reverses
  /// the order within chains.
  void insert(Key key, Value value) {
    if (count_ > 2 * std::int64_t{bucketCount()}) grow();
    Entry* entry = tqAllocated(new (std::nothrow) Entry);
    entry->key = key;
    entry->value = value;
    insertEntry(entry);
  }

  /// Links an entry made with `new` in front of its slot's chain, without growing; the table
  /// deletes it from now on. Null is ignored.
  void insertEntry(Entry* entry) {
    if (entry) link(buckets_, mask_, entry), ++count_;
  }

  /// As `find`, and the entry found is deleted.
  int find_and_remove(Value& value, Key key) {
    Entry* entry = unlink(key);
    if (!entry) return 0;
    value = entry->value;
    delete entry;
    return 1;
  }

  /// Deletes the newest entry of the key; nothing when there is none.
  void remove(Key key) { delete unlink(key); }

  /// Deletes every entry; the slots stay.
  void clear() {
    for (Entry** chain = buckets_; chain <= last_; ++chain) {
      while (Entry* entry = *chain) {
        *chain = entry->next;
        delete entry;
      }
    }
    count_ = 0;
  }

  /// Address of the key's slot, which holds the newest entry of its chain.
  Entry** probe(Key key) { return slot(key); }

  /// Replaces the slots by empty ones: 32, doubled until they number at least `sizeHint`; a hint
  /// above 2^30 counts as 2^30.
  ///
  /// Kept: entries still linked are not deleted. It is for empty tables; an owner that linked
  /// entries of its own and still holds them may start over with it. Others call `clear` first.
  void initialize(int sizeHint) {
    std::free(buckets_);
    setSlots(slotCountFor(sizeHint));
    count_ = 0;
  }

private:
  friend class ChainedTable_Iterator<Rule>;

  static int slotCountFor(int sizeHint) {
    constexpr int most = 1 << 30;
    int slots = 32;
    while (slots < sizeHint && slots < most) slots *= 2;
    return slots;
  }

  static Entry** newSlots(int slots) {
    return static_cast<Entry**>(
        tqAllocated(std::calloc(static_cast<std::size_t>(slots), sizeof(Entry*))));
  }

  static void link(Entry** buckets, int mask, Entry* entry) {
    Entry*& head = buckets[Rule::hash(entry->key) & static_cast<unsigned>(mask)];
    entry->inTable = 1;
    entry->next = head;
    head = entry;
  }

  Entry** slot(Key key) const {
    return buckets_ + (Rule::hash(key) & static_cast<unsigned>(mask_));
  }

  void setSlots(int slots) {
    mask_ = slots - 1;
    buckets_ = newSlots(slots);
    last_ = buckets_ + mask_;
  }

  Entry* unlink(Key key) {
    for (Entry** link = slot(key); Entry* entry = *link; link = &entry->next) {
      if (!Rule::equal(entry->key, key)) continue;
      *link = entry->next;
      --count_;
      return entry;
    }
    return nullptr;
  }

  void grow() {
    Entry** const old = buckets_;
    Entry** const oldLast = last_;
    setSlots(slotCountFor(count_));
    for (Entry** chain = old; chain <= oldLast; ++chain) {
      while (Entry* entry = *chain) {
        *chain = entry->next;
        link(buckets_, mask_, entry);
      }
    }
    std::free(old);
  }

  int mask_ = 0;
  int count_ = 0;
  Entry** buckets_ = nullptr;
  Entry** last_ = nullptr;
};

/// Stands on the entries one after the other: slots in ascending order, within a slot the newest
/// entry first. The table must not change meanwhile.
///
/// ```
/// for (OIDPtrTbl_Iterator i(table); i.more(); i.next()) use(i.current->key, i.cur_value());
/// ```
template <class Rule> class TQ_API ChainedTable_Iterator {
public:
  using Table = ChainedTable<Rule>;

  /// Stands on the first entry.
  ChainedTable_Iterator(const Table& table) : slot_(table.buckets_), last_(table.last_) {
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
  int more() const { return slot_ <= last_; }

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
