#!/usr/bin/env python3
"""What a batch conversion keeps of its sources, judged by independent programs: files are converted through the dialog of the
real export, then exiftool says which metadata the results carry and ImageMagick what their pixels are.

  conversion_judges.py --work FOLDER [--only TEXT] -- COMMAND...    COMMAND starts zv_convert_tool
"""

import argparse
import json
import os
import shutil
import subprocess
import sys
import time

sys.dont_write_bytecode = True  # the source tree stays as it is
from conversion_sources import CARRIED, DPI, OUTPUTS, PROFILES, Sources, resolution_of
from tools import PACKAGES, PROGRAMS, CodecTool, difference, find, run

CLOSED = 102  # what the export answers when the dialog was closed with its button
NEEDED = ("convert", "compare", "identify", "exiftool")


class Judges:
    def __init__(self, work, tool, only):
        self.work, self.tool, self.only = work, tool, only
        self.passed, self.failures = 0, []
        self.sources = Sources(os.path.join(work, "sources"))
        self.asked = []  # (folder, sources, extension) of the runs that are waiting
        self.started = time.time()

    def judge(self, name, problem):
        if self.only and self.only not in name:
            return
        if problem:
            self.failures.append(f"{name}: {problem}")
        else:
            self.passed += 1

    # --- Running conversions ---

    def convert(self, label, sources, output, angle="0", size=("100", "100")):
        """Asks for one run; gives a function from a source to the path of its result."""
        folder = os.path.join(self.work, label.replace(" ", "_"))
        form, depth, subtype, extension = OUTPUTS[output]
        paths = [("path", path) for path in sources]
        self.tool.add("convert", ("path", folder), form, depth, subtype, angle, *size, *paths)
        self.asked.append((label, len(sources)))
        return lambda source: os.path.join(folder, os.path.splitext(os.path.basename(source))[0] + "." + extension)

    def run(self):
        for (label, count), (code, done) in zip(self.asked, self.tool.run()):
            good = code == CLOSED and done == str(count)
            self.judge(f"{label}: run", None if good else f"code {code}, {done} of {count} files")
        self.asked = []

    # --- Metadata ---

    def metadata(self):
        """Resolution, profile, Exif and XMP of every kind of source arrive in every format that can hold them."""
        sources = self.sources.with_metadata()
        targets = {}
        for output in CARRIED:
            targets[output] = self.convert(f"metadata {output}", sources, output)
        self.run()
        for output, target in targets.items():
            for source in sources:
                self.check_metadata(f"metadata {os.path.basename(source)} to {output}", source, target(source), CARRIED[output])

    def check_metadata(self, name, source, path, kinds):
        if not os.path.exists(path):
            self.judge(name, "was not written")
            return
        told = tags_of(path)
        if "resolution" in kinds:
            x, y = resolution_of(told)
            near = x and y and abs(x - DPI[0]) < 0.5 and abs(y - DPI[1]) < 0.5
            self.judge(f"{name}: resolution", None if near else f"{x} x {y}, wanted {DPI}")
        if "profile" in kinds:
            extract = [find("exiftool"), "-icc_profile", "-b", path]
            profile = subprocess.run(extract, stdout=subprocess.PIPE, check=False).stdout
            with open(PROFILES["rgb"], "rb") as file:
                same = profile == file.read()
            self.judge(f"{name}: profile", None if same else f"another profile, {len(profile)} bytes")
        for kind, wanted in (("exif", self.sources.EXIF), ("xmp", self.sources.XMP)):
            if kind not in kinds:
                continue
            for tag, value in wanted.items():
                self.judge(f"{name}: {tag}", None if str(told.get(tag)) == value else f"{told.get(tag)}, wanted {value}")
        self.check_upright(name, path, told)

    def check_upright(self, name, path, told):
        """Nothing in the file may tell a viewer to turn the picture again, nor claim another size for it."""
        for tag in ("IFD0:Orientation", "XMP-tiff:Orientation"):
            self.judge(f"{name}: {tag}", None if told.get(tag, 1) == 1 else f"{told[tag]}")
        size = [int(side) for side in identify("%w %h", path).split()]
        for tag, side in (("ExifIFD:ExifImageWidth", size[0]), ("ExifIFD:ExifImageHeight", size[1])):
            self.judge(f"{name}: {tag}", None if told.get(tag, side) == side else f"{told[tag]}, the picture has {side}")
        self.judge(f"{name}: stale thumbnail", "still there" if "IFD1:ThumbnailOffset" in told else None)

    # --- Orientation ---

    def orientation(self):
        """Each of the eight orientations is applied once, whatever the formats on both sides and the transforms between."""
        sources = self.sources.oriented()
        cases = []
        for output in ("jpeg", "png 24", "tiff 24", "webp 24", "jp2 24"):
            cases.append((output, [], self.convert(f"orientation {output}", sources, output)))
        for output in ("png 24", "jpeg"):
            turned = self.convert(f"turned {output}", sources, output, "90")
            cases.append((output, ["-rotate", "90"], turned))
            smaller = self.convert(f"smaller {output}", sources, output, "0", ("50", "25"))
            cases.append((output, ["-resize", "50%x25%!"], smaller))
        self.run()
        for output, transform, target in cases:
            for source in sources:
                self.check_orientation(output, transform, source, target(source))

    def check_orientation(self, output, transform, source, path):
        name = f"orientation {os.path.basename(source)} to {output} {' '.join(transform)}".strip()
        if not os.path.exists(path):
            self.judge(name, "was not written")
            return
        # The reference comes from the upright original: readers disagree about orientations outside JPEG and TIFF.
        wanted, shown = path + ".wanted.png", path + ".shown.png"
        run("convert", self.sources.upright(), *transform, wanted)
        run("convert", path, "-auto-orient", shown)
        self.judge(name, difference(shown, wanted, 28))
        self.check_upright(name, path, tags_of(path))

    # --- Depth ---

    def depth(self):
        """16-bit samples stay as they are, and stay 16-bit through rotations and resizes."""
        sources = self.sources.deep()
        cases = []
        for output, alpha in (("png 48", False), ("tiff 48", False), ("png 64", True), ("tiff 64", True), ("png 16", None),
                              ("tiff 16", None)):
            fitting = [path for path in sources if self.sources.alpha_of(path) == alpha]
            for angle, size, transform in (("0", ("100", "100"), []), ("90", ("100", "100"), ["-rotate", "90"])):
                target = self.convert(f"depth {output} {angle}", fitting, output, angle, size)
                cases.append((output, fitting, transform, target, True))
            target = self.convert(f"depth {output} half", fitting, output, "0", ("50", "50"))
            cases.append((output, fitting, ["-filter", "Box", "-resize", "50%"], target, 60))
        self.run()
        for output, fitting, transform, target, exact in cases:
            for source in fitting:
                name = f"depth {os.path.basename(source)} to {output} {' '.join(transform)}".strip()
                wanted = target(source) + ".wanted.png"
                run("convert", source, *transform, wanted)
                self.judge(name, difference(target(source), wanted, exact))
                depth = identify("%z", target(source))
                self.judge(f"{name}: depth", None if depth == "16" else f"{depth} bits a sample")

    # --- Transparency ---

    def transparency(self):
        """Where the target has no alpha the picture lies on white, partial alpha included."""
        sources = self.sources.transparent()
        cases = []
        outputs = (("jpeg", 28), ("bmp 24", 45), ("png 24", 45), ("tiff 24", 45), ("png 48", 45), ("jpeg gray", 28),
                   ("gif 8", 24), ("webp 24", 32))
        for output, least in outputs:
            cases.append((output, [], least, self.convert(f"flat {output}", sources, output)))
        turned = self.convert("flat turned png 24", sources, "png 24", "90")
        cases.append(("png 24", ["-rotate", "90"], 45, turned))
        smaller = self.convert("flat smaller png 24", sources, "png 24", "0", ("50", "50"))
        cases.append(("png 24", ["-filter", "Box", "-resize", "50%"], 27, smaller))
        self.run()
        for output, transform, least, target in cases:
            for source in sources:
                name = f"transparency {os.path.basename(source)} to {output} {' '.join(transform)}".strip()
                wanted = target(source) + ".wanted.png"
                gray = ["-colorspace", "Gray"] if output.endswith("gray") else []
                run("convert", f"{source}[0]", "-background", "white", "-flatten", *transform, *gray, wanted)
                if output == "gif 8" and os.path.exists(target(source)):  # which may keep full transparency
                    run("convert", target(source), "-background", "white", "-flatten", target(source))
                self.judge(name, difference(target(source), wanted, least))

    def kept_transparency(self):
        """Where the target has alpha, it arrives."""
        sources = self.sources.transparent()
        outputs = ("png 32", "tiff 32", "webp 32", "jp2 32")
        cases = [(output, self.convert(f"alpha {output}", sources, output)) for output in outputs]
        self.run()
        for output, target in cases:
            for source in sources:
                name = f"alpha {os.path.basename(source)} to {output}"
                # Colours under full transparency are nobody's business: compare on a ground of their own.
                wanted, shown = target(source) + ".wanted.png", target(source) + ".shown.png"
                for path, flat in ((f"{source}[0]", wanted), (target(source), shown)):
                    run("convert", path, "-background", "lime", "-flatten", flat)
                self.judge(name, difference(shown, wanted, 30))

    # --- Inks ---

    def inks(self):
        """CMYK becomes RGB through its own profile."""
        sources = self.sources.inked()
        target = self.convert("inks png 24", sources, "png 24")
        self.run()
        for source in sources:
            name = f"inks {os.path.basename(source)}"
            wanted, plain = target(source) + ".wanted.png", target(source) + ".plain.png"
            as_profiled = ["-intent", "perceptual", "-black-point-compensation", "-profile", PROFILES["srgb"]]
            run("convert", f"{source}[0]", *as_profiled, "-alpha", "off", "-depth", 8, wanted)
            run("convert", f"{source}[0]", "+profile", "icc", "-colorspace", "sRGB", "-alpha", "off", "-depth", 8, plain)
            if not difference(plain, wanted, 26):
                self.judge(name, "the profile makes no difference: nothing would be tested")
            self.judge(name, difference(target(source), wanted, 36))
            told = tags_of(target(source))
            space = told.get("ICC-header:ColorSpaceData", "RGB ")
            self.judge(f"{name}: profile", None if space == "RGB " else f"the result claims to be {space}")

    # --- Times ---

    def times(self):
        """Results are dated when they were written, whatever their source's date."""
        source = self.sources.upright()
        os.utime(source, (1_000_000_000, 1_000_000_000))
        before = time.time()
        target = self.convert("times", [source], "jpeg")
        self.run()
        target = self.convert("times", [source], "jpeg")  # over the former result
        self.run()
        written = os.path.getmtime(target(source))
        self.judge("times", None if before - 2 <= written <= time.time() + 2 else f"dated {time.ctime(written)}")

    def report(self):
        for line in self.failures:
            print("FAILED:", line)
        print(f"{self.passed} passed, {len(self.failures)} failed, {time.time() - self.started:.0f} s")
        return 1 if self.failures or self.passed == 0 else 0


