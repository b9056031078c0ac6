// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces libFuzzer: runs the target with all files in the given folders.
#include "check.h"

#include <QDirIterator>
#include <QFile>

int main(int argc, char *argv[])
{
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        QDirIterator folder(QString::fromLocal8Bit(argv[i]), QDir::Files);
        while (folder.hasNext()) {
            QFile file(folder.next());
            fuzz::check(file.open(QIODevice::ReadOnly), "the input can be read");
            const QByteArray input = file.readAll();
            std::printf("%s\n", qPrintable(folder.fileName()));
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                static_cast<std::size_t>(input.size()));
            ++files;
        }
    }
    fuzz::check(files > 0, "there are inputs");
    return 0;
}
