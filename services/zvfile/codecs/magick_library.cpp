#include "services/zvfile/codecs/magick_library.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <shared_mutex>

#include <magick/api.h>

#ifdef _WIN32
#include <windows.h>
#endif

namespace zvfile::magick {
namespace {

constexpr int32_t kBitsPerPixel = 64;  // as the library keeps them
// Photographs of the formats concerned stay far below.
constexpr int64_t kMaxMemory = int64_t{6} << 30;

// Set once a fatal error has left the library half way: its locks may be held for ever, so it is not entered again.
std::atomic<bool> broken = false;

thread_local FatalGuard* innermost = nullptr;

// The library calls abort when this returns, so it does not.
__attribute__((noreturn)) void OnFatal(const ExceptionType, const char*, const char*) { FatalGuard::Leave(); }

void Ignore(const ExceptionType, const char*, const char*) {}

// Start-up changes the process's error mode and crash filter on Windows; the host's own are put back.
void Initialize() {
#ifdef _WIN32
  const UINT mode = GetErrorMode();
  const LPTOP_LEVEL_EXCEPTION_FILTER filter = SetUnhandledExceptionFilter(nullptr);
#endif
  ExceptionInfo exception;
  GetExceptionInfo(&exception);
  InitializeMagickEx("", MAGICK_OPT_NO_SIGNAL_HANDER, &exception);
  DestroyExceptionInfo(&exception);
#ifdef _WIN32
  SetUnhandledExceptionFilter(filter);
  SetErrorMode(mode);
#endif
}

class Library {
 public:
  Library() {
    Initialize();
    SetFatalErrorHandler(OnFatal);
    SetErrorHandler(Ignore);
    SetWarningHandler(Ignore);
    const Limits limits;
    SetMagickResourceLimit(DiskResource, 0);
    SetMagickResourceLimit(MapResource, 0);
    SetMagickResourceLimit(ThreadsResource, 1);
    SetMagickResourceLimit(MemoryResource, kMaxMemory);
    SetMagickResourceLimit(WidthResource, limits.maxSide);
    SetMagickResourceLimit(HeightResource, limits.maxSide);
    SetMagickResourceLimit(PixelsResource, kMaxMemory / static_cast<int64_t>(sizeof(PixelPacket)));
  }
  // At the end of the process a thread may have been stopped inside the library; it is then left as it is.
  ~Library() {
    if (!broken && users_.try_lock()) {
      DestroyMagick();
      users_.unlock();
    }
  }
  std::shared_mutex& Users() { return users_; }

 private:
  std::shared_mutex users_;
};

Library& TheLibrary() {
  static Library library;
  return library;
}

ImageInfo* MakeInfo(const Format& format) {
  ImageInfo* info = CloneImageInfo(nullptr);
  std::snprintf(info->magick, sizeof info->magick, "%s", format.reader);
  std::snprintf(info->filename, sizeof info->filename, "%s:image", format.reader);
  return info;
}

int32_t ResultOf(const ExceptionInfo& exception) {
  const bool resource = exception.severity >= ResourceLimitError && exception.severity < TypeError;
  return resource ? ERROR_LIMIT_EXCEEDED : ERROR_FILE_DAMAGED;
}

// Some readers give the pages before the wanted one as well, and the last one when there are too few: goes to the page by its
// number and drops what is before it.
Image* SelectPage(unsigned long scene, Image* list) {
  while (list && list->scene != scene) {
    Image* first = RemoveFirstImageFromList(&list);
    DestroyImage(first);
  }
  return list;
}

// A reader that comes to the end of its data too soon gives what it has and says so in the image alone.
bool IsWhole(const Image& image) { return image.exception.severity < ErrorException; }

}  // namespace

FatalGuard::FatalGuard() : outer_(innermost) { innermost = this; }

FatalGuard::~FatalGuard() { innermost = outer_; }

void FatalGuard::Leave() {
  broken = true;
  if (!innermost) std::abort();
  std::longjmp(innermost->jump_, 1);
}

void ImageDeleter::operator()(_Image* image) const {
  if (!broken) FatalGuard().Run([&] { DestroyImageList(image); });
}

int32_t Decode(std::span<const uint8_t> bytes, const Format& format, int32_t page, IMAGESIZE size, const Limits& limits,
               ImagePtr& image) {
  if (page < 1 || page > limits.maxPages) return ERROR_PAGE_MISSING;
  const std::shared_lock<std::shared_mutex> user(TheLibrary().Users());
  if (broken) return ERROR_OUT_OF_MEMORY;
  const unsigned long scene = static_cast<unsigned long>(page) - 1;
  int32_t result = SUCCESS;
  Image* decoded = nullptr;
  const bool survived = FatalGuard().Run([&] {
    ImageInfo* info = MakeInfo(format);
    // The Photo CD reader takes a page number for a size.
    if (format.format != FMT_PCD) {
      info->subimage = scene;
      info->subrange = 1;
    }
    if (size.width > 0 && size.height > 0) {
      char text[32];
      std::snprintf(text, sizeof text, "%dx%d", size.width, size.height);
      CloneString(&info->size, text);
    }
    ExceptionInfo exception;
    GetExceptionInfo(&exception);
    decoded = BlobToImage(info, bytes.data(), bytes.size(), &exception);
    if (!decoded || exception.severity >= ErrorException) result = ResultOf(exception);
    if (decoded) decoded = SelectPage(scene, decoded);
    if (result == SUCCESS && !decoded) result = ERROR_PAGE_MISSING;
    DestroyExceptionInfo(&exception);
    DestroyImageInfo(info);
  });
  if (!survived) return ERROR_OUT_OF_MEMORY;
  image.reset(decoded);
  if (result == SUCCESS && !IsWhole(*image)) result = ERROR_FILE_DAMAGED;
  if (result != SUCCESS) return result;
  return limits.CheckImage(static_cast<int64_t>(image->columns), static_cast<int64_t>(image->rows), kBitsPerPixel);
}

int32_t Survey(std::span<const uint8_t> bytes, const Format& format, const Limits& limits, int32_t& pages) {
  const std::shared_lock<std::shared_mutex> user(TheLibrary().Users());
  if (broken) return ERROR_OUT_OF_MEMORY;
  int32_t result = SUCCESS;
  int32_t count = 0;
  const bool survived = FatalGuard().Run([&] {
    ImageInfo* info = MakeInfo(format);
    ExceptionInfo exception;
    GetExceptionInfo(&exception);
    Image* images = PingBlob(info, bytes.data(), bytes.size(), &exception);
    if (!images) result = ResultOf(exception);
    for (const Image* image = images; image && count < limits.maxPages && result == SUCCESS; image = image->next) {
      result = limits.CheckPlausible(static_cast<int64_t>(image->columns), static_cast<int64_t>(image->rows),
                                     kBitsPerPixel, bytes.size(), format.mostPixelsPerByte * (kBitsPerPixel / 8));
      ++count;
    }
    if (images) DestroyImageList(images);
    DestroyExceptionInfo(&exception);
    DestroyImageInfo(info);
  });
  if (!survived) return ERROR_OUT_OF_MEMORY;
  pages = count;
  return result;
}

}  // namespace zvfile::magick
