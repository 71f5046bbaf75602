#ifndef TQ_TQSTRING_H
#define TQ_TQSTRING_H

#include "CharacterPool.h"
#include "Table.h"

/// \file tqString.h
/// Counted texts: views, owned copies, NUL-terminated and interned strings, with one set of
/// comparisons, searches and conversions. A view owns nothing, a copy its characters; interned
/// characters, and the table that finds them, live as long as the process.

class tqUniqueString;
class tqUniqueStringPool;
class tqUniqueStringTable;

/// A view of characters that somebody else keeps: an address and a count, with no NUL needed at the
/// end. The base of every string class, and cheap to pass by value.
/// \snippet strings.cpp views
///
/// A `length` of -1 stands for a text that ends at its NUL and is yet to be measured; copies,
/// conversions and `hash` measure it, and count anything below -1 as 0. Null is an empty text.
///
/// Comparisons are of bytes, taken as unsigned, and give 1 or 0; none reads past either text.
///
/// Kept: an ordering looks at the first `length` bytes of its left text alone, against NULs where
/// the right one is shorter. A proper prefix is neither less nor greater than the longer text, and
/// a text that is not empty is both less and greater than an empty one, neither `<=` nor `>=`.
/// Sorting needs an order of its own, `std::string_view` for one.
///
/// Kept: comparisons take `length` as it stands. A text not measured yet equals none that is, and
/// on the right of an ordering it counts as empty; `hash` measures it.
class TQ_API tqString {
public:
  /// The empty text.
  tqString() = default;
  /// As `set`.
  tqString(const char* text);
  tqString(const char* text, int n) : length(text ? n : 0), data(text) {}
  /// A view of the same characters; takes the hash over when it is valid.
  tqString(const tqString& other)
      : length(other.length), data(other.data), hashValue(other.hashValid ? other.hashValue : 0),
        hashValid(other.hashValid) {}

  // Virtual slots: applications override these, the order counts.
  virtual ~tqString() = default;
  /// Each byte in turn: h = (h << 1) ^ byte, from 0; then h ^ (h >> 10) ^ (h >> 20). The empty text
  /// gives 0. Equal texts hash equally in every class but `tqUniqueString`.
  ///
  /// Kept: the result is stored, but `hashValid` stays for the caller to set: who sets it vouches
  /// that the characters, which are not the view's own, do not change.
  virtual unsigned hash();
  /// A view of the same characters, as copying.
  virtual tqString& operator=(const tqString& other);
  /// As `set`.
  virtual tqString& operator=(const char* text);
  virtual int operator==(const tqString& other) const;
  /// Null equals the empty text alone.
  virtual int operator==(const char* text) const;
  virtual int operator!=(const tqString& other) const;
  virtual int operator!=(const char* text) const;
  virtual int operator>(const tqString& other) const;
  virtual int operator>(const char* text) const;
  virtual int operator>=(const tqString& other) const;
  virtual int operator>=(const char* text) const;
  virtual int operator<(const tqString& other) const;
  virtual int operator<(const char* text) const;
  virtual int operator<=(const tqString& other) const;
  virtual int operator<=(const char* text) const;
  /// 1 when the texts differ in the case of ASCII letters at most.
  virtual int case_insensitive_equal(const tqString& other) const;
  virtual int case_insensitive_equal(const char* text) const;
  /// A view of `len` characters from `start` on: a negative start counts from the end, a negative
  /// `len` means all that follow. It lasts as long as the characters do.
  ///
  /// Kept: what does not lie within the text, `start == length` included, gives the whole text;
  /// `tqFilename::extension` relies on it. Compare with `length` first where that matters.
  virtual tqString substr(int start, int len) const;
  /// Narrows this view to what `substr` would give.
  virtual void set_to_substr(int start, int len);
  /// Index of the first `c` from `start` on or, when `start` is negative, of the last one up to
  /// there, counting from the end: `search(-1, c)` finds the last of all. -1 when there is none or
  /// `start` lies outside.
  /// \snippet strings.cpp search
  virtual int search(int start, char c) const;
  /// 1 when the class sees to a NUL behind the text: an empty promise once it has been narrowed.
  virtual int null_terminated() const;
  /// Reads the number that the text begins with, as `strtol` does with base 0 ("0x1F" is 31, "010"
  /// is 8) in the "C" locale, whatever the process's locale is. Sees `length` characters and no
  /// more; what follows the number does not matter.
  ///
  /// \returns 1, or 0 with `value` 0 when the text does not begin with a number. Numbers out of
  ///   range saturate as `long`; an `int` gets the low 32 bits of that.
  /// \snippet strings.cpp convert
  virtual int convert(int& value) const;
  virtual int convert(long& value) const;
  /// Likewise with `strtod`; a `float` gets the double, rounded.
  virtual int convert(float& value) const;
  virtual int convert(double& value) const;
  /// Views a text that ends at its NUL; null is the empty one.
  virtual void set(const char* text);
  /// Views n characters; none when the text is null.
  virtual void set(const char* text, int n);

