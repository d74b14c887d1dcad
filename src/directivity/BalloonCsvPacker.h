// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonFileWriter.h"

class QIODevice;

/**
 * Turns directivity measured on a theta/phi grid, given as CSV, into the input of
 * BalloonFileWriter.
 *
 * The CSV has the header line `frequency_hz,theta_deg,phi_deg,magnitude_db,phase_deg` and one row
 * per frequency and direction, in any order. Angles as in BalloonFileWriter: theta is the angle
 * from the on-axis direction, 0 to 180 degrees; phi turns around the on-axis direction, 0 up and
 * 90 to the loudspeaker's left, 0 to 360 degrees. With a symmetry the rows hold only the stored
 * part, each phi folded by the symmetry as the lookup folds it: 0..180 for HalfSymmetry and
 * HalfSymmetryRotated, 0..90 for QuarterSymmetry, a single phi for RotationalSymmetry.
 * Magnitudes are in dB, phases in degrees.
 *
 * The packer infers the grid (the frequencies, the two step widths, NH and NV) from the rows and
 * checks that every grid point has exactly one row: a row that does not parse, a row off the grid,
 * a duplicate row and a missing grid point are errors, with the line number where there is a line.
 *
 * The phi seam. The lookup does not wrap phi around: in the last phi column it interpolates towards
 * the first value of the next theta row. So by default a NoSymmetry grid whose phi runs
 * 0 .. 360 - step gets one more column at 360 that repeats phi 0 (see BalloonFileWriter). On the
 * measured 5-degree monitor of the demo series, lookups at phi 357.5 without that column differ by
 * up to 30 dB from lookups with it; with it, the error left is the grid's own interpolation error.
 * setCloseSeam(false) writes the columns as given.
 *
 * Not thread-safe; independent packers may run on different threads.
 */
class NVLPS_EXPORT BalloonCsvPacker
{
public:
    /// The grid a successful read found, for reports.
    struct Grid {
        int rows = 0;               ///< data rows read
        int frequencyCount = 0;
        double firstFrequency = 0.0; ///< Hz
        double lastFrequency = 0.0;  ///< Hz
        int nh = 0;
        int nv = 0;                  ///< stored columns, the closing one included
        double thetaStepWidth = 0.0; ///< degrees
        double phiStepWidth = 0.0;   ///< degrees
        bool seamClosed = false;     ///< a column at phi 360 was added
    };

    /// The symmetry of the data (NoSymmetry by default); it decides the phi range the rows must cover.
    void setSymmetry(Tolvane::LoudspeakerSymmetry symmetry) { m_symmetry = symmetry; }
    /// Whether to add the closing column at phi 360 to NoSymmetry data (on by default).
    void setCloseSeam(bool close) { m_closeSeam = close; }

    /// Reads CSV text from an open device. False with errorString() set on any error.
    bool read(QIODevice *device);
    /// Reads a CSV file.
    bool read(const QString &fileName);

    /// The writer's input after a successful read (level offsets all 0, no flush mount).
    const BalloonFileWriter::Data &data() const { return m_data; }
    const Grid &grid() const { return m_grid; }
    /// Why the last read failed, with "line N: " where a line is to blame.
    QString errorString() const { return m_error; }

private:
    Tolvane::LoudspeakerSymmetry m_symmetry = Tolvane::NoSymmetry;
    bool m_closeSeam = true;
    BalloonFileWriter::Data m_data;
    Grid m_grid;
    QString m_error;
};
