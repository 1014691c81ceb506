// The page controls beside the preview, as arithmetic: which page is shown, which of the controls can be used, and what the
// labels say. The dialog copies the outcome into its controls; nothing here knows them.
#pragma once

#include <cstdint>

#include "platform/cstring.h"

class CZVPageNavigation {
 public:
  int Total() const { return total_; }
  int Current() const { return current_; }
  bool EditEnabled() const { return editEnabled_; }
  bool BackEnabled() const { return backEnabled_; }
  bool ForwardEnabled() const { return forwardEnabled_; }

  // A file was chosen: page 1, and no navigation unless it has at least two pages.
  void Start(int pageTotal);
  // Nothing, or several files, are chosen: the numbers stay, the controls cannot be used.
  void Disable();
  // A button or the end of an entry asks for a page; gives the page that the edit is to show, kept within the file.
  int Clamp(int page);
  // The edit shows a new number. One outside the file leaves the current page as it was.
  void Entered(int page);
  // Whether the preview can show the page that the edit names.
  bool IsShowable(int page) const { return page >= 1 && (total_ == -1 || page <= total_); }

  CString PageOfText() const;

 private:
  int total_ = -1;  // -1: fewer than two pages
  int current_ = 1;
  bool editEnabled_ = false;
  bool backEnabled_ = false;
  bool forwardEnabled_ = false;
};

// The chosen page numbers for the pages column, joined with commas; 260 characters or more are cut to 256 and an ellipsis.
// Empty without a selection.
CString PagesColumnText(const int32_t* pages, int32_t count);
