# SPDX-License-Identifier: GPL-3.0-or-later
"""Common classes of the endurance tests: the program in a separate folder, and a simulated line."""
import argparse
import atexit
import errno
import os
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import termios
import time
import tty
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
TITLE = "Измеритель высоты облаков ОРК-2"
PANEL_TITLE = "Панель управления"
# Positions in the windows, in pixels.
START_BUTTON = (810, 682)
PANEL_BUTTON = (118, 682)
LAMPS = {"connection": (118, 188), "data": (521, 188)}
ORDINARY_USER = 65534
GOOD = b"H112342345\r"

# Precedes the height in the log line of the first layer.
READING = "First layer of cloud altitude: "


class Failure(Exception):
    """A failure that ends the current case, but not the test."""


def options(description, **extra):
    """Parses the common options and those of the test: name=(default, help)."""
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--program", type=Path, default=TOP / "build/release/bin/ork2-terminal",
                        help="the terminal to test (default: %(default)s)")
    parser.add_argument("--keep", type=Path, metavar="FOLDER",
                        help="keep logs, day files and screenshots in FOLDER")
    for name, (default, text) in extra.items():
        flag = "--" + name.replace("_", "-")
        if isinstance(default, bool):
            parser.add_argument(flag, action="store_true", help=text)
        else:
            parser.add_argument(flag, type=type(default), default=default,
                                help=text + " (default: %(default)s)")
    chosen = parser.parse_args()
    chosen.program = chosen.program.resolve()
    if not os.access(chosen.program, os.X_OK):
        parser.error(f"{chosen.program} is missing: build the preset release first")
    return chosen


def on_a_display():
    """Restarts the test on a separate display, unless it already runs on one."""
    if "ORK2_ENDURANCE_DISPLAY" not in os.environ:
        environment = dict(os.environ, ORK2_ENDURANCE_DISPLAY="1", LC_ALL="C.UTF-8")
        os.execve(TOP / "tests/with-display",
                  ["with-display", "-s", "1920x1080", sys.executable, *sys.argv], environment)


def wait_until(condition, seconds):
    """Returns the first true value of the condition, or its last value after the timeout."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value or time.monotonic() > end:
            return value
        time.sleep(0.02)


def output_of(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                          check=False).stdout.strip()


def as_ordinary_user(user=ORDINARY_USER):
    """For preexec_fn: permissions and port locks have no effect for root."""
    if os.geteuid() == 0:
        os.setgroups([])
        os.setresgid(user, user, user)
        os.setresuid(user, user, user)


def fake_clock(text, **more):
    """Returns the environment of a process with a fake clock, described by the text."""
    library = next(Path("/usr/lib").glob("*/faketime/libfaketimeMT.so.1"), None)
    if library is None:
        sys.exit("The package faketime is missing")
    return {"LD_PRELOAD": str(library), "FAKETIME": text, **more}


class Line:
    """The instrument's side of a pseudo-terminal."""

    def __init__(self, link=None):
        self.master, self.slave = os.openpty()
        tty.setraw(self.slave)
        self.path = os.ttyname(self.slave)
        if os.geteuid() == 0:
            os.chmod(self.path, 0o666)
        if link is not None:
            _ports.append(link)
            link.unlink(missing_ok=True)
            link.symlink_to(self.path)
        os.set_blocking(self.master, False)

    def write(self, data):
        """Writes all data; waits for the reader if the line is full."""
        view = memoryview(data)
        end = time.monotonic() + 10
        while view:
            try:
                view = view[os.write(self.master, view):]
            except BlockingIOError:
                if time.monotonic() > end:
                    raise Failure("no program reads the line") from None
                select.select([], [self.master], [], 0.1)

    def taken(self):
        """Returns whether the reader has read all data."""
        waiting = bytearray(4)
        import fcntl
        fcntl.ioctl(self.slave, termios.FIONREAD, waiting)
        return int.from_bytes(waiting, sys.byteorder) == 0

    def unplug(self):
        for descriptor in (self.slave, self.master):
            if descriptor >= 0:
                os.close(descriptor)
        self.master = self.slave = -1


