// A registry of the test's own: it answers with whatever refusal or failure a test asks for, and notes every write.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "associations/association_registry.h"

class FakeRegistry : public CAssociationRegistry {
 public:
  std::optional<CString> ReadOwner(const CString& extension) override {
    const auto found = owners.find(extension.GetString());
    return found == owners.end() ? std::nullopt : std::optional(CString(found->second.c_str()));
  }
  LONG TestWriteAccess(const CString& extension) override {
    if (lockedAtRead.count(extension.GetString())) return ERROR_ACCESS_DENIED;
    return owners.count(extension.GetString()) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  }
  LONG WriteOwner(const CString& extension, const CString& programId) override {
    attempts.push_back(extension.GetString());
    const auto refusal = refusals.find(extension.GetString());
    if (refusal != refusals.end()) return refusal->second;
    owners[extension.GetString()] = programId.GetString();
    writes.push_back(std::wstring(extension.GetString()) + L"=" + programId.GetString());
    return ERROR_SUCCESS;
  }
  void WriteUserChoice(const CString& extension, const CString& programId) override {
    writes.push_back(std::wstring(extension.GetString()) + L" user=" + programId.GetString());
  }
  void NotifyShell() override { ++notifications; }

  std::map<std::wstring, std::wstring> owners;
  std::set<std::wstring> lockedAtRead;
  std::map<std::wstring, LONG> refusals;  // of WriteOwner
  std::vector<std::wstring> attempts;
  std::vector<std::wstring> writes;
  int notifications = 0;
};
