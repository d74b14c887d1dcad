// SPDX-License-Identifier: MIT
#include "LoudspeakerSetup.h"

#include "CouplingFilterProvider.h"
#include "FilterResponse.h"
#include "FrequencyVectors_p.h"
#include "JsonFileLoader.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace {

const QString keySystemEq = QStringLiteral("System_EQ");
const QString keyArrayEq = QStringLiteral("Sensitivity_Array_EQ");
const QString keyApEq = QStringLiteral("Sensitivity_AP_EQ");

nvScientificComputing::Biquad ToBiquad(const QVariantMap &entry)
{
    nvScientificComputing::Biquad biquad;
    biquad.type = entry.value(QStringLiteral("type")).toInt();
    biquad.frequency = entry.value(QStringLiteral("fp")).toFloat();
    biquad.q = entry.value(QStringLiteral("Q")).toFloat();
    biquad.gain = entry.value(QStringLiteral("G")).toFloat();
    return biquad;
}

std::vector<nvScientificComputing::Biquad> ToBiquads(const QVariant &list)
{
    std::vector<nvScientificComputing::Biquad> biquads;
    const QVariantList entries = list.toList();
    biquads.reserve(entries.size());
    for (const QVariant &entry : entries)
        biquads.push_back(ToBiquad(entry.toMap()));
    return biquads;
}

std::vector<float> ToFloats(const QVariant &list)
{
    std::vector<float> values;
    const QVariantList entries = list.toList();
    values.reserve(entries.size());
    for (const QVariant &entry : entries)
        values.push_back(entry.toFloat());
    return values;
}

// Appends, like every other list a second Read() would extend.
void AppendBandFilters(const QVariantMap &limiter, std::vector<std::vector<nvScientificComputing::Biquad>> &bands)
{
    for (const char *band : {"Band0", "Band1", "Band2", "Band3"})
        bands.push_back(ToBiquads(limiter.value(QLatin1String(band))));
}

std::unordered_map<std::string, std::string> ToTexts(const QVariant &map)
{
    std::unordered_map<std::string, std::string> texts;
    const QVariantMap entries = map.toMap();
    for (auto it = entries.cbegin(); it != entries.cend(); ++it)
        texts[it.key().toStdString()] = it.value().toString().toStdString();
    return texts;
}

std::unordered_map<std::string, std::vector<nvScientificComputing::Biquad>> ToFilterLists(const QVariant &map)
{
    std::unordered_map<std::string, std::vector<nvScientificComputing::Biquad>> lists;
    const QVariantMap entries = map.toMap();
    for (auto it = entries.cbegin(); it != entries.cend(); ++it)
        lists[it.key().toStdString()] = ToBiquads(it.value());
    return lists;
}

QMap<int, QString> ToNumberedTexts(const QVariant &map)
{
    QMap<int, QString> texts;
    const QVariantMap entries = map.toMap();
    for (auto it = entries.cbegin(); it != entries.cend(); ++it)
        texts.insert(it.key().toInt(), it.value().toString());
    return texts;
}

