# SPDX-License-Identifier: GPL-3.0-or-later
"""Reads an INI file as QSettings does, and removes passwords from its text.

Format: "Qt Settings, format INI": sections, key=value, values with quotes and backslashes. A value
may continue in the next line, and a semicolon outside quotes ends the line.
"""

import re

SPACES = " \t\n\r"
ESCAPES = {"a": "\a", "b": "\b", "f": "\f", "n": "\n", "r": "\r", "t": "\t", "v": "\v",
           '"': '"', "?": "?", "'": "'", "\\": "\\"}
SECRET = re.compile(r"pass|pwd|парол|secret", re.IGNORECASE)
SECRET_LINE = re.compile(r"((?:pass|pwd|парол|secret)[^=\n]*=[ \t]*)([^\r\n]*)", re.IGNORECASE)
MASK = "***"
# Shorter ones are found by their key only: such a text may also be part of another word.
MIN_SECRET = 4


def values(text):
    """Returns {"SECTION/key": value}."""
    return {key: _unescaped(text[start:end]) for key, start, end in _entries(text)}


def without_secrets(text):
    """Returns the text with *** in place of the passwords, and the set of these passwords."""
    found = set()
    kept = []
    position = 0
    for key, start, end in _entries(text):
        if SECRET.search(key):
            found |= {text[start:end].strip().strip('"'), _unescaped(text[start:end])}
            kept += [text[position:start], MASK]
            position = end
    text = "".join(kept) + text[position:]
    # Also line by line: after an unpaired quote, a line is part of the value before.
    found |= {match[2].strip().strip('"') for match in SECRET_LINE.finditer(text)}
    text = SECRET_LINE.sub(lambda match: match[1] + MASK, text)
    secrets = {secret for secret in found if len(secret) >= MIN_SECRET}
    return remove(text, secrets), secrets


def remove(text, secrets):
    for secret in sorted(secrets, key=len, reverse=True):
        text = text.replace(secret, MASK)
    return text


def _entries(text):
    """Yields the key of each entry, and where its value starts and ends."""
    section = ""
    for start, equals, end in _lines(text):
        if text[start] == "[":
            section = text[start + 1:end].partition("]")[0].strip() + "/"
        elif equals >= 0:
            yield section + text[start:equals].strip(), equals + 1, end


def _lines(text):
    """Yields start, position of the equals sign (or -1) and end of each line that may span several."""
    position = 0
    while position < len(text):
        while position < len(text) and text[position] in SPACES:
            position += 1
        start = position
        if text[start:start + 1] == ";":
            while position < len(text) and text[position] not in "\r\n":
                position += 1
            continue
        equals, position = _end_of_line(text, start)
        if position > start:
            yield start, equals, position


def _end_of_line(text, start):
    equals = -1
    quoted = False
    position = start
    while position < len(text):
        char = text[position]
        if char == "\\":
            position += 3 if text[position + 1:position + 3] in ("\r\n", "\n\r") else 2
            continue
        if char == '"':
            quoted = not quoted
        elif char == "=" and not quoted and equals < 0:
            equals = position
        elif char in "\r\n;" and not quoted:
            break
        position += 1
    return equals, min(position, len(text))


def _unescaped(raw):
    """Returns the value, or an empty text for a list and for other types than text."""
    result = []
    kept = 0  # trailing spaces are removed, except in quotes
    quoted = False
    position = len(raw) - len(raw.lstrip(" \t"))
    while position < len(raw):
        char = raw[position]
        position += 1
        if char == "\\":
            text, position = _escape(raw, position)
            result.append(text)
            kept = len(result)
        elif char == '"':
            quoted = not quoted
            kept = len(result)
        elif char == "," and not quoted:
            return ""
        else:
            result.append(char)
            if quoted or char not in " \t":
                kept = len(result)
    value = "".join(result[:kept])
    if value.startswith("@"):
        return value[1:] if value.startswith("@@") else ""
    return value


def _escape(raw, position):
    """Returns the text of the escape sequence behind a backslash, and where it ends."""
    number = re.compile(r"x([0-9a-fA-F]+)|([0-7]+)").match(raw, position)
    if number:
        code = int(number[1], 16) if number[1] else int(number[2], 8)
        return chr(code & 0xFFFF), number.end()
    if raw[position:position + 2] in ("\r\n", "\n\r"):
        return "", position + 2
    return ESCAPES.get(raw[position:position + 1], ""), position + 1
