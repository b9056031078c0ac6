// SPDX-License-Identifier: GPL-3.0-or-later
#include "archivewindow.h"
#include "commandline.h"
#include "exportjob.h"

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QTextStream>

namespace {

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments += QFile::decodeName(argv[i]);
    }
    return arguments;
}

// Returns false if the window is to be shown or a file to be exported.
bool answered(const ork2::CommandLine &line)
{
    if (line.help) {
        QTextStream(stdout) << ork2::helpText();
    } else if (line.version) {
        QTextStream(stdout) << "ork2-archive " ORK2_VERSION "\n";
    } else if (!line.error.isEmpty()) {
        QTextStream(stderr) << "ork2-archive: " << line.error << '\n';
    }
    return line.help || line.version || !line.error.isEmpty();
}

} // namespace

int main(int argc, char *argv[])
{
    // Before the application is created, which requires a display if it is to show a window.
    const ork2::CommandLine line = ork2::parseCommandLine(argumentsOf(argc, argv));
    if (answered(line)) {
        return line.help || line.version ? ork2::kExitSuccess : ork2::kExitUsage;
    }
    if (!line.exportFile.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(ORK2_VERSION));
    if (!line.exportFile.isEmpty()) {
        return ork2::runExport(line);
    }
    QGuiApplication::setDesktopFileName(QStringLiteral("ork2-archive"));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("ork2-archive")));
    ork2::ArchiveWindow window(QTimeZone::systemTimeZone());
    window.start(line.folder);
    window.show();
    return QApplication::exec();
}
