// What the association dialog decides about a row, without a window: the state in which the registry has an extension,
// whether its box starts checked, and what the box means for the registry when the user presses OK.
#pragma once

#include "associations/association_registry.h"
#include "associations/format_list.h"

// Row states. The locked ones are those whose key may not be written.
inline constexpr int kUnclaimed = 0;  // no key, or an empty default value
inline constexpr int kOurs = 1;
inline constexpr int kTheirs = 2;  // some other program's
inline constexpr int kLocked = 3;  // not ours
inline constexpr int kLockedOurs = 4;

inline bool IsLocked(int state) { return state == kLocked || state == kLockedOurs; }

int ReadAssociationState(CAssociationRegistry& registry, const CString& extension, const CString& programId);

// `selected` is JoinSelected's text. An extension counts as selected when it occurs anywhere in it, so ".TI" selects no
// ".TIF", but ".TIFF" selects both.
bool StartsChecked(int state, const CString& extension, const CString& selected);

enum class AssociationChange { kNone, kClaim, kUnclaim };
AssociationChange ChangeFor(int state, bool isChecked);

// What happened while the rows were written; the walk goes on after either.
struct AssociationOutcome {
  bool isDenied = false;
  bool hasFailed = false;
};
void ApplyChange(CAssociationRegistry& registry, AssociationChange change, const CString& extension,
                 const CString& programId, AssociationOutcome& outcome);
