#ifndef TQ_USERDATAITEM_H
#define TQ_USERDATAITEM_H

#include "AttrValue.h"
#include "CharacterPool.h"
#include "List.h"

/// \file UserDataItem.h
/// One named attribute: a name, a value, and how the application treats it. Names of 8 characters
/// and more are kept once for all items; the table and the pool that hold them are made with the
/// first such name and live as long as the process.

/// Hash of an attribute name; null counts as the empty one, and both hash to 0.
extern "C" TQ_API unsigned hash_ud_name(const char* name);

/// Slot by the hash of the text.
struct tqUDStringTableRule {
  using Key = const char*;
  using Value = char*;
  static unsigned hash(const char* name) { return hash_ud_name(name); }
  static unsigned spread(const char* name) {
    return spreadBits(name, name ? std::strlen(name) : 0);
  }
  static bool equal(const char* a, const char* b) {
    return std::strcmp(a ? a : "", b ? b : "") == 0;
  }
};
/// From a name to its characters in the pool, which the key points to as well.
class TQ_API tqUDStringTable : public ChainedTable<tqUDStringTableRule> {
public:
  using ChainedTable::ChainedTable;
};
using tqUDStringTable_Entry = tqUDStringTable::Entry;
using tqUDStringTable_Iterator = tqUDStringTable::Iterator;

/// Names packed back to back, each with its NUL.
class TQ_API tqUDStringPool : public CharacterPool<tqUDStringPool> {
public:
  using CharacterPool::CharacterPool;
  /// Copies a name into the pool, also when it is there already, and gives the copy; null counts as
  /// the empty name. Names of 800 characters and more get a block of their own.
  ///
  /// Kept: the record of such a block says capacity 0 and does not count the NUL as used, so that
  /// a walk over the chain tells it from the blocks that are shared.
  char* add(const char* name);
};

/// How an attribute is copied. The library keeps it for the application and never asks.
enum UDCopyOpt : int {
  UD_COPY_DEFAULT = 0,
  UD_COPY_VALUE = 1,
  UD_COPY_NEVER = 2,
  UD_COPY_NO_ATTRIBUTE = 3  ///< the answer for an attribute that does not exist
};

/// How the application treats an attribute; any number of them may share one.
struct TQ_API tqUDBehavior {
  int copyOption = UD_COPY_DEFAULT;
  int persistent = 1;  ///< saved with its object
  int visible = 1;     ///< shown to the user
};

/// An attribute. It owns its value, not its behaviour.
///
/// Getters and setters are those of `AttrValue`: a getter answers 1 when the value is of its kind,
/// and otherwise 0 with its argument untouched. Note that arrays have their count in front here.
class TQ_API tqUserDataItem {
public:
  /// An empty value under an empty name.
  tqUserDataItem() : name_("") {}
  /// An empty value. Names are copied; null counts as the empty one.
  tqUserDataItem(const char* name) : name_(name) {}
  /// One constructor for each setter of `AttrValue`; see there.
  tqUserDataItem(const char* name, int v) : value_(v), name_(name) {}
  tqUserDataItem(const char* name, unsigned int v) : value_(v), name_(name) {}
  tqUserDataItem(const char* name, float v) : value_(v), name_(name) {}
  tqUserDataItem(const char* name, double v) : value_(v), name_(name) {}
  tqUserDataItem(const char* name, const double* v) : value_(v), name_(name) {}
  tqUserDataItem(const char* name, const char* v) : value_(v), name_(name) {}
  tqUserDataItem(const char* name, int n, const int* v) : value_(v, n), name_(name) {}
  tqUserDataItem(const char* name, int n, const unsigned int* v) : value_(v, n), name_(name) {}
  tqUserDataItem(const char* name, int n, const float* v) : value_(v, n), name_(name) {}
  tqUserDataItem(const char* name, int n, const double* v) : value_(v, n), name_(name) {}
  tqUserDataItem(const char* name, int n, const double (*v)[3]) : value_(v, n), name_(name) {}

  /// A copy that shares the behaviour, for a deep copy that is under way: each object identifier in
  /// the value is exchanged for that of the object's copy.
  ///
  /// An object that is no tree node keeps its identifier, mappings followed. A node below
  /// `tqTreeNode::_copyRoot` (or that node itself) is deep-copied, once, and the copy's identifier
  /// stands in its place. Identifiers of all other nodes and of destroyed objects become 0.
  ///
  /// Kept: so do those of every node while no tree is copied, since a reference that leaves the
  /// copied tree is dropped; copying the value alone (`value`, `setValue`) keeps them.
  tqUserDataItem(const tqUserDataItem& source);
  tqUserDataItem& operator=(const tqUserDataItem&) = delete;

