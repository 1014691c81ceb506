// The row filters of PNG (ISO/IEC 15948, 9.2) and the choice among them.
#ifndef ZV_FILE_CODECS_PNG_FILTER_H
#define ZV_FILE_CODECS_PNG_FILTER_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zvfile {

// Filters the rows of one image from the top. Of the five filters the one is taken whose bytes, read as signed, have the
// smallest sum of absolute values: the heuristic that the standard recommends for colour and grey of 8 bits and more.
class PngFilter {
 public:
  // pixelBytes: bytes of a complete pixel, at least 1. adaptive false: every row gets filter None, which is best for palettes
  // and less than 8 bits.
  PngFilter(size_t rowBytes, size_t pixelBytes, bool adaptive);
  // Where the caller puts the next row, rowBytes long.
  uint8_t* Input() { return current_.data() + kMargin; }
  // Filters that row into output: the filter's number, then rowBytes bytes.
  void Apply(uint8_t* output);

 private:
  static constexpr size_t kMargin = 16;  // zeros left of a row, for the pixel before the first

  size_t rowBytes_;
  size_t pixelBytes_;
  bool adaptive_;
  std::vector<uint8_t> current_;
  std::vector<uint8_t> above_;
};

}  // namespace zvfile

#endif
