// SPDX-License-Identifier: GPL-3.0-or-later
#include "odbcdriveralias.h"

#include <QPluginLoader>
#include <QSqlDatabase>
#include <QSqlDriverCreatorBase>
#include <QSqlDriverPlugin>

namespace {

// Takes each driver fresh from the plug-in. To hold a QSqlDatabase and hand out its driver would be
// shorter and leak a handle a connection.
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
