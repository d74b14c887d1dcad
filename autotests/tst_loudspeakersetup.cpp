// SPDX-License-Identifier: MIT
#include "CouplingFilterProvider.h"
#include "FilterResponse.h"
#include "LoudspeakerSetup.h"
#include "TestHelpers.h"

#include <QJsonDocument>
#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using SwitchStates = QMap<int, int>;
using Biquads = std::vector<nvScientificComputing::Biquad>;

namespace {

const QString fullSetup = QStringLiteral(":/Resources/full_setup.json");
const QString gainDelaySetup = QStringLiteral(":/Resources/gain_delay.json");
const QString oddKeysSetup = QStringLiteral(":/Resources/odd_keys.json");

const double a6 = 1.9952623149688795; // 10^(6/20)
const double twoPi = 6.283185307179586;
const int logIndex1k = 140;          // 1000 Hz on the 1/24-octave grid
const int logIndex250 = 92;          // 250 Hz

double Linear(double dB)
{
    return std::pow(10.0, dB / 20.0);
}

Complex J(double x)
{
    return Complex(0.0, x);
}

bool SameBiquads(const Biquads &actual, const Biquads &expected)
{
    if (actual.size() != expected.size())
        return false;
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (actual[i].type != expected[i].type || actual[i].gain != expected[i].gain || actual[i].q != expected[i].q
            || actual[i].frequency != expected[i].frequency)
            return false;
    }
    return true;
}

nvScientificComputing::Biquad B(int type, float gain, float q, float frequency)
{
    nvScientificComputing::Biquad b;
    b.type = type;
    b.gain = gain;
    b.q = q;
    b.frequency = frequency;
    return b;
}

} // namespace

class tst_LoudspeakerSetup : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init() { failOnUnexpectedWarnings(); }

    void scalars();
    void missingAndOddValues();
    void sensitivityAndPeaks();
    void links_data();
    void links();
    void switchesAndCouplingLabels();
    void filterResponses();
    void transferWithoutSwitches();
    void transferFactors_data();
    void transferFactors();
    void transferOnTheLinearGrid_data();
    void transferOnTheLinearGrid();
    void sensitivityAlone_data();
    void sensitivityAlone();
    void outsideTheGrids();
    void responseKeysAsSpelt();
    void records();
    void recordsWithoutBlocks();
    void equality_data();
    void equality();
    void setupNameView();

private:
    QString WriteSetup(const QString &name, const QVariantMap &map);
    QTemporaryDir m_dir;
};

void tst_LoudspeakerSetup::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("nvRemoteDriverDatabase"));
    database.setDatabaseName(QStringLiteral(LPSDK_CPLFILTER_DATABASE));
    database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    QVERIFY(CouplingFilterProvider::GetInstance().Initialize());
}

QString tst_LoudspeakerSetup::WriteSetup(const QString &name, const QVariantMap &map)
{
    QFile file(m_dir.filePath(name));
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(QJsonDocument::fromVariant(map).toJson());
    return file.fileName();
}

void tst_LoudspeakerSetup::scalars()
{
    LoudspeakerSetup setup(nullptr);
    QVERIFY(setup.Read(fullSetup));
    QCOMPARE(setup.GetName(), QStringLiteral("Top 90"));
    QCOMPARE(setup.GetFullName(), QStringLiteral("Top 90 full range"));
    QCOMPARE(setup.GetDisplayName(), QStringLiteral("Top 90 deg"));
    QCOMPARE(setup.GetLoudspeakerName(), QStringLiteral("TX12"));
    QCOMPARE(setup.GetPartNumber(), QStringLiteral("Z1234.000"));
    QCOMPARE(setup.GetFilename(), QStringLiteral("full_setup.json"));
    QVERIFY(setup.IsVisible());
    QCOMPARE(setup.GetSpeakerId(), 7);
    QCOMPARE(setup.GetSpeakerType(), 2);
    QCOMPARE(setup.getAmpChannelCount(), static_cast<signed char>(4));
    QCOMPARE(setup.getThisAmpChannel(), static_cast<signed char>(2));
    QCOMPARE(setup.GetGain(), a6);
    QCOMPARE(setup.getControllerGainLinear(), a6);
    QCOMPARE(setup.GetPolarity(), -1.0);
    QCOMPARE(setup.getControllerPhase(), static_cast<signed char>(-1));
    QCOMPARE(setup.GetDelay(), 0.0025);
    QCOMPARE(setup.getControllerDelaySeconds(), 0.0025);
    QCOMPARE(setup.GetThermoLimiter(), 12.5);
    QCOMPARE(setup.GetMergeFrequency(), 120.0);
    QCOMPARE(setup.GetLowOptFrequency(), 80.0);
    QCOMPARE(setup.GetHighOptFrequency(), 16000.0);
    QCOMPARE(setup.GetSupportedAmplifiers(), QStringList({QStringLiteral("D80"), QStringLiteral("D20"), QStringLiteral("D40")}));
}

