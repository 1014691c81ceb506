// Decodes the indices of one frame through giflib, wherever the frame stands in the file: the library reads the header and then
// goes straight to the frame.
#ifndef ZV_FILE_GIF_DECODER_H
#define ZV_FILE_GIF_DECODER_H

#include <gif_lib.h>

#include <cstdint>

#include "services/zvfile/byte_source.h"
#include "services/zvfile/codecs/gif_blocks.h"

namespace zvfile::gif {

class FrameDecoder {
 public:
  FrameDecoder(ByteSource& source, const File& file, const Frame& frame);
  ~FrameDecoder();
  FrameDecoder(const FrameDecoder&) = delete;
  FrameDecoder& operator=(const FrameDecoder&) = delete;

  // Opens the frame. ERROR_FILE_DAMAGED.
  int32_t Begin();
  // The next row in the order of the file, an index a byte.
  int32_t NextRow(uint8_t* indices);

 private:
  static int Read(GifFileType* gif, GifByteType* buffer, int bytes);

  ByteSource& source_;
  uint64_t position_ = 0;
  uint64_t headerEnd_;
  const Frame& frame_;
  GifFileType* gif_ = nullptr;
};

// The row of the image that is the n-th in the file.
class RowSequence {
 public:
  RowSequence(int32_t height, bool interlaced) : height_(height), interlaced_(interlaced) {}
  int32_t Next();

 private:
  int32_t height_;
  bool interlaced_;
  int pass_ = 0;
  int32_t row_ = 0;
};

}  // namespace zvfile::gif

#endif
