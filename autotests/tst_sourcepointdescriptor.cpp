// SPDX-License-Identifier: MIT
#include "SourcePointDescriptor.h"

#include "DspChannelDescriptor.h"

#include "BalloonFixtures.h"
#include "TestHelpers.h"

#include <QPointer>
#include <QThread>
#include <QThreadPool>

#include <memory>
#include <stdexcept>

using SwitchValues = QMap<int, QString>;

namespace {

QVariantMap entry(const QVariantMap &balloonData, const QVariantMap &extra = {})
{
    QVariantMap map = extra;
    map.insert(QStringLiteral("balloonData"), balloonData);
    return map;
}

QVariantMap single(const QString &file)
{
    return entry({{QStringLiteral("default"), file}});
}

// A point whose balloon files are read synchronously.
std::unique_ptr<SourcePointDescriptor> loaded(const QVariantMap &map)
{
    auto point = std::make_unique<SourcePointDescriptor>();
    point->Read(map);
    point->ReadBalloonData(SourcePointDescriptor::Synchronous);
    return point;
}

// Counts BalloonDataChanged() on the test's thread (queued when emitted from a worker).
struct SignalCounter {
    QObject context;
    int count = 0;
    explicit SignalCounter(SourcePointDescriptor &point)
    {
        QObject::connect(&point, &SourcePointDescriptor::BalloonDataChanged, &context, [this] { ++count; });
    }
};

} // namespace

class tst_SourcePointDescriptor : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void readsPlacementPerMounting_data();
    void readsPlacementPerMounting();
    void dspChannel_data();
    void dspChannel();
    void balloonFileCheck_data();
    void balloonFileCheck();
    void balloonDataKey_data();
    void balloonDataKey();
    void synchronousRead();
    void lookup_data();
    void lookup();
    void phaseCancellation_data();
    void phaseCancellation();
    void normalAngle();
    void flushMount_data();
    void flushMount();
    void twoKeysWithDifferentGrids();
    void readModes();
    void asynchronousRead();
    void hostileFiles();
    void destructorWaitsForBackgroundRead();
};

void tst_SourcePointDescriptor::readsPlacementPerMounting_data()
{
    QTest::addColumn<int>("mounting");
    QTest::addColumn<Point>("origin");
    QTest::addColumn<QList<double>>("vertical");

    QTest::newRow("own entry") << int(Tolvane::Flown) << Point(0.1, 0.2, 0.3) << QList<double>{1.0, 2.0};
    QTest::newRow("no entry: default") << int(Tolvane::StackedCart) << Point(1, 0, -0.5) << QList<double>{-5.0};
    QTest::newRow("invalid mounting: default") << int(Tolvane::Invalid) << Point(1, 0, -0.5) << QList<double>{-5.0};
}

void tst_SourcePointDescriptor::readsPlacementPerMounting()
{
    QFETCH(int, mounting);
    const QVariantMap map{
        {"name", "HF"},
        {"origin", QVariantMap{{"default", QVariantList{1000, 0, -500}}, {"flown", QVariantMap{{"x", 100}, {"y", 200}, {"z", 300}}}}},
        {"center", QVariantMap{{"flown", QVariantList{10, 20, 30}}}},
        {"verticalAngles", QVariantMap{{"default", QVariantList{-5}}, {"flown", QVariantList{1, "2"}}}},
    };
    SourcePointDescriptor point;
    QVERIFY(point.Read(map));
    const auto m = Tolvane::Mounting(mounting);
    QCOMPARE(point.GetName(), QStringLiteral("HF"));
    QTEST(point.GetOrigin(m), "origin");
    QTEST(point.GetVerticalAngles(m), "vertical");
    // No "default" at all: a zero point and an empty list.
    QCOMPARE(point.GetCenter(m), m == Tolvane::Flown ? Point(0.01, 0.02, 0.03) : Point());
    QCOMPARE(point.GetNormalAngles(m), QList<double>());
    QVERIFY(!point.HasFlushMountAttenuation());
    QCOMPARE(point.GetDefaultAmplifier(), QStringLiteral("D80"));
}

