// SPDX-License-Identifier: MIT
#include "AirAbsorption.h"

#include <cmath>

double AirAbsorption::DecibelsPerMetre(double frequency, double temperatureC, double relativeHumidityPercent, double pressureKpa)
{
    constexpr double referencePressure = 101.325;  // kPa
    constexpr double referenceTemperature = 293.15; // K
    constexpr double triplePoint = 273.16;          // K
    const double t = temperatureC + 273.15;
    const double pa = pressureKpa / referencePressure;
    const double saturation = std::pow(10.0, -6.8346 * std::pow(triplePoint / t, 1.261) + 4.6151);
    const double h = relativeHumidityPercent * saturation / pa; // molar concentration of water vapour, percent
    const double tr = t / referenceTemperature;
    const double oxygen = pa * (24.0 + 4.04e4 * h * (0.02 + h) / (0.391 + h));
    const double nitrogen = pa / std::sqrt(tr) * (9.0 + 280.0 * h * std::exp(-4.170 * (std::cbrt(1.0 / tr) - 1.0)));
    const double f2 = frequency * frequency;
    return 8.686 * f2
        * (1.84e-11 / pa * std::sqrt(tr)
           + std::pow(tr, -2.5)
               * (0.01275 * std::exp(-2239.1 / t) / (oxygen + f2 / oxygen) + 0.1068 * std::exp(-3352.0 / t) / (nitrogen + f2 / nitrogen)));
}

double AirAbsorption::SpeedOfSound(double temperatureC)
{
    return 331.3 * std::sqrt(1.0 + temperatureC / 273.15);
}
