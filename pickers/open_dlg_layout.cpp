// Where the platform's controls, ours and the places stand.
#include "pickers/common_dialog.h"
#include "pickers/open_dlg.h"

namespace {

constexpr int kFirstShift = 25;  // pixels
constexpr int kViewAboveOk = 6;  // pixels
constexpr int kShiftedControls[] = {kShellHelp,      IDOK,           IDCANCEL, kShellTypeCombo, kShellTypeLabel,
                                    kShellNameCombo, kShellNameLabel};

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

void CZVOpenDlg::LayOut() {
  if (!ShellView(Outer())) {
    return;
  }
  ShiftRows();
  RegrowView();
  LayOutRows(ClientRect());
  PlacePane(0);
}

// Once: the rows below the list move down into the room that the template leaves.
void CZVOpenDlg::ShiftRows() {
  if (rowsShifted_) {
    return;
  }
  rowsShifted_ = true;
  rowShift_ += kFirstShift;
  CRect rect;
  for (const int id : kShiftedControls) {
    const HWND control = id == kShellNameCombo ? FileNameBox(Outer()) : ::GetDlgItem(Outer(), id);
    if (control) {
      rect = ShellRect(control);
      rect.top += rowShift_;
      rect.bottom += rowShift_;
      MoveShellControl(control, rect);
    }
  }
}

// A view that the shell has made anew knows nothing of the rows that have moved down.
void CZVOpenDlg::RegrowView() {
  const HWND view = ShellView(Outer());
  if (view == grownView_) {
    return;
  }
  grownView_ = view;
  CRect rect = ShellRect(view);
  if (rect.bottom + rowShift_ <= ShellRect(::GetDlgItem(Outer(), IDOK)).top) {
    rect.bottom += rowShift_;
    MoveShellControl(view, rect);
  }
}

void CZVOpenDlg::LayOutRows(const CRect& client) {
  const HWND outer = Outer();
  const auto alignRight = [&](HWND control) {
    CRect rect = ShellRect(control);
    const int width = rect.Width();
    rect.right = client.right - kPickerMargin;
    rect.left = rect.right - width;
    MoveShellControl(control, rect);
    return rect;
  };
  const auto endAt = [&](HWND control, int right) {
    CRect rect = ShellRect(control);
    rect.right = right;
    MoveShellControl(control, rect);
  };
  const CRect ok = alignRight(::GetDlgItem(outer, IDOK));
  if (const HWND help = ::GetDlgItem(outer, kShellHelp)) {
    CRect rect = ShellRect(help);
    rect.left = ok.left;
    rect.right = ok.right;
    MoveShellControl(help, rect);
  }
  endAt(FileNameBox(outer), ok.left - kPickerMargin);
  const CRect cancel = alignRight(::GetDlgItem(outer, IDCANCEL));
  endAt(::GetDlgItem(outer, kShellTypeCombo), cancel.left - kPickerMargin);
  if (!(m_ofn.Flags & OFN_ENABLESIZING)) {
    const HWND view = ShellView(outer);
    CRect rect = ShellRect(view);
    rect.bottom = ok.top - kViewAboveOk;
    MoveShellControl(view, rect);
  }
  if (toolBar_) {
    const CRect bar = alignRight(toolBar_);
    endAt(::GetDlgItem(outer, kShellFolderCombo), bar.left);
  }
}
