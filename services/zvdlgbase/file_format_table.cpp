// What the kernel knows of single file formats beside the catalogue: default quality, pages, stamps, names and classes.
#include <algorithm>
#include <iterator>

#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"

namespace {

constexpr int32_t kNoQuality = -1;
constexpr uint32_t kAllPageOperations = MULTIPAGE_OVERWRITE | MULTIPAGE_APPEND | MULTIPAGE_REPLACE | MULTIPAGE_INSERT;

// Quality of the JPEG kind runs from 2 (best) to 255; 28 is 90 of 100 in libjpeg's terms: 100 - (28 - 2) * 99 / 253.
constexpr int32_t kJpegQuality = 28;
// zlib's own default level.
constexpr int32_t kDeflateLevel = 6;

struct StampEntry {
  int32_t minimum, maximum;  // of both width and height, in pixels
  uint32_t bitDepthMask;
};

constexpr StampEntry kNoStamp = {0, 0, 0};
// Exif asks for a thumbnail of 160 x 120 (Exif 2.3, 4.5.8); all of the thumbnail must fit a segment of 64 KB with the
// rest of the Exif data, which 255 x 255 pixels of JPEG do.
constexpr StampEntry kExifThumbnail = {16, 255, STAMP_DEPTH_8 | STAMP_DEPTH_24};
constexpr StampEntry kContainerStamp = {16, 1024, STAMP_DEPTH_8 | STAMP_DEPTH_24};

struct FileFormatEntry {
  int32_t fileFormat;
  int32_t defaultQFactor;
  uint32_t pageOperations;
  StampEntry stamp;
};

// The file formats that can be written.
constexpr FileFormatEntry kWritable[] = {
    {FMT_JPEG, kJpegQuality, 0, kExifThumbnail},
    {FMT_JPEG_422, kJpegQuality, 0, kExifThumbnail},
    {FMT_JPEG_420, kJpegQuality, 0, kExifThumbnail},
    {FMT_EXIF_JPEG_422, kJpegQuality, 0, kExifThumbnail},
    {FMT_EXIF_JPEG_420, kJpegQuality, 0, kExifThumbnail},
    {FMT_EXIF_TIFF_RGB, kNoQuality, 0, kExifThumbnail},
    {FMT_EXIF_TIFF_YCC, kNoQuality, 0, kExifThumbnail},
    {FMT_GIF, kNoQuality, kAllPageOperations, kNoStamp},
    {FMT_PNG, kDeflateLevel, 0, kNoStamp},
    {FMT_BMP, kNoQuality, 0, kNoStamp},
    {FMT_BMP_RLE, kNoQuality, 0, kNoStamp},
    {FMT_TIFF, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_PACKBITS, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_LZW, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_DEFLATE, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_LZMA, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_ZSTD, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_CCITT, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_G3_1D, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_G3_2D, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_G4, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_JPEG, kJpegQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_JPEG_422, kJpegQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_JPEG_420, kJpegQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_WEBP, kJpegQuality, kAllPageOperations, kContainerStamp},
    {FMT_TIFF_YCC, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_BIGTIFF, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_BIGTIFF_DEFLATE, kNoQuality, kAllPageOperations, kContainerStamp},
    {FMT_CMP, kJpegQuality, kAllPageOperations, kContainerStamp},
    {FMT_WEBP, kJpegQuality, 0, kNoStamp},
    {FMT_J2K, kJpegQuality, 0, kNoStamp},
    {FMT_JP2, kJpegQuality, 0, kNoStamp},
    {FMT_ICO, kNoQuality, 0, kNoStamp},
    {FMT_ICO_PNG, kDeflateLevel, 0, kNoStamp},
};

const FileFormatEntry* FindWritable(int32_t fileFormat) {
  const auto found = std::ranges::find(kWritable, fileFormat, &FileFormatEntry::fileFormat);
  return found == std::end(kWritable) ? nullptr : &*found;
}

// Classes of file formats, each drawn or opened with settings of its own kind.
constexpr int32_t kVectorView[] = {56, 62, 123, 136, 144, 145, 169, 247, 251, 255, 260, 261};
constexpr int32_t kVectorBackground[] = {58, 124, 290};
constexpr int32_t kVectorPen[] = {FMT_HPGL};
constexpr int32_t kDpiPair[] = {FMT_WMF, FMT_EMF, FMT_WMZ};
constexpr int32_t kLoadSize[] = {80, 81, 82, 83, FMT_ICO, FMT_J2K, FMT_JP2, FMT_JPX, FMT_JPM};

template <size_t count>
int32_t IsMember(const int32_t (&formats)[count], int32_t fileFormat) {
  return std::ranges::find(formats, fileFormat) != std::end(formats);
}

}  // namespace

