// SPDX-License-Identifier: MIT
#include "BalloonFileReader_p.h"
#include "BalloonFrequencyIndex.h"
#include "BalloonKernel.h"
#include "RawBalloonFile.h"
#include "TestHelpers.h"

#include <QRandomGenerator>
#include <QtEndian>

#include <cstring>
#include <limits>
#include <stdexcept>

namespace {

// The plain decoder the fast one must match bit for bit: one value at a time through
// QDataStream, with pow, cos and sin per value.
struct PlainDecode {
    QList<double> frequencies;
    std::vector<std::complex<float>> table;
};

double plainValue(QDataStream &in, int format, double min, double max)
{
    quint8 b = 0;
    double d = 0.0;
    if (format == 2)
        in >> b;
    else if (format == 20)
        in >> d;
    return format == 2 ? min + (max - min) * b / 255.0 : d;
}

PlainDecode plainDecode(const QByteArray &bytes)
{
    QDataStream in(bytes);
    in.setByteOrder(QDataStream::LittleEndian);
    qint32 count, nh, nv, symmetry;
    double thetaStep, phiStep, magMin, magMax, phaseMin, phaseMax;
    quint8 magFormat, phaseFormat, hasFlush;
    in >> count >> nh >> nv >> thetaStep >> phiStep >> symmetry >> magMin >> magMax >> phaseMin >> phaseMax >> magFormat
        >> phaseFormat >> hasFlush;
    in.skipRawData(6 * 8 + 79); // flush-mount parameters and reserved bytes
    PlainDecode result;
    QList<double> levels;
    for (QList<double> *list : {&result.frequencies, &levels}) {
        for (int f = 0; f < count; ++f) {
            double v = 0.0;
            in >> v;
            list->append(v);
        }
    }
    result.table.resize(std::size_t(qint64(count) * nh * nv));
    for (int f = 0; f < count; ++f)
        for (int t = 0; t < nh; ++t)
            for (int p = 0; p < nv; ++p) {
                const double magnitude = plainValue(in, magFormat, magMin, magMax);
                const double phase = plainValue(in, phaseFormat, phaseMin, phaseMax);
                const double modulus = std::pow(10.0, (magnitude + levels[f]) / 20.0);
                const double angle = phase * 3.141592653589793 / 180.0;
                result.table[(std::size_t(f) * nh + t) * nv + p] =
                    std::complex<float>(float(modulus * std::cos(angle)), float(modulus * std::sin(angle)));
            }
    return result;
}

struct FastDecode {
    QList<double> frequencies;
    std::vector<double> levels;
    std::vector<std::complex<float>> table;
    std::vector<std::complex<float>> flush;
};

FastDecode fastDecode(const QByteArray &bytes)
{
    BalloonFileReader reader(bytes);
    FastDecode result;
    reader.ReadFrequencies(result.frequencies, result.levels);
    result.table = reader.ReadTable(result.levels);
    if (reader.header().hasFlushMount)
        result.flush = reader.BuildFlushMountTable(result.frequencies, result.table);
    return result;
}

bool sameBits(const std::vector<std::complex<float>> &a, const std::vector<std::complex<float>> &b)
{
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(a[0])) == 0);
}

QByteArray withField(QByteArray bytes, int offset, const QByteArray &value)
{
    bytes.replace(offset, value.size(), value);
    return bytes;
}

template<typename T>
QByteArray leBytes(T v)
{
    QByteArray b(sizeof(T), '\0');
    qToLittleEndian(v, b.data());
    return b;
}

// Two frequencies (the first 20 dB up), 2 x 3 directions, byte magnitudes in -6.02 .. 0 dB
// (modulus 0.5 .. 1), double phases, and flush-mount data.
RawBalloonFile smallFile()
{
    RawBalloonFile w = RawBalloonFile::grid({100, 2000}, 2, 3, 30, 90);
    w.levelOffsets = {20, 0};
    w.magnitudeFormat = 2;
    w.magnitudeMin = -6.020599913279624;
    w.hasFlushMount = 1;
    w.flushMount[0] = 50;
    w.flushMount[2] = 0.5;
    w.flushMount[3] = 0.1;
    w.flushMount[4] = 1;
    for (qsizetype i = 0; i < w.magnitudes.size(); ++i) {
        w.magnitudes[i] = double(20 * i + 3);
        w.phases[i] = 15.0 * i;
    }
    return w;
}

