// The formats that are read through the long-tail library and how they are told apart: by content where a format has a mark, by
// the name's extension where it has none. Knows nothing of the library but the names it gives its readers.
#ifndef ZV_FILE_MAGICK_FORMATS_H
#define ZV_FILE_MAGICK_FORMATS_H

#include <cstdint>
#include <span>
#include <string>

#include "services/zvfile/byte_source.h"

namespace zvfile::magick {

struct Format {
  int32_t format;          // FMT_...
  const char* reader;      // the library's name for it
  const char* name;        // of the encoding, for people
  const char* extensions;  // "pcx;pcc"
  // Content mark; null: the format has none and goes by its extension.
  bool (*matches)(std::span<const uint8_t> head);
  // The most pixels that one byte of a file stands for. Run lengths come to a few hundred, a blank deflated picture of one bit to
  // 8,256.
  uint32_t mostPixelsPerByte = 16384;
};

// The bytes of the head that marks are looked for in: the farthest stands in a Photo CD image, at 2048.
constexpr size_t kHeadBytes = 2048 + 16;

std::span<const Format> AllFormats();
const Format* FindByContent(ByteSource& source);
const Format* FindByExtension(const std::string& extension);

}  // namespace zvfile::magick

#endif
