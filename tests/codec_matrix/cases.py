"""What the matrix covers: pictures, files that other programs write for us to read, and files that we write for them."""

# Kinds of picture, each a list of convert arguments that turn the base picture (a 16-bit RGB one) into it.
KINDS = {
    "mono": ["-colorspace", "Gray", "-ordered-dither", "o8x8", "-type", "bilevel"],
    "gray": ["-colorspace", "Gray", "-depth", 8],
    "gray16": ["-colorspace", "Gray", "-depth", 16],
    "pal16": ["-depth", 8, "+dither", "-colors", 16, "-type", "palette"],
    "pal": ["-depth", 8, "+dither", "-colors", 200, "-type", "palette"],
    "rgb": ["-depth", 8, "-type", "truecolor"],
    "rgb16": ["-depth", 16, "-type", "truecolor"],
    "rgba": ["-depth", 8, "-alpha", "set", "-channel", "A", "-fx", "0.2+0.8*i/w", "+channel"],
    "rgba16": ["-depth", 16, "-alpha", "set", "-channel", "A", "-fx", "0.2+0.8*i/w", "+channel"],
    "cmyk": ["-depth", 8, "-colorspace", "CMYK"],
}
EVERY = ("mono", "gray", "gray16", "pal16", "pal", "rgb", "rgb16", "rgba", "rgba16")
EIGHT = ("mono", "gray", "pal16", "pal", "rgb")

