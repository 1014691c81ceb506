#include "services/zvdisplay/paint_geometry.h"

#include <algorithm>
#include <utility>

namespace zvdisplay {
namespace {

struct Range {
  int32_t first, last;
};

// Part of a source range, scaled to a destination range and widened to whole pixels.
Range Scaled(Range part, Range source, Range destination, bool mirrored) {
  const int64_t from = source.last - source.first, to = static_cast<int64_t>(destination.last) - destination.first;
  int64_t first = (part.first - source.first) * to / from;
  int64_t last = ((part.last - source.first) * to + from - 1) / from;
  if (mirrored) {
    std::swap(first, last);
    first = to - first;
    last = to - last;
  }
  return {static_cast<int32_t>(destination.first + first), static_cast<int32_t>(destination.first + last)};
}

Range Unplaced(Range visible, Range destination, bool mirrored) {
  if (mirrored) return {destination.last - visible.last, destination.last - visible.first};
  return {visible.first - destination.first, visible.last - destination.first};
}

}  // namespace

ZVRECT Intersection(const ZVRECT& a, const ZVRECT& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
}

Placement Normalized(const RECT& destination) {
  ZVRECT rect = {static_cast<int32_t>(destination.left), static_cast<int32_t>(destination.top),
                 static_cast<int32_t>(destination.right), static_cast<int32_t>(destination.bottom)};
  const bool mirrored = rect.right < rect.left, flipped = rect.bottom < rect.top;
  if (mirrored) std::swap(rect.left, rect.right);
  if (flipped) std::swap(rect.top, rect.bottom);
  return {rect, mirrored, flipped};
}

ZVRECT ScaledInto(const ZVRECT& part, const ZVRECT& source, const Placement& destination) {
  const ZVRECT& to = destination.rect;
  const Range across =
      Scaled({part.left, part.right}, {source.left, source.right}, {to.left, to.right}, destination.mirrored);
  const Range down =
      Scaled({part.top, part.bottom}, {source.top, source.bottom}, {to.top, to.bottom}, destination.flipped);
  return {across.first, down.first, across.last, down.last};
}

ZVRECT VisiblePart(const ZVRECT& visible, const Placement& destination) {
  const ZVRECT& to = destination.rect;
  const Range across = Unplaced({visible.left, visible.right}, {to.left, to.right}, destination.mirrored);
  const Range down = Unplaced({visible.top, visible.bottom}, {to.top, to.bottom}, destination.flipped);
  return {across.first, down.first, across.last, down.last};
}

}  // namespace zvdisplay
