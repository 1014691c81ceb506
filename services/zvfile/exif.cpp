// Reading and rewriting of Exif blocks: the TIFF structure of Exif 2.3 with its directories of 12-byte entries. A rewritten
// block keeps every byte of the old one where it was, since maker notes count offsets from its start; changed directories are
// put behind it.
#include <algorithm>
#include <array>
#include <cstring>

#include "services/zvfile/metadata.h"

namespace zvfile {
namespace {

constexpr size_t kMaxText = 65536;

enum Tag : uint16_t {
  kTagDocumentName = 0x010D,
  kTagDescription = 0x010E,
  kTagMake = 0x010F,
  kTagModel = 0x0110,
  kTagStripOffsets = 0x0111,
  kTagOrientation = 0x0112,
  kTagXResolution = 0x011A,
  kTagYResolution = 0x011B,
  kTagResolutionUnit = 0x0128,
  kTagSoftware = 0x0131,
  kTagDateTime = 0x0132,
  kTagArtist = 0x013B,
  kTagThumbnailOffset = 0x0201,
  kTagThumbnailLength = 0x0202,
  kTagCompression = 0x0103,
  kTagCopyright = 0x8298,
  kTagExifDirectory = 0x8769,
  kTagXpTitle = 0x9C9B,
  kTagXpComment = 0x9C9C,
  kTagExifVersion = 0x9000,
  kTagPixelWidth = 0xA002,
  kTagPixelHeight = 0xA003
};

enum Type : uint16_t { kByte = 1, kAscii = 2, kShort = 3, kLong = 4, kRational = 5, kUndefined = 7 };

struct CommentTag {
  int32_t comment;
  uint16_t tag;
  uint16_t type;
};

constexpr CommentTag kCommentTags[] = {{COMMENT_DESCRIPTION, kTagDescription, kAscii},
                                       {COMMENT_AUTHOR, kTagArtist, kAscii},
                                       {COMMENT_SOFTWARE, kTagSoftware, kAscii},
                                       {COMMENT_COPYRIGHT, kTagCopyright, kAscii},
                                       {COMMENT_DATE, kTagDateTime, kAscii},
                                       {COMMENT_MAKE, kTagMake, kAscii},
                                       {COMMENT_MODEL, kTagModel, kAscii},
                                       {COMMENT_TITLE, kTagXpTitle, kByte},
                                       {COMMENT_COMMENT, kTagXpComment, kByte}};

size_t TypeBytes(uint16_t type) {
  switch (type) {
    case kShort: return 2;
    case kLong: return 4;
    case kRational: return 8;
    default: return 1;
  }
}

struct Entry {
  uint16_t tag = 0;
  uint16_t type = 0;
  uint32_t count = 0;
  uint8_t value[4] = {};  // the value, or its offset, in the block's byte order
};

// Bounds-checked view of a block; reads outside it give 0.
class Reader {
 public:
  explicit Reader(std::span<const uint8_t> block) : block_(block) {
    valid_ = block.size() >= 8 && ((block[0] == 'I' && block[1] == 'I') || (block[0] == 'M' && block[1] == 'M'));
    little_ = valid_ && block[0] == 'I';
    valid_ = valid_ && Number(2, 2) == 42;
  }

  bool Valid() const { return valid_; }
  bool Little() const { return little_; }
  uint32_t FirstDirectory() const { return Number(4, 4); }

  uint32_t Number(uint64_t offset, int bytes) const {
    if (offset + static_cast<uint64_t>(bytes) > block_.size()) return 0;
    return FromBytes(block_.data() + offset, bytes);
  }

  uint32_t FromBytes(const uint8_t* bytes, int count) const {
    uint32_t value = 0;
    for (int i = 0; i < count; ++i) value |= uint32_t{bytes[i]} << (8 * (little_ ? i : count - 1 - i));
    return value;
  }

  std::vector<Entry> Directory(uint32_t offset, uint32_t& next) const {
    std::vector<Entry> entries;
    next = 0;
    if (offset < 8 || offset + uint64_t{2} > block_.size()) return entries;
    const uint32_t count = Number(offset, 2);
    const uint64_t end = offset + uint64_t{2} + uint64_t{count} * 12;
    if (end > block_.size()) return entries;
    for (uint32_t i = 0; i < count; ++i) {
      const uint64_t at = offset + 2 + uint64_t{i} * 12;
      Entry entry;
      entry.tag = static_cast<uint16_t>(Number(at, 2));
      entry.type = static_cast<uint16_t>(Number(at + 2, 2));
      entry.count = Number(at + 4, 4);
      std::memcpy(entry.value, block_.data() + at + 8, 4);
      entries.push_back(entry);
    }
    next = Number(end, 4);
    return entries;
  }

