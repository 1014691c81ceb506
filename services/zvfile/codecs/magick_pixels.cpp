#include "services/zvfile/codecs/magick_pixels.h"

#include <algorithm>
#include <cstring>

#include <magick/api.h>

namespace zvfile::magick {
namespace {

// Eight bits of a sample that the library widened by repeating them.
uint8_t Narrow(Quantum value) { return Narrow16(value); }

Palette PaletteOf(const Image& image) {
  Palette palette;
  for (unsigned int i = 0; i < image.colors; ++i) {
    const PixelPacket& color = image.colormap[i];
    palette.push_back({Narrow(color.blue), Narrow(color.green), Narrow(color.red), 255});
  }
  return palette;
}

Layout LayoutForPalette(size_t colors) {
  if (colors <= 2) return Layout::kIndex1;
  return colors <= 16 ? Layout::kIndex4 : Layout::kIndex8;
}

// What only calls into the library can tell of a picture; the pointers are the picture's.
struct Facts {
  bool colors = true;  // inks and the like have become RGB
  bool gray = false;
  bool bilevel = false;
  const unsigned char* profile = nullptr;
  size_t profileBytes = 0;
  const char* comment = nullptr;
};

void Ask(Image& image, Facts& facts) {
  if (image.colorspace != RGBColorspace && image.colorspace != GRAYColorspace) {
    const bool inks = image.colorspace == CMYKColorspace;
    facts.colors = TransformColorspace(&image, RGBColorspace) != 0 || !inks;
  }
  ExceptionInfo exception;
  GetExceptionInfo(&exception);
  facts.gray = IsGrayImage(&image, &exception) != 0;
  facts.bilevel = facts.gray && !image.matte && IsMonochromeImage(&image, &exception) != 0;
  DestroyExceptionInfo(&exception);
  facts.profile = GetImageProfile(&image, "ICM", &facts.profileBytes);
  const ImageAttribute* comment = GetImageAttribute(&image, "comment");
  facts.comment = comment ? comment->value : nullptr;
}

void ChooseLayout(const Image& image, const Facts& facts, ImageHeader& header) {
  const bool gray = facts.gray, bilevel = facts.bilevel;
  const bool deep = image.depth > 8;
  const bool indexed = image.storage_class == PseudoClass && image.colormap && image.colors <= 256 && !image.matte;
  if (bilevel) {
    header.layout = Layout::kIndex1;
    header.palette = {{0, 0, 0, 255}, {255, 255, 255, 255}};
  } else if (gray) {
    header.layout =
        image.matte ? (deep ? Layout::kGrayAlpha32 : Layout::kGrayAlpha16) : (deep ? Layout::kGray16 : Layout::kGray8);
  } else if (indexed && !deep) {
    header.palette = PaletteOf(image);
    header.layout = LayoutForPalette(header.palette.size());
  } else {
    header.layout = image.matte ? (deep ? Layout::kRgba64 : Layout::kRgba32) : (deep ? Layout::kRgb48 : Layout::kRgb24);
  }
  if (HasAlpha(header.layout)) header.flags |= FILEINFO_HAS_ALPHA;
}

void CopyMetadata(const Image& image, const Facts& facts, const Limits& limits, ImageHeader& header) {
  if (facts.profile && facts.profileBytes > 0 && facts.profileBytes <= limits.maxMetadataBytes) {
    header.metadata.profile.assign(facts.profile, facts.profile + facts.profileBytes);
    header.flags |= FILEINFO_HAS_PROFILE;
  }
  if (facts.comment) header.metadata.comments[COMMENT_DESCRIPTION] = facts.comment;
  const double perInch = image.units == PixelsPerCentimeterResolution ? 2.54
                         : image.units == PixelsPerInchResolution     ? 1
                                                                      : 0;
  header.xResolution = image.x_resolution * perInch;
  header.yResolution = image.y_resolution * perInch;
  const int32_t orientation = static_cast<int32_t>(image.orientation);
  // The Targa reader turns rows upright and reports the orientation all the same.
  const bool applied = std::strcmp(image.magick, "TGA") == 0;
  if (!applied && orientation >= VIEW_TOP_LEFT && orientation <= VIEW_LEFT_BOTTOM) header.viewPerspective = orientation;
}

// Pixels of such a picture are told by their level: the library's own indices may be the other way round.
bool IsBlackAndWhite(const ImageHeader& header) {
  return header.layout == Layout::kIndex1 && header.palette.size() == 2 && header.palette[0].green == 0 &&
         header.palette[0].red == 0 && header.palette[0].blue == 0 && header.palette[1].green == 255 &&
         header.palette[1].red == 255 && header.palette[1].blue == 255;
}

void PackBilevel(const PixelPacket* pixels, int32_t width, uint8_t* row) {
  std::memset(row, 0, static_cast<size_t>((width + 7) / 8));
  for (int32_t x = 0; x < width; ++x) {
    if (pixels[x].green != 0) row[x >> 3] = static_cast<uint8_t>(row[x >> 3] | 0x80 >> (x & 7));
  }
}

void PackIndices(const IndexPacket* indices, int32_t width, int32_t bits, uint8_t* row) {
  const int32_t perByte = 8 / bits;
  const uint32_t mask = (1u << bits) - 1;
  for (int32_t x = 0; x < width; x += perByte) {
    uint32_t packed = 0;
    for (int32_t i = 0; i < perByte; ++i) packed = packed << bits | (x + i < width ? indices[x + i] & mask : 0u);
    *row++ = static_cast<uint8_t>(packed);
  }
}

template <typename Sample, typename Scale>
void PackSamples(const PixelPacket* pixels, const ImageHeader& header, uint8_t* row, Scale scale) {
  const bool gray = IsGray(header.layout), alpha = HasAlpha(header.layout);
  const auto put = [&](Quantum value) {
    const Sample sample = scale(value);
    std::memcpy(row, &sample, sizeof sample);
    row += sizeof sample;
  };
  for (int32_t x = 0; x < header.width; ++x) {
    if (gray) {
      put(pixels[x].green);
    } else {
      put(pixels[x].red);
      put(pixels[x].green);
      put(pixels[x].blue);
    }
    if (alpha) put(static_cast<Quantum>(MaxRGB - pixels[x].opacity));
  }
}

}  // namespace

int32_t Describe(_Image& image, const Limits& limits, ImageHeader& header) {
  Facts facts;
  if (!FatalGuard().Run([&] { Ask(image, facts); })) return ERROR_OUT_OF_MEMORY;
  if (!facts.colors) return ERROR_FILE_DAMAGED;
  header.width = static_cast<int32_t>(image.columns);
  header.height = static_cast<int32_t>(image.rows);
  ChooseLayout(image, facts, header);
  CopyMetadata(image, facts, limits, header);
  return SUCCESS;
}

int32_t CopyRow(_Image& image, const ImageHeader& header, int32_t y, uint8_t* row) {
  const PixelPacket* pixels = nullptr;
  const IndexPacket* indices = nullptr;
  const bool survived = FatalGuard().Run([&] {
    ExceptionInfo exception;
    GetExceptionInfo(&exception);
    pixels = AcquireImagePixels(&image, 0, y, image.columns, 1, &exception);
    indices = AccessImmutableIndexes(&image);
    DestroyExceptionInfo(&exception);
  });
  if (!survived) return ERROR_OUT_OF_MEMORY;
  if (!pixels) return ERROR_FILE_DAMAGED;
  if (IsBlackAndWhite(header)) {
    PackBilevel(pixels, header.width, row);
  } else if (IsIndexed(header.layout)) {
    if (!indices) return ERROR_FILE_DAMAGED;
    PackIndices(indices, header.width, BitsPerPixel(header.layout), row);
  } else if (IsDeep(header.layout)) {
    PackSamples<uint16_t>(pixels, header, row, [](Quantum value) { return static_cast<uint16_t>(value); });
  } else {
    PackSamples<uint8_t>(pixels, header, row, Narrow);
  }
  return SUCCESS;
}

}  // namespace zvfile::magick
