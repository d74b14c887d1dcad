// SPDX-License-Identifier: MIT
#pragma once

#include "FileKeyTable.h"
#include "nvloudspeakerpluginsdk_export.h"

/**
 * Keys of a loudspeaker descriptor file as LoudspeakerDescriptor reads them, with its nested
 * blocks: "cabinet" (extending CabinetShapeFileKeys), each entry of "sourcePoints" (read by
 * SourcePointDescriptor) and the DSP channel keys of such an entry (read by DspChannelDescriptor).
 * Lengths in millimetres (metres in the API), angles in degrees.
 *
 * The tables are constant: read them from any thread.
 */
class NVLPS_EXPORT LoudspeakerDescriptorFileKeys
{
public:
    /// The top level of the file.
    static const FileKeyTable &Table();
    /// The "cabinet" block.
    static const FileKeyTable &Cabinet();
    /// One entry of "sourcePoints", DSP channel keys included.
    static const FileKeyTable &SourcePoint();
};