class Home:
    """The folder of a test case: program, settings store, day files, log."""

    def __init__(self, program, name="home", parent=None):
        self._own = tempfile.TemporaryDirectory(prefix="ork2-endurance-") if parent is None else None
        self.path = (Path(self._own.name) if parent is None else parent) / name
        self.bin = self.path / "bin"
        (self.bin / "settings").mkdir(parents=True)
        self.program = self.bin / program.name
        shutil.copy(program, self.program)
        self.settings_file = self.bin / "settings/settings.txt"
        shutil.copy(TOP / "settings/settings.txt", self.settings_file)
        self.config = self.path / "config"
        self.store_file = self.config / "КАСТОР" / "Терминал ОРК-2.conf"
        self.store_file.parent.mkdir(parents=True)
        self.log = self.path / "terminal.log"
        # A unique name, so that there is no lock file of another program.
        self.port = self.path / "port"

    def store(self, port, unit="17", folder="!"):
        def quoted(text):
            return '"' + str(text).replace("\\", "\\\\").replace('"', '\\"') + '"'
        self.store_file.write_text(
            "[SETTINGS]\n"
            f"_COM={quoted(port)}\n_NUM={quoted(unit)}\n_YEAR=2021\n_NAME_PATH={quoted(folder)}\n",
            encoding="utf-8")

    def give_away(self, user=ORDINARY_USER):
        """Changes the owner to the ordinary user who runs the program."""
        if os.geteuid() == 0:
            for folder in self.path.parents:
                if folder == Path(tempfile.gettempdir()):
                    break
                folder.chmod(0o755)
            for path in (self.path, *self.path.rglob("*")):
                os.chown(path, user, user, follow_symlinks=False)

    def day_files(self, folder=None, unit="17"):
        data = Path(folder or self.bin) / "Data" / f"ORK-2 N{unit}"
        return sorted(data.glob("*.txt"))


_running = []
_ports = []


@atexit.register
def _end_everything():
    """Ends all processes and removes the lock files left by killed programs."""
    for process in _running:
        if process.poll() is None:
            process.kill()
            process.wait()
    for port in _ports:
        Path("/var/lock/LCK.." + str(port).replace("/", "_")).unlink(missing_ok=True)


def _end_by_signal(number, _frame):
    sys.exit(128 + number)


signal.signal(signal.SIGTERM, _end_by_signal)