  // The bytes of a value; empty when they lie outside the block.
  std::span<const uint8_t> Value(const Entry& entry) const {
    const uint64_t bytes = uint64_t{entry.count} * TypeBytes(entry.type);
    if (bytes <= 4) return {entry.value, static_cast<size_t>(bytes)};
    const uint64_t offset = FromBytes(entry.value, 4);
    if (offset + bytes > block_.size()) return {};
    return block_.subspan(static_cast<size_t>(offset), static_cast<size_t>(bytes));
  }

  uint32_t Integer(const Entry& entry) const {
    if (entry.count < 1) return 0;
    if (entry.type == kShort) return FromBytes(entry.value, 2);
    return entry.type == kLong ? FromBytes(entry.value, 4) : 0;
  }

  double Fraction(const Entry& entry) const {
    const auto value = Value(entry);
    if (entry.type != kRational || value.size() < 8) return 0;
    const uint32_t divisor = FromBytes(value.data() + 4, 4);
    return divisor == 0 ? 0 : static_cast<double>(FromBytes(value.data(), 4)) / divisor;
  }

 private:
  std::span<const uint8_t> block_;
  bool valid_ = false;
  bool little_ = true;
};

const Entry* Find(const std::vector<Entry>& entries, uint16_t tag) {
  const auto found = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.tag == tag; });
  return found == entries.end() ? nullptr : &*found;
}

std::string TextOf(const Reader& reader, const Entry& entry, const CommentTag& kind) {
  const auto value = reader.Value(entry);
  if (value.empty() || value.size() > kMaxText) return {};
  if (kind.type == kByte) {  // UTF-16, little-endian whatever the block's order is
    std::u16string wide;
    for (size_t i = 0; i + 1 < value.size(); i += 2) wide += static_cast<char16_t>(value[i] | (value[i + 1] << 8));
    return Utf8FromUtf16(wide.substr(0, wide.find(u'\0')));
  }
  std::string text(value.begin(), value.end());
  text.resize(std::min(text.find('\0'), text.size()));
  const size_t last = text.find_last_not_of(" \r\n\t");
  text.resize(last == std::string::npos ? 0 : last + 1);
  return IsUtf8(text) ? text : Utf8FromLatin1(text);
}

// Grows a copy of the old block by directories and their values.
class Writer {
 public:
  Writer(std::span<const uint8_t> old, bool little) : block_(old.begin(), old.end()), little_(little) {
    if (block_.empty()) {
      block_ = {'I', 'I', 42, 0, 0, 0, 0, 0};
      little_ = true;
    }
    if (block_.size() % 2) block_.push_back(0);
  }

  void Patch(uint64_t offset, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
      block_[static_cast<size_t>(offset) + static_cast<size_t>(i)] =
          static_cast<uint8_t>(value >> (8 * (little_ ? i : bytes - 1 - i)));
    }
  }

  uint32_t Append(std::span<const uint8_t> bytes) {
    const uint32_t offset = static_cast<uint32_t>(block_.size());
    block_.insert(block_.end(), bytes.begin(), bytes.end());
    if (block_.size() % 2) block_.push_back(0);
    return offset;
  }

  void Set(std::vector<Entry>& entries, uint16_t tag, uint16_t type, uint32_t count, uint32_t value) {
    Entry entry{tag, type, count, {}};
    const int bytes = type == kShort && count == 1 ? 2 : 4;
    for (int i = 0; i < bytes; ++i) entry.value[i] = static_cast<uint8_t>(value >> (8 * (little_ ? i : bytes - 1 - i)));
    Put(entries, entry);
  }

  void SetBytes(std::vector<Entry>& entries, uint16_t tag, uint16_t type, std::span<const uint8_t> bytes) {
    Entry entry{tag, type, static_cast<uint32_t>(bytes.size()), {}};
    if (bytes.size() <= 4) {
      std::copy(bytes.begin(), bytes.end(), entry.value);
      Put(entries, entry);
    } else {
      const uint32_t count = entry.count;
      Set(entries, tag, type, count, Append(bytes));
    }
  }

  // A rational number without a fraction.
  void SetWhole(std::vector<Entry>& entries, uint16_t tag, uint32_t value) {
    const uint32_t offset = Append(std::array<uint8_t, 8>{});
    Patch(offset, value, 4);
    Patch(offset + uint64_t{4}, 1, 4);
    Set(entries, tag, kRational, 1, offset);
  }

  // Writes a directory, sorted as the format wants; gives its offset and the place of its link to the next one.
  uint32_t WriteDirectory(std::vector<Entry> entries, uint64_t& link) {
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.tag < b.tag; });
    const uint32_t offset = static_cast<uint32_t>(block_.size());
    block_.resize(block_.size() + 2 + entries.size() * 12 + 4);
    Patch(offset, static_cast<uint32_t>(entries.size()), 2);
    uint64_t at = offset + uint64_t{2};
    for (const Entry& entry : entries) {
      Patch(at, entry.tag, 2);
      Patch(at + 2, entry.type, 2);
      Patch(at + 4, entry.count, 4);
      std::memcpy(&block_[static_cast<size_t>(at) + 8], entry.value, 4);
      at += 12;
    }
    link = at;
    return offset;
  }

  std::vector<uint8_t> Take() { return std::move(block_); }

 private:
  static void Put(std::vector<Entry>& entries, const Entry& entry) {
    std::erase_if(entries, [&](const Entry& other) { return other.tag == entry.tag; });
    entries.push_back(entry);
  }

  std::vector<uint8_t> block_;
  bool little_;
};

