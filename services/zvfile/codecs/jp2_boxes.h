// What a JP2 file says beside its code stream: profile, resolution, Exif and XMP, in boxes that OpenJPEG neither reads (in time)
// nor writes. Layout of the boxes: ISO/IEC 15444-1, annex I. Never looks at pixels.
#ifndef ZV_FILE_JP2_BOXES_H
#define ZV_FILE_JP2_BOXES_H

#include "services/zvfile/codec.h"

namespace zvfile {

// Numbers of boxes and code streams; 8 bytes at most.
uint64_t ReadBigEndian(const uint8_t* bytes, int count);

// What the boxes say of the colours, which OpenJPEG tells only after decoding.
struct Jp2Colors {
  bool inks = false;           // cyan, magenta, yellow and black
  int32_t paletteColumns = 0;  // channels that a palette makes of the image's one; 0 without a palette
  bool deepPalette = false;    // of more than 8 bits
};
// Takes profile, resolution, Exif with its orientation and comments, and XMP into the header. Damaged boxes are left out; a bare
// code stream has none.
Jp2Colors ReadJp2Boxes(ByteSource& source, const Limits& limits, ImageHeader& header);
// The offset of the code stream in a JP2 file; 0 when there is none.
uint64_t FindCodeStream(ByteSource& source);
// Writes a JP2 file as OpenJPEG made it, with the request's profile, resolution, Exif and XMP put in.
int32_t WriteJp2WithBoxes(std::span<const uint8_t> plain, const SaveRequest& request, const RowSource& rows,
                          ByteSink& sink);

}  // namespace zvfile

#endif
