// JPEG through libjpeg-turbo: grey, YCbCr and RGB, CMYK and YCCK; baseline and progressive; Exif, XMP, ICC profile and comment.
// This half reads; jpeg_save.cpp writes.
#include "services/zvfile/codecs/jpeg.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "services/zvfile/codecs/color_transform.h"
#include "services/zvfile/codecs/jpeg_session.h"

namespace zvfile {
namespace {

constexpr uint32_t kMostBytesPerByte = 1200;  // 4:2:0: 768 decoded bytes take at least 6 bits, one a block
constexpr double kDotsPerCentimetre = 2.54;
constexpr unsigned int kWholeScale = 8;  // the decoder can stop at any number of the eight rows and columns of a block

// --- Probe ---

bool ProbeJpeg(ByteSource& source) {
  uint8_t head[4];
  return source.ReadExactly(head, sizeof head) && head[3] >= 0xC0;
}

// --- Info ---

bool HasPrefix(const jpeg_marker_struct& marker, const char* prefix, size_t bytes) {
  return marker.data_length > bytes && std::memcmp(marker.data, prefix, bytes) == 0;
}

void CollectSegments(const jpeg_decompress_struct& info, Metadata& metadata) {
  for (const jpeg_marker_struct* marker = info.marker_list; marker; marker = marker->next) {
    const JOCTET* data = marker->data;
    const JOCTET* end = data + marker->data_length;
    if (marker->marker == JPEG_COM) {
      std::string text(data, end);
      text.resize(std::min(text.find('\0'), text.size()));
      std::string& description = metadata.comments[COMMENT_DESCRIPTION];
      if (description.empty()) description = IsUtf8(text) ? text : Utf8FromLatin1(text);
    } else if (marker->marker == kJpegApp1 && HasPrefix(*marker, kJpegExifHeader, kJpegExifHeaderBytes)) {
      if (metadata.exif.empty()) metadata.exif.assign(data + kJpegExifHeaderBytes, end);
    } else if (marker->marker == kJpegApp1 && HasPrefix(*marker, kJpegXmpHeader, kJpegXmpHeaderBytes)) {
      if (metadata.xmp.empty()) metadata.xmp.assign(data + kJpegXmpHeaderBytes, end);
    }
  }
}

void CollectProfile(JpegDecoder& decoder, Metadata& metadata) {
  JOCTET* bytes = nullptr;
  unsigned int size = 0;
  boolean found = FALSE;
  decoder.Guard([&] { found = jpeg_read_icc_profile(&decoder.info, &bytes, &size); });
  if (found) metadata.profile.assign(bytes, bytes + size);
  std::free(bytes);
}

void ApplyExif(ImageHeader& header) {
  const ExifSummary exif = ReadExif(header.metadata.exif);
  if (exif.orientation != 0) header.viewPerspective = exif.orientation;
  if (header.xResolution == 0) {
    header.xResolution = exif.xResolution;
    header.yResolution = exif.yResolution;
  }
  if (!exif.thumbnail.empty() || exif.pixelThumbnail != 0) header.flags |= FILEINFO_HAS_STAMP;
  for (size_t i = 0; i < exif.comments.size(); ++i) {
    if (!exif.comments[i].empty()) header.metadata.comments[i] = exif.comments[i];
  }
}

int32_t FormatOf(const jpeg_decompress_struct& info, bool exif) {
  if (info.num_components != 3) return FMT_JPEG;
  const jpeg_component_info* luma = info.comp_info;
  const bool half = luma[0].h_samp_factor == 2 * luma[1].h_samp_factor;
  const bool quarter = half && luma[0].v_samp_factor == 2 * luma[1].v_samp_factor;
  if (quarter) return exif ? FMT_EXIF_JPEG_420 : FMT_JPEG_420;
  if (half) return exif ? FMT_EXIF_JPEG_422 : FMT_JPEG_422;
  return FMT_JPEG;
}

int32_t FillHeader(JpegDecoder& decoder, ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  const jpeg_decompress_struct& info = decoder.info;
  if (request.page > 1) return ERROR_PAGE_MISSING;
  header.width = static_cast<int32_t>(info.image_width);
  header.height = static_cast<int32_t>(info.image_height);
  const bool gray = info.jpeg_color_space == JCS_GRAYSCALE;
  header.layout = gray ? Layout::kGray8 : Layout::kBgr24;
  header.compression = info.progressive_mode ? "Progressive JPEG" : "JPEG";
  if (info.progressive_mode) header.flags |= FILEINFO_PROGRESSIVE;
  if (info.saw_JFIF_marker && info.density_unit != 0) {
    const double scale = info.density_unit == 2 ? kDotsPerCentimetre : 1.0;
    header.xResolution = info.X_density * scale;
    header.yResolution = info.Y_density * scale;
  }
  CollectSegments(info, header.metadata);
  CollectProfile(decoder, header.metadata);
  header.format = FormatOf(info, !header.metadata.exif.empty());
  ApplyExif(header);
  return request.limits.CheckPlausible(header.width, header.height, BitsPerPixel(header.layout), source.Size(),
                                       kMostBytesPerByte);
}

int32_t JpegInfo(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  return ReadJpegHeader(source, request, header);
}

// --- Load ---

// Rows of libjpeg's own colours that the sink cannot take: inks.
int32_t PullInks(JpegDecoder& decoder, RowSink& sink, const std::vector<uint8_t>& profile) {
  const ColorTransform transform(ColorTransform::Input::kCmyk8, ColorTransform::Output::kRgb24, profile);
  // Adobe writes inks inverted: 255 is none.
  const uint8_t flip = decoder.info.saw_Adobe_marker ? 0xFF : 0;
  const JDIMENSION width = decoder.info.output_width;
  std::vector<uint8_t> inks(size_t{width} * 4);
  JSAMPROW row = inks.data();
  for (JDIMENSION y = 0; y < decoder.info.output_height; ++y) {
    int32_t result = decoder.Guard([&] { jpeg_read_scanlines(&decoder.info, &row, 1); });
    if (result != SUCCESS) return result;
    for (uint8_t& ink : inks) ink ^= flip;
    transform.Convert(inks.data(), sink.Row(static_cast<int32_t>(y)), width);
    result = sink.Commit(1);
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

// The decoder's smallest scale that leaves no side below the sufficient size.
unsigned int EighthsFor(const jpeg_decompress_struct& info, IMAGESIZE sufficient) {
  if (sufficient.width < 1 || sufficient.height < 1) return kWholeScale;
  const auto suffices = [](unsigned int eighths, JDIMENSION side, int32_t wanted) {
    return uint64_t{side} * eighths >= uint64_t{kWholeScale} * static_cast<uint32_t>(wanted);
  };
  unsigned int eighths = 1;
  while (eighths < kWholeScale && !(suffices(eighths, info.image_width, sufficient.width) &&
                                    suffices(eighths, info.image_height, sufficient.height))) {
    ++eighths;
  }
  return eighths;
}

int32_t PullRows(JpegDecoder& decoder, RowSink& sink) {
  const JDIMENSION height = decoder.info.output_height;
  JSAMPROW rows[RowSink::kBatchRows];
  while (decoder.info.output_scanline < height) {
    const JDIMENSION first = decoder.info.output_scanline;
    const JDIMENSION count = std::min<JDIMENSION>(RowSink::kBatchRows, height - first);
    for (JDIMENSION i = 0; i < count; ++i) rows[i] = sink.Row(static_cast<int32_t>(first + i));
    int32_t result = decoder.Guard([&] {
      JDIMENSION done = 0;
      while (done < count) done += jpeg_read_scanlines(&decoder.info, rows + done, count - done);
    });
    if (result != SUCCESS) return result;
    result = sink.Commit(static_cast<int32_t>(count));
    if (result != SUCCESS) return result;
  }
  return SUCCESS;
}

int32_t JpegLoad(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  return LoadJpegStream(source, request, sink, nullptr);
}

// The Exif block is a TIFF file, whose second directory may have the thumbnail as pixels.
int32_t LoadPixelThumbnail(const ImageHeader& header, const LoadRequest& request, uint32_t directory, RowSink& sink) {
  MemorySource block(header.metadata.exif);
  LoadRequest second = request;
  second.page = 2;
  second.filePosition = directory;
  const int32_t result = kTiffCodec.load(block, second, sink);
  if (result != SUCCESS) return result;
  ImageHeader shown;
  shown.viewPerspective = header.viewPerspective;
  return sink.Amend(shown);
}

int32_t JpegStamp(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  ImageHeader header;
  const int32_t result = ReadJpegHeader(source, request, header);
  if (result != SUCCESS) return result;
  const ExifSummary exif = ReadExif(header.metadata.exif);
  if (exif.pixelThumbnail != 0) return LoadPixelThumbnail(header, request, exif.pixelThumbnail, sink);
  if (exif.thumbnail.empty()) return ERROR_NO_STAMP;
  MemorySource stream(exif.thumbnail);
  // The thumbnail is stored as the image is, and so shown with its perspective.
  return LoadJpegStream(stream, request, sink, [&](ImageHeader& small) {
    small.viewPerspective = header.viewPerspective;
    small.metadata = Metadata();
  });
}

}  // namespace

int32_t ReadJpegHeader(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  JpegDecoder decoder(source);
  const int32_t result = decoder.ReadHeader();
  return result == SUCCESS ? FillHeader(decoder, source, request, header) : result;
}

int32_t LoadJpegStream(ByteSource& source, const LoadRequest& request, RowSink& sink,
                       const std::function<void(ImageHeader&)>& adjust) {
  JpegDecoder decoder(source);
  ImageHeader header;
  int32_t result = decoder.ReadHeader();
  if (result == SUCCESS) result = FillHeader(decoder, source, request, header);
  if (result != SUCCESS) return result;
  jpeg_decompress_struct& info = decoder.info;
  const bool inks = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
  std::vector<uint8_t> inkProfile;
  if (inks) {
    header.layout = Layout::kRgb24;
    inkProfile.swap(header.metadata.profile);  // it told the inks; the rows are sRGB from here on
  } else if (header.layout != Layout::kGray8) {
    header.layout = sink.WantsRgb() ? Layout::kRgb24 : Layout::kBgr24;
  }
  if (adjust) adjust(header);
  result = decoder.Guard([&] {
    info.out_color_space = inks                              ? JCS_CMYK
                           : header.layout == Layout::kGray8 ? JCS_GRAYSCALE
                           : header.layout == Layout::kRgb24 ? JCS_EXT_RGB
                                                             : JCS_EXT_BGR;
    info.dct_method = JDCT_ISLOW;
    info.scale_denom = kWholeScale;
    info.scale_num = EighthsFor(info, request.sufficientSize);
    jpeg_calc_output_dimensions(&info);
  });
  header.width = static_cast<int32_t>(info.output_width);
  header.height = static_cast<int32_t>(info.output_height);
  if (info.scale_num < kWholeScale) header.flags |= FILEINFO_REDUCED;
  if (result == SUCCESS) result = sink.Begin(header);
  if (result == SUCCESS) result = decoder.Guard([&] { jpeg_start_decompress(&info); });
  if (result == SUCCESS) result = inks ? PullInks(decoder, sink, inkProfile) : PullRows(decoder, sink);
  if (result == SUCCESS && decoder.CutShort()) result = ERROR_FILE_DAMAGED;
  return result;
}

// --- Table row ---

namespace {

constexpr FormatRow kFormats[] = {{FMT_JPEG, "jpg", kSave8Gray | kSave24},
                                  {FMT_JPEG_422, "jpg", kSave8Gray | kSave24},
                                  {FMT_JPEG_420, "jpg", kSave8Gray | kSave24},
                                  {FMT_EXIF_JPEG_422, "jpg", kSave8Gray | kSave24},
                                  {FMT_EXIF_JPEG_420, "jpg", kSave8Gray | kSave24}};
constexpr Signature kSignatures[] = {{0, 3, "\xFF\xD8\xFF"}};

}  // namespace

const Codec kJpegCodec = {"JPEG",   kFormats,  kSignatures, "jpg;jpeg;jpe;jfif;jif;thm",
                          0,        ProbeJpeg, JpegInfo,    JpegLoad,
                          JpegSave, nullptr,   JpegStamp,   nullptr};

}  // namespace zvfile
