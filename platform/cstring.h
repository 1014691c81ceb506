// CString: a wide string over std::wstring with the operations and names of the Windows framework. It converts to
// LPCWSTR by itself, so it goes wherever the platform takes text. Indices and lengths count characters (UTF-16 units on
// Windows); an index out of range gives an empty result, never undefined behaviour, except in GetAt, SetAt and
// operator[]. Compiles on every system; reading string resources is Windows only.
#pragma once

#include <cstdarg>
#include <functional>
#include <string>
#include <string_view>

#include "platform/types.h"

class CString {
 public:
  CString() = default;
  CString(LPCWSTR text) : text_(text ? text : L"") {}
  CString(LPCWSTR text, int length) : text_(text ? std::wstring(text, static_cast<size_t>(length)) : std::wstring()) {}
  explicit CString(wchar_t character, int count = 1) : text_(static_cast<size_t>(count), character) {}
  // From the system's ANSI code page (UTF-8 elsewhere).
  explicit CString(const char* text);
  CString(std::wstring text) : text_(std::move(text)) {}
  CString(std::wstring_view text) : text_(text) {}

  CString& operator=(LPCWSTR text) {
    text_ = text ? std::wstring(text) : std::wstring();
    return *this;
  }
  CString& operator=(wchar_t character) {
    text_.assign(1, character);
    return *this;
  }

  operator LPCWSTR() const { return text_.c_str(); }
  LPCWSTR GetString() const { return text_.c_str(); }
  const std::wstring& str() const { return text_; }

  int GetLength() const { return static_cast<int>(text_.size()); }
  BOOL IsEmpty() const { return text_.empty(); }
  void Empty() { text_.clear(); }
  wchar_t GetAt(int index) const { return text_[static_cast<size_t>(index)]; }
  void SetAt(int index, wchar_t character) { text_[static_cast<size_t>(index)] = character; }
  wchar_t operator[](int index) const { return text_[static_cast<size_t>(index)]; }

  // A buffer of at least `length` characters plus the terminator, for a function that writes text. ReleaseBuffer takes
  // the written length, or finds the terminator when it gets -1. Until then only the buffer may be used.
  LPWSTR GetBuffer(int length = 0);
  LPWSTR GetBufferSetLength(int length);
  void ReleaseBuffer(int length = -1);
  void ReleaseBufferSetLength(int length) { ReleaseBuffer(length); }
  void FreeExtra() { text_.shrink_to_fit(); }
  void SetString(LPCWSTR text) { *this = text; }
  void SetString(LPCWSTR text, int length) { *this = CString(text, length); }

  CString Left(int count) const { return Mid(0, count); }
  CString Right(int count) const;
  CString Mid(int first) const { return Mid(first, GetLength()); }
  CString Mid(int first, int count) const;
  // The leading run of characters that are (not) in `set`.
  CString SpanIncluding(LPCWSTR set) const;
  CString SpanExcluding(LPCWSTR set) const;
  // The next run of characters that are not in `separators`, from `start` on, which is moved behind it; -1 at the end.
  CString Tokenize(LPCWSTR separators, int& start) const;

  // Positions, or -1.
  int Find(wchar_t character, int start = 0) const;
  int Find(LPCWSTR text, int start = 0) const;
  int ReverseFind(wchar_t character) const;
  int FindOneOf(LPCWSTR set) const;

  // Below, equal or above 0. NoCase folds letters of every script, without regard to locale.
  int Compare(LPCWSTR other) const;
  int CompareNoCase(LPCWSTR other) const;
  int Collate(LPCWSTR other) const;

  CString& MakeUpper();
  CString& MakeLower();
  CString& MakeReverse();
  CString& Trim();
  CString& Trim(LPCWSTR set);
  CString& Trim(wchar_t character) { return TrimRight(character).TrimLeft(character); }
  CString& TrimLeft();
  CString& TrimLeft(LPCWSTR set);
  CString& TrimLeft(wchar_t character);
  CString& TrimRight();
  CString& TrimRight(LPCWSTR set);
  CString& TrimRight(wchar_t character);

