#include "services/zvcore/orientation.h"

#include <algorithm>
#include <cstring>

#include "services/zvcore/memory.h"
#include "services/zvcore/pixels.h"
#include "services/zvcore/progress.h"
#include "services/zvcore/row_reverse.h"
#include "services/zvcore/transpose.h"

namespace zvcore {
namespace {

// Rows change places from the outside inwards. Nothing can stop it half way, so only the start can be aborted.
int32_t ReorientInPlace(BITMAPHANDLE& bitmap, Orientation orientation, bool reportsProgress) {
  const auto bytes = static_cast<size_t>(LineBytes(bitmap.width, bitmap.bitsPerPixel));
  Buffer<uint8_t> upperTurned, lowerTurned;
  if (!upperTurned.Allocate(bytes) || !lowerTurned.Allocate(bytes)) return ERROR_OUT_OF_MEMORY;
  Progress progress(1);
  if (reportsProgress && progress.Reached(0) != SUCCESS) return ERROR_USER_ABORT;
  const auto turn = [&](const uint8_t* row, Buffer<uint8_t>& out) {
    if (!orientation.mirrored) {
      std::memcpy(out.data(), row, bytes);
    } else {
      ReverseRow(row, bitmap.width, bitmap.bitsPerPixel, out.data());
    }
  };
  const int32_t rows = orientation.flipped ? (bitmap.height + 1) / 2 : bitmap.height;
  for (int32_t y = 0; y < rows; ++y) {
    uint8_t* upper = WritableRowAt(bitmap, y);
    uint8_t* lower = WritableRowAt(bitmap, orientation.flipped ? bitmap.height - 1 - y : y);
    turn(upper, upperTurned);
    if (upper != lower) {
      turn(lower, lowerTurned);
      std::memcpy(upper, lowerTurned.data(), bytes);
    }
    std::memcpy(lower, upperTurned.data(), bytes);
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
