// What a file carries beside its pixels: profile, Exif, XMP and the numbered comments. Codecs fill it on load and write it on
// save; it travels with the bitmap in between. Blocks are the bare content, without the headers of the file format they came
// from: the profile as ICC wrote it, Exif from its byte-order mark on, XMP as the XML packet.
#ifndef ZV_FILE_METADATA_H
#define ZV_FILE_METADATA_H

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "services/zvfile/zvfile.h"

namespace zvfile {

// Comments by COMMENT_..., UTF-8; bytes that are no UTF-8 are kept as the file has them.
using Comments = std::array<std::string, COMMENT_COUNT>;

struct Metadata {
  std::vector<uint8_t> profile;
  std::vector<uint8_t> exif;
  std::vector<uint8_t> xmp;
  Comments comments;

  bool Empty() const;
};

// Metadata of a bitmap, and the reverse. Attaching replaces what the bitmap had.
Metadata MetadataOf(const BITMAPHANDLE& bitmap);
int32_t AttachMetadata(BITMAPHANDLE& bitmap, const Metadata& metadata);

// What an Exif block says that the file library uses. Damaged parts are left out; never fails.
struct ExifSummary {
  int32_t orientation = 0;                  // VIEW_..., 0 not given
  double xResolution = 0, yResolution = 0;  // dots per inch
  std::span<const uint8_t> thumbnail;       // JPEG stream inside the block
  uint32_t pixelThumbnail = 0;              // where the block has a TIFF directory of plain pixels instead; 0 none
  Comments comments;
};
ExifSummary ReadExif(std::span<const uint8_t> exif);
// The upright image that an Exif block is to describe, and what its place can hold.
struct ExifTarget {
  int32_t width = 0, height = 0;
  int32_t xResolution = 0, yResolution = 0;  // dots per inch; 0: what the block says stays
  size_t maxBytes = kJpegExifBytes;
  static constexpr size_t kJpegExifBytes = 65527;  // a JPEG segment's 65533 bytes less "Exif\0\0"
};
// The old block's tags (exif may be empty) with orientation 1, the target's size and resolution, the comments put in or
// replaced, and the thumbnail, a JPEG stream, replaced, or dropped when it is empty. What is longer than the target can hold
// loses the thumbnail first, then everything (an empty block).
std::vector<uint8_t> BuildExif(std::span<const uint8_t> exif, const Comments& comments,
                               std::span<const uint8_t> thumbnail, const ExifTarget& target);
// The orientation that an XMP packet gives the image (tiff:Orientation) becomes 1: the pixels are upright now.
void MakeXmpUpright(std::vector<uint8_t>& xmp);

// Whether an ICC profile is for grey (or colour) data and looks whole; a profile that is not is not written with it.
bool ProfileFits(std::span<const uint8_t> profile, bool gray);

// Text between the encodings of files. Invalid UTF-8 is read as Latin-1.
std::u16string Utf16FromUtf8(const std::string& text);
std::string Utf8FromUtf16(std::u16string_view text);
std::string Utf8FromLatin1(std::string_view text);
bool IsUtf8(std::string_view text);

}  // namespace zvfile

#endif
