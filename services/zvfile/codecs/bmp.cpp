// Windows and OS/2 bitmaps, read and written here: the format is small. Reads 1 to 32 bits, RLE4 and RLE8, bit fields, alpha
// masks, top-down files and the headers from OS/2 1.x to version 5; leaves embedded JPEG and PNG streams to others. Writing
// stands in bmp_save.cpp.
#include "services/zvfile/codecs/bmp.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace zvfile {
namespace {

constexpr uint32_t kMostPixelsPerRleByte = 20000;  // a skip of four bytes passes 255 rows of 255 pixels

uint32_t Le(const uint8_t* bytes, int count) {
  uint32_t value = 0;
  for (int i = 0; i < count; ++i) value |= uint32_t{bytes[i]} << (8 * i);
  return value;
}

// --- State ---

// A colour channel inside a 16- or 32-bit word.
struct Channel {
  uint32_t mask = 0;
  int shift = 0;
  uint32_t max = 0;

  void Set(uint32_t value) {
    mask = value;
    shift = value ? std::countr_zero(value) : 0;
    max = value >> shift;
  }
  uint8_t Read(uint32_t word) const {
    if (max == 0) return 0;
    const uint64_t value = (word & mask) >> shift;
    return static_cast<uint8_t>(max == 255 ? value : (value * 255 + max / 2) / max);
  }
};

struct BmpHeader {
  ImageHeader image;
  uint64_t pixels = 0;  // offset
  uint64_t stride = 0;
  int32_t bits = 0;
  uint32_t compression = kBmpPlain;
  bool topDown = false;
  Channel red, green, blue, alpha;

