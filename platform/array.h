// CArray: a growing array over std::vector, and the plain arrays made from it. Indices are 0-based and not checked,
// except where an operation says so. Not copied implicitly: use Copy or Append.
#pragma once

#include <algorithm>
#include <vector>

#include "platform/cstring.h"
#include "platform/types.h"

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
 public:
  CArray() = default;
  CArray(const CArray&) = delete;
  CArray& operator=(const CArray&) = delete;
  virtual ~CArray() = default;

  INT_PTR GetSize() const { return static_cast<INT_PTR>(items_.size()); }
  INT_PTR GetCount() const { return GetSize(); }
  BOOL IsEmpty() const { return items_.empty(); }
  // The last valid index; -1 when empty.
  INT_PTR GetUpperBound() const { return GetSize() - 1; }
  // New elements are value-initialised. The growth hint is taken from the vector's own policy.
  void SetSize(INT_PTR size, INT_PTR /*growBy*/ = -1) { items_.resize(static_cast<size_t>(size)); }
  void FreeExtra() { items_.shrink_to_fit(); }
  void RemoveAll() {
    items_.clear();
    items_.shrink_to_fit();
  }

  const TYPE& GetAt(INT_PTR index) const { return items_[static_cast<size_t>(index)]; }
  TYPE& GetAt(INT_PTR index) { return items_[static_cast<size_t>(index)]; }
  TYPE& ElementAt(INT_PTR index) { return items_[static_cast<size_t>(index)]; }
  const TYPE& ElementAt(INT_PTR index) const { return items_[static_cast<size_t>(index)]; }
  TYPE& operator[](INT_PTR index) { return items_[static_cast<size_t>(index)]; }
  const TYPE& operator[](INT_PTR index) const { return items_[static_cast<size_t>(index)]; }
  void SetAt(INT_PTR index, ARG_TYPE value) { items_[static_cast<size_t>(index)] = value; }
  TYPE* GetData() { return items_.data(); }
  const TYPE* GetData() const { return items_.data(); }

  // Returns the index of the new element.
  INT_PTR Add(ARG_TYPE value) {
    items_.push_back(value);
    return GetUpperBound();
  }
  INT_PTR Append(const CArray& other);
  void Copy(const CArray& other) { items_ = other.items_; }
  void SetAtGrow(INT_PTR index, ARG_TYPE value);
  // Past the end, the gap is filled with value-initialised elements.
  void InsertAt(INT_PTR index, ARG_TYPE value, INT_PTR count = 1);
  void RemoveAt(INT_PTR index, INT_PTR count = 1);

  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

 private:
  std::vector<TYPE> items_;
};

template <class TYPE, class ARG_TYPE>
INT_PTR CArray<TYPE, ARG_TYPE>::Append(const CArray& other) {
  const size_t first = items_.size();
  const size_t added = other.items_.size();
  items_.reserve(first + added);
  std::copy_n(other.items_.begin(), added, std::back_inserter(items_));
  return static_cast<INT_PTR>(first);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetAtGrow(INT_PTR index, ARG_TYPE value) {
  TYPE copy = value;
  if (index >= GetSize()) {
    SetSize(index + 1);
  }
  items_[static_cast<size_t>(index)] = std::move(copy);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::InsertAt(INT_PTR index, ARG_TYPE value, INT_PTR count) {
  const TYPE copy = value;
  if (index > GetSize()) {
    SetSize(index);
  }
  items_.insert(items_.begin() + index, static_cast<size_t>(count), copy);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::RemoveAt(INT_PTR index, INT_PTR count) {
  items_.erase(items_.begin() + index, items_.begin() + index + count);
}

class CStringArray : public CArray<CString, const CString&> {};
class CPtrArray : public CArray<void*, void*> {};
class CUIntArray : public CArray<UINT, UINT> {};
class CDWordArray : public CArray<DWORD, DWORD> {};
class CWordArray : public CArray<WORD, WORD> {};
class CByteArray : public CArray<BYTE, BYTE> {};
