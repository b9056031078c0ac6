# SPDX-License-Identifier: GPL-3.0-or-later
"""The user who runs the diagnosis, and the groups that give access."""

import dataclasses
import grp
import os
import pwd
import stat

PORT_GROUP = "dialout"


@dataclasses.dataclass(frozen=True)
class Account:
    """A process gets its groups when the user logs in. A group that is added later belongs to the
    account at once, but to a session only after the next login."""

    uid: int
    name: str
    home: str
    session_groups: frozenset
    account_groups: frozenset

    @property
    def is_root(self):
        return self.uid == 0


def current():
    uid = os.geteuid()
    session = frozenset({os.getegid(), *os.getgroups()})
    try:
        entry = pwd.getpwuid(uid)
    except KeyError:  # a container may run under a number without an account
        return Account(uid, str(uid), os.environ.get("HOME") or "/", session, session)
    groups = frozenset(os.getgrouplist(entry.pw_name, entry.pw_gid))
    return Account(uid, entry.pw_name, os.environ.get("HOME") or entry.pw_dir, session, groups)


def group_number(name):
    """Returns -1 if there is no such group."""
    try:
        return grp.getgrnam(name).gr_gid
    except KeyError:
        return -1


def group_name(number):
    try:
        return grp.getgrgid(number).gr_name
    except KeyError:
        return str(number)


def owner_name(number):
    try:
        return pwd.getpwuid(number).pw_name
    except KeyError:
        return str(number)


def group_hint(account, path):
    """Returns what to do if membership of the path's group would grant the missing permission."""
    status = os.stat(path)
    both = stat.S_IRGRP | stat.S_IWGRP
    if status.st_mode & both != both or status.st_gid in account.session_groups:
        return ""
    group = group_name(status.st_gid)
    if status.st_gid in account.account_groups:
        return (f" Учётная запись уже состоит в группе {group}, но этот сеанс начат раньше: "
                "завершите сеанс и войдите снова.")
    return f" Нужна группа {group}: sudo usermod -aG {group} {account.name}, затем войти заново."


def check(section, account):
    section.info("user", f"Имя: {account.name}.")
    number = group_number(PORT_GROUP)
    if account.is_root:
        section.info("user-root",
                     "Это администратор: ему открыто всё. Проверяйте под обычным пользователем.")
    elif number in account.session_groups:
        section.ok("group-member", f"В группе {PORT_GROUP} состоит.")
    elif number in account.account_groups:
        section.problem("group-needs-login",
                        f"В группу {PORT_GROUP} добавлен, но ещё не вошёл заново. "
                        "Завершите сеанс и войдите снова.")
    else:
        section.info("group-not-member",
                     f"В группе {PORT_GROUP} не состоит. Добавить: "
                     f"sudo usermod -aG {PORT_GROUP} {account.name}, затем войти заново.")
    if not os.environ.get("HOME"):
        section.info("home-not-set",
                     "Переменная HOME не задана: домашняя папка взята из учётной записи, "
                     f"{account.home}.")