// Coupling labels get a leading blank when not negative so that they align with "-1.5".
QString CouplingLabel(double value)
{
    QString label = QString::number(value, 'f', 1);
    if (value >= 0.0)
        label.prepend(QLatin1Char(' '));
    return label;
}

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
    m_name = map.value(QStringLiteral("setupName")).toString();
    m_fullName = map.value(QStringLiteral("setupNameFull")).toString();
    m_displayName = map.value(QStringLiteral("displayName")).toString();
    m_loudspeakerName = map.value(QStringLiteral("boxName")).toString();
    m_partNumber = map.value(QStringLiteral("zNumber")).toString();
    m_visible = map.value(QStringLiteral("visible")).toBool();
    m_speakerId = map.value(QStringLiteral("speakerId")).toInt();
    m_speakerType = map.value(QStringLiteral("speakerType")).toInt();
    m_ampChannelCount = map.value(QStringLiteral("ampChannelCount")).toInt();
    m_thisAmpChannel = map.value(QStringLiteral("thisAmpChannel")).toInt();
    m_polarity = map.value(QStringLiteral("polarity"), 1.0).toDouble();
    m_gain = std::pow(10.0, map.value(QStringLiteral("dBGain")).toDouble() / 20.0);
    m_signedGain = m_gain * m_polarity;
    m_delay = map.value(QStringLiteral("delay")).toDouble() / 1000.0;
    m_supportedAmps = map.value(QStringLiteral("supportedAmps")).toStringList();
    m_maxLink = map.value(QStringLiteral("maxLink")).toList();
    m_recommendedLink = map.value(QStringLiteral("recommendedLink")).toList();
    m_thermoLimiterBroadbandPink = map.value(QStringLiteral("thermoLimiterBroadbandPink")).toDouble();
    m_mergeFrequency = map.value(QStringLiteral("fMergeUSD"), 0.0).toDouble();
    m_lowOptFrequency = map.value(QStringLiteral("fLowOpt"), 0.0).toDouble();
    m_highOptFrequency = map.value(QStringLiteral("fHighOpt"), 0.0).toDouble();

    // Sensitivity: a pressure re 20 µPa per 1/24-octave band. A short phase list reads as 0°.
    const QVariantList dBSensitivity = map.value(QStringLiteral("dBSensitivity")).toList();
    const QVariantList phaseSensitivity = map.value(QStringLiteral("phaseSensitivity")).toList();
    for (qsizetype i = 0; i < dBSensitivity.size(); ++i) {
        const double magnitude = 2e-05 * std::pow(10.0, dBSensitivity.at(i).toDouble() / 20.0);
        const double phase = phaseSensitivity.value(i).toDouble() * 3.141592653589793 / 180.0;
        const Complex value = Complex::fromPolar(magnitude, phase);
        m_sensitivity.emplace_back(static_cast<float>(value.real()), static_cast<float>(value.imag()));
    }

    const QVariantList maxPk = map.value(QStringLiteral("maxPK")).toList();
    for (const QVariant &value : maxPk)
        m_maxPk.push_back(static_cast<float>(std::max(1.0, value.toDouble())));

    const QVariantMap switches = map.value(QStringLiteral("switches")).toMap();
    ReadSwitches(switches);
    AddCouplingSwitches();

    const QVariantMap filters = map.value(QStringLiteral("filters")).toMap();
    for (auto it = filters.cbegin(); it != filters.cend(); ++it) {
        const QVariantList list = it.value().toList();
        m_logResponses.insert(it.key(), GenerateFilter(list, m_logFrequencies));
        m_linearResponses.insert(it.key(), GenerateFilter(list, m_linearFrequencies));
    }

    m_fileName = fileName;
    ReadFilterData(filters);
    ReadSwitch1Data(switches);
    ReadSwitch2Data(switches);
    ReadSwitch3Data(switches);
    ReadPeakLimiterData(map.value(QStringLiteral("peakLimiter")).toMap());
    ReadThermoLimiterData(map.value(QStringLiteral("thermoLimiter")).toMap());

    BuildGridTables();
    return true;
}

void LoudspeakerSetup::ReadSwitches(const QVariantMap &switches)
{
    for (auto it = switches.cbegin(); it != switches.cend(); ++it) {
        const int number = it.key().toInt();
        const QVariantMap entry = it.value().toMap();
        m_switchDescriptions.insert(number, entry.value(QStringLiteral("description")).toString());
        m_switchValues.insert(number, ToNumberedTexts(entry.value(QStringLiteral("values"))));
        if (entry.contains(QStringLiteral("balloonData")))
            m_balloonDataKeys.insert(number, ToNumberedTexts(entry.value(QStringLiteral("balloonData"))));

        const QVariantMap filters = entry.value(QStringLiteral("filters")).toMap();
        const QVariantMap gains = entry.value(QStringLiteral("dBGains")).toMap();
        for (auto value = filters.cbegin(); value != filters.cend(); ++value) {
            QVariantList list = value.value().toList();
            const double gain = gains.value(value.key()).toDouble();
            if (gain != 0.0)
                list.append(QVariantMap {{QStringLiteral("type"), 0}, {QStringLiteral("G"), gain}});
            // The key keeps the file's spelling of both numbers.
            const QString name = QLatin1String("Switch") + it.key() + QLatin1Char('_') + value.key();
            m_logResponses.insert(name, GenerateFilter(list, m_logFrequencies));
            m_linearResponses.insert(name, GenerateFilter(list, m_linearFrequencies));
        }
    }
}

void LoudspeakerSetup::AddCouplingSwitches()
{
    CouplingFilterProvider &provider = *m_couplingFilters;
    QMap<int, QString> &low = m_switchValues[4];
    for (int position : provider.GetLowPositions())
        low.insert(position, CouplingLabel(CouplingFilterProvider::ConvertFromLowIndex(position)));
    QMap<int, QString> &mid = m_switchValues[5];
    for (int position : provider.GetMidPositions())
        mid.insert(position, CouplingLabel(CouplingFilterProvider::ConvertFromMidIndex(position)));
}

QList<Complex> LoudspeakerSetup::GenerateFilter(const QList<QVariant> &filters, const QList<double> &frequencies)
{
    return CalculateFilterListResponse(frequencies, filters);
}

