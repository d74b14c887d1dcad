// SPDX-License-Identifier: MIT
// Directivity analysis of analytic sources, packed as a plugin author packs a measurement and read
// back, against closed forms and brute-force integrals.
#include "TestHelpers.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>
#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdkAnalysis.h>

#include <QBuffer>

#include <cmath>
#include <functional>

namespace {

constexpr double Pi = 3.141592653589793;
// Amplitude of a direction (front, left, up), a unit vector.
using Amplitude = std::function<double(double x, double y, double z)>;

double omni(double, double, double)
{
    return 1.0;
}

double cardioid(double x, double, double)
{
    return (1.0 + x) / 2.0;
}

// Narrower vertically than horizontally, and louder downwards than upwards.
double tilted(double x, double, double z)
{
    return (1.0 + x) / 2.0 * (1.0 - 0.4 * z - 0.4 * z * z);
}

Amplitude piston(double ka)
{
    return [ka](double x, double y, double z) {
        if (x <= 0.0)
            return 0.0;
        const double u = ka * std::sqrt(y * y + z * z);
        return u < 1e-9 ? 1.0 : 2.0 * std::cyl_bessel_j(1.0, u) / u;
    };
}

double pistonDirectivityIndex(double ka)
{
    return 10.0 * std::log10(ka * ka / (1.0 - std::cyl_bessel_j(1.0, 2.0 * ka) / ka));
}

// The angle in [0, 180] where the amplitude along a plane side first falls to half its on-axis value.
double halfAmplitudeAngle(const Amplitude &a, double phiDegrees)
{
    const double phi = phiDegrees * Pi / 180.0;
    const auto at = [&](double theta) {
        const double t = theta * Pi / 180.0;
        return a(std::cos(t), std::sin(t) * std::sin(phi), std::sin(t) * std::cos(phi)) / a(1.0, 0.0, 0.0);
    };
    double low = 0.0;
    double high = 0.0;
    while (high < 180.0 && at(high + 0.01) > 0.5)
        high += 0.01;
    high += 0.01;
    for (int i = 0; i < 60; ++i)
        (at(0.5 * (low + high)) > 0.5 ? low : high) = 0.5 * (low + high);
    return 0.5 * (low + high);
}

// Mean |a|^2 over the sphere by the midpoint rule at 0.1 degree.
double sphereMeanPower(const Amplitude &a)
{
    const int n = 1800;
    const double h = Pi / n;
    double sum = 0.0;
    for (int i = 0; i < n; ++i) {
        const double t = (i + 0.5) * h;
        for (int j = 0; j < 2 * n; ++j) {
            const double p = (j + 0.5) * h;
            const double v = a(std::cos(t), std::sin(t) * std::sin(p), std::sin(t) * std::cos(p));
            sum += v * v * std::sin(t) * h * h;
        }
    }
    return sum / (4.0 * Pi);
}

// The tilted source turned a quarter around the axis: louder to the right than to the left.
double turned(double x, double y, double z)
{
    return tilted(x, z, -y);
}

// One frequency (1 kHz) of `a` on a grid of `step` degrees, written as CSV, packed in the double
// format and read back.
std::shared_ptr<const BalloonTable> pack(const Amplitude &a, double step, Tolvane::LoudspeakerSymmetry symmetry)
{
    const double phiEnd = symmetry == Tolvane::NoSymmetry ? 360.0 - step
        : symmetry == Tolvane::HalfSymmetry || symmetry == Tolvane::HalfSymmetryRotated ? 180.0
        : symmetry == Tolvane::QuarterSymmetry           ? 90.0
                                                         : 0.0;
    QByteArray csv = "frequency_hz,theta_deg,phi_deg,magnitude_db,phase_deg\n";
    for (int t = 0; t * step <= 180.0 + 1e-9; ++t) {
        for (int p = 0; p * step <= phiEnd + 1e-9; ++p) {
            const double theta = t * step * Pi / 180.0;
            // A rotated half stores phi 270 ... 360 ... 90.
            const double phiDegrees = symmetry == Tolvane::HalfSymmetryRotated ? std::fmod(p * step + 270.0, 360.0) : p * step;
            const double phi = phiDegrees * Pi / 180.0;
            const double v = a(std::cos(theta), std::sin(theta) * std::sin(phi), std::sin(theta) * std::cos(phi));
            csv += QStringLiteral("1000,%1,%2,%3,%4\n").arg(t * step).arg(phiDegrees).arg(20.0 * std::log10(std::max(std::abs(v), 1e-10)), 0, 'g', 17).arg(v < 0.0 ? 180 : 0).toLatin1();
        }
    }
    QBuffer buffer(&csv);
    buffer.open(QIODevice::ReadOnly);
    BalloonCsvPacker packer;
    packer.setSymmetry(symmetry);
    if (!packer.read(&buffer))
        qFatal("packing failed: %s", qPrintable(packer.errorString()));
    BalloonFileWriter writer(Tolvane::Double, Tolvane::Double);
    const QByteArray bytes = writer.toByteArray(packer.data());
    return BalloonFile::Read(QByteArrayView(bytes)).table;
}

} // namespace

