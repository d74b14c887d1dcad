// SPDX-License-Identifier: MIT
#pragma once

#include "Biquad.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace nvScientificComputing {

/// Switch 2 of a controller setup; maps are keyed by the value number as text.
struct Switch2
{
    std::string description;
    int64_t switchId = 0;
    std::unordered_map<std::string, std::string> values;
    std::unordered_map<std::string, double> polarities; ///< as written in the file
    std::unordered_map<std::string, std::vector<Biquad>> filters;
};

} // namespace nvScientificComputing
