// SPDX-License-Identifier: MIT
#include "SoundField.h"

#include <cmath>
#include <limits>

SoundField::SoundField(QList<double> frequencies, std::vector<std::array<double, 3>> receivers)
    : m_frequencies(std::move(frequencies))
    , m_receivers(std::move(receivers))
    , m_pressures(m_receivers.size() * size_t(m_frequencies.size()))
{
}

double SoundField::GetLevel(qsizetype receiver, int band) const
{
    const double power = std::norm(std::complex<double>(GetPressure(receiver, band)));
    return power > 0.0 ? 10.0 * std::log10(power) : std::numeric_limits<double>::quiet_NaN();
}

double SoundField::GetAWeightedLevel(qsizetype receiver) const
{
    double sum = 0.0;
    for (int band = 0; band < GetBandCount(); ++band)
        sum += std::norm(std::complex<double>(GetPressure(receiver, band))) * std::pow(10.0, AWeighting(m_frequencies.at(band)) / 10.0);
    return sum > 0.0 ? 10.0 * std::log10(sum) : std::numeric_limits<double>::quiet_NaN();
}

double SoundField::AWeighting(double frequency)
{
    const double f2 = frequency * frequency;
    const double ra = 12194.0 * 12194.0 * f2 * f2
        / ((f2 + 20.6 * 20.6) * std::sqrt((f2 + 107.7 * 107.7) * (f2 + 737.9 * 737.9)) * (f2 + 12194.0 * 12194.0));
    return 20.0 * std::log10(ra) + 2.0;
}
