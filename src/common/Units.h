// SPDX-License-Identifier: MIT
#pragma once

/// Data files give lengths (and weights) in thousandths; the library works in metres (and tonnes).
namespace Units {
constexpr double MillimetresPerMetre = 1000.0;
} // namespace Units
