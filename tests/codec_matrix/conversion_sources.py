"""The files that conversion_judges.py converts, and what it expects of the results."""

import os
import subprocess
import sys

from tools import find, run

WIDTH, HEIGHT = 120, 80
DPI = (240, 200)
_ICC = "/usr/share/color/icc/ghostscript"
PROFILES = {"rgb": f"{_ICC}/a98.icc", "srgb": f"{_ICC}/srgb.icc", "cmyk": f"{_ICC}/default_cmyk.icc"}

# Name: format, depth and sub type as the dialog lists them, extension of the result.
OUTPUTS = {
    "jpeg": ("JPEG", 24, "YUV 4:4:4", "jpg"),
    "jpeg gray": ("JPEG", 8, "-", "jpg"),
    "exif jpeg": ("Exif", 0, "JPEG 4:2:2", "jpg"),
    "png 16": ("PNG", 16, "-", "png"),
    "png 24": ("PNG", 24, "-", "png"),
    "png 32": ("PNG", 32, "-", "png"),
    "png 48": ("PNG", 48, "-", "png"),
    "png 64": ("PNG", 64, "-", "png"),
    "tiff 16": ("TIFF", 16, "LZW", "tif"),
    "tiff 24": ("TIFF", 24, "LZW", "tif"),
    "tiff 32": ("TIFF", 32, "LZW", "tif"),
    "tiff 48": ("TIFF", 48, "LZW", "tif"),
    "tiff 64": ("TIFF", 64, "LZW", "tif"),
    "bigtiff": ("TIFF", 24, "BigTIFF, uncompressed", "tif"),
    "webp 24": ("WebP", 24, "-", "webp"),
    "webp 32": ("WebP", 32, "-", "webp"),
    "jp2 24": ("JPEG 2000", 24, "JP2", "jp2"),
    "jp2 32": ("JPEG 2000", 32, "JP2", "jp2"),
    "bmp 24": ("Windows Bitmap", 24, "-", "bmp"),
    "gif 8": ("GIF", 8, "Not interlaced", "gif"),
}

# What each format can hold, as far as exiftool reads it there: it takes the Exif directories of BigTIFF for something else.
_EVERYTHING = ("resolution", "profile", "exif", "xmp")
CARRIED = {
    "jpeg": _EVERYTHING,
    "exif jpeg": _EVERYTHING,
    "png 24": _EVERYTHING,
    "tiff 24": _EVERYTHING,
    "bigtiff": ("resolution", "profile", "xmp"),
    "webp 24": _EVERYTHING,
    "jp2 24": _EVERYTHING,
    "bmp 24": ("resolution",),
}


def resolution_of(told):
    """Dots per inch from what exiftool says of any format; (None, None) when it says nothing."""
    metre = 0.0254
    if "PNG-pHYs:PixelsPerUnitX" in told:
        return told["PNG-pHYs:PixelsPerUnitX"] * metre, told["PNG-pHYs:PixelsPerUnitY"] * metre
    if "File:PixelsPerMeterX" in told:
        return told["File:PixelsPerMeterX"] * metre, told["File:PixelsPerMeterY"] * metre
    if "Jpeg2000:CaptureXResolution" in told:
        names = [f"Jpeg2000:Capture{side}Resolution" for side in "XY"]
        return tuple(told[name] * 10 ** told[name + "Unit"] * metre for name in names)  # the unit is an exponent
    for group in ("JFIF", "IFD0"):
        if f"{group}:XResolution" in told:
            unit = told.get(f"{group}:ResolutionUnit", 2)
            centimetres = unit == (2 if group == "JFIF" else 3)
            scale = 2.54 if centimetres else 1
            return told[f"{group}:XResolution"] * scale, told[f"{group}:YResolution"] * scale
    return None, None


