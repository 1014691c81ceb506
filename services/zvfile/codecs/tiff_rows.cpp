#include "services/zvfile/codecs/tiff_rows.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace zvfile::tiff {
namespace {

size_t BytesForBits(uint64_t bits) { return static_cast<size_t>((bits + 7) / 8); }

// Puts the samples of one plane at their places in interleaved pixels.
void Interleave(const uint8_t* plane, uint32_t width, uint16_t bits, uint16_t samples, uint16_t sample, uint8_t* row) {
  if (bits % 8 == 0) {
    const size_t bytes = bits / 8;
    uint8_t* target = row + sample * bytes;
    for (uint32_t x = 0; x < width; ++x, plane += bytes, target += bytes * samples) std::memcpy(target, plane, bytes);
    return;
  }
  for (uint64_t x = 0; x < width; ++x) {
    for (uint64_t bit = 0; bit < bits; ++bit) {
      const uint64_t from = x * bits + bit, to = (x * samples + sample) * bits + bit;
      const uint8_t mask = static_cast<uint8_t>(0x80 >> (to & 7));
      const bool set = plane[from >> 3] >> (7 - (from & 7)) & 1;
      row[to >> 3] = static_cast<uint8_t>(set ? row[to >> 3] | mask : row[to >> 3] & ~mask);
    }
  }
}

// Uncompressed strips, read straight from the source.
class PlainStrips final : public RowReader {
 public:
  PlainStrips(TIFF* tiff, ByteSource& source, const Picture& picture, size_t rowBytes)
      : RowReader(rowBytes), tiff_(tiff), source_(source), bits_(picture.bits) {
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ROWSPERSTRIP, &rowsPerStrip_);
    rowsPerStrip_ = std::clamp<uint32_t>(rowsPerStrip_, 1, picture.height);
    uint16_t fillOrder = FILLORDER_MSB2LSB;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_FILLORDER, &fillOrder);
    reverseBits_ = fillOrder == FILLORDER_LSB2MSB;
  }

  int32_t Read(uint32_t first, uint32_t count, uint8_t* rows) override {
    while (count > 0) {
      const uint32_t strip = first / rowsPerStrip_, inside = first % rowsPerStrip_;
      const uint32_t some = std::min(count, rowsPerStrip_ - inside);
      const uint64_t offset = TIFFGetStrileOffset(tiff_, strip) + uint64_t{inside} * rowBytes_;
      const size_t bytes = some * rowBytes_;
      source_.Seek(offset);
      if (source_.Read(rows, bytes) != bytes) return source_.Failed() ? ERROR_FILE_READ : ERROR_FILE_DAMAGED;
      ToNative(rows, bytes);
      first += some;
      count -= some;
      rows += bytes;
    }
    return SUCCESS;
  }

 private:
  void ToNative(uint8_t* rows, size_t bytes) const {
    if (reverseBits_) TIFFReverseBits(rows, static_cast<tmsize_t>(bytes));
    if (bits_ == 16 && TIFFIsByteSwapped(tiff_)) {
      TIFFSwabArrayOfShort(reinterpret_cast<uint16_t*>(rows), static_cast<tmsize_t>(bytes / 2));
    }
  }

  TIFF* tiff_;
  ByteSource& source_;
  uint16_t bits_;
  uint32_t rowsPerStrip_ = UINT32_MAX;
  bool reverseBits_ = false;
};

// Compressed strips with the samples together: the library decodes a row at a time.
class Scanlines final : public RowReader {
 public:
  Scanlines(Handle& handle, const Picture& picture, size_t rowBytes)
      : RowReader(rowBytes), handle_(handle), strict_(picture.compression == COMPRESSION_CCITTFAX4) {}

  int32_t Read(uint32_t first, uint32_t count, uint8_t* rows) override {
    for (uint32_t i = 0; i < count; ++i, rows += rowBytes_) {
      if (TIFFReadScanline(handle_.Get(), rows, first + i, 0) < 0) return ERROR_FILE_DAMAGED;
    }
    // A bad code of Group 4 spoils every row below it, and the library goes on all the same.
    return strict_ && handle_.Errors() > 0 ? ERROR_FILE_DAMAGED : SUCCESS;
  }

 private:
  Handle& handle_;
  bool strict_;
};

