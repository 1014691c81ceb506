// Zorvane CMP: a container of pages, each a JPEG stream with an optional stamp, itself a small JPEG stream. The format is
// written down in docs/cmp-format.md. Pages are copied, not recoded, when others change.
#include <algorithm>
#include <cstring>

#include "services/zvfile/codecs/jpeg.h"

namespace zvfile {
namespace {

constexpr char kSignature[] = "ZCMP\r\n\x1A\n";
constexpr size_t kSignatureBytes = 8;
constexpr uint32_t kVersion = 1;
constexpr uint32_t kHeaderBytes = 32;
constexpr uint32_t kEntryBytes = 48;

// --- State ---

// An entry of the page index.
struct PageEntry {
  uint64_t streamOffset = 0;
  uint64_t streamBytes = 0;
  uint64_t stampOffset = 0;
  uint32_t stampBytes = 0;  // 0: no stamp
  int32_t width = 0;
  int32_t height = 0;
  int32_t bits = 0;  // 8 or 24
  int32_t xResolution = 0;
  int32_t yResolution = 0;
};

uint64_t Le(const uint8_t* bytes, int count) {
  uint64_t value = 0;
  for (int i = 0; i < count; ++i) value |= uint64_t{bytes[i]} << (8 * i);
  return value;
}

bool Inside(uint64_t offset, uint64_t bytes, uint64_t size) {
  return offset >= kHeaderBytes && offset <= size && bytes <= size - offset;
}

int32_t ReadIndex(ByteSource& source, const Limits& limits, std::vector<PageEntry>& pages) {
  uint8_t head[kHeaderBytes];
  if (source.ReadAt(0, head, sizeof head) != sizeof head) return ERROR_FILE_DAMAGED;
  if (Le(head + 8, 2) != kVersion || Le(head + 10, 2) != kHeaderBytes) return ERROR_FILE_FORMAT;
  const uint64_t count = Le(head + 12, 4);
  const uint64_t offset = Le(head + 16, 8);
  if (count < 1) return ERROR_FILE_DAMAGED;
  if (count > static_cast<uint64_t>(limits.maxPages)) return ERROR_LIMIT_EXCEEDED;
  if (!Inside(offset, count * kEntryBytes, source.Size())) return ERROR_FILE_DAMAGED;
  std::vector<uint8_t> index(static_cast<size_t>(count) * kEntryBytes);
  if (source.ReadAt(offset, index.data(), index.size()) != index.size()) return ERROR_FILE_DAMAGED;
  for (const uint8_t* at = index.data(); at < index.data() + index.size(); at += kEntryBytes) {
    PageEntry page;
    page.streamOffset = Le(at, 8);
    page.streamBytes = Le(at + 8, 8);
    page.stampOffset = Le(at + 16, 8);
    page.stampBytes = static_cast<uint32_t>(Le(at + 24, 4));
    page.width = static_cast<int32_t>(Le(at + 28, 4));
    page.height = static_cast<int32_t>(Le(at + 32, 4));
    page.bits = static_cast<int32_t>(Le(at + 36, 2));
    page.xResolution = static_cast<int32_t>(Le(at + 40, 4));
    page.yResolution = static_cast<int32_t>(Le(at + 44, 4));
    const bool stampFits = page.stampBytes == 0 || Inside(page.stampOffset, page.stampBytes, source.Size());
    if (!Inside(page.streamOffset, page.streamBytes, source.Size()) || !stampFits) return ERROR_FILE_DAMAGED;
    pages.push_back(page);
  }
  return SUCCESS;
}

int32_t FindPage(ByteSource& source, const LoadRequest& request, std::vector<PageEntry>& pages, PageEntry& page) {
  const int32_t result = ReadIndex(source, request.limits, pages);
  if (result != SUCCESS) return result;
  if (static_cast<size_t>(request.page) > pages.size()) return ERROR_PAGE_MISSING;
  page = pages[static_cast<size_t>(request.page) - 1];
  return SUCCESS;
}

// The page's place in the container, on top of what its stream says.
void Describe(const PageEntry& page, const LoadRequest& request, size_t pageCount, ImageHeader& header) {
  header.format = FMT_CMP;
  header.compression = "JPEG";
  header.pageNumber = request.page;
  header.totalPages = static_cast<int32_t>(pageCount);
  header.xResolution = page.xResolution;
  header.yResolution = page.yResolution;
  header.viewPerspective = VIEW_TOP_LEFT;
  header.flags &= ~(FILEINFO_HAS_STAMP | FILEINFO_PROGRESSIVE);
  if (page.stampBytes > 0) header.flags |= FILEINFO_HAS_STAMP;
}

LoadRequest StreamRequest(const LoadRequest& request) {
  LoadRequest inner = request;
  inner.page = 1;
  return inner;
}

// --- Info ---

int32_t CmpInfo(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  std::vector<PageEntry> pages;
  PageEntry page;
  int32_t result = FindPage(source, request, pages, page);
  if (result != SUCCESS) return result;
  SubSource stream(source, page.streamOffset, page.streamBytes);
  result = ReadJpegHeader(stream, StreamRequest(request), header);
  if (result == SUCCESS) Describe(page, request, pages.size(), header);
  return result;
}

// --- Load ---

int32_t CmpLoad(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  std::vector<PageEntry> pages;
  PageEntry page;
  const int32_t result = FindPage(source, request, pages, page);
  if (result != SUCCESS) return result;
  SubSource stream(source, page.streamOffset, page.streamBytes);
  return LoadJpegStream(stream, StreamRequest(request), sink,
                        [&](ImageHeader& header) { Describe(page, request, pages.size(), header); });
}

int32_t CmpStamp(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  std::vector<PageEntry> pages;
  PageEntry page;
  const int32_t result = FindPage(source, request, pages, page);
  if (result != SUCCESS) return result;
  if (page.stampBytes == 0) return ERROR_NO_STAMP;
  SubSource stream(source, page.stampOffset, page.stampBytes);
  return LoadJpegStream(stream, StreamRequest(request), sink, [](ImageHeader& header) { header.format = FMT_CMP; });
}

// --- Save ---

// libjpeg's quality for the QFactor of this format: the nine named levels, -1 (best) to -9 (smallest), or 2 to 255.
int32_t CmpQuality(int32_t qFactor) {
  constexpr int32_t kLevels[] = {98, 94, 90, 85, 78, 70, 60, 45, 30};
  constexpr int32_t kLevelCount = static_cast<int32_t>(std::size(kLevels));
  return qFactor < 0 ? kLevels[std::min(-qFactor, kLevelCount) - 1] : JpegQuality(qFactor);
}

bool CopyPage(ByteSource& existing, ByteSink& sink, PageEntry page, std::vector<PageEntry>& written) {
  const PageEntry old = page;
  page.stampOffset = page.stampBytes ? sink.Tell() : 0;
  if (page.stampBytes && !sink.CopyFrom(existing, old.stampOffset, old.stampBytes)) return false;
  page.streamOffset = sink.Tell();
  if (!sink.CopyFrom(existing, old.streamOffset, old.streamBytes)) return false;
  written.push_back(page);
  return true;
}

int32_t WriteNewPage(ByteSink& sink, const SaveRequest& request, RowSource& rows, std::vector<PageEntry>& written) {
  constexpr int32_t kFullColor = 92;  // from here on chroma is not sub-sampled
  PageEntry page;
  page.width = rows.Width();
  page.height = rows.Height();
  page.bits = BitsPerPixel(rows.GetLayout());
  page.xResolution = request.xResolution;
  page.yResolution = request.yResolution;
  if (request.stamp) {
    const std::vector<uint8_t> stamp = EncodeStamp(*request.stamp);
    page.stampOffset = sink.Tell();
    page.stampBytes = static_cast<uint32_t>(stamp.size());
    sink.Write(stamp.data(), stamp.size());
  }
  page.streamOffset = sink.Tell();
  JpegSaveSettings settings;
  settings.quality = CmpQuality(request.quality);
  settings.horizontalSampling = settings.verticalSampling = settings.quality >= kFullColor ? 1 : 2;
  settings.progressive = request.option.passes != 0;
  settings.xResolution = request.xResolution;
  settings.yResolution = request.yResolution;
  settings.metadata = &request.metadata;
  const int32_t result = SaveJpegStream(sink, settings, rows);
  page.streamBytes = sink.Tell() - page.streamOffset;
  written.push_back(page);
  return result;
}

bool WriteIndex(ByteSink& sink, const std::vector<PageEntry>& pages) {
  const uint64_t index = sink.Tell();
  for (const PageEntry& page : pages) {
    sink.WriteLe(page.streamOffset, 8);
    sink.WriteLe(page.streamBytes, 8);
    sink.WriteLe(page.stampOffset, 8);
    sink.WriteLe(page.stampBytes, 4);
    sink.WriteLe(static_cast<uint32_t>(page.width), 4);
    sink.WriteLe(static_cast<uint32_t>(page.height), 4);
    sink.WriteLe(static_cast<uint32_t>(page.bits), 2);
    sink.WriteLe(0, 2);
    sink.WriteLe(static_cast<uint32_t>(page.xResolution), 4);
    sink.WriteLe(static_cast<uint32_t>(page.yResolution), 4);
  }
  sink.Seek(0);
  sink.Write(kSignature, kSignatureBytes);
  sink.WriteLe(kVersion, 2);
  sink.WriteLe(kHeaderBytes, 2);
  sink.WriteLe(pages.size(), 4);
  sink.WriteLe(index, 8);
  sink.WriteLe(0, 8);
  return !sink.Failed();
}

int32_t CmpSave(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  std::vector<PageEntry> old, written;
  if (request.existing) {
    const int32_t result = ReadIndex(*request.existing, Limits(), old);
    if (result != SUCCESS) return result;
  }
  const size_t wanted = static_cast<size_t>(request.page) - 1;
  if (request.pageOp == PageOp::kReplace && request.existing && wanted >= old.size()) return ERROR_PAGE_MISSING;
  const bool inPlace = request.pageOp == PageOp::kReplace || request.pageOp == PageOp::kInsert;
  const size_t place = inPlace ? std::min(wanted, old.size()) : old.size();
  const uint8_t zeros[kHeaderBytes] = {};
  sink.Write(zeros, sizeof zeros);
  for (size_t i = 0; i <= old.size(); ++i) {
    if (i == place) {
      const int32_t result = WriteNewPage(sink, request, rows, written);
      if (result != SUCCESS) return result;
      if (request.pageOp == PageOp::kReplace) continue;
    }
    if (i < old.size() && !CopyPage(*request.existing, sink, old[i], written)) {
      return sink.Failed() ? ERROR_FILE_WRITE : ERROR_FILE_READ;
    }
  }
  return WriteIndex(sink, written) ? SUCCESS : ERROR_FILE_WRITE;
}

int32_t CmpDeletePage(ByteSource& existing, int32_t page, ByteSink& sink) {
  std::vector<PageEntry> old, written;
  const int32_t result = ReadIndex(existing, Limits(), old);
  if (result != SUCCESS) return result;
  const size_t dropped = static_cast<size_t>(page) - 1;
  if (dropped >= old.size()) return ERROR_PAGE_MISSING;
  if (old.size() == 1) return ERROR_FEATURE_UNSUPPORTED;
  const uint8_t zeros[kHeaderBytes] = {};
  sink.Write(zeros, sizeof zeros);
  for (size_t i = 0; i < old.size(); ++i) {
    if (i != dropped && !CopyPage(existing, sink, old[i], written))
      return sink.Failed() ? ERROR_FILE_WRITE : ERROR_FILE_READ;
  }
  return WriteIndex(sink, written) ? SUCCESS : ERROR_FILE_WRITE;
}

// --- Table row ---

constexpr FormatRow kFormats[] = {{FMT_CMP, "cmp", kSave8Gray | kSave24}, {FMT_CMP_OLD, "cmp", 0}};
constexpr Signature kSignatures[] = {{0, kSignatureBytes, kSignature}};

}  // namespace

const Codec kCmpCodec = {"Zorvane CMP", kFormats, kSignatures, "cmp",         kMultiPageSave, nullptr,
                         CmpInfo,       CmpLoad,  CmpSave,     CmpDeletePage, CmpStamp,       nullptr};

}  // namespace zvfile
