#include "services/zvfile/row_sink.h"

#include <algorithm>
#include <cstring>

#include "services/zvfile/codec.h"
#include "services/zvfile/file_info.h"

namespace zvfile {
namespace {

bool Same(const BITMAPHANDLE& bitmap, int32_t width, int32_t height, int32_t bits) {
  return (bitmap.flags & BITMAP_FLAG_ALLOCATED) && bitmap.data && bitmap.width == width && bitmap.height == height &&
         bitmap.bitsPerPixel == bits;
}

}  // namespace

// The depth and order that the rows get on their way in, and what is left to be done when all of them are there.
void RowSink::ChooseTarget(const ImageHeader& header) {
  source_ = header.layout;
  const bool rgb = WantsRgb();
  const Layout natural = BitmapLayout(source_, rgb);
  const bool grayFile = IsGray(natural);
  const bool grayWanted = request_.order == ORDER_GRAY || (request_.order == ORDER_BGR_OR_GRAY && grayFile);
  int32_t bits = request_.bitsPerPixel;
  if (bits == 0) {
    bits = BitsPerPixel(natural);
    if (grayWanted && !grayFile) bits = IsDeep(natural) ? 16 : 8;
    if (!grayWanted && natural == Layout::kGray16) bits = 48;
  }
  // A grey image asked for in colour order at 8 bits is the same bytes under a grey palette.
  const bool gray8 = bits == 8 && (grayFile || grayWanted);
  const Layout wanted = LayoutForDepth(bits, grayWanted || gray8, HasAlpha(natural), rgb);
  finalOrder_ = grayWanted && (bits == 8 || bits == 16) ? ORDER_GRAY : (rgb ? ORDER_RGB : ORDER_BGR);
  finalBits_ = bits;
  const bool possible = RowConverter::Possible(source_, wanted);
  target_ = possible ? wanted : natural;
  mode_ = source_ == target_ ? Mode::kDirect : Mode::kConvert;
  const bool turn = request_.upright && header.viewPerspective > VIEW_TOP_LEFT;
  late_ = !possible || turn;
}

int32_t RowSink::PrepareBitmap(const ImageHeader& header) {
  BITMAPHANDLE& bitmap = *request_.bitmap;
  const int32_t bits = BitsPerPixel(target_);
  const int32_t order =
      late_ ? (IsGray(target_) ? ORDER_GRAY : (IsRgbOrder(target_) ? ORDER_RGB : ORDER_BGR)) : finalOrder_;
  if (!(request_.flags & LOADFILE_ALLOCATE)) {
    if (late_)
      return ERROR_FEATURE_UNSUPPORTED;  // the caller's memory has the final shape, not the one on the way there
    if (stored_ && !Same(bitmap, header.width, header.height, bits)) return ERROR_BAD_ARGUMENT;
    if (stored_) return SUCCESS;
  }
  int32_t result = SUCCESS;
  if (stored_) {
    uint32_t memory = MEMORY_CONVENTIONAL;
    GetDefaultBitmapMemoryFlags(&memory);
    Palette palette = header.palette;
    if (IsIndexed(target_)) palette.resize(size_t{1} << bits, ZVPALETTEENTRY{0, 0, 0, 255});
    result = CreateBitmap(&bitmap, sizeof bitmap, memory, header.width, header.height, bits, order,
                          IsIndexed(target_) ? palette.data() : nullptr, header.viewPerspective, nullptr, 0);
  } else {
    result = InitBitmapHandle(&bitmap, sizeof bitmap, header.width, header.height, bits);
    bitmap.colorOrder = order;
    bitmap.viewPerspective = header.viewPerspective;
  }
  if (result != SUCCESS) return result;
  return AttachHeader(header);
}

int32_t RowSink::AttachHeader(const ImageHeader& header) {
  BITMAPHANDLE& bitmap = *request_.bitmap;
  if (HasAlpha(target_)) bitmap.flags |= BITMAP_FLAG_ALPHA;
  bitmap.xResolution = request_.info->xResolution;
  bitmap.yResolution = request_.info->yResolution;
  return stored_ ? AttachMetadata(bitmap, header.metadata) : SUCCESS;
}

int32_t RowSink::Begin(const ImageHeader& header, RowOrder order) {
  ChooseTarget(header);
  width_ = header.width;
  height_ = header.height;
  const int32_t widest = std::max(BitsPerPixel(source_), BitsPerPixel(target_));
  int32_t result = request_.limits.CheckImage(width_, height_, widest);
  if (result != SUCCESS) return result;
  FillFileInfo(header, *request_.info);
  if (reportedFormat_ != FMT_UNKNOWN) request_.info->format = reportedFormat_;
  stored_ = (request_.flags & LOADFILE_STORE) != 0 || late_;
  result = PrepareBitmap(header);
  if (result != SUCCESS) return result;
  begun_ = true;
  converter_ = RowConverter(source_, target_, width_, header.palette);
  rowOrder_ = order;
  if (!DecodesIntoBitmap()) {
    scratchStride_ = (PackedRowBytes(source_, width_) + 7) / 8 * 8;
    const int32_t rows = order == RowOrder::kAny ? height_ : std::min(height_, kBatchRows);
    scratch_.resize(scratchStride_ * static_cast<size_t>(rows));
  }
  if (!stored_) window_.resize(static_cast<size_t>(TargetStride()) * kBatchRows);
  return SUCCESS;
}

bool RowSink::DecodesIntoBitmap() const { return mode_ == Mode::kDirect && stored_; }

ptrdiff_t RowSink::TargetStride() const {
  return stored_ ? request_.bitmap->bytesPerLine
                 : static_cast<ptrdiff_t>((PackedRowBytes(target_, width_) + 3) / 4 * 4);
}

uint8_t* RowSink::TargetRow(int32_t y) {
  if (!stored_) return window_.data() + TargetStride() * (y % kBatchRows);
  const BITMAPHANDLE& bitmap = *request_.bitmap;
  const int32_t line = (bitmap.flags & BITMAP_FLAG_TOP_DOWN) ? y : height_ - 1 - y;
  return bitmap.data + static_cast<ptrdiff_t>(bitmap.bytesPerLine) * line;
}

uint8_t* RowSink::Row(int32_t y) {
  if (DecodesIntoBitmap()) return TargetRow(y);
  const int32_t line = rowOrder_ == RowOrder::kAny ? y : y % kBatchRows;
  return scratch_.data() + scratchStride_ * static_cast<size_t>(line);
}

int32_t RowSink::Commit(int32_t rows) {
  if (!begun_ || rows < 0 || rows > height_ - committed_) return ERROR_FILE_DAMAGED;
  for (int32_t i = 0; i < rows; ++i) {
    if (!DecodesIntoBitmap()) converter_.Convert(Row(committed_), TargetRow(committed_));
    const int32_t result = RowStored();
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

int32_t RowSink::Put(const uint8_t* rows, ptrdiff_t stride, int32_t count) {
  if (!begun_ || count < 0 || count > height_ - committed_) return ERROR_FILE_DAMAGED;
  for (int32_t i = 0; i < count; ++i, rows += stride) {
    converter_.Convert(rows, TargetRow(committed_));
    const int32_t result = RowStored();
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

int32_t RowSink::RowStored() {
  ++committed_;
  const bool batchFull = committed_ % kBatchRows == 0 || committed_ == height_;
  return batchFull && !late_ ? Deliver() : SUCCESS;
}

// Hands the rows [delivered_, committed_) on. They lie one behind the other, since the batches begin at multiples.
int32_t RowSink::Deliver() {
  const int32_t first = delivered_;
  delivered_ = committed_;
  if (request_.callback) {
    uint8_t* rows = TargetRow(stored_ && !(request_.bitmap->flags & BITMAP_FLAG_TOP_DOWN) ? committed_ - 1 : first);
    const int32_t answer = request_.callback(request_.info, request_.bitmap, rows, request_.flags, first,
                                             committed_ - first, request_.userData);
    if (answer != SUCCESS) return answer;
  }
  const int32_t before = static_cast<int32_t>(int64_t{first} * 100 / height_);
  const int32_t after = static_cast<int32_t>(int64_t{committed_} * 100 / height_);
  return before == after ? SUCCESS : ReportStatus(after);
}

int32_t RowSink::Amend(const ImageHeader& header) {
  BITMAPHANDLE& bitmap = *request_.bitmap;
  // Rows that were to come upright have been delivered: for them it is too late to turn.
  if (!request_.upright) bitmap.viewPerspective = request_.info->viewPerspective = header.viewPerspective;
  return stored_ ? AttachMetadata(bitmap, header.metadata) : SUCCESS;
}

int32_t RowSink::Finish() {
  if (!begun_ || committed_ != height_) return ERROR_FILE_DAMAGED;
  return late_ ? FinishLate() : SUCCESS;
}

int32_t RowSink::FinishLate() {
  BITMAPHANDLE& bitmap = *request_.bitmap;
  int32_t result = SUCCESS;
  if (request_.upright) result = ApplyViewPerspective(&bitmap);
  const bool convert = bitmap.bitsPerPixel != finalBits_ || bitmap.colorOrder != finalOrder_;
  if (result == SUCCESS && convert) result = ConvertBitmapDepth(&bitmap, finalBits_, finalOrder_, nullptr, 1);
  if (result != SUCCESS) return result;
  FILEINFO& info = *request_.info;
  info.width = width_ = bitmap.width;
  info.height = height_ = bitmap.height;
  info.viewPerspective = bitmap.viewPerspective;
  committed_ = 0;
  while (committed_ < height_ && result == SUCCESS) {
    committed_ = std::min(committed_ + kBatchRows, height_);
    result = Deliver();
  }
  if (!(request_.flags & LOADFILE_STORE)) FreeBitmap(&bitmap);
  return result;
}

}  // namespace zvfile
