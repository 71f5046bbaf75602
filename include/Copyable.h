#ifndef TQ_COPYABLE_H
#define TQ_COPYABLE_H

#include "Table.h"

/// \file Copyable.h
/// Deep copies of graphs: every object reachable is copied once, however often it is referred to,
/// and the copy is shared as the source is. While a copy is under way, a process-wide table leads
/// from each source to its copy; an application can hold that table open over several copies.

class tqCopyable;

/// Slot by the address itself.
struct CopyableTableRule : PlainRule<tqCopyable*, tqCopyable*> {
  // Kept: the address is used whole, alignment bits included, so objects on 8-byte boundaries reach
  // every eighth slot only. Iteration follows slots: spreading them better would reorder it.
  static unsigned hash(const tqCopyable* source) { return lowWord(source); }
};

/// From a source to its copy. Owns neither.
class TQ_API CopyableTable : public ChainedTable<CopyableTableRule> {
public:
  using ChainedTable::ChainedTable;
};
using CopyableTable_Entry = CopyableTable::Entry;
using CopyableTable_Iterator = CopyableTable::Iterator;

/// Base of everything that can be deep-copied.
///
/// A class takes part by writing two steps: `shallowCopy`, a new object that still points to the
/// source's parts, and `deepenShallowCopy`, which replaces those parts by their `deepCopy()`.
class TQ_API tqCopyable {
public:
  tqCopyable() = default;
  tqCopyable(const tqCopyable&) = default;
  tqCopyable& operator=(const tqCopyable&) = default;

  /// A copy of this object and of all it owns, which the caller owns; the copy already made, when
  /// this object was met before in the same deep copy. Null when `shallowCopy` gives null.
  ///
  /// The outermost call opens the copy table and closes it again, unless `makeCopyTable` holds one
  /// open. The copy is recorded before it is deepened, so cycles end.
  tqCopyable* deepCopy();

  /// Marks the object; read by derived classes only.
  void setShallow(int flag) { shallow_ = flag; }

  /// Size hint of later copy tables, 10 at least: about the number of objects that one deep copy
  /// meets. 20000 at first.
  static void setCopyTableSize(int hint);

  /// Opens the copy table, so that sharing is kept over all copies until `deleteCopyTable`; nothing
  /// when one is open.
  static void makeCopyTable();

  /// Closes the copy table; nothing when none is open.
  static void deleteCopyTable();

  // Virtual slots: applications override these, the order counts.
  virtual ~tqCopyable() = default;
  /// A new object of the same class with the fields copied and the parts shared.
  virtual tqCopyable* shallowCopy() const = 0;
  /// Called on the new object: replaces each part owned by its own deep copy.
  virtual void deepenShallowCopy() = 0;
  /// The mark of `setShallow`, 0 at first.
  virtual int isShallow() const { return shallow_; }

  static int _copyTableSize;
  static CopyableTable* _deepCopyTable;  ///< null between deep copies

private:
  int shallow_ = 0;
};

#endif
