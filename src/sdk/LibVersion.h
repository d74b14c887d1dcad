// SPDX-License-Identifier: MIT
#pragma once

#include "nvloudspeakerpluginsdk_export.h"

#include <QString>

namespace norvik::LoudspeakerPluginSdk {

/// The library's version as "major.minor.patch" ("1.122.2").
NVLPS_EXPORT QString libVersionString();

/// Writes the version in the order patch, minor, major (the historical argument order).
NVLPS_EXPORT void libVersion(int &patch, int &minor, int &major);

} // namespace norvik::LoudspeakerPluginSdk
