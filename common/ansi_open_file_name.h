// WideOpenFileName: the wide form of a caller's OPENFILENAMEA for the length of a call. Nothing goes back to the caller's
// record but the place of its lpstrFilter, which is left at the last string of the list.
#pragma once

#include "common/ansi_text.h"
#include "platform/win32.h"

class WideOpenFileName {
 public:
  // The record may be changed by the call; what was allocated for it is kept apart.
  explicit WideOpenFileName(OPENFILENAMEA& ansi);
  OPENFILENAMEW* get() { return &record_; }

 private:
  OPENFILENAMEW record_ = {};
  CoreBlock<wchar_t> filter_, customFilter_, file_, fileTitle_;
  WideDup initialFolder_, title_, defaultExtension_, templateName_;
};
