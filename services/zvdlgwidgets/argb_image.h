// A small picture with transparency, as controls draw it: rows from the top, one pixel 0xAARRGGBB with the colours
// already multiplied by alpha. Making, scaling and greying it is arithmetic; only the last function knows a device.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/win32.h"

struct ArgbImage {
  int width = 0;
  int height = 0;
  std::vector<uint32_t> pixels;

  bool IsEmpty() const { return pixels.empty(); }
};

// Pixels as a 32-bit DIB has them (0xAARRGGBB, not multiplied, from the top). Where no pixel has alpha there is no
// alpha channel: magenta pixels (255, 0, 255), or without any those of the upper left corner's colour, become
// transparent.
ArgbImage MakeArgbImage(int width, int height, std::vector<uint32_t> pixels);
// Area average where the picture gets smaller, bilinear where it grows.
ArgbImage ScaleArgbImage(const ArgbImage& image, int width, int height);
// The look of a disabled picture: grey and half transparent. Luminance weights are those of ITU-R BT.601.
ArgbImage GreyArgbImage(const ArgbImage& image);

// Reads any bitmap. Empty when its bits cannot be had.
ArgbImage ReadArgbImage(HBITMAP bitmap);
void DrawArgbImage(HDC device, const ArgbImage& image, int x, int y);
