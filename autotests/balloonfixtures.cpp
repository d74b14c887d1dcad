// SPDX-License-Identifier: MIT
// Writes the balloon files of BalloonFixtures.h into the folder given as the only argument.
#include "BalloonFixtures.h"

#include <QDir>
#include <QFile>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: balloonfixtures <output folder>\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);
    const QMap<QString, QByteArray> files = BalloonFixtures::all();
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        QFile file(folder + QLatin1Char('/') + it.key());
        if (!file.open(QIODevice::WriteOnly) || file.write(it.value()) != it.value().size()) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(file.fileName()));
            return 1;
        }
    }
    return 0;
}