RawBalloonFile randomFile(QRandomGenerator &rng, quint8 magFormat, quint8 phaseFormat)
{
    RawBalloonFile w = RawBalloonFile::grid({100, 200, 400, 800, 1600}, 3, 7, 10.0, 30.0);
    w.magnitudeFormat = magFormat;
    w.phaseFormat = phaseFormat;
    w.magnitudeMin = -60.0 + rng.bounded(20.0);
    w.magnitudeMax = rng.bounded(30.0);
    w.phaseMin = -180.0 - rng.bounded(10.0);
    w.phaseMax = 180.0 + rng.bounded(10.0);
    for (double &level : w.levelOffsets)
        level = rng.bounded(40.0) - 20.0;
    for (qsizetype i = 0; i < w.magnitudes.size(); ++i) {
        w.magnitudes[i] = magFormat == 2 ? rng.bounded(256) : rng.bounded(80.0) - 60.0;
        w.phases[i] = phaseFormat == 2 ? rng.bounded(256) : rng.bounded(720.0) - 360.0;
    }
    return w;
}

// The linear rule, written out: first exact match, else first strictly smaller distance.
int bruteForceIndex(const QList<double> &v, double q)
{
    for (int i = 0; i < v.size(); ++i)
        if (v[i] == q)
            return i;
    int best = -1;
    double bestDistance = 1e10;
    for (int i = 0; i < v.size(); ++i) {
        if (std::abs(v[i] - q) < bestDistance) {
            bestDistance = std::abs(v[i] - q);
            best = i;
        }
    }
    return best;
}

} // namespace

class tst_BalloonFileReader : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void matchesPlainDecoder_data();
    void matchesPlainDecoder();
    void truncationSweep();
    void corruptField_data();
    void corruptField();
    void negativeCountsWithPositiveProduct();
    void sizeAllowance_data();
    void sizeAllowance();
    void phiIndex_data();
    void phiIndex();
    void arcSineModulus_data();
    void arcSineModulus();
    void frequencyIndex_data();
    void frequencyIndex();
    void frequencyIndexRandom();
};

void tst_BalloonFileReader::matchesPlainDecoder_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const int formats[][2] = {{2, 2}, {2, 20}, {20, 2}, {20, 20}, {2, 7}, {7, 2}, {20, 0}, {0, 20}, {0, 0}};
    QRandomGenerator rng(20261123);
    for (const auto &pair : formats) {
        const QByteArray bytes = randomFile(rng, quint8(pair[0]), quint8(pair[1])).toBytes();
        const QByteArray name = QByteArray::number(pair[0]) + '/' + QByteArray::number(pair[1]);
        QTest::newRow(name + " whole") << bytes;
        QTest::newRow(name + " cut inside the body") << bytes.left(194 + 80 + 37);
        // Random body bytes: double values of every kind, NaN and infinities included.
        QByteArray noise = bytes;
        for (qsizetype i = 194 + 80; i < noise.size(); ++i)
            noise[i] = char(rng.bounded(256));
        QTest::newRow(name + " random bytes") << noise;
    }
}

void tst_BalloonFileReader::matchesPlainDecoder()
{
    QFETCH(QByteArray, bytes);
    const PlainDecode plain = plainDecode(bytes);
    const FastDecode fast = fastDecode(bytes);
    QCOMPARE(fast.frequencies, plain.frequencies);
    QVERIFY(sameBits(fast.table, plain.table));
}

