// SPDX-License-Identifier: MIT
#pragma once

#include "FileKeyTable.h"
#include "nvloudspeakerpluginsdk_export.h"

/**
 * Keys of the shape parameters that CabinetShapeCreator reads from a "cabinet" block:
 * the shape name, outer size, trapezoid angle, the parameters of each parametric shape and
 * the "views" of an "Arbitrary" shape. Lengths in millimetres, angles in degrees; a missing
 * parameter reads as 0. The cabinet blocks of loudspeaker and rigging descriptors extend it.
 *
 * The tables are constant: read them from any thread.
 */
class NVLPS_EXPORT CabinetShapeFileKeys
{
public:
    static const FileKeyTable &Table();
};