void tst_SourcePointDescriptor::dspChannel_data()
{
    QTest::addColumn<int>("mounting");
    QTest::addColumn<QString>("cardioidDescription");
    QTest::addColumn<SwitchValues>("presetValues");

    // Flown uses setup 1 (full_setup.json), stacked setup 3 (no switches); other mountings
    // have default key 0, which no setup carries.
    QTest::newRow("flown: default setup 1") << int(Tolvane::Flown) << "Cardioid" << SwitchValues{{0, "Far"}, {2, "Near"}};
    QTest::newRow("no default setup") << int(Tolvane::StackedCart) << QString() << SwitchValues();
}

void tst_SourcePointDescriptor::dspChannel()
{
    QFETCH(int, mounting);
    SourcePointDescriptor point;
    point.Read({{"name", "LF"},
                {"defaultControllerSetups", QVariantMap{{"flown", 1}, {"stacked", 3}}},
                {"controllerSetups", QVariantMap{{"1", "full_setup.json"}, {"3", "gain_delay.json"}}}});
    DspChannelDescriptor *channel = point.GetDspChannelDescriptor(QStringLiteral("D80"));
    QVERIFY(channel);
    QCOMPARE(channel->parent(), &point);
    QCOMPARE(channel->GetName(), QStringLiteral("LF")); // read from the source point's own map
    QCOMPARE(point.GetDspChannelDescriptor(QStringLiteral("D20")), channel);
    QCOMPARE(point.GetSpeakerIds(), (QList<int>{7, 3}));

    const auto m = Tolvane::Mounting(mounting);
    QTEST(point.GetSwitchDescription(2, m), "cardioidDescription");
    QTEST(point.GetSwitchValues(3, m), "presetValues");

    // Reading again replaces the channel.
    const QPointer<DspChannelDescriptor> old(channel);
    point.Read({});
    QVERIFY(old.isNull());
    QVERIFY(point.GetDspChannelDescriptor(QStringLiteral("D80")));
    QVERIFY(point.GetSpeakerIds().isEmpty());
}

void tst_SourcePointDescriptor::balloonFileCheck_data()
{
    QTest::addColumn<QVariantMap>("balloonData");
    QTest::addColumn<QStringList>("warnings");
    QTest::addColumn<bool>("hasFiles");

    QTest::newRow("existing file") << QVariantMap{{"default", "linear_none.bin"}} << QStringList() << true;
    QTest::newRow("empty file does not count") << QVariantMap{{"default", "empty.bin"}} << QStringList() << false;
    QTest::newRow("missing file warns and reading goes on")
        << QVariantMap{{"a", "nothere.bin"}, {"b", "wide.bin"}, {"c", "gone.bin"}}
        << QStringList{"Balloon data file not found: :/Resources/nothere.bin",
                       "Balloon data file not found: :/Resources/gone.bin"}
        << true;
}

void tst_SourcePointDescriptor::balloonFileCheck()
{
    QFETCH(QVariantMap, balloonData);
    QFETCH(QStringList, warnings);
    for (const QString &warning : warnings)
        QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    SourcePointDescriptor point;
    QVERIFY(point.Read(entry(balloonData)));
    QTEST(point.HasBalloonFiles(), "hasFiles");
    // Read() reads no balloon: nothing to look up yet.
    QVERIFY(!point.IsBalloonDataLoaded());
    QCOMPARE(point.GetNH(), 0);
    QVERIFY(point.GetFrequencyVector().isEmpty());
    QCOMPARE(point.GetBalloonData("default", 100.0, 0.0, 0.0, false), Complex(0, 0));
    QVERIFY(point.GetRawBalloonData("default", false) == nullptr && !point.GetBalloon("default"));
}

void tst_SourcePointDescriptor::balloonDataKey_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one decimal, fixed notation") << 12.34 << "12.3";
    QTest::newRow("rounds to one decimal") << 12.25001 << "12.3";
    QTest::newRow("absent key") << 7.0 << "default";
    QTest::newRow("null value counts as absent") << 5.0 << "default";
}

void tst_SourcePointDescriptor::balloonDataKey()
{
    QFETCH(double, value);
    SourcePointDescriptor point;
    point.Read(entry({{"12.3", "linear_none.bin"}, {"5.0", QVariant()}}));
    QTEST(point.GetBalloonDataKey(value), "expected");
}

