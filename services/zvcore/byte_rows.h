/* Rows of 8-bit channels, the form in which resampling and rotation see every bitmap without 16-bit channels: 1
 * channel for grey, 3 or 4 in the bitmap's own order for colour. Most bitmaps are in that form already; palette
 * indices and 5-5-5 words are expanded row by row and packed again. */
#ifndef ZV_ZVCORE_BYTE_ROWS_H
#define ZV_ZVCORE_BYTE_ROWS_H

#include <cstdint>

#include "services/zvcore/color_matcher.h"
#include "services/zvcore/zvcore.h"

namespace zvcore {

// Reads rows of a bitmap, which must outlive it. Not for 48 and 64 bits and 16-bit grey.
class ByteRowReader {
 public:
  explicit ByteRowReader(const BITMAPHANDLE& bitmap);

  int Channels() const { return channels; }
  // Whether rows need no expanding, so that Row gives the bitmap's own memory.
  bool IsDirect() const { return direct; }
  // Row `row` from the top. scratch holds width * Channels() bytes; it is not touched when direct.
  const uint8_t* Row(int32_t row, uint8_t* scratch) const;

 private:
  const BITMAPHANDLE& bitmap;
  int channels;
  bool direct;
  ZVPALETTEENTRY palette[256];
};

// Writes rows of channels, as many as the reader of an equal format gives, to a bitmap that must outlive it.
class ByteRowWriter {
 public:
  explicit ByteRowWriter(BITMAPHANDLE& target) : bitmap(target) {}
  // ERROR_OUT_OF_MEMORY.
  int32_t Prepare();
  bool IsDirect() const { return direct; }
  // Packs a row; for a writer that is not direct.
  void Put(int32_t row, const uint8_t* channelsRow);

 private:
  BITMAPHANDLE& bitmap;
  int channels = 0;
  bool direct = false;
  ColorMatcher matcher;
};

}  // namespace zvcore

#endif
