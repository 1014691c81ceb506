// ViewerList: the viewers of a dialog in the order in which they are asked. It owns none of them.
#pragma once

#include <vector>

#include "preview/file_viewer.h"

class ViewerList {
 public:
  explicit ViewerList(PreviewHost& host) : host_(host) {}
  ViewerList(const ViewerList&) = delete;
  ViewerList& operator=(const ViewerList&) = delete;

  void AddViewer(CZVFileViewer& viewer) { InsertViewer(viewer, viewers_.size()); }
  void InsertViewer(CZVFileViewer& viewer, size_t index);

  // The first viewer that answers with another value than 0 ends the round. False when none does.
  bool Draw(CDC& device, const CRect& client) const;
  bool QueryNewPalette(CWnd* window) const;

  void OnPaneSize() const;
  void OnPaneShown(bool shown) const;
  void OnPaneCreated(CWnd* pane) const;
  void OnPaneDestroyed(CWnd* pane) const;

 private:
  PreviewHost& host_;
  std::vector<CZVFileViewer*> viewers_;
};

// What the pane shows without a picture.
void DrawNoPreview(CDC& device, const CRect& rectangle);
