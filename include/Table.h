#ifndef TQ_TABLE_H
#define TQ_TABLE_H

#include "Warn.h"

#include <algorithm>
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

/// Spreads numbers that differ anywhere over all 32 bits, the upper ones best (multiplicative
/// hashing, Knuth, The Art of Computer Programming 3, 6.4).
//
// Keys come in sequences: addresses at the distance of the objects' size, identifiers in turn. Of
// many odd factors chosen at random this is one of the few that spread 1,000 to 100,000 numbers
// well at each of 29 distances from 1 to 512: an index looks at 1.19 places to find one, at 2.06
// with the worst distance. With 2^64 over the golden ratio it is 2.7 and 32, because multiples of a
// few numbers, 144 for one, lie close together.
inline unsigned spreadBits(std::uint64_t number) {
  return static_cast<unsigned>((number * 0x6715188FA8FC72C7u) >> 32);
}
inline unsigned spreadBits(const void* address) {
  return spreadBits(std::uint64_t{reinterpret_cast<std::uintptr_t>(address)});
}

/// The same for the characters of a text, all of which count.
TQ_API unsigned spreadBits(const char* text, std::size_t length);

/// Open addressing with linear probing: finds what is kept under a hash. A `Place` is copied as it
/// is, and all zero when nobody is in it; it has `bool used()` and `unsigned spread()`, the hash by
/// whose upper bits it is found. The owner calls `clear` in the end, or never, where one lasts as
/// long as the process.
template <class Place> class OpenIndex {
public:
  OpenIndex() = default;
  OpenIndex(const OpenIndex&) = delete;
  OpenIndex& operator=(const OpenIndex&) = delete;

  /// Places in use.
  unsigned count() const { return count_; }
  /// All places, also those that are not in use.
  Place* begin() const { return places_; }
  Place* end() const { return places_ ? places_ + mask_ + 1 : places_; }

  /// The place of that hash for which `is(place)`, or null. It stays where it is until one is added
  /// or removed.
  template <class Is> Place* find(unsigned spread, Is is) const {
    if (!places_) return nullptr;
    for (unsigned i = home(spread); places_[i].used(); i = (i + 1) & mask_)
      if (is(places_[i])) return &places_[i];
    return nullptr;
  }

  /// Adds one that is in use; whether there is one like it is not asked.
  void add(const Place& place) {
    if (count_ == most_) grow();
    ++count_;
    put(place);
  }

  /// Removes a place of this index.
  void remove(Place* place) {
    auto gap = static_cast<unsigned>(place - places_);
    for (unsigned i = (gap + 1) & mask_; places_[i].used(); i = (i + 1) & mask_) {
      // Those between the gap and their home are found without it.
      if (((i - home(places_[i].spread())) & mask_) < ((i - gap) & mask_)) continue;
      places_[gap] = places_[i];
      gap = i;
    }
    places_[gap] = Place{};
    --count_;
  }

  /// Removes all, and gives their memory back.
  void clear() {
    std::free(places_);
    places_ = nullptr;
    count_ = most_ = 0;
  }

private:
  unsigned home(unsigned spread) const { return spread >> shift_; }

  void put(const Place& place) {
    unsigned i = home(place.spread());
    while (places_[i].used()) i = (i + 1) & mask_;
    places_[i] = place;
  }

  void grow() {
    Place* const old = places_;
    const Place* const oldEnd = end();
    shift_ = old ? shift_ - 1 : 28;
    mask_ = ~0u >> shift_;
    most_ = (mask_ + 1) / 4 * 3;
    places_ = static_cast<Place*>(tqAllocated(std::calloc(std::size_t{mask_} + 1, sizeof(Place))));
    for (const Place* place = old; place != oldEnd; ++place)
      if (place->used()) put(*place);
    std::free(old);
  }

  Place* places_ = nullptr;
  unsigned mask_ = 0;   // places less 1
  unsigned shift_ = 0;  // 32 less the bits of a place
  unsigned count_ = 0;
  unsigned most_ = 0;  // when to grow
};

/// A key and a value of a table as plain data, for as long as nobody looks at its entries. The
/// table numbers them as they come.
template <class Rule> struct TablePair {
  using Key = typename Rule::Key;
  using Value = typename Rule::Value;
  static_assert(std::is_trivially_copyable_v<Key> && std::is_trivially_copyable_v<Value>,
                "the rule of this table needs a Pair of its own");

  TablePair() = default;
  TablePair(Key newKey, Value newValue, unsigned itsSpread)
      : key_(newKey), value_(newValue), spread_(itsSpread) {}
  /// Whether a pair can stand for the two; the table makes entries from the first that it cannot.
  static bool holds(Key, Value) { return true; }
  bool used() const { return came != 0; }
  bool is(Key sought, unsigned itsSpread) const {
    return spread_ == itsSpread && Rule::equal(key_, sought);
  }
  unsigned spread() const { return spread_; }
  Key key() const { return key_; }
  Value value() const { return value_; }

private:
  Key key_;
  Value value_;
  unsigned spread_;

public:
  unsigned came = 0;  ///< set by the table: 1 for the first pair
};

