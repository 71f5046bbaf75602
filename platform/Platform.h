#ifndef TQ_PLATFORM_H
#define TQ_PLATFORM_H

#include "Base.h"

/// \file Platform.h
/// What the library expects of the application: the classes and functions that it calls back into.
/// This default layer is small and real. An application puts its own in its place by compiling the
/// library with `-DTQ_PLATFORM_DIR=<folder>`, where it keeps a `Platform.h` and its sources.
///
/// Each entry says what the library uses of it; the rest is a service of the default layer.

class tqUserData;

/// A node of a tree of objects: the structures, chains and atoms of an application derive from it.
///
/// The library uses `_copyRoot` and `hasAncestor`: an attribute that refers to a node inside the
/// tree being copied is mapped to the node's copy, one that leaves the tree is dropped.
///
/// A parent owns its children, in order, and destroys them first to last; a node that is destroyed
/// leaves its parent. A node owns its attributes. A class derived from it overrides `shallowCopy`
/// with its own copy constructor, and the identity queries.
class TQ_API tqTreeNode : public tqBase, public tqCopyable {
public:
  /// A node without parent and children, with an OID.
  tqTreeNode();
  /// A copy without parent; its children and attributes are the source's until `deepenShallowCopy`,
  /// and destroying it before leaves them alone.
  tqTreeNode(const tqTreeNode& other);
  tqTreeNode& operator=(const tqTreeNode&) = delete;

  /// 1 when `node` is this node or an ancestor of it; 0 for null.
  int hasAncestor(const tqTreeNode* node) const;

  tqTreeNode* parent() const { return parent_; }
  int childCount() const { return children_.count(); }
  /// Child i, null when out of range.
  tqTreeNode* child(int i) const;
  /// Takes a node over as the last child, away from its former parent. Null, this node and its
  /// ancestors are ignored.
  void addChild(tqTreeNode* node);
  /// Hands a child back to the caller; nodes that are no children are ignored.
  void removeChild(tqTreeNode* node);

  /// The attributes of this node, made on first use.
  tqUserData* userData();
  /// Null when the node has no attributes so far.
  const tqUserData* userData() const { return userData_; }

  /// A copy of this node and all below it with their attributes, which the caller owns: a tree of
  /// its own. Sets `_copyRoot` meanwhile.
  ///
  /// Attributes that refer to nodes of the tree refer to their copies in the copy; references to
  /// other nodes and to destroyed objects are 0 there, those to objects that are no nodes stay.
  /// \snippet copy_tree.cpp copy
  tqTreeNode* copyTree();

  ~tqTreeNode() override;
  unsigned classId() const override;       ///< 1000
  const char* className() const override;  ///< "TreeNode"
  int isA(unsigned id) const override;     ///< 1 for 1000 and 0
  tqCopyable* shallowCopy() const override;
  /// Copies the children and below, then the attributes of all nodes met: by then most references
  /// find their copy made, and a chain of them, however long, is followed without recursion.
  /// Nothing when the node has children and attributes of its own already.
  void deepenShallowCopy() override;

  /// Root of the tree that is being copied, null between copies.
  static tqTreeNode* _copyRoot;

private:
  void deepenChildren();
  void deepenAttributes();

  tqTreeNode* parent_ = nullptr;
  tqBaseList children_{0};
  tqUserData* userData_ = nullptr;
  bool borrowsUserData_ = false;  // it is the source's: this is a shallow copy
};

/// A collection of objects. The library uses `deepCopy`.
class TQ_API tqCollection : public tqBase, public tqCopyable {
public:
  tqCollection();
  tqCollection(const tqCollection& other);
  tqCollection& operator=(const tqCollection&) = delete;

  /// A new collection, which the caller owns.
  tqCollection* deepCopy();

  ~tqCollection() override;
  unsigned classId() const override;       ///< 1015
  const char* className() const override;  ///< "Collection"
  int isA(unsigned id) const override;     ///< 1 for 1015 and 0
  tqCopyable* shallowCopy() const override;
  void deepenShallowCopy() override;
};

/// A named group of objects, in which a trigger keeps what it was fired for.
///
/// The library uses the constructor, with an empty name and 1, 1, 1, and the two virtual
/// operations. Members are held by OID, in the order added, duplicates and nulls included; the
/// group owns none of them.
class TQ_API tqNamedGroup : public tqCollection {
public:
  /// \param name copied; null counts as the empty one. The numbers are the application's own.
  tqNamedGroup(const char* name, int, int, int);
  tqNamedGroup(const tqNamedGroup& other);
  tqNamedGroup& operator=(const tqNamedGroup&) = delete;

  const char* name() const { return name_; }
  int count() const { return count_; }
  /// OID of member i; 0 for a null member and when out of range.
  unsigned memberOid(int i) const;
  /// Member i; null for a null member, once it is destroyed, and when out of range.
  tqBase* member(int i) const;
  /// The flag of `setAutoRemove`, 1 at first; the group itself does not act on it.
  int autoRemove() const { return autoRemove_; }
  /// Drops all members.
  void clear() { count_ = 0; }

  /// Adds an object, or null.
  virtual void add(tqBase* object);
  /// Says whether members are to leave the group when they are destroyed; called with 0 for a
  /// trigger that hears deletions, which wants to know what was deleted.
  virtual void setAutoRemove(int flag);

  ~tqNamedGroup() override;
  unsigned classId() const override;       ///< 1045
  const char* className() const override;  ///< "NamedGroup"
  int isA(unsigned id) const override;     ///< 1 for 1045, 1015 and 0
  tqCopyable* shallowCopy() const override;

private:
  char* name_;
  unsigned* oids_ = nullptr;
  int capacity_ = 0;
  int count_ = 0;
  int autoRemove_ = 1;
};

/// An application in the process. The library reads its OID.
class TQ_API tqApplObject : public tqBase {
public:
  tqApplObject();

  /// Makes an application the current one; null for none.
  static void setCurrent(tqApplObject* application);
  /// OID of the application made current last; 0 when there is none, or when it is destroyed.
  static unsigned currentOid();

  ~tqApplObject() override;
  unsigned classId() const override;       ///< 1047
  const char* className() const override;  ///< "ApplObject"
  int isA(unsigned id) const override;     ///< 1 for 1047 and 0
};

/// OID of the application object that is current, 0 when there is none. Application triggers ask.
TQ_API unsigned tqz_CurrentApplicationObject();

/// Inverts a 3x3 matrix, nine elements in column-major order; transposed in, transposed out, so
/// row-major callers need no change. `tqMatrix3x3` calls it.
///
/// \param status 0, or 1 when the matrix is singular, and then the result is all zeros.
extern "C" TQ_API void dmatinv_(double* source, double* result, int* status);

/// Makes the list of selected objects, ordered; a second call does nothing.
TQ_API void tqPlatformStart();

#endif
