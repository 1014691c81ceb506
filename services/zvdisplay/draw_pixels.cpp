#include "services/zvdisplay/draw_pixels.h"

#include <cstring>

namespace zvdisplay {
namespace {

BITMAPINFO InfoOf(const BITMAPHANDLE& pixels) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = pixels.width;
  info.bmiHeader.biHeight = -pixels.height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

void MultiplyByAlpha(BITMAPHANDLE& pixels) {
  for (int32_t row = 0; row < pixels.height; ++row) {
    uint8_t* pixel = pixels.data + static_cast<int64_t>(row) * pixels.bytesPerLine;
    for (int32_t x = 0; x < pixels.width; ++x, pixel += 4) {
      for (int channel = 0; channel < 3; ++channel) {
        pixel[channel] = static_cast<uint8_t>((pixel[channel] * pixel[3] + 127) / 255);
      }
    }
  }
  pixels.flags |= BITMAP_FLAG_PREMULTIPLIED;
}

int32_t Blend(HDC device, BITMAPHANDLE& pixels, const ZVRECT& target) {
  if (!(pixels.flags & BITMAP_FLAG_PREMULTIPLIED)) MultiplyByAlpha(pixels);
  const BITMAPINFO info = InfoOf(pixels);
  void* bits = nullptr;
  const HDC memory = CreateCompatibleDC(device);
  const HBITMAP picture = CreateDIBSection(device, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  int32_t status = ERROR_OUT_OF_MEMORY;
  if (memory && picture) {
    std::memcpy(bits, pixels.data, pixels.dataSize);
    const HGDIOBJ former = SelectObject(memory, picture);
    const BLENDFUNCTION over = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    const BOOL drawn = AlphaBlend(device, target.left, target.top, WidthOf(target), HeightOf(target), memory, 0, 0,
                                  pixels.width, pixels.height, over);
    status = drawn ? SUCCESS : ERROR_FEATURE_UNSUPPORTED;
    SelectObject(memory, former);
  }
  if (picture) DeleteObject(picture);
  if (memory) DeleteDC(memory);
  return status;
}

int32_t Copy(HDC device, const BITMAPHANDLE& pixels, const ZVRECT& target, uint32_t operation) {
  const BITMAPINFO info = InfoOf(pixels);
  SetStretchBltMode(device, COLORONCOLOR);
  const int rows = StretchDIBits(device, target.left, target.top, WidthOf(target), HeightOf(target), 0, 0, pixels.width,
                                 pixels.height, pixels.data, &info, DIB_RGB_COLORS, operation ? operation : SRCCOPY);
  // No rows are a failure, but also what comes of a place of which nothing can be seen.
  const RECT place = {target.left, target.top, target.right, target.bottom};
  const bool failed = rows == static_cast<int>(GDI_ERROR) || (rows == 0 && RectVisible(device, &place));
  return failed ? ERROR_FEATURE_UNSUPPORTED : SUCCESS;
}

}  // namespace

RECT DevicePixels(HDC device, const RECT& logical) {
  POINT corners[2] = {{logical.left, logical.top}, {logical.right, logical.bottom}};
  LPtoDP(device, corners, 2);
  return {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
}

DeviceSpace::DeviceSpace(HDC dc) : device(dc), saved(SaveDC(dc)) {
  if (GetGraphicsMode(device) == GM_ADVANCED) ModifyWorldTransform(device, nullptr, MWT_IDENTITY);
  SetMapMode(device, MM_TEXT);
  SetWindowOrgEx(device, 0, 0, nullptr);
  SetViewportOrgEx(device, 0, 0, nullptr);
}

DeviceSpace::~DeviceSpace() { RestoreDC(device, saved); }

ZVRECT DeviceSpace::ClipBox() const {
  RECT box = {};
  const int kind = GetClipBox(device, &box);
  if (kind == ERROR || kind == NULLREGION) return {0, 0, 0, 0};
  return {static_cast<int32_t>(box.left), static_cast<int32_t>(box.top), static_cast<int32_t>(box.right),
          static_cast<int32_t>(box.bottom)};
}

bool CanBlendOnto(HDC device) {
  const DWORD type = GetObjectType(device);
  return (type == OBJ_DC || type == OBJ_MEMDC) && GetDeviceCaps(device, TECHNOLOGY) == DT_RASDISPLAY;
}

int32_t DrawPixels(HDC device, BITMAPHANDLE& pixels, const ZVRECT& target, uint32_t operation) {
  return pixels.flags & BITMAP_FLAG_ALPHA ? Blend(device, pixels, target) : Copy(device, pixels, target, operation);
}

}  // namespace zvdisplay
