// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QMetaMethod>

// Signatures of a class's own signals and slots in their declared order, which is part of the
// interface of the classes that documents and strings refer to.
inline QByteArrayList methodSignatures(const QMetaObject &meta)
{
    QByteArrayList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        signatures << meta.method(i).methodSignature();
    }
    return signatures;
}
