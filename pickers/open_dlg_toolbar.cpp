// Our two buttons in the shell's tool bar, and the way of its commands.
#include <algorithm>

#include "pickers/common_dialog.h"
#include "pickers/open_dlg.h"
#include "platform/module_context.h"
#include "platform/unique_handle.h"
#include "resources/picker_ids.h"
#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/dialog_string.h"

namespace {

constexpr COLORREF kMaskColor = RGB(0xC0, 0xC0, 0xC0);
constexpr BYTE kAutoSize = 0x10;
constexpr LPARAM kButtonSize = 0x160018;  // 24 x 22 pixels
constexpr int kAddedWidth = 40;           // pixels, for both buttons; more where the shell's own bar is a tight fit
constexpr int kTipLength = 80;

int CommandAt(HWND toolBar, int index) {
  TBBUTTON button = {};
  ::SendMessageW(toolBar, TB_GETBUTTON, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&button));
  return button.idCommand;
}

// The tool bar of the top row; the other one holds the places.
HWND FindToolBar(HWND outer) {
  constexpr int kPlacesBar = 1184;
  HWND bar = nullptr;
  do {
    bar = ::FindWindowExW(outer, bar, TOOLBARCLASSNAMEW, nullptr);
  } while (bar && ::GetDlgCtrlID(bar) == kPlacesBar);
  return bar;
}

void AddStyle(HWND window, LONG style) {
  ::SetWindowLongW(window, GWL_STYLE, ::GetWindowLongW(window, GWL_STYLE) | style);
}

int ButtonCount(HWND toolBar) { return static_cast<int>(::SendMessageW(toolBar, TB_BUTTONCOUNT, 0, 0)); }

// Pixels by which the last button stands out of the bar.
int MissingWidth(HWND toolBar) {
  CRect last, client;
  ::SendMessageW(toolBar, TB_GETITEMRECT, static_cast<WPARAM>(ButtonCount(toolBar) - 1),
                 reinterpret_cast<LPARAM>(static_cast<LPRECT>(last)));
  ::GetClientRect(toolBar, client);
  return last.right - client.right;
}

}  // namespace

void CZVOpenDlg::AddToolBarButtons() {
  toolBar_ = FindToolBar(Outer());
  if (!toolBar_) {
    return;
  }
  AddStyle(toolBar_, TBSTYLE_LIST);
  for (int i = 0; i < ButtonCount(toolBar_); ++i) {
    const int command = CommandAt(toolBar_, i);
    shellCommands_.push_back(command);
    TBBUTTONINFOW info = {};
    info.cbSize = sizeof(info);
    info.dwMask = TBIF_STYLE;
    ::SendMessageW(toolBar_, TB_GETBUTTONINFOW, static_cast<WPARAM>(command), reinterpret_cast<LPARAM>(&info));
    if (!(info.fsStyle & kAutoSize)) {
      info.fsStyle |= kAutoSize;
      ::SendMessageW(toolBar_, TB_SETBUTTONINFOW, static_cast<WPARAM>(command), reinterpret_cast<LPARAM>(&info));
    }
  }
  if (!HasOldStyleShell()) {
    InsertToolBarButton(ID_OPEN_FILE_INFO, IDB_OPEN_ART_FILE_INFO, kAutoSize);
  }
  InsertToolBarButton(ID_OPEN_PREVIEW, IDB_OPEN_ART_PREVIEW, BTNS_CHECK | kAutoSize);
  CRect frame = RectInside(Outer(), toolBar_);
  frame.right += std::max(kAddedWidth, MissingWidth(toolBar_));
  MoveInside(toolBar_, frame);
  // Its commands come to us now; OnCommand passes on those that are the shell's.
  ::SendMessageW(toolBar_, TB_SETPARENT, reinterpret_cast<WPARAM>(m_hWnd), 0);
  if (flatToolBar_) {
    AddStyle(toolBar_, TBSTYLE_FLAT);
  }
}

