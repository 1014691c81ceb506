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

// Averages the source pixels of each stamp pixel. A few rows of each band are enough for so small a picture.
class BoxReducer {
 public:
  BoxReducer(const BITMAPHANDLE& bitmap, Layout layout, int32_t width, int32_t height)
      : bitmap_(bitmap),
        width_(width),
        height_(height),
        channels_(static_cast<size_t>(BitsPerPixel(layout)) / 8),
        converter_(LayoutOf(bitmap), layout, bitmap.width, PaletteOf(bitmap)),
        packed_(PackedRowBytes(LayoutOf(bitmap), bitmap.width)),
        row_(static_cast<size_t>(bitmap.width) * channels_),
        sums_(static_cast<size_t>(width) * channels_) {}

  // Row y of the stamp into result.
  void Reduce(int32_t y, uint8_t* result) {
    const int32_t top = Edge(y, bitmap_.height, height_);
    const int32_t bottom = std::max(top + 1, Edge(y + 1, bitmap_.height, height_));
    const int32_t step = std::max(1, (bottom - top) / kRowsOfABand);
    std::fill(sums_.begin(), sums_.end(), 0u);
    uint32_t rows = 0;
    for (int32_t line = top; line < bottom; line += step, ++rows) AddRow(line);
    for (size_t i = 0; i < sums_.size(); ++i) result[i] = static_cast<uint8_t>((sums_[i] + rows / 2) / rows);
  }

 private:
  static constexpr int32_t kRowsOfABand = 4;

  static int32_t Edge(int32_t index, int32_t from, int32_t to) {
    return static_cast<int32_t>(int64_t{index} * from / to);
  }

  void AddRow(int32_t line) {
    CopyBitmapRow(&bitmap_, packed_.data(), line, static_cast<int32_t>(packed_.size()));
    converter_.Convert(packed_.data(), row_.data());
    for (int32_t x = 0; x < width_; ++x) {
      const int32_t left = Edge(x, bitmap_.width, width_);
      const int32_t right = std::max(left + 1, Edge(x + 1, bitmap_.width, width_));
      for (size_t c = 0; c < channels_; ++c) {
        uint32_t sum = 0;
        for (int32_t i = left; i < right; ++i) sum += row_[static_cast<size_t>(i) * channels_ + c];
        sums_[static_cast<size_t>(x) * channels_ + c] += sum / static_cast<uint32_t>(right - left);
      }
    }
  }

  const BITMAPHANDLE& bitmap_;
  int32_t width_, height_;
  size_t channels_;
  RowConverter converter_;
  std::vector<uint8_t> packed_;
  std::vector<uint8_t> row_;
  std::vector<uint32_t> sums_;
};

}  // namespace

StampBitmap::StampBitmap() : stamp_{} { stamp_.uStructSize = sizeof stamp_; }
StampBitmap::~StampBitmap() { FreeBitmap(&stamp_); }

const BITMAPHANDLE* StampBitmap::Make(const BITMAPHANDLE& bitmap, const SAVEFILEOPTION& option) {
  if (!(bitmap.flags & BITMAP_FLAG_ALLOCATED) || !bitmap.data) return nullptr;
  int32_t boxWidth = SideOrDefault(option.stampWidth), boxHeight = SideOrDefault(option.stampHeight);
  if (bitmap.viewPerspective >= VIEW_LEFT_TOP) std::swap(boxWidth, boxHeight);
  int32_t width = bitmap.width, height = bitmap.height;
  FitInto(boxWidth, boxHeight, width, height);
  const bool gray = option.stampBitsPerPixel == 8;
  const Layout layout = gray ? Layout::kGray8 : Layout::kBgr24;
  const int32_t order = gray ? ORDER_GRAY : ORDER_BGR;
  const int32_t created = CreateBitmap(&stamp_, sizeof stamp_, MEMORY_CONVENTIONAL, width, height, BitsPerPixel(layout),
                                       order, nullptr, bitmap.viewPerspective, nullptr, 0);
  if (created != SUCCESS) return nullptr;
  BoxReducer reducer(bitmap, layout, width, height);
  std::vector<uint8_t> row(PackedRowBytes(layout, width));
  for (int32_t y = 0; y < height; ++y) {
    reducer.Reduce(y, row.data());
    PutBitmapRow(&stamp_, row.data(), y, static_cast<int32_t>(row.size()));
  }
  return ApplyViewPerspective(&stamp_) == SUCCESS ? &stamp_ : nullptr;
}

}  // namespace zvfile
