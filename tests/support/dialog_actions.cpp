#include <windows.h>

#include <commctrl.h>

#include "tests/support/dialog_driver.h"

namespace zvtest {

namespace {

// A message to a window of the dialog's thread, which may be gone or stuck.
LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  DWORD_PTR result = 0;
  if (!::SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, kPatience, &result)) {
    throw DriverTimeout("a window did not answer message " + std::to_string(message));
  }
  return static_cast<LRESULT>(result);
}

void Notify(HWND control, int code) {
  const int id = ::GetDlgCtrlID(control);
  Send(::GetParent(control), WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(control));
}

std::wstring ItemText(HWND control, UINT lengthMessage, UINT textMessage, int index) {
  const LRESULT length = Send(control, lengthMessage, static_cast<WPARAM>(index));
  if (length < 0) {
    return L"";
  }
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  Send(control, textMessage, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(length));
  return text;
}

void WaitUntilEnabled(HWND control, int controlId) {
  WaitUntil([=] { return ::IsWindowEnabled(control); }, "control " + std::to_string(controlId) + " is enabled");
}

}  // namespace

std::wstring TextOf(HWND window) {
  const LRESULT length = Send(window, WM_GETTEXTLENGTH);
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  const LRESULT copied = Send(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(copied));
  return text;
}

std::wstring TextOf(HWND dialog, int controlId) { return TextOf(Control(dialog, controlId)); }

bool IsShown(HWND dialog, int controlId) { return ::IsWindowVisible(Control(dialog, controlId)); }

bool IsEnabled(HWND dialog, int controlId) { return ::IsWindowEnabled(Control(dialog, controlId)); }

bool IsChecked(HWND dialog, int controlId) { return Send(Control(dialog, controlId), BM_GETCHECK) == BST_CHECKED; }

RECT RectIn(HWND dialog, int controlId) {
  RECT rect;
  ::GetWindowRect(Control(dialog, controlId), &rect);
  ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

void Click(HWND dialog, int controlId) {
  const HWND button = Control(dialog, controlId);
  WaitUntilEnabled(button, controlId);
  ::PostMessageW(button, BM_CLICK, 0, 0);
}

void ClickAndWait(HWND dialog, int controlId) {
  const HWND button = Control(dialog, controlId);
  WaitUntilEnabled(button, controlId);
  Send(button, BM_CLICK);
}

void WaitUntilAnswering(HWND window) { Send(window, WM_NULL); }

void Check(HWND dialog, int controlId, bool checked) {
  if (IsChecked(dialog, controlId) != checked) {
    ClickAndWait(dialog, controlId);
  }
}

void Command(HWND dialog, int commandId) { ::PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(commandId, 0), 0); }

void SetText(HWND dialog, int controlId, const std::wstring& text) {
  const HWND control = Control(dialog, controlId);
  WaitUntilEnabled(control, controlId);
  Send(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void PressKey(HWND dialog, WPARAM virtualKey) {
  GUITHREADINFO info = {sizeof(info)};
  ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &info);
  const HWND target = info.hwndFocus && ::IsChild(dialog, info.hwndFocus) ? info.hwndFocus : dialog;
  ::PostMessageW(target, WM_KEYDOWN, virtualKey, 1);
  ::PostMessageW(target, WM_KEYUP, virtualKey, static_cast<LPARAM>(0xc0000001));
}

void CloseWindow(HWND window) { ::PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0); }

int ComboCount(HWND dialog, int controlId) { return static_cast<int>(Send(Control(dialog, controlId), CB_GETCOUNT)); }

int ComboSelection(HWND dialog, int controlId) {
  return static_cast<int>(Send(Control(dialog, controlId), CB_GETCURSEL));
}

std::wstring ComboText(HWND dialog, int controlId, int index) {
  return ItemText(Control(dialog, controlId), CB_GETLBTEXTLEN, CB_GETLBTEXT, index);
}

void SelectCombo(HWND dialog, int controlId, int index) {
  const HWND combo = Control(dialog, controlId);
  WaitUntilEnabled(combo, controlId);
  Send(combo, CB_SETCURSEL, static_cast<WPARAM>(index));
  Notify(combo, CBN_SELENDOK);
  Notify(combo, CBN_SELCHANGE);
}

int ListBoxCount(HWND dialog, int controlId) { return static_cast<int>(Send(Control(dialog, controlId), LB_GETCOUNT)); }

std::wstring ListBoxText(HWND dialog, int controlId, int index) {
  return ItemText(Control(dialog, controlId), LB_GETTEXTLEN, LB_GETTEXT, index);
}

void SelectListBoxRows(HWND dialog, int controlId, const std::vector<int>& rows) {
  const HWND list = Control(dialog, controlId);
  Send(list, LB_SETSEL, FALSE, -1);
  for (const int row : rows) {
    Send(list, LB_SETSEL, TRUE, row);
  }
  Notify(list, LBN_SELCHANGE);
}

int ListViewCount(HWND dialog, int controlId) {
  return static_cast<int>(Send(Control(dialog, controlId), LVM_GETITEMCOUNT));
}

std::wstring ListViewText(HWND dialog, int controlId, int row, int column) {
  wchar_t buffer[1024] = {};
  LVITEMW item = {};
  item.iSubItem = column;
  item.pszText = buffer;
  item.cchTextMax = 1024;
  Send(Control(dialog, controlId), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  return item.pszText;
}

void SelectListViewRows(HWND dialog, int controlId, const std::vector<int>& rows) {
  const HWND list = Control(dialog, controlId);
  LVITEMW item = {};
  item.stateMask = LVIS_SELECTED;
  Send(list, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
  item.state = LVIS_SELECTED;
  for (const int row : rows) {
    Send(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  }
}

std::vector<int> SelectedListViewRows(HWND dialog, int controlId) {
  const HWND list = Control(dialog, controlId);
  std::vector<int> rows;
  for (int row = -1;
       (row = static_cast<int>(Send(list, LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED))) >= 0;) {
    rows.push_back(row);
  }
  return rows;
}

}  // namespace zvtest
