// SPDX-License-Identifier: MIT
// Writes the balloon data files of the demo series into the folder given as the first
// argument: directivity computed from simple physical models on a 5-degree grid over the
// 1/24-octave frequency grid, and the measured monitor packed from the CSV given as the second.
//
// Angles: theta from the on-axis direction, phi around it with 0 up and 90 to the
// loudspeaker's left, so a direction is (cos theta, sin theta sin phi, sin theta cos phi)
// in (front, left, up). Every model is normalised to 0 dB on axis; signs of real-valued
// patterns become phases of 0 or 180 degrees.
#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QDir>

#include <cmath>
#include <cstdio>
#include <functional>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double SpeedOfSound = 343.0;
constexpr double Step = 5.0;        // degrees, theta and phi
constexpr double Floor = 0.01;      // -40 dB: nulls are stored at this level

double radians(double degrees)
{
    return degrees * Pi / 180.0;
}

double wavenumber(double frequency)
{
    return 2.0 * Pi * frequency / SpeedOfSound;
}

// The far-field pattern of a rigid circular piston in an infinite baffle: 2 J1(x) / x with
// x = k a sin(theta).
double piston(double ka, double theta)
{
    const double x = ka * std::sin(theta);
    return std::abs(x) < 1e-6 ? 1.0 : 2.0 * std::cyl_bessel_j(1.0, x) / x;
}

// A continuous line source of length L seen at elevation angle e: sin(u) / u, u = k L / 2 sin e.
double line(double kHalfLength, double sinElevation)
{
    const double u = kHalfLength * sinElevation;
    return std::abs(u) < 1e-9 ? 1.0 : std::sin(u) / u;
}

// A cabinet seen from behind: the front pattern at 90 degrees, shaded towards the rear by
// 20 log10(1 + ka) dB, so that a small cabinet stays nearly omnidirectional and a large one
// (compared to the wavelength) is quiet behind.
double rearShading(double ka, double theta)
{
    if (theta <= Pi / 2)
        return 1.0;
    const double rearDb = 20.0 * std::log10(1.0 + ka);
    return std::pow(10.0, -rearDb * (theta - Pi / 2) / (Pi / 2) / 20.0);
}

// The 249 frequencies of the 1/24-octave grid, 1000 * 2^(k / 24) Hz for k = -140 .. 108.
QList<double> twentyFourthOctaves()
{
    QList<double> frequencies;
    for (int k = -140; k <= 108; ++k)
        frequencies.append(1000.0 * std::pow(2.0, k / 24.0));
    return frequencies;
}

// pattern(frequency, theta, phi), angles in radians, as a signed linear value.
using Pattern = std::function<double(double, double, double)>;

BalloonFileWriter::Data sample(Tolvane::LoudspeakerSymmetry symmetry, const Pattern &pattern)
{
    static const int columns[] = {73, 37, 37, 19, 1};
    BalloonFileWriter::Data data;
    data.frequencies = twentyFourthOctaves();
    data.nh = int(180.0 / Step) + 1;
    data.nv = columns[symmetry];
    data.thetaStepWidth = Step;
    data.phiStepWidth = Step;
    data.symmetry = symmetry;
    const qsizetype count = data.frequencies.size() * data.nh * data.nv;
    data.magnitudes.reserve(count);
    data.phases.reserve(count);
    for (double frequency : std::as_const(data.frequencies)) {
        for (int t = 0; t < data.nh; ++t) {
            for (int p = 0; p < data.nv; ++p) {
                const double value = pattern(frequency, radians(t * Step), radians(p * Step));
                data.magnitudes.append(20.0 * std::log10(std::max(std::abs(value), Floor)));
                data.phases.append(value < 0 ? 180.0 : 0.0);
            }
        }
    }
    return data;
}

/*
 * DS-P8, a compact point source: its horn mouth as a baffled circular piston of 75 mm radius,
 * the same in every plane around the axis (rotational symmetry), shaded behind the cabinet.
 * It is the install model of the series, mounted flush in a wall or ceiling: its flush-mount
 * parameters halve the level beyond the baffle's aperture angle above 200 Hz.
 */
BalloonFileWriter::Data pointSource()
{
    const double radius = 0.075;
    BalloonFileWriter::Data data = sample(Tolvane::RotationalSymmetry, [&](double f, double theta, double) {
        const double ka = wavenumber(f) * radius;
        return theta <= Pi / 2 ? piston(ka, theta) : piston(ka, Pi / 2) * rearShading(ka, theta);
    });
    // Aperture 0.2 m, numerator 1, offset 60 degrees: at 1 kHz the aperture angle is 33 degrees,
    // so the attenuation starts at 93 degrees, just behind the mounting surface.
    data.flushMount = BalloonFileWriter::FlushMount{200.0, 0.0, 0.5, 0.2, 1.0, 60.0};
    return data;
}

/*
 * DS-S18, a subwoofer: nearly omnidirectional, with rear cancellation that grows with frequency,
 * a monopole plus a cardioid share B = 0.5 (ka)^2 / (1 + (ka)^2) for a front baffle of 0.3 m
 * equivalent radius: the pattern is (1 + B cos theta) / (1 + B), 2.0 dB down behind at 100 Hz.
 */
