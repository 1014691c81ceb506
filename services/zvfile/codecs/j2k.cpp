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
  int32_t format = FMT_JP2;
  int32_t reductions = 0;  // that the file offers below full size
  int32_t width = 0, height = 0;
  uint32_t left = 0, right = 0;  // in the coordinates of the image, as the next two
  uint32_t firstTileTop = 0, tileHeight = 0;
  Jp2Colors colors;  // known once it is described
};

int32_t Reduced(int32_t side, int32_t level) {
  return static_cast<int32_t>((int64_t{side} + (int64_t{1} << level) - 1) >> level);
}

void ReadLayout(Opened& opened) {
  opj_codestream_info_v2_t* info = opj_get_cstr_info(opened.codec.get());
  if (!info) return;
  opened.firstTileTop = info->ty0;
  opened.tileHeight = info->tdy;
  int32_t levels = kMostReductions;
  if (!info->m_default_tile_info.tccp_info) levels = 0;
  for (OPJ_UINT32 i = 0; i < info->nbcomps && levels > 0; ++i) {
    levels = std::min(levels, static_cast<int32_t>(info->m_default_tile_info.tccp_info[i].numresolutions) - 1);
  }
  opj_destroy_cstr_info(&info);
  opened.reductions = std::max(levels, 0);
}

// OpenJPEG takes five kilobytes for every tile that the image is said to have, while each tile has a part in the file. The layout
// is that of the SIZ marker segment: ISO/IEC 15444-1, annex A.5.1.
bool TilesArePlausible(ByteSource& source) {
  constexpr size_t kSizesOffset = 8;  // width, height, left and top of the image, then the same of the first tile
  constexpr uint64_t kSmallestTilePart = 14;
  const uint64_t start = IsCodeStream(source) ? 0 : FindCodeStream(source);
  uint8_t head[kSizesOffset + 8 * 4];
  if (source.ReadAt(start, head, sizeof head) != sizeof head || std::memcmp(head, kCodeSignature, 4) != 0) return false;
  const auto tiles = [&](int axis) {
    const auto value = [&](int index) { return ReadBigEndian(head + kSizesOffset + 4 * (2 * index + axis), 4); };
    const uint64_t end = value(0), tile = value(2), first = value(3);
    return tile == 0 || end <= first ? 0 : (end - first + tile - 1) / tile;
  };
  const uint64_t across = tiles(0), down = tiles(1);
  return across > 0 && down > 0 && across <= source.Size() / kSmallestTilePart / down;
}

