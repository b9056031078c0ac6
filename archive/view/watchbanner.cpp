// SPDX-License-Identifier: GPL-3.0-or-later
#include "watchbanner.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace ork2 {

namespace {

const QColor kLowColor(0xB2, 0x22, 0x22);
const QColor kSilenceColor(0x7A, 0x4B, 0x00);

} // namespace

WatchBanner::WatchBanner(QWidget *parent)
    : QFrame(parent)
    , m_text(new QLabel)
    , m_button(new QPushButton(QStringLiteral("Подтвердить")))
{
    auto *row = new QHBoxLayout(this);
    row->addWidget(m_text, 1);
    row->addWidget(m_button);
    QFont font = m_text->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.25);
    m_text->setFont(font);
    m_button->setToolTip(QStringLiteral("F8"));
    setAutoFillBackground(true);
    setAccessibleName(QStringLiteral("Тревога"));
    connect(m_button, &QPushButton::clicked, this, &WatchBanner::acknowledged);
    hide();
}

void WatchBanner::show(const QString &text, bool silence)
{
    QPalette colors = palette();
    colors.setColor(QPalette::Window, silence ? kSilenceColor : kLowColor);
    colors.setColor(QPalette::WindowText, Qt::white);
    setPalette(colors);
    m_text->setText(text);
    setVisible(true);
}

QString WatchBanner::text() const
{
    return m_text->text();
}

} // namespace ork2
