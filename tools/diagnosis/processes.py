# SPDX-License-Identifier: GPL-3.0-or-later
"""The running programs and the ports that they have open."""

import dataclasses
import os
import pathlib

PROC = pathlib.Path("/proc")
# In the order in which Qt looks for a folder for the lock file of a port.
LOCK_FOLDERS = ("/var/lock", "/etc/locks", "/var/spool/locks", "/var/spool/uucp", "/tmp", "/var/tmp",
                "/var/lock/lockdev", "/run/lock")
NAME_LENGTH = 15  # the system cuts the name of a process


@dataclasses.dataclass(frozen=True, order=True)
class Process:
    pid: int
    name: str
    uid: int


@dataclasses.dataclass(frozen=True)
class Lock:
    """The lock file of a port. keeper: the running process that it names, or None."""

    path: str
    uid: int
    keeper: Process | None


class Processes:
    """The processes at the time of construction. The open files of other users' processes can be
    read by root only; their lock files can be read by everyone."""

    def __init__(self):
        self._all = {}
        self._files = {}
        for pid in sorted(int(name) for name in os.listdir(PROC) if name.isdigit()):
            process = _process(pid)
            if process:
                self._all[pid] = process
                self._files[pid] = _open_files(pid)

    def named(self, name):
        return [process for process in self._all.values() if process.name == name]

    def may_read_files(self, process):
        return self._files[process.pid] is not None

    def ports_of(self, process, ports):
        """Returns those of the ports that the process has open, as far as can be seen."""
        return [port for port in ports if process in self.holders(port)]

    def holders(self, port):
        device = os.path.realpath(port)
        found = {self._all[pid] for pid, files in self._files.items() if files and device in files}
        lock = self.lock(port)
        if lock and lock.keeper:
            found.add(lock.keeper)
        return sorted(found)

    def lock(self, port):
        """Returns the lock file of a port as the program finds it, or None."""
        name = "LCK.." + port.removeprefix("/dev/").replace("/", "_")
        for folder in LOCK_FOLDERS:
            path = os.path.join(folder, name)
            try:
                uid = os.lstat(path).st_uid
            except OSError:
                continue
            return Lock(path, uid, self._keeper(path))
        return None

    def _keeper(self, path):
        """The first two lines of a lock file are the process number and name. After a crash, the
        number may belong to another program."""
        try:
            with open(path, encoding="utf-8", errors="replace") as file:
                pid, name = file.readline().strip(), file.readline().strip()
        except OSError:
            return None
        process = self._all.get(int(pid)) if pid.isdecimal() else None
        return process if process and process.name == name[:NAME_LENGTH] else None


def _process(pid):
    """Returns None for a process that has exited."""
    try:
        state = (PROC / str(pid) / "stat").read_text(errors="replace").rpartition(")")[2].split()
        name = (PROC / str(pid) / "comm").read_text(errors="replace").rstrip("\n")
        uid = (PROC / str(pid)).stat().st_uid
    except OSError:
        return None
    return None if state[0] in "ZX" else Process(pid, name, uid)


def _open_files(pid):
    """Returns None if they cannot be read."""
    files = set()
    try:
        for descriptor in os.scandir(PROC / str(pid) / "fd"):
            try:
                files.add(os.readlink(descriptor.path))
            except OSError:
                continue
    except PermissionError:
        return None
    except OSError:
        pass
    return files


def start_time(process):
    """Returns when the process started, in seconds since 1970, or None if it has exited."""
    try:
        stat = (PROC / str(process.pid) / "stat").read_text(errors="replace")
        system = (PROC / "stat").read_text(errors="replace")
    except OSError:
        return None
    ticks = int(stat.rpartition(")")[2].split()[19])
    booted = next(int(line.split()[1]) for line in system.splitlines() if line.startswith("btime"))
    return booted + ticks / os.sysconf("SC_CLK_TCK")


def groups(process):
    """Returns the numbers of its groups; empty if it has exited."""
    try:
        lines = (PROC / str(process.pid) / "status").read_text(errors="replace").splitlines()
    except OSError:
        return frozenset()
    return frozenset(int(number) for line in lines if line.startswith(("Gid:", "Groups:"))
                     for number in line.split()[1:])


def working_folder(process):
    """Returns None if it cannot be read."""
    return _link(process, "cwd")


def executable(process):
    """Returns None if it cannot be read."""
    path = _link(process, "exe")
    return path.removesuffix(" (deleted)") if path else None  # replaced by a newer version


def _link(process, name):
    try:
        return os.readlink(PROC / str(process.pid) / name)
    except OSError:
        return None
