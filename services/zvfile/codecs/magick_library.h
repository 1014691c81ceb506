// GraphicsMagick, kept within bounds: started once without signal handlers, reading from memory alone, with limits on what it may
// take, no temporary files, and its fatal errors turned into exceptions instead of the end of the process.
#ifndef ZV_FILE_MAGICK_LIBRARY_H
#define ZV_FILE_MAGICK_LIBRARY_H

#include <cstdint>
#include <memory>
#include <span>

#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/magick_formats.h"

// The library's own record; its header stays out of ours, since it defines what windows.h defines as well.
extern "C" {
struct _Image;
}

namespace zvfile::magick {

struct ImageDeleter {
  void operator()(_Image* image) const;
};
using ImagePtr = std::unique_ptr<_Image, ImageDeleter>;

// Decodes page `page` (from 1) of the bytes. ERROR_PAGE_MISSING, ERROR_FILE_DAMAGED, ERROR_LIMIT_EXCEEDED,
// ERROR_OUT_OF_MEMORY. size is wanted of formats that keep several; (0, 0) none in particular.
int32_t Decode(std::span<const uint8_t> bytes, const Format& format, int32_t page, IMAGESIZE size, const Limits& limits,
               ImagePtr& image);
// The pages of the file.
int32_t CountPages(std::span<const uint8_t> bytes, const Format& format, const Limits& limits, int32_t& pages);

}  // namespace zvfile::magick

#endif
