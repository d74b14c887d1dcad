// SPDX-License-Identifier: MIT
#pragma once

#include "Complex.h"
#include "DspChannelDescriptor_Interface.h"
#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariantMap>

class LoudspeakerSetup;

/**
 * The DSP (amplifier) channel that drives one source point: its controller setups by
 * setup key (children of this object, read from ":/Resources/<file>"), the default setup
 * of each mounting, and the two frequency grids. Acoustic queries go to the setup of the
 * key asked for. Filled in the constructor, read-only afterwards.
 *
 * Frequencies are Hz, delays seconds. Safe to query from several threads once constructed.
 * An unknown setup key gives neutral answers; a setup file that cannot be read leaves an empty
 * setup under its key (the JSON loader reports the file).
 */
class NVLPS_EXPORT DspChannelDescriptor : public QObject, public DspChannelDescriptor_Interface
{
    Q_OBJECT
    Q_INTERFACES(DspChannelDescriptor_Interface)
public:
    /// Reads "name", the default setups and every entry of "controllerSetups" from a source point's map.
    DspChannelDescriptor(const QVariantMap &map, QObject *parent);
    ~DspChannelDescriptor() override;

    QString GetName() override { return m_name; }
    int GetDefaultLoudspeakerSetupKey(Tolvane::Mounting mounting) const override;
    QMap<int, LoudspeakerSetup *> GetLoudspeakerSetups() { return m_setups; }
    QList<int> GetSpeakerIds() override;
    QList<double> GetFrequencyVector(Tolvane::FrequencyRange range) override;

    /// Seconds; 0 for an unknown setup key (as are the other numbers below).
    double GetDelay(int setupKey);
    /// Hz.
    double GetLowOptFrequency(int setupKey);
    double GetHighOptFrequency(int setupKey);
    double GetMergeFrequency(int setupKey);
    int GetSpeakerId(int setupKey);
    int GetSpeakerType(int setupKey);
    /// Empty for an unknown setup key or switch.
    QString GetSwitchDescription(int setupKey, int switchId);
    QMap<int, QString> GetSwitchValues(int setupKey, int switchId);

    Complex GetTransferFunction(Tolvane::FrequencyRange range, int frequencyIndex, int setupKey, const QMap<int, int> &switches,
                                Tolvane::SensitivityTypes sensitivityType, bool applyApEq) override;
    Complex GetSensitivity(Tolvane::FrequencyRange range, int frequencyIndex, int setupKey, Tolvane::SensitivityTypes sensitivityType) override;
    QString GetBalloonDataKey(int setupKey, const QMap<int, int> &switchStates) override;

    bool operator==(const DspChannelDescriptor &other) const;
    bool operator!=(const DspChannelDescriptor &other) const { return !(*this == other); }

private:
    bool ReadDescriptor(const QVariantMap &map);
    void ReadLoudspeakerSetups(const QVariantMap &map);
    LoudspeakerSetup *Setup(int setupKey) const;

    QString m_name;
    QMap<int, LoudspeakerSetup *> m_setups;
    QHash<int, int> m_defaultSetups; // Tolvane::Mounting -> setup key
    QList<double> m_logFrequencies;
    QList<double> m_linearFrequencies;
};
