#include "naming/date_generator.h"

#include <cwchar>

#include "naming/depositories.h"

CString FormatLocalTime(std::time_t moment, const CString& format) {
  std::tm local = {};
  if (moment == static_cast<std::time_t>(-1) || localtime_s(&local, &moment) != 0) {
    return CString();
  }
  wchar_t text[128];
  const size_t length = std::wcsftime(text, std::size(text), format, &local);
  // Some run-time libraries report the full room instead of 0 for a text that leaves none for its terminator.
  return length < std::size(text) ? CString(text, static_cast<int>(length)) : CString();
}

CString CZVDateGenerator::Generate() const {
  const CString format = DateFormats().GetString(formatId_);
  return FormatLocalTime(std::time(nullptr), format);
}
