#include "Platform.h"

tqTreeNode* tqTreeNode::_copyRoot = nullptr;

tqTreeNode::tqTreeNode() : tqBase(1) { children_.ordered(1); }

// Shallow: the children are the source's, so this node neither owns nor destroys them.
tqTreeNode::tqTreeNode(const tqTreeNode& other)
    : tqBase(other), tqCopyable(), children_(other.children_) {
  setShallow(1);
}

tqTreeNode::~tqTreeNode() {
  if (parent_) parent_->removeChild(this);
  if (tqCopyable::isShallow()) return;
  while (tqTreeNode* first = child(0)) {
    removeChild(first);
    delete first;
  }
}

int tqTreeNode::hasAncestor(const tqTreeNode* node) const {
  for (const tqTreeNode* at = this; at && node; at = at->parent_)
    if (at == node) return 1;
  return 0;
}

tqTreeNode* tqTreeNode::child(int i) const {
  return i >= 0 && i < children_.count() ? static_cast<tqTreeNode*>(children_.item(i)) : nullptr;
}

void tqTreeNode::addChild(tqTreeNode* node) {
  if (!node || hasAncestor(node)) return;
  if (node->parent_) node->parent_->removeChild(node);
  node->parent_ = this;
  children_.append(node);
}

void tqTreeNode::removeChild(tqTreeNode* node) {
  if (!node || node->parent_ != this) return;
  node->parent_ = nullptr;
  children_.removeFirst(node);
}

tqTreeNode* tqTreeNode::copyTree() {
  tqTreeNode* const outer = _copyRoot;
  _copyRoot = this;
  tqTreeNode* const copy = static_cast<tqTreeNode*>(deepCopy());
  _copyRoot = outer;
  return copy;
}

unsigned tqTreeNode::classId() const { return 1000; }

const char* tqTreeNode::className() const { return "TreeNode"; }

int tqTreeNode::isA(unsigned id) const { return id == 1000 ? 1 : tqBase::isA(id); }

tqCopyable* tqTreeNode::shallowCopy() const { return new tqTreeNode(*this); }

void tqTreeNode::deepenShallowCopy() {
  const tqBaseList sources(children_);
  children_.remove_all();
  setShallow(0);
  for (tqBase* source : sources)
    addChild(static_cast<tqTreeNode*>(static_cast<tqTreeNode*>(source)->deepCopy()));
}
