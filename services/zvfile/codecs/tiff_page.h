// What one TIFF directory says of its picture, brought into the few ways of decoding that there are. Reads tags alone, never
// pixels.
#ifndef ZV_FILE_TIFF_PAGE_H
#define ZV_FILE_TIFF_PAGE_H

#include <cstdint>

#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/tiff_handle.h"

namespace zvfile::tiff {

// How stored samples become a layout.
enum class Decoding {
  kIndices,        // rows pass as they are: indices of 1, 2, 4 or 8 bits
  kSamples,        // grey or RGB samples of any depth
  kPaletteColors,  // indices that no layout has, or with alpha: looked up
  kInks,           // CMYK
  kLab,
  kLibrary  // sub-sampled YCbCr and old JPEG: the library makes 8-bit RGBA
};

enum class Alpha { kNone, kAssociated, kStraight };

struct Picture {
  uint32_t width = 0, height = 0;
  uint16_t bits = 1, samples = 1, photometric = 0, compression = 1, sampleFormat = 1;
  bool separate = false, tiled = false;
  uint16_t colors = 1;  // samples that are colour; alpha, if any, comes right behind them
  Alpha alpha = Alpha::kNone;
  uint16_t chromaX = 1, chromaY = 1;
  Decoding decoding = Decoding::kSamples;
  Layout layout = Layout::kGray8;
  Palette palette;  // of kIndices and kPaletteColors
};

// Reads the tags of the current directory and tells the library to deliver samples in the plainest form it can (RGB of JPEG,
// 8 bits of logarithmic encodings). ERROR_FILE_DAMAGED, ERROR_FEATURE_UNSUPPORTED.
int32_t DescribePicture(TIFF* tiff, Picture& picture);
// Fills everything of the header but pages and metadata.
void FillHeader(TIFF* tiff, const Picture& picture, bool big, bool hasExif, ImageHeader& header);

}  // namespace zvfile::tiff

#endif
