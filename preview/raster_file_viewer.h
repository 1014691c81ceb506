// CZVRasterFileViewer: shows a bitmap, reduced to the pane and centred. The bitmap is its own.
#pragma once

#include "preview/file_viewer.h"
#include "services/zvdlgutil/bitmap.h"

class CZVRasterFileViewer : public CZVFileViewer {
 public:
  // Loads the file itself. The open dialog does not use it: its pictures come by SetViewerBitmap.
  int OnFileChange(const CString& path, int isFolder) override;
  int Draw(CDC& device, const CRect& client) override;
  int QueryNewPalette(CWnd* window) override;

  CZVBitmap image;
};

// The viewer takes the pixels over; a null or unallocated bitmap leaves it without. 1 when there is a picture.
int SetViewerBitmap(CZVRasterFileViewer& viewer, BITMAPHANDLE* bitmap);