class tst_DirectivityAnalysis : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void closedForms_data()
    {
        QTest::addColumn<Amplitude>("source");
        QTest::addColumn<double>("step");
        QTest::addColumn<double>("directivityIndex");
        QTest::addColumn<double>("horizontal"); // beamwidth, degrees; NaN for none
        QTest::addColumn<double>("vertical");
        const double none = std::nan("");
        QTest::newRow("omni") << Amplitude(omni) << 5.0 << 0.0 << none << none;
        QTest::newRow("cardioid") << Amplitude(cardioid) << 5.0 << 10.0 * std::log10(3.0) << 180.0 << 180.0;
        for (double ka : {1.0, 3.0, 5.0, 10.0}) {
            // Below ka 2.2 the level falls by 6 dB only at the baffle.
            const double width = ka > 2.2 ? 2.0 * halfAmplitudeAngle(piston(ka), 0.0) : 180.0;
            QTest::addRow("piston ka %g", ka) << piston(ka) << 1.0 << pistonDirectivityIndex(ka) << width << width;
        }
        QTest::newRow("tilted") << Amplitude(tilted) << 5.0 << -10.0 * std::log10(sphereMeanPower(tilted)) << 180.0
                                << halfAmplitudeAngle(tilted, 0.0) + halfAmplitudeAngle(tilted, 180.0);
    }

    void closedForms()
    {
        QFETCH(Amplitude, source);
        QFETCH(double, step);
        QFETCH(double, directivityIndex);
        QFETCH(double, horizontal);
        QFETCH(double, vertical);
        const DirectivityAnalysis analysis(pack(source, step, Tolvane::NoSymmetry));
        QVERIFY2(std::abs(analysis.GetDirectivityIndices().at(0) - directivityIndex) < 0.1,
                 qPrintable(QStringLiteral("DI %1 dB, expected %2 dB").arg(analysis.GetDirectivityIndices().at(0)).arg(directivityIndex)));
        const std::pair<DirectivityPlane, double> planes[] = {{DirectivityPlane::Horizontal, horizontal}, {DirectivityPlane::Vertical, vertical}};
        for (const auto &[plane, expected] : planes) {
            const double width = analysis.GetBeamwidths(plane).at(0);
            if (std::isnan(expected)) {
                QVERIFY2(std::isnan(width), qPrintable(QString::number(width)));
                QCOMPARE(analysis.GetBeamwidthNullReason(plane, 0), QStringLiteral("the level does not fall by 6 dB within ±180°"));
            } else {
                QVERIFY2(std::abs(width - expected) < 1.0, qPrintable(QStringLiteral("beamwidth %1°, expected %2°").arg(width).arg(expected)));
                QVERIFY(analysis.GetBeamwidthNullReason(plane, 0).isEmpty());
            }
        }
    }

    // The standard's curves of a source whose planes and whose up and down all differ, against
    // the same averages of the closed form; on an omnidirectional source every curve is on-axis.
    void spinorama()
    {
        const auto level = [](DirectivityPlane plane, int angle) {
            const double t = std::abs(angle) * Pi / 180.0;
            const double side = angle < 0 ? -std::sin(t) : std::sin(t);
            const double v = plane == DirectivityPlane::Horizontal ? tilted(std::cos(t), side, 0.0) : tilted(std::cos(t), 0.0, side);
            return v * v;
        };
        using H = std::initializer_list<int>;
        const auto mean = [&](H horizontal, H vertical) {
            double sum = 0.0;
            for (int a : horizontal)
                sum += level(DirectivityPlane::Horizontal, a);
            for (int a : vertical)
                sum += level(DirectivityPlane::Vertical, a);
            return sum / double(horizontal.size() + vertical.size());
        };
        const double lw = mean({0, 10, -10, 20, -20, 30, -30}, {10, -10});
        const double floor = mean({}, {-20, -30, -40});
        const double ceiling = mean({}, {40, 50, 60});
        const double er = (floor + ceiling + mean({0, 10, -10, 20, -20, 30, -30}, {}) + mean({40, -40, 50, -50, 60, -60, 70, -70, 80, -80}, {})
                           + mean({180, 90, -90}, {})) / 5.0;
        const double db = 10.0 / std::log(10.0);
        const DirectivityAnalysis analysis(pack(tilted, 5.0, Tolvane::HalfSymmetry));
        const SpinoramaCurves &curves = analysis.GetSpinorama();
        QVERIFY(std::abs(curves.onAxis.at(0)) < 1e-6);
        QVERIFY2(std::abs(curves.listeningWindow.at(0) - db * std::log(lw)) < 0.1, qPrintable(QString::number(curves.listeningWindow.at(0))));
        QVERIFY2(std::abs(curves.earlyReflections.at(0) - db * std::log(er)) < 0.1, qPrintable(QString::number(curves.earlyReflections.at(0))));
        QCOMPARE_LT(std::abs(curves.earlyReflectionsDi.at(0) - db * std::log(lw / er)), 0.1);
        QCOMPARE_LT(std::abs(curves.floorBounce.at(0) - db * std::log(floor)), 0.1);
        QCOMPARE_LT(std::abs(curves.ceilingBounce.at(0) - db * std::log(ceiling)), 0.1);
        QCOMPARE_LT(std::abs(curves.soundPowerDi.at(0) - (curves.listeningWindow.at(0) - curves.soundPower.at(0))), 1e-12);
        const double inRoom = 0.12 * lw + 0.44 * er + 0.44 * std::pow(10.0, curves.soundPower.at(0) / 10.0);
        QCOMPARE_LT(std::abs(curves.estimatedInRoom.at(0) - db * std::log(inRoom)), 0.1);

        // Of a rotationally symmetric source, the 70 weighted points give the whole sphere's power.
        const DirectivityAnalysis round(pack(cardioid, 5.0, Tolvane::RotationalSymmetry));
        QCOMPARE_LT(std::abs(round.GetSpinorama().soundPower.at(0) - round.GetSoundPowerLevels().at(0)), 0.1);
        QCOMPARE_LT(std::abs(round.GetSoundPowerLevels().at(0) + 10.0 * std::log10(3.0)), 0.1);

        const DirectivityAnalysis flat(pack(omni, 10.0, Tolvane::NoSymmetry));
        for (const std::vector<double> *curve : {&flat.GetSpinorama().listeningWindow, &flat.GetSpinorama().earlyReflections,
                                                 &flat.GetSpinorama().soundPower, &flat.GetSpinorama().estimatedInRoom})
            QCOMPARE_LT(std::abs(curve->at(0)), 1e-9);
    }

    // One source stored whole and as each symmetric part it has gives the same figures.
    void symmetricTables_data()
    {
        QTest::addColumn<Amplitude>("source");
        QTest::addColumn<QList<int>>("symmetries");
        QTest::newRow("cardioid") << Amplitude(cardioid)
                                  << QList<int>{Tolvane::HalfSymmetry, Tolvane::QuarterSymmetry, Tolvane::RotationalSymmetry};
        QTest::newRow("piston ka 5") << piston(5.0) << QList<int>{Tolvane::HalfSymmetry, Tolvane::RotationalSymmetry};
        QTest::newRow("tilted") << Amplitude(tilted) << QList<int>{Tolvane::HalfSymmetry};
        QTest::newRow("turned") << Amplitude(turned) << QList<int>{Tolvane::HalfSymmetryRotated};
    }

    void symmetricTables()
    {
        QFETCH(Amplitude, source);
        QFETCH(QList<int>, symmetries);
        const DirectivityAnalysis full(pack(source, 5.0, Tolvane::NoSymmetry));
        for (int symmetry : symmetries) {
            const DirectivityAnalysis part(pack(source, 5.0, Tolvane::LoudspeakerSymmetry(symmetry)));
            const auto same = [](const std::vector<double> &a, const std::vector<double> &b) {
                return a.size() == b.size() && (std::abs(a.at(0) - b.at(0)) < 1e-6 || (std::isnan(a.at(0)) && std::isnan(b.at(0))));
            };
            QVERIFY2(same(full.GetDirectivityIndices(), part.GetDirectivityIndices()), qPrintable(QString::number(symmetry)));
            QVERIFY(same(full.GetBeamwidths(DirectivityPlane::Horizontal), part.GetBeamwidths(DirectivityPlane::Horizontal)));
            QVERIFY(same(full.GetBeamwidths(DirectivityPlane::Vertical), part.GetBeamwidths(DirectivityPlane::Vertical)));
            QVERIFY(same(full.GetSpinorama().estimatedInRoom, part.GetSpinorama().estimatedInRoom));
            QVERIFY(same(full.GetSpinorama().earlyReflectionsDi, part.GetSpinorama().earlyReflectionsDi));
        }
    }

    // An isobar map is relative to on-axis and mirrors the plane curve: left is positive.
    void isobarMap()
    {
        const DirectivityAnalysis analysis(pack(tilted, 5.0, Tolvane::NoSymmetry));
        const IsobarMap map = analysis.GetIsobarMap(DirectivityPlane::Vertical, 10.0);
        QCOMPARE(map.angles.size(), size_t(37));
        QCOMPARE(map.angles.front(), -180.0);
        QCOMPARE(map.Level(0, 18), 0.0);
        const double up = 20.0 * std::log10(tilted(std::cos(Pi / 4), 0.0, std::sin(Pi / 4)));
        QCOMPARE_LT(std::abs(map.Level(0, 18 + 9) - 20.0 * std::log10(tilted(0.0, 0.0, 1.0))), 1e-5);
        QCOMPARE_LT(std::abs(analysis.GetPlaneLevel(0, DirectivityPlane::Vertical, 45.0) - up), 1e-5);
    }

    void tablesThatCannotStandForASphere()
    {
        BalloonTable::Grid grid{10, 73, 5.0, 5.0, Tolvane::NoSymmetry}; // theta ends at 45 degrees
        const auto table = std::make_shared<const BalloonTable>(grid, QList<double>{1000.0}, std::vector<std::complex<float>>(730, 1.0f));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, DirectivityAnalysis{table});
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, DirectivityAnalysis{nullptr});
    }
};

QTEST_GUILESS_MAIN(tst_DirectivityAnalysis)
#include "tst_directivityanalysis.moc"
