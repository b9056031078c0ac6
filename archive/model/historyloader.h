// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "archivefolder.h"
#include "history.h"

#include <QObject>
#include <QThreadPool>
#include <QTimeZone>

#include <atomic>
#include <memory>

class QTimer;

namespace ork2 {

inline constexpr int kFollowMs = 1000; // interval of the check for changed files

// Loads the day files of an instrument in a separate thread, which also waits for a slow disk or
// network. Then follows them: the files of today and yesterday are read again when they change, and
// files that cannot be read when they can be. Create and use in one thread; the signals are emitted
// there.
class HistoryLoader : public QObject
{
    Q_OBJECT

public:
    explicit HistoryLoader(const QTimeZone &zone, QObject *parent = nullptr);
    ~HistoryLoader() override; // waits for the file that is being read

    // Replaces the history with the days from first to last that exist. A running load is
    // cancelled. Files that have not changed since they were last loaded are not read again.
    void load(const Instrument &instrument, QDate first, QDate last);

    [[nodiscard]] const History &history() const { return m_history; }
    [[nodiscard]] bool isLoading() const { return m_cancel != nullptr; }

Q_SIGNALS:
    void loaded();              // all requested days
    void dayLoaded(QDate date); // a file has been read again

private:
    using Cancel = std::shared_ptr<std::atomic<bool>>;

    void check();

    QTimeZone m_zone;
    Instrument m_instrument;
    History m_history;
    Cancel m_cancel; // of the running load; null if there is none
    QTimer *m_followTimer;
    QThreadPool m_thread;
    bool m_checking = false;
};

} // namespace ork2