void tst_LoudspeakerSetup::missingAndOddValues()
{
    LoudspeakerSetup unread(nullptr);
    QCOMPARE(unread.GetSpeakerId(), -1);
    QCOMPARE(unread.GetGain(), 1.0);
    QCOMPARE(unread.GetFrequencies(Tolvane::LogarithmicFrequencies).size(), 249);
    QCOMPARE(unread.GetFrequencies(Tolvane::LinearFrequencies).size(), 1025);

    // The type 16 filter of switch 1 value 2 is evaluated once per grid.
    QTest::ignoreMessage(QtWarningMsg, "unknown filter type 16");
    QTest::ignoreMessage(QtWarningMsg, "unknown filter type 16");
    LoudspeakerSetup setup(nullptr);
    QVERIFY(setup.Read(oddKeysSetup));
    QCOMPARE(setup.GetName(), QStringLiteral("42"));
    QCOMPARE(setup.GetSpeakerId(), 0); // "abc", and a read replaces the -1 of a new setup
    QCOMPARE(setup.GetDelay(), 0.0025);  // "2.5" converts
    QCOMPARE(setup.GetGain(), 1.0);      // "loud" is 0 dB
    QCOMPARE(setup.GetPolarity(), 1.0);  // absent
    QCOMPARE(setup.getControllerPhase(), static_cast<signed char>(1));
    QVERIFY(setup.IsVisible());
    // 0 dB and a 2.5 ms delay; value 2 of switch 1 holds only the unknown filter, which is flat.
    QVERIFY(std::abs(setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, 0, {{1, 2}}, Tolvane::NoSensitivity, false).abs() - 1.0) < 1e-15);
}

void tst_LoudspeakerSetup::sensitivityAndPeaks()
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(fullSetup);
    const std::vector<std::complex<float>> &sensitivity = setup.getSensitivity();
    QCOMPARE(sensitivity.size(), std::size_t(3));
    // 94 dB re 20 µPa is 1.0024 Pa; 100 dB is 2 Pa; 80 dB is 0.2 Pa.
    QCOMPARE(sensitivity[0].real(), float(-2e-5 * Linear(94)));
    QVERIFY(std::abs(sensitivity[0].imag()) < 1e-6f);
    QVERIFY(std::abs(sensitivity[1].real()) < 1e-6f);
    QCOMPARE(sensitivity[1].imag(), 2.0f);
    QCOMPARE(sensitivity[2], std::complex<float>(0.2f, 0.0f));
    QCOMPARE(setup.getMaxPk(), std::vector<float>({1.0f, 2.5f, 1.0f}));
}

void tst_LoudspeakerSetup::links_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("amp");
    QTest::addColumn<int>("maxLink");
    QTest::addColumn<int>("recommendedLink");

    QTest::newRow("first amplifier") << fullSetup << "D80" << 3 << 2;
    QTest::newRow("third amplifier") << fullSetup << "D40" << 4 << 3;
    QTest::newRow("unknown amplifier reads the first entry") << fullSetup << "X8" << 3 << 2;
    QTest::newRow("names compare exactly") << fullSetup << "d20" << 3 << 2;
    QTest::newRow("no link lists") << gainDelaySetup << "D80" << 0 << 0;
    QTest::newRow("link list without amplifiers") << oddKeysSetup << "D80" << 5 << 0;
}

void tst_LoudspeakerSetup::links()
{
    QFETCH(QString, file);
    QFETCH(QString, amp);
    QFETCH(int, maxLink);
    QFETCH(int, recommendedLink);
    if (file == oddKeysSetup) {
        QTest::ignoreMessage(QtWarningMsg, "unknown filter type 16");
        QTest::ignoreMessage(QtWarningMsg, "unknown filter type 16");
    }
    LoudspeakerSetup setup(nullptr);
    setup.Read(file);
    QCOMPARE(setup.GetMaxLink(amp), maxLink);
    QCOMPARE(setup.GetRecommendedLink(amp), recommendedLink);
}

