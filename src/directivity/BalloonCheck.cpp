// SPDX-License-Identifier: MIT
#include "BalloonCheck.h"

#include "BalloonFile.h"
#include "BalloonFormat.h"
#include "BalloonTable.h"

#include <cmath>

namespace {

constexpr double Tolerance = 1e-6; // degrees; grids are written from decimal steps

// The phi range the stored columns must span, by symmetry (none for rotational symmetry).
double storedPhiRange(int symmetry)
{
    switch (symmetry) {
    case Tolvane::NoSymmetry:
        return 360.0;
    case Tolvane::HalfSymmetry:
    case Tolvane::HalfSymmetryRotated:
        return 180.0;
    case Tolvane::QuarterSymmetry:
        return 90.0;
    default:
        return 0.0;
    }
}

BalloonProblem problem(const BalloonFormat::Field &field, const QString &message)
{
    return {QString::fromLatin1(field.name), field.offset, message};
}

} // namespace

QList<BalloonProblem> BalloonCheck::Check(const BalloonTable &table)
{
    QList<BalloonProblem> problems;
    const int nh = table.GetNH();
    const int nv = table.GetNV();
    const double thetaStep = table.GetThetaStepWidth();
    const double phiStep = table.GetPhiStepWidth();
    if (std::abs((nh - 1) * thetaStep - 180.0) > Tolerance)
        problems.append(problem(BalloonFormat::NH, QStringLiteral("the grid covers theta 0 ... %1, not 0 ... 180 (%2 rows of %3 degrees)")
                                                       .arg((nh - 1) * thetaStep).arg(nh).arg(thetaStep)));
    const double range = storedPhiRange(table.GetSymmetryCode());
    if (range > 0 && std::abs((nv - 1) * phiStep - range) > Tolerance) {
        const double end = (nv - 1) * phiStep;
        problems.append(problem(BalloonFormat::NV, table.GetSymmetryCode() == Tolvane::NoSymmetry
            ? QStringLiteral("the full circle has no closing 360-degree phi column (%1 columns of %2 degrees end at %3)").arg(nv).arg(phiStep).arg(end)
            : QStringLiteral("the phi columns end at %1, not at %2 as the symmetry needs (%3 columns of %4 degrees)").arg(end).arg(range).arg(nv).arg(phiStep)));
    }

    const qsizetype frequencies = table.GetFrequencies().size();
    const qint64 expected = qint64(frequencies) * nh * nv;
    if (table.GetValueCount() != expected) {
        problems.append({QStringLiteral("values"), -1, QStringLiteral("%1 values, but %2 frequencies of %3 x %4 directions need %5")
                                                           .arg(table.GetValueCount()).arg(frequencies).arg(nh).arg(nv).arg(expected)});
        return problems;
    }

    double lowest = HUGE_VAL;
    double highest = -HUGE_VAL;
    const std::complex<float> *values = table.GetValues();
    for (qint64 i = 0; i < expected; ++i) {
        const std::complex<float> v = values[i];
        if (!std::isfinite(v.real()) || !std::isfinite(v.imag())) {
            const qint64 row = i / nv;
            problems.append({QStringLiteral("values"), -1, QStringLiteral("the value at frequency %1, theta row %2, phi column %3 is not finite")
                                                               .arg(row / nh).arg(row % nh).arg(i % nv)});
            return problems;
        }
        const double squared = double(v.real()) * v.real() + double(v.imag()) * v.imag();
        lowest = std::min(lowest, squared);
        highest = std::max(highest, squared);
    }
    if (expected > 0) {
        // Levels from squared moduli: 10 log10 |v|^2 = 20 log10 |v|, with silence as -inf dB.
        const double low = 10.0 * std::log10(lowest);
        const double high = 10.0 * std::log10(highest);
        if (high > HighestPlausibleLevel || high < LowestPlausibleLevel)
            problems.append({QStringLiteral("values"), -1, QStringLiteral("levels reach %1 dB; plausible balloons lie within %2 ... %3 dB")
                                                               .arg(high).arg(LowestPlausibleLevel).arg(HighestPlausibleLevel)});
        else if (low < LowestPlausibleLevel)
            problems.append({QStringLiteral("values"), -1, QStringLiteral("levels go down to %1 dB; plausible balloons lie within %2 ... %3 dB")
                                                               .arg(low).arg(LowestPlausibleLevel).arg(HighestPlausibleLevel)});
    }
    return problems;
}

QList<BalloonProblem> BalloonCheck::CheckFile(const QString &fileName)
{
    const BalloonReadResult result = BalloonFile::Read(fileName);
    return result.table ? Check(*result.table) : result.problems;
}
