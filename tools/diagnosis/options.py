# SPDX-License-Identifier: GPL-3.0-or-later
"""The command line."""

import dataclasses
import os
import pathlib

INSTALLED = "/opt/ork2-terminal"
EXECUTABLE = "ork2-terminal"

USAGE = """\
Использование: {name} [--program КАТАЛОГ] [--devices КАТАЛОГ] [--json]
               {name} --bundle ФАЙЛ.tar.gz [--yes] […]

Проверяет, может ли этот пользователь работать с терминалом ОРК-2: порты, права, настройки,
папку данных, место на диске. Запускайте под тем пользователем, под которым работает терминал.
Сценарий ничего не меняет.

  --program КАТАЛОГ      где лежит программа (по умолчанию /opt/ork2-terminal, а если её там нет —
                         каталог сборки build/release/bin рядом с этим сценарием)
  --devices КАТАЛОГ      где лежат устройства портов (по умолчанию /dev)
  --json                 то же в формате JSON, для программ
  --bundle ФАЙЛ.tar.gz   собрать для того, кто помогает, архив: проверку, настройки без паролей,
                         два последних суточных файла, версии системы. Сначала показывает, что в
                         него войдёт, и спрашивает, записать ли; готовый файл не перезаписывает
  --yes                  записать архив, не спрашивая
  -h, --help             эта справка

Код завершения: 0 — всё в порядке, 1 — что-то требует внимания, 2 — ошибка в параметрах или архив
не записан.
"""


class WrongUse(Exception):
    """Its text says what is wrong with the options."""


@dataclasses.dataclass
class Options:
    program: str = ""
    devices: str = "/dev"
    bundle: str = ""
    json: bool = False
    yes: bool = False
    help: bool = False


def parse(name, arguments, script):
    """Returns the options. script is the path of the entry script, beside which builds are found."""
    options = Options()
    rest = list(arguments)
    while rest:
        option = rest.pop(0)
        if option in ("--program", "--devices"):
            if not rest or not os.path.isdir(rest[0]):
                raise WrongUse(f"после {option} нужен существующий каталог")
            setattr(options, option[2:], rest.pop(0))
        elif option == "--bundle":
            if not rest or rest[0].startswith("--"):
                raise WrongUse("после --bundle нужно имя файла, например ork2.tar.gz")
            options.bundle = rest.pop(0)
        elif option in ("--json", "--yes"):
            setattr(options, option[2:], True)
        elif option in ("-h", "--help"):
            options.help = True
            return options
        else:
            raise WrongUse(f"неизвестный параметр «{option}»; список — {name} --help")
    if options.yes and not options.bundle:
        raise WrongUse("--yes действует только вместе с --bundle")
    # The program also resolves links to determine its folder.
    options.program = os.path.realpath(options.program or _default_program(script))
    return options


def _default_program(script):
    built = pathlib.Path(script).resolve().parent.parent / "build" / "release" / "bin"
    missing = not os.access(f"{INSTALLED}/{EXECUTABLE}", os.X_OK)
    return built if missing and os.access(built / EXECUTABLE, os.X_OK) else INSTALLED
