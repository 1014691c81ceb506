#include "associations/association_rules.h"

int ReadAssociationState(CAssociationRegistry& registry, const CString& extension, const CString& programId) {
  int state = kUnclaimed;
  if (const std::optional<CString> owner = registry.ReadOwner(extension)) {
    // The comparison comes first: with an empty program identifier an empty value is ours.
    state = owner->CompareNoCase(programId) == 0 ? kOurs : owner->IsEmpty() ? kUnclaimed : kTheirs;
  }
  if (registry.TestWriteAccess(extension) == ERROR_ACCESS_DENIED) {
    return state == kOurs ? kLockedOurs : kLocked;
  }
  return state;
}

bool StartsChecked(int state, const CString& extension, const CString& selected) {
  if (state == kOurs || state == kLockedOurs) {
    return true;
  }
  return !selected.IsEmpty() && selected.Find(CString(extension).MakeUpper()) >= 0;
}

AssociationChange ChangeFor(int state, bool isChecked) {
  if (state == kOurs && !isChecked) {
    return AssociationChange::kUnclaim;
  }
  if ((state == kUnclaimed || state == kTheirs) && isChecked) {
    return AssociationChange::kClaim;
  }
  return AssociationChange::kNone;
}

void ApplyChange(CAssociationRegistry& registry, AssociationChange change, const CString& extension,
                 const CString& programId, AssociationOutcome& outcome) {
  if (change == AssociationChange::kNone) {
    return;
  }
  const bool isClaim = change == AssociationChange::kClaim;
  const LONG result = registry.WriteOwner(extension, isClaim ? programId : CString());
  if (result == ERROR_ACCESS_DENIED) {
    outcome.isDenied = true;
  } else if (result != ERROR_SUCCESS) {
    outcome.hasFailed = true;
  } else if (isClaim) {
    registry.WriteUserChoice(extension, programId);
  }
}