void tst_LoudspeakerSetup::switchesAndCouplingLabels()
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(fullSetup);
    QCOMPARE(setup.GetSwitchCount(), 3);
    QCOMPARE(setup.GetSwitchDescription(1), QStringLiteral("Coupling"));
    QCOMPARE(setup.GetSwitchDescription(3), QStringLiteral("Preset"));
    QVERIFY(setup.GetSwitchDescription(4).isEmpty());
    QCOMPARE(setup.GetSwitchValues(2), (QMap<int, QString> {{0, QStringLiteral("Normal")}, {1, QStringLiteral("Cardioid")}}));
    QVERIFY(setup.GetSwitchValues(6).isEmpty());

    const QMap<int, QString> low = setup.GetSwitchValues(4);
    QCOMPARE(low.size(), 16);
    QCOMPARE(low.value(0), QStringLiteral("-5.5"));
    QCOMPARE(low.value(10), QStringLiteral("-0.5"));
    QCOMPARE(low.value(11), QStringLiteral(" 0.0"));
    QCOMPARE(low.value(15), QStringLiteral(" 2.0"));
    const QMap<int, QString> mid = setup.GetSwitchValues(5);
    QCOMPARE(mid.keys(), QList<int>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    QCOMPARE(mid.value(0), QStringLiteral(" 0.5"));
    // Mid position 1 is a negative zero: it passes the >= 0 test, so it gets the blank too.
    QCOMPARE(mid.value(1), QStringLiteral(" 0.0"));
    QCOMPARE(mid.value(3), QStringLiteral("-1.0"));
}

void tst_LoudspeakerSetup::filterResponses()
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(fullSetup);
    const QStringList names {QStringLiteral("Sensitivity_AP_EQ"), QStringLiteral("Sensitivity_Array_EQ"), QStringLiteral("Switch1_0"),
                             QStringLiteral("Switch1_1"), QStringLiteral("Switch2_0"), QStringLiteral("Switch2_1"),
                             QStringLiteral("Switch3_2"), QStringLiteral("SystemEqFilterMaxVal"), QStringLiteral("System_EQ")};
    const QMap<QString, QList<Complex>> log = setup.GetFilterResponses(Tolvane::LogarithmicFrequencies);
    const QMap<QString, QList<Complex>> linear = setup.GetFilterResponses(Tolvane::LinearFrequencies);
    QCOMPARE(log.keys(), names);
    QCOMPARE(linear.keys(), names);
    for (const QString &name : names) {
        QCOMPARE(log.value(name).size(), 249);
        QCOMPARE(linear.value(name).size(), 1025);
    }
    // An empty list with a 0 dB entry in "dBGains" stays flat; a non-list entry is flat too.
    QCOMPARE(log.value(QStringLiteral("Switch1_0")), QList<Complex>(249, Complex(1, 0)));
    QCOMPARE(linear.value(QStringLiteral("SystemEqFilterMaxVal")), QList<Complex>(1025, Complex(1, 0)));
    // +6 dB peak at 1 kHz with the -3 dB gain of "dBGains" appended.
    LPSDK_COMPARE_COMPLEX(log.value(QStringLiteral("Switch1_1")).at(logIndex1k), Complex(Linear(3), 0), 1e-14);
    LPSDK_COMPARE_COMPLEX(linear.value(QStringLiteral("Switch1_1")).at(0), Complex(Linear(-3), 0), 1e-15);
    // Two filters multiply: 20 dB times a 1st-order high pass that is exactly 1 at 0 Hz.
    QCOMPARE(linear.value(QStringLiteral("Sensitivity_Array_EQ")).at(0), Complex(10, 0));
    // Type 3 at 50 Hz on the linear grid (index 0 is 0 Hz, so the corner is not a grid point): check 10/(1 + fp/(j f)).
    const double f = 5.859375 * 100;
    LPSDK_COMPARE_COMPLEX(linear.value(QStringLiteral("Sensitivity_Array_EQ")).at(100), Complex(10, 0) / (Complex(1, 0) + Complex(1, 0) / J(f / 50.0)),
                          1e-13);
}

