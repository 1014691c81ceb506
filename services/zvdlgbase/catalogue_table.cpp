#include "services/zvdlgbase/catalogue_table.h"

#include <algorithm>
#include <bit>

#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"

namespace {

// What the settings dialog offers, by kind of file format.
constexpr uint32_t kJpegOptions = SAVEOPT_PROGRESSIVE | SAVEOPT_QFACTOR | SAVEOPT_STAMP;
constexpr uint32_t kExifTiffOptions = SAVEOPT_QFACTOR | SAVEOPT_QFACTOR_ZERO | SAVEOPT_STAMP;
constexpr uint32_t kQualityOptions = SAVEOPT_QFACTOR;
constexpr uint32_t kLosslessPages = SAVEOPT_MULTIPAGE | SAVEOPT_QFACTOR_ZERO;
constexpr uint32_t kTiffOptions = SAVEOPT_MULTIPAGE | SAVEOPT_STAMP | SAVEOPT_QFACTOR_ZERO;
constexpr uint32_t kTiffLossyOptions = SAVEOPT_MULTIPAGE | SAVEOPT_STAMP | SAVEOPT_QFACTOR;
constexpr uint32_t kCmpOptions = SAVEOPT_PROGRESSIVE | SAVEOPT_QFACTOR | SAVEOPT_MULTIPAGE | SAVEOPT_STAMP;
constexpr uint32_t kJ2kOptions = SAVEOPT_QFACTOR | SAVEOPT_COMPRESSION | SAVEOPT_J2K_DIALOG;
constexpr uint32_t kNoOptions = SAVEOPT_QFACTOR_ZERO;

// --- JPEG ---

constexpr SubtypeEntry kJpegColor[] = {
    {IDS_SUBTYPE_JPEG_444, IDS_EXTENSION_JPG, FMT_JPEG, kJpegOptions},
    {IDS_SUBTYPE_JPEG_422, IDS_EXTENSION_JPG, FMT_JPEG_422, kJpegOptions},
    {IDS_SUBTYPE_JPEG_420, IDS_EXTENSION_JPG, FMT_JPEG_420, kJpegOptions},
};
constexpr SubtypeEntry kJpegGray[] = {
    {IDS_SUBTYPE_JPEG_GRAY, IDS_EXTENSION_JPG, FMT_JPEG, kJpegOptions},
};
constexpr BppEntry kJpeg[] = {
    {24, kExtensionInSubtype, kJpegOptions, kJpegColor},
    {8, kExtensionInSubtype, kJpegOptions, kJpegGray},
};

// --- PNG: the quality is the deflate level ---

constexpr BppEntry kPng[] = {
    {1, IDS_EXTENSION_PNG, kQualityOptions, {}},  {4, IDS_EXTENSION_PNG, kQualityOptions, {}},
    {8, IDS_EXTENSION_PNG, kQualityOptions, {}},  {16, IDS_EXTENSION_PNG, kQualityOptions, {}},
    {24, IDS_EXTENSION_PNG, kQualityOptions, {}}, {32, IDS_EXTENSION_PNG, kQualityOptions, {}},
    {48, IDS_EXTENSION_PNG, kQualityOptions, {}}, {64, IDS_EXTENSION_PNG, kQualityOptions, {}},
};

// --- TIFF: the lossless compressions stand first and in the same order at every depth ---

constexpr SubtypeEntry Tiff(int32_t nameId, int32_t fileFormat, uint32_t optionFlags = kTiffOptions) {
  return {nameId, IDS_EXTENSION_TIF, fileFormat, optionFlags};
}

constexpr SubtypeEntry kTiffNone = Tiff(IDS_SUBTYPE_UNCOMPRESSED, FMT_TIFF);
constexpr SubtypeEntry kTiffPackBits = Tiff(IDS_SUBTYPE_PACKBITS, FMT_TIFF_PACKBITS);
constexpr SubtypeEntry kTiffLzw = Tiff(IDS_SUBTYPE_LZW, FMT_TIFF_LZW);
constexpr SubtypeEntry kTiffDeflate = Tiff(IDS_SUBTYPE_DEFLATE, FMT_TIFF_DEFLATE);
constexpr SubtypeEntry kTiffLzma = Tiff(IDS_SUBTYPE_LZMA, FMT_TIFF_LZMA);
constexpr SubtypeEntry kTiffZstd = Tiff(IDS_SUBTYPE_ZSTD, FMT_TIFF_ZSTD);
constexpr SubtypeEntry kBigTiff = Tiff(IDS_SUBTYPE_BIGTIFF, FMT_BIGTIFF);
constexpr SubtypeEntry kBigTiffDeflate = Tiff(IDS_SUBTYPE_BIGTIFF_DEFLATE, FMT_BIGTIFF_DEFLATE);

constexpr SubtypeEntry kTiffBilevel[] = {
    kTiffNone,
    kTiffPackBits,
    kTiffLzw,
    kTiffDeflate,
    kTiffLzma,
    kTiffZstd,
    kBigTiff,
    kBigTiffDeflate,
    Tiff(IDS_SUBTYPE_CCITT, FMT_TIFF_CCITT),
    Tiff(IDS_SUBTYPE_G3_1D, FMT_TIFF_G3_1D),
    Tiff(IDS_SUBTYPE_G3_2D, FMT_TIFF_G3_2D),
    Tiff(IDS_SUBTYPE_G4, FMT_TIFF_G4),
};
constexpr SubtypeEntry kTiffLossless[] = {
    kTiffNone, kTiffPackBits, kTiffLzw, kTiffDeflate, kTiffLzma, kTiffZstd, kBigTiff, kBigTiffDeflate,
};
constexpr SubtypeEntry kTiff8[] = {
    kTiffNone,    kTiffPackBits,   kTiffLzw,
    kTiffDeflate, kTiffLzma,       kTiffZstd,
    kBigTiff,     kBigTiffDeflate, Tiff(IDS_SUBTYPE_TIFF_JPEG_GRAY, FMT_TIFF_JPEG, kTiffLossyOptions),
};
constexpr SubtypeEntry kTiff24[] = {
    kTiffNone,
    kTiffPackBits,
    kTiffLzw,
    kTiffDeflate,
    kTiffLzma,
    kTiffZstd,
    kBigTiff,
    kBigTiffDeflate,
    Tiff(IDS_SUBTYPE_TIFF_JPEG_444, FMT_TIFF_JPEG, kTiffLossyOptions),
    Tiff(IDS_SUBTYPE_TIFF_JPEG_422, FMT_TIFF_JPEG_422, kTiffLossyOptions),
    Tiff(IDS_SUBTYPE_TIFF_JPEG_420, FMT_TIFF_JPEG_420, kTiffLossyOptions),
    Tiff(IDS_SUBTYPE_WEBP, FMT_TIFF_WEBP, kTiffLossyOptions),
    Tiff(IDS_SUBTYPE_YCC, FMT_TIFF_YCC),
};
constexpr SubtypeEntry kTiff32[] = {
    kTiffNone,    kTiffPackBits,   kTiffLzw,
    kTiffDeflate, kTiffLzma,       kTiffZstd,
    kBigTiff,     kBigTiffDeflate, Tiff(IDS_SUBTYPE_WEBP, FMT_TIFF_WEBP, kTiffLossyOptions),
};
constexpr BppEntry kTiff[] = {
    {1, kExtensionInSubtype, kTiffOptions, kTiffBilevel},   {4, kExtensionInSubtype, kTiffOptions, kTiffLossless},
    {8, kExtensionInSubtype, kTiffOptions, kTiff8},         {16, kExtensionInSubtype, kTiffOptions, kTiffLossless},
    {24, kExtensionInSubtype, kTiffOptions, kTiff24},       {32, kExtensionInSubtype, kTiffOptions, kTiff32},
    {48, kExtensionInSubtype, kTiffOptions, kTiffLossless}, {64, kExtensionInSubtype, kTiffOptions, kTiffLossless},
};

// --- GIF: sub type 1 is interlaced ---

constexpr SubtypeEntry kGifKinds[] = {
    {IDS_SUBTYPE_INTERLACED, IDS_EXTENSION_GIF, FMT_GIF, kLosslessPages},
    {IDS_SUBTYPE_NON_INTERLACED, IDS_EXTENSION_GIF, FMT_GIF, kLosslessPages},
};
constexpr BppEntry kGif[] = {
    {1, kExtensionInSubtype, kLosslessPages, kGifKinds},
    {4, kExtensionInSubtype, kLosslessPages, kGifKinds},
    {8, kExtensionInSubtype, kLosslessPages, kGifKinds},
};

// --- Windows Bitmap ---

constexpr SubtypeEntry kBmpPlain[] = {
    {IDS_SUBTYPE_UNCOMPRESSED, IDS_EXTENSION_BMP, FMT_BMP, kNoOptions},
};
constexpr SubtypeEntry kBmpPalette[] = {
    {IDS_SUBTYPE_UNCOMPRESSED, IDS_EXTENSION_BMP, FMT_BMP, kNoOptions},
    {IDS_SUBTYPE_RLE, IDS_EXTENSION_BMP, FMT_BMP_RLE, kNoOptions},
};
constexpr BppEntry kBmp[] = {
    {1, kExtensionInSubtype, kNoOptions, kBmpPlain},   {4, kExtensionInSubtype, kNoOptions, kBmpPalette},
    {8, kExtensionInSubtype, kNoOptions, kBmpPalette}, {16, kExtensionInSubtype, kNoOptions, kBmpPlain},
    {24, kExtensionInSubtype, kNoOptions, kBmpPlain},  {32, kExtensionInSubtype, kNoOptions, kBmpPlain},
};

// --- Our own container ---

constexpr BppEntry kCmp[] = {
    {24, IDS_EXTENSION_CMP, kCmpOptions, {}},
    {8, IDS_EXTENSION_CMP, kCmpOptions, {}},
};

// --- Exif ---

constexpr SubtypeEntry kExifKinds[] = {
    {IDS_SUBTYPE_EXIF_JPEG_422, IDS_EXTENSION_JPG, FMT_EXIF_JPEG_422, kJpegOptions},
    {IDS_SUBTYPE_EXIF_JPEG_420, IDS_EXTENSION_JPG, FMT_EXIF_JPEG_420, kJpegOptions},
    {IDS_SUBTYPE_EXIF_TIFF_RGB, IDS_EXTENSION_TIF, FMT_EXIF_TIFF_RGB, kExifTiffOptions},
    {IDS_SUBTYPE_EXIF_TIFF_YCC, IDS_EXTENSION_TIF, FMT_EXIF_TIFF_YCC, kExifTiffOptions},
};
constexpr BppEntry kExif[] = {
    {24, kExtensionInSubtype, kJpegOptions, kExifKinds},
};

// --- WebP ---

constexpr BppEntry kWebp[] = {
    {24, IDS_EXTENSION_WEBP, kQualityOptions, {}},
    {32, IDS_EXTENSION_WEBP, kQualityOptions, {}},
};

// --- JPEG 2000 ---

constexpr SubtypeEntry kJ2kKinds[] = {
    {IDS_SUBTYPE_JP2, IDS_EXTENSION_JP2, FMT_JP2, kJ2kOptions},
    {IDS_SUBTYPE_J2K, IDS_EXTENSION_J2K, FMT_J2K, kJ2kOptions},
};
constexpr SubtypeEntry kJ2kAlphaKinds[] = {
    {IDS_SUBTYPE_JP2, IDS_EXTENSION_JP2, FMT_JP2, kJ2kOptions | SAVEOPT_J2K_ALPHA},
    {IDS_SUBTYPE_J2K, IDS_EXTENSION_J2K, FMT_J2K, kJ2kOptions | SAVEOPT_J2K_ALPHA},
};
constexpr BppEntry kJpeg2000[] = {
    {8, kExtensionInSubtype, kJ2kOptions, kJ2kKinds},
    {24, kExtensionInSubtype, kJ2kOptions, kJ2kKinds},
    {32, kExtensionInSubtype, kJ2kOptions | SAVEOPT_J2K_ALPHA, kJ2kAlphaKinds},
};

// --- Windows Icon ---

constexpr SubtypeEntry kIconKinds[] = {
    {IDS_SUBTYPE_ICON, IDS_EXTENSION_ICO, FMT_ICO, kNoOptions},
    {IDS_SUBTYPE_ICON_PNG, IDS_EXTENSION_ICO, FMT_ICO_PNG, SAVEOPT_QFACTOR},
};
constexpr BppEntry kIcon[] = {
    {32, kExtensionInSubtype, kNoOptions, kIconKinds},
};

constexpr FormatEntry kCatalogue[] = {
    {IDS_CATALOGUE_JPEG, FMT_JPEG, 24, kJpeg},
    {IDS_CATALOGUE_PNG, FMT_PNG, 24, kPng},
    {IDS_CATALOGUE_TIFF, FMT_TIFF, 24, kTiff},
    {IDS_CATALOGUE_GIF, FMT_GIF, 8, kGif},
    {IDS_CATALOGUE_BMP, FMT_BMP, 24, kBmp},
    {IDS_CATALOGUE_CMP, FMT_CMP, 24, kCmp},
    {IDS_CATALOGUE_EXIF, FMT_EXIF_JPEG_422, 24, kExif},
    {IDS_CATALOGUE_WEBP, FMT_WEBP, 24, kWebp},
    {IDS_CATALOGUE_JPEG2000, FMT_JP2, 24, kJpeg2000},
    {IDS_CATALOGUE_ICON, FMT_ICO, 32, kIcon},
};

}  // namespace

std::span<const FormatEntry> Catalogue() { return kCatalogue; }

const FormatEntry* FindFormat(int32_t format) {
  return format >= 0 && static_cast<size_t>(format) < std::size(kCatalogue) ? &kCatalogue[format] : nullptr;
}

const BppEntry* FindBpp(int32_t format, int32_t bitsPerPixel) {
  const FormatEntry* entry = FindFormat(format);
  if (!entry) {
    return nullptr;
  }
  const auto found = std::ranges::find(entry->bpps, bitsPerPixel, &BppEntry::bitsPerPixel);
  return found == entry->bpps.end() ? nullptr : &*found;
}

const SubtypeEntry* FindSubtype(int32_t format, int32_t bitsPerPixel, int32_t subtype) {
  const BppEntry* bpp = FindBpp(format, bitsPerPixel);
  const auto bit = static_cast<uint32_t>(subtype);
  if (!bpp || !std::has_single_bit(bit)) {
    return nullptr;
  }
  const auto index = static_cast<size_t>(std::countr_zero(bit));
  return index < bpp->subtypes.size() ? &bpp->subtypes[index] : nullptr;
}
