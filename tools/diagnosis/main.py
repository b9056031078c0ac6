# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the checks, prints the findings, and writes the archive for support."""

import os
import signal
import sys

from . import VERSION, account, bundle, data, options, ports, processes, programs, store
from .report import Report

FINE, PROBLEMS, FAILED = 0, 1, 2  # exit codes


def main(arguments, script):
    name = os.path.basename(arguments[0])
    # A reader such as "head" may exit first.
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)
    try:
        chosen = options.parse(name, arguments[1:], script)
        if chosen.help:
            print(options.USAGE.format(name=name), end="")
            return FINE
        if chosen.bundle:
            bundle.check_target(chosen.bundle)
        report, sources = diagnose(chosen)
        if not _print(report.json() if chosen.json else report.text(), name):
            return FAILED
        if chosen.bundle:
            # The standard output contains only JSON if requested.
            bundle.offer(chosen, report, sources, sys.stderr if chosen.json else sys.stdout)
    except (options.WrongUse, bundle.NotWritten) as error:
        print(f"{name}: {error}", file=sys.stderr)
        return FAILED
    except KeyboardInterrupt:
        return FAILED
    return PROBLEMS if report.problems else FINE


def _print(text, name):
    """Returns false if the standard output is a file on a full disk."""
    try:
        print(text, end="", flush=True)
        return True
    except OSError as error:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())  # Python writes again at the exit
        print(f"{name}: результат не напечатан: {error.strerror}", file=sys.stderr)
        return False


def diagnose(chosen):
    """Returns the report, and the sources for the archive."""
    report = Report("ork2-diagnose", VERSION)
    user = account.current()
    running = processes.Processes()
    settings = store.Store(user.home)
    account.check(report.section("Пользователь"), user)
    ports.check(report.section(f"Порты в {chosen.devices}"), chosen.devices, running)
    programs.check_terminals(report.section("Терминал"), settings, chosen, user, running)
    programs.check_recorder(report.section("Служба записи"), running)
    section = report.section("Настройки")
    store.check(section, settings)
    ports.check_chosen(section, settings, chosen, user, running)
    store.check_number(section, settings)
    folder = data.check(report.section("Данные"), settings, chosen, user, running)
    return report, bundle.Sources(settings.path, chosen.program, folder)
