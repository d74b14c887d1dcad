// SPDX-License-Identifier: MIT
#include "FilterResponse.h"
#include "TestHelpers.h"

#include <QTest>

#include <cmath>

namespace {

QVariantMap Entry(int type, double fp, double q, double gain)
{
    return {{QStringLiteral("type"), type}, {QStringLiteral("fp"), fp}, {QStringLiteral("Q"), q}, {QStringLiteral("G"), gain}};
}

double Linear(double dB)
{
    return std::pow(10.0, dB / 20.0);
}

} // namespace

class tst_FilterResponse : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void closedForms_data();
    void closedForms();
    void missingKeysReadAsZero_data();
    void missingKeysReadAsZero();
    void unknownTypesGiveOnes_data();
    void unknownTypesGiveOnes();
    void oneValuePerFrequency();
    void filterLists();
};

void tst_FilterResponse::closedForms_data()
{
    QTest::addColumn<QVariantMap>("filter");
    QTest::addColumn<double>("frequency");
    QTest::addColumn<Complex>("expected");
    QTest::addColumn<double>("tolerance");

    const double a6 = Linear(6.0); // 1.9952623149688795
    const double g6 = a6 - 1.0;
    const double rootHalf = std::sqrt(0.5);

    // Plain gain keeps the sign of G and has no reciprocal step.
    QTest::newRow("gain: -6 dB anywhere") << Entry(0, 1000, 1, -6) << 20.0 << Complex(0.5011872336272722, 0) << 1e-15;
    // 1st-order low pass: 1/(1+j) at the corner.
    QTest::newRow("low pass 1: corner") << Entry(1, 1000, 0, 0) << 1000.0 << Complex(0.5, -0.5) << 1e-15;
    // Butterworth low pass: -3.01 dB and -90 degrees at the corner.
    QTest::newRow("low pass 2: corner, Butterworth") << Entry(2, 500, rootHalf, 0) << 500.0 << Complex(0, -rootHalf) << 1e-15;
    // s = 100j: 1/(-9999 + 100 sqrt(2) j).
    QTest::newRow("low pass 2: two decades up")
        << Entry(2, 100, rootHalf, 0) << 10000.0 << Complex(-9999.0 / (9999.0 * 9999.0 + 20000.0), -100.0 * std::sqrt(2.0) / (9999.0 * 9999.0 + 20000.0)) << 1e-18;
    QTest::newRow("high pass 1: exactly 1 at 0 Hz") << Entry(3, 1000, 0, 0) << 0.0 << Complex(1, 0) << 0.0;
    QTest::newRow("high pass 1: a decade down") << Entry(3, 1000, 0, 0) << 100.0 << Complex(1.0 / 101.0, 10.0 / 101.0) << 1e-15;
    QTest::newRow("high pass 2: corner, Q 2") << Entry(4, 1000, 2, 0) << 1000.0 << Complex(0, 2) << 1e-15;
    QTest::newRow("all pass 1: corner") << Entry(5, 1000, 0, 0) << 1000.0 << Complex(0, -1) << 1e-15;
    QTest::newRow("all pass 2: corner") << Entry(6, 1000, 0.5, 0) << 1000.0 << Complex(-1, 0) << 1e-15;
    QTest::newRow("all pass 2: 0 Hz") << Entry(6, 1000, 0.5, 0) << 0.0 << Complex(1, 0) << 0.0;
    QTest::newRow("band pass: 1 at 0 Hz") << Entry(7, 1000, 3, 0) << 0.0 << Complex(1, 0) << 0.0;
    // s = 2j: s + 1/s = 1.5j, so 1/(1 + 1.5j).
    QTest::newRow("band pass: an octave up") << Entry(7, 1000, 1, 0) << 2000.0 << Complex(1.0 / 3.25, -1.5 / 3.25) << 1e-15;
    QTest::newRow("peak: +6 dB at centre") << Entry(8, 1000, 1, 6) << 1000.0 << Complex(1.9952623149688795, 0) << 1e-15;
    QTest::newRow("peak: -6 dB at centre is the reciprocal") << Entry(8, 1000, 1, -6) << 1000.0 << Complex(0.5011872336272722, 0) << 1e-15;
    QTest::newRow("peak: 0 dB far above") << Entry(8, 1000, 1, 6) << 1e8 << Complex(1, 0) << 1e-4;
    QTest::newRow("low shelf 1: cut at 0 Hz") << Entry(9, 100, 0, -6) << 0.0 << Complex(1.0 / a6, 0) << 1e-15;
    QTest::newRow("low shelf 1: corner") << Entry(9, 100, 0, 6) << 100.0 << Complex(1 + g6 / 2, -g6 / 2) << 1e-15;
    // (s^2 + sqrt(A) s/Q + A)/(s^2 + s/Q + 1) at s = j is sqrt(A) - j (A - 1) Q.
    QTest::newRow("low shelf 2: corner") << Entry(10, 100, 0.7, 6) << 100.0 << Complex(std::sqrt(a6), -g6 * 0.7) << 1e-14;
    QTest::newRow("low shelf 2: full gain at 0 Hz") << Entry(10, 100, 0.7, 6) << 0.0 << Complex(a6, 0) << 1e-15;
    QTest::newRow("high shelf 1: corner") << Entry(11, 1000, 0, 6) << 1000.0 << Complex(1 + g6 / 2, g6 / 2) << 1e-15;
    QTest::newRow("high shelf 1: full gain far above") << Entry(11, 1000, 0, 6) << 1e10 << Complex(a6, 0) << 1e-6;
    QTest::newRow("high shelf 2: corner") << Entry(12, 1000, 0.7, 6) << 1000.0 << Complex(std::sqrt(a6), g6 * 0.7) << 1e-14;
    QTest::newRow("high shelf 2: cut far above") << Entry(12, 1000, 0.7, -6) << 1e9 << Complex(1.0 / a6, 0) << 1e-6;
    QTest::newRow("resonant low shelf: corner") << Entry(13, 100, 2, 6) << 100.0 << Complex(1, -g6 * 2) << 1e-14;
    QTest::newRow("resonant low shelf: full gain at 0 Hz") << Entry(13, 100, 2, 6) << 0.0 << Complex(a6, 0) << 1e-15;
    // 1/(1 - j g Q) for the cut.
    QTest::newRow("resonant low shelf: cut at corner")
        << Entry(13, 100, 2, -6) << 100.0 << Complex(1.0 / (1 + 4 * g6 * g6), 2 * g6 / (1 + 4 * g6 * g6)) << 1e-14;
    QTest::newRow("resonant high shelf: corner") << Entry(14, 100, 2, 6) << 100.0 << Complex(1, g6 * 2) << 1e-14;
    // s = 0.1j, Q 1: 1 + g (-0.01) / (0.99 + 0.1j).
    QTest::newRow("resonant high shelf: a decade down")
        << Entry(14, 1000, 1, 6) << 100.0 << Complex(1 - 0.0099 * g6 / 0.9901, 0.001 * g6 / 0.9901) << 1e-15;
    QTest::newRow("resonant high shelf: cut at corner")
        << Entry(14, 100, 2, -6) << 100.0 << Complex(1.0 / (1 + 4 * g6 * g6), -2 * g6 / (1 + 4 * g6 * g6)) << 1e-14;
    QTest::newRow("notch: zero at centre") << Entry(15, 1000, 4, 0) << 1000.0 << Complex(0, 0) << 1e-15;
    QTest::newRow("notch: an octave up") << Entry(15, 1000, 1, 0) << 2000.0 << Complex(1 - 1.0 / 3.25, 1.5 / 3.25) << 1e-15;
}

