// JPEG through libjpeg-turbo: grey, YCbCr and RGB, CMYK and YCCK; baseline and progressive; Exif, XMP, ICC profile and comment.
//
// libjpeg reports a fatal error by calling error_exit, which must not return: it jumps back to the Guard that entered the
// library. Only plain libjpeg calls stand inside a Guard, so the jump passes no object with a destructor.
#include "services/zvfile/codecs/jpeg.h"

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstring>

#include <jpeglib.h>

#include <jerror.h>

#include "services/zvfile/codecs/color_transform.h"

namespace zvfile {
namespace {

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kProfileMarker = JPEG_APP0 + 2;
constexpr char kExifHeader[] = "Exif\0";  // six bytes with the terminator
constexpr size_t kExifHeaderBytes = 6;
constexpr char kXmpHeader[] = "http://ns.adobe.com/xap/1.0/";
constexpr size_t kXmpHeaderBytes = sizeof kXmpHeader;
constexpr size_t kMaxSegment = 65533;
constexpr int kMaxScans = 500;                // each scan of a progressive file costs a pass over the whole image
constexpr uint32_t kMostBytesPerByte = 1200;  // 4:2:0: 768 decoded bytes take at least 6 bits, one a block
constexpr size_t kIoBytes = 64 * 1024;
constexpr double kDotsPerCentimetre = 2.54;

// --- State and callbacks ---

struct ErrorManager {
  jpeg_error_mgr base;
  std::jmp_buf jump;
  int32_t result = SUCCESS;  // of the first fatal error, or of a warning that means lost data
};

int32_t ResultOfMessage(int code) {
  switch (code) {
    case JERR_OUT_OF_MEMORY: return ERROR_OUT_OF_MEMORY;
    case JERR_IMAGE_TOO_BIG: return ERROR_LIMIT_EXCEEDED;
    case JERR_SOF_UNSUPPORTED:
    case JERR_BAD_PRECISION:
    case JERR_CONVERSION_NOTIMPL:
    case JERR_CCIR601_NOTIMPL:
    case JERR_NOT_COMPILED: return ERROR_FEATURE_UNSUPPORTED;
    case JERR_FILE_WRITE: return ERROR_FILE_WRITE;
    default: return ERROR_FILE_DAMAGED;
  }
}

void ErrorExit(j_common_ptr info) {
  ErrorManager* manager = reinterpret_cast<ErrorManager*>(info->err);
  if (manager->result == SUCCESS) manager->result = ResultOfMessage(info->err->msg_code);
  std::longjmp(manager->jump, 1);
}

// Warnings that mean that pixels are missing or wrong count as damage; the others are tolerated irregularities.
void EmitMessage(j_common_ptr info, int level) {
  if (level >= 0) return;
  switch (info->err->msg_code) {
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_MUST_RESYNC:
    case JWRN_ARITH_BAD_CODE:
    case JWRN_BOGUS_PROGRESSION: {
      ErrorManager* manager = reinterpret_cast<ErrorManager*>(info->err);
      manager->result = ERROR_FILE_DAMAGED;
      std::longjmp(manager->jump, 1);
    }
    default: break;
  }
}

void OutputMessage(j_common_ptr) {}

void InstallErrors(ErrorManager& errors) {
  jpeg_std_error(&errors.base);
  errors.base.error_exit = ErrorExit;
  errors.base.emit_message = EmitMessage;
  errors.base.output_message = OutputMessage;
}

struct SourceManager {
  jpeg_source_mgr base;
  ByteSource* source = nullptr;
  bool pastEnd = false;
  JOCTET buffer[kIoBytes];
};

void InitSource(j_decompress_ptr) {}
void TermSource(j_decompress_ptr) {}

boolean FillInput(j_decompress_ptr info) {
  SourceManager* manager = reinterpret_cast<SourceManager*>(info->src);
  size_t count = manager->source->Read(manager->buffer, sizeof manager->buffer);
  if (count == 0) {
    // A missing end marker is supplied; missing data show as a warning of the entropy decoder.
    manager->pastEnd = true;
    manager->buffer[0] = 0xFF;
    manager->buffer[1] = JPEG_EOI;
    count = 2;
  }
  manager->base.next_input_byte = manager->buffer;
  manager->base.bytes_in_buffer = count;
  return TRUE;
}

void SkipInput(j_decompress_ptr info, long bytes) {
  if (bytes <= 0) return;
  jpeg_source_mgr* manager = info->src;
  const size_t inside = std::min(static_cast<size_t>(bytes), manager->bytes_in_buffer);
  manager->next_input_byte += inside;
  manager->bytes_in_buffer -= inside;
  ByteSource* source = reinterpret_cast<SourceManager*>(manager)->source;
  source->Seek(source->Tell() + static_cast<size_t>(bytes) - inside);
}

struct DestinationManager {
  jpeg_destination_mgr base;
  ByteSink* sink = nullptr;
  JOCTET buffer[kIoBytes];
};

void InitDestination(j_compress_ptr info) {
  DestinationManager* manager = reinterpret_cast<DestinationManager*>(info->dest);
  manager->base.next_output_byte = manager->buffer;
  manager->base.free_in_buffer = sizeof manager->buffer;
}

boolean EmptyOutput(j_compress_ptr info) {
  DestinationManager* manager = reinterpret_cast<DestinationManager*>(info->dest);
  if (!manager->sink->Write(manager->buffer, sizeof manager->buffer)) ERREXIT(info, JERR_FILE_WRITE);
  InitDestination(info);
  return TRUE;
}

void TermDestination(j_compress_ptr info) {
  DestinationManager* manager = reinterpret_cast<DestinationManager*>(info->dest);
  const size_t count = sizeof manager->buffer - manager->base.free_in_buffer;
  if (!manager->sink->Write(manager->buffer, count)) ERREXIT(info, JERR_FILE_WRITE);
}

// One running decoder or encoder: Info is jpeg_decompress_struct or jpeg_compress_struct.
template <typename Info>
class Session {
 public:
  Session() {
    InstallErrors(errors_);
    info.err = &errors_.base;
  }
  ~Session() {
    if (created_) Guard([&] { jpeg_destroy(reinterpret_cast<j_common_ptr>(&info)); });
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Runs libjpeg calls. The body must own nothing that has a destructor.
  template <typename Body>
  int32_t Guard(Body&& body) {
    errors_.result = SUCCESS;
    if (setjmp(errors_.jump) == 0) body();
    return errors_.result;
  }

  void Created() { created_ = true; }

  Info info = {};

 private:
  ErrorManager errors_ = {};
  bool created_ = false;
};

void LimitScans(j_common_ptr info) {
  j_decompress_ptr decompress = reinterpret_cast<j_decompress_ptr>(info);
  if (decompress->input_scan_number > kMaxScans) ERREXIT(info, JERR_BAD_PROGRESSION);
}

class Decoder : public Session<jpeg_decompress_struct> {
 public:
  explicit Decoder(ByteSource& source) : manager_(std::make_unique<SourceManager>()) {
    manager_->source = &source;
    manager_->base.init_source = InitSource;
    manager_->base.fill_input_buffer = FillInput;
    manager_->base.skip_input_data = SkipInput;
    manager_->base.resync_to_restart = jpeg_resync_to_restart;
    manager_->base.term_source = TermSource;
    progress_.progress_monitor = LimitScans;
  }

