// Where the platform's controls, ours and the places stand.
#include <algorithm>

#include "pickers/common_dialog.h"
#include "pickers/open_dlg.h"
#include "platform/unique_handle.h"
#include "resources/picker_ids.h"

namespace {

constexpr int kFirstShift = 25;     // pixels
constexpr int kViewAboveOk = 6;     // pixels
constexpr int kGapAboveOwnRow = 5;  // pixels
constexpr int kShiftedControls[] = {kShellHelp,      IDOK,           IDCANCEL, kShellTypeCombo, kShellTypeLabel,
                                    kShellNameCombo, kShellNameLabel};

// From left to right.
constexpr int kOwnRow[] = {IDX_OPEN_LOAD_OPTIONS, IDT_OPEN_PAGE, IDE_OPEN_PAGE, IDB_OPEN_DELETE_PAGE};
constexpr int kOwnRowGap = 4;  // pixels

// Pixels that the control's text and what stands around it take.
int WidthNeeded(HWND control, int id) {
  constexpr int kButtonFrame = 12, kBehindCheckBox = 8;
  if (id == IDE_OPEN_PAGE) {
    return 0;
  }
  const unique_window_dc device(control);
  const dc_selection selected(device.get(), reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)));
  CRect text;
  ::DrawTextW(device.get(), WindowText(control), -1, text, DT_CALCRECT | DT_SINGLELINE);
  switch (id) {
    case IDX_OPEN_LOAD_OPTIONS: return text.Width() + ::GetSystemMetrics(SM_CXMENUCHECK) + kBehindCheckBox;
    case IDB_OPEN_DELETE_PAGE: return text.Width() + kButtonFrame;
    default: return text.Width();
  }
}

}  // namespace

// All rectangles are in pixels of the hook's client area.

CRect CZVOpenDlg::ClientRect() const {
  CRect client;
  ::GetClientRect(Outer(), client);
  ::MapWindowPoints(Outer(), m_hWnd, reinterpret_cast<POINT*>(&client), 2);
  return client;
}

CRect CZVOpenDlg::ShellRect(HWND control) const { return RectInside(m_hWnd, control); }

void CZVOpenDlg::MoveShellControl(HWND control, const CRect& rect) const {
  CRect inside = rect;
  ::MapWindowPoints(m_hWnd, Outer(), reinterpret_cast<POINT*>(&inside), 2);
  // The height of a combo box is that of its open list; the closed box has its own.
  CRect dropped;
  if (::SendMessageW(control, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(static_cast<LPRECT>(dropped))) &&
      dropped.Height() > inside.Height()) {
    inside.bottom = inside.top + dropped.Height();
  }
  MoveInside(control, inside);
}

LRESULT CZVOpenDlg::OnLayOutAgain(WPARAM, LPARAM) {
  KeepReturnedName();
  LayOut();
  FollowShellRows();
  return 0;
}

void CZVOpenDlg::LayOut() {
  if (!ShellView(Outer())) {
    return;
  }
  ShiftRows();
  const CRect client = ClientRect();
  LayOutRows(client);
  PlacePane(0);
  LayOutTopRow(client);
}

// The user's font may be wider than that of the template: each control gets the room that its text needs, and those to its
// right make way.
void CZVOpenDlg::FitOwnRow() {
  LONG free = 0;
  for (const int id : kOwnRow) {
    const HWND control = ::GetDlgItem(m_hWnd, id);
    if (!(::GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE)) {
      continue;
    }
    CRect rect = ShellRect(control);
    const LONG width = std::max<LONG>(rect.Width(), WidthNeeded(control, id));
    rect.left = std::max(rect.left, free);
    rect.right = rect.left + width;
    MoveInside(control, rect);
    free = rect.right + kOwnRowGap;
  }
}

// Once: the rows below the list move down into the room that the template leaves. The shell makes its view anew in each folder,
// where its place holder stands; so that one grows with the view.
void CZVOpenDlg::ShiftRows() {
  if (rowsShifted_) {
    return;
  }
  rowsShifted_ = true;
  rowShift_ += kFirstShift;
  for (const HWND list : {ShellView(Outer()), ::GetDlgItem(Outer(), kShellList)}) {
    CRect rect = ShellRect(list);
    rect.bottom += rowShift_;
    MoveShellControl(list, rect);
  }
  LONG lowest = 0;
  for (const int id : kShiftedControls) {
    const HWND control = id == kShellNameCombo ? FileNameBox(Outer()) : ::GetDlgItem(Outer(), id);
    CRect rect = ShellRect(control);
    rect.OffsetRect(0, rowShift_);
    MoveShellControl(control, rect);
    if (::GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) {
      lowest = std::max(lowest, rect.bottom);
    }
  }
  KeepOwnRowClear(lowest);
}

