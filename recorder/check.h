// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

struct Configuration;

// Says in words what a recorder with this configuration would do, and tests the port, the folder
// and, if the upload is on, the database server, all as the current user. The texts go to the
// standard output. A port that a running recorder has open is good. Nothing is left behind.
// Returns whether everything can be used.
[[nodiscard]] bool checkConfiguration(const Configuration &configuration);

} // namespace ork2