void tst_LoudspeakerSetup::transferWithoutSwitches()
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(fullSetup);
    // At 1 kHz: switch 2 value 0 (1st-order low pass at 100 Hz), the +6 dB 1st-order low shelf
    // of the system EQ at 100 Hz, -1.995 for +6 dB inverted, and 2.5 turns of delay.
    const Complex one(1, 0);
    const Complex lowPass = one / (J(10) + 1.0);
    const Complex systemEq = one + (a6 - 1.0) / (J(10) + 1.0);
    const Complex expected = lowPass * systemEq * (-a6) * Complex::fromPolar(1.0, -twoPi * 1000 * 0.0025);
    LPSDK_COMPARE_COMPLEX(setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, logIndex1k, {}, Tolvane::NoSensitivity, false),
                          expected, 1e-14);
}

void tst_LoudspeakerSetup::transferFactors_data()
{
    QTest::addColumn<SwitchStates>("switches");
    QTest::addColumn<int>("sensitivityType");
    QTest::addColumn<bool>("apEq");
    QTest::addColumn<int>("index");
    QTest::addColumn<Complex>("factor"); // relative to no switches, no sensitivity, no AP EQ

    const Complex one(1, 0);
    QTest::newRow("switch 1 value 1: +6 dB peak -3 dB gain") << SwitchStates {{1, 1}} << 0 << false << logIndex1k << Complex(Linear(3), 0);
    QTest::newRow("switch 1 value 0 is flat") << SwitchStates {{1, 0}} << 0 << false << logIndex1k << one;
    // Switch 2 is always applied: value 0 is a low pass at 100 Hz, value 1 a high pass.
    QTest::newRow("switch 2 value 1 replaces value 0")
        << SwitchStates {{2, 1}} << 0 << false << logIndex1k << (one / (one + one / J(10))) * (one + J(10));
    QTest::newRow("switch 3 value 2: -6 dB") << SwitchStates {{3, 2}} << 0 << false << logIndex1k << Complex(Linear(-6), 0);
    QTest::newRow("switch 3 value without filters is flat") << SwitchStates {{3, 1}} << 0 << false << logIndex1k << one;
    QTest::newRow("unknown switch numbers are ignored") << SwitchStates {{0, 5}, {6, 1}, {-1, 2}} << 0 << false << logIndex1k << one;
    QTest::newRow("measured sensitivity") << SwitchStates() << 1 << false << 1 << Complex(0, 2);
    QTest::newRow("no measured value beyond the list") << SwitchStates() << 1 << false << 3 << one;
    QTest::newRow("array EQ") << SwitchStates() << 2 << false << logIndex1k << Complex(10, 0) / (one + one / J(20));
    QTest::newRow("sensitivity with array EQ")
        << SwitchStates() << 3 << false << 2 << Complex(double(0.2f), 0) * (Complex(10, 0) / (one + one / J(1000 * std::pow(2.0, -138 / 24.0) / 50)));
    QTest::newRow("unknown sensitivity type") << SwitchStates() << 7 << false << 1 << one;
    QTest::newRow("all-pass EQ at its corner") << SwitchStates() << 0 << true << logIndex1k << Complex(0, -1);
    QTest::newRow("coupling positions 0, 0 are off") << SwitchStates {{4, 0}, {5, 0}} << 0 << false << logIndex1k << one;
    QTest::newRow("flat coupling pair") << SwitchStates {{4, 11}, {5, 1}} << 0 << false << logIndex250 << one;
    QTest::newRow("negative coupling positions are off") << SwitchStates {{4, -3}, {5, -1}} << 0 << false << logIndex250 << one;
}

void tst_LoudspeakerSetup::transferFactors()
{
    QFETCH(SwitchStates, switches);
    QFETCH(int, sensitivityType);
    QFETCH(bool, apEq);
    QFETCH(int, index);
    QFETCH(Complex, factor);

    LoudspeakerSetup setup(nullptr);
    setup.Read(fullSetup);
    const Complex base = setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, index, {}, Tolvane::NoSensitivity, false);
    const Complex h = setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, index, switches,
                                                static_cast<Tolvane::SensitivityTypes>(sensitivityType), apEq);
    LPSDK_COMPARE_COMPLEX(h, base * factor, 1e-12 * std::max(1.0, base.abs()));
}

