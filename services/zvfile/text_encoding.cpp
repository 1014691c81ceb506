// Text between the encodings that image files use.
#include "services/zvfile/metadata.h"

namespace zvfile {
namespace {

// Decodes one UTF-8 sequence at `at` and moves behind it; false leaves it alone. Overlong forms and surrogates are refused.
bool NextCode(std::string_view text, size_t& at, uint32_t& code) {
  const auto byte = [&](size_t i) { return static_cast<uint8_t>(text[i]); };
  const uint8_t first = byte(at);
  const size_t length = first < 0x80 ? 1 : first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first >= 0xF8 || (first >= 0x80 && first < 0xC2) || at + length > text.size()) return false;
  code = length == 1 ? first : first & (0xFFu >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return false;
    code = (code << 6) | (byte(at + i) & 0x3Fu);
  }
  constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < kLeast[length] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return false;
  at += length;
  return true;
}

void AppendUtf8(std::string& text, uint32_t code) {
  const auto add = [&](uint32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) {
    add(code);
  } else if (code < 0x800) {
    add(0xC0 | (code >> 6));
    add(0x80 | (code & 63));
  } else if (code < 0x10000) {
    add(0xE0 | (code >> 12));
    add(0x80 | ((code >> 6) & 63));
    add(0x80 | (code & 63));
  } else {
    add(0xF0 | (code >> 18));
    add(0x80 | ((code >> 12) & 63));
    add(0x80 | ((code >> 6) & 63));
    add(0x80 | (code & 63));
  }
}

}  // namespace

bool IsUtf8(std::string_view text) {
  uint32_t code = 0;
  for (size_t at = 0; at < text.size();) {
    if (!NextCode(text, at, code)) return false;
  }
  return true;
}

std::u16string Utf16FromUtf8(const std::string& text) {
  const std::string valid = IsUtf8(text) ? text : Utf8FromLatin1(text);
  std::u16string result;
  uint32_t code = 0;
  for (size_t at = 0; at < valid.size() && NextCode(valid, at, code);) {
    if (code >= 0x10000) {
      result += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
      result += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
      result += static_cast<char16_t>(code);
    }
  }
  return result;
}

std::string Utf8FromUtf16(std::u16string_view text) {
  std::string result;
  for (size_t i = 0; i < text.size(); ++i) {
    uint32_t code = text[i];
    const bool paired =
        code >= 0xD800 && code < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
    if (paired) code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
    if (code >= 0xD800 && code < 0xE000) code = 0xFFFD;
    AppendUtf8(result, code);
  }
  return result;
}

std::string Utf8FromLatin1(std::string_view text) {
  std::string result;
  for (const char letter : text) AppendUtf8(result, static_cast<uint8_t>(letter));
  return result;
}

}  // namespace zvfile
