// PSD and PSB: the merged picture that the writer stored behind the layers, with profile, resolution, Exif, XMP and the stamp.
// Layers themselves are not read. Numbers and layout are those of Adobe's published file format description.
#include <algorithm>
#include <cstring>
#include <memory>

#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/color_transform.h"

namespace zvfile {
namespace psd {
namespace {

enum Mode : uint16_t { kBitmap = 0, kGray = 1, kIndexed = 2, kRgb = 3, kCmyk = 4, kDuotone = 8, kLab = 9 };
enum Resource : uint16_t {
  kResolution = 1005,
  kThumbnail = 1036,
  kProfile = 1039,
  kTransparentIndex = 1047,
  kExif = 1058,
  kXmp = 1060
};

constexpr uint64_t kMaxFileBytes = uint64_t{4} << 30;
constexpr uint32_t kExpansion = 64;  // of the run-length encoding

// --- State ---

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

struct File {
  std::vector<uint8_t> storage;
  std::span<const uint8_t> bytes;
  bool big = false;  // PSB: wider lengths
  uint16_t channels = 0, depth = 0, mode = 0;
  bool mergedAlpha = false;    // the channel behind the colours is the transparency of the merged picture
  bool packed = false;         // run-length encoded
  std::vector<uint64_t> rows;  // of packed pictures: where each row begins, channel after channel
  uint64_t pixelsAt = 0;
  std::span<const uint8_t> thumbnail;  // JPEG stream
  ImageHeader header;

  int Colors() const { return mode == kRgb || mode == kLab ? 3 : mode == kCmyk ? 4 : 1; }
  int UsedChannels() const { return Colors() + (mergedAlpha ? 1 : 0); }
  size_t RowBytes() const { return (static_cast<size_t>(header.width) * depth + 7) / 8; }
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
  if (method > 1) return ERROR_FEATURE_UNSUPPORTED;
  file.packed = method == 1;
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
  int32_t result = request.limits.CheckImage(width, height, storedBits);
  if (result == SUCCESS) {
    result = request.limits.CheckPlausible(width, height, storedBits, file.bytes.size(), kExpansion);
  }
  file.header.width = static_cast<int32_t>(width);
  file.header.height = static_cast<int32_t>(height);
  return result;
}

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
  header.format = FMT_PSD;
  header.compression = file.packed ? "PackBits" : "Uncompressed";
  if (file.mergedAlpha) header.flags |= FILEINFO_HAS_ALPHA;
  if (!header.metadata.profile.empty()) header.flags |= FILEINFO_HAS_PROFILE;
  if (!file.thumbnail.empty()) header.flags |= FILEINFO_HAS_STAMP;
  return result;
}

// --- Info ---

int32_t Info(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  File file;
  const int32_t result = Open(source, request, file);
  if (result == SUCCESS) header = std::move(file.header);
  return result;
}

// --- Load ---

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

// Sample x of a plane's row, in the range of its depth.
uint16_t SampleAt(const File& file, const uint8_t* row, size_t x) {
  return file.depth == 8 ? row[x] : static_cast<uint16_t>(row[2 * x] << 8 | row[2 * x + 1]);
}

class RowMaker {
 public:
  explicit RowMaker(const File& file)
      : file_(file), planes_(file.RowBytes() * static_cast<size_t>(file.UsedChannels())) {
    using Input = ColorTransform::Input;
    const bool deep = file.depth == 16;
    const auto output = deep ? ColorTransform::Output::kRgb48 : ColorTransform::Output::kRgb24;
    const Input input = file.mode == kLab ? Input::kLab : deep ? Input::kCmyk16 : Input::kCmyk8;
    if (file.mode == kCmyk || file.mode == kLab) {
      transform_ = std::make_unique<ColorTransform>(input, output, file.header.metadata.profile);
    }
    const size_t pixels = static_cast<size_t>(file.header.width);
    if (file.mode == kCmyk) inks_.resize(pixels * 4);
    if (file.mode == kLab) lab_.resize(pixels * 3);
    if (transform_) colors_.resize(pixels * 3 * (deep ? 2 : 1));
  }

  bool Make(int32_t y, uint8_t* row) {
    const size_t bytes = file_.RowBytes();
    for (int channel = 0; channel < file_.UsedChannels(); ++channel) {
      if (!ReadRow(file_, channel, y, {Plane(channel), bytes})) return false;
    }
    if (IsIndexed(file_.header.layout)) {
      std::memcpy(row, planes_.data(), bytes);
    } else if (transform_) {
      Transform();
      Interleave(
          row, [&](size_t x, int channel) { return Converted(x, channel); }, 3);
    } else {
      Interleave(
          row, [&](size_t x, int channel) { return SampleAt(file_, Plane(channel), x); }, file_.Colors());
    }
    return true;
  }

