// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

// Texts of a day file (UTF-8): two lines of headings, then records of four tab-separated fields
// (time, first layer, second layer, channel name). Each record begins with a line break, so the
// file does not end with one.
namespace ork2 {

inline constexpr QStringView kUnitHeading = u"Номер прибора:"; // followed by a space and the number
inline constexpr QStringView kTimeHeading = u"Время:";
inline constexpr QStringView kFirstLayerHeading = u"Первый слой облаков:";
inline constexpr QStringView kSecondLayerHeading = u"Второй слой облаков:";
inline constexpr QStringView kChannelHeading = u"Канал:";
inline constexpr QStringView kMainChannelName = u"Основной";
inline constexpr QStringView kReserveChannelName = u"Резерв";
inline constexpr QStringView kNoValueDashes = u"----"; // in place of a height
inline constexpr QStringView kTimeFormat = u"hh:mm:ss";
inline constexpr QStringView kLineBreak = u"\r\n";
inline constexpr QChar kFieldSeparator = u'\t';
inline constexpr qsizetype kRecordFields = 4;

} // namespace ork2
