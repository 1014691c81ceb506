#include "services/zvfile/codecs/j2k_objects.h"

namespace zvfile {
namespace {

constexpr size_t kStreamBytes = 256 * 1024;

void OnMessage(const char*, void*) {}

OPJ_SIZE_T OnRead(void* buffer, OPJ_SIZE_T bytes, void* user) {
  const size_t count = static_cast<ByteSource*>(user)->Read(buffer, bytes);
  return count == 0 ? static_cast<OPJ_SIZE_T>(-1) : count;
}

OPJ_OFF_T OnSkipRead(OPJ_OFF_T bytes, void* user) {
  ByteSource* source = static_cast<ByteSource*>(user);
  if (bytes < 0 && static_cast<uint64_t>(-bytes) > source->Tell()) return -1;
  source->Seek(source->Tell() + static_cast<uint64_t>(bytes));
  return bytes;
}

OPJ_BOOL OnSeekRead(OPJ_OFF_T offset, void* user) {
  ByteSource* source = static_cast<ByteSource*>(user);
  if (offset < 0 || static_cast<uint64_t>(offset) > source->Size()) return OPJ_FALSE;
  source->Seek(static_cast<uint64_t>(offset));
  return OPJ_TRUE;
}

OPJ_SIZE_T OnWrite(void* buffer, OPJ_SIZE_T bytes, void* user) {
  return static_cast<ByteSink*>(user)->Write(buffer, bytes) ? bytes : static_cast<OPJ_SIZE_T>(-1);
}

OPJ_OFF_T OnSkipWrite(OPJ_OFF_T bytes, void* user) {
  ByteSink* sink = static_cast<ByteSink*>(user);
  sink->Seek(sink->Tell() + static_cast<uint64_t>(bytes));
  return bytes;
}

OPJ_BOOL OnSeekWrite(OPJ_OFF_T offset, void* user) {
  static_cast<ByteSink*>(user)->Seek(static_cast<uint64_t>(offset));
  return OPJ_TRUE;
}

}  // namespace

J2kStream MakeJ2kReader(ByteSource& source) {
  J2kStream stream(opj_stream_create(kStreamBytes, OPJ_TRUE));
  if (!stream) return stream;
  opj_stream_set_user_data(stream.get(), &source, nullptr);
  opj_stream_set_user_data_length(stream.get(), source.Size());
  opj_stream_set_read_function(stream.get(), OnRead);
  opj_stream_set_skip_function(stream.get(), OnSkipRead);
  opj_stream_set_seek_function(stream.get(), OnSeekRead);
  return stream;
}

J2kStream MakeJ2kWriter(ByteSink& sink) {
  J2kStream stream(opj_stream_create(kStreamBytes, OPJ_FALSE));
  if (!stream) return stream;
  opj_stream_set_user_data(stream.get(), &sink, nullptr);
  opj_stream_set_write_function(stream.get(), OnWrite);
  opj_stream_set_skip_function(stream.get(), OnSkipWrite);
  opj_stream_set_seek_function(stream.get(), OnSeekWrite);
  return stream;
}

J2kCodecHandle MakeJ2kCodec(bool codeStream, bool decoder) {
  const OPJ_CODEC_FORMAT format = codeStream ? OPJ_CODEC_J2K : OPJ_CODEC_JP2;
  J2kCodecHandle codec(decoder ? opj_create_decompress(format) : opj_create_compress(format));
  if (!codec) return codec;
  opj_set_error_handler(codec.get(), OnMessage, nullptr);
  opj_set_warning_handler(codec.get(), OnMessage, nullptr);
  opj_set_info_handler(codec.get(), OnMessage, nullptr);
  return codec;
}

}  // namespace zvfile
