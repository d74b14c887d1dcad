// SPDX-License-Identifier: MIT
#include "DirectivityGrid.h"

#include <QMap>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.141592653589793;
// Angles within this many degrees are the same grid line: coordinates stored as float, or
// computed from spherical degrees, land a few 1e-5 degrees off.
constexpr double Tolerance = 0.01;

double dot(const DirectivityGrid::Vector &a, const DirectivityGrid::Vector &b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

DirectivityGrid::Vector cross(const DirectivityGrid::Vector &a, const DirectivityGrid::Vector &b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

bool finite(const DirectivityGrid::Vector &a)
{
    return std::isfinite(a[0]) && std::isfinite(a[1]) && std::isfinite(a[2]);
}

DirectivityGrid::Vector scaled(const DirectivityGrid::Vector &a, double k)
{
    return {a[0] * k, a[1] * k, a[2] * k};
}

// The most frequent gap between consecutive values of a sorted list, merged within the tolerance
// first; a stray receiver then shows up as off the grid rather than shrinking the step.
double commonStep(QList<double> sorted, bool wrapsAt360)
{
    QList<double> distinct;
    for (double value : sorted)
        if (distinct.isEmpty() || value - distinct.last() > Tolerance)
            distinct << value;
    if (wrapsAt360 && distinct.size() > 1 && distinct.first() + 360.0 - distinct.last() <= Tolerance)
        distinct.removeLast();
    QList<double> gaps;
    for (qsizetype i = 1; i < distinct.size(); ++i)
        gaps << distinct[i] - distinct[i - 1];
    if (wrapsAt360 && !distinct.isEmpty())
        gaps << distinct.first() + 360.0 - distinct.last();
    QMap<qint64, int> counts;
    for (double gap : gaps)
        ++counts[qRound64(gap * 1000.0)];
    qint64 best = 0;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        if (best == 0 || it.value() > counts.value(best))
            best = it.key();
    return double(best) / 1000.0;
}

double levelDb(std::complex<double> value)
{
    return 20.0 * std::log10(std::max(std::abs(value), 1e-10));
}

// The phi (degrees) whose column a balloon of this symmetry stores for phi.
double storedPhi(double phi, int symmetry)
{
    switch (symmetry) {
    case 1:
        return phi > 180.0 ? 360.0 - phi : phi;
    case 2: // the half from 270 over 0 to 90: mirrored across the 90/270 axis
        return phi > 90.0 && phi < 270.0 ? std::fmod(540.0 - phi, 360.0) : phi;
    case 3:
        phi = phi > 180.0 ? 360.0 - phi : phi;
        return phi > 90.0 ? 180.0 - phi : phi;
    case 4:
        return 0.0;
    default:
        return phi;
    }
}

} // namespace

std::array<double, 2> DirectivityGrid::BalloonAngles(const Vector &d, const Vector &view, const Vector &up)
{
    const Vector v = scaled(view, 1.0 / std::sqrt(dot(view, view)));
    // Only the part of up across the view counts: a slanted up still names the top.
    const double along = dot(up, v);
    Vector u{up[0] - along * v[0], up[1] - along * v[1], up[2] - along * v[2]};
    u = scaled(u, 1.0 / std::sqrt(dot(u, u)));
    const Vector left = cross(u, v);
    const double x = dot(d, v), y = dot(d, left), z = dot(d, u);
    const double theta = std::atan2(std::hypot(y, z), x) * 180.0 / Pi;
    double phi = std::atan2(y, z) * 180.0 / Pi;
    if (phi < 0.0)
        phi += 360.0;
    return {theta, phi >= 360.0 ? 0.0 : phi};
}

std::optional<DirectivityGrid> DirectivityGrid::FromReceivers(const std::vector<Vector> &receivers, const Vector &view,
                                                              const Vector &up, const std::vector<std::complex<double>> &values,
                                                              const QList<double> &frequencies, QString *error)
{
    const auto fail = [error](const QString &message) {
        *error = message;
        return std::nullopt;
    };
    const size_t frequencyCount = size_t(frequencies.size());
    if (receivers.empty() || frequencyCount == 0 || values.size() != receivers.size() * frequencyCount)
        return fail(QStringLiteral("no receivers or no frequencies to place"));
    if (!finite(view) || !finite(up))
        return fail(QStringLiteral("the view direction (SourceView) or the up direction (SourceUp) is not finite"));
    if (dot(view, view) == 0.0)
        return fail(QStringLiteral("the view direction (SourceView) is zero"));
    const Vector across = cross(view, up);
    if (dot(across, across) <= 1e-18 * dot(view, view) * dot(up, up) || dot(up, up) == 0.0)
        return fail(QStringLiteral("the up direction (SourceUp) is zero or parallel to the view direction (SourceView)"));

    std::vector<std::array<double, 2>> angles(receivers.size());
    QList<double> thetas, phis;
    for (size_t r = 0; r < receivers.size(); ++r) {
        if (!finite(receivers[r]) || dot(receivers[r], receivers[r]) == 0.0)
            return fail(QStringLiteral("receiver %1 has no direction: it lies at the source or is not finite").arg(r + 1));
        angles[r] = BalloonAngles(receivers[r], view, up);
        const bool pole = angles[r][0] < Tolerance || angles[r][0] > 180.0 - Tolerance;
        thetas << (pole ? std::round(angles[r][0]) : angles[r][0]);
        if (!pole)
            phis << angles[r][1];
    }
    std::sort(thetas.begin(), thetas.end());
    std::sort(phis.begin(), phis.end());

    DirectivityGrid grid;
    grid.frequencies = frequencies;
    grid.thetaStep = commonStep(thetas, false);
    grid.phiStep = phis.isEmpty() ? 0.0 : commonStep(phis, true);
    if (grid.thetaStep <= 0.0 || grid.phiStep <= 0.0)
        return fail(QStringLiteral("the receivers span no theta/phi grid (fewer than two distinct angles)"));
    grid.columns = int(std::lround(360.0 / grid.phiStep));
    if (std::abs(grid.columns * grid.phiStep - 360.0) > Tolerance * grid.columns)
        return fail(QStringLiteral("the phi step of %1 degrees does not divide the circle").arg(grid.phiStep));
    grid.phiStep = 360.0 / grid.columns;
    grid.rows = int(std::lround(thetas.last() / grid.thetaStep)) + 1;
    // Each receiver fills one cell, or a whole row on the axis. Far too few of them for the grid
    // are refused at once, so that a stray step cannot make the cell table huge; near misses get
    // the first missing direction below.
    const size_t needed = size_t(std::max(grid.rows - 2, 0)) * size_t(grid.columns) + 2;
    if (needed > 4 * receivers.size())
        return fail(QStringLiteral("the receivers cannot fill a regular %1 x %2 degree theta/phi grid: it needs %3 directions, there are %4")
                        .arg(grid.thetaStep).arg(grid.phiStep).arg(needed).arg(receivers.size()));

    const auto direction = [](double theta, double phi) {
        return QStringLiteral("theta %1, phi %2").arg(theta, 0, 'g', 10).arg(phi, 0, 'g', 10);
    };
    std::vector<int> owner(size_t(grid.rows) * grid.columns, -1);
    for (size_t r = 0; r < receivers.size(); ++r) {
        const double theta = angles[r][0], phi = angles[r][1];
        const bool pole = theta < Tolerance || theta > 180.0 - Tolerance;
        const long t = std::lround(theta / grid.thetaStep);
        const long p = std::lround(phi / grid.phiStep);
        if (std::abs(theta - t * grid.thetaStep) > Tolerance || (!pole && std::abs(phi - p * grid.phiStep) > Tolerance))
            return fail(QStringLiteral("receiver %1 at %2 is off the %3 x %4 degree theta/phi grid")
                            .arg(r + 1).arg(direction(theta, phi)).arg(grid.thetaStep).arg(grid.phiStep));
        for (int column = 0; column < grid.columns; ++column) {
            if (!pole && column != p % grid.columns)
                continue;
            int &cell = owner[size_t(t) * grid.columns + column];
            if (cell >= 0)
                return fail(QStringLiteral("receivers %1 and %2 both lie at %3")
                                .arg(cell + 1).arg(r + 1).arg(direction(t * grid.thetaStep, column * grid.phiStep)));
            cell = int(r);
        }
    }
    const auto missing = std::find(owner.cbegin(), owner.cend(), -1);
    if (missing != owner.cend()) {
        const long cell = long(missing - owner.cbegin());
        return fail(QStringLiteral("no receiver at %1: the receivers do not fill a regular %2 x %3 degree theta/phi grid")
                        .arg(direction((cell / grid.columns) * grid.thetaStep, (cell % grid.columns) * grid.phiStep))
                        .arg(grid.thetaStep).arg(grid.phiStep));
    }

    grid.values.resize(frequencyCount * owner.size());
    for (size_t f = 0; f < frequencyCount; ++f)
        for (size_t cell = 0; cell < owner.size(); ++cell)
            grid.values[f * owner.size() + cell] = values[size_t(owner[cell]) * frequencyCount + f];
    return grid;
}

std::optional<DirectivityGrid::SymmetryMismatch> DirectivityGrid::CheckSymmetry(int symmetry) const
{
    SymmetryMismatch worst;
    for (int p = 0; p < columns; ++p) {
        const double phi = p * phiStep;
        const double mirror = storedPhi(phi, symmetry);
        const long q = std::lround(mirror / phiStep);
        if (std::abs(q * phiStep - mirror) > Tolerance)
            return std::nullopt;
        for (int f = 0; f < frequencies.size(); ++f)
            for (int t = 0; t < rows; ++t) {
                const double mismatch = std::abs(levelDb(Value(f, t, p)) - levelDb(Value(f, t, int(q % columns))));
                if (mismatch > worst.levelDb)
                    worst = {mismatch, frequencies[f], t * thetaStep, phi, mirror};
            }
    }
    return worst;
}

std::optional<BalloonFileWriter::Data> DirectivityGrid::ToBalloon(Tolvane::LoudspeakerSymmetry symmetry, bool closeSeam,
                                                                 QString *error) const
{
    // The stored columns as phi of the full circle: column q of a rotated half lies at q - 90.
    double span = 360.0, first = 0.0;
    switch (symmetry) {
    case Tolvane::HalfSymmetry:
        span = 180.0;
        break;
    case Tolvane::HalfSymmetryRotated:
        span = 180.0;
        first = 270.0;
        break;
    case Tolvane::QuarterSymmetry:
        span = 90.0;
        break;
    case Tolvane::RotationalSymmetry:
        span = 0.0;
        break;
    default:
        break;
    }
    const long steps = std::lround(span / phiStep);
    if (std::abs(steps * phiStep - span) > Tolerance) {
        *error = QStringLiteral("the phi step of %1 degrees does not divide the %2 degrees this symmetry stores").arg(phiStep).arg(span);
        return std::nullopt;
    }
    BalloonFileWriter::Data data;
    data.frequencies = frequencies;
    data.nh = rows;
    // The full circle keeps 0 .. 360 - step and closes with 360; the others store both ends.
    data.nv = int(steps) + (symmetry == Tolvane::NoSymmetry && !closeSeam ? 0 : 1);
    data.thetaStepWidth = thetaStep;
    data.phiStepWidth = phiStep;
    data.symmetry = symmetry;
    const qsizetype count = qsizetype(frequencies.size()) * rows * data.nv;
    data.magnitudes.reserve(count);
    data.phases.reserve(count);
    for (int f = 0; f < frequencies.size(); ++f)
        for (int t = 0; t < rows; ++t)
            for (int q = 0; q < data.nv; ++q) {
                const int p = int((std::lround(first / phiStep) + q) % columns);
                const std::complex<double> value = Value(f, t, p);
                data.magnitudes << levelDb(value);
                data.phases << std::arg(value) * 180.0 / Pi;
            }
    return data;
}