  int32_t ReadHeader(bool keepSegments) {
    return Guard([&] {
      jpeg_create_decompress(&info);
      Created();
      info.src = &manager_->base;
      info.progress = &progress_;
      jpeg_save_markers(&info, JPEG_COM, 0xFFFF);
      if (keepSegments) {
        jpeg_save_markers(&info, kExifMarker, 0xFFFF);
        jpeg_save_markers(&info, kProfileMarker, 0xFFFF);
      }
      jpeg_read_header(&info, TRUE);
    });
  }

  // The stream has ended early and more was to come than the end marker.
  bool CutShort() { return manager_->pastEnd && jpeg_has_multiple_scans(&info); }

 private:
  std::unique_ptr<SourceManager> manager_;
  jpeg_progress_mgr progress_ = {};
};

class Encoder : public Session<jpeg_compress_struct> {
 public:
  explicit Encoder(ByteSink& sink) : manager_(std::make_unique<DestinationManager>()) {
    manager_->sink = &sink;
    manager_->base.init_destination = InitDestination;
    manager_->base.empty_output_buffer = EmptyOutput;
    manager_->base.term_destination = TermDestination;
  }

  // To be called inside a Guard.
  void Create() {
    jpeg_create_compress(&info);
    Created();
    info.dest = &manager_->base;
  }

