#include "platform/cstring.h"

#include <algorithm>
#include <cwchar>

#ifndef _WIN32
#include <locale.h>
#include <wctype.h>
#endif

namespace {

constexpr std::wstring_view kBlanks = L" \t\n\v\f\r";

std::wstring_view View(LPCWSTR text) { return text ? std::wstring_view(text) : std::wstring_view(); }

int Position(size_t found) { return found == std::wstring::npos ? -1 : static_cast<int>(found); }

void TrimLeftOf(std::wstring& text, std::wstring_view set) {
  text.erase(0, std::min(text.find_first_not_of(set), text.size()));
}

void TrimRightOf(std::wstring& text, std::wstring_view set) { text.erase(text.find_last_not_of(set) + 1); }

}  // namespace

LPWSTR CString::GetBuffer(int length) {
  text_.resize(std::max(text_.size(), static_cast<size_t>(std::max(length, 0))));
  return text_.data();
}

LPWSTR CString::GetBufferSetLength(int length) {
  text_.resize(static_cast<size_t>(length));
  return text_.data();
}

void CString::ReleaseBuffer(int length) {
  text_.resize(length < 0 ? std::min(text_.find(L'\0'), text_.size()) : static_cast<size_t>(length));
}

CString CString::Right(int count) const {
  const int length = GetLength();
  return Mid(length - std::clamp(count, 0, length));
}

CString CString::Mid(int first, int count) const {
  const int length = GetLength();
  first = std::max(first, 0);
  if (first >= length || count <= 0) {
    return CString();
  }
  return CString(text_.substr(static_cast<size_t>(first), static_cast<size_t>(count)));
}

CString CString::SpanIncluding(LPCWSTR set) const {
  return CString(text_.substr(0, text_.find_first_not_of(View(set))));
}

CString CString::SpanExcluding(LPCWSTR set) const { return CString(text_.substr(0, text_.find_first_of(View(set)))); }

CString CString::Tokenize(LPCWSTR separators, int& start) const {
  const size_t first =
      start < 0 ? std::wstring::npos : text_.find_first_not_of(View(separators), static_cast<size_t>(start));
  if (first == std::wstring::npos) {
    start = -1;
    return CString();
  }
  const size_t end = std::min(text_.find_first_of(View(separators), first), text_.size());
  start = static_cast<int>(end + 1);
  return CString(text_.substr(first, end - first));
}

int CString::Find(wchar_t character, int start) const {
  return start < 0 ? -1 : Position(text_.find(character, static_cast<size_t>(start)));
}

int CString::Find(LPCWSTR text, int start) const {
  return start < 0 ? -1 : Position(text_.find(View(text), static_cast<size_t>(start)));
}

int CString::ReverseFind(wchar_t character) const { return Position(text_.rfind(character)); }

int CString::FindOneOf(LPCWSTR set) const { return Position(text_.find_first_of(View(set))); }

int CString::Compare(LPCWSTR other) const { return std::wstring_view(text_).compare(View(other)); }

CString& CString::MakeReverse() {
  std::reverse(text_.begin(), text_.end());
  return *this;
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }

CString& CString::Trim(LPCWSTR set) { return TrimRight(set).TrimLeft(set); }

CString& CString::TrimLeft() {
  TrimLeftOf(text_, kBlanks);
  return *this;
}

CString& CString::TrimLeft(LPCWSTR set) {
  TrimLeftOf(text_, View(set));
  return *this;
}

CString& CString::TrimLeft(wchar_t character) {
  TrimLeftOf(text_, {&character, 1});
  return *this;
}

CString& CString::TrimRight() {
  TrimRightOf(text_, kBlanks);
  return *this;
}

CString& CString::TrimRight(LPCWSTR set) {
  TrimRightOf(text_, View(set));
  return *this;
}

CString& CString::TrimRight(wchar_t character) {
  TrimRightOf(text_, {&character, 1});
  return *this;
}

int CString::Replace(wchar_t from, wchar_t to) {
  const auto count = std::count(text_.begin(), text_.end(), from);
  std::replace(text_.begin(), text_.end(), from, to);
  return static_cast<int>(count);
}

int CString::Replace(LPCWSTR from, LPCWSTR to) {
  const std::wstring search(View(from));
  const std::wstring replacement(View(to));
  if (search.empty()) {
    return 0;
  }
  int count = 0;
  for (size_t at = text_.find(search); at != std::wstring::npos; at = text_.find(search, at + replacement.size())) {
    text_.replace(at, search.size(), replacement);
    ++count;
  }
  return count;
}

int CString::Remove(wchar_t character) { return static_cast<int>(std::erase(text_, character)); }

int CString::Insert(int index, wchar_t character) { return Insert(index, std::wstring(1, character).c_str()); }

