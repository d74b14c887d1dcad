// SPDX-License-Identifier: MIT
#pragma once

#include "nvloudspeakerpluginsdk_export.h"

#include <QList>

/**
 * The process-wide frequency lists of the acoustic queries, built on first use (thread-safe)
 * and never freed, so that every DSP channel and controller setup shares one copy.
 */
class NVLPS_AUTOTEST_EXPORT FrequencyVectors
{
public:
    /**
     * The band list for 3 bands per octave (29 nominal values, 32 Hz … 20 kHz) or the
     * 1/24-octave list (249 values, 1000 * 2^(k/24) Hz for k = -140 … 108). Any other band
     * count logs "frequency vector not supported" and gives an empty list.
     */
    static const QList<double> &GetFrequencyVector(int bandsPerOctave);
    /// 1025 frequencies i * 5.859375 Hz, 0 … 6000 Hz.
    static const QList<double> &GetLinearFrequencyVector();
};