 private:
  std::unique_ptr<DestinationManager> manager_;
};

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
    } else if (marker->marker == kExifMarker && HasPrefix(*marker, kExifHeader, kExifHeaderBytes)) {
      if (metadata.exif.empty()) metadata.exif.assign(data + kExifHeaderBytes, end);
    } else if (marker->marker == kExifMarker && HasPrefix(*marker, kXmpHeader, kXmpHeaderBytes)) {
      if (metadata.xmp.empty()) metadata.xmp.assign(data + kXmpHeaderBytes, end);
    }
  }
}

void CollectProfile(Decoder& decoder, Metadata& metadata) {
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
  if (!exif.thumbnail.empty()) header.flags |= FILEINFO_HAS_STAMP;
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

int32_t FillHeader(Decoder& decoder, ByteSource& source, const LoadRequest& request, ImageHeader& header) {
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
int32_t PullInks(Decoder& decoder, RowSink& sink, const std::vector<uint8_t>& profile) {
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

int32_t PullRows(Decoder& decoder, RowSink& sink) {
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

int32_t JpegStamp(ByteSource& source, const LoadRequest& request, RowSink& sink) {
  ImageHeader header;
  const int32_t result = ReadJpegHeader(source, request, header);
  if (result != SUCCESS) return result;
  const std::span<const uint8_t> thumbnail = ReadExif(header.metadata.exif).thumbnail;
  if (thumbnail.empty()) return ERROR_NO_STAMP;
  MemorySource stream(thumbnail);
  // The thumbnail is stored as the image is, and so shown with its perspective.
  return LoadJpegStream(stream, request, sink, [&](ImageHeader& small) {
    small.viewPerspective = header.viewPerspective;
    small.metadata = Metadata();
  });
}

// --- Save ---

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

void StartEncoder(Encoder& encoder, const JpegSaveSettings& settings, const RowSource& rows, bool gray) {
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

int32_t WriteSegments(Encoder& encoder, const JpegSaveSettings& settings, bool gray) {
  const auto write = [&](int marker, const std::vector<uint8_t>& bytes) {
    return encoder.Guard(
        [&] { jpeg_write_marker(&encoder.info, marker, bytes.data(), static_cast<unsigned>(bytes.size())); });
  };
  int32_t result = SUCCESS;
  if (!settings.exif.empty()) result = write(kExifMarker, Prefixed(kExifHeader, kExifHeaderBytes, settings.exif));
  if (!settings.metadata || result != SUCCESS) return result;
  const Metadata& metadata = *settings.metadata;
  if (!metadata.xmp.empty() && metadata.xmp.size() <= kMaxSegment - kXmpHeaderBytes) {
    result = write(kExifMarker, Prefixed(kXmpHeader, kXmpHeaderBytes, metadata.xmp));
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
    settings.exif = BuildExif(request.metadata.exif, request.metadata.comments, stamp, rows.Width(), rows.Height());
  }
  return SaveJpegStream(sink, settings, rows);
}

}  // namespace

int32_t JpegQuality(int32_t qFactor) {
  const int32_t q = std::clamp(qFactor, 2, 255);
  return static_cast<int32_t>(std::lround(100.0 - (q - 2) * 99.0 / 253.0));
}

int32_t ReadJpegHeader(ByteSource& source, const LoadRequest& request, ImageHeader& header) {
  Decoder decoder(source);
  const int32_t result = decoder.ReadHeader(true);
  return result == SUCCESS ? FillHeader(decoder, source, request, header) : result;
}

int32_t LoadJpegStream(ByteSource& source, const LoadRequest& request, RowSink& sink,
                       const std::function<void(ImageHeader&)>& adjust) {
  Decoder decoder(source);
  ImageHeader header;
  int32_t result = decoder.ReadHeader(true);
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
    jpeg_calc_output_dimensions(&info);
  });
  if (result == SUCCESS) result = sink.Begin(header);
  if (result == SUCCESS) result = decoder.Guard([&] { jpeg_start_decompress(&info); });
  if (result == SUCCESS) result = inks ? PullInks(decoder, sink, inkProfile) : PullRows(decoder, sink);
  if (result == SUCCESS && decoder.CutShort()) result = ERROR_FILE_DAMAGED;
  return result;
}

int32_t SaveJpegStream(ByteSink& sink, const JpegSaveSettings& settings, RowSource& rows) {
  if (rows.Width() > JPEG_MAX_DIMENSION || rows.Height() > JPEG_MAX_DIMENSION) return ERROR_LIMIT_EXCEEDED;
  const bool gray = rows.GetLayout() == Layout::kGray8;
  int32_t result = rows.Begin(gray ? Layout::kGray8 : Layout::kBgr24);
  if (result != SUCCESS) return result;
  Encoder encoder(sink);
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