# (name, writer, extension, options, kinds, exact, reference). The reference is what our pixels are held against: "file" is the
# other program's own reading of the file, "original" the picture it was made from (where that program reads it wrongly).
READ = [
    ("png", "convert", "png", [], EVERY, True, "file"),
    ("png interlaced", "convert", "png", ["-interlace", "PNG"], EVERY, True, "file"),
    ("bmp", "convert", "bmp", [], ("mono", "gray", "pal16", "pal", "rgb", "rgba"), True, "file"),
    ("bmp 3", "convert", "bmp3", [], ("mono", "gray", "pal16", "pal", "rgb"), True, "file"),
    ("bmp rle", "convert", "bmp3", ["-compress", "RLE"], ("gray", "pal"), True, "file"),
    ("gif", "convert", "gif", [], ("mono", "pal16", "pal"), True, "file"),
    ("gif interlaced", "convert", "gif", ["-interlace", "GIF"], ("mono", "pal16", "pal"), True, "file"),
    ("jpeg 4:4:4", "convert", "jpg", ["-quality", 92, "-sampling-factor", "1x1"], ("gray", "rgb"), 38, "file"),
    ("jpeg 4:2:0", "convert", "jpg", ["-quality", 92, "-sampling-factor", "2x2"], ("rgb",), 36, "file"),
    ("jpeg progressive", "convert", "jpg", ["-quality", 85, "-interlace", "JPEG"], ("gray", "rgb"), 36, "file"),
    ("jpeg cmyk", "convert", "jpg", ["-quality", 95], ("cmyk",), 36, "original"),
    ("webp lossless", "convert", "webp", ["-define", "webp:lossless=true"], ("rgb", "rgba"), True, "file"),
    ("tiff", "convert", "tif", ["-compress", "None"], EVERY, True, "file"),
    ("tiff lzw", "convert", "tif", ["-compress", "LZW"], EVERY, True, "file"),
    ("tiff zip", "convert", "tif", ["-compress", "Zip"], EVERY, True, "file"),
    ("tiff packbits", "convert", "tif", ["-compress", "RLE"], EVERY, True, "file"),
    ("tiff lzma", "convert", "tif", ["-compress", "LZMA"], EVERY, True, "file"),
    ("tiff zstd", "convert", "tif", ["-compress", "Zstd"], EVERY, True, "file"),
    ("tiff webp", "convert", "tif", ["-compress", "WebP"], ("rgb",), 35, "file"),
    ("tiff jpeg", "convert", "tif", ["-compress", "JPEG", "-quality", 92], ("gray", "rgb"), 36, "file"),
    ("tiff group 3", "convert", "tif", ["-compress", "Fax"], ("mono",), True, "file"),
    ("tiff group 4", "convert", "tif", ["-compress", "Group4"], ("mono",), True, "file"),
    ("tiff big endian", "convert", "tif", ["-endian", "MSB", "-compress", "LZW"], EVERY, True, "file"),
    ("tiff low bits first", "convert", "tif", ["-define", "tiff:fill-order=LSB", "-compress", "Group4"], ("mono",), True, "file"),
    ("tiff tiled", "convert", "tif", ["-define", "tiff:tile-geometry=32x48", "-compress", "Zip"], EVERY, True, "file"),
    ("tiff tiled jpeg", "convert", "tif", ["-define", "tiff:tile-geometry=32x48", "-compress", "JPEG", "-quality", 92],
     ("gray", "rgb"), 36, "file"),
    ("tiff tiled planes", "convert", "tif", ["-define", "tiff:tile-geometry=64x16", "-interlace", "Plane", "-compress", "Zip"],
     ("rgb", "rgb16", "rgba"), True, "file"),
    ("tiff predictor", "convert", "tif", ["-define", "tiff:predictor=2", "-compress", "LZW"], ("gray", "gray16", "rgb", "rgb16"),
     True, "file"),
    ("tiff 12 bits", "convert", "tif", ["-depth", 12], ("gray16", "rgb16"), 70, "original"),
    ("tiff planes", "convert", "tif", ["-interlace", "Plane", "-compress", "LZW"], ("rgb", "rgb16", "rgba"), True, "file"),
    ("tiff float", "convert", "tif", ["-depth", 32, "-define", "quantum:format=floating-point"], ("gray16", "rgb16"), 90, "original"),
    ("tiff associated alpha", "convert", "tif", ["-define", "tiff:alpha=associated"], ("rgba",), 45, "original"),
    ("tiff cmyk", "convert", "tif", ["-compress", "LZW"], ("cmyk",), 45, "original"),
    ("bigtiff", "convert", "tif", ["-define", "tiff:bigtiff=true"], EVERY, True, "file"),
    ("gm tiff", "gm", "tif", ["-compress", "LZW"], ("mono", "gray", "rgb", "rgb16"), True, "original"),
    ("psd", "convert", "psd", [], ("gray", "rgb", "rgb16", "rgba"), True, "original"),
    ("psd packed", "convert", "psd", ["-compress", "RLE"], ("gray", "rgb", "rgb16"), True, "original"),
    ("pcx", "convert", "pcx", [], EIGHT, True, "original"),
    ("dcx", "convert", "dcx", [], EIGHT, True, "original"),
    ("tga", "gm", "tga", [], ("gray", "pal", "rgb", "rgba"), True, "original"),
    ("tga packed", "gm", "tga", ["-compress", "RLE"], ("gray", "pal", "rgb", "rgba"), True, "original"),
    ("pbm", "convert", "pbm", [], ("mono",), True, "original"),
    ("pgm", "convert", "pgm", [], ("gray", "gray16"), True, "original"),
    ("ppm", "convert", "ppm", [], ("rgb", "rgb16"), True, "original"),
    ("ppm ascii", "convert", "ppm", ["-compress", "None"], ("rgb", "rgb16"), True, "original"),
    ("pam", "convert", "pam", [], ("gray", "rgb", "rgba", "rgba16"), True, "original"),
    ("sgi", "convert", "sgi", [], ("gray", "rgb", "rgba"), True, "original"),
    ("sun raster", "convert", "sun", [], ("mono", "gray", "rgb"), True, "original"),
    ("xwd", "convert", "xwd", [], ("mono", "gray", "pal", "rgb"), True, "original"),
    ("xbm", "convert", "xbm", [], ("mono",), True, "original"),
    ("xpm", "convert", "xpm", [], ("mono", "pal16"), True, "original"),
    ("fits", "convert", "fits", [], ("gray", "gray16"), True, "original"),
    ("pict", "convert", "pict", [], ("gray", "rgb"), True, "original"),
    ("viff", "convert", "viff", [], ("gray", "rgb"), True, "original"),
    ("dpx", "convert", "dpx", [], ("rgb", "rgb16"), True, "original"),
    ("miff", "convert", "miff", [], EVERY, True, "original"),
    ("avs", "convert", "avs", [], ("rgb",), True, "original"),
    ("mtv", "convert", "mtv", [], ("rgb",), True, "original"),
    ("vicar", "convert", "vicar", [], ("gray",), True, "original"),
    ("wbmp", "convert", "wbmp", [], ("mono",), True, "original"),
    ("jng", "convert", "jng", ["-quality", 90], ("rgb",), 30, "file"),
    ("cals", "convert", "cal", [], ("mono",), True, "original"),
    ("jp2", "convert", "jp2", ["-quality", 100], ("gray", "rgb"), 45, "file"),
]

