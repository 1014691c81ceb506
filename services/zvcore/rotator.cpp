#include "services/zvcore/rotator.h"

#include <algorithm>
#include <cstring>

#include "services/zvcore/cubic_sampler.h"
#include "services/zvcore/pixels.h"
#include "services/zvcore/progress.h"
#include "services/zvcore/rotation_geometry.h"

namespace zvcore {
namespace {

// What every kind of rendering works on.
struct Scene {
  const BITMAPHANDLE& source;
  BITMAPHANDLE& canvas;
  RotationGeometry geometry;
  const uint8_t* fillPixel;
};

template <int bits>
class NearestTurner {
 public:
  explicit NearestTurner(const Scene& turned) : scene(turned) {}

  void Render(int32_t y, ColumnRange columns) const {
    // The centre of the canvas pixel falls into the source pixel whose area it lies in.
    constexpr int64_t kHalf = kPositionOne / 2;
    const ColumnRange inside = scene.geometry.ColumnsInside(y, columns, {-kHalf, kHalf - 1});
    uint8_t* out = WritableRowAt(scene.canvas, y);
    Fill(out, {columns.first, inside.first});
    Position at = scene.geometry.SourceOf(inside.first, y);
    const Position step = scene.geometry.Step();
    for (int32_t x = inside.first; x < inside.last; ++x, at.x += step.x, at.y += step.y) {
      const auto column = (at.x + kHalf) >> kPositionBits;
      const auto row = static_cast<int32_t>((at.y + kHalf) >> kPositionBits);
      Copy(RowAt(scene.source, row), column, out, x);
    }
    Fill(out, {inside.last, columns.last});
  }

 private:
  static void Copy(const uint8_t* in, int64_t column, uint8_t* out, int32_t x) {
    if constexpr (bits < 8) {
      PutIndexAt<bits>(out, x, IndexAt<bits>(in, column));
    } else {
      std::memcpy(out + static_cast<int64_t>(x) * (bits / 8), in + column * (bits / 8), bits / 8);
    }
  }
  void Fill(uint8_t* out, ColumnRange columns) const {
    for (int32_t x = columns.first; x < columns.last; ++x) Copy(scene.fillPixel, 0, out, x);
  }

  const Scene& scene;
};

// 8-bit channels without alpha.
template <int count>
struct ByteChannels {
  static constexpr int kPixelBytes = count;
  const CubicWeights& weights;

  void Sample(const uint8_t* at, int64_t step, Position position, uint8_t* out) const {
    const uint32_t pixel = SampleBytes<count>(at, step, weights.Fixed(position.x), weights.Fixed(position.y));
    std::memcpy(out, &pixel, count);
  }
};

// 16-bit channels, and 8-bit ones with alpha.
template <typename T, int count>
struct RealChannels {
  static constexpr int kPixelBytes = count * static_cast<int>(sizeof(T));
  const CubicWeights& weights;
  bool alpha;
  bool premultiplied;

  void Sample(const uint8_t* at, int64_t step, Position position, uint8_t* out) const {
    constexpr float kHighest = sizeof(T) == 1 ? 255.0f : 65535.0f;
    alignas(16) float values[4];
    _mm_store_ps(values, SampleReal<T, count>(at, step, weights.Real(position.x), weights.Real(position.y),
                                              alpha && !premultiplied));
    if (alpha) FinishAlpha(values, kHighest);
    T pixel[4];
    for (int c = 0; c < count; ++c) pixel[c] = static_cast<T>(std::clamp(values[c] + 0.5f, 0.0f, kHighest));
    std::memcpy(out, pixel, kPixelBytes);
  }

 private:
  void FinishAlpha(float (&values)[4], float highest) const {
    for (int c = 0; c < 3; ++c) {
      if (premultiplied) {
        values[c] = std::min(values[c], values[3]);
      } else {
        values[c] = values[3] >= 0.5f ? values[c] * (highest / values[3]) : 0;
      }
    }
  }
};

template <typename Channels>
class SampledTurner {
 public:
  SampledTurner(const Scene& turned, const Channels& kind) : scene(turned), channels(kind) {}

  void Render(int32_t y, ColumnRange columns) const {
    // Two pixels outside, nothing of the source is left. Two inside, all sixteen pixels are there, and rows may be
    // read a vector past their end, since there is always a further row.
    constexpr int64_t kTwo = 2 * kPositionOne;
    const bool rowsHoldVectors = scene.source.bytesPerLine >= 16;
    const ColumnRange seen = scene.geometry.ColumnsInside(y, columns, {-kTwo, kTwo});
    const ColumnRange inner = scene.geometry.ColumnsInside(y, seen, {kTwo, -kTwo - 1});
    const ColumnRange direct = rowsHoldVectors && inner.first < inner.last ? inner : ColumnRange{seen.last, seen.last};
    uint8_t* out = WritableRowAt(scene.canvas, y);
    Fill(out, {columns.first, seen.first});
    RenderEdge(y, {seen.first, direct.first}, out);
    RenderDirect(y, direct, out);
    RenderEdge(y, {direct.last, seen.last}, out);
    Fill(out, {seen.last, columns.last});
  }

 private:
  static constexpr int kPixelBytes = Channels::kPixelBytes;

  static uint8_t* PixelAt(uint8_t* row, int32_t x) { return row + static_cast<int64_t>(x) * kPixelBytes; }

