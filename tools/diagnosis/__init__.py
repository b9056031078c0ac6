# SPDX-License-Identifier: GPL-3.0-or-later
"""The checks of tools/diagnose. None of them changes anything."""

VERSION = "2.2.4"
