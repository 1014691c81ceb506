// The small picture that a save puts beside the image.
#ifndef ZV_FILE_STAMP_H
#define ZV_FILE_STAMP_H

#include "services/zvfile/zvfile.h"

namespace zvfile {

// Owns the stamp's pixels.
class StampBitmap {
 public:
  StampBitmap();
  ~StampBitmap();
  StampBitmap(const StampBitmap&) = delete;
  StampBitmap& operator=(const StampBitmap&) = delete;

  // An upright reduction of the bitmap that fits the option's stamp size and keeps the shape, 24 bits in BGR order or 8 bits
  // grey. Null when the bitmap has no pixels in reach or memory runs out: a file can do without its stamp.
  const BITMAPHANDLE* Make(const BITMAPHANDLE& bitmap, const SAVEFILEOPTION& option);

 private:
  BITMAPHANDLE stamp_;
};

}  // namespace zvfile

#endif
