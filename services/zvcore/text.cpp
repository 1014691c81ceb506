#include <cstring>
#include <string>

#include "services/zvcore/memory.h"
#include "services/zvcore/platform_core.h"
#include "services/zvcore/zvcore.h"

namespace {

bool IsHighSurrogate(ZVCHAR unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

}  // namespace

ZVCHAR* AnsiToWideDup(const char* text) { return text ? zvcore::NewWideFromAnsi(text) : nullptr; }

char* WideToAnsiDup(const ZVCHAR* text) { return text ? zvcore::NewAnsiFromWide(text) : nullptr; }

void FreeWideDup(void* text) { zvcore::Release(text); }

int32_t ConvertAnsiToWide(const char* source, ZVCHAR* destination, int32_t count) {
  if (!source || !destination || count < 1) return ERROR_BAD_ARGUMENT;
  destination[0] = 0;
  ZVCHAR* whole = zvcore::NewWideFromAnsi(source);
  if (!whole) return ERROR_OUT_OF_MEMORY;
  const size_t length = std::char_traits<ZVCHAR>::length(whole);
  size_t kept = length;
  if (kept > static_cast<size_t>(count) - 1) {
    kept = static_cast<size_t>(count) - 1;
    if (kept > 0 && IsHighSurrogate(whole[kept - 1])) --kept;
  }
  std::memcpy(destination, whole, kept * sizeof(ZVCHAR));
  destination[kept] = 0;
  zvcore::Release(whole);
  return kept == length ? SUCCESS : ERROR_BUFFER_TOO_SMALL;
}

int32_t ConvertWideToAnsi(const ZVCHAR* source, char* destination, int32_t count) {
  if (!source || !destination || count < 1) return ERROR_BAD_ARGUMENT;
  destination[0] = 0;
  char* whole = zvcore::NewAnsiFromWide(source);
  if (!whole) return ERROR_OUT_OF_MEMORY;
  const size_t length = std::strlen(whole);
  const size_t kept = zvcore::AnsiPrefixLength(whole, static_cast<size_t>(count) - 1);
  std::memcpy(destination, whole, kept);
  destination[kept] = 0;
  zvcore::Release(whole);
  return kept == length ? SUCCESS : ERROR_BUFFER_TOO_SMALL;
}
