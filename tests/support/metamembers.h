// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QMetaMethod>

// Returns the signatures of the signals and slots of a class in their declared order, which is part
// of the interface of classes used by QML documents and signature strings.
inline QByteArrayList methodSignatures(const QMetaObject &meta)
{
    QByteArrayList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        signatures << meta.method(i).methodSignature();
    }
    return signatures;
}
