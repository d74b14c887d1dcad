// SPDX-License-Identifier: MIT
#pragma once

#include "FileKeyTable.h"
#include "nvloudspeakerpluginsdk_export.h"

/**
 * Keys of a rigging hardware descriptor file as RiggingHardwareDescriptor reads them, with
 * its "cabinet" block (extending CabinetShapeFileKeys) and the entries of "loadBeamTypes".
 * Lengths in millimetres (metres in the API), angles in degrees.
 *
 * The tables are constant: read them from any thread.
 */
class NVLPS_EXPORT RiggingHardwareDescriptorFileKeys
{
public:
    /// The top level of the file.
    static const FileKeyTable &Table();
    /// The "cabinet" block.
    static const FileKeyTable &Cabinet();
    /// One member of "loadBeamTypes".
    static const FileKeyTable &LoadBeamType();
};
