// SPDX-License-Identifier: GPL-3.0-or-later
#include "databaseserver.h"

#include "settingskeys.h"

namespace ork2 {

DatabaseServer storedDatabaseServer()
{
    const QSettings store = settingsStore();
    return {storedText(store, kServerHost), storedText(store, kServerPort).toInt(),
        storedText(store, kServerUser), storedText(store, kServerPassword),
        storedText(store, kServerStation)};
}

} // namespace ork2
