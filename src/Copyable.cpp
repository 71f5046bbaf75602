#include "Copyable.h"

int tqCopyable::_copyTableSize = 20000;
CopyableTable* tqCopyable::_deepCopyTable = nullptr;

void tqCopyable::setCopyTableSize(int hint) { _copyTableSize = hint < 10 ? 10 : hint; }

void tqCopyable::makeCopyTable() {
  if (!_deepCopyTable)
    _deepCopyTable = tqAllocated(new (std::nothrow) CopyableTable(_copyTableSize));
}

void tqCopyable::deleteCopyTable() {
  delete _deepCopyTable;
  _deepCopyTable = nullptr;
}

tqCopyable* tqCopyable::deepCopy() {
  const bool outermost = !_deepCopyTable;
  makeCopyTable();
  tqCopyable* copy = nullptr;
  if (!_deepCopyTable->find(copy, this)) {
    copy = shallowCopy();
    if (copy) {
      _deepCopyTable->insert(this, copy);
      copy->deepenShallowCopy();
    }
  }
  if (outermost) deleteCopyTable();
  return copy;
}
