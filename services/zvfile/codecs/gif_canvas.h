// Composes the frames of a GIF up to a given one into the picture that is on show then. Works with indices while all frames
// share one colour map, and with colours as soon as they do not.
#ifndef ZV_FILE_GIF_CANVAS_H
#define ZV_FILE_GIF_CANVAS_H

#include <cstdint>
#include <vector>

#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/gif_blocks.h"

namespace zvfile::gif {

// What the picture of a frame will be, known before anything is decoded.
struct Composition {
  size_t first = 0;  // the frame to begin with: what was before it is covered or cleared
  size_t last = 0;
  bool indexed = true;
  int32_t transparent = -1;  // of indexed pictures
  uint8_t ground = 0;        // index of bare ground
  Layout layout = Layout::kIndex8;
  Palette palette;  // of indexed pictures
};

Composition Plan(ByteSource& source, const File& file, size_t last);

class Canvas {
 public:
  Canvas(ByteSource& source, const File& file, const Composition& plan);
  // Decodes all frames of the plan. ERROR_FILE_DAMAGED.
  int32_t Compose();
  // Writes row y in the layout of the plan.
  void CopyRow(int32_t y, uint8_t* row) const;

 private:
  int32_t DrawFrame(const Frame& frame);
  void DrawRow(const Frame& frame, const Palette& palette, int32_t y, const uint8_t* indices);
  void Dispose(const Frame& frame);

  ByteSource& source_;
  const File& file_;
  const Composition& plan_;
  size_t pixelBytes_;
  std::vector<uint8_t> pixels_;  // indices, or R G B A
  std::vector<uint8_t> saved_;   // as before a frame that is to vanish again
};

// Packs indices, one a byte, into 1, 4 or 8 bits.
void PackIndices(const uint8_t* indices, int32_t width, Layout layout, uint8_t* row);

}  // namespace zvfile::gif

#endif
