// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonTable.h"
#include "nvloudspeakerpluginsdk_export.h"

class QIODevice;

/**
 * Writes a balloon table as the CSV that BalloonCsvPacker reads (header
 * `frequency_hz,theta_deg,phi_deg,magnitude_db,phase_deg`, one row per frequency and stored
 * direction), so that packing the CSV again gives the same table within float precision.
 *
 * Magnitudes are 20 log10 |value| with the level offsets already applied, phases degrees in
 * (-180, 180]; a value of 0 is written as -400 dB, since the packer takes only finite levels.
 * The closing phi 360 column of a full circle is left out: the packer adds it again. The
 * flush-mount parameters have no CSV column and are not written.
 */
class NVLPS_EXPORT BalloonCsvUnpacker
{
public:
    /// Writes the table's rows to an open device; false when the device fails.
    static bool Write(const BalloonTable &table, QIODevice &device);
    /// Writes the rows into a file, atomically; false (nothing written) on any error.
    static bool Write(const BalloonTable &table, const QString &fileName);
};
