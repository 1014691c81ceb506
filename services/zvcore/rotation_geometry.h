/* Where the pixels of a turned picture come from. Positions are pixel indices in 32.32 fixed point, a pixel's centre
 * being at its whole index; they are exact to far below a thousandth of a pixel over the largest bitmap. */
#ifndef ZV_ZVCORE_ROTATION_GEOMETRY_H
#define ZV_ZVCORE_ROTATION_GEOMETRY_H

#include <cstdint>

namespace zvcore {

constexpr int kPositionBits = 32;
constexpr int64_t kPositionOne = int64_t{1} << kPositionBits;

struct Size {
  int64_t width;
  int64_t height;
};

struct Position {
  int64_t x;
  int64_t y;
};

// Columns [first, last) of a row; empty when first >= last.
struct ColumnRange {
  int32_t first;
  int32_t last;
};

// The smallest canvas that holds the whole picture, turned by hundredths of a degree.
Size TurnedSize(Size size, int32_t angle);

class RotationGeometry {
 public:
  // Turns clockwise about the middle.
  RotationGeometry(Size source, Size canvas, int32_t angle);

  // The source position of canvas pixel (x, y), and the step to that of (x + 1, y).
  Position SourceOf(int32_t x, int32_t y) const;
  Position Step() const { return step; }

  // The part of columns [first, last) of a canvas row whose source positions lie in [margin.low, size - 1 +
  // margin.high] both ways. Margins are fixed-point distances.
  struct Margins {
    int64_t low;
    int64_t high;
  };
  ColumnRange ColumnsInside(int32_t y, ColumnRange columns, Margins margins) const;

 private:
  Size source;
  double sine, cosine;
  double canvasX, canvasY;  // the canvas's middle, in pixel indices
  double sourceX, sourceY;
  Position step;
};

}  // namespace zvcore

#endif
