// SPDX-License-Identifier: MIT
#include "DspChannelDescriptor.h"
#include "FrequencyVectors_p.h"
#include "LoudspeakerSetup.h"
#include "TestHelpers.h"

#include <QTest>
#include <QThread>

#include <cmath>
#include <memory>

using SwitchStates = QMap<int, int>;

namespace {

QVariantMap ChannelMap()
{
    return {
        {QStringLiteral("name"), QStringLiteral("D80")},
        {QStringLiteral("defaultControllerSetup"), 3},
        {QStringLiteral("controllerSetups"),
         QVariantMap {{QStringLiteral("1"), QStringLiteral("full_setup.json")},
                      {QStringLiteral("3"), QStringLiteral("gain_delay.json")},
                      {QStringLiteral("abc"), QStringLiteral("gain_delay.json")}}},
    };
}

} // namespace

class tst_DspChannelDescriptor : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void frequencyVectorsFirstUseFromThreads();
    void frequencyVectors_data();
    void frequencyVectors();
    void unsupportedBandCountWarns();
    void channelGrids();

    void defaultSetups_data();
    void defaultSetups();
    void setupsByKey();
    void unreadableSetupFilesLeaveEmptySetups();
    void perSetupQueries();
    void unknownSetupKeysGiveNeutralResults();
    void balloonDataKeys_data();
    void balloonDataKeys();
    void transferFunctionOfASetup();
    void castsThroughTheInterfaceId();
    void equality();
};

void tst_DspChannelDescriptor::frequencyVectorsFirstUseFromThreads()
{
    // Several threads race for the first use of the 3-band list; all must see one complete list.
    const QList<double> *seen[8] = {};
    std::unique_ptr<QThread> threads[8];
    for (int t = 0; t < 8; ++t)
        threads[t].reset(QThread::create([&seen, t] { seen[t] = &FrequencyVectors::GetFrequencyVector(3); }));
    for (auto &thread : threads)
        thread->start();
    for (auto &thread : threads)
        QVERIFY(thread->wait(10000));
    for (const QList<double> *list : seen) {
        QCOMPARE(list, seen[0]);
        QCOMPARE(list->size(), 29);
    }
}

void tst_DspChannelDescriptor::frequencyVectors_data()
{
    QTest::addColumn<int>("bands");
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("last");

    QTest::newRow("3 bands") << 3 << 29 << 32.0 << 20000.0;
    QTest::newRow("24 bands") << 24 << 249 << 17.538469504833955 << 22627.416997969522;
}

void tst_DspChannelDescriptor::frequencyVectors()
{
    QFETCH(int, bands);
    QFETCH(int, count);
    QFETCH(double, first);
    QFETCH(double, last);

    const QList<double> &list = FrequencyVectors::GetFrequencyVector(bands);
    QCOMPARE(&list, &FrequencyVectors::GetFrequencyVector(bands));
    QCOMPARE(list.size(), count);
    QVERIFY(std::abs(list.first() - first) < 1e-9);
    QVERIFY(std::abs(list.last() - last) < 1e-9);
    for (int i = 1; i < list.size(); ++i)
        QVERIFY(list.at(i) > list.at(i - 1));
    if (bands == 3) {
        QVERIFY(list.contains(163.0));
        QVERIFY(list.contains(1630.0));
        QVERIFY(!list.contains(160.0));
    } else {
        // 1 kHz sits at k = 0, the 141st entry; each step is a 24th of an octave.
        QCOMPARE(list.at(140), 1000.0);
        QVERIFY(std::abs(list.at(141) / list.at(140) - std::pow(2.0, 1.0 / 24.0)) < 1e-12);
    }
}

void tst_DspChannelDescriptor::unsupportedBandCountWarns()
{
    for (int bands : {0, 1, 12, -24}) {
        QTest::ignoreMessage(QtWarningMsg, "frequency vector not supported");
        QVERIFY(FrequencyVectors::GetFrequencyVector(bands).isEmpty());
    }
}

void tst_DspChannelDescriptor::channelGrids()
{
    DspChannelDescriptor channel(QVariantMap(), nullptr);
    const QList<double> log = channel.GetFrequencyVector(Tolvane::LogarithmicFrequencies);
    QCOMPARE(log, FrequencyVectors::GetFrequencyVector(24));
    const QList<double> linear = channel.GetFrequencyVector(Tolvane::LinearFrequencies);
    QCOMPARE(linear.size(), 1025);
    QCOMPARE(linear.first(), 0.0);
    QCOMPARE(linear.at(1), 5.859375);
    QCOMPARE(linear.last(), 6000.0);
    QVERIFY(channel.GetFrequencyVector(static_cast<Tolvane::FrequencyRange>(2)).isEmpty());
    QVERIFY(channel.GetFrequencyVector(static_cast<Tolvane::FrequencyRange>(-1)).isEmpty());
}

