// TIFF and BigTIFF: the profile is the value of a tag of the page's directory (ICC.1:2010, annex B.5). It is appended to the
// file; a directory that has the tag is changed in its one entry, one that has it not is written anew behind the profile and
// linked in the old one's place. Everything that offsets point to stays where it is.
#include <algorithm>
#include <cstring>

#include "services/zvcolor/image_profile.h"
#include "services/zvcolor/zvcolor.h"
#include "services/zvfile/codecs/tiff_directory.h"

namespace zvcolor {
namespace {

using zvfile::tiff::Directory;
using zvfile::tiff::Entry;
using zvfile::tiff::Page;
using zvfile::tiff::Stream;

constexpr uint16_t kProfileTag = 34675, kPhotometric = 262, kInkSet = 332, kNumberOfInks = 334;
constexpr uint16_t kUndefined = 7;
constexpr size_t kMostDirectories = 65536;

// The place of things in the two kinds of directory.
struct Layout {
  explicit Layout(const zvfile::tiff::Variant& variant) : isBig(variant.big), isBigEndian(variant.bigEndian) {}
  bool isBig;
  bool isBigEndian;
  uint32_t CountBytes() const { return isBig ? 8 : 2; }
  uint32_t OffsetBytes() const { return isBig ? 8 : 4; }
  uint32_t EntryBytes() const { return isBig ? 20 : 12; }

  void Put(Bytes& bytes, uint64_t value, uint32_t count) const {
    for (uint32_t i = 0; i < count; ++i) {
      bytes.push_back(static_cast<uint8_t>(value >> 8 * (isBigEndian ? count - 1 - i : i)));
    }
  }
  uint64_t Get(const uint8_t* bytes, uint32_t count) const {
    uint64_t value = 0;
    for (uint32_t i = 0; i < count; ++i) {
      value = value << 8 | bytes[isBigEndian ? i : count - 1 - i];
    }
    return value;
  }
};

bool Recognise(ByteView head) {
  if (head.size() < 8 || head[0] != head[1] || (head[0] != 'I' && head[0] != 'M')) {
    return false;
  }
  const int number = head[0] == 'I' ? head[2] | head[3] << 8 : head[2] << 8 | head[3];
  return number == 42 || number == 43;
}

int32_t FindPage(Stream& stream, int32_t number, Page& page, Directory& directory) {
  std::vector<Page> pages;
  if (!stream.Open() || !WalkPages(stream, static_cast<size_t>(std::max(number, 1)), pages)) {
    return ERROR_FILE_DAMAGED;
  }
  if (number < 1 || static_cast<size_t>(number) > pages.size()) {
    return ERROR_PAGE_MISSING;
  }
  page = pages[static_cast<size_t>(number) - 1];
  return stream.ReadDirectory(page.offset, directory) ? SUCCESS : ERROR_FILE_DAMAGED;
}

// Of TIFF 6.0 and its supplements; 0 for colours that a profile's four letters do not name.
uint32_t ColorSpace(Stream& stream, const Directory& directory) {
  switch (stream.NumberOr(directory, kPhotometric, 1)) {
    case 0:
    case 1: return kGray;
    case 2:
    case 3:
    case 6: return kRgb;
    case 5: {
      const bool isCmyk =
          stream.NumberOr(directory, kInkSet, 1) == 1 && stream.NumberOr(directory, kNumberOfInks, 4) == 4;
      return isCmyk ? kCmyk : 0;
    }
    case 8:
    case 9:
    case 10: return kLab;
    default: return 0;
  }
}

int32_t Read(ByteSource& source, int32_t number, Bytes& profile) {
  Stream stream(source);
  Page page;
  Directory directory;
  const int32_t status = FindPage(stream, number, page, directory);
  if (status != SUCCESS) {
    return status;
  }
  const Entry* entry = directory.Find(kProfileTag);
  if (!entry) {
    return ERROR_PROFILE_MISSING;
  }
  if (zvfile::tiff::TypeSize(entry->type) != 1) {
    return ERROR_PROFILE_DAMAGED;
  }
  const int32_t read = ReadBytes(source, entry->valueAt, entry->count, profile);
  return read == ERROR_FILE_DAMAGED ? ERROR_PROFILE_DAMAGED : read;
}

// The position of the pointer that leads to a directory of the main chain; 0 when none does.
uint64_t FindLink(Stream& stream, uint64_t target) {
  uint64_t link = stream.FirstAt();
  uint64_t offset = stream.First();
  for (size_t i = 0; i < kMostDirectories && offset != target; ++i) {
    Directory directory;
    if (offset == 0 || !stream.ReadDirectory(offset, directory)) {
      return 0;
    }
    link = directory.nextAt;
    offset = directory.next;
  }
  return offset == target ? link : 0;
}

Bytes ProfileEntry(const Layout& layout, uint64_t size, uint64_t at) {
  Bytes entry;
  layout.Put(entry, kProfileTag, 2);
  layout.Put(entry, kUndefined, 2);
  layout.Put(entry, size, layout.OffsetBytes());
  layout.Put(entry, at, layout.OffsetBytes());
  return entry;
}

// A directory as it stands in the file, from its first entry to the pointer to the next one.
struct RawDirectory {
  uint64_t count = 0;
  Bytes bytes;

