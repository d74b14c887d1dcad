// SPDX-License-Identifier: MIT
#include "DspChannelDescriptor.h"
#include "FrequencyVectors.h"
#include "LoudspeakerSetup.h"
#include "TestHelpers.h"

#include <QTest>

#include <cmath>
#include <thread>
#include <vector>

using SwitchStates = QMap<int, int>;

namespace {

QVariantMap ChannelMap()
{
    return {{"name", "D80"},
            {"defaultControllerSetup", 3},
            {"controllerSetups", QVariantMap {{"1", "full_setup.json"}, {"3", "gain_delay.json"}, {"abc", "gain_delay.json"}}}};
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
    void unreadableSetupFilesLeaveEmptySetups();
    void perSetupQueries();
    void balloonDataKeys_data();
    void balloonDataKeys();
    void castsThroughTheInterfaceId();
    void equality();
};

void tst_DspChannelDescriptor::frequencyVectorsFirstUseFromThreads()
{
    // Several threads race for the first use of the 3-band list; all must see one complete list.
    const QList<double> *seen[8] = {};
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t)
        threads.emplace_back([&seen, t] { seen[t] = &FrequencyVectors::GetFrequencyVector(3); });
    for (std::thread &thread : threads)
        thread.join();
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
    QFETCH(double, first);
    QFETCH(double, last);

