// SPDX-License-Identifier: MIT
#pragma once

#include "Biquad.h"

#include <vector>

namespace nvScientificComputing {

/// The system EQ and array EQ filters of a controller setup.
struct SystemEq
{
    std::vector<Biquad> systemEqFilters;
    std::vector<Biquad> arrayEqFilters;
    double filterMaxValue = 0.0;
};

} // namespace nvScientificComputing
