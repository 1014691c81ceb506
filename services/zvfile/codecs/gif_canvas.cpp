#include "services/zvfile/codecs/gif_canvas.h"

#include <algorithm>
#include <cstring>

#include "services/zvfile/codecs/gif_decoder.h"

namespace zvfile::gif {
namespace {

bool CoversScreen(const File& file, const Frame& frame) {
  return frame.left == 0 && frame.top == 0 && frame.width >= file.width && frame.height >= file.height;
}

Palette PaletteOf(ByteSource& source, const File& file, const Frame& frame) {
  if (frame.mapSize > 0) return ReadMap(source, frame.mapAt, frame.mapSize);
  return ReadMap(source, file.headerEnd - size_t{3} * file.mapSize, file.mapSize);
}

bool SameColors(const Palette& a, const Palette& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const ZVPALETTEENTRY& x, const ZVPALETTEENTRY& y) {
    return x.red == y.red && x.green == y.green && x.blue == y.blue;
  });
}

Layout LayoutForColors(size_t count) {
  if (count <= 2) return Layout::kIndex1;
  return count <= 16 ? Layout::kIndex4 : Layout::kIndex8;
}

// The latest frame that leaves nothing of what was before it.
size_t FirstThatMatters(const File& file, size_t last) {
  for (size_t index = last; index > 0; --index) {
    const Frame& frame = file.frames[index];
    const Frame& before = file.frames[index - 1];
    if (CoversScreen(file, frame) && frame.transparent < 0) return index;
    if (CoversScreen(file, before) && before.disposal == kToBackground) return index;
  }
  return 0;
}

}  // namespace

Composition Plan(ByteSource& source, const File& file, size_t last) {
  Composition plan;
  plan.last = last;
  plan.first = FirstThatMatters(file, last);
  plan.palette = PaletteOf(source, file, file.frames[plan.first]);
  bool bare = !CoversScreen(file, file.frames[plan.first]);
  for (size_t index = plan.first; index <= last; ++index) {
    const Frame& frame = file.frames[index];
    if (index > plan.first) {
      plan.indexed = plan.indexed && SameColors(plan.palette, PaletteOf(source, file, frame));
      bare = bare || file.frames[index - 1].disposal == kToBackground;
    }
    if (frame.transparent < 0) continue;
    bare = bare || index == plan.first;
    plan.indexed = plan.indexed && (plan.transparent < 0 || plan.transparent == frame.transparent);
    plan.transparent = frame.transparent;
  }
  if (plan.palette.empty()) plan.palette.resize(2, ZVPALETTEENTRY{0, 0, 0, 255});
  const bool known = plan.transparent < static_cast<int32_t>(plan.palette.size());
  plan.indexed = plan.indexed && known;
  if (plan.indexed) {
    plan.layout = LayoutForColors(plan.palette.size());
    if (plan.transparent >= 0) {
      plan.palette[static_cast<size_t>(plan.transparent)].alpha = 0;
      plan.ground = static_cast<uint8_t>(plan.transparent);
    } else if (file.background < plan.palette.size()) {
      plan.ground = file.background;
    }
  } else {
    plan.transparent = -1;
    plan.layout = bare ? Layout::kRgba32 : Layout::kRgb24;
  }
  return plan;
}

Canvas::Canvas(ByteSource& source, const File& file, const Composition& plan)
    : source_(source), file_(file), plan_(plan), pixelBytes_(plan.indexed ? 1 : 4) {
  const size_t pixels = static_cast<size_t>(file.width) * static_cast<size_t>(file.height);
  pixels_.assign(pixels * pixelBytes_, plan.indexed ? plan.ground : uint8_t{0});
}