void PutComment(Writer& writer, std::vector<Entry>& entries, const CommentTag& kind, const std::string& text) {
  std::vector<uint8_t> bytes;
  if (kind.type == kByte) {
    for (const char16_t unit : Utf16FromUtf8(text)) {
      bytes.push_back(static_cast<uint8_t>(unit));
      bytes.push_back(static_cast<uint8_t>(unit >> 8));
    }
    bytes.push_back(0);
  } else {
    bytes.assign(text.begin(), text.end());
  }
  bytes.push_back(0);
  writer.SetBytes(entries, kind.tag, kind.type, bytes);
}

// The sizes that the Exif directory tells of the image are brought up to date where they stand.
void PatchPixelSize(Writer& writer, const Reader& reader, const std::vector<Entry>& entries, const ExifTarget& target) {
  const Entry* link = Find(entries, kTagExifDirectory);
  if (!link) return;
  const uint32_t offset = reader.Integer(*link);
  uint32_t next = 0;
  const std::vector<Entry> exif = reader.Directory(offset, next);
  for (size_t i = 0; i < exif.size(); ++i) {
    const bool isWidth = exif[i].tag == kTagPixelWidth, isHeight = exif[i].tag == kTagPixelHeight;
    if (!isWidth && !isHeight) continue;
    const uint64_t at = offset + 2 + i * 12;
    writer.Patch(at + 2, kLong, 2);
    writer.Patch(at + 4, 1, 4);
    writer.Patch(at + 8, static_cast<uint32_t>(isWidth ? target.width : target.height), 4);
  }
}

// Cuts the old thumbnail off when it is the block's tail, where cameras put it; elsewhere it is left as dead bytes.
std::span<const uint8_t> WithoutThumbnail(std::span<const uint8_t> block, std::span<const uint8_t> thumbnail,
                                          uint32_t lastDirectory) {
  constexpr size_t kPadding = 16;
  if (thumbnail.empty()) return block;
  const size_t start = static_cast<size_t>(thumbnail.data() - block.data());
  return start > lastDirectory && start + thumbnail.size() + kPadding >= block.size() ? block.first(start) : block;
}

void SetResolution(Writer& writer, std::vector<Entry>& entries, const ExifTarget& target) {
  if (target.xResolution < 1 || target.yResolution < 1) return;
  constexpr uint32_t kInches = 2;
  writer.SetWhole(entries, kTagXResolution, static_cast<uint32_t>(target.xResolution));
  writer.SetWhole(entries, kTagYResolution, static_cast<uint32_t>(target.yResolution));
  writer.Set(entries, kTagResolutionUnit, kShort, 1, kInches);
}

