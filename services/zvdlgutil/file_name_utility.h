// CZVFileNameUtility: the parts of a path, by its text alone. Nothing here touches the file system. Folders end at "\",
// "/" or at the colon of a drive. The extension is what follows the last dot of the name, unless nothing but dots
// stands before it: ".profile", "." and ".." are names without one. A dot at the very end of a name ends it before an
// empty extension, since the system drops such a dot as well.
#pragma once

#include "platform/cstring.h"

class CZVFileNameUtility {
 public:
  // The extension without its dot; empty when there is none.
  static CString ExtractFileExt(const CString& path);
  // The name without folder and without extension.
  static CString ExtractFileName(const CString& path);
  // The folder without the separator at its end, so that a "\" may always be added: "C:" for "C:\a.jpg"; empty when the
  // path has no folder.
  static CString ExtractFilePath(const CString& path);
  // The path with its name replaced; folder and extension stay as they are.
  static CString UpdateFileName(const CString& path, const CString& name);
};