  // The virtual comparisons again, for interned strings: C++20 would turn these expressions around
  // otherwise, and ask the interned string, which compares addresses.
  int operator==(const tqUniqueString& other) const;
  int operator!=(const tqUniqueString& other) const;

  int length = 0;  ///< characters, or -1
  const char* data = nullptr;
  unsigned hashValue = 0;  ///< the hash last worked out
  int hashValid = 0;       ///< 1 when `hashValue` serves; every change of the text makes it 0
};

/// The characters that an owning string has made: the latest copy and, until they are dropped, the
/// earlier ones. The string's `data` may be narrowed within them or turned elsewhere meanwhile.
class TQ_API tqOwnedCharacters {
public:
  tqOwnedCharacters() = default;
  tqOwnedCharacters(const tqOwnedCharacters&) = delete;
  tqOwnedCharacters& operator=(const tqOwnedCharacters&) = delete;
  ~tqOwnedCharacters() { drop(); }

  /// A new copy of n characters, with a NUL at the end; what follows a NUL among them becomes NULs.
  const char* copy(const char* text, int n);
  /// Frees the copies before the latest.
  void dropEarlier();
  /// Frees all.
  void drop();

private:
  struct Copy {  // its characters follow it in the same block
    Copy* earlier;
  };
  Copy* latest_ = nullptr;
};

/// A string that owns a copy of its characters, with a NUL at the end. `data` is null in a new,
/// empty one.
///
/// Kept: characters behind a NUL within the text are copied as NULs; the length stays.
class TQ_API tqCopyString : public tqString {
public:
  tqCopyString() = default;
  /// As `set`.
  tqCopyString(const char* text);
  tqCopyString(const char* text, int n);
  tqCopyString(const tqString& other);
  tqCopyString(const tqCopyString& other);

  /// Copies; the text may be this one, or a view of it.
  tqCopyString& operator=(const tqCopyString& other);
  /// Frees the characters and leaves the empty text.
  void free();

  // Slots of tqString.
  ~tqCopyString() override = default;
  tqString& operator=(const tqString& other) override;
  tqString& operator=(const char* text) override;
  int null_terminated() const override;  ///< 1
  /// Copies the text.
  ///
  /// Kept: the characters held so far are not freed, so views of them hold until the next
  /// assignment, `free` or the end of this string. Assignment is the way to change it often.
  void set(const char* text) override;
  void set(const char* text, int n) override;

private:
  tqOwnedCharacters characters_;
};

/// A text with a NUL behind it, to be handed to C functions: borrows the characters where a NUL
/// follows them already, copies them otherwise. `data` is never null.
///
/// What it borrows must outlive it, a `tqCopyString` for one.
class TQ_API tqNullTerminatedString : public tqString {
public:
  /// The empty text, borrowed.
  tqNullTerminatedString();
  /// As `assign`.
  tqNullTerminatedString(const tqString& other);
  tqNullTerminatedString(const tqNullTerminatedString& other);

  /// As `assign`.
  tqNullTerminatedString& operator=(const tqNullTerminatedString& other);
  /// Borrows the characters of a string that is `null_terminated()` and has not been narrowed;
  /// copies those of any other. The text may be this one, or a view of it. Kept: a NUL within a
  /// text that is copied ends it, as in `tqCopyString`.
  void assign(const tqString& other);
  /// Frees the copy and leaves the empty text; what is borrowed stays.
  void free();

  // Slots of tqString.
  ~tqNullTerminatedString() override = default;
  tqString& operator=(const tqString& other) override;
  /// Copies the text.
  tqString& operator=(const char* text) override;
  int null_terminated() const override;  ///< 1
  /// Borrows the text, which ends at its NUL.
  void set(const char* text) override;
  /// Copies n characters: a NUL need not follow them.
  void set(const char* text, int n) override;

