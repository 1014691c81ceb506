/* The arithmetic of painting: which pixels of a scaled picture are seen. Knows rectangles only, no device and no
 * bitmap. */
#ifndef ZV_DISPLAY_PAINT_GEOMETRY_H
#define ZV_DISPLAY_PAINT_GEOMETRY_H

#include "services/zvcore/zvcore.h"

namespace zvdisplay {

inline bool IsEmpty(const ZVRECT& rect) { return rect.left >= rect.right || rect.top >= rect.bottom; }
inline int32_t WidthOf(const ZVRECT& rect) { return rect.right - rect.left; }
inline int32_t HeightOf(const ZVRECT& rect) { return rect.bottom - rect.top; }
// Whether a picture can be scaled to that size.
inline bool IsPaintable(const ZVRECT& rect) {
  return static_cast<int64_t>(rect.right) - rect.left <= BITMAP_MAX_SIDE &&
         static_cast<int64_t>(rect.bottom) - rect.top <= BITMAP_MAX_SIDE;
}
ZVRECT Intersection(const ZVRECT& a, const ZVRECT& b);

// A destination with left <= right and top <= bottom, and whether its sides had to be exchanged for that.
struct Placement {
  ZVRECT rect;
  bool mirrored;
  bool flipped;
};
Placement Normalized(const RECT& destination);

// The rectangle of the destination that a rectangle inside the source covers, counting pixels that it touches.
ZVRECT ScaledInto(const ZVRECT& part, const ZVRECT& source, const Placement& destination);

// What is seen of a destination, as pixels of the scaled picture before mirroring.
ZVRECT VisiblePart(const ZVRECT& visible, const Placement& destination);

// The first device row of a picture row, when `rows` of them are spread over `deviceRows`.
inline int32_t BandEdge(int32_t row, int32_t rows, int32_t deviceRows) {
  return static_cast<int32_t>(static_cast<int64_t>(row) * deviceRows / rows);
}

}  // namespace zvdisplay

#endif
