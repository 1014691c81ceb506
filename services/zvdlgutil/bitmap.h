// CZVBitmap: one picture in memory, owned. It wraps a BITMAPHANDLE and frees its pixels; whoever wants to keep them
// calls Detach. Sizes and coordinates are those of the picture as shown, view perspective applied. Results are the
// codes of the sibling libraries, SUCCESS for success.
#pragma once

#include "platform/geometry.h"
#include "platform/unique_handle.h"
#include "services/zvcore/zvcore.h"
#include "services/zvfile/zvfile.h"

class CZVBitmap {
 public:
  CZVBitmap();
  CZVBitmap(CZVBitmap&& other) noexcept;
  CZVBitmap& operator=(CZVBitmap&& other) noexcept;
  CZVBitmap(const CZVBitmap&) = delete;
  CZVBitmap& operator=(const CZVBitmap&) = delete;
  ~CZVBitmap();

  // A full copy of the pixels; the handle stays its owner's. Empty when the handle has no pixels or memory runs out.
  CZVBitmap& operator=(const BITMAPHANDLE& bitmap);
  // Takes the pixels over without copying; the handle given no longer owns them.
  void Attach(BITMAPHANDLE& bitmap);
  // Gives the pixels to the caller, who frees them with FreeBitmap. The object is empty afterwards.
  [[nodiscard]] BITMAPHANDLE Detach();

  // Loads page `page` (from 1; below 1: the page that the option names, else the first) with LoadImageFile in the
  // file's own depth. flags 0 is a plain load, LOADFILE_COMPRESSED may be given. On failure the object is empty.
  int32_t Read(LPCWSTR path, int32_t page = -1, uint32_t flags = 0, const LOADFILEOPTION* option = nullptr);

  bool IsEmpty() const;
  void Empty();
  // (0, 0) when empty.
  CSize GetSize() const;
  // The palette to realise before painting on a device with few colours; null when none is needed. Owned by the object.
  HPALETTE GetPalette();
  const BITMAPHANDLE& GetHandle() const { return bitmap_; }
  BITMAPHANDLE& GetHandle() { return bitmap_; }

  // Paints the source rectangle (null: all of the picture) scaled into the destination rectangle. The clips may be
  // null. rasterOperation 0 is SRCCOPY. A region set with SetRgn limits what is touched.
  int32_t Paint(HDC device, const RECT* source, const RECT* sourceClip, const RECT* destination,
                const RECT* destinationClip = nullptr, uint32_t rasterOperation = 0) const;
  // Clockwise by hundredths of a degree; flags are ROTATE_..., fillColor a COLORREF.
  int32_t Rotate(int32_t angle, uint32_t flags = ROTATE_RESIZE, COLORREF fillColor = RGB(255, 255, 255));
  int32_t FlipHorz();
  int32_t FlipVert();

  // A region in device units to which painting is limited; it is taken over.
  void SetRgn(unique_hrgn region) { region_ = std::move(region); }
  void FreeRgn() { region_.reset(); }

 private:
  BITMAPHANDLE bitmap_;
  unique_hpalette palette_;
  bool paletteKnown_ = false;
  unique_hrgn region_;
};
