// SPDX-License-Identifier: MIT
#include "LoudspeakerSetupFileKeys.h"

namespace {
constexpr FileKey filterKeys[] = {
    {"type", FileKey::Integer, FileKey::NoUnit, "0", "filter type, 0 to 15 (0 is a plain gain); numbered as in docs/filter-types.md",
     nullptr, nullptr, R"({"minimum": 0, "maximum": 15})"},
    {"fp", FileKey::Number, FileKey::Hertz, "0", "corner or centre frequency"},
    {"Q", FileKey::Number, FileKey::NoUnit, "0", "quality factor"},
    {"G", FileKey::Number, FileKey::Decibels, "0", "gain"},
};
constexpr FileKeyTable filter("filter", filterKeys);
constexpr FileKey filterItem {nullptr, FileKey::Object, FileKey::NoUnit, "", "filter", &filter};
constexpr FileKey filterList {nullptr, FileKey::Array, FileKey::NoUnit, "", "filters, applied in order", nullptr, &filterItem};
constexpr FileKey number {nullptr, FileKey::Number, FileKey::NoUnit, "", ""};
constexpr FileKey gain {nullptr, FileKey::Number, FileKey::Decibels, "", "gain"};
constexpr FileKey label {nullptr, FileKey::String, FileKey::NoUnit, "", "text"};

constexpr FileKey switchKeys[] = {
    {"switchID", FileKey::Integer, FileKey::NoUnit, "0", "identifier of the switch in the controller"},
    {"description", FileKey::String, FileKey::NoUnit, "empty", "name of the switch shown to users"},
    {"presetText", FileKey::String, FileKey::NoUnit, "empty", "switch 3: preset text"},
    {"values", FileKey::NamedMap, FileKey::NoUnit, "empty", "value number (decimal text) to label", nullptr, &label},
    {"balloonData", FileKey::NamedMap, FileKey::NoUnit, "none",
     "value number to the balloon key the value selects; the highest switch with this key decides", nullptr, &label},
    {"filters", FileKey::NamedMap, FileKey::NoUnit, "empty", "value number to the filter list of that value", nullptr,
     &filterList},
    {"dBGains", FileKey::NamedMap, FileKey::Decibels, "empty", "value number to an extra gain of that value", nullptr, &gain},
    {"polarities", FileKey::NamedMap, FileKey::NoUnit, "empty", "switch 2: value number to a polarity factor", nullptr, &number},
};
constexpr FileKeyTable switchEntry("switch", switchKeys);
constexpr FileKey switchItem {nullptr, FileKey::Object, FileKey::NoUnit, "", "switch", &switchEntry};

constexpr FileKey filterSetKeys[] = {
    {"System_EQ", FileKey::Array, FileKey::NoUnit, "empty", "system EQ, always applied", nullptr, &filterItem},
    {"Sensitivity_Array_EQ", FileKey::Array, FileKey::NoUnit, "empty", "array EQ, applied with the sensitivity", nullptr,
     &filterItem},
    {"Sensitivity_AP_EQ", FileKey::Array, FileKey::NoUnit, "empty", "all-pass EQ, applied on request", nullptr, &filterItem},
    {"SystemEqFilterMaxVal", FileKey::Number, FileKey::NoUnit, "0", "largest value of the system EQ filters"},
};
constexpr FileKeyTable filterSets("filter sets", filterSetKeys);

constexpr FileKey floatValue {nullptr, FileKey::Number, FileKey::NoUnit, "", ""};

constexpr FileKey peakLimiterKeys[] = {
    {"DispLimType", FileKey::Integer, FileKey::NoUnit, "0", "display limiter type"},
    {"DispLimDisable", FileKey::Boolean, FileKey::NoUnit, "false", "display limiter disabled"},
    {"UclipPK", FileKey::Number, FileKey::NoUnit, "0", "clip voltage, peak"},
    {"UclipRMS", FileKey::Number, FileKey::NoUnit, "0", "clip voltage, RMS"},
    {"Umax", FileKey::Number, FileKey::NoUnit, "0", "largest voltage"},
    {"OverShootProz", FileKey::Number, FileKey::NoUnit, "0", "overshoot in percent"},
    {"UDisplacement", FileKey::Number, FileKey::NoUnit, "0", "displacement voltage"},
    {"FxDisplacement", FileKey::Number, FileKey::Hertz, "0", "displacement frequency"},
    {"CompRatio", FileKey::Number, FileKey::NoUnit, "0", "compression ratio"},
    {"Attack", FileKey::Number, FileKey::NoUnit, "0", "attack time"},
    {"Hold", FileKey::Number, FileKey::NoUnit, "0", "hold time"},
    {"Release", FileKey::Number, FileKey::NoUnit, "0", "release time"},
    {"AttackBand", FileKey::Array, FileKey::NoUnit, "empty", "attack time per band", nullptr, &floatValue},
    {"HoldBand", FileKey::Array, FileKey::NoUnit, "empty", "hold time per band", nullptr, &floatValue},
    {"ReleaseBand", FileKey::Array, FileKey::NoUnit, "empty", "release time per band", nullptr, &floatValue},
    {"Vmix", FileKey::Array, FileKey::NoUnit, "empty", "mix factor per band", nullptr, &floatValue},
    {"Band0", FileKey::Array, FileKey::NoUnit, "empty", "filters of band 0", nullptr, &filterItem},
    {"Band1", FileKey::Array, FileKey::NoUnit, "empty", "filters of band 1", nullptr, &filterItem},
    {"Band2", FileKey::Array, FileKey::NoUnit, "empty", "filters of band 2", nullptr, &filterItem},
    {"Band3", FileKey::Array, FileKey::NoUnit, "empty", "filters of band 3", nullptr, &filterItem},
    {"FilterMaxVal", FileKey::Number, FileKey::NoUnit, "0", "largest value of the band filters"},
};
constexpr FileKeyTable peakLimiter("peak limiter", peakLimiterKeys);

constexpr FileKey thermoLimiterKeys[] = {
    {"LimDisable", FileKey::Boolean, FileKey::NoUnit, "false", "limiter disabled"},
    {"ReductAttack", FileKey::Number, FileKey::NoUnit, "0", "reduction attack"},
    {"ReductRelease", FileKey::Number, FileKey::NoUnit, "0", "reduction release"},
    {"UThreshold", FileKey::Number, FileKey::NoUnit, "0", "voltage threshold"},
    {"UThresholdReduced", FileKey::Number, FileKey::NoUnit, "0", "reduced voltage threshold"},
    {"FxThreshold", FileKey::Number, FileKey::Hertz, "0", "frequency threshold"},
    {"Attack", FileKey::Number, FileKey::NoUnit, "0", "attack time"},
    {"Latency", FileKey::Number, FileKey::NoUnit, "0", "latency"},
    {"Release", FileKey::Number, FileKey::NoUnit, "0", "release time"},
    {"Trms", FileKey::Number, FileKey::NoUnit, "0", "RMS time"},
    {"Vmix", FileKey::Array, FileKey::NoUnit, "empty", "mix factor per band", nullptr, &floatValue},
    {"Band0", FileKey::Array, FileKey::NoUnit, "empty", "filters of band 0", nullptr, &filterItem},
    {"Band1", FileKey::Array, FileKey::NoUnit, "empty", "filters of band 1", nullptr, &filterItem},
    {"Band2", FileKey::Array, FileKey::NoUnit, "empty", "filters of band 2", nullptr, &filterItem},
    {"Band3", FileKey::Array, FileKey::NoUnit, "empty", "filters of band 3", nullptr, &filterItem},
    {"FilterMaxVal", FileKey::Number, FileKey::NoUnit, "0", "largest value of the band filters"},
};
constexpr FileKeyTable thermoLimiter("thermal limiter", thermoLimiterKeys);

constexpr FileKey keys[] = {
    {"setupName", FileKey::String, FileKey::NoUnit, "empty", "short name of the setup"},
    {"setupNameFull", FileKey::String, FileKey::NoUnit, "empty", "full name of the setup"},
    {"displayName", FileKey::String, FileKey::NoUnit, "empty", "name shown to users"},
    {"boxName", FileKey::String, FileKey::NoUnit, "empty", "name of the loudspeaker"},
    {"zNumber", FileKey::String, FileKey::NoUnit, "empty", "part number of the setup"},
    {"visible", FileKey::Boolean, FileKey::NoUnit, "false", "shown to users"},
    {"speakerId", FileKey::Integer, FileKey::NoUnit, "0 (-1 before reading)", "identifier of the loudspeaker in the controller"},
    {"speakerType", FileKey::Integer, FileKey::NoUnit, "0", "loudspeaker type in the controller"},
    {"ampChannelCount", FileKey::Integer, FileKey::NoUnit, "0", "amplifier channels the loudspeaker takes"},
    {"thisAmpChannel", FileKey::Integer, FileKey::NoUnit, "0", "which of them this setup drives"},
    {"polarity", FileKey::Number, FileKey::NoUnit, "1", "polarity factor, 1 or -1"},
    {"dBGain", FileKey::Number, FileKey::Decibels, "0", "gain"},
    {"delay", FileKey::Number, FileKey::Milliseconds, "0", "delay"},
    {"supportedAmps", FileKey::Array, FileKey::NoUnit, "empty", "names of the supported amplifiers", nullptr, &label},
    {"maxLink", FileKey::Array, FileKey::NoUnit, "empty", "largest link count per supported amplifier, same order", nullptr,
     &floatValue},
    {"recommendedLink", FileKey::Array, FileKey::NoUnit, "empty", "recommended link count per supported amplifier", nullptr,
     &floatValue},
    {"thermoLimiterBroadbandPink", FileKey::Number, FileKey::NoUnit, "0", "thermal limiter value for broadband pink noise"},
    {"fMergeUSD", FileKey::Number, FileKey::Hertz, "0", "merge frequency"},
    {"fLowOpt", FileKey::Number, FileKey::Hertz, "0", "low optimisation frequency"},
    {"fHighOpt", FileKey::Number, FileKey::Hertz, "0", "high optimisation frequency"},
    {"dBSensitivity", FileKey::Array, FileKey::Decibels, "empty",
     "sensitivity magnitude per frequency of the 1/24-octave grid, dB re 20 uPa", nullptr, &floatValue},
    {"phaseSensitivity", FileKey::Array, FileKey::Degrees, "empty", "sensitivity phase per frequency, at least as many",
     nullptr, &floatValue},
    {"maxPK", FileKey::Array, FileKey::NoUnit, "empty", "largest peak values, each raised to at least 1", nullptr, &floatValue},
    {"switches", FileKey::NamedMap, FileKey::NoUnit, "empty",
     "switches by number (decimal text); \"1\" to \"3\" also fill the controller's parameter records (1 with "
     "\"dBGains\", 2 with \"polarities\", 3 with \"presetText\")", nullptr, &switchItem},
    {"filters", FileKey::Object, FileKey::NoUnit, "empty", "named filter sets", &filterSets},
    {"peakLimiter", FileKey::Object, FileKey::NoUnit, "empty", "peak limiter parameters", &peakLimiter},
    {"thermoLimiter", FileKey::Object, FileKey::NoUnit, "empty", "thermal limiter parameters", &thermoLimiter},
};
constexpr FileKeyTable table("controller setup", keys);
} // namespace

const FileKeyTable &LoudspeakerSetupFileKeys::Table()
{
    return table;
}

const FileKeyTable &LoudspeakerSetupFileKeys::Filter()
{
    return filter;
}

const FileKeyTable &LoudspeakerSetupFileKeys::Switch()
{
    return switchEntry;
}
