// The preview pane and the splitter at its left edge.
#include <algorithm>

#include "pickers/common_dialog.h"
#include "pickers/open_dlg.h"
#include "platform/afx.h"
#include "platform/module_context.h"
#include "preview/preview_geometry.h"
#include "resources/picker_ids.h"

namespace {

constexpr int kNarrowestView = 50;  // pixels

}  // namespace

void CZVOpenDlg::OnFolderChange() {
  CFileDialog::OnFolderChange();
  FinishNavigation();
  currentPage_ = std::max(currentPage_, 1);
  if (firstFolderChange_) {
    firstFolderChange_ = false;
    RemoveUnusedButtons();
  }
  if (initialPaneOpen_) {
    ShowPane(true);
    initialPaneOpen_ = false;
  }
  if (previewShown_) {
    OnFileNameChange();
  }
  LayOut();
  // Some shells make their view only after this notification.
  PostMessage(kLayOutAgain);
}

// --- The picture ---

void CZVOpenDlg::LoadPreview() {
  CRect client;
  if (const CWnd* const pane = PreviewPane()) {
    pane->GetClientRect(client);
  }
  const CWaitCursor wait;
  const int32_t status = producer_.Produce(currentPath_, defaultExtension_, currentPage_, client.Size());
  if (status != SUCCESS && status != 0) {
    status_ = status;
  }
  if (status == SUCCESS && Wants(DLG_OPEN_SHOW_FILE_INFO)) {
    fileInfoAvailable_ = true;
  }
}

void CZVOpenDlg::ShowPreviewBitmap(BITMAPHANDLE* bitmap) {
  SetViewerBitmap(rasterViewer_, bitmap);
  if (const CWnd* const pane = PreviewPane()) {
    pane->Invalidate(FALSE);
  }
}

void CZVOpenDlg::DrawPreview(CDC& device, const CRect& rectangle) {
  if (!viewers_.Draw(device, rectangle)) {
    DrawNoPreview(device, rectangle);
  }
}

void CZVOpenDlg::DrawNoPreview(CDC& device, const CRect& rectangle) { ::DrawNoPreview(device, rectangle); }

bool CZVOpenDlg::QueryPreviewPalette(CWnd* window) { return viewers_.QueryNewPalette(window); }

void CZVOpenDlg::UpdatePreview() {
  if (currentPreviewFile_.CompareNoCase(lastPreviewFile_) == 0 && previewShown_ == lastPreviewShown_) {
    return;
  }
  OnFileSelected(previewShown_ ? currentPreviewFile_ : CString());
  if (CWnd* const pane = PreviewPane(); pane && previewShown_) {
    pane->Invalidate(FALSE);
  }
  lastPreviewFile_ = currentPreviewFile_;
  lastPreviewShown_ = previewShown_;
}

void CZVOpenDlg::OnFileSelected(const CString&) { LayOut(); }

// --- The pane ---

void CZVOpenDlg::ShowPane(bool show) {
  const bool wasShown = previewShown_;
  if (!m_hWnd) {
    previewShown_ = show;
  } else if (show) {
    previewShown_ = PreviewPane() || CreatePane();
    LayOut();
  } else if (CWnd* const pane = PreviewPane()) {
    viewers_.OnPaneDestroyed(pane);
    previewShown_ = false;
    LayOut();
    pane->DestroyWindow();
    splitterRect_ = CRect();
  }
  UpdatePreview();
  AgreePreviewButton();
  if (wasShown != previewShown_) {
    UpdatePreview();
    viewers_.OnPaneShown(previewShown_);
  }
}

bool CZVOpenDlg::CreatePane() {
  paneRect_.left = LimitPaneLeft(paneRect_.left, ClientRect().right);
  if (!pane_.CreatePane(this, paneRect_)) {
    return false;
  }
  viewers_.OnPaneCreated(&pane_);
  return true;
}

void CZVOpenDlg::OnTogglePreview() {
  ShowPane(!previewShown_);
  if (!previewShown_) {
    return;
  }
  if (producer_.rules.useStamp || producer_.rules.useFullImage) {
    TakeSelectedPath();
    LoadPreview();
  } else {
    producer_.ShowNothing();
  }
}