// What can be had by the band alone: rows of tiles, strips of separate planes, the library's RGBA pictures.
class Bands : public RowReader {
 public:
  int32_t Read(uint32_t first, uint32_t count, uint8_t* rows) override {
    for (uint32_t i = 0; i < count; ++i, rows += rowBytes_) {
      const uint32_t band = (first + i) / bandRows_;
      if (band != loaded_) {
        const uint32_t top = band * bandRows_;
        const int32_t result = Load(top, std::min(bandRows_, height_ - top));
        if (result != SUCCESS) return result;
        loaded_ = band;
      }
      std::memcpy(rows, band_.data() + size_t{(first + i) % bandRows_} * rowBytes_, rowBytes_);
    }
    return SUCCESS;
  }

 protected:
  Bands(TIFF* tiff, const Picture& picture, size_t rowBytes, uint32_t bandRows)
      : RowReader(rowBytes),
        tiff_(tiff),
        picture_(picture),
        height_(picture.height),
        bandRows_(bandRows),
        band_(rowBytes * bandRows) {}
  // Fills band_ with rows [top, top + rows).
  virtual int32_t Load(uint32_t top, uint32_t rows) = 0;

  TIFF* tiff_;
  const Picture& picture_;
  uint32_t height_;
  uint32_t bandRows_;
  std::vector<uint8_t> band_;

 private:
  uint32_t loaded_ = UINT32_MAX;
};

class SeparateStrips final : public Bands {
 public:
  SeparateStrips(TIFF* tiff, const Picture& picture, size_t rowBytes, uint32_t rowsPerStrip)
      : Bands(tiff, picture, rowBytes, rowsPerStrip),
        planeBytes_(TIFFScanlineSize(tiff)),
        plane_(static_cast<size_t>(TIFFStripSize(tiff))) {}

 private:
  int32_t Load(uint32_t top, uint32_t rows) override {
    for (uint16_t sample = 0; sample < picture_.samples; ++sample) {
      const uint32_t strip = TIFFComputeStrip(tiff_, top, sample);
      if (TIFFReadEncodedStrip(tiff_, strip, plane_.data(), static_cast<tmsize_t>(rows) * planeBytes_) < 0) {
        return ERROR_FILE_DAMAGED;
      }
      for (uint32_t y = 0; y < rows; ++y) {
        Interleave(plane_.data() + y * planeBytes_, picture_.width, picture_.bits, picture_.samples, sample,
                   band_.data() + y * rowBytes_);
      }
    }
    return SUCCESS;
  }

  tmsize_t planeBytes_;
  std::vector<uint8_t> plane_;
};

class TileRows final : public Bands {
 public:
  TileRows(TIFF* tiff, const Picture& picture, size_t rowBytes, uint32_t tileWidth, uint32_t tileHeight)
      : Bands(tiff, picture, rowBytes, tileHeight),
        tileWidth_(tileWidth),
        tileRowBytes_(TIFFTileRowSize(tiff)),
        tile_(static_cast<size_t>(TIFFTileSize(tiff))) {}

 private:
  int32_t Load(uint32_t top, uint32_t rows) override {
    const uint16_t planes = picture_.separate ? picture_.samples : 1;
    for (uint32_t left = 0; left < picture_.width; left += tileWidth_) {
      const uint32_t columns = std::min(tileWidth_, picture_.width - left);
      for (uint16_t plane = 0; plane < planes; ++plane) {
        const uint32_t index = TIFFComputeTile(tiff_, left, top, 0, plane);
        if (TIFFReadEncodedTile(tiff_, index, tile_.data(), static_cast<tmsize_t>(tile_.size())) < 0) {
          return ERROR_FILE_DAMAGED;
        }
        for (uint32_t y = 0; y < rows; ++y) Place(y, left, columns, plane);
      }
      if (left + uint64_t{tileWidth_} > UINT32_MAX) break;
    }
    return SUCCESS;
  }

  // Tiles are multiples of 16 pixels wide, so their left edge is on a byte even where pixels are not.
  void Place(uint32_t y, uint32_t left, uint32_t columns, uint16_t plane) {
    const uint64_t pixelBits = uint64_t{picture_.bits} * picture_.samples;
    uint8_t* target = band_.data() + y * rowBytes_ + left * pixelBits / 8;
    const uint8_t* source = tile_.data() + y * tileRowBytes_;
    if (picture_.separate) {
      Interleave(source, columns, picture_.bits, picture_.samples, plane, target);
    } else {
      std::memcpy(target, source, BytesForBits(columns * pixelBits));
    }
  }

  uint32_t tileWidth_;
  tmsize_t tileRowBytes_;
  std::vector<uint8_t> tile_;
};

