// CStringDepository: a table from small ids to texts.
#pragma once

#include <cstdint>

#include "platform/map.h"

// Exists to be handed to the constructor of CStringDepository.
class CStringDepositoryEntry {
 public:
  CStringDepositoryEntry(int32_t id, const CString& text) : id_(id), text_(text) {}
  virtual ~CStringDepositoryEntry() = default;
  int32_t id() const { return id_; }
  const CString& text() const { return text_; }

 private:
  int32_t id_;
  CString text_;
};

class CStringDepository {
 public:
  // `count`, then that many pointers to CStringDepositoryEntry. A count of 0 or less makes an empty table.
  explicit CStringDepository(int count, ...);
  virtual ~CStringDepository() = default;

  // Enters a text, or overwrites the one of that id.
  void AddString(int32_t id, const CString& text);
  void AddEntry(const CStringDepositoryEntry& entry);
  // The text, or an empty one when the id is absent.
  CString GetString(int32_t id) const;
  void RemoveAll();
  UINT GetHashTableSize() const { return texts_.GetHashTableSize(); }

 private:
  CMap<int32_t, int32_t, CString, const CString&> texts_{10};
};
