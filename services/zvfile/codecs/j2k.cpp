// JPEG 2000 through OpenJPEG: bare code streams and the JP2 family of files. An image can be loaded at any of its resolution
// levels; the load size chooses the smallest level that is not smaller than asked for.
#include <openjpeg.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include "services/zvfile/codecs/color_transform.h"
#include "services/zvfile/codecs/jpeg.h"

namespace zvfile {
namespace {

constexpr size_t kStreamBytes = 256 * 1024;
constexpr uint32_t kMostBytesPerByte = 30000;  // empty code blocks cost next to nothing
constexpr int32_t kMostReductions = 32;
constexpr char kBoxSignature[] = "\0\0\0\x0CjP  \r\n\x87\n";
constexpr char kCodeSignature[] = "\xFF\x4F\xFF\x51";

// --- State and callbacks ---

struct CodecDeleter {
  void operator()(opj_codec_t* codec) const { opj_destroy_codec(codec); }
};
struct StreamDeleter {
  void operator()(opj_stream_t* stream) const { opj_stream_destroy(stream); }
};
struct ImageDeleter {
  void operator()(opj_image_t* image) const { opj_image_destroy(image); }
};
using CodecHandle = std::unique_ptr<opj_codec_t, CodecDeleter>;
using StreamHandle = std::unique_ptr<opj_stream_t, StreamDeleter>;
using ImageHandle = std::unique_ptr<opj_image_t, ImageDeleter>;

void OnMessage(const char*, void*) {}

OPJ_SIZE_T OnRead(void* buffer, OPJ_SIZE_T bytes, void* user) {
  const size_t count = static_cast<ByteSource*>(user)->Read(buffer, bytes);
  return count == 0 ? static_cast<OPJ_SIZE_T>(-1) : count;
}

OPJ_OFF_T OnSkipRead(OPJ_OFF_T bytes, void* user) {
  ByteSource* source = static_cast<ByteSource*>(user);
  if (bytes < 0 && static_cast<uint64_t>(-bytes) > source->Tell()) return -1;
  source->Seek(source->Tell() + static_cast<uint64_t>(bytes));
  return bytes;
}

OPJ_BOOL OnSeekRead(OPJ_OFF_T offset, void* user) {
  ByteSource* source = static_cast<ByteSource*>(user);
  if (offset < 0 || static_cast<uint64_t>(offset) > source->Size()) return OPJ_FALSE;
  source->Seek(static_cast<uint64_t>(offset));
  return OPJ_TRUE;
}

OPJ_SIZE_T OnWrite(void* buffer, OPJ_SIZE_T bytes, void* user) {
  return static_cast<ByteSink*>(user)->Write(buffer, bytes) ? bytes : static_cast<OPJ_SIZE_T>(-1);
}

OPJ_OFF_T OnSkipWrite(OPJ_OFF_T bytes, void* user) {
  ByteSink* sink = static_cast<ByteSink*>(user);
  sink->Seek(sink->Tell() + static_cast<uint64_t>(bytes));
  return bytes;
}

OPJ_BOOL OnSeekWrite(OPJ_OFF_T offset, void* user) {
  static_cast<ByteSink*>(user)->Seek(static_cast<uint64_t>(offset));
  return OPJ_TRUE;
}

StreamHandle MakeReader(ByteSource& source) {
  StreamHandle stream(opj_stream_create(kStreamBytes, OPJ_TRUE));
  if (!stream) return stream;
  opj_stream_set_user_data(stream.get(), &source, nullptr);
  opj_stream_set_user_data_length(stream.get(), source.Size());
  opj_stream_set_read_function(stream.get(), OnRead);
  opj_stream_set_skip_function(stream.get(), OnSkipRead);
  opj_stream_set_seek_function(stream.get(), OnSeekRead);
  return stream;
}

StreamHandle MakeWriter(ByteSink& sink) {
  StreamHandle stream(opj_stream_create(kStreamBytes, OPJ_FALSE));
  if (!stream) return stream;
  opj_stream_set_user_data(stream.get(), &sink, nullptr);
  opj_stream_set_write_function(stream.get(), OnWrite);
  opj_stream_set_skip_function(stream.get(), OnSkipWrite);
  opj_stream_set_seek_function(stream.get(), OnSeekWrite);
  return stream;
}

CodecHandle MakeCodec(bool codeStream, bool decoder) {
  const OPJ_CODEC_FORMAT format = codeStream ? OPJ_CODEC_J2K : OPJ_CODEC_JP2;
  CodecHandle codec(decoder ? opj_create_decompress(format) : opj_create_compress(format));
  if (!codec) return codec;
  opj_set_error_handler(codec.get(), OnMessage, nullptr);
  opj_set_warning_handler(codec.get(), OnMessage, nullptr);
  opj_set_info_handler(codec.get(), OnMessage, nullptr);
  return codec;
}

// --- Info ---

bool IsCodeStream(ByteSource& source) {
  uint8_t head[4];
  return source.ReadAt(0, head, sizeof head) == sizeof head && std::memcmp(head, kCodeSignature, sizeof head) == 0;
}

struct Opened {
  StreamHandle stream;
  CodecHandle codec;
  ImageHandle image;
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
  opened.stream = MakeReader(source);
  opened.codec = MakeCodec(IsCodeStream(source), true);
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

void Describe(const Opened& opened, bool codeStream, int32_t level, ImageHeader& header) {
  const opj_image_t& image = *opened.image;
  header.format = codeStream ? FMT_J2K : FMT_JP2;
  header.compression = "JPEG 2000";
  header.width = Reduced(opened.width, level);
  header.height = Reduced(opened.height, level);
  header.layout = LayoutFor(image);
  if (image.icc_profile_buf && image.icc_profile_len > 0) {
    header.metadata.profile.assign(image.icc_profile_buf, image.icc_profile_buf + image.icc_profile_len);
  }
}

int32_t J2kInfo(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  Opened opened;
  const int32_t result = OpenFile(source, request, opened);
  if (result == SUCCESS) Describe(opened, IsCodeStream(source), LevelFor(opened, request.loadSize), header);
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
  Describe(opened, IsCodeStream(source), level, header);
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

// --- Save ---

// OpenJPEG's compression ratio for what the options ask; 1 lossless, 0 a quality of its own.
float RatioFor(const J2KSAVEOPTION& option, uint64_t rawBytes) {
  enum Control { kLossless = 0, kRatio = 1, kTargetSize = 2 };
  switch (option.compressionControl) {
    case kLossless: return 1.0F;
    case kRatio: return std::max(option.compressionRatio, 1.0F);
    case kTargetSize:
      return option.targetFileSize == 0
                 ? 1.0F
                 : std::max(1.0F, static_cast<float>(static_cast<double>(rawBytes) /
                                                     static_cast<double>(option.targetFileSize)));
    default: return 0.0F;
  }
}

// The signal to noise ratio that a QFactor stands for, in dB: 50 at 2 down to 25 at 255.
float PsnrFor(int32_t qFactor) { return 25.0F + static_cast<float>(JpegQuality(qFactor)) * 0.25F; }

int32_t LevelsFor(const J2KSAVEOPTION& option, const RowSource& rows) {
  // More halvings than the image has make sense to no decoder.
  int32_t most = 0;
  while (most < 32 && (std::min(rows.Width(), rows.Height()) >> (most + 1)) > 0) ++most;
  return std::min(static_cast<int32_t>(option.decompositionLevel), most);
}

bool IsPowerOfTwo(uint32_t value) { return value >= 4 && value <= 64 && (value & (value - 1)) == 0; }

void SetParameters(const SaveRequest& request, const RowSource& rows, int32_t channels, opj_cparameters_t& parameters) {
  const J2KSAVEOPTION& option = request.j2k;
  opj_set_default_encoder_parameters(&parameters);
  const uint64_t rawBytes =
      static_cast<uint64_t>(rows.Width()) * static_cast<uint64_t>(rows.Height()) * static_cast<uint32_t>(channels);
  const float ratio = RatioFor(option, rawBytes);
  parameters.tcp_numlayers = 1;
  if (ratio > 0) {
    parameters.cp_disto_alloc = 1;
    parameters.tcp_rates[0] = ratio;
  } else {
    parameters.cp_fixed_quality = 1;
    parameters.tcp_distoratio[0] = PsnrFor(request.quality);
  }
  parameters.irreversible = ratio == 1.0F ? 0 : 1;
  parameters.numresolution = LevelsFor(option, rows) + 1;
  if (IsPowerOfTwo(option.codeBlockWidth)) parameters.cblockw_init = static_cast<int>(option.codeBlockWidth);
  if (IsPowerOfTwo(option.codeBlockHeight)) parameters.cblockh_init = static_cast<int>(option.codeBlockHeight);
  parameters.mode = static_cast<int>(option.codeBlockFlags & 0x3F);
  if (option.progressionOrder <= OPJ_CPRL) parameters.prog_order = static_cast<OPJ_PROG_ORDER>(option.progressionOrder);
  if (option.useSOPMarker) parameters.csty |= 2;
  if (option.useEPHMarker) parameters.csty |= 4;
  if (option.tileWidth > 0 && option.tileHeight > 0) {
    parameters.tile_size_on = OPJ_TRUE;
    parameters.cp_tdx = static_cast<int>(std::min<uint32_t>(option.tileWidth, static_cast<uint32_t>(rows.Width())));
    parameters.cp_tdy = static_cast<int>(std::min<uint32_t>(option.tileHeight, static_cast<uint32_t>(rows.Height())));
  }
  parameters.tcp_mct = channels >= 3 && option.useColorTransform ? 1 : 0;
}

ImageHandle MakeImage(const RowSource& rows, int32_t channels, bool alpha) {
  std::vector<opj_image_cmptparm_t> components(static_cast<size_t>(channels));
  for (opj_image_cmptparm_t& component : components) {
    component = {};
    component.dx = component.dy = 1;
    component.w = static_cast<OPJ_UINT32>(rows.Width());
    component.h = static_cast<OPJ_UINT32>(rows.Height());
    component.prec = 8;
  }
  const OPJ_COLOR_SPACE space = channels == 1 ? OPJ_CLRSPC_GRAY : OPJ_CLRSPC_SRGB;
  ImageHandle image(opj_image_create(static_cast<OPJ_UINT32>(channels), components.data(), space));
  if (!image) return image;
  image->x1 = static_cast<OPJ_UINT32>(rows.Width());
  image->y1 = static_cast<OPJ_UINT32>(rows.Height());
  if (alpha) image->comps[channels - 1].alpha = 1;
  return image;
}

int32_t FillImage(RowSource& rows, int32_t channels, opj_image_t& image) {
  for (int32_t y = 0; y < rows.Height(); ++y) {
    const uint8_t* row = rows.Next();
    if (!row) return rows.Error();
    const size_t start = static_cast<size_t>(y) * static_cast<size_t>(rows.Width());
    for (int32_t x = 0; x < rows.Width(); ++x) {
      for (int32_t c = 0; c < channels; ++c) image.comps[c].data[start + static_cast<size_t>(x)] = *row++;
    }
  }
  return SUCCESS;
}

int32_t J2kSave(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  const Layout given = rows.GetLayout();
  const bool gray = IsGray(given);
  const bool alpha = BitsPerPixel(given) == 32;
  const int32_t channels = gray ? 1 : alpha ? 4 : 3;
  int32_t result = rows.Begin(gray ? Layout::kGray8 : LayoutForDepth(alpha ? 32 : 24, false, alpha, true));
  if (result != SUCCESS) return result;
  const ImageHandle image = MakeImage(rows, channels, alpha);
  if (!image) return ERROR_OUT_OF_MEMORY;
  result = FillImage(rows, channels, *image);
  if (result != SUCCESS) return result;
  opj_cparameters_t parameters;
  SetParameters(request, rows, channels, parameters);
  const CodecHandle codec = MakeCodec(request.format == FMT_J2K, false);
  const StreamHandle stream = MakeWriter(sink);
  if (!codec || !stream) return ERROR_OUT_OF_MEMORY;
  if (!opj_setup_encoder(codec.get(), &parameters, image.get())) return ERROR_BAD_ARGUMENT;
  const bool written = opj_start_compress(codec.get(), image.get(), stream.get()) &&
                       opj_encode(codec.get(), stream.get()) && opj_end_compress(codec.get(), stream.get());
  if (sink.Failed()) return ERROR_FILE_WRITE;
  return written ? SUCCESS : ERROR_OUT_OF_MEMORY;
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
