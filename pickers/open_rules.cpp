#include "pickers/open_rules.h"

#include "include/zvfiledlg_open.h"
#include "pickers/open_filters.h"

namespace {

std::wstring AsFolder(std::wstring folder) {
  if (folder.empty() || folder.back() != L'\\') {
    folder += L'\\';
  }
  return folder;
}

const wchar_t* PatternBehindName(const wchar_t* name) { return name + std::wstring_view(name).size() + 1; }

std::vector<std::wstring> PatternsOf(const wchar_t* filter) {
  std::vector<std::wstring> patterns;
  while (*filter) {
    const std::wstring& pattern = patterns.emplace_back(PatternBehindName(filter));
    if (pattern.empty()) {
      break;  // the end of the list already, behind a name without its pattern
    }
    filter = PatternBehindName(filter) + pattern.size() + 1;
  }
  return patterns;
}

}  // namespace

const wchar_t* ChooseOpenFilter(const wchar_t* callerFilter, uint32_t dialogFlags) {
  if (callerFilter && *callerFilter) {
    return callerFilter;
  }
  return dialogFlags & DLG_OPEN_VECTOR_ONLY ? kVectorFilter : kOpenFilter;
}

DWORD OpenDialogFlags(DWORD callerFlags, uint32_t dialogFlags, bool hasHelp) {
  DWORD flags = callerFlags | OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_ENABLETEMPLATE |
                OFN_ENABLEHOOK | OFN_HIDEREADONLY;
  if (dialogFlags & DLG_OPEN_RESIZABLE) {
    flags |= OFN_ENABLESIZING;
  }
  if (dialogFlags & DLG_OPEN_FILE_MAY_NOT_EXIST) {
    flags &= ~static_cast<DWORD>(OFN_FILEMUSTEXIST);
  }
  if (dialogFlags & DLG_OPEN_PATH_MAY_NOT_EXIST) {
    flags &= ~static_cast<DWORD>(OFN_PATHMUSTEXIST);
  }
  return hasHelp ? flags | OFN_SHOWHELP : flags & ~static_cast<DWORD>(OFN_SHOWHELP);
}

uint32_t SelectionLengthFor(uint32_t callerLength) {
  return callerLength >= MAX_PATH ? callerLength : kSelectionLength;
}

std::optional<std::wstring> DefaultExtension(const FileTypeRows& rows, int32_t row) {
  if (!rows.filter) {
    return L"";
  }
  std::vector<std::wstring> patterns = PatternsOf(rows.filter);
  if (rows.customFilter && rows.count > static_cast<int32_t>(patterns.size())) {
    patterns.insert(patterns.begin(), PatternBehindName(rows.customFilter));
  }
  if (row < 0 || row >= static_cast<int32_t>(patterns.size())) {
    return std::nullopt;
  }
  const std::wstring& pattern = patterns[static_cast<size_t>(row)];
  if (pattern == L"*.*") {
    return std::nullopt;
  }
  constexpr size_t kBeforeExtension = 2;  // "*."
  constexpr size_t kLongestExtension = 3;
  return pattern.size() > kBeforeExtension ? pattern.substr(kBeforeExtension, kLongestExtension) : L"";
}

std::vector<std::wstring> ParseSelectionList(const wchar_t* list) {
  const std::wstring first = list;
  if (first.empty()) {
    return {};
  }
  const wchar_t* name = list + first.size() + 1;
  if (!*name) {
    return {first};
  }
  const std::wstring folder = AsFolder(first);
  std::vector<std::wstring> files;
  for (; *name; name += std::wstring_view(name).size() + 1) {
    files.push_back(folder + name);
  }
  return files;
}

std::vector<std::wstring> ParseQuotedSelection(const std::wstring& text) {
  if (text.empty()) {
    return {};
  }
  const size_t firstQuote = text.find(L'"');
  if (firstQuote == std::wstring::npos) {
    return {text};
  }
  constexpr size_t kBetweenNames = 3;  // closing quotation mark, blank, opening quotation mark
  const std::wstring folder = AsFolder(text.substr(0, firstQuote));
  std::wstring rest = text.substr(firstQuote + 1);
  std::vector<std::wstring> files;
  for (size_t quote; (quote = rest.find(L'"')) != std::wstring::npos && quote >= 1;) {
    files.push_back(folder + rest.substr(0, quote));
    rest = quote + kBetweenNames <= rest.size() ? rest.substr(quote + kBetweenNames) : L"";
  }
  return files;
}

SystemVersion SystemVersionOf(DWORD getVersionAnswer) {
  constexpr DWORD kOlderFamily = 0x80000000;
  const DWORD platform = getVersionAnswer & kOlderFamily ? VER_PLATFORM_WIN32_WINDOWS : VER_PLATFORM_WIN32_NT;
  return {platform, LOBYTE(LOWORD(getVersionAnswer)), HIBYTE(LOWORD(getVersionAnswer))};
}

bool IsOldStyleShell(const SystemVersion& version) {
  const bool isVersion51 = version.major == 5 && version.minor == 1;
  return !isVersion51 && version.major != 6;
}

bool LayoutEndsList(DWORD openFileNameFlags, const SystemVersion& version) {
  const bool isOldest = (version.platform == VER_PLATFORM_WIN32_NT && version.major < 5) ||
                        (version.platform == VER_PLATFORM_WIN32_WINDOWS && version.major == 4 && version.minor == 0);
  return !(openFileNameFlags & OFN_ENABLESIZING) || (isOldest && IsOldStyleShell(version));
}
