#include "services/zvfile/file_info.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "services/zvfile/operation.h"
#include "services/zvfile/settings.h"

namespace zvfile {
namespace {

int32_t RoundedResolution(double dotsPerInch) {
  return dotsPerInch > 0 && dotsPerInch < 1e6 ? static_cast<int32_t>(std::lround(dotsPerInch)) : 0;
}

int32_t ReadInfo(const ZVCHAR* path, FILEINFO& info, uint32_t flags, const LOADFILEOPTION* option) {
  LoadRequest request = MakeLoadRequest(path, option, nullptr);
  request.countPages = (flags & 1) != 0;
  request.loadSizes = LoadSizeSettings();
  StartFileInfo(path, 0, info);
  std::unique_ptr<FileSource> source;
  const int32_t opened = FileSource::Open(path, source);
  if (opened != SUCCESS) return opened;
  info.firstSize = source->Size();
  return ForDetectedCodec(*source, request, [&](const Codec& codec) {
    ImageHeader header;
    const int32_t result = codec.info(*source, request, header);
    if (result == SUCCESS) FillFileInfo(header, info);
    return result;
  });
}

}  // namespace

void FillFileInfo(const ImageHeader& header, FILEINFO& info) {
  const Layout layout = BitmapLayout(header.layout, false);
  info.format = header.format;
  info.width = header.width;
  info.height = header.height;
  info.bitsPerPixel = BitsPerPixel(layout);
  info.secondSize =
      (static_cast<uint64_t>(PackedRowBytes(layout, header.width)) + 3) / 4 * 4 * static_cast<uint64_t>(header.height);
  std::fill(std::begin(info.compression), std::end(info.compression), ZVCHAR{0});
  for (size_t i = 0; i + 1 < std::size(info.compression) && header.compression[i]; ++i) {
    info.compression[i] = static_cast<ZVCHAR>(header.compression[i]);
  }
  info.viewPerspective = header.viewPerspective;
  info.colorOrder = IsGray(layout) ? ORDER_GRAY : ORDER_BGR;
  info.pageNumber = header.pageNumber;
  info.totalPages = header.totalPages;
  info.xResolution = RoundedResolution(header.xResolution);
  info.yResolution = RoundedResolution(header.yResolution);
  info.flags = header.flags;
  if (HasAlpha(layout)) info.flags |= FILEINFO_HAS_ALPHA;
  if (!header.metadata.profile.empty()) info.flags |= FILEINFO_HAS_PROFILE;
  info.filePosition = header.nextPosition;
  info.rasterizable = header.rasterizable ? 1 : 0;
}

const ZVCHAR* NameOfPath(const ZVCHAR* path) {
  const ZVCHAR* name = path;
  for (const ZVCHAR* at = path; *at; ++at) {
    if (*at == '\\' || *at == '/' || *at == ':') name = at + 1;
  }
  return name;
}

std::string ExtensionOfPath(const ZVCHAR* path) {
  std::string extension;
  const ZVCHAR* dot = nullptr;
  for (const ZVCHAR* at = NameOfPath(path); *at; ++at) {
    if (*at == '.') dot = at;
  }
  if (!dot) return extension;
  for (const ZVCHAR* at = dot + 1; *at; ++at) {
    if (*at >= 128) return {};
    const char letter = static_cast<char>(*at);
    extension += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  }
  return extension;
}

void StartFileInfo(const ZVCHAR* path, uint64_t fileSize, FILEINFO& info) {
  std::memset(&info, 0, sizeof info);
  info.uStructSize = sizeof info;
  const ZVCHAR* name = NameOfPath(path);
  for (size_t i = 0; i + 1 < std::size(info.name) && name[i]; ++i) info.name[i] = name[i];
  info.firstSize = fileSize;
}

}  // namespace zvfile

using zvfile::Barrier;

int32_t GetFileInfo(const ZVCHAR* path, FILEINFO* info, uint32_t recordSize, uint32_t flags,
                    const LOADFILEOPTION* option) {
  return Barrier([&]() -> int32_t {
    if (!path || !*path || !info) return ERROR_BAD_ARGUMENT;
    if (recordSize != sizeof(FILEINFO)) return ERROR_BAD_RECORD_SIZE;
    if (!zvfile::IsValidOption(option)) return ERROR_BAD_RECORD_SIZE;
    return zvfile::ReadInfo(path, *info, flags, option);
  });
}

