// SPDX-License-Identifier: GPL-3.0-or-later
#include "reportpanel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace ork2 {

namespace {

// Wrapped only between the values, so that the window may be narrow.
const QString kBetween = QStringLiteral("&nbsp;&nbsp; ");

// Lines may also be broken after a dash and a slash.
QString unbroken(QString text)
{
    constexpr QChar kWordJoiner(0x2060);
    return text.replace(u' ', QChar::Nbsp)
        .replace(u'–', QString(u'–') + kWordJoiner)
        .replace(u'/', QString(u'/') + kWordJoiner);
}

// A height with its codes.
QString heightText(const QString &name, const TenMinutes &report, std::optional<int> height)
{
    const QString value = height ? QStringLiteral("%1 м").arg(*height) : QStringLiteral("–");
    return QStringLiteral("%1:&nbsp;<b>%2</b>&nbsp; h&nbsp;=&nbsp;<b>%3</b>&nbsp; <b>%4</b>")
        .arg(name, unbroken(value), unbroken(figureText(report, height)),
            unbroken(groupText(report, height)))
        .replace(QStringLiteral("&nbsp; "), QStringLiteral("&nbsp;&nbsp;"));
}

} // namespace

ReportPanel::ReportPanel(const QTimeZone &zone, QWidget *parent)
    : QWidget(parent)
    , m_zone(zone)
    , m_text(new QLabel)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    m_text->setTextFormat(Qt::RichText);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setWordWrap(true);
    m_text->setAccessibleName(QStringLiteral("Сводка за последние десять минут"));
    row->addWidget(m_text, 1);
    auto *button = new QPushButton(QStringLiteral("Копировать"));
    button->setToolTip(QStringLiteral("Ctrl+Shift+C"));
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, &ReportPanel::copyRequested);
    show({});
}

QString ReportPanel::timeText() const
{
    const auto text = [this](qint64 time) {
        return QDateTime::fromSecsSinceEpoch(time, m_zone).toString(QStringLiteral("hh:mm"));
    };
    return QStringLiteral("%1–%2").arg(text(m_report.end - kReportSeconds), text(m_report.end));
}

void ReportPanel::show(const TenMinutes &report)
{
    m_report = report;
    const QString minutes = unbroken(QStringLiteral("высота: %1 из 10 мин").arg(report.heights));
    const QStringList values{report.end == 0
            ? QStringLiteral("Последние десять минут")
            : QStringLiteral("<b>%1</b>&nbsp;&nbsp;%2").arg(unbroken(timeText()), minutes),
        heightText(QStringLiteral("Медиана"), report, report.median),
        heightText(QStringLiteral("Наименьшая"), report, report.lowest),
        QStringLiteral("Тенденция:&nbsp;<b>%1</b>").arg(unbroken(trendText(report)))};
    m_text->setText(values.join(kBetween));
}

void ReportPanel::copy() const
{
    QGuiApplication::clipboard()->setText(reportText(m_report, timeText()));
}

} // namespace ork2