void tst_LoudspeakerSetup::transferOnTheLinearGrid_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("index");
    QTest::addColumn<SwitchStates>("switches");
    QTest::addColumn<int>("sensitivityType");
    QTest::addColumn<Complex>("expected");

    const Complex one(1, 0);
    // gain_delay: +6 dB inverted, 1 ms.
    QTest::newRow("0 Hz: the signed gain") << gainDelaySetup << 0 << SwitchStates() << 0 << Complex(-a6, 0);
    QTest::newRow("1500 Hz: one and a half turns") << gainDelaySetup << 256 << SwitchStates() << 0 << Complex(a6, 0);
    QTest::newRow("375 Hz: a three-eighths turn")
        << gainDelaySetup << 64 << SwitchStates() << 0 << Complex::fromPolar(-a6, -twoPi * 375 * 0.001);
    QTest::newRow("measured sensitivity is not applied") << fullSetup << 1 << SwitchStates() << 1 << Complex();
    QTest::newRow("nor with array EQ") << fullSetup << 1 << SwitchStates() << 3 << Complex();
    QTest::newRow("array EQ is") << fullSetup << 0 << SwitchStates() << 2 << Complex(10, 0);
}

void tst_LoudspeakerSetup::transferOnTheLinearGrid()
{
    QFETCH(QString, file);
    QFETCH(int, index);
    QFETCH(SwitchStates, switches);
    QFETCH(int, sensitivityType);
    QFETCH(Complex, expected);

    LoudspeakerSetup setup(nullptr);
    setup.Read(file);
    const Complex h = setup.GetTransferFunction(Tolvane::LinearFrequencies, index, switches, static_cast<Tolvane::SensitivityTypes>(sensitivityType), false);
    if (expected == Complex()) {
        // A factor that must not apply: compare with no sensitivity at all.
        QCOMPARE(h, setup.GetTransferFunction(Tolvane::LinearFrequencies, index, switches, Tolvane::NoSensitivity, false));
    } else if (file == fullSetup) {
        const Complex base = setup.GetTransferFunction(Tolvane::LinearFrequencies, index, switches, Tolvane::NoSensitivity, false);
        LPSDK_COMPARE_COMPLEX(h, base * expected, 1e-12);
    } else {
        LPSDK_COMPARE_COMPLEX(h, expected, 1e-12);
    }
}

void tst_LoudspeakerSetup::sensitivityAlone_data()
{
    QTest::addColumn<int>("range");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("sensitivityType");
    QTest::addColumn<Complex>("expected");

    const Complex one(1, 0);
    const Complex arrayEqAt1k = Complex(10, 0) / (one + one / J(20));
    QTest::newRow("log, none") << 0 << 1 << 0 << one;
    QTest::newRow("log, measured") << 0 << 2 << 1 << Complex(double(0.2f), 0); // stored as float
    QTest::newRow("log, measured beyond the list") << 0 << 3 << 1 << one;
    QTest::newRow("log, array EQ") << 0 << logIndex1k << 2 << arrayEqAt1k;
    QTest::newRow("log, both beyond the measured list") << 0 << logIndex1k << 3 << arrayEqAt1k;
    QTest::newRow("linear, array EQ") << 1 << 0 << 2 << Complex(10, 0);
    QTest::newRow("linear, measured") << 1 << 0 << 1 << one;
    QTest::newRow("linear, both") << 1 << 0 << 3 << one;
    QTest::newRow("other range") << 2 << 0 << 2 << one;
}

void tst_LoudspeakerSetup::sensitivityAlone()
{
    QFETCH(int, range);
    QFETCH(int, index);
    QFETCH(int, sensitivityType);
    QFETCH(Complex, expected);
    LoudspeakerSetup setup(nullptr);
    setup.Read(fullSetup);
    LPSDK_COMPARE_COMPLEX(setup.GetSensitivity(static_cast<Tolvane::FrequencyRange>(range), index,
                                               static_cast<Tolvane::SensitivityTypes>(sensitivityType)),
                          expected, 1e-12);
}

void tst_LoudspeakerSetup::outsideTheGrids()
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(gainDelaySetup);
    QCOMPARE(setup.GetTransferFunction(static_cast<Tolvane::FrequencyRange>(2), 0, {}, Tolvane::NoSensitivity, false), Complex(1, 0));
    QCOMPARE(setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, 249, {}, Tolvane::NoSensitivity, false), Complex(0, 0));
    QCOMPARE(setup.GetTransferFunction(Tolvane::LinearFrequencies, -1, {}, Tolvane::NoSensitivity, false), Complex(0, 0));
    QCOMPARE(setup.GetSensitivity(Tolvane::LogarithmicFrequencies, -1, Tolvane::Sensitivity), Complex(1, 0));
}

