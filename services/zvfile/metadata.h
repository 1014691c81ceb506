// What a file carries beside its pixels: profile, Exif, XMP and the numbered comments. Codecs fill it on load and write it on
// save; it travels with the bitmap in between. Blocks are the bare content, without the headers of the file format they came
// from: the profile as ICC wrote it, Exif from its byte-order mark on, XMP as the XML packet.
#ifndef ZV_FILE_METADATA_H
#define ZV_FILE_METADATA_H

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "services/zvfile/zvfile.h"

namespace zvfile {

struct Metadata {
  std::vector<uint8_t> profile;
  std::vector<uint8_t> exif;
  std::vector<uint8_t> xmp;
  std::array<std::string, COMMENT_COUNT> comments;  // by COMMENT_...; as the file has them, UTF-8 where it says so

  bool Empty() const;
};

// Metadata of a bitmap, and the reverse. Attaching replaces what the bitmap had.
Metadata MetadataOf(const BITMAPHANDLE& bitmap);
int32_t AttachMetadata(BITMAPHANDLE& bitmap, const Metadata& metadata);

// What an Exif block says that the file library uses. Damaged parts are left out; never fails.
struct ExifSummary {
  int32_t orientation = 0;                          // VIEW_..., 0 not given
  double xResolution = 0, yResolution = 0;          // dots per inch
  std::span<const uint8_t> thumbnail;               // JPEG stream inside the block
  std::array<std::string, COMMENT_COUNT> comments;
};
ExifSummary ReadExif(std::span<const uint8_t> exif);
// An Exif block for an upright image: the old one's tags (exif may be empty) with orientation 1, the comments given put in
// or replaced, and the thumbnail replaced, or dropped when it is empty.
std::vector<uint8_t> BuildExif(std::span<const uint8_t> exif, const std::array<std::string, COMMENT_COUNT>& comments,
                               std::span<const uint8_t> thumbnail);

}  // namespace zvfile

#endif