  bool Rle() const { return compression == kBmpRle4 || compression == kBmpRle8; }
  bool Masked() const { return compression == kBmpBitFields || compression == kBmpAlphaBitFields; }
};

// --- Probe ---

bool ProbeBmp(ByteSource& source) {
  uint8_t head[18];
  if (!source.ReadExactly(head, sizeof head)) return false;
  const uint32_t size = Le(head + 14, 4);
  return size == kBmpCoreHeaderBytes || size == 16 || (size >= kBmpInfoHeaderBytes && size <= kBmpVersion5Bytes);
}

// --- Info ---

void ReadMasks(const uint8_t* info, uint32_t size, const uint8_t* behind, BmpHeader& header) {
  if (!header.Masked()) return;
  // Up to 40 bytes the masks follow the header; later versions hold them inside, at the same place.
  const bool inside = size >= kBmpMaskHeaderBytes;
  const uint8_t* masks = inside ? info + kBmpInfoHeaderBytes : behind;
  header.red.Set(Le(masks, 4));
  header.green.Set(Le(masks + 4, 4));
  header.blue.Set(Le(masks + 8, 4));
  const bool hasAlpha = inside ? size >= kBmpAlphaHeaderBytes : header.compression == kBmpAlphaBitFields;
  if (hasAlpha) header.alpha.Set(Le(masks + 12, 4));
}

// The layout of the rows as load delivers them, or ERROR_FILE_FORMAT.
int32_t ChooseLayout(BmpHeader& header) {
  Layout& layout = header.image.layout;
  switch (header.bits) {
    case 1: layout = Layout::kIndex1; break;
    case 2: layout = Layout::kIndex2; break;
    case 4: layout = Layout::kIndex4; break;
    case 8: layout = Layout::kIndex8; break;
    case 16: layout = header.Masked() ? (header.alpha.max ? Layout::kBgra32 : Layout::kBgr24) : Layout::kBgr555; break;
    case 24: layout = Layout::kBgr24; break;
    case 32: layout = header.alpha.max ? Layout::kBgra32 : Layout::kBgrx32; break;
    default: return ERROR_FILE_DAMAGED;
  }
  const bool rleFits =
      (header.compression == kBmpRle4 && header.bits == 4) || (header.compression == kBmpRle8 && header.bits == 8);
  const bool masksFit = header.bits == 16 || header.bits == 32;
  if (header.Rle()) return rleFits && !header.topDown ? SUCCESS : ERROR_FILE_DAMAGED;
  if (header.Masked()) return masksFit ? SUCCESS : ERROR_FILE_DAMAGED;
  return header.compression == kBmpPlain ? SUCCESS : ERROR_FILE_FORMAT;
}

int32_t ReadPalette(ByteSource& source, uint64_t offset, int entryBytes, uint32_t used, BmpHeader& header) {
  if (header.bits > 8) return SUCCESS;
  uint32_t count = used == 0 ? 1u << header.bits : std::min(used, 1u << header.bits);
  if (header.pixels > offset)
    count = std::min<uint64_t>(count, (header.pixels - offset) / static_cast<uint32_t>(entryBytes));
  for (uint32_t i = 0; i < count; ++i) {
    uint8_t entry[4] = {};
    const size_t bytes = static_cast<size_t>(entryBytes);
    if (source.ReadAt(offset + i * bytes, entry, bytes) != bytes) return ERROR_FILE_DAMAGED;
    header.image.palette.push_back({entry[0], entry[1], entry[2], 255});
  }
  return SUCCESS;
}

int32_t CheckSize(ByteSource& source, const LoadRequest& request, const BmpHeader& header) {
  const ImageHeader& image = header.image;
  const int32_t bits = BitsPerPixel(image.layout);
  const uint64_t room = source.Size() > header.pixels ? source.Size() - header.pixels : 0;
  if (header.Rle()) return request.limits.CheckPlausible(image.width, image.height, bits, room, kMostPixelsPerRleByte);
  const int32_t result = request.limits.CheckImage(image.width, image.height, bits);
  if (result != SUCCESS) return result;
  // The padding of the last row may be missing.
  const uint64_t rowBytes = (static_cast<uint64_t>(image.width) * static_cast<uint32_t>(header.bits) + 7) / 8;
  const uint64_t needed = (static_cast<uint64_t>(image.height) - 1) * header.stride + rowBytes;
  return needed > room ? ERROR_FILE_DAMAGED : SUCCESS;
}

int32_t ReadBmpHeader(ByteSource& source, const LoadRequest& request, BmpHeader& header) {
  if (request.page > 1) return ERROR_PAGE_MISSING;
  uint8_t bytes[kBmpFileHeaderBytes + kBmpVersion5Bytes + 16] = {};
  const size_t read = source.ReadAt(0, bytes, sizeof bytes);
  if (read < kBmpFileHeaderBytes + kBmpCoreHeaderBytes) return ERROR_FILE_DAMAGED;
  const uint8_t* info = bytes + kBmpFileHeaderBytes;
  const uint32_t size = Le(info, 4);
  const bool core = size == kBmpCoreHeaderBytes;
  if (read < kBmpFileHeaderBytes + size || (!core && size < 16) || size > kBmpVersion5Bytes) return ERROR_FILE_DAMAGED;
  const auto field = [&](uint32_t offset, int count) { return offset < size ? Le(info + offset, count) : 0; };
  int64_t height = 0;
  if (core) {
    header.image.width = static_cast<int32_t>(Le(info + 4, 2));
    height = Le(info + 6, 2);
    header.bits = static_cast<int32_t>(Le(info + 10, 2));
  } else {
    header.image.width = static_cast<int32_t>(field(4, 4));
    height = static_cast<int32_t>(field(8, 4));
    header.bits = static_cast<int32_t>(field(14, 2));
    header.compression = field(16, 4);
    header.image.xResolution = static_cast<int32_t>(field(24, 4)) * kBmpInchesPerMetre;
    header.image.yResolution = static_cast<int32_t>(field(28, 4)) * kBmpInchesPerMetre;
  }
  header.topDown = height < 0;
  height = height < 0 ? -height : height;
  if (height > request.limits.maxSide) return ERROR_LIMIT_EXCEEDED;
  header.image.height = static_cast<int32_t>(height);
  ReadMasks(info, size, info + size, header);
  uint64_t palette = kBmpFileHeaderBytes + uint64_t{size};
  if (size == kBmpInfoHeaderBytes && header.Masked()) palette += header.compression == kBmpAlphaBitFields ? 16 : 12;
  int32_t result = ChooseLayout(header);
  if (result != SUCCESS) return result;
  const int entryBytes = core ? 3 : 4;
  const uint32_t used = core ? 0 : field(32, 4);
  header.pixels = Le(bytes + 10, 4);
  result = ReadPalette(source, palette, entryBytes, used, header);
  if (header.pixels < palette) header.pixels = palette + header.image.palette.size() * static_cast<size_t>(entryBytes);
  header.stride =
      (static_cast<uint64_t>(std::max(header.image.width, 0)) * static_cast<uint32_t>(header.bits) + 31) / 32 * 4;
  header.image.format = header.Rle() ? FMT_BMP_RLE : FMT_BMP;
  header.image.compression = header.Rle() ? "RLE" : "None";
  return result == SUCCESS ? CheckSize(source, request, header) : result;
}

int32_t BmpInfo(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  BmpHeader own;
  const int32_t result = ReadBmpHeader(source, request, own);
  if (result == SUCCESS) header = own.image;
  return result;
}

// --- Load ---

// Words of 16 or 32 bits with masks to 8-bit channels.
void SplitChannels(const BmpHeader& header, const uint8_t* row, uint8_t* pixels) {
  const int step = header.bits / 8;
  const bool alpha = HasAlpha(header.image.layout);
  const int out = BitsPerPixel(header.image.layout) / 8;
  for (int32_t x = 0; x < header.image.width; ++x, row += step, pixels += out) {
    const uint32_t word = Le(row, step);
    pixels[0] = header.blue.Read(word);
    pixels[1] = header.green.Read(word);
    pixels[2] = header.red.Read(word);
    if (out == 4) pixels[3] = alpha ? header.alpha.Read(word) : 255;
  }
}

int32_t PutRow(const BmpHeader& header, const uint8_t* row, std::vector<uint8_t>& pixels, RowSink& sink) {
  if (!header.Masked()) return sink.Put(row, 0, 1);
  SplitChannels(header, row, pixels.data());
  return sink.Put(pixels.data(), 0, 1);
}

int32_t LoadPlain(ByteSource& source, const BmpHeader& header, RowSink& sink) {
  const int32_t height = header.image.height;
  const size_t stride = static_cast<size_t>(header.stride);
  // Rows are read in blocks, since they mostly stand in the file from the bottom up.
  const int32_t blockRows = static_cast<int32_t>(std::clamp<size_t>(256 * 1024 / stride, 1, 64));
  std::vector<uint8_t> block(stride * static_cast<size_t>(blockRows));
  std::vector<uint8_t> pixels(PackedRowBytes(header.image.layout, header.image.width));
  for (int32_t first = 0; first < height; first += blockRows) {
    const int32_t count = std::min(blockRows, height - first);
    const int32_t lowest = header.topDown ? first : height - first - count;
    const size_t wanted = stride * static_cast<size_t>(count);
    const size_t read =
        source.ReadAt(header.pixels + header.stride * static_cast<uint64_t>(lowest), block.data(), wanted);
    if (read + 4 < wanted) return ERROR_FILE_DAMAGED;
    for (int32_t i = 0; i < count; ++i) {
      const int32_t line = header.topDown ? i : count - 1 - i;
      const int32_t result = PutRow(header, block.data() + stride * static_cast<size_t>(line), pixels, sink);
      if (result != SUCCESS) return result;
    }
  }
  return SUCCESS;
}

// Walks the run-length code and writes pixels where it says; what it skips stays 0.
class RleDecoder {
 public:
  RleDecoder(ByteSource& source, const BmpHeader& header, RowSink& sink)
      : source_(source), header_(header), sink_(sink) {}