bool LoudspeakerSetup::ReadFilterData(const QMap<QString, QVariant> &filters)
{
    m_systemEq.arrayEqFilters = ToBiquads(filters.value(keyArrayEq));
    m_systemEq.systemEqFilters = ToBiquads(filters.value(keySystemEq));
    m_systemEq.filterMaxValue = filters.value(QStringLiteral("SystemEqFilterMaxVal")).toDouble();
    return true;
}

bool LoudspeakerSetup::ReadSwitch1Data(const QMap<QString, QVariant> &switches)
{
    if (switches.isEmpty() || !switches.contains(QStringLiteral("1")))
        return false;
    const QVariantMap entry = switches.value(QStringLiteral("1")).toMap();
    m_switch1.switchId = entry.value(QStringLiteral("switchID")).toInt();
    m_switch1.description = entry.value(QStringLiteral("description")).toString().toStdString();
    m_switch1.values = ToTexts(entry.value(QStringLiteral("values")));
    m_switch1.gains.clear();
    const QVariantMap gains = entry.value(QStringLiteral("dBGains")).toMap();
    for (auto it = gains.cbegin(); it != gains.cend(); ++it)
        m_switch1.gains[it.key().toStdString()] = std::pow(10.0, it.value().toDouble() / 20.0);
    m_switch1.filters = ToFilterLists(entry.value(QStringLiteral("filters")));
    return true;
}

bool LoudspeakerSetup::ReadSwitch2Data(const QMap<QString, QVariant> &switches)
{
    if (switches.isEmpty() || !switches.contains(QStringLiteral("2")))
        return false;
    const QVariantMap entry = switches.value(QStringLiteral("2")).toMap();
    m_switch2.switchId = entry.value(QStringLiteral("switchID")).toInt();
    m_switch2.description = entry.value(QStringLiteral("description")).toString().toStdString();
    m_switch2.values = ToTexts(entry.value(QStringLiteral("values")));
    m_switch2.polarities.clear();
    const QVariantMap polarities = entry.value(QStringLiteral("polarities")).toMap();
    for (auto it = polarities.cbegin(); it != polarities.cend(); ++it)
        m_switch2.polarities[it.key().toStdString()] = it.value().toDouble();
    m_switch2.filters = ToFilterLists(entry.value(QStringLiteral("filters")));
    return true;
}

bool LoudspeakerSetup::ReadSwitch3Data(const QMap<QString, QVariant> &switches)
{
    if (switches.isEmpty() || !switches.contains(QStringLiteral("3")))
        return false;
    const QVariantMap entry = switches.value(QStringLiteral("3")).toMap();
    m_switch3.description = entry.value(QStringLiteral("description")).toString().toStdString();
    m_switch3.presetText = entry.value(QStringLiteral("presetText")).toString().toStdString();
    m_switch3.switchId = entry.value(QStringLiteral("switchID")).toInt();
    m_switch3.values = ToTexts(entry.value(QStringLiteral("values")));
    m_switch3.filters = ToFilterLists(entry.value(QStringLiteral("filters")));
    return true;
}

bool LoudspeakerSetup::ReadPeakLimiterData(const QMap<QString, QVariant> &peakLimiter)
{
    nvScientificComputing::PeakLimiter &l = m_peakLimiter;
    AppendBandFilters(peakLimiter, l.bandFilters);
    l.displayLimiterType = static_cast<int16_t>(peakLimiter.value(QStringLiteral("DispLimType")).toInt());
    l.displayLimiterDisabled = peakLimiter.value(QStringLiteral("DispLimDisable")).toBool();
    l.clipVoltagePeak = peakLimiter.value(QStringLiteral("UclipPK")).toFloat();
    l.clipVoltageRms = peakLimiter.value(QStringLiteral("UclipRMS")).toFloat();
    l.maximumVoltage = peakLimiter.value(QStringLiteral("Umax")).toFloat();
    l.overshootPercentage = peakLimiter.value(QStringLiteral("OverShootProz")).toFloat();
    l.displacementVoltage = peakLimiter.value(QStringLiteral("UDisplacement")).toFloat();
    l.displacementFrequency = peakLimiter.value(QStringLiteral("FxDisplacement")).toFloat();
    l.compressionRatio = peakLimiter.value(QStringLiteral("CompRatio")).toFloat();
    l.attack = peakLimiter.value(QStringLiteral("Attack")).toFloat();
    l.hold = peakLimiter.value(QStringLiteral("Hold")).toFloat();
    l.release = peakLimiter.value(QStringLiteral("Release")).toFloat();
    l.attackBand = ToFloats(peakLimiter.value(QStringLiteral("AttackBand")));
    l.holdBand = ToFloats(peakLimiter.value(QStringLiteral("HoldBand")));
    l.releaseBand = ToFloats(peakLimiter.value(QStringLiteral("ReleaseBand")));
    l.mix = ToFloats(peakLimiter.value(QStringLiteral("Vmix")));
    l.filterMaxValue = peakLimiter.value(QStringLiteral("FilterMaxVal")).toFloat();
    return true;
}

