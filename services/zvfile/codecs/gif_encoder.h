// Encodes one picture as a whole GIF file of a single frame, through giflib.
#ifndef ZV_FILE_GIF_ENCODER_H
#define ZV_FILE_GIF_ENCODER_H

#include "services/zvfile/codec.h"

namespace zvfile::gif {

// Rows are of 1, 4 or 8 bits, indexed or grey. ERROR_LIMIT_EXCEEDED above 65535 pixels a side; the row source's code when rows
// cannot be had.
int32_t Encode(ByteSink& sink, const SaveRequest& request, RowSource& rows);

}  // namespace zvfile::gif

#endif