void tst_SourcePointDescriptor::synchronousRead()
{
    SourcePointDescriptor point;
    SignalCounter signal(point);
    point.Read(single("linear_none.bin"));
    point.ReadBalloonData(SourcePointDescriptor::Synchronous);
    QCOMPARE(signal.count, 1);
    QVERIFY(point.IsBalloonDataLoaded());
    QCOMPARE(QList<double>({double(point.GetNV()), point.GetThetaStepWidth(), point.GetPhiStepWidth()}), QList<double>({8, 10, 45}));
    QCOMPARE(point.GetBalloonDataFilename("default"), QStringLiteral("linear_none.bin"));

    const auto balloon = point.GetBalloon("default");
    QVERIFY(balloon);
    QCOMPARE(QList<double>({double(balloon->getThetaStepWidth()), double(balloon->getPhiStepWidth()), double(balloon->getNH()),
                            double(balloon->getNV()), balloon->getFirstFrequency(), balloon->getLastFrequency()}),
             QList<double>({10, 45, 3, 8, 100, 400}));
    QCOMPARE(balloon->getData(), point.GetRawBalloonData("default", false));
}

void tst_SourcePointDescriptor::lookup_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("theta");
    QTest::addColumn<double>("phi");
    QTest::addColumn<double>("expected");

    // Expected: 1 + 100 f + 10 theta/10 + phiIndex (see BalloonFixtures.h), by hand.
    const QString none = QStringLiteral("linear_none.bin");
    QTest::newRow("inside a cell") << none << 200.0 << 15.0 << 67.5 << 117.5;
    QTest::newRow("theta on the last grid line") << none << 200.0 << 20.0 << 0.0 << 121.0;
    // Phi 350 is index 7.78: the neighbour of column 7 is the first value of the next row (11).
    QTest::newRow("last phi column is not wrapped") << none << 100.0 << 0.0 << 350.0 << 8.0 + 3.0 * (350.0 / 45.0 - 7.0);
    QTest::newRow("negative phi wraps") << none << 100.0 << 0.0 << -90.0 << 7.0;
    QTest::newRow("frequency half-way takes the lower") << none << 150.0 << 0.0 << 0.0 << 1.0;
    // A row past the last theta reads the next frequency's first row.
    QTest::newRow("theta past the last row") << none << 200.0 << 30.0 << 0.0 << 201.0;
    QTest::newRow("theta one row below zero") << none << 200.0 << -10.0 << 0.0 << 21.0;
    // Outside the table the lookup throws (expected NaN).
    const double throws = qQNaN();
    QTest::newRow("theta past the last row of the last frequency") << none << 400.0 << 30.0 << 0.0 << throws;
    QTest::newRow("negative theta at the first frequency") << none << 100.0 << -10.0 << 0.0 << throws;
    QTest::newRow("frequency too far from the vector") << none << 2e10 << 0.0 << 0.0 << throws;
    QTest::newRow("infinite theta") << none << 100.0 << qInf() << 0.0 << throws;
    QTest::newRow("half: 200 reads 160") << "linear_half.bin" << 100.0 << 0.0 << 200.0 << 1.0 + 160.0 / 45.0;
    QTest::newRow("half rotated: 100 reads 170") << "linear_halfrotated.bin" << 100.0 << 0.0 << 100.0 << 1.0 + 170.0 / 45.0;
    QTest::newRow("quarter: 300 reads 60") << "linear_quarter.bin" << 100.0 << 10.0 << 300.0 << 11.0 + 60.0 / 45.0;
    QTest::newRow("rotational: theta still interpolates") << "linear_rotational.bin" << 200.0 << 15.0 << 250.0 << 116.0;
}

void tst_SourcePointDescriptor::lookup()
{
    QFETCH(QString, file);
    QFETCH(double, frequency);
    QFETCH(double, theta);
    QFETCH(double, phi);
    QFETCH(double, expected);
    const auto point = loaded(single(file));
    if (std::isnan(expected)) {
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, point->GetBalloonData("default", frequency, theta, phi, false));
        return;
    }
    const Complex value = point->GetBalloonData("default", frequency, theta, phi, false);
    LPSDK_COMPARE_COMPLEX(value, Complex(expected, 0.0), 1e-4);
    // With no flush-mount data the flag changes nothing.
    QCOMPARE(point->GetBalloonData("default", frequency, theta, phi, true), value);
}

