// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonReadResult.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QByteArrayView>
#include <QString>

class QIODevice;

/**
 * Reads balloon data files into BalloonTables: the 194-byte little-endian header, the frequency
 * vector, the level offsets and the F x NH x NV magnitude/phase pairs.
 *
 * Read() is strict: it checks the header against the file's size and each field against its
 * meaning, and a file with any problem gives no table but every problem found, each naming its
 * header field or byte offset. Decode() reads as a source point does, leniently: a short file
 * reads zeros past its end and nothing is validated. Both are thread-safe.
 */
class NVLPS_EXPORT BalloonFile
{
public:
    /// Reads a file by path or Qt resource (":/...").
    static BalloonReadResult Read(const QString &fileName);
    /// Reads everything left in an open device.
    static BalloonReadResult Read(QIODevice &device);
    static BalloonReadResult Read(QByteArrayView bytes);

    /// Every problem of the file's bytes; empty when Read() would give a table.
    static QList<BalloonProblem> Check(QByteArrayView bytes);

    /**
     * The table as a source point loads it: missing bytes read as zero, unknown formats decode to
     * 0 without consuming bytes. Throws std::length_error when the counts multiply to a negative
     * size, or declare far more values than the file could hold.
     */
    static std::shared_ptr<const BalloonTable> Decode(QByteArrayView bytes);
};
