// SPDX-License-Identifier: MIT
#pragma once

#include "Complex.h"
#include "Tolvane.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

/**
 * What the host may ask of the DSP (amplifier) channel that drives a source point
 * (implemented by DspChannelDescriptor). The class name and the interface id differ on
 * purpose: plugins built against the id must keep casting.
 *
 * Frequencies are Hz, delays seconds, gains linear. Read-only once constructed, so it may be
 * queried from several threads. A setup key the channel does not hold gives neutral answers
 * (empty texts, 0, a transfer function of 0 and a sensitivity of 1), never an error.
 */
class DspChannelDescriptor_Interface
{
public:
    virtual ~DspChannelDescriptor_Interface() = default;

    virtual QString GetName() = 0;
    /// The default controller setup key of a mounting, 0 when it has none.
    virtual int GetDefaultLoudspeakerSetupKey(Tolvane::Mounting mounting) const = 0;
    /// The speaker id of every setup, in setup-key order.
    virtual QList<int> GetSpeakerIds() = 0;
    /// The frequencies (Hz) of a grid; empty for unknown ranges.
    virtual QList<double> GetFrequencyVector(Tolvane::FrequencyRange range) = 0;
    /// The transfer function of a setup at a grid index; (0, 0) for an unknown setup key.
    virtual Complex GetTransferFunction(Tolvane::FrequencyRange range, int frequencyIndex, int setupKey, const QMap<int, int> &switches,
                                        Tolvane::SensitivityTypes sensitivityType, bool applyApEq) = 0;
    /// The sensitivity factor of a setup at a grid index; (1, 0) for an unknown setup key.
    virtual Complex GetSensitivity(Tolvane::FrequencyRange range, int frequencyIndex, int setupKey, Tolvane::SensitivityTypes sensitivityType) = 0;
    /// The balloon data key the switch positions select; "default" for an unknown setup key.
    virtual QString GetBalloonDataKey(int setupKey, const QMap<int, int> &switchStates) = 0;
};

#define DspChannelDescriptor_Interface_iid "com.norvik.Tolvane.AmplifierChannelDescriptor_Interface/1.0"
Q_DECLARE_INTERFACE(DspChannelDescriptor_Interface, DspChannelDescriptor_Interface_iid)
