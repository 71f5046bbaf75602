#ifndef TQ_USERDATA_H
#define TQ_USERDATA_H

#include "UserDataItem.h"

/// \file UserData.h
/// The named attributes of one object: added, found, read and removed by name, or visited by index.
/// The collection owns its items.

/// A list of attributes, in the order added, searched from the front.
///
/// It is a list of items as any other: its capacity, and what removal does to the order, are those
/// of the list (`ordered(1)` keeps the order). Its deep copy copies each item once, which maps the
/// objects that it refers to. Null names and texts count as the empty ones, and null slots of the
/// list are passed over.
/// \snippet attributes.cpp collection
class TQ_API tqUserData : public tqUserDataItemList {
public:
  /// No attributes.
  tqUserData() : tqUserDataItemList(0) {}
  /// A shallow copy: the same items in a list of its own.
  ///
  /// Kept: both own the items, so that either can take them over; empty one with `remove_all`, or
  /// deepen it, before both are destroyed. `deepCopy` gives a collection that stands alone.
  tqUserData(const tqUserData& other) : tqUserDataItemList(other) {}
  tqUserData& operator=(const tqUserData&) = delete;

  /// The first attribute of that name that has a value; null when there is none.
  tqUserDataItem* find(const char* name) const;
  /// 1 when `find` gives one.
  int canFind(const char* name) const { return find(name) ? 1 : 0; }
  /// Index of the first attribute of that name, with or without a value; -1 when there is none.
  int index(const char* name) const;
  /// The first attribute of that name, with or without a value; a new one without value, at the
  /// end, when there is none.
  tqUserDataItem* findOrAdd(const char* name);

  /// Sets the attribute of that name (see `findOrAdd`) to a value, whatever its kind was.
  void addUserData(const char* name, const AttrValue& v) { findOrAdd(name)->setValue(v); }
  void addUserData(const char* name, int v) { findOrAdd(name)->setValue(v); }
  void addUserData(const char* name, unsigned int v) { findOrAdd(name)->setValue(v); }
  void addUserData(const char* name, float v) { findOrAdd(name)->setValue(v); }
  void addUserData(const char* name, double v) { findOrAdd(name)->setValue(v); }
  /// One point: x, y, z.
  void addUserData(const char* name, const double* v) { findOrAdd(name)->setValue(v); }
  void addUserData(const char* name, const char* v) { findOrAdd(name)->setValue(v); }
  /// Arrays of n elements.
  void addUserData(const char* name, int n, const int* v) { findOrAdd(name)->setValue(n, v); }
  void addUserData(const char* name, int n, const unsigned int* v) {
    findOrAdd(name)->setValue(n, v);
  }
  void addUserData(const char* name, int n, const float* v) { findOrAdd(name)->setValue(n, v); }
  void addUserData(const char* name, int n, const double* v) { findOrAdd(name)->setValue(n, v); }
  void addUserData(const char* name, int n, const double (*v)[3]) {
    findOrAdd(name)->setValue(n, v);
  }

  /// Sets the attribute of that name from text, read as the kind that it has; a new or empty one,
  /// and one that is a text, becomes the text itself.
  ///
  /// Whole numbers are read as by `strtol` with base 0 (decimal, 0x hexadecimal, leading 0 octal)
  /// and cut to 32 bits, others as by `strtod`, in the "C" locale, with white space between them
  /// and nothing else.
  ///
  /// Kept: an array has the length that it had. Numbers in excess are ignored; from the first one
  /// that cannot be read on, the remaining elements become 0. `addUserData` sets another length.
  /// \snippet attributes.cpp from_text
  void addUserDataString(const char* name, const char* text);

  /// Copies the value of the attribute that `find` gives: 1, or 0 with the argument untouched when
  /// there is none, or when its kind is another. An `AttrValue` takes any kind, and identifiers of
  /// destroyed objects become 0 first, in the attribute too.
  int findUserData(const char* name, AttrValue& out) const;
  int findUserData(const char* name, int& out) const { return findNumber(name, out); }
  int findUserData(const char* name, unsigned int& out) const { return findNumber(name, out); }
  int findUserData(const char* name, float& out) const { return findNumber(name, out); }
  int findUserData(const char* name, double& out) const { return findNumber(name, out); }

