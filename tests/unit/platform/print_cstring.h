// Lets GoogleTest show a CString in a failure message.
#pragma once

#include <ostream>

#include "platform/cstring.h"

inline void PrintTo(const CString& text, std::ostream* out) {
  *out << '"';
  for (int i = 0; i < text.GetLength(); ++i) {
    const wchar_t character = text[i];
    *out << (character < 0x80 ? static_cast<char>(character) : '?');
  }
  *out << '"';
}
