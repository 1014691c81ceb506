// WebP through libwebp: lossy and lossless, alpha, profile, Exif and XMP. The pages of an animation are what is on show when a
// frame has been drawn.
//
// The QFactor of 2 writes lossless; 3 to 255 are libwebp's quality on the scale that JPEG has too.
#include <webp/decode.h>
#include <webp/demux.h>
#include <webp/encode.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "services/zvfile/codecs/jpeg.h"

namespace zvfile {
namespace {

constexpr uint64_t kMostFileBytes = uint64_t{1} << 32;  // the size field of the container has 32 bits
constexpr uint32_t kMostBytesPerByte = 20000;           // a lossless image of one colour is little more than its header
constexpr size_t kRiffHeaderBytes = 12;
constexpr size_t kChunkHeaderBytes = 8;
constexpr int32_t kLosslessQFactor = 2;
constexpr size_t kMostExifBytes = size_t{1} << 30;

// --- State ---

uint32_t Le(const uint8_t* bytes, int count) {
  uint32_t value = 0;
  for (int i = 0; i < count; ++i) value |= uint32_t{bytes[i]} << (8 * i);
  return value;
}

// The chunk of that name behind `from`; empty when there is none. Truncated chunks give what is there.
std::span<const uint8_t> FindChunk(std::span<const uint8_t> file, const char* name, size_t from = kRiffHeaderBytes) {
  for (size_t at = from; at + kChunkHeaderBytes <= file.size();) {
    const uint64_t size = Le(file.data() + at + 4, 4);
    const size_t start = at + kChunkHeaderBytes;
    const size_t count = static_cast<size_t>(std::min<uint64_t>(size, file.size() - start));
    if (std::memcmp(file.data() + at, name, 4) == 0) return file.subspan(start, count);
    if (size > file.size() - start) break;
    at = start + count + (count & 1);
  }
  return {};
}

void AppendChunk(std::vector<uint8_t>& file, const char* name, std::span<const uint8_t> content) {
  file.insert(file.end(), name, name + 4);
  for (int shift = 0; shift < 32; shift += 8) file.push_back(static_cast<uint8_t>(content.size() >> shift));
  file.insert(file.end(), content.begin(), content.end());
  if (content.size() & 1) file.push_back(0);
}

void StartFile(std::vector<uint8_t>& file) {
  constexpr char kHeader[] = "RIFF\0\0\0\0WEBP";
  file.assign(kHeader, kHeader + kRiffHeaderBytes);
}

void FinishFile(std::vector<uint8_t>& file) {
  const uint32_t size = static_cast<uint32_t>(file.size() - 8);
  for (size_t i = 0; i < 4; ++i) file[4 + i] = static_cast<uint8_t>(size >> (8 * i));
}

// Content of the extended header chunk.
std::vector<uint8_t> ExtendedHeader(uint8_t flags, int32_t width, int32_t height) {
  std::vector<uint8_t> content = {flags, 0, 0, 0};
  for (const int32_t side : {width - 1, height - 1}) {
    for (int shift = 0; shift < 24; shift += 8) content.push_back(static_cast<uint8_t>(side >> shift));
  }
  return content;
}

enum ExtendedFlag : uint8_t { kHasXmp = 4, kHasExif = 8, kHasAlpha = 16, kHasProfile = 32 };

struct DemuxerDeleter {
  void operator()(WebPDemuxer* demuxer) const { WebPDemuxDelete(demuxer); }
};
struct AnimationDeleter {
  void operator()(WebPAnimDecoder* animation) const { WebPAnimDecoderDelete(animation); }
};
using Animation = std::unique_ptr<WebPAnimDecoder, AnimationDeleter>;

struct Opened {
  std::vector<uint8_t> storage;
  std::span<const uint8_t> file;
  WebPBitstreamFeatures features = {};
};

int32_t ResultOf(VP8StatusCode status) {
  switch (status) {
    case VP8_STATUS_OK: return SUCCESS;
    case VP8_STATUS_OUT_OF_MEMORY: return ERROR_OUT_OF_MEMORY;
    case VP8_STATUS_UNSUPPORTED_FEATURE: return ERROR_FEATURE_UNSUPPORTED;
    default: return ERROR_FILE_DAMAGED;
  }
}

// --- Probe ---

bool ProbeWebp(ByteSource& source) {
  uint8_t head[kRiffHeaderBytes];
  return source.ReadExactly(head, sizeof head) && std::memcmp(head + 8, "WEBP", 4) == 0;
}

// --- Info ---

void ReadMetadata(std::span<const uint8_t> file, ImageHeader& header) {
  const auto copy = [&](const char* name, std::vector<uint8_t>& to) {
    const std::span<const uint8_t> chunk = FindChunk(file, name);
    to.assign(chunk.begin(), chunk.end());
  };
  copy("ICCP", header.metadata.profile);
  copy("EXIF", header.metadata.exif);
  copy("XMP ", header.metadata.xmp);
  constexpr char kJpegPrefix[] = "Exif\0";  // some writers keep what JPEG puts before the block
  std::vector<uint8_t>& exif = header.metadata.exif;
  if (exif.size() > 6 && std::memcmp(exif.data(), kJpegPrefix, 6) == 0) exif.erase(exif.begin(), exif.begin() + 6);
  const ExifSummary summary = ReadExif(exif);
  if (summary.orientation != 0) header.viewPerspective = summary.orientation;
  header.xResolution = summary.xResolution;
  header.yResolution = summary.yResolution;
  header.metadata.comments = summary.comments;
}

int32_t DescribeAnimation(const Opened& opened, ImageHeader& header) {
  const WebPData data = {opened.file.data(), opened.file.size()};
  const std::unique_ptr<WebPDemuxer, DemuxerDeleter> demuxer(WebPDemux(&data));
  if (!demuxer) return ERROR_FILE_DAMAGED;
  header.width = static_cast<int32_t>(WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_WIDTH));
  header.height = static_cast<int32_t>(WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_HEIGHT));
  header.totalPages = static_cast<int32_t>(WebPDemuxGetI(demuxer.get(), WEBP_FF_FRAME_COUNT));
  header.layout = Layout::kBgra32;  // frames need not cover the canvas
  header.flags |= FILEINFO_ANIMATED | FILEINFO_HAS_ALPHA;
  return header.totalPages < 1 ? ERROR_FILE_DAMAGED : SUCCESS;
}

