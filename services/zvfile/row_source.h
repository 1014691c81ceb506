// Where an encoder takes its rows from: upright, in the depth of the save and in the layout that the encoder asks for. Behind
// it stand the bitmap's pixels or the caller's row callback, each row asked for once and from the top. The source belongs to
// the save operation; an encoder only borrows it.
//
// An encoder looks at Width, Height and GetLayout, which is one of the layouts that its saveDepths allow, in BGR order; calls
// Begin with that layout or its sibling in RGB order; and then Next once a row.
#ifndef ZV_FILE_ROW_SOURCE_H
#define ZV_FILE_ROW_SOURCE_H

#include <cstdint>
#include <vector>

#include "services/zvfile/pixel_layout.h"
#include "services/zvfile/zvfile.h"

namespace zvfile {

class RowSource {
 public:
  static constexpr int32_t kBatchRows = 16;

  // callback null: rows come from the bitmap. The bitmap is only read, and must outlive the source.
  RowSource(BITMAPHANDLE* bitmap, FILESAVECALLBACK callback, void* userData);
  ~RowSource();
  RowSource(const RowSource&) = delete;
  RowSource& operator=(const RowSource&) = delete;

  // Called by the save operation before the encoder: chooses what the rows will be. Rows are gathered here when they have to
  // be turned upright or the palette of the result depends on all of them. keepPaletteAlpha: the encoder of an indexed layout
  // writes the alpha of palette entries; without it their colours are laid over white.
  int32_t Prepare(Layout target, bool keepPaletteAlpha = false);

  int32_t Width() const { return width_; }  // upright
  int32_t Height() const { return height_; }
  Layout GetLayout() const { return layout_; }
  const Palette& GetPalette() const { return palette_; }  // of indexed layouts, as many entries as are used
  // The layout of the rows to come; GetLayout or its RGB-order sibling.
  int32_t Begin(Layout layout);
  // The next row, PackedRowBytes long, valid until the next call; null when it cannot be had, and Error() says why: an
  // encoder then gives that code back.
  const uint8_t* Next();
  int32_t Error() const { return error_; }
  // All rows into one block, stride apart.
  int32_t ReadAll(uint8_t* destination, size_t stride);

 private:
  int32_t Gather(Layout layout);
  int32_t Quantize(Layout target);
  const uint8_t* StoredRow(int32_t y);
  const uint8_t* ScratchRow(int32_t y) const;
  bool ReportRow(int32_t y);

  BITMAPHANDLE* bitmap_;
  FILESAVECALLBACK callback_;
  void* userData_;
  BITMAPHANDLE scratch_;               // upright or quantized copy; owns pixels when used
  Layout stored_;                      // of the bitmap's rows
  Layout rowLayout_ = Layout::kBgr24;  // of the rows before the last conversion: stored_, or the scratch bitmap's
  Palette rowPalette_;
  Layout layout_ = Layout::kBgr24;  // promised to the encoder
  Palette palette_;
  int32_t perspective_ = VIEW_TOP_LEFT;
  int32_t width_ = 0;
  int32_t height_ = 0;
  int32_t next_ = 0;  // row that Next gives
  int32_t error_ = SUCCESS;
  RowConverter converter_;
  std::vector<uint8_t> batch_;  // rows from the callback
  int32_t batchStride_ = 0;
  int32_t batchFirst_ = 0;
  int32_t batchCount_ = 0;
  std::vector<uint8_t> converted_;  // one row
};

}  // namespace zvfile

#endif
