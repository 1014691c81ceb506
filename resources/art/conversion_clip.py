#!/usr/bin/env python3
"""Draws the clip of the progress dialogs: sheets that fly from a stack on the left to one on the right and become pictures
on their way. Writes an uncompressed AVI of 8 bits per pixel, which is all that the system's animation control plays; the
colour of the upper left pixel is the transparent one.

  conversion_clip.py OUTPUT.avi
"""
import struct
import sys

WIDTH, HEIGHT = 240, 36  # multiples of 4: rows need no padding
FRAMES, FRAME_MICROSECONDS = 24, 80_000
SHEET_WIDTH, SHEET_HEIGHT = 20, 26
LEFT, RIGHT, GROUND, ARC = 16, WIDTH - 16 - SHEET_WIDTH, 8, 6

BACKGROUND, PAPER, LINE, TEXT, SKY, HILL, SUN = range(7)
PALETTE = [(255, 0, 255), (255, 255, 255), (74, 90, 106), (160, 170, 180), (120, 180, 230), (70, 140, 80), (245, 190, 60)]


class Canvas:
    def __init__(self):
        self.rows = [bytearray([BACKGROUND] * WIDTH) for _ in range(HEIGHT)]

    def fill(self, left, top, width, height, color):
        for y in range(max(top, 0), min(top + height, HEIGHT)):
            for x in range(max(left, 0), min(left + width, WIDTH)):
                self.rows[y][x] = color

    def sheet(self, left, top, picture_share):
        """A sheet whose content is text, and picture from the top down to the given share of its height."""
        self.fill(left, top, SHEET_WIDTH, SHEET_HEIGHT, LINE)
        self.fill(left + 1, top + 1, SHEET_WIDTH - 2, SHEET_HEIGHT - 2, PAPER)
        for line in range(5):
            self.fill(left + 4, top + 4 + 4 * line, SHEET_WIDTH - 8, 2, TEXT)
        covered = round(picture_share * (SHEET_HEIGHT - 4))
        for row in range(covered):
            self.fill(left + 2, top + 2 + row, SHEET_WIDTH - 4, 1, SKY if row < 12 else HILL)
        if covered > 6:
            self.fill(left + 12, top + 5, 3, 3, SUN)

    def bottom_up(self):
        return b"".join(bytes(row) for row in reversed(self.rows))


def frame(index):
    share = index / FRAMES
    canvas = Canvas()
    canvas.sheet(LEFT, GROUND, 0)
    canvas.sheet(RIGHT, GROUND, 1)
    left = round(LEFT + share * (RIGHT - LEFT))
    top = round(GROUND - ARC * 4 * share * (1 - share))
    canvas.sheet(left, top, min(1, max(0, share * 2 - 0.5)))
    return canvas.bottom_up()


def chunk(name, data):
    return name + struct.pack("<I", len(data)) + data + b"\0" * (len(data) % 2)


def clip():
    frames = [frame(index) for index in range(FRAMES)]
    size = WIDTH * HEIGHT
    colors = PALETTE + [(0, 0, 0)] * (256 - len(PALETTE))
    main = struct.pack("<14I", FRAME_MICROSECONDS, size * 1_000_000 // FRAME_MICROSECONDS, 0, 0x10, FRAMES, 0, 1, size,
                       WIDTH, HEIGHT, 0, 0, 0, 0)
    stream = b"vidsDIB " + struct.pack("<10I4H", 0, 0, 0, FRAME_MICROSECONDS, 1_000_000, 0, FRAMES, size, 0, 0,
                                       0, 0, WIDTH, HEIGHT)
    form = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 8, 0, size, 0, 0, 256, 0)
    form += b"".join(bytes((blue, green, red, 0)) for red, green, blue in colors)
    streams = chunk(b"LIST", b"strl" + chunk(b"strh", stream) + chunk(b"strf", form))
    header = chunk(b"LIST", b"hdrl" + chunk(b"avih", main) + streams)
    movie = b"movi"
    index = b""
    for data in frames:
        index += b"00db" + struct.pack("<III", 0x10, len(movie), len(data))
        movie += chunk(b"00db", data)
    return chunk(b"RIFF", b"AVI " + header + chunk(b"LIST", movie) + chunk(b"idx1", index))


if __name__ == "__main__":
    with open(sys.argv[1], "wb") as output:
        output.write(clip())
