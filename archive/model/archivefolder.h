// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDate>
#include <QList>
#include <QString>

#include <optional>

namespace ork2 {

// An instrument's folder, "ORK-2 N<unit>", and the dates of its day files in ascending order.
struct Instrument
{
    int unit = 0;
    QString folder; // with a trailing slash
    QList<QDate> days;
    QString error; // for the user; empty if the folder can be read

    [[nodiscard]] QString dayFile(QDate date) const;
};

// A data folder: contains the folders of the instruments. Only lists files, does not read them.
struct ArchiveFolder
{
    QString path;
    QList<Instrument> instruments; // in ascending order of their numbers
    int preferredUnit = -1;        // if the user chose the folder of an instrument
    QString error;                 // for the user; empty if the folder can be read

    [[nodiscard]] const Instrument *instrument(int unit) const; // null if there is none
};

// Accepts a data folder, the folder that contains "Data/", or the folder of an instrument.
[[nodiscard]] ArchiveFolder openArchiveFolder(const QString &path);

// The date of a day file, <yyyy.MM.dd>.txt.
[[nodiscard]] std::optional<QDate> dateOfDayFile(const QString &fileName);

} // namespace ork2
