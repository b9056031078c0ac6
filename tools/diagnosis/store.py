# SPDX-License-Identifier: GPL-3.0-or-later
"""The settings store of the user: keys and defaults as in config/settingskeys.h."""

import os
import pathlib
import re

from . import files, ini

ORGANISATION = "КАСТОР"
APPLICATION = "Терминал ОРК-2"
NO_PORT = "----"
PROGRAM_FOLDER_MARK = "!"
DEFAULTS = {"_COM": NO_PORT, "_NUM": "1", "_NAME_PATH": PROGRAM_FOLDER_MARK}
MAX_VALUE_LENGTH = 4096  # the program ignores longer values
MAX_NUMBER = 2**31 - 1
NUMBER = re.compile(r"\s*([+-]?[0-9]+)\s*", re.ASCII)


class Store:
    """If the user's file does not have a key, Qt looks for it in the file of the organisation and in
    those of the system."""

    def __init__(self, home):
        user = pathlib.Path(os.environ.get("XDG_CONFIG_HOME") or os.path.join(home, ".config"))
        system = (os.environ.get("XDG_CONFIG_DIRS") or "/etc/xdg").split(":")
        self.path = self._file(user.absolute())
        self._values = {}
        for folder in [*reversed([pathlib.Path(name) for name in system]), user]:
            for path in (folder / f"{ORGANISATION}.conf", self._file(folder)):
                self._values |= ini.values(files.text_of(path) or "")

    @staticmethod
    def _file(folder):
        return folder / ORGANISATION / f"{APPLICATION}.conf"

    def value(self, key):
        value = self._values.get(f"SETTINGS/{key}", DEFAULTS[key])
        return value if len(value) <= MAX_VALUE_LENGTH else DEFAULTS[key]

    @property
    def port(self):
        """Returns the name or the path of the chosen port, or an empty text."""
        port = self.value("_COM")
        return "" if port == NO_PORT else port

    @property
    def number(self):
        """Returns the number of the instrument as read by the program: 0 if it is not a number."""
        match = NUMBER.fullmatch(self.value("_NUM"))
        number = int(match[1]) if match and len(match[1]) < 20 else 0
        return number if abs(number) <= MAX_NUMBER else 0


def check(section, store):
    path = store.path
    section.info("store", f"Файл: {path}.")
    if not path.exists():
        place = files.nearest(path)
        section.info("store-missing", "Его ещё нет: программа создаст его, когда в ней выберут порт "
                     "или номер прибора.")
        if not os.access(place, os.W_OK):
            section.problem("store-not-creatable",
                            f"Создать его нельзя: нет права записи в {place}.")
    elif not os.access(path, os.R_OK):
        section.problem("store-not-readable", "Прочитать его нельзя: нет прав.")
    elif not os.access(path, os.W_OK):
        section.problem("store-not-writable",
                        "Прочитать его можно, записать нельзя: новый порт и номер не сохранятся.")
    else:
        section.ok("store-accessible", "Прочитать и записать его можно.")


def check_number(section, store):
    if store.number == 0:
        section.problem("number-invalid", f"Номер прибора «{store.value('_NUM')}» — не число или 0: "
                        "файлы данных не создаются. Впишите номер в окне «Номер прибора» и "
                        "запустите программу заново.")
    else:
        section.ok("number", f"Номер прибора: {store.number}.")
