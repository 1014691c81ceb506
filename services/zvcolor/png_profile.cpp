// PNG: the profile stands in an iCCP chunk before the palette and the pixels, compressed (PNG, third edition, 11.3.3.3).
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "services/zvcolor/image_profile.h"
#include "services/zvcolor/zvcolor.h"

namespace zvcolor {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kSignature = "\x89PNG\r\n\x1A\n"sv;
constexpr uint32_t kHeader = Letters('I', 'H', 'D', 'R'), kPixels = Letters('I', 'D', 'A', 'T');
constexpr uint32_t kProfile = Letters('i', 'C', 'C', 'P'), kStandardRgb = Letters('s', 'R', 'G', 'B');
constexpr size_t kLongestName = 79;
constexpr std::string_view kName = "ICC profile\0"sv;
constexpr uint64_t kChunkFrame = 12;  // length, type and checksum

struct Chunk {
  uint32_t type;
  uint64_t start;
  uint32_t length;
  uint64_t Data() const { return start + 8; }
  uint64_t End() const { return start + kChunkFrame + length; }
};

// The chunks before the pixels, and whether those were reached.
int32_t ReadChunks(ByteSource& source, std::vector<Chunk>& chunks) {
  uint64_t at = kSignature.size();
  for (;;) {
    uint8_t raw[8];
    if (source.ReadAt(at, raw, sizeof(raw)) != sizeof(raw)) {
      return ERROR_FILE_DAMAGED;
    }
    const Chunk chunk = {NumberAt(raw, 4), at, NumberAt(raw, 0)};
    if (chunk.type == kPixels) {
      const bool startsWell = !chunks.empty() && chunks[0].type == kHeader && chunks[0].length == 13;
      return startsWell ? SUCCESS : ERROR_FILE_DAMAGED;
    }
    if (chunk.End() > source.Size()) {
      return ERROR_FILE_DAMAGED;
    }
    chunks.push_back(chunk);
    at = chunk.End();
  }
}

uint32_t ColorSpace(ByteSource& source, const Chunk& header) {
  uint8_t type = 0;
  source.ReadAt(header.Data() + 9, &type, 1);
  return type == 0 || type == 4 ? kGray : kRgb;
}

bool Recognise(ByteView head) {
  return head.size() >= kSignature.size() && std::memcmp(head.data(), kSignature.data(), kSignature.size()) == 0;
}

struct Inflater {
  z_stream stream = {};
  ~Inflater() { inflateEnd(&stream); }
};

// Grows with what comes out, so that a small chunk that claims a lot costs nothing.
int32_t Inflate(ByteView packed, Bytes& bytes) {
  constexpr size_t kStep = 1 << 16;
  Inflater inflater;
  if (inflateInit(&inflater.stream) != Z_OK) {
    return ERROR_OUT_OF_MEMORY;
  }
  inflater.stream.next_in = const_cast<Bytef*>(packed.data());
  inflater.stream.avail_in = static_cast<uInt>(packed.size());
  for (int status = Z_OK; status != Z_STREAM_END;) {
    const size_t size = bytes.size();
    if (size > ICC_PROFILE_MAX_BYTES) {
      return ERROR_LIMIT_EXCEEDED;
    }
    bytes.resize(size + kStep);
    inflater.stream.next_out = bytes.data() + size;
    inflater.stream.avail_out = kStep;
    status = inflate(&inflater.stream, Z_NO_FLUSH);
    bytes.resize(size + kStep - inflater.stream.avail_out);
    if (status != Z_OK && status != Z_STREAM_END) {
      return ERROR_PROFILE_DAMAGED;
    }
  }
  return SUCCESS;
}

int32_t Unpack(ByteSource& source, const Chunk& chunk, Bytes& profile) {
  Bytes data;
  const int32_t status = ReadBytes(source, chunk.start + 4, chunk.length + 8, data);  // type, data and checksum
  if (status != SUCCESS) {
    return status;
  }
  const ByteView summed = ByteView(data).first(data.size() - 4);
  if (crc32(0, summed.data(), static_cast<uInt>(summed.size())) != NumberAt(data, summed.size())) {
    return ERROR_PROFILE_DAMAGED;
  }
  const ByteView content = summed.subspan(4);
  const auto nameEnd = std::find(content.begin(), content.begin() + std::min(content.size(), kLongestName + 1), 0);
  const auto method = static_cast<size_t>(nameEnd - content.begin()) + 1;
  if (method > kLongestName + 1 || method + 1 >= content.size() || content[method] != 0) {
    return ERROR_PROFILE_DAMAGED;
  }
  return Inflate(content.subspan(method + 1), profile);
}

int32_t Read(ByteSource& source, int32_t page, Bytes& profile) {
  std::vector<Chunk> chunks;
  const int32_t status = page == 1 ? ReadChunks(source, chunks) : ERROR_PAGE_MISSING;
  if (status != SUCCESS) {
    return status;
  }
  const auto found =
      std::find_if(chunks.begin(), chunks.end(), [](const Chunk& chunk) { return chunk.type == kProfile; });
  return found == chunks.end() ? ERROR_PROFILE_MISSING : Unpack(source, *found, profile);
}

int32_t WriteProfileChunk(ByteSink& sink, ByteView profile) {
  uLongf packedSize = compressBound(static_cast<uLong>(profile.size()));
  Bytes content(4 + kName.size() + 1 + packedSize);  // type, name, method 0, data
  std::memcpy(content.data(), "iCCP", 4);
  std::memcpy(&content[4], kName.data(), kName.size());
  uint8_t* packed = &content[4 + kName.size() + 1];
  if (compress2(packed, &packedSize, profile.data(), static_cast<uLong>(profile.size()), Z_BEST_COMPRESSION) != Z_OK) {
    return ERROR_OUT_OF_MEMORY;
  }
  content.resize(4 + kName.size() + 1 + packedSize);
  sink.WriteBe(content.size() - 4, 4);
  sink.Write(content.data(), content.size());
  sink.WriteBe(crc32(0, content.data(), static_cast<uInt>(content.size())), 4);
  return sink.Failed() ? ERROR_FILE_WRITE : SUCCESS;
}

int32_t Write(ByteSource& source, ByteSink& sink, int32_t page, ByteView profile) {
  std::vector<Chunk> chunks;
  int32_t status = page == 1 ? ReadChunks(source, chunks) : ERROR_PAGE_MISSING;
  if (status != SUCCESS) {
    return status;
  }
  if (!FitsImage(profile, ColorSpace(source, chunks[0]))) {
    return ERROR_FEATURE_UNSUPPORTED;
  }
  sink.CopyFrom(source, 0, chunks[0].End());
  status = WriteProfileChunk(sink, profile);
  for (size_t i = 1; status == SUCCESS && i < chunks.size(); ++i) {
    if (chunks[i].type != kProfile && chunks[i].type != kStandardRgb) {
      sink.CopyFrom(source, chunks[i].start, chunks[i].End() - chunks[i].start);
    }
  }
  const uint64_t pixels = chunks.back().End();
  const bool isCopied = sink.CopyFrom(source, pixels, source.Size() - pixels);
  return status != SUCCESS ? status : isCopied && !sink.Failed() ? SUCCESS : ERROR_FILE_WRITE;
}

}  // namespace

const ImageContainer kPngContainer = {&Recognise, &Read, &Write};

}  // namespace zvcolor
