// TIFF over libtiff: one row of the codec table for all its compressions. The parts stand beside this file: tiff_directory and
// tiff_copy (the file as directories), tiff_handle (the library), tiff_page, tiff_rows and tiff_samples (reading), tiff_write,
// tiff_metadata.
#include <algorithm>
#include <memory>

#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/tiff_copy.h"
#include "services/zvfile/codecs/tiff_directory.h"
#include "services/zvfile/codecs/tiff_handle.h"
#include "services/zvfile/codecs/tiff_metadata.h"
#include "services/zvfile/codecs/tiff_page.h"
#include "services/zvfile/codecs/tiff_rows.h"
#include "services/zvfile/codecs/tiff_samples.h"
#include "services/zvfile/codecs/tiff_write.h"

namespace zvfile {
namespace tiff {
namespace {

// --- State ---

// A page of an open file, found and described.
struct OpenPage {
  explicit OpenPage(ByteSource& source) : stream(source) {}
  Stream stream;
  std::unique_ptr<Handle> handle;
  Directory directory;
  std::vector<uint64_t> thumbnails;  // directories of reduced pictures that belong to the page
  Picture picture;
  ImageHeader header;
};

// How many bytes of pixels one compressed byte can become at most; 0 where a blank row costs next to nothing.
uint32_t ExpansionOf(uint16_t compression) {
  switch (compression) {
    case COMPRESSION_NONE: return 1;
    case COMPRESSION_PACKBITS: return 64;
    case COMPRESSION_LZW: return 3000;
    case COMPRESSION_DEFLATE:
    case COMPRESSION_ADOBE_DEFLATE: return 1100;
    default: return 0;
  }
}

int32_t OpenStream(ByteSource& source, OpenPage& page) {
  if (!page.stream.Open()) return ERROR_FILE_FORMAT;
  page.handle = Handle::OpenForReading(source);
  return page.handle ? SUCCESS : ERROR_FILE_DAMAGED;
}

// Sets page.directory by number, or by the position that an earlier page gave.
int32_t FindPage(const LoadRequest& request, OpenPage& page) {
  const size_t number = static_cast<size_t>(std::max(request.page, 1));
  const size_t most = static_cast<size_t>(request.limits.maxPages);
  std::vector<Page> pages;
  if (request.filePosition != 0) {
    Directory next;
    if (!page.stream.ReadDirectory(request.filePosition, page.directory)) return ERROR_FILE_DAMAGED;
    page.header.nextPosition = page.stream.ReadDirectory(page.directory.next, next) ? page.directory.next : 0;
  } else {
    if (number > most) return ERROR_PAGE_MISSING;
    if (!WalkPages(page.stream, request.countPages ? most : number + 1, pages)) return ERROR_FILE_DAMAGED;
    if (number > pages.size()) return ERROR_PAGE_MISSING;
    const Page& found = pages[number - 1];
    if (!page.stream.ReadDirectory(found.offset, page.directory)) return ERROR_FILE_DAMAGED;
    page.thumbnails = found.thumbnails;
    page.header.nextPosition = number < pages.size() ? pages[number].groupStart : 0;
  }
  page.header.pageNumber = static_cast<int32_t>(number);
  page.header.totalPages = request.countPages ? static_cast<int32_t>(std::max<size_t>(pages.size(), 1)) : 1;
  return SUCCESS;
}

// Makes the directory at an offset the handle's current one and describes it.
int32_t DescribeAt(ByteSource& source, const LoadRequest& request, uint64_t offset, OpenPage& page) {
  TIFF* tiff = page.handle->Get();
  if (!TIFFSetSubDirectory(tiff, offset)) return ERROR_FILE_DAMAGED;
  page.picture = Picture();
  int32_t result = DescribePicture(tiff, page.picture);
  if (result != SUCCESS) return result;
  const Picture& picture = page.picture;
  result = request.limits.CheckImage(picture.width, picture.height, BitsPerPixel(picture.layout));
  if (result != SUCCESS) return result;
  const uint32_t expansion = ExpansionOf(picture.compression);
  const uint32_t storedBits = uint32_t{picture.bits} * picture.samples;
  if (storedBits > INT32_MAX) return ERROR_LIMIT_EXCEEDED;
  result = request.limits.CheckImage(picture.width, picture.height, static_cast<int32_t>(storedBits));
  if (result != SUCCESS) return result;
  // Chroma that is stored once for several pixels may make the file smaller than its pixels.
  if (expansion != 0 && picture.decoding != Decoding::kLibrary) {
    result = request.limits.CheckPlausible(picture.width, picture.height, static_cast<int32_t>(storedBits),
                                           source.Size(), expansion);
    if (result != SUCCESS) return result;
  }
  FillHeader(tiff, picture, page.stream.GetVariant().big, page.directory.Find(kExifIfd) != nullptr, page.header);
  return SUCCESS;
}

// The reduced pictures of a page: its sub-images and those that follow it in the chain.
std::vector<Directory> StampCandidates(OpenPage& page) {
  std::vector<uint64_t> offsets;
  if (const Entry* entry = page.directory.Find(kSubIfds)) {
    constexpr uint64_t kMost = 64;
    uint64_t offset = 0;
    for (uint64_t i = 0; i < std::min(entry->count, kMost); ++i) {
      if (page.stream.Number(*entry, i, offset)) offsets.push_back(offset);
    }
  }
  offsets.insert(offsets.end(), page.thumbnails.begin(), page.thumbnails.end());
  std::vector<Directory> candidates;
  Directory directory;
  for (const uint64_t offset : offsets) {
    if (page.stream.ReadDirectory(offset, directory) && IsThumbnail(page.stream, directory))
      candidates.push_back(directory);
  }
  return candidates;
}

int32_t Open(ByteSource& source, const LoadRequest& request, OpenPage& page) {
  int32_t result = OpenStream(source, page);
  if (result == SUCCESS) result = FindPage(request, page);
  if (result == SUCCESS) result = DescribeAt(source, request, page.directory.offset, page);
  if (result != SUCCESS) return result;
  if (!StampCandidates(page).empty()) page.header.flags |= FILEINFO_HAS_STAMP;
  return SUCCESS;
}

// --- Probe: the signature of four bytes decides ---

// --- Info ---

int32_t Info(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  OpenPage page(source);
  const int32_t result = Open(source, request, page);
  if (result != SUCCESS) return result;
  TIFF* tiff = page.handle->Get();
  uint32_t size = 0;
  const void* profile = nullptr;
  if (TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &size, &profile)) page.header.flags |= FILEINFO_HAS_PROFILE;
  if (request.wantMetadata) ReadMetadata(tiff, page.stream, page.directory, request.limits, page.header.metadata);
  header = std::move(page.header);
  return SUCCESS;
}

// --- Load ---

int32_t LoadRows(ByteSource& source, const LoadRequest& request, OpenPage& page, RowSink& sink) {
  const Picture& picture = page.picture;
  std::unique_ptr<RowReader> reader;
  int32_t result = RowReader::Make(*page.handle, source, picture, request.limits, reader);
  if (result != SUCCESS) return result;
  RowTransform transform(picture, page.header.metadata.profile);
  // What inks and Lab became is sRGB, so their profile has done its work.
  if (picture.decoding == Decoding::kInks || picture.decoding == Decoding::kLab) page.header.metadata.profile.clear();
  if (!page.header.metadata.profile.empty()) page.header.flags |= FILEINFO_HAS_PROFILE;
  result = sink.Begin(page.header);
  if (result != SUCCESS) return result;
  const size_t storedBytes = reader->RowBytes(), rowBytes = PackedRowBytes(picture.layout, page.header.width);
  const uint32_t rows = std::min<uint32_t>(RowSink::kBatchRows, picture.height);
  std::vector<uint8_t> stored(storedBytes * rows), converted(transform.IsIdentity() ? 0 : rowBytes * rows);
  for (uint32_t first = 0; first < picture.height; first += rows) {
    const uint32_t count = std::min(rows, picture.height - first);
    result = reader->Read(first, count, stored.data());
    if (result != SUCCESS) return result;
    if (transform.IsIdentity()) {
      result = sink.Put(stored.data(), static_cast<ptrdiff_t>(storedBytes), static_cast<int32_t>(count));
    } else {
      for (uint32_t y = 0; y < count; ++y) transform.Convert(&stored[y * storedBytes], &converted[y * rowBytes]);
      result = sink.Put(converted.data(), static_cast<ptrdiff_t>(rowBytes), static_cast<int32_t>(count));
    }
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

int32_t Load(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  OpenPage page(source);
  const int32_t result = Open(source, request, page);
  if (result != SUCCESS) return result;
  ReadMetadata(page.handle->Get(), page.stream, page.directory, request.limits, page.header.metadata);
  return LoadRows(source, request, page, sink);
}

// --- Save ---

// Starts the new file with the pages that stay, byte order and offset width included.
int32_t CopyOldPages(ByteSink& sink, const SaveRequest& request, Variant& variant, size_t& kept) {
  Stream old(*request.existing);
  std::vector<Page> pages;
  if (!old.Open() || !WalkPages(old, SIZE_MAX, pages)) return ERROR_FILE_DAMAGED;
  variant = old.GetVariant();
  const size_t page = static_cast<size_t>(std::max(request.page, 1));
  kept = pages.size();
  if (request.pageOp == PageOp::kInsert && page > pages.size() + 1) return ERROR_PAGE_MISSING;
  if (request.pageOp != PageOp::kReplace) {
    // The file stays as it is byte for byte and the new page goes behind it, so that nothing in it can be lost.
    if (!sink.CopyFrom(*request.existing, 0, request.existing->Size())) return ERROR_FILE_WRITE;
    const bool odd = sink.Size() % 2 != 0;
    return !odd || sink.Write("", 1) ? SUCCESS : ERROR_FILE_WRITE;
  }
  if (page > pages.size()) return ERROR_PAGE_MISSING;
  --kept;
  return kept == 0 ? SUCCESS : CopyPagesExcept(old, pages, page - 1, sink);
}

// What the page to be written says beside its pixels.
Metadata PageMetadata(const SaveRequest& request, const RowSource& rows) {
  Metadata metadata = request.metadata;
  if (!ProfileFits(metadata.profile, IsGray(rows.GetLayout()))) metadata.profile.clear();
  if (!metadata.exif.empty()) {
    const ExifTarget target = {rows.Width(), rows.Height(), request.xResolution, request.yResolution, SIZE_MAX};
    metadata.exif = BuildExif(metadata.exif, {}, {}, target);
  }
  return metadata;
}

int32_t Save(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  Variant variant = {.big = IsBigFormat(request.format) || NeedsBigOffsets(rows), .bigEndian = false};
  size_t kept = 0;
  if (request.existing && request.pageOp != PageOp::kOverwrite) {
    const int32_t copied = CopyOldPages(sink, request, variant, kept);
    if (copied != SUCCESS) return copied;
  }
  const std::unique_ptr<Handle> handle = Handle::OpenForWriting(sink, variant, kept > 0);
  if (!handle) return ERROR_FILE_WRITE;
  const Metadata metadata = PageMetadata(request, rows);
  int32_t result = WritePage(*handle, request, metadata, rows, kept > 0);
  handle->Close();
  if (result == SUCCESS && handle->Errors() > 0) result = ERROR_FILE_WRITE;
  if (result == SUCCESS) result = AttachExif(sink, metadata);
  const bool placed = request.pageOp == PageOp::kInsert || request.pageOp == PageOp::kReplace;
  if (result == SUCCESS && kept > 0 && placed)
    result = MoveLastPageTo(sink, static_cast<size_t>(std::max(request.page, 1)) - 1);
  if (result == SUCCESS && kept > 0) result = RenumberPages(sink);
  return result;
}

// --- Pages, stamp ---

int32_t DeletePage(ByteSource& existing, int32_t page, ByteSink& sink) {
  Stream stream(existing);
  std::vector<Page> pages;
  if (!stream.Open() || !WalkPages(stream, SIZE_MAX, pages)) return ERROR_FILE_DAMAGED;
  if (page < 1 || static_cast<size_t>(page) > pages.size()) return ERROR_PAGE_MISSING;
  if (pages.size() == 1) return ERROR_FEATURE_UNSUPPORTED;
  const int32_t result = CopyPagesExcept(stream, pages, static_cast<size_t>(page) - 1, sink);
  return result == SUCCESS ? RenumberPages(sink) : result;
}

// An Exif thumbnail is a JPEG stream that the directory points to.
int32_t LoadJpegThumbnail(ByteSource& source, Stream& stream, const Directory& directory, const LoadRequest& request,
                          RowSink& sink) {
  const uint64_t offset = stream.NumberOr(directory, kJpegStream, 0);
  const uint64_t size = stream.NumberOr(directory, kJpegStreamLength, 0);
  if (offset == 0 || size == 0 || offset >= source.Size() || size > source.Size() - offset) return ERROR_NO_STAMP;
  SubSource jpeg(source, offset, size);
  LoadRequest plain = request;
  plain.page = 1;
  plain.filePosition = 0;
  return kJpegCodec.load(jpeg, plain, sink);
}

// The smallest reduced picture there is: those of pyramids can be nearly as large as the image.
int32_t Stamp(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  OpenPage page(source);
  int32_t result = OpenStream(source, page);
  if (result == SUCCESS) result = FindPage(request, page);
  if (result != SUCCESS) return result;
  std::vector<Directory> candidates = StampCandidates(page);
  std::sort(candidates.begin(), candidates.end(), [&](const Directory& a, const Directory& b) {
    return page.stream.NumberOr(a, kWidth, 0) < page.stream.NumberOr(b, kWidth, 0);
  });
  for (const Directory& directory : candidates) {
    const bool pixels = directory.Find(kStripOffsets) || directory.Find(kTileOffsets);
    if (!pixels) return LoadJpegThumbnail(source, page.stream, directory, request, sink);
    page.directory = directory;
    result = DescribeAt(source, request, directory.offset, page);
    if (result == SUCCESS) return LoadRows(source, request, page, sink);
  }
  return ERROR_NO_STAMP;
}

// --- The row of the codec table ---

constexpr uint32_t kSaveAny =
    kSave1 | kSave4 | kSave8Index | kSave8Gray | kSave16Gray | kSave24 | kSave32 | kSave48 | kSave64;

constexpr FormatRow kFormats[] = {
    {FMT_TIFF, "tif", kSaveAny},
    {FMT_TIFF_PACKBITS, "tif", kSaveAny},
    {FMT_TIFF_LZW, "tif", kSaveAny},
    {FMT_TIFF_DEFLATE, "tif", kSaveAny},
    {FMT_TIFF_LZMA, "tif", kSaveAny},
    {FMT_TIFF_ZSTD, "tif", kSaveAny},
    {FMT_BIGTIFF, "tif", kSaveAny},
    {FMT_BIGTIFF_DEFLATE, "tif", kSaveAny},
    {FMT_TIFF_WEBP, "tif", kSave24 | kSave32},
    {FMT_TIFF_JPEG, "tif", kSave8Gray | kSave24},
    {FMT_TIFF_JPEG_422, "tif", kSave24},
    {FMT_TIFF_JPEG_420, "tif", kSave24},
    {FMT_TIFF_CCITT, "tif", kSave1},
    {FMT_TIFF_G3_1D, "tif", kSave1},
    {FMT_TIFF_G3_2D, "tif", kSave1},
    {FMT_TIFF_G4, "tif", kSave1},
    {FMT_TIFF_YCC, "tif", kSave24},
    {FMT_EXIF_TIFF_RGB, "tif", kSave24},
    {FMT_EXIF_TIFF_YCC, "tif", kSave24},
    {FMT_TIFF_CMYK, "tif", 0},
    {FMT_TIFF_SGILOG, "tif", 0},
    {FMT_TIFF_OLD_JPEG, "tif", 0},
};

constexpr Signature kSignatures[] = {{0, 4, "II\x2A\0"}, {0, 4, "MM\0\x2A"}, {0, 4, "II\x2B\0"}, {0, 4, "MM\0\x2B"}};

}  // namespace
}  // namespace tiff

extern const Codec kTiffCodec = {
    .name = "TIFF",
    .formats = tiff::kFormats,
    .signatures = tiff::kSignatures,
    .extensions = "tif;tiff;exf;tifx;tfx;btf;tf8",
    .flags = kMultiPageSave | kCostlyPageCount,
    .probe = nullptr,
    .info = tiff::Info,
    .load = tiff::Load,
    .save = tiff::Save,
    .deletePage = tiff::DeletePage,
    .stamp = tiff::Stamp,
    .sizes = nullptr,
};

}  // namespace zvfile