  /// The name: it lasts as long as the item has it, one of 8 characters and more for ever.
  const char* name() const { return name_.text(); }
  AttrType type() const { return value_.type(); }
  /// `AttrValue::length` of the value, so 1 for an empty one.
  int numElements() const { return value_.length(); }
  /// How the application treats the attribute; null means a default `tqUDBehavior`.
  tqUDBehavior* behavior() const { return behavior_; }
  int isPersistent() const { return behavior_ ? behavior_->persistent : 1; }
  int isVisible() const { return behavior_ ? behavior_->visible : 1; }

  /// Copies the value out. Identifiers of destroyed objects become 0 first, in the item too; the
  /// other getters give them as they stand.
  void value(AttrValue& out);
  int value(int& out) const { return value_.value(out); }
  int value(unsigned int& out) const { return value_.value(out); }
  int value(float& out) const { return value_.value(out); }
  int value(double& out) const { return value_.value(out); }
  int value(const char*& out) const { return value_.value(out); }
  int value(const int*& out) const { return value_.value(out); }
  int value(const unsigned int*& out) const { return value_.value(out); }
  int value(const float*& out) const { return value_.value(out); }
  int value(const double*& out) const { return value_.value(out); }

  /// `AttrValue::writeToString`, after identifiers of destroyed objects have become 0 in the item.
  char* writeValueToString(char* buffer, int size);

  void setName(const char* name) { name_ = name; }

  void setValue(const AttrValue& v) { value_ = v; }
  void setValue(int v) { value_.setValue(v); }
  void setValue(unsigned int v) { value_.setValue(v); }
  void setValue(float v) { value_.setValue(v); }
  void setValue(double v) { value_.setValue(v); }
  void setValue(const double* v) { value_.setValue(v); }
  void setValue(const char* v) { value_.setValue(v); }
  void setValue(int n, const int* v) { value_.setValue(v, n); }
  void setValue(int n, const unsigned int* v) { value_.setValue(v, n); }
  void setValue(int n, const float* v) { value_.setValue(v, n); }
  void setValue(int n, const double* v) { value_.setValue(v, n); }
  void setValue(int n, const double (*v)[3]) { value_.setValue(v, n); }
  /// Empties the value.
  void clear() { value_.clear(); }

  /// Shares a behaviour of the caller's, which must outlive the item; null for the defaults.
  void setBehavior(tqUDBehavior* behavior) { behavior_ = behavior; }
  /// Sets the flag in the behaviour: for every item that shares it.
  ///
  /// An item without behaviour is given one of its own, which lives as long as the process, since
  /// others may have come to share it.
  void setPersistent(int flag) { ownBehavior().persistent = flag; }
  /// Likewise.
  void setVisibility(int flag) { ownBehavior().visible = flag; }

  /// The names of 8 characters and more; both null before the first one.
  static tqUDStringTable* _stringTable;
  static tqUDStringPool* _stringPool;

private:
  friend class tqUserData;

  // The last eight characters of a name as a number, which tells most names apart without a look
  // at their text. It holds all of a shorter name, and its topmost byte then is 0, which is no
  // character.
  static std::uint64_t endingOf(const char* name, std::size_t length) {
    std::uint64_t ending = 0;
    if (length >= sizeof ending)
      std::memcpy(&ending, name + length - sizeof ending, sizeof ending);
    else
      while (length > 0) ending = ending << 8 | static_cast<unsigned char>(name[--length]);
    return ending;
  }
  static bool isShort(std::uint64_t ending) { return ending >> 56 == 0; }

  // A name as it is looked for.
  struct Sought {
    explicit Sought(const char* name)
        : text(name ? name : ""), ending(endingOf(text, std::strlen(text))) {}
    const char* text;
    std::uint64_t ending;
  };

  // A name as it is held.
  struct Name {
    Name(const char* name);
    const char* text() const { return isShort(ending) ? characters : interned; }

    std::uint64_t ending;
    union {
      char characters[sizeof ending];
      const char* interned;
    };
  };

  bool isNamed(const Sought& sought) const {
    return name_.ending == sought.ending &&
           (isShort(sought.ending) || std::strcmp(name_.interned, sought.text) == 0);
  }

  tqUDBehavior& ownBehavior();

  AttrValue value_;
  Name name_;
  tqUDBehavior* behavior_ = nullptr;
};

#endif