void CZVOpenDlg::InsertToolBarButton(int command, int bitmap, BYTE style) {
  const auto images = reinterpret_cast<HIMAGELIST>(::SendMessageW(toolBar_, TB_GETIMAGELIST, 0, 0));
  const unique_hbitmap picture(::LoadBitmapW(AfxGetResourceHandle(), MAKEINTRESOURCEW(bitmap)));
  TBBUTTON button = {};
  button.iBitmap = images && picture ? ImageList_AddMasked(images, picture.get(), kMaskColor) : I_IMAGENONE;
  button.idCommand = command;
  button.fsState = TBSTATE_ENABLED;
  button.fsStyle = style;
  if (images) {
    ::SendMessageW(toolBar_, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images));
  }
  ::SendMessageW(toolBar_, TB_INSERTBUTTONW, static_cast<WPARAM>(ButtonCount(toolBar_)),
                 reinterpret_cast<LPARAM>(&button));
  ::SendMessageW(toolBar_, TB_AUTOSIZE, 0, 0);
  ::SendMessageW(toolBar_, TB_SETBUTTONSIZE, 0, kButtonSize);
}

// The second step counts the buttons anew: with both of ours unwanted it takes the shell's last one in place of the file
// information button.
void CZVOpenDlg::RemoveUnusedButtons() {
  if (!previewAvailable_) {
    ::SendMessageW(toolBar_, TB_DELETEBUTTON, static_cast<WPARAM>(ButtonCount(toolBar_) - 1), 0);
    initialPaneOpen_ = false;
  }
  if (!fileInfoAvailable_ && !HasOldStyleShell()) {
    ::SendMessageW(toolBar_, TB_DELETEBUTTON, static_cast<WPARAM>(ButtonCount(toolBar_) - 2), 0);
  }
}

void CZVOpenDlg::AgreePreviewButton() {
  const bool checked = ::SendMessageW(toolBar_, TB_ISBUTTONCHECKED, ID_OPEN_PREVIEW, 0) != 0;
  if (checked != previewShown_) {
    ::SendMessageW(toolBar_, TB_CHECKBUTTON, ID_OPEN_PREVIEW, MAKELPARAM(previewShown_, 0));
  }
}

BOOL CZVOpenDlg::OnCommand(WPARAM wParam, LPARAM lParam) {
  const int command = LOWORD(wParam);
  const bool fromToolBar = !lParam || reinterpret_cast<HWND>(lParam) == toolBar_;
  if (fromToolBar && std::find(shellCommands_.begin(), shellCommands_.end(), command) != shellCommands_.end()) {
    ::SendMessageW(Outer(), WM_COMMAND, wParam, lParam);
    return TRUE;
  }
  return CFileDialog::OnCommand(wParam, lParam);
}

BOOL CZVOpenDlg::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) {
  auto* const header = reinterpret_cast<NMHDR*>(lParam);
  const bool isTip = header->code == TTN_NEEDTEXTA || header->code == TTN_NEEDTEXTW;
  if (!isTip) {
    return CFileDialog::OnNotify(wParam, lParam, result);
  }
  if (header->idFrom != ID_OPEN_PREVIEW && header->idFrom != ID_OPEN_FILE_INFO) {
    *result = ::SendMessageW(Outer(), WM_NOTIFY, wParam, lParam);
    return TRUE;
  }
  if (header->code == TTN_NEEDTEXTW) {
    const UINT id = header->idFrom == ID_OPEN_PREVIEW ? IDS_OPEN_TIP_PREVIEW : IDS_OPEN_FILE_INFO;
    ::lstrcpynW(reinterpret_cast<TOOLTIPTEXTW*>(lParam)->szText, LoadDialogString(id), kTipLength);
  }
  *result = 0;
  constexpr UINT kRaise = SWP_NOACTIVATE | SWP_NOSIZE | SWP_NOMOVE | SWP_NOOWNERZORDER;
  ::SetWindowPos(header->hwndFrom, HWND_TOP, 0, 0, 0, 0, kRaise);
  return TRUE;
}
