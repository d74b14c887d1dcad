// SPDX-License-Identifier: MIT
#pragma once

#include "nvcomputinglibrary_export.h"

#include "PeakLimiter.h"
#include "Switch1.h"
#include "Switch2.h"
#include "Switch3.h"
#include "SystemEq.h"
#include "ThermoLimiter.h"

#include <complex>
#include <string_view>
#include <vector>

namespace nvScientificComputing {

/**
 * The raw parameters a signal-processing engine needs to run one controller setup.
 * References stay valid for the lifetime of the implementing object.
 *
 * Values keep the units of the setup file, except the gain (linear) and the delay (seconds).
 * Read-only: any thread may read it once the setup is read. Missing file values are 0 or empty.
 */
class NVCOMPUTING_EXPORT IControllerJson
{
public:
    virtual ~IControllerJson();

    /// The setup name in UTF-8, a view into storage of the implementing object.
    virtual std::string_view getSetupName() = 0;
    virtual signed char getAmpChannelCount() const = 0;
    virtual signed char getThisAmpChannel() const = 0;
    /// Linear gain, polarity not applied.
    virtual double getControllerGainLinear() const = 0;
    virtual double getControllerDelaySeconds() const = 0;
    /// Polarity, +1 or -1.
    virtual signed char getControllerPhase() const = 0;
    virtual const SystemEq &getSystemEq() const = 0;
    virtual const Switch1 &getSwitch1Parameters() const = 0;
    virtual const Switch2 &getSwitch2Parameters() const = 0;
    virtual const Switch3 &getSwitch3Parameters() const = 0;
    virtual const PeakLimiter &getPeakLimiterParameters() const = 0;
    virtual const ThermoLimiter &getThermoLimiterParameters() const = 0;
    /// Sensitivity per frequency of the 1/24-octave grid, pascal.
    virtual const std::vector<std::complex<float>> &getSensitivity() const = 0;
    virtual const std::vector<float> &getMaxPk() const = 0;
};

} // namespace nvScientificComputing
