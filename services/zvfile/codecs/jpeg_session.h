// The libjpeg objects of the JPEG codec: a decoder that reads from a byte source, an encoder that writes to a byte sink, and the
// error handling of both.
//
// libjpeg reports a fatal error by calling error_exit, which must not return: it jumps back to the Guard that entered the
// library. Only plain libjpeg calls stand inside a Guard, so the jump passes no object with a destructor.
#ifndef ZV_FILE_CODECS_JPEG_SESSION_H
#define ZV_FILE_CODECS_JPEG_SESSION_H

#include <csetjmp>
#include <cstdio>
#include <memory>

#include <jpeglib.h>

#include "services/zvfile/byte_sink.h"
#include "services/zvfile/byte_source.h"

namespace zvfile {

inline constexpr int kJpegApp1 = JPEG_APP0 + 1;  // Exif or XMP
inline constexpr int kJpegApp2 = JPEG_APP0 + 2;  // a part of the profile
inline constexpr char kJpegExifHeader[] = "Exif\0";
inline constexpr size_t kJpegExifHeaderBytes = sizeof kJpegExifHeader;
inline constexpr char kJpegXmpHeader[] = "http://ns.adobe.com/xap/1.0/";
inline constexpr size_t kJpegXmpHeaderBytes = sizeof kJpegXmpHeader;

struct JpegErrors {
  jpeg_error_mgr base;
  std::jmp_buf jump;
  int32_t result = SUCCESS;  // of the first fatal error, or of a warning that means lost data

  void Install();
};

// One running decoder or encoder: Info is jpeg_decompress_struct or jpeg_compress_struct.
template <typename Info>
class JpegSession {
 public:
  JpegSession() {
    errors_.Install();
    info.err = &errors_.base;
  }
  ~JpegSession() {
    if (created_) Guard([&] { jpeg_destroy(reinterpret_cast<j_common_ptr>(&info)); });
  }
  JpegSession(const JpegSession&) = delete;
  JpegSession& operator=(const JpegSession&) = delete;

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
  JpegErrors errors_ = {};
  bool created_ = false;
};

struct JpegSourceManager;
struct JpegDestinationManager;

class JpegDecoder : public JpegSession<jpeg_decompress_struct> {
 public:
  explicit JpegDecoder(ByteSource& source);
  ~JpegDecoder();

  // Reads up to the image; the segments that hold Exif, XMP, profile and comment are kept.
  int32_t ReadHeader();
  // The stream has ended early and more was to come than the end marker.
  bool CutShort();

 private:
  std::unique_ptr<JpegSourceManager> manager_;
  jpeg_progress_mgr progress_ = {};
};

class JpegEncoder : public JpegSession<jpeg_compress_struct> {
 public:
  explicit JpegEncoder(ByteSink& sink);
  ~JpegEncoder();

  // To be called inside a Guard.
  void Create();

 private:
  std::unique_ptr<JpegDestinationManager> manager_;
};

}  // namespace zvfile

#endif