void tst_DspChannelDescriptor::defaultSetups_data()
{
    QTest::addColumn<QVariantMap>("map");
    QTest::addColumn<QList<int>>("keys"); // by mounting value 0 … 6

    QTest::newRow("no defaults") << QVariantMap() << QList<int> {0, 0, 0, 0, 0, 0, 0};
    QTest::newRow("one key for every mounting") << QVariantMap {{QStringLiteral("defaultControllerSetup"), 3}} << QList<int> {3, 3, 3, 3, 3, 3, 3};
    QTest::newRow("per-mounting key names")
        << QVariantMap {{QStringLiteral("defaultControllerSetups"),
                         QVariantMap {{QStringLiteral("flown"), 1},
                                      {QStringLiteral("stacked"), 2},
                                      {QStringLiteral("flown_horizontal"), 3},
                                      {QStringLiteral("stacked_horizontal"), 4},
                                      {QStringLiteral("stacked_cart"), 5},
                                      {QStringLiteral("flown_vertical_install"), 6},
                                      {QStringLiteral("flown_vertical_pullback"), 7}}}}
        << QList<int> {1, 2, 3, 4, 5, 6, 7};
    QTest::newRow("per-mounting map wins, missing names are 0")
        << QVariantMap {{QStringLiteral("defaultControllerSetups"), QVariantMap {{QStringLiteral("flown"), 2}}},
                        {QStringLiteral("defaultControllerSetup"), 3}}
        << QList<int> {2, 0, 0, 0, 0, 0, 0};
    QTest::newRow("mounting texts are not key names")
        << QVariantMap {{QStringLiteral("defaultControllerSetups"),
                         QVariantMap {{QStringLiteral("flown_install"), 9}, {QStringLiteral("flown_pullback"), 9}, {QStringLiteral("stacked"), 1}}}}
        << QList<int> {0, 1, 0, 0, 0, 0, 0};
    QTest::newRow("empty per-mounting map falls back")
        << QVariantMap {{QStringLiteral("defaultControllerSetups"), QVariantMap()}, {QStringLiteral("defaultControllerSetup"), 4}}
        << QList<int> {4, 4, 4, 4, 4, 4, 4};
    QTest::newRow("text values convert") << QVariantMap {{QStringLiteral("defaultControllerSetup"), QStringLiteral("12")}}
                                         << QList<int> {12, 12, 12, 12, 12, 12, 12};
}

void tst_DspChannelDescriptor::defaultSetups()
{
    QFETCH(QVariantMap, map);
    QFETCH(QList<int>, keys);

    const DspChannelDescriptor channel(map, nullptr);
    for (int mounting = 0; mounting <= 6; ++mounting)
        QCOMPARE(channel.GetDefaultLoudspeakerSetupKey(static_cast<Tolvane::Mounting>(mounting)), keys.at(mounting));
    QCOMPARE(channel.GetDefaultLoudspeakerSetupKey(Tolvane::Invalid), 0);
    QCOMPARE(channel.GetDefaultLoudspeakerSetupKey(static_cast<Tolvane::Mounting>(7)), 0);
}

void tst_DspChannelDescriptor::setupsByKey()
{
    QObject owner;
    auto *channel = new DspChannelDescriptor(ChannelMap(), &owner);
    QCOMPARE(channel->parent(), &owner);
    QCOMPARE(channel->GetName(), QStringLiteral("D80"));

    const QMap<int, LoudspeakerSetup *> setups = channel->GetLoudspeakerSetups();
    QCOMPARE(setups.keys(), QList<int>({0, 1, 3})); // "abc" is key 0
    for (LoudspeakerSetup *setup : setups)
        QCOMPARE(setup->parent(), channel);
    QCOMPARE(setups.value(1)->GetName(), QStringLiteral("Top 90"));
    QCOMPARE(setups.value(1)->GetFilename(), QStringLiteral("full_setup.json"));
    QCOMPARE(setups.value(3)->GetName(), QStringLiteral("Sub"));
    QCOMPARE(channel->GetSpeakerIds(), QList<int>({3, 7, 3}));
}

