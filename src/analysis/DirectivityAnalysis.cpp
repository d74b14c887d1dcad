// SPDX-License-Identifier: MIT
#include "DirectivityAnalysis.h"

#include "SphereQuadrature_p.h"

#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
const double MinusSixDecibels = std::pow(10.0, -0.6); // as a power ratio

[[noreturn]] void reject(const QString &reason)
{
    throw std::invalid_argument(reason.toStdString());
}

double power(const Complex &value)
{
    return value.real() * value.real() + value.imag() * value.imag();
}

// The table must hold a whole sphere for the integral and every plane angle the analysis reads;
// the lookup itself checks only the flat index, and would read a neighbour row instead.
void checkSphere(const BalloonTable &table)
{
    if (table.GetFrequencies().isEmpty())
        reject(QStringLiteral("the balloon has no frequencies"));
    const int nh = table.GetNH();
    const int nv = table.GetNV();
    if (nh < 2 || nv < 1)
        reject(QStringLiteral("the grid has %1 theta rows and %2 phi columns").arg(nh).arg(nv));
    const double thetaStep = table.GetThetaStepWidth();
    const double phiStep = table.GetPhiStepWidth();
    if (!(thetaStep > 0.0 && std::isfinite(thetaStep)) || !(phiStep > 0.0 && std::isfinite(phiStep)))
        reject(QStringLiteral("the grid steps are %1 and %2 degrees").arg(thetaStep).arg(phiStep));
    if ((nh - 1) * thetaStep < 180.0 - 1e-9)
        reject(QStringLiteral("the theta rows end at %1 degrees, short of 180").arg((nh - 1) * thetaStep));
    const double span = SphereQuadrature::StoredPhiSpan(table.GetSymmetryCode());
    const bool periodic = span == 360.0 && nv * phiStep >= 360.0 - 1e-9;
    if (!periodic && (nv - 1) * phiStep < span - 1e-9)
        reject(QStringLiteral("the phi columns end at %1 degrees, short of %2").arg((nv - 1) * phiStep).arg(span));
    if (table.GetValueCount() < qsizetype(table.GetFrequencies().size()) * nh * nv)
        reject(QStringLiteral("the values do not fill the grid"));
}

} // namespace

DirectivityAnalysis::DirectivityAnalysis(std::shared_ptr<const BalloonTable> table, bool flushMount)
    : m_table(std::move(table))
{
    if (!m_table)
        reject(QStringLiteral("no balloon table"));
    checkSphere(*m_table);
    m_flushMount = flushMount && m_table->HasFlushMount();

    const int frequencies = int(m_table->GetFrequencies().size());
    const BalloonCell onAxis = PlaneCell(DirectivityPlane::Vertical, 0.0);
    for (int f = 0; f < frequencies; ++f)
        m_onAxis.push_back(20.0 * std::log10(m_table->GetValue(f, onAxis).abs()));
    ComputeSoundPower();
    for (int f = 0; f < frequencies; ++f)
        m_directivityIndex.push_back(m_onAxis[size_t(f)] - m_soundPower[size_t(f)]);
    ComputeBeamwidths(DirectivityPlane::Horizontal);
    ComputeBeamwidths(DirectivityPlane::Vertical);

    // The orbit cells once, every frequency read through them.
    std::array<std::array<BalloonCell, 37>, 2> orbit;
    for (int plane = 0; plane < 2; ++plane) {
        for (int a = 0; a < 37; ++a)
            orbit[size_t(plane)][size_t(a)] = PlaneCell(DirectivityPlane(plane), a * 10.0 - 180.0);
    }
    m_spinorama = SpinoramaCurves::Compute(frequencies, [&](int f, DirectivityPlane plane, int angle) {
        return power(m_table->GetValue(f, orbit[size_t(plane)][size_t((angle + 180) / 10)]));
    });
}

const std::vector<double> &DirectivityAnalysis::GetBeamwidths(DirectivityPlane plane) const
{
    return m_beamwidth[int(plane)];
}

QString DirectivityAnalysis::GetBeamwidthNullReason(DirectivityPlane plane, int frequencyIndex) const
{
    switch (m_beamwidthState[int(plane)].at(size_t(frequencyIndex))) {
    case BeamwidthState::Found:
        return QString();
    case BeamwidthState::SilentOnAxis:
        return QStringLiteral("the on-axis value is 0");
    case BeamwidthState::NoFall:
        return QStringLiteral("the level does not fall by 6 dB within ±180°");
    case BeamwidthState::OneSided:
        return QStringLiteral("the level falls by 6 dB on one side only");
    }
    return QString();
}

BalloonCell DirectivityAnalysis::PlaneCell(DirectivityPlane plane, double angle) const
{
    const bool horizontal = plane == DirectivityPlane::Horizontal;
    const double phi = horizontal ? (angle >= 0.0 ? 90.0 : 270.0) : (angle >= 0.0 ? 0.0 : 180.0);
    return m_table->GetCell(std::abs(angle), phi, horizontal && m_flushMount);
}

Complex DirectivityAnalysis::GetPlaneValue(int frequencyIndex, DirectivityPlane plane, double angle) const
{
    return m_table->GetValue(frequencyIndex, PlaneCell(plane, angle));
}

