// The contract between the file library and its codecs: one row of the codec table a library, what a codec is asked for and
// what it answers. A codec keeps no state between calls, never opens files and never shows anything; it gets sources, sinks
// and limits handed in and answers with a result code. Exceptions may leave a codec function (the library's entry points
// stop them) but must not cross a foreign library's C frames.
//
// To add a format: give it numbers in file_formats.h; write codecs/<library>.cpp with, in this order, state, callbacks,
// probe, info, load, save, and at the end `extern const Codec k...Codec = {...}`; declare it below and add it to the table
// in registry.cpp at its place of preference; add the file to CMakeLists.txt; add a test.
#ifndef ZV_FILE_CODEC_H
#define ZV_FILE_CODEC_H

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "services/zvfile/byte_sink.h"
#include "services/zvfile/byte_source.h"
#include "services/zvfile/limits.h"
#include "services/zvfile/metadata.h"
#include "services/zvfile/pixel_layout.h"
#include "services/zvfile/row_sink.h"
#include "services/zvfile/row_source.h"
#include "services/zvfile/zvfile.h"

namespace zvfile {

// What a page says of itself. A codec's info fills it, and its load fills the same before RowSink::Begin.
struct ImageHeader {
  int32_t format = FMT_UNKNOWN;  // exact number, compression included
  int32_t width = 0;             // stored, before the view perspective
  int32_t height = 0;
  Layout layout = Layout::kBgr24;  // of the rows that load delivers
  Palette palette;                 // of indexed layouts; missing entries are black
  const char* compression = "";    // name shown to people, at most 19 ASCII characters
  int32_t viewPerspective = VIEW_TOP_LEFT;
  double xResolution = 0;  // dots per inch, 0 unknown
  double yResolution = 0;
  uint32_t flags = 0;  // FILEINFO_HAS_ALPHA and so on
  int32_t pageNumber = 1;
  int32_t totalPages = 1;     // exact when countPages was asked for or the header tells it for free
  uint64_t nextPosition = 0;  // for LOADFILEOPTION.filePosition of the next page; 0 none
  bool rasterizable = false;
  Metadata metadata;  // filled by info when wantMetadata is set, by load always
};

// Changes the fonts of drawings before they are drawn; null leaves them.
struct FontSubstitution {
  FONTSUBSTITUTIONCALLBACK change = nullptr;
  void* userData = nullptr;
};

// What the caller of a load or info wants.
struct LoadRequest {
  int32_t page = 1;  // from 1; ERROR_PAGE_MISSING when there is none such
  bool countPages = false;
  bool wantMetadata = false;  // info: comments and segments are wanted too
  uint64_t filePosition = 0;  // where the page starts, from a former nextPosition; 0 not known
  int32_t passes = 0;
  std::map<int32_t, IMAGESIZE> loadSizes;  // library-wide, by format number
  IMAGESIZE givenSize = {0, 0};            // of the caller's file information, for formats without one of those
  // load: a codec that decodes faster at a smaller scale may deliver one, as long as no side falls below this; (0, 0) asks
  // for the whole image.
  IMAGESIZE sufficientSize = {0, 0};
  int32_t xDpi = 150, yDpi = 150;  // load resolution of formats without a size of their own
  FontSubstitution fonts;          // load: library-wide
  std::string extension;           // of the file's name, lower-case ASCII without the dot; may be empty
  Limits limits;

