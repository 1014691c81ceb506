#include "services/zvcore/byte_rows.h"
#include "services/zvcore/memory.h"
#include "services/zvcore/orientation.h"
#include "services/zvcore/pixels.h"
#include "services/zvcore/rotation_geometry.h"
#include "services/zvcore/rotator.h"

using namespace zvcore;

namespace {

constexpr int32_t kFullTurn = 36000;
constexpr int32_t kQuarterTurn = 9000;

RotationFilter FilterOf(uint32_t flags) {
  if (flags & ROTATE_BICUBIC) return RotationFilter::kCubic;
  return flags & ROTATE_RESAMPLE ? RotationFilter::kLinear : RotationFilter::kNearest;
}

// 0 to 35999, in the sense of the stored rows.
int32_t StoredAngle(const BITMAPHANDLE& bitmap, int32_t shownAngle) {
  const int32_t angle = ShowsMirrorImage(Perspective(bitmap)) ? -shownAngle : shownAngle;
  return (angle % kFullTurn + kFullTurn) % kFullTurn;
}

// The source in 8-bit channels: grey, or colour in blue, green, red order.
int32_t ExpandToChannels(const BITMAPHANDLE& source, ScratchBitmap& expanded) {
  const ByteRowReader reader(source);
  const int bits = reader.Channels() * 8;
  const int32_t status = expanded.AllocateLike(source, source.width, source.height, bits);
  if (status != SUCCESS) return status;
  expanded->colorOrder = bits == 8 ? ORDER_GRAY : ORDER_BGR;
  for (int32_t y = 0; y < source.height; ++y) reader.Row(y, WritableRowAt(*expanded, y));
  return SUCCESS;
}

int32_t PackFromChannels(const BITMAPHANDLE& channels, BITMAPHANDLE& packed) {
  ByteRowWriter writer(packed);
  const int32_t status = writer.Prepare();
  for (int32_t y = 0; status == SUCCESS && y < packed.height; ++y) writer.Put(y, RowAt(channels, y));
  return status;
}

// The colour that the fill colour becomes when it has to be one of the palette.
uint32_t PaletteColor(const BITMAPHANDLE& bitmap, uint32_t color) {
  if (!IsIndexed(bitmap)) return color;
  ZVPALETTEENTRY palette[256];
  const int count = CompletePalette(bitmap, palette);
  const ZVPALETTEENTRY& entry = palette[NearestEntry(palette, count, color & 255, color >> 8 & 255, color >> 16 & 255)];
  return static_cast<uint32_t>(entry.red | entry.green << 8 | entry.blue << 16);
}

int32_t RenderOnto(const BITMAPHANDLE& source, BITMAPHANDLE& canvas, int32_t angle, RotationFilter filter,
                   uint32_t color) {
  uint8_t fillPixel[8];
  EncodePixel(source, color, fillPixel);
  return RenderTurned(source, canvas, angle, filter, fillPixel);
}

int32_t RotateByChannels(const BITMAPHANDLE& bitmap, BITMAPHANDLE& canvas, int32_t angle, RotationFilter filter,
                         uint32_t color) {
  ScratchBitmap expanded, turned;
  int32_t status = ExpandToChannels(bitmap, expanded);
  if (status == SUCCESS) status = turned.AllocateLike(*expanded, canvas.width, canvas.height, expanded->bitsPerPixel);
  if (status == SUCCESS) status = RenderOnto(*expanded, *turned, angle, filter, PaletteColor(bitmap, color));
  return status == SUCCESS ? PackFromChannels(*turned, canvas) : status;
}

int32_t RotateFreely(BITMAPHANDLE& bitmap, int32_t angle, uint32_t flags, uint32_t color) {
  const Size size = {bitmap.width, bitmap.height};
  const Size canvasSize = flags & ROTATE_RESIZE ? TurnedSize(size, angle) : size;
  if (!IsValidSide(canvasSize.width) || !IsValidSide(canvasSize.height)) return ERROR_LIMIT_EXCEEDED;
  const RotationFilter filter = FilterOf(flags);
  const bool packed = IsIndexed(bitmap) || (bitmap.bitsPerPixel == 16 && !IsGray(bitmap));
  ScratchBitmap canvas;
  int32_t status = canvas.AllocateLike(bitmap, static_cast<int32_t>(canvasSize.width),
                                       static_cast<int32_t>(canvasSize.height), bitmap.bitsPerPixel);
  if (status != SUCCESS) return status;
  status = packed && filter != RotationFilter::kNearest ? RotateByChannels(bitmap, *canvas, angle, filter, color)
                                                        : RenderOnto(bitmap, *canvas, angle, filter, color);
  if (status != SUCCESS) return status;
  canvas.MoveInto(bitmap);
  return SUCCESS;
}

}  // namespace

int32_t RotateBitmap(BITMAPHANDLE* bitmap, int32_t angle, uint32_t flags, uint32_t fillColor) {
  const int32_t status = CheckPixels(bitmap);
  if (status != SUCCESS) return status;
  if (angle < -kFullTurn || angle > kFullTurn) return ERROR_BAD_ARGUMENT;
  const int32_t stored = StoredAngle(*bitmap, angle);
  if (stored % kQuarterTurn == 0) return Reorient(*bitmap, QuarterTurns(stored / kQuarterTurn), true);
  return RotateFreely(*bitmap, stored, flags, fillColor);
}
