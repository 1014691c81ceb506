// A GIF file seen as its blocks: header, extensions, images. Finds where each frame begins and ends and what it says of itself
// without decoding a pixel; page operations cut and join files along these lines.
#ifndef ZV_FILE_GIF_BLOCKS_H
#define ZV_FILE_GIF_BLOCKS_H

#include <cstdint>
#include <string>
#include <vector>

#include "services/zvfile/byte_source.h"
#include "services/zvfile/pixel_layout.h"

namespace zvfile::gif {

enum Disposal : uint8_t { kKeep = 1, kToBackground = 2, kToPrevious = 3 };

struct Frame {
  uint64_t start = 0;    // of its control extension, or of the image block without one
  uint64_t imageAt = 0;  // of the image separator
  uint64_t end = 0;      // behind its data
  int32_t left = 0, top = 0, width = 0, height = 0;
  bool interlaced = false;
  uint16_t mapSize = 0;  // entries of its own colour map, 0 without one
  uint64_t mapAt = 0;
  uint8_t disposal = 0;
  int32_t transparent = -1;  // index, -1 none
  uint16_t delay = 0;        // hundredths of a second
};

struct File {
  int32_t width = 0, height = 0;  // of the screen, grown where the first frame is larger
  uint8_t background = 0;
  uint16_t mapSize = 0;    // entries of the global colour map
  uint64_t headerEnd = 0;  // behind the global colour map
  std::vector<Frame> frames;
  std::string comment;
  bool looping = false;   // an animation's repeat count stands ahead of the frames
  bool complete = false;  // the trailer was reached
  uint64_t trailerAt = 0;
};

// Reads until `wanted` frames are known or the file ends; a frame whose data is cut short is the last. False when the
// header itself is none or cut short.
bool Scan(ByteSource& source, size_t wanted, File& file);
// A colour map of the file; missing entries are black.
Palette ReadMap(ByteSource& source, uint64_t at, uint16_t size);

}  // namespace zvfile::gif

#endif
