#!/usr/bin/env python3
"""Makes sample images into a folder.

  make_samples.py samples FOLDER                     a small set of every kind: photographs, faxes, drawings, damaged files
  make_samples.py bench FOLDER [--count N] [--tiff]  photograph-like JPEGs of 2 to 12 megapixels, and the same as TIFF

The same command makes the same pixels each time. A folder that is already complete is left alone; --force makes it anew.
"""

import argparse
import hashlib
import json
import os
import shutil
import sys

sys.dont_write_bytecode = True  # the source tree stays as it is
from sample_images import documents, exif, oddities, photos, tool



def make_photographs(folder):
    """Landscapes with the JPEG and depth variants that cameras, scanners and printers' files come in."""
    os.makedirs(folder, exist_ok=True)

    def at(name):
        return os.path.join(folder, name)

    variants = (
        ("landscape 1.jpg", 1600, 1200, ["-quality", 90, "-sampling-factor", "2x2"]),
        ("landscape 2.jpg", 1200, 1600, ["-quality", 85, "-sampling-factor", "2x1"]),
        ("landscape 3.jpg", 1800, 1000, ["-quality", 95, "-sampling-factor", "1x1"]),
        ("progressive.jpg", 1280, 960, ["-quality", 85, "-interlace", "JPEG"]),
        ("grey.jpg", 1280, 960, ["-quality", 88, "-colorspace", "Gray"]),
        ("cmyk.jpg", 1024, 768, ["-quality", 90, "-colorspace", "CMYK"]),
        ("deep.png", 800, 600, ["-depth", 16]),
        ("deep.tif", 800, 600, ["-depth", 16, "-compress", "Zip"]),
        ("deep grey.tif", 800, 600, ["-colorspace", "Gray", "-depth", 16, "-compress", "LZW"]),
        ("scan.tif", 1600, 1200, ["-compress", "None"]),
        ("scan jpeg.tif", 1600, 1200, ["-compress", "JPEG", "-quality", 90]),
        ("print cmyk.tif", 1000, 750, ["-colorspace", "CMYK", "-compress", "LZW"]),
        ("windows.bmp", 800, 600, ["-type", "TrueColor"]),
        ("portable.ppm", 640, 480, []),
        ("layered.psd", 640, 480, []),
        ("truevision.tga", 640, 480, ["-compress", "RLE"]),
        ("paintbrush.pcx", 640, 480, []),
        ("workstation.sgi", 640, 480, []),
    )
    tool.in_parallel([lambda v=v, seed=seed: photos.make(at(v[0]), v[1], v[2], seed * 10, output=v[3])
                      for seed, v in enumerate(variants, start=3)])


def make_orientations(folder):
    """One upright picture stored in each of the eight orientations, its Exif segment saying how, with a thumbnail."""
    os.makedirs(folder, exist_ok=True)
    upright = os.path.join(folder, "upright.png")
    label = os.path.join(folder, "label.png")
    photos.make(upright, 600, 400, 77)
    documents.make_label(label, "TOP", 200, 80)
    tool.convert(upright, label, "-gravity", "north", "-composite", upright)
    stored = {1: [], 2: ["-flop"], 3: ["-rotate", 180], 4: ["-flip"], 5: ["-transpose"], 6: ["-rotate", 270],
              7: ["-transverse"], 8: ["-rotate", 90]}

    def make(orientation, operations):
        path = os.path.join(folder, f"orientation {orientation}.jpg")
        tool.convert(upright, *operations, "+repage", "-quality", 90, path)
        thumbnail = tool.convert(path, "-resize", "160x120", "-strip", "-quality", 75, "jpg:-")
        exif.insert(path, orientation, thumbnail)

    tool.in_parallel([lambda o=o, s=s: make(o, s) for o, s in stored.items()])
    os.remove(upright)
    os.remove(label)


