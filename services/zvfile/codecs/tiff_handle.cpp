#include "services/zvfile/codecs/tiff_handle.h"

#include <cstdio>
#include <string>

namespace zvfile::tiff {
namespace {

// The largest single block that the library may ask for: a strip of a very large image fits, a forged size does not.
constexpr tmsize_t kMaxSingleAllocation = tmsize_t{2} << 30;

struct Procs {
  TIFFReadWriteProc read, write;
  TIFFSeekProc seek;
  TIFFSizeProc size;
};

// Runs a callback's body; an exception becomes the failure value, since C frames lie above.
template <typename Result, typename Body>
Result Guarded(Result failure, Body body) noexcept {
  try {
    return body();
  } catch (...) {
    return failure;
  }
}

template <typename Stream>
toff_t Seek(thandle_t handle, toff_t offset, int whence) {
  return Guarded(static_cast<toff_t>(-1), [&] {
    auto& stream = *static_cast<Stream*>(handle);
    const uint64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? stream.Tell() : stream.Size();
    stream.Seek(base + offset);
    return static_cast<toff_t>(base + offset);
  });
}

template <typename Stream>
tmsize_t Read(thandle_t handle, void* buffer, tmsize_t bytes) {
  return Guarded(tmsize_t{-1}, [&] {
    return static_cast<tmsize_t>(static_cast<Stream*>(handle)->Read(buffer, static_cast<size_t>(bytes)));
  });
}

template <typename Stream>
toff_t Size(thandle_t handle) {
  return Guarded(toff_t{0}, [&] { return static_cast<toff_t>(static_cast<Stream*>(handle)->Size()); });
}

tmsize_t Write(thandle_t handle, void* buffer, tmsize_t bytes) {
  return Guarded(tmsize_t{-1}, [&] {
    return static_cast<ByteSink*>(handle)->Write(buffer, static_cast<size_t>(bytes)) ? bytes : tmsize_t{-1};
  });
}

tmsize_t RefuseWrite(thandle_t, void*, tmsize_t) { return -1; }

int LeaveOpen(thandle_t) { return 0; }

}  // namespace

int Handle::OnError(TIFF*, void* self, const char*, const char*, va_list) {
  ++static_cast<Handle*>(self)->errors_;
  return 1;
}

int Handle::OnWarning(TIFF*, void*, const char*, const char*, va_list) { return 1; }

template <typename Stream, typename ProcTable>
std::unique_ptr<Handle> Handle::Open(Stream& stream, const char* mode, const ProcTable& procs) {
  std::unique_ptr<Handle> handle(new Handle);
  const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                 TIFFOpenOptionsFree);
  if (!options) return nullptr;
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), kMaxSingleAllocation);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), OnError, handle.get());
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), OnWarning, handle.get());
  stream.Seek(0);
  handle->tiff_ = TIFFClientOpenExt("image", mode, &stream, procs.read, procs.write, procs.seek, LeaveOpen, procs.size,
                                    nullptr, nullptr, options.get());
  if (!handle->tiff_) return nullptr;
  return handle;
}

std::unique_ptr<Handle> Handle::OpenForReading(ByteSource& source) {
  const Procs procs = {Read<ByteSource>, RefuseWrite, Seek<ByteSource>, Size<ByteSource>};
  // h: directories are chosen by offset, the first one may be of no interest; c: strips stay as long as they are, since
  // rows of uncompressed strips are read directly.
  return Open(source, "rhc", procs);
}

std::unique_ptr<Handle> Handle::OpenForWriting(ByteSink& sink, Variant variant, bool append) {
  const Procs procs = {Read<ByteSink>, Write, Seek<ByteSink>, Size<ByteSink>};
  std::string mode = append ? "a" : "w";
  mode += variant.bigEndian ? "b" : "l";
  if (variant.big) mode += "8";
  return Open(sink, mode.c_str(), procs);
}

void Handle::Close() {
  if (tiff_) TIFFClose(tiff_);
  tiff_ = nullptr;
}

}  // namespace zvfile::tiff
