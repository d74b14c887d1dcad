// SPDX-License-Identifier: MIT
#pragma once

#include "Complex.h"
#include "IControllerJson.h"
#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <complex>
#include <string>
#include <utility>
#include <vector>

class CouplingFilterProvider;

/**
 * One controller setup of a DSP (amplifier) channel, read from a controller setup file:
 * names, gain, polarity, delay, supported amplifiers, sensitivity, switches with their
 * filter responses, named filter sets and the limiter and EQ parameter blocks.
 *
 * Every filter is evaluated on the 1/24-octave grid (249 points) and on the linear grid
 * (1025 points) while the file is read, so a transfer-function query is a few look-ups and
 * complex products. Filled once by Read(), then only queried; queries are reentrant on a
 * read object (the coupling filter provider must be initialised before concurrent use).
 *
 * Gains are linear factors (dB in the file), delays seconds (milliseconds in the file),
 * frequencies Hz. A missing or unparsable file is reported by the JSON loader and leaves
 * every default; values of the wrong type read as Qt converts them; an unknown filter type
 * logs a warning and contributes a factor of 1.
 */
class NVLPS_EXPORT LoudspeakerSetup : public QObject, public nvScientificComputing::IControllerJson
{
    Q_OBJECT
public:
    explicit LoudspeakerSetup(QObject *parent = nullptr);
    ~LoudspeakerSetup() override;

    /// Reads a controller setup file (JSON with line comments); always returns true.
    bool Read(const QString &path);
    /**
     * Read() on a setup file held in memory; `fileName` becomes GetFilename() and labels the
     * warnings. Any bytes are safe to pass. Always true.
     */
    bool ReadData(const QByteArray &json, const QString &fileName = QString());

    QString GetName() const { return m_name; }
    QString GetFullName() const { return m_fullName; }
    QString GetDisplayName() const { return m_displayName; }
    QString GetLoudspeakerName() const { return m_loudspeakerName; }
    /// The file name (without directory) given to Read().
    QString GetFilename() const { return m_fileName; }
    QString GetPartNumber() const { return m_partNumber; }
    bool IsVisible() const { return m_visible; }
    /// Linear gain, polarity not applied.
    double GetGain() const { return m_gain; }
    /// +1 or -1 as read from the file.
    double GetPolarity() const { return m_polarity; }
    /// Seconds.
    double GetDelay() const { return m_delay; }
    double GetThermoLimiter() const { return m_thermoLimiterBroadbandPink; }
    /// Hz.
    double GetMergeFrequency() const { return m_mergeFrequency; }
    double GetLowOptFrequency() const { return m_lowOptFrequency; }
    double GetHighOptFrequency() const { return m_highOptFrequency; }
    int GetSpeakerId() const { return m_speakerId; }
    int GetSpeakerType() const { return m_speakerType; }
    QStringList GetSupportedAmplifiers() const { return m_supportedAmps; }

    void SetName(const QString &name) { m_name = name; }
    void SetFullName(const QString &fullName) { m_fullName = fullName; }
    void SetDisplayName(const QString &displayName) { m_displayName = displayName; }
    void SetLoudspeakerName(const QString &loudspeakerName) { m_loudspeakerName = loudspeakerName; }
    /// Sets the linear gain only (not the signed gain the transfer function uses).
    void SetGain(double gain) { m_gain = gain; }
    /// Seconds.
    void SetDelay(double delay) { m_delay = delay; }
    void SetSpeakerId(int speakerId) { m_speakerId = speakerId; }
    void SetVisible(bool visible) { m_visible = visible; }

    /// The maximum link count for an amplifier; the first entry when the amplifier is not supported, 0 without entries.
    int GetMaxLink(QString amp);
    /// The recommended link count, looked up like GetMaxLink().
    int GetRecommendedLink(QString amp);

    /// The number of switches with a description.
    int GetSwitchCount() const;
    QString GetSwitchDescription(int switchId);
    /// Value number -> label; switches 4 and 5 are the low and mid coupling positions.
    QMap<int, QString> GetSwitchValues(int switchId);
    /// `switches` with each coupling switch this setup has but `switches` leaves out at its 0 dB
    /// position, which is what a host means by not setting it (position 0 is not 0 dB).
    QMap<int, int> WithCouplingSwitchesAtZero(QMap<int, int> switches);
    /// The balloon data set the switch positions select: the highest-numbered switch with balloon keys decides, "default" when none has any.
    QString GetControllerBalloonDataKey(const QMap<int, int> &switches);