  // Each returns the number of replaced or removed occurrences, or the new length.
  int Replace(wchar_t from, wchar_t to);
  int Replace(LPCWSTR from, LPCWSTR to);
  int Remove(wchar_t character);
  int Insert(int index, wchar_t character);
  int Insert(int index, LPCWSTR text);
  int Delete(int index, int count = 1);

  void Append(LPCWSTR text) { text_ += text ? text : L""; }
  void Append(LPCWSTR text, int length) { text_.append(text, static_cast<size_t>(length)); }
  void AppendChar(wchar_t character) { text_ += character; }
  CString& operator+=(const CString& other) { return text_ += other.text_, *this; }
  CString& operator+=(LPCWSTR other) { return Append(other), *this; }
  CString& operator+=(wchar_t character) { return AppendChar(character), *this; }

  // printf formatting, in which %s takes wide text. A CString may be passed as it is.
  template <class... Arguments>
  void Format(LPCWSTR format, const Arguments&... arguments) {
    FormatList(format, Plain(arguments)...);
  }
  template <class... Arguments>
  void AppendFormat(LPCWSTR format, const Arguments&... arguments) {
    CString formatted;
    formatted.FormatList(format, Plain(arguments)...);
    text_ += formatted.text_;
  }
  void FormatV(LPCWSTR format, va_list arguments);

#ifdef _WIN32
  // The format is string resource `formatId`; an absent one gives an empty text.
  template <class... Arguments>
  void Format(UINT formatId, const Arguments&... arguments) {
    CString format;
    if (format.LoadString(formatId)) {
      Format(static_cast<LPCWSTR>(format), arguments...);
    } else {
      Empty();
    }
  }
  // False, and empty, when the resource is absent.
  BOOL LoadString(UINT id);
  BOOL LoadString(HINSTANCE module, UINT id);
#endif

  friend bool operator==(const CString& a, const CString& b) { return a.text_ == b.text_; }
  friend bool operator==(const CString& a, LPCWSTR b) { return a.Compare(b) == 0; }
  friend bool operator<(const CString& a, const CString& b) { return a.text_ < b.text_; }
  friend bool operator<(const CString& a, LPCWSTR b) { return a.Compare(b) < 0; }
  friend bool operator>(const CString& a, const CString& b) { return b.text_ < a.text_; }
  friend bool operator>(const CString& a, LPCWSTR b) { return a.Compare(b) > 0; }
  friend bool operator<=(const CString& a, const CString& b) { return !(b < a); }
  friend bool operator>=(const CString& a, const CString& b) { return !(a < b); }

  friend CString operator+(const CString& a, const CString& b) { return CString(a.text_ + b.text_); }
  friend CString operator+(const CString& a, LPCWSTR b) { return CString(a.text_ + (b ? b : L"")); }
  friend CString operator+(LPCWSTR a, const CString& b) { return CString((a ? a : L"") + b.text_); }
  friend CString operator+(const CString& a, wchar_t b) { return CString(a.text_ + b); }
  friend CString operator+(wchar_t a, const CString& b) { return CString(a + b.text_); }

 private:
  static LPCWSTR Plain(const CString& text) { return text.GetString(); }
  template <class Argument>
  static Argument Plain(const Argument& argument) requires(!std::is_array_v<Argument>) {
    return argument;
  }
  template <class Character, size_t size>
  static const Character* Plain(const Character (&text)[size]) {
    return text;
  }

  void FormatList(LPCWSTR format, ...);

  std::wstring text_;
};

template <>
struct std::hash<CString> {
  size_t operator()(const CString& text) const noexcept { return std::hash<std::wstring>()(text.str()); }
};

// Part `index` (from 0) of `full`, cut at `separator`. False, and empty, when there are not that many parts.
BOOL AfxExtractSubString(CString& part, LPCWSTR full, int index, wchar_t separator = L'\n');
