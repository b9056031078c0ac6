// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QQmlContext>
#include <QQmlEngine>
#include <QVariant>

// What the main document knows under a name, as an id or as a property; null if nothing.
inline QObject *documentItem(const QObject &document, const char *name)
{
    QObject *item = qmlContext(&document)->objectForName(QString::fromLatin1(name));
    return item != nullptr ? item : document.property(name).value<QObject *>();
}