void tst_FilterResponse::closedForms()
{
    QFETCH(QVariantMap, filter);
    QFETCH(double, frequency);
    QFETCH(Complex, expected);
    QFETCH(double, tolerance);

    const QList<Complex> response = CalculateFilterResponse({frequency}, filter);
    QCOMPARE(response.size(), 1);
    LPSDK_COMPARE_COMPLEX(response.at(0), expected, tolerance);
}

void tst_FilterResponse::missingKeysReadAsZero_data()
{
    QTest::addColumn<QVariantMap>("filter");
    QTest::addColumn<Complex>("expected");

    // No "type" means type 0 with no "G": a 0 dB gain.
    QTest::newRow("empty entry is 0 dB") << QVariantMap() << Complex(1, 0);
    QTest::newRow("peak without G is flat") << QVariantMap {{"type", 8}, {"fp", 1000}, {"Q", 1}} << Complex(1, 0);
    // Q = 0 turns the peak into 1 + g everywhere but at 0 Hz.
    QTest::newRow("peak without Q is the full gain") << QVariantMap {{"type", 8}, {"fp", 1000}, {"G", 6}} << Complex(Linear(6), 0);
    QTest::newRow("numbers as text convert") << QVariantMap {{"type", "0"}, {"G", "-6"}} << Complex(Linear(-6), 0);
}

