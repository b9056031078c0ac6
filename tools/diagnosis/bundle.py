# SPDX-License-Identifier: GPL-3.0-or-later
"""Packs the diagnosis and what it is based on into an archive for whoever helps. Passwords are removed."""

import dataclasses
import errno
import io
import os
import pathlib
import platform
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile
import time

from . import files, ini, programs, settingsfile

DAY_FILES = 2
DAY_FILE_NAME = re.compile(r"[0-9]{4}\.[0-9]{2}\.[0-9]{2}\.txt", re.ASCII)
PACKAGES = ("ork2-*", "libqt6*", "qml6-module-*", "libc6", "python3", "systemd", "udev")
COMMAND_TIMEOUT_S = 20
YES = ("д", "да", "y", "yes")


class NotWritten(Exception):
    """Its text says why."""


@dataclasses.dataclass(frozen=True)
class Sources:
    store: pathlib.Path
    program: str
    day_files: pathlib.Path  # folder


def check_target(target):
    if os.path.lexists(target):
        raise NotWritten(f"файл {target} уже есть и останется как был: укажите другое имя")
    folder = os.path.dirname(os.path.abspath(target))
    if not os.path.isdir(folder):
        raise NotWritten(f"архив не записан: папки {folder} нет")


def offer(options, report, sources, out):
    """Shows what the archive will contain, asks for permission and writes it."""
    members = contents(report, sources)
    print(f"\nВ архив {options.bundle} войдут (байтов, имя):", file=out)
    for name, content in members:
        print(f"{len(content):>10}  {name}", file=out)
    print(f"Пароли заменены на {ini.MASK}.", file=out, flush=True)
    if not options.yes:
        if not sys.stdin.isatty():
            raise NotWritten("архив не записан: спросить некого, ввод — не с клавиатуры. Чтобы "
                             "записать, не спрашивая, добавьте --yes")
        print("Записать? [д/Н] ", end="", file=out, flush=True)
        if sys.stdin.readline().strip().lower() not in YES:
            print("Архив не записан.", file=out)
            return
    write(options.bundle, members)
    print(f"Записан архив {options.bundle}. Передайте его тому, кто помогает.", file=out)


def contents(report, sources):
    """Returns the names and the bytes of the members."""
    texts = [("settings-store.conf", files.end_of(sources.store)),
             ("settings.txt", files.end_of(settingsfile.path_in(sources.program))),
             ("ork2-recorder.conf", files.end_of(programs.RECORDER_CONFIGURATION))]
    masked, secrets = [], set()
    for name, content in texts:
        if content is not None:
            text, found = ini.without_secrets(content.decode("utf-8", "surrogateescape"))
            masked.append((name, text))
            secrets |= found
    masked = [("diagnosis.txt", report.text()), ("diagnosis.json", report.json()), *masked,
              ("system.txt", _system())]
    status = _recorder_status()
    if status:
        masked.append(("recorder-status.txt", status))
    members = [(name, ini.remove(text, secrets).encode("utf-8", "surrogateescape"))
               for name, text in masked]
    return members + list(_day_files(sources.day_files))


def _day_files(folder):
    names = os.listdir(folder) if os.access(folder, os.R_OK) and folder.is_dir() else []
    for name in sorted(filter(DAY_FILE_NAME.fullmatch, names))[-DAY_FILES:]:
        content = files.end_of(folder / name)
        if content is not None:
            yield f"{folder.name}/{name}", content


def _output(*command):
    """Returns what the command prints, or an empty text if it is not installed or does not end."""
    if not shutil.which(command[0]):
        return ""
    try:
        run = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, timeout=COMMAND_TIMEOUT_S, check=False)
    except (OSError, subprocess.TimeoutExpired):
        return ""
    return run.stdout.decode("utf-8", "replace")


def _system():
    packages = _output("dpkg-query", "-W", "-f", "${Package} ${Version} ${db:Status-Abbrev}\n", *PACKAGES)
    return "\n".join((time.strftime("%Y-%m-%d %H:%M:%S %z"), " ".join(platform.uname()),
                      f"Python {platform.python_version()}",
                      files.text_of("/etc/os-release") or "/etc/os-release: нет",
                      packages or "dpkg-query: нет", ""))


def _recorder_status():
    if not programs.recorder_is_installed():
        return ""
    return _output("systemctl", "status", "ork2-recorder", "--no-pager", "--full", "--lines=50")


def write(target, members):
    """Writes the archive completely or not at all, readable by this user only."""
    folder = os.path.dirname(os.path.abspath(target))
    draft = None
    try:
        descriptor, draft = tempfile.mkstemp(prefix=".ork2-diagnose-", dir=folder)  # mode 600
        with os.fdopen(descriptor, "wb") as file:
            _pack(file, members)
            file.flush()
            os.fsync(file.fileno())
        _publish(draft, target)
    except FileExistsError as error:
        raise NotWritten(f"файл {target} уже есть и останется как был: укажите другое имя") from error
    except OSError as error:
        raise NotWritten(f"архив {target} не записан: {_reason(error)}") from error
    finally:
        if draft and os.path.exists(draft):
            os.unlink(draft)


def _pack(file, members):
    with tarfile.open(fileobj=file, mode="w:gz") as archive:
        for name, content in members:
            entry = tarfile.TarInfo(f"ork2-diagnose/{name}")
            entry.size = len(content)
            entry.mode = 0o600
            entry.mtime = int(time.time())
            archive.addfile(entry, io.BytesIO(content))


def _publish(draft, target):
    """Gives the draft its name, but never that of an existing file."""
    try:
        os.link(draft, target)
    except OSError as error:
        if isinstance(error, FileExistsError):
            raise
        # A memory stick has no links: reserve the name, then replace the reservation.
        os.close(os.open(target, os.O_CREAT | os.O_EXCL | os.O_WRONLY, 0o600))
        os.replace(draft, target)


def _reason(error):
    reasons = {errno.ENOSPC: "на диске нет места", errno.EDQUOT: "на диске нет места",
               errno.EACCES: "нет права записи в эту папку", errno.EPERM: "нет права записи в эту папку",
               errno.EROFS: "диск открыт только для чтения", errno.EIO: "диск не отвечает"}
    return reasons.get(error.errno, error.strerror or str(error))
