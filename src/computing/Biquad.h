// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace nvScientificComputing {

/// One filter of a controller parameter record (numbering of the filter types as in setup files).
struct Biquad
{
    int32_t type = 0;
    float gain = 0.0f;       ///< dB
    float q = 0.71f;
    float frequency = 1000.0f; ///< Hz
};

} // namespace nvScientificComputing
