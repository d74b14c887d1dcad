// SPDX-License-Identifier: MIT
// Strict balloon reading and the table checks: every corrupt field and every truncation is
// reported where it lies and gives no table; source points keep their tables when a file is refused.
#include "BalloonCheck.h"
#include "BalloonFile.h"
#include "SourcePointDescriptor.h"

#include "RawBalloonFile.h"
#include "TestHelpers.h"

#include <QBuffer>
#include <QtEndian>

#include <cstring>

namespace {

// Two frequencies on a full 90-degree grid with its closing column, double values.
RawBalloonFile goodFile()
{
    RawBalloonFile w = RawBalloonFile::grid({100.0, 1000.0}, 3, 5, 90.0, 90.0);
    for (qsizetype i = 0; i < w.magnitudes.size(); ++i) {
        w.magnitudes[i] = -double(i % 7);
        w.phases[i] = 10.0 * double(i);
    }
    return w;
}

QStringList texts(const QList<BalloonProblem> &problems)
{
    QStringList list;
    for (const BalloonProblem &problem : problems)
        list.append(problem.ToString());
    return list;
}

} // namespace

class tst_BalloonFile : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void readsAGoodFileAsThePointDoes();
    void writesWhatItReads_data();
    void writesWhatItReads();
    void corruptFile_data();
    void corruptFile();
    void everyTruncationIsFound();
    void refusedFileLeavesThePoint();
    void tableChecks_data();
    void tableChecks();
};

void tst_BalloonFile::readsAGoodFileAsThePointDoes()
{
    const QByteArray bytes = goodFile().toBytes();
    QBuffer device;
    device.setData(bytes);
    QVERIFY(device.open(QIODevice::ReadOnly));
    const BalloonReadResult result = BalloonFile::Read(device);
    QVERIFY2(result.problems.isEmpty(), qPrintable(texts(result.problems).join(u'\n')));
    QVERIFY(BalloonCheck::Check(*result.table).isEmpty());
    QCOMPARE(result.table->GetFrequencies(), QList<double>({100.0, 1000.0}));
    // The decode that source points use, bit for bit: value (f, t, p) = 10^(m/20) at phase 10 i degrees.
    const auto lenient = BalloonFile::Decode(bytes);
    QCOMPARE(result.table->GetValueCount(), 30);
    QVERIFY(std::memcmp(result.table->GetValues(), lenient->GetValues(), 30 * sizeof(std::complex<float>)) == 0);
    const std::complex<float> v = result.table->GetValues()[9];
    QCOMPARE(v, std::complex<float>(float(std::pow(10.0, -2 / 20.0) * std::cos(90 * M_PI / 180)),
                                    float(std::pow(10.0, -2 / 20.0) * std::sin(90 * M_PI / 180))));
}

void tst_BalloonFile::writesWhatItReads_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<double>("tolerance"); // dB and degrees
    QTest::newRow("double") << int(Tolvane::Double) << 1e-9;
    QTest::newRow("byte-scaled: half a step of 30 dB and 350 degrees") << int(Tolvane::ByteScaled) << 350.0 / 510;
}

void tst_BalloonFile::writesWhatItReads()
{
    QFETCH(int, format);
    QFETCH(double, tolerance);
    BalloonFileWriter::Data data;
    data.frequencies = {100.0, 1000.0};
    data.nh = 19;
    data.nv = 10;
    data.thetaStepWidth = 10.0;
    data.phiStepWidth = 10.0;
    data.symmetry = Tolvane::QuarterSymmetry;
    for (int i = 0; i < 2 * 19 * 10; ++i) {
        data.magnitudes.append(-30.0 * (i % 19) / 18);
        data.phases.append(-175.0 + 350.0 * (i % 10) / 9);
    }
    const auto encoding = Tolvane::LoudspeakerDataFormat(format);
    const BalloonReadResult result = BalloonFile::Read(BalloonFile::Encode(data, encoding, encoding));
    QVERIFY2(result.table && BalloonCheck::Check(*result.table).isEmpty(), qPrintable(texts(result.problems).join(u'\n')));
    for (int i = 0; i < 2 * 19 * 10; ++i) {
        const Complex value(result.table->GetValues()[i]);
        QVERIFY(std::abs(20 * std::log10(value.abs()) - data.magnitudes[i]) <= tolerance + 1e-5);
        QVERIFY(std::abs(value.arg() * 180 / M_PI - data.phases[i]) <= tolerance + 1e-4);
    }

    QString error;
    data.nv = 0;
    QVERIFY(BalloonFile::Encode(data, encoding, encoding, &error).isEmpty());
    QCOMPARE(error, QStringLiteral("grid of 19 x 0 angles: both counts must be positive"));
}

