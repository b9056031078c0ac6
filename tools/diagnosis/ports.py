# SPDX-License-Identifier: GPL-3.0-or-later
"""The ports of this machine, and the one chosen in the program."""

import array
import errno
import fcntl
import os
import pathlib
import stat

from . import account as accounts

PATTERNS = ("ttyS[0-9]*", "ttyUSB[0-9]*", "ttyACM[0-9]*", "ttyAMA[0-9]*", "ttyXRUSB[0-9]*",
            "rfcomm[0-9]*")
TERMINAL = "ork2-terminal"
RECORDER = "ork2-recorder"
SIMULATOR = "ork2-simulator"
MODEM_MANAGER = "ModemManager"
GET_EXCLUSIVE = 0x80045440  # TIOCGEXCL of Linux, which Python does not name


def present(devices):
    """Returns the paths of the ports in this folder."""
    return [str(path) for pattern in PATTERNS for path in sorted(pathlib.Path(devices).glob(pattern))
            if path.exists() and not _is_reserved(path)]


def _is_reserved(path):
    """The system lists more built-in ports than exist; type 0 means that the port does not exist."""
    try:
        kind = pathlib.Path("/sys/class/tty", path.name, "type").read_text()
    except OSError:
        return False
    return str(path.parent) == "/dev" and kind.strip() == "0"


def path_of(name, devices):
    return name if name.startswith("/") else os.path.join(devices, name)


def may_open(path):
    return os.access(path, os.R_OK | os.W_OK)


def check(section, devices, processes):
    paths = present(devices)
    for path in paths:
        status = os.stat(path)
        parts = [f"{os.path.basename(path)}: владелец {accounts.owner_name(status.st_uid)}, "
                 f"группа {accounts.group_name(status.st_gid)}, "
                 f"права {stat.filemode(status.st_mode)}",
                 "доступ разрешён" if may_open(path) else "открыть нельзя: нет прав"]
        holders = processes.holders(path)
        if holders:
            parts.append("занят: " + ",".join(f"{holder.pid} {holder.name}" for holder in holders))
        section.info("port", "; ".join(parts) + ".")
    if not paths:
        section.problem("no-ports", "Портов нет. Проверьте, подключён ли адаптер, и выполните "
                        "sudo dmesg | tail.")


def check_chosen(section, store, options, account, processes):
    if not store.port:
        section.problem("port-not-chosen",
                        "Порт не выбран. Выберите его в окне «Параметры» и нажмите «Выход».")
        return
    section.info("port-chosen", f"Выбран порт {store.port}.")
    port = path_of(store.port, options.devices)
    if not os.path.exists(port):
        section.problem("port-missing", f"Порта {port} сейчас нет. Подключите адаптер или выберите "
                        "другой порт.")
        return
    if not stat.S_ISCHR(os.stat(port).st_mode):
        section.problem("port-not-a-device", f"{port} — не порт.")
        return
    holders = processes.holders(port)
    for holder in holders:
        _tell_holder(section, holder)
    locked = _check_lock(section, processes.lock(port), account)
    if not may_open(port):
        section.problem("port-no-permission",
                        f"Открыть его нельзя: нет прав.{accounts.group_hint(account, port)}")
    elif not locked and all(holder.name == SIMULATOR for holder in holders):
        if _tell_trial(section, port) == errno.EBUSY:
            return
    if not account.is_root:
        section.info("port-other-users",
                     f"Чужие процессы видит только администратор: sudo fuser -v {port}.")


def _tell_holder(section, holder):
    if holder.name == TERMINAL:
        section.ok("port-open-in-terminal", f"Он открыт терминалом (процесс {holder.pid}).")
    elif holder.name == RECORDER:
        section.ok("port-open-in-recorder", f"Он открыт службой записи {RECORDER} (процесс "
                   f"{holder.pid}): так и должно быть.")
        section.info("port-kept-by-recorder", "Терминалу он не откроется, пока она работает: "
                     f"sudo systemctl stop {RECORDER}.")
    elif holder.name == SIMULATOR:
        section.ok("port-of-simulator", f"Это порт имитатора прибора {SIMULATOR} (процесс "
                   f"{holder.pid}): так и должно быть.")
    else:
        remedy = ("Закройте её." if holder.name != MODEM_MANAGER else
                  f"Отключите её: sudo systemctl disable --now {MODEM_MANAGER}.")
        section.problem("port-busy", f"Он занят другой программой: {holder.name} (процесс "
                        f"{holder.pid}). {remedy}")


def _check_lock(section, lock, account):
    """Returns whether a lock file is left that the program cannot remove. It removes those of its own
    user; the folder of the lock files has the sticky bit, which protects those of the others."""
    if not lock or lock.keeper:
        return False
    if lock.uid == account.uid or account.is_root:
        section.info("lock-left", f"От прерванной программы остался замок {lock.path}: терминал "
                     "снимет его сам.")
        return False
    section.problem("lock-of-another-user", "Остался замок другого пользователя, порт не откроется: "
                    f"sudo rm {lock.path}")
    return True


def _try_to_open(port):
    """Opens and closes the port without reading from it or changing its parameters. Returns an error
    number, or 0. Only for a port that nobody has open as far as can be seen: opening raises its line
    DTR, which the terminal does as well, and the instrument sends without regard to it. If another
    user's program has it open, this descriptor is not the last one, and closing it has no effect."""
    try:
        descriptor = os.open(port, os.O_RDWR | os.O_NONBLOCK | os.O_NOCTTY | os.O_CLOEXEC)
    except OSError as error:
        return error.errno
    exclusive = array.array("i", [0])
    try:
        # Root may also open a port that is reserved.
        fcntl.ioctl(descriptor, GET_EXCLUSIVE, exclusive)
    except OSError:
        pass  # not a serial port, or not known to this system
    finally:
        os.close(descriptor)
    return errno.EBUSY if exclusive[0] else 0


def _tell_trial(section, port):
    """Returns the error number of the trial, or 0."""
    error = _try_to_open(port)
    if error == 0:
        section.ok("port-opens", "Открыть его можно.")
    elif error == errno.EBUSY:
        section.problem("port-reserved", "Открыть его нельзя: система считает его занятым, но кем — не "
                        "видно. Либо его открыла программа другого пользователя, либо терминал "
                        f"прервали (kill -9). Узнать, кто держит порт: sudo fuser -v {port}. Если "
                        "никто, выньте адаптер и вставьте его снова, а имитатор прибора перезапустите.")
    elif error in (errno.ENXIO, errno.EIO, errno.ENODEV):
        section.problem("port-dead", "Открыть его нельзя: устройство не отвечает. Выньте адаптер и "
                        "вставьте его снова, затем выполните sudo dmesg | tail.")
    elif error in (errno.EACCES, errno.EPERM):
        section.problem("port-forbidden", "Открыть его нельзя: права на файл есть, но система "
                        "запрещает. Обратитесь к её администратору.")
    else:
        section.problem("port-error", f"Открыть его нельзя: {os.strerror(error)}. "
                        "Выньте адаптер и вставьте его снова.")
    return error
