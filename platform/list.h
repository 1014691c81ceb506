// CList: a doubly linked list over std::list. A POSITION stays valid until its own element is removed. Not copied.
#pragma once

#include <list>

#include "platform/types.h"

template <class TYPE, class ARG_TYPE = const TYPE&>
class CList {
 public:
  explicit CList(INT_PTR /*blockSize*/ = 10) {}
  CList(const CList&) = delete;
  CList& operator=(const CList&) = delete;
  virtual ~CList() = default;

  INT_PTR GetCount() const { return static_cast<INT_PTR>(nodes_.size()); }
  INT_PTR GetSize() const { return GetCount(); }
  BOOL IsEmpty() const { return nodes_.empty(); }
  void RemoveAll() { nodes_.clear(); }

  TYPE& GetHead() { return nodes_.front().value; }
  const TYPE& GetHead() const { return nodes_.front().value; }
  TYPE& GetTail() { return nodes_.back().value; }
  const TYPE& GetTail() const { return nodes_.back().value; }
  POSITION GetHeadPosition() const { return nodes_.empty() ? nullptr : ToPosition(nodes_.front()); }
  POSITION GetTailPosition() const { return nodes_.empty() ? nullptr : ToPosition(nodes_.back()); }

  POSITION AddHead(ARG_TYPE value) { return Insert(nodes_.begin(), value); }
  POSITION AddTail(ARG_TYPE value) { return Insert(nodes_.end(), value); }
  POSITION InsertBefore(POSITION position, ARG_TYPE value) { return Insert(FromPosition(position)->self, value); }
  POSITION InsertAfter(POSITION position, ARG_TYPE value) {
    return Insert(std::next(FromPosition(position)->self), value);
  }
  TYPE RemoveHead() { return Take(nodes_.begin()); }
  TYPE RemoveTail() { return Take(std::prev(nodes_.end())); }
  void RemoveAt(POSITION position) { nodes_.erase(FromPosition(position)->self); }

  TYPE& GetAt(POSITION position) { return FromPosition(position)->value; }
  const TYPE& GetAt(POSITION position) const { return FromPosition(position)->value; }
  void SetAt(POSITION position, ARG_TYPE value) { FromPosition(position)->value = value; }

  // Both give the element at `position` and move it on; null after the last.
  TYPE& GetNext(POSITION& position);
  TYPE& GetPrev(POSITION& position);
  POSITION Find(ARG_TYPE value, POSITION startAfter = nullptr) const;

 private:
  struct Node {
    TYPE value;
    typename std::list<Node>::iterator self;
  };
  using Iterator = typename std::list<Node>::iterator;

  static POSITION ToPosition(const Node& node) { return reinterpret_cast<POSITION>(const_cast<Node*>(&node)); }
  static Node* FromPosition(POSITION position) { return reinterpret_cast<Node*>(position); }
  POSITION Insert(Iterator before, ARG_TYPE value) {
    const Iterator inserted = nodes_.insert(before, Node{value, {}});
    inserted->self = inserted;
    return ToPosition(*inserted);
  }
  TYPE Take(Iterator node) {
    TYPE value = std::move(node->value);
    nodes_.erase(node);
    return value;
  }

  std::list<Node> nodes_;
};

template <class TYPE, class ARG_TYPE>
TYPE& CList<TYPE, ARG_TYPE>::GetNext(POSITION& position) {
  Node* const node = FromPosition(position);
  const Iterator next = std::next(node->self);
  position = next == nodes_.end() ? nullptr : ToPosition(*next);
  return node->value;
}

template <class TYPE, class ARG_TYPE>
TYPE& CList<TYPE, ARG_TYPE>::GetPrev(POSITION& position) {
  Node* const node = FromPosition(position);
  position = node->self == nodes_.begin() ? nullptr : ToPosition(*std::prev(node->self));
  return node->value;
}

template <class TYPE, class ARG_TYPE>
POSITION CList<TYPE, ARG_TYPE>::Find(ARG_TYPE value, POSITION startAfter) const {
  auto node =
      startAfter ? std::next(typename std::list<Node>::const_iterator(FromPosition(startAfter)->self)) : nodes_.begin();
  for (; node != nodes_.end(); ++node) {
    if (node->value == value) {
      return ToPosition(*node);
    }
  }
  return nullptr;
}
