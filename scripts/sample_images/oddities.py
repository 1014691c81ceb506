"""Files that a careful program must survive: damaged, empty, untruthful, of extreme shape or oddly named."""

import os
import struct
import zlib

from . import documents, tool

NAMES = (
    "two words and  two spaces.jpg",
    "several.dots.in.the.name.jpg",
    "no_extension",
    "UPPER.JPG",
    "風景写真.jpg",
    "사진 한 장.jpg",
    "emoji \U0001f3de\ufe0f\U0001f680.jpg",
    "combining e\u0301a\u0308o\u0302.jpg",
    "precomposed éäô.jpg",
    "percent %d & 'quote' (1) [2].jpg",
)


def _copy(source, target, change=lambda data: data):
    with open(source, "rb") as file:
        data = file.read()
    with open(target, "wb") as file:
        file.write(change(data))


def _flip_bytes(data):
    """Turns over every 97th byte of the second half: the header stays good, the content does not."""
    damaged = bytearray(data)
    for index in range(len(data) // 2, len(data), 97):
        damaged[index] ^= 0xFF
    return bytes(damaged)


def _png_chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


def _huge_png(width, height):
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + _png_chunk(b"IHDR", header) + _png_chunk(b"IDAT", zlib.compress(b"\0" * 64)) +
            _png_chunk(b"IEND", b""))


def _tiff(entries, next_offset=0, data=b""):
    """A little-endian TIFF of one directory; entries are (tag, type, count, value)."""
    rows = b"".join(struct.pack("<HHII", *entry) for entry in sorted(entries))
    return struct.pack("<2sHIH", b"II", 42, 8, len(entries)) + rows + struct.pack("<I", next_offset) + data


def _huge_tiff():
    return _tiff([(256, 4, 1, 0x7FFFFFF0), (257, 4, 1, 0x7FFFFFF0), (258, 3, 1, 8), (259, 3, 1, 1), (262, 3, 1, 1),
                  (273, 4, 1, 8), (278, 4, 1, 0x7FFFFFF0), (279, 4, 1, 16)])


def _looping_tiff():
    """Its only directory names itself as the next one."""
    entries = [(256, 4, 1, 4), (257, 4, 1, 4), (258, 3, 1, 8), (259, 3, 1, 1), (262, 3, 1, 1), (273, 4, 1, 134),
               (277, 3, 1, 1), (278, 4, 1, 4), (279, 4, 1, 16)]
    return _tiff(entries, next_offset=8, data=bytes(range(32)))


def make_damaged(folder, photo, fax, animation, drawing):
    """photo, fax, animation and drawing are good files to spoil."""
    os.makedirs(folder, exist_ok=True)

    def at(name):
        return os.path.join(folder, name)

    for source in (photo, fax, animation, drawing):
        stem, extension = os.path.splitext(os.path.basename(source))
        _copy(source, at(f"{stem}_truncated{extension}"), lambda data: data[: len(data) * 2 // 3])
        _copy(source, at(f"{stem}_header_only{extension}"), lambda data: data[:24])
        _copy(source, at(f"{stem}_spoiled{extension}"), _flip_bytes)
    _copy(photo, at("jpeg_named.png"))
    _copy(drawing, at("png_named.jpg"))
    contents = {
        "empty.jpg": b"",
        "empty.tif": b"",
        "one_byte.gif": b"G",
        "text_named.jpg": b"This is plain text and no picture at all.\n" * 20,
        "zeros.bmp": bytes(4096),
        "huge_dimensions.png": _huge_png(0x7FFFFFFF, 0x7FFFFFFF),
        "huge_width.png": _huge_png(2000000, 1),
        "zero_size.png": _huge_png(0, 0),
        "huge_dimensions.tif": _huge_tiff(),
        "looping_directory.tif": _looping_tiff(),
        "huge_dimensions.gif": b"GIF89a" + struct.pack("<HHBBB", 65535, 65535, 0, 0, 0) + b"," +
                               struct.pack("<HHHHB", 0, 0, 65535, 65535, 0) + b"\x02\x01\x44\x00;",
        "huge_dimensions.jpg": b"\xff\xd8\xff\xc0\x00\x11\x08\xff\xff\xff\xff\x03\x01\x22\x00\x02\x11\x01\x03\x11\x01\xff\xd9",
    }
    for name, data in contents.items():
        with open(at(name), "wb") as file:
            file.write(data)


def make_names(folder, photo):
    os.makedirs(folder, exist_ok=True)
    for name in NAMES:
        _copy(photo, os.path.join(folder, name))


def _plain_png(width, height):
    """A grey ramp along the longer side, without ImageMagick: its installed policy refuses such widths."""
    length = max(width, height)
    ramp = bytes(255 * index // length for index in range(length))
    rows = [ramp] if height == 1 else [bytes([value]) for value in ramp]
    header = struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0)
    pixels = zlib.compress(b"".join(b"\0" + row for row in rows))
    return (b"\x89PNG\r\n\x1a\n" + _png_chunk(b"IHDR", header) + _png_chunk(b"IDAT", pixels) +
            _png_chunk(b"IEND", b""))


def _plain_tiff(width, height):
    length = max(width, height)
    data = bytes(255 * index // length for index in range(length))
    entries = [(256, 4, 1, width), (257, 4, 1, height), (258, 3, 1, 8), (259, 3, 1, 1), (262, 3, 1, 1), (273, 4, 1, 122),
               (277, 3, 1, 1), (278, 4, 1, height), (279, 4, 1, length)]
    return _tiff(entries, data=data)


def make_shapes(folder):
    os.makedirs(folder, exist_ok=True)
    for name, size in (("one_pixel", "1x1"), ("odd", "37x23")):
        for extension in ("png", "tif", "jpg", "gif", "bmp"):
            tool.convert("-size", size, "gradient:#ff8000-#0040c0", "-colors", "256",
                         os.path.join(folder, f"{name}.{extension}"))
    for name, width, height in (("one_row", 30000, 1), ("one_column", 1, 30000)):
        for extension, data in (("png", _plain_png(width, height)), ("tif", _plain_tiff(width, height))):
            with open(os.path.join(folder, f"{name}.{extension}"), "wb") as file:
                file.write(data)
