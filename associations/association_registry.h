// The registry as the association dialog sees it: one small interface, so that tests can answer with refusals and failures
// that a real registry does not give on demand. Extensions are given with their point. The tree behind it:
//
//   HKEY_CLASSES_ROOT
//     .ext                    default value: the program identifier that owns the extension
//   HKEY_CURRENT_USER
//     Software\Microsoft\Windows\CurrentVersion\Explorer\FileExts
//       .ext                  ProgID, Application: what the shell took note of for this user; written only where it exists
#pragma once

#include <optional>

#include "platform/cstring.h"
#include "platform/win32.h"

class CAssociationRegistry {
 public:
  virtual ~CAssociationRegistry() = default;

  // The default value of the extension's key, empty when it has none; nothing when there is no such key or it cannot be read.
  // Values of more than 129 characters read as empty.
  virtual std::optional<CString> ReadOwner(const CString& extension) = 0;
  // The result of opening the extension's key for writing: ERROR_SUCCESS, ERROR_ACCESS_DENIED, ...
  virtual LONG TestWriteAccess(const CString& extension) = 0;
  // Creates or opens the extension's key and sets its default value. The result is that of creating the key alone.
  virtual LONG WriteOwner(const CString& extension, const CString& programId) = 0;
  // Sets both per-user values to the program identifier. The shell knows the key or it does not: no result.
  virtual void WriteUserChoice(const CString& extension, const CString& programId) = 0;
  // Tells the shell that associations changed.
  virtual void NotifyShell() = 0;
};

// The system's registry.
CAssociationRegistry& SystemAssociationRegistry();