def tags_of(path):
    """Tags by group and name, as numbers where they are numbers."""
    _, text = run("exiftool", "-j", "-G1", "-n", "-a", path)
    try:
        return json.loads(text)[0]
    except (ValueError, IndexError):
        return {}


def identify(form, path):
    """What ImageMagick says of the first page; its warnings go elsewhere."""
    result = subprocess.run([find("identify"), "-format", form, f"{path}[0]"], check=False, stdout=subprocess.PIPE,
                            stderr=subprocess.DEVNULL)
    return result.stdout.decode(errors="replace").strip()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--work", required=True)
    parser.add_argument("--only", default="", help="count the checks whose name has this text, run the parts named so")
    parser.add_argument("command", nargs="+")
    arguments = parser.parse_args()
    missing = [f"{PROGRAMS[name]} (package {PACKAGES[name]})" for name in NEEDED if not find(name)]
    missing += [f"{path} (package libgs-common)" for path in PROFILES.values() if not os.path.exists(path)]
    if missing:
        print("skipped: missing", ", ".join(missing))
        return 77
    shutil.rmtree(arguments.work, ignore_errors=True)
    os.makedirs(arguments.work)
    windows = arguments.command[-1].endswith(".exe")
    judges = Judges(arguments.work, CodecTool(arguments.command, arguments.work, windows), arguments.only)
    for part in (judges.metadata, judges.orientation, judges.depth, judges.transparency, judges.kept_transparency,
                 judges.inks, judges.times):
        if not arguments.only or arguments.only.split()[0] in part.__name__:
            part()
    return judges.report()


if __name__ == "__main__":
    sys.exit(main())
