// Where a decoder puts its rows: the destination bitmap, through conversion to the depth and order that the caller asked for,
// and on to the caller's row callback, each row once and from the top. The sink belongs to the load operation; a decoder only
// borrows it. Any answer but SUCCESS is to be given back by the decoder at once.
//
// A decoder fills an ImageHeader, calls Begin, and then either
//  - asks Row(y) where to decode row y and says Commit(n) when the next n rows are complete, or
//  - hands rows of its own memory to Put.
// Rows come from the top. A format that delivers in another order (interlaced, bottom-up) begins with RowOrder::kAny: then
// Row(y) is valid for every y, in any order and any number of times, and Commit comes after the whole image is complete.
#ifndef ZV_FILE_ROW_SINK_H
#define ZV_FILE_ROW_SINK_H

#include <cstdint>
#include <vector>

#include "services/zvfile/limits.h"
#include "services/zvfile/pixel_layout.h"
#include "services/zvfile/zvfile.h"

namespace zvfile {

struct ImageHeader;

enum class RowOrder { kFromTop, kAny };

// What the caller of a load wants of the bitmap.
struct SinkRequest {
  BITMAPHANDLE* bitmap = nullptr;
  int32_t bitsPerPixel = 0;  // 0: the file's
  int32_t order = ORDER_BGR_OR_GRAY;
  uint32_t flags = LOADFILE_ALLOCATE | LOADFILE_STORE;
  bool upright = false;  // apply the view perspective
  FILELOADCALLBACK callback = nullptr;
  void* userData = nullptr;
  FILEINFO* info = nullptr;  // given to the callback, filled by Begin; never null
  Limits limits;
};

class RowSink {
 public:
  // The most rows that Row gives room for at once, counted from the first that is not committed.
  static constexpr int32_t kBatchRows = 16;

  explicit RowSink(const SinkRequest& request) : request_(request) {}
  RowSink(const RowSink&) = delete;
  RowSink& operator=(const RowSink&) = delete;

  // Checks limits, works out the destination and allocates it. ERROR_LIMIT_EXCEEDED, ERROR_OUT_OF_MEMORY,
  // ERROR_BAD_ARGUMENT (an own bitmap of the caller does not fit).
  int32_t Begin(const ImageHeader& header, RowOrder order = RowOrder::kFromTop);
  // True when the caller wants red first; decoders that can deliver either order spare a conversion by asking.
  bool WantsRgb() const { return request_.order == ORDER_RGB; }
  // The format number that the caller is told instead of the header's: for a stream of another codec inside a container.
  void ReportFormat(int32_t format) { reportedFormat_ = format; }
  // Room for PackedRowBytes of the header's layout. Row(y) to Row(y + n - 1) are not contiguous in general.
  uint8_t* Row(int32_t y);
  int32_t Commit(int32_t rows);
  // Row and Commit in one, for rows in the decoder's memory.
  int32_t Put(const uint8_t* rows, ptrdiff_t stride, int32_t count);
  int32_t CommittedRows() const { return committed_; }
  // For what a file says behind its rows: takes over metadata and perspective of the header.
  int32_t Amend(const ImageHeader& header);
  // Called by the load operation after the decoder: late conversions, and the check that every row came.
  int32_t Finish();

 private:
  enum class Mode {
    kDirect,  // the file's layout is the bitmap's
    kConvert  // rows are converted on their way
  };

  void ChooseTarget(const ImageHeader& header);
  int32_t PrepareBitmap(const ImageHeader& header);
  int32_t AttachHeader(const ImageHeader& header);
  bool DecodesIntoBitmap() const;
  ptrdiff_t TargetStride() const;
  uint8_t* TargetRow(int32_t y);
  int32_t RowStored();
  int32_t Deliver();
  int32_t FinishLate();

  SinkRequest request_;
  RowOrder rowOrder_ = RowOrder::kFromTop;
  Mode mode_ = Mode::kDirect;
  bool begun_ = false;
  bool stored_ = true;  // rows stay in the bitmap
  bool late_ = false;   // the whole image is turned or converted before it is delivered
  Layout source_ = Layout::kBgr24;
  Layout target_ = Layout::kBgr24;  // of the bitmap while rows come in
  int32_t reportedFormat_ = FMT_UNKNOWN;
  int32_t finalBits_ = 0;  // depth and order at the end, when late
  int32_t finalOrder_ = ORDER_BGR;
  int32_t width_ = 0;
  int32_t height_ = 0;
  int32_t committed_ = 0;
  int32_t delivered_ = 0;
  RowConverter converter_;
  std::vector<uint8_t> scratch_;  // rows of the source layout: a batch, or the image with RowOrder::kAny
  size_t scratchStride_ = 0;
  std::vector<uint8_t> window_;  // converted rows when they are not stored: a batch
};

}  // namespace zvfile

#endif
