#include "UserDataItem.h"

#include "Platform.h"

#include <climits>

// Made with the first long name and never destroyed, since items anywhere point into them.
tqUDStringTable* tqUserDataItem::_stringTable = nullptr;
tqUDStringPool* tqUserDataItem::_stringPool = nullptr;

namespace {

constexpr int tableSize = 256;
constexpr unsigned treeNodeId = 1000;

// The behaviours that items made for themselves: nobody can tell when the last item that came to
// share one is gone, so they live as long as the process.
class BehaviorList;
struct BehaviorListRule {
  using List = BehaviorList;
  using Element = tqUDBehavior;
  static constexpr const char* elementName = "tqUDBehavior*";
};
class BehaviorList : public PointerList<BehaviorListRule> {
public:
  using PointerList::PointerList;
};
BehaviorList* behaviors = nullptr;

template <class T, class Argument> T& made(T*& object, Argument argument) {
  if (!object) object = tqAllocated(new (std::nothrow) T(argument));
  return *object;
}

const char* interned(const char* name) {
  tqUDStringTable& table = made(tqUserDataItem::_stringTable, tableSize);
  char* known = nullptr;
  if (table.find(known, name)) return known;
  char* const added = made(tqUserDataItem::_stringPool, tqUDStringPool::blockSize).add(name);
  table.insert(added, added);
  return added;
}

// What stands for an identifier in a copy.
unsigned mappedOid(unsigned oid) {
  tqBase* const object = tqBase::validated(oid, 1);
  if (!object) return 0;
  if (!object->isA(treeNodeId)) return object->oid();
  auto* const node = static_cast<tqTreeNode*>(object);
  if (!node->hasAncestor(tqTreeNode::_copyRoot)) return 0;  // Kept: also when that is null.
  const auto* const copy = static_cast<tqTreeNode*>(static_cast<tqCopyable*>(node)->deepCopy());
  return copy ? copy->oid() : 0;
}

// From an item to its copy.
struct ItemCopiesRule : PlainRule<const tqUserDataItem*, tqUserDataItem*> {
  static unsigned hash(const tqUserDataItem* item) { return lowWord(item); }
};
using ItemCopies = ChainedTable<ItemCopiesRule>;

tqUserDataItem* copyOf(const tqUserDataItem* item) {
  return item ? tqAllocated(new (std::nothrow) tqUserDataItem(*item)) : nullptr;
}

}  // namespace

unsigned hash_ud_name(const char* name) {
  unsigned h = 0;
  if (name)
    for (; *name; ++name) h = (h << 1) ^ static_cast<unsigned char>(*name);
  return (h >> 10) ^ (h >> 20) ^ h;
}

char* tqUDStringPool::add(const char* name) {
  if (!name) name = "";
  const std::size_t length = std::strlen(name);
  if (length >= UINT_MAX) tqOutOfMemory();
  const auto size = static_cast<unsigned>(length) + 1;
  char* const copy = take(size);
  std::memcpy(copy, name, size);
  if (size > blockSize) {
    next->capacity = 0;  // Kept: marks a block of its own.
    next->used = size - 1;
  }
  return copy;
}

tqUserDataItem::Name::Name(const char* name) {
  if (!name) name = "";
  const std::size_t length = std::strlen(name);
  ending = endingOf(name, length);
  if (isShort(ending))
    std::memcpy(characters, name, length + 1);
  else
    interned = ::interned(name);
}

tqUserDataItem::tqUserDataItem(const tqUserDataItem& source)
    : value_(source.value_), name_(source.name_), behavior_(source.behavior_) {
  int n = 0;
  unsigned* const oids = value_.identifiers(n);
  for (int i = 0; i < n; ++i) oids[i] = mappedOid(oids[i]);
}

void tqUserDataItem::value(AttrValue& out) {
  value_.validateObjects();
  out = value_;
}

char* tqUserDataItem::writeValueToString(char* buffer, int size) {
  value_.validateObjects();
  return value_.writeToString(buffer, size);
}

tqUDBehavior& tqUserDataItem::ownBehavior() {
  if (!behavior_) {
    behavior_ = tqAllocated(new (std::nothrow) tqUDBehavior);
    made(behaviors, 0).append(behavior_);
  }
  return *behavior_;
}

// An object's own few attributes are compared with each other; a table serves longer lists.
void tqUserDataItemList::deepenShallowCopy() {
  constexpr int few = 16;
  if (count() > few) {
    ItemCopies copies(count());
    for (tqUserDataItem*& item : *this) {
      const tqUserDataItem* const source = item;
      if (copies.find(item, source)) continue;
      item = copyOf(source);
      copies.insert(source, item);
    }
    return;
  }
  const tqUserDataItem* sources[few];
  for (int i = 0; i < count(); ++i) {
    sources[i] = item(i);
    int first = 0;
    while (sources[first] != sources[i]) ++first;
    item(i) = first < i ? item(first) : copyOf(sources[i]);
  }
}