void tst_BalloonFileReader::truncationSweep()
{
    const QByteArray whole = smallFile().toBytes();
    for (qsizetype n = 0; n <= whole.size(); ++n) {
        const QByteArray prefix = whole.left(n);
        const FastDecode fast = fastDecode(prefix);
        if (!sameBits(fast.table, plainDecode(prefix).table))
            QFAIL(qPrintable(QStringLiteral("prefix of %1 bytes decodes differently").arg(n)));
        QCOMPARE(fast.flush.size(), std::size_t(n >= 67 ? 2 * 2 * 2 : 0)); // flag byte at offset 66
    }
    // Cut where the body starts: every value reads as zero bytes, the minimum at 0 degrees,
    // plus the level offset of its frequency.
    const FastDecode headerOnly = fastDecode(whole.left(194 + 32));
    QCOMPARE(headerOnly.table.size(), std::size_t(12));
    for (std::size_t i = 0; i < headerOnly.table.size(); ++i)
        LPSDK_COMPARE_COMPLEX(Complex(headerOnly.table[i]), Complex(i < 6 ? 5.0 : 0.5, 0), 1e-6);
    // The whole file: byte 23 (f 0, t 0, p 1) at 15 degrees, 20 dB up.
    const double modulus = 10.0 * std::pow(10.0, -6.020599913279624 * (1.0 - 23.0 / 255.0) / 20.0);
    LPSDK_COMPARE_COMPLEX(Complex(fastDecode(whole).table[1]), Complex::fromPolar(modulus, 15.0 * 3.141592653589793 / 180.0), 1e-5);
}

void tst_BalloonFileReader::corruptField_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("throws");
    QTest::addColumn<qint64>("tableSize");

    const qint32 intMax = std::numeric_limits<qint32>::max();
    QTest::newRow("negative theta count") << 4 << leBytes<qint32>(-2) << true << qint64(0);
    QTest::newRow("negative frequency count") << 0 << leBytes<qint32>(-2) << true << qint64(0);
    QTest::newRow("largest frequency count") << 0 << leBytes<qint32>(intMax) << true << qint64(0);
    QTest::newRow("largest phi count") << 8 << leBytes<qint32>(intMax) << true << qint64(0);
    QTest::newRow("lowest phi count") << 8 << leBytes<qint32>(std::numeric_limits<qint32>::min()) << true << qint64(0);
    QTest::newRow("theta count past the data, within the allowance") << 4 << leBytes<qint32>(100000) << false << qint64(600000);
    QTest::newRow("zero frequencies") << 0 << leBytes<qint32>(0) << false << qint64(0);
    QTest::newRow("zero phi count") << 8 << leBytes<qint32>(0) << false << qint64(0);
    QTest::newRow("NaN theta step") << 12 << leBytes(std::nan("")) << false << qint64(12);
    QTest::newRow("zero phi step") << 20 << leBytes(0.0) << false << qint64(12);
    QTest::newRow("unknown symmetry") << 28 << leBytes<qint32>(99) << false << qint64(12);
    QTest::newRow("magnitude format 0") << 64 << QByteArray(1, '\0') << false << qint64(12);
    QTest::newRow("flush-mount flag 255") << 66 << QByteArray(1, '\xff') << false << qint64(12);
    QTest::newRow("infinite flush-mount aperture") << 67 + 3 * 8 << leBytes(qInf()) << false << qint64(12);
}

void tst_BalloonFileReader::corruptField()
{
    QFETCH(int, offset);
    QFETCH(QByteArray, value);
    QFETCH(bool, throws);

    const QByteArray bytes = withField(smallFile().toBytes(), offset, value);
    bool threw = false;
    FastDecode decoded;
    try {
        decoded = fastDecode(bytes);
    } catch (const std::length_error &) {
        threw = true;
    }
    QCOMPARE(threw, throws);
    if (!throws) {
        QTEST(qint64(decoded.table.size()), "tableSize");
        QVERIFY(sameBits(decoded.table, plainDecode(bytes).table));
    }
}

