#include "conversion/page_list.h"

#include <algorithm>
#include <cwchar>
#include <numeric>
#include <utility>

namespace {

void AddOnce(std::vector<int32_t>& pages, int32_t page) {
  if (std::find(pages.begin(), pages.end(), page) == pages.end()) pages.push_back(page);
}

// Range ends come from typed text: without a limit a slip such as 1-2000000000 would exhaust memory.
constexpr int32_t kMostPages = 1'000'000;

bool AddRange(std::vector<int32_t>& pages, int32_t last) {
  if (pages.empty()) return false;
  const int32_t first = pages.back();
  pages.pop_back();
  const auto [low, high] = std::minmax(first, last);
  if (high - low >= kMostPages) return false;
  std::vector<int32_t> present = pages;
  std::sort(present.begin(), present.end());
  for (int64_t page = low; page <= high; ++page) {  // wider than the pages, of which the last can be the largest number
    if (!std::binary_search(present.begin(), present.end(), page)) pages.push_back(static_cast<int32_t>(page));
  }
  return true;
}

}  // namespace

bool ParsePageList(const CString& text, std::vector<int32_t>& pages) {
  pages.clear();
  bool rangeOpen = false;
  int itemStart = 0;
  for (int index = 0; index <= text.GetLength(); ++index) {
    const wchar_t character = index < text.GetLength() ? text[index] : L',';
    if (character != L',' && character != L'-') continue;

    const CString item = text.Mid(itemStart, index - itemStart);
    itemStart = index + 1;
    const int32_t page = static_cast<int32_t>(_wtoi(item));
    if (item.IsEmpty() || page < 1) return false;

    if (character == L'-') {
      if (rangeOpen) return false;
      AddOnce(pages, page);
      rangeOpen = true;
    } else if (std::exchange(rangeOpen, false)) {
      if (!AddRange(pages, page)) return false;
    } else {
      AddOnce(pages, page);
    }
  }
  return true;
}

std::vector<int32_t> ClipPages(const std::vector<int32_t>& pages, int32_t pageTotal) {
  std::vector<int32_t> clipped;
  if (pages.empty()) {
    clipped.resize(static_cast<size_t>(std::max(pageTotal, 0)));
    std::iota(clipped.begin(), clipped.end(), 1);
  } else {
    std::copy_if(pages.begin(), pages.end(), std::back_inserter(clipped),
                 [pageTotal](int32_t page) { return page <= pageTotal; });
  }
  return clipped;
}

void AssignPages(CONVERSIONFILEOPTIONS& options, const std::vector<int32_t>& pages) {
  options.pages = new int32_t[std::max<size_t>(pages.size(), 1)]{};
  std::copy(pages.begin(), pages.end(), options.pages);
  options.pageCount = static_cast<int32_t>(pages.size());
}

void FreePages(CONVERSIONFILEOPTIONS& options) {
  delete[] std::exchange(options.pages, nullptr);
  options.pageCount = -1;
}
