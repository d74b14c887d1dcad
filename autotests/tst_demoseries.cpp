// SPDX-License-Identifier: MIT
// The demo series as a host sees it: loaded from the plugin folder, every balloon read, and the
// balloons checked against the physical models they were generated from and the measured CSV.
#include "LoudspeakerDescriptor.h"
#include "LoudspeakerDescriptorProvider.h"
#include "PluginProvider.h"
#include "RiggingHardwareDescriptor.h"
#include "RiggingHardwareDescriptorProvider.h"
#include "SourcePointDescriptor.h"

#include "TestHelpers.h"

#include <QFile>
#include <QLineF>

#include <cmath>

namespace {

SourcePointDescriptor *sourcePoint(const char *loudspeaker)
{
    LoudspeakerDescriptor *descriptor =
        PluginProvider::GetInstance().GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(QLatin1String(loudspeaker));
    return descriptor ? descriptor->GetSourcePointDescriptors().value(0) : nullptr;
}

double level(SourcePointDescriptor *point, const QString &key, double frequency, double theta, double phi)
{
    return 20.0 * std::log10(point->GetBalloonData(key, frequency, theta, phi, false).abs());
}

// Twice the first theta (0.25-degree steps) at which the level at phi falls 6 dB below on axis.
double beamwidth(SourcePointDescriptor *point, double frequency, double phi)
{
    const QString key = QStringLiteral("default");
    const double onAxis = level(point, key, frequency, 0.0, phi);
    double theta = 0.0;
    while (theta < 180.0 && level(point, key, frequency, theta, phi) > onAxis - 6.0)
        theta += 0.25;
    return 2.0 * theta;
}

// Inside the outline or within a micrometre of one of its edges.
bool insideOrOn(const QList<Point> &outline, double across, double up, int acrossAxis, int upAxis)
{
    const auto onPage = [&](const Point &p) {
        const double c[] = {p.x(), p.y(), p.z()};
        return QPointF(c[acrossAxis], c[upAxis]);
    };
    QList<QPointF> polygon;
    for (const Point &p : outline)
        polygon.append(onPage(p));
    const QPointF point(across, up);
    bool inside = false; // crossings of a ray towards +across
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const QPointF a = polygon.at(i), b = polygon.at((i + 1) % polygon.size());
        if ((a.y() > up) != (b.y() > up) && across < a.x() + (up - a.y()) / (b.y() - a.y()) * (b.x() - a.x()))
            inside = !inside;
    }
    if (inside)
        return true;
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const QLineF edge(polygon.at(i), polygon.at((i + 1) % polygon.size()));
        const QPointF d = edge.p2() - edge.p1();
        const double length2 = QPointF::dotProduct(d, d);
        const double t = length2 > 0 ? std::clamp(QPointF::dotProduct(point - edge.p1(), d) / length2, 0.0, 1.0) : 0.0;
        if (QLineF(point, edge.p1() + t * d).length() < 1e-6)
            return true;
    }
    return false;
}

} // namespace

class tst_DemoSeries : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init() { failOnUnexpectedWarnings(); }

    void everySourcePointHasBalloons();
    void onAxisLevel_data();
    void onAxisLevel();
    void lineElementBeamwidths();
    void lineElementRearFallsWithFrequency_data();
    void lineElementRearFallsWithFrequency();
    void subwooferNearlyOmnidirectional();
    void pointsLieInTheirCabinets_data();
    void pointsLieInTheirCabinets();
    void measuredMonitorEqualsItsCsv();
};

void tst_DemoSeries::initTestCase()
{
    failOnUnexpectedWarnings();
    PluginProvider &provider = PluginProvider::GetInstance();
    provider.SetBalloonDataReadMode(SourcePointDescriptor_Interface::Synchronous);
    provider.LoadPlugin(QStringLiteral("libdemoseries"));
    QCOMPARE(provider.GetPlugins(Tolvane::AllSources).size(), 1);
}

