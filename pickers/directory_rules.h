// The rules of the folder picker that need no window: which records it takes, how its controls move when no files are
// listed, and what of the chosen folder reaches the caller.
#pragma once

#include <cstdint>

#include "include/zvfiledlg_directory.h"
#include "platform/cstring.h"

// SUCCESS or ERROR_BAD_ARGUMENT.
int32_t CheckDirectoryParams(const DIRECTORYDLGPARAMS& params);

// Hands the folder to the caller's buffer of `bufferLength` characters and gives `status` back; a buffer that does not hold
// it is left alone, and the result is ERROR_BUFFER_TOO_SMALL whatever the status was.
int32_t DeliverFolder(const CString& folder, int32_t status, wchar_t* buffer, int32_t bufferLength);

// The path of a folder as the shell names it; empty for a virtual one, which some systems name by "::" and its class.
CString FolderInFileSystem(const CString& shellName);

// The picker without a file list's rows below it: label and edit stand right under the list, the buttons side by side under
// them. All rectangles are in pixels.
struct CompactLayoutInput {
  RECT list;  // of the shell's list
  RECT label;
  RECT ok;
  RECT cancel;
  int hookWidth;  // of the window that holds our own controls
  bool hasHelp;
};

struct CompactLayout {
  RECT list;
  RECT label;
  RECT edit;
  RECT ok;
  RECT cancel;
  RECT help;  // empty without a Help button
};

CompactLayout LayOutCompactPicker(const CompactLayoutInput& input);
