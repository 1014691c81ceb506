// The long tail: formats that are only read, through GraphicsMagick. The parts stand beside this file: magick_formats (telling them
// apart), magick_library (the library within bounds), magick_pixels (its pictures as rows of ours).
#include "services/zvfile/codec.h"
#include "services/zvfile/codecs/magick_formats.h"
#include "services/zvfile/codecs/magick_library.h"
#include "services/zvfile/codecs/magick_photo_cd.h"
#include "services/zvfile/codecs/magick_pixels.h"

namespace zvfile {
namespace magick {
namespace {

// --- State ---

// Longer files are none of these formats'.
constexpr uint64_t kMaxFileBytes = uint64_t{1} << 31;

struct Opened {
  std::vector<uint8_t> storage;
  std::span<const uint8_t> bytes;
  const Format* format = nullptr;
  ImagePtr image;
  ImageHeader header;
};

int32_t Open(ByteSource& source, const LoadRequest& request, Opened& opened) {
  opened.format = FindByContent(source);
  const bool marked = opened.format != nullptr;
  if (!marked) opened.format = FindByExtension(request.extension);
  if (!opened.format) return ERROR_FILE_FORMAT;
  if (!source.ReadAll(opened.storage, opened.bytes, kMaxFileBytes)) return ERROR_LIMIT_EXCEEDED;
  const bool photoCd = opened.format->format == FMT_PCD;
  const IMAGESIZE size = photoCd ? PhotoCdReaderSize(source, request.SizeFor(FMT_PCD)) : IMAGESIZE{0, 0};
  int32_t pages = 1;
  int32_t result = Survey(opened.bytes, *opened.format, request.limits, pages);
  if (result == SUCCESS) {
    result = Decode(opened.bytes, *opened.format, request.page, size, request.limits, opened.image);
  }
  // What has no mark and does not decode is no damaged file of the format, but something else with its extension.
  if (result == ERROR_FILE_DAMAGED && !marked) return ERROR_FILE_FORMAT;
  if (result == SUCCESS) result = Describe(*opened.image, request.limits, opened.header);
  if (result != SUCCESS) return result;
  opened.header.format = opened.format->format;
  const bool colored = !IsGray(opened.header.layout) && !IsIndexed(opened.header.layout);
  if (opened.header.format == FMT_DICOM_GRAY && colored) opened.header.format = FMT_DICOM_COLOR;
  opened.header.compression = opened.format->name;
  opened.header.pageNumber = request.page;
  opened.header.totalPages = pages;
  return SUCCESS;
}

// --- Probe ---

bool Probe(ByteSource& source) { return FindByContent(source) != nullptr; }

// --- Info: the readers of these formats know what a picture holds only once they have read it ---

int32_t Info(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  Opened opened;
  const int32_t result = Open(source, request, opened);
  if (result == SUCCESS) header = std::move(opened.header);
  return result;
}

// --- Load ---

int32_t Load(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  Opened opened;
  int32_t result = Open(source, request, opened);
  if (result == SUCCESS) result = sink.Begin(opened.header);
  std::vector<uint8_t> row(PackedRowBytes(opened.header.layout, opened.header.width));
  for (int32_t y = 0; y < opened.header.height && result == SUCCESS; ++y) {
    result = CopyRow(*opened.image, opened.header, y, row.data());
    if (result == SUCCESS) result = sink.Put(row.data(), static_cast<ptrdiff_t>(row.size()), 1);
  }
  return result;
}

// --- Sizes ---

int32_t Sizes(ByteSource& source, const LoadRequest&, std::vector<IMAGESIZE>& sizes) {
  const Format* format = FindByContent(source);
  if (!format || format->format != FMT_PCD) return ERROR_FEATURE_UNSUPPORTED;
  sizes = PhotoCdSizes(source);
  return SUCCESS;
}

// --- The row of the codec table ---

constexpr FormatRow kFormats[] = {
    {FMT_PCX, "pcx", 0},    {FMT_DCX, "dcx", 0},   {FMT_TGA, "tga", 0},        {FMT_PBM, "pbm", 0},
    {FMT_PGM, "pgm", 0},    {FMT_PPM, "ppm", 0},   {FMT_SGI, "sgi", 0},        {FMT_SUN_RASTER, "ras", 0},
    {FMT_XBM, "xbm", 0},    {FMT_XPM, "xpm", 0},   {FMT_FITS, "fit", 0},       {FMT_CUT, "cut", 0},
    {FMT_CALS, "cal", 0},   {FMT_PICT, "pct", 0},  {FMT_WPG, "wpg", 0},        {FMT_SCT, "sct", 0},
    {FMT_CINEON, "cin", 0}, {FMT_DPX, "dpx", 0},   {FMT_WBMP, "wbmp", 0},      {FMT_FAX, "fax", 0},
    {FMT_MNG, "mng", 0},    {FMT_JNG, "jng", 0},   {FMT_AVS, "avs", 0},        {FMT_MIFF, "miff", 0},
    {FMT_MTV, "mtv", 0},    {FMT_PALM, "palm", 0}, {FMT_VIFF, "viff", 0},      {FMT_VICAR, "vic", 0},
    {FMT_ART, "art", 0},    {FMT_HRZ, "hrz", 0},   {FMT_OTB, "otb", 0},        {FMT_MAC_PAINT, "mac", 0},
    {FMT_RLA, "rla", 0},    {FMT_RLE, "rle", 0},   {FMT_PIX, "pix", 0},        {FMT_XCF, "xcf", 0},
    {FMT_TIM, "tim", 0},    {FMT_PDB, "pdb", 0},   {FMT_DICOM_GRAY, "dcm", 0}, {FMT_DICOM_COLOR, "dcm", 0},
    {FMT_PCD, "pcd", 0},
};

}  // namespace
}  // namespace magick

extern const Codec kMagickCodec = {
    .name = "GraphicsMagick",
    .formats = magick::kFormats,
    .signatures = {},
    // Those without a mark of their own; the others are told by content.
    .extensions = "tga;icb;vda;vst;cut;wbmp;wbm;fax;g3;avs;mtv;palm;art;hrz;otb;mac;rla;pix;matte;tim",
    .flags = 0,
    .probe = magick::Probe,
    .info = magick::Info,
    .load = magick::Load,
    .save = nullptr,
    .deletePage = nullptr,
    .stamp = nullptr,
    .sizes = magick::Sizes,
};

}  // namespace zvfile
