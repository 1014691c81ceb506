/* The eight ways to lay a picture on its side, its head or its back: exact, at the speed of memory. */
#ifndef ZV_ZVCORE_ORIENTATION_H
#define ZV_ZVCORE_ORIENTATION_H

#include <cstdint>

#include "services/zvcore/zvcore.h"

namespace zvcore {

// First rows and columns are exchanged, then the result is mirrored left to right, then top to bottom.
struct Orientation {
  bool transposed = false;
  bool mirrored = false;
  bool flipped = false;

  bool IsIdentity() const { return !transposed && !mirrored && !flipped; }
};

// What a view perspective does to the stored rows to show them.
Orientation OrientationOf(int32_t perspective);
// That many quarter turns clockwise, 0 to 3, of stored rows.
Orientation QuarterTurns(int turns);
// Whether the perspective shows a mirror image, in which clockwise as shown is anticlockwise as stored.
bool ShowsMirrorImage(int32_t perspective);

// Turns the stored rows; the view perspective stays. Without exchange of sides it works in place. Progress is
// reported when it is wanted. The bitmap is unchanged on failure: ERROR_OUT_OF_MEMORY, ERROR_USER_ABORT.
int32_t Reorient(BITMAPHANDLE& bitmap, Orientation orientation, bool reportsProgress);

}  // namespace zvcore

#endif
