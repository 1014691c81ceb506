#include <algorithm>
#include <cstddef>
#include <vector>

#include "services/zvdisplay/zvdisplay.h"

namespace {

constexpr WORD kPaletteVersion = 0x300;

// Six levels of each channel: what a picture of many colours is shown with on a device of few.
void AddColorCube(std::vector<PALETTEENTRY>& entries) {
  for (int red = 0; red < 6; ++red)
    for (int green = 0; green < 6; ++green)
      for (int blue = 0; blue < 6; ++blue)
        entries.push_back(
            {static_cast<BYTE>(red * 51), static_cast<BYTE>(green * 51), static_cast<BYTE>(blue * 51), 0});
}

}  // namespace

HPALETTE CreatePaintPalette(HDC device, const BITMAPHANDLE* bitmap) {
  if (!bitmap || !(bitmap->flags & BITMAP_FLAG_ALLOCATED) || !(GetDeviceCaps(device, RASTERCAPS) & RC_PALETTE))
    return nullptr;
  std::vector<PALETTEENTRY> entries;
  for (int32_t i = 0; i < std::min(bitmap->paletteCount, 256); ++i)
    entries.push_back({bitmap->palette[i].red, bitmap->palette[i].green, bitmap->palette[i].blue, 0});
  if (entries.empty()) AddColorCube(entries);

  std::vector<std::byte> memory(sizeof(LOGPALETTE) + entries.size() * sizeof(PALETTEENTRY));
  auto* palette = reinterpret_cast<LOGPALETTE*>(memory.data());
  palette->palVersion = kPaletteVersion;
  palette->palNumEntries = static_cast<WORD>(entries.size());
  std::copy(entries.begin(), entries.end(), palette->palPalEntry);
  return ::CreatePalette(palette);
}
