#include "common/ansi_open_file_name.h"

namespace {

// A buffer of the caller with room for `size` characters and one more; null when the caller has none.
CoreBlock<wchar_t> ConvertBuffer(const char* text, DWORD size) {
  if (!text) {
    return nullptr;
  }
  CoreBlock<wchar_t> wide = NewCoreBlock<wchar_t>(size + 1u);
  if (wide) {
    Z_A2W::Convert(text, wide.get(), static_cast<int32_t>(size + 1));
  }
  return wide;
}

CoreBlock<wchar_t> ConvertFilter(const char** filter) {
  if (!*filter || **filter == '\0') {
    return nullptr;
  }
  CoreBlock<wchar_t> wide = ConvertBlock(*filter, ListLength(*filter));
  MoveToLastString(filter);
  return wide;
}

}  // namespace

WideOpenFileName::WideOpenFileName(OPENFILENAMEA& ansi)
    : filter_(ConvertFilter(&ansi.lpstrFilter)),
      customFilter_(ConvertBuffer(ansi.lpstrCustomFilter, ansi.nMaxCustFilter)),
      file_(ConvertBuffer(ansi.lpstrFile, ansi.nMaxFile)),
      fileTitle_(ConvertBuffer(ansi.lpstrFileTitle, ansi.nMaxFileTitle)),
      initialFolder_(ToWide(ansi.lpstrInitialDir)),
      title_(ToWide(ansi.lpstrTitle)),
      defaultExtension_(ToWide(ansi.lpstrDefExt)),
      templateName_(ToWide(ansi.lpTemplateName)) {
  record_.lStructSize = ansi.lStructSize;
  record_.hwndOwner = ansi.hwndOwner;
  record_.hInstance = ansi.hInstance;
  record_.lpstrFilter = filter_.get();
  record_.lpstrCustomFilter = customFilter_.get();
  record_.nMaxCustFilter = ansi.nMaxCustFilter;
  record_.nFilterIndex = ansi.nFilterIndex;
  record_.lpstrFile = file_.get();
  record_.nMaxFile = ansi.nMaxFile;
  record_.lpstrFileTitle = fileTitle_.get();
  record_.nMaxFileTitle = ansi.nMaxFileTitle;
  record_.lpstrInitialDir = initialFolder_.get();
  record_.lpstrTitle = title_.get();
  record_.Flags = ansi.Flags;
  record_.nFileOffset = ansi.nFileOffset;
  record_.nFileExtension = ansi.nFileExtension;
  record_.lpstrDefExt = defaultExtension_.get();
  record_.lCustData = ansi.lCustData;
  record_.lpfnHook = ansi.lpfnHook;
  record_.lpTemplateName = templateName_.get();
  record_.pvReserved = ansi.pvReserved;
  record_.dwReserved = ansi.dwReserved;
  record_.FlagsEx = ansi.FlagsEx;
}
