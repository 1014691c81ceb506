// CMap: a hash map over std::unordered_map, with the two hooks by which a key type brings its own hash and equality:
// specialise HashKey<ARG_KEY> and CompareElements<KEY, ARG_KEY> before the map is first used. The table starts with 17
// buckets; InitHashTable sets another number. A POSITION stays valid until its own entry is removed. Not copied.
#pragma once

#include <type_traits>
#include <unordered_map>

#include "platform/cstring.h"
#include "platform/types.h"

namespace map_detail {
// Letters differ in their low bits, and neighbours shall not fall into one bucket: a multiplicative string hash.
inline UINT HashText(LPCWSTR text) {
  UINT hash = 0;
  for (; *text; ++text) {
    hash = hash * 33 + static_cast<UINT>(*text);
  }
  return hash;
}
}  // namespace map_detail

// Numbers and pointers: the value without its lowest four bits.
template <class ARG_KEY>
UINT HashKey(ARG_KEY key) {
  using Plain = std::remove_cvref_t<ARG_KEY>;
  if constexpr (std::is_same_v<Plain, CString>) {
    return map_detail::HashText(key.GetString());
  } else if constexpr (std::is_same_v<Plain, LPCWSTR>) {
    return map_detail::HashText(key);
  } else if constexpr (std::is_pointer_v<Plain>) {
    return static_cast<UINT>(reinterpret_cast<DWORD_PTR>(key) >> 4);
  } else {
    return static_cast<UINT>(static_cast<DWORD_PTR>(key) >> 4);
  }
}

template <class TYPE, class ARG_TYPE>
BOOL CompareElements(const TYPE* first, const ARG_TYPE* second) {
  return *first == *second;
}

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
class CMap {
 public:
  explicit CMap(INT_PTR /*blockSize*/ = 10) {}
  CMap(const CMap&) = delete;
  CMap& operator=(const CMap&) = delete;
  virtual ~CMap() = default;

  INT_PTR GetCount() const { return static_cast<INT_PTR>(entries_.size()); }
  INT_PTR GetSize() const { return GetCount(); }
  BOOL IsEmpty() const { return entries_.empty(); }

  // Leaves `value` alone when the key is absent.
  BOOL Lookup(ARG_KEY key, VALUE& value) const {
    const auto found = entries_.find(KEY(key));
    if (found == entries_.end()) {
      return FALSE;
    }
    value = found->second;
    return TRUE;
  }
  VALUE& operator[](ARG_KEY key) { return entries_[KEY(key)]; }
  void SetAt(ARG_KEY key, ARG_VALUE value) { entries_[KEY(key)] = value; }
  BOOL RemoveKey(ARG_KEY key) { return entries_.erase(KEY(key)) != 0; }
  // The number of buckets asked for stays in force.
  void RemoveAll() { entries_.clear(); }

  // Entries come in no particular order.
  POSITION GetStartPosition() const { return entries_.empty() ? nullptr : ToPosition(entries_.begin()); }
  void GetNextAssoc(POSITION& position, KEY& key, VALUE& value) const {
    const auto* const entry = reinterpret_cast<const Entry*>(position);
    key = entry->first;
    value = entry->second;
    const auto next = std::next(entries_.find(entry->first));
    position = next == entries_.end() ? nullptr : ToPosition(next);
  }

  UINT GetHashTableSize() const { return hashTableSize_; }
  void InitHashTable(UINT size, BOOL /*allocateNow*/ = TRUE) {
    hashTableSize_ = size;
    entries_.rehash(size);
  }

 private:
  struct Hash {
    size_t operator()(const KEY& key) const { return HashKey<ARG_KEY>(key); }
  };
  struct Equal {
    bool operator()(const KEY& first, const KEY& second) const {
      return CompareElements<KEY, KEY>(&first, &second) != FALSE;
    }
  };
  using Entries = std::unordered_map<KEY, VALUE, Hash, Equal>;
  using Entry = typename Entries::value_type;

  static constexpr UINT kDefaultBuckets = 17;

  static POSITION ToPosition(typename Entries::const_iterator entry) {
    return reinterpret_cast<POSITION>(const_cast<Entry*>(&*entry));
  }

  UINT hashTableSize_ = kDefaultBuckets;
  Entries entries_{kDefaultBuckets};
};