 private:
  uint8_t* Plane(int channel) { return planes_.data() + static_cast<size_t>(channel) * file_.RowBytes(); }

  uint16_t Converted(size_t x, int channel) const {
    const size_t at = x * 3 + static_cast<size_t>(channel);
    if (file_.depth == 8) return colors_[at];
    uint16_t value;
    std::memcpy(&value, &colors_[at * 2], sizeof value);
    return value;
  }

  void Put(uint8_t*& row, uint16_t value) const {
    if (file_.depth == 8) {
      *row++ = static_cast<uint8_t>(value);
    } else {
      std::memcpy(row, &value, sizeof value);
      row += sizeof value;
    }
  }

  template <typename Sample>
  void Interleave(uint8_t* row, Sample sample, int colors) {
    for (size_t x = 0; x < static_cast<size_t>(file_.header.width); ++x) {
      for (int channel = 0; channel < colors; ++channel) Put(row, sample(x, channel));
      if (file_.mergedAlpha) Put(row, SampleAt(file_, Plane(file_.Colors()), x));
    }
  }

  // Inks are stored as what is left of the paper; L covers its range, a and b lie around the middle of theirs.
  void Transform() {
    const uint32_t last = file_.depth == 8 ? 255 : 65535;
    auto* inkBytes = reinterpret_cast<uint8_t*>(inks_.data());
    for (size_t x = 0; x < static_cast<size_t>(file_.header.width); ++x) {
      for (int channel = 0; channel < file_.Colors(); ++channel) {
        const uint32_t value = SampleAt(file_, Plane(channel), x);
        if (file_.mode == kLab) {
          const double middle = (last + 1) / 2.0;
          lab_[x * 3 + static_cast<size_t>(channel)] =
              channel == 0 ? value * 100.0 / last : (value - middle) * 256 / (last + 1);
        } else if (file_.depth == 8) {
          inkBytes[x * 4 + static_cast<size_t>(channel)] = static_cast<uint8_t>(last - value);
        } else {
          inks_[x * 4 + static_cast<size_t>(channel)] = static_cast<uint16_t>(last - value);
        }
      }
    }
    const void* from = file_.mode == kLab ? static_cast<const void*>(lab_.data()) : inks_.data();
    transform_->Convert(from, colors_.data(), static_cast<uint32_t>(file_.header.width));
  }

  const File& file_;
  std::vector<uint8_t> planes_;  // one row of every channel that is used
  std::unique_ptr<ColorTransform> transform_;
  std::vector<uint16_t> inks_;
  std::vector<double> lab_;
  std::vector<uint8_t> colors_;
};

int32_t Load(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  File file;
  int32_t result = Open(source, request, file);
  if (result != SUCCESS) return result;
  RowMaker rows(file);
  ImageHeader header = file.header;
  // Inks and Lab have become sRGB, so their profile has done its work.
  if (file.mode == kCmyk || file.mode == kLab) header.metadata.profile.clear();
  result = sink.Begin(header);
  std::vector<uint8_t> row(PackedRowBytes(header.layout, header.width));
  for (int32_t y = 0; y < header.height && result == SUCCESS; ++y) {
    if (!rows.Make(y, row.data())) return ERROR_FILE_DAMAGED;
    result = sink.Put(row.data(), static_cast<ptrdiff_t>(row.size()), 1);
  }
  return result;
}

// --- Stamp ---

int32_t Stamp(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  File file;
  const int32_t result = Open(source, request, file);
  if (result != SUCCESS) return result;
  if (file.thumbnail.empty()) return ERROR_NO_STAMP;
  MemorySource jpeg(file.thumbnail);
  return kJpegCodec.load(jpeg, request, sink);
}

// --- The row of the codec table ---

constexpr FormatRow kFormats[] = {{FMT_PSD, "psd", 0}};
constexpr Signature kSignatures[] = {{0, 6, "8BPS\0\1"}, {0, 6, "8BPS\0\2"}};

}  // namespace
}  // namespace psd

extern const Codec kPsdCodec = {
    .name = "PSD",
    .formats = psd::kFormats,
    .signatures = psd::kSignatures,
    .extensions = "psd;psb",
    .flags = 0,
    .probe = nullptr,
    .info = psd::Info,
    .load = psd::Load,
    .save = nullptr,
    .deletePage = nullptr,
    .stamp = psd::Stamp,
    .sizes = nullptr,
};

}  // namespace zvfile
