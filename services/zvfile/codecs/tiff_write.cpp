#include "services/zvfile/codecs/tiff_write.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

#include "services/zvfile/codecs/jpeg.h"
#include "services/zvfile/codecs/tiff_metadata.h"

namespace zvfile::tiff {
namespace {

struct Encoding {
  int32_t format;
  uint16_t compression;
  uint16_t chromaX = 1, chromaY = 1;  // of YCbCr
  bool ycc = false;                   // colour goes into YCbCr
  bool predictor = false;             // horizontal differences help whole samples
};

constexpr Encoding kEncodings[] = {
    {FMT_TIFF, COMPRESSION_NONE},
    {FMT_BIGTIFF, COMPRESSION_NONE},
    {FMT_EXIF_TIFF_RGB, COMPRESSION_NONE},
    {FMT_TIFF_YCC, COMPRESSION_NONE, 2, 1, true},
    {FMT_EXIF_TIFF_YCC, COMPRESSION_NONE, 2, 1, true},
    {FMT_TIFF_PACKBITS, COMPRESSION_PACKBITS},
    {FMT_TIFF_LZW, COMPRESSION_LZW, 1, 1, false, true},
    {FMT_TIFF_DEFLATE, COMPRESSION_ADOBE_DEFLATE, 1, 1, false, true},
    {FMT_BIGTIFF_DEFLATE, COMPRESSION_ADOBE_DEFLATE, 1, 1, false, true},
    {FMT_TIFF_LZMA, COMPRESSION_LZMA, 1, 1, false, true},
    {FMT_TIFF_ZSTD, COMPRESSION_ZSTD, 1, 1, false, true},
    {FMT_TIFF_WEBP, COMPRESSION_WEBP},
    {FMT_TIFF_JPEG, COMPRESSION_JPEG, 1, 1, true},
    {FMT_TIFF_JPEG_422, COMPRESSION_JPEG, 2, 1, true},
    {FMT_TIFF_JPEG_420, COMPRESSION_JPEG, 2, 2, true},
    {FMT_TIFF_CCITT, COMPRESSION_CCITTRLE},
    {FMT_TIFF_G3_1D, COMPRESSION_CCITTFAX3},
    {FMT_TIFF_G3_2D, COMPRESSION_CCITTFAX3},
    {FMT_TIFF_G4, COMPRESSION_CCITTFAX4},
};

// Strips hold about this much: long enough to compress well, short enough to be read piecemeal.
constexpr size_t kStripBytes = size_t{256} << 10;
// Bilevel pages go into a single strip up to this size; many fax programs expect that.
constexpr size_t kBilevelStripBytes = size_t{4} << 20;

bool IsFax(uint16_t compression) {
  return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTFAX3 ||
         compression == COMPRESSION_CCITTFAX4;
}

uint32_t LumaOf(const ZVPALETTEENTRY& color) { return Luma8(color.red, color.green, color.blue); }

bool IsLevel(const ZVPALETTEENTRY& color, uint32_t level) {
  return color.red == level && color.green == level && color.blue == level;
}

// The palette of 2^bits grey levels from black, the form that every reader knows without a colour map.
bool IsGrayRamp(const Palette& palette, uint32_t bits) {
  const size_t count = size_t{1} << bits;
  if (palette.size() > count) return false;
  for (size_t i = 0; i < palette.size(); ++i) {
    if (!IsLevel(palette[i], static_cast<uint32_t>(i * 255 / (count - 1)))) return false;
  }
  return !palette.empty();
}

// How the rows of a layout are stored.
struct Form {
  Layout rows = Layout::kRgb24;  // asked of the row source
  uint16_t photometric = PHOTOMETRIC_RGB;
  uint16_t bits = 8, samples = 3;
  bool alpha = false;
  bool dropPadding = false;  // four samples a pixel come, three are stored
  bool invert = false;       // bilevel: 1 becomes 0
};

Form ColorForm(Layout layout) {
  Form form;
  form.bits = IsDeep(layout) ? 16 : 8;
  form.alpha = HasAlpha(layout);
  switch (layout) {
    case Layout::kBgrx32: form.rows = Layout::kRgbx32; break;
    case Layout::kBgra32: form.rows = Layout::kRgba32; break;
    case Layout::kBgr48: form.rows = Layout::kRgb48; break;
    case Layout::kBgrx64: form.rows = Layout::kRgbx64; break;
    case Layout::kBgra64: form.rows = Layout::kRgba64; break;
    default: form.rows = Layout::kRgb24; break;
  }
  form.samples = form.alpha ? 4 : 3;
  form.dropPadding = form.rows == Layout::kRgbx32 || form.rows == Layout::kRgbx64;
  return form;
}

// A fax page has black as 1 whatever the bitmap's palette; another bilevel page keeps its palette.
Form BilevelForm(const Palette& palette, bool fax) {
  Form form = {Layout::kIndex1, PHOTOMETRIC_MINISWHITE, 1, 1};
  const ZVPALETTEENTRY black = {0, 0, 0, 255}, white = {255, 255, 255, 255};
  const ZVPALETTEENTRY& zero = palette.empty() ? black : palette[0];
  const ZVPALETTEENTRY& one = palette.size() < 2 ? (IsLevel(zero, 255) ? black : white) : palette[1];
  if (fax) {
    form.invert = LumaOf(zero) < LumaOf(one);
  } else if (IsLevel(zero, 0) && IsLevel(one, 255)) {
    form.photometric = PHOTOMETRIC_MINISBLACK;
  } else if (!IsLevel(zero, 255) || !IsLevel(one, 0)) {
    form.photometric = PHOTOMETRIC_PALETTE;
  }
  return form;
}

Form ChooseForm(const RowSource& rows, const Encoding& encoding) {
  const Layout layout = rows.GetLayout();
  switch (layout) {
    case Layout::kIndex1: return BilevelForm(rows.GetPalette(), IsFax(encoding.compression));
    case Layout::kIndex4:
    case Layout::kIndex8: {
      const uint16_t bits = layout == Layout::kIndex4 ? 4 : 8;
      const bool gray = IsGrayRamp(rows.GetPalette(), bits);
      return {layout, static_cast<uint16_t>(gray ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_PALETTE), bits, 1};
    }
    case Layout::kGray8: return {layout, PHOTOMETRIC_MINISBLACK, 8, 1};
    case Layout::kGray16: return {layout, PHOTOMETRIC_MINISBLACK, 16, 1};
    default: break;
  }
  Form form = ColorForm(layout);
  if (encoding.ycc) form.photometric = PHOTOMETRIC_YCBCR;
  return form;
}

void SetColorMap(TIFF* tiff, const Palette& palette, uint16_t bits) {
  std::vector<uint16_t> maps[3];
  for (auto& map : maps) map.resize(size_t{1} << bits);
  for (size_t i = 0; i < std::min(palette.size(), maps[0].size()); ++i) {
    maps[0][i] = static_cast<uint16_t>(palette[i].red * 257);
    maps[1][i] = static_cast<uint16_t>(palette[i].green * 257);
    maps[2][i] = static_cast<uint16_t>(palette[i].blue * 257);
  }
  TIFFSetField(tiff, TIFFTAG_COLORMAP, maps[0].data(), maps[1].data(), maps[2].data());
}

void SetCompression(TIFF* tiff, const Encoding& encoding, const Form& form, int32_t quality) {
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, encoding.compression);
  switch (encoding.compression) {
    case COMPRESSION_CCITTFAX3:
      TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, encoding.format == FMT_TIFF_G3_2D ? GROUP3OPT_2DENCODING : 0u);
      break;
    case COMPRESSION_JPEG:
      TIFFSetField(tiff, TIFFTAG_JPEGQUALITY, JpegQuality(quality));
      if (form.photometric == PHOTOMETRIC_YCBCR) TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
      break;
    case COMPRESSION_WEBP:
      if (quality <= 0) {
        TIFFSetField(tiff, TIFFTAG_WEBP_LOSSLESS, 1);
      } else {
        TIFFSetField(tiff, TIFFTAG_WEBP_LEVEL, JpegQuality(quality));
      }
      break;
    case COMPRESSION_LZMA:
      // Higher presets reserve ten times the memory and gain nothing on strips this short.
      TIFFSetField(tiff, TIFFTAG_LZMAPRESET, 3);
      break;
    default: break;
  }
  const bool wholeSamples = form.bits >= 8 && form.photometric != PHOTOMETRIC_PALETTE;
  if (encoding.predictor && wholeSamples) TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
}

