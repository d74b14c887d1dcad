// SPDX-License-Identifier: MIT
// Coverage prediction against closed forms (distance law, coherent sums, a delayed pair, air
// absorption tables), the fast field against the plain loop, array hanging, and bad scenes.
#include "LpsdkRun.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>
#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdkPrediction.h>

#include <QJsonArray>
#include <QTest>

#include <cmath>
#include <stdexcept>

namespace {

// One receiver level per band of a scene given as JSON.
SoundField predict(const QByteArray &json)
{
    return CoveragePredictor(SceneFile::Parse(json)).Compute(1);
}

QByteArray source(double x, double delayMs = 0.0)
{
    return QStringLiteral(R"({"loudspeaker": "DS-C5", "position": [%1, 0, 0], "delay_ms": %2})").arg(x).arg(delayMs).toUtf8();
}

} // namespace

class tst_Prediction : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void distanceLaw();
    void coincidentSourcesAddCoherently();
    void delayedPair_data();
    void delayedPair();
    void airAbsorption_data();
    void airAbsorption();
    void fastFieldEqualsPlainLoop();
    void straightColumnWithoutSplay();
    void badScenes_data();
    void badScenes();
    void lpsdkPredictJson();
};

void tst_Prediction::initTestCase()
{
    PluginProvider &provider = PluginProvider::GetInstance();
    provider.SetBalloonDataReadMode(SourcePointDescriptor_Interface::Synchronous);
    provider.LoadPlugin(QStringLiteral("libdemoseries"));
    QVERIFY(provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(QStringLiteral("DS-C5")));
}

void tst_Prediction::distanceLaw()
{
    const SoundField field = predict(R"({"bands": [1000, 4000], "sources": [)" + source(0) + R"(],
        "receivers": {"points": [[1, 0, 0], [2, 0, 0], [4, 0, 0], [8, 0, 0]]}})");
    for (int band = 0; band < 2; ++band) {
        for (int r = 1; r < 4; ++r)
            QVERIFY2(std::abs(field.GetLevel(r - 1, band) - field.GetLevel(r, band) - 20.0 * std::log10(2.0)) < 1e-4, qPrintable(QString::number(r)));
    }
}

void tst_Prediction::coincidentSourcesAddCoherently()
{
    QByteArrayList sixteen(16, source(0));
    const QByteArray receivers = R"(, "receivers": {"points": [[3, 1, 0.5]]}})";
    const SoundField one = predict(R"({"bands": "octave", "sources": [)" + source(0) + "]" + receivers);
    const SoundField many = predict(R"({"bands": "octave", "sources": [)" + sixteen.join(',') + "]" + receivers);
    for (int band = 0; band < one.GetBandCount(); ++band)
        QVERIFY(std::abs(many.GetLevel(0, band) - one.GetLevel(0, band) - 20.0 * std::log10(16.0)) < 1e-3);
}

void tst_Prediction::delayedPair_data()
{
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("delayMs");
    QTest::newRow("1 kHz, 0.1 ms") << 1000.0 << 0.1;
    QTest::newRow("1 kHz, 0.25 ms: +3 dB") << 1000.0 << 0.25;
    QTest::newRow("2 kHz, 0.2 ms") << 2000.0 << 0.2;
    QTest::newRow("500 Hz, 0.9 ms") << 500.0 << 0.9;
}

void tst_Prediction::delayedPair()
{
    QFETCH(double, frequency);
    QFETCH(double, delayMs);
    const QByteArray band = QByteArray::number(frequency);
    const QByteArray receivers = R"(, "receivers": {"points": [[4, 0, 0]]}})";
    const SoundField one = predict(R"({"bands": [)" + band + R"(], "sources": [)" + source(0) + "]" + receivers);
    const SoundField pair = predict(R"({"bands": [)" + band + R"(], "sources": [)" + source(0) + ',' + source(0, delayMs) + "]" + receivers);
    const double f = one.GetFrequencies().at(0); // the grid point nearest the band
    const double expected = 20.0 * std::log10(2.0 * std::abs(std::cos(M_PI * f * delayMs / 1000.0)));
    QVERIFY2(std::abs(pair.GetLevel(0, 0) - one.GetLevel(0, 0) - expected) < 0.01, qPrintable(QString::number(pair.GetLevel(0, 0) - one.GetLevel(0, 0))));
}

