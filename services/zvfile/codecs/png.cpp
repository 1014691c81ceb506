// Reading PNG through libpng: all colour types and depths, transparency, interlacing, text, profile, Exif and resolution. The
// gamma chunk is left alone, as photographs are meant to be shown in sRGB; writing stands in png_save.cpp.
#include "services/zvfile/codecs/png.h"

#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstdlib>
#include <cstring>

namespace zvfile {
namespace {

constexpr double kInchesPerMetre = 0.0254;
constexpr uint32_t kMostBytesPerByte = 1040;  // deflate's limit is 1032
constexpr png_alloc_size_t kMostChunkBytes = 64u << 20;
constexpr png_alloc_size_t kMostAllocation = kMostChunkBytes + (1u << 20);
constexpr int kMostChunks = 10000;  // of text and the like

// --- State and callbacks ---

class Reader {
 public:
  explicit Reader(ByteSource& source) : source_(source) {}
  ~Reader() {
    if (png) png_destroy_read_struct(&png, &info, nullptr);
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  // Runs libpng calls; a fatal error jumps back here. The body must own nothing that has a destructor.
  template <typename Body>
  int32_t Guard(Body&& body) {
    result_ = SUCCESS;
    if (setjmp(jump_) == 0) body();
    return result_;
  }

  int32_t Open() {
    png = png_create_read_struct_2(PNG_LIBPNG_VER_STRING, this, OnError, OnWarning, nullptr, OnAllocate, OnFree);
    if (png) info = png_create_info_struct(png);
    if (!info) return ERROR_OUT_OF_MEMORY;
    return Guard([&] {
      png_set_read_fn(png, &source_, OnRead);
      png_set_chunk_malloc_max(png, kMostChunkBytes);
      png_set_chunk_cache_max(png, kMostChunks);
      png_set_benign_errors(png, 1);
      png_read_info(png, info);
    });
  }

  png_structp png = nullptr;
  png_infop info = nullptr;

 private:
  static void OnError(png_structp png, png_const_charp) {
    Reader* reader = static_cast<Reader*>(png_get_error_ptr(png));
    reader->result_ = ERROR_FILE_DAMAGED;
    std::longjmp(reader->jump_, 1);
  }
  static void OnWarning(png_structp, png_const_charp) {}
  // libpng takes a chunk above its limit for a slip that can be forgiven, and asks for what the chunk claims: gigabytes that a
  // few forged bytes cost. What is refused here it skips, which ends at the end of the file.
  static png_voidp OnAllocate(png_structp, png_alloc_size_t size) {
    return size <= kMostAllocation ? std::malloc(size) : nullptr;
  }
  static void OnFree(png_structp, png_voidp memory) { std::free(memory); }
  static void OnRead(png_structp png, png_bytep bytes, size_t count) {
    ByteSource* source = static_cast<ByteSource*>(png_get_io_ptr(png));
    if (!source->ReadExactly(bytes, count)) png_error(png, "end of file");
  }

  ByteSource& source_;
  std::jmp_buf jump_;
  int32_t result_ = SUCCESS;
};

// --- Info ---

void ReadTexts(const Reader& reader, Metadata& metadata) {
  png_textp texts = nullptr;
  int count = 0;
  png_get_text(reader.png, reader.info, &texts, &count);
  for (int i = 0; i < count; ++i) {
    const bool utf8 = texts[i].compression >= PNG_ITXT_COMPRESSION_NONE;
    const std::string text(texts[i].text ? texts[i].text : "", utf8 ? texts[i].itxt_length : texts[i].text_length);
    if (std::strcmp(texts[i].key, kPngXmpKeyword) == 0) {
      metadata.xmp.assign(text.begin(), text.end());
      continue;
    }
    for (const PngKeyword& known : kPngKeywords) {
      if (std::strcmp(texts[i].key, known.keyword) != 0) continue;
      metadata.comments[static_cast<size_t>(known.comment)] = utf8 ? text : Utf8FromLatin1(text);
    }
  }
}

void ReadExifBlock(const Reader& reader, ImageHeader& header) {
  png_uint_32 size = 0;
  png_bytep exif = nullptr;
  if (!png_get_eXIf_1(reader.png, reader.info, &size, &exif)) return;
  header.metadata.exif.assign(exif, exif + size);
  const ExifSummary summary = ReadExif(header.metadata.exif);
  if (summary.orientation != 0) header.viewPerspective = summary.orientation;
  header.metadata.comments = summary.comments;
}

void ReadBlocks(const Reader& reader, ImageHeader& header) {
  png_charp name = nullptr;
  int method = 0;
  png_bytep profile = nullptr;
  png_uint_32 size = 0;
  if (png_get_iCCP(reader.png, reader.info, &name, &method, &profile, &size)) {
    header.metadata.profile.assign(profile, profile + size);
  }
  ReadExifBlock(reader, header);
  png_uint_32 x = 0, y = 0;
  int unit = 0;
  if (png_get_pHYs(reader.png, reader.info, &x, &y, &unit) && unit == PNG_RESOLUTION_METER) {
    header.xResolution = x * kInchesPerMetre;
    header.yResolution = y * kInchesPerMetre;
  }
}

Palette ReadPalette(const Reader& reader) {
  png_colorp colors = nullptr;
  int count = 0;
  png_get_PLTE(reader.png, reader.info, &colors, &count);
  Palette palette;
  for (int i = 0; i < count; ++i) palette.push_back({colors[i].blue, colors[i].green, colors[i].red, 255});
  return palette;
}

Palette GrayPalette(int bits) {
  Palette palette;
  const int last = (1 << bits) - 1;
  for (int i = 0; i <= last; ++i) {
    const uint8_t level = static_cast<uint8_t>(i * 255 / last);
    palette.push_back({level, level, level, 255});
  }
  return palette;
}

// The layout of the rows after the transformations that SetTransformations asks for, in BGR order where there is a choice.
void ChooseLayout(const Reader& reader, ImageHeader& header) {
  const int depth = png_get_bit_depth(reader.png, reader.info);
  const bool deep = depth == 16;
  const bool transparent = png_get_valid(reader.png, reader.info, PNG_INFO_tRNS) != 0;
  constexpr Layout kIndexed[] = {Layout::kIndex1, Layout::kIndex2, Layout::kIndex4, Layout::kIndex8};
  const Layout indexed = kIndexed[depth == 1 ? 0 : depth == 2 ? 1 : depth == 4 ? 2 : 3];
  const Layout withAlpha = deep ? Layout::kBgra64 : Layout::kBgra32;
  switch (png_get_color_type(reader.png, reader.info)) {
    case PNG_COLOR_TYPE_PALETTE:
      header.layout = transparent ? Layout::kBgra32 : indexed;
      header.palette = ReadPalette(reader);
      break;
    case PNG_COLOR_TYPE_GRAY:
      if (transparent) {
        header.layout = deep ? Layout::kGrayAlpha32 : Layout::kGrayAlpha16;
      } else if (depth < 8) {
        header.layout = indexed;
        header.palette = GrayPalette(depth);
      } else {
        header.layout = deep ? Layout::kGray16 : Layout::kGray8;
      }
      break;
    case PNG_COLOR_TYPE_GRAY_ALPHA: header.layout = deep ? Layout::kGrayAlpha32 : Layout::kGrayAlpha16; break;
    case PNG_COLOR_TYPE_RGB: header.layout = transparent ? withAlpha : (deep ? Layout::kBgr48 : Layout::kBgr24); break;
    default: header.layout = withAlpha; break;
  }
}

int32_t ReadHeader(Reader& reader, ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  if (request.page > 1) return ERROR_PAGE_MISSING;
  const int32_t opened = reader.Open();
  if (opened != SUCCESS) return opened;
  const int64_t width = png_get_image_width(reader.png, reader.info);
  const int64_t height = png_get_image_height(reader.png, reader.info);
  const int32_t fileBits = png_get_bit_depth(reader.png, reader.info) * png_get_channels(reader.png, reader.info);
  const int32_t plausible = request.limits.CheckPlausible(width, height, fileBits, source.Size(), kMostBytesPerByte);
  if (plausible != SUCCESS) return plausible;
  header.width = static_cast<int32_t>(width);
  header.height = static_cast<int32_t>(height);
  header.format = FMT_PNG;
  header.compression = "Deflate";
  if (png_get_interlace_type(reader.png, reader.info) != PNG_INTERLACE_NONE) header.flags |= FILEINFO_INTERLACED;
  ChooseLayout(reader, header);
  ReadBlocks(reader, header);
  ReadTexts(reader, header.metadata);
  return SUCCESS;
}

int32_t PngInfo(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  Reader reader(source);
  const int32_t result = ReadHeader(reader, source, request, header);
  if (result == SUCCESS && request.wantMetadata) {
    // Texts may stand behind the image; a damaged tail only costs those.
    reader.Guard([&] { png_read_end(reader.png, reader.info); });
    ReadTexts(reader, header.metadata);
  }
  return result;
}

// --- Load ---

void SetTransformations(const Reader& reader, bool rgb) {
  const bool transparent = png_get_valid(reader.png, reader.info, PNG_INFO_tRNS) != 0;
  const int type = png_get_color_type(reader.png, reader.info);
  if (type == PNG_COLOR_TYPE_PALETTE && transparent) png_set_palette_to_rgb(reader.png);
  if (type == PNG_COLOR_TYPE_GRAY && transparent) png_set_expand_gray_1_2_4_to_8(reader.png);
  if (transparent) png_set_tRNS_to_alpha(reader.png);
  if (png_get_bit_depth(reader.png, reader.info) == 16) png_set_swap(reader.png);
  if (!rgb) png_set_bgr(reader.png);
  png_set_interlace_handling(reader.png);
  png_read_update_info(reader.png, reader.info);
}

int32_t PullInterlaced(Reader& reader, const ImageHeader& header, RowSink& sink) {
  constexpr int kPasses = PNG_INTERLACE_ADAM7_PASSES;
  for (int pass = 0; pass < kPasses; ++pass) {
    for (int32_t y = 0; y < header.height; ++y) {
      png_bytep row = sink.Row(y);
      const int32_t result = reader.Guard([&] { png_read_row(reader.png, row, nullptr); });
      if (result != SUCCESS) return result;
    }
  }
  return sink.Commit(header.height);
}

int32_t PullRows(Reader& reader, const ImageHeader& header, RowSink& sink) {
  for (int32_t first = 0; first < header.height; first += RowSink::kBatchRows) {
    const int32_t count = std::min(RowSink::kBatchRows, header.height - first);
    png_bytep rows[RowSink::kBatchRows];
    for (int32_t i = 0; i < count; ++i) rows[i] = sink.Row(first + i);
    int32_t result = reader.Guard([&] { png_read_rows(reader.png, rows, nullptr, static_cast<png_uint_32>(count)); });
    if (result == SUCCESS) result = sink.Commit(count);
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

// Exif and texts, XMP among them, may stand behind the image as well. A damaged tail only costs those.
int32_t ReadTail(Reader& reader, ImageHeader& header, RowSink& sink) {
  if (reader.Guard([&] { png_read_end(reader.png, reader.info); }) != SUCCESS) return SUCCESS;
  if (header.metadata.exif.empty()) ReadExifBlock(reader, header);
  ReadTexts(reader, header.metadata);
  return sink.Amend(header);
}

int32_t PngLoad(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  Reader reader(source);
  ImageHeader header;
  int32_t result = ReadHeader(reader, source, request, header);
  if (result != SUCCESS) return result;
  const bool color = !IsIndexed(header.layout) && !IsGray(header.layout);
  const bool rgb = sink.WantsRgb();
  if (color && rgb) header.layout = LayoutForDepth(BitsPerPixel(header.layout), false, HasAlpha(header.layout), true);
  result = reader.Guard([&] { SetTransformations(reader, rgb); });
  if (result != SUCCESS) return result;
  if (png_get_rowbytes(reader.png, reader.info) != PackedRowBytes(header.layout, header.width))
    return ERROR_FILE_DAMAGED;
  const bool interlaced = (header.flags & FILEINFO_INTERLACED) != 0;
  result = sink.Begin(header, interlaced ? RowOrder::kAny : RowOrder::kFromTop);
  if (result == SUCCESS) result = interlaced ? PullInterlaced(reader, header, sink) : PullRows(reader, header, sink);
  return result == SUCCESS ? ReadTail(reader, header, sink) : result;
}

// --- Table row ---

constexpr FormatRow kFormats[] = {
    {FMT_PNG, "png", kSave1 | kSave4 | kSave8Index | kSave8Gray | kSave16Gray | kSave24 | kSave32 | kSave48 | kSave64}};
constexpr Signature kSignatures[] = {{0, 8, "\x89PNG\r\n\x1A\n"}};

}  // namespace

const Codec kPngCodec = {"PNG",   kFormats, kSignatures, "png",   kPaletteAlpha, nullptr,
                         PngInfo, PngLoad,  PngSave,     nullptr, nullptr,       nullptr};

}  // namespace zvfile
