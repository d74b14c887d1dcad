// SPDX-License-Identifier: MIT
// Writes the balloon file of bench_balloon: 249 frequencies (1/24 octave) x 37 theta (5 deg)
// x 72 phi (5 deg), byte-scaled. "smooth" values vary slowly over the grid, as measured balloons
// do; "random" values have independent phases, so most lookups take the cancellation branch.
#include <QDataStream>
#include <QFile>
#include <QRandomGenerator>

#include <cmath>
#include <cstdio>
#include <cstring>

int main(int argc, char **argv)
{
    if (argc != 3 || (std::strcmp(argv[1], "smooth") != 0 && std::strcmp(argv[1], "random") != 0)) {
        std::fprintf(stderr, "usage: balloonbenchfile smooth|random <output file>\n");
        return 2;
    }
    const bool smooth = std::strcmp(argv[1], "smooth") == 0;
    QFile file(QString::fromLocal8Bit(argv[2]));
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    QDataStream out(&file);
    out.setByteOrder(QDataStream::LittleEndian);
    const qint32 frequencies = 249;
    const qint32 nh = 37;
    const qint32 nv = 72;
    out << frequencies << nh << nv << 5.0 << 5.0 << qint32(0) << -60.0 << 6.0 << -180.0 << 180.0 << quint8(2) << quint8(2)
        << quint8(0);
    for (int i = 0; i < 6; ++i)
        out << 0.0;
    for (int i = 0; i < 79; ++i)
        out << quint8(0);
    for (int k = -140; k <= 108; ++k)
        out << 1000.0 * std::pow(2.0, k / 24.0);
    QRandomGenerator rng(1);
    for (int f = 0; f < frequencies; ++f)
        out << rng.bounded(20.0) - 10.0;
    for (int f = 0; f < frequencies; ++f)
        for (int t = 0; t < nh; ++t)
            for (int p = 0; p < nv; ++p) {
                if (smooth)
                    out << quint8(255 - 4 * t - p % 36) << quint8(3 * f + 2 * t + p);
                else
                    out << quint8(rng.bounded(256)) << quint8(rng.bounded(256));
            }
    return out.status() == QDataStream::Ok ? 0 : 1;
}
