// The writing half of the JPEG 2000 codec.
#include <algorithm>

#include "services/zvfile/codecs/j2k_objects.h"
#include "services/zvfile/codecs/jp2_boxes.h"
#include "services/zvfile/codecs/jpeg.h"

namespace zvfile {
namespace {

// OpenJPEG's compression ratio for what the options ask; 1 lossless, 0 a quality of its own.
float RatioFor(const J2KSAVEOPTION& option, uint64_t rawBytes) {
  enum Control { kLossless = 0, kRatio = 1, kTargetSize = 2 };
  switch (option.compressionControl) {
    case kLossless: return 1.0F;
    case kRatio: return std::max(float{option.compressionRatio}, 1.0F);
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

// Tile sides; an image without tiles is one tile.
struct TileSize {
  uint32_t width, height;
  bool wanted;
};

TileSize TilesFor(const J2KSAVEOPTION& option, const RowSource& rows) {
  const uint32_t width = option.tileWidth, height = option.tileHeight;  // the record's may stand at any address
  const uint32_t wholeWidth = static_cast<uint32_t>(rows.Width()), wholeHeight = static_cast<uint32_t>(rows.Height());
  if (width == 0 || height == 0) return {wholeWidth, wholeHeight, false};
  return {std::min(width, wholeWidth), std::min(height, wholeHeight), true};
}

// More halvings than a tile has make no sense to decoders, and the library refuses them.
int32_t LevelsFor(const J2KSAVEOPTION& option, const TileSize& tiles) {
  int32_t most = 0;
  while (most < 31 && (std::min(tiles.width, tiles.height) >> (most + 1)) > 0) ++most;
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
  const TileSize tiles = TilesFor(option, rows);
  parameters.numresolution = LevelsFor(option, tiles) + 1;
  if (IsPowerOfTwo(option.codeBlockWidth)) parameters.cblockw_init = static_cast<int>(option.codeBlockWidth);
  if (IsPowerOfTwo(option.codeBlockHeight)) parameters.cblockh_init = static_cast<int>(option.codeBlockHeight);
  parameters.mode = static_cast<int>(option.codeBlockFlags & 0x3F);
  if (option.progressionOrder <= OPJ_CPRL) parameters.prog_order = static_cast<OPJ_PROG_ORDER>(option.progressionOrder);
  if (option.useSOPMarker) parameters.csty |= 2;
  if (option.useEPHMarker) parameters.csty |= 4;
  if (tiles.wanted) {
    parameters.tile_size_on = OPJ_TRUE;
    parameters.cp_tdx = static_cast<int>(tiles.width);
    parameters.cp_tdy = static_cast<int>(tiles.height);
  }
  parameters.tcp_mct = channels >= 3 && option.useColorTransform ? 1 : 0;
}

J2kImage MakeImage(const RowSource& rows, int32_t channels, bool alpha) {
  std::vector<opj_image_cmptparm_t> components(static_cast<size_t>(channels));
  for (opj_image_cmptparm_t& component : components) {
    component = {};
    component.dx = component.dy = 1;
    component.w = static_cast<OPJ_UINT32>(rows.Width());
    component.h = static_cast<OPJ_UINT32>(rows.Height());
    component.prec = 8;
  }
  const OPJ_COLOR_SPACE space = channels == 1 ? OPJ_CLRSPC_GRAY : OPJ_CLRSPC_SRGB;
  J2kImage image(opj_image_create(static_cast<OPJ_UINT32>(channels), components.data(), space));
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

}  // namespace

namespace {

int32_t Encode(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  const Layout given = rows.GetLayout();
  const bool gray = IsGray(given);
  const bool alpha = BitsPerPixel(given) == 32;
  const int32_t channels = gray ? 1 : alpha ? 4 : 3;
  int32_t result = rows.Begin(gray ? Layout::kGray8 : LayoutForDepth(alpha ? 32 : 24, false, alpha, true));
  if (result != SUCCESS) return result;
  const J2kImage image = MakeImage(rows, channels, alpha);
  if (!image) return ERROR_OUT_OF_MEMORY;
  result = FillImage(rows, channels, *image);
  if (result != SUCCESS) return result;
  opj_cparameters_t parameters;
  SetParameters(request, rows, channels, parameters);
  const J2kCodecHandle codec = MakeJ2kCodec(request.format == FMT_J2K, false);
  const J2kStream stream = MakeJ2kWriter(sink);
  if (!codec || !stream) return ERROR_OUT_OF_MEMORY;
  if (!opj_setup_encoder(codec.get(), &parameters, image.get())) return ERROR_BAD_ARGUMENT;
  const bool written = opj_start_compress(codec.get(), image.get(), stream.get()) &&
                       opj_encode(codec.get(), stream.get()) && opj_end_compress(codec.get(), stream.get());
  if (sink.Failed()) return ERROR_FILE_WRITE;
  return written ? SUCCESS : ERROR_OUT_OF_MEMORY;
}

}  // namespace

// The boxes of a file stand ahead of its code stream, and some of them inside one that OpenJPEG writes.
int32_t J2kSave(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  if (request.format == FMT_J2K) return Encode(sink, request, rows);
  MemorySink plain;
  const int32_t result = Encode(plain, request, rows);
  return result == SUCCESS ? WriteJp2WithBoxes(plain.Bytes(), request, rows, sink) : result;
}

}  // namespace zvfile
