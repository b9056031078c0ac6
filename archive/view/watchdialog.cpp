// SPDX-License-Identifier: GPL-3.0-or-later
#include "watchdialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>

namespace ork2 {

namespace {

constexpr int kHighestHysteresis = 500; // metres

} // namespace

QList<int> thresholdsOf(const QString &text)
{
    static const QRegularExpression separators(QStringLiteral("[,;\\s]+"));
    QList<int> thresholds;
    const QStringList parts = text.split(separators, Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        bool isNumber = false;
        const int metres = part.toInt(&isNumber);
        if (!isNumber || metres < 1 || metres > kHighestThreshold) {
            return {};
        }
        if (!thresholds.contains(metres)) {
            thresholds.append(metres);
        }
    }
    std::sort(thresholds.begin(), thresholds.end(), std::greater<>());
    return thresholds.size() <= kMaxThresholds ? thresholds : QList<int>();
}

QString thresholdsText(const QList<int> &thresholds)
{
    QStringList texts;
    for (const int metres : thresholds) {
        texts += QString::number(metres);
    }
    return texts.join(QStringLiteral(", "));
}

WatchDialog::WatchDialog(const WatchSettings &settings, QWidget *parent)
    : QDialog(parent)
    , m_enabled(new QCheckBox(QStringLiteral("Следить за высотой облаков и молчанием прибора")))
    , m_thresholds(new QLineEdit(thresholdsText(settings.thresholds)))
    , m_hysteresis(new QSpinBox)
    , m_error(new QLabel)
    , m_buttons(new QDialogButtonBox)
{
    setWindowTitle(QStringLiteral("Наблюдение"));
    auto *form = new QFormLayout(this);
    auto *note = new QLabel(QStringLiteral(
        "Тревога начинается, когда облака опускаются ниже порога, и кончается, когда они\n"
        "поднимаются выше него на указанный запас. О молчании программа сообщает, когда\n"
        "в сегодняшнем файле три минуты нет новых строк."));
    m_enabled->setChecked(settings.enabled);
    m_hysteresis->setRange(0, kHighestHysteresis);
    m_hysteresis->setSingleStep(10);
    m_hysteresis->setValue(settings.hysteresis);
    m_buttons->addButton(QStringLiteral("Сохранить"), QDialogButtonBox::AcceptRole);
    m_buttons->addButton(QStringLiteral("Отмена"), QDialogButtonBox::RejectRole);
    form->addRow(m_enabled);
    form->addRow(QStringLiteral("Пороги, м:"), m_thresholds);
    form->addRow(QStringLiteral("Запас, м:"), m_hysteresis);
    form->addRow(note);
    form->addRow(m_error);
    form->addRow(m_buttons);
    auto *test = new QPushButton(QStringLiteral("Проверить сигнал"));
    m_buttons->addButton(test, QDialogButtonBox::ActionRole);
    connect(test, &QPushButton::clicked, this, &WatchDialog::testRequested);
    connect(m_thresholds, &QLineEdit::textChanged, this, &WatchDialog::check);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    check();
}

void WatchDialog::check()
{
    const bool valid = !thresholdsOf(m_thresholds->text()).isEmpty();
    m_error->setText(
        valid ? QString() : QStringLiteral("Пороги: от одного до шести чисел от 1 до 3000."));
    for (QAbstractButton *button : m_buttons->buttons()) {
        if (m_buttons->buttonRole(button) == QDialogButtonBox::AcceptRole) {
            button->setEnabled(valid);
        }
    }
}

WatchSettings WatchDialog::settings() const
{
    return {m_enabled->isChecked(), thresholdsOf(m_thresholds->text()), m_hysteresis->value()};
}

} // namespace ork2
