// The key type of the tag map: a string without regard to case. The hash is the length shifted right by four, so tags, all
// shorter than 16 characters, share one bucket; with six entries a lookup is a short walk.
#pragma once

#include "platform/map.h"
#include "platform/object.h"

class CStringMapKey : public CObject {
 public:
  CStringMapKey() = default;
  CStringMapKey(const CString& text) : text_(text) {}
  CStringMapKey(const CStringMapKey& other) : CObject(), text_(other.text_) {}
  CStringMapKey& operator=(const CStringMapKey& other) {
    text_ = other.text_;
    return *this;
  }

  UINT Hash() const { return static_cast<UINT>(CString(text_).MakeLower().GetLength()) >> 4; }
  bool operator==(const CStringMapKey& other) const { return text_.CompareNoCase(other.text_) == 0; }

 private:
  CString text_;
};

template <>
inline UINT HashKey<const CStringMapKey&>(const CStringMapKey& key) {
  return key.Hash();
}
