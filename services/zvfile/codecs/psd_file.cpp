#include "services/zvfile/codecs/psd_file.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace zvfile::psd {
namespace {

enum Resource : uint16_t {
  kResolution = 1005,
  kThumbnail = 1036,
  kProfile = 1039,
  kTransparentIndex = 1047,
  kExif = 1058,
  kXmp = 1060
};

constexpr uint64_t kMaxFileBytes = uint64_t{4} << 30;
// The most that a byte of the file can become.
constexpr uint32_t kRunExpansion = 64;
constexpr uint32_t kDeflateExpansion = 1040;

// Big-endian numbers out of the file's bytes; reading past the end gives zeros and is remembered.
class Reader {
 public:
  explicit Reader(std::span<const uint8_t> bytes) : bytes_(bytes) {}
  uint64_t Number(int size) {
    uint64_t value = 0;
    for (int i = 0; i < size; ++i) value = value << 8 | (at_ < bytes_.size() ? bytes_[at_] : 0), Skip(1);
    return value;
  }
  uint16_t U16() { return static_cast<uint16_t>(Number(2)); }
  uint32_t U32() { return static_cast<uint32_t>(Number(4)); }
  std::span<const uint8_t> Take(uint64_t size) {
    const size_t start = static_cast<size_t>(std::min<uint64_t>(at_, bytes_.size()));
    const size_t some = static_cast<size_t>(std::min<uint64_t>(size, bytes_.size() - start));
    Skip(size);
    return bytes_.subspan(start, some);
  }
  void Skip(uint64_t size) {
    at_ = size > UINT64_MAX - at_ ? UINT64_MAX : at_ + size;
    if (at_ > bytes_.size()) good_ = false;
  }
  uint64_t Tell() const { return at_; }
  bool Good() const { return good_; }

