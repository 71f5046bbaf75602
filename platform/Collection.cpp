#include "Platform.h"

tqCollection::tqCollection() : tqBase(1) {}

tqCollection::tqCollection(const tqCollection& other) : tqBase(other), tqCopyable() {}

tqCollection::~tqCollection() = default;

tqCollection* tqCollection::deepCopy() {
  return static_cast<tqCollection*>(tqCopyable::deepCopy());
}

unsigned tqCollection::classId() const { return 1015; }

const char* tqCollection::className() const { return "Collection"; }

int tqCollection::isA(unsigned id) const { return id == 1015 ? 1 : tqBase::isA(id); }

tqCopyable* tqCollection::shallowCopy() const { return new tqCollection(*this); }

void tqCollection::deepenShallowCopy() {}
