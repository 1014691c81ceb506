// Writing PNG. The chunks are few and simple, so they are written here; the time goes into the row filters and deflate. Images
// whose filtered rows fit a memory budget are compressed in one go by libdeflate, which is about twice as fast as zlib at equal
// size; larger ones are streamed through zlib.
#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "services/zvfile/codecs/png.h"
#include "services/zvfile/codecs/png_filter.h"

namespace zvfile {
namespace {

constexpr size_t kOneGoBytes = 64u << 20;
constexpr size_t kIdatBytes = 512 * 1024;
constexpr double kInchesPerMetre = 0.0254;
constexpr int kDefaultLevel = 6;
constexpr size_t kMostExifBytes = size_t{1} << 30;  // a chunk holds twice that

enum ColorType : uint8_t { kGray = 0, kRgb = 2, kPalette = 3, kRgba = 6 };

// --- State ---

struct Shape {
  Layout layout = Layout::kRgb24;
  uint8_t depth = 8;
  uint8_t type = kRgb;
  size_t rowBytes = 0;
  size_t pixelBytes = 1;
  bool Adaptive(int level) const { return level > 0 && type != kPalette && depth >= 8; }
};

// Writes chunks: length, name, content, checksum.
class ChunkWriter {
 public:
  explicit ChunkWriter(ByteSink& sink) : sink_(sink) {}

  void Write(const char* name, std::span<const uint8_t> content) {
    uint32_t sum = libdeflate_crc32(0, name, 4);
    // For an empty block the library may be given a null pointer, which it takes as a wish for its starting value.
    if (!content.empty()) sum = libdeflate_crc32(sum, content.data(), content.size());
    sink_.WriteBe(content.size(), 4);
    sink_.Write(name, 4);
    sink_.Write(content.data(), content.size());
    sink_.WriteBe(sum, 4);
  }
  // Splits what may be longer than one chunk should be.
  void WriteIdat(std::span<const uint8_t> content) {
    while (!content.empty()) {
      const size_t count = std::min(content.size(), kIdatBytes);
      Write("IDAT", content.first(count));
      content = content.subspan(count);
    }
  }
  bool Failed() const { return sink_.Failed(); }