void tst_BalloonFile::corruptFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("problem"); // the first problem reported

    const auto with = [](auto change) {
        RawBalloonFile w = goodFile();
        change(w);
        return w.toBytes();
    };
    QTest::newRow("no frequencies") << with([](RawBalloonFile &w) { w.frequencyCount = 0; })
                                    << "frequencyCount (byte 0): 0 frequencies; a balloon needs at least one";
    QTest::newRow("one theta row") << with([](RawBalloonFile &w) { w.nh = 1; })
                                   << "NH (byte 4): 1 theta rows; a lookup interpolates between at least 2";
    QTest::newRow("one phi column without rotational symmetry") << with([](RawBalloonFile &w) { w.nv = 1; })
        << "NV (byte 8): 1 phi columns; this symmetry needs at least 2";
    QTest::newRow("zero theta step") << with([](RawBalloonFile &w) { w.thetaStepWidth = 0; })
                                     << "thetaStepWidth (byte 12): 0 is not a positive step in degrees";
    QTest::newRow("NaN phi step") << with([](RawBalloonFile &w) { w.phiStepWidth = qQNaN(); })
                                  << "phiStepWidth (byte 20): nan is not a positive step in degrees";
    QTest::newRow("unknown symmetry") << with([](RawBalloonFile &w) { w.symmetry = 7; })
                                      << "symmetry (byte 28): unknown symmetry code 7 (0 to 4)";
    QTest::newRow("unknown magnitude format") << with([](RawBalloonFile &w) { w.magnitudeFormat = 3; })
        << "magnitudeFormat (byte 64): unknown format code 3 (2 byte-scaled, 20 double)";
    QTest::newRow("unknown phase format") << with([](RawBalloonFile &w) { w.phaseFormat = 0; })
        << "phaseFormat (byte 65): unknown format code 0 (2 byte-scaled, 20 double)";
    QTest::newRow("infinite byte range") << with([](RawBalloonFile &w) { w.magnitudeFormat = 2; w.magnitudeMax = qInf(); })
        << "magnitudeMax (byte 40): inf is not finite";
    QTest::newRow("inverted byte range") << with([](RawBalloonFile &w) { w.phaseFormat = 2; w.phaseMin = 10; })
        << "phaseMin (byte 48): 10 is above phaseMax 0";
    QTest::newRow("flush-mount parameter") << with([](RawBalloonFile &w) { w.hasFlushMount = 1; w.flushMount[3] = qQNaN(); })
        << "flushMount[3] (byte 91): nan is not finite";
    QTest::newRow("more frequencies than bytes") << with([](RawBalloonFile &w) { w.frequencyCount = 3; })
        << "body (byte 706): the file ends after 706 bytes; its header declares 3 frequencies of 3 x 5 values";
    QTest::newRow("bytes after the values") << with([](RawBalloonFile &w) { w.magnitudes.append(0.0); })
        << "body (byte 706): 16 bytes after the last value";
    QTest::newRow("descending frequencies") << with([](RawBalloonFile &w) { w.frequencies = {100.0, 50.0}; })
        << "frequencies[1] (byte 202): 50 Hz; frequencies must be finite, positive and ascending";
    QTest::newRow("NaN level offset") << with([](RawBalloonFile &w) { w.levelOffsets[1] = qQNaN(); })
        << "levelOffsets[1] (byte 218): nan is not finite";
    QTest::newRow("NaN phase") << with([](RawBalloonFile &w) { w.phases[2] = qQNaN(); })
        << "phase (byte 266): value 2 of the table is not finite";

    const QByteArray good = goodFile().toBytes();
    QTest::newRow("cut in the header") << good.left(100)
        << "header (byte 100): the file ends after 100 bytes, inside the 194-byte header";
    QTest::newRow("cut in the values") << good.left(good.size() - 1)
        << "body (byte 705): the file ends after 705 bytes; its header declares 2 frequencies of 3 x 5 values";
}

