// The writing half of the JPEG codec.
#include <algorithm>
#include <cmath>

#include "services/zvfile/codecs/jpeg.h"
#include "services/zvfile/codecs/jpeg_session.h"

namespace zvfile {
namespace {

constexpr size_t kMaxSegment = 65533;

void SetSampling(jpeg_compress_struct& info, const JpegSaveSettings& settings) {
  if (info.num_components != 3) return;
  info.comp_info[0].h_samp_factor = settings.horizontalSampling;
  info.comp_info[0].v_samp_factor = settings.verticalSampling;
  for (int i = 1; i < 3; ++i) info.comp_info[i].h_samp_factor = info.comp_info[i].v_samp_factor = 1;
}

void SetDensity(jpeg_compress_struct& info, const JpegSaveSettings& settings) {
  constexpr int32_t kMax = 65535;
  if (settings.xResolution < 1 || settings.yResolution < 1) return;
  info.density_unit = 1;
  info.X_density = static_cast<UINT16>(std::min(settings.xResolution, kMax));
  info.Y_density = static_cast<UINT16>(std::min(settings.yResolution, kMax));
}

void StartEncoder(JpegEncoder& encoder, const JpegSaveSettings& settings, const RowSource& rows, bool gray) {
  jpeg_compress_struct& info = encoder.info;
  encoder.Create();
  info.image_width = static_cast<JDIMENSION>(rows.Width());
  info.image_height = static_cast<JDIMENSION>(rows.Height());
  info.input_components = gray ? 1 : 3;
  info.in_color_space = gray ? JCS_GRAYSCALE : JCS_EXT_BGR;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, settings.quality, TRUE);
  SetSampling(info, settings);
  SetDensity(info, settings);
  info.optimize_coding = FALSE;  // costs a second pass over the coefficients for some 5 % of the bytes
  if (settings.progressive) jpeg_simple_progression(&info);
  if (settings.exifCarrier && !settings.exif.empty()) info.write_JFIF_header = FALSE;
  jpeg_start_compress(&info, TRUE);
}

std::vector<uint8_t> Prefixed(const char* header, size_t headerBytes, const std::vector<uint8_t>& content) {
  std::vector<uint8_t> segment(header, header + headerBytes);
  segment.insert(segment.end(), content.begin(), content.end());
  return segment;
}

int32_t WriteSegments(JpegEncoder& encoder, const JpegSaveSettings& settings, bool gray) {
  const auto write = [&](int marker, const std::vector<uint8_t>& bytes) {
    return encoder.Guard(
        [&] { jpeg_write_marker(&encoder.info, marker, bytes.data(), static_cast<unsigned>(bytes.size())); });
  };
  int32_t result = SUCCESS;
  if (!settings.exif.empty()) result = write(kJpegApp1, Prefixed(kJpegExifHeader, kJpegExifHeaderBytes, settings.exif));
  if (!settings.metadata || result != SUCCESS) return result;
  const Metadata& metadata = *settings.metadata;
  if (!metadata.xmp.empty() && metadata.xmp.size() <= kMaxSegment - kJpegXmpHeaderBytes) {
    result = write(kJpegApp1, Prefixed(kJpegXmpHeader, kJpegXmpHeaderBytes, metadata.xmp));
  }
  if (result == SUCCESS && ProfileFits(metadata.profile, gray)) {
    const unsigned size = static_cast<unsigned>(metadata.profile.size());
    result = encoder.Guard([&] { jpeg_write_icc_profile(&encoder.info, metadata.profile.data(), size); });
  }
  const std::string& text = metadata.comments[COMMENT_DESCRIPTION];
  if (result == SUCCESS && settings.exif.empty() && !text.empty() && text.size() <= kMaxSegment) {
    result = write(JPEG_COM, std::vector<uint8_t>(text.begin(), text.end()));
  }
  return result;
}

bool IsCarrier(int32_t format) { return format == FMT_EXIF_JPEG_422 || format == FMT_EXIF_JPEG_420; }

// Exif is written when the format asks for it, when the image brought some, or when there is more to say than a plain comment
// can hold.
bool NeedsExif(const SaveRequest& request) {
  if (IsCarrier(request.format) || request.stamp || !request.metadata.exif.empty()) return true;
  const Comments& comments = request.metadata.comments;
  return std::any_of(comments.begin() + COMMENT_DESCRIPTION + 1, comments.end(),
                     [](const std::string& text) { return !text.empty(); });
}

}  // namespace

int32_t JpegQuality(int32_t qFactor) {
  const int32_t q = std::clamp(qFactor, 2, 255);
  return static_cast<int32_t>(std::lround(100.0 - (q - 2) * 99.0 / 253.0));
}

int32_t SaveJpegStream(ByteSink& sink, const JpegSaveSettings& settings, RowSource& rows) {
  if (rows.Width() > JPEG_MAX_DIMENSION || rows.Height() > JPEG_MAX_DIMENSION) return ERROR_LIMIT_EXCEEDED;
  const bool gray = rows.GetLayout() == Layout::kGray8;
  int32_t result = rows.Begin(gray ? Layout::kGray8 : Layout::kBgr24);
  if (result != SUCCESS) return result;
  JpegEncoder encoder(sink);
  result = encoder.Guard([&] { StartEncoder(encoder, settings, rows, gray); });
  if (result == SUCCESS) result = WriteSegments(encoder, settings, gray);
  for (int32_t y = 0; y < rows.Height() && result == SUCCESS; ++y) {
    JSAMPROW row = const_cast<JSAMPROW>(rows.Next());
    if (!row) return rows.Error();
    result = encoder.Guard([&] { jpeg_write_scanlines(&encoder.info, &row, 1); });
  }
  if (result == SUCCESS) result = encoder.Guard([&] { jpeg_finish_compress(&encoder.info); });
  return result;
}

std::vector<uint8_t> EncodeStamp(const BITMAPHANDLE& stamp) {
  constexpr int32_t kStampQuality = 80;
  BITMAPHANDLE view = stamp;  // shares the pixels
  RowSource rows(&view, nullptr, nullptr);
  if (rows.Prepare(LayoutOf(stamp)) != SUCCESS) return {};
  MemorySink sink;
  JpegSaveSettings settings;
  settings.quality = kStampQuality;
  settings.horizontalSampling = settings.verticalSampling = 2;
  return SaveJpegStream(sink, settings, rows) == SUCCESS ? sink.Bytes() : std::vector<uint8_t>();
}

int32_t JpegSave(ByteSink& sink, const SaveRequest& request, RowSource& rows) {
  JpegSaveSettings settings;
  settings.quality = JpegQuality(request.quality);
  settings.progressive = request.option.passes != 0;
  const bool quarter = request.format == FMT_JPEG_420 || request.format == FMT_EXIF_JPEG_420;
  const bool half = quarter || request.format == FMT_JPEG_422 || request.format == FMT_EXIF_JPEG_422;
  settings.horizontalSampling = half ? 2 : 1;
  settings.verticalSampling = quarter ? 2 : 1;
  settings.exifCarrier = IsCarrier(request.format);
  settings.xResolution = request.xResolution;
  settings.yResolution = request.yResolution;
  settings.metadata = &request.metadata;
  if (NeedsExif(request)) {
    const std::vector<uint8_t> stamp = request.stamp ? EncodeStamp(*request.stamp) : std::vector<uint8_t>();
    const ExifTarget target = {rows.Width(), rows.Height(), request.xResolution, request.yResolution};
    settings.exif = BuildExif(request.metadata.exif, request.metadata.comments, stamp, target);
  }
  return SaveJpegStream(sink, settings, rows);
}

}  // namespace zvfile
