// SPDX-License-Identifier: GPL-3.0-or-later
// Compiled once with the precompiled headers of Qt Core, which all other targets then use.
