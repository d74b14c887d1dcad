// SPDX-License-Identifier: MIT
#include "BalloonCsvPacker.h"
#include "BalloonFileWriter.h"
#include "SourcePointDescriptor.h"

#include "BalloonFixtures.h"
#include "TestHelpers.h"

#include <QBuffer>

#include <cmath>

namespace {

// CSV rows of 2 frequencies x theta 0/90/180 x phi 0/90/180/270, magnitude 100 f + 10 t + p.
QStringList csvRows()
{
    QStringList rows{QStringLiteral("frequency_hz,theta_deg,phi_deg,magnitude_db,phase_deg")};
    for (int f = 0; f < 2; ++f)
        for (int t = 0; t < 3; ++t)
            for (int p = 0; p < 4; ++p)
                rows << QStringLiteral("%1,%2,%3,%4,0").arg(f ? 1000 : 100).arg(90 * t).arg(90 * p).arg(100 * f + 10 * t + p);
    return rows;
}

} // namespace

class tst_BalloonFileWriter : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void roundTrip_data();
    void roundTrip();
    void byteScaledRoundsAndClamps();
    void invalidDataWritesNothing_data();
    void invalidDataWritesNothing();
    void packer_data();
    void packer();
};

void tst_BalloonFileWriter::roundTrip_data()
{
    QTest::addColumn<int>("symmetry");
    QTest::addColumn<int>("format");
    for (int symmetry = Tolvane::NoSymmetry; symmetry <= Tolvane::RotationalSymmetry; ++symmetry) {
        for (auto format : {Tolvane::ByteScaled, Tolvane::Double})
            QTest::addRow("symmetry %d, format %d", symmetry, int(format)) << symmetry << int(format);
    }
}

// Written by the writer at build time (BalloonFixtures.h), read back through a source point.
void tst_BalloonFileWriter::roundTrip()
{
    QFETCH(int, symmetry);
    QFETCH(int, format);
    const auto data = BalloonFixtures::roundTripData(Tolvane::LoudspeakerSymmetry(symmetry));
    SourcePointDescriptor point;
    point.Read({{QStringLiteral("balloonData"),
                 QVariantMap{{QStringLiteral("default"), BalloonFixtures::roundTripName(symmetry, Tolvane::LoudspeakerDataFormat(format))}}}});
    point.ReadBalloonData(SourcePointDescriptor::Synchronous);
    QVERIFY(point.IsBalloonDataLoaded());
    QCOMPARE(point.GetFrequencyVector(), data.frequencies);
    QCOMPARE(point.GetNH(), data.nh);
    QCOMPARE(point.GetNV(), data.nv);
    QCOMPARE(point.GetThetaStepWidth(), data.thetaStepWidth);
    QCOMPARE(point.GetPhiStepWidth(), data.phiStepWidth);
    QCOMPARE(point.GetSymmetry(), data.symmetry);
    QCOMPARE(point.GetRawBalloonData(QStringLiteral("default"), true) != point.GetRawBalloonData(QStringLiteral("default"), false),
             data.flushMount.has_value());

    const std::complex<float> *table = point.GetRawBalloonData(QStringLiteral("default"), false);
    const qsizetype perFrequency = qsizetype(data.nh) * data.nv;
    // Half a step of the data's own ranges (-40 .. 6 dB and -180 .. 180 degrees at most).
    const bool exact = format == Tolvane::Double;
    const double magnitudeTolerance = 46.0 / 510 + 1e-5;
    const double phaseTolerance = 360.0 / 510 + 1e-4;
    for (qsizetype i = 0; i < data.magnitudes.size(); ++i) {
        const double level = data.magnitudes[i] + data.levelOffsets[i / perFrequency];
        const double angle = data.phases[i] * 3.141592653589793 / 180.0;
        const double modulus = std::pow(10.0, level / 20.0);
        if (exact) {
            QCOMPARE(table[i], std::complex<float>(float(modulus * std::cos(angle)), float(modulus * std::sin(angle))));
            continue;
        }
        const double phaseError = std::remainder(std::arg(std::complex<double>(table[i])) - angle, 2 * 3.141592653589793);
        if (std::abs(20 * std::log10(std::abs(table[i])) - level) > magnitudeTolerance
            || std::abs(phaseError * 180.0 / 3.141592653589793) > phaseTolerance)
            QFAIL(qPrintable(QStringLiteral("value %1 off by more than half a step").arg(i)));
    }
}

void tst_BalloonFileWriter::byteScaledRoundsAndClamps()
{
    BalloonFileWriter::Data data;
    data.frequencies = {1000.0};
    data.nh = 1;
    data.nv = 4;
    data.thetaStepWidth = data.phiStepWidth = 90.0;
    data.magnitudes = {-20.0, -5.01, -4.99, 5.0};
    BalloonFileWriter writer(Tolvane::ByteScaled, Tolvane::Double);
    writer.setMagnitudeRange(-10.0, 0.0);
    const QByteArray bytes = writer.toByteArray(data);
    QCOMPARE(bytes.size(), 194 + 16 + 4 * 9);
    // 4.99 / 10 * 255 = 127.2 and 5.01 / 10 * 255 = 127.8: the nearest steps 127 and 128.
    const int offset = 194 + 16;
    QCOMPARE(quint8(bytes[offset]), quint8(0));
    QCOMPARE(quint8(bytes[offset + 9]), quint8(127));
    QCOMPARE(quint8(bytes[offset + 18]), quint8(128));
    QCOMPARE(quint8(bytes[offset + 27]), quint8(255));
}