void tst_SourcePointDescriptor::phaseCancellation_data()
{
    QTest::addColumn<double>("theta");
    QTest::addColumn<double>("phi");
    QTest::addColumn<Complex>("expected");

    // Corners along phi: 1 at 0 degrees and 1 at 180 degrees (cancel.bin).
    QTest::newRow("half-way: modulus kept, phase of the nearer (upper) corner") << 0.0 << 5.0 << Complex(-1, 0);
    QTest::newRow("nearer the lower corner") << 0.0 << 4.0 << Complex(1, 0);
    QTest::newRow("loss under 1 percent keeps the sum") << 0.0 << 0.04 << Complex(0.992, 0);
    QTest::newRow("loss over 1 percent takes the corner") << 0.0 << 0.06 << Complex(1, 0);
    // Along theta: 1 at 0 degrees and 1 at 90 degrees; |sum| = 0.707 < 0.99.
    QTest::newRow("quadrature corners half-way take the upper") << 5.0 << 0.0 << Complex(0, 1);
    QTest::newRow("quadrature corners nearer the lower") << 4.0 << 0.0 << Complex(1, 0);
}

void tst_SourcePointDescriptor::phaseCancellation()
{
    QFETCH(double, theta);
    QFETCH(double, phi);
    QFETCH(Complex, expected);
    LPSDK_COMPARE_COMPLEX(loaded(single("cancel.bin"))->GetBalloonData("default", 1000.0, theta, phi, false), expected, 1e-6);
}

void tst_SourcePointDescriptor::normalAngle()
{
    const auto point = loaded(entry({{"default", "linear_none.bin"}}, {{"normalAngles", QVariantMap{{"default", QVariantList{20, 5}}, {"flown", QVariantList{-90}}}}}));
    QCOMPARE(point->GetPhiWithNormalAngle(350.0), 10.0);
    QCOMPARE(point->GetNormalAngles(Tolvane::Flown), QList<double>{-90.0});
    // 350 + 20 = 370 -> 10 degrees, index 0.22, whatever the mounting.
    LPSDK_COMPARE_COMPLEX(point->GetBalloonData("default", 100.0, 0.0, 350.0, false), Complex(1.0 + 10.0 / 45.0, 0), 1e-4);

    SourcePointDescriptor without;
    without.Read(entry({{"default", "linear_none.bin"}}, {{"normalAngles", QVariantMap{{"flown", QVariantList{30}}}}}));
    QCOMPARE(without.GetPhiWithNormalAngle(350.0), 350.0);
}

void tst_SourcePointDescriptor::flushMount_data()
{
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("theta");
    QTest::addColumn<double>("phi");
    QTest::addColumn<bool>("flushMount");
    QTest::addColumn<double>("expected");

    // flush.bin: k = 1 + 100 f + 10 t + p; column 0 holds phi index 1 (90 deg), column 1 index 3.
    QTest::newRow("below cut-on, 270") << 100.0 << 0.0 << 270.0 << true << 4.0;
    QTest::newRow("within 0.1 of 270") << 100.0 << 0.0 << 270.05 << true << 4.0;
    QTest::newRow("0.15 from 270 is column 0") << 100.0 << 0.0 << 269.85 << true << 2.0;
    QTest::newRow("arc sine above 1: theta 0 inside the limit") << 500.0 << 0.0 << 90.0 << true << 102.0;
    QTest::newRow("arc sine above 1: theta 30 attenuated") << 500.0 << 30.0 << 270.0 << true << 0.5 * 114.0;
    QTest::newRow("2000 Hz: every theta attenuated") << 2000.0 << 0.0 << 90.0 << true << 0.5 * 202.0;
    QTest::newRow("balloon table without the flag") << 2000.0 << 0.0 << 270.0 << false << 204.0;
}

