// SPDX-License-Identifier: GPL-3.0-or-later
#include "odbcdriveralias.h"

#include <QPluginLoader>
#include <QSqlDatabase>
#include <QSqlDriverCreatorBase>
#include <QSqlDriverPlugin>

namespace {

// Creates each driver with the plugin. Returning the driver of a QSqlDatabase would be shorter but
// would leak one handle per connection.
class OdbcDriverAlias : public QSqlDriverCreatorBase
{
public:
    [[nodiscard]] QSqlDriver *createObject() const override
    {
        QPluginLoader loader(QStringLiteral("sqldrivers/qsqlodbc"));
        auto *plugin = qobject_cast<QSqlDriverPlugin *>(loader.instance());
        return plugin != nullptr ? plugin->create(QStringLiteral("QODBC")) : nullptr;
    }
};

} // namespace

void ork2::registerOdbcDriverAlias()
{
    QSqlDatabase::registerSqlDriver(kOdbcDriverName, new OdbcDriverAlias);
}