int32_t OpenFile(ByteSource& source, const LoadRequest& request, Opened& opened) {
  if (request.page > 1) return ERROR_PAGE_MISSING;
  if (!TilesArePlausible(source)) return ERROR_FILE_DAMAGED;
  if (IsCodeStream(source)) opened.format = FMT_J2K;
  source.Seek(0);
  opened.stream = MakeJ2kReader(source);
  opened.codec = MakeJ2kCodec(opened.format == FMT_J2K, true);
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
  opened.left = image->x0;
  opened.right = image->x1;
  opened.width = static_cast<int32_t>(width);
  opened.height = static_cast<int32_t>(height);
  ReadLayout(opened);
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

// Of two or four channels the last one is alpha, whether the file says so or not.
Layout LayoutFor(const opj_image_t& image, const Jp2Colors& colors) {
  const bool unfolded = colors.paletteColumns > 0;
  const uint32_t channels = unfolded ? static_cast<uint32_t>(colors.paletteColumns) : image.numcomps;
  const bool deep = unfolded ? colors.deepPalette : image.comps[0].prec > 8;
  const bool alpha = channels == 2 || channels == 4;
  if (colors.inks) return Layout::kRgb24;
  if (channels < 3) {
    if (alpha) return deep ? Layout::kGrayAlpha32 : Layout::kGrayAlpha16;
    return deep ? Layout::kGray16 : Layout::kGray8;
  }
  return LayoutForDepth(deep ? (alpha ? 64 : 48) : (alpha ? 32 : 24), false, alpha, true);
}

void Describe(Opened& opened, ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  const opj_image_t& image = *opened.image;
  const int32_t level = LevelFor(opened, request.SizeFor(opened.format));
  header.format = opened.format;
  header.compression = "JPEG 2000";
  header.width = Reduced(opened.width, level);
  header.height = Reduced(opened.height, level);
  if (opened.format != FMT_J2K) opened.colors = ReadJp2Boxes(source, request.limits, header);
  if (image.numcomps < 4) opened.colors.inks = false;
  header.layout = LayoutFor(image, opened.colors);
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

// Rows of the image that are decoded together: the height of a tile or of some. The file is opened anew for each band, since the
// library gives the parts of a tiled image once; so there are not many.
struct Band {
  uint32_t top, bottom;  // in the coordinates of the image
  int32_t rows;          // at the level that is loaded
};

std::vector<Band> BandsOf(const Opened& opened, int32_t level, int32_t height) {
  const opj_image_t& image = *opened.image;
  const auto reduced = [&](uint32_t y) {
    return static_cast<int32_t>((uint64_t{y} + (uint64_t{1} << level) - 1) >> level);
  };
  std::vector<Band> bands;
  constexpr uint32_t kMostBands = 32;
  const uint64_t tiles = opened.tileHeight == 0 ? 1 : (image.y1 - image.y0) / opened.tileHeight + 1;
  const uint64_t step = opened.tileHeight * ((tiles + kMostBands - 1) / kMostBands);
  uint64_t bottom = opened.firstTileTop + step;
  for (uint32_t top = image.y0; top < image.y1; bottom += step) {
    if (step == 0 || bottom > image.y1) bottom = image.y1;
    if (bottom <= top) continue;
    const auto end = static_cast<uint32_t>(bottom);
    bands.push_back({top, end, reduced(end) - reduced(top)});
    top = end;
  }
  // Where the image does not begin at a multiple of the level, the sum may differ by a row.
  int32_t before = 0;
  for (size_t i = 0; i + 1 < bands.size(); ++i) before += bands[i].rows;
  bands.back().rows = height - before;
  return bands;
}

// Brings the decoded rows of a band into the sink.
class RowPusher {
 public:
  RowPusher(const ImageHeader& header, bool inks, const std::vector<uint8_t>& inkProfile, RowSink& sink)
      : header_(header),
        inks_(inks),
        deep_(IsDeep(header.layout)),
        channels_(inks ? 4 : static_cast<size_t>(BitsPerPixel(header.layout)) / (deep_ ? 16 : 8)),
        transform_(ColorTransform::Input::kCmyk8, ColorTransform::Output::kRgb24, inkProfile),
        inkRow_(inks ? static_cast<size_t>(header.width) * 4 : 0),
        sink_(sink) {}

  int32_t Push(const opj_image_t& image, int32_t rows) {
    if (!Complete(image) || image.numcomps < channels_) return ERROR_FILE_DAMAGED;
    std::vector<Channel> sources;
    const uint32_t top = deep_ ? 65535 : 255;
    for (size_t c = 0; c < channels_; ++c) sources.emplace_back(image.comps[c], header_.width, rows, top);
    const bool ycc = image.color_space == OPJ_CLRSPC_SYCC && channels_ >= 3;
    for (int32_t y = 0; y < rows; ++y) {
      uint8_t* target = sink_.Row(sink_.CommittedRows());
      FillRow(sources, y, ycc, inks_ ? inkRow_.data() : target);
      if (inks_) transform_.Convert(inkRow_.data(), target, static_cast<uint32_t>(header_.width));
      const int32_t result = sink_.Commit(1);
      if (result != SUCCESS) return result;
    }
    return SUCCESS;
  }

 private:
  void FillRow(const std::vector<Channel>& sources, int32_t y, bool ycc, uint8_t* row) const {
    const uint32_t top = deep_ ? 65535 : 255;
    for (int32_t x = 0; x < header_.width; ++x) {
      uint32_t samples[4];
      for (size_t c = 0; c < channels_; ++c) samples[c] = sources[c].At(x, y);
      if (ycc) YccToRgb(samples, top);
      for (size_t c = 0; c < channels_; ++c) {
        const size_t place = static_cast<size_t>(x) * channels_ + c;
        if (deep_) {
          reinterpret_cast<uint16_t*>(row)[place] = static_cast<uint16_t>(samples[c]);
        } else {
          row[place] = static_cast<uint8_t>(samples[c]);
        }
      }
    }
  }

  const ImageHeader& header_;
  bool inks_;
  bool deep_;
  size_t channels_;
  ColorTransform transform_;
  std::vector<uint8_t> inkRow_;
  RowSink& sink_;
};

// The library keeps every sample of what it decodes in 32 bits.
int32_t CheckMemory(const Opened& opened, const std::vector<Band>& bands, const Limits& limits, int32_t width) {
  constexpr uint32_t kSampleBits = 32;
  int32_t highest = 0;
  for (const Band& band : bands) highest = std::max(highest, band.rows);
  if (opened.image->numcomps > std::numeric_limits<int32_t>::max() / kSampleBits) return ERROR_LIMIT_EXCEEDED;
  return limits.CheckImage(width, std::max(highest, 1), static_cast<int32_t>(opened.image->numcomps * kSampleBits));
}

int32_t DecodeBand(Opened& opened, const Band& band) {
  opj_image_t* image = opened.image.get();
  opj_codec_t* codec = opened.codec.get();
  opj_stream_t* stream = opened.stream.get();
  const bool good =
      opj_set_decode_area(codec, image, static_cast<OPJ_INT32>(opened.left), static_cast<OPJ_INT32>(band.top),
                          static_cast<OPJ_INT32>(opened.right), static_cast<OPJ_INT32>(band.bottom)) &&
      opj_decode(codec, stream, image) && opj_end_decompress(codec, stream);
  return good ? SUCCESS : ERROR_FILE_DAMAGED;
}

int32_t OpenAtLevel(ByteSource& source, const LoadRequest& request, int32_t& level, Opened& opened) {
  const int32_t result = OpenFile(source, request, opened);
  if (result != SUCCESS) return result;
  level = LevelFor(opened, request.SizeFor(opened.format));
  if (level == 0) return SUCCESS;
  const bool good = opj_set_decoded_resolution_factor(opened.codec.get(), static_cast<OPJ_UINT32>(level));
  return good ? SUCCESS : ERROR_FEATURE_UNSUPPORTED;
}

int32_t J2kLoad(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  Opened opened;
  int32_t level = 0;
  int32_t result = OpenAtLevel(source, request, level, opened);
  if (result != SUCCESS) return result;
  ImageHeader header;
  Describe(opened, source, request, header);
  const std::vector<Band> bands = BandsOf(opened, level, header.height);
  result = CheckMemory(opened, bands, request.limits, header.width);
  std::vector<uint8_t> inkProfile;
  if (opened.colors.inks) inkProfile.swap(header.metadata.profile);  // the rows are sRGB from here on
  RowPusher pusher(header, opened.colors.inks, inkProfile, sink);
  for (size_t i = 0; i < bands.size() && result == SUCCESS; ++i) {
    if (i > 0) {
      opened = Opened();
      result = OpenAtLevel(source, request, level, opened);
    }
    if (result == SUCCESS) result = DecodeBand(opened, bands[i]);
    // The destination is made once there is something to put into it: most damaged files end before.
    if (result == SUCCESS && i == 0) result = sink.Begin(header);
    if (result == SUCCESS) result = pusher.Push(*opened.image, bands[i].rows);
  }
  return result;
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