uint32_t RowsPerStrip(const Encoding& encoding, const Form& form, size_t rowBytes, uint32_t height) {
  const size_t wanted = form.bits == 1 ? kBilevelStripBytes : kStripBytes;
  uint32_t rows = static_cast<uint32_t>(std::clamp<size_t>(wanted / std::max<size_t>(rowBytes, 1), 1, height));
  // JPEG strips are whole blocks.
  if (encoding.compression == COMPRESSION_JPEG) rows = (rows + 15) / 16 * 16;
  return rows;
}

void SetTags(TIFF* tiff, const Encoding& encoding, const Form& form, const SaveRequest& request,
             const RowSource& rows) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(rows.Width()));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<uint32_t>(rows.Height()));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, form.bits);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, form.samples);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  SetCompression(tiff, encoding, form, request.quality);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, form.photometric);
  if (form.photometric == PHOTOMETRIC_YCBCR) {
    TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, encoding.chromaX, encoding.chromaY);
    const float range[6] = {0, 255, 128, 255, 128, 255};
    TIFFSetField(tiff, TIFFTAG_REFERENCEBLACKWHITE, range);
  }
  if (form.photometric == PHOTOMETRIC_PALETTE) SetColorMap(tiff, rows.GetPalette(), form.bits);
  if (form.alpha) {
    const uint16_t kind = EXTRASAMPLE_UNASSALPHA;
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind);
  }
  if (request.xResolution > 0 && request.yResolution > 0) {
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<double>(request.xResolution));
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<double>(request.yResolution));
  }
}

