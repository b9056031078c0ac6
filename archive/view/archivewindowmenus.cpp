// SPDX-License-Identifier: GPL-3.0-or-later
// The menus of ArchiveWindow and their dialogs.
#include "archivechart.h"
#include "archivesettings.h"
#include "archivewindow.h"
#include "csvexport.h"
#include "listdialog.h"
#include "reportpanel.h"
#include "savefile.h"
#include "watchdialog.h"

#include <QActionGroup>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>
#include <QToolBar>

namespace ork2 {

namespace {

constexpr qsizetype kJournalRows = 1000;

} // namespace

QAction *ArchiveWindow::addCommand(
    QMenu *menu, const QString &text, const QKeySequence &key, const std::function<void()> &command)
{
    QAction *action = menu->addAction(text);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, command);
    return action;
}

void ArchiveWindow::createFileMenu()
{
    QMenu *menu = menuBar()->addMenu(QStringLiteral("&Файл"));
    addCommand(
        menu, QStringLiteral("&Открыть папку…"), QKeySequence::Open, [this] { chooseFolder(); });
    addCommand(menu, QStringLiteral("Папка &терминала"), {}, [this] {
        archiveSettings().remove(kFolderKey.toString());
        openFolder(terminalDataFolder());
    });
    menu->addSeparator();
    addCommand(
        menu, QStringLiteral("&Сохранить в файл…"), QKeySequence::Save, [this] { chooseFile(); });
    addCommand(menu, QStringLiteral("&Печать…"), QKeySequence::Print, [this] { printChart(); });
    addCommand(menu, QStringLiteral("&Копировать сводку"),
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), [this] { m_report->copy(); });
    menu->addSeparator();
    addCommand(menu, QStringLiteral("&Замечания к файлам…"), {}, [this] { showProblems(); });
    menu->addSeparator();
    addCommand(
        menu, QStringLiteral("&Выход"), QKeySequence(Qt::CTRL | Qt::Key_Q), [this] { close(); });
}

void ArchiveWindow::addPeriod(
    QMenu *menu, const QString &text, const QKeySequence &key, Period period)
{
    QAction *action = addCommand(menu, text, key, [this, period] { setPeriod(period); });
    action->setCheckable(true);
    m_periodActions->addAction(action);
}

void ArchiveWindow::addScale(
    QMenu *menu, const QString &text, const QKeySequence &key, HeightScale scale)
{
    QAction *action = addCommand(menu, text, key, [this, scale] { m_chart->setScale(scale); });
    action->setCheckable(true);
    action->setChecked(scale == m_chart->scale());
    m_scaleActions->addAction(action);
}

void ArchiveWindow::createViewMenu()
{
    m_periodActions = new QActionGroup(this);
    m_scaleActions = new QActionGroup(this);
    // None is checked after the range was changed freely.
    m_periodActions->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    QMenu *menu = menuBar()->addMenu(QStringLiteral("&Вид"));
    m_followAction = menu->addAction(QStringLiteral("&Сегодня"));
    m_followAction->setCheckable(true);
    m_followAction->setShortcut(Qt::Key_F5);
    connect(m_followAction, &QAction::triggered, this, &ArchiveWindow::setFollowing);
    menu->addSeparator();
    addPeriod(menu, QStringLiteral("&День"), Qt::CTRL | Qt::Key_1, Period::Day);
    addPeriod(menu, QStringLiteral("&Три дня"), Qt::CTRL | Qt::Key_2, Period::ThreeDays);
    addPeriod(menu, QStringLiteral("&Неделя"), Qt::CTRL | Qt::Key_3, Period::Week);
    addPeriod(menu, QStringLiteral("&Месяц"), Qt::CTRL | Qt::Key_4, Period::Month);
    addPeriod(menu, QStringLiteral("&Год"), Qt::CTRL | Qt::Key_5, Period::Year);
    menu->addSeparator();
    addCommand(menu, QStringLiteral("&Назад"), Qt::Key_PageUp, [this] { movePeriod(-1); });
    addCommand(menu, QStringLiteral("&Вперёд"), Qt::Key_PageDown, [this] { movePeriod(1); });
    addCommand(menu, QStringLiteral("&Крупнее"), QKeySequence::ZoomIn,
        [this] { m_chart->zoom(kZoomStep); });
    addCommand(menu, QStringLiteral("&Мельче"), QKeySequence::ZoomOut,
        [this] { m_chart->zoom(1 / kZoomStep); });
    menu->addSeparator();
    addScale(menu, QStringLiteral("Шкала 0–3000 м"), Qt::CTRL | Qt::Key_7, HeightScale::Usual);
    addScale(menu, QStringLiteral("Вся шкала"), Qt::CTRL | Qt::Key_8, HeightScale::Whole);
    addScale(menu, QStringLiteral("Логарифмическая шкала"), Qt::CTRL | Qt::Key_9,
        HeightScale::Logarithmic);
}

