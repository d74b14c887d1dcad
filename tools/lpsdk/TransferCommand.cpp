// SPDX-License-Identifier: MIT
// lpsdk transfer: the transfer function of a controller setup, as a table, CSV, JSON or a plot.
#include "Arguments.h"
#include "CommandContext.h"
#include "Descriptors.h"
#include "PlotCanvas.h"
#include "Vocabulary.h"

#include <QJsonArray>

#include <cmath>
#include <cstdio>

namespace {

QJsonValue rounded(double value, double scale)
{
    return Output::number(std::round(value * scale) / scale);
}

struct Curve
{
    QList<double> frequencies;
    QList<double> levels;
    QList<double> phases;
};

void plot(const QString &file, const QString &title, const Curve &curve, const QString &levelLabel, const QString &curveName)
{
    PlotCanvas canvas(file, QSize(1200, 900), title);
    double low = curve.frequencies.value(0, 20.0);
    if (low <= 0.0)
        low = curve.frequencies.value(1, 20.0);
    const double high = curve.frequencies.value(curve.frequencies.size() - 1, 20000.0);
    double top = -1e9;
    double bottom = 1e9;
    for (double level : curve.levels) {
        if (std::isfinite(level)) {
            top = std::max(top, level);
            bottom = std::min(bottom, level);
        }
    }
    top = std::ceil(top / 6.0 + 0.5) * 6.0;
    bottom = std::max(std::floor(bottom / 6.0) * 6.0, top - 60.0);
    if (!(top > bottom))
        bottom = top - 6.0;
    const PlotCanvas::Axis frequency{low, high, true, QStringLiteral("frequency (Hz)")};
    const PlotCanvas::Axis level{bottom, top, false, levelLabel, top - bottom > 30.0 ? 6.0 : 3.0};
    const PlotCanvas::Axis phase{-180.0, 180.0, false, QStringLiteral("phase (degrees)"), 90.0};
    const QRectF upper(110, 80, 1050, 420);
    const QRectF lower(110, 570, 1050, 260);
    canvas.drawAxes(upper, frequency, level);
    canvas.drawAxes(lower, frequency, phase);

    QPainter &p = canvas.painter();
    p.save();
    p.setClipRect(upper);
    p.setPen(QPen(PlotCanvas::color(0), 2.5));
    QPolygonF magnitude;
    for (int i = 0; i < curve.frequencies.size(); ++i) {
        if (curve.frequencies.at(i) > 0.0 && std::isfinite(curve.levels.at(i)))
            magnitude.append(PlotCanvas::map(upper, frequency, level, curve.frequencies.at(i), curve.levels.at(i)));
    }
    p.drawPolyline(magnitude);
    p.setClipRect(lower);
    p.setPen(QPen(PlotCanvas::color(1), 2.0));
    // Phase wraps at +-180 degrees: a jump of more than 180 starts a new piece of line.
    QPolygonF piece;
    for (int i = 0; i < curve.frequencies.size(); ++i) {
        if (curve.frequencies.at(i) <= 0.0)
            continue;
        if (!piece.isEmpty() && std::abs(curve.phases.at(i) - curve.phases.at(i - 1)) > 180.0) {
            p.drawPolyline(piece);
            piece.clear();
        }
        piece.append(PlotCanvas::map(lower, frequency, phase, curve.frequencies.at(i), curve.phases.at(i)));
    }
    p.drawPolyline(piece);
    p.restore();
    canvas.drawLegend(QPointF(upper.right() - 8, upper.top() + 8), {{PlotCanvas::color(0), curveName}, {PlotCanvas::color(1), QStringLiteral("phase (lower chart)")}});
    canvas.save();
}

} // namespace

