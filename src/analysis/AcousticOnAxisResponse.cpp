// SPDX-License-Identifier: MIT
#include "AcousticOnAxisResponse.h"

#include "DspChannelDescriptor_Interface.h"

#include <cmath>
#include <limits>

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

// The grid point nearest `frequency` in octaves, or -1 beyond half a grid step.
int nearestGridIndex(const QList<double> &grid, double frequency)
{
    int best = -1;
    double bestDistance = 1.0 / 48.0 + 1e-9;
    for (int i = 0; i < grid.size(); ++i) {
        const double distance = std::abs(std::log2(frequency / grid.at(i)));
        if (distance < bestDistance) {
            best = i;
            bestDistance = distance;
        }
    }
    return best;
}

} // namespace

AcousticOnAxisResponse::AcousticOnAxisResponse(const BalloonTable &table, DspChannelDescriptor_Interface &channel, int setupKey,
                                               const QMap<int, int> &switches)
    : m_frequencies(table.GetFrequencies())
{
    const QList<double> grid = channel.GetFrequencyVector(Tolvane::LogarithmicFrequencies);
    for (int f = 0; f < m_frequencies.size(); ++f) {
        const int index = m_frequencies.at(f) > 0.0 ? nearestGridIndex(grid, m_frequencies.at(f)) : -1;
        if (index < 0) {
            m_values.emplace_back(NaN, NaN);
            continue;
        }
        const Complex onAxis = table.GetValue(f, 0.0, 0.0);
        m_values.push_back(onAxis * channel.GetTransferFunction(Tolvane::LogarithmicFrequencies, index, setupKey, switches,
                                                                Tolvane::NoSensitivity, false));
    }
}

std::vector<double> AcousticOnAxisResponse::GetLevels() const
{
    std::vector<double> levels;
    for (const Complex &value : m_values)
        levels.push_back(20.0 * std::log10(value.abs()));
    return levels;
}

std::vector<double> AcousticOnAxisResponse::GetPhases() const
{
    std::vector<double> phases;
    for (const Complex &value : m_values)
        phases.push_back(value.arg() * 180.0 / 3.141592653589793);
    return phases;
}

QString AcousticOnAxisResponse::GetNullReason(int frequencyIndex) const
{
    if (!std::isnan(m_values.at(size_t(frequencyIndex)).real()))
        return QString();
    return QStringLiteral("%1 Hz lies off the controller's 1/24-octave frequency grid").arg(m_frequencies.at(frequencyIndex));
}
