#include "services/zvfile/codecs/gif_encoder.h"

#include <gif_lib.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "services/zvfile/codecs/gif_decoder.h"

namespace zvfile::gif {
namespace {

constexpr int32_t kMaxSide = 65535;

struct MapDeleter {
  void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using Map = std::unique_ptr<ColorMapObject, MapDeleter>;

int Write(GifFileType* gif, const GifByteType* data, int bytes) {
  try {
    return static_cast<ByteSink*>(gif->UserData)->Write(data, static_cast<size_t>(bytes)) ? bytes : 0;
  } catch (...) {
    return 0;
  }
}

Palette GrayRamp() {
  Palette palette;
  for (int level = 0; level < 256; ++level) {
    const uint8_t value = static_cast<uint8_t>(level);
    palette.push_back({value, value, value, 255});
  }
  return palette;
}

Map MakeMap(const Palette& palette, int bits) {
  Map map(GifMakeMapObject(1 << bits, nullptr));
  if (!map) return nullptr;
  for (size_t i = 0; i < std::min(palette.size(), size_t{1} << bits); ++i) {
    map->Colors[i] = {palette[i].red, palette[i].green, palette[i].blue};
  }
  return map;
}

int32_t TransparentIndex(const Palette& palette) {
  const auto found =
      std::find_if(palette.begin(), palette.end(), [](const ZVPALETTEENTRY& entry) { return entry.alpha == 0; });
  return found != palette.end() && TellsAlpha(palette) ? static_cast<int32_t>(found - palette.begin())
                                                       : NO_TRANSPARENT_COLOR;
}

void Unpack(const uint8_t* row, int32_t width, int bits, uint8_t* indices) {
  const uint32_t mask = (1u << bits) - 1;
  for (int32_t x = 0; x < width; ++x) {
    const int32_t bit = x * bits;
    indices[x] = static_cast<uint8_t>(row[bit >> 3] >> (8 - bits - (bit & 7)) & mask);
  }
}

// Closes the library's file whatever happens, once.
class Writer {
 public:
  explicit Writer(ByteSink& sink) : gif_(EGifOpen(&sink, Write, &error_)) {}
  ~Writer() { Close(); }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  GifFileType* Get() const { return gif_; }
  bool Close() {
    const bool good = gif_ && EGifCloseFile(gif_, &error_) == GIF_OK;
    gif_ = nullptr;
    return good;
  }

 private:
  int error_ = 0;
  GifFileType* gif_;
};

bool WriteHead(GifFileType* gif, const SaveRequest& request, const Palette& palette, int bits, int32_t width,
               int32_t height, bool interlaced) {
  const Map map = MakeMap(palette, bits);
  const std::string& comment = request.metadata.comments[COMMENT_DESCRIPTION];
  EGifSetGifVersion(gif, true);
  bool good = map && EGifPutScreenDesc(gif, width, height, bits, 0, map.get()) == GIF_OK;
  if (good && !comment.empty()) good = EGifPutComment(gif, comment.c_str()) == GIF_OK;
  const int32_t transparent = TransparentIndex(palette);
  if (good && transparent != NO_TRANSPARENT_COLOR) {
    const GraphicsControlBlock control = {DISPOSAL_UNSPECIFIED, false, 0, transparent};
    GifByteType block[4];
    EGifGCBToExtension(&control, block);
    good = EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, sizeof block, block) == GIF_OK;
  }
  return good && EGifPutImageDesc(gif, 0, 0, width, height, interlaced, nullptr) == GIF_OK;
}

int32_t WriteRows(GifFileType* gif, RowSource& rows, int bits, bool interlaced) {
  const int32_t width = rows.Width(), height = rows.Height();
  std::vector<uint8_t> indices(static_cast<size_t>(width) * static_cast<size_t>(interlaced ? height : 1));
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* row = rows.Next();
    if (!row) return rows.Error();
    uint8_t* target = indices.data() + (interlaced ? static_cast<size_t>(y) * static_cast<size_t>(width) : 0);
    Unpack(row, width, bits, target);
    if (!interlaced && EGifPutLine(gif, target, width) != GIF_OK) return ERROR_FILE_WRITE;
  }
  RowSequence order(height, true);
  for (int32_t n = 0; interlaced && n < height; ++n) {
    uint8_t* row = indices.data() + static_cast<size_t>(order.Next()) * static_cast<size_t>(width);
    if (EGifPutLine(gif, row, width) != GIF_OK) return ERROR_FILE_WRITE;
  }
  return SUCCESS;
}

}  // namespace

int32_t Encode(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  if (rows.Width() > kMaxSide || rows.Height() > kMaxSide) return ERROR_LIMIT_EXCEEDED;
  const Layout layout = rows.GetLayout();
  const int bits = BitsPerPixel(layout);
  const bool interlaced = (request.option.flags & SAVEFILE_GIF_INTERLACED) != 0;
  int32_t result = rows.Begin(layout);
  if (result != SUCCESS) return result;
  Writer writer(sink);
  if (!writer.Get()) return ERROR_OUT_OF_MEMORY;
  const Palette palette = IsGray(layout) ? GrayRamp() : rows.GetPalette();
  if (!WriteHead(writer.Get(), request, palette, bits, rows.Width(), rows.Height(), interlaced))
    return ERROR_FILE_WRITE;
  result = WriteRows(writer.Get(), rows, bits, interlaced);
  if (result != SUCCESS) return result;
  return writer.Close() ? SUCCESS : ERROR_FILE_WRITE;
}

}  // namespace zvfile::gif