void ArchiveWindow::createWatchMenu()
{
    QMenu *menu = menuBar()->addMenu(QStringLiteral("&Наблюдение"));
    addCommand(menu, QStringLiteral("&Настроить…"), {}, [this] { editWatch(); });
    m_acknowledgeAction = addCommand(menu, QStringLiteral("&Подтвердить тревогу"), Qt::Key_F8,
        [this] { m_watch.acknowledge(); });
    m_acknowledgeAction->setEnabled(false);
    addCommand(
        menu, QStringLiteral("&Журнал событий…"), Qt::CTRL | Qt::Key_J, [this] { showJournal(); });
}

void ArchiveWindow::createHelpMenu()
{
    QMenu *menu = menuBar()->addMenu(QStringLiteral("&Справка"));
    addCommand(
        menu, QStringLiteral("&Клавиши"), QKeySequence::HelpContents, [this] { showKeys(); });
}

void ArchiveWindow::createToolBar()
{
    QToolBar *bar = addToolBar(QStringLiteral("Промежуток и шкала"));
    bar->setMovable(false);
    bar->setFocusPolicy(Qt::NoFocus);
    bar->addAction(m_followAction);
    bar->addSeparator();
    bar->addActions(m_periodActions->actions());
    bar->addSeparator();
    QAction *back = bar->addAction(QStringLiteral("◀"), this, [this] { movePeriod(-1); });
    QAction *forward = bar->addAction(QStringLiteral("▶"), this, [this] { movePeriod(1); });
    back->setToolTip(QStringLiteral("Назад (Page Up)"));
    forward->setToolTip(QStringLiteral("Вперёд (Page Down)"));
    bar->addSeparator();
    bar->addActions(m_scaleActions->actions());
}

void ArchiveWindow::chooseFolder()
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, QStringLiteral("Папка с данными"), m_archive.path);
    if (!folder.isEmpty()) {
        archiveSettings().setValue(kFolderKey.toString(), folder);
        openFolder(folder);
    }
}

void ArchiveWindow::chooseFile()
{
    const QString name = QFileDialog::getSaveFileName(this, QStringLiteral("Сохранить в файл"),
        QStringLiteral("ork2-n%1.png").arg(m_unit),
        QStringLiteral("Рисунок PNG (*.png);;Документ PDF (*.pdf);;Таблица CSV (*.csv)"));
    const QString error = name.isEmpty() ? QString() : saveRange(name);
    if (!error.isEmpty()) {
        QMessageBox::warning(
            this, windowTitle(), QStringLiteral("Файл «%1» не записан: %2").arg(name, error));
    }
}

// Until then, files and paper would show only a part of the range.
bool ArchiveWindow::waitForFiles()
{
    if (!m_loader.isLoading()) {
        return true;
    }
    QProgressDialog progress(QStringLiteral("Файлы этого промежутка ещё читаются."),
        QStringLiteral("Отмена"), 0, 0, this);
    progress.setWindowTitle(windowTitle());
    connect(&m_loader, &HistoryLoader::loaded, &progress, &QDialog::accept);
    return progress.exec() == QDialog::Accepted;
}