 private:
  std::span<const uint8_t> bytes_;
  uint64_t at_ = 0;
  bool good_ = true;
};

void ReadPalette(std::span<const uint8_t> data, File& file) {
  if (file.mode == kBitmap) file.header.palette = {{255, 255, 255, 255}, {0, 0, 0, 255}};
  if (file.mode != kIndexed) return;
  for (size_t i = 0; i < 256 && i + 512 < data.size(); ++i) {
    file.header.palette.push_back({data[i + 512], data[i + 256], data[i], 255});
  }
}

void ReadResource(uint16_t id, std::span<const uint8_t> data, const Limits& limits, File& file) {
  Reader reader(data);
  ImageHeader& header = file.header;
  const bool kept = data.size() <= limits.maxMetadataBytes;
  if (id == kResolution) {
    header.xResolution = reader.U32() / 65536.0;  // always per inch; the unit beside it is for display alone
    reader.Skip(4);
    header.yResolution = reader.U32() / 65536.0;
    if (!reader.Good()) header.xResolution = header.yResolution = 0;
  } else if (id == kProfile && kept) {
    header.metadata.profile.assign(data.begin(), data.end());
  } else if (id == kExif && kept) {
    header.metadata.exif.assign(data.begin(), data.end());
  } else if (id == kXmp && kept) {
    header.metadata.xmp.assign(data.begin(), data.end());
  } else if (id == kTransparentIndex && file.mode == kIndexed) {
    const uint16_t index = reader.U16();
    if (reader.Good() && index < header.palette.size()) {
      header.palette[index].alpha = 0;
      header.flags |= FILEINFO_TRANSPARENT_COLOR;
    }
  } else if (id == kThumbnail) {
    constexpr size_t kThumbnailHeader = 28;
    const bool jpeg = reader.U32() == 1;
    if (jpeg && data.size() > kThumbnailHeader) file.thumbnail = data.subspan(kThumbnailHeader);
  }
}

void ReadResources(std::span<const uint8_t> section, const Limits& limits, File& file) {
  Reader reader(section);
  while (reader.Tell() + 12 <= section.size()) {
    reader.Skip(4);  // the mark differs between programs
    const uint16_t id = reader.U16();
    const uint64_t name = reader.Number(1);
    reader.Skip(name + (name % 2 == 0 ? 1 : 0));
    const uint32_t size = reader.U32();
    const std::span<const uint8_t> data = reader.Take(size);
    reader.Skip(size % 2);
    if (data.size() != size) return;
    ReadResource(id, data, limits, file);
  }
}

// A negative count of layers says that the first channel behind the colours is the transparency of the merged picture.
void ReadLayerCount(std::span<const uint8_t> section, File& file) {
  Reader reader(section);
  if (reader.Number(file.big ? 8 : 4) == 0) return;
  const auto count = static_cast<int16_t>(reader.U16());
  file.mergedAlpha = reader.Good() && count < 0 && file.channels > file.Colors() && file.mode != kLab;
}

int32_t FindRows(Reader& reader, File& file) {
  const uint16_t method = reader.U16();
  if (!reader.Good()) return ERROR_FILE_DAMAGED;
  enum Method : uint16_t { kPlain, kRuns, kDeflated, kPredicted };
  if (method > kPredicted) return ERROR_FEATURE_UNSUPPORTED;
  file.packed = method == kRuns;
  file.deflated = method >= kDeflated;
  file.predicted = method == kPredicted;
  const uint64_t rows = static_cast<uint64_t>(file.header.height) * file.channels;
  file.pixelsAt = reader.Tell();
  if (!file.packed) return SUCCESS;
  const int countBytes = file.big ? 4 : 2;
  if (rows * static_cast<uint64_t>(countBytes) > file.bytes.size() - file.pixelsAt) return ERROR_FILE_DAMAGED;
  uint64_t at = file.pixelsAt + rows * static_cast<uint64_t>(countBytes);
  file.rows.reserve(rows + 1);
  for (uint64_t row = 0; row < rows; ++row) {
    file.rows.push_back(at);
    at += reader.Number(countBytes);
  }
  file.rows.push_back(at);
  return SUCCESS;
}

int32_t ChooseLayout(File& file) {
  const bool deep = file.depth == 16, alpha = file.mergedAlpha;
  if (file.depth != 1 && file.depth != 8 && file.depth != 16) return ERROR_FEATURE_UNSUPPORTED;
  if ((file.depth == 1) != (file.mode == kBitmap)) return ERROR_FILE_DAMAGED;
  switch (file.mode) {
    case kBitmap: file.header.layout = Layout::kIndex1; break;
    case kIndexed:
      if (deep) return ERROR_FILE_DAMAGED;
      file.header.layout = Layout::kIndex8;
      break;
    case kGray:
    case kDuotone:
      file.header.layout =
          alpha ? (deep ? Layout::kGrayAlpha32 : Layout::kGrayAlpha16) : (deep ? Layout::kGray16 : Layout::kGray8);
      break;
    case kRgb:
    case kCmyk:
    case kLab:
      file.header.layout =
          alpha ? (deep ? Layout::kRgba64 : Layout::kRgba32) : (deep ? Layout::kRgb48 : Layout::kRgb24);
      break;
    default: return ERROR_FEATURE_UNSUPPORTED;
  }
  return file.channels < file.Colors() ? ERROR_FILE_DAMAGED : SUCCESS;
}

int32_t ReadHead(Reader& reader, const LoadRequest& request, File& file) {
  reader.Skip(4);
  file.big = reader.U16() == 2;
  reader.Skip(6);
  file.channels = reader.U16();
  const uint32_t height = reader.U32(), width = reader.U32();
  file.depth = reader.U16();
  file.mode = reader.U16();
  if (!reader.Good() || file.channels == 0 || file.channels > 56) return ERROR_FILE_DAMAGED;
  const int32_t storedBits = int32_t{file.channels} * file.depth;
  const int32_t result = request.limits.CheckImage(width, height, storedBits);
  file.header.width = static_cast<int32_t>(width);
  file.header.height = static_cast<int32_t>(height);
  return result;
}

// PackBits: a count byte, then that many literal bytes or one byte to repeat.
bool Unpack(std::span<const uint8_t> packed, std::span<uint8_t> row) {
  size_t in = 0, out = 0;
  while (out < row.size()) {
    if (in >= packed.size()) return false;
    const auto count = static_cast<int8_t>(packed[in++]);
    if (count == -128) continue;
    const size_t run = count >= 0 ? static_cast<size_t>(count) + 1 : static_cast<size_t>(1 - count);
    const size_t fits = std::min(run, row.size() - out);
    if (in + (count >= 0 ? run : 1) > packed.size()) return false;
    if (count >= 0) {
      std::memcpy(&row[out], &packed[in], fits);
      in += run;
    } else {
      std::memset(&row[out], packed[in++], fits);
    }
    out += fits;
  }
  return true;
}

// Differences from sample to sample become samples; those of 16 bits are big-endian.
void AddUp(std::span<uint8_t> row, uint16_t depth) {
  if (depth == 8) {
    for (size_t i = 1; i < row.size(); ++i) row[i] = static_cast<uint8_t>(row[i] + row[i - 1]);
  } else if (depth == 16) {
    uint32_t sum = 0;
    for (size_t i = 0; i + 1 < row.size(); i += 2) {
      sum += static_cast<uint32_t>(row[i] << 8 | row[i + 1]);
      row[i] = static_cast<uint8_t>(sum >> 8);
      row[i + 1] = static_cast<uint8_t>(sum);
    }
  }
}

}  // namespace