void tst_Prediction::airAbsorption_data()
{
    // dB/km at the exact third-octave midbands, as tabulated from the standard's formulas.
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("temperature");
    QTest::addColumn<double>("humidity");
    QTest::addColumn<double>("decibelsPerKm");
    QTest::newRow("1 kHz, 10 C, 70 %") << 1000.0 << 10.0 << 70.0 << 3.7;
    QTest::newRow("4 kHz, 10 C, 70 %") << 1000.0 * std::pow(10.0, 0.6) << 10.0 << 70.0 << 32.8;
    QTest::newRow("8 kHz, 20 C, 70 %") << 1000.0 * std::pow(10.0, 0.9) << 20.0 << 70.0 << 76.6;
    QTest::newRow("2 kHz, 15 C, 20 %") << 1000.0 * std::pow(10.0, 0.3) << 15.0 << 20.0 << 28.2;
    QTest::newRow("500 Hz, 20 C, 70 %") << 1000.0 * std::pow(10.0, -0.3) << 20.0 << 70.0 << 2.8;
}

void tst_Prediction::airAbsorption()
{
    QFETCH(double, frequency);
    QFETCH(double, temperature);
    QFETCH(double, humidity);
    QFETCH(double, decibelsPerKm);
    const double computed = 1000.0 * AirAbsorption::DecibelsPerMetre(frequency, temperature, humidity, 101.325);
    QVERIFY2(std::abs(computed - decibelsPerKm) <= 0.05 + 0.005 * decibelsPerKm, qPrintable(QString::number(computed)));
}

void tst_Prediction::fastFieldEqualsPlainLoop()
{
    const PredictionScene scene = SceneFile::Parse(R"({"air": {}, "sources": [{"loudspeaker": "DS-M12", "position": [1, 3, 0.3], "yaw_deg": -20, "pitch_deg": 30, "roll_deg": 10, "mounting": "stacked"}],
        "arrays": [{"rigging": "DS-L12 Frame", "loudspeaker": "DS-L12", "count": 4, "position": [0, 0, 6], "yaw_deg": 15, "top_pitch_deg": -3, "splay_deg": [1, 3, 7.5]}],
        "receivers": {"plane": {"origin": [-5, -8, 1.2], "u": [1.3, 0.1, 0], "v": [0, 1.7, 0.05], "nu": 17, "nv": 11}}})");
    const CoveragePredictor predictor(scene);
    const SoundField fast = predictor.Compute(2);
    const SoundField plain = predictor.ComputeReference();
    double top = -INFINITY;
    for (qsizetype r = 0; r < plain.GetReceiverCount(); ++r) {
        for (int b = 0; b < plain.GetBandCount(); ++b)
            top = std::max(top, plain.GetLevel(r, b));
    }
    int compared = 0;
    for (qsizetype r = 0; r < plain.GetReceiverCount(); ++r) {
        for (int b = 0; b < plain.GetBandCount(); ++b) {
            if (plain.GetLevel(r, b) < top - 40.0)
                continue;
            QVERIFY2(std::abs(fast.GetLevel(r, b) - plain.GetLevel(r, b)) <= 0.01, qPrintable(QStringLiteral("receiver %1, band %2").arg(r).arg(b)));
            ++compared;
        }
    }
    QVERIFY(compared > 17 * 11 * 10);
}

void tst_Prediction::straightColumnWithoutSplay()
{
    const CoveragePredictor predictor(SceneFile::Parse(R"({"arrays": [{"rigging": "DS-L12 Frame", "loudspeaker": "DS-L12", "count": 5,
        "position": [2, 1, 9], "top_pitch_deg": 0, "splay_deg": [0, 0, 0, 0]}], "receivers": {"points": [[20, 0, 1]]}})"));
    const QList<PlacedSource> &sources = predictor.GetSources();
    QCOMPARE(sources.size(), 5);
    const double height = PluginProvider::GetInstance().GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(QStringLiteral("DS-L12"))->GetSize().height();
    for (qsizetype i = 0; i < sources.size(); ++i) {
        QCOMPARE(sources.at(i).front, (std::array<double, 3>{1.0, 0.0, 0.0}));
        QCOMPARE(sources.at(i).position[0], sources.at(0).position[0]);
        QCOMPARE(sources.at(i).position[1], 1.0);
        QVERIFY(std::abs(sources.at(0).position[2] - sources.at(i).position[2] - double(i) * height) < 1e-12);
    }
}

