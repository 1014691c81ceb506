#include "services/zvfile/codecs/jpeg_session.h"

#include <algorithm>

#include <jerror.h>

namespace zvfile {
namespace {

constexpr int kMaxScans = 500;  // each scan of a progressive file costs a pass over the whole image
constexpr size_t kIoBytes = 64 * 1024;

}  // namespace

struct JpegSourceManager {
  jpeg_source_mgr base;
  ByteSource* source = nullptr;
  bool pastEnd = false;
  JOCTET buffer[kIoBytes];
};

struct JpegDestinationManager {
  jpeg_destination_mgr base;
  ByteSink* sink = nullptr;
  JOCTET buffer[kIoBytes];
};

namespace {

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
  JpegErrors* manager = reinterpret_cast<JpegErrors*>(info->err);
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
      JpegErrors* manager = reinterpret_cast<JpegErrors*>(info->err);
      manager->result = ERROR_FILE_DAMAGED;
      std::longjmp(manager->jump, 1);
    }
    default: break;
  }
}

void OutputMessage(j_common_ptr) {}

void InitSource(j_decompress_ptr) {}
void TermSource(j_decompress_ptr) {}

boolean FillInput(j_decompress_ptr info) {
  JpegSourceManager* manager = reinterpret_cast<JpegSourceManager*>(info->src);
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
  ByteSource* source = reinterpret_cast<JpegSourceManager*>(manager)->source;
  source->Seek(source->Tell() + static_cast<size_t>(bytes) - inside);
}

void InitDestination(j_compress_ptr info) {
  JpegDestinationManager* manager = reinterpret_cast<JpegDestinationManager*>(info->dest);
  manager->base.next_output_byte = manager->buffer;
  manager->base.free_in_buffer = sizeof manager->buffer;
}

boolean EmptyOutput(j_compress_ptr info) {
  JpegDestinationManager* manager = reinterpret_cast<JpegDestinationManager*>(info->dest);
  if (!manager->sink->Write(manager->buffer, sizeof manager->buffer)) ERREXIT(info, JERR_FILE_WRITE);
  InitDestination(info);
  return TRUE;
}

void TermDestination(j_compress_ptr info) {
  JpegDestinationManager* manager = reinterpret_cast<JpegDestinationManager*>(info->dest);
  const size_t count = sizeof manager->buffer - manager->base.free_in_buffer;
  if (!manager->sink->Write(manager->buffer, count)) ERREXIT(info, JERR_FILE_WRITE);
}

void LimitScans(j_common_ptr info) {
  j_decompress_ptr decompress = reinterpret_cast<j_decompress_ptr>(info);
  if (decompress->input_scan_number > kMaxScans) ERREXIT(info, JERR_BAD_PROGRESSION);
}

}  // namespace

void JpegErrors::Install() {
  jpeg_std_error(&base);
  base.error_exit = ErrorExit;
  base.emit_message = EmitMessage;
  base.output_message = OutputMessage;
}

JpegDecoder::JpegDecoder(ByteSource& source) : manager_(std::make_unique<JpegSourceManager>()) {
  manager_->source = &source;
  manager_->base.init_source = InitSource;
  manager_->base.fill_input_buffer = FillInput;
  manager_->base.skip_input_data = SkipInput;
  manager_->base.resync_to_restart = jpeg_resync_to_restart;
  manager_->base.term_source = TermSource;
  progress_.progress_monitor = LimitScans;
}

JpegDecoder::~JpegDecoder() = default;

int32_t JpegDecoder::ReadHeader() {
  return Guard([&] {
    jpeg_create_decompress(&info);
    Created();
    info.src = &manager_->base;
    info.progress = &progress_;
    for (const int marker : {int{JPEG_COM}, kJpegApp1, kJpegApp2}) jpeg_save_markers(&info, marker, 0xFFFF);
    jpeg_read_header(&info, TRUE);
  });
}

bool JpegDecoder::CutShort() { return manager_->pastEnd && jpeg_has_multiple_scans(&info); }

JpegEncoder::JpegEncoder(ByteSink& sink) : manager_(std::make_unique<JpegDestinationManager>()) {
  manager_->sink = &sink;
  manager_->base.init_destination = InitDestination;
  manager_->base.empty_output_buffer = EmptyOutput;
  manager_->base.term_destination = TermDestination;
}

JpegEncoder::~JpegEncoder() = default;

void JpegEncoder::Create() {
  jpeg_create_compress(&info);
  Created();
  info.dest = &manager_->base;
}

}  // namespace zvfile