void tst_SourcePointDescriptor::flushMount()
{
    QFETCH(double, frequency);
    QFETCH(double, theta);
    QFETCH(double, phi);
    QFETCH(bool, flushMount);
    QFETCH(double, expected);
    SourcePointDescriptor point;
    SignalCounter signal(point);
    point.Read(entry({{"default", "flush.bin"}}, {{"flushMountAttenuation", true}}));
    QVERIFY(point.HasFlushMountAttenuation());
    // The flag forces an immediate read whatever the mode.
    point.ReadBalloonData(SourcePointDescriptor::Asynchronous);
    QVERIFY(point.IsBalloonDataLoaded());
    QCOMPARE(signal.count, 1);
    LPSDK_COMPARE_COMPLEX(point.GetBalloonData("default", frequency, theta, phi, flushMount), Complex(expected, 0), 1e-4);
}

void tst_SourcePointDescriptor::twoKeysWithDifferentGrids()
{
    SourcePointDescriptor point;
    SignalCounter signal(point);
    point.Read(entry({{"default", "linear_none.bin"}, {"wide", "wide.bin"}}));
    point.ReadBalloonData(SourcePointDescriptor::Synchronous);
    QCOMPARE(signal.count, 2);
    // The grid of the last file read, in key order; each balloon object keeps its own file's grid.
    QCOMPARE(point.GetFrequencyVector(), (QList<double>{1000, 2000}));
    QCOMPARE(point.GetBalloon("default")->getNV(), 8);

    // Byte 0 of -40 .. 0 dB and -180 .. 180 degrees: 0.01 at -180 degrees.
    LPSDK_COMPARE_COMPLEX(Complex(point.GetRawBalloonData("wide", false)[0]), Complex(-0.01, 0), 1e-7);
    LPSDK_COMPARE_COMPLEX(Complex(point.GetRawBalloonData("wide", false)[1]), Complex(-1, 0), 1e-6);
    // An unknown key among several takes the first table.
    QCOMPARE(point.GetRawBalloonData("other", false), point.GetRawBalloonData("default", false));
    LPSDK_COMPARE_COMPLEX(point.GetBalloonData("wide", 1000.0, 30.0, 120.0, false), Complex(-1, 0), 1e-6);
}

void tst_SourcePointDescriptor::readModes()
{
    SourcePointDescriptor point;
    SignalCounter signal(point);
    point.Read(single("linear_none.bin"));
    QTest::ignoreMessage(QtWarningMsg, "Unexpected readBalloonDataMode = 7");
    point.ReadBalloonData(SourcePointDescriptor::ReadBalloonDataMode(7));
    QVERIFY(!point.IsBalloonDataLoaded());

    point.ReadBalloonData(SourcePointDescriptor::Synchronous);
    QVERIFY(point.IsBalloonDataLoaded());
    const std::complex<float> *table = point.GetRawBalloonData("default", false);
    // A table exists: neither mode reads again.
    point.ReadBalloonData(SourcePointDescriptor::Asynchronous);
    point.ReadBalloonData(SourcePointDescriptor::Synchronous);
    QCoreApplication::processEvents();
    QCOMPARE(signal.count, 1);
    QCOMPARE(point.GetRawBalloonData("default", false), table);
}

void tst_SourcePointDescriptor::asynchronousRead()
{
    const QVariantMap map = entry({{"default", "linear_none.bin"}, {"wide", "wide.bin"}});
    const auto sync = loaded(map);

    // Several points read at once; each must end with the same tables as the synchronous one.
    std::vector<std::unique_ptr<SourcePointDescriptor>> points;
    std::vector<std::unique_ptr<SignalCounter>> counters;
    for (int i = 0; i < 8; ++i) {
        points.push_back(std::make_unique<SourcePointDescriptor>());
        counters.push_back(std::make_unique<SignalCounter>(*points.back()));
        points.back()->Read(map);
        points.back()->ReadBalloonData(SourcePointDescriptor::Asynchronous);
        points.back()->ReadBalloonData(SourcePointDescriptor::Asynchronous); // already running: ignored
    }
    for (std::size_t i = 0; i < points.size(); ++i) {
        QTRY_COMPARE(counters[i]->count, 2);
        QVERIFY(points[i]->IsBalloonDataLoaded());
        for (const auto &[key, size] : {std::pair<const char *, int>("default", 3 * 3 * 8), std::pair<const char *, int>("wide", 2 * 2 * 3)}) {
            const std::complex<float> *table = points[i]->GetRawBalloonData(key, false);
            QVERIFY(std::equal(table, table + size, sync->GetRawBalloonData(key, false)));
        }
    }
    // Synchronous after asynchronous waits for the background read and reads nothing more.
    SourcePointDescriptor late;
    SignalCounter lateSignal(late);
    late.Read(single("linear_none.bin"));
    late.ReadBalloonData(SourcePointDescriptor::Asynchronous);
    late.ReadBalloonData(SourcePointDescriptor::Synchronous);
    QVERIFY(late.IsBalloonDataLoaded());
    QTRY_COMPARE(lateSignal.count, 1);
    QTest::qWait(20);
    QCOMPARE(lateSignal.count, 1);
}