void tst_BalloonFileReader::negativeCountsWithPositiveProduct()
{
    // -2 x -3 rows: a table of 2 x 6 zeros, but no pair to read and nothing consumed.
    RawBalloonFile w = RawBalloonFile::grid({100, 200}, 2, 3, 10, 90);
    w.nh = -2;
    w.nv = -3;
    QVERIFY(sameBits(fastDecode(w.toBytes()).table, std::vector<std::complex<float>>(12)));
}

void tst_BalloonFileReader::sizeAllowance_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("bodyBytes");
    QTest::addColumn<qint64>("nv");
    QTest::addColumn<bool>("throws");

    const qint64 allowance = BalloonFileReader::MaxUnbackedValues;
    QTest::newRow("byte pairs: data plus allowance loads") << 2 << 4 << allowance + 2 << false;
    QTest::newRow("byte pairs: one more is refused") << 2 << 4 << allowance + 3 << true;
    QTest::newRow("half a pair counts as backed") << 2 << 5 << allowance + 3 << false;
    QTest::newRow("unknown formats: the allowance loads") << 0 << 4 << allowance << false;
    QTest::newRow("unknown formats: one more is refused") << 0 << 4 << allowance + 1 << true;
}

void tst_BalloonFileReader::sizeAllowance()
{
    QFETCH(int, format);
    QFETCH(int, bodyBytes);
    QFETCH(qint64, nv);
    QFETCH(bool, throws);

    RawBalloonFile w = RawBalloonFile::grid({1000}, 1, 1, 10, 10);
    w.magnitudeFormat = w.phaseFormat = quint8(format);
    w.magnitudes.clear();
    w.phases.clear();
    w.nv = qint32(nv);
    bool threw = false;
    try {
        QCOMPARE(qint64(fastDecode(w.toBytes() + QByteArray(bodyBytes, '\x01')).table.size()), nv);
    } catch (const std::length_error &) {
        threw = true;
    }
    QCOMPARE(threw, throws);
}

void tst_BalloonFileReader::phiIndex_data()
{
    QTest::addColumn<int>("symmetry");
    QTest::addColumn<double>("phi");
    QTest::addColumn<double>("expected");

    QTest::newRow("none: 370 wraps to 10") << 0 << 370.0 << 10.0;
    QTest::newRow("none: -10 wraps to 350") << 0 << -10.0 << 350.0;
    QTest::newRow("half: 270 mirrors to 90") << 1 << 270.0 << 90.0;
    QTest::newRow("half rotated: 270 is the first column") << 2 << 270.0 << 0.0;
    QTest::newRow("half rotated: 0 is the middle") << 2 << 0.0 << 90.0;
    QTest::newRow("half rotated: 90 is the last column") << 2 << 90.0 << 180.0;
    QTest::newRow("half rotated: 100 mirrors to 170") << 2 << 100.0 << 170.0;
    QTest::newRow("quarter: 100 mirrors to 80") << 3 << 100.0 << 80.0;
    QTest::newRow("quarter: 200 mirrors twice to 20") << 3 << 200.0 << 20.0;
    QTest::newRow("rotational: any phi is column 0") << 4 << 123.0 << 0.0;
    QTest::newRow("unknown symmetry leaves phi") << 9 << 200.0 << 200.0;
}

void tst_BalloonFileReader::phiIndex()
{
    QFETCH(int, symmetry);
    QFETCH(double, phi);
    QFETCH(double, expected);
    QCOMPARE(BalloonKernel::phiIndex(phi, symmetry, 1.0), expected);
    QCOMPARE(BalloonKernel::phiIndex(phi, symmetry, 5.0), expected / 5.0);
}

void tst_BalloonFileReader::arcSineModulus_data()
{
    QTest::addColumn<double>("x");
    for (double x : {0.0, 0.5, -0.5, 1.0, -1.0, 1.0000001, 2.0, -3.0, 1e6})
        QTest::newRow(QByteArray::number(x, 'g', 17)) << x;
}

void tst_BalloonFileReader::arcSineModulus()
{
    QFETCH(double, x);
    const double oracle = std::abs(std::asin(std::complex<double>(x, 0.0)));
    QVERIFY(std::abs(BalloonFileReader::ArcSineModulus(x) - oracle) <= 1e-12 * std::max(1.0, oracle));
}

