// Writes TIFF files in memory with the library itself, tag by tag, as other programs would; and the fixture that loads them.
#ifndef ZV_TESTS_TIFF_MAKER_H
#define ZV_TESTS_TIFF_MAKER_H

#include <gtest/gtest.h>
#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "file_test_support.h"

namespace zvtest {

// Collects what the library writes; it reads back directories while it links them.
struct MemoryFile {
  std::vector<uint8_t> bytes;
  size_t position = 0;
};

inline tmsize_t ReadMemory(thandle_t handle, void* buffer, tmsize_t size) {
  auto& file = *static_cast<MemoryFile*>(handle);
  const size_t some =
      std::min(static_cast<size_t>(size), file.bytes.size() - std::min(file.position, file.bytes.size()));
  std::memcpy(buffer, file.bytes.data() + file.position, some);
  file.position += some;
  return static_cast<tmsize_t>(some);
}

inline tmsize_t WriteMemory(thandle_t handle, void* buffer, tmsize_t size) {
  auto& file = *static_cast<MemoryFile*>(handle);
  file.bytes.resize(std::max(file.bytes.size(), file.position + static_cast<size_t>(size)));
  std::memcpy(file.bytes.data() + file.position, buffer, static_cast<size_t>(size));
  file.position += static_cast<size_t>(size);
  return size;
}

inline toff_t SeekMemory(thandle_t handle, toff_t offset, int whence) {
  auto& file = *static_cast<MemoryFile*>(handle);
  const size_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file.position : file.bytes.size();
  file.position = base + static_cast<size_t>(offset);
  return file.position;
}

inline toff_t SizeOfMemory(thandle_t handle) { return static_cast<MemoryFile*>(handle)->bytes.size(); }

// Writes a TIFF in memory; `write` sets tags and pixels.
inline std::vector<uint8_t> MakeTiff(const char* mode, const std::function<void(TIFF*)>& write) {
  MemoryFile file;
  TIFF* tiff = TIFFClientOpen(
      "memory", mode, &file, ReadMemory, WriteMemory, SeekMemory, [](thandle_t) { return 0; }, SizeOfMemory, nullptr,
      nullptr);
  if (!tiff) return {};
  write(tiff);
  TIFFClose(tiff);
  return file.bytes;
}

struct Shape {
  uint32_t width = 50, height = 37;
  uint16_t bits = 8, samples = 3, photometric = PHOTOMETRIC_RGB, planar = PLANARCONFIG_CONTIG;
  uint16_t format = SAMPLEFORMAT_UINT, compression = COMPRESSION_NONE;
};

inline void SetShape(TIFF* tiff, const Shape& shape) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, shape.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, shape.height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, shape.bits);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, shape.samples);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, shape.photometric);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, shape.planar);
  TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, shape.format);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, shape.compression);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 10u);
}

// A level of 0 to 255 that differs from pixel to pixel and sample to sample.
inline uint32_t Level(uint32_t x, uint32_t y, uint32_t sample) { return (x * 5 + y * 3 + sample * 71) & 255; }

inline void WriteStrips(TIFF* tiff, const Shape& shape) {
  const bool separate = shape.planar == PLANARCONFIG_SEPARATE;
  for (uint16_t plane = 0; plane < (separate ? shape.samples : 1); ++plane) {
    for (uint32_t y = 0; y < shape.height; ++y) {
      std::vector<uint8_t> row;
      for (uint32_t x = 0; x < shape.width; ++x) {
        for (uint16_t s = separate ? plane : 0; s < (separate ? plane + 1 : shape.samples); ++s) {
          const uint32_t level = Level(x, y, s);
          if (shape.bits == 16) row.push_back(static_cast<uint8_t>(level));
          row.push_back(static_cast<uint8_t>(level));
        }
      }
      ASSERT_EQ(TIFFWriteScanline(tiff, row.data(), y, plane), 1);
    }
  }
}

inline void WriteTiles(TIFF* tiff, const Shape& shape, uint32_t tileWidth, uint32_t tileHeight) {
  TIFFSetField(tiff, TIFFTAG_TILEWIDTH, tileWidth);
  TIFFSetField(tiff, TIFFTAG_TILELENGTH, tileHeight);
  const bool separate = shape.planar == PLANARCONFIG_SEPARATE;
  for (uint16_t plane = 0; plane < (separate ? shape.samples : 1); ++plane) {
    for (uint32_t top = 0; top < shape.height; top += tileHeight) {
      for (uint32_t left = 0; left < shape.width; left += tileWidth) {
        std::vector<uint8_t> tile;
        for (uint32_t y = top; y < top + tileHeight; ++y) {
          for (uint32_t x = left; x < left + tileWidth; ++x) {
            for (uint16_t s = separate ? plane : 0; s < (separate ? plane + 1 : shape.samples); ++s) {
              tile.push_back(static_cast<uint8_t>(Level(x, y, s)));
            }
          }
        }
        ASSERT_GE(TIFFWriteTile(tiff, tile.data(), left, top, 0, plane), 0);
      }
    }
  }
}

class TiffForeign : public testing::Test {
 protected:
  int32_t LoadBytes(const std::vector<uint8_t>& bytes, Picture& picture, FILEINFO* info = nullptr) {
    const auto path = folder.Path(u"foreign.tif");
    WriteBytes(path, bytes);
    return Load(path, picture, 0, ORDER_BGR_OR_GRAY, nullptr, info);
  }
  // Expects red, green and blue to be samples 0 to 2 (or all sample 0 for grey), as levels of 0 to 255.
  void ExpectLevels(Picture& picture, const Shape& shape, bool gray = false) {
    ASSERT_EQ(static_cast<uint32_t>(picture->width), shape.width);
    ASSERT_EQ(static_cast<uint32_t>(picture->height), shape.height);
    for (uint32_t y = 0; y < shape.height; ++y) {
      for (uint32_t x = 0; x < shape.width; ++x) {
        const Color color = ColorAt(picture.bitmap, static_cast<int32_t>(x), static_cast<int32_t>(y));
        ASSERT_EQ(color.red, Level(x, y, 0) * 257) << x << ", " << y;
        ASSERT_EQ(color.green, Level(x, y, gray ? 0 : 1) * 257) << x << ", " << y;
        ASSERT_EQ(color.blue, Level(x, y, gray ? 0 : 2) * 257) << x << ", " << y;
      }
    }
  }
  TestFolder folder;
};

}  // namespace zvtest

#endif