    /**
     * The complex transfer function at index frequencyIndex of a grid for a switch setting
     * (switch number -> value; 4 and 5 are the low and mid coupling positions, absent
     * switches count as 0): switch responses, coupling, system EQ, signed gain, delay, and
     * the chosen sensitivity and all-pass EQ factors. Allocation-free; only the coupling
     * filters are evaluated at query time. Ranges other than the two grids give 1; an index
     * outside the grid gives 0.
     */
    Complex GetTransferFunction(Tolvane::FrequencyRange range, int frequencyIndex, const QMap<int, int> &switches,
                                Tolvane::SensitivityTypes sensitivityType, bool applyApEq);
    /// Whether GetTransferFunction() applies the coupling filters of the position pair (low, mid):
    /// when either position is above 0.
    static bool AppliesCoupling(int lowPosition, int midPosition) { return lowPosition > 0 || midPosition > 0; }
    /// The sensitivity factor alone (measured sensitivity in pascal and/or array EQ); 1 where none applies.
    Complex GetSensitivity(Tolvane::FrequencyRange range, int frequencyIndex, Tolvane::SensitivityTypes sensitivityType);

    /// The precomputed responses on a grid, by name ("Switch<n>_<v>" and the named filter sets).
    QMap<QString, QList<Complex>> GetFilterResponses(Tolvane::FrequencyRange range) const;
    /// The grid of a range (empty for other values).
    QList<double> GetFrequencies(Tolvane::FrequencyRange range) const;

    /// Compares what the acoustic model depends on; amplifier lists and parameter records do not take part.
    bool operator==(const LoudspeakerSetup &other) const;
    bool operator!=(const LoudspeakerSetup &other) const { return !(*this == other); }

    // nvScientificComputing::IControllerJson
    std::string_view getSetupName() override;
    signed char getAmpChannelCount() const override;
    signed char getThisAmpChannel() const override;
    double getControllerGainLinear() const override;
    double getControllerDelaySeconds() const override;
    signed char getControllerPhase() const override;
    const nvScientificComputing::SystemEq &getSystemEq() const override;
    const nvScientificComputing::Switch1 &getSwitch1Parameters() const override;
    const nvScientificComputing::Switch2 &getSwitch2Parameters() const override;
    const nvScientificComputing::Switch3 &getSwitch3Parameters() const override;
    const nvScientificComputing::PeakLimiter &getPeakLimiterParameters() const override;
    const nvScientificComputing::ThermoLimiter &getThermoLimiterParameters() const override;
    const std::vector<std::complex<float>> &getSensitivity() const override;
    const std::vector<float> &getMaxPk() const override;

private:
    /// What a query needs from one grid, filled while reading.
    struct GridTable
    {
        std::vector<std::pair<int, QList<Complex>>> switchResponses[3];
        QList<Complex> systemEq;
        QList<Complex> arrayEq;
        QList<Complex> apEq;
    };

    friend class LoudspeakerSetupReader; // fills the members below

    bool ReadMap(const QVariantMap &map, const QString &fileName);

    Complex SensitivityAt(int frequencyIndex) const;

    QString m_name;
    QString m_fullName;
    QString m_displayName;
    QString m_loudspeakerName;
    QString m_fileName;
    QString m_partNumber;
    bool m_visible = false;
    QMap<QString, QList<Complex>> m_logResponses;
    QMap<QString, QList<Complex>> m_linearResponses;
    int m_speakerId = -1;
    int m_speakerType = 0;
    int m_ampChannelCount = 0;
    QStringList m_supportedAmps;
    QList<QVariant> m_maxLink;
    QList<QVariant> m_recommendedLink;
    int m_thisAmpChannel = 0;
    QMap<int, QString> m_switchDescriptions;
    QMap<int, QMap<int, QString>> m_switchValues;
    QMap<int, QMap<int, QString>> m_balloonDataKeys;
    double m_signedGain = 1.0;
    double m_gain = 1.0;
    double m_polarity = 1.0;
    double m_delay = 0.0;
    double m_thermoLimiterBroadbandPink = 0.0;
    double m_mergeFrequency = 0.0;
    double m_lowOptFrequency = 0.0;
    double m_highOptFrequency = 0.0;
    std::vector<std::complex<float>> m_sensitivity;
    std::vector<float> m_maxPk;
    nvScientificComputing::PeakLimiter m_peakLimiter;
    nvScientificComputing::ThermoLimiter m_thermoLimiter;
    nvScientificComputing::Switch1 m_switch1;
    nvScientificComputing::Switch2 m_switch2;
    nvScientificComputing::Switch3 m_switch3;
    nvScientificComputing::SystemEq m_systemEq;
    QList<double> m_logFrequencies;
    QList<double> m_linearFrequencies;

    GridTable m_logTable;
    GridTable m_linearTable;
    std::string m_setupNameUtf8;
    CouplingFilterProvider *m_couplingFilters; // the singleton, kept to skip its lock per query
};