void tst_LoudspeakerSetup::responseKeysAsSpelt()
{
    QTest::ignoreMessage(QtWarningMsg, "unknown filter type 16");
    QTest::ignoreMessage(QtWarningMsg, "unknown filter type 16");
    LoudspeakerSetup setup(nullptr);
    setup.Read(oddKeysSetup);
    // "01" and "1" are both value 1 for the labels, but only "Switch1_1" is what a query for 1 reads.
    QCOMPARE(setup.GetSwitchValues(1), (QMap<int, QString> {{1, QStringLiteral("one")}}));
    QVERIFY(setup.GetFilterResponses(Tolvane::LogarithmicFrequencies).contains(QStringLiteral("Switch1_01")));
    // The file has a 2.5 ms delay and no value 0 for switch 1, so the bare setup is the reference.
    const Complex logBase = setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, 5, {}, Tolvane::NoSensitivity, false);
    LPSDK_COMPARE_COMPLEX(setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, 5, {{1, 1}}, Tolvane::NoSensitivity, false),
                          logBase * Linear(-6), 1e-15);
    // A named filter set spelt like a switch response is found like one.
    const Complex linearBase = setup.GetTransferFunction(Tolvane::LinearFrequencies, 5, {}, Tolvane::NoSensitivity, false);
    LPSDK_COMPARE_COMPLEX(setup.GetTransferFunction(Tolvane::LinearFrequencies, 5, {{2, 5}}, Tolvane::NoSensitivity, false),
                          linearBase * 10.0, 1e-14);
    // Coupling: the pair's biquads at the one frequency, multiplied in.
    const double f = setup.GetFrequencies(Tolvane::LogarithmicFrequencies).at(logIndex250);
    Complex coupling(1, 0);
    for (const Tolvane::BiquadData &b : CouplingFilterProvider::GetInstance().GetFilter(3, 0)) {
        const QVariantMap entry {{QStringLiteral("type"), b.type}, {QStringLiteral("fp"), b.frequency}, {QStringLiteral("Q"), b.q}, {QStringLiteral("G"), b.gain}};
        coupling *= CalculateFilterResponse({f}, entry).at(0);
    }
    QVERIFY((coupling - Complex(1, 0)).abs() > 0.05); // the -4 dB low shelf still acts at 250 Hz
    const Complex base250 = setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, logIndex250, {}, Tolvane::NoSensitivity, false);
    LPSDK_COMPARE_COMPLEX(setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, logIndex250, {{4, 3}}, Tolvane::NoSensitivity, false),
                          base250 * coupling, 1e-15);
    // Only the mid position set: still the pair (0, 2).
    Complex midOnly(1, 0);
    for (const Tolvane::BiquadData &b : CouplingFilterProvider::GetInstance().GetFilter(0, 2)) {
        const QVariantMap entry {{QStringLiteral("type"), b.type}, {QStringLiteral("fp"), b.frequency}, {QStringLiteral("Q"), b.q}, {QStringLiteral("G"), b.gain}};
        midOnly *= CalculateFilterResponse({f}, entry).at(0);
    }
    LPSDK_COMPARE_COMPLEX(setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, logIndex250, {{5, 2}}, Tolvane::NoSensitivity, false),
                          base250 * midOnly, 1e-15);
}