std::vector<uint8_t> Build(std::span<const uint8_t> exif, const Comments& comments, std::span<const uint8_t> thumbnail,
                           const ExifTarget& target) {
  const Reader reader(exif);
  const bool usable = reader.Valid();
  uint32_t next = 0;
  std::vector<Entry> entries;
  std::span<const uint8_t> kept;
  if (usable) {
    entries = reader.Directory(reader.FirstDirectory(), next);
    kept = WithoutThumbnail(exif, ReadExif(exif).thumbnail, std::max(reader.FirstDirectory(), next));
  }
  Writer writer(kept, usable ? reader.Little() : true);
  PatchPixelSize(writer, Reader(kept), entries, target);
  writer.Set(entries, kTagOrientation, kShort, 1, VIEW_TOP_LEFT);
  SetResolution(writer, entries, target);
  for (const CommentTag& kind : kCommentTags) {
    const std::string& text = comments[static_cast<size_t>(kind.comment)];
    if (!text.empty()) PutComment(writer, entries, kind, text);
  }
  if (!Find(entries, kTagExifDirectory)) {
    std::vector<Entry> details;
    constexpr uint8_t kVersion[] = {'0', '2', '3', '0'};
    writer.SetBytes(details, kTagExifVersion, kUndefined, kVersion);
    writer.Set(details, kTagPixelWidth, kLong, 1, static_cast<uint32_t>(target.width));
    writer.Set(details, kTagPixelHeight, kLong, 1, static_cast<uint32_t>(target.height));
    uint64_t unused = 0;
    writer.Set(entries, kTagExifDirectory, kLong, 1, writer.WriteDirectory(details, unused));
  }
  uint64_t link = 0;
  writer.Patch(4, writer.WriteDirectory(entries, link), 4);
  if (!thumbnail.empty()) {
    std::vector<Entry> small;
    constexpr uint32_t kJpegCompression = 6;
    writer.Set(small, kTagCompression, kShort, 1, kJpegCompression);
    writer.Set(small, kTagThumbnailOffset, kLong, 1, writer.Append(thumbnail));
    writer.Set(small, kTagThumbnailLength, kLong, 1, static_cast<uint32_t>(thumbnail.size()));
    uint64_t unused = 0;
    writer.Patch(link, writer.WriteDirectory(small, unused), 4);
  }
  return writer.Take();
}

}  // namespace

ExifSummary ReadExif(std::span<const uint8_t> exif) {
  ExifSummary summary;
  const Reader reader(exif);
  if (!reader.Valid()) return summary;
  uint32_t next = 0;
  const std::vector<Entry> entries = reader.Directory(reader.FirstDirectory(), next);
  if (const Entry* entry = Find(entries, kTagOrientation)) {
    const uint32_t value = reader.Integer(*entry);
    if (value >= VIEW_TOP_LEFT && value <= VIEW_LEFT_BOTTOM) summary.orientation = static_cast<int32_t>(value);
  }
  const Entry* unit = Find(entries, kTagResolutionUnit);
  constexpr uint32_t kCentimetres = 3;
  const double scale = unit && reader.Integer(*unit) == kCentimetres ? 2.54 : 1.0;
  if (const Entry* entry = Find(entries, kTagXResolution)) summary.xResolution = reader.Fraction(*entry) * scale;
  if (const Entry* entry = Find(entries, kTagYResolution)) summary.yResolution = reader.Fraction(*entry) * scale;
  for (const CommentTag& kind : kCommentTags) {
    const Entry* entry = Find(entries, kind.tag);
    if (entry) summary.comments[static_cast<size_t>(kind.comment)] = TextOf(reader, *entry, kind);
  }
  if (next != 0) {
    uint32_t unused = 0;
    const std::vector<Entry> small = reader.Directory(next, unused);
    const Entry* offset = Find(small, kTagThumbnailOffset);
    const Entry* length = Find(small, kTagThumbnailLength);
    if (!offset && Find(small, kTagStripOffsets)) summary.pixelThumbnail = next;
    if (offset && length) {
      const uint64_t start = reader.Integer(*offset), bytes = reader.Integer(*length);
      if (bytes > 2 && start + bytes <= exif.size()) {
        summary.thumbnail = exif.subspan(static_cast<size_t>(start), static_cast<size_t>(bytes));
      }
    }
  }
  return summary;
}

std::vector<uint8_t> BuildExif(std::span<const uint8_t> exif, const Comments& comments,
                               std::span<const uint8_t> thumbnail, const ExifTarget& target) {
  std::vector<uint8_t> block = Build(exif, comments, thumbnail, target);
  if (block.size() > target.maxBytes && !thumbnail.empty()) block = Build(exif, comments, {}, target);
  if (block.size() > target.maxBytes) block.clear();
  return block;
}

bool ProfileFits(std::span<const uint8_t> profile, bool gray) {
  constexpr size_t kHeaderBytes = 128;
  if (profile.size() < kHeaderBytes || std::memcmp(profile.data() + 36, "acsp", 4) != 0) return false;
  return std::memcmp(profile.data() + 16, gray ? "GRAY" : "RGB ", 4) == 0;
}

}  // namespace zvfile
