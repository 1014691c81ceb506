/* Rows of real channels, the form in which 16-bit channels and alpha are resampled and rotated: levels as they are
 * stored (0 to 255 or 0 to 65535), colours multiplied by alpha where there is one, so that what cannot be seen does
 * not bleed. */
#ifndef ZV_ZVCORE_FLOAT_ROWS_H
#define ZV_ZVCORE_FLOAT_ROWS_H

#include <cstdint>

#include "services/zvcore/byte_rows.h"

namespace zvcore {

// Reads rows of any bitmap, which must outlive it.
class FloatRowReader {
 public:
  explicit FloatRowReader(const BITMAPHANDLE& bitmap);

  int Channels() const { return channels; }
  // Fills width * Channels() values of out. scratch holds as many bytes.
  void Read(int32_t row, uint8_t* scratch, float* out) const;

 private:
  const BITMAPHANDLE& bitmap;
  ByteRowReader byteReader;
  int channels;
  bool wide;
};

// Writes such rows, rounded and clamped.
class FloatRowWriter {
 public:
  explicit FloatRowWriter(BITMAPHANDLE& target) : bitmap(target), byteWriter(target) {}
  // ERROR_OUT_OF_MEMORY.
  int32_t Prepare();
  // The row is used up: its values change. scratch holds width * channels bytes.
  void Write(int32_t row, float* in, uint8_t* scratch);

 private:
  BITMAPHANDLE& bitmap;
  ByteRowWriter byteWriter;
  int channels = 0;
  bool wide = false;
};

}  // namespace zvcore

#endif
