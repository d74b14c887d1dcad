// SPDX-License-Identifier: MIT
#include "CouplingFilterProvider.h"
#include "FilterResponse.h"
#include "LoudspeakerSetup.h"
#include "TestHelpers.h"

#include <QJsonDocument>
#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <cmath>
#include <memory>
#include <thread>
#include <vector>

using SwitchStates = QMap<int, int>;

namespace {

const QString fullSetup = QStringLiteral(":/Resources/full_setup.json");
const QString gainDelaySetup = QStringLiteral(":/Resources/gain_delay.json");
const QString oddKeysSetup = QStringLiteral(":/Resources/odd_keys.json");

const double a6 = 1.9952623149688795; // 10^(6/20)
const double twoPi = 6.283185307179586;
const int logIndex1k = 140; // 1000 Hz on the 1/24-octave grid
const int logIndex250 = 92; // 250 Hz
const Complex one(1, 0);

double Linear(double dB)
{
    return std::pow(10.0, dB / 20.0);
}

Complex J(double x)
{
    return Complex(0.0, x);
}

std::unique_ptr<LoudspeakerSetup> Load(const QString &file)
{
    if (file == oddKeysSetup) {
        // Its type 16 filter is evaluated once per grid.
        QTest::ignoreMessage(QtWarningMsg, "unknown filter type 16");
        QTest::ignoreMessage(QtWarningMsg, "unknown filter type 16");
    }
    auto setup = std::make_unique<LoudspeakerSetup>(nullptr);
    setup->Read(file);
    return setup;
}

Complex Transfer(LoudspeakerSetup &setup, int index, const SwitchStates &switches = {}, int sensitivityType = 0, bool apEq = false,
                 Tolvane::FrequencyRange range = Tolvane::LogarithmicFrequencies)
{
    return setup.GetTransferFunction(range, index, switches, static_cast<Tolvane::SensitivityTypes>(sensitivityType), apEq);
}

// The coupling pair's biquads evaluated one by one through the single-filter response.
Complex CouplingAt(int low, int mid, double f)
{
    Complex h(1, 0);
    for (const Tolvane::BiquadData &b : CouplingFilterProvider::GetInstance().GetFilter(low, mid)) {
        const QVariantMap entry {{QStringLiteral("type"), b.type}, {QStringLiteral("fp"), b.frequency}, {QStringLiteral("Q"), b.q}, {QStringLiteral("G"), b.gain}};
        h *= CalculateFilterResponse({f}, entry).at(0);
    }
    return h;
}

bool IsBiquad(const std::vector<nvScientificComputing::Biquad> &list, std::size_t i, int type, float gain, float q, float frequency)
{
    return i < list.size() && list[i].type == type && list[i].gain == gain && list[i].q == q && list[i].frequency == frequency;
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
    void links_data();
    void links();
    void switchesAndCouplingLabels();
    void filterResponses();
    void absoluteTransfer();
    void transferFactors_data();
    void transferFactors();
    void responseKeysAsSpelt();
    void records();
    void equality_data();
    void equality();
    void setupNameView();
    void concurrentQueries();

private:
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

void tst_LoudspeakerSetup::scalars()
{
    const auto setup = Load(fullSetup);
    QCOMPARE(QStringList({setup->GetName(), setup->GetFullName(), setup->GetDisplayName(), setup->GetLoudspeakerName(),
                          setup->GetPartNumber(), setup->GetFilename()}),
             QStringList({"Top 90", "Top 90 full range", "Top 90 deg", "TX12", "Z1234.000", "full_setup.json"}));
    QVERIFY(setup->IsVisible());
    QCOMPARE(QList<int>({setup->GetSpeakerId(), setup->GetSpeakerType(), setup->getAmpChannelCount(), setup->getThisAmpChannel()}),
             QList<int>({7, 2, 4, 2}));
    QCOMPARE(setup->GetGain(), a6);
    QCOMPARE(setup->getControllerGainLinear(), a6);
    QCOMPARE(setup->getControllerPhase(), static_cast<signed char>(-1));
    QCOMPARE(setup->getControllerDelaySeconds(), 0.0025);
    QCOMPARE(QList<double>({setup->GetThermoLimiter(), setup->GetMergeFrequency(), setup->GetLowOptFrequency(), setup->GetHighOptFrequency()}),
             QList<double>({12.5, 120.0, 80.0, 16000.0}));
    QCOMPARE(setup->GetSupportedAmplifiers(), QStringList({"D80", "D20", "D40"}));

    // 94 dB re 20 µPa at 180 degrees; the other two values are checked through the transfer function.
    const std::vector<std::complex<float>> &sensitivity = setup->getSensitivity();
    QCOMPARE(sensitivity.size(), std::size_t(3));
    QCOMPARE(sensitivity[0].real(), float(-2e-5 * Linear(94)));
    QVERIFY(std::abs(sensitivity[0].imag()) < 1e-6f);
    QCOMPARE(setup->getMaxPk(), std::vector<float>({1.0f, 2.5f, 1.0f})); // values below 1 are raised to 1
}

void tst_LoudspeakerSetup::missingAndOddValues()
{
    LoudspeakerSetup unread(nullptr);
    QCOMPARE(unread.GetSpeakerId(), -1);
    QCOMPARE(unread.GetFrequencies(Tolvane::LogarithmicFrequencies).size(), 249);
    QCOMPARE(unread.GetFrequencies(Tolvane::LinearFrequencies).size(), 1025);

    const auto setup = Load(oddKeysSetup);
    QCOMPARE(setup->GetName(), QStringLiteral("42"));
    QCOMPARE(setup->GetSpeakerId(), 0);     // "abc", and a read replaces the -1 of a new setup
    QCOMPARE(setup->GetDelay(), 0.0025);    // "2.5" converts
    QCOMPARE(setup->GetGain(), 1.0);        // "loud" is 0 dB
    QCOMPARE(setup->GetPolarity(), 1.0);    // absent
    // Value 2 of switch 1 holds only the unknown filter, which is flat.
    QVERIFY(std::abs(Transfer(*setup, 0, {{1, 2}}).abs() - 1.0) < 1e-15);

    // A file without any blocks leaves the parameter records empty.
    const auto bare = Load(gainDelaySetup);
    QVERIFY(bare->getSwitch1Parameters().values.empty() && bare->getSystemEq().systemEqFilters.empty());
    QVERIFY(bare->getSensitivity().empty() && bare->getMaxPk().empty());
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
    const auto setup = Load(file);
    QTEST(setup->GetMaxLink(amp), "maxLink");
    QTEST(setup->GetRecommendedLink(amp), "recommendedLink");
}

void tst_LoudspeakerSetup::switchesAndCouplingLabels()
{
    const auto setup = Load(fullSetup);
    QCOMPARE(setup->GetSwitchCount(), 3);
    QCOMPARE(setup->GetSwitchDescription(1), QStringLiteral("Coupling"));
    QVERIFY(setup->GetSwitchDescription(4).isEmpty());
    QCOMPARE(setup->GetSwitchValues(2), (QMap<int, QString> {{0, QStringLiteral("Normal")}, {1, QStringLiteral("Cardioid")}}));
    QVERIFY(setup->GetSwitchValues(6).isEmpty());

    const QMap<int, QString> low = setup->GetSwitchValues(4);
    QCOMPARE(low.size(), 16);
    QCOMPARE(QStringList({low.value(0), low.value(10), low.value(11), low.value(15)}), QStringList({"-5.5", "-0.5", " 0.0", " 2.0"}));
    const QMap<int, QString> mid = setup->GetSwitchValues(5);
    QCOMPARE(mid.keys(), QList<int>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    // Mid position 1 is a negative zero: it passes the >= 0 test, so it gets the blank too.
    QCOMPARE(QStringList({mid.value(0), mid.value(1), mid.value(3)}), QStringList({" 0.5", " 0.0", "-1.0"}));
}

void tst_LoudspeakerSetup::filterResponses()
{
    const auto setup = Load(fullSetup);
    const QMap<QString, QList<Complex>> log = setup->GetFilterResponses(Tolvane::LogarithmicFrequencies);
    const QMap<QString, QList<Complex>> linear = setup->GetFilterResponses(Tolvane::LinearFrequencies);
    QCOMPARE(log.keys(), QStringList({"Sensitivity_AP_EQ", "Sensitivity_Array_EQ", "Switch1_0", "Switch1_1", "Switch2_0", "Switch2_1",
                                      "Switch3_2", "SystemEqFilterMaxVal", "System_EQ"}));
    QCOMPARE(linear.keys(), log.keys());
    QCOMPARE(linear.value(QStringLiteral("Switch2_1")).size(), 1025);
    // An empty list with a 0 dB entry in "dBGains" stays flat; a non-list entry is flat too.
    QCOMPARE(log.value(QStringLiteral("Switch1_0")), QList<Complex>(249, one));
    QCOMPARE(linear.value(QStringLiteral("SystemEqFilterMaxVal")), QList<Complex>(1025, one));
    // The -3 dB of "dBGains" is appended to the +6 dB peak, which is 1 at 0 Hz.
    LPSDK_COMPARE_COMPLEX(linear.value(QStringLiteral("Switch1_1")).at(0), Complex(Linear(-3), 0), 1e-15);
}

void tst_LoudspeakerSetup::absoluteTransfer()
{
    // At 1 kHz: switch 2 value 0 (1st-order low pass at 100 Hz), the +6 dB 1st-order low shelf
    // of the system EQ at 100 Hz, -1.995 for +6 dB inverted, and 2.5 turns of delay.
    const auto full = Load(fullSetup);
    const Complex expected = (one / (J(10) + 1.0)) * (one + (a6 - 1.0) / (J(10) + 1.0)) * (-a6) * Complex::fromPolar(1.0, -twoPi * 1000 * 0.0025);
    LPSDK_COMPARE_COMPLEX(Transfer(*full, logIndex1k), expected, 1e-14);

    // gain_delay: +6 dB inverted, 1 ms, on the 5.86 Hz linear grid.
    const auto plain = Load(gainDelaySetup);
    const auto linear = [&](int index) { return Transfer(*plain, index, {}, 0, false, Tolvane::LinearFrequencies); };
    LPSDK_COMPARE_COMPLEX(linear(0), Complex(-a6, 0), 1e-12);
    LPSDK_COMPARE_COMPLEX(linear(256), Complex(a6, 0), 1e-12); // 1500 Hz: one and a half turns
    LPSDK_COMPARE_COMPLEX(linear(64), Complex::fromPolar(-a6, -twoPi * 375 * 0.001), 1e-12);

    // Other ranges are neutral; an index outside the grid transfers nothing.
    const auto other = static_cast<Tolvane::FrequencyRange>(2);
    QCOMPARE(Transfer(*plain, 0, {}, 0, false, other), one);
    QCOMPARE(Transfer(*plain, 249), Complex(0, 0));
    QCOMPARE(linear(-1), Complex(0, 0));
    QCOMPARE(plain->GetSensitivity(Tolvane::LogarithmicFrequencies, -1, Tolvane::Sensitivity), one);
    QCOMPARE(full->GetSensitivity(other, 0, Tolvane::ArrayEq), one);
}

void tst_LoudspeakerSetup::transferFactors_data()
{
    QTest::addColumn<int>("range");
    QTest::addColumn<int>("index");
    QTest::addColumn<SwitchStates>("switches");
    QTest::addColumn<int>("sensitivityType");
    QTest::addColumn<bool>("apEq");
    QTest::addColumn<Complex>("factor"); // relative to no switches, no sensitivity, no AP EQ

    const int log = Tolvane::LogarithmicFrequencies;
    const int lin = Tolvane::LinearFrequencies;
    const Complex arrayEqAt1k = Complex(10, 0) / (one + one / J(20));
    QTest::newRow("switch 1 value 1: +6 dB peak -3 dB gain") << log << logIndex1k << SwitchStates {{1, 1}} << 0 << false << Complex(Linear(3), 0);
    // Switch 2 is always applied: value 0 is a low pass at 100 Hz, value 1 a high pass.
    QTest::newRow("switch 2 value 1 replaces value 0")
        << log << logIndex1k << SwitchStates {{2, 1}} << 0 << false << (one / (one + one / J(10))) * (one + J(10));
    QTest::newRow("switch 3 value 2: -6 dB") << log << logIndex1k << SwitchStates {{3, 2}} << 0 << false << Complex(Linear(-6), 0);
    QTest::newRow("switch 3 value without filters is flat") << log << logIndex1k << SwitchStates {{3, 1}} << 0 << false << one;
    QTest::newRow("unknown switch numbers are ignored") << log << logIndex1k << SwitchStates {{0, 5}, {6, 1}, {-1, 2}} << 0 << false << one;
    QTest::newRow("coupling positions 0, 0 are off") << log << logIndex1k << SwitchStates {{4, 0}, {5, 0}} << 0 << false << one;
    QTest::newRow("negative coupling positions are off") << log << logIndex250 << SwitchStates {{4, -3}, {5, -1}} << 0 << false << one;
    QTest::newRow("all-pass EQ at its corner") << log << logIndex1k << SwitchStates() << 0 << true << Complex(0, -1);
    // Without switches or AP EQ the factor is also what GetSensitivity() answers.
    QTest::newRow("measured sensitivity") << log << 1 << SwitchStates() << 1 << false << Complex(0, 2);
    QTest::newRow("array EQ") << log << logIndex1k << SwitchStates() << 2 << false << arrayEqAt1k;
    QTest::newRow("both beyond the measured list") << log << logIndex1k << SwitchStates() << 3 << false << arrayEqAt1k;
    QTest::newRow("sensitivity (as float) with array EQ") << log << 2 << SwitchStates() << 3 << false
                                                           << Complex(double(0.2f), 0) * (Complex(10, 0) / (one + one / J(1000 * std::pow(2.0, -138 / 24.0) / 50)));
    QTest::newRow("unknown sensitivity type") << log << 1 << SwitchStates() << 7 << false << one;
    QTest::newRow("linear: measured sensitivity is not applied") << lin << 1 << SwitchStates() << 1 << false << one;
    QTest::newRow("linear: nor with array EQ") << lin << 1 << SwitchStates() << 3 << false << one;
    QTest::newRow("linear: array EQ is") << lin << 0 << SwitchStates() << 2 << false << Complex(10, 0);
}

void tst_LoudspeakerSetup::transferFactors()
{
    QFETCH(int, range);
    QFETCH(int, index);
    QFETCH(SwitchStates, switches);
    QFETCH(int, sensitivityType);
    QFETCH(bool, apEq);
    QFETCH(Complex, factor);

    const auto setup = Load(fullSetup);
    const auto r = static_cast<Tolvane::FrequencyRange>(range);
    const Complex base = Transfer(*setup, index, {}, 0, false, r);
    LPSDK_COMPARE_COMPLEX(Transfer(*setup, index, switches, sensitivityType, apEq, r), base * factor, 1e-12 * std::max(1.0, base.abs()));
    if (switches.isEmpty() && !apEq)
        LPSDK_COMPARE_COMPLEX(setup->GetSensitivity(r, index, static_cast<Tolvane::SensitivityTypes>(sensitivityType)), factor, 1e-12);
}

void tst_LoudspeakerSetup::responseKeysAsSpelt()
{
    const auto setup = Load(oddKeysSetup);
    // "01" and "1" are both value 1 for the labels, but only "Switch1_1" is what a query for 1 reads.
    QCOMPARE(setup->GetSwitchValues(1), (QMap<int, QString> {{1, QStringLiteral("one")}}));
    QVERIFY(setup->GetFilterResponses(Tolvane::LogarithmicFrequencies).contains(QStringLiteral("Switch1_01")));
    LPSDK_COMPARE_COMPLEX(Transfer(*setup, 5, {{1, 1}}), Transfer(*setup, 5) * Linear(-6), 1e-15);
    // A named filter set spelt like a switch response is found like one.
    LPSDK_COMPARE_COMPLEX(Transfer(*setup, 5, {{2, 5}}, 0, false, Tolvane::LinearFrequencies),
                          Transfer(*setup, 5, {}, 0, false, Tolvane::LinearFrequencies) * 10.0, 1e-14);
    // Coupling: the pair's biquads at the one frequency, multiplied in; a lone mid position pairs with low 0.
    const double f = setup->GetFrequencies(Tolvane::LogarithmicFrequencies).at(logIndex250);
    QVERIFY((CouplingAt(3, 0, f) - one).abs() > 0.05); // the -4 dB low shelf still acts at 250 Hz
    const Complex base = Transfer(*setup, logIndex250);
    LPSDK_COMPARE_COMPLEX(Transfer(*setup, logIndex250, {{4, 3}}), base * CouplingAt(3, 0, f), 1e-15);
    LPSDK_COMPARE_COMPLEX(Transfer(*setup, logIndex250, {{5, 2}}), base * CouplingAt(0, 2, f), 1e-15);
}

void tst_LoudspeakerSetup::records()
{
    const auto setup = Load(fullSetup);
    const nvScientificComputing::SystemEq &eq = setup->getSystemEq();
    QVERIFY(IsBiquad(eq.systemEqFilters, 0, 9, 6, 0.7f, 100) && IsBiquad(eq.arrayEqFilters, 1, 3, 0, 0.7f, 50));
    QCOMPARE(eq.filterMaxValue, 12.0);

    const nvScientificComputing::Switch1 &s1 = setup->getSwitch1Parameters();
    QCOMPARE(s1.switchId, int64_t(11));
    QCOMPARE(s1.gains.at("1"), Linear(-3));
    QVERIFY(s1.filters.at("0").empty() && IsBiquad(s1.filters.at("1"), 0, 8, 6, 1, 1000));
    QCOMPARE(setup->getSwitch2Parameters().polarities.at("1"), 6.0); // taken as written
    QVERIFY(IsBiquad(setup->getSwitch2Parameters().filters.at("0"), 0, 1, 0, 0, 100)); // no "Q" reads as 0, not 0.71
    QCOMPARE(setup->getSwitch3Parameters().presetText, std::string("Near field"));

    // Scalars in record order against the file's values.
    const nvScientificComputing::PeakLimiter &peak = setup->getPeakLimiterParameters();
    QCOMPARE(peak.displayLimiterType, int16_t(2));
    QVERIFY(peak.displayLimiterDisabled);
    QCOMPARE((std::vector<float> {peak.clipVoltagePeak, peak.clipVoltageRms, peak.maximumVoltage, peak.overshootPercentage,
                                  peak.displacementVoltage, peak.displacementFrequency, peak.compressionRatio, peak.attack, peak.hold,
                                  peak.release, peak.filterMaxValue}),
             (std::vector<float> {141.5f, 100, 90, 10, 40, 45, 4, 0.5f, 10, 200, 6}));
    QCOMPARE((std::vector<std::vector<float>> {peak.attackBand, peak.holdBand, peak.releaseBand, peak.mix}),
             (std::vector<std::vector<float>> {{1, 2}, {3, 4}, {5, 6}, {0.25f, 0.75f}}));
    QVERIFY(peak.bandFilters.size() == 4 && IsBiquad(peak.bandFilters[1], 1, 2, 0, 0, 1200));

    const nvScientificComputing::ThermoLimiter &thermo = setup->getThermoLimiterParameters();
    QVERIFY(thermo.limiterDisabled);
    QCOMPARE((std::vector<float> {thermo.reductionAttack, thermo.reductionRelease, thermo.voltageThreshold, thermo.reducedVoltageThreshold,
                                  thermo.frequencyThreshold, thermo.attack, thermo.latency, thermo.release, thermo.rmsTime,
                                  thermo.filterMaxValue}),
             (std::vector<float> {1.5f, 2.5f, 50, 40, 100, 3, 4, 5, 6, 3}));
    QVERIFY(thermo.bandFilters.size() == 4 && IsBiquad(thermo.bandFilters[2], 0, 12, -3, 0.7f, 4000));
}

void tst_LoudspeakerSetup::equality_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("equal");

    QTest::newRow("same content") << QString() << QVariant() << true;
    QTest::newRow("amplifier list does not count") << "supportedAmps" << QVariant(QStringList {QStringLiteral("D12")}) << true;
    QTest::newRow("limiters do not count") << "peakLimiter" << QVariant(QVariantMap {{QStringLiteral("Umax"), 1}}) << true;
    QTest::newRow("name") << "setupName" << QVariant(QStringLiteral("Other")) << false;
    QTest::newRow("gain") << "dBGain" << QVariant(5.5) << false;
    QTest::newRow("polarity") << "polarity" << QVariant(1) << false;
    QTest::newRow("delay") << "delay" << QVariant(2) << false;
    QTest::newRow("sensitivity") << "dBSensitivity" << QVariant(QVariantList {94, 100, 81}) << false;
    QTest::newRow("peak values") << "maxPK" << QVariant(QVariantList {2}) << false;
    QTest::newRow("filter sets") << "filters" << QVariant(QVariantMap()) << false;
}

void tst_LoudspeakerSetup::equality()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(bool, equal);

    QVariantMap map {{"setupName", "Top"}, {"dBGain", 3}, {"polarity", -1}, {"delay", 1.5},
                     {"supportedAmps", QStringList {"D80"}}, {"maxLink", QVariantList {3}}, {"dBSensitivity", QVariantList {94, 100, 80}},
                     {"maxPK", QVariantList {3}},
                     {"filters", QVariantMap {{"System_EQ", QVariantList {QVariantMap {{"type", 8}, {"fp", 100}, {"Q", 1}, {"G", 3}}}}}}};
    // Same file name in two folders, since the file name takes part.
    const auto write = [this](const QString &folder, const QVariantMap &content) {
        QDir(m_dir.path()).mkpath(folder);
        QFile file(m_dir.filePath(folder + QStringLiteral("/setup.json")));
        return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument::fromVariant(content).toJson()) > 0 ? file.fileName() : QString();
    };
    const QString pathA = write(QStringLiteral("a"), map);
    if (!key.isEmpty())
        map.insert(key, value);
    const QString pathB = write(QStringLiteral("b"), map);
    QVERIFY(!pathA.isEmpty() && !pathB.isEmpty());

