#include "preview/raster_file_viewer.h"

#include "platform/afx.h"
#include "preview/preview_geometry.h"
#include "services/zvdisplay/zvdisplay.h"

namespace {

// Smooth reductions and enlargements; set only while the picture is painted.
constexpr uint32_t kPaintMode = 528;

class PaintMode {
 public:
  PaintMode() { SetDisplayMode(kPaintMode, kPaintMode); }
  PaintMode(const PaintMode&) = delete;
  PaintMode& operator=(const PaintMode&) = delete;
  ~PaintMode() { SetDisplayMode(kPaintMode, 0); }
};

void Realize(CDC& device, HPALETTE palette) {
  const HPALETTE former = ::SelectPalette(device, palette, FALSE);
  device.RealizePalette();
  ::SelectPalette(device, former, TRUE);
}

// What lets the ground through is painted off screen over the colour of buttons: the pane still shows the picture before, and
// would flicker if it were cleared first.
void PaintInto(CDC& device, const CRect& destination, const CZVBitmap& image) {
  const CSize size = image.GetSize();
  const CRect source(0, 0, size.cx, size.cy);
  if (!(image.GetHandle().flags & BITMAP_FLAG_ALPHA)) {
    image.Paint(device, &source, nullptr, &destination, nullptr, 0);
    return;
  }
  CMemDC memory(device, destination);
  ::FillRect(memory, destination, ::GetSysColorBrush(COLOR_BTNFACE));
  image.Paint(memory, &source, nullptr, &destination, nullptr, 0);
}

}  // namespace

int CZVRasterFileViewer::OnFileChange(const CString& path, int isFolder) {
  hasImage = 0;
  if (!isFolder && !path.IsEmpty() && ::GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES) {
    const CWaitCursor wait;
    hasImage = image.Read(path, -1, 0, nullptr) == SUCCESS;
  } else {
    image.Empty();
  }
  return hasImage;
}

int CZVRasterFileViewer::Draw(CDC& device, const CRect& client) {
  if (!HasImage()) {
    return 0;
  }
  const PaintMode mode;
  if (image.IsEmpty()) {
    return 0;
  }
  if (const HPALETTE palette = image.GetPalette()) {
    Realize(device, palette);
  }
  const CRect destination = FitPreview(image.GetSize(), client);
  // What the frame leaves nothing of has no pixel to paint.
  if (!destination.IsRectEmpty()) {
    PaintInto(device, destination, image);
    device.ExcludeClipRect(destination);
  }
  ::FillRect(device, client, ::GetSysColorBrush(COLOR_BTNFACE));
  return 1;
}

int CZVRasterFileViewer::QueryNewPalette(CWnd* window) {
  if (!HasImage()) {
    return 0;
  }
  CWnd* const pane = dialog ? dialog->PreviewPane() : nullptr;
  const HPALETTE palette = image.GetPalette();
  if (palette && pane) {
    CClientDC device(pane);
    const bool isForeground = window && window->GetSafeHwnd() == pane->GetSafeHwnd();
    const HPALETTE former = ::SelectPalette(device, palette, !isForeground);
    const UINT changed = device.RealizePalette();
    ::SelectPalette(device, former, TRUE);
    if (changed != 0 && changed != GDI_ERROR) {
      pane->Invalidate(FALSE);
    }
  }
  return 1;
}

int SetViewerBitmap(CZVRasterFileViewer& viewer, BITMAPHANDLE* bitmap) {
  viewer.hasImage = 0;
  if (!bitmap || !(bitmap->flags & BITMAP_FLAG_ALLOCATED)) {
    viewer.image.Empty();
    return 0;
  }
  viewer.image.Attach(*bitmap);
  viewer.hasImage = 1;
  return 1;
}
