// SPDX-License-Identifier: MIT
#include "LoudspeakerSetup.h"

#include "CouplingFilterProvider.h"
#include "FilterResponse.h"
#include "FrequencyVectors.h"
#include "JsonFileLoader.h"
#include "LoudspeakerSetupReader_p.h"
#include "UpperState.h"
#include "Vocabulary.h"

#include <QFileInfo>

#include <algorithm>

namespace {

inline Complex At(const QList<Complex> &list, int index)
{
    return index < list.size() ? list.at(index) : Complex(1.0, 0.0);
}

inline Complex SwitchFactor(const std::vector<std::pair<int, QList<Complex>>> &responses, int value, int index)
{
    for (const auto &response : responses) {
        if (response.first == value)
            return At(response.second, index);
    }
    return Complex(1.0, 0.0);
}

} // namespace

LoudspeakerSetup::LoudspeakerSetup(QObject *parent)
    : QObject(parent)
    , m_logFrequencies(FrequencyVectors::GetFrequencyVector(24))
    , m_linearFrequencies(FrequencyVectors::GetLinearFrequencyVector())
    , m_couplingFilters(&CouplingFilterProvider::GetInstance())
{
}

LoudspeakerSetup::~LoudspeakerSetup() = default;

bool LoudspeakerSetup::Read(const QString &path)
{
    return ReadMap(LoadJsonFile(path), QFileInfo(path).fileName());
}

bool LoudspeakerSetup::ReadData(const QByteArray &json, const QString &fileName)
{
    return ReadMap(LoadJsonData(json, fileName), fileName);
}

bool LoudspeakerSetup::ReadMap(const QVariantMap &map, const QString &fileName)
{
    LoudspeakerSetupReader(*this).Read(map, fileName);
    return true;
}

int LoudspeakerSetup::GetMaxLink(QString amp)
{
    // An empty list gives 0, an unsupported amplifier the first entry.
    return m_maxLink.value(std::max<qsizetype>(0, m_supportedAmps.indexOf(amp))).toInt();
}

int LoudspeakerSetup::GetRecommendedLink(QString amp)
{
    // An empty list gives 0, an unsupported amplifier the first entry.
    return m_recommendedLink.value(std::max<qsizetype>(0, m_supportedAmps.indexOf(amp))).toInt();
}

int LoudspeakerSetup::GetSwitchCount() const
{
    return int(m_switchDescriptions.size());
}

QString LoudspeakerSetup::GetSwitchDescription(int switchId)
{
    return m_switchDescriptions.value(switchId);
}

QMap<int, QString> LoudspeakerSetup::GetSwitchValues(int switchId)
{
    return m_switchValues.value(switchId);
}

QString LoudspeakerSetup::GetControllerBalloonDataKey(const QMap<int, int> &switches)
{
    QString key = Vocabulary::DefaultKey;
    for (auto it = switches.cbegin(); it != switches.cend(); ++it) {
        const auto keys = m_balloonDataKeys.constFind(it.key());
        if (keys != m_balloonDataKeys.cend())
            key = keys->value(it.value());
    }
    return key;
}

Complex LoudspeakerSetup::SensitivityAt(int frequencyIndex) const
{
    if (frequencyIndex >= 0 && std::size_t(frequencyIndex) < m_sensitivity.size())
        return Complex(m_sensitivity[std::size_t(frequencyIndex)]);
    return Complex(1.0, 0.0);
}