QString ArchiveWindow::saveRange(const QString &fileName)
{
    if (!waitForFiles()) {
        return {};
    }
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    return saveFile(fileName, [&](QIODevice &device) {
        if (suffix == u"csv") {
            return writeCsv(device, m_loader.history(), m_chart->from(), m_chart->to(), m_zone);
        }
        return suffix == u"pdf" ? m_chart->writePdf(device) : m_chart->writePng(device);
    });
}

void ArchiveWindow::printChart()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted && waitForFiles() && !m_chart->print(printer)) {
        QMessageBox::warning(
            this, windowTitle(), QStringLiteral("Напечатать не удалось. Проверьте принтер."));
    }
}

void ArchiveWindow::showProblems()
{
    QList<QStringList> rows;
    qint64 total = 0;
    for (const DayPointer &day : m_loader.history().days()) {
        total += day->problemCount;
        for (const DayProblem &problem : day->problems) {
            rows.append({day->path, problem.line > 0 ? QString::number(problem.line) : QString(),
                problem.text});
        }
    }
    ListDialog(QStringLiteral("Замечания к файлам"),
        QStringLiteral("Всего замечаний: %1. Всё, что удалось прочитать, показано на графике.")
            .arg(total),
        {QStringLiteral("Файл"), QStringLiteral("Строка"), QStringLiteral("Замечание")}, rows, this)
        .exec();
}

void ArchiveWindow::showJournal()
{
    QList<QStringList> rows;
    for (const JournalEntry &entry : m_watch.journal().last(kJournalRows)) {
        rows.append({entry.time.toString(QStringLiteral("dd.MM.yyyy hh:mm:ss")),
            QStringLiteral("ОРК-2 N%1").arg(entry.unit), eventText(entry.event)});
    }
    ListDialog(QStringLiteral("Журнал событий"),
        QStringLiteral("Последние события. Файл журнала: %1").arg(m_watch.journal().path()),
        {QStringLiteral("Время"), QStringLiteral("Прибор"), QStringLiteral("Событие")}, rows, this)
        .exec();
}

void ArchiveWindow::editWatch()
{
    WatchDialog dialog(storedWatchSettings(), this);
    connect(&dialog, &WatchDialog::testRequested, &m_watch, &WatchKeeper::testCall);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    storeWatchSettings(dialog.settings());
    m_watch.stop();
    setFollowing(isFollowing() || dialog.settings().enabled);
}

void ArchiveWindow::showKeys()
{
    const QList<QStringList> rows{{QStringLiteral("← и →"), QStringLiteral("Курсор по графику")},
        {QStringLiteral("Shift+← и Shift+→"), QStringLiteral("Сдвинуть промежуток на четверть")},
        {QStringLiteral("+ и −"), QStringLiteral("Укоротить и удлинить промежуток")},
        {QStringLiteral("Page Up и Page Down"),
            QStringLiteral("Предыдущий и следующий промежуток")},
        {QStringLiteral("Home и End"), QStringLiteral("Курсор в начало и в конец")},
        {QStringLiteral("F5"), QStringLiteral("Сегодня")},
        {QStringLiteral("Ctrl+1 … Ctrl+5"), QStringLiteral("День, три дня, неделя, месяц, год")},
        {QStringLiteral("Ctrl+7 … Ctrl+9"), QStringLiteral("Шкала высоты")},
        {QStringLiteral("Ctrl+Shift+C"), QStringLiteral("Копировать сводку")},
        {QStringLiteral("F8"), QStringLiteral("Подтвердить тревогу")},
        {QStringLiteral("Колесо мыши"), QStringLiteral("Укоротить и удлинить промежуток")}};
    ListDialog(QStringLiteral("Клавиши"),
        QStringLiteral("Первые пять строк действуют, когда выбран график."),
        {QStringLiteral("Клавиша"), QStringLiteral("Действие")}, rows, this)
        .exec();
}

} // namespace ork2
