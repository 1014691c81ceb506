"""The programs that the matrix compares with, and the program of ours that it drives."""

import os
import shutil
import subprocess

PROGRAMS = {
    "convert": "convert-im6.q16",
    "compare": "compare-im6.q16",
    "identify": "identify-im6.q16",
    "gm": "gm",
    "tiffinfo": "tiffinfo",
    "tiffcp": "tiffcp",
    "pngcheck": "pngcheck",
    "exiftool": "exiftool",
}
PACKAGES = {"convert": "imagemagick", "compare": "imagemagick", "identify": "imagemagick", "gm": "graphicsmagick",
            "tiffinfo": "libtiff-tools", "tiffcp": "libtiff-tools", "pngcheck": "pngcheck", "exiftool": "libimage-exiftool-perl"}


def find(name):
    return shutil.which(PROGRAMS[name])


def run(name, *arguments, data=None):
    """Gives (good, text of both outputs)."""
    environment = dict(os.environ, OMP_NUM_THREADS="1", MAGICK_THREAD_LIMIT="1")
    result = subprocess.run([find(name), *map(str, arguments)], input=data, env=environment, check=False,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return result.returncode == 0, result.stdout.decode(errors="replace").strip()


def difference(first, second, exact):
    """None when the pictures agree, else what is wrong. exact False: at least 30 dB; a number: at least that many."""
    metric = "AE" if exact is True else "PSNR"
    _, text = run("compare", "-metric", metric, first, second, "null:")
    value = text.split()[0] if text else ""
    try:
        number = float(value)
    except ValueError:
        return text[:200] or "no answer"
    if exact is True:
        return None if number == 0 else f"{value} pixels differ"
    least = 30.0 if exact is False else exact
    return None if number >= least or number == 0 else f"{value} dB, wanted {least}"


class CodecTool:
    """Collects commands for our program and runs them in one go, since starting a Windows program takes long."""

    def __init__(self, command, work, windows):
        self.command, self.work, self.windows = command, work, windows
        self.lines, self.uses = [], 0

    def path(self, path):
        full = os.path.abspath(path)
        return "Z:" + full.replace("/", "\\") if self.windows else full

    def add(self, command, *fields):
        """Fields that are paths are given as ("path", name)."""
        texts = [self.path(f[1]) if isinstance(f, tuple) else str(f) for f in fields]
        self.lines.append("\t".join([command, *texts]))
        return len(self.lines) - 1

    def run(self):
        """Runs what was collected; gives (result code, text) for each command."""
        self.uses += 1
        script = os.path.join(self.work, f"commands_{self.uses}.txt")
        with open(script, "w", encoding="utf-8", newline="\n") as file:
            file.write("\n".join(self.lines) + "\n")
        count, self.lines = len(self.lines), []
        result = subprocess.run([*self.command, self.path(script)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
        answers = []
        for line in result.stdout.decode(errors="replace").splitlines():
            code, _, text = line.rstrip("\r").partition("\t")
            if code.lstrip("-").isdigit():
                answers.append((int(code), text))
        if len(answers) != count:
            raise RuntimeError(f"{count} commands, {len(answers)} answers, exit code {result.returncode}:\n"
                               f"{result.stderr.decode(errors='replace')[-2000:]}")
        return answers
