// SPDX-License-Identifier: MIT
#include "LoudspeakerSetupReader_p.h"

#include "CouplingFilterProvider.h"
#include "FilterResponse.h"
#include "LoudspeakerSetup.h"
#include "Vocabulary.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

/// A JSON array as the vector the signal-processing engines take, each entry converted by `convert`.
template<typename Convert>
auto ToStdVector(const QVariant &list, Convert convert)
{
    std::vector<decltype(convert(QVariant()))> values;
    const QVariantList entries = list.toList();
    values.reserve(entries.size());
    for (const QVariant &entry : entries)
        values.push_back(convert(entry));
    return values;
}

std::vector<nvScientificComputing::Biquad> ToBiquads(const QVariant &list)
{
    return ToStdVector(list, [](const QVariant &value) {
        const QVariantMap entry = value.toMap();
        nvScientificComputing::Biquad biquad;
        biquad.type = entry.value(QStringLiteral("type")).toInt();
        biquad.frequency = entry.value(QStringLiteral("fp")).toFloat();
        biquad.q = entry.value(QStringLiteral("Q")).toFloat();
        biquad.gain = entry.value(QStringLiteral("G")).toFloat();
        return biquad;
    });
}

std::vector<float> ToFloats(const QVariant &list)
{
    return ToStdVector(list, [](const QVariant &value) { return value.toFloat(); });
}

// Appends, like every other list a second Read() would extend.
void AppendBandFilters(const QVariantMap &limiter, std::vector<std::vector<nvScientificComputing::Biquad>> &bands)
{
    for (const char *band : {"Band0", "Band1", "Band2", "Band3"})
        bands.push_back(ToBiquads(limiter.value(QLatin1String(band))));
}

/// A JSON object as the map the signal-processing engines take, each value converted by `convert`.
template<typename Convert>
auto ToStdMap(const QVariant &map, Convert convert)
{
    std::unordered_map<std::string, decltype(convert(QVariant()))> result;
    const QVariantMap entries = map.toMap();
    for (auto it = entries.cbegin(); it != entries.cend(); ++it)
        result[it.key().toStdString()] = convert(it.value());
    return result;
}

QMap<int, QString> ToNumberedTexts(const QVariant &map)
{
    QMap<int, QString> texts;
    const QVariantMap entries = map.toMap();
    for (auto it = entries.cbegin(); it != entries.cend(); ++it)
        texts.insert(it.key().toInt(), it.value().toString());
    return texts;
}

/// The fields switches 1 to 3 share; false (and `parameters` untouched) when the file has no such switch.
template<typename Parameters>
bool ReadSwitchBlock(const QVariantMap &switches, int number, Parameters &parameters, QVariantMap &entry)
{
    const auto it = switches.constFind(QString::number(number));
    if (it == switches.cend())
        return false;
    entry = it.value().toMap();
    parameters.switchId = entry.value(QStringLiteral("switchID")).toInt();
    parameters.description = entry.value(QStringLiteral("description")).toString().toStdString();
    parameters.values = ToStdMap(entry.value(QStringLiteral("values")), [](const QVariant &v) { return v.toString().toStdString(); });
    parameters.filters = ToStdMap(entry.value(QStringLiteral("filters")), ToBiquads);
    return true;
}

// The number a key spells in plain decimal; "01", "+1" or " 1" name no value a query can ask for.
std::optional<int> PlainNumber(QStringView text)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    return ok && QString::number(number) == text ? std::optional<int>(number) : std::nullopt;
}

// Coupling labels get a leading blank when not negative so that they align with "-1.5".
QString CouplingLabel(double value)
{
    QString label = QString::number(value, 'f', 1);
    if (value >= 0.0)
        label.prepend(QLatin1Char(' '));
    return label;
}

} // namespace

