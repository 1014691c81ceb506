/* What zvcore asks of the operating system: the system's 8-bit text. One file a platform implements it. Neither
 * function throws; copies come from the heap of memory.h and are the caller's. */
#ifndef ZV_ZVCORE_PLATFORM_CORE_H
#define ZV_ZVCORE_PLATFORM_CORE_H

#include <cstddef>

#include "services/zvcore/zvcore.h"

namespace zvcore {

// Null when memory runs out. What cannot be converted becomes the replacement character, or '?' in 8-bit text.
ZVCHAR* NewWideFromAnsi(const char* text) noexcept;
char* NewAnsiFromWide(const ZVCHAR* text) noexcept;

// The longest prefix of text, at most limit bytes, that ends between two characters.
size_t AnsiPrefixLength(const char* text, size_t limit) noexcept;

}  // namespace zvcore

#endif