Complex LoudspeakerSetup::GetTransferFunction(Tolvane::FrequencyRange range, int frequencyIndex, const QMap<int, int> &switches,
                                              Tolvane::SensitivityTypes sensitivityType, bool applyApEq)
{
    ClearUpperState();
    const bool logarithmic = range == Tolvane::LogarithmicFrequencies;
    if (!logarithmic && range != Tolvane::LinearFrequencies)
        return Complex(1.0, 0.0);
    const QList<double> &grid = logarithmic ? m_logFrequencies : m_linearFrequencies;
    if (frequencyIndex < 0 || frequencyIndex >= grid.size())
        return Complex(0.0, 0.0);
    const GridTable &table = logarithmic ? m_logTable : m_linearTable;
    const double f = grid.at(frequencyIndex);

    int w[Vocabulary::MidCouplingSwitch + 1] = {};
    for (auto it = switches.cbegin(); it != switches.cend() && it.key() <= Vocabulary::MidCouplingSwitch; ++it) {
        if (it.key() >= 1)
            w[it.key()] = it.value();
    }

    Complex h = SwitchFactor(table.switchResponses[0], w[1], frequencyIndex);
    h *= SwitchFactor(table.switchResponses[1], w[2], frequencyIndex);
    h *= SwitchFactor(table.switchResponses[2], w[3], frequencyIndex);
    if (AppliesCoupling(w[Vocabulary::LowCouplingSwitch], w[Vocabulary::MidCouplingSwitch]))
        h *= m_couplingFilters->CalculateCouplingResponse(w[Vocabulary::LowCouplingSwitch], w[Vocabulary::MidCouplingSwitch], f);
    h *= At(table.systemEq, frequencyIndex);
    h *= m_signedGain;
    h *= Complex::fromPolar(1.0, -6.283185307179586 * f * m_delay);

    switch (sensitivityType) {
    case Tolvane::Sensitivity:
        if (logarithmic)
            h *= SensitivityAt(frequencyIndex);
        break;
    case Tolvane::ArrayEq:
        h *= At(table.arrayEq, frequencyIndex);
        break;
    case Tolvane::SensitivityWithArrayEq:
        if (logarithmic)
            h *= SensitivityAt(frequencyIndex) * At(table.arrayEq, frequencyIndex);
        break;
    default:
        break;
    }
    if (applyApEq)
        h *= At(table.apEq, frequencyIndex);
    return h;
}

Complex LoudspeakerSetup::GetSensitivity(Tolvane::FrequencyRange range, int frequencyIndex, Tolvane::SensitivityTypes sensitivityType)
{
    if (frequencyIndex < 0)
        return Complex(1.0, 0.0);
    if (range == Tolvane::LogarithmicFrequencies) {
        switch (sensitivityType) {
        case Tolvane::Sensitivity:
            return SensitivityAt(frequencyIndex);
        case Tolvane::ArrayEq:
            return At(m_logTable.arrayEq, frequencyIndex);
        case Tolvane::SensitivityWithArrayEq:
            return SensitivityAt(frequencyIndex) * At(m_logTable.arrayEq, frequencyIndex);
        default:
            return Complex(1.0, 0.0);
        }
    }
    if (range == Tolvane::LinearFrequencies && sensitivityType == Tolvane::ArrayEq)
        return At(m_linearTable.arrayEq, frequencyIndex);
    return Complex(1.0, 0.0);
}

QMap<QString, QList<Complex>> LoudspeakerSetup::GetFilterResponses(Tolvane::FrequencyRange range) const
{
    if (range == Tolvane::LogarithmicFrequencies)
        return m_logResponses;
    if (range == Tolvane::LinearFrequencies)
        return m_linearResponses;
    return {};
}

QList<double> LoudspeakerSetup::GetFrequencies(Tolvane::FrequencyRange range) const
{
    if (range == Tolvane::LogarithmicFrequencies)
        return m_logFrequencies;
    if (range == Tolvane::LinearFrequencies)
        return m_linearFrequencies;
    return {};
}

