#include "services/zvfile/codecs/gif_decoder.h"

#include <algorithm>

#include "services/zvfile/zvfile.h"

namespace zvfile::gif {

FrameDecoder::FrameDecoder(ByteSource& source, const File& file, const Frame& frame)
    : source_(source), headerEnd_(file.headerEnd), frame_(frame) {}

FrameDecoder::~FrameDecoder() {
  int error = 0;
  if (gif_) DGifCloseFile(gif_, &error);
}

// giflib asks for the bytes of a file in order; those between the header and the frame are left out.
int FrameDecoder::Read(GifFileType* gif, GifByteType* buffer, int bytes) {
  auto* self = static_cast<FrameDecoder*>(gif->UserData);
  try {
    int done = 0;
    while (done < bytes) {
      if (self->position_ == self->headerEnd_) self->position_ = std::max(self->headerEnd_, self->frame_.imageAt);
      const bool inHeader = self->position_ < self->headerEnd_;
      size_t some = static_cast<size_t>(bytes - done);
      if (inHeader) some = static_cast<size_t>(std::min<uint64_t>(some, self->headerEnd_ - self->position_));
      self->source_.Seek(self->position_);
      const size_t got = self->source_.Read(buffer + done, some);
      if (got == 0) break;
      self->position_ += got;
      done += static_cast<int>(got);
    }
    return done;
  } catch (...) {
    return 0;
  }
}

int32_t FrameDecoder::Begin() {
  int error = 0;
  gif_ = DGifOpen(this, Read, &error);
  if (!gif_) return error == D_GIF_ERR_NOT_ENOUGH_MEM ? ERROR_OUT_OF_MEMORY : ERROR_FILE_DAMAGED;
  GifRecordType record = UNDEFINED_RECORD_TYPE;
  const bool good = DGifGetRecordType(gif_, &record) == GIF_OK && record == IMAGE_DESC_RECORD_TYPE &&
                    DGifGetImageDesc(gif_) == GIF_OK;
  return good ? SUCCESS : ERROR_FILE_DAMAGED;
}

int32_t FrameDecoder::NextRow(uint8_t* indices) {
  return DGifGetLine(gif_, indices, frame_.width) == GIF_OK ? SUCCESS : ERROR_FILE_DAMAGED;
}

// Interlaced images come in four passes: every eighth row, the fours between, the twos, the rest.
int32_t RowSequence::Next() {
  constexpr int32_t kStart[] = {0, 4, 2, 1}, kStep[] = {8, 8, 4, 2};
  const int32_t current = row_;
  if (!interlaced_) {
    ++row_;
    return current;
  }
  row_ += kStep[pass_];
  while (row_ >= height_ && pass_ < 3) row_ = kStart[++pass_];
  return current;
}

}  // namespace zvfile::gif