void LoudspeakerSetupReader::Read(const QVariantMap &map, const QString &fileName)
{
    LoudspeakerSetup &s = m_setup;

    s.m_name = map.value(QStringLiteral("setupName")).toString();
    s.m_fullName = map.value(QStringLiteral("setupNameFull")).toString();
    s.m_displayName = map.value(QStringLiteral("displayName")).toString();
    s.m_loudspeakerName = map.value(QStringLiteral("boxName")).toString();
    s.m_partNumber = map.value(QStringLiteral("zNumber")).toString();
    s.m_visible = map.value(QStringLiteral("visible")).toBool();
    s.m_speakerId = map.value(QStringLiteral("speakerId")).toInt();
    s.m_speakerType = map.value(QStringLiteral("speakerType")).toInt();
    s.m_ampChannelCount = map.value(QStringLiteral("ampChannelCount")).toInt();
    s.m_thisAmpChannel = map.value(QStringLiteral("thisAmpChannel")).toInt();
    s.m_polarity = map.value(QStringLiteral("polarity"), 1.0).toDouble();
    s.m_gain = std::pow(10.0, map.value(QStringLiteral("dBGain")).toDouble() / 20.0);
    s.m_signedGain = s.m_gain * s.m_polarity;
    s.m_delay = map.value(QStringLiteral("delay")).toDouble() / 1000.0;
    s.m_supportedAmps = map.value(QStringLiteral("supportedAmps")).toStringList();
    s.m_maxLink = map.value(QStringLiteral("maxLink")).toList();
    s.m_recommendedLink = map.value(QStringLiteral("recommendedLink")).toList();
    s.m_thermoLimiterBroadbandPink = map.value(QStringLiteral("thermoLimiterBroadbandPink")).toDouble();
    s.m_mergeFrequency = map.value(QStringLiteral("fMergeUSD"), 0.0).toDouble();
    s.m_lowOptFrequency = map.value(QStringLiteral("fLowOpt"), 0.0).toDouble();
    s.m_highOptFrequency = map.value(QStringLiteral("fHighOpt"), 0.0).toDouble();

    // Sensitivity: a pressure re 20 µPa per 1/24-octave band. A short phase list reads as 0°.
    const QVariantList dBSensitivity = map.value(QStringLiteral("dBSensitivity")).toList();
    const QVariantList phaseSensitivity = map.value(QStringLiteral("phaseSensitivity")).toList();
    for (qsizetype i = 0; i < dBSensitivity.size(); ++i) {
        const double magnitude = 2e-05 * std::pow(10.0, dBSensitivity.at(i).toDouble() / 20.0);
        const double phase = phaseSensitivity.value(i).toDouble() * 3.141592653589793 / 180.0;
        const Complex value = Complex::fromPolar(magnitude, phase);
        s.m_sensitivity.emplace_back(static_cast<float>(value.real()), static_cast<float>(value.imag()));
    }

    const QVariantList maxPk = map.value(QStringLiteral("maxPK")).toList();
    for (const QVariant &value : maxPk)
        s.m_maxPk.push_back(static_cast<float>(std::max(1.0, value.toDouble())));

    const QVariantMap switches = map.value(QStringLiteral("switches")).toMap();
    ReadSwitches(switches);
    AddCouplingSwitches();

    const QVariantMap filters = map.value(QStringLiteral("filters")).toMap();
    for (auto it = filters.cbegin(); it != filters.cend(); ++it)
        AddNamedResponses(it.key(), it.value().toList());

    s.m_fileName = fileName;
    nvScientificComputing::SystemEq &systemEq = s.m_systemEq;
    systemEq.arrayEqFilters = ToBiquads(filters.value(SetupKeys::ArrayEq));
    systemEq.systemEqFilters = ToBiquads(filters.value(SetupKeys::SystemEq));
    systemEq.filterMaxValue = filters.value(QStringLiteral("SystemEqFilterMaxVal")).toDouble();
    ReadSwitchParameters(switches);
    ReadPeakLimiter(map.value(QStringLiteral("peakLimiter")).toMap());
    ReadThermoLimiter(map.value(QStringLiteral("thermoLimiter")).toMap());
}

void LoudspeakerSetupReader::AddResponses(const QString &name, const QVariantList &filters, int switchNumber, std::optional<int> value)
{
    for (const bool logarithmic : {true, false}) {
        const QList<Complex> response = CalculateFilterListResponse(logarithmic ? m_setup.m_logFrequencies : m_setup.m_linearFrequencies, filters);
        (logarithmic ? m_setup.m_logResponses : m_setup.m_linearResponses).insert(name, response);
        LoudspeakerSetup::GridTable &table = logarithmic ? m_setup.m_logTable : m_setup.m_linearTable;
        if (switchNumber >= 1 && switchNumber <= 3 && value) {
            auto &responses = table.switchResponses[switchNumber - 1];
            const auto held = std::find_if(responses.begin(), responses.end(), [&](const auto &entry) { return entry.first == *value; });
            if (held != responses.end())
                held->second = response;
            else
                responses.emplace_back(*value, response);
        } else if (name == SetupKeys::SystemEq) {
            table.systemEq = response;
        } else if (name == SetupKeys::ArrayEq) {
            table.arrayEq = response;
        } else if (name == SetupKeys::ApEq) {
            table.apEq = response;
        }
    }
}

