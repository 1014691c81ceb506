// JPEG 2000 through OpenJPEG: bare code streams and the JP2 family of files. An image can be loaded at any of its resolution
// levels; the load size chooses the smallest level that is not smaller than asked for. Writing stands in j2k_save.cpp.
#include <algorithm>
#include <cstring>
#include <limits>

#include "services/zvfile/codecs/color_transform.h"
#include "services/zvfile/codecs/j2k_objects.h"
#include "services/zvfile/codecs/jp2_boxes.h"

namespace zvfile {
namespace {

constexpr uint32_t kMostBytesPerByte = 30000;  // empty code blocks cost next to nothing
constexpr int32_t kMostReductions = 32;
constexpr char kBoxSignature[] = "\0\0\0\x0CjP  \r\n\x87\n";
constexpr char kCodeSignature[] = "\xFF\x4F\xFF\x51";

// --- Info ---

bool IsCodeStream(ByteSource& source) {
  uint8_t head[4];
  return source.ReadAt(0, head, sizeof head) == sizeof head && std::memcmp(head, kCodeSignature, sizeof head) == 0;
}

struct Opened {
  J2kStream stream;
  J2kCodecHandle codec;
  J2kImage image;
  int32_t reductions = 0;  // that the file offers below full size
  int32_t width = 0, height = 0;
};

int32_t Reduced(int32_t side, int32_t level) {
  return static_cast<int32_t>((int64_t{side} + (int64_t{1} << level) - 1) >> level);
}

int32_t ReductionsOf(opj_codec_t* codec) {
  opj_codestream_info_v2_t* info = opj_get_cstr_info(codec);
  if (!info) return 0;
  int32_t levels = kMostReductions;
  if (!info->m_default_tile_info.tccp_info) levels = 0;
  for (OPJ_UINT32 i = 0; i < info->nbcomps && levels > 0; ++i) {
    levels = std::min(levels, static_cast<int32_t>(info->m_default_tile_info.tccp_info[i].numresolutions) - 1);
  }
  opj_destroy_cstr_info(&info);
  return std::max(levels, 0);
}

int32_t OpenFile(ByteSource& source, const LoadRequest& request, Opened& opened) {
  if (request.page > 1) return ERROR_PAGE_MISSING;
  source.Seek(0);
  opened.stream = MakeJ2kReader(source);
  opened.codec = MakeJ2kCodec(IsCodeStream(source), true);
  if (!opened.stream || !opened.codec) return ERROR_OUT_OF_MEMORY;
  opj_dparameters_t parameters;
  opj_set_default_decoder_parameters(&parameters);
  if (!opj_setup_decoder(opened.codec.get(), &parameters)) return ERROR_OUT_OF_MEMORY;
  opj_decoder_set_strict_mode(opened.codec.get(), OPJ_TRUE);
  opj_image_t* image = nullptr;
  const OPJ_BOOL read = opj_read_header(opened.stream.get(), opened.codec.get(), &image);
  opened.image.reset(image);
  if (!read || !image || image->numcomps < 1) return ERROR_FILE_DAMAGED;
  const int64_t width = int64_t{image->x1} - image->x0, height = int64_t{image->y1} - image->y0;
  const int32_t bits =
      static_cast<int32_t>(std::min<OPJ_UINT32>(image->numcomps, 4) * (image->comps[0].prec > 8 ? 16 : 8));
  const int32_t result = request.limits.CheckPlausible(width, height, bits, source.Size(), kMostBytesPerByte);
  if (result != SUCCESS) return result;
  opened.width = static_cast<int32_t>(width);
  opened.height = static_cast<int32_t>(height);
  opened.reductions = ReductionsOf(opened.codec.get());
  while (opened.reductions > 0 &&
         std::min(Reduced(opened.width, opened.reductions), Reduced(opened.height, opened.reductions)) < 1) {
    --opened.reductions;
  }
  return SUCCESS;
}

// The level for the size that is wanted: the deepest whose image is not smaller.
int32_t LevelFor(const Opened& opened, const IMAGESIZE& wanted) {
  if (wanted.width < 1 || wanted.height < 1) return 0;
  int32_t level = 0;
  while (level < opened.reductions && Reduced(opened.width, level + 1) >= wanted.width &&
         Reduced(opened.height, level + 1) >= wanted.height) {
    ++level;
  }
  return level;
}

bool HasAlphaChannel(const opj_image_t& image) {
  if (image.numcomps != 2 && image.numcomps != 4) return false;
  return image.comps[image.numcomps - 1].alpha != 0 || image.color_space != OPJ_CLRSPC_CMYK;
}

bool IsInks(const opj_image_t& image) { return image.color_space == OPJ_CLRSPC_CMYK && image.numcomps >= 4; }

Layout LayoutFor(const opj_image_t& image) {
  const bool deep = image.comps[0].prec > 8;
  if (IsInks(image)) return Layout::kRgb24;
  if (image.numcomps < 3) {
    if (HasAlphaChannel(image)) return deep ? Layout::kGrayAlpha32 : Layout::kGrayAlpha16;
    return deep ? Layout::kGray16 : Layout::kGray8;
  }
  return LayoutForDepth(deep ? (HasAlphaChannel(image) ? 64 : 48) : (HasAlphaChannel(image) ? 32 : 24), false,
                        HasAlphaChannel(image), true);
}

void Describe(const Opened& opened, ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  const opj_image_t& image = *opened.image;
  const bool codeStream = IsCodeStream(source);
  const int32_t level = LevelFor(opened, request.loadSize);
  header.format = codeStream ? FMT_J2K : FMT_JP2;
  header.compression = "JPEG 2000";
  header.width = Reduced(opened.width, level);
  header.height = Reduced(opened.height, level);
  header.layout = LayoutFor(image);
  if (!codeStream) ReadJp2Boxes(source, request.limits, header);
}

int32_t J2kInfo(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  Opened opened;
  const int32_t result = OpenFile(source, request, opened);
  if (result == SUCCESS) Describe(opened, source, request, header);
  return result;
}

int32_t J2kSizes(ByteSource& source, const LoadRequest& request, std::vector<IMAGESIZE>& sizes) {
  Opened opened;
  const int32_t result = OpenFile(source, request, opened);
  if (result != SUCCESS) return result;
  for (int32_t level = 0; level <= opened.reductions; ++level) {
    const IMAGESIZE size = {Reduced(opened.width, level), Reduced(opened.height, level)};
    if (level > 0 && (size.width < 8 || size.height < 8)) break;  // of no use as pictures
    sizes.push_back(size);
  }
  return SUCCESS;
}

// --- Load ---

// One component brought to the depth of the rows, at full resolution.
class Channel {
 public:
  Channel(const opj_image_comp_t& component, int32_t width, int32_t height, uint32_t top)
      : component_(component), width_(width), height_(height), top_(top) {
    most_ = component.prec >= 31 ? std::numeric_limits<int32_t>::max() : (int64_t{1} << component.prec) - 1;
    offset_ = component.sgnd ? (most_ + 1) / 2 : 0;
  }