bool LoudspeakerSetup::ReadThermoLimiterData(const QMap<QString, QVariant> &thermoLimiter)
{
    nvScientificComputing::ThermoLimiter &l = m_thermoLimiter;
    AppendBandFilters(thermoLimiter, l.bandFilters);
    l.limiterDisabled = thermoLimiter.value(QStringLiteral("LimDisable")).toBool();
    l.reductionAttack = thermoLimiter.value(QStringLiteral("ReductAttack")).toFloat();
    l.reductionRelease = thermoLimiter.value(QStringLiteral("ReductRelease")).toFloat();
    l.voltageThreshold = thermoLimiter.value(QStringLiteral("UThreshold")).toFloat();
    l.reducedVoltageThreshold = thermoLimiter.value(QStringLiteral("UThresholdReduced")).toFloat();
    l.frequencyThreshold = thermoLimiter.value(QStringLiteral("FxThreshold")).toFloat();
    l.attack = thermoLimiter.value(QStringLiteral("Attack")).toFloat();
    l.latency = thermoLimiter.value(QStringLiteral("Latency")).toFloat();
    l.release = thermoLimiter.value(QStringLiteral("Release")).toFloat();
    l.rmsTime = thermoLimiter.value(QStringLiteral("Trms")).toFloat();
    l.mix = ToFloats(thermoLimiter.value(QStringLiteral("Vmix")));
    l.filterMaxValue = thermoLimiter.value(QStringLiteral("FilterMaxVal")).toFloat();
    return true;
}

void LoudspeakerSetup::BuildGridTable(const QMap<QString, QList<Complex>> &responses, GridTable &table)
{
    // A query for switch s at value w reads the response named "Switch<s>_<w>" with w in
    // plain decimal; only names spelt that way can ever be found, so only those are kept.
    for (int s = 1; s <= 3; ++s) {
        const QString prefix = QStringLiteral("Switch%1_").arg(s);
        std::vector<std::pair<int, QList<Complex>>> &list = table.switchResponses[s - 1];
        list.clear();
        for (auto it = responses.lowerBound(prefix); it != responses.cend() && it.key().startsWith(prefix); ++it) {
            const QString number = it.key().mid(prefix.size());
            bool ok = false;
            const int value = number.toInt(&ok);
            if (ok && QString::number(value) == number)
                list.emplace_back(value, it.value());
        }
    }
    table.systemEq = responses.value(keySystemEq);
    table.arrayEq = responses.value(keyArrayEq);
    table.apEq = responses.value(keyApEq);
}

void LoudspeakerSetup::BuildGridTables()
{
    BuildGridTable(m_logResponses, m_logTable);
    BuildGridTable(m_linearResponses, m_linearTable);
}

int LoudspeakerSetup::GetMaxLink(QString amp)
{
    if (m_maxLink.isEmpty())
        return 0;
    const qsizetype index = m_supportedAmps.indexOf(amp);
    return m_maxLink.value(index < 0 ? 0 : index).toInt();
}

int LoudspeakerSetup::GetRecommendedLink(QString amp)
{
    if (m_recommendedLink.isEmpty())
        return 0;
    const qsizetype index = m_supportedAmps.indexOf(amp);
    return m_recommendedLink.value(index < 0 ? 0 : index).toInt();
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
    QString key = QStringLiteral("default");
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
    const bool logarithmic = range == Tolvane::LogarithmicFrequencies;
    if (!logarithmic && range != Tolvane::LinearFrequencies)
        return Complex(1.0, 0.0);
    const QList<double> &grid = logarithmic ? m_logFrequencies : m_linearFrequencies;
    if (frequencyIndex < 0 || frequencyIndex >= grid.size())
        return Complex(0.0, 0.0);
    const GridTable &table = logarithmic ? m_logTable : m_linearTable;
    const double f = grid.at(frequencyIndex);

    int w[6] = {0, 0, 0, 0, 0, 0};
    for (auto it = switches.cbegin(); it != switches.cend() && it.key() <= 5; ++it) {
        if (it.key() >= 1)
            w[it.key()] = it.value();
    }

    Complex h = SwitchFactor(table.switchResponses[0], w[1], frequencyIndex);
    h *= SwitchFactor(table.switchResponses[1], w[2], frequencyIndex);
    h *= SwitchFactor(table.switchResponses[2], w[3], frequencyIndex);
    if (w[4] > 0 || w[5] > 0)
        h *= m_couplingFilters->CalculateCouplingResponse(w[4], w[5], f);
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
