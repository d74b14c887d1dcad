// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>

/// Where a scene's source point ended up: its acoustic origin and its axes in the world frame.
struct PlacedSource {
    QString name; ///< loudspeaker, with the cabinet number for arrays ("DS-L12 #3")
    std::array<double, 3> position{};
    std::array<double, 3> front{1.0, 0.0, 0.0};
    std::array<double, 3> left{0.0, 1.0, 0.0};
    std::array<double, 3> up{0.0, 0.0, 1.0};
};