// Drops every fourth sample.
void DropPadding(const uint8_t* row, uint8_t* target, int32_t width, size_t sampleBytes) {
  for (int32_t x = 0; x < width; ++x, row += 4 * sampleBytes, target += 3 * sampleBytes) {
    std::memcpy(target, row, 3 * sampleBytes);
  }
}

// RGB to YCbCr after Rec. 601 over the full range, as JFIF has it, in units of two pixels: Y0 Y1 Cb Cr with the mean chroma.
void PackYcc422(const uint8_t* rgb, uint8_t* target, int32_t width) {
  const auto level = [](double value) { return static_cast<uint8_t>(std::clamp(value + 0.5, 0.0, 255.0)); };
  for (int32_t x = 0; x < width; x += 2, rgb += 6, target += 4) {
    double cb = 0, cr = 0;
    const int pixels = std::min(2, width - x);
    for (int i = 0; i < 2; ++i) {
      const uint8_t* pixel = rgb + 3 * std::min(i, pixels - 1);
      const double red = pixel[0], green = pixel[1], blue = pixel[2];
      target[i] = level(0.299 * red + 0.587 * green + 0.114 * blue);
      cb += (128 - 0.168736 * red - 0.331264 * green + 0.5 * blue) / 2;
      cr += (128 + 0.5 * red - 0.418688 * green - 0.081312 * blue) / 2;
    }
    target[2] = level(cb);
    target[3] = level(cr);
  }
}

// Brings a row of the source into its stored form.
void StoreRow(const uint8_t* row, uint8_t* target, const Form& form, bool packYcc, int32_t width, size_t rowBytes) {
  if (form.dropPadding) {
    DropPadding(row, target, width, form.bits / 8);
  } else if (packYcc) {
    PackYcc422(row, target, width);
  } else if (form.invert) {
    std::transform(row, row + rowBytes, target, [](uint8_t bits) { return static_cast<uint8_t>(~bits); });
  } else {
    std::memcpy(target, row, rowBytes);
  }
}

