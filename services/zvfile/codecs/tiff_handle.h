// The TIFF library over a byte source or a byte sink: one owner of the library's handle, with error and warning handlers of its
// own, so that the library's process-wide ones are never used. Nothing unwinds through the library: a callback that fails says so
// by its result.
#ifndef ZV_FILE_TIFF_HANDLE_H
#define ZV_FILE_TIFF_HANDLE_H

#include <tiffio.h>

#include <memory>

#include "services/zvfile/byte_sink.h"
#include "services/zvfile/byte_source.h"
#include "services/zvfile/codecs/tiff_directory.h"

namespace zvfile::tiff {

class Handle {
 public:
  ~Handle() { Close(); }
  // Opens for reading, before the first directory. Null when the header is no TIFF header.
  static std::unique_ptr<Handle> OpenForReading(ByteSource& source);
  // Opens an empty sink for writing, or one that holds a TIFF file for appending a directory.
  static std::unique_ptr<Handle> OpenForWriting(ByteSink& sink, Variant variant, bool append);
  TIFF* Get() const { return tiff_; }
  // Errors that the library has reported so far.
  int Errors() const { return errors_; }
  void Close();

 private:
  Handle() = default;
  template <typename Stream, typename Procs>
  static std::unique_ptr<Handle> Open(Stream& stream, const char* mode, const Procs& procs);
  static int OnError(TIFF*, void* self, const char* module, const char* format, va_list arguments);
  static int OnWarning(TIFF*, void* self, const char* module, const char* format, va_list arguments);

  TIFF* tiff_ = nullptr;
  int errors_ = 0;
};

}  // namespace zvfile::tiff

#endif
