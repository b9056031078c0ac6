// SPDX-License-Identifier: GPL-3.0-or-later
#include "reportpanel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <cstdlib>

namespace ork2 {

namespace {

constexpr int kSpacing = 16; // pixels between the values

QLabel *valueLabel(QHBoxLayout *row)
{
    auto *label = new QLabel;
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row->addWidget(label);
    return label;
}

// A height with its codes.
QString heightText(const QString &name, const TenMinutes &report, std::optional<int> height)
{
    const QString value = height ? QStringLiteral("%1 м").arg(*height) : QStringLiteral("–");
    return QStringLiteral("%1: <b>%2</b>&nbsp; h = <b>%3</b>&nbsp; <b>%4</b>")
        .arg(name, value, figureText(report, height), groupText(report, height));
}

// The complete text would make the window wider than a small screen.
QString shortTrendText(const TenMinutes &report)
{
    if (!report.trend || std::abs(*report.trend) < kSteadyTrend) {
        return trendText(report);
    }
    return QStringLiteral("%1%2 м").arg(
        *report.trend > 0 ? QStringLiteral("+") : QStringLiteral("−"),
        QString::number(std::abs(*report.trend)));
}

} // namespace

ReportPanel::ReportPanel(const QTimeZone &zone, QWidget *parent)
    : QWidget(parent)
    , m_zone(zone)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->setSpacing(kSpacing);
    m_time = valueLabel(row);
    m_median = valueLabel(row);
    m_lowest = valueLabel(row);
    m_trend = valueLabel(row);
    row->addStretch();
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
    const QString minutes = QStringLiteral("%1 из 10 мин").arg(report.heights);
    m_time->setText(report.end == 0
            ? QStringLiteral("Последние десять минут")
            : QStringLiteral("<b>%1</b>&nbsp; высота: %2").arg(timeText(), minutes));
    m_median->setText(heightText(QStringLiteral("Медиана"), report, report.median));
    m_lowest->setText(heightText(QStringLiteral("Наименьшая"), report, report.lowest));
    m_trend->setText(QStringLiteral("Тенденция: <b>%1</b>").arg(shortTrendText(report)));
    m_trend->setToolTip(trendText(report));
}

void ReportPanel::copy() const
{
    QGuiApplication::clipboard()->setText(reportText(m_report, timeText()));
}

} // namespace ork2