int32_t Canvas::Compose() {
  for (size_t index = plan_.first; index <= plan_.last; ++index) {
    const Frame& frame = file_.frames[index];
    const bool vanishes = index < plan_.last && frame.disposal == kToPrevious;
    if (vanishes) saved_ = pixels_;
    const int32_t result = DrawFrame(frame);
    if (result != SUCCESS) return result;
    if (vanishes) {
      pixels_.swap(saved_);
    } else if (index < plan_.last && frame.disposal == kToBackground) {
      Dispose(frame);
    }
  }
  return SUCCESS;
}

int32_t Canvas::DrawFrame(const Frame& frame) {
  if (frame.width == 0 || frame.height == 0) return SUCCESS;
  FrameDecoder decoder(source_, file_, frame);
  int32_t result = decoder.Begin();
  if (result != SUCCESS) return result;
  const Palette palette = PaletteOf(source_, file_, frame);
  std::vector<uint8_t> indices(static_cast<size_t>(frame.width));
  RowSequence order(frame.height, frame.interlaced);
  for (int32_t n = 0; n < frame.height; ++n) {
    result = decoder.NextRow(indices.data());
    if (result != SUCCESS) return result;
    DrawRow(frame, palette, order.Next(), indices.data());
  }
  return SUCCESS;
}

void Canvas::DrawRow(const Frame& frame, const Palette& palette, int32_t y, const uint8_t* indices) {
  const int32_t row = frame.top + y;
  if (row >= file_.height) return;
  const int32_t count = std::min(frame.width, file_.width - frame.left);
  if (count <= 0) return;
  uint8_t* target =
      &pixels_[(static_cast<size_t>(row) * static_cast<size_t>(file_.width) + static_cast<size_t>(frame.left)) *
               pixelBytes_];
  for (int32_t x = 0; x < count; ++x, target += pixelBytes_) {
    const uint8_t index = indices[x];
    if (index == frame.transparent) continue;
    if (plan_.indexed) {
      *target = index;
      continue;
    }
    const ZVPALETTEENTRY color = index < palette.size() ? palette[index] : ZVPALETTEENTRY{};
    target[0] = color.red;
    target[1] = color.green;
    target[2] = color.blue;
    target[3] = 255;
  }
}

// Bare ground shows where the frame was.
void Canvas::Dispose(const Frame& frame) {
  const int32_t right = std::min(frame.left + frame.width, file_.width);
  const int32_t bottom = std::min(frame.top + frame.height, file_.height);
  for (int32_t y = frame.top; y < bottom && frame.left < right; ++y) {
    const size_t at = static_cast<size_t>(y) * static_cast<size_t>(file_.width) + static_cast<size_t>(frame.left);
    std::memset(&pixels_[at * pixelBytes_], plan_.indexed ? plan_.ground : 0,
                static_cast<size_t>(right - frame.left) * pixelBytes_);
  }
}

void Canvas::CopyRow(int32_t y, uint8_t* row) const {
  const uint8_t* source = &pixels_[static_cast<size_t>(y) * static_cast<size_t>(file_.width) * pixelBytes_];
  if (plan_.indexed) {
    PackIndices(source, file_.width, plan_.layout, row);
  } else if (plan_.layout == Layout::kRgba32) {
    std::memcpy(row, source, static_cast<size_t>(file_.width) * 4);
  } else {
    for (int32_t x = 0; x < file_.width; ++x, source += 4, row += 3) std::memcpy(row, source, 3);
  }
}

void PackIndices(const uint8_t* indices, int32_t width, Layout layout, uint8_t* row) {
  const int32_t bits = BitsPerPixel(layout);
  if (bits == 8) {
    std::memcpy(row, indices, static_cast<size_t>(width));
    return;
  }
  const int32_t perByte = 8 / bits;
  const uint32_t mask = (1u << bits) - 1;
  for (int32_t x = 0; x < width; x += perByte) {
    uint32_t packed = 0;
    for (int32_t i = 0; i < perByte; ++i) packed = packed << bits | (x + i < width ? indices[x + i] & mask : 0);
    *row++ = static_cast<uint8_t>(packed);
  }
}

}  // namespace zvfile::gif
