// SPDX-License-Identifier: MIT
#pragma once

#include "SourcePointDescriptor_Interface.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QFuture>
#include <QObject>

#include <atomic>
#include <complex>
#include <memory>

class BalloonTable;
class DspChannelDescriptor;
class SourcePointBalloons;

/**
 * One acoustic source point of a loudspeaker model: placement per mounting, the DSP channel
 * that drives it, and its measured directivity balloons, one complex table per balloon key.
 *
 * Balloon files are named under "balloonData" and read from ":/Resources/<name>", either at
 * once or on the global thread pool (ReadBalloonData()). BalloonDataChanged() is emitted,
 * possibly from a worker thread, after each file. Nothing is locked: query balloon values only
 * once IsBalloonDataLoaded() is true or the signal has arrived, and only from one thread at a
 * time while no read runs. The destructor waits for a running background read.
 *
 * Each file becomes an immutable BalloonTable. A read swaps the point's tables in at once; a read
 * that throws leaves the point as it was, and a table or balloon object handed out stays valid
 * for as long as it is held, across later reads and the point's destruction.
 *
 * Positions are metres, angles degrees, frequencies Hz. A missing balloon resource logs
 * "Balloon data file not found: <name>"; a short or corrupt balloon file is not detected here
 * (values past its end read as zeros): BalloonFile::Read() and `lpsdk validate` find it.
 */
class NVLPS_EXPORT SourcePointDescriptor : public QObject, public SourcePointDescriptor_Interface
{
    Q_OBJECT
    Q_INTERFACES(SourcePointDescriptor_Interface)
public:
    explicit SourcePointDescriptor(QObject *parent = nullptr);
    ~SourcePointDescriptor() override;

    /**
     * Reads "name", "origin", "center", "flushMountAttenuation", the "D80" DSP channel,
     * "balloonData" (checking that each listed resource exists; missing ones are logged as
     * "Balloon data file not found: <path>"), "verticalAngles" and "normalAngles". Always true.
     */
    bool Read(const QVariantMap &map) override;

    /**
     * Reads every balloon file of "balloonData" unless a table exists already. Asynchronous
     * starts one background read (none while one runs); Synchronous reads before returning,
     * after waiting for a running background read. A point with "flushMountAttenuation" always
     * reads at once. Other modes log "Unexpected readBalloonDataMode = <mode>".
     * In Synchronous mode a file whose counts multiply to a negative or absurd size throws
     * std::length_error; in a background read the point then stays unloaded.
     */
    void ReadBalloonData(ReadBalloonDataMode mode) override;
    bool IsBalloonDataLoaded() const override;

    QString GetName() override { return m_name; }
    void SetName(const QString &name) override;
    QString GetDefaultAmplifier() override;

    Point GetOrigin(Tolvane::Mounting mounting) override;
    Point GetCenter(Tolvane::Mounting mounting) override;
    QList<double> GetVerticalAngles(Tolvane::Mounting mounting) override;
    QList<double> GetNormalAngles(Tolvane::Mounting mounting) override;
    QMap<QString, Point> GetCenterMap() const { return m_centers; }
    void SetCenterMap(const QMap<QString, Point> &centers);

    /// The channel of `amplifier`, else the "D80" channel, else null.
    DspChannelDescriptor *GetDspChannelDescriptor(const QString &amplifier) const;
    QList<int> GetSpeakerIds() override;
    /// The description of a switch in the default controller setup of the mounting.
    QString GetSwitchDescription(int switchId, Tolvane::Mounting mounting) override;
    QMap<int, QString> GetSwitchValues(int switchId, Tolvane::Mounting mounting) override;

    /// The grid of the last balloon file read; 0 before the first.
    int GetNH() const override;
    int GetNV() const override;
    double GetThetaStepWidth() const override;
    double GetPhiStepWidth() const override;
    Tolvane::LoudspeakerSymmetry GetSymmetry() override;
    bool HasFlushMountAttenuation() const override { return m_flushMountAttenuation; }
    /// The frequencies of the last balloon file read (Hz); empty before the first.
    QList<double> GetFrequencyVector() override;
    /// True when Read() found at least one listed balloon file that exists and is not empty.
    bool HasBalloonFiles() const { return m_hasBalloonFiles; }