int32_t WriteStrips(TIFF* tiff, const Encoding& encoding, const Form& form, RowSource& rows) {
  const bool packYcc = form.photometric == PHOTOMETRIC_YCBCR && encoding.compression == COMPRESSION_NONE;
  const size_t width = static_cast<size_t>(rows.Width());
  const size_t rowBytes = packYcc ? (width + 1) / 2 * 4 : (width * form.samples * form.bits + 7) / 8;
  const uint32_t height = static_cast<uint32_t>(rows.Height());
  const uint32_t perStrip = RowsPerStrip(encoding, form, rowBytes, height);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, perStrip);
  std::vector<uint8_t> strip(rowBytes * std::min(perStrip, height));
  for (uint32_t first = 0; first < height; first += perStrip) {
    const uint32_t count = std::min(perStrip, height - first);
    for (uint32_t y = 0; y < count; ++y) {
      const uint8_t* row = rows.Next();
      if (!row) return rows.Error();
      StoreRow(row, strip.data() + y * rowBytes, form, packYcc, rows.Width(), rowBytes);
    }
    const tmsize_t bytes = static_cast<tmsize_t>(rowBytes * count);
    if (TIFFWriteEncodedStrip(tiff, first / perStrip, strip.data(), bytes) < 0) return ERROR_FILE_WRITE;
  }
  return SUCCESS;
}

// The stamp as a reduced-resolution sub-image, uncompressed: it is small and any reader can show it.
int32_t WriteStamp(TIFF* tiff, const BITMAPHANDLE& stamp) {
  BITMAPHANDLE copy = stamp;
  RowSource rows(&copy, nullptr, nullptr);
  const bool gray = LayoutOf(stamp) == Layout::kGray8;
  int32_t result = rows.Prepare(gray ? Layout::kGray8 : Layout::kBgr24);
  if (result != SUCCESS) return result;
  const Form form = ChooseForm(rows, kEncodings[0]);
  result = rows.Begin(form.rows);
  if (result != SUCCESS) return result;
  SaveRequest plain;
  TIFFSetField(tiff, TIFFTAG_SUBFILETYPE, FILETYPE_REDUCEDIMAGE);
  SetTags(tiff, kEncodings[0], form, plain, rows);
  result = WriteStrips(tiff, kEncodings[0], form, rows);
  if (result != SUCCESS) return result;
  return TIFFWriteDirectory(tiff) ? SUCCESS : ERROR_FILE_WRITE;
}

}  // namespace

int32_t WritePage(Handle& handle, const SaveRequest& request, const Metadata& metadata, RowSource& rows,
                  bool numbered) {
  TIFF* tiff = handle.Get();
  const auto encoding = std::find_if(std::begin(kEncodings), std::end(kEncodings),
                                     [&](const Encoding& row) { return row.format == request.format; });
  if (encoding == std::end(kEncodings)) return ERROR_FEATURE_UNSUPPORTED;
  const Form form = ChooseForm(rows, *encoding);
  int32_t result = rows.Begin(form.rows);
  if (result != SUCCESS) return result;
  SetTags(tiff, *encoding, form, request, rows);
  if (numbered) {
    TIFFSetField(tiff, TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
    TIFFSetField(tiff, TIFFTAG_PAGENUMBER, 0, 0);
  }
  WriteMetadata(tiff, metadata);
  const bool stamped = request.stamp != nullptr;
  if (stamped) {
    // The library writes the next directory as this one's sub-image and fills in where it stands.
    const uint64_t place = 0;
    TIFFSetField(tiff, TIFFTAG_SUBIFD, 1, &place);
  }
  result = WriteStrips(tiff, *encoding, form, rows);
  if (result != SUCCESS) return result;
  if (!TIFFWriteDirectory(tiff)) return ERROR_FILE_WRITE;
  if (stamped) result = WriteStamp(tiff, *request.stamp);
  return result;
}

bool NeedsBigOffsets(const RowSource& rows) {
  constexpr uint64_t kReach = 0xF0000000u;
  const uint64_t rowBytes = PackedRowBytes(rows.GetLayout(), rows.Width());
  return rowBytes * static_cast<uint64_t>(rows.Height()) > kReach;
}

bool IsBigFormat(int32_t format) { return format == FMT_BIGTIFF || format == FMT_BIGTIFF_DEFLATE; }

}  // namespace zvfile::tiff