  int32_t Read(ByteSource& source, const Layout& layout, uint64_t offset) {
    Bytes raw;
    const int32_t status = ReadBytes(source, offset, layout.CountBytes(), raw);
    if (status != SUCCESS) {
      return status;
    }
    count = layout.Get(raw.data(), layout.CountBytes());
    const uint64_t most = source.Size() / layout.EntryBytes();
    return count > most ? ERROR_FILE_DAMAGED
                        : ReadBytes(source, offset + layout.CountBytes(),
                                    count * layout.EntryBytes() + layout.OffsetBytes(), bytes);
  }
  // The position of the first entry whose tag is at least the profile's, from the beginning of bytes.
  size_t Place(const Layout& layout, bool& isThere) const {
    for (uint64_t i = 0; i < count; ++i) {
      const auto at = static_cast<size_t>(i * layout.EntryBytes());
      const uint64_t tag = layout.Get(&bytes[at], 2);
      if (tag >= kProfileTag) {
        isThere = tag == kProfileTag;
        return at;
      }
    }
    isThere = false;
    return static_cast<size_t>(count * layout.EntryBytes());
  }
};

void WriteAt(ByteSink& sink, uint64_t at, const Bytes& bytes) {
  sink.Seek(at);
  sink.Write(bytes.data(), bytes.size());
}

int32_t Write(ByteSource& source, ByteSink& sink, int32_t number, ByteView profile) {
  Stream stream(source);
  Page page;
  Directory directory;
  int32_t status = FindPage(stream, number, page, directory);
  if (status != SUCCESS) {
    return status;
  }
  if (!FitsImage(profile, ColorSpace(stream, directory))) {
    return ERROR_FEATURE_UNSUPPORTED;
  }
  const Layout layout(stream.GetVariant());
  RawDirectory raw;
  status = raw.Read(source, layout, page.offset);
  const uint64_t link = FindLink(stream, page.offset);
  if (status != SUCCESS || link == 0) {
    return ERROR_FILE_DAMAGED;
  }
  const uint64_t profileAt = source.Size() + source.Size() % 2;  // offsets are even
  const uint64_t directoryAt = profileAt + profile.size() + profile.size() % 2;
  if (!layout.isBig && directoryAt + raw.bytes.size() + layout.EntryBytes() + layout.CountBytes() > UINT32_MAX) {
    return ERROR_LIMIT_EXCEEDED;
  }
  sink.CopyFrom(source, 0, source.Size());
  sink.Seek(profileAt);
  sink.Write(profile.data(), profile.size());
  const Bytes entry = ProfileEntry(layout, profile.size(), profileAt);
  bool isThere = false;
  const size_t place = raw.Place(layout, isThere);
  if (isThere) {
    WriteAt(sink, page.offset + layout.CountBytes() + place, entry);
  } else {
    Bytes replacement;
    layout.Put(replacement, raw.count + 1, layout.CountBytes());
    replacement.insert(replacement.end(), raw.bytes.begin(), raw.bytes.end());
    replacement.insert(replacement.begin() + static_cast<ptrdiff_t>(layout.CountBytes() + place), entry.begin(),
                       entry.end());
    WriteAt(sink, directoryAt, replacement);
    Bytes pointer;
    layout.Put(pointer, directoryAt, layout.OffsetBytes());
    WriteAt(sink, link, pointer);
  }
  return sink.Failed() ? ERROR_FILE_WRITE : SUCCESS;
}

}  // namespace

const ImageContainer kTiffContainer = {&Recognise, &Read, &Write};

}  // namespace zvcolor
