// SPDX-License-Identifier: MIT
#pragma once

#include "Biquad.h"

#include <vector>

namespace nvScientificComputing {

/// Thermal limiter parameters of a controller setup, in the units of the setup file.
struct ThermoLimiter
{
    bool limiterDisabled = false;
    float reductionAttack = 0.0f;
    float reductionRelease = 0.0f;
    float voltageThreshold = 0.0f;
    float reducedVoltageThreshold = 0.0f;
    float frequencyThreshold = 0.0f;
    float attack = 0.0f;
    float latency = 0.0f;
    float release = 0.0f;
    float rmsTime = 0.0f;
    std::vector<float> mix;
    std::vector<std::vector<Biquad>> bandFilters;
    float filterMaxValue = 0.0f;
};

} // namespace nvScientificComputing