def make_documents(folder):
    os.makedirs(folder, exist_ok=True)

    def at(name):
        return os.path.join(folder, name)

    tool.in_parallel([
        lambda: documents.make_fax(at("fax.tif"), 5),
        lambda: documents.make_fax(at("fax group 3.tif"), 2, "Fax"),
        lambda: documents.make_line_art(at("line art.png")),
        lambda: documents.make_chart(at("chart 2.png"), 2),
        lambda: documents.make_chart(at("chart 16.png"), 16),
        lambda: documents.make_chart(at("chart 200.png"), 200),
        lambda: documents.make_chart(at("chart 16.gif"), 16),
        lambda: documents.make_chart(at("chart 16.bmp"), 16),
        lambda: documents.make_animation(at("animation.gif")),
    ])


def make_samples(folder):
    make_photographs(os.path.join(folder, "photographs"))
    make_orientations(os.path.join(folder, "orientations"))
    make_documents(os.path.join(folder, "documents"))
    oddities.make_shapes(os.path.join(folder, "shapes"))
    small = os.path.join(folder, "small.jpg")
    photos.make(small, 320, 240, 55, output=["-quality", 85])
    oddities.make_names(os.path.join(folder, "names"), small)
    oddities.make_damaged(os.path.join(folder, "damaged"), small, os.path.join(folder, "documents", "fax.tif"),
                          os.path.join(folder, "documents", "animation.gif"),
                          os.path.join(folder, "documents", "chart 200.png"))
    os.remove(small)


def make_bench(folder, count, tiff):
    """Sizes go evenly from 2 to 12 megapixels, every fourth one upright; every third image is noisy as from dim light."""
    jpegs, tiffs = os.path.join(folder, "jpeg"), os.path.join(folder, "tiff")
    os.makedirs(jpegs, exist_ok=True)
    if tiff:
        os.makedirs(tiffs, exist_ok=True)

    def make(index):
        megapixels = 2 + 10 * index / max(count - 1, 1)
        width = round((megapixels * 1e6 * 4 / 3) ** 0.5 / 16) * 16
        height = round(width * 3 / 4)
        if index % 4 == 3:
            width, height = height, width
        path = os.path.join(jpegs, f"photo_{index:03d}.jpg")
        noise = 0.6 if index % 3 == 2 else 0.3
        photos.make(path, width, height, 1000 + 10 * index, noise, ["-quality", 92, "-sampling-factor", "2x1"])
        if tiff:
            tool.convert(path, "-compress", "None", os.path.join(tiffs, f"photo_{index:03d}.tif"))

    tool.in_parallel([lambda i=i: make(i) for i in range(count)])


def fingerprint(what):
    """Changes when the wish or any line of these scripts does."""
    digest = hashlib.sha256(json.dumps(what, sort_keys=True).encode())
    here = os.path.dirname(os.path.abspath(__file__))
    sources = [os.path.join(here, "make_samples.py")]
    package = os.path.join(here, "sample_images")
    sources += [os.path.join(package, name) for name in sorted(os.listdir(package)) if name.endswith(".py")]
    for source in sources:
        with open(source, "rb") as file:
            digest.update(file.read())
    return digest.hexdigest()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    commands = parser.add_subparsers(dest="command", required=True)
    samples = commands.add_parser("samples")
    bench = commands.add_parser("bench")
    for command in (samples, bench):
        command.add_argument("folder")
        command.add_argument("--force", action="store_true", help="make a complete folder anew")
    bench.add_argument("--count", type=int, default=60)
    bench.add_argument("--tiff", action="store_true", help="make each image as an uncompressed TIFF as well")
    arguments = parser.parse_args()

    what = {key: value for key, value in vars(arguments).items() if key not in ("folder", "force")}
    mark = os.path.join(arguments.folder, ".complete")
    wanted = fingerprint(what)
    if not arguments.force and os.path.exists(mark):
        with open(mark, encoding="ascii") as file:
            if file.read() == wanted:
                return 0
    os.makedirs(arguments.folder, exist_ok=True)
    for name in ("photographs", "orientations", "documents", "shapes", "names", "damaged", "jpeg", "tiff"):
        shutil.rmtree(os.path.join(arguments.folder, name), ignore_errors=True)
    if arguments.command == "samples":
        make_samples(arguments.folder)
    else:
        make_bench(arguments.folder, arguments.count, arguments.tiff)
    with open(mark, "w", encoding="ascii") as file:
        file.write(wanted)
    return 0


if __name__ == "__main__":
    sys.exit(main())
