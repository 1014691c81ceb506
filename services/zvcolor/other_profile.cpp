// Formats that are not taken apart here. The file library knows them by content and reads the profiles of some.
#include <algorithm>
#include <span>

#include "services/zvcolor/image_profile.h"
#include "services/zvcolor/zvcolor.h"
#include "services/zvfile/zvfile.h"

namespace zvcolor {
namespace {

constexpr int32_t kFormatsWithProfiles[] = {FMT_WEBP, FMT_JP2, FMT_JPX};

// Formats of the dialog's filter that the file library does not read: PostScript, also behind a DOS header, and the Macintosh
// picture, whose version opcode stands behind 512 bytes of the application's and a size and rectangle of 10.
bool IsKnownByName(const wchar_t* path) {
  std::unique_ptr<zvfile::FileSource> source;
  if (zvfile::FileSource::Open(path, source) != SUCCESS) {
    return false;
  }
  using namespace std::string_view_literals;
  return HasText(*source, 0, "%!PS"sv) || HasText(*source, 0, "\xC5\xD0\xD3\xC6"sv) ||
         HasText(*source, 522, "\x11\x01"sv) || HasText(*source, 522, "\x00\x11\x02\xFF"sv);
}

int32_t Describe(const wchar_t* path, int32_t page, FILEINFO& info) {
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = page;
  const int32_t status = GetFileInfo(path, &info, sizeof(info), 0, &option);
  switch (status) {
    case ERROR_FILE_MISSING:
    case ERROR_FILE_READ: return ERROR_FILE_OPEN;
    case ERROR_FILE_EMPTY:
    case ERROR_FILE_FORMAT: return IsKnownByName(path) ? ERROR_PROFILE_REFUSED : ERROR_FILE_FORMAT;
    default: return status;
  }
}

class LoadedBitmap {
 public:
  LoadedBitmap() = default;
  LoadedBitmap(const LoadedBitmap&) = delete;
  LoadedBitmap& operator=(const LoadedBitmap&) = delete;
  ~LoadedBitmap() { FreeBitmap(&handle); }

  BITMAPHANDLE handle = {};
};

}  // namespace

int32_t ReadOtherProfile(const wchar_t* path, int32_t page, Bytes& profile) {
  FILEINFO info = {};
  const int32_t status = Describe(path, page, info);
  if (status != SUCCESS) {
    return status;
  }
  const auto* end = std::end(kFormatsWithProfiles);
  if (std::find(std::begin(kFormatsWithProfiles), end, info.format) == end) {
    return ERROR_PROFILE_REFUSED;
  }
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = page;
  LoadedBitmap bitmap;
  const int32_t loaded = LoadImageFile(path, &bitmap.handle, sizeof(bitmap.handle), 0, ORDER_BGR_OR_GRAY,
                                       LOADFILE_ALLOCATE | LOADFILE_STORE, nullptr, nullptr, &option, nullptr);
  if (loaded != SUCCESS) {
    return loaded;
  }
  const void* bytes = nullptr;
  uint64_t size = 0;
  GetBitmapMetadata(&bitmap.handle, METADATA_ICC_PROFILE, &bytes, &size);
  const auto* first = static_cast<const uint8_t*>(bytes);
  profile.assign(first, first + size);
  return profile.empty() ? ERROR_PROFILE_MISSING : SUCCESS;
}

int32_t ExplainOtherFormat(const wchar_t* path) {
  FILEINFO info = {};
  const int32_t status = Describe(path, 1, info);
  return status == SUCCESS ? ERROR_PROFILE_REFUSED : status;
}

}  // namespace zvcolor
