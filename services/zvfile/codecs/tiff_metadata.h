// Profile, XMP, comments and Exif of a TIFF page. Exif stands in a TIFF file as directories of the file itself, elsewhere as a
// block with offsets of its own: here one is turned into the other.
#ifndef ZV_FILE_TIFF_METADATA_H
#define ZV_FILE_TIFF_METADATA_H

#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/tiff_directory.h"
#include "services/zvfile/codecs/tiff_handle.h"

namespace zvfile::tiff {

// Reads what the current directory of the handle has; `directory` is the same one.
void ReadMetadata(TIFF* tiff, Stream& stream, const Directory& directory, const Limits& limits, Metadata& metadata);
// Sets the tags of a page to be written, with empty pointers where an Exif block will hang.
void WriteMetadata(TIFF* tiff, const Metadata& metadata);
// Hangs the Exif block onto the last directory that the file in the sink has in its chain, once the library has closed it.
int32_t AttachExif(ByteSink& sink, const Metadata& metadata);

}  // namespace zvfile::tiff

#endif
