// SPDX-License-Identifier: MIT
// The balloon table's lookup against a plain oracle, its kernels against each other, and the
// source point's lookups against the tables it hands out.
#include "BalloonKernel.h"
#include "BalloonTable.h"
#include "IBalloon.h"
#include "SourcePointDescriptor.h"

#include "TestHelpers.h"

#include <QRandomGenerator>

#include <cstring>
#include <stdexcept>

namespace {

bool identical(const Complex &a, const Complex &b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// The lookup written out plainly from its definition, checked the way a vector's at() checks.
Complex oracle(const BalloonTable &table, int f, double theta, double phi, bool flushMount)
{
    const bool flush = flushMount && table.HasFlushMount();
    double p = std::fmod(phi, 360.0);
    if (p < 0)
        p += 360.0;
    double column;
    if (flush) {
        column = std::abs(p - 90) < 0.1 ? 0 : std::abs(p - 270) < 0.1 ? 1 : 0;
    } else {
        switch (table.GetSymmetryCode()) {
        case 1: p = p > 180 ? 360 - p : p; break;
        case 2: p = p >= 270 ? p - 270 : p <= 90 ? p + 90 : 270 - p; break;
        case 3: p = p > 180 ? 360 - p : p; p = p > 90 ? 180 - p : p; break;
        case 4: p = 0; break;
        }
        column = table.GetSymmetryCode() == 4 ? 0 : p / table.GetPhiStepWidth();
    }
    // Index arithmetic in long double: exact up to 2^64, far beyond any table.
    const auto split = [](double value, double &fraction) {
        double integral;
        fraction = std::modf(value, &integral);
        if (fraction == 0 && integral > 0) {
            fraction = 1;
            return (long double)integral - 1;
        }
        return (long double)integral;
    };
    double tf, pf;
    const long double t = split(theta / table.GetThetaStepWidth(), tf);
    const long double c = split(column, pf);
    const qint64 stride = flush ? 2 : table.GetNV();
    const std::complex<float> *values = flush ? table.GetFlushMountValues() : table.GetValues();
    const qint64 size = flush ? table.GetFlushMountValueCount() : table.GetValueCount();
    const auto at = [&](long double tt, long double pp) {
        const long double flat = ((long double)f * table.GetNH() + tt) * stride + pp;
        if (!(flat >= 0 && flat < size))
            throw std::out_of_range("invalid vector subscript");
        return Complex(values[qint64(flat)]);
    };
    const double weights[4] = {(1 - tf) * (1 - pf), (1 - tf) * pf, tf * (1 - pf), tf * pf};
    Complex sum(0, 0);
    double magnitudeSum = 0;
    for (int corner = 0; corner < 4; ++corner) {
        if (weights[corner] > 0) {
            const Complex value = at(t + corner / 2, c + corner % 2);
            sum += value * weights[corner];
            magnitudeSum += value.abs() * weights[corner];
        }
    }
    if (sum.abs() >= 0.99 * magnitudeSum)
        return sum;
    return Complex::fromPolar(magnitudeSum, at(t + std::round(tf), c + std::round(pf)).arg());
}

// The outcome of a lookup: its value, or that it threw out_of_range.
struct Outcome {
    bool threw = false;
    Complex value;
};

template<typename Lookup>
Outcome outcome(Lookup lookup)
{
    try {
        return {false, lookup()};
    } catch (const std::out_of_range &) {
        return {true, Complex()};
    }
}

bool same(const Outcome &a, const Outcome &b)
{
    return a.threw == b.threw && (a.threw || identical(a.value, b.value));
}

// Random values with random phases (many cells cancel), a few infinite, NaN and zero corners.
std::vector<std::complex<float>> randomValues(qsizetype count, QRandomGenerator &rng)
{
    std::vector<std::complex<float>> values(count);
    for (auto &value : values) {
        const double r = rng.generateDouble();
        value = r < 0.01 ? std::complex<float>(INFINITY, 0) : r < 0.02 ? std::complex<float>(NAN, 1) : r < 0.05 ? 0
              : std::polar(float(rng.bounded(2.0)), float(rng.bounded(6.3)));
    }
    return values;
}

// Directions on and between grid lines, at and past the table's edges.
double direction(QRandomGenerator &rng, double step, double span)
{
    static const double specials[] = {0.0, -0.0, 180.0, 360.0, -1e-9, 1e-300, -45.0, 725.0, 1e300, -1e300, NAN, INFINITY};
    switch (rng.bounded(4)) {
    case 0:
        return specials[rng.bounded(int(std::size(specials)))];
    case 1:
        return step * rng.bounded(int(span / step) + 2);
    default:
        return rng.bounded(span * 1.2) - span * 0.1;
    }
}

} // namespace

class tst_BalloonTable : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void lookupMatchesOracle_data();
    void lookupMatchesOracle();
    void vectorKernelMatchesScalar();
    void sourcePointAnswersFromItsTables();
    void heldBalloonsOutliveThePoint();
};

