// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonFileWriter.h"
#include "RawBalloonFile.h"

#include <QMap>
#include <QRandomGenerator>
#include <QString>

#include <cmath>

/*
 * The balloon files that the source point tests read as resources. The tool
 * balloonfixtures writes them into the build tree, from where they are compiled in under
 * "/Resources".
 *
 * "linear_*" files store, with phase 0, the modulus k = 1 + 100 f + 10 t + p at frequency
 * index f, theta index t and phi index p. Bilinear interpolation of a function linear in t and p
 * is exact, so a lookup anywhere inside the grid must give 1 + 100 f + 10 theta/step + phiIndex.
 */
namespace BalloonFixtures {

inline RawBalloonFile linearGrid(QList<double> frequencies, qint32 nh, qint32 nv, double thetaStep, double phiStep)
{
    RawBalloonFile w = RawBalloonFile::grid(frequencies, nh, nv, thetaStep, phiStep);
    qsizetype i = 0;
    for (int f = 0; f < frequencies.size(); ++f)
        for (int t = 0; t < nh; ++t)
            for (int p = 0; p < nv; ++p)
                w.magnitudes[i++] = decibels(1.0 + 100.0 * f + 10.0 * t + p);
    return w;
}

inline RawBalloonFile linear(qint32 symmetry, qint32 nv)
{
    RawBalloonFile w = linearGrid({100.0, 200.0, 400.0}, 3, nv, 10.0, 45.0);
    w.symmetry = symmetry;
    return w;
}

// Four corners of modulus 1 with phases 0 and 180 along phi, 90 and -90 on the second row.
inline RawBalloonFile cancelling()
{
    RawBalloonFile w = RawBalloonFile::grid({1000.0}, 2, 2, 10.0, 10.0);
    w.phases = {0.0, 180.0, 90.0, -90.0};
    return w;
}

// A different grid, byte-scaled: every value 0 dB and 180 degrees except the first
// (-40 dB, -180 degrees).
inline RawBalloonFile wide()
{
    RawBalloonFile w = RawBalloonFile::grid({1000.0, 2000.0}, 2, 3, 30.0, 120.0);
    w.magnitudeFormat = 2;
    w.phaseFormat = 2;
    w.magnitudeMin = -40.0;
    w.magnitudeMax = 0.0;
    w.phaseMin = -180.0;
    w.phaseMax = 180.0;
    w.magnitudes.fill(255.0);
    w.phases.fill(255.0);
    w.magnitudes[0] = 0.0;
    w.phases[0] = 0.0;
    return w;
}

/*
 * Flush-mount parameters chosen so that x = [4] / ((f pi / 343) [3]) is 0.5 at 2000 Hz (30 deg)
 * and 2 at 500 Hz (complex arc sine modulus 117.45 deg); with the offset -100 deg the
 * attenuation 0.5 applies at 2000 Hz to every theta (t * 30 > -70) and at 500 Hz from 30 deg
 * on (t * 30 > 17.45). 100 Hz lies below the 300 Hz cut-on.
 */
inline RawBalloonFile flush()
{
    RawBalloonFile w = linearGrid({100.0, 500.0, 2000.0}, 4, 4, 30.0, 90.0);
    w.hasFlushMount = 1;
    w.flushMount[0] = 300.0;
    w.flushMount[1] = 12345.0; // unused
    w.flushMount[2] = 0.5;
    w.flushMount[3] = 0.1;
    w.flushMount[4] = 0.5 * ((2000.0 * 3.141592653589793 / 343.0) * 0.1);
    w.flushMount[5] = -100.0;
    return w;
}

/*
 * "roundtrip_*" files: written by the library's writer from seeded random values, magnitudes
 * -40 .. 6 dB over level offsets 3, 0 and -2 dB, phases -180 .. 180 degrees, on the grid of each
 * symmetry (phi step 45 degrees; the full circle closed at 360). The full-circle file carries
 * flush-mount parameters.
 */
inline BalloonFileWriter::Data roundTripData(Tolvane::LoudspeakerSymmetry symmetry)
{
    static const int columns[] = {9, 5, 5, 3, 1};
    BalloonFileWriter::Data data;
    data.frequencies = {100.0, 1000.0, 10000.0};
    data.levelOffsets = {3.0, 0.0, -2.0};
    data.nh = 5;
    data.nv = columns[symmetry];
    data.thetaStepWidth = 45.0;
    data.phiStepWidth = 45.0;
    data.symmetry = symmetry;
    QRandomGenerator rng(1234 + symmetry);
    for (int i = 0; i < 3 * data.nh * data.nv; ++i) {
        data.magnitudes.append(rng.bounded(46.0) - 40.0);
        data.phases.append(rng.bounded(360.0) - 180.0);
    }
    if (symmetry == Tolvane::NoSymmetry)
        data.flushMount = BalloonFileWriter::FlushMount{300.0, 0.0, 0.5, 0.1, 1.0, -10.0};
    return data;
}

inline QString roundTripName(int symmetry, Tolvane::LoudspeakerDataFormat format)
{
    return QStringLiteral("roundtrip_%1_%2.bin").arg(symmetry).arg(int(format));
}

inline QMap<QString, QByteArray> all()
{
    QMap<QString, QByteArray> files;
    for (int symmetry = Tolvane::NoSymmetry; symmetry <= Tolvane::RotationalSymmetry; ++symmetry) {
        for (auto format : {Tolvane::ByteScaled, Tolvane::Double}) {
            BalloonFileWriter writer(format, format);
            files.insert(roundTripName(symmetry, format),
                         writer.toByteArray(roundTripData(Tolvane::LoudspeakerSymmetry(symmetry))));
        }
    }
    files.insert(QStringLiteral("linear_none.bin"), linear(0, 8).toBytes());
    files.insert(QStringLiteral("linear_half.bin"), linear(1, 5).toBytes());
    files.insert(QStringLiteral("linear_halfrotated.bin"), linear(2, 5).toBytes());
    files.insert(QStringLiteral("linear_quarter.bin"), linear(3, 3).toBytes());
    files.insert(QStringLiteral("linear_rotational.bin"), linear(4, 1).toBytes());
    files.insert(QStringLiteral("cancel.bin"), cancelling().toBytes());
    files.insert(QStringLiteral("wide.bin"), wide().toBytes());
    files.insert(QStringLiteral("flush.bin"), flush().toBytes());
    files.insert(QStringLiteral("empty.bin"), QByteArray());

    RawBalloonFile negative = RawBalloonFile::grid({100.0, 200.0}, 3, 4, 10.0, 90.0);
    negative.nh = -3;
    files.insert(QStringLiteral("negative.bin"), negative.toBytes());

    // 10^12 declared values in a 200-byte file.
    RawBalloonFile absurd;
    absurd.frequencyCount = 10000;
    absurd.nh = 10000;
    absurd.nv = 10000;
    absurd.magnitudeFormat = 2;
    absurd.phaseFormat = 2;
    QByteArray absurdBytes = absurd.toBytes();
    absurdBytes.append(6, '\x01');
    files.insert(QStringLiteral("absurd.bin"), absurdBytes);

    RawBalloonFile zero = RawBalloonFile::grid({}, 3, 4, 10.0, 90.0);
    files.insert(QStringLiteral("zero.bin"), zero.toBytes());
    return files;
}

} // namespace BalloonFixtures