void tst_BalloonFileWriter::invalidDataWritesNothing_data()
{
    QTest::addColumn<int>("field");
    QTest::addColumn<QString>("error");
    QTest::newRow("phases short") << 0 << "5 phases given, 8 expected";
    QTest::newRow("magnitude NaN") << 1 << "magnitude at index 6 (frequency 1, theta 1, phi 0) is not finite";
    QTest::newRow("phase infinite") << 2 << "phase at index 3 (frequency 0, theta 1, phi 1) is not finite";
    QTest::newRow("level offset NaN") << 3 << "level offset 1 is not finite";
}

void tst_BalloonFileWriter::invalidDataWritesNothing()
{
    QFETCH(int, field);
    QFETCH(QString, error);
    BalloonFileWriter::Data data;
    data.frequencies = {100.0, 1000.0};
    data.levelOffsets = {0.0, 0.0};
    data.nh = 2;
    data.nv = 2;
    data.thetaStepWidth = data.phiStepWidth = 180.0;
    data.magnitudes = QList<double>(8, 0.0);
    data.phases = QList<double>(8, 0.0);
    switch (field) {
    case 0: data.phases.resize(5); break;
    case 1: data.magnitudes[6] = std::nan(""); break;
    case 2: data.phases[3] = -INFINITY; break;
    case 3: data.levelOffsets[1] = std::nan(""); break;
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    BalloonFileWriter writer(Tolvane::ByteScaled, Tolvane::ByteScaled);
    QVERIFY(!writer.write(data, &buffer));
    QCOMPARE(writer.errorString(), error);
    QCOMPARE(buffer.size(), 0);
}

void tst_BalloonFileWriter::packer_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<bool>("closeSeam");
    QTest::addColumn<QString>("error");
    QTest::addColumn<int>("nv");

    const QStringList rows = csvRows();
    QStringList shuffled = rows;
    std::reverse(shuffled.begin() + 1, shuffled.end());
    QTest::newRow("any order, seam closed") << shuffled << true << QString() << 5;
    QTest::newRow("seam left open") << rows << false << QString() << 4;
    QStringList missing = rows;
    missing.removeAt(19); // 1000 Hz, theta 90, phi 180
    QTest::newRow("missing point") << missing << true << "no row for 1000 Hz, theta 90, phi 180" << 0;
    QTest::newRow("duplicate") << (QStringList(rows) << rows[3]) << true << "line 26: duplicate of line 4" << 0;
    QTest::newRow("off the grid") << (QStringList(rows) << "100,45,0,0,0") << true
                                  << "line 26: theta 45, phi 0 is off the grid of 90 by 90 degrees" << 0;
    QStringList unparsable = rows;
    unparsable[7] = QStringLiteral("100,90,x,0,0");
    QTest::newRow("unparsable") << unparsable << true << "line 8: not five numbers: \"100,90,x,0,0\"" << 0;
    QStringList tiny{rows[0]};
    for (const char *theta : {"0", "0.001", "180"})
        for (const char *phi : {"0", "90", "180", "270"})
            tiny << QStringLiteral("100,%1,%2,0,0").arg(QLatin1String(theta), QLatin1String(phi));
    QTest::newRow("grid far larger than the file") << tiny << true
                                                   << "1 frequencies x 180001 theta x 4 phi angles need 720004 rows; there are 12" << 0;
    QTest::newRow("no header") << rows.mid(1) << true
                               << "line 1: expected the header \"frequency_hz,theta_deg,phi_deg,magnitude_db,phase_deg\"" << 0;
}

void tst_BalloonFileWriter::packer()
{
    QFETCH(QStringList, rows);
    QFETCH(bool, closeSeam);
    QFETCH(QString, error);
    QFETCH(int, nv);

    QByteArray text = rows.join(QLatin1Char('\n')).toUtf8();
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    BalloonCsvPacker packer;
    packer.setCloseSeam(closeSeam);
    QCOMPARE(packer.read(&buffer), error.isEmpty());
    QCOMPARE(packer.errorString(), error);
    if (!error.isEmpty())
        return;
    const BalloonFileWriter::Data &data = packer.data();
    QCOMPARE(data.frequencies, QList<double>({100.0, 1000.0}));
    QCOMPARE(data.nh, 3);
    QCOMPARE(data.nv, nv);
    QCOMPARE(packer.grid().seamClosed, nv == 5);
    QCOMPARE(data.thetaStepWidth, 90.0);
    QCOMPARE(data.phiStepWidth, 90.0);
    // magnitude 100 f + 10 t + p, the closing column repeating p = 0.
    for (int f = 0; f < 2; ++f)
        for (int t = 0; t < 3; ++t)
            for (int p = 0; p < nv; ++p)
                QCOMPARE(data.magnitudes[(f * 3 + t) * nv + p], 100.0 * f + 10 * t + p % 4);
}

QTEST_GUILESS_MAIN(tst_BalloonFileWriter)
#include "tst_balloonfilewriter.moc"