int32_t Open(ByteSource& source, const LoadRequest& request, File& file) {
  if (request.page > 1) return ERROR_PAGE_MISSING;
  if (!source.ReadAll(file.storage, file.bytes, kMaxFileBytes)) return ERROR_LIMIT_EXCEEDED;
  Reader reader(file.bytes);
  int32_t result = ReadHead(reader, request, file);
  if (result != SUCCESS) return result;
  ReadPalette(reader.Take(reader.U32()), file);
  const uint64_t resources = reader.U32();
  ReadResources(reader.Take(resources), request.limits, file);
  const uint64_t layers = reader.Number(file.big ? 8 : 4);
  ReadLayerCount(reader.Take(layers), file);
  result = ChooseLayout(file);
  if (result == SUCCESS) result = FindRows(reader, file);
  ImageHeader& header = file.header;
  if (result == SUCCESS) {
    const int32_t storedBits = int32_t{file.channels} * file.depth;
    const uint32_t expansion = file.deflated ? kDeflateExpansion : kRunExpansion;
    result = request.limits.CheckPlausible(header.width, header.height, storedBits, file.bytes.size(), expansion);
  }
  header.format = FMT_PSD;
  header.compression = file.packed ? "PackBits" : file.deflated ? "Deflate" : "Uncompressed";
  if (file.mergedAlpha) header.flags |= FILEINFO_HAS_ALPHA;
  if (!header.metadata.profile.empty()) header.flags |= FILEINFO_HAS_PROFILE;
  if (!file.thumbnail.empty()) header.flags |= FILEINFO_HAS_STAMP;
  return result;
}

int32_t Inflate(File& file) {
  struct Deleter {
    void operator()(libdeflate_decompressor* decompressor) const { libdeflate_free_decompressor(decompressor); }
  };
  const std::unique_ptr<libdeflate_decompressor, Deleter> decompressor(libdeflate_alloc_decompressor());
  if (!decompressor) return ERROR_OUT_OF_MEMORY;
  const size_t rowBytes = file.RowBytes();
  file.inflated.resize(rowBytes * static_cast<size_t>(file.header.height) * file.channels);
  const std::span<const uint8_t> stream = file.bytes.subspan(static_cast<size_t>(file.pixelsAt));
  const libdeflate_result result = libdeflate_zlib_decompress(decompressor.get(), stream.data(), stream.size(),
                                                              file.inflated.data(), file.inflated.size(), nullptr);
  if (result != LIBDEFLATE_SUCCESS) return ERROR_FILE_DAMAGED;
  for (size_t start = 0; file.predicted && start < file.inflated.size(); start += rowBytes) {
    AddUp({&file.inflated[start], rowBytes}, file.depth);
  }
  file.bytes = file.inflated;
  file.pixelsAt = 0;
  return SUCCESS;
}

bool ReadRow(const File& file, int channel, int32_t y, std::span<uint8_t> row) {
  const size_t index = static_cast<size_t>(channel) * static_cast<size_t>(file.header.height) + static_cast<size_t>(y);
  const uint64_t start = file.packed ? file.rows[index] : file.pixelsAt + index * row.size();
  const uint64_t end = file.packed ? file.rows[index + 1] : start + row.size();
  if (end < start || end > file.bytes.size()) return false;
  const std::span<const uint8_t> stored =
      file.bytes.subspan(static_cast<size_t>(start), static_cast<size_t>(end - start));
  if (file.packed) return Unpack(stored, row);
  std::copy(stored.begin(), stored.end(), row.begin());
  return true;
}

}  // namespace zvfile::psd
