# SPDX-License-Identifier: GPL-3.0-or-later
"""The findings of the diagnosis, as text for people or as JSON for programs."""

import dataclasses
import datetime
import json

OK = "ok"
INFO = "info"
PROBLEM = "problem"


def printable(text):
    """Replaces control characters and undecodable bytes, which file names and records may contain."""
    return "".join(c if c.isprintable() else "\N{REPLACEMENT CHARACTER}" for c in text)


@dataclasses.dataclass(frozen=True)
class Finding:
    """code: an English identifier that does not change when the text is reworded."""

    level: str
    code: str
    text: str


class Section:
    def __init__(self, title):
        self.title = title
        self.findings = []

    def ok(self, code, text):
        self._add(OK, code, text)

    def info(self, code, text):
        self._add(INFO, code, text)

    def problem(self, code, text):
        self._add(PROBLEM, code, text)

    def _add(self, level, code, text):
        self.findings.append(Finding(level, code, printable(text)))


class Report:
    def __init__(self, program, version):
        self._program = program
        self._version = version
        self._time = datetime.datetime.now().astimezone()
        self._sections = []

    def section(self, title):
        section = Section(printable(title))
        self._sections.append(section)
        return section

    @property
    def problems(self):
        return sum(finding.level == PROBLEM
                   for section in self._sections for finding in section.findings)

    def text(self):
        lines = []
        for section in self._sections:
            lines += ["", section.title]
            lines += [("  ! " if finding.level == PROBLEM else "    ") + finding.text
                      for finding in section.findings]
        lines += ["", "Итог"]
        if self.problems:
            lines.append(f"    Требует внимания: {self.problems} (строки со знаком «!»).")
        else:
            lines.append("    Всё в порядке.")
        return "\n".join(lines) + "\n"

    def json(self):
        content = {
            "program": self._program,
            "version": self._version,
            "time": self._time.isoformat(timespec="seconds"),
            "problems": self.problems,
            "sections": [{"title": section.title,
                          "findings": [dataclasses.asdict(finding) for finding in section.findings]}
                         for section in self._sections],
        }
        return json.dumps(content, ensure_ascii=False, indent=2) + "\n"
