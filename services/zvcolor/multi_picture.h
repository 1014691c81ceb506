// JPEG files with further pictures behind the first (CIPA DC-007, "MPF"): thumbnails, depth and gain maps of cameras. An index
// in a segment of the first picture tells where they are, counted from within that segment, so it has to follow when the
// first picture grows or shrinks.
#pragma once

#include "services/zvcolor/profile_check.h"

namespace zvcolor {

// index: the segment's content behind its "MPF" mark, that is from its byte-order mark on. sizeChange is what the first picture
// grows by, offsetChange the part of it that lies behind the index. An index that cannot be read is left as it is.
void MoveFurtherPictures(Bytes& index, int64_t sizeChange, int64_t offsetChange);

}  // namespace zvcolor
