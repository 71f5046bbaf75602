#include "Platform.h"

#include "UserData.h"

tqTreeNode* tqTreeNode::_copyRoot = nullptr;

namespace {

// The copies whose attributes are still their sources', while nodes are being copied; null
// otherwise. The outermost `deepenShallowCopy` owns it.
tqBaseList* waiting = nullptr;

}  // namespace

tqTreeNode::tqTreeNode() : tqBase(1) { children_.ordered(1); }

tqTreeNode::tqTreeNode(const tqTreeNode& other)
    : tqBase(other), tqCopyable(), children_(other.children_), userData_(other.userData_),
      borrowsUserData_(other.userData_ != nullptr) {
  setShallow(1);
}

tqTreeNode::~tqTreeNode() {
  leaveDeletionQueue();
  if (parent_) parent_->removeChild(this);
  while (tqTreeNode* const first = tqCopyable::isShallow() ? nullptr : child(0)) {
    removeChild(first);
    delete first;
  }
  if (!borrowsUserData_)
    delete userData_;
  else if (waiting)
    waiting->removeFirst(this);
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

tqUserData* tqTreeNode::userData() {
  if (!userData_) userData_ = tqAllocated(new (std::nothrow) tqUserData);
  return userData_;
}

tqTreeNode* tqTreeNode::copyTree() {
  tqTreeNode* const outerRoot = _copyRoot;
  tqBaseList* const outerWaiting = waiting;
  _copyRoot = this;
  waiting = nullptr;  // attributes are mapped before the root changes back
  auto* const copy = static_cast<tqTreeNode*>(deepCopy());
  waiting = outerWaiting;
  _copyRoot = outerRoot;
  return copy;
}

unsigned tqTreeNode::classId() const { return 1000; }

const char* tqTreeNode::className() const { return "TreeNode"; }

int tqTreeNode::isA(unsigned id) const { return id == 1000 ? 1 : tqBase::isA(id); }

tqCopyable* tqTreeNode::shallowCopy() const { return new tqTreeNode(*this); }

void tqTreeNode::deepenShallowCopy() {
  if (waiting) return deepenChildren();
  tqBaseList copies(0);
  copies.ordered(1);
  waiting = &copies;
  deepenChildren();
  while (copies.count() > 0) {
    auto* const copy = static_cast<tqTreeNode*>(copies.item(0));
    copies.remove(0);
    copy->deepenAttributes();  // may copy more nodes, which join the list
  }
  waiting = nullptr;
}

void tqTreeNode::deepenChildren() {
  if (borrowsUserData_) waiting->append(this);
  if (!tqCopyable::isShallow()) return;
  const tqBaseList sources(children_);
  children_.remove_all();
  setShallow(0);
  for (tqBase* source : sources)
    addChild(static_cast<tqTreeNode*>(static_cast<tqTreeNode*>(source)->deepCopy()));
}

// Every node has attributes of its own, so their copy is made for this node alone.
void tqTreeNode::deepenAttributes() {
  userData_ = static_cast<tqUserData*>(userData_->shallowCopy());
  borrowsUserData_ = false;
  if (userData_) userData_->deepenShallowCopy();
}
