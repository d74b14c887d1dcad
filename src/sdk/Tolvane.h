// SPDX-License-Identifier: MIT
#pragma once

#include "nvloudspeakerpluginsdk_export.h"

#include <QFlags>
#include <QObject>

/**
 * The shared vocabulary of the SDK and its plugins. Values are fixed: plugins and data
 * files store them. Every enumeration has int as its underlying type, so any integer read
 * from a file is a valid value (unknown ones fall to the documented defaults).
 */
namespace Tolvane {
Q_NAMESPACE_EXPORT(NVLPS_EXPORT)

/// How a cabinet is mounted. The order of values is fixed (install and pullback come last).
enum Mounting : int {
    Invalid = -1,
    Flown = 0,
    Stacked = 1,
    FlownHorizontal = 2,
    StackedHorizontal = 3,
    StackedCart = 4,
    FlownInstall = 5,
    FlownPullback = 6,
};
Q_ENUM_NS(Mounting)

/// Loudspeaker type bits; see LoudspeakerDescriptor::GetType().
enum LoudspeakerTypeFlag : int {
    NarrowDispersion = 0x0001,
    WideDispersion = 0x0010,
    Sub = 0x0100,
    Top = 0x1000,
    PointSource = 0x4000,
};
Q_DECLARE_FLAGS(LoudspeakerTypeFlags, LoudspeakerTypeFlag)
Q_FLAG_NS(LoudspeakerTypeFlags)

/**
 * Groups in which the plugin provider sorts the loaded series. Every plugin is filed in
 * groups 1 to 4; AllSources is the catch-all, and requests for 0 and 5 are served from it.
 */
enum SourceGroupType : int {
    UndefinedSources = 0,
    LineArraySources = 1,
    PointSources = 2,
    SubwooferSources = 3,
    AllSources = 4,
    OtherSources = 5,
};
Q_ENUM_NS(SourceGroupType)

/// How a sub-array that mixes models is filtered ("mixedSubArrayFilterMode"; -1 when absent).
enum MixedSubArrayFilterMode : int {
    MixedSubArrayFilterUndefined = -1,
    MixedSubArrayFilterNone = 0,
    MixedSubArrayFilterLowPass = 1,
    MixedSubArrayFilterCardioid = 2,
};
Q_ENUM_NS(MixedSubArrayFilterMode)

/// The four cabinet or frame corners that link to neighbours, and the same under compression.
enum MechanicalConnectionPoint : int {
    FrontTop = 0,
    RearTop = 1,
    RearBottom = 2,
    FrontBottom = 3,
    FrontTopCompression = 4,
    RearTopCompression = 5,
    RearBottomCompression = 6,
    FrontBottomCompression = 7,
};
Q_ENUM_NS(MechanicalConnectionPoint)

/// Which part of the sphere a balloon file stores.
enum LoudspeakerSymmetry : int {
    NoSymmetry = 0,
    HalfSymmetry = 1,
    HalfSymmetryRotated = 2,
    QuarterSymmetry = 3,
    RotationalSymmetry = 4,
};
Q_ENUM_NS(LoudspeakerSymmetry)

/// Encoding of magnitudes and phases in a balloon file.
enum LoudspeakerDataFormat : int {
    ByteScaled = 2,
    Double = 20,
};
Q_ENUM_NS(LoudspeakerDataFormat)

/// The frequency grid of a transfer function query.
enum FrequencyRange : int {
    LogarithmicFrequencies = 0, ///< 249 points, 1000 * 2^(k/24) Hz, k = -140 … 108
    LinearFrequencies = 1,      ///< 1025 points, i * 5.859375 Hz
};
Q_ENUM_NS(FrequencyRange)

/// Which sensitivity factor a transfer function includes.
enum SensitivityTypes : int {
    NoSensitivity = 0,
    Sensitivity = 1,
    ArrayEq = 2,
    SensitivityWithArrayEq = 3,
};
Q_ENUM_NS(SensitivityTypes)

} // namespace Tolvane

Q_DECLARE_OPERATORS_FOR_FLAGS(Tolvane::LoudspeakerTypeFlags)
