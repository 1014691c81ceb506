// The sizes that a Photo CD image keeps: each twice the one before, up to what the file has room for.
#ifndef ZV_FILE_MAGICK_PHOTO_CD_H
#define ZV_FILE_MAGICK_PHOTO_CD_H

#include <vector>

#include "services/zvfile/byte_source.h"
#include "services/zvfile/option_records.h"

namespace zvfile::magick {

// Largest first, as shown: an image that stands on its side has width and height exchanged.
std::vector<IMAGESIZE> PhotoCdSizes(ByteSource& source);
// The size to ask the reader for, which it takes as the image lies on the disc: the smallest that is not smaller than wanted,
// else the largest, which is also what (0, 0) means; a height of 0 asks for the width alone.
IMAGESIZE PhotoCdReaderSize(ByteSource& source, IMAGESIZE wanted);

}  // namespace zvfile::magick

#endif
