// SPDX-License-Identifier: GPL-3.0-or-later
#include "receiver.h"

#include <QDebug>
#include <QMetaType>

Receiver::Receiver(QObject *parent)
    : QObject(parent)
{ }

void Receiver::registerType()
{
    qRegisterMetaType<Receiver *>();
}

void Receiver::receiveFromQml(QString text)
{
    qDebug() << "Получено в C ++ из QML:" << text;
    Q_EMIT sendToQml(text);
}
