#include "services/zvdlgutil/file_name_utility.h"

namespace {

// Where the name, and in it the extension's dot, stand in a path. Without an extension the dot's place is the end of
// the path; a dot at the very end is one.
struct Parts {
  size_t name;
  size_t dot;
};

Parts Split(const std::wstring& path) {
  const size_t separator = path.find_last_of(L"\\/:");
  const size_t name = separator == std::wstring::npos ? 0 : separator + 1;
  const size_t dot = path.rfind(L'.');
  const size_t firstOther = path.find_first_not_of(L'.', name);
  const bool hasDot = dot != std::wstring::npos && firstOther != std::wstring::npos && dot > firstOther;
  return {name, hasDot ? dot : path.size()};
}

}  // namespace

CString CZVFileNameUtility::ExtractFileExt(const CString& path) {
  const Parts parts = Split(path.str());
  return parts.dot < path.str().size() ? path.str().substr(parts.dot + 1) : std::wstring();
}

CString CZVFileNameUtility::ExtractFileName(const CString& path) {
  const Parts parts = Split(path.str());
  return path.str().substr(parts.name, parts.dot - parts.name);
}

CString CZVFileNameUtility::ExtractFilePath(const CString& path) {
  const size_t name = Split(path.str()).name;
  // The colon of a drive stays, a separator goes.
  const bool endsAtSeparator = name > 0 && path.str()[name - 1] != L':';
  return path.str().substr(0, endsAtSeparator ? name - 1 : name);
}

CString CZVFileNameUtility::UpdateFileName(const CString& path, const CString& name) {
  const Parts parts = Split(path.str());
  return path.str().substr(0, parts.name) + name.str() + path.str().substr(parts.dot);
}
