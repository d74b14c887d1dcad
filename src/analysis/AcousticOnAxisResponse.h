// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonTable.h"
#include "Complex.h"
#include "nvloudspeakerpluginsdkanalysis_export.h"

#include <QList>
#include <QMap>
#include <QString>

#include <vector>

class DspChannelDescriptor_Interface;

/**
 * What a loudspeaker radiates straight ahead with a controller setup and its switches: the
 * balloon's on-axis value times the setup's transfer function, per balloon frequency.
 *
 * The transfer function is known on the 1/24-octave grid; each balloon frequency takes the grid
 * point nearest on a logarithmic scale, and has no value (NaN) when that point lies more than
 * 1/48 octave away (below 20 Hz or above 20 kHz, or a frequency that is not positive).
 */
class NVLPS_ANALYSIS_EXPORT AcousticOnAxisResponse
{
public:
    /// Computes the response of `setupKey` (with `switches`, no sensitivity, no all-pass EQ).
    AcousticOnAxisResponse(const BalloonTable &table, DspChannelDescriptor_Interface &channel, int setupKey,
                           const QMap<int, int> &switches);

    const QList<double> &GetFrequencies() const { return m_frequencies; } ///< Hz, the balloon's
    const std::vector<Complex> &GetValues() const { return m_values; }    ///< NaN where none
    std::vector<double> GetLevels() const;  ///< dB
    std::vector<double> GetPhases() const;  ///< degrees, (-180, 180]
    /// Why the value at `frequencyIndex` is NaN; empty where it exists.
    QString GetNullReason(int frequencyIndex) const;

private:
    QList<double> m_frequencies;
    std::vector<Complex> m_values;
};