# (name, file format number, extension, bits, quality, flags, kind of picture, exact)
_TIFF_ANY = [(3, "none"), (17, "packbits"), (25, "lzw"), (86, "deflate"), (87, "lzma"), (88, "zstd"), (166, "big"), (167, "big deflate")]
_DEPTHS = [("mono", 1), ("pal16", 4), ("pal", 8), ("gray", 8), ("gray16", 16), ("rgb", 24), ("rgba", 32), ("rgb16", 48), ("rgba16", 64)]
WRITE = [(f"tiff {name} {kind}", number, "tif", bits, 0, 0, kind, True) for number, name in _TIFF_ANY for kind, bits in _DEPTHS]
WRITE += [(f"tiff bilevel {number}", number, "tif", 1, 0, 0, "mono", True) for number in (27, 28, 29, 85)]
WRITE += [(f"tiff jpeg {number}", number, "tif", 24, 2, 0, "rgb", least) for number, least in ((11, 38), (22, 32), (24, 30))]
WRITE += [
    ("tiff jpeg gray", 11, "tif", 8, 2, 0, "gray", 38),
    ("tiff webp", 93, "tif", 24, 0, 0, "rgb", True),
    ("tiff ycc", 95, "tif", 24, 0, 0, "rgb", 30),
    ("tiff stamp", 25, "tif", 24, 0, 0x80, "rgb", True),
    ("exif tiff", 96, "tif", 24, 0, 0, "rgb", True),
    ("gif mono", 2, "gif", 1, 0, 0, "mono", True),
    ("gif pal16", 2, "gif", 4, 0, 0, "pal16", True),
    ("gif pal", 2, "gif", 8, 0, 0, "pal", True),
    ("gif gray", 2, "gif", 8, 0, 0, "gray", True),
    ("gif interlaced", 2, "gif", 8, 0, 0x10, "pal", True),
    ("bmp mono", 6, "bmp", 1, 0, 0, "mono", True),
    ("bmp pal16", 6, "bmp", 4, 0, 0, "pal16", True),
    ("bmp pal", 6, "bmp", 8, 0, 0, "pal", True),
    ("bmp rgb", 6, "bmp", 24, 0, 0, "rgb", True),
    ("bmp rle", 7, "bmp", 8, 0, 0, "pal", True),
    ("jpeg 4:4:4", 10, "jpg", 24, 2, 0, "rgb", 38),
    ("jpeg 4:2:2", 21, "jpg", 24, 2, 0, "rgb", 32),
    ("jpeg 4:2:0", 23, "jpg", 24, 2, 0, "rgb", 30),
    ("jpeg gray", 10, "jpg", 8, 2, 0, "gray", 38),
    ("exif jpeg 4:2:2", 98, "jpg", 24, 2, 0, "rgb", 32),
    ("exif jpeg 4:2:0", 101, "jpg", 24, 2, 0, "rgb", 30),
]
WRITE += [(f"png {kind}", 75, "png", bits, 6, 0, kind, True) for kind, bits in _DEPTHS]

# Uncompressed YCbCr with shared chroma is misread by ImageMagick; libtiff's own tools and GraphicsMagick agree on it.
READ_BY_GM = {"write tiff ycc"}
