#include "services/zvdlgwidgets/clipboard_text.h"

#include "platform/scope_exit.h"

CString ReadClipboardText(HWND window) {
  if (!::OpenClipboard(window)) {
    return CString();
  }
  const scope_exit close([] { ::CloseClipboard(); });
  const HANDLE data = ::GetClipboardData(CF_UNICODETEXT);
  const auto* const text = data ? static_cast<const wchar_t*>(::GlobalLock(data)) : nullptr;
  if (!text) {
    return CString();
  }
  const scope_exit unlock([data] { ::GlobalUnlock(data); });
  return CString(text);
}
