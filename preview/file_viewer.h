// CZVFileViewer: what can show a file in the preview pane of the open dialog. The dialog keeps a list of viewers and asks each
// in turn until one has painted; this base paints nothing, so that a viewer overrides only what it needs. A viewer is owned by
// whoever made it and outlives the dialog's run.
#pragma once

#include "platform/cstring.h"
#include "platform/dc.h"
#include "platform/wnd.h"

// What viewers and pane need of the dialog around them.
class PreviewHost {
 public:
  virtual void DrawPreview(CDC& device, const CRect& rectangle) = 0;
  // Null while the pane is closed.
  virtual CWnd* PreviewPane() = 0;

 protected:
  ~PreviewHost() = default;
};

class CZVFileViewer {
 public:
  CZVFileViewer() = default;
  CZVFileViewer(const CZVFileViewer&) = delete;
  CZVFileViewer& operator=(const CZVFileViewer&) = delete;
  virtual ~CZVFileViewer() = default;

  // Results other than 0 mean that the viewer has done it.
  virtual int OnFileChange(const CString& /*path*/, int /*isFolder*/) { return 0; }
  virtual int Draw(CDC& /*device*/, const CRect& /*client*/) { return 0; }
  virtual int QueryNewPalette(CWnd* /*window*/) { return 0; }
  virtual void OnPaneSize() {}
  virtual void OnPaneShown(bool /*shown*/) {}
  virtual void OnPaneCreated(CWnd* /*pane*/) {}
  virtual void OnPaneDestroyed(CWnd* /*pane*/) {}
  virtual int HasImage() const { return hasImage; }

  PreviewHost* dialog = nullptr;  // set when the viewer is added to a list
  int hasImage = 0;
};