bool LoudspeakerSetup::operator==(const LoudspeakerSetup &other) const
{
    if (m_name != other.m_name || m_fullName != other.m_fullName || m_displayName != other.m_displayName
        || m_loudspeakerName != other.m_loudspeakerName || m_partNumber != other.m_partNumber || m_fileName != other.m_fileName
        || m_visible != other.m_visible)
        return false;
    if (m_logResponses != other.m_logResponses || m_linearResponses != other.m_linearResponses)
        return false;
    if (m_speakerId != other.m_speakerId || m_speakerType != other.m_speakerType || m_ampChannelCount != other.m_ampChannelCount
        || m_thisAmpChannel != other.m_thisAmpChannel)
        return false;
    if (m_switchDescriptions != other.m_switchDescriptions || m_switchValues != other.m_switchValues
        || m_balloonDataKeys != other.m_balloonDataKeys)
        return false;
    // Plain == on doubles: a NaN on either side makes the setups unequal.
    if (!(m_signedGain == other.m_signedGain && m_gain == other.m_gain && m_polarity == other.m_polarity && m_delay == other.m_delay
          && m_thermoLimiterBroadbandPink == other.m_thermoLimiterBroadbandPink && m_mergeFrequency == other.m_mergeFrequency
          && m_lowOptFrequency == other.m_lowOptFrequency && m_highOptFrequency == other.m_highOptFrequency))
        return false;
    if (m_sensitivity != other.m_sensitivity || m_maxPk != other.m_maxPk)
        return false;
    return m_logFrequencies == other.m_logFrequencies && m_linearFrequencies == other.m_linearFrequencies;
}

std::string_view LoudspeakerSetup::getSetupName()
{
    // Refreshed on every call so that the view follows SetName().
    m_setupNameUtf8 = m_name.toStdString();
    return m_setupNameUtf8;
}

signed char LoudspeakerSetup::getAmpChannelCount() const
{
    return static_cast<signed char>(m_ampChannelCount);
}

signed char LoudspeakerSetup::getThisAmpChannel() const
{
    return static_cast<signed char>(m_thisAmpChannel);
}

double LoudspeakerSetup::getControllerGainLinear() const
{
    return m_gain;
}

double LoudspeakerSetup::getControllerDelaySeconds() const
{
    return m_delay;
}

signed char LoudspeakerSetup::getControllerPhase() const
{
    return static_cast<signed char>(static_cast<int>(m_polarity));
}

const nvScientificComputing::SystemEq &LoudspeakerSetup::getSystemEq() const
{
    return m_systemEq;
}

const nvScientificComputing::Switch1 &LoudspeakerSetup::getSwitch1Parameters() const
{
    return m_switch1;
}

const nvScientificComputing::Switch2 &LoudspeakerSetup::getSwitch2Parameters() const
{
    return m_switch2;
}

const nvScientificComputing::Switch3 &LoudspeakerSetup::getSwitch3Parameters() const
{
    return m_switch3;
}

const nvScientificComputing::PeakLimiter &LoudspeakerSetup::getPeakLimiterParameters() const
{
    return m_peakLimiter;
}

const nvScientificComputing::ThermoLimiter &LoudspeakerSetup::getThermoLimiterParameters() const
{
    return m_thermoLimiter;
}

const std::vector<std::complex<float>> &LoudspeakerSetup::getSensitivity() const
{
    return m_sensitivity;
}

const std::vector<float> &LoudspeakerSetup::getMaxPk() const
{
    return m_maxPk;
}

QMap<int, int> LoudspeakerSetup::WithCouplingSwitchesAtZero(QMap<int, int> switches)
{
    if (!switches.contains(Vocabulary::LowCouplingSwitch) && !GetSwitchValues(Vocabulary::LowCouplingSwitch).isEmpty())
        switches.insert(Vocabulary::LowCouplingSwitch, CouplingFilterProvider::ConvertToLowIndex(0.0));
    if (!switches.contains(Vocabulary::MidCouplingSwitch) && !GetSwitchValues(Vocabulary::MidCouplingSwitch).isEmpty())
        switches.insert(Vocabulary::MidCouplingSwitch, CouplingFilterProvider::ConvertToMidIndex(0.0));
    return switches;
}
