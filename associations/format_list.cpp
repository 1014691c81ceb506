#include "associations/format_list.h"

#include <algorithm>
#include <cwchar>

CString FormatName(const CString& text) {
  const int bracket = text.Find(L'(');
  if (bracket <= 0) {
    return text;
  }
  const int cut = std::min(bracket, text.ReverseFind(L' '));
  return cut < 0 ? CString() : text.Left(cut);
}

void AppendExtensions(const CString& patterns, const CString& name, CFormatArray& formats) {
  for (int point = patterns.Find(L'.'); point >= 0;) {
    const int semicolon = patterns.Find(L';', point);
    const int end = semicolon < 0 ? patterns.GetLength() : semicolon;
    formats.Add({patterns.Mid(point, end - point), name});
    point = patterns.Find(L'.', end);
  }
}

void ParseFormats(const wchar_t* list, CFormatArray& formats) {
  while (*list) {
    const CString name = list;
    list += name.GetLength() + 1;
    const CString patterns = list;
    list += patterns.GetLength() + 1;
    AppendExtensions(patterns, FormatName(name), formats);
  }
}

CString JoinSelected(const wchar_t* list) {
  CString joined;
  while (list && *list) {
    if (*list != L'.') {
      joined += L'.';
    }
    joined += list;
    list += std::wcslen(list) + 2;
  }
  return joined.MakeUpper();
}
