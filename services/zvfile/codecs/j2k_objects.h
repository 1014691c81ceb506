// The OpenJPEG objects of the JPEG 2000 codec: owners, streams over our sources and sinks, and codecs that keep their messages to
// themselves.
#ifndef ZV_FILE_CODECS_J2K_OBJECTS_H
#define ZV_FILE_CODECS_J2K_OBJECTS_H

#include <openjpeg.h>

#include <memory>

#include "services/zvfile/codec.h"

namespace zvfile {

struct J2kCodecDeleter {
  void operator()(opj_codec_t* codec) const { opj_destroy_codec(codec); }
};
struct J2kStreamDeleter {
  void operator()(opj_stream_t* stream) const { opj_stream_destroy(stream); }
};
struct J2kImageDeleter {
  void operator()(opj_image_t* image) const { opj_image_destroy(image); }
};
using J2kCodecHandle = std::unique_ptr<opj_codec_t, J2kCodecDeleter>;
using J2kStream = std::unique_ptr<opj_stream_t, J2kStreamDeleter>;
using J2kImage = std::unique_ptr<opj_image_t, J2kImageDeleter>;

// The source or sink must outlive the stream. Null when memory runs out.
J2kStream MakeJ2kReader(ByteSource& source);
J2kStream MakeJ2kWriter(ByteSink& sink);
J2kCodecHandle MakeJ2kCodec(bool codeStream, bool decoder);

int32_t J2kSave(ByteSink& sink, const SaveRequest& request, RowSource& rows);

}  // namespace zvfile

#endif
