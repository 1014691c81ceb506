// X window dumps of version 7: pixmaps of 1, 8, 16, 24 and 32 bits a pixel, with colour map or channel masks. Layout after the
// X Window System's XWDFile.h.
#include <algorithm>
#include <bit>

#include "services/zvfile/codec.h"

namespace zvfile {
namespace xwd {
namespace {

// --- State ---

enum Field {
  kHeaderSize,
  kVersion,
  kFormat,
  kDepth,
  kWidth,
  kHeight,
  kXOffset,
  kByteOrder,
  kBitmapUnit,
  kBitOrder,
  kBitmapPad,
  kBitsPerPixel,
  kBytesPerLine,
  kVisualClass,
  kRedMask,
  kGreenMask,
  kBlueMask,
  kBitsPerRgb,
  kMapEntries,
  kColors,
  kFieldCount = 25
};
constexpr uint32_t kZPixmap = 2, kVersion7 = 7;
constexpr size_t kColorBytes = 12;
constexpr uint32_t kMostColors = 1u << 16;

struct File {
  uint32_t fields[kFieldCount];
  uint64_t pixelsAt = 0;
  ImageHeader header;
  uint32_t operator[](Field field) const { return fields[field]; }
};

bool ReadFields(ByteSource& source, File& file) {
  uint8_t bytes[kFieldCount * 4];
  if (source.ReadAt(0, bytes, sizeof bytes) != sizeof bytes) return false;
  // Dumps are big-endian as a rule; the version tells those that are not.
  const bool big = bytes[4] == 0 && bytes[7] == kVersion7;
  for (size_t i = 0; i < kFieldCount; ++i) {
    const uint8_t* b = bytes + 4 * i;
    file.fields[i] = big ? uint32_t{b[0]} << 24 | uint32_t{b[1]} << 16 | uint32_t{b[2]} << 8 | b[3]
                         : uint32_t{b[3]} << 24 | uint32_t{b[2]} << 16 | uint32_t{b[1]} << 8 | b[0];
  }
  return file[kVersion] == kVersion7;
}

// Colours stand in the order of their pixel values nearly always, but the value is what counts.
bool ReadColors(ByteSource& source, File& file) {
  if (file[kColors] > kMostColors) return false;
  std::vector<uint8_t> bytes(file[kColors] * kColorBytes);
  if (source.ReadAt(file[kHeaderSize], bytes.data(), bytes.size()) != bytes.size()) return false;
  Palette& palette = file.header.palette;
  palette.assign(size_t{1} << std::min(file[kDepth], 8u), {0, 0, 0, 255});
  for (size_t i = 0; i < file[kColors]; ++i) {
    const uint8_t* color = &bytes[i * kColorBytes];
    const size_t pixel = color[3];  // the low byte; maps go with 8 bits at most
    if (color[0] == 0 && pixel < palette.size()) palette[pixel] = {color[8], color[6], color[4], 255};
  }
  return true;
}

int32_t ChooseLayout(ByteSource& source, File& file) {
  const uint32_t bits = file[kBitsPerPixel];
  if (bits == 1) {
    file.header.layout = Layout::kIndex1;
    file.header.palette = {{255, 255, 255, 255}, {0, 0, 0, 255}};
    return file[kColors] < 2 || ReadColors(source, file) ? SUCCESS : ERROR_FILE_DAMAGED;
  }
  if (file[kFormat] != kZPixmap) return ERROR_FEATURE_UNSUPPORTED;
  if (bits == 8) {
    file.header.layout = Layout::kIndex8;
    return ReadColors(source, file) ? SUCCESS : ERROR_FILE_DAMAGED;
  }
  file.header.layout = Layout::kRgb24;
  const bool masks = file[kRedMask] != 0 && file[kGreenMask] != 0 && file[kBlueMask] != 0;
  return masks && (bits == 16 || bits == 24 || bits == 32) ? SUCCESS : ERROR_FEATURE_UNSUPPORTED;
}

int32_t Open(ByteSource& source, const LoadRequest& request, File& file) {
  if (request.page > 1) return ERROR_PAGE_MISSING;
  if (!ReadFields(source, file)) return ERROR_FILE_FORMAT;
  const int32_t result = request.limits.CheckImage(file[kWidth], file[kHeight], 24);
  if (result != SUCCESS) return result;
  const uint64_t rowBits = uint64_t{file[kWidth]} * file[kBitsPerPixel];
  file.pixelsAt = file[kHeaderSize] + uint64_t{file[kColors]} * kColorBytes;
  const uint64_t pixelBytes = uint64_t{file[kBytesPerLine]} * file[kHeight];
  if (uint64_t{file[kBytesPerLine]} * 8 < rowBits || file.pixelsAt > source.Size() ||
      pixelBytes > source.Size() - file.pixelsAt) {
    return ERROR_FILE_DAMAGED;
  }
  file.header.format = FMT_XWD;
  file.header.compression = "Uncompressed";
  file.header.width = static_cast<int32_t>(file[kWidth]);
  file.header.height = static_cast<int32_t>(file[kHeight]);
  return ChooseLayout(source, file);
}

// --- Probe: header size and version stand at fixed places, either end first ---

bool Probe(ByteSource& source) {
  File file;
  return ReadFields(source, file) && file[kHeaderSize] >= 100 && file[kHeaderSize] < 4096 &&
         file[kFormat] <= kZPixmap && file[kDepth] >= 1 && file[kDepth] <= 32 && file[kVisualClass] <= 5;
}

// --- Info ---

int32_t Info(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  File file;
  const int32_t result = Open(source, request, file);
  if (result == SUCCESS) header = std::move(file.header);
  return result;
}

// --- Load ---

uint8_t Channel(uint32_t pixel, uint32_t mask) {
  const uint64_t value = (pixel & mask) >> std::countr_zero(mask);
  const uint64_t last = mask >> std::countr_zero(mask);
  return static_cast<uint8_t>((value * 255 + last / 2) / last);
}

void ConvertMasked(const File& file, const uint8_t* stored, uint8_t* row) {
  const size_t bytes = file[kBitsPerPixel] / 8;
  const bool bigFirst = file[kByteOrder] != 0;
  for (uint32_t x = 0; x < file[kWidth]; ++x, stored += bytes) {
    uint32_t pixel = 0;
    for (size_t i = 0; i < bytes; ++i) pixel = pixel << 8 | stored[bigFirst ? i : bytes - 1 - i];
    for (const Field mask : {kRedMask, kGreenMask, kBlueMask}) *row++ = Channel(pixel, file[mask]);
  }
}

// Bits of a unit may run either way, and its bytes as well; afterwards the leftmost pixel is the highest bit of the first byte.
void ConvertBits(const File& file, uint8_t* row, size_t bytes) {
  const size_t unit = file[kBitmapUnit] / 8;
  const bool lowFirst = file[kBitOrder] == 0;
  if (unit > 1 && (file[kByteOrder] == 0) != lowFirst) {
    for (size_t at = 0; at + unit <= bytes; at += unit) std::reverse(row + at, row + at + unit);
  }
  for (size_t i = 0; lowFirst && i < bytes; ++i) {
    uint8_t reversed = 0;
    for (int bit = 0; bit < 8; ++bit) reversed = static_cast<uint8_t>(reversed | (row[i] >> bit & 1) << (7 - bit));
    row[i] = reversed;
  }
}

int32_t Load(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  File file;
  int32_t result = Open(source, request, file);
  if (result == SUCCESS) result = sink.Begin(file.header);
  if (result != SUCCESS) return result;
  std::vector<uint8_t> stored(file[kBytesPerLine]), row(PackedRowBytes(file.header.layout, file.header.width));
  for (uint32_t y = 0; y < file[kHeight] && result == SUCCESS; ++y) {
    source.Seek(file.pixelsAt + uint64_t{y} * stored.size());
    if (!source.ReadExactly(stored.data(), stored.size())) return ERROR_FILE_DAMAGED;
    if (file.header.layout == Layout::kIndex1) ConvertBits(file, stored.data(), stored.size());
    if (file.header.layout == Layout::kRgb24) {
      ConvertMasked(file, stored.data(), row.data());
    } else {
      std::copy_n(stored.data(), row.size(), row.data());
    }
    result = sink.Put(row.data(), static_cast<ptrdiff_t>(row.size()), 1);
  }
  return result;
}

// --- The row of the codec table ---

constexpr FormatRow kFormats[] = {{FMT_XWD, "xwd", 0}};
constexpr Signature kSignatures[] = {{4, 4, "\0\0\0\7"}, {4, 4, "\7\0\0\0"}};

}  // namespace
}  // namespace xwd

extern const Codec kXwdCodec = {
    .name = "XWD",
    .formats = xwd::kFormats,
    .signatures = xwd::kSignatures,
    .extensions = "xwd",
    .flags = 0,
    .probe = xwd::Probe,
    .info = xwd::Info,
    .load = xwd::Load,
    .save = nullptr,
    .deletePage = nullptr,
    .stamp = nullptr,
    .sizes = nullptr,
};

}  // namespace zvfile
