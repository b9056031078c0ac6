# SPDX-License-Identifier: GPL-3.0-or-later
"""The settings file in the program folder, read by position as in config/settings.cpp: the data folder
is the text between the first two quotes of the last line."""

import os
import pathlib

from . import files
from .store import PROGRAM_FOLDER_MARK

MAX_SIZE = 1024 * 1024  # the program does not read a larger file
FACTORY_FOLDER = "~/ORK2/Data"
EXAMPLE = "/srv/meteo/"
KEY = "PathToData"


def path_in(program):
    return pathlib.Path(program) / "settings" / "settings.txt"


def lines_of(content):
    """Returns the lines as the program splits them: it skips one line feed at the end."""
    lines = content.replace(b"\r", b"").decode("utf-8", "replace").split("\n")
    return lines[:-1] if len(lines) > 1 and not lines[-1] else lines


def folder_in(line):
    """Returns the folder that the program stores for this last line; "!" for the program folder."""
    quoted = line.split('"')[1:2]
    return quoted[0] if quoted and quoted[0] and quoted[0][0] != "~" else PROGRAM_FOLDER_MARK


def check(section, program, stored, base):
    """stored: the folder in the settings store; base: where the program writes with it."""
    path = path_in(program)
    content = files.end_of(path)
    if content is None:
        section.problem("settings-file-missing",
                        f"Файла {path} нет или его нельзя прочитать: папка данных останется прежней. "
                        "Верните его: sudo apt install --reinstall ork2-terminal.")
        return
    if len(content) > MAX_SIZE:
        section.problem("settings-file-too-long", f"Файл {path} длиннее 1 МиБ, программа его не "
                        "читает: папка данных останется прежней. Верните заводской файл.")
        return
    lines = lines_of(content)
    named = folder_in(lines[-1])
    defect = _defect(lines, named)
    if defect:
        code, cause, remedy = defect
        section.problem(code, f"Файл настроек {path}: {cause}. {_consequence(named, stored, base, program)} "
                        f"{remedy}")
    elif not same_folder(named, stored):
        section.problem("settings-file-not-read-yet", f"Файл настроек {path} называет другую папку "
                        f"данных. Пока данные пишутся в {base}/Data. Новая папка начнёт действовать, "
                        "когда в программе откроют окно «Параметры».")


def same_folder(one, other):
    """A text that begins with "!" means the program folder."""
    return one == other or one[:1] == other[:1] == PROGRAM_FOLDER_MARK


def _consequence(named, stored, base, program):
    now = f"Сейчас данные пишутся в {base}/Data"
    if same_folder(named, stored):
        return now + "."
    later = program if named.startswith(PROGRAM_FOLDER_MARK) else named.rstrip("/")
    return f"{now}, а когда в программе откроют окно «Параметры», будут писаться в {later}/Data."


def _defect(lines, named):
    """Returns (code, cause, remedy), or None if the file names a folder in the right way."""
    last = lines[-1]
    wanted = next((line for line in reversed(lines) if line.strip().startswith(KEY)), "")
    line = f"{_corrected(wanted)}. Затем откройте в программе окно «Параметры»."
    if not last.strip():
        return ("settings-file-empty-end", "в конце есть лишние пустые строки, и папка данных из него "
                "не читается", f"Удалите лишние строки, чтобы последней стала строка {line}")
    if wanted and last is not wanted and not last.strip().startswith(KEY):
        return ("settings-file-other-end", f"строка {KEY} — не последняя, а папка данных читается "
                "только из последней", f"Перенесите эту строку в конец файла: {line}")
    if '"' not in last:
        return ("settings-file-no-quotes", 'в последней строке нет прямых кавычек ("), и папка данных из '
                "неё не читается", f"Исправьте последнюю строку: {line}")
    if last.split('"')[1].startswith("~") and last.split('"')[1] != FACTORY_FOLDER:
        return ("settings-file-tilde", "папка данных начинается со знака ~, а такое имя не действует",
                f"Укажите полный путь, например: {line}")
    if not named.startswith(("/", PROGRAM_FOLDER_MARK)):
        return ("settings-file-relative", f"папка данных «{named}» названа не полным путём, и место "
                "файлов зависит от того, откуда запущена программа",
                f"Укажите полный путь, он начинается с косой черты. Например: {line}")
    return None


def _corrected(line):
    """Returns how the line must look; with the folder meant, if that can be seen."""
    folder = line.partition("=")[2].strip(" \t\"'«»“”„")
    folder = os.path.normpath(folder) + "/" if folder.startswith("/") else EXAMPLE
    return f'{KEY} = "{folder}"'
