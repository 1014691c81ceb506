#include "pickers/page_probe.h"

#include "services/zvfile/zvfile.h"

namespace {

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

int32_t ReadPageInfo(LPCWSTR path, int32_t page, FILEINFO& info) {
  const WithoutRedirection direct;
  LOADFILEOPTION option = {};
  GetDefaultLoadFileOption(&option, sizeof(option));
  option.pageNumber = page;
  info = {};
  info.uStructSize = sizeof(info);
  return GetFileInfo(path, &info, sizeof(info), 0, &option);
}

}  // namespace

bool IsMultiPage(LPCWSTR path) {
  FILEINFO info;
  return ReadPageInfo(path, 2, info) == SUCCESS && info.pageNumber != 1;
}

bool ProbePage(LPCWSTR path, int32_t page, int32_t* reported) {
  if (page < 1 || !reported) {
    return false;
  }
  FILEINFO info;
  if (ReadPageInfo(path, page, info) != SUCCESS) {
    return false;
  }
  *reported = info.pageNumber;
  return info.pageNumber == page;
}
