// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "comport.h"
#include "convertdata.h"
#include "datalogger.h"
#include "mainbackend.h"

#include <QThread>

// Gives tests access to private members of the controller.
class MainBackEndProbe
{
public:
    explicit MainBackEndProbe(mainBackEnd &backEnd)
        : m_backEnd(backEnd)
    { }

    [[nodiscard]] ComPort *comPort() const { return m_backEnd.m_comPort; }
    [[nodiscard]] QThread *workerThread() const { return m_backEnd.m_workerThread; }
    [[nodiscard]] convertData *parser() const { return m_backEnd.m_convertData; }
    [[nodiscard]] datalogger *fileWriter() const { return m_backEnd.m_datalogger; }
    [[nodiscard]] QTimer *requestTimer() const { return m_backEnd.m_requestTimer; }
    [[nodiscard]] QTimer *saveTimer() const { return m_backEnd.m_saveTimer; }
    [[nodiscard]] QTimer *plotTimer() const { return m_backEnd.m_plotTimer; }
    [[nodiscard]] double firstValue() const { return m_backEnd.m_fLayerValue; }
    [[nodiscard]] double secondValue() const { return m_backEnd.m_sLayerValue; }
    [[nodiscard]] int channel() const
    {
        return m_backEnd.m_chanelState == ork2::Channel::Main ? 0 : 1;
    }
    [[nodiscard]] bool cloudError() const { return m_backEnd.m_cloudError; }
    [[nodiscard]] bool measuring() const { return m_backEnd.m_measuring; }
    [[nodiscard]] bool workerRunning() const { return m_backEnd.m_workerRunning; }

    void setClock(QDateTime (*now)()) { m_backEnd.m_now = now; }
    // Replaces the ports of this machine.
    void setPorts(const QList<ork2::PresentPort> &ports)
    {
        s_ports = ports;
        m_backEnd.m_presentPorts = [] { return s_ports; };
    }

    void tickWatchdog() { m_backEnd.requestData(); }
    void tickSave() { m_backEnd.timeToSaveData(); }
    void tickPlot() { m_backEnd.plotGraph(); }
    bool searchPort() { return m_backEnd.comSearch(); }
    void message(const QString &text) { m_backEnd.on_error(text); }

    // Ends the worker thread. Only tests need this: the program keeps it running until the exit.
    void endWorker()
    {
        QMetaObject::invokeMethod(comPort(), "DisconnectPort", Qt::BlockingQueuedConnection);
        workerThread()->quit();
        workerThread()->wait();
        delete parser();
        delete fileWriter();
    }

private:
    static inline QList<ork2::PresentPort> s_ports;
    mainBackEnd &m_backEnd;
};
