# SPDX-License-Identifier: GPL-3.0-or-later
"""The states of the terminal that tests/cost/report and tests/cost/before-and-after measure."""
import os
import pathlib
import platform
import re
import statistics
import subprocess

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = TOP / "build" / "release"
DISPLAY = TOP / "tests" / "with-display"
PROGRAM = pathlib.Path("tests") / "cost" / "ork2-chartcost"  # in a build folder

# Name, arguments of the program.
STATES = [
    ("idle: window shown, no measurement", ["--idle"]),
    ("measuring, 10 minutes on the chart", []),
    ("measuring, heights change every second", ["--varying"]),
    ("measuring, the instrument reports an error", ["--errors"]),
    ("measuring, control panel shown", ["--panel"]),
    ("measuring, chart full, 3 hours", ["--points", "10200", "--range", "10800"]),
]
# Title, pattern in the output of the program, format of a cell.
COLUMNS = [
    ("CPU s/min", r"processor ([\d.]+)", "{:.1f}"),
    ("frames/s", r"frames (\d+)", "{:.1f}"),
    ("wake-ups/s", r"wake-ups (\d+)", "{:.0f}"),
    ("longest frame ms", r"longest frame (\d+)", "{:.0f}"),
    ("longest stall ms", r"longest stall (\d+)", "{:.0f}"),
    ("memory MB", r"memory (\d+)", "{:.0f}"),
]


def output(command, folder=TOP):
    return subprocess.run(list(map(str, command)), cwd=folder, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True, check=True).stdout


def build(folder=TOP, targets=("all",)):
    """Builds targets of a checkout and returns its build folder."""
    output(["cmake", "--preset", "release", "-DORK2_BUILD_BENCH=ON"], folder)
    output(["cmake", "--build", "--preset", "release", "--target", *targets], folder)
    return folder / "build" / "release"


def measure(build_folder, arguments, seconds):
    """Returns one value for each of COLUMNS."""
    line = output([DISPLAY, build_folder / PROGRAM, *arguments, "--seconds", seconds])
    values = []
    for title, pattern, _ in COLUMNS:
        value = float(re.search(pattern, line).group(1))
        values.append(value / seconds if title == "frames/s" else value)
    return values


def machine():
    cpu = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text(encoding="ascii"))
    system = re.search(r'PRETTY_NAME="(.*)"', pathlib.Path("/etc/os-release").read_text(encoding="utf-8"))
    qt_version = output(["qmake6", "-query", "QT_VERSION"]).strip()
    return (f"{cpu.group(1) if cpu else platform.machine()}, {os.cpu_count()} processors, "
            f"{system.group(1)}, Qt {qt_version}, load before: {os.getloadavg()[0]:.1f}")


def cell(values, form):
    median, minimum, maximum = (form.format(value) for value in (
        statistics.median(values), min(values), max(values)))
    return median if minimum == maximum else f"{median} ({minimum}–{maximum})"
