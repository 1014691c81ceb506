// JPEG streams for the codecs that embed them: the JPEG file codec itself, the CMP container, thumbnails.
#ifndef ZV_FILE_CODECS_JPEG_H
#define ZV_FILE_CODECS_JPEG_H

#include "services/zvfile/codec.h"

namespace zvfile {

// The QFactor scale of the library, 2 (best) to 255, on libjpeg's quality scale 100 to 1: linear, rounded,
// quality = 100 - (q - 2) * 99 / 253. Values outside are taken as the nearer end.
int32_t JpegQuality(int32_t qFactor);

// Reads the header of the stream that begins at the source's start.
int32_t ReadJpegHeader(ByteSource& source, const LoadRequest& request, ImageHeader& header);
// Loads the stream. `adjust` may change the header before the sink begins: format number, page numbers, compression name.
int32_t LoadJpegStream(ByteSource& source, const LoadRequest& request, RowSink& sink,
                       const std::function<void(ImageHeader&)>& adjust);

struct JpegSaveSettings {
  int32_t quality = 75;            // libjpeg's scale
  int32_t horizontalSampling = 1;  // of luma against chroma: 1 or 2
  int32_t verticalSampling = 1;
  bool progressive = false;
  bool exifCarrier = false;  // Exif leads, without the JFIF header
  int32_t xResolution = 0, yResolution = 0;
  std::vector<uint8_t> exif;           // written as given; empty none
  const Metadata* metadata = nullptr;  // profile, XMP and description are written from it; null writes none
};
// Writes a stream at the sink's position. Rows are grey or 24-bit. ERROR_LIMIT_EXCEEDED above 65500 a side.
int32_t SaveJpegStream(ByteSink& sink, const JpegSaveSettings& settings, RowSource& rows);
// The codec's own save.
int32_t JpegSave(ByteSink& sink, const SaveRequest& request, RowSource& rows);
// A small picture, 24 bits BGR or 8 bits grey, as a JPEG stream; empty when it cannot be had.
std::vector<uint8_t> EncodeStamp(const BITMAPHANDLE& stamp);

}  // namespace zvfile

#endif
