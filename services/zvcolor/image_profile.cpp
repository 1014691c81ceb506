#include "services/zvcolor/image_profile.h"

#include <string_view>

#include "services/zvcolor/zvcolor.h"

namespace zvcolor {

const ImageContainer* FindContainer(ByteSource& source) {
  uint8_t head[32];
  const ByteView view(head, source.ReadAt(0, head, sizeof(head)));
  for (const ImageContainer* container : {&kJpegContainer, &kPngContainer, &kTiffContainer, &kPsdContainer}) {
    if (container->recognise(view)) {
      return container;
    }
  }
  return nullptr;
}

int32_t ReadBytes(ByteSource& source, uint64_t offset, uint64_t count, Bytes& bytes) {
  if (offset > source.Size() || count > source.Size() - offset) {
    return ERROR_FILE_DAMAGED;
  }
  if (count > ICC_PROFILE_MAX_BYTES) {
    return ERROR_LIMIT_EXCEEDED;
  }
  bytes.resize(static_cast<size_t>(count));
  return source.ReadAt(offset, bytes.data(), bytes.size()) == bytes.size() ? SUCCESS : ERROR_FILE_DAMAGED;
}

bool HasText(ByteSource& source, uint64_t offset, std::string_view text) {
  std::string found(text.size(), '\0');
  return source.ReadAt(offset, found.data(), found.size()) == found.size() && found == text;
}

}  // namespace zvcolor
