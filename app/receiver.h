// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

// Messenger from a document to the program, kept for later: known to the meta-type system, but
// nothing makes one, publishes it or connects it.
class Receiver : public QObject
{
    Q_OBJECT

public:
    explicit Receiver(QObject *parent = nullptr);

    // Makes the type known by its name; from the entry function.
    static void registerType();

Q_SIGNALS:
    void sendToQml(QString count);
    void ExitButt(); // declared, never emitted

public Q_SLOTS:
    void receiveFromQml(QString text); // comes back as sendToQml
};
