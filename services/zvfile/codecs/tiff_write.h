// Encodes one page into a TIFF file: which tags and samples a layout and a format number mean, and the strips.
#ifndef ZV_FILE_TIFF_WRITE_H
#define ZV_FILE_TIFF_WRITE_H

#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/tiff_handle.h"

namespace zvfile::tiff {

// Writes the page and its directory behind what the handle's file has, the request's stamp as a sub-image; metadata stands in
// for the request's. `numbered` marks it as a page of several. Gives the row source's code when rows cannot be had.
int32_t WritePage(Handle& handle, const SaveRequest& request, const Metadata& metadata, RowSource& rows, bool numbered);
// True when the page alone could grow past the 4 GiB that 32-bit offsets reach.
bool NeedsBigOffsets(const RowSource& rows);
bool IsBigFormat(int32_t format);

}  // namespace zvfile::tiff

#endif
