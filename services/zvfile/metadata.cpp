#include "services/zvfile/metadata.h"

#include <algorithm>
#include <string_view>

namespace zvfile {
namespace {

std::span<const uint8_t> Block(const BITMAPHANDLE& bitmap, int32_t kind) {
  const void* bytes = nullptr;
  uint64_t size = 0;
  if (GetBitmapMetadata(&bitmap, kind, &bytes, &size) != SUCCESS || !bytes) return {};
  return {static_cast<const uint8_t*>(bytes), static_cast<size_t>(size)};
}

}  // namespace

bool Metadata::Empty() const {
  return profile.empty() && exif.empty() && xmp.empty() &&
         std::all_of(comments.begin(), comments.end(), [](const std::string& text) { return text.empty(); });
}

Metadata MetadataOf(const BITMAPHANDLE& bitmap) {
  Metadata metadata;
  const auto copy = [&](int32_t kind, std::vector<uint8_t>& to) {
    const auto block = Block(bitmap, kind);
    to.assign(block.begin(), block.end());
  };
  copy(METADATA_ICC_PROFILE, metadata.profile);
  copy(METADATA_EXIF, metadata.exif);
  copy(METADATA_XMP, metadata.xmp);
  for (int32_t i = 0; i < COMMENT_COUNT; ++i) {
    const auto block = Block(bitmap, METADATA_COMMENT + i);
    metadata.comments[static_cast<size_t>(i)].assign(block.begin(), block.end());
  }
  return metadata;
}

int32_t AttachMetadata(BITMAPHANDLE& bitmap, const Metadata& metadata) {
  int32_t result = SUCCESS;
  const auto set = [&](int32_t kind, const void* bytes, size_t size) {
    if (result == SUCCESS) result = SetBitmapMetadata(&bitmap, kind, size ? bytes : nullptr, size);
  };
  set(METADATA_ICC_PROFILE, metadata.profile.data(), metadata.profile.size());
  set(METADATA_EXIF, metadata.exif.data(), metadata.exif.size());
  set(METADATA_XMP, metadata.xmp.data(), metadata.xmp.size());
  for (int32_t i = 0; i < COMMENT_COUNT; ++i) {
    const std::string& text = metadata.comments[static_cast<size_t>(i)];
    set(METADATA_COMMENT + i, text.data(), text.size());
  }
  return result;
}

// The property stands as an attribute, with either kind of quote, or as an element of its own.
void MakeXmpUpright(std::vector<uint8_t>& xmp) {
  constexpr std::string_view kProperty = "tiff:Orientation";
  constexpr std::string_view kBetween = " \t\r\n=\"'>";
  const std::string_view text(reinterpret_cast<const char*>(xmp.data()), xmp.size());
  for (size_t at = text.find(kProperty); at != std::string_view::npos; at = text.find(kProperty, at + 1)) {
    const size_t value = text.find_first_not_of(kBetween, at + kProperty.size());
    if (value == std::string_view::npos) return;
    const bool alone = value + 1 < text.size() && (text[value + 1] < '0' || text[value + 1] > '9');
    if (text[value] >= '1' && text[value] <= '8' && alone) xmp[value] = '1';
  }
}

}  // namespace zvfile