void tst_LoudspeakerSetup::records()
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(fullSetup);

    const nvScientificComputing::SystemEq &eq = setup.getSystemEq();
    QVERIFY(SameBiquads(eq.systemEqFilters, {B(9, 6, 0.7f, 100)}));
    QVERIFY(SameBiquads(eq.arrayEqFilters, {B(0, 20, 0, 0), B(3, 0, 0.7f, 50)}));
    QCOMPARE(eq.filterMaxValue, 12.0);

    const nvScientificComputing::Switch1 &s1 = setup.getSwitch1Parameters();
    QCOMPARE(s1.description, std::string("Coupling"));
    QCOMPARE(s1.switchId, int64_t(11));
    QCOMPARE(s1.values.size(), std::size_t(2));
    QCOMPARE(s1.values.at("1"), std::string("On"));
    QCOMPARE(s1.gains.at("0"), 1.0);
    QCOMPARE(s1.gains.at("1"), Linear(-3));
    QVERIFY(SameBiquads(s1.filters.at("0"), {}));
    QVERIFY(SameBiquads(s1.filters.at("1"), {B(8, 6, 1, 1000)}));

    const nvScientificComputing::Switch2 &s2 = setup.getSwitch2Parameters();
    QCOMPARE(s2.description, std::string("Cardioid"));
    QCOMPARE(s2.switchId, int64_t(12));
    QCOMPARE(s2.polarities.at("1"), 6.0); // taken as written
    QVERIFY(SameBiquads(s2.filters.at("0"), {B(1, 0, 0, 100)})); // no "Q" reads as 0, not 0.71

    const nvScientificComputing::Switch3 &s3 = setup.getSwitch3Parameters();
    QCOMPARE(s3.description, std::string("Preset"));
    QCOMPARE(s3.presetText, std::string("Near field"));
    QCOMPARE(s3.switchId, int64_t(13));
    QCOMPARE(s3.values.at("2"), std::string("Near"));
    QVERIFY(SameBiquads(s3.filters.at("2"), {B(0, -6, 0, 0)}));

    const nvScientificComputing::PeakLimiter &peak = setup.getPeakLimiterParameters();
    QCOMPARE(peak.displayLimiterType, int16_t(2));
    QVERIFY(peak.displayLimiterDisabled);
    QCOMPARE(peak.clipVoltagePeak, 141.5f);
    QCOMPARE(peak.clipVoltageRms, 100.0f);
    QCOMPARE(peak.maximumVoltage, 90.0f);
    QCOMPARE(peak.overshootPercentage, 10.0f);
    QCOMPARE(peak.displacementVoltage, 40.0f);
    QCOMPARE(peak.displacementFrequency, 45.0f);
    QCOMPARE(peak.compressionRatio, 4.0f);
    QCOMPARE(peak.attack, 0.5f);
    QCOMPARE(peak.hold, 10.0f);
    QCOMPARE(peak.release, 200.0f);
    QCOMPARE(peak.attackBand, std::vector<float>({1, 2}));
    QCOMPARE(peak.holdBand, std::vector<float>({3, 4}));
    QCOMPARE(peak.releaseBand, std::vector<float>({5, 6}));
    QCOMPARE(peak.mix, std::vector<float>({0.25f, 0.75f}));
    QCOMPARE(peak.bandFilters.size(), std::size_t(4));
    QVERIFY(SameBiquads(peak.bandFilters[0], {B(2, 0, 0.71f, 120)}));
    QVERIFY(SameBiquads(peak.bandFilters[1], {B(4, 0, 0.71f, 120), B(2, 0, 0, 1200)}));
    QVERIFY(peak.bandFilters[2].empty() && peak.bandFilters[3].empty());
    QCOMPARE(peak.filterMaxValue, 6.0f);

    const nvScientificComputing::ThermoLimiter &thermo = setup.getThermoLimiterParameters();
    QVERIFY(thermo.limiterDisabled);
    QCOMPARE(thermo.reductionAttack, 1.5f);
    QCOMPARE(thermo.reductionRelease, 2.5f);
    QCOMPARE(thermo.voltageThreshold, 50.0f);
    QCOMPARE(thermo.reducedVoltageThreshold, 40.0f);
    QCOMPARE(thermo.frequencyThreshold, 100.0f);
    QCOMPARE(thermo.attack, 3.0f);
    QCOMPARE(thermo.latency, 4.0f);
    QCOMPARE(thermo.release, 5.0f);
    QCOMPARE(thermo.rmsTime, 6.0f);
    QCOMPARE(thermo.mix, std::vector<float>({0.5f}));
    QCOMPARE(thermo.bandFilters.size(), std::size_t(4));
    QVERIFY(SameBiquads(thermo.bandFilters[2], {B(12, -3, 0.7f, 4000)}));
    QCOMPARE(thermo.filterMaxValue, 3.0f);
}

void tst_LoudspeakerSetup::recordsWithoutBlocks()
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(gainDelaySetup);
    QCOMPARE(setup.getSwitch1Parameters().switchId, int64_t(0));
    QVERIFY(setup.getSwitch1Parameters().description.empty());
    QVERIFY(setup.getSwitch1Parameters().values.empty());
    QVERIFY(setup.getSwitch2Parameters().polarities.empty());
    QVERIFY(setup.getSwitch3Parameters().presetText.empty());
    QVERIFY(setup.getSystemEq().systemEqFilters.empty());
    QCOMPARE(setup.getSystemEq().filterMaxValue, 0.0);
    QCOMPARE(setup.getPeakLimiterParameters().displayLimiterType, int16_t(0));
    QCOMPARE(setup.getThermoLimiterParameters().voltageThreshold, 0.0f);
    QVERIFY(setup.getSensitivity().empty());
    QVERIFY(setup.getMaxPk().empty());
}

