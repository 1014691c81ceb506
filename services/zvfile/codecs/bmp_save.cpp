// The writing half of the BMP codec.
#include <algorithm>
#include <cstring>

#include "services/zvfile/codecs/bmp.h"

namespace zvfile {
namespace {

// The 4- or 8-bit run-length code of one row, without its end-of-line pair.
void EncodeRow(const uint8_t* indices, int32_t width, int bits, std::vector<uint8_t>& code) {
  constexpr int32_t kLongest = 255;
  const auto runAt = [&](int32_t x) {
    int32_t end = x + 1;
    while (end < width && end - x < kLongest && indices[end] == indices[x]) ++end;
    return end - x;
  };
  constexpr int32_t kWorthARun = 3;
  int32_t x = 0;
  while (x < width) {
    const int32_t run = runAt(x);
    int32_t literals = 0;
    while (x + literals < width && literals + kWorthARun <= kLongest && runAt(x + literals) < kWorthARun) ++literals;
    if (literals < kWorthARun) {  // shorter literals are no literals: their counts mean escapes
      code.push_back(static_cast<uint8_t>(run));
      code.push_back(static_cast<uint8_t>(bits == 8 ? indices[x] : indices[x] * 17));
      x += run;
      continue;
    }
    code.push_back(0);
    code.push_back(static_cast<uint8_t>(literals));
    const size_t start = code.size();
    for (int32_t i = 0; i < literals; ++i, ++x) {
      if (bits == 8) {
        code.push_back(indices[x]);
      } else if (i % 2 == 0) {
        code.push_back(static_cast<uint8_t>(indices[x] << 4));
      } else {
        code.back() |= indices[x];
      }
    }
    if ((code.size() - start) % 2) code.push_back(0);
  }
}

struct SaveLayout {
  int bits = 24;
  bool alpha = false;
  bool rle = false;
  uint64_t stride = 0;
  uint32_t headerBytes = kBmpInfoHeaderBytes;
  uint32_t paletteEntries = 0;
  uint32_t PixelOffset() const { return kBmpFileHeaderBytes + headerBytes + paletteEntries * 4; }
};

uint32_t CompressionOf(const SaveLayout& layout) {
  if (layout.rle) return layout.bits == 4 ? kBmpRle4 : kBmpRle8;
  return layout.alpha ? kBmpBitFields : kBmpPlain;
}

void WriteHeaders(ByteSink& sink, const SaveRequest& request, const RowSource& rows, const SaveLayout& layout,
                  uint64_t pixelBytes) {
  const auto perMetre = [](int32_t dpi) { return static_cast<uint64_t>(dpi / kBmpInchesPerMetre + 0.5); };
  sink.Seek(0);
  sink.Write("BM", 2);
  sink.WriteLe(layout.PixelOffset() + pixelBytes, 4);
  sink.WriteLe(0, 4);
  sink.WriteLe(layout.PixelOffset(), 4);
  sink.WriteLe(layout.headerBytes, 4);
  sink.WriteLe(static_cast<uint32_t>(rows.Width()), 4);
  sink.WriteLe(static_cast<uint32_t>(rows.Height()), 4);
  sink.WriteLe(1, 2);
  sink.WriteLe(static_cast<uint32_t>(layout.bits), 2);
  sink.WriteLe(CompressionOf(layout), 4);
  sink.WriteLe(pixelBytes, 4);
  sink.WriteLe(perMetre(request.xResolution), 4);
  sink.WriteLe(perMetre(request.yResolution), 4);
  sink.WriteLe(layout.paletteEntries, 4);
  sink.WriteLe(0, 4);
  if (layout.alpha) {
    for (const uint32_t mask : {0x00FF0000u, 0x0000FF00u, 0x000000FFu, 0xFF000000u}) sink.WriteLe(mask, 4);
    sink.Write("BGRs", 4);  // LCS_sRGB, little-endian
    const uint8_t zeros[kBmpVersion4Bytes - kBmpAlphaHeaderBytes - 4] = {};
    sink.Write(zeros, sizeof zeros);
  }
  for (uint32_t i = 0; i < layout.paletteEntries; ++i) {
    const ZVPALETTEENTRY entry = i < rows.GetPalette().size() ? rows.GetPalette()[i] : ZVPALETTEENTRY{};
    const uint8_t bytes[4] = {entry.blue, entry.green, entry.red, 0};
    sink.Write(bytes, 4);
  }
}

int32_t WritePlainRows(ByteSink& sink, RowSource& rows, const SaveLayout& layout) {
  const size_t stride = static_cast<size_t>(layout.stride);
  const size_t rowBytes = PackedRowBytes(rows.GetLayout(), rows.Width());
  const int32_t blockRows = static_cast<int32_t>(std::clamp<size_t>(256 * 1024 / stride, 1, 64));
  std::vector<uint8_t> block(stride * static_cast<size_t>(blockRows));
  for (int32_t first = 0; first < rows.Height(); first += blockRows) {
    const int32_t count = std::min(blockRows, rows.Height() - first);
    for (int32_t i = 0; i < count; ++i) {
      const uint8_t* row = rows.Next();
      if (!row) return rows.Error();
      std::memcpy(block.data() + stride * static_cast<size_t>(count - 1 - i), row, rowBytes);
    }
    sink.Seek(layout.PixelOffset() + layout.stride * static_cast<uint64_t>(rows.Height() - first - count));
    if (!sink.Write(block.data(), stride * static_cast<size_t>(count))) return ERROR_FILE_WRITE;
  }
  return SUCCESS;
}

int32_t WriteRleRows(ByteSink& sink, RowSource& rows, const SaveLayout& layout, uint64_t& pixelBytes) {
  const size_t width = static_cast<size_t>(rows.Width());
  std::vector<uint8_t> image(width * static_cast<size_t>(rows.Height()));
  int32_t result = rows.Begin(Layout::kIndex8);
  if (result == SUCCESS) result = rows.ReadAll(image.data(), width);
  if (result != SUCCESS) return result;
  sink.Seek(layout.PixelOffset());
  std::vector<uint8_t> code;
  for (int32_t y = rows.Height() - 1; y >= 0; --y) {
    code.clear();
    EncodeRow(image.data() + width * static_cast<size_t>(y), rows.Width(), layout.bits, code);
    code.push_back(0);
    code.push_back(y == 0 ? 1 : 0);
    if (!sink.Write(code.data(), code.size())) return ERROR_FILE_WRITE;
    pixelBytes += code.size();
  }
  return SUCCESS;
}

}  // namespace

int32_t BmpSave(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  const Layout wanted = rows.GetLayout();
  SaveLayout layout;
  layout.bits = BitsPerPixel(wanted);
  layout.alpha = HasAlpha(wanted);
  layout.rle = request.format == FMT_BMP_RLE;
  layout.headerBytes = layout.alpha ? kBmpVersion4Bytes : kBmpInfoHeaderBytes;
  layout.paletteEntries = IsIndexed(wanted) ? 1u << layout.bits : 0;
  layout.stride = (static_cast<uint64_t>(rows.Width()) * static_cast<uint32_t>(layout.bits) + 31) / 32 * 4;
  uint64_t pixelBytes = layout.stride * static_cast<uint64_t>(rows.Height());
  if (pixelBytes > UINT32_MAX - layout.PixelOffset()) return ERROR_LIMIT_EXCEEDED;
  int32_t result = SUCCESS;
  if (layout.rle) {
    pixelBytes = 0;
    result = WriteRleRows(sink, rows, layout, pixelBytes);
  } else {
    result = rows.Begin(wanted);
    if (result == SUCCESS) result = WritePlainRows(sink, rows, layout);
  }
  if (result != SUCCESS) return result;
  WriteHeaders(sink, request, rows, layout, pixelBytes);
  return sink.Failed() ? ERROR_FILE_WRITE : SUCCESS;
}

}  // namespace zvfile
