// Turns a picture of the long-tail library into a header and rows of ours: the plainest layout that holds it, grey where it is
// grey, a palette where it has one.
#ifndef ZV_FILE_MAGICK_PIXELS_H
#define ZV_FILE_MAGICK_PIXELS_H

#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/magick_library.h"

namespace zvfile::magick {

// Fills layout, palette, size, resolution, orientation and metadata. Inks become RGB on the way, so the image changes.
int32_t Describe(_Image& image, const Limits& limits, ImageHeader& header);
// Writes row y in the header's layout.
int32_t CopyRow(_Image& image, const ImageHeader& header, int32_t y, uint8_t* row);

}  // namespace zvfile::magick

#endif