void tst_LoudspeakerSetup::equality_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("equal");

    QTest::newRow("same content") << QString() << QVariant() << true;
    QTest::newRow("amplifier list does not count") << "supportedAmps" << QVariant(QStringList {QStringLiteral("D12")}) << true;
    QTest::newRow("link lists do not count") << "maxLink" << QVariant(QVariantList {9}) << true;
    QTest::newRow("limiters do not count") << "peakLimiter" << QVariant(QVariantMap {{QStringLiteral("Umax"), 1}}) << true;
    QTest::newRow("name") << "setupName" << QVariant(QStringLiteral("Other")) << false;
    QTest::newRow("part number") << "zNumber" << QVariant(QStringLiteral("Z1")) << false;
    QTest::newRow("gain") << "dBGain" << QVariant(5.5) << false;
    QTest::newRow("polarity") << "polarity" << QVariant(1) << false;
    QTest::newRow("delay") << "delay" << QVariant(2) << false;
    QTest::newRow("merge frequency") << "fMergeUSD" << QVariant(121) << false;
    QTest::newRow("sensitivity") << "dBSensitivity" << QVariant(QVariantList {94, 100, 81}) << false;
    QTest::newRow("peak values") << "maxPK" << QVariant(QVariantList {2}) << false;
    QTest::newRow("filter sets") << "filters" << QVariant(QVariantMap()) << false;
}

void tst_LoudspeakerSetup::equality()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(bool, equal);

    QVariantMap map {{QStringLiteral("setupName"), QStringLiteral("Top")},
                     {QStringLiteral("zNumber"), QStringLiteral("Z0")},
                     {QStringLiteral("dBGain"), 3},
                     {QStringLiteral("polarity"), -1},
                     {QStringLiteral("delay"), 1.5},
                     {QStringLiteral("fMergeUSD"), 120},
                     {QStringLiteral("supportedAmps"), QStringList {QStringLiteral("D80")}},
                     {QStringLiteral("maxLink"), QVariantList {3}},
                     {QStringLiteral("dBSensitivity"), QVariantList {94, 100, 80}},
                     {QStringLiteral("phaseSensitivity"), QVariantList {0, 10, 20}},
                     {QStringLiteral("maxPK"), QVariantList {3}},
                     {QStringLiteral("filters"), QVariantMap {{QStringLiteral("System_EQ"), QVariantList {QVariantMap {{QStringLiteral("type"), 8}, {QStringLiteral("fp"), 100}, {QStringLiteral("Q"), 1}, {QStringLiteral("G"), 3}}}}}}};
    const QString dirA = QStringLiteral("a");
    const QString dirB = QStringLiteral("b");
    QVERIFY(QDir(m_dir.path()).mkpath(dirA) && QDir(m_dir.path()).mkpath(dirB));
    const QString pathA = WriteSetup(dirA + QStringLiteral("/setup.json"), map);
    if (!key.isEmpty())
        map.insert(key, value);
    const QString pathB = WriteSetup(dirB + QStringLiteral("/setup.json"), map);

    LoudspeakerSetup a(nullptr);
    LoudspeakerSetup b(nullptr);
    a.Read(pathA);
    b.Read(pathB);
    QCOMPARE(a == b, equal);
    QCOMPARE(b == a, equal);
}

void tst_LoudspeakerSetup::setupNameView()
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(fullSetup);
    QCOMPARE(setup.getSetupName(), std::string_view("Top 90"));
    setup.SetName(QStringLiteral("Top 90 \u00b0"));
    const std::string_view view = setup.getSetupName();
    QCOMPARE(view, std::string_view("Top 90 \xc2\xb0"));
    // A copy of the name in the same file but another setup object is its own storage.
    LoudspeakerSetup other(nullptr);
    other.Read(fullSetup);
    QVERIFY(other.getSetupName().data() != view.data());

    // NaN never equals, not even itself.
    QVERIFY(setup == setup);
    setup.SetDelay(std::nan(""));
    QVERIFY(!(setup == setup));
}

QTEST_GUILESS_MAIN(tst_LoudspeakerSetup)
#include "tst_loudspeakersetup.moc"
