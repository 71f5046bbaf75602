#ifndef TQ_PLATFORM_H
#define TQ_PLATFORM_H

#include "Base.h"

// The least that the library asks of an application layer, and nothing of the default one: nodes
// have no children, and a group keeps the object added last.

class TQ_API tqTreeNode : public tqBase, public tqCopyable {
public:
  tqTreeNode() : tqBase(1) {}
  int hasAncestor(const tqTreeNode* node) const { return node == this ? 1 : 0; }
  unsigned classId() const override { return 1000; }
  tqCopyable* shallowCopy() const override { return new tqTreeNode(*this); }
  void deepenShallowCopy() override {}

  static tqTreeNode* _copyRoot;
};

class TQ_API tqCollection : public tqBase, public tqCopyable {
public:
  tqCollection() : tqBase(1) {}
  tqCollection* deepCopy() { return static_cast<tqCollection*>(tqCopyable::deepCopy()); }
  tqCopyable* shallowCopy() const override { return new tqCollection(*this); }
  void deepenShallowCopy() override {}
};

class TQ_API tqNamedGroup : public tqCollection {
public:
  tqNamedGroup(const char*, int, int, int) {}
  virtual void add(tqBase* object) { last = object; }
  virtual void setAutoRemove(int) {}

  tqBase* last = nullptr;
};

class TQ_API tqApplObject : public tqBase {
public:
  tqApplObject() : tqBase(1) {}
};

TQ_API unsigned tqz_CurrentApplicationObject();
extern "C" TQ_API void dmatinv_(double* source, double* result, int* status);

#endif
