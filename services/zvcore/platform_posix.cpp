#include <cstring>

#include "services/zvcore/memory.h"
#include "services/zvcore/platform_core.h"

// Here the system's 8-bit text is UTF-8.
namespace zvcore {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Reads one character and moves on; an invalid byte is one replacement character.
char32_t NextFromUtf8(const unsigned char*& at) {
  const unsigned char lead = *at++;
  if (lead < 0x80) return lead;
  int following = 0;
  char32_t smallest = 0;
  char32_t value = 0;
  if ((lead & 0xE0) == 0xC0) {
    following = 1, smallest = 0x80, value = lead & 0x1F;
  } else if ((lead & 0xF0) == 0xE0) {
    following = 2, smallest = 0x800, value = lead & 0x0F;
  } else if ((lead & 0xF8) == 0xF0) {
    following = 3, smallest = 0x10000, value = lead & 0x07;
  } else {
    return kReplacement;
  }
  for (int i = 0; i < following; ++i) {
    if ((at[i] & 0xC0) != 0x80) return kReplacement;
    value = value << 6 | (at[i] & 0x3F);
  }
  if (value < smallest || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return kReplacement;
  at += following;
  return value;
}

char32_t NextFromUtf16(const ZVCHAR*& at) {
  const char32_t unit = *at++;
  if (unit < 0xD800 || unit > 0xDFFF) return unit;
  if (unit > 0xDBFF || *at < 0xDC00 || *at > 0xDFFF) return kReplacement;
  return 0x10000 + ((unit - 0xD800) << 10) + (static_cast<char32_t>(*at++) - 0xDC00);
}

char* PutUtf8(char* out, char32_t c) {
  if (c < 0x80) {
    *out++ = static_cast<char>(c);
  } else if (c < 0x800) {
    *out++ = static_cast<char>(0xC0 | c >> 6);
    *out++ = static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    *out++ = static_cast<char>(0xE0 | c >> 12);
    *out++ = static_cast<char>(0x80 | (c >> 6 & 0x3F));
    *out++ = static_cast<char>(0x80 | (c & 0x3F));
  } else {
    *out++ = static_cast<char>(0xF0 | c >> 18);
    *out++ = static_cast<char>(0x80 | (c >> 12 & 0x3F));
    *out++ = static_cast<char>(0x80 | (c >> 6 & 0x3F));
    *out++ = static_cast<char>(0x80 | (c & 0x3F));
  }
  return out;
}

}  // namespace

ZVCHAR* NewWideFromAnsi(const char* text) noexcept {
  // A byte becomes one unit at most: one of a single byte, or the pair of four.
  auto* copy = static_cast<ZVCHAR*>(AllocateZeroed((std::strlen(text) + 1) * sizeof(ZVCHAR)));
  if (!copy) return nullptr;
  ZVCHAR* out = copy;
  for (auto* at = reinterpret_cast<const unsigned char*>(text); *at;) {
    const char32_t c = NextFromUtf8(at);
    if (c >= 0x10000) {
      *out++ = static_cast<ZVCHAR>(0xD800 + ((c - 0x10000) >> 10));
      *out++ = static_cast<ZVCHAR>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
      *out++ = static_cast<ZVCHAR>(c);
    }
  }
  return copy;
}

char* NewAnsiFromWide(const ZVCHAR* text) noexcept {
  size_t units = 0;
  while (text[units]) ++units;
  auto* copy = static_cast<char*>(AllocateZeroed(units * 3 + 1));
  if (!copy) return nullptr;
  char* out = copy;
  for (const ZVCHAR* at = text; *at;) out = PutUtf8(out, NextFromUtf16(at));
  return copy;
}

size_t AnsiPrefixLength(const char* text, size_t limit) noexcept {
  const size_t length = std::strlen(text);
  if (length <= limit) return length;
  while (limit > 0 && (text[limit] & 0xC0) == 0x80) --limit;
  return limit;
}

}  // namespace zvcore