void tst_Prediction::badScenes_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("message");
    const QByteArray point = R"("receivers": {"points": [[5, 0, 0]]})";
    QTest::newRow("not JSON") << QByteArray("{\n  \"sources\": [,]\n}") << QStringLiteral("line 2, column 16: illegal value");
    QTest::newRow("unknown key") << R"({"sources": [{"loudspeaker": "DS-C5", "position": [0, 0, 0]}], "colour": 1, )" + point + "}"
                                 << QStringLiteral("scene: unknown key \"colour\" (known: speed_of_sound_m_s, air, bands, sources, arrays, receivers)");
    QTest::newRow("unknown loudspeaker") << R"({"sources": [{"loudspeaker": "DS-X1", "position": [0, 0, 0]}], )" + point + "}"
                                         << QStringLiteral("sources[0].loudspeaker: \"DS-X1\" is not a registered loudspeaker");
    QTest::newRow("pitch out of range") << R"({"sources": [{"loudspeaker": "DS-C5", "position": [0, 0, 0], "pitch_deg": 100}], )" + point + "}"
                                        << QStringLiteral("sources[0].pitch_deg: 100 is not a number in [-90, 90]");
    QTest::newRow("receiver on a source") << QByteArray(R"({"sources": [{"loudspeaker": "DS-C5", "position": [5, 0, 0]}], )" + point + "}")
                                          << QStringLiteral("receivers: receiver 0 (5, 0, 0) lies on a source");
    QTest::newRow("splay not allowed") << R"({"arrays": [{"rigging": "DS-L12 Frame", "loudspeaker": "DS-L12", "count": 2, "position": [0, 0, 9], "splay_deg": [6]}], )" + point + "}"
                                       << QStringLiteral("arrays[0].splay_deg[0]: 6 is not a splay angle of \"DS-L12\" (allowed: 0, 1, 2, 3, 4, 5, 7.5, 10)");
    QTest::newRow("splay count") << R"({"arrays": [{"rigging": "DS-L12 Frame", "loudspeaker": "DS-L12", "count": 3, "position": [0, 0, 9], "splay_deg": [1]}], )" + point + "}"
                                 << QStringLiteral("arrays[0].splay_deg: [1] holds 1 angles; 3 cabinets need 2");
    QTest::newRow("unknown setup") << R"({"sources": [{"loudspeaker": "DS-C5", "position": [0, 0, 0], "setup": 77}], )" + point + "}"
                                   << QStringLiteral("sources[0].setup: 77 is not a setup of \"DS-C5\"");
}

void tst_Prediction::badScenes()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, message);
    try {
        CoveragePredictor predictor(SceneFile::Parse(json));
        QFAIL("no error");
    } catch (const std::invalid_argument &error) {
        QVERIFY2(QString::fromStdString(error.what()).startsWith(message), error.what());
    }
}

void tst_Prediction::lpsdkPredictJson()
{
    const Run run = lpsdk({QStringLiteral("predict"), QStringLiteral(LPSDK_LINE_ARRAY_SCENE), QStringLiteral("--json"), QStringLiteral("--quiet")});
    QCOMPARE(run.status, 0);
    const QJsonObject json = run.json();
    QCOMPARE(json.value(QStringLiteral("frequencies_hz")).toArray().size(), 26);
    QCOMPARE(json.value(QStringLiteral("sources")).toArray().size(), 12);
    QCOMPARE(json.value(QStringLiteral("receivers")).toArray().size(), 77 * 61);
    QCOMPARE(json.value(QStringLiteral("spl_db")).toArray().at(0).toArray().size(), 26);
    QCOMPARE(json.value(QStringLiteral("a_weighted_db")).toArray().size(), 77 * 61);
    const Run bad = lpsdk({QStringLiteral("predict"), QStringLiteral(LPSDK_LINE_ARRAY_SCENE), QStringLiteral("--band"), QStringLiteral("1100")});
    QCOMPARE(bad.status, 2);
    QVERIFY2(bad.err.contains("--band 1100 is not a band of the scene"), bad.err);
}

QTEST_GUILESS_MAIN(tst_Prediction)
#include "tst_prediction.moc"
