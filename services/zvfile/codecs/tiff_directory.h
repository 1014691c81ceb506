// TIFF 6.0 and BigTIFF seen as what they are on disk: a header and chains of directories of tagged values. Used where pages are
// counted, copied and linked, and where Exif blocks are taken out and put in; the pixels themselves are the library's business.
// Nothing here trusts the file: every offset and count is checked against the source before use.
#ifndef ZV_FILE_TIFF_DIRECTORY_H
#define ZV_FILE_TIFF_DIRECTORY_H

#include <cstdint>
#include <vector>

#include "services/zvfile/byte_source.h"

namespace zvfile::tiff {

// Tags that this file's users name; numbers from TIFF 6.0, Exif 2.3 and the supplements of Adobe.
enum Tag : uint16_t {
  kNewSubfileType = 254,
  kSubfileType = 255,
  kWidth = 256,
  kHeight = 257,
  kCompression = 259,
  kImageDescription = 270,
  kMake = 271,
  kModel = 272,
  kStripOffsets = 273,
  kOrientation = 274,
  kStripByteCounts = 279,
  kXResolution = 282,
  kYResolution = 283,
  kFreeOffsets = 288,
  kFreeByteCounts = 289,
  kResolutionUnit = 296,
  kPageNumber = 297,
  kSoftware = 305,
  kDateTime = 306,
  kArtist = 315,
  kTileOffsets = 324,
  kTileByteCounts = 325,
  kSubIfds = 330,
  kJpegStream = 513,
  kJpegStreamLength = 514,
  kJpegQTables = 519,
  kJpegDcTables = 520,
  kJpegAcTables = 521,
  kCopyright = 33432,
  kExifIfd = 34665,
  kGpsIfd = 34853,
  kInteropIfd = 40965
};

enum Type : uint16_t {
  kByte = 1,
  kAscii = 2,
  kShort = 3,
  kLong = 4,
  kRational = 5,
  kIfd = 13,
  kLong8 = 16,
  kIfd8 = 18
};

// Bytes of one value, 0 for an unknown type; and the unit in which byte order matters.
uint32_t TypeSize(uint16_t type);
uint32_t SwapUnit(uint16_t type);

struct Entry {
  uint16_t tag = 0;
  uint16_t type = 0;
  uint64_t count = 0;
  uint64_t valueAt = 0;  // position of the first value, inside the entry or elsewhere
  uint64_t Bytes() const { return count * TypeSize(type); }
};

struct Directory {
  uint64_t offset = 0;
  std::vector<Entry> entries;
  uint64_t next = 0;    // offset of the next directory, 0 at the end
  uint64_t nextAt = 0;  // position of that pointer
  const Entry* Find(uint16_t tag) const;
};

// Byte order and offset width of a file.
struct Variant {
  bool big = false;  // 64-bit offsets
  bool bigEndian = false;
  uint32_t OffsetSize() const { return big ? 8 : 4; }
};

class Stream {
 public:
  // source must outlive the stream.
  explicit Stream(ByteSource& source) : source_(source) {}
  // Reads the header; false when it is no TIFF.
  bool Open();
  bool ReadDirectory(uint64_t offset, Directory& directory);
  // Value `index` of an integer entry; false when it is no integer or lies outside.
  bool Number(const Entry& entry, uint64_t index, uint64_t& value);
  uint64_t NumberOr(const Directory& directory, uint16_t tag, uint64_t fallback);
  ByteSource& Source() { return source_; }
  const Variant& GetVariant() const { return variant_; }
  uint64_t First() const { return first_; }  // offset of the first directory
  uint64_t FirstAt() const { return firstAt_; }

 private:
  bool ReadUnsigned(uint64_t at, uint32_t bytes, uint64_t& value);

  ByteSource& source_;
  Variant variant_;
  uint64_t first_ = 0;
  uint64_t firstAt_ = 0;
};

// A page and the reduced-resolution pictures of it that follow in the chain.
struct Page {
  uint64_t offset = 0;               // of its directory
  uint64_t slotAt = 0;               // position of the pointer that leads to the first directory of the group
  uint64_t groupStart = 0;           // offset of that first directory
  std::vector<uint64_t> group;       // all its directories in chain order
  std::vector<uint64_t> thumbnails;  // those of them that are reduced pictures
};

// True when the directory describes a reduced-resolution copy or a bare Exif thumbnail and not a page of its own.
bool IsThumbnail(Stream& stream, const Directory& directory);
// Walks the chain until `wanted` pages are found or it ends. A chain that is broken or bites its tail ends there. A file
// of thumbnails alone has them as pages. False when not even the first directory can be read.
bool WalkPages(Stream& stream, size_t wanted, std::vector<Page>& pages);

}  // namespace zvfile::tiff

#endif
