#include "services/zvfile/codecs/jp2_boxes.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zvfile {

uint64_t ReadBigEndian(const uint8_t* bytes, int count) {
  uint64_t value = 0;
  for (int i = 0; i < count; ++i) value = value << 8 | bytes[i];
  return value;
}

namespace {

constexpr double kInchesPerMetre = 0.0254;
constexpr size_t kUuidBytes = 16;
constexpr size_t kResolutionBytes = 10;
constexpr int kMostBoxes = 10000;  // in one list; more is no file that anybody made
constexpr uint8_t kExifUuid[kUuidBytes + 1] = "JpgTiffExif->JP2";
constexpr uint8_t kPhotoshopExifUuid[kUuidBytes] = {0x05, 0x37, 0xCD, 0xAB, 0x9D, 0x0C, 0x44, 0x31,
                                                    0xA7, 0x2A, 0xFA, 0x56, 0x1F, 0x2A, 0x11, 0x3E};
constexpr uint8_t kXmpUuid[kUuidBytes] = {0xBE, 0x7A, 0xCF, 0xCB, 0x97, 0xA9, 0x42, 0xE8,
                                          0x9C, 0x71, 0x99, 0x94, 0x91, 0xE3, 0xAF, 0xAC};

// --- Reading ---

struct Box {
  char name[4];
  uint64_t start = 0, end = 0;  // of the content
  bool Is(const char* other) const { return std::memcmp(name, other, 4) == 0; }
};

// The box at an offset of a list that ends at `end`. False when there is none or it is damaged; name and start are set all the
// same when it is only cut short.
bool ReadBox(ByteSource& source, uint64_t at, uint64_t end, Box& box) {
  uint8_t head[16];
  if (end < at + 8 || source.ReadAt(at, head, 8) != 8) return false;
  uint64_t size = ReadBigEndian(head, 4), headBytes = 8;
  std::memcpy(box.name, head + 4, 4);
  if (size == 1) {  // the size stands in 8 bytes of its own
    if (source.ReadAt(at + 8, head + 8, 8) != 8) return false;
    size = ReadBigEndian(head + 8, 8);
    headBytes = 16;
  } else if (size == 0) {  // up to the end
    size = end - at;
  }
  box.start = at + headBytes;
  if (size < headBytes || size > end - at) return false;
  box.end = at + size;
  return true;
}

template <typename Visit>
void VisitBoxes(ByteSource& source, uint64_t start, uint64_t end, Visit&& visit) {
  Box box;
  for (int count = 0; count < kMostBoxes && ReadBox(source, start, end, box); ++count) {
    visit(box);
    start = box.end;
  }
}

// Dots per inch from a numerator, a denominator and a power of ten, for a metre.
double DotsPerInch(const uint8_t* fraction, uint8_t exponent) {
  const double divisor = static_cast<double>(ReadBigEndian(fraction + 2, 2));
  if (divisor == 0) return 0;
  const double perMetre =
      static_cast<double>(ReadBigEndian(fraction, 2)) / divisor * std::pow(10.0, static_cast<int8_t>(exponent));
  return perMetre * kInchesPerMetre;
}

// Of capture and display resolution, which are laid out alike, the first one counts.
void ReadResolution(ByteSource& source, const Box& list, ImageHeader& header) {
  VisitBoxes(source, list.start, list.end, [&](const Box& box) {
    uint8_t content[kResolutionBytes];
    if (header.xResolution != 0 || !(box.Is("resc") || box.Is("resd"))) return;
    if (box.end - box.start < sizeof content || source.ReadAt(box.start, content, sizeof content) != sizeof content)
      return;
    header.yResolution = DotsPerInch(content, content[8]);
    header.xResolution = DotsPerInch(content + 4, content[9]);
  });
}

// A colr box: the number of a colour space, or a profile. True when it says inks.
bool ReadColors(ByteSource& source, const Box& box, const Limits& limits, Metadata& metadata) {
  enum Method : uint8_t { kNumber = 1, kRestrictedProfile = 2, kAnyProfile = 3 };
  constexpr uint64_t kInksNumber = 12;
  constexpr uint64_t kHeadBytes = 3;
  uint8_t method = 0, number[4];
  if (box.end - box.start <= kHeadBytes || box.end - box.start > limits.maxMetadataBytes) return false;
  if (source.ReadAt(box.start, &method, 1) != 1) return false;
  const uint64_t content = box.start + kHeadBytes;
  if (method == kNumber) return source.ReadAt(content, number, 4) == 4 && ReadBigEndian(number, 4) == kInksNumber;
  std::vector<uint8_t>& profile = metadata.profile;
  if ((method != kRestrictedProfile && method != kAnyProfile) || !profile.empty()) return false;
  profile.resize(static_cast<size_t>(box.end - content));
  if (source.ReadAt(content, profile.data(), profile.size()) != profile.size()) profile.clear();
  return profile.size() > 20 && std::memcmp(profile.data() + 16, "CMYK", 4) == 0;
}

void ReadPalette(ByteSource& source, const Box& box, Jp2Colors& colors) {
  uint8_t head[4];  // entries, columns, depth of the first column less one, with the sign on top
  if (box.end - box.start < sizeof head || source.ReadAt(box.start, head, sizeof head) != sizeof head) return;
  colors.paletteColumns = head[2];
  colors.deepPalette = (head[3] & 0x7F) >= 8;
}

void ReadUuid(ByteSource& source, const Box& box, const Limits& limits, Metadata& metadata) {
  uint8_t uuid[kUuidBytes];
  if (box.end - box.start <= kUuidBytes || box.end - box.start > limits.maxMetadataBytes) return;
  if (source.ReadAt(box.start, uuid, sizeof uuid) != sizeof uuid) return;
  const auto is = [&](const uint8_t* other) { return std::memcmp(uuid, other, sizeof uuid) == 0; };
  std::vector<uint8_t>* block = nullptr;
  if (is(kExifUuid) || is(kPhotoshopExifUuid)) block = &metadata.exif;
  if (is(kXmpUuid)) block = &metadata.xmp;
  if (!block || !block->empty()) return;
  block->resize(static_cast<size_t>(box.end - box.start - kUuidBytes));
  if (source.ReadAt(box.start + kUuidBytes, block->data(), block->size()) != block->size()) block->clear();
}

// --- Writing ---

using Bytes = std::vector<uint8_t>;

void AppendBe(Bytes& to, uint64_t value, int count) {
  for (int shift = 8 * (count - 1); shift >= 0; shift -= 8) to.push_back(static_cast<uint8_t>(value >> shift));
}

void AppendBox(Bytes& to, const char* name, std::span<const uint8_t> content) {
  AppendBe(to, content.size() + 8, 4);
  to.insert(to.end(), name, name + 4);
  to.insert(to.end(), content.begin(), content.end());
}

void AppendUuid(Bytes& to, const uint8_t* uuid, const Bytes& block) {
  if (block.empty()) return;
  Bytes content(uuid, uuid + kUuidBytes);
  content.insert(content.end(), block.begin(), block.end());
  AppendBox(to, "uuid", content);
}

// An ICC profile, restricted as it may be, in place of the number of a colour space.
void AppendProfile(Bytes& to, const Bytes& profile) {
  Bytes content = {2, 0, 0};  // method, precedence, approximation
  content.insert(content.end(), profile.begin(), profile.end());
  AppendBox(to, "colr", content);
}

void AppendResolution(Bytes& to, int32_t x, int32_t y) {
  Bytes content;
  constexpr int32_t kMost = 65535;
  // n dots per inch are n * 10000 / 254 dots per metre: the power of ten goes into the exponent.
  for (const int32_t dots : {y, x}) {
    AppendBe(content, static_cast<uint64_t>(std::min(dots, kMost)), 2);
    AppendBe(content, 254, 2);
  }
  content.insert(content.end(), 2, uint8_t{4});
  Bytes list;
  AppendBox(list, "resc", content);
  AppendBox(to, "res ", list);
}

// The header superbox with what the request adds.
Bytes HeaderBox(ByteSource& plain, const Box& header, const SaveRequest& request, bool gray) {
  const Bytes& profile = request.metadata.profile;
  const bool profiled = ProfileFits(profile, gray);
  Bytes content;
  VisitBoxes(plain, header.start, header.end, [&](const Box& box) {
    if (profiled && box.Is("colr")) return;
    Bytes bytes(static_cast<size_t>(box.end - box.start));
    plain.ReadAt(box.start, bytes.data(), bytes.size());
    AppendBox(content, std::string(box.name, 4).c_str(), bytes);
  });
  if (profiled) AppendProfile(content, profile);
  if (request.xResolution > 0 && request.yResolution > 0)
    AppendResolution(content, request.xResolution, request.yResolution);
  Bytes box;
  AppendBox(box, "jp2h", content);
  return box;
}

Bytes MetadataBoxes(const SaveRequest& request, const RowSource& rows) {
  Bytes boxes;
  if (!request.metadata.exif.empty()) {
    const ExifTarget target = {rows.Width(), rows.Height(), request.xResolution, request.yResolution, size_t{1} << 30};
    AppendUuid(boxes, kExifUuid, BuildExif(request.metadata.exif, request.metadata.comments, {}, target));
  }
  AppendUuid(boxes, kXmpUuid, request.metadata.xmp);
  return boxes;
}

}  // namespace