  // The size at which a file of exactly this format is wanted; (0, 0) the largest.
  IMAGESIZE SizeFor(int32_t format) const {
    const auto set = loadSizes.find(format);
    return set != loadSizes.end() && set->second.width > 0 ? set->second : givenSize;
  }
};

enum class PageOp { kOverwrite, kAppend, kReplace, kInsert };

// What is to be saved besides the rows.
struct SaveRequest {
  int32_t format = FMT_UNKNOWN;
  int32_t quality = 0;
  PageOp pageOp = PageOp::kOverwrite;
  int32_t page = 1;                // of kReplace and kInsert (the new page gets this number)
  ByteSource* existing = nullptr;  // file to take the other pages from; null with kOverwrite alone
  SAVEFILEOPTION option;
  J2KSAVEOPTION j2k;
  std::vector<IMAGESIZE> sizeList;  // of icons
  Metadata metadata;                // of the bitmap, to be written where the format can; orientation is already 1
  int32_t xResolution = 0;          // dots per inch, 0 unknown
  int32_t yResolution = 0;
  // Makes the stamp: a small upright picture, 24 bits BGR or 8 bits grey as the option asks. Its pixels are the caller's
  // and freed after the save. Null when none is wanted or the pixels are out of reach.
  const BITMAPHANDLE* stamp = nullptr;
};

// Depths that can be saved, a bit each.
enum : uint32_t {
  kSave1 = 1u << 0,
  kSave4 = 1u << 1,
  kSave8Index = 1u << 2,
  kSave8Gray = 1u << 3,
  kSave16Gray = 1u << 4,
  kSave16Color = 1u << 5,  // 5-5-5
  kSave24 = 1u << 6,
  kSave32 = 1u << 7,  // with alpha when the bitmap has it; a format without alpha does not set kSave32
  kSave48 = 1u << 8,
  kSave64 = 1u << 9
};

// One file format number of a codec. A number that is only read has saveDepths 0.
struct FormatRow {
  int32_t format;
  const char* extension;  // the usual one, lower-case, without the dot
  uint32_t saveDepths;
};

// Bytes that stand at an offset of the file. Several of a codec are alternatives.
struct Signature {
  uint32_t offset;
  uint32_t length;
  const char* bytes;
};

// Codec capability bits.
enum : uint32_t {
  kMultiPageSave = 1u << 0,    // save honours kAppend, kReplace and kInsert; deletePage is there
  kCostlyPageCount = 1u << 1,  // pages are counted only when asked for
  kPaletteAlpha = 1u << 2      // save writes the alpha of palette entries; others get colours laid over white
};

// A row of the codec table. Every function but info and load may be null.
struct Codec {
  const char* name;  // of the library or format, for people
  std::span<const FormatRow> formats;
  std::span<const Signature> signatures;
  const char* extensions;  // all that it reads, "jpg;jpeg;jpe"
  uint32_t flags;
  // Decides by content where signatures are not enough; reads few bytes. Null: any signature that matches decides.
  bool (*probe)(ByteSource& source);
  // Reads the header alone. info and load answer ERROR_FILE_FORMAT, before the sink has begun, for content that the codec
  // leaves to others (a variant that it does not know); the next codec that recognises the file is then tried.
  int32_t (*info)(ByteSource& source, const LoadRequest& request, ImageHeader& header);
  // Begins the sink and puts every row into it; must stop and give back any code but SUCCESS that the sink answers. What is
  // cut short or damaged ends with ERROR_FILE_DAMAGED.
  int32_t (*load)(ByteSource& source, const LoadRequest& request, RowSink& sink);
  // Writes a complete file into the sink, rows taken from `rows`, whose layout is one that saveDepths names for the format.
  int32_t (*save)(ByteSink& sink, const SaveRequest& request, RowSource& rows);
  // Writes the existing file without a page. ERROR_PAGE_MISSING; ERROR_FEATURE_UNSUPPORTED for the last page.
  int32_t (*deletePage)(ByteSource& existing, int32_t page, ByteSink& sink);
  // Loads the small picture stored beside the image, as load does. ERROR_NO_STAMP.
  int32_t (*stamp)(ByteSource& source, const LoadRequest& request, RowSink& sink);
  // The sizes at which it can be loaded, largest first.
  int32_t (*sizes)(ByteSource& source, const LoadRequest& request, std::vector<IMAGESIZE>& sizes);
};

// The rows of the table, each defined at the end of its codecs/*.cpp.
extern const Codec kJpegCodec;
extern const Codec kPngCodec;
extern const Codec kTiffCodec;
extern const Codec kGifCodec;
extern const Codec kBmpCodec;
extern const Codec kCmpCodec;
extern const Codec kWebpCodec;
extern const Codec kJ2kCodec;
extern const Codec kIconCodec;
extern const Codec kPsdCodec;
extern const Codec kXwdCodec;
#ifdef _WIN32
extern const Codec kMetafileCodec;
#endif
extern const Codec kMagickCodec;

// The whole table, in order of preference.
std::span<const Codec* const> AllCodecs();
// The codec that the content belongs to, by signature and probe; by the extension when the content says nothing. Null when
// unknown. extension as in LoadRequest. With `after` the search goes on behind that codec, which has left the file to others.
const Codec* DetectCodec(ByteSource& source, const std::string& extension, const Codec* after = nullptr);
const Codec* CodecForSaving(int32_t format);
// The row of a number in a codec, or null.
const FormatRow* FindFormatRow(const Codec& codec, int32_t format);

}  // namespace zvfile

#endif
