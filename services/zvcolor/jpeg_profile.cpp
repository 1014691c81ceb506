// JPEG: the profile stands in APP2 segments, cut into pieces of at most 65519 bytes (ICC.1:2010, annex B.4). Only the segments
// before the first scan are looked at; what follows is copied as it is.
#include <algorithm>
#include <string_view>

#include "services/zvcolor/image_profile.h"
#include "services/zvcolor/multi_picture.h"
#include "services/zvcolor/zvcolor.h"

namespace zvcolor {
namespace {

using namespace std::string_view_literals;

constexpr uint8_t kApp0 = 0xE0, kApp1 = 0xE1, kApp2 = 0xE2, kScan = 0xDA, kEndOfImage = 0xD9;
constexpr std::string_view kProfileMark = "ICC_PROFILE\0"sv;
constexpr std::string_view kFurtherPicturesMark = "MPF\0"sv;
constexpr size_t kPieceHeader = 14;  // the mark, number of this piece, number of pieces
constexpr size_t kPieceBytes = 65535 - 2 - kPieceHeader;
constexpr size_t kMostPieces = 255;

struct Segment {
  uint8_t marker;
  uint64_t start;    // of its first 0xFF
  uint64_t content;  // behind marker and length
  uint64_t end;
  uint64_t Size() const { return end - start; }
};

bool HasLength(uint8_t marker) { return marker != 0x01 && (marker < 0xD0 || marker > 0xD8); }
bool IsFrame(uint8_t marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

// The segments up to the first scan, which is not among them.
int32_t ReadSegments(ByteSource& source, std::vector<Segment>& segments) {
  uint64_t at = 2;
  for (;;) {
    const uint64_t start = at;
    uint8_t byte = 0;
    if (source.ReadAt(at, &byte, 1) != 1 || byte != 0xFF) {
      return ERROR_FILE_DAMAGED;
    }
    while (byte == 0xFF) {
      if (source.ReadAt(++at, &byte, 1) != 1) {
        return ERROR_FILE_DAMAGED;
      }
    }
    ++at;
    if (byte == kScan || byte == kEndOfImage) {
      return SUCCESS;
    }
    uint64_t length = 0;
    if (HasLength(byte)) {
      uint8_t raw[2];
      if (source.ReadAt(at, raw, 2) != 2) {
        return ERROR_FILE_DAMAGED;
      }
      length = static_cast<uint64_t>(raw[0]) << 8 | raw[1];
      if (length < 2 || at + length > source.Size()) {
        return ERROR_FILE_DAMAGED;
      }
    }
    segments.push_back({byte, start, at + std::min<uint64_t>(length, 2), at + length});
    at += length;
  }
}

bool HasMark(ByteSource& source, const Segment& segment, std::string_view mark) {
  return segment.marker == kApp2 && segment.end - segment.content >= mark.size() &&
         HasText(source, segment.content, mark);
}
bool IsProfilePiece(ByteSource& source, const Segment& segment) {
  return HasMark(source, segment, kProfileMark) && segment.end - segment.content >= kPieceHeader;
}

// 0 when the file does not say.
uint32_t ColorSpace(ByteSource& source, const std::vector<Segment>& segments) {
  for (const Segment& segment : segments) {
    uint8_t components = 0;
    if (IsFrame(segment.marker) && source.ReadAt(segment.content + 5, &components, 1) == 1) {
      return components == 1 ? kGray : components == 3 ? kRgb : components == 4 ? kCmyk : 0;
    }
  }
  return 0;
}

bool Recognise(ByteView head) { return head.size() > 2 && head[0] == 0xFF && head[1] == 0xD8 && head[2] == 0xFF; }

// The pieces may stand in any order, but each number exactly once.
int32_t JoinPieces(ByteSource& source, const std::vector<Segment>& segments, Bytes& profile) {
  std::vector<Bytes> pieces;
  size_t found = 0;
  for (const Segment& segment : segments) {
    if (!IsProfilePiece(source, segment)) {
      continue;
    }
    Bytes content;
    const int32_t status = ReadBytes(source, segment.content, segment.end - segment.content, content);
    if (status != SUCCESS) {
      return status;
    }
    const size_t number = content[kPieceHeader - 2], count = content[kPieceHeader - 1];
    if (pieces.empty()) {
      pieces.resize(count);
    }
    if (number == 0 || number > count || count != pieces.size() || !pieces[number - 1].empty()) {
      return ERROR_PROFILE_DAMAGED;
    }
    pieces[number - 1].assign(content.begin() + kPieceHeader, content.end());
    ++found;
  }
  if (found == 0) {
    return ERROR_PROFILE_MISSING;
  }
  for (const Bytes& piece : pieces) {
    profile.insert(profile.end(), piece.begin(), piece.end());
  }
  return found == pieces.size() ? SUCCESS : ERROR_PROFILE_DAMAGED;
}

int32_t Read(ByteSource& source, int32_t page, Bytes& profile) {
  if (page != 1) {
    return ERROR_PAGE_MISSING;
  }
  std::vector<Segment> segments;
  const int32_t status = ReadSegments(source, segments);
  return status == SUCCESS ? JoinPieces(source, segments, profile) : status;
}

void WritePieces(ByteSink& sink, ByteView profile, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const ByteView piece = profile.subspan(i * kPieceBytes, std::min(kPieceBytes, profile.size() - i * kPieceBytes));
    const uint8_t marker[] = {0xFF, kApp2};
    sink.Write(marker, sizeof(marker));
    sink.WriteBe(2 + kPieceHeader + piece.size(), 2);
    sink.Write(kProfileMark.data(), kProfileMark.size());
    const uint8_t numbers[] = {static_cast<uint8_t>(i + 1), static_cast<uint8_t>(count)};
    sink.Write(numbers, sizeof(numbers));
    sink.Write(piece.data(), piece.size());
  }
}

int32_t CopyFurtherPictures(ByteSource& source, ByteSink& sink, const Segment& segment, int64_t sizeChange,
                            int64_t offsetChange) {
  const uint64_t indexAt = segment.content + kFurtherPicturesMark.size();
  Bytes index;
  const int32_t status = ReadBytes(source, indexAt, segment.end - indexAt, index);
  if (status != SUCCESS) {
    return status;
  }
  MoveFurtherPictures(index, sizeChange, offsetChange);
  const bool isWritten =
      sink.CopyFrom(source, segment.start, indexAt - segment.start) && sink.Write(index.data(), index.size());
  return isWritten ? SUCCESS : ERROR_FILE_WRITE;
}

int32_t Write(ByteSource& source, ByteSink& sink, int32_t page, ByteView profile) {
  std::vector<Segment> segments;
  const int32_t status = page == 1 ? ReadSegments(source, segments) : ERROR_PAGE_MISSING;
  if (status != SUCCESS) {
    return status;
  }
  if (!FitsImage(profile, ColorSpace(source, segments))) {
    return ERROR_FEATURE_UNSUPPORTED;
  }
  const size_t pieces = (profile.size() + kPieceBytes - 1) / kPieceBytes;
  if (pieces > kMostPieces) {
    return ERROR_LIMIT_EXCEEDED;
  }
  // JFIF and Exif both want to be first: the profile goes behind them.
  const auto place = std::find_if(segments.begin(), segments.end(), [](const Segment& segment) {
    return segment.marker != kApp0 && segment.marker != kApp1;
  });
  int64_t removed = 0;
  for (const Segment& segment : segments) {
    removed += IsProfilePiece(source, segment) ? static_cast<int64_t>(segment.Size()) : 0;
  }
  int64_t removedAhead = removed;  // what of it lies behind the segment being copied
  const auto added = static_cast<int64_t>(profile.size() + pieces * (4 + kPieceHeader));
  sink.CopyFrom(source, 0, 2);
  for (auto segment = segments.begin(); segment != segments.end(); ++segment) {
    if (segment == place) {
      WritePieces(sink, profile, pieces);
    }
    if (IsProfilePiece(source, *segment)) {
      removedAhead -= static_cast<int64_t>(segment->Size());
    } else if (HasMark(source, *segment, kFurtherPicturesMark)) {
      const int32_t copied = CopyFurtherPictures(source, sink, *segment, added - removed, -removedAhead);
      if (copied != SUCCESS) {
        return copied;
      }
    } else {
      sink.CopyFrom(source, segment->start, segment->Size());
    }
  }
  if (place == segments.end()) {
    WritePieces(sink, profile, pieces);
  }
  const uint64_t rest = segments.empty() ? 2 : segments.back().end;
  const bool isCopied = sink.CopyFrom(source, rest, source.Size() - rest);
  return isCopied && !sink.Failed() ? SUCCESS : ERROR_FILE_WRITE;
}

}  // namespace

const ImageContainer kJpegContainer = {&Recognise, &Read, &Write};

}  // namespace zvcolor