  void Fill(uint8_t* out, ColumnRange columns) const {
    for (int32_t x = columns.first; x < columns.last; ++x) std::memcpy(PixelAt(out, x), scene.fillPixel, kPixelBytes);
  }

  void RenderDirect(int32_t y, ColumnRange columns, uint8_t* out) const {
    const int64_t rowStep = RowStep(scene.source);
    const uint8_t* top = RowAt(scene.source, 0);
    Position at = scene.geometry.SourceOf(columns.first, y);
    const Position step = scene.geometry.Step();
    for (int32_t x = columns.first; x < columns.last; ++x, at.x += step.x, at.y += step.y) {
      const int64_t column = (at.x >> kPositionBits) - 1, row = (at.y >> kPositionBits) - 1;
      channels.Sample(top + row * rowStep + column * kPixelBytes, rowStep, at, PixelAt(out, x));
    }
  }

  // Gathers the sixteen pixels, the fill colour standing in for those outside.
  void RenderEdge(int32_t y, ColumnRange columns, uint8_t* out) const {
    constexpr int kStep = 48;  // four pixels of 8 bytes and a vector
    uint8_t around[4 * kStep] = {};
    const Position step = scene.geometry.Step();
    Position at = scene.geometry.SourceOf(columns.first, y);
    for (int32_t x = columns.first; x < columns.last; ++x, at.x += step.x, at.y += step.y) {
      const int64_t left = (at.x >> kPositionBits) - 1, top = (at.y >> kPositionBits) - 1;
      for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
          std::memcpy(around + row * kStep + column * kPixelBytes, PixelOrFill(left + column, top + row), kPixelBytes);
        }
      }
      channels.Sample(around, kStep, at, PixelAt(out, x));
    }
  }

  const uint8_t* PixelOrFill(int64_t x, int64_t y) const {
    const BITMAPHANDLE& source = scene.source;
    if (x < 0 || y < 0 || x >= source.width || y >= source.height) return scene.fillPixel;
    return RowAt(source, static_cast<int32_t>(y)) + x * kPixelBytes;
  }

  const Scene& scene;
  Channels channels;
};

template <typename Turner>
int32_t RenderTiles(const Scene& scene, const Turner& turner) {
  constexpr int32_t kTileWidth = 128, kTileHeight = 64;
  const int32_t width = scene.canvas.width, height = scene.canvas.height;
  Progress progress(height);
  int32_t status = SUCCESS;
  for (int32_t top = 0; status == SUCCESS && top < height; top += kTileHeight) {
    const int32_t bottom = std::min(top + kTileHeight, height);
    for (int32_t left = 0; left < width; left += kTileWidth) {
      const ColumnRange columns = {left, std::min(left + kTileWidth, width)};
      for (int32_t y = top; y < bottom; ++y) turner.Render(y, columns);
    }
    status = progress.Reached(bottom);
  }
  return status;
}

template <typename Channels>
int32_t RenderSampled(const Scene& scene, const Channels& channels) {
  return RenderTiles(scene, SampledTurner<Channels>(scene, channels));
}

template <int bits>
int32_t RenderNearest(const Scene& scene) {
  return RenderTiles(scene, NearestTurner<bits>(scene));
}

int32_t RenderNearestOf(int bits, const Scene& scene) {
  switch (bits) {
    case 1: return RenderNearest<1>(scene);
    case 4: return RenderNearest<4>(scene);
    case 8: return RenderNearest<8>(scene);
    case 16: return RenderNearest<16>(scene);
    case 24: return RenderNearest<24>(scene);
    case 32: return RenderNearest<32>(scene);
    case 48: return RenderNearest<48>(scene);
    default: return RenderNearest<64>(scene);
  }
}

}  // namespace

int32_t RenderTurned(const BITMAPHANDLE& source, BITMAPHANDLE& canvas, int32_t angle, RotationFilter filter,
                     const uint8_t* fillPixel) {
  const Scene scene = {
      source, canvas, RotationGeometry({source.width, source.height}, {canvas.width, canvas.height}, angle), fillPixel};
  if (filter == RotationFilter::kNearest) return RenderNearestOf(source.bitsPerPixel, scene);
  if (IsIndexed(source) || (source.bitsPerPixel == 16 && !IsGray(source))) return ERROR_BAD_ARGUMENT;
  CubicWeights weights;
  if (weights.Prepare(filter == RotationFilter::kLinear) != SUCCESS) return ERROR_OUT_OF_MEMORY;
  const bool alpha = HasAlpha(source), premultiplied = source.flags & BITMAP_FLAG_PREMULTIPLIED;
  switch (source.bitsPerPixel) {
    case 8: return RenderSampled(scene, ByteChannels<1>{weights});
    case 16: return RenderSampled(scene, RealChannels<uint16_t, 1>{weights, false, false});
    case 24: return RenderSampled(scene, ByteChannels<3>{weights});
    case 32:
      if (alpha) return RenderSampled(scene, RealChannels<uint8_t, 4>{weights, true, premultiplied});
      return RenderSampled(scene, ByteChannels<4>{weights});
    case 48: return RenderSampled(scene, RealChannels<uint16_t, 3>{weights, false, false});
    default: return RenderSampled(scene, RealChannels<uint16_t, 4>{weights, alpha, premultiplied});
  }
}

}  // namespace zvcore
