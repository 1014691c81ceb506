#include "services/zvfile/codecs/gif_blocks.h"

#include <algorithm>
#include <cstring>

namespace zvfile::gif {
namespace {

constexpr uint8_t kImage = 0x2C, kExtension = 0x21, kTrailer = 0x3B;
constexpr uint8_t kControl = 0xF9, kComment = 0xFE, kApplication = 0xFF;
constexpr size_t kMaxComment = 1 << 20;
constexpr uint64_t kGlobalMapAt = 13;

uint16_t Le16(const uint8_t* bytes) { return static_cast<uint16_t>(bytes[0] | bytes[1] << 8); }

// Entries of the map that a packed byte announces, 0 without one.
uint16_t MapSize(uint8_t packed) { return packed & 0x80 ? static_cast<uint16_t>(2 << (packed & 7)) : uint16_t{0}; }

// Reads a chain of sub-blocks up to its terminator; the content goes to `content` when that is given.
bool ReadSubBlocks(ByteSource& source, std::string* content) {
  uint8_t size = 0;
  char block[255];
  for (;;) {
    if (!source.ReadExactly(&size, 1)) return false;
    if (size == 0) return true;
    if (!content) {
      source.Seek(source.Tell() + size);
      if (source.Tell() > source.Size()) return false;
      continue;
    }
    if (!source.ReadExactly(block, size)) return false;
    if (content->size() + size <= kMaxComment) content->append(block, size);
  }
}

void ApplyControl(const std::string& content, Frame& next) {
  if (content.size() < 4) return;
  const uint8_t packed = static_cast<uint8_t>(content[0]);
  next.disposal = packed >> 2 & 7;
  next.delay = static_cast<uint16_t>(static_cast<uint8_t>(content[1]) | static_cast<uint8_t>(content[2]) << 8);
  next.transparent = packed & 1 ? static_cast<uint8_t>(content[3]) : -1;
}

bool ReadExtension(ByteSource& source, uint64_t at, File& file, Frame& next) {
  uint8_t label = 0;
  std::string content;
  if (!source.ReadExactly(&label, 1)) return false;
  const bool wanted = label == kControl || label == kComment || label == kApplication;
  if (!ReadSubBlocks(source, wanted ? &content : nullptr)) return false;
  if (label == kControl) {
    next = Frame();
    next.start = at;
    ApplyControl(content, next);
  } else if (label == kComment) {
    file.comment += content;
  } else if (label == kApplication && content.starts_with("NETSCAPE2.0")) {
    file.looping = true;
  }
  return true;
}

// Reads an image block whose separator stood at `at`; false when not even its description is whole.
bool ReadImage(ByteSource& source, uint64_t at, Frame& frame, bool& cut) {
  uint8_t head[9];
  if (!source.ReadExactly(head, sizeof head)) return false;
  if (frame.start == 0) frame.start = at;
  frame.imageAt = at;
  frame.left = Le16(head);
  frame.top = Le16(head + 2);
  frame.width = Le16(head + 4);
  frame.height = Le16(head + 6);
  frame.interlaced = (head[8] & 0x40) != 0;
  frame.mapSize = MapSize(head[8]);
  frame.mapAt = source.Tell();
  source.Seek(frame.mapAt + 3 * frame.mapSize + 1);  // the map and the code size
  cut = !ReadSubBlocks(source, nullptr);
  frame.end = std::min(source.Tell(), source.Size());
  return true;
}

}  // namespace

bool Scan(ByteSource& source, size_t wanted, File& file) {
  uint8_t head[kGlobalMapAt];
  file = File();
  source.Seek(0);
  if (!source.ReadExactly(head, sizeof head)) return false;
  if (std::memcmp(head, "GIF87a", 6) != 0 && std::memcmp(head, "GIF89a", 6) != 0) return false;
  file.width = Le16(head + 6);
  file.height = Le16(head + 8);
  file.mapSize = MapSize(head[10]);
  file.background = head[11];
  file.headerEnd = kGlobalMapAt + 3 * file.mapSize;
  if (file.headerEnd > source.Size()) return false;
  source.Seek(file.headerEnd);
  Frame next;
  bool cut = false;
  while (!cut && file.frames.size() < wanted) {
    const uint64_t at = source.Tell();
    uint8_t kind = 0;
    file.trailerAt = at;
    if (!source.ReadExactly(&kind, 1)) break;
    if (kind == kTrailer) {
      file.complete = true;
      break;
    }
    if (kind == 0) continue;  // some writers pad between blocks
    if (kind == kExtension) {
      if (!ReadExtension(source, at, file, next)) break;
    } else if (kind == kImage) {
      if (!ReadImage(source, at, next, cut)) break;
      file.frames.push_back(next);
      next = Frame();
    } else {
      break;
    }
  }
  if (!file.frames.empty()) {
    const Frame& first = file.frames.front();
    file.width = std::max(file.width, first.left + first.width);
    file.height = std::max(file.height, first.top + first.height);
  }
  return true;
}

Palette ReadMap(ByteSource& source, uint64_t at, uint16_t size) {
  std::vector<uint8_t> bytes(size_t{3} * size);
  const size_t got = source.ReadAt(at, bytes.data(), bytes.size());
  std::fill(bytes.begin() + static_cast<ptrdiff_t>(got), bytes.end(), uint8_t{0});
  Palette palette;
  for (size_t i = 0; i < bytes.size(); i += 3) palette.push_back({bytes[i + 2], bytes[i + 1], bytes[i], 255});
  return palette;
}

}  // namespace zvfile::gif
