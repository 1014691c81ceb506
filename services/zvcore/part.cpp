#include <algorithm>
#include <cstring>

#include "services/zvcore/byte_rows.h"
#include "services/zvcore/orientation.h"
#include "services/zvcore/pixel_convert.h"
#include "services/zvcore/pixels.h"
#include "services/zvcore/resampler.h"

using namespace zvcore;

namespace {

bool IsInside(const ZVRECT& part, int32_t width, int32_t height) {
  return part.left >= 0 && part.top >= 0 && part.left < part.right && part.top < part.bottom && part.right <= width &&
         part.bottom <= height;
}

template <int bits>
void CopyIndices(const uint8_t* in, int32_t inFirst, int32_t count, uint8_t* out, int32_t outFirst) {
  for (int32_t x = 0; x < count; ++x) PutIndexAt<bits>(out, outFirst + x, IndexAt<bits>(in, inFirst + x));
}

void CopyPixels(int bits, const uint8_t* in, int32_t inFirst, int32_t count, uint8_t* out, int32_t outFirst) {
  if (bits == 1) return CopyIndices<1>(in, inFirst, count, out, outFirst);
  if (bits == 4) return CopyIndices<4>(in, inFirst, count, out, outFirst);
  const int64_t pixelBytes = bits / 8;
  std::memcpy(out + outFirst * pixelBytes, in + inFirst * pixelBytes, static_cast<size_t>(count * pixelBytes));
}

int32_t MakeAllRows(Resampler* resampler, int32_t height) {
  if (!resampler) return ERROR_OUT_OF_MEMORY;
  const int32_t status = resampler->Prepare();
  for (int32_t row = 0; status == SUCCESS && row < height; ++row) resampler->MakeRow(row);
  return status;
}

int32_t HandOver(ScratchBitmap& made, BITMAPHANDLE* destination) {
  *destination = {};
  made.MoveInto(*destination);
  return SUCCESS;
}

}  // namespace

int32_t ResampleBitmapPart(BITMAPHANDLE* destination, const BITMAPHANDLE* source, int32_t fullWidth, int32_t fullHeight,
                           const ZVRECT* part, int32_t method) {
  int32_t status = CheckPixels(source);
  if (status != SUCCESS) return status;
  if (!destination || !part || !IsValidSide(fullWidth) || !IsValidSide(fullHeight)) return ERROR_BAD_ARGUMENT;
  if (!IsInside(*part, fullWidth, fullHeight) || !IsSizeMethod(method)) return ERROR_BAD_ARGUMENT;
  const int32_t width = part->right - part->left, height = part->bottom - part->top;
  const ResampleFrame frame = {fullWidth, fullHeight, part->left, part->top};
  const bool packed = IsIndexed(*source) || (source->bitsPerPixel == 16 && !IsGray(*source));
  ScratchBitmap channels;
  status = channels.AllocateLike(*source, width, height,
                                 packed ? ByteRowReader(*source).Channels() * 8 : source->bitsPerPixel);
  if (status != SUCCESS) return status;
  if (packed) channels->colorOrder = channels->bitsPerPixel == 8 ? ORDER_GRAY : ORDER_BGR;
  if (!packed || method != SIZE_NEAREST) {
    status = MakeAllRows(NewResampler(*source, *channels, frame, method).get(), height);
    return status == SUCCESS ? HandOver(channels, destination) : status;
  }
  ScratchBitmap indices;
  status = indices.AllocateLike(*source, width, height, source->bitsPerPixel);
  if (status == SUCCESS) status = MakeAllRows(NewResampler(*source, *indices, frame, method).get(), height);
  if (status == SUCCESS) status = ConvertAllRows(*indices, *channels);
  return status == SUCCESS ? HandOver(channels, destination) : status;
}

int32_t CopyBitmapPart(BITMAPHANDLE* destination, const BITMAPHANDLE* source, const ZVRECT* part) {
  int32_t status = CheckPixels(source);
  if (status != SUCCESS) return status;
  if (!destination || !part || !IsInside(*part, source->width, source->height)) return ERROR_BAD_ARGUMENT;
  const int32_t width = part->right - part->left;
  ScratchBitmap copy;
  status = copy.AllocateLike(*source, width, part->bottom - part->top, source->bitsPerPixel);
  if (status != SUCCESS) return status;
  for (int32_t y = part->top; y < part->bottom; ++y) {
    CopyPixels(source->bitsPerPixel, RowAt(*source, y), part->left, width, WritableRowAt(*copy, y - part->top), 0);
  }
  return HandOver(copy, destination);
}

int32_t PutBitmapPart(BITMAPHANDLE* destination, const BITMAPHANDLE* source, int32_t left, int32_t top) {
  int32_t status = CheckPixels(destination);
  if (status == SUCCESS) status = CheckPixels(source);
  if (status != SUCCESS) return status;
  const bool fits = left >= 0 && top >= 0 && left <= destination->width - source->width &&
                    top <= destination->height - source->height;
  if (!fits || destination->bitsPerPixel != source->bitsPerPixel || destination->data == source->data)
    return ERROR_BAD_ARGUMENT;
  for (int32_t y = 0; y < source->height; ++y) {
    CopyPixels(source->bitsPerPixel, RowAt(*source, y), 0, source->width, WritableRowAt(*destination, top + y), left);
  }
  return SUCCESS;
}

int32_t MapShownRect(int32_t viewPerspective, int32_t width, int32_t height, const ZVRECT* shown, ZVRECT* stored) {
  if (!shown || !stored || viewPerspective < 0 || viewPerspective > VIEW_LEFT_BOTTOM) return ERROR_BAD_ARGUMENT;
  const Orientation orientation = OrientationOf(viewPerspective);
  const int32_t shownWidth = orientation.transposed ? height : width;
  const int32_t shownHeight = orientation.transposed ? width : height;
  ZVRECT rect = *shown;
  if (orientation.mirrored) rect = {shownWidth - rect.right, rect.top, shownWidth - rect.left, rect.bottom};
  if (orientation.flipped) rect = {rect.left, shownHeight - rect.bottom, rect.right, shownHeight - rect.top};
  if (orientation.transposed) rect = {rect.top, rect.left, rect.bottom, rect.right};
  *stored = rect;
  return SUCCESS;
}
