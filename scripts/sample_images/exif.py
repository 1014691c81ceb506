"""Builds an Exif segment (Exif 2.3 over TIFF 6.0, little endian) and puts it into a JPEG file, with a thumbnail in IFD1."""

import struct

ASCII, SHORT, LONG, RATIONAL = 2, 3, 4, 5


def _directory(entries, start, next_directory):
    """Lays out one directory at offset `start`; values above four bytes follow it. entries: (tag, type, value)."""
    rows, tail = b"", b""
    tail_start = start + 2 + 12 * len(entries) + 4
    for tag, kind, value in sorted(entries):
        if kind == ASCII:
            data, count = value.encode() + b"\0", len(value.encode()) + 1
        elif kind == SHORT:
            data, count = struct.pack("<H", value), 1
        elif kind == LONG:
            data, count = struct.pack("<I", value), 1
        else:
            data, count = struct.pack("<II", value, 1), 1
        if len(data) > 4:
            field = struct.pack("<I", tail_start + len(tail))
            tail += data + b"\0" * (len(data) % 2)
        else:
            field = data.ljust(4, b"\0")
        rows += struct.pack("<HHI", tag, kind, count) + field
    after = tail_start + len(tail)
    link = struct.pack("<I", after if next_directory else 0)
    return struct.pack("<H", len(entries)) + rows + link + tail, after


def segment(orientation, thumbnail, description):
    """The payload of an APP1 segment."""
    first = [(0x010E, ASCII, description), (0x010F, ASCII, "Sample Camera Works"), (0x0110, ASCII, "Model 1"),
             (0x0112, SHORT, orientation), (0x011A, RATIONAL, 300), (0x011B, RATIONAL, 300), (0x0128, SHORT, 2),
             (0x0131, ASCII, "make_samples"), (0x0132, ASCII, "2024:06:01 12:30:00"), (0x013B, ASCII, "The sample script"),
             (0x8298, ASCII, "Public domain"), (0x8769, LONG, 0)]
    body, exif_start = _directory(first, 8, False)
    exif, thumb_start = _directory([(0x829A, RATIONAL, 1), (0x9003, ASCII, "2024:06:01 12:30:00")], exif_start, False)
    first[-1] = (0x8769, LONG, exif_start)
    body, _ = _directory(first, 8, False)
    if thumbnail:
        second = [(0x0103, SHORT, 6), (0x011A, RATIONAL, 72), (0x011B, RATIONAL, 72), (0x0128, SHORT, 2),
                  (0x0201, LONG, 0), (0x0202, LONG, len(thumbnail))]
        _, data_start = _directory(second, thumb_start, False)
        second[4] = (0x0201, LONG, data_start)
        thumb, _ = _directory(second, thumb_start, False)
        link = 8 + 2 + 12 * len(first)
        body = body[: link - 8] + struct.pack("<I", thumb_start) + body[link - 4 :]
        exif += thumb + thumbnail
    return b"Exif\0\0" + struct.pack("<2sHI", b"II", 42, 8) + body + exif


def insert(path, orientation, thumbnail=b"", description="A sample landscape"):
    """Puts the segment first into the JPEG file at path."""
    with open(path, "rb") as file:
        jpeg = file.read()
    payload = segment(orientation, thumbnail, description)
    with open(path, "wb") as file:
        file.write(jpeg[:2] + b"\xff\xe1" + struct.pack(">H", len(payload) + 2) + payload + jpeg[2:])