BalloonFileWriter::Data subwoofer()
{
    return sample(Tolvane::RotationalSymmetry, [](double f, double theta, double) {
        const double ka2 = std::pow(wavenumber(f) * 0.3, 2);
        const double b = 0.5 * ka2 / (1.0 + ka2);
        return (1.0 + b * std::cos(theta)) / (1.0 + b);
    });
}

/*
 * DS-L12, a line array element: vertically a continuous line source of the cabinet's height
 * (353 mm), sin(u)/u, narrowing with frequency; horizontally a waveguide of 90 degrees
 * (((1 + cos a) / 2)^n with n = 4.38 from 800 Hz up, -6 dB at 45 degrees off axis, opening up
 * as (f / 800)^2 below). Mirror-symmetric up/down and left/right: quarter symmetry.
 * The cabinet hides its rear only where it is large against the wavelength: the waveguide's
 * share of the pattern grows as x^2 / (1 + x^2), x = f / 300 Hz, the rest radiating all
 * round: behind the plain box 1.4 dB down at 125 Hz, 22 dB at 1 kHz, at the floor by 4 kHz.
 * By default the low-frequency section is slightly cardioid: up to 3 dB of rear rejection
 * below about 250 Hz. With the CUT switch on ("cut") that processing is off.
 */
BalloonFileWriter::Data lineElement(bool cut)
{
    return sample(Tolvane::QuarterSymmetry, [cut](double f, double theta, double phi) {
        const double front = std::cos(theta);
        const double left = std::sin(theta) * std::sin(phi);
        const double up = std::sin(theta) * std::cos(phi);
        // The azimuth of the direction's horizontal part, weighed by how horizontal the
        // direction is, so that the pattern stays continuous over the top and the bottom.
        const double horizontalShare = std::hypot(front, left);
        const double azimuth = std::atan2(std::abs(left), front);
        const double n = 4.38 * std::min(1.0, std::pow(f / 800.0, 2));
        const double shielded = std::pow(f / 300.0, 2) / (1.0 + std::pow(f / 300.0, 2));
        const double waveguide = 1.0 - shielded + shielded * std::pow((1.0 + std::cos(azimuth)) / 2, n);
        double value = line(wavenumber(f) * 0.353 / 2, up) * std::pow(waveguide, horizontalShare);
        if (!cut) {
            const double lowShare = 1.0 / (1.0 + std::pow(f / 250.0, 4));
            value *= 1.0 - 0.3 * lowShare * (1.0 - std::cos(azimuth)) / 2 * horizontalShare;
        }
        return value;
    });
}

/*
 * DS-M12, a stage monitor wedge: a coaxial driver as a baffled piston of 100 mm radius whose
 * axis the wedge tilts 50 degrees up from the stage floor. The floor blocks the directions below
 * it (up to 20 dB down, 0.3 of a unit vector below the floor plane), so the balloon is
 * left/right symmetric only: half symmetry.
 */
BalloonFileWriter::Data monitorWedge()
{
    const double tilt = radians(50.0);
    return sample(Tolvane::HalfSymmetry, [tilt](double f, double theta, double phi) {
        const double ka = wavenumber(f) * 0.1;
        double value = theta <= Pi / 2 ? piston(ka, theta) : piston(ka, Pi / 2) * rearShading(ka, theta);
        const double worldUp = std::cos(theta) * std::sin(tilt) + std::sin(theta) * std::cos(phi) * std::cos(tilt);
        if (worldUp < 0)
            value *= std::pow(10.0, -std::min(1.0, -worldUp / 0.3));
        return value;
    });
}

bool write(const QString &folder, const QString &name, const BalloonFileWriter::Data &data,
           Tolvane::LoudspeakerDataFormat format)
{
    BalloonFileWriter writer(format, format);
    if (!writer.write(data, folder + QLatin1Char('/') + name)) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(name), qPrintable(writer.errorString()));
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: balloongenerator <output folder> <measured monitor CSV>\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);

    BalloonCsvPacker packer;
    if (!packer.read(QString::fromLocal8Bit(argv[2]))) {
        std::fprintf(stderr, "%s: %s\n", argv[2], qPrintable(packer.errorString()));
        return 1;
    }
    const bool ok = write(folder, QStringLiteral("DS-P8.bin"), pointSource(), Tolvane::Double)
        && write(folder, QStringLiteral("DS-S18.bin"), subwoofer(), Tolvane::Double)
        && write(folder, QStringLiteral("DS-L12.bin"), lineElement(false), Tolvane::ByteScaled)
        && write(folder, QStringLiteral("DS-L12_cut.bin"), lineElement(true), Tolvane::ByteScaled)
        && write(folder, QStringLiteral("DS-M12.bin"), monitorWedge(), Tolvane::ByteScaled)
        && write(folder, QStringLiteral("DS-C5.bin"), packer.data(), Tolvane::Double);
    return ok ? 0 : 1;
}
