#include "pickers/page_probe.h"

#include "services/zvfile/zvfile.h"

namespace {

constexpr uint32_t kCountPages = 1;

class WithoutRedirection {
 public:
  WithoutRedirection() {
    GetLoadRedirect(&first_, &second_);
    SetLoadRedirect(nullptr, nullptr);
  }
  WithoutRedirection(const WithoutRedirection&) = delete;
  WithoutRedirection& operator=(const WithoutRedirection&) = delete;
  ~WithoutRedirection() { SetLoadRedirect(first_, second_); }

 private:
  void* first_ = nullptr;
  void* second_ = nullptr;
};

int32_t ReadPageInfo(LPCWSTR path, int32_t page, uint32_t flags, FILEINFO& info) {
  const WithoutRedirection direct;
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = page;
  info = {};
  info.uStructSize = sizeof(info);
  return GetFileInfo(path, &info, sizeof(info), flags, &option);
}

// The file library says no more than that there is no such page.
int32_t LastPage(LPCWSTR path) {
  FILEINFO info;
  return ReadPageInfo(path, 1, kCountPages, info) == SUCCESS ? info.totalPages : 0;
}

}  // namespace

bool IsMultiPage(LPCWSTR path) {
  FILEINFO info;
  return ReadPageInfo(path, 2, 0, info) == SUCCESS && info.pageNumber != 1;
}

bool ProbePage(LPCWSTR path, int32_t page, int32_t* reported) {
  if (page < 1 || !reported) {
    return false;
  }
  FILEINFO info;
  const int32_t status = ReadPageInfo(path, page, 0, info);
  if (status == SUCCESS) {
    *reported = info.pageNumber;
  } else if (const int32_t last = status == ERROR_PAGE_MISSING ? LastPage(path) : 0; last > 0) {
    *reported = last;
  }
  return status == SUCCESS && info.pageNumber == page;
}
