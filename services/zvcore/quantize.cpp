#include "services/zvcore/quantize.h"

#include <algorithm>

#include "services/zvcore/memory.h"
#include "services/zvcore/pixel_convert.h"
#include "services/zvcore/pixels.h"

namespace zvcore {
namespace {

constexpr int kSide = 32;
constexpr int kCells = kSide * kSide * kSide;

struct Moments {
  int64_t count = 0;
  int64_t sum[3] = {};  // red, green, blue
  double squares = 0;

  void Add(const Moments& other) {
    count += other.count;
    for (int c = 0; c < 3; ++c) sum[c] += other.sum[c];
    squares += other.squares;
  }
  Moments Less(const Moments& other) const {
    Moments rest = *this;
    rest.count -= other.count;
    for (int c = 0; c < 3; ++c) rest.sum[c] -= other.sum[c];
    rest.squares -= other.squares;
    return rest;
  }
  // The sum of squared distances from the average colour.
  double Error() const {
    if (count == 0) return 0;
    double ofSums = 0;
    for (int64_t s : sum) ofSums += static_cast<double>(s) * static_cast<double>(s);
    return squares - ofSums / static_cast<double>(count);
  }
};

// A block of histogram cells, high bounds excluded, with the best way to split it in two.
struct Box {
  int low[3] = {0, 0, 0};
  int high[3] = {kSide, kSide, kSide};
  Moments moments;
  int splitAxis = -1;  // none: one cell only
  int splitAt = 0;
  double gain = 0;
};

class Histogram {
 public:
  int32_t Prepare() { return cells.Allocate(kCells) ? SUCCESS : ERROR_OUT_OF_MEMORY; }

  void Add(const Pixel8& pixel) {
    Moments& cell = cells[CellOf(pixel.red >> 3, pixel.green >> 3, pixel.blue >> 3)];
    ++cell.count;
    cell.sum[0] += pixel.red;
    cell.sum[1] += pixel.green;
    cell.sum[2] += pixel.blue;
    cell.squares += pixel.red * pixel.red + pixel.green * pixel.green + pixel.blue * pixel.blue;
  }

  // Fills moments and the best split of a box.
  void Measure(Box& box) const {
    Moments slices[3][kSide] = {};
    box.moments = {};
    for (int r = box.low[0]; r < box.high[0]; ++r) {
      for (int g = box.low[1]; g < box.high[1]; ++g) {
        for (int b = box.low[2]; b < box.high[2]; ++b) {
          const Moments& cell = cells[CellOf(r, g, b)];
          if (cell.count == 0) continue;
          slices[0][r].Add(cell);
          slices[1][g].Add(cell);
          slices[2][b].Add(cell);
          box.moments.Add(cell);
        }
      }
    }
    const double whole = box.moments.Error();
    for (int axis = 0; axis < 3; ++axis) {
      Moments below;
      for (int at = box.low[axis] + 1; at < box.high[axis]; ++at) {
        below.Add(slices[axis][at - 1]);
        const Moments above = box.moments.Less(below);
        if (below.count == 0 || above.count == 0) continue;
        const double gain = whole - below.Error() - above.Error();
        if (box.splitAxis < 0 || gain > box.gain) {
          box.splitAxis = axis;
          box.splitAt = at;
          box.gain = gain;
        }
      }
    }
  }

 private:
  static size_t CellOf(int red, int green, int blue) {
    return static_cast<size_t>((red * kSide + green) * kSide + blue);
  }
  Buffer<Moments> cells;
};

// The colours of an image as long as they fit a palette.
class FewColors {
 public:
  explicit FewColors(int maxEntries) : limit(maxEntries) {}

  bool Fits() const { return count <= limit; }
  int Count() const { return count; }
  const ZVPALETTEENTRY& Entry(int i) const { return entries[i]; }
  void Add(const Pixel8& pixel) {
    const uint32_t color = static_cast<uint32_t>(pixel.red << 16 | pixel.green << 8 | pixel.blue);
    if (color == last) return;
    last = color;
    for (uint32_t slot = color * 2654435761u >> 22;; slot = (slot + 1) & (kSlots - 1)) {
      if (slots[slot] == color + 1) return;
      if (slots[slot] != 0) continue;
      slots[slot] = color + 1;
      if (count < limit) entries[count] = {pixel.blue, pixel.green, pixel.red, 255};
      ++count;
      return;
    }
  }

 private:
  static constexpr uint32_t kSlots = 1024;
  int limit;
  int count = 0;
  uint32_t last = UINT32_MAX;
  uint32_t slots[kSlots] = {};  // colour + 1
  ZVPALETTEENTRY entries[256];
};

int SplitBoxes(const Histogram& histogram, int maxEntries, ZVPALETTEENTRY (&palette)[256]) {
  Box boxes[256];
  int count = 1;
  histogram.Measure(boxes[0]);
  while (count < maxEntries) {
    Box* widest = std::max_element(boxes, boxes + count, [](const Box& a, const Box& b) { return a.gain < b.gain; });
    if (widest->splitAxis < 0 || widest->gain <= 0) break;
    Box upper;
    std::copy_n(widest->low, 3, upper.low);
    std::copy_n(widest->high, 3, upper.high);
    Box lower = upper;
    upper.low[widest->splitAxis] = lower.high[widest->splitAxis] = widest->splitAt;
    histogram.Measure(lower);
    histogram.Measure(upper);
    *widest = lower;
    boxes[count++] = upper;
  }
  for (int i = 0; i < count; ++i) {
    const Moments& moments = boxes[i].moments;
    const auto average = [&](int c) {
      return static_cast<uint8_t>((moments.sum[c] + moments.count / 2) / moments.count);
    };
    palette[i] = {average(2), average(1), average(0), 255};
  }
  return count;
}

}  // namespace

int32_t ChoosePalette(const BITMAPHANDLE& bitmap, int maxEntries, ZVPALETTEENTRY (&palette)[256], int* count) {
  Histogram histogram;
  Buffer<Pixel8> row;
  if (histogram.Prepare() != SUCCESS || !row.Allocate(static_cast<size_t>(bitmap.width))) return ERROR_OUT_OF_MEMORY;
  ZVPALETTEENTRY sourcePalette[256];
  CompletePalette(bitmap, sourcePalette);
  FewColors few(maxEntries);
  for (int32_t y = 0; y < bitmap.height; ++y) {
    DecodeRow(bitmap, sourcePalette, RowAt(bitmap, y), bitmap.width, row.data());
    if (HasAlpha(bitmap)) BlendOnWhite(row.data(), bitmap.width);
    for (const Pixel8& pixel : row) {
      histogram.Add(pixel);
      if (few.Fits()) few.Add(pixel);
    }
  }
  if (few.Fits()) {
    *count = few.Count();
    for (int i = 0; i < *count; ++i) palette[i] = few.Entry(i);
  } else {
    *count = SplitBoxes(histogram, maxEntries, palette);
  }
  return SUCCESS;
}

}  // namespace zvcore
