// What the entry points share: the exception barrier, the reading of option records and the search for the codec that can read
// a file. Internal to the library.
#ifndef ZV_FILE_OPERATION_H
#define ZV_FILE_OPERATION_H

#include <new>
#include <utility>

#include "services/zvfile/codec.h"

namespace zvfile {

// Runs the body of an entry point; no exception passes.
template <typename Body>
int32_t Barrier(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (const std::bad_alloc&) {
    return ERROR_OUT_OF_MEMORY;
  } catch (...) {
    return ERROR_FILE_DAMAGED;
  }
}

// Null, or a record with the right size tag.
bool IsValidOption(const LOADFILEOPTION* option);
bool IsValidOption(const SAVEFILEOPTION* option);

// option may be null. info may be null; a load size given in it is taken over, for formats that have none set.
LoadRequest MakeLoadRequest(const ZVCHAR* path, const LOADFILEOPTION* option, const FILEINFO* info);

// Calls attempt(codec) with each codec that recognises the source, best first, until one answers anything but
// ERROR_FILE_FORMAT, which says that the content is of a kind that this codec leaves to another. A missing codec or no answer
// is ERROR_FILE_FORMAT; a failing device is ERROR_FILE_READ whatever the codec made of it.
template <typename Attempt>
int32_t ForDetectedCodec(ByteSource& source, const LoadRequest& request, Attempt&& attempt) {
  const Codec* codec = nullptr;
  while ((codec = DetectCodec(source, request.extension, codec)) != nullptr) {
    source.Seek(0);
    const int32_t result = attempt(*codec);
    if (result != SUCCESS && source.Failed()) return ERROR_FILE_READ;
    if (result != ERROR_FILE_FORMAT) return result;
  }
  return source.Failed() ? ERROR_FILE_READ : ERROR_FILE_FORMAT;
}

// What LoadImageFile does once the file is open. info is filled and never null.
int32_t LoadFromSource(ByteSource& source, LoadRequest& request, SinkRequest& target);

}  // namespace zvfile

#endif