    QString GetBalloonDataKey(double value) override;
    QString GetBalloonDataFilename(const QString &key) override;
    /// The balloon object of the key's last file, which keeps its table alive; null when none.
    std::shared_ptr<const nvScientificComputing::IBalloon> GetBalloon(const QString &key) override;

    /**
     * The table that GetBalloonData() reads for `key`, null when no file of that key is loaded.
     * GetBalloonData(key, f, theta, phi, fm) equals, bit for bit and in what it throws,
     * table->GetValue(table->FindFrequencyIndex(f), theta, GetPhiWithNormalAngle(phi), fm).
     * When the point's files hold different grids, the table carries the grid and frequencies of
     * the last file read, as every lookup of the point does.
     */
    std::shared_ptr<const BalloonTable> GetBalloonTable(const QString &key) const;
    /// The keys with a loaded table, in the order they were first read.
    QStringList GetBalloonKeys() const;

    /**
     * Bilinear interpolation of the balloon `key` (or the flush-mount table when `flushMount`
     * and the file has one) at the balloon frequency nearest `frequency` (Hz), theta and phi in
     * degrees. Phi is shifted by the "default" normal angle and folded by the symmetry. When the
     * corners' phases cancel, the result keeps the weighted magnitude with the nearest corner's
     * phase. (0, 0) before any balloon is loaded. Allocation-free.
     *
     * Throws std::out_of_range when a cell corner with a positive weight has a flat index
     * (f * NH + t) * S + p (S = NV, or 2 for the flush-mount table) outside the table; rows and
     * columns past the grid are not checked on their own, so they read the neighbouring row or
     * frequency. Per argument:
     * - `frequency` throws when it has no index: NaN, infinite, or 1e10 Hz or more away from
     *   every balloon frequency, and any frequency when the balloon has none.
     * - `theta` throws when its row, counted on from the chosen frequency's first row, falls
     *   before the table's first row or after its last: a negative theta at the first frequency,
     *   a theta past the grid at the last one, one further past the grid than the frequencies
     *   above hold rows, and an infinite theta.
     * - `phi` is folded into one turn first and throws only when its column lies past the table's
     *   end: after the last column in the last row of the last frequency, or anywhere a file's
     *   phi step is too small for its column count.
     * - `key` and `flushMount` only choose the table, read with the grid of the last file
     *   read: they lead to a throw only when the chosen table is smaller than that grid (keys
     *   whose files hold different grids).
     * A NaN theta or phi, and an infinite phi, give (0, 0) and never throw: no corner gets a weight.
     */
    Complex GetBalloonData(const QString &key, double frequency, double theta, double phi, bool flushMount) override;
    /// First value of the chosen table; null before loading and for an empty table.
    const std::complex<float> *GetRawBalloonData(const QString &key, bool flushMount) const;
    /// Phi plus the first "default" normal angle (360 subtracted once above 360).
    double GetPhiWithNormalAngle(double phi) const
    {
        if (m_hasNormalAngle) {
            phi += m_normalAngle;
            if (phi > 360.0)
                phi -= 360.0;
        }
        return phi;
    }

Q_SIGNALS:
    /// A balloon file has been read completely (emitted from the reading thread).
    void BalloonDataChanged();

private:
    void ReadBalloonDataFromMap();
    void WaitForBackgroundRead();
    bool ReadBalloonFile(const QString &key, const QString &path);

    QString m_name;
    QMap<QString, Point> m_origins;
    QMap<QString, Point> m_centers;
    bool m_flushMountAttenuation = false;
    QVariantMap m_balloonDataMap;
    QMap<QString, QList<double>> m_verticalAngles;
    QMap<QString, QList<double>> m_normalAngles;
    bool m_hasNormalAngle = false; // cached "default" normal angle for lookups
    double m_normalAngle = 0.0;
    bool m_hasBalloonFiles = false;
    QMap<QString, DspChannelDescriptor *> m_dspChannels;

    std::shared_ptr<const SourcePointBalloons> m_balloons; // replaced whole by each read
    std::atomic<int> m_tableCount{0};
    std::atomic<bool> m_balloonDataLoaded{false};
    QFuture<void> m_backgroundRead;
    std::atomic<bool> m_backgroundReadDone{true};
};
