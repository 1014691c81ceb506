"""Runs ImageMagick, one thread a process so that equal seeds give equal pixels, and several processes side by side."""

import concurrent.futures
import os
import shutil
import subprocess
import sys

CANDIDATES = ("convert-im6.q16", "magick", "convert")


def find_convert():
    """The full path of ImageMagick's convert. Debian's own name comes first: a bare `convert` may be something else."""
    for name in CANDIDATES:
        path = shutil.which(name)
        if not path:
            continue
        answer = subprocess.run([path, "-version"], capture_output=True, text=True, check=False)
        if "ImageMagick" in answer.stdout:
            return path
    sys.exit("make_samples: ImageMagick is missing; type: apt-get install imagemagick")


CONVERT = find_convert()


def convert(*arguments, data=None):
    """Runs convert; bytes in `data` go to its standard input."""
    environment = dict(os.environ, OMP_NUM_THREADS="1", MAGICK_THREAD_LIMIT="1")
    command = [CONVERT] + [str(argument) for argument in arguments]
    result = subprocess.run(command, input=data, capture_output=True, env=environment, check=False)
    if result.returncode != 0:
        raise RuntimeError(f"{' '.join(command)}\n{result.stderr.decode(errors='replace')}")
    return result.stdout


def in_parallel(jobs):
    """Runs callables on all processors; the first failure is raised after the others have ended."""
    with concurrent.futures.ThreadPoolExecutor(max_workers=os.cpu_count() or 1) as pool:
        for future in [pool.submit(job) for job in jobs]:
            future.result()
