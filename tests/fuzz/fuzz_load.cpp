// Feeds bytes to every way of reading a file: information with all metadata, pages, sizes, stamp and load.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "services/zvfile/file_info.h"
#include "services/zvfile/operation.h"

namespace {

using namespace zvfile;

// Small images alone, so that a run sees many of them.
Limits FuzzLimits() {
  Limits limits;
  limits.maxPixels = 4u << 20;
  limits.maxDecodedBytes = 32u << 20;
  limits.maxPages = 64;
  return limits;
}

LoadRequest FuzzRequest(uint8_t choice) {
  static constexpr const char* kExtensions[] = {"", "tga", "pcx", "pcd", "cut", "dcm", "wpg", "pict"};
  LoadRequest request;
  request.extension = kExtensions[choice % 8];
  request.page = 1 + (choice >> 3) % 3;
  request.countPages = true;
  request.wantMetadata = true;
  request.limits = FuzzLimits();
  return request;
}

template <typename Read>
void Decode(ByteSource& source, const LoadRequest& request, Read&& read) {
  BITMAPHANDLE bitmap = {};
  bitmap.uStructSize = sizeof bitmap;
  FILEINFO info = {};
  SinkRequest target;
  target.bitmap = &bitmap;
  target.info = &info;
  target.limits = request.limits;
  Barrier([&] {
    return ForDetectedCodec(source, request, [&](const Codec& codec) -> int32_t {
      RowSink sink(target);
      const int32_t result = read(codec, sink);
      return result == SUCCESS ? sink.Finish() : result;
    });
  });
  FreeBitmap(&bitmap);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const LoadRequest request = FuzzRequest(data[size - 1]);
  MemorySource source({data, size - 1});
  Barrier([&] {
    return ForDetectedCodec(source, request, [&](const Codec& codec) {
      ImageHeader header;
      std::vector<IMAGESIZE> sizes;
      if (codec.sizes) codec.sizes(source, request, sizes);
      source.Seek(0);
      return codec.info(source, request, header);
    });
  });
  Decode(source, request, [&](const Codec& codec, RowSink& sink) { return codec.load(source, request, sink); });
  Decode(source, request, [&](const Codec& codec, RowSink& sink) {
    return codec.stamp ? codec.stamp(source, request, sink) : ERROR_NO_STAMP;
  });
  return 0;
}