void tst_BalloonFile::corruptFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, problem);
    const BalloonReadResult result = BalloonFile::Read(bytes);
    QVERIFY(!result.table);
    QVERIFY(!result.problems.isEmpty());
    QCOMPARE(result.problems.first().ToString(), problem);
}

void tst_BalloonFile::everyTruncationIsFound()
{
    const QByteArray good = goodFile().toBytes();
    for (qsizetype size = 0; size < good.size(); ++size) {
        const BalloonReadResult result = BalloonFile::Read(good.left(size));
        QVERIFY2(!result.table && !result.problems.isEmpty(), qPrintable(QString::number(size)));
        QCOMPARE(result.problems.first().offset, size);
    }
}

void tst_BalloonFile::refusedFileLeavesThePoint()
{
    // "b" declares a negative number of values: its read throws, and "a" stays as it was.
    SourcePointDescriptor point;
    point.Read({{QStringLiteral("balloonData"), QVariantMap{{QStringLiteral("a"), QStringLiteral("linear_none.bin")},
                                                           {QStringLiteral("b"), QStringLiteral("negative.bin")}}}});
    std::shared_ptr<const BalloonTable> before;
    connect(&point, &SourcePointDescriptor::BalloonDataChanged, this, [&] { before = point.GetBalloonTable(QStringLiteral("a")); });
    QVERIFY_THROWS_EXCEPTION(std::length_error, point.ReadBalloonData(SourcePointDescriptor::Synchronous));
    QCOMPARE(point.GetBalloonTable(QStringLiteral("a")), before);
    QCOMPARE(point.GetBalloonKeys(), QStringList{QStringLiteral("a")});
    QCOMPARE(point.GetNH(), before->GetNH());
    QCOMPARE(point.GetFrequencyVector(), before->GetFrequencies());
}

void tst_BalloonFile::tableChecks_data()
{
    QTest::addColumn<int>("symmetry");
    QTest::addColumn<int>("nh");
    QTest::addColumn<int>("nv");
    QTest::addColumn<double>("level"); // dB of every value; NaN makes one value NaN
    QTest::addColumn<QStringList>("problems");
    QTest::newRow("full circle, closed") << 0 << 19 << 37 << -6.0 << QStringList();
    QTest::newRow("theta short of 180") << 0 << 18 << 37 << -6.0
        << QStringList{"NH (byte 4): the grid covers theta 0 ... 170, not 0 ... 180 (18 rows of 10 degrees)"};
    QTest::newRow("no closing column") << 0 << 19 << 36 << -6.0
        << QStringList{"NV (byte 8): the full circle has no closing 360-degree phi column (36 columns of 10 degrees end at 350)"};
    QTest::newRow("half circle too long") << 1 << 19 << 20 << -6.0
        << QStringList{"NV (byte 8): the phi columns end at 190, not at 180 as the symmetry needs (20 columns of 10 degrees)"};
    QTest::newRow("quarter") << 3 << 19 << 10 << -6.0 << QStringList();
    QTest::newRow("rotational, one column") << 4 << 19 << 1 << -6.0 << QStringList();
    QTest::newRow("a NaN value") << 0 << 19 << 37 << qQNaN()
        << QStringList{"values: the value at frequency 1, theta row 0, phi column 2 is not finite"};
    QTest::newRow("implausibly loud") << 0 << 19 << 37 << 250.0
        << QStringList{"values: levels reach 250 dB; plausible balloons lie within -200 ... 200 dB"};
}

void tst_BalloonFile::tableChecks()
{
    QFETCH(int, symmetry);
    QFETCH(int, nh);
    QFETCH(int, nv);
    QFETCH(double, level);
    QFETCH(QStringList, problems);
    const qsizetype count = 2 * nh * nv;
    std::vector<std::complex<float>> values(count, std::complex<float>(float(std::pow(10.0, level / 20.0)), 0.0f));
    if (std::isnan(level))
        values.assign(count, 0.5f), values[nh * nv + 2] = NAN;
    const BalloonTable table({nh, nv, 10.0, 10.0, symmetry}, {100.0, 200.0}, values);
    QCOMPARE(texts(BalloonCheck::Check(table)), problems);
}

QTEST_GUILESS_MAIN(tst_BalloonFile)
#include "tst_balloonfile.moc"
