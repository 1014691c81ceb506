#include "conversion/page_rules.h"

void CZVPageNavigation::Start(int pageTotal) {
  const bool severalPages = pageTotal >= 2;
  total_ = severalPages ? pageTotal : -1;
  current_ = 1;
  editEnabled_ = severalPages;
  backEnabled_ = false;
  forwardEnabled_ = severalPages;
}

void CZVPageNavigation::Disable() { editEnabled_ = backEnabled_ = forwardEnabled_ = false; }

int CZVPageNavigation::Clamp(int page) {
  if (page > total_) {
    page = total_;
  }
  if (page < 1) {
    page = 1;
  }
  Entered(page);
  return page;
}

void CZVPageNavigation::Entered(int page) {
  const bool inFile = page >= 1 && page <= total_;
  if (inFile) {
    current_ = page;
  }
  backEnabled_ = inFile && page > 1;
  forwardEnabled_ = inFile && page < total_;
}

CString CZVPageNavigation::PageOfText() const {
  CString text;
  text.Format(L"%d/%d", current_, total_ > 0 ? total_ : current_);
  return text;
}

CString PagesColumnText(const int32_t* pages, int32_t count) {
  constexpr int kTextLimit = 260;
  constexpr int kKeptLength = 256;
  CString text;
  for (int32_t i = 0; pages && i < count; ++i) {
    text.AppendFormat(i == 0 ? L"%d" : L",%d", pages[i]);
  }
  return text.GetLength() < kTextLimit ? text : text.Left(kKeptLength) + L"...";
}