void tst_SourcePointDescriptor::hostileFiles()
{
    for (const char *file : {"negative.bin", "absurd.bin"}) { // a negative count product; 10^12 values in 200 bytes
        SourcePointDescriptor point;
        point.Read(single(QLatin1String(file)));
        QVERIFY_THROWS_EXCEPTION(std::length_error, point.ReadBalloonData(SourcePointDescriptor::Synchronous));
        QVERIFY(!point.IsBalloonDataLoaded());
        QVERIFY(point.GetRawBalloonData("default", false) == nullptr);
    }

    // No frequencies: loaded, but every lookup lies outside the empty table.
    const auto empty = loaded(single("zero.bin"));
    QVERIFY(empty->IsBalloonDataLoaded());
    QVERIFY(empty->GetRawBalloonData("default", false) == nullptr);
    QCOMPARE(empty->GetBalloon("default")->getFirstFrequency(), 0.0);
    QVERIFY_THROWS_EXCEPTION(std::out_of_range, empty->GetBalloonData("default", 100.0, 0.0, 0.0, false));
    // No corner has a positive weight for a NaN direction: nothing is read.
    QCOMPARE(empty->GetBalloonData("default", 100.0, qQNaN(), 0.0, false), Complex(0, 0));

    // An infinite corner counts only where it has weight.
    const auto overflow = loaded(single("overflow.bin"));
    QCOMPARE(overflow->GetBalloonData("default", 1000.0, 0.0, 5.0, false), Complex(1, 0));
    QCOMPARE(overflow->GetBalloonData("default", 1000.0, 5.0, 5.0, false), Complex(qInf(), 0));

    // A good file, then a refused one: the worker must survive and the point ends unloaded.
    SourcePointDescriptor point;
    SignalCounter signal(point);
    point.Read(entry({{"a", "linear_none.bin"}, {"b", "negative.bin"}}));
    point.ReadBalloonData(SourcePointDescriptor::Asynchronous);
    QTRY_COMPARE(signal.count, 1);
    QTRY_VERIFY(!point.IsBalloonDataLoaded());

    // Only a refused file: no table, so a later synchronous read tries again and throws there.
    SourcePointDescriptor absurd;
    absurd.Read(single("absurd.bin"));
    absurd.ReadBalloonData(SourcePointDescriptor::Asynchronous);
    QVERIFY_THROWS_EXCEPTION(std::length_error, absurd.ReadBalloonData(SourcePointDescriptor::Synchronous));
}

void tst_SourcePointDescriptor::destructorWaitsForBackgroundRead()
{
    for (int i = 0; i < 20; ++i) {
        auto point = std::make_unique<SourcePointDescriptor>();
        point->Read(entry({{"a", "linear_none.bin"}, {"b", "flush.bin"}, {"c", i % 2 ? "negative.bin" : "wide.bin"}}));
        // Every fourth point is destroyed while its worker is surely inside the read: after the
        // first file, with two more to go. The others may go before the worker starts.
        std::atomic<bool> firstFileRead{false};
        if (i % 4 == 0) {
            connect(point.get(), &SourcePointDescriptor::BalloonDataChanged, point.get(),
                    [&firstFileRead] { firstFileRead.store(true); }, Qt::DirectConnection);
        }
        point->ReadBalloonData(SourcePointDescriptor::Asynchronous);
        while (i % 4 == 0 && !firstFileRead.load())
            QThread::yieldCurrentThread();
        point.reset(); // must wait; a sanitizer build reports any use after free
    }
    QThreadPool::globalInstance()->waitForDone();
}

QTEST_GUILESS_MAIN(tst_SourcePointDescriptor)
#include "tst_sourcepointdescriptor.moc"
