#include "services/zvfile/codecs/tiff_directory.h"

#include <algorithm>
#include <unordered_set>

namespace zvfile::tiff {
namespace {

// More entries than any real directory has; the count field alone would allow 65,535, or 2^64 in BigTIFF.
constexpr uint64_t kMaxEntries = 4096;

}  // namespace

uint32_t TypeSize(uint16_t type) {
  switch (type) {
    case 1:
    case 2:
    case 6:
    case 7: return 1;
    case 3:
    case 8: return 2;
    case 4:
    case 9:
    case 11:
    case 13: return 4;
    case 5:
    case 10:
    case 12:
    case 16:
    case 17:
    case 18: return 8;
    default: return 0;
  }
}

uint32_t SwapUnit(uint16_t type) {
  const bool rational = type == 5 || type == 10;
  return rational ? 4 : TypeSize(type);
}

const Entry* Directory::Find(uint16_t tag) const {
  const auto found = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.tag == tag; });
  return found == entries.end() ? nullptr : &*found;
}

bool Stream::ReadUnsigned(uint64_t at, uint32_t bytes, uint64_t& value) {
  uint8_t raw[8];
  source_.Seek(at);
  if (!source_.ReadExactly(raw, bytes)) return false;
  value = 0;
  for (uint32_t i = 0; i < bytes; ++i) {
    value = value << 8 | raw[variant_.bigEndian ? i : bytes - 1 - i];
  }
  return true;
}

bool Stream::Open() {
  uint8_t mark[2];
  source_.Seek(0);
  if (!source_.ReadExactly(mark, 2) || mark[0] != mark[1] || (mark[0] != 'I' && mark[0] != 'M')) return false;
  variant_.bigEndian = mark[0] == 'M';
  uint64_t version = 0, offsetSize = 0, zero = 0;
  if (!ReadUnsigned(2, 2, version)) return false;
  variant_.big = version == 43;
  if (variant_.big) {
    if (!ReadUnsigned(4, 2, offsetSize) || !ReadUnsigned(6, 2, zero) || offsetSize != 8 || zero != 0) return false;
  } else if (version != 42) {
    return false;
  }
  firstAt_ = variant_.big ? 8 : 4;
  return ReadUnsigned(firstAt_, variant_.OffsetSize(), first_);
}

bool Stream::ReadDirectory(uint64_t offset, Directory& directory) {
  const uint32_t countSize = variant_.big ? 8 : 2;
  const uint32_t fieldSize = variant_.OffsetSize();
  const uint32_t entrySize = 4 + 2 * fieldSize;
  uint64_t count = 0;
  directory = Directory();
  directory.offset = offset;
  if (offset == 0 || offset >= source_.Size() || !ReadUnsigned(offset, countSize, count)) return false;
  if (count == 0 || count > kMaxEntries) return false;
  uint64_t at = offset + countSize;
  if (count * entrySize + fieldSize > source_.Size() - std::min(at, source_.Size())) return false;
  for (uint64_t i = 0; i < count; ++i, at += entrySize) {
    uint64_t tag = 0, type = 0;
    Entry entry;
    if (!ReadUnsigned(at, 2, tag) || !ReadUnsigned(at + 2, 2, type) || !ReadUnsigned(at + 4, fieldSize, entry.count)) {
      return false;
    }
    entry.tag = static_cast<uint16_t>(tag);
    entry.type = static_cast<uint16_t>(type);
    const uint32_t size = TypeSize(entry.type);
    if (size == 0 || entry.count > source_.Size() / size) continue;
    entry.valueAt = at + 4 + fieldSize;
    if (entry.Bytes() > fieldSize && !ReadUnsigned(entry.valueAt, fieldSize, entry.valueAt)) return false;
    if (entry.valueAt > source_.Size() || entry.Bytes() > source_.Size() - entry.valueAt) continue;
    directory.entries.push_back(entry);
  }
  directory.nextAt = at;
  return ReadUnsigned(at, fieldSize, directory.next);
}

bool Stream::Number(const Entry& entry, uint64_t index, uint64_t& value) {
  const bool integer = entry.type == kByte || entry.type == kShort || entry.type == kLong || entry.type == kIfd ||
                       entry.type == kLong8 || entry.type == kIfd8;
  if (!integer || index >= entry.count) return false;
  return ReadUnsigned(entry.valueAt + index * TypeSize(entry.type), TypeSize(entry.type), value);
}

uint64_t Stream::NumberOr(const Directory& directory, uint16_t tag, uint64_t fallback) {
  const Entry* entry = directory.Find(tag);
  uint64_t value = 0;
  return entry && Number(*entry, 0, value) ? value : fallback;
}

bool IsThumbnail(Stream& stream, const Directory& directory) {
  constexpr uint64_t kReduced = 1, kMask = 4, kOldReduced = 2;
  if ((stream.NumberOr(directory, kNewSubfileType, 0) & (kReduced | kMask)) != 0) return true;
  if (stream.NumberOr(directory, kSubfileType, 0) == kOldReduced) return true;
  const bool hasPixels = directory.Find(kStripOffsets) || directory.Find(kTileOffsets);
  return directory.Find(kJpegStream) && !hasPixels;
}

bool WalkPages(Stream& stream, size_t wanted, std::vector<Page>& pages) {
  struct Link {
    uint64_t offset, slotAt;
    bool thumbnail;
  };
  std::vector<Link> chain;
  std::unordered_set<uint64_t> seen;
  size_t found = 0;
  uint64_t offset = stream.First(), slotAt = stream.FirstAt();
  Directory directory;
  while (found < wanted && offset != 0 && seen.insert(offset).second && stream.ReadDirectory(offset, directory)) {
    const bool thumbnail = IsThumbnail(stream, directory);
    chain.push_back({offset, slotAt, thumbnail});
    found += thumbnail ? 0 : 1;
    offset = directory.next;
    slotAt = directory.nextAt;
  }
  if (found == 0) {
    for (Link& link : chain) link.thumbnail = false;
  }
  pages.clear();
  bool open = false;  // a group that still waits for its page: thumbnails ahead of the first one
  for (const Link& link : chain) {
    const bool startsGroup = pages.empty() || (!link.thumbnail && !open);
    if (startsGroup) {
      pages.emplace_back();
      pages.back().slotAt = link.slotAt;
      pages.back().groupStart = link.offset;
      open = link.thumbnail;
    }
    Page& page = pages.back();
    page.group.push_back(link.offset);
    if (link.thumbnail) {
      page.thumbnails.push_back(link.offset);
    } else {
      page.offset = link.offset;
      open = false;
    }
  }
  if (pages.size() > wanted) pages.resize(wanted);
  return !pages.empty();
}

}  // namespace zvfile::tiff