Jp2Colors ReadJp2Boxes(ByteSource& source, const Limits& limits, ImageHeader& header) {
  Jp2Colors colors;
  VisitBoxes(source, 0, source.Size(), [&](const Box& box) {
    if (box.Is("uuid")) ReadUuid(source, box, limits, header.metadata);
    if (!box.Is("jp2h")) return;
    VisitBoxes(source, box.start, box.end, [&](const Box& inner) {
      if (inner.Is("res ")) ReadResolution(source, inner, header);
      if (inner.Is("colr")) colors.inks |= ReadColors(source, inner, limits, header.metadata);
      if (inner.Is("pclr")) ReadPalette(source, inner, colors);
    });
  });
  const ExifSummary exif = ReadExif(header.metadata.exif);
  if (exif.orientation != 0) header.viewPerspective = exif.orientation;
  if (header.xResolution == 0) {
    header.xResolution = exif.xResolution;
    header.yResolution = exif.yResolution;
  }
  header.metadata.comments = exif.comments;
  return colors;
}

uint64_t FindCodeStream(ByteSource& source) {
  uint64_t at = 0;
  for (int count = 0; count < kMostBoxes; ++count) {
    Box box = {};
    const bool whole = ReadBox(source, at, source.Size(), box);
    if (box.Is("jp2c")) return box.start;
    if (!whole) break;
    at = box.end;
  }
  return 0;
}

int32_t WriteJp2WithBoxes(std::span<const uint8_t> plain, const SaveRequest& request, const RowSource& rows,
                          ByteSink& sink) {
  MemorySource source(plain);
  bool good = true;
  const auto write = [&](std::span<const uint8_t> bytes) { good = good && sink.Write(bytes.data(), bytes.size()); };
  uint64_t copied = 0;
  VisitBoxes(source, 0, source.Size(), [&](const Box& box) {
    if (box.Is("jp2h")) {
      write(HeaderBox(source, box, request, IsGray(rows.GetLayout())));
      write(MetadataBoxes(request, rows));
    } else {
      write(plain.subspan(static_cast<size_t>(copied), static_cast<size_t>(box.end - copied)));
    }
    copied = box.end;
  });
  return good && copied == plain.size() ? SUCCESS : ERROR_FILE_WRITE;
}

}  // namespace zvfile
