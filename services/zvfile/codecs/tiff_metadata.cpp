#include "services/zvfile/codecs/tiff_metadata.h"

#include "services/zvfile/codecs/tiff_copy.h"

namespace zvfile::tiff {
namespace {

struct CommentTag {
  int32_t comment;
  uint32_t tag;
};

constexpr CommentTag kCommentTags[] = {
    {COMMENT_DESCRIPTION, TIFFTAG_IMAGEDESCRIPTION},
    {COMMENT_AUTHOR, TIFFTAG_ARTIST},
    {COMMENT_SOFTWARE, TIFFTAG_SOFTWARE},
    {COMMENT_COPYRIGHT, TIFFTAG_COPYRIGHT},
    {COMMENT_DATE, TIFFTAG_DATETIME},
    {COMMENT_MAKE, TIFFTAG_MAKE},
    {COMMENT_MODEL, TIFFTAG_MODEL},
    {COMMENT_TITLE, TIFFTAG_DOCUMENTNAME},
};

// What goes from a page into an Exif block: its first directory describes the picture as a camera would.
constexpr uint16_t kExifBlockTags[] = {kImageDescription, kMake,           kModel,    kXResolution,
                                       kYResolution,      kResolutionUnit, kSoftware, kDateTime,
                                       kArtist,           kCopyright,      kExifIfd,  kGpsIfd};

void ReadBlock(TIFF* tiff, uint32_t tag, const Limits& limits, std::vector<uint8_t>& block) {
  uint32_t size = 0;
  const uint8_t* data = nullptr;
  if (!TIFFGetField(tiff, tag, &size, &data) || !data || size > limits.maxMetadataBytes) return;
  block.assign(data, data + size);
}

std::vector<uint8_t> ReadExifBlock(Stream& stream, const Directory& directory, const Limits& limits) {
  if (!directory.Find(kExifIfd) && !directory.Find(kGpsIfd)) return {};
  const Variant variant = {.big = false, .bigEndian = stream.GetVariant().bigEndian};
  MemorySink sink;
  uint64_t offset = 0, nextAt = 0;
  const bool good = WriteHeader(sink, variant) &&
                    Copier(stream, sink, variant, kExifBlockTags).Copy(directory, offset, nextAt) == SUCCESS &&
                    PutOffset(sink, variant, 4, offset) && sink.Size() <= limits.maxMetadataBytes;
  return good ? sink.Bytes() : std::vector<uint8_t>();
}

struct ExifPart {
  uint16_t tag;
  Directory directory;
};

// The directories of an Exif block that go into a file. A damaged block gives none: the picture is worth saving without it.
std::vector<ExifPart> ExifParts(Stream& exif) {
  std::vector<ExifPart> parts;
  Directory first;
  if (!exif.Open() || !exif.ReadDirectory(exif.First(), first)) return parts;
  for (const uint16_t tag : {kExifIfd, kGpsIfd}) {
    const Entry* pointer = first.Find(tag);
    uint64_t at = 0;
    ExifPart part = {tag, {}};
    if (pointer && exif.Number(*pointer, 0, at) && exif.ReadDirectory(at, part.directory)) parts.push_back(part);
  }
  return parts;
}

}  // namespace

void ReadMetadata(TIFF* tiff, Stream& stream, const Directory& directory, const Limits& limits, Metadata& metadata) {
  ReadBlock(tiff, TIFFTAG_ICCPROFILE, limits, metadata.profile);
  ReadBlock(tiff, TIFFTAG_XMLPACKET, limits, metadata.xmp);
  metadata.exif = ReadExifBlock(stream, directory, limits);
  for (const CommentTag& row : kCommentTags) {
    const char* text = nullptr;
    if (TIFFGetField(tiff, row.tag, &text) && text) metadata.comments[row.comment] = text;
  }
}

void WriteMetadata(TIFF* tiff, const Metadata& metadata) {
  const auto writeBlock = [&](uint32_t tag, const std::vector<uint8_t>& block) {
    if (!block.empty()) TIFFSetField(tiff, tag, static_cast<uint32_t>(block.size()), block.data());
  };
  writeBlock(TIFFTAG_ICCPROFILE, metadata.profile);
  writeBlock(TIFFTAG_XMLPACKET, metadata.xmp);
  const ExifSummary summary = ReadExif(metadata.exif);
  for (const CommentTag& row : kCommentTags) {
    const std::string& own = metadata.comments[row.comment];
    const std::string& text = own.empty() ? summary.comments[row.comment] : own;
    // The date tag holds 20 bytes exactly; the library refuses others.
    const bool fits = row.comment != COMMENT_DATE || text.size() == 19;
    if (!text.empty() && fits) TIFFSetField(tiff, row.tag, text.c_str());
  }
  MemorySource source(metadata.exif);
  Stream exif(source);
  for (const ExifPart& part : ExifParts(exif)) TIFFSetField(tiff, part.tag, uint64_t{0});
}

int32_t AttachExif(ByteSink& sink, const Metadata& metadata) {
  MemorySource blockSource(metadata.exif);
  Stream exif(blockSource);
  const std::vector<ExifPart> parts = ExifParts(exif);
  if (parts.empty()) return SUCCESS;
  SinkSource fileSource(sink);
  Stream file(fileSource);
  std::vector<Page> pages;
  Directory target;
  if (!file.Open() || !WalkPages(file, SIZE_MAX, pages) || !file.ReadDirectory(pages.back().offset, target)) {
    return ERROR_FILE_WRITE;
  }
  const Variant variant = file.GetVariant();
  for (const ExifPart& part : parts) {
    const Entry* slot = target.Find(part.tag);
    uint64_t offset = 0, nextAt = 0;
    if (!slot) continue;
    const int32_t result = Copier(exif, sink, variant).Copy(part.directory, offset, nextAt);
    if (result == ERROR_FILE_DAMAGED) continue;
    if (result != SUCCESS) return result;
    const int bytes = static_cast<int>(TypeSize(slot->type));
    sink.Seek(slot->valueAt);
    if (!(variant.bigEndian ? sink.WriteBe(offset, bytes) : sink.WriteLe(offset, bytes))) return ERROR_FILE_WRITE;
  }
  return SUCCESS;
}

}  // namespace zvfile::tiff