  uint32_t At(int32_t x, int32_t y) const {
    const int64_t column = int64_t{x} * component_.w / width_;
    const int64_t row = int64_t{y} * component_.h / height_;
    const int64_t raw = component_.data[row * component_.w + column] + offset_;
    const int64_t value = std::clamp<int64_t>(raw, 0, most_);
    return static_cast<uint32_t>(most_ == top_ ? value : (value * top_ + most_ / 2) / most_);
  }

 private:
  const opj_image_comp_t& component_;
  int32_t width_, height_;
  uint32_t top_;  // of the result
  int64_t most_ = 255;
  int64_t offset_ = 0;
};

bool Complete(const opj_image_t& image) {
  for (OPJ_UINT32 i = 0; i < image.numcomps; ++i) {
    if (!image.comps[i].data || image.comps[i].w < 1 || image.comps[i].h < 1) return false;
  }
  return true;
}

// ITU-R BT.601 in full range, as JPEG has it.
void YccToRgb(uint32_t* samples, uint32_t top) {
  const double middle = (top + 1) / 2.0;
  const double y = samples[0], cb = samples[1] - middle, cr = samples[2] - middle;
  const double rgb[3] = {y + 1.402 * cr, y - 0.344136 * cb - 0.714136 * cr, y + 1.772 * cb};
  for (int i = 0; i < 3; ++i)
    samples[i] = static_cast<uint32_t>(std::clamp(rgb[i] + 0.5, 0.0, static_cast<double>(top)));
}

int32_t PushRows(const opj_image_t& image, const ImageHeader& header, const std::vector<uint8_t>& inkProfile,
                 RowSink& sink) {
  if (!Complete(image)) return ERROR_FILE_DAMAGED;
  const bool inks = IsInks(image);
  const bool deep = IsDeep(header.layout);
  const uint32_t top = deep ? 65535 : 255;
  const size_t channels = inks ? 4 : static_cast<size_t>(BitsPerPixel(header.layout)) / (deep ? 16 : 8);
  std::vector<Channel> sources;
  for (size_t c = 0; c < channels; ++c) sources.emplace_back(image.comps[c], header.width, header.height, top);
  const bool ycc = image.color_space == OPJ_CLRSPC_SYCC && channels >= 3;
  const ColorTransform transform(ColorTransform::Input::kCmyk8, ColorTransform::Output::kRgb24, inkProfile);
  std::vector<uint8_t> inkRow(inks ? static_cast<size_t>(header.width) * 4 : 0);
  for (int32_t y = 0; y < header.height; ++y) {
    uint8_t* row = inks ? inkRow.data() : sink.Row(y);
    for (int32_t x = 0; x < header.width; ++x) {
      uint32_t samples[4];
      for (size_t c = 0; c < channels; ++c) samples[c] = sources[c].At(x, y);
      if (ycc) YccToRgb(samples, top);
      for (size_t c = 0; c < channels; ++c) {
        const size_t place = static_cast<size_t>(x) * channels + c;
        if (deep) {
          reinterpret_cast<uint16_t*>(row)[place] = static_cast<uint16_t>(samples[c]);
        } else {
          row[place] = static_cast<uint8_t>(samples[c]);
        }
      }
    }
    if (inks) transform.Convert(inkRow.data(), sink.Row(y), static_cast<uint32_t>(header.width));
    const int32_t result = sink.Commit(1);
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

int32_t J2kLoad(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  Opened opened;
  int32_t result = OpenFile(source, request, opened);
  if (result != SUCCESS) return result;
  const int32_t level = LevelFor(opened, request.loadSize);
  ImageHeader header;
  Describe(opened, source, request, header);
  if (level > 0 && !opj_set_decoded_resolution_factor(opened.codec.get(), static_cast<OPJ_UINT32>(level))) {
    return ERROR_FEATURE_UNSUPPORTED;
  }
  if (!opj_decode(opened.codec.get(), opened.stream.get(), opened.image.get()) ||
      !opj_end_decompress(opened.codec.get(), opened.stream.get())) {
    return ERROR_FILE_DAMAGED;
  }
  std::vector<uint8_t> inkProfile;
  if (IsInks(*opened.image)) inkProfile.swap(header.metadata.profile);  // the rows are sRGB from here on
  result = sink.Begin(header);
  return result == SUCCESS ? PushRows(*opened.image, header, inkProfile, sink) : result;
}

// --- Table row ---

constexpr FormatRow kFormats[] = {{FMT_JP2, "jp2", kSave8Gray | kSave24 | kSave32},
                                  {FMT_J2K, "j2k", kSave8Gray | kSave24 | kSave32},
                                  {FMT_JPX, "jpx", 0},
                                  {FMT_JPM, "jpm", 0}};
constexpr Signature kSignatures[] = {{0, 12, kBoxSignature}, {0, 4, kCodeSignature}};

}  // namespace

const Codec kJ2kCodec = {"JPEG 2000", kFormats, kSignatures, "jp2;j2k;j2c;jpc;jpf;jpx",
                         0,           nullptr,  J2kInfo,     J2kLoad,
                         J2kSave,     nullptr,  nullptr,     J2kSizes};

}  // namespace zvfile
