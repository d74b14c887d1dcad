// SPDX-License-Identifier: MIT
#pragma once

#include "Biquad.h"

#include <cstdint>
#include <vector>

namespace nvScientificComputing {

/// Peak limiter parameters of a controller setup, in the units of the setup file.
struct PeakLimiter
{
    int16_t displayLimiterType = 0;
    bool displayLimiterDisabled = false;
    float clipVoltagePeak = 0.0f;
    float clipVoltageRms = 0.0f;
    float maximumVoltage = 0.0f;
    float overshootPercentage = 0.0f;
    float displacementVoltage = 0.0f;
    float displacementFrequency = 0.0f;
    float compressionRatio = 0.0f;
    float attack = 0.0f;
    float hold = 0.0f;
    float release = 0.0f;
    std::vector<float> attackBand;
    std::vector<float> holdBand;
    std::vector<float> releaseBand;
    std::vector<float> mix;
    std::vector<std::vector<Biquad>> bandFilters;
    float filterMaxValue = 0.0f;
};

} // namespace nvScientificComputing