void tst_DemoSeries::everySourcePointHasBalloons()
{
    PluginProvider &provider = PluginProvider::GetInstance();
    QStringList names;
    for (LoudspeakerDescriptor *loudspeaker : provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptors()) {
        names << loudspeaker->GetName();
        QVERIFY(!loudspeaker->GetSourcePointDescriptors().isEmpty());
        for (SourcePointDescriptor *point : loudspeaker->GetSourcePointDescriptors()) {
            point->ReadBalloonData(provider.GetBalloonDataReadMode());
            QVERIFY2(point->IsBalloonDataLoaded() && point->GetBalloon(QStringLiteral("default")), qPrintable(point->GetName()));
        }
    }
    names.sort();
    QCOMPARE(names, QStringList({"DS-C5", "DS-L12", "DS-M12", "DS-P8", "DS-S18"}));
    QVERIFY(sourcePoint("DS-L12")->GetBalloon(QStringLiteral("cut")));
    QVERIFY(provider.GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptor(QStringLiteral("DS-GS Plate")));
}

void tst_DemoSeries::onAxisLevel_data()
{
    QTest::addColumn<QString>("loudspeaker");
    QTest::addColumn<QString>("key");
    for (const char *name : {"DS-L12", "DS-P8", "DS-S18", "DS-M12"})
        QTest::newRow(name) << name << "default";
    QTest::newRow("DS-L12 cut") << "DS-L12" << "cut";
}

// Every model is normalised to 0 dB on axis.
void tst_DemoSeries::onAxisLevel()
{
    QFETCH(QString, loudspeaker);
    QFETCH(QString, key);
    SourcePointDescriptor *point = sourcePoint(qPrintable(loudspeaker));
    for (double frequency : point->GetFrequencyVector()) {
        if (frequency >= 250.0 && frequency <= 4000.0 && std::abs(level(point, key, frequency, 0.0, 0.0)) > 1.0)
            QFAIL(qPrintable(QStringLiteral("%1 Hz: %2 dB").arg(frequency).arg(level(point, key, frequency, 0.0, 0.0))));
    }
}

void tst_DemoSeries::lineElementBeamwidths()
{
    SourcePointDescriptor *point = sourcePoint("DS-L12");
    const double vertical1k = beamwidth(point, 1000.0, 0.0);
    const double vertical8k = beamwidth(point, 8000.0, 0.0);
    // A 353 mm line: sin(u)/u = 0.5 at u = 1.895, 72 degrees at 1 kHz and 8.4 at 8 kHz.
    QVERIFY2(vertical8k < vertical1k / 4, qPrintable(QStringLiteral("%1 -> %2").arg(vertical1k).arg(vertical8k)));
    QVERIFY(beamwidth(point, 1000.0, 90.0) > 60.0);
    QVERIFY(beamwidth(point, 8000.0, 90.0) > 60.0);
}

void tst_DemoSeries::lineElementRearFallsWithFrequency_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("lowest");  // dB behind the cabinet, relative to on axis
    QTest::addColumn<double>("highest");
    for (const char *key : {"default", "cut"}) {
        QTest::addRow("%s, 125 Hz: nearly as loud as in front", key) << key << 125.0 << -6.0 << 0.0;
        QTest::addRow("%s, 1 kHz: shaded", key) << key << 1000.0 << -30.0 << -12.0;
        QTest::addRow("%s, 4 kHz: quiet behind", key) << key << 4000.0 << -60.0 << -15.0;
    }
}

// A cabinet hides its rear only from wavelengths shorter than itself; the level changes
// smoothly with frequency, also across the top, where the pattern's halves meet.
void tst_DemoSeries::lineElementRearFallsWithFrequency()
{
    QFETCH(QString, key);
    QFETCH(double, frequency);
    QFETCH(double, lowest);
    QFETCH(double, highest);
    SourcePointDescriptor *point = sourcePoint("DS-L12");
    const double rear = level(point, key, frequency, 180.0, 0.0) - level(point, key, frequency, 0.0, 0.0);
    QVERIFY2(rear >= lowest && rear <= highest, qPrintable(QString::number(rear)));
    const double jumpOverTheTop = level(point, key, frequency, 85.0, 0.0) - level(point, key, frequency, 95.0, 0.0);
    QVERIFY2(std::abs(jumpOverTheTop) < 6.0, qPrintable(QString::number(jumpOverTheTop)));
}

void tst_DemoSeries::subwooferNearlyOmnidirectional()
{
    SourcePointDescriptor *point = sourcePoint("DS-S18");
    const QString key = QStringLiteral("default");
    for (double frequency : point->GetFrequencyVector()) {
        if (frequency >= 100.0)
            break;
        const double onAxis = level(point, key, frequency, 0.0, 0.0);
        for (double theta = 0.0; theta <= 180.0; theta += 5.0)
            for (double phi = 0.0; phi < 360.0; phi += 45.0)
                QVERIFY(std::abs(level(point, key, frequency, theta, phi) - onAxis) <= 3.0);
    }
}

