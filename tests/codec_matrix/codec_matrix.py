#!/usr/bin/env python3
"""Encoder against decoder: files that other programs write are loaded by us, files that we write are loaded by them, and the
pictures must agree to the pixel, or to a stated signal-to-noise ratio where the compression loses something.

  codec_matrix.py --work FOLDER [--only TEXT] -- COMMAND...    COMMAND starts zv_codec_tool
"""

import argparse
import os
import shutil
import sys

sys.dont_write_bytecode = True  # the source tree stays as it is
from cases import KINDS, READ, READ_BY_GM, WRITE
from tools import PACKAGES, PROGRAMS, CodecTool, difference, find, run

WIDTH, HEIGHT = 131, 89


class Matrix:
    def __init__(self, work, tool, only):
        self.work, self.tool, self.only = work, tool, only
        self.passed, self.failures, self.skipped = 0, [], []
        self.pictures = {}

    def at(self, name):
        return os.path.join(self.work, name.replace(" ", "_").replace(":", ""))

    def wanted(self, name):
        return not self.only or self.only in name

    def judge(self, name, problem):
        if problem:
            self.failures.append(f"{name}: {problem}")
        else:
            self.passed += 1

    def make_pictures(self):
        base = self.at("base.miff")
        run("convert", "-seed", 7, "-size", f"{WIDTH}x{HEIGHT}", "plasma:tomato-steelblue", "(", "-size", f"{WIDTH}x{HEIGHT}",
            "radial-gradient:white-gray30", ")", "-compose", "multiply", "-composite", "-depth", 16, base)
        for kind, arguments in KINDS.items():
            extension = "miff" if kind == "cmyk" else "png"
            path = self.at(f"{kind}.{extension}")
            good, text = run("convert", base, *arguments, path)
            if not good:
                sys.exit(f"codec_matrix: cannot make {kind}: {text}")
            self.pictures[kind] = path
        # What inks look like without a profile, as other programs mix them.
        run("convert", self.pictures["cmyk"], "-colorspace", "sRGB", self.at("cmyk_rgb.png"))

    # --- They write, we read ---

    def read(self):
        jobs = []
        for name, writer, extension, options, kinds, exact, reference in READ:
            for kind in kinds:
                label = f"read {name} {kind}"
                if not self.wanted(label):
                    continue
                path, ours = self.at(f"{label}.{extension.removesuffix('3')}"), self.at(f"{label}.pam")
                prefix = f"{extension}:" if extension.endswith("3") else ""
                command = ["convert"] if writer == "gm" else []
                good, text = run(writer, *command, self.pictures[kind], *options, prefix + path)
                if not good or not os.path.exists(path):
                    self.skipped.append(f"{label}: {PROGRAMS[writer]} does not write it here: {text[:120]}")
                    continue
                original = self.at("cmyk_rgb.png") if kind == "cmyk" else self.pictures[kind]
                jobs.append((label, ours, path if reference == "file" else original, exact))
                self.tool.add("load", ("path", path), 1, ("path", ours))
        for (label, ours, theirs, exact), (code, _) in zip(jobs, self.tool.run() if jobs else []):
            self.judge(label, difference(ours, theirs, exact) if code == 1 else f"our load gave {code}")

    # --- We write, they read ---

    def write(self):
        jobs = []
        for name, number, extension, bits, quality, flags, kind, exact in WRITE:
            label = f"write {name}"
            if not self.wanted(label):
                continue
            path = self.at(f"{label}.{extension}")
            self.tool.add("save", ("path", self.pictures[kind]), ("path", path), number, bits, quality, flags, 1)
            self.tool.add("info", ("path", path), 1)
            jobs.append((label, path, kind, bits, exact))
        answers = self.tool.run() if jobs else []
        for index, (label, path, kind, bits, exact) in enumerate(jobs):
            (saved, _), (asked, told) = answers[2 * index], answers[2 * index + 1]
            if saved != 1 or asked != 1:
                self.judge(label, f"our save gave {saved}, our info {asked}")
                continue
            self.judge(label, difference(self.as_others_see(label, path), self.pictures[kind], exact))
            fields = told.split()
            self.judge(f"{label}: depth", None if int(fields[3]) == bits else f"saved {bits} bits, read back {fields[3]}")
            self.check_format(label, path)

    def as_others_see(self, label, path):
        """The first page of our file, brought into a form that the comparing program reads rightly."""
        if label not in READ_BY_GM:
            return f"{path}[0]"
        seen = path + ".png"
        run("gm", "convert", path, seen)
        return seen

    def check_format(self, label, path):
        """The format's own checker must find nothing wrong. Exif tags that are merely usual may be missing."""
        checker = {"png": ("pngcheck", ["-q"]), "tif": ("tiffinfo", ["-D"]), "jpg": ("exiftool", ["-q", "-a", "-warning", "-error"])}
        program, options = checker.get(path.rsplit(".", 1)[1], (None, None))
        if program and find(program):
            good, text = run(program, *options, path)
            complaint = not good or any(word in text.lower() for word in ("warning", "error"))
            self.judge(f"{label}: {program}", text[:200] if complaint else None)

    # --- Pages ---

    def pages(self):
        """A file of several pages that has seen every page operation, page by page against what it must hold."""
        for extension, number, kinds in (("tif", 86, ("rgb", "gray", "pal", "mono", "rgb16")), ("gif", 2, ("pal", "pal16", "mono"))):
            label = f"pages {extension}"
            if not self.wanted(label):
                continue
            path = self.at(f"{label}.{extension}")
            wanted = list(kinds)
            for page, kind in enumerate(kinds, start=1):
                self.tool.add("save", ("path", self.pictures[kind]), ("path", path), number, 0, 0, 0, page)
            first, second = kinds[0], kinds[1]
            self.tool.add("save", ("path", self.pictures[first]), ("path", path), number, 0, 0, 0x400, 2)
            self.tool.add("save", ("path", self.pictures[second]), ("path", path), number, 0, 0, 0x800, 1)
            self.tool.add("delete", ("path", path), 3)
            wanted[1] = first
            wanted.insert(0, second)
            del wanted[2]
            codes = [code for code, _ in self.tool.run()]
            self.judge(f"{label}: operations", None if all(code == 1 for code in codes) else f"codes {codes}")
            for page, kind in enumerate(wanted):
                self.judge(f"{label}: page {page + 1}", difference(f"{path}[{page}]", self.pictures[kind], True))
            _, text = run("identify", path)
            self.judge(f"{label}: count", None if len(text.splitlines()) == len(wanted) else text[:300])

    def foreign_pages(self):
        """Pages that another program wrote are loaded, and stay as they are when one of them is deleted."""
        label = "foreign pages"
        if not self.wanted(label):
            return
        path = self.at("foreign_pages.tif")
        kinds = ("mono", "rgb", "gray16", "pal")
        run("convert", *[self.pictures[kind] for kind in kinds], "-compress", "LZW", path)
        outputs = [self.at(f"foreign_{page}.pam") for page in range(1, 5)]
        for page, output in enumerate(outputs, start=1):
            self.tool.add("load", ("path", path), page, ("path", output))
        self.tool.add("delete", ("path", path), 2)
        codes = [code for code, _ in self.tool.run()]
        self.judge(f"{label}: codes", None if all(code == 1 for code in codes) else f"codes {codes}")
        for kind, output in zip(kinds, outputs):
            self.judge(f"{label}: {kind}", difference(output, self.pictures[kind], True))
        for page, kind in enumerate(("mono", "gray16", "pal")):
            self.judge(f"{label}: {kind} after delete", difference(f"{path}[{page}]", self.pictures[kind], True))

    def animation(self):
        """Frames of an animation look as another program composes them."""
        label = "gif animation"
        if not self.wanted(label):
            return
        path, whole = self.at("animation.gif"), self.at("animation.miff")
        frames = []
        for x in range(4):
            frames += ["(", "-size", "60x40", "xc:none", "+antialias", "-fill", f"hsl({x * 80},80%,50%)", "-draw",
                       f"circle {12 + x * 12},20 {12 + x * 12},30", ")"]
        run("convert", "-dispose", "background", "-delay", 5, *frames, "-layers", "OptimizeFrame", path)
        run("convert", path, "-coalesce", whole)
        outputs = [self.at(f"frame_{page}.pam") for page in range(1, 5)]
        for page, output in enumerate(outputs, start=1):
            self.tool.add("load", ("path", path), page, ("path", output))
        codes = [code for code, _ in self.tool.run()]
        for page, output in enumerate(outputs):
            flat = self.at(f"theirs_{page}.png")
            # Bare ground is see-through in one program and has the palette's colour in the other: compare on that colour.
            run("convert", f"{whole}[{page}]", "-background", "black", "-flatten", flat)
            run("convert", output, "-background", "black", "-flatten", output)
            self.judge(f"{label}: frame {page + 1}", difference(output, flat, True) if codes[page] == 1 else f"code {codes[page]}")

    def report(self):
        for line in self.skipped:
            print("skipped:", line)
        for line in self.failures:
            print("FAILED:", line)
        print(f"{self.passed} passed, {len(self.failures)} failed, {len(self.skipped)} skipped")
        return 1 if self.failures or self.passed == 0 else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--work", required=True)
    parser.add_argument("--only", default="", help="run the cases whose name has this text")
    parser.add_argument("command", nargs="+")
    arguments = parser.parse_args()
    missing = [name for name in PROGRAMS if not find(name)]
    for name in missing:
        print(f"skipped: {PROGRAMS[name]} is missing; type: apt-get install {PACKAGES[name]}")
    if {"convert", "compare"} & set(missing):
        print("0 passed, 0 failed, 1 skipped")
        return 77
    shutil.rmtree(arguments.work, ignore_errors=True)
    os.makedirs(arguments.work)
    windows = arguments.command[-1].endswith(".exe")
    matrix = Matrix(arguments.work, CodecTool(arguments.command, arguments.work, windows), arguments.only)
    matrix.make_pictures()
    for part in (matrix.read, matrix.write, matrix.pages, matrix.foreign_pages, matrix.animation):
        part()
    return matrix.report()


if __name__ == "__main__":
    sys.exit(main())
