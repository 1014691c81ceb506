#include "services/zvdlgutil/dialog_string.h"

#include "services/zvdlgbase/zvdlgbase.h"

CString LoadDialogString(UINT id) {
  uint32_t length = 0;
  if (GetDialogStringLength(id, &length) != SUCCESS || length == 0) {
    return CString();
  }
  std::wstring text(length + 1, L'\0');
  if (GetDialogStringText(id, text.data(), length + 1) != SUCCESS) {
    return CString();
  }
  text.resize(length);
  return CString(std::move(text));
}
