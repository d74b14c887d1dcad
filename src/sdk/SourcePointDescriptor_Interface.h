// SPDX-License-Identifier: MIT
#pragma once

#include "Complex.h"
#include "IBalloon.h"
#include "Point.h"
#include "Tolvane.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <memory>

/**
 * What the host may ask of an acoustic source point (implemented by SourcePointDescriptor):
 * its placement per mounting, its DSP channel's switches and its measured directivity balloons.
 * Angles are degrees, frequencies Hz, positions metres.
 *
 * Geometry and switches are read-only once constructed. Balloon values may be asked only once
 * the balloon data is loaded: before, they are 0; a direction outside the table throws
 * std::out_of_range.
 */
class SourcePointDescriptor_Interface
{
public:
    /// When balloon data files are read.
    enum ReadBalloonDataMode : int {
        Asynchronous = 0, ///< on a worker of the global thread pool
        Synchronous = 1,  ///< before ReadBalloonData() returns
    };

    virtual ~SourcePointDescriptor_Interface() = default;

    /// Fills the point from its entry of a loudspeaker descriptor's "sourcePoints"; always true.
    virtual bool Read(const QVariantMap &map) = 0;
    /// Reads the balloon files named under "balloonData" (see SourcePointDescriptor).
    virtual void ReadBalloonData(ReadBalloonDataMode mode) = 0;
    /// True once a balloon file has been read completely; safe to call from any thread.
    virtual bool IsBalloonDataLoaded() const = 0;

    virtual QString GetName() = 0;
    virtual void SetName(const QString &name) = 0;
    /// The amplifier whose channel answers the switch queries: "D80".
    virtual QString GetDefaultAmplifier() = 0;

    /// Per-mounting placement; a mounting without an entry takes the "default" entry.
    virtual Point GetOrigin(Tolvane::Mounting mounting) = 0;
    virtual Point GetCenter(Tolvane::Mounting mounting) = 0;
    virtual QList<double> GetVerticalAngles(Tolvane::Mounting mounting) = 0;
    virtual QList<double> GetNormalAngles(Tolvane::Mounting mounting) = 0;

    /// Answered by the "D80" DSP channel (empty without one).
    virtual QList<int> GetSpeakerIds() = 0;
    virtual QString GetSwitchDescription(int switchId, Tolvane::Mounting mounting) = 0;
    virtual QMap<int, QString> GetSwitchValues(int switchId, Tolvane::Mounting mounting) = 0;

    /// Balloon grid of the last file read; 0 before any.
    virtual int GetNH() const = 0;
    virtual int GetNV() const = 0;
    virtual double GetThetaStepWidth() const = 0;
    virtual double GetPhiStepWidth() const = 0;
    virtual Tolvane::LoudspeakerSymmetry GetSymmetry() = 0;
    virtual bool HasFlushMountAttenuation() const = 0;
    virtual QList<double> GetFrequencyVector() = 0;

    /// The balloon key for a value (one decimal) if "balloonData" lists it, else "default".
    virtual QString GetBalloonDataKey(double value) = 0;
    virtual QString GetBalloonDataFilename(const QString &key) = 0;
    virtual std::shared_ptr<const nvScientificComputing::IBalloon> GetBalloon(const QString &key) = 0;

    /**
     * Interpolated complex directivity of the balloon `key` at the nearest balloon frequency.
     * Throws std::out_of_range for a position outside the balloon table, which only `frequency`,
     * `theta` and `phi` can cause; SourcePointDescriptor::GetBalloonData() lists exactly when.
     */
    virtual Complex GetBalloonData(const QString &key, double frequency, double theta, double phi, bool flushMount) = 0;
};

#define SourcePointDescriptor_Interface_iid "com.norvik.Tolvane.SourcePointDescriptor_Interface/1.0"
Q_DECLARE_INTERFACE(SourcePointDescriptor_Interface, SourcePointDescriptor_Interface_iid)
