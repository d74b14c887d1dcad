// SPDX-License-Identifier: MIT
// lpsdk directivity: directivity index, beamwidths and the spinorama curves of a balloon per
// frequency, as a table or JSON, or one of the pictures measurement packages draw.
#include "Arguments.h"
#include "CommandContext.h"
#include "DirectivityPlots.h"
#include "DirectivitySource.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdkAnalysis.h>

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>
#include <optional>
#include <stdexcept>

namespace {

QJsonValue rounded(double value, double scale)
{
    return Output::number(std::round(value * scale) / scale);
}

struct Reason
{
    QString key;
    double frequency;
    QString reason;
};

// One value per frequency; a level that does not exist (of a zero value) is null with a reason.
QJsonArray column(const std::vector<double> &values, double scale, const QString &key, const QList<double> &frequencies, QList<Reason> &reasons)
{
    QJsonArray array;
    for (size_t f = 0; f < values.size(); ++f) {
        array.append(rounded(values[f], scale));
        if (array.last().isNull())
            reasons.append({key, frequencies.value(qsizetype(f)), QStringLiteral("a value of 0 has no level in dB")});
    }
    return array;
}

void printJson(Output &out, const DirectivityAnalysis &analysis, const std::optional<AcousticOnAxisResponse> &acoustic)
{
    QList<Reason> reasons;
    const QList<double> &frequencies = analysis.GetFrequencies();
    const auto add = [&](const QString &key, const std::vector<double> &values, double scale) {
        out.field(key, QString(), column(values, scale, key, frequencies, reasons));
    };
    QJsonArray hz;
    for (double f : frequencies)
        hz.append(rounded(f, 1000.0));
    out.field(QStringLiteral("frequencies_hz"), QString(), hz);
    add(QStringLiteral("on_axis_db"), analysis.GetOnAxisLevels(), 1000.0);
    add(QStringLiteral("sound_power_db"), analysis.GetSoundPowerLevels(), 1000.0);
    add(QStringLiteral("directivity_index_db"), analysis.GetDirectivityIndices(), 1000.0);
    const std::pair<DirectivityPlane, QString> planes[] = {{DirectivityPlane::Horizontal, QStringLiteral("beamwidth_horizontal_deg")},
                                                           {DirectivityPlane::Vertical, QStringLiteral("beamwidth_vertical_deg")}};
    for (const auto &[plane, key] : planes) {
        QJsonArray widths;
        for (double width : analysis.GetBeamwidths(plane))
            widths.append(rounded(width, 100.0));
        out.field(key, QString(), widths);
        for (int f = 0; f < frequencies.size(); ++f) {
            const QString reason = analysis.GetBeamwidthNullReason(plane, f);
            if (!reason.isEmpty())
                reasons.append({key, frequencies.at(f), reason});
        }
    }
    const SpinoramaCurves &curves = analysis.GetSpinorama();
    QJsonObject spinorama;
    const std::pair<const char *, const std::vector<double> *> ctaCurves[] = {
        {"on_axis_db", &curves.onAxis}, {"listening_window_db", &curves.listeningWindow}, {"early_reflections_db", &curves.earlyReflections},
        {"sound_power_db", &curves.soundPower}, {"sound_power_di_db", &curves.soundPowerDi}, {"early_reflections_di_db", &curves.earlyReflectionsDi},
        {"estimated_in_room_db", &curves.estimatedInRoom}};
    for (const auto &[key, values] : ctaCurves)
        spinorama.insert(QLatin1String(key), column(*values, 1000.0, QStringLiteral("cta2034.") + QLatin1String(key), frequencies, reasons));
    out.field(QStringLiteral("cta2034"), QString(), spinorama);
    if (acoustic) {
        const std::vector<double> levels = acoustic->GetLevels();
        QJsonArray db;
        QJsonArray degrees;
        for (int f = 0; f < frequencies.size(); ++f) {
            db.append(rounded(levels[size_t(f)], 1000.0));
            degrees.append(rounded(acoustic->GetPhases()[size_t(f)], 100.0));
            const QString reason = acoustic->GetNullReason(f);
            if (!reason.isEmpty())
                reasons.append({QStringLiteral("acoustic_on_axis_phase_deg"), frequencies.at(f), reason});
            if (db.last().isNull())
                reasons.append({QStringLiteral("acoustic_on_axis_db"), frequencies.at(f), reason.isEmpty() ? QStringLiteral("a value of 0 has no level in dB") : reason});
        }
        out.field(QStringLiteral("acoustic_on_axis_db"), QString(), db);
        out.field(QStringLiteral("acoustic_on_axis_phase_deg"), QString(), degrees);
    }
    QJsonArray reasonList;
    for (const Reason &reason : std::as_const(reasons))
        reasonList.append(QJsonObject{{QStringLiteral("key"), reason.key}, {QStringLiteral("frequency_hz"), rounded(reason.frequency, 1000.0)}, {QStringLiteral("reason"), reason.reason}});
    out.field(QStringLiteral("reasons"), QString(), reasonList);
}

void printTable(Output &out, const DirectivityAnalysis &analysis, const std::optional<AcousticOnAxisResponse> &acoustic)
{
    QList<Output::Column> columns = {{QStringLiteral("frequency_hz"), QStringLiteral("Hz")}, {QStringLiteral("on_axis_db"), QStringLiteral("on-axis")},
                                     {QStringLiteral("sound_power_db"), QStringLiteral("power")}, {QStringLiteral("di_db"), QStringLiteral("DI")},
                                     {QStringLiteral("bw_h_deg"), QStringLiteral("BW-h°")}, {QStringLiteral("bw_v_deg"), QStringLiteral("BW-v°")},
                                     {QStringLiteral("lw_db"), QStringLiteral("LW")}, {QStringLiteral("er_db"), QStringLiteral("ER")},
                                     {QStringLiteral("sp_db"), QStringLiteral("SP")}, {QStringLiteral("spdi_db"), QStringLiteral("SP-DI")},
                                     {QStringLiteral("erdi_db"), QStringLiteral("ER-DI")}, {QStringLiteral("pir_db"), QStringLiteral("in-room")}};
    if (acoustic)
        columns += {{QStringLiteral("acoustic_db"), QStringLiteral("acoustic")}, {QStringLiteral("acoustic_deg"), QStringLiteral("phase°")}};
    out.line(QStringLiteral("# levels in dB; DI = on-axis - sound power; beamwidths at -6 dB, \"-\" where the level does not fall by 6 dB on both sides"));
    out.line(QStringLiteral("# LW listening window, ER early reflections, SP sound power from the two orbits"));
    out.beginList(QStringLiteral("frequencies"), QString(), columns);
    const SpinoramaCurves &c = analysis.GetSpinorama();
    const std::vector<double> levels = acoustic ? acoustic->GetLevels() : std::vector<double>();
    const std::vector<double> phases = acoustic ? acoustic->GetPhases() : std::vector<double>();
    for (int f = 0; f < analysis.GetFrequencies().size(); ++f) {
        const size_t i = size_t(f);
        QList<QJsonValue> row = {rounded(analysis.GetFrequencies().at(f), 100.0), rounded(analysis.GetOnAxisLevels()[i], 100.0),
                                 rounded(analysis.GetSoundPowerLevels()[i], 100.0), rounded(analysis.GetDirectivityIndices()[i], 100.0),
                                 rounded(analysis.GetBeamwidths(DirectivityPlane::Horizontal)[i], 10.0),
                                 rounded(analysis.GetBeamwidths(DirectivityPlane::Vertical)[i], 10.0), rounded(c.listeningWindow[i], 100.0),
                                 rounded(c.earlyReflections[i], 100.0), rounded(c.soundPower[i], 100.0), rounded(c.soundPowerDi[i], 100.0),
                                 rounded(c.earlyReflectionsDi[i], 100.0), rounded(c.estimatedInRoom[i], 100.0)};
        if (acoustic)
            row += {rounded(levels[i], 100.0), rounded(phases[i], 10.0)};
        out.row(row);
    }
    out.endList();
}

} // namespace