/// All of a rule (see `ChainedTable`) but its `hash`, for keys that are integers or addresses.
template <class K, class V> struct PlainRule {
  static_assert(std::is_integral_v<K> || std::is_pointer_v<K>);
  using Key = K;
  using Value = V;
  static bool equal(K a, K b) { return a == b; }
  static unsigned spread(K key) {
    if constexpr (std::is_pointer_v<K>)
      return spreadBits(static_cast<const void*>(key));
    else
      return spreadBits(static_cast<std::uint64_t>(key));
  }

  /// As `TablePair`, without what such a key tells itself.
  struct Pair {
    Pair() = default;
    Pair(K newKey, V newValue, unsigned) : key_(newKey), value_(newValue) {}
    static bool holds(K, V) { return true; }
    bool used() const { return came != 0; }
    bool is(K sought, unsigned) const { return key_ == sought; }
    unsigned spread() const { return PlainRule::spread(key_); }
    K key() const { return key_; }
    V value() const { return value_; }

  private:
    K key_;

  public:
    unsigned came = 0;  ///< between the two, where it leaves no hole

  private:
    V value_;
  };
};

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
  Key key{};
  Value value{};
  ChainedTable_Entry* next = nullptr;  ///< the following entry of the same slot, or null

private:
  template <class> friend class ChainedTable;
  ChainedTable_Entry** back_ = nullptr;  // the pointer that leads to this entry
  ChainedTable_Entry* equal_ = nullptr;  // the following entry of an equal key
};