  int owned = 0;  ///< 1 when `data` is a copy of its own

private:
  tqOwnedCharacters characters_;
};

/// An interned string: every text is stored once, so that equal ones share the address of their
/// characters. Comparing and hashing two of them costs as much as comparing two pointers.
/// \snippet strings.cpp unique
///
/// The characters lie in a pool for as long as the process lives, packed without NULs.
class TQ_API tqUniqueString : public tqString {
public:
  /// The empty text, not interned.
  tqUniqueString() = default;
  /// As `init`.
  tqUniqueString(const char* text);
  tqUniqueString(const char* text, int n);
  tqUniqueString(const tqString& other);
  /// The same view, without looking it up.
  tqUniqueString(const tqUniqueString& other) = default;

  /// The same view.
  tqUniqueString& operator=(const tqUniqueString& other);
  /// Kept: assigning anything else borrows its characters, as `tqString` does, and interns nothing.
  /// `name = tqUniqueString(text)` interns.
  using tqString::operator=;
  /// Interns the text: finds the characters stored for it, or stores them.
  ///
  /// Kept: the pool stores NULs behind a NUL within the text, so such a text is not found again and
  /// stored anew each time; interned texts are to have none.
  void init(const tqString& text);

  // Slots of tqString.
  ~tqUniqueString() override = default;
  /// The low 32 bits of the characters' address: differs from `tqString::hash` of the same text.
  unsigned hash() override;
  /// 1 when both show the same characters: the address and the length are equal.
  ///
  /// Kept: so an interned string on the left equals no copy of its text held elsewhere, and a
  /// string that was assigned equals no interned one. With the interned string on the right, or a
  /// `const char*`, the characters are compared.
  int operator==(const tqString& other) const override;
  int operator==(const char* text) const override;
  int null_terminated() const override;  ///< 0

  // As in tqString: no expression is turned around in C++20.
  int operator==(const tqUniqueString& other) const {
    return *this == static_cast<const tqString&>(other);
  }
  using tqString::operator!=;

  /// From each text to the view of its characters; null until the first text is interned.
  static tqUniqueStringTable* table_;
  /// The characters; null until the first text is stored.
  static tqUniqueStringPool* pool_;
};

/// Slot by the text's characters, also when the key is an interned string, whose own hash is its
/// address.
struct tqUniqueStringTableRule {
  using Key = tqString;
  using Value = tqString;
  /// A text and itself.
  struct Pair {
    Pair() = default;
    Pair(const tqString&, const tqString& text, unsigned itsSpread)
        : data_(text.data), length_(text.length), spread_(itsSpread) {}
    bool used() const { return came != 0; }
    bool is(const tqString& sought, unsigned itsSpread) const {
      return spread_ == itsSpread && equal(key(), sought);
    }
    unsigned spread() const { return spread_; }
    tqString key() const { return {data_, length_}; }
    tqString value() const { return key(); }
    /// A hash that a caller vouched for comes back with the text: such texts get entries.
    static bool holds(const tqString& key, const tqString& value) {
      return key.data == value.data && key.length == value.length && !key.hashValid &&
             !value.hashValid;
    }

  private:
    const char* data_;
    int length_;
    unsigned spread_;

  public:
    unsigned came = 0;
  };
  static unsigned hash(tqString& text) { return text.tqString::hash(); }
  static TQ_API unsigned spread(const tqString& text);
  static int equal(const tqString& stored, const tqString& sought) {
    return stored.tqString::operator==(sought);
  }
};
/// From a text to its interned view. Owns its links, never the characters; a key must be measured
/// to be found.
class TQ_API tqUniqueStringTable : public ChainedTable<tqUniqueStringTableRule> {
public:
  using ChainedTable::ChainedTable;
};
using tqUniqueStringTable_Entry = tqUniqueStringTable::Entry;
using tqUniqueStringTable_Iterator = tqUniqueStringTable::Iterator;

/// The characters of interned strings, packed without a NUL between them.
class TQ_API tqUniqueStringPool : public CharacterPool<tqUniqueStringPool> {
public:
  using CharacterPool::CharacterPool;
  /// Stores n characters and gives their address; none when the text is null. A NUL within the
  /// text turns what follows it into NULs.
  char* add(const char* text, unsigned n);
};

#endif
