#!/usr/bin/env python3
"""Measures turning, mirroring, rotating and halving a picture of 24 megapixels in memory.

usage: pixel_bench.py BUILD_FOLDER [--only turns|pixels] [--write DOCUMENT]

Every program is pinned to one processor and limited to one thread; the best of some rounds counts, in which the programs take
turns. Ours is the Windows build under Wine, which times the operation alone, the making of the new picture included. ImageMagick
and libvips are timed as whole commands. From ImageMagick's goes the time of the same command without an operation, so that its
start and its reading of a PPM do not count. libvips maps a picture of its own uncompressed format into memory and writes its
result in that format; the time of its start is taken off. Prints Markdown tables, and with --write puts each into the document
between its two marks.
"""
import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True  # the source tree stays as it is
from run import ONE_THREAD, PROCESSOR, ROOT, scratch_place, write_into

ROUNDS = 3
SIZE = "6000x4000"
IMAGEMAGICK = ["convert-im6.q16", "-limit", "memory", "4GiB", "-limit", "map", "4GiB", "-limit", "area", "1GP"]
LINE = re.compile(r"^(.{14}) (.{28}) +([\d.]+) ms", re.MULTILINE)


def run_ours(build, depth, *operations):
    """Milliseconds of each operation, the best of some runs."""
    command = ["taskset", "-c", PROCESSOR, str(ROOT / "scripts/wine_run.sh"), str(build / "bin/zvresample_bench.exe"), depth]
    output = subprocess.run(command + list(operations), check=True, capture_output=True, text=True).stdout
    return {name.strip(): float(time) for _, name, time in LINE.findall(output.replace("\r", ""))}


def milliseconds(command):
    start = time.perf_counter()
    subprocess.run(["taskset", "-c", PROCESSOR] + command, check=True, env={**os.environ, **ONE_THREAD},
                   stdout=subprocess.DEVNULL)
    return (time.perf_counter() - start) * 1000


def best(rounds, *measures):
    """The least that each gave, taking turns."""
    return [min(times) for times in zip(*[[measure() for measure in measures] for _ in range(rounds)])]


def turn_rows(build, _):
    turns = ("rotate 90", "rotate 180", "rotate 270", "mirror")
    rows = ["| picture | operation | ours ms | memcpy into new memory ms | memcpy ms | new memcpy : ours | memcpy : ours |",
            "|---|---|---|---|---|---|---|"]
    for depth in ("8 bit grey", "24 bit", "32 bit"):
        rounds = [run_ours(build, depth, "copy", "memcpy", *turns) for _ in range(ROUNDS)]
        figures = {name: min(figure[name] for figure in rounds) for name in rounds[0]}
        copy, plain = figures["copy"], figures["memcpy"]
        for name in turns:
            ours = figures[name]
            rows.append(f"| {depth} | {name} | {ours:.1f} | {copy:.1f} | {plain:.1f} | "
                        f"{copy / ours:.2f} | {plain / ours:.2f} |")
            print(rows[-1], flush=True)
    return rows


def pixel_operations(ppm, raw, result):
    """Name, our operation, and the commands of the peers; ImageMagick's may be several, the fastest of which counts."""
    magick = IMAGEMAGICK + [str(ppm)]
    return [
        ("50 %, area average", "half size, area",
         [magick + ["-filter", "Box", "-resize", "50%", "null:"], magick + ["-scale", "50%", "null:"]],
         ["vips", "shrink", str(raw), str(result), "2", "2"]),
        ("7 degrees, bicubic", "rotate 7, bicubic",
         [magick + ["-background", "black", "-virtual-pixel", "background", "-filter", "point", "-interpolate", "bicubic",
                    "+distort", "SRT", "7", "null:"]],
         ["vips", "similarity", str(raw), str(result), "--angle", "7", "--interpolate", "bicubic"]),
    ]


def pixel_rows(build, work):
    ppm, raw, result = work / "in.ppm", work / "in.v", work / "out.v"
    # A stretched plasma gives shapes, the noise gives detail.
    subprocess.run(IMAGEMAGICK + ["-seed", "1", "-size", "750x500", "plasma:fractal", "-resize", SIZE + "!",
                                  "-attenuate", "0.3", "+noise", "Gaussian", "-depth", "8", str(ppm)], check=True)
    subprocess.run(["vips", "copy", str(ppm), str(raw)], check=True)
    rows = ["| operation | ours ms | ImageMagick ms | libvips ms | ours : ImageMagick | ours : libvips |",
            "|---|---|---|---|---|---|"]
    nothing_magick = IMAGEMAGICK + [str(ppm), "null:"]
    nothing_vips = ["vips", "--version"]
    for name, ours_name, magick_commands, vips_command in pixel_operations(ppm, raw, result):
        ours, *others = best(ROUNDS, lambda: run_ours(build, "24 bit", ours_name)[ours_name],
                             lambda: milliseconds(nothing_magick), lambda: milliseconds(nothing_vips),
                             lambda: milliseconds(vips_command),
                             *[lambda command=command: milliseconds(command) for command in magick_commands])
        start_magick, start_vips, vips, *magicks = others
        magick, vips = min(magicks) - start_magick, vips - start_vips
        rows.append(f"| {name} | {ours:.0f} | {magick:.0f} | {vips:.0f} | {ours / magick:.2f} | {ours / vips:.2f} |")
        print(rows[-1], flush=True)
    return rows


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--only", choices=("turns", "pixels"), help="one of the two tables")
    parser.add_argument("--write", type=pathlib.Path, help="document that gets the tables")
    options = parser.parse_args()
    build = options.build.resolve()
    for name, measure in {"turns": turn_rows, "pixels": pixel_rows}.items():
        if options.only in (None, name):
            with tempfile.TemporaryDirectory(dir=scratch_place(build)) as scratch:
                rows = measure(build, pathlib.Path(scratch))
            if options.write:
                write_into(options.write, name, rows)


if __name__ == "__main__":
    main()
