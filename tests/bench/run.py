#!/usr/bin/env python3
"""Compares our batch conversion with GraphicsMagick and ImageMagick on the same files in the same run.

usage: run.py BUILD_FOLDER [--only conversion|progress|folders] [--count N] [--write DOCUMENT]

Every program is pinned to one processor and limited to one thread. Ours runs under Wine through the real dialog, the progress
box included; the peers are native. All files are read once before, so that they come from the disk cache, and
outputs go to memory where the machine has a file system there; the programs take turns over some rounds, and the best round of
each counts. Prints Markdown tables of seconds, peak memory and output bytes, and with --write puts each into the document
between its two marks.
"""
import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
# That of the first desk, where test.sh puts the display and Wine's server as well.
PROCESSOR = str(max(os.sched_getaffinity(0)))
ONE_THREAD = {"OMP_NUM_THREADS": "1", "MAGICK_THREAD_LIMIT": "1"}
IMAGEMAGICK = "mogrify-im6.q16"
SCRATCH_BYTES = 4 << 30
PROGRESS_ROUNDS = 8
EQUAL_PNG_LEVEL = "1"  # gives the bytes of zlib's level 6 within 2 %
DEFAULT_JPEG_QUALITY = 90  # what the dialog's default quality of 28 means to libjpeg


class Task:
    """One row of the table: what our dialog chooses, what the plain calls do, and what the peers are told."""

    def __init__(self, name, sources, fmt, depth, subtype, file_format, quality, percent, rounds, gm, im):
        self.name, self.sources, self.percent = name, sources, percent
        self.rounds = rounds
        self.dialog = [fmt, str(depth), subtype]
        self.bare = [str(file_format), str(depth), str(quality)]
        self.gm, self.im = gm, im


def tasks():
    jpeg = ["-format", "jpg", "-quality", str(DEFAULT_JPEG_QUALITY), "-sampling-factor", "2x2",
            "-define", "jpeg:optimize-coding=false", "-interlace", "None"]
    # Averages over the area, as ours do; other filters give other noise and so other sizes.
    resize = ["-filter", "Box", "-resize", "50%"]
    png = ["-format", "png", "-quality", "65"]
    tiff = ["-format", "tif", "-compress", "None"]
    im_jpeg = ["-format", "jpg", "-quality", str(DEFAULT_JPEG_QUALITY), "-sampling-factor", "4:2:0",
               "-define", "jpeg:optimize-coding=false", "-interlace", "None"]
    return [
        Task("JPEG to PNG, level 6", "jpeg", "PNG", 24, "-", 75, 6, 100, 2, png, png),
        Task("JPEG to TIFF, uncompressed", "jpeg", "TIFF", 24, "Uncompressed", 3, 0, 100, 10, tiff, tiff),
        Task("TIFF to JPEG, 4:2:0", "tiff", "JPEG", 24, "YUV 4:2:0", 23, 28, 100, 8, jpeg, im_jpeg),
        Task("JPEG to JPEG, 50 %", "jpeg", "JPEG", 24, "YUV 4:2:0", 23, 28, 50, 5, resize + jpeg, resize + im_jpeg),
    ]


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def run_ours(build, mode, arguments):
    """Gives the figures that the benchmark program prints, as a dict of numbers."""
    command = ["taskset", "-c", PROCESSOR, str(ROOT / "scripts/wine_run.sh"), str(build / "bin/zvconversion_bench.exe"),
               mode] + arguments
    output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return {key: float(value) for key, value in re.findall(r"(\w+)=([\d.]+)", output)}


def run_peer(program, options, files, folder):
    """Runs a peer's mogrify over the files, all of one folder; gives seconds, peak megabytes and bytes written."""
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    # gm puts the whole path of a source below its output directory, so both peers start in the sources' folder.
    source = pathlib.Path(files[0]).parent
    files = [pathlib.Path(file).name for file in files]
    if program == "gm":
        command = ["gm", "mogrify", "-output-directory", str(folder)] + options + files
    else:
        command = [IMAGEMAGICK, "-path", str(folder)] + options + files
    start = time.perf_counter()
    process = subprocess.Popen(["taskset", "-c", PROCESSOR] + command, cwd=source, env={**os.environ, **ONE_THREAD})
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    if status != 0:
        sys.exit(f"failed: {' '.join(command[:8])} ...")
    return {"seconds": seconds, "peak_mb": usage.ru_maxrss / 1024, "bytes": bytes_in(folder)}


def bytes_in(folder):
    return sum(entry.stat().st_size for entry in folder.iterdir())


def least(rounds):
    """One dict of the least of each figure."""
    return {key: min(figures[key] for figures in rounds) for key in rounds[0]}


def measure_conversion(build, task, files, work, names, rounds):
    """Lets the named programs take turns; gives the figures of each round by name."""
    for name in files:
        pathlib.Path(name).read_bytes()
    listing = work / "files.txt"
    listing.write_text("\n".join(windows_path(name) for name in files), encoding="utf-8")
    percent = str(task.percent)
    runs = {
        "ours": lambda to: run_ours(build, "dialog", [windows_path(listing), windows_path(to)] + task.dialog + [percent]),
        "bare": lambda to: run_ours(build, "bare", [windows_path(listing), windows_path(to)] + task.bare + [percent]),
        "gm": lambda to: run_peer("gm", task.gm, files, to),
        "im": lambda to: run_peer("im", task.im, files, to),
    }
    figures = {name: [] for name in names}
    for _ in range(rounds):
        for name in names:
            target = work / name
            figures[name].append(runs[name](target))
            written = len(list(target.iterdir()))
            if written != len(files):
                sys.exit(f"{task.name}, {name}: {written} of {len(files)} files were written")
            shutil.rmtree(target)
    return figures