void tst_DemoSeries::pointsLieInTheirCabinets_data()
{
    QTest::addColumn<QString>("loudspeaker");
    for (const char *name : {"DS-L12", "DS-P8", "DS-S18", "DS-M12", "DS-C5"})
        QTest::newRow(name) << name;
}

// The centre of gravity, the mounting point and the acoustic sources are parts of the cabinet:
// inside it or on its surface, seen from the side (x, z) and from above (x, y).
void tst_DemoSeries::pointsLieInTheirCabinets()
{
    QFETCH(QString, loudspeaker);
    LoudspeakerDescriptor *descriptor = PluginProvider::GetInstance().GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(loudspeaker);
    const Tolvane::Mounting mounting = Tolvane::Flown;
    QList<std::pair<QString, Point>> points = {{QStringLiteral("centre of gravity"), descriptor->GetCenterOfGravity(mounting)},
                                               {QStringLiteral("mounting point"), descriptor->GetMountingPoint(mounting, QStringLiteral("default"))}};
    for (SourcePointDescriptor *sourcePoint : descriptor->GetSourcePointDescriptors()) {
        points.append({sourcePoint->GetName() + QStringLiteral(" origin"), sourcePoint->GetOrigin(mounting)});
        points.append({sourcePoint->GetName() + QStringLiteral(" centre"), sourcePoint->GetCenter(mounting)});
    }
    const QList<Point> side = descriptor->GetSideView(mounting);
    const QList<Point> top = descriptor->GetTopView();
    for (const auto &[name, p] : points) {
        const QString where = QStringLiteral("%1 at (%2, %3, %4)").arg(name).arg(p.x()).arg(p.y()).arg(p.z());
        QVERIFY2(insideOrOn(side, p.x(), p.z(), 0, 2), qPrintable(where + QStringLiteral(", side view")));
        QVERIFY2(insideOrOn(top, p.x(), p.y(), 0, 1), qPrintable(where + QStringLiteral(", top view")));
    }
}

// Stored as doubles: every grid point is the CSV's value exactly (in single precision). Between
// phi 355 and 360 the lookup interpolates towards phi 0 of the same row, the closed seam.
void tst_DemoSeries::measuredMonitorEqualsItsCsv()
{
    SourcePointDescriptor *point = sourcePoint("DS-C5");
    QFile csv(QStringLiteral(DEMOSERIES_MEASURED_CSV));
    QVERIFY(csv.open(QIODevice::ReadOnly | QIODevice::Text));
    csv.readLine();
    QMap<std::tuple<double, double, double>, double> levels;
    int rows = 0;
    while (!csv.atEnd()) {
        const QList<QByteArray> fields = csv.readLine().trimmed().split(',');
        const double frequency = fields[0].toDouble(), theta = fields[1].toDouble(), phi = fields[2].toDouble();
        const double modulus = std::pow(10.0, fields[3].toDouble() / 20.0);
        const double angle = fields[4].toDouble() * 3.141592653589793 / 180.0;
        const std::complex<float> stored(float(modulus * std::cos(angle)), float(modulus * std::sin(angle)));
        const Complex value = point->GetBalloonData(QStringLiteral("default"), frequency, theta, phi, false);
        if (value.real() != double(stored.real()) || value.imag() != double(stored.imag()))
            QFAIL(qPrintable(QStringLiteral("%1 Hz, theta %2, phi %3").arg(frequency).arg(theta).arg(phi)));
        levels.insert({frequency, theta, phi}, fields[3].toDouble());
        ++rows;
    }
    QCOMPARE(rows, 30 * 37 * 72);
    for (auto it = levels.cbegin(); it != levels.cend(); ++it) {
        const auto [frequency, theta, phi] = it.key();
        if (phi != 355.0 || theta == 0.0 || theta == 180.0)
            continue;
        const double a = it.value();
        const double b = levels.value({frequency, theta, 0.0});
        const double between = level(point, QStringLiteral("default"), frequency, theta, 357.5);
        QVERIFY2(between >= std::min(a, b) - 0.01 && between <= std::max(a, b) + 0.01,
                 qPrintable(QStringLiteral("%1 Hz, theta %2: %3 not between %4 and %5").arg(frequency).arg(theta).arg(between).arg(a).arg(b)));
    }
}

QTEST_GUILESS_MAIN(tst_DemoSeries)
#include "tst_demoseries.moc"