void LoudspeakerSetupReader::AddNamedResponses(const QString &name, const QVariantList &filters)
{
    // Named sets share the switches' name space: one spelt "Switch<n>_<v>" answers queries for that switch value.
    const qsizetype separator = name.indexOf(QLatin1Char('_'));
    if (!name.startsWith(QLatin1String("Switch")) || separator < 0)
        return AddResponses(name, filters);
    AddResponses(name, filters, PlainNumber(QStringView(name).mid(6, separator - 6)).value_or(0),
                 PlainNumber(QStringView(name).mid(separator + 1)));
}

void LoudspeakerSetupReader::ReadSwitches(const QVariantMap &switches)
{
    for (auto it = switches.cbegin(); it != switches.cend(); ++it) {
        const int number = it.key().toInt();
        const int plainNumber = PlainNumber(it.key()).value_or(0);
        const QVariantMap entry = it.value().toMap();
        m_setup.m_switchDescriptions.insert(number, entry.value(QStringLiteral("description")).toString());
        m_setup.m_switchValues.insert(number, ToNumberedTexts(entry.value(QStringLiteral("values"))));
        if (entry.contains(QStringLiteral("balloonData")))
            m_setup.m_balloonDataKeys.insert(number, ToNumberedTexts(entry.value(QStringLiteral("balloonData"))));

        const QVariantMap filters = entry.value(QStringLiteral("filters")).toMap();
        const QVariantMap gains = entry.value(QStringLiteral("dBGains")).toMap();
        for (auto value = filters.cbegin(); value != filters.cend(); ++value) {
            QVariantList list = value.value().toList();
            const double gain = gains.value(value.key()).toDouble();
            if (gain != 0.0)
                list.append(QVariantMap {{QStringLiteral("type"), 0}, {QStringLiteral("G"), gain}});
            // The public name keeps the file's spelling; queries ask by number, so only plain decimal reaches them.
            AddResponses(QLatin1String("Switch") + it.key() + QLatin1Char('_') + value.key(), list, plainNumber, PlainNumber(value.key()));
        }
    }
}

void LoudspeakerSetupReader::AddCouplingSwitches()
{
    CouplingFilterProvider &provider = *m_setup.m_couplingFilters;
    QMap<int, QString> &low = m_setup.m_switchValues[Vocabulary::LowCouplingSwitch];
    for (int position : provider.GetLowPositions())
        low.insert(position, CouplingLabel(CouplingFilterProvider::ConvertFromLowIndex(position)));
    QMap<int, QString> &mid = m_setup.m_switchValues[Vocabulary::MidCouplingSwitch];
    for (int position : provider.GetMidPositions())
        mid.insert(position, CouplingLabel(CouplingFilterProvider::ConvertFromMidIndex(position)));
}

void LoudspeakerSetupReader::ReadSwitchParameters(const QVariantMap &switches)
{
    QVariantMap entry;
    if (ReadSwitchBlock(switches, 1, m_setup.m_switch1, entry))
        m_setup.m_switch1.gains = ToStdMap(entry.value(QStringLiteral("dBGains")), [](const QVariant &dB) { return std::pow(10.0, dB.toDouble() / 20.0); });
    if (ReadSwitchBlock(switches, 2, m_setup.m_switch2, entry))
        m_setup.m_switch2.polarities = ToStdMap(entry.value(QStringLiteral("polarities")), [](const QVariant &polarity) { return polarity.toDouble(); });
    if (ReadSwitchBlock(switches, 3, m_setup.m_switch3, entry))
        m_setup.m_switch3.presetText = entry.value(QStringLiteral("presetText")).toString().toStdString();
}

void LoudspeakerSetupReader::ReadPeakLimiter(const QVariantMap &peakLimiter)
{
    nvScientificComputing::PeakLimiter &l = m_setup.m_peakLimiter;
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
}

void LoudspeakerSetupReader::ReadThermoLimiter(const QVariantMap &thermoLimiter)
{
    nvScientificComputing::ThermoLimiter &l = m_setup.m_thermoLimiter;
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
}
