#include "preview/viewer_list.h"

#include <algorithm>

#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgutil/dialog_string.h"

void ViewerList::InsertViewer(CZVFileViewer& viewer, size_t index) {
  viewer.dialog = &host_;
  viewers_.insert(viewers_.begin() + static_cast<std::ptrdiff_t>(std::min(index, viewers_.size())), &viewer);
  CWnd* const pane = host_.PreviewPane();
  if (pane && pane->IsWindowVisible()) {
    CRect place;
    pane->GetWindowRect(place);
    ::MapWindowPoints(nullptr, ::GetParent(pane->GetSafeHwnd()), reinterpret_cast<POINT*>(&place), 2);
    pane->SetWindowPos(nullptr, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOCOPYBITS);
  }
}

bool ViewerList::Draw(CDC& device, const CRect& client) const {
  return std::ranges::any_of(viewers_, [&](CZVFileViewer* viewer) { return viewer->Draw(device, client) != 0; });
}

bool ViewerList::QueryNewPalette(CWnd* window) const {
  return std::ranges::any_of(viewers_, [=](CZVFileViewer* viewer) { return viewer->QueryNewPalette(window) != 0; });
}

void ViewerList::OnPaneSize() const {
  for (CZVFileViewer* const viewer : viewers_) {
    viewer->OnPaneSize();
  }
}

void ViewerList::OnPaneShown(bool shown) const {
  for (CZVFileViewer* const viewer : viewers_) {
    viewer->OnPaneShown(shown);
  }
}

void ViewerList::OnPaneCreated(CWnd* pane) const {
  for (CZVFileViewer* const viewer : viewers_) {
    viewer->OnPaneCreated(pane);
  }
}

void ViewerList::OnPaneDestroyed(CWnd* pane) const {
  for (CZVFileViewer* const viewer : viewers_) {
    viewer->OnPaneDestroyed(pane);
  }
}

void DrawNoPreview(CDC& device, const CRect& rectangle) {
  ::FillRect(device, rectangle, ::GetSysColorBrush(COLOR_BTNFACE));
  const HGDIOBJ former = device.SelectObject(::GetStockObject(DEFAULT_GUI_FONT));
  device.SetBkMode(TRANSPARENT);
  device.SetTextColor(::GetSysColor(COLOR_BTNTEXT));
  CRect text = rectangle;
  device.DrawText(LoadDialogString(IDS_NO_PREVIEW), text, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  device.SelectObject(former);
}
