#include "services/zvfile/codecs/tiff_page.h"

#include <algorithm>
#include <span>

namespace zvfile::tiff {
namespace {

struct CompressionRow {
  uint16_t code;
  int32_t format;
  const char* name;
};

constexpr CompressionRow kCompressions[] = {
    {COMPRESSION_NONE, FMT_TIFF, "Uncompressed"},
    {COMPRESSION_PACKBITS, FMT_TIFF_PACKBITS, "PackBits"},
    {COMPRESSION_LZW, FMT_TIFF_LZW, "LZW"},
    {COMPRESSION_ADOBE_DEFLATE, FMT_TIFF_DEFLATE, "Deflate"},
    {COMPRESSION_DEFLATE, FMT_TIFF_DEFLATE, "Deflate"},
    {COMPRESSION_CCITTRLE, FMT_TIFF_CCITT, "CCITT RLE"},
    {COMPRESSION_CCITTRLEW, FMT_TIFF_CCITT, "CCITT RLE"},
    {COMPRESSION_CCITTFAX3, FMT_TIFF_G3_1D, "CCITT Group 3"},
    {COMPRESSION_CCITTFAX4, FMT_TIFF_G4, "CCITT Group 4"},
    {COMPRESSION_JPEG, FMT_TIFF_JPEG, "JPEG"},
    {COMPRESSION_OJPEG, FMT_TIFF_OLD_JPEG, "JPEG (old)"},
    {COMPRESSION_LZMA, FMT_TIFF_LZMA, "LZMA"},
    {COMPRESSION_ZSTD, FMT_TIFF_ZSTD, "Zstandard"},
    {COMPRESSION_WEBP, FMT_TIFF_WEBP, "WebP"},
    {COMPRESSION_SGILOG, FMT_TIFF_SGILOG, "SGILog"},
    {COMPRESSION_SGILOG24, FMT_TIFF_SGILOG, "SGILog 24"},
    {COMPRESSION_PIXARLOG, FMT_TIFF, "PixarLog"},
    {COMPRESSION_THUNDERSCAN, FMT_TIFF, "ThunderScan"},
    {COMPRESSION_NEXT, FMT_TIFF, "NeXT"},
};

const CompressionRow* FindCompression(uint16_t code) {
  const auto found = std::find_if(std::begin(kCompressions), std::end(kCompressions),
                                  [&](const CompressionRow& row) { return row.code == code; });
  return found == std::end(kCompressions) ? nullptr : found;
}

bool IsFax(uint16_t compression) {
  switch (compression) {
    case COMPRESSION_CCITTRLE:
    case COMPRESSION_CCITTRLEW:
    case COMPRESSION_CCITTFAX3:
    case COMPRESSION_CCITTFAX4: return true;
    default: return false;
  }
}

template <typename Value>
Value TagOr(TIFF* tiff, uint32_t tag, Value fallback) {
  Value value = fallback;
  return TIFFGetFieldDefaulted(tiff, tag, &value) ? value : fallback;
}

ZVPALETTEENTRY Entry(uint32_t red, uint32_t green, uint32_t blue) {
  return {static_cast<uint8_t>(blue), static_cast<uint8_t>(green), static_cast<uint8_t>(red), 255};
}

Palette GrayRamp(uint16_t bits, bool whiteFirst) {
  const uint32_t last = (1u << bits) - 1;
  Palette palette;
  for (uint32_t i = 0; i <= last; ++i) {
    const uint32_t level = (whiteFirst ? last - i : i) * 255 / last;
    palette.push_back(Entry(level, level, level));
  }
  return palette;
}

// The colour map has 16-bit values; some writers fill the low byte alone.
bool ReadColorMap(TIFF* tiff, uint16_t bits, Palette& palette) {
  uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
  if (bits > 16 || !TIFFGetField(tiff, TIFFTAG_COLORMAP, &red, &green, &blue)) return false;
  const size_t count = size_t{1} << bits;
  const auto isByte = [](uint16_t value) { return value < 256; };
  const bool narrow = std::all_of(red, red + count, isByte) && std::all_of(green, green + count, isByte) &&
                      std::all_of(blue, blue + count, isByte);
  const auto level = [&](uint16_t value) { return narrow ? value : uint32_t{Narrow16(value)}; };
  palette.clear();
  for (size_t i = 0; i < count; ++i) palette.push_back(Entry(level(red[i]), level(green[i]), level(blue[i])));
  return true;
}

void ReadAlpha(TIFF* tiff, Picture& picture) {
  uint16_t count = 0;
  uint16_t* kinds = nullptr;
  picture.alpha = Alpha::kNone;
  if (picture.samples <= picture.colors || !TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) || count == 0)
    return;
  if (kinds[0] == EXTRASAMPLE_ASSOCALPHA) picture.alpha = Alpha::kAssociated;
  if (kinds[0] == EXTRASAMPLE_UNASSALPHA) picture.alpha = Alpha::kStraight;
}

int32_t DescribeGray(Picture& picture) {
  const bool whiteFirst = picture.photometric == PHOTOMETRIC_MINISWHITE;
  const bool plain = picture.samples == 1 && picture.sampleFormat == SAMPLEFORMAT_UINT;
  picture.colors = 1;
  if (plain && (picture.bits == 1 || picture.bits == 2 || picture.bits == 4)) {
    picture.decoding = Decoding::kIndices;
    picture.layout = picture.bits == 1 ? Layout::kIndex1 : picture.bits == 2 ? Layout::kIndex2 : Layout::kIndex4;
    picture.palette = GrayRamp(picture.bits, whiteFirst);
    return SUCCESS;
  }
  const bool alpha = picture.alpha != Alpha::kNone;
  picture.decoding = Decoding::kSamples;
  if (picture.bits <= 8) {
    picture.layout = alpha ? Layout::kGrayAlpha16 : Layout::kGray8;
  } else {
    picture.layout = alpha ? Layout::kGrayAlpha32 : Layout::kGray16;
  }
  return SUCCESS;
}

int32_t DescribeColor(Picture& picture) {
  if (picture.samples < 3) return ERROR_FILE_DAMAGED;
  const bool alpha = picture.alpha != Alpha::kNone;
  picture.decoding = Decoding::kSamples;
  if (picture.bits <= 8) {
    picture.layout = alpha ? Layout::kRgba32 : Layout::kRgb24;
  } else {
    picture.layout = alpha ? Layout::kRgba64 : Layout::kRgb48;
  }
  return SUCCESS;
}

int32_t DescribePalette(TIFF* tiff, Picture& picture) {
  if (!ReadColorMap(tiff, picture.bits, picture.palette)) return ERROR_FILE_DAMAGED;
  picture.colors = 1;
  const bool alpha = picture.alpha != Alpha::kNone;
  if (picture.samples == 1 && (picture.bits == 1 || picture.bits == 2 || picture.bits == 4 || picture.bits == 8)) {
    constexpr Layout kLayouts[] = {Layout::kIndex1, Layout::kIndex2, Layout::kIndex4, Layout::kIndex8};
    picture.decoding = Decoding::kIndices;
    picture.layout = kLayouts[picture.bits == 1 ? 0 : picture.bits == 2 ? 1 : picture.bits == 4 ? 2 : 3];
    return SUCCESS;
  }
  picture.decoding = Decoding::kPaletteColors;
  picture.layout = alpha ? Layout::kRgba32 : Layout::kRgb24;
  return SUCCESS;
}

int32_t DescribeLibrary(Picture& picture) {
  if (picture.bits != 8) return ERROR_FEATURE_UNSUPPORTED;
  picture.decoding = Decoding::kLibrary;
  picture.layout = picture.samples == 1 ? Layout::kGray8 : Layout::kRgb24;
  return SUCCESS;
}

int32_t DescribeInks(TIFF* tiff, Picture& picture) {
  if (TagOr<uint16_t>(tiff, TIFFTAG_INKSET, INKSET_CMYK) != INKSET_CMYK || picture.samples < 4) {
    return ERROR_FEATURE_UNSUPPORTED;
  }
  if (picture.bits != 8 && picture.bits != 16) return ERROR_FEATURE_UNSUPPORTED;
  picture.decoding = Decoding::kInks;
  const bool alpha = picture.alpha != Alpha::kNone;
  if (picture.bits == 8) {
    picture.layout = alpha ? Layout::kRgba32 : Layout::kRgb24;
  } else {
    picture.layout = alpha ? Layout::kRgba64 : Layout::kRgb48;
  }
  return SUCCESS;
}

int32_t DescribeLab(Picture& picture) {
  if ((picture.bits != 8 && picture.bits != 16) || picture.samples < 3) return ERROR_FEATURE_UNSUPPORTED;
  picture.decoding = Decoding::kLab;
  picture.layout = picture.bits == 8 ? Layout::kRgb24 : Layout::kRgb48;
  return SUCCESS;
}

// Asks codecs that can deliver in several forms for the plainest one.
void ChooseCodecForm(TIFF* tiff, Picture& picture) {
  switch (picture.compression) {
    case COMPRESSION_JPEG:
      if (picture.photometric == PHOTOMETRIC_YCBCR && !picture.separate) {
        TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        picture.photometric = PHOTOMETRIC_RGB;
      }
      break;
    case COMPRESSION_SGILOG:
    case COMPRESSION_SGILOG24:
      TIFFSetField(tiff, TIFFTAG_SGILOGDATAFMT, SGILOGDATAFMT_8BIT);
      picture.photometric = picture.photometric == PHOTOMETRIC_LOGL ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB;
      picture.bits = 8;
      picture.sampleFormat = SAMPLEFORMAT_UINT;
      break;
    case COMPRESSION_PIXARLOG: {
      const bool deep = picture.bits > 8;
      TIFFSetField(tiff, TIFFTAG_PIXARLOGDATAFMT, deep ? PIXARLOGDATAFMT_16BIT : PIXARLOGDATAFMT_8BIT);
      picture.bits = deep ? 16 : 8;
      picture.sampleFormat = SAMPLEFORMAT_UINT;
      break;
    }
    default: break;
  }
}

int32_t FormatOf(TIFF* tiff, const Picture& picture, bool big, bool hasExif) {
  const uint16_t photometric = TagOr<uint16_t>(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  if (photometric == PHOTOMETRIC_SEPARATED) return FMT_TIFF_CMYK;
  const bool ycc = photometric == PHOTOMETRIC_YCBCR;
  switch (picture.compression) {
    case COMPRESSION_NONE:
      if (big) return FMT_BIGTIFF;
      if (ycc) return hasExif ? FMT_EXIF_TIFF_YCC : FMT_TIFF_YCC;
      return hasExif && picture.layout == Layout::kRgb24 ? FMT_EXIF_TIFF_RGB : FMT_TIFF;
    case COMPRESSION_DEFLATE:
    case COMPRESSION_ADOBE_DEFLATE: return big ? FMT_BIGTIFF_DEFLATE : FMT_TIFF_DEFLATE;
    case COMPRESSION_CCITTFAX3:
      return TagOr<uint32_t>(tiff, TIFFTAG_GROUP3OPTIONS, 0) & GROUP3OPT_2DENCODING ? FMT_TIFF_G3_2D : FMT_TIFF_G3_1D;
    case COMPRESSION_JPEG:
      if (!ycc || picture.chromaX < 2) return FMT_TIFF_JPEG;
      return picture.chromaY > 1 ? FMT_TIFF_JPEG_420 : FMT_TIFF_JPEG_422;
    default: {
      const CompressionRow* row = FindCompression(picture.compression);
      return row ? row->format : FMT_TIFF;
    }
  }
}

}  // namespace

int32_t DescribePicture(TIFF* tiff, Picture& picture) {
  if (!TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &picture.width) ||
      !TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &picture.height)) {
    return ERROR_FILE_DAMAGED;
  }
  picture.bits = TagOr<uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1);
  picture.samples = TagOr<uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  picture.compression = TagOr<uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  picture.sampleFormat = TagOr<uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
  picture.separate =
      TagOr<uint16_t>(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE && picture.samples > 1;
  picture.tiled = TIFFIsTiled(tiff) != 0;
  const uint16_t guess = picture.samples >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK;
  if (!TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &picture.photometric)) picture.photometric = guess;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_YCBCRSUBSAMPLING, &picture.chromaX, &picture.chromaY);
  if (picture.bits == 0 || picture.bits > 64 || picture.samples == 0) return ERROR_FILE_DAMAGED;
  if (!TIFFIsCODECConfigured(picture.compression)) return ERROR_FEATURE_UNSUPPORTED;
  const bool bilevel = picture.bits == 1 && (picture.samples == 1 || picture.separate);
  if (IsFax(picture.compression) && !bilevel) return ERROR_FILE_DAMAGED;
  const bool old = picture.compression == COMPRESSION_OJPEG;
  ChooseCodecForm(tiff, picture);
  picture.colors = picture.photometric == PHOTOMETRIC_SEPARATED ? 4 : picture.photometric == PHOTOMETRIC_RGB ? 3 : 1;
  ReadAlpha(tiff, picture);
  if (old) return DescribeLibrary(picture);
  switch (picture.photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
    case PHOTOMETRIC_MASK: return DescribeGray(picture);
    case PHOTOMETRIC_RGB: return DescribeColor(picture);
    case PHOTOMETRIC_PALETTE: return DescribePalette(tiff, picture);
    case PHOTOMETRIC_SEPARATED: return DescribeInks(tiff, picture);
    case PHOTOMETRIC_YCBCR: return DescribeLibrary(picture);
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB: return DescribeLab(picture);
    default: return ERROR_FEATURE_UNSUPPORTED;
  }
}

