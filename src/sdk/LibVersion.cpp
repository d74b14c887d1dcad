// SPDX-License-Identifier: MIT
#include "LibVersion.h"

#include "nvloudspeakerpluginsdk_version.h"

namespace norvik::LoudspeakerPluginSdk {

QString libVersionString()
{
    return QStringLiteral("%1.%2.%3").arg(NVLPS_VERSION_MAJOR).arg(NVLPS_VERSION_MINOR).arg(NVLPS_VERSION_PATCH);
}

void libVersion(int &patch, int &minor, int &major)
{
    patch = NVLPS_VERSION_PATCH;
    minor = NVLPS_VERSION_MINOR;
    major = NVLPS_VERSION_MAJOR;
}

} // namespace norvik::LoudspeakerPluginSdk
