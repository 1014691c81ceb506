// GraphicsMagick, kept within bounds: started once without signal handlers, reading from memory alone, with limits on what it may
// take, no temporary files, and its fatal errors ended by a jump out of it instead of the end of the process.
#ifndef ZV_FILE_MAGICK_LIBRARY_H
#define ZV_FILE_MAGICK_LIBRARY_H

#include <csetjmp>
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

// Runs calls into the library. A fatal error of the library, which cannot go on then and would end the process, jumps back here:
// nothing unwinds through its C frames. Every call into it stands in such a body, on any thread; guards nest.
class FatalGuard {
 public:
  FatalGuard();
  ~FatalGuard();
  FatalGuard(const FatalGuard&) = delete;
  FatalGuard& operator=(const FatalGuard&) = delete;

  // False after a fatal error; the library is not entered again by anybody then. The body must own nothing that has a
  // destructor.
  template <typename Body>
  bool Run(Body&& body) {
    if (setjmp(jump_) == 0) {
      body();
    } else {
      failed_ = true;
    }
    return !failed_;
  }
  // Called by the library's handler: leaves the innermost guard of this thread.
  [[noreturn]] static void Leave();

 private:
  std::jmp_buf jump_;
  FatalGuard* outer_;
  bool failed_ = false;
};

struct ImageDeleter {
  void operator()(_Image* image) const;
};
using ImagePtr = std::unique_ptr<_Image, ImageDeleter>;

// Decodes page `page` (from 1) of the bytes. ERROR_PAGE_MISSING, ERROR_FILE_DAMAGED, ERROR_LIMIT_EXCEEDED,
// ERROR_OUT_OF_MEMORY. size is wanted of formats that keep several; (0, 0) none in particular.
int32_t Decode(std::span<const uint8_t> bytes, const Format& format, int32_t page, IMAGESIZE size, const Limits& limits,
               ImagePtr& image);
// Finds out how many pages there are and that none of them claims more than the limits allow or the bytes can stand for, without
// decoding: the library believes what a header says and takes the memory for it.
int32_t Survey(std::span<const uint8_t> bytes, const Format& format, const Limits& limits, int32_t& pages);

}  // namespace zvfile::magick

#endif