/// Chains of entries over an array of slots whose number is a power of two, 32 at least.
///
/// `Rule` gives the types `Key` and `Value` and the static functions `unsigned hash(key)`, whose
/// low bits select the slot, `unsigned spread(key)`, a second hash that has nothing to do with
/// slots and uses all its bits (`spreadBits` makes one), and `equal(stored key, sought key)`.
/// `PlainRule` has all of them but the first. A rule may have a `Pair` in place of `TablePair`.
///
/// Entries are made when somebody looks at them: who only inserts, finds and removes does not pay
/// for their memory.
///
/// Equal keys are not refused: the newest hides the older ones until it is removed. (Growing turns
/// them over, see `insert`.) An owner that wants one entry per key asks `find` first.
//
// The documented slots may crowd all entries into a few chains (aligned addresses, similar names),
// and code seldom looks at them. So there are no entries until somebody does, through `probe`,
// `insertEntry` or an iterator, or something comes that pairs do not hold, an equal key for one: an
// index has the pairs, each with the number of its coming, which is all that its place in the
// chains depends on (see `makeChains`). From then on there are the entries and their chains, and an
// index leads from a key to its entry, which links back to what points at it, so that removing one
// still needs no walk.
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

  /// 1 and the value of the first entry of the key in its chain, or 0 with `value` untouched.
  int find(Value& value, const Key& key) const {
    const unsigned spread = Rule::spread(key);
    if (!buckets_) {
      const Pair* const pair = pairOf(key, spread);
      if (!pair) return 0;
      value = pair->value();
      return 1;
    }
    const Link* const link = linkOf(key, spread);
    const Entry* entry = link ? link->entry : nullptr;
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
  void insert(const Key& key, const Value& value) {
    if (count_ > 2 * std::int64_t{bucketCount()}) grow();
    const unsigned spread = Rule::spread(key);
    if (!buckets_ && (!Pair::holds(key, value) || pairOf(key, spread) || came_ == mostToCome))
      makeChains();
    if (buckets_) {
      add(newEntry(key, value), spread);
    } else {
      Pair pair(key, value, spread);
      pair.came = ++came_;
      pairs_.add(pair);
      ++count_;
    }
  }

  /// Links an entry made with `new` in front of its slot's chain, without growing; the table
  /// deletes it from now on. Null is ignored.
  void insertEntry(Entry* entry) {
    if (!entry) return;
    makeChains();
    add(entry, Rule::spread(entry->key));
  }

  /// As `find`, and the entry found is deleted.
  int find_and_remove(Value& value, const Key& key) { return take(&value, key); }

  /// Deletes the first entry of the key in its chain; nothing when there is none.
  void remove(const Key& key) { take(nullptr, key); }

  /// Deletes every entry; the slots stay.
  void clear() {
    for (int i = 0; buckets_ && i <= mask_; ++i) {
      while (Entry* entry = buckets_[i]) {
        buckets_[i] = entry->next;
        delete entry;
      }
    }
    forgetEntries();
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
    std::free(buckets_);
    buckets_ = nullptr;
    mask_ = slotCountFor(sizeHint) - 1;
    forgetEntries();
  }

private:
  friend class ChainedTable_Iterator<Rule>;

  template <class R, class = void> struct PairOf { using Type = TablePair<R>; };
  template <class R> struct PairOf<R, std::void_t<typename R::Pair>> {
    using Type = typename R::Pair;
  };
  using Pair = typename PairOf<Rule>::Type;
  // The first entry of a key.
  struct Link {
    bool used() const { return entry != nullptr; }
    unsigned spread() const { return hash; }
    Entry* entry;
    unsigned hash;
  };

  static constexpr unsigned mostToCome = ~0u;
  static constexpr int mostGrowths = 13;  // from 32 slots to 2^30, fourfold each time

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

  static Entry* newEntry(const Key& key, const Value& value) {
    Entry* const entry = tqAllocated(new (std::nothrow) Entry);
    entry->key = key;
    entry->value = value;
    return entry;
  }

  Pair* pairOf(const Key& key, unsigned spread) const {
    return pairs_.find(spread, [&](const Pair& pair) { return pair.is(key, spread); });
  }

  Link* linkOf(const Key& key, unsigned spread) const {
    return links_.find(spread, [&](const Link& link) {
      return link.hash == spread && Rule::equal(link.entry->key, key);
    });
  }

  int take(Value* value, const Key& key) {
    const unsigned spread = Rule::spread(key);
    if (!buckets_) {
      Pair* const pair = pairOf(key, spread);
      if (!pair) return 0;
      if (value) *value = pair->value();
      pairs_.remove(pair);
    } else {
      Link* const link = linkOf(key, spread);
      if (!link) return 0;
      Entry* const entry = link->entry;
      if (value) *value = entry->value;
      *entry->back_ = entry->next;
      if (entry->next) entry->next->back_ = entry->back_;
      if (entry->equal_)
        link->entry = entry->equal_;
      else
        links_.remove(link);
      delete entry;
    }
    --count_;
    return 1;
  }

  // The chains.

  Entry** slot(Key key) const {
    return buckets_ + (Rule::hash(key) & static_cast<unsigned>(mask_));
  }

  void chain(Entry* entry) const {
    Entry** const head = slot(entry->key);
    entry->next = *head;
    entry->back_ = head;
    if (*head) (*head)->back_ = &entry->next;
    *head = entry;
  }

  void add(Entry* entry, unsigned spread) {
    entry->inTable = 1;
    if (Link* const link = linkOf(entry->key, spread)) {
      entry->equal_ = link->entry;
      link->entry = entry;
    } else {
      entry->equal_ = nullptr;
      links_.add(Link{entry, spread});
    }
    chain(entry);
    ++count_;
  }

  // An entry goes to the head of its chain, and every growth turns the chain over; it never parts
  // entries that a smaller table held together. So those that saw an even number of growths end
  // before those that saw an odd number, the former newest first, the latter oldest first.
  void makeChains() const {
    if (buckets_) return;
    buckets_ = newSlots(bucketCount());
    std::sort(pairs_.begin(), pairs_.end(),
              [](const Pair& a, const Pair& b) { return a.came < b.came; });
    const Pair* const oldest = pairs_.end() - pairs_.count();  // behind those not in use
    for (const Pair* pair = pairs_.end(); pair != oldest; --pair)
      if (growthsSeenBy(pair[-1]) % 2 != 0) makeEntry(pair[-1]);
    for (const Pair* pair = oldest; pair != pairs_.end(); ++pair)
      if (growthsSeenBy(*pair) % 2 == 0) makeEntry(*pair);
    pairs_.clear();
  }

  int growthsSeenBy(const Pair& pair) const {
    const unsigned* const end = cameBefore_ + growths_;
    return static_cast<int>(end - std::lower_bound(cameBefore_, end, pair.came));
  }

  void makeEntry(const Pair& pair) const {
    Entry* const entry = newEntry(pair.key(), pair.value());
    entry->inTable = 1;
    links_.add(Link{entry, pair.spread()});
    chain(entry);
  }

  void grow() {
    Entry** const old = buckets_;
    const int oldMask = mask_;
    mask_ = slotCountFor(count_) - 1;
    if (!old) {
      cameBefore_[growths_++] = came_;
      return;
    }
    turnEqualsOver();
    buckets_ = newSlots(bucketCount());
    for (int i = 0; i <= oldMask; ++i) {
      while (Entry* entry = old[i]) {
        old[i] = entry->next;
        chain(entry);
      }
    }
    std::free(old);
  }

  void turnEqualsOver() {
    if (static_cast<unsigned>(count_) == links_.count()) return;
    for (Link& link : links_) {
      Entry* turned = nullptr;
      while (Entry* entry = link.entry) {
        link.entry = entry->equal_;
        entry->equal_ = turned;
        turned = entry;
      }
      link.entry = turned;
    }
  }

  void forgetEntries() {
    pairs_.clear();
    links_.clear();
    count_ = 0;
    came_ = 0;
    growths_ = 0;
  }

  int mask_ = 0;
  int count_ = 0;
  mutable Entry** buckets_ = nullptr;  // null until somebody looks
  mutable OpenIndex<Pair> pairs_;      // what there is until then
  mutable OpenIndex<Link> links_;      // from then on
  unsigned came_ = 0;                  // pairs that came so far
  int growths_ = 0;
  unsigned cameBefore_[mostGrowths];  // `came_` at each growth
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