int runDirectivity(const CommandContext &context)
{
    const QCommandLineParser &parser = context.parser;
    const QString plotFile = parser.isSet(QStringLiteral("plot")) ? Arguments::pictureFile(parser.value(QStringLiteral("plot")), QStringLiteral("--plot")) : QString();
    const QString kind = Arguments::choice(parser.value(QStringLiteral("kind")), QStringLiteral("--kind"), DirectivityPlots::kinds());
    const DirectivitySource source = DirectivitySource::open(context);
    std::optional<DirectivityAnalysis> analysis;
    try {
        analysis.emplace(source.table, source.flushMount);
    } catch (const std::invalid_argument &error) {
        dataError(QStringLiteral("%1 cannot be analysed: %2").arg(source.title, QString::fromStdString(error.what())));
    }
    std::optional<AcousticOnAxisResponse> acoustic;
    if (source.channel)
        acoustic.emplace(*source.table, *source.channel, source.setupKey, source.switches);

    Output &out = context.output;
    out.field(QStringLiteral("source"), QStringLiteral("source"), source.title);
    if (!plotFile.isEmpty()) {
        DirectivityPlots::draw(plotFile, kind, source.title, *analysis, parser.isSet(QStringLiteral("vertical")), parser.isSet(QStringLiteral("normalize")));
        out.field(QStringLiteral("plot"), QStringLiteral("plot"), plotFile);
        return 0;
    }
    if (out.mode() == Output::Json)
        printJson(out, *analysis, acoustic);
    else
        printTable(out, *analysis, acoustic);
    return 0;
}
