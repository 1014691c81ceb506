#!/usr/bin/env python3
"""Measures the open dialog against the peers' command lines, on the same files in the same run.

usage: open_bench.py BUILD_FOLDER [--only preview|thumbnails|stamps] [--files N] [--write DOCUMENT]

Ours runs under Wine through Z_DlgOpen; djpeg and gm are native. Every program is pinned to one processor and limited to one
thread, and ours and the peer take turns. Prints Markdown tables, and with --write puts each into the document between its two
marks.
"""
import argparse
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True  # the source tree stays as it is
from run import ONE_THREAD, PROCESSOR, ROOT, windows_path, write_into

sys.path.insert(0, str(ROOT / "scripts"))
from sample_images import exif, photos, tool

LARGE, MEDIUM = (6000, 4000), (4000, 3000)
LARGE_COUNT, MEDIUM_COUNT = 3, 10
ROUNDS = 5


def make_images():
    """Photographs of 24 megapixels, of 24 with an Exif thumbnail, and of 12; made once and kept in the cache."""
    cache = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache")
    images = cache / "zvfiledlg/bench-open"
    if (images / ".complete").exists():
        return images
    shutil.rmtree(images, ignore_errors=True)
    for name in ("large", "stamped", "medium"):
        (images / name).mkdir(parents=True)
    camera = ["-quality", 92, "-sampling-factor", "2x1"]
    for number in range(LARGE_COUNT):
        path = images / "large" / f"large_{number}.jpg"
        photos.make(str(path), *LARGE, 500 + 10 * number, 0.3, camera)
        stamped = images / "stamped" / f"stamped_{number}.jpg"
        shutil.copy(path, stamped)
        exif.insert(str(stamped), 1, tool.convert(str(path), "-resize", "160x120", "-strip", "-quality", 75, "jpg:-"))
    tool.in_parallel([lambda n=n: photos.make(str(images / "medium" / f"medium_{n:02}.jpg"), *MEDIUM, 900 + 10 * n, 0.3,
                                              camera) for n in range(MEDIUM_COUNT)])
    (images / ".complete").touch()
    return images


def run_ours(build, mode, *arguments):
    """Gives the figures that the program prints, one dict of numbers a line."""
    command = ["taskset", "-c", PROCESSOR, str(ROOT / "scripts/wine_run.sh"), str(build / "bin/zvopen_bench.exe"), mode]
    output = subprocess.run(command + list(arguments), check=True, capture_output=True, text=True).stdout
    return [{key: float(value) for key, value in re.findall(r"(\w+)=([\d.]+)", line)} for line in output.splitlines()]


def seconds_of_peer(command, folder):
    start = time.perf_counter()
    subprocess.run(["taskset", "-c", PROCESSOR] + command, cwd=folder, check=True, env={**os.environ, **ONE_THREAD})
    return time.perf_counter() - start


def preview_rows(build, images, work, options):
    """From the choice of a file in the dialog to the end of the pane's first paint with its picture."""
    folder = images / "large"
    files = sorted(path.name for path in folder.iterdir())
    first, further, stamped, peer = [], [], [], []
    for _ in range(ROUNDS):
        runs = run_ours(build, "preview", windows_path(folder))
        first += runs[:1]
        further += runs[1:]
        stamped += run_ours(build, "preview", windows_path(images / "stamped"))
        peer += [seconds_of_peer(["djpeg", "-outfile", "/dev/null", file], folder) for file in files]
    decoded = statistics.median(peer)
    rows = ["| preview | ours ms | of which paint ms | djpeg ms | ours : djpeg |", "|---|---|---|---|---|"]
    for name, runs in (("JPEG of 24 megapixels", further), ("the first one in a dialog", first),
                       ("with an Exif thumbnail", stamped)):
        shown, paint = (statistics.median(run[key] for run in runs) for key in ("seconds", "paint"))
        rows.append(f"| {name} | {shown * 1000:.0f} | {paint * 1000:.1f} | {decoded * 1000:.0f} | {shown / decoded:.2f} |")
    return rows


def thumbnail_rows(build, images, work, options):
    """All of a long selection at OK, from the press of the button to the end of the call."""
    originals = sorted((images / "medium").iterdir())
    folder = work / "selection"
    folder.mkdir()
    for number in range(options.files):
        os.link(originals[number % len(originals)], folder / f"{number:04}.jpg")
    names = sorted(path.name for path in folder.iterdir())
    target = work / "gm"
    target.mkdir()
    # In turns of a quarter, so that what else the machine does falls on both.
    ours = peer = 0.0
    quarter = (options.files + 3) // 4
    for start in range(0, options.files, quarter):
        part = names[start : start + quarter]
        run = run_ours(build, "thumbnails", windows_path(folder), *part)[0]
        if run["files"] != len(part):
            sys.exit(f"{run['files']:.0f} of {len(part)} files got a thumbnail")
        ours += run["seconds"]
        peer += seconds_of_peer(["gm", "mogrify", "-output-directory", str(target), "-thumbnail", "150x150"] + part, folder)
    if len(list(target.iterdir())) != options.files:
        sys.exit("gm left files out")
    return ["| thumbnails of JPEGs of 12 megapixels | ours s | gm s | ours : gm |", "|---|---|---|---|",
            f"| {options.files} files at OK | {ours:.1f} | {peer:.1f} | {ours / peer:.2f} |"]


def stamp_rows(build, images, work, options):
    """What a stamp costs beside the whole picture, by plain calls on files that the program writes itself."""
    rows = ["| stamp in | ReadFileStamp ms | full load ms | share of a load |", "|---|---|---|---|"]
    source = images / "large" / "large_0.jpg"
    for name in ("JPEG", "TIFF", "CMP"):
        run = run_ours(build, "stamp", windows_path(source), windows_path(work / f"stamped_{name.lower()}"), name)[0]
        rows.append(f"| {name} | {run['stamp'] * 1000:.2f} | {run['load'] * 1000:.0f} | {run['stamp'] / run['load']:.4f} |")
    return rows


TABLES = {"preview": preview_rows, "thumbnails": thumbnail_rows, "stamps": stamp_rows}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--only", choices=TABLES, help="one of the tables")
    parser.add_argument("--files", type=int, default=500, help="files that get thumbnails")
    parser.add_argument("--write", type=pathlib.Path, help="document that gets the tables")
    options = parser.parse_args()
    build = options.build.resolve()
    images = make_images()
    for name, measure in TABLES.items():
        if options.only not in (None, name):
            continue
        # Beside the images, since hard links do not leave their file system.
        with tempfile.TemporaryDirectory(dir=images) as scratch:
            rows = measure(build, images, pathlib.Path(scratch), options)
        print("\n".join(rows), flush=True)
        if options.write:
            write_into(options.write, f"open {name}", rows)


if __name__ == "__main__":
    main()
