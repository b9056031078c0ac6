# SPDX-License-Identifier: GPL-3.0-or-later
"""Temporary ports, settings, data and processes for the tests of tools/diagnose."""

import datetime
import os
import pathlib
import pwd
import shutil
import subprocess
import tempfile
import tty
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
FACTORY_LAST_LINE = 'PathToData = "~/ORK2/Data"\n'
HEADER = ("Номер прибора: 17\r\nВремя:\tПервый слой облаков:\tВторой слой облаков:\tКанал:\r\n")
RECORD = "\r\n08:15:00\t0420\t1350\tОсновной"
PYTHON = "/usr/bin/python3"  # that of the script, which ordinary users may run
OPENER = "import os, sys; os.open(sys.argv[1], os.O_RDWR | os.O_NOCTTY); print(); input()"
IDLER = "print(); input()"
# Root may write everywhere, so missing permissions are tested as an ordinary user.
NOBODY = pwd.getpwnam("nobody")
AS_ORDINARY = [] if os.geteuid() else [
    "setpriv", f"--reuid={NOBODY.pw_uid}", f"--regid={NOBODY.pw_gid}", "--clear-groups"]
# Other terminals may run on this machine: only the processes of the test are visible to the script.
# patch: Python statements that replace what the test cannot change, such as the groups of a user.
# Other programs change the free space during the test.
FREE_MIB = ("import shutil, types; data.shutil = types.SimpleNamespace(disk_usage=lambda path:"
            " shutil._ntuple_diskusage(10**9, 10**9, {} * 2**20))")
RUNNER = """
import os, pathlib, sys
sys.dont_write_bytecode = True
folder, processes_folder, patch, *arguments = sys.argv[1:]
sys.path.insert(0, folder)
from diagnosis import account, data, main, ports, processes, programs
processes.PROC = pathlib.Path(processes_folder)
programs.RECORDER_CONFIGURATION = pathlib.Path(processes_folder, "ork2-recorder.conf")
programs.RECORDER_BINARY = "/nonexistent"
exec(patch)
sys.exit(main.main(arguments, arguments[0]))
"""


class DiagnoseCase(unittest.TestCase):
    def setUp(self):
        self.top = pathlib.Path(tempfile.mkdtemp(prefix="ork2-diagnose-"))
        self.top.chmod(0o755)
        self.addCleanup(shutil.rmtree, self.top)
        # A copy, because an ordinary user may not have access to the source tree.
        self.script = self.top / "tree" / "tools" / "diagnose"
        self.script.parent.mkdir(parents=True)
        shutil.copy(SOURCES / "tools" / "diagnose", self.script)
        shutil.copytree(SOURCES / "tools" / "diagnosis", self.script.parent / "diagnosis",
                        ignore=shutil.ignore_patterns("__pycache__"))
        self.processes = self.top / "proc"
        self.processes.mkdir()
        (self.processes / "stat").symlink_to("/proc/stat")
        self.program = self.top / "program"
        (self.program / "settings").mkdir(parents=True)
        binary = self.program / "ork2-terminal"
        binary.touch()
        binary.chmod(0o755)
        self.settings_file(FACTORY_LAST_LINE)
        self.devices = self.top / "dev"
        self.devices.mkdir()
        self.controllers = {}
        self.port = self.add_port("ttyUSB0")
        self.store = self.top / "config" / "КАСТОР" / "Терминал ОРК-2.conf"
        self.store.parent.mkdir(parents=True)
        self.keep(_COM="ttyUSB0", _NUM="17")
        self.environment = dict(os.environ, XDG_CONFIG_HOME=str(self.top / "config"),
                                XDG_CONFIG_DIRS=str(self.top / "nowhere"))
        # The script itself must prevent compiled files beside its modules.
        self.environment.pop("PYTHONDONTWRITEBYTECODE", None)

    def settings_file(self, last_line):
        text = "\n\nBaudRate = 9600\nParity = 0\n" + last_line
        (self.program / "settings" / "settings.txt").write_text(text)

    def keep(self, **values):
        lines = "".join(f"{key}={value}\n" for key, value in values.items())
        other = "_COM=ttyS9\n"
        self.store.write_text(f"[BEFORE]\n{other}[SETTINGS]\n{lines}[BEHIND]\n{other}")

    def add_port(self, name):
        controller, port = os.openpty()
        tty.setraw(port)
        self.addCleanup(os.close, controller)
        self.controllers[name] = controller
        path = os.ttyname(port)
        os.close(port)  # otherwise this process would be reported as using the port
        os.chmod(path, 0o666)
        (self.devices / name).symlink_to(path)
        return path

    def named(self, name):
        """Returns a program of this name, which takes the options of Python."""
        program = self.top / name
        if not program.exists():
            program.symlink_to(PYTHON)
        return program

    def start(self, *command, user=()):
        """Starts a program that prints a line when it is ready and ends with its input."""
        process = subprocess.Popen([*user, *command], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, text=True)
        self.addCleanup(process.communicate, "\n")
        self.assertEqual(process.stdout.readline(), "\n")
        self.show(process.pid)
        return process.pid

    def show(self, pid):
        """Makes a process visible to the script."""
        (self.processes / str(pid)).symlink_to(f"/proc/{pid}")

    def hold(self, port, command, **options):
        return self.start(command, "-c", OPENER, port, **options)

    def add_day_file(self, number, text, date=None, base=None):
        folder = (base or self.program) / "Data" / f"ORK-2 N{number}"
        folder.mkdir(parents=True, exist_ok=True)
        day_file = folder / (date or datetime.date.today()).strftime("%Y.%m.%d.txt")
        day_file.write_bytes(text.encode())
        return day_file

    def diagnose(self, *options, user=(), patch=""):
        options = options or ("--program", self.program, "--devices", self.devices)
        run = subprocess.run(
            [*user, PYTHON, "-Xutf8", "-c", RUNNER, self.script.parent, self.processes, patch,
             self.script, *options],
            stdin=subprocess.DEVNULL, capture_output=True, text=True, env=self.environment,
            timeout=60, check=False)
        if run.returncode < 2 and "--bundle" not in options:
            self.assertEqual(run.stderr, "")
        self.assertNotIn("Traceback", run.stderr)
        return run

    def give_store_to_ordinary(self):
        if not os.geteuid():
            for path in (self.store, self.store.parent, self.program):
                os.chown(path, NOBODY.pw_uid, -1)

    def assert_fine(self, run):
        self.assertEqual(run.returncode, 0, run.stdout)
        self.assertNotIn("!", run.stdout)
        self.assertIn("Всё в порядке.", run.stdout)

    def assert_warned(self, run, *texts):
        self.assertEqual(run.returncode, 1, run.stdout)
        warnings = [line for line in run.stdout.splitlines() if line.startswith("  ! ")]
        for text in texts:
            self.assertTrue(any(text in line for line in warnings), f"{text}\n{run.stdout}")
        self.assertEqual(len(warnings), len(texts), run.stdout)
        self.assertIn(f"Требует внимания: {len(texts)} ", run.stdout)