void tst_BalloonTable::lookupMatchesOracle_data()
{
    QTest::addColumn<int>("symmetry");
    QTest::addColumn<int>("nh");
    QTest::addColumn<int>("nv");
    QTest::addColumn<double>("phiStep");
    QTest::newRow("none, closing column") << 0 << 7 << 13 << 30.0;
    QTest::newRow("half") << 1 << 5 << 7 << 30.0;
    QTest::newRow("half rotated") << 2 << 5 << 7 << 30.0;
    QTest::newRow("quarter") << 3 << 4 << 4 << 30.0;
    QTest::newRow("rotational") << 4 << 19 << 1 << 0.0;
    QTest::newRow("phi step too small for the columns") << 0 << 3 << 4 << 1.0;
    QTest::newRow("negative rows") << 0 << -2 << 5 << 90.0;
    QTest::newRow("unknown symmetry") << 9 << 3 << 5 << 90.0;
}

void tst_BalloonTable::lookupMatchesOracle()
{
    QFETCH(int, symmetry);
    QFETCH(int, nh);
    QFETCH(int, nv);
    QFETCH(double, phiStep);
    QRandomGenerator rng(uint(symmetry * 100 + nh));
    const QList<double> frequencies{100, 200, 400};
    const qsizetype count = 3 * qAbs(nh) * nv;
    BalloonTable::FlushMountParameters flushParameters{};
    const BalloonTable table({nh, nv, 180.0 / (qAbs(nh) - 1), phiStep, symmetry}, frequencies, randomValues(count, rng),
                             flushParameters, randomValues(3 * qAbs(nh) * 2, rng));
    for (int i = 0; i < 20000; ++i) {
        const int f = int(rng.bounded(5)) - 1; // -1 (no frequency) up to one past the last
        const double theta = direction(rng, table.GetThetaStepWidth(), 180.0);
        const double phi = direction(rng, phiStep > 0 ? phiStep : 15.0, 360.0);
        const bool flushMount = rng.bounded(4) == 0;
        const Outcome expected = outcome([&] { return oracle(table, f, theta, phi, flushMount); });
        const Outcome actual = outcome([&] { return table.GetValue(f, theta, phi, flushMount); });
        const Outcome viaCell = outcome([&] { return table.GetValue(f, table.GetCell(theta, phi, flushMount)); });
        // Frequencies between the grid's search their index; f = -1 stands for one far away.
        const double frequency = f < 0 ? 1e12 : f < 3 ? frequencies[f] * (1 + 0.3 * rng.generateDouble()) : qQNaN();
        const Outcome searched = outcome([&] { return table.GetValueAtFrequency(frequency, theta, phi, flushMount); });
        if (f == 3) // no index either
            QVERIFY(same(searched, outcome([&] { return oracle(table, -1, theta, phi, flushMount); })));
        else
            QVERIFY(same(searched, expected));
        if (!same(actual, expected) || !same(viaCell, expected))
            QFAIL(qPrintable(QStringLiteral("f %1 theta %2 phi %3 flush %4: %5 %6, expected %7 %8")
                                 .arg(f).arg(theta, 0, 'g', 17).arg(phi, 0, 'g', 17).arg(flushMount)
                                 .arg(actual.threw ? "throws" : "").arg(QString::fromLatin1(QTest::toString(actual.value)))
                                 .arg(expected.threw ? "throws" : "").arg(QString::fromLatin1(QTest::toString(expected.value)))));
    }
}

