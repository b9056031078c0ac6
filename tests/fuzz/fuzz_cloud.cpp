// SPDX-License-Identifier: GPL-3.0-or-later
#include "check.h"
#include "convertdata.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray frame = fuzz::bytes(data, size);
    convertData parser;
    int heights = 0;
    int channels = 0;
    const auto isHeight = [&frame](const QString &text, qsizetype offset) {
        const QString sent = QString::fromLatin1(frame.mid(offset, 4));
        const bool none = sent == u"0000" || sent == u"3000";
        return text == (none ? QStringLiteral("5000") : sent);
    };
    QObject::connect(&parser, &convertData::readyToShowClouds, &parser,
        [&](const QString &first, const QString &second) {
            ++heights;
            fuzz::check(channels == 0, "heights are emitted before the channel");
            fuzz::check(isHeight(first, 2) && isHeight(second, 6), "heights are as sent");
        });
    QObject::connect(
        &parser, &convertData::readyToShowCloudChanel, &parser, [&](const QString &channel) {
            ++channels;
            fuzz::check(channel == QString::fromLatin1(frame.mid(1, 1)), "channel is as sent");
        });
    parser.parseCloudData(frame);
    fuzz::check(heights == 1 && channels == 1, "each is emitted once");
    return 0;
}