void tst_DspChannelDescriptor::unreadableSetupFilesLeaveEmptySetups()
{
    QTest::ignoreMessage(QtWarningMsg, "Json file not found: :/Resources/missing.json");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^File error code: \\d+$")));
    QTest::ignoreMessage(QtWarningMsg, "JSON parse error in file: :/Resources/invalid.json");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Error: .+")));
    const QVariantMap map {{QStringLiteral("controllerSetups"),
                            QVariantMap {{QStringLiteral("2"), QStringLiteral("missing.json")}, {QStringLiteral("5"), QStringLiteral("invalid.json")}}}};
    DspChannelDescriptor channel(map, nullptr);

    const QMap<int, LoudspeakerSetup *> setups = channel.GetLoudspeakerSetups();
    QCOMPARE(setups.keys(), QList<int>({2, 5}));
    for (LoudspeakerSetup *setup : setups) {
        QVERIFY(setup->GetName().isEmpty());
        QCOMPARE(setup->GetSwitchCount(), 0);
        QCOMPARE(setup->GetGain(), 1.0);
    }
    // An empty setup still transfers: unity gain, no delay, no filters.
    QCOMPARE(channel.GetTransferFunction(Tolvane::LogarithmicFrequencies, 10, 2, {}, Tolvane::NoSensitivity, false), Complex(1, 0));
    QCOMPARE(channel.GetSpeakerIds(), QList<int>({0, 0}));
}

void tst_DspChannelDescriptor::perSetupQueries()
{
    DspChannelDescriptor channel(ChannelMap(), nullptr);
    QCOMPARE(channel.GetDelay(1), 0.0025);
    QCOMPARE(channel.GetDelay(3), 0.001);
    QCOMPARE(channel.GetMergeFrequency(1), 120.0);
    QCOMPARE(channel.GetLowOptFrequency(1), 80.0);
    QCOMPARE(channel.GetHighOptFrequency(1), 16000.0);
    QCOMPARE(channel.GetSpeakerId(1), 7);
    QCOMPARE(channel.GetSpeakerType(1), 2);
    QCOMPARE(channel.GetSwitchDescription(1, 2), QStringLiteral("Cardioid"));
    QCOMPARE(channel.GetSwitchValues(1, 3), (QMap<int, QString> {{0, QStringLiteral("Far")}, {2, QStringLiteral("Near")}}));
    QVERIFY(channel.GetSwitchDescription(1, 9).isEmpty());
}

void tst_DspChannelDescriptor::unknownSetupKeysGiveNeutralResults()
{
    DspChannelDescriptor channel(ChannelMap(), nullptr);
    for (Tolvane::FrequencyRange range : {Tolvane::LogarithmicFrequencies, Tolvane::LinearFrequencies}) {
        QCOMPARE(channel.GetTransferFunction(range, 0, 99, {}, Tolvane::Sensitivity, true), Complex(0, 0));
        QCOMPARE(channel.GetSensitivity(range, 0, 99, Tolvane::Sensitivity), Complex(1, 0));
    }
    QCOMPARE(channel.GetDelay(99), 0.0);
    QCOMPARE(channel.GetMergeFrequency(99), 0.0);
    QCOMPARE(channel.GetLowOptFrequency(99), 0.0);
    QCOMPARE(channel.GetHighOptFrequency(99), 0.0);
    QCOMPARE(channel.GetSpeakerId(99), 0);
    QCOMPARE(channel.GetSpeakerType(99), 0);
    QVERIFY(channel.GetSwitchDescription(99, 1).isEmpty());
    QVERIFY(channel.GetSwitchValues(99, 1).isEmpty());
    QCOMPARE(channel.GetBalloonDataKey(99, {{1, 1}}), QStringLiteral("default"));
}

void tst_DspChannelDescriptor::balloonDataKeys_data()
{
    QTest::addColumn<int>("setupKey");
    QTest::addColumn<SwitchStates>("switches");
    QTest::addColumn<QString>("expected");

    QTest::newRow("no switches") << 1 << QMap<int, int>() << QStringLiteral("default");
    QTest::newRow("switch without balloon data") << 1 << QMap<int, int> {{2, 1}} << QStringLiteral("default");
    QTest::newRow("switch 1 on") << 1 << QMap<int, int> {{1, 1}} << QStringLiteral("cpl");
    QTest::newRow("switch 1 off") << 1 << QMap<int, int> {{1, 0}} << QStringLiteral("full");
    QTest::newRow("highest switch decides") << 1 << QMap<int, int> {{1, 1}, {3, 2}} << QStringLiteral("near");
    QTest::newRow("value without entry is empty") << 1 << QMap<int, int> {{1, 1}, {3, 0}} << QString();
    QTest::newRow("setup without balloon data") << 3 << QMap<int, int> {{1, 1}} << QStringLiteral("default");
}