double DirectivityAnalysis::GetPlaneLevel(int frequencyIndex, DirectivityPlane plane, double angle) const
{
    return 20.0 * std::log10(GetPlaneValue(frequencyIndex, plane, angle).abs());
}

IsobarMap DirectivityAnalysis::GetIsobarMap(DirectivityPlane plane, double angleStep) const
{
    if (!(angleStep > 0.0) || angleStep > 180.0)
        throw std::invalid_argument("the isobar angle step must lie in (0, 180] degrees");
    IsobarMap map;
    map.frequencies = GetFrequencies();
    const int steps = int(std::floor(360.0 / angleStep + 1e-9));
    std::vector<BalloonCell> cells;
    for (int a = 0; a <= steps; ++a) {
        map.angles.push_back(std::min(-180.0 + a * angleStep, 180.0));
        cells.push_back(PlaneCell(plane, map.angles.back()));
    }
    map.levels.reserve(size_t(map.frequencies.size()) * cells.size());
    for (int f = 0; f < map.frequencies.size(); ++f) {
        for (const BalloonCell &cell : cells)
            map.levels.push_back(20.0 * std::log10(m_table->GetValue(f, cell).abs()) - m_onAxis[size_t(f)]);
    }
    return map;
}

void DirectivityAnalysis::ComputeSoundPower()
{
    const BalloonTable &table = *m_table;
    const std::vector<double> theta = SphereQuadrature::ThetaWeights(table.GetNH(), table.GetThetaStepWidth());
    const std::vector<double> phi = SphereQuadrature::PhiWeights(table.GetNV(), table.GetPhiStepWidth(), table.GetSymmetryCode());
    const std::complex<float> *values = table.GetValues();
    const size_t nh = theta.size();
    const size_t nv = phi.size();
    for (int f = 0; f < table.GetFrequencies().size(); ++f) {
        double sum = 0.0;
        for (size_t t = 0; t < nh; ++t) {
            if (theta[t] == 0.0)
                continue;
            const std::complex<float> *row = values + (size_t(f) * nh + t) * nv;
            // Four partial sums, so that the additions need not wait for one another.
            double rowSum[4] = {};
            size_t p = 0;
            for (; p + 4 <= nv; p += 4) {
                for (size_t k = 0; k < 4; ++k)
                    rowSum[k] += phi[p + k] * double(std::norm(row[p + k]));
            }
            for (; p < nv; ++p)
                rowSum[0] += phi[p] * double(std::norm(row[p]));
            sum += theta[t] * ((rowSum[0] + rowSum[1]) + (rowSum[2] + rowSum[3]));
        }
        m_soundPower.push_back(10.0 * std::log10(sum));
    }
}

// The angle of the first -6 dB point on one side (+1 or -1) of the plane: the first grid step
// whose power is at or below the threshold (the steps' cells are the same at every frequency),
// then bisection on the interpolated curve inside it, to 2^-16 of the step (under 0.0001 degree
// for a 5-degree grid).
double DirectivityAnalysis::SideAngle(int f, DirectivityPlane plane, int side, double threshold, const std::vector<StepCell> &steps) const
{
    double previous = 0.0;
    for (const StepCell &step : steps) {
        if (power(m_table->GetValue(f, step.cell)) <= threshold) {
            double low = previous;
            double high = step.angle;
            for (int i = 0; i < 16; ++i) {
                const double middle = 0.5 * (low + high);
                (power(GetPlaneValue(f, plane, side * middle)) <= threshold ? high : low) = middle;
            }
            return 0.5 * (low + high);
        }
        previous = step.angle;
    }
    return NaN;
}

void DirectivityAnalysis::ComputeBeamwidths(DirectivityPlane plane)
{
    std::vector<double> &widths = m_beamwidth[int(plane)];
    std::vector<BeamwidthState> &states = m_beamwidthState[int(plane)];
    std::vector<StepCell> steps[2]; // left or up, right or down
    const double step = m_table->GetThetaStepWidth();
    for (int k = 1; k == 1 || steps[0].back().angle < 180.0; ++k) {
        const double angle = std::min(k * step, 180.0);
        steps[0].push_back({angle, PlaneCell(plane, angle)});
        steps[1].push_back({angle, PlaneCell(plane, -angle)});
    }
    for (int f = 0; f < GetFrequencies().size(); ++f) {
        const double onAxis = power(GetPlaneValue(f, plane, 0.0));
        if (!(onAxis > 0.0)) {
            widths.push_back(NaN);
            states.push_back(BeamwidthState::SilentOnAxis);
            continue;
        }
        const double threshold = onAxis * MinusSixDecibels;
        const double left = SideAngle(f, plane, 1, threshold, steps[0]);
        const double right = SideAngle(f, plane, -1, threshold, steps[1]);
        widths.push_back(left + right);
        if (std::isnan(left) && std::isnan(right))
            states.push_back(BeamwidthState::NoFall);
        else if (std::isnan(left) || std::isnan(right))
            states.push_back(BeamwidthState::OneSided);
        else
            states.push_back(BeamwidthState::Found);
    }
}
