#include "services/zvcore/orientation.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "services/zvcore/memory.h"
#include "services/zvcore/pixels.h"
#include "services/zvcore/progress.h"
#include "services/zvcore/row_reverse.h"
#include "services/zvcore/transpose.h"

namespace zvcore {
namespace {

// Two rows at a time: those that change places, from the outside inwards, or neighbours. Both are copied as they are and come
// back turned: memory is read and written forwards, which is fastest. Nothing can stop it half way, so only the start can be
// aborted.
int32_t ReorientInPlace(BITMAPHANDLE& bitmap, Orientation orientation, bool reportsProgress) {
  const auto bytes = static_cast<size_t>(LineBytes(bitmap.width, bitmap.bitsPerPixel));
  Buffer<uint8_t> firstCopy, secondCopy;
  if (!firstCopy.Allocate(bytes) || !secondCopy.Allocate(bytes)) return ERROR_OUT_OF_MEMORY;
  Progress progress(1);
  if (reportsProgress && progress.Reached(0) != SUCCESS) return ERROR_USER_ABORT;
  const auto putTurned = [&](const Buffer<uint8_t>& row, uint8_t* out) {
    if (!orientation.mirrored) {
      std::memcpy(out, row.data(), bytes);
    } else {
      ReverseRow(row.data(), bitmap.width, bitmap.bitsPerPixel, out);
    }
  };
  const int32_t pairs = (bitmap.height + 1) / 2;
  for (int32_t i = 0; i < pairs; ++i) {
    // The middle row of an odd number is its own partner.
    uint8_t* first = WritableRowAt(bitmap, orientation.flipped ? i : 2 * i);
    uint8_t* second =
        WritableRowAt(bitmap, orientation.flipped ? bitmap.height - 1 - i : std::min(2 * i + 1, bitmap.height - 1));
    std::memcpy(firstCopy.data(), first, bytes);
    std::memcpy(secondCopy.data(), second, bytes);
    if (orientation.flipped) std::swap(first, second);
    putTurned(firstCopy, first);
    putTurned(secondCopy, second);
  }
  if (reportsProgress) progress.Reached(1);
  return SUCCESS;
}

int32_t ReorientTransposed(BITMAPHANDLE& bitmap, Orientation orientation, bool reportsProgress) {
  ScratchBitmap turned;
  int32_t status = turned.AllocateLike(bitmap, bitmap.height, bitmap.width, bitmap.bitsPerPixel);
  SourceRows source = {RowAt(bitmap, 0), RowStep(bitmap)};
  if (orientation.mirrored) source = {RowAt(bitmap, bitmap.height - 1), -source.step};
  DestinationRows destination = {nullptr, 0};
  if (status == SUCCESS) {
    destination = {WritableRowAt(*turned, 0), RowStep(*turned)};
    if (orientation.flipped) destination = {WritableRowAt(*turned, turned->height - 1), -destination.step};
  }
  Progress progress(bitmap.width);
  for (int32_t x = 0; status == SUCCESS && x < bitmap.width; x += kTransposeBand) {
    const int32_t last = std::min(x + kTransposeBand, bitmap.width);
    TransposeColumns(source, x, last, bitmap.width, bitmap.height, bitmap.bitsPerPixel, destination);
    if (reportsProgress) status = progress.Reached(last);
  }
  if (status != SUCCESS) return status;
  std::swap(turned->xResolution, turned->yResolution);
  turned.MoveInto(bitmap);
  return SUCCESS;
}

}  // namespace

Orientation OrientationOf(int32_t perspective) {
  switch (perspective) {
    case VIEW_TOP_RIGHT: return {false, true, false};
    case VIEW_BOTTOM_RIGHT: return {false, true, true};
    case VIEW_BOTTOM_LEFT: return {false, false, true};
    case VIEW_LEFT_TOP: return {true, false, false};
    case VIEW_RIGHT_TOP: return {true, true, false};
    case VIEW_RIGHT_BOTTOM: return {true, true, true};
    case VIEW_LEFT_BOTTOM: return {true, false, true};
    default: return {};
  }
}

Orientation QuarterTurns(int turns) {
  constexpr int32_t kPerspectives[4] = {VIEW_TOP_LEFT, VIEW_RIGHT_TOP, VIEW_BOTTOM_RIGHT, VIEW_LEFT_BOTTOM};
  return OrientationOf(kPerspectives[turns]);
}

bool ShowsMirrorImage(int32_t perspective) {
  return perspective == VIEW_TOP_RIGHT || perspective == VIEW_BOTTOM_LEFT || perspective == VIEW_LEFT_TOP ||
         perspective == VIEW_RIGHT_BOTTOM;
}

int32_t Reorient(BITMAPHANDLE& bitmap, Orientation orientation, bool reportsProgress) {
  if (orientation.IsIdentity()) return SUCCESS;
  return (orientation.transposed ? ReorientTransposed : ReorientInPlace)(bitmap, orientation, reportsProgress);
}

}  // namespace zvcore

using namespace zvcore;

int32_t MirrorBitmap(BITMAPHANDLE* bitmap) {
  const int32_t status = CheckPixels(bitmap);
  if (status != SUCCESS) return status;
  const bool exchanged = ExchangesSides(Perspective(*bitmap));
  return Reorient(*bitmap, {false, !exchanged, exchanged}, false);
}

int32_t FlipBitmap(BITMAPHANDLE* bitmap) {
  const int32_t status = CheckPixels(bitmap);
  if (status != SUCCESS) return status;
  const bool exchanged = ExchangesSides(Perspective(*bitmap));
  return Reorient(*bitmap, {false, exchanged, !exchanged}, false);
}

int32_t ApplyViewPerspective(BITMAPHANDLE* bitmap) {
  int32_t status = CheckPixels(bitmap);
  if (status == SUCCESS) status = Reorient(*bitmap, OrientationOf(Perspective(*bitmap)), false);
  if (status == SUCCESS) bitmap->viewPerspective = VIEW_TOP_LEFT;
  return status;
}
