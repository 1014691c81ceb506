#include <algorithm>
#include <iterator>

#include "services/zvdisplay/zvdisplay.h"

namespace {

// As LOGPALETTE is laid out, with room for all entries.
struct FullPalette {
  WORD version = 0x300;
  WORD count = 0;
  PALETTEENTRY entries[256];

  void Add(int red, int green, int blue) {
    entries[count++] = {static_cast<BYTE>(red), static_cast<BYTE>(green), static_cast<BYTE>(blue), 0};
  }
};
static_assert(offsetof(FullPalette, count) == offsetof(LOGPALETTE, palNumEntries));
static_assert(offsetof(FullPalette, entries) == offsetof(LOGPALETTE, palPalEntry));

// Six levels of each channel: what a picture of many colours is shown with on a device of few.
void AddColorCube(FullPalette& palette) {
  for (int red = 0; red < 6; ++red)
    for (int green = 0; green < 6; ++green)
      for (int blue = 0; blue < 6; ++blue) palette.Add(red * 51, green * 51, blue * 51);
}

}  // namespace

HPALETTE CreatePaintPalette(HDC device, const BITMAPHANDLE* bitmap) {
  if (!bitmap || !(bitmap->flags & BITMAP_FLAG_ALLOCATED) || !(GetDeviceCaps(device, RASTERCAPS) & RC_PALETTE))
    return nullptr;
  FullPalette palette;
  const int32_t count = std::min<int32_t>(bitmap->paletteCount, std::size(palette.entries));
  for (int32_t i = 0; i < count; ++i) {
    const ZVPALETTEENTRY& color = bitmap->palette[i];
    palette.Add(color.red, color.green, color.blue);
  }
  if (palette.count == 0) AddColorCube(palette);
  return ::CreatePalette(reinterpret_cast<const LOGPALETTE*>(&palette));
}
