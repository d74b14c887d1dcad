// SPDX-License-Identifier: MIT
#pragma once

#include "nvloudspeakerpluginsdkprediction_export.h"

#include <QList>

#include <array>
#include <complex>
#include <vector>

/**
 * The complex sound pressure of a prediction: one value per receiver and band, receiver-major
 * (receiver * bands + band), relative to the balloons' own scale at 1 m. Levels are dB; a level
 * that does not exist (zero pressure) is NaN, never -inf.
 */
class NVLPS_PREDICTION_EXPORT SoundField
{
public:
    SoundField() = default;
    SoundField(QList<double> frequencies, std::vector<std::array<double, 3>> receivers);

    const QList<double> &GetFrequencies() const { return m_frequencies; }
    const std::vector<std::array<double, 3>> &GetReceivers() const { return m_receivers; }
    int GetBandCount() const { return int(m_frequencies.size()); }
    qsizetype GetReceiverCount() const { return qsizetype(m_receivers.size()); }
    const std::vector<std::complex<float>> &GetPressures() const { return m_pressures; }
    std::complex<float> *GetReceiverPressures(qsizetype receiver) { return m_pressures.data() + receiver * GetBandCount(); }
    std::complex<float> GetPressure(qsizetype receiver, int band) const { return m_pressures[size_t(receiver * GetBandCount() + band)]; }

    /// 20 log10 |p|; NaN where p is zero.
    double GetLevel(qsizetype receiver, int band) const;
    /// The A-weighted sum of the bands' powers, each band fed with equal power (pink); NaN when
    /// every band is silent.
    double GetAWeightedLevel(qsizetype receiver) const;
    /// The A-weighting of a frequency (Hz), dB.
    static double AWeighting(double frequency);

private:
    QList<double> m_frequencies;
    std::vector<std::array<double, 3>> m_receivers;
    std::vector<std::complex<float>> m_pressures;
};