// Some systems leave less room than the template asks for; the shell's rows would cover ours.
void CZVOpenDlg::KeepOwnRowClear(LONG bottomOfRows) {
  const LONG covered = bottomOfRows - ShellRect(::GetDlgItem(m_hWnd, IDB_OPEN_DELETE_PAGE)).top;
  if (covered > 0) {
    MoveOwnRow(covered + kGapAboveOwnRow);
  }
  ownRowBelowCancel_ = OwnRowBelowCancel();
}

LONG CZVOpenDlg::OwnRowBelowCancel() const {
  return ShellRect(::GetDlgItem(m_hWnd, IDB_OPEN_DELETE_PAGE)).top - ShellRect(::GetDlgItem(Outer(), IDCANCEL)).bottom;
}

void CZVOpenDlg::MoveOwnRow(LONG down) const {
  for (const int id : kOwnRow) {
    const HWND control = ::GetDlgItem(m_hWnd, id);
    CRect rect = ShellRect(control);
    rect.OffsetRect(0, down);
    MoveInside(control, rect);
  }
}

// Not every system moves the controls of a template along when its dialog becomes higher.
void CZVOpenDlg::FollowShellRows() {
  const LONG down = ownRowBelowCancel_ - OwnRowBelowCancel();
  if (rowsShifted_ && down != 0) {
    MoveOwnRow(down);
  }
}

// Keeps its width. A control that this dialog lacks is left alone.
CRect CZVOpenDlg::AlignRight(HWND control, int right) const {
  CRect rect = ShellRect(control);
  rect.OffsetRect(right - rect.right, 0);
  MoveShellControl(control, rect);
  return rect;
}

void CZVOpenDlg::EndAt(HWND control, int right) const {
  CRect rect = ShellRect(control);
  rect.right = right;
  MoveShellControl(control, rect);
}

void CZVOpenDlg::LayOutRows(const CRect& client) {
  const HWND outer = Outer();
  const int right = client.right - kPickerMargin;
  if (places_.GetSafeHwnd()) {
    CRect bar = RectInside(m_hWnd, places_);
    bar.bottom = client.bottom - kPlacesBelow;
    places_.MoveWindow(bar);
  }
  const CRect ok = AlignRight(::GetDlgItem(outer, IDOK), right);
  if (const HWND help = ::GetDlgItem(outer, kShellHelp)) {
    CRect rect = ShellRect(help);
    rect.left = ok.left;
    rect.right = ok.right;
    MoveShellControl(help, rect);
  }
  EndAt(FileNameBox(outer), ok.left - kPickerMargin);
  const CRect cancel = AlignRight(::GetDlgItem(outer, IDCANCEL), right);
  EndAt(::GetDlgItem(outer, kShellTypeCombo), cancel.left - kPickerMargin);
  if (LayoutEndsList(m_ofn.Flags, system_)) {
    const HWND view = ShellView(outer);
    CRect rect = ShellRect(view);
    rect.bottom = ok.top - kViewAboveOk;
    MoveShellControl(view, rect);
  }
}

void CZVOpenDlg::LayOutTopRow(const CRect& client) {
  const HWND outer = Outer();
  const HWND label = ::GetDlgItem(outer, kShellLookInLabel);
  const HWND folders = ::GetDlgItem(outer, kShellFolderCombo);
  CRect folderRect = ShellRect(folders);
  if (HasOldStyleShell() && label) {
    CRect rect = ShellRect(label);
    rect.OffsetRect(ShellRect(ShellView(outer)).left - rect.left, 0);
    MoveShellControl(label, rect);
    folderRect.left = rect.right;
  }
  if (toolBar_) {
    folderRect.right = AlignRight(toolBar_, client.right - kPickerMargin).left;
  }
  MoveShellControl(folders, folderRect);
}
