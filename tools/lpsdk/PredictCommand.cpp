// SPDX-License-Identifier: MIT
// lpsdk predict: the sound field of a scene over its receivers, as a summary per band, one JSON
// document, CSV rows per receiver, or a plan-view colour map.
#include "Arguments.h"
#include "CommandContext.h"
#include "PredictPlot.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdkPrediction.h>

#include <QElapsedTimer>
#include <QJsonArray>

#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <unistd.h>

namespace {

QJsonArray vector(const std::array<double, 3> &v)
{
    return {Output::number(v[0]), Output::number(v[1]), Output::number(v[2])};
}

QString vectorText(const std::array<double, 3> &v)
{
    return QStringLiteral("(%1, %2, %3)").arg(v[0], 0, 'f', 2).arg(v[1], 0, 'f', 2).arg(v[2], 0, 'f', 2);
}

int chosenBand(const CommandContext &context, const SoundField &field)
{
    if (!context.parser.isSet(QStringLiteral("band")))
        return -1;
    const double hz = Arguments::number(context.parser.value(QStringLiteral("band")), QStringLiteral("--band"));
    const QList<double> &frequencies = field.GetFrequencies();
    for (int b = 0; b < frequencies.size(); ++b) {
        if (std::abs(std::log2(frequencies.at(b) / hz)) < 1.0 / 48.0)
            return b;
    }
    QStringList bands;
    for (double f : frequencies)
        bands.append(QString::number(f, 'g', 4));
    usageError(QStringLiteral("--band %1 is not a band of the scene (its bands, Hz: %2)").arg(hz).arg(bands.join(QStringLiteral(", "))));
}

// One row per receiver: its position, the level of each band and the A-weighted level.
void receiverRows(Output &out, const SoundField &field)
{
    QList<Output::Column> columns = {{QStringLiteral("x"), QStringLiteral("x_m")}, {QStringLiteral("y"), QStringLiteral("y_m")}, {QStringLiteral("z"), QStringLiteral("z_m")}};
    for (double f : field.GetFrequencies())
        columns.append({QString::number(f, 'g', 5), QStringLiteral("spl_db_%1hz").arg(f, 0, 'g', 5)});
    columns.append({QStringLiteral("a"), QStringLiteral("a_weighted_db")});
    out.beginList(QStringLiteral("receivers"), QStringLiteral("receivers"), columns);
    for (qsizetype r = 0; r < field.GetReceiverCount(); ++r) {
        const auto &x = field.GetReceivers()[size_t(r)];
        QList<QJsonValue> cells = {x[0], x[1], x[2]};
        for (int b = 0; b < field.GetBandCount(); ++b)
            cells.append(Output::number(std::round(field.GetLevel(r, b) * 100.0) / 100.0));
        cells.append(Output::number(std::round(field.GetAWeightedLevel(r) * 100.0) / 100.0));
        out.row(cells);
    }
    out.endList();
}

} // namespace