int32_t Open(ByteSource& source, const LoadRequest& request, Opened& opened, ImageHeader& header) {
  if (!source.ReadAll(opened.storage, opened.file, kMostFileBytes)) return ERROR_LIMIT_EXCEEDED;
  int32_t result = ResultOf(WebPGetFeatures(opened.file.data(), opened.file.size(), &opened.features));
  if (result != SUCCESS) return result;
  header.width = opened.features.width;
  header.height = opened.features.height;
  header.layout = opened.features.has_alpha ? Layout::kBgra32 : Layout::kBgr24;
  if (opened.features.has_animation) result = DescribeAnimation(opened, header);
  if (result != SUCCESS) return result;
  if (request.page > header.totalPages) return ERROR_PAGE_MISSING;
  header.pageNumber = request.page;
  header.format = FMT_WEBP;
  constexpr int kLosslessFormat = 2;
  header.compression = opened.features.format == kLosslessFormat ? "WebP lossless" : "WebP";
  ReadMetadata(opened.file, header);
  return request.limits.CheckPlausible(header.width, header.height, BitsPerPixel(header.layout), opened.file.size(),
                                       kMostBytesPerByte);
}

int32_t WebpInfo(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  Opened opened;
  return Open(source, request, opened, header);
}

// --- Load ---

WEBP_CSP_MODE ModeOf(Layout layout) {
  switch (layout) {
    case Layout::kRgb24: return MODE_RGB;
    case Layout::kRgba32: return MODE_RGBA;
    case Layout::kBgra32: return MODE_BGRA;
    default: return MODE_BGR;
  }
}

