// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonFileWriter.h"
#include "RawBalloonFile.h"

#include <QMap>
#include <QRandomGenerator>
#include <QString>

#include <cmath>

/*
 * The balloon files that the source point and writer tests read as resources. The tool
 * balloonfixtures writes them into the build tree, from where they are compiled in under
 * "/Resources": valid files through the library's writer, files that lie byte by byte.
 *
 * "linear_*" files store, with phase 0, the modulus k = 1 + 100 f + 10 t + p at frequency
 * index f, theta index t and phi index p. Bilinear interpolation of a function linear in t and p
 * is exact, so a lookup anywhere inside the grid must give 1 + 100 f + 10 theta/step + phiIndex.
 */
namespace BalloonFixtures {

using Data = BalloonFileWriter::Data;

inline Data linearGrid(QList<double> frequencies, int nh, int nv, double thetaStep, double phiStep)
{
    Data data;
    data.frequencies = frequencies;
    data.nh = nh;
    data.nv = nv;
    data.thetaStepWidth = thetaStep;
    data.phiStepWidth = phiStep;
    for (int f = 0; f < frequencies.size(); ++f)
        for (int t = 0; t < nh; ++t)
            for (int p = 0; p < nv; ++p)
                data.magnitudes.append(decibels(1.0 + 100.0 * f + 10.0 * t + p));
    return data;
}

inline Data linear(Tolvane::LoudspeakerSymmetry symmetry, int nv)
{
    Data data = linearGrid({100.0, 200.0, 400.0}, 3, nv, 10.0, 45.0);
    data.symmetry = symmetry;
    return data;
}

// Four corners of modulus 1 with phases 0 and 180 along phi, 90 and -90 on the second row.
inline Data cancelling()
{
    Data data = linearGrid({1000.0}, 2, 2, 10.0, 10.0);
    data.magnitudes.fill(0.0);
    data.phases = {0.0, 180.0, 90.0, -90.0};
    return data;
}

// Four corners of modulus 1 and phase 0, except the last (theta 10, phi 10): 1000 dB, beyond
// single precision, so it is stored as infinity.
inline Data overflowing()
{
    Data data = linearGrid({1000.0}, 2, 2, 10.0, 10.0);
    data.magnitudes = {0.0, 0.0, 0.0, 1000.0};
    return data;
}

// A different grid, byte-scaled over the data's own ranges: every value 0 dB and 180 degrees
// except the first (-40 dB, -180 degrees), which thus store the bytes 255 and 0.
inline Data wide()
{
    Data data = linearGrid({1000.0, 2000.0}, 2, 3, 30.0, 120.0);
    data.magnitudes.fill(0.0);
    data.phases = QList<double>(data.magnitudes.size(), 180.0);
    data.magnitudes[0] = -40.0;
    data.phases[0] = -180.0;
    return data;
}

/*
 * Flush-mount parameters chosen so that x = [4] / ((f pi / 343) [3]) is 0.5 at 2000 Hz (30 deg)
 * and 2 at 500 Hz (complex arc sine modulus 117.45 deg); with the offset -100 deg the
 * attenuation 0.5 applies at 2000 Hz to every theta (t * 30 > -70) and at 500 Hz from 30 deg
 * on (t * 30 > 17.45). 100 Hz lies below the 300 Hz cut-on.
 */
inline Data flush()
{
    Data data = linearGrid({100.0, 500.0, 2000.0}, 4, 4, 30.0, 90.0);
    data.flushMount = BalloonFileWriter::FlushMount{300.0, 12345.0, 0.5, 0.1,
                                                    0.5 * ((2000.0 * 3.141592653589793 / 343.0) * 0.1), -100.0};
    return data;
}

inline QByteArray bytes(const Data &data, Tolvane::LoudspeakerDataFormat format = Tolvane::Double)
{
    return BalloonFileWriter(format, format).toByteArray(data);
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
        for (auto format : {Tolvane::ByteScaled, Tolvane::Double})
            files.insert(roundTripName(symmetry, format), bytes(roundTripData(Tolvane::LoudspeakerSymmetry(symmetry)), format));
    }
    files.insert(QStringLiteral("linear_none.bin"), bytes(linear(Tolvane::NoSymmetry, 8)));
    files.insert(QStringLiteral("linear_half.bin"), bytes(linear(Tolvane::HalfSymmetry, 5)));
    files.insert(QStringLiteral("linear_halfrotated.bin"), bytes(linear(Tolvane::HalfSymmetryRotated, 5)));
    files.insert(QStringLiteral("linear_quarter.bin"), bytes(linear(Tolvane::QuarterSymmetry, 3)));
    files.insert(QStringLiteral("linear_rotational.bin"), bytes(linear(Tolvane::RotationalSymmetry, 1)));
    files.insert(QStringLiteral("cancel.bin"), bytes(cancelling()));
    files.insert(QStringLiteral("overflow.bin"), bytes(overflowing()));
    files.insert(QStringLiteral("wide.bin"), bytes(wide(), Tolvane::ByteScaled));
    files.insert(QStringLiteral("flush.bin"), bytes(flush()));
    files.insert(QStringLiteral("empty.bin"), QByteArray());

    // Files whose header lies, which the writer refuses to make.
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

    // A good file cut short in its values: the header still reads, the body is 100 bytes short.
    files.insert(QStringLiteral("truncated.bin"), bytes(roundTripData(Tolvane::NoSymmetry), Tolvane::Double).chopped(100));

    RawBalloonFile zero = RawBalloonFile::grid({}, 3, 4, 10.0, 90.0);
    files.insert(QStringLiteral("zero.bin"), zero.toBytes());
    return files;
}

} // namespace BalloonFixtures
