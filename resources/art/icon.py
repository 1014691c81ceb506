#!/usr/bin/env python3
"""Packs a square picture into an icon of one size: 32 bits per pixel, with a mask for what draws without alpha. With a hot
spot it becomes a cursor.

  icon.py PIXELS.rgba SIDE OUTPUT.ico
  icon.py PIXELS.rgba SIDE OUTPUT.cur HOT_X HOT_Y
"""
import struct
import sys


def main():
    source, side, output = sys.argv[1], int(sys.argv[2]), sys.argv[3]
    pixels = open(source, "rb").read()
    assert len(pixels) == 4 * side * side, f"{source} is not {side} pixels wide"
    colors, mask = bytearray(), bytearray()
    mask_bytes = (side + 31) // 32 * 4
    for y in reversed(range(side)):
        row = pixels[4 * side * y : 4 * side * (y + 1)]
        bits = 0
        for x in range(side):
            red, green, blue, alpha = row[4 * x : 4 * x + 4]
            colors += bytes((blue, green, red, alpha))
            bits |= (alpha < 128) << (8 * mask_bytes - 1 - x)
        mask += bits.to_bytes(mask_bytes, "big")
    image = struct.pack("<IiiHHIIiiII", 40, side, 2 * side, 1, 32, 0, len(colors) + len(mask), 0, 0, 0, 0) + colors + mask
    hot_spot = [int(number) for number in sys.argv[4:6]]
    kind, first, second = (2, *hot_spot) if hot_spot else (1, 1, 32)  # an icon has its planes and depth there
    entry = struct.pack("<BBBBHHII", side % 256, side % 256, 0, 0, first, second, len(image), 22)
    with open(output, "wb") as icon:
        icon.write(struct.pack("<HHH", 0, kind, 1) + entry + image)


if __name__ == "__main__":
    main()