void tst_FilterResponse::missingKeysReadAsZero()
{
    QFETCH(QVariantMap, filter);
    QFETCH(Complex, expected);
    const QList<Complex> response = CalculateFilterResponse({250.0}, filter);
    QCOMPARE(response.size(), 1);
    LPSDK_COMPARE_COMPLEX(response.at(0), expected, 1e-15);
}

void tst_FilterResponse::unknownTypesGiveOnes_data()
{
    QTest::addColumn<QVariant>("type");
    QTest::addColumn<QString>("warning");

    QTest::newRow("16") << QVariant(16) << QStringLiteral("unknown filter type 16");
    QTest::newRow("negative compares as unsigned") << QVariant(-1) << QStringLiteral("unknown filter type -1");
    QTest::newRow("large") << QVariant(1000) << QStringLiteral("unknown filter type 1000");
}

void tst_FilterResponse::unknownTypesGiveOnes()
{
    QFETCH(QVariant, type);
    QFETCH(QString, warning);

    QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    const QVariantMap filter {{"type", type}, {"fp", 100}, {"Q", 1}, {"G", 6}};
    QCOMPARE(CalculateFilterResponse({0.0, 100.0, 1000.0}, filter), QList<Complex>(3, Complex(1, 0)));
}

void tst_FilterResponse::oneValuePerFrequency()
{
    QList<double> frequencies;
    for (int i = 0; i < 1025; ++i)
        frequencies.append(i * 5.859375);
    const QList<Complex> response = CalculateFilterResponse(frequencies, Entry(2, 1000, std::sqrt(0.5), 0));
    QCOMPARE(response.size(), frequencies.size());
    // A Butterworth low pass has |H|^2 = 1 / (1 + (f/fp)^4) at every frequency.
    for (int i = 0; i < frequencies.size(); ++i) {
        const double x = frequencies.at(i) / 1000.0;
        QVERIFY2(std::abs(std::pow(response.at(i).abs(), 2) - 1.0 / (1.0 + std::pow(x, 4))) < 1e-14, qPrintable(QString::number(i)));
    }
    QVERIFY(CalculateFilterResponse({}, Entry(2, 1000, 1, 0)).isEmpty());
}

void tst_FilterResponse::filterLists()
{
    const QList<double> frequencies {0.0, 50.0, 100.0, 1000.0, 20000.0};
    QCOMPARE(CalculateFilterListResponse(frequencies, {}), QList<Complex>(5, Complex(1, 0)));

    // Low pass times high pass at the shared corner: (1 - j)/2 * (1 + j)/2 = 1/2.
    const QVariantList pair {Entry(1, 100, 0, 0), Entry(3, 100, 0, 0)};
    LPSDK_COMPARE_COMPLEX(CalculateFilterListResponse(frequencies, pair).at(2), Complex(0.5, 0), 1e-15);

    // The in-place product gives exactly what multiplying single responses gives.
    const QVariantList list {Entry(10, 100, 0.7, -4), Entry(8, 1000, 1, 3), Entry(0, 0, 0, -2), Entry(2, 8000, 0.5, 0),
                             Entry(15, 50, 3, 0), Entry(12, 5000, 0.71, 2)};
    QList<Complex> expected(frequencies.size(), Complex(1, 0));
    for (const QVariant &entry : list) {
        const QList<Complex> single = CalculateFilterResponse(frequencies, entry.toMap());
        for (int i = 0; i < expected.size(); ++i)
            expected[i] *= single.at(i);
    }
    QCOMPARE(CalculateFilterListResponse(frequencies, list), expected);

    // An unknown entry warns once and leaves the rest of the product alone.
    QTest::ignoreMessage(QtWarningMsg, "unknown filter type 17");
    QVariantList withUnknown = list;
    withUnknown.insert(2, Entry(17, 100, 1, 6));
    QCOMPARE(CalculateFilterListResponse(frequencies, withUnknown), expected);
}

QTEST_GUILESS_MAIN(tst_FilterResponse)
#include "tst_filterresponse.moc"