  /// Copies an array of that kind of elements: as many as it has and `out` holds.
  ///
  /// \param n in: the elements (points) that `out` holds, less than 0 counts as 0, as does a null
  ///   `out`; out: the elements copied, 0 when there is no such array
  int findUserData(const char* name, int& n, int* out) const;
  int findUserData(const char* name, int& n, unsigned int* out) const;
  int findUserData(const char* name, int& n, float* out) const;
  int findUserData(const char* name, int& n, double* out) const;
  int findUserData(const char* name, int& n, double (*out)[3]) const;

  /// Copies the first point of an array of points; 0 when it is empty.
  ///
  /// Kept: a single point is not found. Applications keep the two kinds apart by this call;
  /// `findUserData` into an `AttrValue` reads either.
  int findUserData(const char* name, double* xyz) const;

  /// Copies a text, cut to n - 1 characters; the rest of the n is filled with NULs.
  ///
  /// Kept: the answer is 0 in any case; n tells: the characters copied and the NUL, 0 when nothing
  /// was. Nothing is when the attribute is no text, when n is below 1, or when `buffer` is null.
  int findUserData(const char* name, int& n, char* buffer) const;

  /// Writes the value as text (`AttrValue::writeToString`), identifiers of destroyed objects as 0:
  /// 1, or 0 with an empty text when there is none.
  int findUserDataString(const char* name, char* buffer, int size) const;

  /// Deletes the first attribute of that name, with or without a value.
  void removeUserData(const char* name);
  /// Deletes all attributes.
  void clearUserData();

  // By index. An index out of range is no error: questions answer 0 or null, changes do nothing.

  const char* name(int i) const { return at(i) ? at(i)->name() : nullptr; }
  /// The kind, and the number of elements in n; 0 and 0 when out of range.
  AttrType type(int i, int& n) const { return typeOf(at(i), n); }
  /// Likewise of the attribute that `find` gives.
  AttrType type(const char* name, int& n) const { return typeOf(find(name), n); }
  /// Copies the value as `findUserData` does; out of range `out` is cleared.
  void value(int i, AttrValue& out) const { at(i) ? at(i)->value(out) : out.clear(); }
  void setValue(int i, const AttrValue& v) {
    if (at(i)) at(i)->setValue(v);
  }
  /// How the application treats the attribute; null for the defaults. See `tqUserDataItem`.
  tqUDBehavior* behavior(int i) const { return at(i) ? at(i)->behavior() : nullptr; }
  void setBehavior(int i, tqUDBehavior* behavior) {
    if (at(i)) at(i)->setBehavior(behavior);
  }
  /// Of the attribute that `find` gives.
  void setBehavior(const char* name, tqUDBehavior* behavior) {
    if (tqUserDataItem* const item = find(name)) item->setBehavior(behavior);
  }
  int isPersistent(int i) const { return at(i) ? at(i)->isPersistent() : 0; }
  int isVisible(int i) const { return at(i) ? at(i)->isVisible() : 0; }
  void setPersistent(int i, int flag) {
    if (at(i)) at(i)->setPersistent(flag);
  }
  void setVisible(int i, int flag) {
    if (at(i)) at(i)->setVisibility(flag);
  }
  /// The copy option of the behaviour: `UD_COPY_NO_ATTRIBUTE` when out of range, `UD_COPY_DEFAULT`
  /// without behaviour.
  UDCopyOpt copyOption(int i) const;
  /// Sets it in the behaviour, which it never makes: 1, or 0 when there is none.
  int setCopyOption(int i, UDCopyOpt option);

  // Virtual slots: those of the list; deepening is the list's.

  /// Deletes the items.
  ~tqUserData() override { clearUserData(); }
  tqCopyable* shallowCopy() const override { return new (std::nothrow) tqUserData(*this); }

private:
  tqUserDataItem* first(const char* name, bool withValue) const;
  tqUserDataItem* at(int i) const { return i >= 0 && i < count() ? item(i) : nullptr; }
  static AttrType typeOf(const tqUserDataItem* item, int& n);
  template <class Number> int findNumber(const char* name, Number& out) const {
    const tqUserDataItem* const item = find(name);
    return item ? item->value(out) : 0;
  }
  int findArray(const char* name, AttrType type, int& n, void* out) const;
};

#endif
