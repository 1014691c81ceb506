#include "services/zvfile/stamp.h"

#include <algorithm>
#include <vector>

#include "services/zvfile/pixel_layout.h"

namespace zvfile {
namespace {

constexpr int32_t kDefaultSide = 120;
constexpr int32_t kMaxSide = 1024;

int32_t SideOrDefault(int32_t side) { return side < 1 ? kDefaultSide : std::min(side, kMaxSide); }

// Largest size inside the box with the shape of the image; never larger than the image.
void FitInto(int32_t boxWidth, int32_t boxHeight, int32_t& width, int32_t& height) {
  boxWidth = std::min(boxWidth, width);
  boxHeight = std::min(boxHeight, height);
  const int64_t scaledHeight = (int64_t{height} * boxWidth + width / 2) / width;
  if (scaledHeight <= boxHeight) {
    width = boxWidth;
    height = static_cast<int32_t>(std::max<int64_t>(scaledHeight, 1));
  } else {
    width = static_cast<int32_t>(std::max<int64_t>((int64_t{width} * boxHeight + height / 2) / height, 1));
    height = boxHeight;
  }
}

Palette PaletteOf(const BITMAPHANDLE& bitmap) {
  return bitmap.palette ? Palette(bitmap.palette, bitmap.palette + bitmap.paletteCount) : Palette();
}

}  // namespace

StampBitmap::StampBitmap() : stamp_{} { stamp_.uStructSize = sizeof stamp_; }
StampBitmap::~StampBitmap() { FreeBitmap(&stamp_); }

const BITMAPHANDLE* StampBitmap::Make(const BITMAPHANDLE& bitmap, const SAVEFILEOPTION& option) {
  if (!(bitmap.flags & BITMAP_FLAG_ALLOCATED) || !bitmap.data) return nullptr;
  const bool turned = bitmap.viewPerspective >= VIEW_LEFT_TOP;
  int32_t boxWidth = SideOrDefault(option.stampWidth), boxHeight = SideOrDefault(option.stampHeight);
  if (turned) std::swap(boxWidth, boxHeight);
  int32_t width = bitmap.width, height = bitmap.height;
  FitInto(boxWidth, boxHeight, width, height);
  const bool gray = option.stampBitsPerPixel == 8;
  const Layout layout = gray ? Layout::kGray8 : Layout::kBgr24;
  if (InitBitmapHandle(&stamp_, sizeof stamp_, width, height, BitsPerPixel(layout)) != SUCCESS) return nullptr;
  stamp_.colorOrder = gray ? ORDER_GRAY : ORDER_BGR;
  stamp_.viewPerspective = bitmap.viewPerspective;
  if (AllocateBitmap(&stamp_, MEMORY_CONVENTIONAL) != SUCCESS) return nullptr;
  // Box average over every source pixel of a stamp pixel, a band of source rows for each stamp row.
  RowConverter converter(LayoutOf(bitmap), layout, bitmap.width, PaletteOf(bitmap));
  const size_t channels = gray ? 1 : 3;
  std::vector<uint8_t> packed(PackedRowBytes(LayoutOf(bitmap), bitmap.width));
  std::vector<uint8_t> row(static_cast<size_t>(bitmap.width) * channels);
  std::vector<uint32_t> sums(static_cast<size_t>(width) * channels);
  std::vector<uint8_t> result(sums.size());
  for (int32_t y = 0; y < height; ++y) {
    const int32_t top = static_cast<int32_t>(int64_t{y} * bitmap.height / height);
    const int32_t bottom = std::max(top + 1, static_cast<int32_t>((int64_t{y} + 1) * bitmap.height / height));
    // A handful of rows a band is enough for so small a picture.
    const int32_t rowStep = std::max(1, (bottom - top) / 4);
    std::fill(sums.begin(), sums.end(), 0u);
    uint32_t rows = 0;
    for (int32_t line = top; line < bottom; line += rowStep, ++rows) {
      CopyBitmapRow(&bitmap, packed.data(), line, static_cast<int32_t>(packed.size()));
      converter.Convert(packed.data(), row.data());
      for (int32_t x = 0; x < width; ++x) {
        const int32_t left = static_cast<int32_t>(int64_t{x} * bitmap.width / width);
        const int32_t right = std::max(left + 1, static_cast<int32_t>((int64_t{x} + 1) * bitmap.width / width));
        for (size_t c = 0; c < channels; ++c) {
          uint32_t sum = 0;
          for (int32_t i = left; i < right; ++i) sum += row[static_cast<size_t>(i) * channels + c];
          sums[static_cast<size_t>(x) * channels + c] += sum / static_cast<uint32_t>(right - left);
        }
      }
    }
    for (size_t i = 0; i < sums.size(); ++i) result[i] = static_cast<uint8_t>((sums[i] + rows / 2) / rows);
    PutBitmapRow(&stamp_, result.data(), y, static_cast<int32_t>(result.size()));
  }
  if (ApplyViewPerspective(&stamp_) != SUCCESS) return nullptr;
  return &stamp_;
}

}  // namespace zvfile