int runTransfer(const CommandContext &context)
{
    const QString name = context.name();
    const QCommandLineParser &parser = context.parser;
    const int sensitivityType = Arguments::wholeNumber(parser.value(QStringLiteral("sensitivity")), QStringLiteral("--sensitivity"));
    if (sensitivityType < 0 || sensitivityType > 3)
        usageError(QStringLiteral("--sensitivity must be 0 (none), 1 (measured), 2 (array EQ) or 3 (both), not %1").arg(sensitivityType));
    const QString plotFile = parser.isSet(QStringLiteral("plot")) ? Arguments::pictureFile(parser.value(QStringLiteral("plot")), QStringLiteral("--plot")) : QString();
    const Tolvane::Mounting mounting = Arguments::mounting(parser);
    const auto sensitivity = static_cast<Tolvane::SensitivityTypes>(sensitivityType);
    const Tolvane::FrequencyRange range = parser.isSet(QStringLiteral("linear")) ? Tolvane::LinearFrequencies : Tolvane::LogarithmicFrequencies;

    context.warnings.silence(QStringLiteral("nvlps.coupling")); // the pair's problems are named below
    context.plugins();
    LoudspeakerDescriptor *loudspeaker = Descriptors::loudspeaker(name);
    SourcePointDescriptor *sourcePoint = Descriptors::sourcePoint(loudspeaker, parser.value(QStringLiteral("source-point")));
    DspChannelDescriptor *channel = sourcePoint->GetDspChannelDescriptor(sourcePoint->GetDefaultAmplifier());
    if (!channel)
        dataError(QStringLiteral("%1 has no DSP channel").arg(name));
    const int setupKey = Descriptors::setupKey(channel, parser, mounting, name);
    LoudspeakerSetup *setup = channel->GetLoudspeakerSetups().value(setupKey);
    const QMap<int, int> switches = Descriptors::switchSettings(parser.values(QStringLiteral("switch")), setup);
    const bool apEq = parser.isSet(QStringLiteral("ap-eq"));
    const bool inSpl = range == Tolvane::LogarithmicFrequencies && (sensitivity == Tolvane::Sensitivity || sensitivity == Tolvane::SensitivityWithArrayEq);

    Output &out = context.output;
    QStringList settings;
    out.field(QStringLiteral("loudspeaker"), QString(), name);
    out.field(QStringLiteral("setup"), QString(), setupKey);
    out.field(QStringLiteral("setup_name"), QString(), setup->GetFullName());
    out.beginList(QStringLiteral("switches"), QString(), {{QStringLiteral("number"), QString()}, {QStringLiteral("value"), QString()}, {QStringLiteral("label"), QString()}});
    for (auto it = switches.cbegin(); it != switches.cend(); ++it) {
        const QString label = setup->GetSwitchValues(it.key()).value(it.value()).trimmed();
        settings.append(QStringLiteral("switch %1=%2 (%3)").arg(it.key()).arg(it.value()).arg(label));
        if (out.mode() == Output::Json)
            out.row({it.key(), it.value(), label});
    }
    out.endList();
    const QString title = QStringLiteral("%1, setup %2 \"%3\"").arg(name).arg(setupKey).arg(setup->GetFullName());
    const QString curveName = inSpl ? QStringLiteral("sound pressure level") : QStringLiteral("controller response");
    if (out.mode() == Output::Text)
        out.line(QStringLiteral("# ") + title + (settings.isEmpty() ? QString() : QStringLiteral(", ") + settings.join(QStringLiteral(", "))));
    // The key stays the same whatever the reference; the reference is a field of its own.
    const QString levelKey = QStringLiteral("level_dB");
    const QString reference = inSpl ? QStringLiteral("dB SPL (re 20 uPa), the sound pressure level") : QStringLiteral("dB re 1, the controller's response");
    out.field(QStringLiteral("level_reference"), QString(), reference);
    if (out.mode() == Output::Text)
        out.line(QStringLiteral("# level_dB: ") + reference);
    // A picture replaces the table; a JSON document still carries the numbers.
    const bool table = plotFile.isEmpty() || out.mode() == Output::Json;

    // The coupling pair's filters, when the table does not give them, are named once here:
    // the response is then computed without them, or not at all where one is undefined.
    const int low = switches.value(Vocabulary::LowCouplingSwitch);
    const int mid = switches.value(Vocabulary::MidCouplingSwitch);
    QStringList couplingProblems;
    if (LoudspeakerSetup::AppliesCoupling(low, mid)) {
        // An unknown type warns at every evaluation, once per frequency; it is among these.
        context.warnings.silence(QStringLiteral("nvlps.filter"));
        for (const CouplingTableProblem &problem : CouplingFilterProvider::GetInstance().GetPairProblems(low, mid)) {
            couplingProblems.append(problem.ToString());
            std::fprintf(stderr, "lpsdk: warning: coupling switches %d=%d, %d=%d: %s\n", Vocabulary::LowCouplingSwitch, low, Vocabulary::MidCouplingSwitch, mid, qPrintable(problem.ToString()));
        }
    }
    if (out.mode() == Output::Json && !couplingProblems.isEmpty())
        out.field(QStringLiteral("coupling_problems"), QString(), QJsonArray::fromStringList(couplingProblems));

    Curve curve;
    bool silent = false;
    curve.frequencies = channel->GetFrequencyVector(range);
    if (table)
        out.beginList(QStringLiteral("points"), QString(), {{QStringLiteral("frequency_Hz"), QStringLiteral("frequency_Hz")}, {levelKey, levelKey}, {QStringLiteral("phase_deg"), QStringLiteral("phase_deg")}});
    for (int i = 0; i < curve.frequencies.size(); ++i) {
        const Complex h = channel->GetTransferFunction(range, i, setupKey, switches, sensitivity, apEq);
        curve.levels.append(20.0 * std::log10(h.abs() / (inSpl ? 2e-5 : 1.0)));
        curve.phases.append(h.arg() * 180.0 / M_PI);
        silent = silent || !std::isfinite(curve.levels.last());
        if (table)
            out.row({rounded(curve.frequencies.at(i), 100.0), rounded(curve.levels.last(), 1000.0), rounded(curve.phases.last(), 100.0)});
    }
    if (table)
        out.endList();
    if (silent)
        out.field(QStringLiteral("null_level_reason"), QStringLiteral("note"),
            couplingProblems.isEmpty() ? QStringLiteral("a level is null (\"-\") where the magnitude is zero")
                                       : QStringLiteral("a level is null (\"-\") where the magnitude is zero or undefined: ") + couplingProblems.join(QStringLiteral("; ")));
    if (!plotFile.isEmpty()) {
        plot(plotFile, curveName + QStringLiteral(" of ") + title + (settings.isEmpty() ? QString() : QStringLiteral("\n") + settings.join(QStringLiteral(", "))), curve,
             inSpl ? QStringLiteral("sound pressure level (dB SPL)") : QStringLiteral("controller response (dB)"), curveName);
        out.field(QStringLiteral("plot"), QStringLiteral("plot"), plotFile);
    }
    return 0;
}