// 8-bit RGBA bands as the library converts them. It gives them bottom row first.
class LibraryPictures final : public Bands {
 public:
  LibraryPictures(TIFF* tiff, const Picture& picture, uint32_t columns, uint32_t bandRows)
      : Bands(tiff, picture, size_t{picture.width} * 4, bandRows),
        columns_(columns),
        raster_(size_t{columns} * bandRows) {
    // The view perspective is applied elsewhere; the library would apply it a second time.
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  }

 private:
  int32_t Load(uint32_t top, uint32_t rows) override {
    for (uint32_t left = 0; left < picture_.width; left += columns_) {
      const bool good = picture_.tiled ? TIFFReadRGBATileExt(tiff_, left, top, raster_.data(), 1)
                                       : TIFFReadRGBAStripExt(tiff_, top, raster_.data(), 1);
      if (!good) return ERROR_FILE_DAMAGED;
      // A tile comes whole, a last strip only as high as it is.
      const uint32_t height = picture_.tiled ? bandRows_ : rows;
      const size_t bytes = size_t{std::min(columns_, picture_.width - left)} * 4;
      for (uint32_t y = 0; y < rows; ++y) {
        std::memcpy(band_.data() + y * rowBytes_ + size_t{left} * 4, raster_.data() + size_t{height - 1 - y} * columns_,
                    bytes);
      }
    }
    return SUCCESS;
  }

  uint32_t columns_;
  std::vector<uint32_t> raster_;
};

bool IsPlain(const Picture& picture) {
  const bool wholeSamples =
      picture.bits == 1 || picture.bits == 2 || picture.bits == 4 || picture.bits == 8 || picture.bits == 16;
  return picture.compression == COMPRESSION_NONE && !picture.tiled && !picture.separate && wholeSamples &&
         picture.decoding != Decoding::kLibrary;
}

}  // namespace

int32_t RowReader::Make(Handle& handle, ByteSource& source, const Picture& picture, const Limits& limits,
                        std::unique_ptr<RowReader>& reader) {
  TIFF* tiff = handle.Get();
  const size_t rowBytes = BytesForBits(uint64_t{picture.width} * picture.samples * picture.bits);
  if (IsPlain(picture)) {
    if (uint64_t{rowBytes} * picture.height > source.Size()) return ERROR_FILE_DAMAGED;
    reader = std::make_unique<PlainStrips>(tiff, source, picture, rowBytes);
    return SUCCESS;
  }
  uint32_t columns = picture.width, rows = UINT32_MAX;
  if (picture.tiled) {
    if (!TIFFGetField(tiff, TIFFTAG_TILEWIDTH, &columns) || !TIFFGetField(tiff, TIFFTAG_TILELENGTH, &rows) ||
        columns == 0 || columns % 16 != 0 || rows == 0) {
      return ERROR_FILE_DAMAGED;
    }
  } else {
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ROWSPERSTRIP, &rows);
    rows = std::clamp<uint32_t>(rows, 1, picture.height);
  }
  const bool library = picture.decoding == Decoding::kLibrary;
  const uint64_t bandRow = library ? 4 * std::max<uint64_t>(picture.width, columns) : std::max<uint64_t>(rowBytes, 1);
  const bool needsBand = picture.tiled || picture.separate || library;
  if (needsBand && rows > limits.maxDecodedBytes / bandRow) return ERROR_LIMIT_EXCEEDED;
  if (library) {
    reader = std::make_unique<LibraryPictures>(tiff, picture, columns, rows);
  } else if (picture.tiled) {
    const tmsize_t tileBytes = TIFFTileSize(tiff);
    if (tileBytes <= 0 || static_cast<uint64_t>(tileBytes) > limits.maxDecodedBytes) return ERROR_LIMIT_EXCEEDED;
    reader = std::make_unique<TileRows>(tiff, picture, rowBytes, columns, rows);
  } else if (picture.separate) {
    if (TIFFStripSize(tiff) <= 0 || TIFFScanlineSize(tiff) <= 0) return ERROR_FILE_DAMAGED;
    reader = std::make_unique<SeparateStrips>(tiff, picture, rowBytes, rows);
  } else {
    if (TIFFScanlineSize(tiff) != static_cast<tmsize_t>(rowBytes)) return ERROR_FILE_DAMAGED;
    reader = std::make_unique<Scanlines>(handle, picture, rowBytes);
  }
  return SUCCESS;
}

}  // namespace zvfile::tiff
