// PSD and PSB: the merged picture that the writer stored behind the layers, with profile, resolution, Exif, XMP and the stamp.
// Layers themselves are not read. Numbers and layout are those of Adobe's published file format description. The sections of
// the file are read in psd_file.
#include <cstring>
#include <memory>

#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/color_transform.h"
#include "services/zvfile/codecs/psd_file.h"

namespace zvfile {
namespace psd {
namespace {

// --- Info ---

int32_t Info(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  File file;
  const int32_t result = Open(source, request, file);
  if (result == SUCCESS) header = std::move(file.header);
  return result;
}

// --- Load ---

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
  if (result == SUCCESS && file.deflated) result = Inflate(file);
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