 private:
  ByteSink& sink_;
};

struct CompressorDeleter {
  void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};
using Compressor = std::unique_ptr<libdeflate_compressor, CompressorDeleter>;

// --- Header chunks ---

bool IsGrayRamp(const Palette& palette, int bits) {
  const size_t count = size_t{1} << bits;
  if (palette.size() != count || TellsAlpha(palette)) return false;
  for (size_t i = 0; i < count; ++i) {
    const size_t level = i * 255 / (count - 1);
    if (palette[i].red != level || palette[i].green != level || palette[i].blue != level) return false;
  }
  return true;
}

Shape ShapeOf(const RowSource& rows) {
  const Layout given = rows.GetLayout();
  Shape shape;
  shape.layout = given;
  const int32_t bits = BitsPerPixel(given);
  if (IsIndexed(given)) {
    shape.depth = static_cast<uint8_t>(bits);
    shape.type = IsGrayRamp(rows.GetPalette(), bits) ? kGray : kPalette;
  } else if (IsGray(given)) {
    shape.depth = static_cast<uint8_t>(bits);
    shape.type = kGray;
  } else {
    // 32 and 64 bits are written with alpha, opaque when the bitmap has none: the depth that was asked for is kept.
    const bool alpha = bits == 32 || bits == 64;
    shape.depth = IsDeep(given) ? 16 : 8;
    shape.type = alpha ? kRgba : kRgb;
    shape.layout = LayoutForDepth(bits, false, alpha, true);
  }
  shape.rowBytes = PackedRowBytes(shape.layout, rows.Width());
  shape.pixelBytes = std::max<size_t>(static_cast<size_t>(bits) / 8, 1);
  return shape;
}

void PutBe32(std::vector<uint8_t>& bytes, uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<uint8_t>(value >> shift));
}

void WriteIhdr(ChunkWriter& chunks, const RowSource& rows, const Shape& shape) {
  std::vector<uint8_t> content;
  PutBe32(content, static_cast<uint32_t>(rows.Width()));
  PutBe32(content, static_cast<uint32_t>(rows.Height()));
  content.insert(content.end(), {shape.depth, shape.type, 0, 0, 0});
  chunks.Write("IHDR", content);
}

void WriteProfile(ChunkWriter& chunks, const std::vector<uint8_t>& profile) {
  const Compressor compressor(libdeflate_alloc_compressor(kDefaultLevel));
  if (!compressor) return;
  std::vector<uint8_t> content = {'I', 'C', 'C', 0, 0};
  const size_t start = content.size();
  content.resize(start + libdeflate_zlib_compress_bound(compressor.get(), profile.size()));
  const size_t size = libdeflate_zlib_compress(compressor.get(), profile.data(), profile.size(), content.data() + start,
                                               content.size() - start);
  if (size == 0) return;
  content.resize(start + size);
  chunks.Write("iCCP", content);
}

void WriteText(ChunkWriter& chunks, const char* keyword, std::string_view text) {
  std::vector<uint8_t> content(keyword, keyword + std::strlen(keyword) + 1);
  const bool ascii =
      std::all_of(text.begin(), text.end(), [](char letter) { return static_cast<uint8_t>(letter) < 128; });
  if (!ascii) content.insert(content.end(), 4, uint8_t{0});  // iTXt: not compressed, no language, no translated keyword
  content.insert(content.end(), text.begin(), text.end());
  chunks.Write(ascii ? "tEXt" : "iTXt", content);
}

void WriteXmp(ChunkWriter& chunks, const std::vector<uint8_t>& xmp) {
  std::vector<uint8_t> content(kPngXmpKeyword, kPngXmpKeyword + sizeof kPngXmpKeyword);
  content.insert(content.end(), 4, uint8_t{0});
  content.insert(content.end(), xmp.begin(), xmp.end());
  chunks.Write("iTXt", content);
}

void WriteExif(ChunkWriter& chunks, const SaveRequest& request, const RowSource& rows) {
  if (request.metadata.exif.empty()) return;
  const ExifTarget target = {rows.Width(), rows.Height(), request.xResolution, request.yResolution, kMostExifBytes};
  const std::vector<uint8_t> exif = BuildExif(request.metadata.exif, {}, {}, target);
  if (!exif.empty()) chunks.Write("eXIf", exif);
}

// Alpha of the palette's entries; those behind the last that is not opaque can be left out.
void WriteTransparency(ChunkWriter& chunks, const Palette& palette) {
  std::vector<uint8_t> alphas;
  for (const ZVPALETTEENTRY& entry : palette) alphas.push_back(entry.alpha);
  while (!alphas.empty() && alphas.back() == 255) alphas.pop_back();
  chunks.Write("tRNS", alphas);
}

void WriteMetadata(ChunkWriter& chunks, const SaveRequest& request, const RowSource& rows, const Shape& shape) {
  const Metadata& metadata = request.metadata;
  if (ProfileFits(metadata.profile, shape.type == kGray)) WriteProfile(chunks, metadata.profile);
  if (shape.type == kPalette) {
    std::vector<uint8_t> colors;
    for (const ZVPALETTEENTRY& entry : rows.GetPalette())
      colors.insert(colors.end(), {entry.red, entry.green, entry.blue});
    chunks.Write("PLTE", colors);
    if (TellsAlpha(rows.GetPalette())) WriteTransparency(chunks, rows.GetPalette());
  }
  if (request.xResolution > 0 && request.yResolution > 0) {
    std::vector<uint8_t> content;
    PutBe32(content, static_cast<uint32_t>(request.xResolution / kInchesPerMetre + 0.5));
    PutBe32(content, static_cast<uint32_t>(request.yResolution / kInchesPerMetre + 0.5));
    content.push_back(1);
    chunks.Write("pHYs", content);
  }
  WriteExif(chunks, request, rows);
  for (const PngKeyword& known : kPngKeywords) {
    const std::string& text = metadata.comments[static_cast<size_t>(known.comment)];
    if (!text.empty()) WriteText(chunks, known.keyword, IsUtf8(text) ? text : Utf8FromLatin1(text));
  }
  if (!metadata.xmp.empty()) WriteXmp(chunks, metadata.xmp);
}

// --- Image data ---

// Takes the next row and filters it into output, rowBytes + 1 long.
int32_t FilterNext(RowSource& rows, const Shape& shape, PngFilter& filter, uint8_t* output) {
  const uint8_t* row = rows.Next();
  if (!row) return rows.Error();
  uint8_t* input = filter.Input();
  if (shape.depth == 16) {  // big-endian in the file
    for (size_t i = 0; i < shape.rowBytes; i += 2) {
      input[i] = row[i + 1];
      input[i + 1] = row[i];
    }
  } else {
    std::memcpy(input, row, shape.rowBytes);
  }
  filter.Apply(output);
  return SUCCESS;
}

struct FreeDeleter {
  void operator()(uint8_t* bytes) const { std::free(bytes); }
};
// malloc'ed, since pages that are never touched then cost nothing.
using Block = std::unique_ptr<uint8_t, FreeDeleter>;

Block Allocate(size_t bytes) { return Block(static_cast<uint8_t*>(std::malloc(bytes))); }

int32_t CompressInOneGo(ChunkWriter& chunks, RowSource& rows, const Shape& shape, int level, Block filtered,
                        size_t total) {
  PngFilter filter(shape.rowBytes, shape.pixelBytes, shape.Adaptive(level));
  for (int32_t y = 0; y < rows.Height(); ++y) {
    uint8_t* output = filtered.get() + (shape.rowBytes + 1) * static_cast<size_t>(y);
    const int32_t result = FilterNext(rows, shape, filter, output);
    if (result != SUCCESS) return result;
  }
  const Compressor compressor(libdeflate_alloc_compressor(level));
  if (!compressor) return ERROR_OUT_OF_MEMORY;
  // Most images fit three quarters of their size; the full bound is taken only when they do not.
  const size_t bound = libdeflate_zlib_compress_bound(compressor.get(), total);
  for (const size_t room : {std::min(bound, total / 4 * 3 + 65536), bound}) {
    const Block compressed = Allocate(room);
    if (!compressed) return ERROR_OUT_OF_MEMORY;
    const size_t size = libdeflate_zlib_compress(compressor.get(), filtered.get(), total, compressed.get(), room);
    if (size == 0) continue;
    chunks.WriteIdat({compressed.get(), size});
    return chunks.Failed() ? ERROR_FILE_WRITE : SUCCESS;
  }
  return ERROR_OUT_OF_MEMORY;
}

class Stream {
 public:
  Stream(ChunkWriter& chunks, int level, bool filtered) : chunks_(chunks), output_(kIdatBytes) {
    ready_ = deflateInit2(&zlib_, level, Z_DEFLATED, 15, 8, filtered ? Z_FILTERED : Z_DEFAULT_STRATEGY) == Z_OK;
    zlib_.next_out = output_.data();
    zlib_.avail_out = static_cast<uInt>(output_.size());
  }
  ~Stream() {
    if (ready_) deflateEnd(&zlib_);
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  int32_t Put(const uint8_t* bytes, size_t count, bool last) {
    if (!ready_) return ERROR_OUT_OF_MEMORY;
    zlib_.next_in = const_cast<Bytef*>(bytes);
    zlib_.avail_in = static_cast<uInt>(count);
    int status = Z_OK;
    do {
      status = deflate(&zlib_, last ? Z_FINISH : Z_NO_FLUSH);
      if (zlib_.avail_out == 0 || status == Z_STREAM_END) {
        chunks_.WriteIdat({output_.data(), output_.size() - zlib_.avail_out});
        zlib_.next_out = output_.data();
        zlib_.avail_out = static_cast<uInt>(output_.size());
      }
    } while (zlib_.avail_in > 0 || (last && status == Z_OK));
    return chunks_.Failed() ? ERROR_FILE_WRITE : SUCCESS;
  }

 private:
  ChunkWriter& chunks_;
  z_stream zlib_ = {};
  std::vector<uint8_t> output_;
  bool ready_ = false;
};

int32_t CompressAsStream(ChunkWriter& chunks, RowSource& rows, const Shape& shape, int level) {
  PngFilter filter(shape.rowBytes, shape.pixelBytes, shape.Adaptive(level));
  Stream stream(chunks, level, shape.Adaptive(level));
  std::vector<uint8_t> filtered(shape.rowBytes + 1);
  for (int32_t y = 0; y < rows.Height(); ++y) {
    int32_t result = FilterNext(rows, shape, filter, filtered.data());
    if (result == SUCCESS) result = stream.Put(filtered.data(), filtered.size(), y + 1 == rows.Height());
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

}  // namespace

// --- Save ---

int32_t PngSave(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  const int level = request.quality < 0 ? kDefaultLevel : std::min(request.quality, 9);
  const Shape shape = ShapeOf(rows);
  int32_t result = rows.Begin(shape.layout);
  if (result != SUCCESS) return result;
  sink.Write("\x89PNG\r\n\x1A\n", 8);
  ChunkWriter chunks(sink);
  WriteIhdr(chunks, rows, shape);
  WriteMetadata(chunks, request, rows, shape);
  const uint64_t total = (shape.rowBytes + uint64_t{1}) * static_cast<uint64_t>(rows.Height());
  Block filtered = total <= kOneGoBytes ? Allocate(static_cast<size_t>(total)) : nullptr;
  result = filtered ? CompressInOneGo(chunks, rows, shape, level, std::move(filtered), static_cast<size_t>(total))
                    : CompressAsStream(chunks, rows, shape, level);
  if (result != SUCCESS) return result;
  chunks.Write("IEND", {});
  return sink.Failed() ? ERROR_FILE_WRITE : SUCCESS;
}

}  // namespace zvfile