void tst_BalloonFileReader::frequencyIndex_data()
{
    QTest::addColumn<QList<double>>("frequencies");
    QTest::addColumn<double>("frequency");
    QTest::addColumn<int>("expected");

    const QList<double> grid{100, 200, 400};
    QTest::newRow("exactly 1e10 away is too far") << QList<double>{0.0} << 1e10 << -1;
    QTest::newRow("NaN") << grid << std::nan("") << -1;
    QTest::newRow("empty vector") << QList<double>() << 100.0 << -1;
    QTest::newRow("duplicates: exact takes the first") << QList<double>{1, 2, 2, 2, 3} << 2.0 << 1;
    QTest::newRow("duplicates: tie with the run above") << QList<double>{1, 2, 2, 3, 3} << 2.5 << 1;
    // Near 1e9 the three distances all round to 1e9: the scan keeps index 0.
    QTest::newRow("rounded distances tie") << QList<double>{1e-8, 2e-8, 5e-8} << 1e9 << 0;
    QTest::newRow("infinite frequency is too far") << QList<double>{-qInf(), 1.0} << -1e300 << -1;
    QTest::newRow("negative zero matches zero") << QList<double>{-1, 0.0, 1} << -0.0 << 1;
}

void tst_BalloonFileReader::frequencyIndex()
{
    QFETCH(QList<double>, frequencies);
    QFETCH(double, frequency);
    QFETCH(int, expected);
    QCOMPARE(bruteForceIndex(frequencies, frequency), expected); // the row itself is right
    BalloonFrequencyIndex guided;
    guided.Reset(frequencies.constData(), frequencies.size());
    QCOMPARE(guided.Find(frequencies.constData(), frequencies.size(), frequency), expected);
}

void tst_BalloonFileReader::frequencyIndexRandom()
{
    QRandomGenerator rng(7);
    const auto check = [](const QList<double> &v, double frequency) {
        BalloonFrequencyIndex guided;
        guided.Reset(v.constData(), v.size());
        const int expected = bruteForceIndex(v, frequency);
        return guided.Find(v.constData(), v.size(), frequency) == expected;
    };
    for (int round = 0; round < 3000; ++round) {
        // Few distinct values make duplicates and ties common.
        QList<double> v;
        const int n = int(rng.bounded(12));
        for (int i = 0; i < n; ++i)
            v.append(double(rng.bounded(8)) * 0.5);
        std::sort(v.begin(), v.end());
        for (int q = 0; q < 10; ++q) {
            const double frequency = double(rng.bounded(40)) * 0.125 - 0.5;
            QVERIFY2(check(v, frequency), qPrintable(QString::number(frequency)));
        }
    }
    // A 1/24-octave grid with a dense cluster, so that buckets hold none, one and many values.
    QList<double> grid;
    for (int i = 0; i < 240; ++i)
        grid.append(20.0 * std::pow(2.0, i / 24.0));
    for (int i = 0; i < 40; ++i)
        grid.append(1000.0 + i * 1e-9);
    std::sort(grid.begin(), grid.end());
    for (int q = 0; q < 4000; ++q) {
        const double frequency = q % 4 == 0 ? grid[rng.bounded(int(grid.size()))]
            : q % 4 == 1                    ? 1000.0 + rng.generateDouble() * 5e-8
                                            : rng.generateDouble() * 25000.0 - 10.0;
        QVERIFY2(check(grid, frequency), qPrintable(QString::number(frequency, 'g', 17)));
    }
    // Vectors that are not ascending are searched by the definition.
    for (const QList<double> &unordered : {QList<double>{3, 2, 1}, QList<double>{1, std::nan(""), 3}}) {
        for (double frequency : {2.4, 2.6, 0.0, 9.0})
            QVERIFY(check(unordered, frequency));
    }
}

QTEST_GUILESS_MAIN(tst_BalloonFileReader)
#include "tst_balloonfilereader.moc"
