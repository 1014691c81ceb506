// Sets of file formats that the open dialog treats alike.
#pragma once

#include <cstdint>

// Drawings: the only formats that DLG_OPEN_VECTOR_ONLY accepts.
bool IsVectorFormat(int32_t format);
// Formats whose pages are found by walking through the whole file, too slow for a glance at it.
bool IsCostlyToCountPages(int32_t format);
// Drawings without pixels of their own that are loaded at a resolution.
bool IsLoadedAtResolution(int32_t format);
