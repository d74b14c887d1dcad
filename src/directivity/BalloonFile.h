// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonFileWriter.h"
#include "BalloonReadResult.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

class QIODevice;

/**
 * Reads balloon data files into BalloonTables: the 194-byte little-endian header, the frequency
 * vector, the level offsets and the F x NH x NV magnitude/phase pairs.
 *
 * Read() is strict: it checks the header against the file's size and each field against its
 * meaning, and a file with any problem gives no table but every problem found, each naming its
 * header field or byte offset ("file" when it cannot be opened). Decode() reads as a source
 * point does, leniently: a short file reads zeros past its end and nothing is validated. Both
 * are thread-safe. Files are written by BalloonFileWriter (the CSV and SOFA importers produce its
 * data); reader, checks and writer share one layout, BalloonFormat.
 */
class NVLPS_EXPORT BalloonFile
{
public:
    /// Reads a file by path or Qt resource (":/...").
    static BalloonReadResult Read(const QString &fileName);
    /// Reads everything left in an open device.
    static BalloonReadResult Read(QIODevice &device);
    static BalloonReadResult Read(QByteArrayView bytes);
    /// Read(QByteArrayView), which a QByteArray would otherwise find ambiguous with a file name.
    static BalloonReadResult Read(const QByteArray &bytes) { return Read(QByteArrayView(bytes)); }

    /// Every problem of the file's bytes; empty when Read() would give a table.
    static QList<BalloonProblem> Check(QByteArrayView bytes);

    /**
     * The table as a source point loads it: missing bytes read as zero, unknown formats decode to
     * 0 without consuming bytes. Throws std::length_error when the counts multiply to a negative
     * size, or declare far more values than the file could hold.
     */
    static std::shared_ptr<const BalloonTable> Decode(QByteArrayView bytes);

    /**
     * The bytes of a balloon file holding `data`, each value in its format (ByteScaled over the
     * data's own range); empty, with `error` set when given, for data BalloonFileWriter refuses.
     * BalloonFileWriter offers fixed ranges and writing to devices.
     */
    static QByteArray Encode(const BalloonFileWriter::Data &data,
                             Tolvane::LoudspeakerDataFormat magnitudeFormat = Tolvane::Double,
                             Tolvane::LoudspeakerDataFormat phaseFormat = Tolvane::Double, QString *error = nullptr);
    /// Encode() written atomically to `fileName` (an existing file stays as it was on any error).
    static bool Write(const QString &fileName, const BalloonFileWriter::Data &data,
                      Tolvane::LoudspeakerDataFormat magnitudeFormat = Tolvane::Double,
                      Tolvane::LoudspeakerDataFormat phaseFormat = Tolvane::Double, QString *error = nullptr);
};
