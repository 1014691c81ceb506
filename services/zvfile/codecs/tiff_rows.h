// Gives the stored rows of a TIFF picture from the top, samples of a pixel side by side and in native byte order, however the file
// keeps them: strips or tiles, planes together or apart, compressed or not. Holds at most one strip or one row of tiles.
#ifndef ZV_FILE_TIFF_ROWS_H
#define ZV_FILE_TIFF_ROWS_H

#include <cstdint>
#include <memory>

#include "services/zvfile/byte_source.h"
#include "services/zvfile/codecs/tiff_page.h"

namespace zvfile::tiff {

class RowReader {
 public:
  virtual ~RowReader() = default;
  // Reads `count` rows from row `first` on, RowBytes apart. Rows are asked for once each and in order.
  virtual int32_t Read(uint32_t first, uint32_t count, uint8_t* rows) = 0;
  size_t RowBytes() const { return rowBytes_; }

  // ERROR_LIMIT_EXCEEDED when a strip or tile is beyond what fits memory, ERROR_FILE_DAMAGED when the sizes make no sense.
  static int32_t Make(Handle& handle, ByteSource& source, const Picture& picture, const Limits& limits,
                      std::unique_ptr<RowReader>& reader);

 protected:
  explicit RowReader(size_t rowBytes) : rowBytes_(rowBytes) {}
  const size_t rowBytes_;
};

}  // namespace zvfile::tiff

#endif