int CString::Insert(int index, LPCWSTR text) {
  text_.insert(static_cast<size_t>(std::clamp(index, 0, GetLength())), View(text));
  return GetLength();
}

int CString::Delete(int index, int count) {
  index = std::max(index, 0);
  if (index < GetLength() && count > 0) {
    text_.erase(static_cast<size_t>(index), static_cast<size_t>(count));
  }
  return GetLength();
}

void CString::FormatList(LPCWSTR format, ...) {
  va_list arguments;
  va_start(arguments, format);
  FormatV(format, arguments);
  va_end(arguments);
}

BOOL AfxExtractSubString(CString& part, LPCWSTR full, int index, wchar_t separator) {
  std::wstring_view rest = View(full);
  part.Empty();
  if (!full) {
    return FALSE;
  }
  for (; index > 0; --index) {
    const size_t end = rest.find(separator);
    if (end == std::wstring_view::npos) {
      return FALSE;
    }
    rest.remove_prefix(end + 1);
  }
  part = CString(rest.substr(0, rest.find(separator)));
  return TRUE;
}

#ifdef _WIN32

CString::CString(const char* text) {
  if (text && *text) {
    const int length = ::MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    ::MultiByteToWideChar(CP_ACP, 0, text, -1, GetBufferSetLength(length), length);
    ReleaseBuffer();
  }
}

int CString::CompareNoCase(LPCWSTR other) const {
  const std::wstring_view view = View(other);
  return ::CompareStringOrdinal(text_.data(), GetLength(), view.data(), static_cast<int>(view.size()), TRUE) -
         CSTR_EQUAL;
}

int CString::Collate(LPCWSTR other) const {
  const std::wstring_view view = View(other);
  return ::CompareStringW(LOCALE_USER_DEFAULT, 0, text_.data(), GetLength(), view.data(),
                          static_cast<int>(view.size())) -
         CSTR_EQUAL;
}

CString& CString::MakeUpper() {
  ::CharUpperBuffW(text_.data(), static_cast<DWORD>(text_.size()));
  return *this;
}

CString& CString::MakeLower() {
  ::CharLowerBuffW(text_.data(), static_cast<DWORD>(text_.size()));
  return *this;
}

void CString::FormatV(LPCWSTR format, va_list arguments) {
  // The runtime's own functions, not the C library wrappers: there %s means wide text, as everywhere on this platform.
  va_list again;
  va_copy(again, arguments);
  const int length = ::_vscwprintf(format, arguments);
  std::wstring formatted(static_cast<size_t>(std::max(length, 0)), L'\0');
  if (length > 0) {
    ::_vsnwprintf(formatted.data(), formatted.size(), format, again);
  }
  va_end(again);
  text_ = std::move(formatted);
}

#else

namespace {

// Letters of every script, whatever locale the program has set.
locale_t UnicodeLocale() {
  static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

}  // namespace

CString::CString(const char* text) {
  const locale_t former = ::uselocale(UnicodeLocale());
  std::mbstate_t state{};
  const size_t length = text ? std::mbsrtowcs(nullptr, &text, 0, &state) : 0;
  if (length != static_cast<size_t>(-1) && length != 0) {
    text_.resize(length);
    std::mbsrtowcs(text_.data(), &text, length, &state);
  }
  ::uselocale(former);
}

int CString::CompareNoCase(LPCWSTR other) const {
  return CString(*this).MakeLower().Compare(CString(other).MakeLower());
}

int CString::Collate(LPCWSTR other) const { return std::wcscoll(text_.c_str(), other); }

CString& CString::MakeUpper() {
  std::transform(text_.begin(), text_.end(), text_.begin(),
                 [](wchar_t c) { return ::towupper_l(static_cast<wint_t>(c), UnicodeLocale()); });
  return *this;
}

CString& CString::MakeLower() {
  std::transform(text_.begin(), text_.end(), text_.begin(),
                 [](wchar_t c) { return ::towlower_l(static_cast<wint_t>(c), UnicodeLocale()); });
  return *this;
}

void CString::FormatV(LPCWSTR format, va_list arguments) {
  // ISO C: wide text is %ls. A plain %s becomes that; %% stands for itself.
  std::wstring iso;
  for (LPCWSTR c = format; *c; ++c) {
    iso += *c;
    if (*c == L'%') {
      if (c[1] == L's') {
        iso += L'l';
      } else if (c[1] == L'%') {
        iso += *++c;
      }
    }
  }
  for (size_t size = 256;; size *= 2) {
    std::wstring formatted(size, L'\0');
    va_list again;
    va_copy(again, arguments);
    const int length = std::vswprintf(formatted.data(), size, iso.c_str(), again);
    va_end(again);
    if (length >= 0 || size > (size_t{1} << 20)) {
      formatted.resize(static_cast<size_t>(std::max(length, 0)));
      text_ = std::move(formatted);
      return;
    }
  }
}

#endif
