#include "naming/string_depository.h"

#include <cstdarg>

namespace {
constexpr UINT kBuckets = 257;
}

CStringDepository::CStringDepository(int count, ...) {
  if (count < 1) {
    return;
  }
  texts_.InitHashTable(kBuckets);
  va_list entries;
  va_start(entries, count);
  for (int i = 0; i < count; ++i) {
    AddEntry(*va_arg(entries, const CStringDepositoryEntry*));
  }
  va_end(entries);
}

void CStringDepository::AddString(int32_t id, const CString& text) { texts_.SetAt(id, text); }

void CStringDepository::AddEntry(const CStringDepositoryEntry& entry) { AddString(entry.id(), entry.text()); }

CString CStringDepository::GetString(int32_t id) const {
  CString text;
  texts_.Lookup(id, text);
  return text;
}

void CStringDepository::RemoveAll() { texts_.RemoveAll(); }