    const QList<double> &list = FrequencyVectors::GetFrequencyVector(bands);
    QCOMPARE(&list, &FrequencyVectors::GetFrequencyVector(bands));
    QTEST(int(list.size()), "count");
    QVERIFY(std::abs(list.first() - first) < 1e-9);
    QVERIFY(std::abs(list.last() - last) < 1e-9);
    if (bands == 3) {
        // Nominal band names where they differ from the exact thirds.
        QVERIFY(list.contains(163.0) && list.contains(1630.0) && !list.contains(160.0));
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
    QCOMPARE(channel.GetFrequencyVector(Tolvane::LogarithmicFrequencies), FrequencyVectors::GetFrequencyVector(24));
    const QList<double> linear = channel.GetFrequencyVector(Tolvane::LinearFrequencies);
    QCOMPARE(linear.size(), 1025);
    QCOMPARE(QList<double>({linear.first(), linear.at(1), linear.last()}), QList<double>({0.0, 5.859375, 6000.0}));
    QVERIFY(channel.GetFrequencyVector(static_cast<Tolvane::FrequencyRange>(2)).isEmpty());
}

void tst_DspChannelDescriptor::defaultSetups_data()
{
    QTest::addColumn<QVariantMap>("map");
    QTest::addColumn<QList<int>>("keys"); // by mounting value 0 … 6

    const auto perMounting = [](const QVariantMap &keys) { return QVariantMap {{"defaultControllerSetups", keys}}; };
    QTest::newRow("no defaults") << QVariantMap() << QList<int> {0, 0, 0, 0, 0, 0, 0};
    QTest::newRow("one key for every mounting, text converts") << QVariantMap {{"defaultControllerSetup", "12"}}
                                                               << QList<int> {12, 12, 12, 12, 12, 12, 12};
    QTest::newRow("per-mounting key names")
        << perMounting({{"flown", 1}, {"stacked", 2}, {"flown_horizontal", 3}, {"stacked_horizontal", 4}, {"stacked_cart", 5},
                        {"flown_vertical_install", 6}, {"flown_vertical_pullback", 7}})
        << QList<int> {1, 2, 3, 4, 5, 6, 7};
    QVariantMap both = perMounting({{"flown", 2}});
    both.insert("defaultControllerSetup", 3);
    QTest::newRow("per-mounting map wins, missing names are 0") << both << QList<int> {2, 0, 0, 0, 0, 0, 0};
    QTest::newRow("mounting texts are not key names")
        << perMounting({{"flown_install", 9}, {"flown_pullback", 9}, {"stacked", 1}}) << QList<int> {0, 1, 0, 0, 0, 0, 0};
    both = perMounting({});
    both.insert("defaultControllerSetup", 4);
    QTest::newRow("empty per-mounting map falls back") << both << QList<int> {4, 4, 4, 4, 4, 4, 4};
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

void tst_DspChannelDescriptor::unreadableSetupFilesLeaveEmptySetups()
{
    QTest::ignoreMessage(QtWarningMsg, "Json file not found: :/Resources/missing.json");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^File error code: \\d+$")));
    QTest::ignoreMessage(QtWarningMsg, "JSON parse error in file: :/Resources/invalid.json");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Error: .+")));
    DspChannelDescriptor channel({{"controllerSetups", QVariantMap {{"2", "missing.json"}, {"5", "invalid.json"}}}}, nullptr);

    QCOMPARE(channel.GetLoudspeakerSetups().keys(), QList<int>({2, 5}));
    QVERIFY(channel.GetLoudspeakerSetups().value(5)->GetName().isEmpty());
    // An empty setup still transfers: unity gain, no delay, no filters.
    QCOMPARE(channel.GetTransferFunction(Tolvane::LogarithmicFrequencies, 10, 2, {}, Tolvane::NoSensitivity, false), Complex(1, 0));
    QCOMPARE(channel.GetSpeakerIds(), QList<int>({0, 0}));
}

void tst_DspChannelDescriptor::perSetupQueries()
{
    QObject owner;
    DspChannelDescriptor &channel = *new DspChannelDescriptor(ChannelMap(), &owner);
    QCOMPARE(channel.GetName(), QStringLiteral("D80"));
    const QMap<int, LoudspeakerSetup *> setups = channel.GetLoudspeakerSetups();
    QCOMPARE(setups.keys(), QList<int>({0, 1, 3})); // "abc" is key 0
    QCOMPARE(setups.value(1)->parent(), &channel);
    QCOMPARE(setups.value(3)->GetName(), QStringLiteral("Sub"));
    QCOMPARE(channel.GetSpeakerIds(), QList<int>({3, 7, 3}));

    const auto numbers = [&channel](int key) {
        return QList<double> {channel.GetDelay(key), channel.GetMergeFrequency(key), channel.GetLowOptFrequency(key),
                              channel.GetHighOptFrequency(key), double(channel.GetSpeakerId(key)), double(channel.GetSpeakerType(key))};
    };
    QCOMPARE(numbers(1), QList<double>({0.0025, 120.0, 80.0, 16000.0, 7.0, 2.0}));
    QCOMPARE(channel.GetDelay(3), 0.001);
    QCOMPARE(channel.GetSwitchDescription(1, 2), QStringLiteral("Cardioid"));
    QCOMPARE(channel.GetSwitchValues(1, 3), (QMap<int, QString> {{0, QStringLiteral("Far")}, {2, QStringLiteral("Near")}}));
    // Setup 3: +6 dB inverted, 1 ms; at 250 Hz (log index 92) the delay is a quarter turn.
    LPSDK_COMPARE_COMPLEX(channel.GetTransferFunction(Tolvane::LogarithmicFrequencies, 92, 3, {}, Tolvane::NoSensitivity, false),
                          Complex(0, 1.9952623149688795), 1e-12);
    // Setup 1's first measured sensitivity is 94 dB at 180 degrees.
    LPSDK_COMPARE_COMPLEX(channel.GetSensitivity(Tolvane::LogarithmicFrequencies, 0, 1, Tolvane::Sensitivity),
                          Complex(-2e-5 * std::pow(10.0, 94.0 / 20.0), 0), 1e-6);

    // An unknown setup key: zeros, empty texts, no transfer at all but a neutral sensitivity.
    QCOMPARE(numbers(99), QList<double>(6, 0.0));
    QVERIFY(channel.GetSwitchDescription(99, 1).isEmpty() && channel.GetSwitchValues(99, 1).isEmpty());
    QCOMPARE(channel.GetBalloonDataKey(99, {{1, 1}}), QStringLiteral("default"));
    for (Tolvane::FrequencyRange range : {Tolvane::LogarithmicFrequencies, Tolvane::LinearFrequencies}) {
        QCOMPARE(channel.GetTransferFunction(range, 0, 99, {}, Tolvane::Sensitivity, true), Complex(0, 0));
        QCOMPARE(channel.GetSensitivity(range, 0, 99, Tolvane::Sensitivity), Complex(1, 0));
    }
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
    QVERIFY(a == DspChannelDescriptor(ChannelMap(), nullptr));
    const auto differs = [&a](const QString &key, const QVariant &value) {
        QVariantMap map = ChannelMap();
        map.insert(key, value);
        return !(a == DspChannelDescriptor(map, nullptr));
    };
    QVERIFY(differs("name", "D20"));
    QVERIFY(differs("defaultControllerSetup", 1));
    QVERIFY(differs("controllerSetups", QVariantMap {{"1", "full_setup.json"}, {"3", "full_setup.json"}, {"abc", "gain_delay.json"}}));
    QVERIFY(differs("controllerSetups", QVariantMap {{"1", "full_setup.json"}, {"4", "gain_delay.json"}, {"abc", "gain_delay.json"}}));

    // A setter changes a compared member of one setup.
    DspChannelDescriptor c(ChannelMap(), nullptr);
    c.GetLoudspeakerSetups().value(3)->SetDelay(0.5);
    QVERIFY(!(a == c));
}

QTEST_GUILESS_MAIN(tst_DspChannelDescriptor)
#include "tst_dspchanneldescriptor.moc"
