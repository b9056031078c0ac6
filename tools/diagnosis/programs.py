# SPDX-License-Identifier: GPL-3.0-or-later
"""The running terminals and the service that records without a person."""

import os
import pathlib

from . import account as accounts
from . import files, ports, processes as system
from .options import EXECUTABLE

RECORDER_BINARY = "/usr/bin/ork2-recorder"
RECORDER_CONFIGURATION = pathlib.Path("/etc/ork2-recorder.conf")


def check_terminals(section, store, options, account, processes):
    terminals = processes.named(ports.TERMINAL)
    if not terminals:
        section.info("terminal-not-running", "Не запущен.")
    elif len(terminals) > 1:
        section.problem("several-terminals", f"Запущено терминалов: {len(terminals)}. Порт откроется "
                        "только одному из них. Оставьте один, остальные закройте: «Файл», «Выход».")
    chosen = [ports.path_of(store.port, options.devices)] if store.port else []
    known = ports.present(options.devices)
    devices = {os.path.realpath(port) for port in known}
    candidates = known + [port for port in chosen if os.path.realpath(port) not in devices]
    for terminal in terminals:
        opened = processes.ports_of(terminal, candidates)
        if opened:
            _tell_port(section, terminal, opened, store, options, account)
        elif processes.may_read_files(terminal):
            _tell_idle(section, terminal, account, processes.holders(chosen[0]) if chosen else [])
        else:
            section.info("terminal-of-another-user", f"{_name(terminal, account)}: его порт отсюда не "
                         "виден.")
        _check_folder(section, terminal, options)


def own_terminals(account, processes):
    return [terminal for terminal in processes.named(ports.TERMINAL) if _is_own(terminal, account)]


def _is_own(process, account):
    return process.uid == account.uid


def _name(terminal, account):
    owner = "" if _is_own(terminal, account) else \
        f", пользователь {accounts.owner_name(terminal.uid)}"
    return f"Процесс {terminal.pid}{owner}"


def _tell_port(section, terminal, opened, store, options, account):
    section.info("terminal", f"{_name(terminal, account)}: открыт порт {', '.join(opened)}.")
    chosen = os.path.realpath(ports.path_of(store.port, options.devices))
    devices = {os.path.realpath(port) for port in opened}
    if _is_own(terminal, account) and store.port and chosen not in devices:
        section.problem("terminal-on-another-port", f"Выбран порт {store.port}, а открыт {opened[0]}. "
                        "Чтобы терминал перешёл на выбранный, нажмите в нём «Стоп», затем «Запуск».")


def _tell_idle(section, terminal, account, holders):
    """Tells why a terminal has no port open. holders: the processes that have the chosen port open."""
    group = accounts.group_number(accounts.PORT_GROUP)
    names = {holder.name for holder in holders}
    if ports.RECORDER in names:
        section.info("terminal-waits-for-recorder",
                     "Порт занят службой записи: измерения записывает она, терминал их не видит.")
    elif (group in account.account_groups and _is_own(terminal, account) and not account.is_root
          and group not in system.groups(terminal)):
        section.problem("terminal-needs-login",
                        f"Терминал (процесс {terminal.pid}) запущен в сеансе, который начат до "
                        f"добавления в группу {accounts.PORT_GROUP}: порт ему не откроется. "
                        "Завершите сеанс рабочего стола и войдите снова.")
    elif ports.TERMINAL not in names:
        section.problem("terminal-without-port",
                        f"Терминал (процесс {terminal.pid}) работает, но порт у него закрыт: "
                        "измерение не начато, порт не открылся или закрыт после обрыва. "
                        "Если на кнопке «Стоп», нажмите её; затем нажмите «Запуск».")


def _check_folder(section, terminal, options):
    path = system.executable(terminal)
    if path and os.path.basename(path) == EXECUTABLE and os.path.dirname(path) != options.program:
        folder = os.path.dirname(path)
        section.problem("terminal-of-another-folder",
                        f"Терминал (процесс {terminal.pid}) запущен из {folder}, а проверена "
                        f"программа в {options.program}. Повторите проверку с параметром --program {folder}")


def check_recorder(section, processes):
    running = processes.named(ports.RECORDER)
    if running:
        section.ok("recorder-running", f"Работает: {ports.RECORDER}, процесс {running[0].pid}. "
                   "Она держит свой порт, и это хорошо.")
    elif recorder_is_installed():
        section.info("recorder-stopped", "Установлена, но не работает: systemctl status "
                     f"{ports.RECORDER} скажет почему.")
    else:
        section.info("recorder-not-installed", "Не установлена.")


def recorder_is_installed():
    return os.access(RECORDER_BINARY, os.X_OK)


def recorder_number():
    """Returns the instrument number of the recorder as text, or None if it cannot be read."""
    number = None
    for line in (files.text_of(RECORDER_CONFIGURATION) or "").splitlines():
        key, equals, value = line.partition("=")
        if equals and key.strip() == "unit":
            number = value.strip()
    return number
