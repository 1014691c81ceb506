#include "services/zvfile/row_source.h"

#include <algorithm>
#include <cstring>

namespace zvfile {
namespace {

Palette GrayRamp(int32_t bits) {
  const int32_t count = 1 << bits;
  Palette ramp(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    const uint8_t level = static_cast<uint8_t>(i * 255 / (count - 1));
    ramp[static_cast<size_t>(i)] = {level, level, level, 255};
  }
  return ramp;
}

// Where the pixels of a stored row go in the upright image: pixel x to start + x * step, counted in pixels of the upright
// image, for each view perspective as the orientation tag of TIFF 6.0 defines it.
struct Track {
  int64_t x, y;    // of the row's first pixel
  int64_t dx, dy;  // from pixel to pixel
};

Track TrackOfRow(int32_t perspective, int64_t width, int64_t height, int64_t row) {
  switch (perspective) {
    case VIEW_TOP_RIGHT: return {width - 1, row, -1, 0};
    case VIEW_BOTTOM_RIGHT: return {width - 1, height - 1 - row, -1, 0};
    case VIEW_BOTTOM_LEFT: return {0, height - 1 - row, 1, 0};
    case VIEW_LEFT_TOP: return {row, 0, 0, 1};
    case VIEW_RIGHT_TOP: return {height - 1 - row, 0, 0, 1};
    case VIEW_RIGHT_BOTTOM: return {height - 1 - row, width - 1, 0, -1};
    case VIEW_LEFT_BOTTOM: return {row, width - 1, 0, -1};
    default: return {0, row, 1, 0};
  }
}

template <int kBytes>
void PlaceBytes(const uint8_t* row, int64_t width, uint8_t* first, ptrdiff_t step) {
  for (int64_t x = 0; x < width; ++x, row += kBytes, first += step) std::memcpy(first, row, kBytes);
}

void PlaceBits(const uint8_t* row, int32_t bits, int64_t width, const Track& track, BITMAPHANDLE& upright) {
  const int32_t mask = (1 << bits) - 1;
  for (int64_t i = 0; i < width; ++i) {
    const int64_t from = i * bits;
    const int32_t value = (row[from >> 3] >> (8 - bits - (from & 7))) & mask;
    const int64_t to = (track.x + i * track.dx) * bits;
    uint8_t* line = upright.data + (track.y + i * track.dy) * upright.bytesPerLine;
    line[to >> 3] |= static_cast<uint8_t>(value << (8 - bits - (to & 7)));
  }
}

void PlaceRow(const uint8_t* row, int64_t width, const Track& track, BITMAPHANDLE& upright) {
  const int32_t bits = upright.bitsPerPixel;
  if (bits < 8) {
    PlaceBits(row, bits, width, track, upright);
    return;
  }
  const ptrdiff_t bytes = bits / 8;
  uint8_t* first = upright.data + track.y * upright.bytesPerLine + track.x * bytes;
  const ptrdiff_t step =
      static_cast<ptrdiff_t>(track.dx) * bytes + static_cast<ptrdiff_t>(track.dy) * upright.bytesPerLine;
  switch (bytes) {
    case 1: return PlaceBytes<1>(row, width, first, step);
    case 2: return PlaceBytes<2>(row, width, first, step);
    case 3: return PlaceBytes<3>(row, width, first, step);
    case 4: return PlaceBytes<4>(row, width, first, step);
    case 6: return PlaceBytes<6>(row, width, first, step);
    default: return PlaceBytes<8>(row, width, first, step);
  }
}

int32_t AllocateScratch(BITMAPHANDLE& scratch, int32_t width, int32_t height, Layout layout, const Palette& palette) {
  uint32_t memory = MEMORY_CONVENTIONAL;
  GetDefaultBitmapMemoryFlags(&memory);
  Palette full = palette;
  if (IsIndexed(layout)) full.resize(size_t{1} << BitsPerPixel(layout), ZVPALETTEENTRY{0, 0, 0, 255});
  const int32_t order = IsGray(layout) ? ORDER_GRAY : (IsRgbOrder(layout) ? ORDER_RGB : ORDER_BGR);
  return CreateBitmap(&scratch, sizeof scratch, memory, width, height, BitsPerPixel(layout), order,
                      IsIndexed(layout) ? full.data() : nullptr, VIEW_TOP_LEFT, nullptr, 0);
}

}  // namespace

RowSource::RowSource(BITMAPHANDLE* bitmap, FILESAVECALLBACK callback, void* userData)
    : bitmap_(bitmap), callback_(callback), userData_(userData), scratch_{}, stored_(LayoutOf(*bitmap)) {
  scratch_.uStructSize = sizeof scratch_;
  perspective_ = bitmap->viewPerspective >= VIEW_TOP_LEFT && bitmap->viewPerspective <= VIEW_LEFT_BOTTOM
                     ? bitmap->viewPerspective
                     : VIEW_TOP_LEFT;
  const bool turned = perspective_ >= VIEW_LEFT_TOP;
  width_ = turned ? bitmap->height : bitmap->width;
  height_ = turned ? bitmap->width : bitmap->height;
  if (IsIndexed(stored_)) {
    if (bitmap->palette && bitmap->paletteCount > 0) {
      const int32_t count = std::min(bitmap->paletteCount, 1 << bitmap->bitsPerPixel);
      rowPalette_.assign(bitmap->palette, bitmap->palette + count);
    } else {
      rowPalette_ = GrayRamp(bitmap->bitsPerPixel);
    }
  }
  rowLayout_ = stored_;
  batchStride_ = bitmap->bytesPerLine > 0 ? bitmap->bytesPerLine
                                          : static_cast<int32_t>((PackedRowBytes(stored_, bitmap->width) + 3) / 4 * 4);
}

RowSource::~RowSource() { FreeBitmap(&scratch_); }

int32_t RowSource::Prepare(Layout target, bool keepPaletteAlpha) {
  layout_ = target;
  if (target == Layout::kIndex8 && stored_ == Layout::kGray8) {
    // The same bytes, seen as indices into a grey palette.
    stored_ = rowLayout_ = Layout::kIndex8;
    rowPalette_ = GrayRamp(8);
  }
  const bool possible = RowConverter::Possible(stored_, target);
  int32_t result = SUCCESS;
  if (!possible) {
    result = Gather(IsGray(stored_) ? Layout::kGray8 : Layout::kBgr24);
    if (result == SUCCESS) result = Quantize(target);
  } else if (perspective_ != VIEW_TOP_LEFT) {
    result = Gather(stored_);
  }
  if (result != SUCCESS) return error_ = result;
  palette_ = IsIndexed(target) ? rowPalette_ : Palette();
  if (!keepPaletteAlpha) palette_ = OpaquePalette(std::move(palette_));
  return SUCCESS;
}

// All stored rows, converted and upright, into the scratch bitmap; from there on rows come from it.
int32_t RowSource::Gather(Layout layout) {
  const int32_t result = AllocateScratch(scratch_, width_, height_, layout, rowPalette_);
  if (result != SUCCESS) return result;
  const int32_t storedWidth = bitmap_->width;
  RowConverter converter(stored_, layout, storedWidth, rowPalette_);
  std::vector<uint8_t> row(PackedRowBytes(layout, storedWidth));
  for (int32_t y = 0; y < bitmap_->height; ++y) {
    const uint8_t* stored = StoredRow(y);
    if (!stored) return error_;
    if (!converter.IsIdentity()) {
      converter.Convert(stored, row.data());
      stored = row.data();
    }
    PlaceRow(stored, storedWidth, TrackOfRow(perspective_, storedWidth, bitmap_->height, y), scratch_);
  }
  rowLayout_ = layout;
  std::vector<uint8_t>().swap(batch_);
  return SUCCESS;
}

// Down to a palette: of black and white for one bit, else of the image's best colours.
int32_t RowSource::Quantize(Layout target) {
  const int32_t bits = BitsPerPixel(target);
  const Palette blackAndWhite = GrayRamp(1);
  const int32_t result = ConvertBitmapDepth(&scratch_, bits, ORDER_BGR, bits == 1 ? blackAndWhite.data() : nullptr, 1);
  if (result != SUCCESS) return result;
  rowLayout_ = target;
  const int32_t count = std::clamp(scratch_.paletteCount, 0, 1 << bits);
  rowPalette_.assign(scratch_.palette, scratch_.palette + count);
  return SUCCESS;
}

int32_t RowSource::Begin(Layout layout) {
  layout_ = layout;
  converter_ = RowConverter(rowLayout_, layout, width_, rowPalette_);
  if (!converter_.IsIdentity()) converted_.resize(PackedRowBytes(layout, width_));
  next_ = 0;
  return SUCCESS;
}

const uint8_t* RowSource::Next() {
  if (next_ >= height_ || error_ != SUCCESS) {
    if (error_ == SUCCESS) error_ = ERROR_BAD_ARGUMENT;
    return nullptr;
  }
  const uint8_t* row = (scratch_.flags & BITMAP_FLAG_ALLOCATED) ? ScratchRow(next_) : StoredRow(next_);
  if (!row || !ReportRow(next_)) return nullptr;
  ++next_;
  if (converter_.IsIdentity()) return row;
  converter_.Convert(row, converted_.data());
  return converted_.data();
}

bool RowSource::ReportRow(int32_t y) {
  const int64_t before = int64_t{y} * 100 / height_;
  const int64_t after = (int64_t{y} + 1) * 100 / height_;
  if (before != after) error_ = ReportStatus(static_cast<int32_t>(after));
  return error_ == SUCCESS;
}

const uint8_t* RowSource::ScratchRow(int32_t y) const {
  const int32_t line = (scratch_.flags & BITMAP_FLAG_TOP_DOWN) ? y : scratch_.height - 1 - y;
  return scratch_.data + static_cast<ptrdiff_t>(scratch_.bytesPerLine) * line;
}

const uint8_t* RowSource::StoredRow(int32_t y) {
  if (!callback_) {
    const int32_t line = (bitmap_->flags & BITMAP_FLAG_TOP_DOWN) ? y : bitmap_->height - 1 - y;
    return bitmap_->data + static_cast<ptrdiff_t>(bitmap_->bytesPerLine) * line;
  }
  if (y >= batchFirst_ + batchCount_) {
    batchFirst_ = y;
    batchCount_ = std::min(kBatchRows, bitmap_->height - y);
    batch_.resize(static_cast<size_t>(batchStride_) * kBatchRows);
    const int32_t answer = callback_(bitmap_, batch_.data(), batchFirst_, batchCount_, userData_);
    if (answer != SUCCESS) {
      error_ = answer;
      return nullptr;
    }
  }
  return batch_.data() + static_cast<ptrdiff_t>(batchStride_) * (y - batchFirst_);
}

int32_t RowSource::ReadAll(uint8_t* destination, size_t stride) {
  const size_t bytes = PackedRowBytes(layout_, width_);
  for (int32_t y = 0; y < height_; ++y, destination += stride) {
    const uint8_t* row = Next();
    if (!row) return error_;
    std::memcpy(destination, row, bytes);
  }
  return SUCCESS;
}

}  // namespace zvfile