def equal_bytes_row(build, files, work, gm, im):
    """PNG again at the level of ours that gives the peers' bytes; the dialog keeps level 6, so by plain calls."""
    listing = work / "files.txt"
    ours = run_ours(build, "bare", [windows_path(listing), windows_path(work / "bare"), "75", "24", EQUAL_PNG_LEVEL, "100"])
    shutil.rmtree(work / "bare")
    return (f"| JPEG to PNG, equal bytes (ours level {EQUAL_PNG_LEVEL}, plain calls) | {ours['seconds']:.1f} | "
            f"{gm['seconds']:.1f} | {im['seconds']:.1f} | {ours['seconds'] / min(gm['seconds'], im['seconds']):.2f} | "
            f"{ours['bytes'] / gm['bytes']:.3f} | {ours['peak_mb']:.0f} |")


def sources(images, task, count):
    return sorted(str(path) for path in (images / task.sources).iterdir())[:count]


def conversion_tables(build, images, work, count):
    rows = ["| task | ours s | gm s | ImageMagick s | ours : faster peer | bytes ours : gm | peak MB |",
            "|---|---|---|---|---|---|---|"]
    for task in tasks():
        files = sources(images, task, count)
        rounds = measure_conversion(build, task, files, work, ("ours", "gm", "im"), task.rounds)
        ours, gm, im = (least(figures) for figures in rounds.values())
        peer = min(gm["seconds"], im["seconds"])
        rows.append(f"| {task.name} | {ours['seconds']:.1f} | {gm['seconds']:.1f} | {im['seconds']:.1f} | "
                    f"{ours['seconds'] / peer:.2f} | {ours['bytes'] / gm['bytes']:.3f} | {ours['peak_mb']:.0f} |")
        if task.dialog[0] == "PNG":
            rows.append(equal_bytes_row(build, files, work, gm, im))
        print("\n".join(rows[2:] if len(rows) == 4 else rows[-1:]), flush=True)
    return {"conversion": rows}


def progress_tables(build, images, work, count):
    """The run through the dialog beside the same work by plain calls, taking turns without the peers between."""
    rows = ["| task | dialog s | plain calls s | dialog : plain calls |", "|---|---|---|---|"]
    for task in tasks():
        rounds = measure_conversion(build, task, sources(images, task, count), work, ("ours", "bare"), PROGRESS_ROUNDS)
        ours, bare = (least(figures)["seconds"] for figures in rounds.values())
        rows.append(f"| {task.name} | {ours:.2f} | {bare:.2f} | {ours / bare:.3f} |")
        print(rows[-1], flush=True)
    return {"progress": rows}


def folder_tables(build, work):
    """Adding folders of small files: what a file costs beyond reading its header."""
    rows = ["| files in the folder | added in s | headers alone in s | ms a file beyond the header |", "|---|---|---|---|"]
    seed = work / "seed.png"
    subprocess.run(["gm", "convert", "-size", "32x32", "xc:gray", str(seed)], check=True)
    # Below drive C, since Wine's folder browser does not reach every folder of the machine.
    drive = pathlib.Path(os.environ.get("WINEPREFIX") or build / "wine") / "drive_c"
    for count in (1250, 2500, 5000):
        folder = drive / f"bench{count}"
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        for number in range(count):
            shutil.copy(seed, folder / f"small_{number:05}.png")
        info = run_ours(build, "info", [f"C:\\{folder.name}"])
        added = run_ours(build, "add", [f"C:\\{folder.name}"])
        shutil.rmtree(folder)
        extra = (added["seconds"] - info["seconds"]) * 1000 / count
        rows.append(f"| {int(added['files'])} of {count} | {added['seconds']:.2f} | {info['seconds']:.2f} | {extra:.2f} |")
        print(rows[-1], flush=True)
    return {"folders": rows}


def write_into(document, name, rows):
    begin, end = f"<!-- {name} -->", f"<!-- /{name} -->"
    head, rest = document.read_text(encoding="utf-8").split(begin)
    tail = rest.split(end)[1]
    table = "\n".join(rows)
    document.write_text(f"{head}{begin}\n{table}\n{end}{tail}", encoding="utf-8")


def make_images(count):
    """Gives the folder of the images, which are made once and kept in the cache."""
    cache = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache")
    images = cache / "zvfiledlg/bench-images"
    subprocess.run([sys.executable, str(ROOT / "scripts/make_samples.py"), "bench", str(images), "--count",
                    str(max(60, count)), "--tiff"], check=True)
    return images


def scratch_place(build):
    """A file system in memory when there is one with room, so that writing back to a disk disturbs nobody's time."""
    memory = pathlib.Path("/dev/shm")
    roomy = memory.is_dir() and shutil.disk_usage(memory).free > SCRATCH_BYTES
    return memory if roomy else build


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--only", choices=("conversion", "progress", "folders"), help="one comparison alone")
    parser.add_argument("--count", type=int, default=60, help="files of each task")
    parser.add_argument("--write", type=pathlib.Path, help="document that gets the tables")
    options = parser.parse_args()
    build = options.build.resolve()
    comparisons = {"conversion": lambda work: conversion_tables(build, make_images(options.count), work, options.count),
                   "progress": lambda work: progress_tables(build, make_images(options.count), work, options.count),
                   "folders": lambda work: folder_tables(build, work)}
    for comparison, measure in comparisons.items():
        if options.only in (None, comparison):
            with tempfile.TemporaryDirectory(dir=scratch_place(build)) as scratch:
                tables = measure(pathlib.Path(scratch))
            if options.write:
                for name, rows in tables.items():
                    write_into(options.write, name, rows)


if __name__ == "__main__":
    main()
