# SPDX-License-Identifier: GPL-3.0-or-later
"""Reading files that may be missing, unreadable or no regular files."""

import os
import pathlib
import stat

MAX_SIZE = 4 * 1024 * 1024  # the end of a longer file is read


def nearest(path):
    """Returns the path, or its nearest existing parent folder."""
    path = pathlib.Path(path)
    while not path.exists() and path != path.parent:
        path = path.parent
    return path


def end_of(path):
    """Returns the last MAX_SIZE bytes, or None if they cannot be read. Opening a pipe would wait for its
    other end, so it counts as unreadable."""
    try:
        if not stat.S_ISREG(os.stat(path).st_mode):
            return None
        with open(path, "rb") as file:
            size = file.seek(0, os.SEEK_END)
            file.seek(max(0, size - MAX_SIZE))
            return file.read(MAX_SIZE)
    except (OSError, ValueError):
        return None


def text_of(path):
    """Returns None if it cannot be read."""
    content = end_of(path)
    return None if content is None else content.decode("utf-8", "replace")
