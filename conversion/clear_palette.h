// Images of palette indices some of which are transparent, as GIF has them. Such an image cannot be blended: a mixture of a
// colour and of nothing is no entry of its palette. Before it is turned by a free angle or resampled it has to become colours.
#pragma once

#include "services/zvcore/zvcore.h"

// Whether the bitmap has a palette with transparent entries. In palettes of elsewhere the field is unset in all entries; those
// are opaque.
bool HasClearPalette(const BITMAPHANDLE& bitmap);
// Makes 32 bits with alpha of such a bitmap; everything else stays. ERROR_OUT_OF_MEMORY, ERROR_LIMIT_EXCEEDED: it is unchanged.
int32_t UnfoldClearPalette(BITMAPHANDLE& bitmap);