    const auto a = Load(pathA);
    const auto b = Load(pathB);
    QCOMPARE(*a == *b, equal);
    QCOMPARE(*b == *a, equal);
}

void tst_LoudspeakerSetup::setupNameView()
{
    const auto setup = Load(fullSetup);
    QCOMPARE(setup->getSetupName(), std::string_view("Top 90"));
    setup->SetName(QStringLiteral("Top 90 \u00b0"));
    const std::string_view view = setup->getSetupName();
    QCOMPARE(view, std::string_view("Top 90 \xc2\xb0"));
    // Another setup object read from the same file has its own storage.
    QVERIFY(Load(fullSetup)->getSetupName().data() != view.data());

    // NaN never equals, not even itself.
    QVERIFY(*setup == *setup);
    setup->SetDelay(std::nan(""));
    QVERIFY(!(*setup == *setup));
}

void tst_LoudspeakerSetup::concurrentQueries()
{
    // Queries keep no scratch state: threads asking at once get what one thread gets.
    const auto setup = Load(fullSetup);
    const SwitchStates switches {{1, 1}, {2, 1}, {3, 2}, {4, 3}, {5, 6}};
    QList<Complex> reference;
    for (int i = 0; i < 249; ++i)
        reference.append(Transfer(*setup, i, switches, Tolvane::SensitivityWithArrayEq, true));

    std::atomic<int> mismatches {0};
    // std::thread rather than QThread: its join is visible to ThreadSanitizer.
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round) {
                for (int i = 0; i < 249; ++i) {
                    if (Transfer(*setup, i, switches, Tolvane::SensitivityWithArrayEq, true) != reference.at(i))
                        ++mismatches;
                }
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(mismatches.load(), 0);
}

QTEST_GUILESS_MAIN(tst_LoudspeakerSetup)
#include "tst_loudspeakersetup.moc"