class Terminal:
    """The running program."""

    def __init__(self, home, wrapper=(), environment=None, preexec=None, stderr=None):
        self.home = home
        self._offset = 0
        environment = {**os.environ, "XDG_CONFIG_HOME": str(home.config),
                       "HOME": str(home.path), **(environment or {})}
        log = stderr
        if stderr is None:
            log = open(home.log, "ab")
            self._offset = log.tell()
        self.process = subprocess.Popen([*wrapper, str(home.program)], env=environment,
                                        stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                        preexec_fn=preexec)
        if stderr is None:
            log.close()
        _running.append(self.process)
        self.window = None

    @property
    def pid(self):
        """The process id of the program."""
        return self.process.pid

    def alive(self):
        return self.process.poll() is None

    def find_window(self, title=TITLE, seconds=30):
        def look():
            if not self.alive():
                raise Failure(f"the program ended with {self.process.returncode}")
            return output_of("xdotool", "search", "--onlyvisible", "--name",
                             f"^{title}$").split("\n")[0]
        found = wait_until(look, seconds)
        if not found:
            raise Failure(f"no window {title} within {seconds} s")
        return found

    def show(self):
        self.window = self.find_window()
        self.wait_log("setLogAx", 30)
        time.sleep(1)
        return self

    def click(self, place, window=None, times=1):
        window = window or self.window
        subprocess.run(["xdotool", "windowactivate", "--sync", window, "mousemove", "--window",
                        window, *map(str, place), "click", "--repeat", str(times), "--delay",
                        "50", "1"],
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False,
                       timeout=30)

    def new_log(self):
        """Returns the log since the start or the last call of forget()."""
        with open(self.home.log, "rb") as log:
            log.seek(self._offset)
            return log.read().decode("utf-8", "replace")

    def forget(self):
        self._offset = self.home.log.stat().st_size

    def wait_log(self, text, seconds=10):
        if not wait_until(lambda: text in self.new_log(), seconds):
            raise Failure(f"no {text!r} in the log within {seconds} s")

    def start_measurement(self):
        self._press("Запускаем таймер")

    def stop_measurement(self):
        self._press("Таймер остановлен")

    def _press(self, answer):
        before = self.new_log().count(answer)
        for _ in range(3):  # a window that has just been shown may miss a click
            self.click(START_BUTTON)
            if wait_until(lambda: self.new_log().count(answer) > before, 15):
                return
        raise Failure(f"no {answer!r} in the log after the click")

    def readings(self):
        """Returns the texts of the first layer shown since forget()."""
        return re.findall(re.escape("qml: " + READING) + "(.*)", self.new_log())

    def status(self):
        """Returns the texts of the status line since forget(), without time stamps and line endings."""
        found = re.findall(r"^qml: (?:\[[\d:.]+\]:\t| (?=Статус))(.*?)\r?$", self.new_log(), re.M)
        return [text.strip() for text in found]

    def open_panel(self):
        for attempt in range(4):
            self.click(PANEL_BUTTON)
            try:
                panel = self.find_window(PANEL_TITLE, 8)
                break
            except Failure:
                if attempt == 3 or not self.alive():
                    raise
        # Move the windows so that both are visible.
        for window, x in ((self.window, "20"), (panel, "1100")):
            subprocess.run(["xdotool", "windowmove", window, x, "100"], check=False)
        return panel

    def lamp(self, panel, name):
        x, y = LAMPS[name]
        text = output_of("import", "-silent", "-window", panel, "-crop", f"1x1+{x}+{y}",
                         "-depth", "8", "txt:-")
        found = re.search(r"#([0-9A-F]{2})([0-9A-F]{2})([0-9A-F]{2})", text)
        if not found:
            raise Failure("no screenshot of the control panel")
        red, green, _ = (int(part, 16) for part in found.groups())
        return "on" if green > red + 40 else "off"

    def screenshot(self, path):
        subprocess.run(["import", "-silent", "-window", "root", str(path)], check=False)

    def figures(self):
        """Returns the resident memory in KiB and the numbers of threads and open files."""
        status = Path(f"/proc/{self.pid}/status").read_text(encoding="ascii")
        memory = int(re.search(r"VmRSS:\s+(\d+)", status).group(1))
        threads = int(re.search(r"Threads:\s+(\d+)", status).group(1))
        return memory, threads, len(os.listdir(f"/proc/{self.pid}/fd"))

    def close(self, seconds=20):
        """Closes the window; the exit code must be 0."""
        end = time.monotonic() + seconds
        while self.alive() and time.monotonic() < end:  # a busy window manager may miss a key
            subprocess.run(["xdotool", "windowactivate", "--sync", self.window, "key",
                            "--clearmodifiers", "alt+F4"], stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, check=False, timeout=30)
            wait_until(lambda: not self.alive(), 5)
        code = self.process.poll()
        if code is None:
            self.kill()
            raise Failure(f"the program was still running {seconds} s after its window was closed")
        if code != 0:
            raise Failure(f"the program ended with {code}")

    def kill(self):
        self.process.kill()
        self.process.wait()


RECORD = re.compile(r"^\d\d:\d\d:00\t(\d{4}|----)\t(\d{4}|----)\t(Основной|Резерв)$")


def header(unit="17"):
    return (f"Номер прибора: {unit}\r\n"
            "Время:\tПервый слой облаков:\tВторой слой облаков:\tКанал:\r\n").encode()


def read_day(path, unit="17"):
    """Returns the records of a day file; fails if anything is incomplete."""
    data = path.read_bytes()
    if not data.startswith(header(unit)):
        raise Failure(f"{path.name}: the header is incomplete")
    body = data[len(header(unit)):]
    if body and not body.startswith(b"\r\n"):
        raise Failure(f"{path.name}: no line break after the header")
    records = body.decode("utf-8").split("\r\n")[1:]
    for record in records:
        if not RECORD.match(record):
            raise Failure(f"{path.name}: invalid line: {record!r}")
    return records


class Report:
    """Prints the cases as rows of a Markdown table, and determines the exit code."""

    def __init__(self, title, *columns):
        self.failed = 0
        print(f"# {title}\n")
        print("| " + " | ".join(columns) + " | verdict |")
        print("|" + "---|" * (len(columns) + 1), flush=True)

    def row(self, *cells, good):
        self.failed += not good
        texts = [str(cell).replace("|", "\\|").replace("\n", " ") for cell in cells]
        print("| " + " | ".join(texts) + f" | {'good' if good else '**BAD**'} |", flush=True)

    def end(self):
        print(f"\n{'All cases passed' if not self.failed else f'{self.failed} case(s) failed'}")
        return 1 if self.failed else 0
