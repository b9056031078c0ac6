# SPDX-License-Identifier: GPL-3.0-or-later
"""The folder of the day files, today's file and the space on the disk."""

import dataclasses
import datetime
import os
import pathlib
import re
import shutil

from . import account as accounts
from . import files, ports, programs, settingsfile
from . import processes as system
from .options import EXECUTABLE
from .store import PROGRAM_FOLDER_MARK

MIN_FREE_MIB = 100  # sufficient for thousands of day files
FOLDER_NAME = re.compile(r"ORK-2 N(-?[0-9]+)", re.ASCII)
RECORD = re.compile(r"[0-9]{2}:[0-9]{2}:[0-9]{2}\t[^\t]*\t[^\t]*\t(Основной|Резерв)")
HEADINGS = ("Номер прибора:", "Время:")


@dataclasses.dataclass(frozen=True)
class DayFile:
    """Today's file of a folder of day files."""

    path: pathlib.Path
    number: int
    changed: float  # seconds since 1970


def check(section, store, options, account, processes):
    """Returns the folder of the day files that is written now."""
    section.info("program", f"Программа: {options.program}.")
    if not os.access(os.path.join(options.program, EXECUTABLE), os.X_OK):
        section.problem("program-missing", f"Программы {EXECUTABLE} там нет.")
    terminals = programs.own_terminals(account, processes)
    base = _base(store.value("_NAME_PATH"), options.program, terminals, account)
    settingsfile.check(section, options.program, store.value("_NAME_PATH"), base)
    folder = pathlib.Path(base, "Data", f"ORK-2 N{store.number}")
    section.info("data-folder", f"Папка данных: {folder}.")
    place = _check_folder(section, folder, account)
    written = _check_number_in_use(section, folder, store, terminals, processes)
    _check_today(section, written)
    _check_space(section, place)
    return written


def _base(stored, program, terminals, account):
    """Returns the folder that contains Data. A relative path begins in the working folder of the
    program, which is the home folder if it was started from the menu."""
    if stored.startswith(PROGRAM_FOLDER_MARK):
        return program
    start = system.working_folder(terminals[0]) if terminals else None
    return os.path.normpath(os.path.join(start or account.home, stored))


def _check_folder(section, folder, account):
    """Returns the folder, or its nearest existing parent folder."""
    place = files.nearest(folder)
    if not place.is_dir():
        section.problem("data-folder-is-a-file", f"{place} — не папка. Переименуйте этот файл.")
    elif not os.access(place, os.W_OK | os.X_OK):
        section.problem("data-folder-not-writable", "Записать туда нельзя: нет права записи в "
                        f"{place}.{accounts.group_hint(account, place)}")
    elif place != folder:
        section.info("data-folder-missing", "Её ещё нет: программа создаст её с первой строкой.")
    elif not os.access(folder, os.R_OK):
        section.problem("data-folder-not-readable", "Записать туда можно, прочитать нельзя.")
    else:
        section.ok("data-folder-accessible", "Прочитать и записать её можно.")
    return place


def _today():
    return datetime.date.today().strftime("%Y.%m.%d.txt")


def _check_number_in_use(section, folder, store, terminals, processes):
    """The program reads its number only when it starts. Which one it uses is seen from the files that
    have changed since. Returns the folder that is written."""
    own, others = None, []
    for day_file in _changed_files(folder.parent, terminals):
        if day_file.number == store.number:
            own = day_file
        elif not _is_of_recorder(day_file, processes):
            others.append(day_file)
    newest = max(others, key=lambda day_file: day_file.changed, default=None)
    if not newest or (own and own.changed >= newest.changed):
        return folder
    time = datetime.datetime.fromtimestamp(newest.changed).strftime("%H:%M")
    section.problem("number-not-in-effect", f"Программа пишет в {newest.path.parent} (последний раз в "
                    f"{time}): номер {store.number} начнёт действовать при следующем запуске. "
                    "Закройте терминал и запустите его снова.")
    return newest.path.parent


def _changed_files(data, terminals):
    """Returns today's files that have changed since the terminals were started."""
    starts = [start for start in map(system.start_time, terminals) if start is not None]
    if not starts or not data.is_dir():
        return []
    found = []
    for folder in data.iterdir():
        match = FOLDER_NAME.fullmatch(folder.name)
        path = folder / _today()
        if match and path.is_file() and path.stat().st_mtime >= min(starts):
            found.append(DayFile(path, int(match[1]), path.stat().st_mtime))
    return found


def _is_of_recorder(day_file, processes):
    """The recorder may write beside the terminal, under its own number. If its configuration cannot
    be read, any number may be its own."""
    if not processes.named(ports.RECORDER):
        return False
    number = programs.recorder_number()
    return number is None or number == str(day_file.number)


def _check_today(section, folder):
    path = folder / _today()
    if not path.exists():
        section.info("day-file-missing", "Файла за сегодня ещё нет.")
        return
    if not os.access(path, os.W_OK):
        section.problem("day-file-not-writable", f"Файл за сегодня {path} записать нельзя: нет прав.")
        return
    text = files.text_of(path)
    if text is None:
        section.problem("day-file-not-readable", f"Файл за сегодня {path} прочитать нельзя.")
        return
    lines = [line.rstrip("\r") for line in text.split("\n")]
    last = next((line for line in reversed(lines) if line), "")
    if not last or last.startswith(HEADINGS):
        section.problem("day-file-without-records", f"В файле за сегодня {path} нет ни одной записи"
                        f"{', только заголовок' if last else ''}: измерений от прибора не было. Если "
                        "через минуту ничего не изменится, проверьте питание прибора, кабель и "
                        "выбранный порт.")
    elif RECORD.fullmatch(last):
        section.ok("last-record", "Последняя запись за сегодня: " + last.replace("\t", " "))
    else:
        shown = last.strip("\0").replace("\t", " ")
        section.problem("last-record-torn", "Последняя запись за сегодня "
                        + (f"оборвана: «{shown}». " if shown else "стёрта: вместо неё нули. ")
                        + "Так бывает, когда пропало питание. Исправлять файл не нужно: следующая "
                        "запись начнётся с новой строки.")


def _check_space(section, place):
    free_mib = shutil.disk_usage(place).free // 2**20
    if free_mib < MIN_FREE_MIB:
        section.problem("disk-nearly-full", f"На диске свободно мало места: {free_mib} МиБ. Удалите "
                        "или перенесите лишнее; измерения не удаляйте.")
    else:
        section.ok("disk-space", f"На диске свободно {free_mib} МиБ.")
