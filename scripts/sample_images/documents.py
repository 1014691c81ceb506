"""Bilevel and palette images: fax pages of text, line art, charts and an animation. Text has a font of its own, so that no
installed font is needed."""

import math
import random

from . import tool

# 5 x 7 dot letters, one string of seven rows in base 32 a letter (bit 4 is the left dot).
_GLYPHS = {
    "A": "EHHVHHH", "B": "UHHUHHU", "C": "EHGGGHE", "D": "UHHHHHU", "E": "VGGUGGV", "F": "VGGUGGG", "G": "EHGNHHF",
    "H": "HHHVHHH", "I": "E44444E", "J": "722222C", "K": "HIKOKIH", "L": "GGGGGGV", "M": "HRLLHHH", "N": "HPLJHHH",
    "O": "EHHHHHE", "P": "UHHUGGG", "Q": "EHHHLID", "R": "UHHUKIH", "S": "FGGE11U", "T": "V444444", "U": "HHHHHHE",
    "V": "HHHHHA4", "W": "HHHLLLA", "X": "HHA4AHH", "Y": "HHHA444", "Z": "V1248GV", "0": "EHJLPHE", "1": "4C4444E",
    "2": "EH1248V", "3": "V2421HE", "4": "26AIV22", "5": "VGU11HE", "6": "68GUHHE", "7": "V124888", "8": "EHHEHHE",
    "9": "EHHF12C", ".": "00000CC", ",": "0000C48", "-": "000V000", ":": "0CC0CC0", "/": "0012480", " ": "0000000",
}
_SENTENCES = (
    "THE SHIPMENT LEFT THE HARBOUR ON TUESDAY MORNING AND IS EXPECTED WITHIN TEN DAYS.",
    "PLEASE FIND THE REVISED DRAWINGS OF THE PUMP HOUSING ON THE FOLLOWING PAGES.",
    "WE CONFIRM YOUR ORDER OF 250 BRACKETS, PART NUMBER 4711-08, AT THE AGREED PRICE.",
    "THE MEETING WAS MOVED TO ROOM 3.14 AND BEGINS AT 09:30, NOT AT 10:00 AS WRITTEN.",
    "KINDLY RETURN ONE SIGNED COPY OF THIS LETTER TO OUR OFFICE BEFORE THE 15TH.",
    "ALL MEASURES ARE IN MILLIMETRES UNLESS THE DRAWING SAYS OTHERWISE.",
)


def pbm(rows, width):
    """Rows as integers, the left pixel being the highest bit and 1 black, as a raw PBM."""
    stride = (width + 7) // 8
    pad = stride * 8 - width
    return f"P4\n{width} {len(rows)}\n".encode() + b"".join((row << pad).to_bytes(stride, "big") for row in rows)


def draw_text(rows, width, left, top, text, scale):
    """Sets dots of the text in rows; what runs over the right edge is left away."""
    lines = [0] * 7
    shown = text[: max((width - left) // (6 * scale), 0)]
    for letter in shown:
        for index, code in enumerate(_GLYPHS.get(letter, _GLYPHS[" "])):
            lines[index] = lines[index] << (6 * scale) | _widen(int(code, 32) << 1, scale)
    shift = width - left - len(shown) * 6 * scale
    for index, line in enumerate(lines):
        for row in range(top + index * scale, min(top + (index + 1) * scale, len(rows))):
            rows[row] |= line << shift


def _widen(dots, scale):
    wide = 0
    for bit in range(5, -1, -1):
        wide = wide << scale | ((1 << scale) - 1 if dots >> bit & 1 else 0)
    return wide


def fax_page(number, width=1728, height=2200):
    """A page of text at the fine fax resolution, with rules and a few specks."""
    rng = random.Random(number)
    rows = [0] * height
    draw_text(rows, width, 120, 100, f"FACSIMILE PAGE {number}", 7)
    for row in range(180, 186):
        rows[row] |= ((1 << (width - 240)) - 1) << 120
    top = 260
    while top < height - 160:
        draw_text(rows, width, 120, top, rng.choice(_SENTENCES), 3)
        top += 34 if rng.random() < 0.85 else 90
    for _ in range(60):
        rows[rng.randrange(height)] |= 1 << rng.randrange(width)
    return pbm(rows, width)


def make_fax(path, pages, compression="Group4"):
    data = b"".join(fax_page(number) for number in range(1, pages + 1))
    tool.convert("-density", "204x196", "-units", "PixelsPerInch", "pbm:-", "-compress", compression, path, data=data)


def make_label(path, text, width, height, *output):
    """Black text, as large as fits, on white."""
    rows = [0] * height
    scale = max(min((width - 8) // (6 * len(text)), (height - 8) // 7), 1)
    draw_text(rows, width, (width - 6 * scale * len(text)) // 2, (height - 7 * scale) // 2, text, scale)
    tool.convert("pbm:-", *output, path, data=pbm(rows, width))


def make_line_art(path, size=1200):
    """Rosettes of thin curves, bilevel."""
    shapes = []
    for petals, radius in ((5, 0.48), (7, 0.36), (9, 0.22)):
        points = []
        for step in range(721):
            angle = math.radians(step)
            reach = size * radius * (0.55 + 0.45 * math.cos(petals * angle))
            points.append(f"{size / 2 + reach * math.cos(angle):.1f},{size / 2 + reach * math.sin(angle):.1f}")
        shapes.append("polyline " + " ".join(points))
    tool.convert("-size", f"{size}x{size}", "xc:white", "-fill", "none", "-stroke", "black", "-strokewidth", 3,
                 "-draw", " ".join(shapes), "-colorspace", "Gray", "-threshold", "50%", "-type", "bilevel", path)


def make_chart(path, colours, width=1024, height=768):
    """Bars in flat colours, as a palette image."""
    rng = random.Random(colours)
    arguments = ["-size", f"{width}x{height}", "xc:white"]
    bars = max(colours - 2, 2)
    for bar in range(bars):
        left, right = width * bar / bars, width * (bar + 0.8) / bars
        arguments += ["-fill", f"hsl({360 * bar // bars},70%,50%)", "-draw",
                      f"rectangle {left:.0f},{rng.uniform(0.1, 0.9) * height:.0f} {right:.0f},{height}"]
    depth = max((colours - 1).bit_length(), 1)
    arguments += ["+antialias", "+dither", "-colors", colours, "-type", "palette", "-define", "png:bit-depth=%d" %
                  next(bits for bits in (1, 2, 4, 8) if bits >= depth), path]
    tool.convert(*arguments)


def make_animation(path, frames=12, size=160):
    """A ball that goes round, stored as changed rectangles on a see-through ground."""
    arguments = ["-dispose", "none", "-delay", 8, "-loop", 0]
    for frame in range(frames):
        angle = 2 * math.pi * frame / frames
        x, y = size / 2 + size * 0.32 * math.cos(angle), size / 2 + size * 0.32 * math.sin(angle)
        arguments += ["(", "-size", f"{size}x{size}", "xc:none", "+antialias", "-fill", "none", "-stroke", "#336699",
                      "-draw", f"circle {size / 2},{size / 2} {size / 2},{size * 0.1}", "-stroke", "none", "-fill",
                      f"hsl({360 * frame // frames},80%,50%)", "-draw", f"circle {x:.1f},{y:.1f} {x + 12:.1f},{y:.1f}",
                      ")"]
    tool.convert(*arguments, "-layers", "OptimizePlus", path)