int runPredict(const CommandContext &context)
{
    const QString sceneFile = context.name();
    context.plugins(); // the scene names registered loudspeakers and rigging
    const int threads = context.parser.isSet(QStringLiteral("threads")) ? Arguments::wholeNumber(context.parser.value(QStringLiteral("threads")), QStringLiteral("--threads")) : 0;
    if (threads < 0)
        usageError(QStringLiteral("--threads takes 0 (one per core) or more, not %1").arg(threads));
    std::unique_ptr<CoveragePredictor> predictor;
    try {
        predictor = std::make_unique<CoveragePredictor>(SceneFile::Read(sceneFile));
    } catch (const std::invalid_argument &error) {
        dataError(QStringLiteral("%1: %2").arg(sceneFile, QString::fromStdString(error.what())));
    }

    // A progress bar for planes that take longer than a second, on a terminal only.
    QElapsedTimer clock;
    clock.start();
    const bool terminal = !context.output.isQuiet() && isatty(fileno(stderr));
    const SoundField field = predictor->Compute(threads, [&](double done) {
        if (terminal && clock.elapsed() > 1000)
            std::fprintf(stderr, "\rpredicting %3d%%", int(done * 100.0));
    });
    if (terminal && clock.elapsed() > 1000)
        std::fprintf(stderr, "\n");

    const int band = chosenBand(context, field);
    if (context.parser.isSet(QStringLiteral("plot")))
        PredictPlot::draw(context.parser.value(QStringLiteral("plot")), sceneFile, *predictor, field, band);

    Output &out = context.output;
    if (out.mode() == Output::Csv) {
        receiverRows(out, field);
        return 0;
    }
    out.beginList(QStringLiteral("sources"), QStringLiteral("sources"), {{QStringLiteral("name"), QStringLiteral("source")},
                                                                           {QStringLiteral("position"), QStringLiteral("position (m)")},
                                                                           {QStringLiteral("front"), QStringLiteral("front")}});
    for (const PlacedSource &source : predictor->GetSources()) {
        if (out.mode() == Output::Json) {
            out.beginObject(QString());
            out.field(QStringLiteral("name"), QString(), source.name);
            out.field(QStringLiteral("position"), QString(), vector(source.position));
            out.field(QStringLiteral("front"), QString(), vector(source.front));
            out.field(QStringLiteral("up"), QString(), vector(source.up));
            out.endObject();
        } else {
            out.row({source.name, vectorText(source.position), vectorText(source.front)});
        }
    }
    out.endList();
    if (out.mode() == Output::Json) {
        QJsonArray frequencies, receivers, levels, weighted;
        for (double f : field.GetFrequencies())
            frequencies.append(f);
        for (qsizetype r = 0; r < field.GetReceiverCount(); ++r) {
            receivers.append(vector(field.GetReceivers()[size_t(r)]));
            QJsonArray row;
            for (int b = 0; b < field.GetBandCount(); ++b)
                row.append(Output::number(field.GetLevel(r, b)));
            levels.append(row);
            weighted.append(Output::number(field.GetAWeightedLevel(r)));
        }
        out.field(QStringLiteral("frequencies_hz"), QString(), frequencies);
        out.field(QStringLiteral("receivers"), QString(), receivers);
        out.field(QStringLiteral("spl_db"), QString(), levels);
        out.field(QStringLiteral("a_weighted_db"), QString(), weighted);
        return 0;
    }
    if (context.parser.isSet(QStringLiteral("plot")))
        return 0;
    // Per band: where the level lies over the receivers (silent receivers left out).
    out.beginList(QStringLiteral("bands"), QStringLiteral("levels over %1 receivers").arg(field.GetReceiverCount()),
                  {{QStringLiteral("frequency"), QStringLiteral("band (Hz)")}, {QStringLiteral("min"), QStringLiteral("min (dB)")},
                   {QStringLiteral("max"), QStringLiteral("max (dB)")}, {QStringLiteral("mean"), QStringLiteral("mean (dB)")},
                   {QStringLiteral("spread"), QStringLiteral("spread (dB)")}});
    for (int b = -1; b < field.GetBandCount(); ++b) {
        if (band >= 0 && b != band)
            continue;
        double low = INFINITY, high = -INFINITY, sum = 0.0;
        qsizetype count = 0;
        for (qsizetype r = 0; r < field.GetReceiverCount(); ++r) {
            const double level = b < 0 ? field.GetAWeightedLevel(r) : field.GetLevel(r, b);
            if (!std::isfinite(level))
                continue;
            low = std::min(low, level);
            high = std::max(high, level);
            sum += level;
            ++count;
        }
        const auto shown = [&](double value) { return count ? QJsonValue(QString::number(value, 'f', 1)) : QJsonValue(); };
        const double frequency = b < 0 ? 0.0 : field.GetFrequencies().at(b);
        out.row({b < 0 ? QStringLiteral("A-weighted") : QString::number(frequency, 'f', frequency < 100.0 ? 1 : 0), shown(low), shown(high),
                 shown(sum / double(count)), shown(high - low)});
    }
    out.endList();
    return 0;
}