// Draws every frame up to the page's.
int32_t LoadFrame(const Opened& opened, const ImageHeader& header, RowSink& sink) {
  WebPAnimDecoderOptions options;
  if (!WebPAnimDecoderOptionsInit(&options)) return ERROR_FEATURE_UNSUPPORTED;
  options.color_mode = ModeOf(header.layout);
  const WebPData data = {opened.file.data(), opened.file.size()};
  const Animation animation(WebPAnimDecoderNew(&data, &options));
  if (!animation) return ERROR_OUT_OF_MEMORY;
  uint8_t* canvas = nullptr;
  int timestamp = 0;
  for (int32_t frame = 0; frame < header.pageNumber; ++frame) {
    if (!WebPAnimDecoderGetNext(animation.get(), &canvas, &timestamp)) return ERROR_FILE_DAMAGED;
  }
  const int32_t result = sink.Begin(header);
  if (result != SUCCESS) return result;
  return sink.Put(canvas, static_cast<ptrdiff_t>(PackedRowBytes(header.layout, header.width)), header.height);
}

int32_t WebpLoad(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  Opened opened;
  ImageHeader header;
  int32_t result = Open(source, request, opened, header);
  if (result != SUCCESS) return result;
  header.layout = LayoutForDepth(BitsPerPixel(header.layout), false, HasAlpha(header.layout), sink.WantsRgb());
  if (opened.features.has_animation) return LoadFrame(opened, header, sink);
  result = sink.Begin(header, RowOrder::kAny);
  if (result != SUCCESS) return result;
  WebPDecoderConfig config;
  if (!WebPInitDecoderConfig(&config)) return ERROR_FEATURE_UNSUPPORTED;
  // The rows of a sink that takes them in any order lie at one distance.
  const size_t stride =
      header.height > 1 ? static_cast<size_t>(sink.Row(1) - sink.Row(0)) : PackedRowBytes(header.layout, header.width);
  config.output.colorspace = ModeOf(header.layout);
  config.output.is_external_memory = 1;
  config.output.u.RGBA.rgba = sink.Row(0);
  config.output.u.RGBA.stride = static_cast<int>(stride);
  config.output.u.RGBA.size =
      stride * static_cast<size_t>(header.height - 1) + PackedRowBytes(header.layout, header.width);
  result = ResultOf(WebPDecode(opened.file.data(), opened.file.size(), &config));
  WebPFreeDecBuffer(&config.output);
  return result == SUCCESS ? sink.Commit(header.height) : result;
}

// --- Save ---

struct WrittenImage {
  std::vector<uint8_t> bytes;
};

int OnWrite(const uint8_t* data, size_t size, const WebPPicture* picture) {
  try {
    std::vector<uint8_t>& bytes = static_cast<WrittenImage*>(picture->custom_ptr)->bytes;
    bytes.insert(bytes.end(), data, data + size);
    return 1;
  } catch (...) {
    return 0;
  }
}

struct PictureOwner {
  WebPPicture picture;
  ~PictureOwner() { WebPPictureFree(&picture); }
};