int32_t GetFormatResolutions(const ZVCHAR* path, IMAGESIZE* sizes, FORMATRESOLUTIONS* resolutions,
                             const LOADFILEOPTION* option) {
  return Barrier([&]() -> int32_t {
    if (!path || !*path || !resolutions) return ERROR_BAD_ARGUMENT;
    if (!zvfile::IsValidOption(option)) return ERROR_BAD_RECORD_SIZE;
    const zvfile::LoadRequest request = zvfile::MakeLoadRequest(path, option, nullptr);
    std::unique_ptr<zvfile::FileSource> source;
    const int32_t opened = zvfile::FileSource::Open(path, source);
    if (opened != SUCCESS) return opened;
    std::vector<IMAGESIZE> found;
    const int32_t result = zvfile::ForDetectedCodec(*source, request, [&](const zvfile::Codec& codec) -> int32_t {
      if (codec.sizes) return codec.sizes(*source, request, found);
      zvfile::ImageHeader header;
      const int32_t read = codec.info(*source, request, header);
      if (read == SUCCESS) found = {IMAGESIZE{header.width, header.height}};
      return read;
    });
    if (result != SUCCESS) return result;
    const int32_t total = static_cast<int32_t>(found.size());
    if (sizes) {
      const int32_t room = std::max(resolutions->count, 0);
      std::copy_n(found.begin(), std::min(room, total), sizes);
      if (room < total) return ERROR_BUFFER_TOO_SMALL;
    }
    resolutions->count = total;
    return SUCCESS;
  });
}

namespace zvfile {
namespace {

// The comment that a caller's number means, or -1.
int32_t CommentOfNumber(int32_t number) {
  switch (number) {
    case COMMENT_PNG_TITLE: return COMMENT_TITLE;
    case COMMENT_PNG_WARNING: return COMMENT_WARNING;
    case COMMENT_PNG_DISCLAIMER: return COMMENT_DISCLAIMER;
    case COMMENT_PNG_COMMENT: return COMMENT_COMMENT;
    default: return number >= 0 && number < COMMENT_COUNT ? number : -1;
  }
}

// In the system's 8-bit code page, which is UTF-8 itself on the other platforms.
std::string SystemText(const std::string& text) {
  if (!IsUtf8(text)) return text;
  const std::u16string wide = Utf16FromUtf8(text);
  const ZvString units(wide.begin(), wide.end());
  char* converted = WideToAnsiDup(units.c_str());
  if (!converted) return text;
  const std::string result = converted;
  FreeWideDup(converted);
  return result;
}

int32_t ReadComment(const ZVCHAR* path, int32_t comment, const LOADFILEOPTION* option, std::string& text) {
  LoadRequest request = MakeLoadRequest(path, option, nullptr);
  request.wantMetadata = true;
  std::unique_ptr<FileSource> source;
  const int32_t opened = FileSource::Open(path, source);
  if (opened != SUCCESS) return opened;
  ImageHeader header;
  const int32_t result =
      ForDetectedCodec(*source, request, [&](const Codec& codec) { return codec.info(*source, request, header); });
  if (result == SUCCESS) text = SystemText(header.metadata.comments[static_cast<size_t>(comment)]);
  return result;
}

}  // namespace
}  // namespace zvfile

int32_t ReadFileComment(const ZVCHAR* path, int32_t number, char* buffer, int32_t size, const LOADFILEOPTION* option) {
  return Barrier([&]() -> int32_t {
    const int32_t comment = zvfile::CommentOfNumber(number);
    const bool badBuffer = size < 0 || (size > 0 && !buffer);
    if (!path || !*path || badBuffer || comment < 0) return ERROR_BAD_ARGUMENT;
    if (!zvfile::IsValidOption(option)) return ERROR_BAD_RECORD_SIZE;
    std::string text;
    const int32_t result = zvfile::ReadComment(path, comment, option, text);
    if (result != SUCCESS) return result;
    if (text.empty()) return 0;
    if (size > 0) {
      const size_t count = std::min(text.size(), static_cast<size_t>(size) - 1);
      std::memcpy(buffer, text.data(), count);
      buffer[count] = '\0';
    }
    return static_cast<int32_t>(text.size() + 1);
  });
}
