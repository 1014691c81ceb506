#include "services/zvcolor/multi_picture.h"

namespace zvcolor {
namespace {

constexpr uint16_t kPictureList = 0xB002;
constexpr size_t kPictureBytes = 16;  // attributes, size, offset (4 bytes each), two dependent pictures

class IndexBytes {
 public:
  explicit IndexBytes(Bytes& bytes) : bytes_(bytes), isBigEndian_(bytes.size() > 1 && bytes[0] == 'M') {}

  bool Holds(uint64_t at, uint64_t count) const { return at <= bytes_.size() && count <= bytes_.size() - at; }
  // 0 outside.
  uint32_t Number(uint64_t at, size_t count) const {
    uint32_t value = 0;
    for (size_t i = 0; Holds(at, count) && i < count; ++i) {
      value = value << 8 | bytes_[static_cast<size_t>(at) + (isBigEndian_ ? i : count - 1 - i)];
    }
    return value;
  }
  void Add(uint64_t at, int64_t change) {
    const auto value = static_cast<uint32_t>(Number(at, 4) + change);
    for (size_t i = 0; i < 4; ++i) {
      bytes_[static_cast<size_t>(at) + (isBigEndian_ ? i : 3 - i)] = static_cast<uint8_t>(value >> (24 - 8 * i));
    }
  }

 private:
  Bytes& bytes_;
  bool isBigEndian_;
};

}  // namespace

void MoveFurtherPictures(Bytes& index, int64_t sizeChange, int64_t offsetChange) {
  IndexBytes bytes(index);
  const uint64_t directory = bytes.Number(4, 4);
  const uint32_t entries = bytes.Number(directory, 2);
  for (uint32_t i = 0; i < entries; ++i) {
    const uint64_t entry = directory + 2 + 12 * i;
    if (bytes.Number(entry, 2) != kPictureList) {
      continue;
    }
    const uint64_t list = bytes.Number(entry + 8, 4);
    const uint64_t pictures = bytes.Number(entry + 4, 4) / kPictureBytes;
    for (uint64_t picture = 0; picture < pictures && bytes.Holds(list + kPictureBytes * picture, kPictureBytes);
         ++picture) {
      const uint64_t at = list + kPictureBytes * picture;
      if (picture == 0) {
        bytes.Add(at + 4, sizeChange);
      } else if (bytes.Number(at + 8, 4) != 0) {
        bytes.Add(at + 8, offsetChange);
      }
    }
    return;
  }
}

}  // namespace zvcolor
