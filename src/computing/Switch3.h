// SPDX-License-Identifier: MIT
#pragma once

#include "Biquad.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace nvScientificComputing {

/// Switch 3 of a controller setup: a preset switch without per-value gains.
struct Switch3
{
    std::string description;
    std::string presetText;
    int64_t switchId = 0;
    std::unordered_map<std::string, std::string> values;
    std::unordered_map<std::string, std::vector<Biquad>> filters;
};

} // namespace nvScientificComputing
