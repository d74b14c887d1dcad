// SPDX-License-Identifier: MIT
#pragma once

#include "nvloudspeakerpluginsdkprediction_export.h"

/// Atmospheric absorption of pure tones after ISO 9613-1.
class NVLPS_PREDICTION_EXPORT AirAbsorption
{
public:
    /// Attenuation in dB per metre at `frequency` (Hz) for the temperature (degrees Celsius),
    /// relative humidity (percent) and static pressure (kPa).
    static double DecibelsPerMetre(double frequency, double temperatureC, double relativeHumidityPercent, double pressureKpa);
    /// The speed of sound in air at the temperature (m/s).
    static double SpeedOfSound(double temperatureC);
};
