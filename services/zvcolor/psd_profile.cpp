// PSD and PSB: the profile is image resource 1039. Header, colour table, resources, layers and pixels follow one another; the
// first three tell their lengths.
#include <algorithm>
#include <string_view>

#include "services/zvcolor/image_profile.h"
#include "services/zvcolor/zvcolor.h"

namespace zvcolor {
namespace {

using namespace std::string_view_literals;

constexpr uint64_t kColorTableLengthAt = 26;
constexpr uint32_t kProfileResource = 1039;

struct Resource {
  uint32_t id;
  uint64_t start;
  uint64_t data;
  uint64_t size;
  uint64_t End() const { return data + size + size % 2; }
};

struct Resources {
  uint64_t lengthAt;
  uint64_t end;
  std::vector<Resource> all;
};

bool Number(ByteSource& source, uint64_t at, size_t count, uint64_t& value) {
  uint8_t raw[4] = {};
  value = 0;
  if (source.ReadAt(at, raw, count) != count) {
    return false;
  }
  for (size_t i = 0; i < count; ++i) {
    value = value << 8 | raw[i];
  }
  return true;
}

int32_t ReadResources(ByteSource& source, Resources& resources) {
  uint64_t length = 0;
  if (!Number(source, kColorTableLengthAt, 4, length)) {
    return ERROR_FILE_DAMAGED;
  }
  resources.lengthAt = kColorTableLengthAt + 4 + length;
  if (!Number(source, resources.lengthAt, 4, length)) {
    return ERROR_FILE_DAMAGED;
  }
  uint64_t at = resources.lengthAt + 4;
  resources.end = at + length;
  if (resources.end > source.Size()) {
    return ERROR_FILE_DAMAGED;
  }
  while (at < resources.end) {
    // Mark, id, name with its length, padded to even, size, data.
    uint64_t id = 0, name = 0, size = 0;
    if (!HasText(source, at, "8BIM"sv) || !Number(source, at + 4, 2, id) || !Number(source, at + 6, 1, name)) {
      return ERROR_FILE_DAMAGED;
    }
    const uint64_t sizeAt = at + 6 + (name + 2) / 2 * 2;
    if (!Number(source, sizeAt, 4, size) || sizeAt + 4 + size > resources.end) {
      return ERROR_FILE_DAMAGED;
    }
    resources.all.push_back({static_cast<uint32_t>(id), at, sizeAt + 4, size});
    at = resources.all.back().End();
  }
  return SUCCESS;
}

uint32_t ColorSpace(ByteSource& source) {
  uint64_t mode = 0;
  Number(source, 24, 2, mode);
  switch (mode) {
    case 0:
    case 1:
    case 8:  // duotone, stored as grey
      return kGray;
    case 2:
    case 3: return kRgb;
    case 4: return kCmyk;
    case 9: return kLab;
    default: return 0;
  }
}

bool Recognise(ByteView head) {
  return head.size() > 5 && NumberAt(head, 0) == Letters('8', 'B', 'P', 'S') && head[4] == 0 &&
         (head[5] == 1 || head[5] == 2);
}

int32_t Read(ByteSource& source, int32_t page, Bytes& profile) {
  Resources resources;
  const int32_t status = page == 1 ? ReadResources(source, resources) : ERROR_PAGE_MISSING;
  if (status != SUCCESS) {
    return status;
  }
  for (const Resource& resource : resources.all) {
    if (resource.id == kProfileResource) {
      return ReadBytes(source, resource.data, resource.size, profile);
    }
  }
  return ERROR_PROFILE_MISSING;
}

int32_t Write(ByteSource& source, ByteSink& sink, int32_t page, ByteView profile) {
  Resources resources;
  const int32_t status = page == 1 ? ReadResources(source, resources) : ERROR_PAGE_MISSING;
  if (status != SUCCESS) {
    return status;
  }
  if (!FitsImage(profile, ColorSpace(source))) {
    return ERROR_FEATURE_UNSUPPORTED;
  }
  constexpr uint64_t kFrame = 12;  // mark, id, empty name, size
  uint64_t length = kFrame + profile.size() + profile.size() % 2;
  for (const Resource& resource : resources.all) {
    length += resource.id == kProfileResource ? 0 : std::min(resource.End(), resources.end) - resource.start;
  }
  sink.CopyFrom(source, 0, resources.lengthAt);
  sink.WriteBe(length, 4);
  for (const Resource& resource : resources.all) {
    if (resource.id != kProfileResource) {
      sink.CopyFrom(source, resource.start, std::min(resource.End(), resources.end) - resource.start);
    }
  }
  sink.Write("8BIM", 4);
  sink.WriteBe(kProfileResource, 2);
  sink.WriteBe(0, 2);
  sink.WriteBe(profile.size(), 4);
  sink.Write(profile.data(), profile.size());
  sink.WriteBe(0, static_cast<int>(profile.size() % 2));
  const bool isCopied = sink.CopyFrom(source, resources.end, source.Size() - resources.end);
  return isCopied && !sink.Failed() ? SUCCESS : ERROR_FILE_WRITE;
}

}  // namespace

const ImageContainer kPsdContainer = {&Recognise, &Read, &Write};

}  // namespace zvcolor