void tst_BalloonTable::vectorKernelMatchesScalar()
{
#ifdef __SSE2__
    QRandomGenerator rng(7);
    const double fractions[] = {0.0, 1.0, 0.5, 1e-300, 1 - 1e-16};
    for (int i = 0; i < 100000; ++i) {
        const std::vector<std::complex<float>> cell = randomValues(4, rng);
        const double tf = rng.bounded(3) ? rng.generateDouble() : fractions[rng.bounded(5)];
        const double pf = rng.bounded(3) ? rng.generateDouble() : fractions[rng.bounded(5)];
        Complex scalarSum, vectorSum;
        double scalarMagnitude, vectorMagnitude;
        const bool scalarKeeps = BalloonKernel::interpolateCellScalar(cell.data(), 2, tf, pf, scalarSum, scalarMagnitude);
        const bool vectorKeeps = BalloonKernel::interpolateCellVector(cell.data(), 2, tf, pf, vectorSum, vectorMagnitude);
        QCOMPARE(vectorKeeps, scalarKeeps);
        QVERIFY(identical(vectorSum, scalarSum));
        QVERIFY(std::memcmp(&vectorMagnitude, &scalarMagnitude, sizeof(double)) == 0);
        // The root-free test may only ever agree with the rule.
        const BalloonKernel::WeightedSum quick = BalloonKernel::weightedSum(cell.data(), 2, tf, pf);
        if (quick.keepsPhases) {
            QVERIFY(scalarKeeps);
            QVERIFY(identical(quick.value, scalarSum));
        }
    }
#else
    QSKIP("no vector kernel on this architecture");
#endif
}

void tst_BalloonTable::sourcePointAnswersFromItsTables()
{
    // Two keys of different grids: both answer with the grid of the last file read.
    SourcePointDescriptor point;
    point.Read({{QStringLiteral("balloonData"), QVariantMap{{QStringLiteral("a"), QStringLiteral("linear_none.bin")},
                                                           {QStringLiteral("b"), QStringLiteral("wide.bin")}}},
                {QStringLiteral("normalAngles"), QVariantMap{{QStringLiteral("default"), QVariantList{20}}}}});
    point.ReadBalloonData(SourcePointDescriptor::Synchronous);
    QCOMPARE(point.GetBalloonKeys(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QVERIFY(!point.GetBalloonTable(QStringLiteral("nosuch")));
    QRandomGenerator rng(11);
    for (const QString &key : {QStringLiteral("a"), QStringLiteral("b")}) {
        const std::shared_ptr<const BalloonTable> table = point.GetBalloonTable(key);
        QCOMPARE(table->GetNH(), point.GetNH());
        QCOMPARE(table->GetFrequencies(), point.GetFrequencyVector());
        for (int i = 0; i < 5000; ++i) {
            const double frequencies[] = {100, 150, 1000, 1e12, NAN, -5};
            const double frequency = frequencies[rng.bounded(6)];
            const double theta = direction(rng, 10.0, 40.0);
            const double phi = direction(rng, 45.0, 360.0);
            const Outcome expected = outcome([&] {
                return table->GetValue(table->FindFrequencyIndex(frequency), theta, point.GetPhiWithNormalAngle(phi), false);
            });
            QVERIFY(same(outcome([&] { return point.GetBalloonData(key, frequency, theta, phi, false); }), expected));
        }
    }
}

void tst_BalloonTable::heldBalloonsOutliveThePoint()
{
    // Held from the first file's signal, across the second file's read and the point's end:
    // what is held keeps its grid and values (AddressSanitizer checks the reads).
    auto point = std::make_unique<SourcePointDescriptor>();
    point->Read({{QStringLiteral("balloonData"), QVariantMap{{QStringLiteral("a"), QStringLiteral("linear_none.bin")},
                                                            {QStringLiteral("b"), QStringLiteral("wide.bin")}}}});
    std::shared_ptr<const nvScientificComputing::IBalloon> balloon;
    std::shared_ptr<const BalloonTable> table;
    connect(point.get(), &SourcePointDescriptor::BalloonDataChanged, this, [&] {
        if (!balloon) {
            balloon = point->GetBalloon(QStringLiteral("a"));
            table = point->GetBalloonTable(QStringLiteral("a"));
        }
    });
    point->ReadBalloonData(SourcePointDescriptor::Synchronous);
    QVERIFY(table->GetNH() != point->GetNH());
    const std::vector<std::complex<float>> copy(table->GetValues(), table->GetValues() + table->GetValueCount());
    const Complex before = table->GetValue(1, 12.5, 30.0);
    point.reset();
    QCOMPARE(balloon->getData(), table->GetValues());
    QVERIFY(std::equal(copy.cbegin(), copy.cend(), balloon->getData()));
    QVERIFY(identical(table->GetValue(1, 12.5, 30.0), before));
}

QTEST_GUILESS_MAIN(tst_BalloonTable)
#include "tst_balloontable.moc"
