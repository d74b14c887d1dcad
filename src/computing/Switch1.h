// SPDX-License-Identifier: MIT
#pragma once

#include "Biquad.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace nvScientificComputing {

/// Switch 1 of a controller setup; maps are keyed by the value number as text.
struct Switch1
{
    std::string description;
    int64_t switchId = 0;
    std::unordered_map<std::string, std::string> values;
    std::unordered_map<std::string, double> gains; ///< linear factors
    std::unordered_map<std::string, std::vector<Biquad>> filters;
};

} // namespace nvScientificComputing
