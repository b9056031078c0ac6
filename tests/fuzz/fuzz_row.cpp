// SPDX-License-Identifier: GPL-3.0-or-later
#include "check.h"
#include "datalogger.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static datalogger writer;
    QByteArray line = fuzz::bytes(data, size);
    const QVariantList row = writer.arrayToQVList(line);
    if (line.startsWith("\r\n")) {
        line.remove(0, 2);
    }
    QByteArray fields;
    for (qsizetype i = 1; i < row.size(); ++i) {
        if (i != 2) {
            fields += (i == 1 ? "" : "\t") + row.at(i).toByteArray();
        }
    }
    fuzz::check(row.size() >= 3, "date, first field, unit number");
    fuzz::check(row.at(0).typeId() == QMetaType::QString, "date is a text");
    fuzz::check(row.at(2).typeId() == QMetaType::Int, "unit number is a number");
    fuzz::check(fields == line, "the fields match the line");
    return 0;
}