int32_t IsFormatExcludedFromList(int32_t fileFormat) { return FindWritable(fileFormat) == nullptr; }

int32_t GetFormatDefaultQFactor(int32_t fileFormat, int32_t* qFactor) {
  if (!qFactor) {
    return ERROR_BAD_ARGUMENT;
  }
  const FileFormatEntry* entry = FindWritable(fileFormat);
  if (!entry || entry->defaultQFactor == kNoQuality) {
    return ERROR_FEATURE_UNSUPPORTED;
  }
  *qFactor = entry->defaultQFactor;
  return SUCCESS;
}

int32_t GetFormatMultipageOps(int32_t fileFormat, uint32_t* mask) {
  if (!mask) {
    return ERROR_BAD_ARGUMENT;
  }
  const FileFormatEntry* entry = FindWritable(fileFormat);
  *mask = entry ? entry->pageOperations : 0;
  return *mask ? SUCCESS : ERROR_FEATURE_UNSUPPORTED;
}

int32_t GetFormatStampLimits(int32_t fileFormat, FORMATSTAMPLIMITS* limits) {
  if (!limits) {
    return ERROR_BAD_ARGUMENT;
  }
  if (limits->uStructSize != sizeof *limits) {
    return ERROR_BAD_RECORD_SIZE;
  }
  const FileFormatEntry* entry = FindWritable(fileFormat);
  if (!entry || entry->stamp.bitDepthMask == 0) {
    return ERROR_FEATURE_UNSUPPORTED;
  }
  const StampEntry& stamp = entry->stamp;
  *limits = {sizeof *limits, stamp.minimum, stamp.maximum, stamp.minimum, stamp.maximum, stamp.bitDepthMask};
  return SUCCESS;
}

int32_t GetFormatStringId(int32_t fileFormat, uint32_t* id) {
  if (!id || fileFormat <= FMT_UNKNOWN) {
    return ERROR_BAD_ARGUMENT;
  }
  const uint32_t candidate = IDS_FORMAT_FIRST + static_cast<uint32_t>(fileFormat);
  uint32_t length = 0;
  if (candidate >= IDS_FORMAT_END || GetDialogStringLength(candidate, &length) != SUCCESS) {
    return ERROR_BAD_ARGUMENT;
  }
  *id = candidate;
  return SUCCESS;
}

int32_t IsVectorViewFormat(int32_t fileFormat) { return IsMember(kVectorView, fileFormat); }
int32_t IsVectorBackgroundFormat(int32_t fileFormat) { return IsMember(kVectorBackground, fileFormat); }
int32_t IsVectorPenFormat(int32_t fileFormat) { return IsMember(kVectorPen, fileFormat); }
int32_t IsDpiPairFormat(int32_t fileFormat) { return IsMember(kDpiPair, fileFormat); }
int32_t IsLoadSizeFormat(int32_t fileFormat) { return IsMember(kLoadSize, fileFormat); }

// The file library knows no format of these classes yet.
int32_t IsDpiSingleFormat(int32_t) { return 0; }
int32_t IsPDFFormat(int32_t) { return 0; }
int32_t IsXPSFormat(int32_t) { return 0; }
int32_t IsXLSFormat(int32_t) { return 0; }
