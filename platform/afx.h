// Free functions of the framework: address checks, message boxes, the wait cursor.
#pragma once

#include "platform/cstring.h"
#include "platform/exception.h"
#include "platform/file.h"
#include "platform/module_context.h"
#include "platform/win32.h"

// Whether all of [address, address + size) is committed memory that may be read, and with `write` also written. A range
// may span several regions. Null is never valid; size 0 asks about the first byte. Guard pages count as invalid.
BOOL AfxIsValidAddress(const void* address, UINT_PTR size, BOOL write = TRUE);
// Whether text up to its terminator (or `length` characters, when not -1) can be read.
BOOL AfxIsValidString(LPCWSTR text, int length = -1);

// A message box owned by the thread's active window. The caption is the application's name.
int AfxMessageBox(LPCWSTR text, UINT type = MB_OK, UINT helpId = 0);
int AfxMessageBox(UINT textId, UINT type = MB_OK, UINT helpId = static_cast<UINT>(-1));

// The hour glass for the length of a scope. Restore shows it again after something else changed the cursor.
class CWaitCursor {
 public:
  CWaitCursor() : previous_(::SetCursor(::LoadCursorW(nullptr, MAKEINTRESOURCEW(32514)))) {}
  CWaitCursor(const CWaitCursor&) = delete;
  CWaitCursor& operator=(const CWaitCursor&) = delete;
  ~CWaitCursor() { ::SetCursor(previous_); }

  void Restore() { ::SetCursor(::LoadCursorW(nullptr, MAKEINTRESOURCEW(32514))); }

 private:
  HCURSOR previous_;
};