void tst_DspChannelDescriptor::balloonDataKeys()
{
    QFETCH(int, setupKey);
    QFETCH(SwitchStates, switches);
    QFETCH(QString, expected);
    DspChannelDescriptor channel(ChannelMap(), nullptr);
    QCOMPARE(channel.GetBalloonDataKey(setupKey, switches), expected);
}

void tst_DspChannelDescriptor::transferFunctionOfASetup()
{
    DspChannelDescriptor channel(ChannelMap(), nullptr);
    // Setup 3: +6 dB inverted, 1 ms. At 250 Hz (log index 92) the delay is a quarter turn.
    const Complex h = channel.GetTransferFunction(Tolvane::LogarithmicFrequencies, 92, 3, {}, Tolvane::NoSensitivity, false);
    LPSDK_COMPARE_COMPLEX(h, Complex(0, 1.9952623149688795), 1e-12);
    // Setup 1 has three measured sensitivity values; the first is 94 dB at 180 degrees.
    const Complex s = channel.GetSensitivity(Tolvane::LogarithmicFrequencies, 0, 1, Tolvane::Sensitivity);
    LPSDK_COMPARE_COMPLEX(s, Complex(-2e-5 * std::pow(10.0, 94.0 / 20.0), 0), 1e-6);
    QCOMPARE(channel.GetSensitivity(Tolvane::LinearFrequencies, 0, 1, Tolvane::Sensitivity), Complex(1, 0));
}

void tst_DspChannelDescriptor::castsThroughTheInterfaceId()
{
    DspChannelDescriptor channel(QVariantMap(), nullptr);
    QObject *object = &channel;
    QCOMPARE(qobject_cast<DspChannelDescriptor_Interface *>(object), static_cast<DspChannelDescriptor_Interface *>(&channel));
    QVERIFY(object->qt_metacast("com.norvik.Tolvane.AmplifierChannelDescriptor_Interface/1.0"));
    QVERIFY(object->qt_metacast("DspChannelDescriptor_Interface"));
    QVERIFY(!object->qt_metacast("com.norvik.Tolvane.DspChannelDescriptor_Interface/1.0"));
}

void tst_DspChannelDescriptor::equality()
{
    const DspChannelDescriptor a(ChannelMap(), nullptr);
    const DspChannelDescriptor b(ChannelMap(), nullptr);
    QVERIFY(a == b);

    QVariantMap renamed = ChannelMap();
    renamed.insert(QStringLiteral("name"), QStringLiteral("D20"));
    QVERIFY(!(a == DspChannelDescriptor(renamed, nullptr)));

    QVariantMap otherDefault = ChannelMap();
    otherDefault.insert(QStringLiteral("defaultControllerSetup"), 1);
    QVERIFY(!(a == DspChannelDescriptor(otherDefault, nullptr)));

    QVariantMap otherFile = ChannelMap();
    otherFile.insert(QStringLiteral("controllerSetups"),
                     QVariantMap {{QStringLiteral("1"), QStringLiteral("full_setup.json")},
                                  {QStringLiteral("3"), QStringLiteral("full_setup.json")},
                                  {QStringLiteral("abc"), QStringLiteral("gain_delay.json")}});
    QVERIFY(!(a == DspChannelDescriptor(otherFile, nullptr)));

    QVariantMap otherKey = ChannelMap();
    otherKey.insert(QStringLiteral("controllerSetups"),
                    QVariantMap {{QStringLiteral("1"), QStringLiteral("full_setup.json")},
                                 {QStringLiteral("4"), QStringLiteral("gain_delay.json")},
                                 {QStringLiteral("abc"), QStringLiteral("gain_delay.json")}});
    QVERIFY(!(a == DspChannelDescriptor(otherKey, nullptr)));

    // A setter changes a compared member of one setup.
    DspChannelDescriptor c(ChannelMap(), nullptr);
    QVERIFY(a == c);
    c.GetLoudspeakerSetups().value(3)->SetDelay(0.5);
    QVERIFY(!(a == c));
}

QTEST_GUILESS_MAIN(tst_DspChannelDescriptor)
#include "tst_dspchanneldescriptor.moc"