int32_t Encode(const SaveRequest& request, RowSource& rows, bool alpha, WrittenImage& written) {
  WebPConfig config;
  PictureOwner owner;
  WebPPicture& picture = owner.picture;
  if (!WebPConfigInit(&config) || !WebPPictureInit(&picture)) return ERROR_FEATURE_UNSUPPORTED;
  const bool lossless = request.quality <= kLosslessQFactor;
  if (lossless) {
    constexpr int kMiddleEffort = 4;
    WebPConfigLosslessPreset(&config, kMiddleEffort);
    config.exact = 1;  // colours under full transparency stay
  } else {
    config.quality = static_cast<float>(JpegQuality(request.quality));
  }
  picture.use_argb = lossless ? 1 : 0;
  picture.width = rows.Width();
  picture.height = rows.Height();
  picture.writer = OnWrite;
  picture.custom_ptr = &written;
  {
    const Layout layout = alpha ? Layout::kBgra32 : Layout::kBgr24;
    const size_t stride = PackedRowBytes(layout, rows.Width());
    std::vector<uint8_t> pixels(stride * static_cast<size_t>(rows.Height()));
    int32_t result = rows.Begin(layout);
    if (result == SUCCESS) result = rows.ReadAll(pixels.data(), stride);
    if (result != SUCCESS) return result;
    const auto import = alpha ? WebPPictureImportBGRA : WebPPictureImportBGR;
    if (!import(&picture, pixels.data(), static_cast<int>(stride))) return ERROR_OUT_OF_MEMORY;
  }
  if (WebPEncode(&config, &picture)) return SUCCESS;
  return picture.error_code == VP8_ENC_ERROR_OUT_OF_MEMORY ||
                 picture.error_code == VP8_ENC_ERROR_BITSTREAM_OUT_OF_MEMORY
             ? ERROR_OUT_OF_MEMORY
             : ERROR_LIMIT_EXCEEDED;
}

// Puts the metadata around the encoded image: an extended file where there is some.
std::vector<uint8_t> Assemble(const SaveRequest& request, const RowSource& rows, bool alpha,
                              std::vector<uint8_t> image) {
  const Metadata& metadata = request.metadata;
  const bool profile = ProfileFits(metadata.profile, false);
  std::vector<uint8_t> exif;
  const bool hasComments = std::any_of(metadata.comments.begin(), metadata.comments.end(),
                                       [](const std::string& text) { return !text.empty(); });
  // The format itself has no place for a resolution.
  if (!metadata.exif.empty() || hasComments || request.xResolution > 0) {
    const ExifTarget target = {rows.Width(), rows.Height(), request.xResolution, request.yResolution, kMostExifBytes};
    exif = BuildExif(metadata.exif, metadata.comments, {}, target);
  }
  if (!profile && exif.empty() && metadata.xmp.empty()) return image;
  uint8_t flags = 0;
  if (alpha) flags |= kHasAlpha;
  if (profile) flags |= kHasProfile;
  if (!exif.empty()) flags |= kHasExif;
  if (!metadata.xmp.empty()) flags |= kHasXmp;
  std::vector<uint8_t> file;
  StartFile(file);
  AppendChunk(file, "VP8X", ExtendedHeader(flags, rows.Width(), rows.Height()));
  if (profile) AppendChunk(file, "ICCP", metadata.profile);
  for (const char* name : {"ALPH", "VP8 ", "VP8L"}) {
    const std::span<const uint8_t> chunk = FindChunk(image, name);
    if (!chunk.empty()) AppendChunk(file, name, chunk);
  }
  if (!exif.empty()) AppendChunk(file, "EXIF", exif);
  if (!metadata.xmp.empty()) AppendChunk(file, "XMP ", metadata.xmp);
  FinishFile(file);
  return file;
}

int32_t WebpSave(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  if (rows.Width() > WEBP_MAX_DIMENSION || rows.Height() > WEBP_MAX_DIMENSION) return ERROR_LIMIT_EXCEEDED;
  const bool alpha = HasAlpha(rows.GetLayout());
  WrittenImage written;
  const int32_t result = Encode(request, rows, alpha, written);
  if (result != SUCCESS) return result;
  const std::vector<uint8_t> file = Assemble(request, rows, alpha, std::move(written.bytes));
  return sink.Write(file.data(), file.size()) ? SUCCESS : ERROR_FILE_WRITE;
}

// --- Table row ---

constexpr FormatRow kFormats[] = {{FMT_WEBP, "webp", kSave24 | kSave32}};
constexpr Signature kSignatures[] = {{0, 4, "RIFF"}};

}  // namespace

const Codec kWebpCodec = {"WebP",   kFormats, kSignatures, "webp",  0,       ProbeWebp,
                          WebpInfo, WebpLoad, WebpSave,    nullptr, nullptr, nullptr};

}  // namespace zvfile