class Sources:
    """Makes each file on first use."""

    # Written with exiftool; read back by the same names from the results.
    EXIF = {
        "IFD0:Make": "Maker", "IFD0:Model": "Model 7", "IFD0:Artist": "Ärtist Ünicode",
        "ExifIFD:DateTimeOriginal": "2019:05:04 03:02:01", "ExifIFD:ExposureTime": "0.008", "ExifIFD:FNumber": "5.6",
        "ExifIFD:ISO": "400", "ExifIFD:UserComment": "a comment", "ExifIFD:LensModel": "Lens 50mm",
        "GPS:GPSLatitude": "12.5", "GPS:GPSLatitudeRef": "N",
    }
    XMP = {"XMP-dc:Title": "Title of it", "XMP-xmp:Rating": "4", "XMP-photoshop:City": "Zürich"}

    def __init__(self, folder):
        self.folder = folder
        os.makedirs(folder)
        self.alphas = {}

    def at(self, name):
        return os.path.join(self.folder, name)

    def make(self, name, *arguments):
        path = self.at(name)
        good, text = run("convert", *arguments, path)
        if not good:
            sys.exit(f"cannot make {name}: {text}")
        return path

    def base(self):
        """A picture that looks different from every side, smooth enough for lossy formats, 16 bits a sample."""
        path = self.at("base.miff")
        if not os.path.exists(path):
            across = ["(", "-size", f"{HEIGHT}x{WIDTH}", "gradient:black-lime", "-rotate", "90", ")"]
            marks = ["-fill", "white", "-draw", "rectangle 4,4 35,19", "-fill", "black", "-draw", "rectangle 90,60 111,75"]
            self.make("base.miff", "-size", f"{WIDTH}x{HEIGHT}", "gradient:red-navy", *across, "-compose", "plus", "-composite",
                      *marks, "-depth", 16)
        return path

    def upright(self):
        path = self.at("upright.png")
        return path if os.path.exists(path) else self.make("upright.png", self.base(), "-depth", 8)

    def write_tags(self, path, orientation=None):
        """Gives a file its metadata; thumbnails too where the format has a place for them."""
        arguments = [f"-{tag}={value}" for tag, value in {**self.EXIF, **self.XMP}.items()]
        arguments += [f"-ExifIFD:ExifImageWidth={WIDTH}", f"-ExifIFD:ExifImageHeight={HEIGHT}"]
        if orientation:
            arguments += [f"-IFD0:Orientation={orientation}", f"-XMP-tiff:Orientation={orientation}"]
        if path.endswith(".jpg"):
            thumbnail = self.make("thumbnail.jpg", self.base(), "-resize", "25%", "-strip")
            arguments.append(f"-ThumbnailImage<={thumbnail}")
        if path.endswith(".jp2"):
            arguments.append(f"-ICC_Profile<={PROFILES['rgb']}")
        if path.endswith((".webp", ".jp2")):  # their resolution has no other place, or ImageMagick does not write it
            arguments += [f"-IFD0:XResolution={DPI[0]}", f"-IFD0:YResolution={DPI[1]}", "-IFD0:ResolutionUnit=2"]
        result = subprocess.run([find("exiftool"), "-q", "-overwrite_original", "-n", *arguments, path], check=False,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if result.returncode != 0:
            sys.exit(f"exiftool cannot write {path}: {result.stdout.decode(errors='replace')}")

    def with_metadata(self):
        paths = []
        for extension, options in (("jpg", ["-quality", 95]), ("png", []), ("tif", ["-compress", "LZW"]),
                                   ("webp", ["-define", "webp:lossless=true"]), ("jp2", ["-quality", 100])):
            density = ["-units", "PixelsPerInch", "-density", f"{DPI[0]}x{DPI[1]}"]
            path = self.make(f"tagged_{extension}.{extension}", self.base(), "-depth", 8, *density, "-profile", PROFILES["rgb"],
                             *options)
            self.write_tags(path)
            paths.append(path)
        return paths

    def oriented(self):
        """The upright picture, stored in each of the eight ways."""
        # What takes the upright picture to the stored one.
        undo = {1: [], 2: ["-flop"], 3: ["-rotate", "180"], 4: ["-flip"], 5: ["-transpose"], 6: ["-rotate", "-90"],
                7: ["-transverse"], 8: ["-rotate", "90"]}
        paths = []
        for orientation, steps in undo.items():
            options = ["-quality", 98, "-sampling-factor", "1x1"]
            path = self.make(f"turned_{orientation}.jpg", self.upright(), *steps, *options)
            self.write_tags(path, orientation)
            paths.append(path)
        for orientation in (6, 7):
            for extension in ("tif", "webp", "png"):
                options = ["+repage", "-define", "webp:lossless=true"]
                path = self.make(f"turned_{orientation}_{extension}.{extension}", self.upright(), *undo[orientation], *options)
                self.write_tags(path, orientation)
                paths.append(path)
        return paths

    def deep(self):
        clear = ["-alpha", "set", "-channel", "A", "-fx", "0.2+0.8*i/w", "+channel"]
        paths = []
        for name, alpha, steps in (("rgb", False, []), ("rgba", True, clear), ("gray", None, ["-colorspace", "Gray"])):
            for extension in ("png", "tif"):
                path = self.make(f"deep_{name}_{extension}.{extension}", self.base(), *steps, "-depth", 16)
                self.alphas[path] = alpha
                paths.append(path)
        return paths

    def alpha_of(self, path):
        return self.alphas[path]

    def transparent(self):
        """A disc on nothing with a soft edge and black under the full transparency, in every format with alpha."""
        disc = ["(", "-size", f"{WIDTH}x{HEIGHT}", "radial-gradient:white-black", "-level", "20%,60%", ")"]
        soft = [*disc, "-alpha", "off", "-compose", "CopyOpacity", "-composite", "-compose", "over"]
        hard = [*soft, "-channel", "A", "-threshold", "50%", "+channel"]
        black = ["-background", "black", "-alpha", "background"]
        paths = []
        indexed = ["-depth", 8, "+dither", "-colors", 60, "-define", "png:color-type=3"]
        for name, steps in (("soft.png", soft + ["-depth", 8]), ("soft16.png", soft + ["-depth", 16]),
                            ("soft.tif", soft + ["-depth", 8]), ("soft_gray.png", ["-colorspace", "Gray", *soft, "-depth", 8]),
                            ("soft_associated.tif", soft + ["-depth", 8, "-define", "tiff:alpha=associated"]),
                            ("soft.webp", soft + ["-depth", 8, "-define", "webp:lossless=true"]),
                            ("hard_palette.png", hard + indexed), ("hard.gif", hard + ["-depth", 8])):
            stem, extension = name.split(".")
            paths.append(self.make(f"{stem}_{extension}.{extension}", self.base(), *steps, *black))
        return paths

    def inked(self):
        to_inks = ["-profile", PROFILES["srgb"], "-profile", PROFILES["cmyk"]]
        paths = []
        for name, steps in (("inks.jpg", ["-depth", 8, "-quality", 98]), ("inks.tif", ["-depth", 8, "-compress", "LZW"]),
                            ("inks16.tif", ["-depth", 16, "-compress", "LZW"]), ("inks.psd", ["-depth", 8])):
            stem, extension = name.split(".")
            paths.append(self.make(f"{stem}_{extension}.{extension}", self.base(), *to_inks, *steps))
        return paths