void FillHeader(TIFF* tiff, const Picture& picture, bool big, bool hasExif, ImageHeader& header) {
  const CompressionRow* row = FindCompression(picture.compression);
  header.format = FormatOf(tiff, picture, big, hasExif);
  header.compression = row ? row->name : "Unknown";
  header.width = static_cast<int32_t>(std::min<uint32_t>(picture.width, INT32_MAX));
  header.height = static_cast<int32_t>(std::min<uint32_t>(picture.height, INT32_MAX));
  header.layout = picture.layout;
  if (picture.decoding == Decoding::kIndices) header.palette = picture.palette;
  if (HasAlpha(picture.layout)) header.flags |= FILEINFO_HAS_ALPHA;
  const uint16_t orientation = TagOr<uint16_t>(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  const bool known = orientation >= VIEW_TOP_LEFT && orientation <= VIEW_LEFT_BOTTOM;
  header.viewPerspective = known ? int32_t{orientation} : int32_t{VIEW_TOP_LEFT};
  const uint16_t unit = TagOr<uint16_t>(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
  const double factor = unit == RESUNIT_CENTIMETER ? 2.54 : unit == RESUNIT_INCH ? 1.0 : 0.0;
  const double x = TagOr<float>(tiff, TIFFTAG_XRESOLUTION, 0), y = TagOr<float>(tiff, TIFFTAG_YRESOLUTION, 0);
  constexpr double kMaxDpi = 1e6;
  header.xResolution = x > 0 && x < kMaxDpi ? x * factor : 0;
  header.yResolution = y > 0 && y < kMaxDpi ? y * factor : 0;
}

}  // namespace zvfile::tiff