void CZVOpenDlg::PlacePane(int newLeft) {
  const HWND view = ShellView(Outer());
  if (!view) {
    return;
  }
  const CRect client = ClientRect();
  CRect viewRect = ShellRect(view);
  if (!previewShown_) {
    viewRect.right = client.right - kPickerMargin;
    MoveShellControl(view, viewRect);
    return;
  }
  if (!PreviewPane()) {
    return;
  }
  const int left = newLeft != 0 ? newLeft : LimitPaneLeft(paneRect_.left, client.right);
  paneRect_ = CRect(left, viewRect.top, client.right, viewRect.bottom);
  pane_.MoveWindow(paneRect_);
  viewRect.right = paneRect_.left;
  MoveShellControl(view, viewRect);
  splitterRect_ = SplitterRectOf(paneRect_);
}

// --- Messages ---

void CZVOpenDlg::OnSize(UINT type, int width, int height) {
  CFileDialog::OnSize(type, width, height);
  const int dx = width - lastClientSize_.cx;
  paneRect_.left += dx;
  paneRect_.right += dx;
  lastClientSize_ = CSize(width, height);
  if (rowsShifted_) {
    LayOut();
    // The platform may still be about to move its rows.
    PostMessage(kLayOutAgain);
  }
  if (shellViewSeen_) {
    viewers_.OnPaneSize();
  }
}

void CZVOpenDlg::OnPaint() {
  CFileDialog::OnPaint();
  if (CWnd* const pane = PreviewPane()) {
    pane->Invalidate(FALSE);
  }
}

void CZVOpenDlg::OnGetMinMaxInfo(MINMAXINFO* info) {
  const HWND view = ShellView(Outer());
  if (view) {
    CRect frame;
    ::GetWindowRect(Outer(), frame);
    const LONG width = frame.Width() - ShellRect(view).Width() + kNarrowestView;
    info->ptMinTrackSize.x = std::max(info->ptMinTrackSize.x, width);
  }
  CFileDialog::OnGetMinMaxInfo(info);
}

void CZVOpenDlg::OnActivate(UINT state, CWnd* other, BOOL minimized) {
  CFileDialog::OnActivate(state, other, minimized);
  if (state == WA_ACTIVE || state == WA_CLICKACTIVE) {
    QueryPreviewPalette(PreviewPane());
  }
}

void CZVOpenDlg::OnPaletteChanged(CWnd* focus) {
  CFileDialog::OnPaletteChanged(focus);
  QueryPreviewPalette(focus);
}

BOOL CZVOpenDlg::OnSetCursor(CWnd* window, UINT hitTest, UINT message) {
  ::ReleaseCapture();
  CPoint pointer;
  ::GetCursorPos(&pointer);
  ScreenToClient(&pointer);
  if (!previewShown_ || !splitterRect_.PtInRect(pointer)) {
    return CFileDialog::OnSetCursor(window, hitTest, message);
  }
  if (const HCURSOR splitter = ::LoadCursorW(AfxGetResourceHandle(), MAKEINTRESOURCEW(IDC_OPEN_SPLITTER))) {
    ::SetCursor(splitter);
  } else {
    ::SetCursor(::LoadCursorW(nullptr, MAKEINTRESOURCEW(32644)));
    SetCapture();
  }
  return TRUE;
}

void CZVOpenDlg::OnLButtonDown(UINT keys, CPoint point) {
  if (previewShown_ && splitterRect_.PtInRect(point)) {
    SetCapture();
    lastDragPoint_ = point;
    dragActive_ = true;
    return;
  }
  CFileDialog::OnLButtonDown(keys, point);
}

void CZVOpenDlg::OnMouseMove(UINT keys, CPoint point) {
  if (!dragActive_) {
    ::ReleaseCapture();
    CFileDialog::OnMouseMove(keys, point);
    return;
  }
  const CPoint pointer(LimitDragPoint(point.x, ClientRect().right), point.y);
  if (pointer.x != lastDragPoint_.x) {
    SetCapture();
    PlacePane(pointer.x - kSplitterReach);
  }
  lastDragPoint_ = pointer;
}

void CZVOpenDlg::OnLButtonUp(UINT keys, CPoint point) {
  EndDrag();
  CFileDialog::OnLButtonUp(keys, point);
}

void CZVOpenDlg::OnCancelMode() {
  CFileDialog::OnCancelMode();
  EndDrag();
}

void CZVOpenDlg::EndDrag() {
  if (dragActive_ && ::GetCapture() == m_hWnd) {
    ::ReleaseCapture();
  }
  dragActive_ = false;
}
