// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

// Passes messages from a QML document to the program. For future use: the type is registered, but
// no instance is created.
class Receiver : public QObject
{
    Q_OBJECT

public:
    explicit Receiver(QObject *parent = nullptr);

    // Registers the type with the meta-type system. Called by main().
    static void registerType();

Q_SIGNALS:
    void sendToQml(QString count);
    void ExitButt(); // declared, never emitted

public Q_SLOTS:
    void receiveFromQml(QString text); // emits sendToQml with the same text
};