  // False when the code ends before it says so.
  bool Run() {
    source_.Seek(header_.pixels);
    uint8_t pair[2];
    while (y_ < header_.image.height) {
      if (!source_.ReadExactly(pair, 2)) return false;
      if (pair[0] > 0) {
        for (int i = 0; i < pair[0]; ++i) Plot(IndexAt(pair[1], i));
      } else if (pair[1] == 0) {
        x_ = 0;
        ++y_;
      } else if (pair[1] == 1) {
        return true;
      } else if (pair[1] == 2) {
        if (!source_.ReadExactly(pair, 2)) return false;
        x_ += pair[0];
        y_ += pair[1];
      } else if (!Literal(pair[1])) {
        return false;
      }
    }
    return true;
  }

 private:
  uint8_t IndexAt(uint8_t value, int i) const {
    if (header_.bits == 8) return value;
    return i % 2 == 0 ? value >> 4 : value & 15;
  }

  bool Literal(int count) {
    uint8_t bytes[256];
    const size_t used = header_.bits == 8 ? static_cast<size_t>(count) : (static_cast<size_t>(count) + 1) / 2;
    if (!source_.ReadExactly(bytes, (used + 1) / 2 * 2)) return false;
    for (int i = 0; i < count; ++i) Plot(IndexAt(bytes[header_.bits == 8 ? i : i / 2], i));
    return true;
  }

  void Plot(uint8_t index) {
    if (x_ < header_.image.width && y_ < header_.image.height) {
      uint8_t* row = sink_.Row(header_.image.height - 1 - y_);
      if (header_.bits == 8) {
        row[x_] = index;
      } else {
        uint8_t& pair = row[x_ / 2];
        pair = x_ % 2 == 0 ? static_cast<uint8_t>((pair & 0x0F) | (index << 4))
                           : static_cast<uint8_t>((pair & 0xF0) | index);
      }
    }
    ++x_;
  }

  ByteSource& source_;
  const BmpHeader& header_;
  RowSink& sink_;
  int32_t x_ = 0;
  int32_t y_ = 0;  // from the bottom
};

int32_t BmpLoad(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  BmpHeader header;
  int32_t result = ReadBmpHeader(source, request, header);
  if (result != SUCCESS) return result;
  result = sink.Begin(header.image, header.Rle() ? RowOrder::kAny : RowOrder::kFromTop);
  if (result != SUCCESS) return result;
  if (!header.Rle()) return LoadPlain(source, header, sink);
  return RleDecoder(source, header, sink).Run() ? sink.Commit(header.image.height) : ERROR_FILE_DAMAGED;
}

// --- Table row ---

constexpr FormatRow kFormats[] = {{FMT_BMP, "bmp", kSave1 | kSave4 | kSave8Index | kSave16Color | kSave24 | kSave32},
                                  {FMT_BMP_RLE, "bmp", kSave4 | kSave8Index}};
constexpr Signature kSignatures[] = {{0, 2, "BM"}};

}  // namespace

const Codec kBmpCodec = {"BMP",   kFormats, kSignatures, "bmp;dib;rle", 0,       ProbeBmp,
                         BmpInfo, BmpLoad,  BmpSave,     nullptr,       nullptr, nullptr};

}  // namespace zvfile
