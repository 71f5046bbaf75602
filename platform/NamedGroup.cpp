#include "Platform.h"

#include <cstdlib>
#include <cstring>

namespace {

char* copyOf(const char* text) {
  if (!text) text = "";
  const std::size_t size = std::strlen(text) + 1;
  return static_cast<char*>(std::memcpy(tqAllocated(std::malloc(size)), text, size));
}

}  // namespace

tqNamedGroup::tqNamedGroup(const char* name, int, int, int) : name_(copyOf(name)) {}

tqNamedGroup::tqNamedGroup(const tqNamedGroup& other)
    : tqCollection(other), name_(copyOf(other.name_)), capacity_(other.count_),
      count_(other.count_), autoRemove_(other.autoRemove_) {
  if (count_ == 0) return;
  const std::size_t size = static_cast<std::size_t>(count_) * sizeof(unsigned);
  oids_ = static_cast<unsigned*>(std::memcpy(tqAllocated(std::malloc(size)), other.oids_, size));
}

tqNamedGroup::~tqNamedGroup() {
  std::free(oids_);
  std::free(name_);
}

unsigned tqNamedGroup::memberOid(int i) const { return i >= 0 && i < count_ ? oids_[i] : 0; }

tqBase* tqNamedGroup::member(int i) const { return tqBase::validated(memberOid(i), 0); }

void tqNamedGroup::add(tqBase* object) {
  if (count_ == capacity_) {
    capacity_ = ProtoList::grownCount(count_);
    const std::size_t size = static_cast<std::size_t>(capacity_) * sizeof(unsigned);
    oids_ = static_cast<unsigned*>(tqAllocated(std::realloc(oids_, size)));
  }
  oids_[count_++] = object ? object->oid() : 0;
}

void tqNamedGroup::setAutoRemove(int flag) { autoRemove_ = flag; }

unsigned tqNamedGroup::classId() const { return 1045; }

const char* tqNamedGroup::className() const { return "NamedGroup"; }

int tqNamedGroup::isA(unsigned id) const { return id == 1045 ? 1 : tqCollection::isA(id); }

tqCopyable* tqNamedGroup::shallowCopy() const { return new tqNamedGroup(*this); }
