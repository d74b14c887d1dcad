// SPDX-License-Identifier: MIT
#pragma once

#include "FileKeyTable.h"
#include "nvloudspeakerpluginsdk_export.h"

/**
 * Keys of a controller setup file as LoudspeakerSetup reads them, with its nested blocks:
 * the switch entries, the filter entries, the named filter sets and the two limiters.
 * Gains in dB, delays in milliseconds (seconds in the API), frequencies in Hz, phases in
 * degrees; limiter values are passed on in the file's own units.
 *
 * The tables are constant: read them from any thread.
 */
class NVLPS_EXPORT LoudspeakerSetupFileKeys
{
public:
    /// The top level of the file.
    static const FileKeyTable &Table();
    /// One filter entry (a biquad) of a filter list.
    static const FileKeyTable &Filter();
    /// One member of "switches".
    static const FileKeyTable &Switch();
};
