// SPDX-License-Identifier: MIT
// lpsdk balloon: a directivity value of a source point, or polar plots of its two planes.
#include "Arguments.h"
#include "CommandContext.h"
#include "Descriptors.h"
#include "PlotCanvas.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace {

struct Balloon
{
    SourcePointDescriptor *sourcePoint = nullptr;
    QString key;
    bool flushMount = false;
    std::shared_ptr<const BalloonTable> table; // the table the source point's lookups of the key read
    QList<double> frequencies;

    Complex value(double frequency, double theta, double phi) const
    {
        try {
            return sourcePoint->GetBalloonData(key, frequency, theta, phi, flushMount);
        } catch (const std::out_of_range &) {
            // The file's grid does not reach this direction; validate names the fault.
            dataError(QStringLiteral("the balloon grid of \"%1\" does not reach theta %2, phi %3").arg(sourcePoint->GetName()).arg(theta).arg(phi));
        }
    }

    double frequency(const QString &text, const QString &what) const
    {
        return Arguments::numberIn(text, what, frequencies.first(), frequencies.last());
    }

    double nearestFrequency(double frequency) const
    {
        return frequencies.at(table->FindFrequencyIndex(frequency));
    }
};

Balloon openBalloon(const CommandContext &context)
{
    LoudspeakerDescriptor *loudspeaker = Descriptors::loudspeaker(context.name());
    Balloon balloon;
    balloon.sourcePoint = Descriptors::sourcePoint(loudspeaker, context.parser.value(QStringLiteral("source-point")));
    balloon.key = context.parser.value(QStringLiteral("key"));
    balloon.flushMount = context.parser.isSet(QStringLiteral("flush-mount"));
    if (balloon.flushMount && !balloon.sourcePoint->HasFlushMountAttenuation())
        usageError(QStringLiteral("source point \"%1\" has no flush-mount variant").arg(balloon.sourcePoint->GetName()));
    balloon.sourcePoint->ReadBalloonData(SourcePointDescriptor_Interface::Synchronous);
    const QStringList keys = balloon.sourcePoint->GetBalloonKeys();
    if (!balloon.sourcePoint->IsBalloonDataLoaded() || keys.isEmpty())
        dataError(QStringLiteral("source point \"%1\" of %2 has no balloon data").arg(balloon.sourcePoint->GetName(), loudspeaker->GetName()));
    balloon.table = balloon.sourcePoint->GetBalloonTable(balloon.key);
    if (!balloon.table)
        dataError(QStringLiteral("source point \"%1\" of %2 has no balloon key \"%3\" (its keys: %4)")
                      .arg(balloon.sourcePoint->GetName(), loudspeaker->GetName(), balloon.key, keys.join(QStringLiteral(", "))));
    balloon.frequencies = balloon.table->GetFrequencies();
    if (balloon.frequencies.isEmpty())
        dataError(QStringLiteral("the balloon \"%1\" of source point \"%2\" holds no frequencies").arg(balloon.key, balloon.sourcePoint->GetName()));
    return balloon;
}

double levelOf(const Complex &value)
{
    return 20.0 * std::log10(value.abs());
}

// One polar chart: the plane through phi (positive angles) and phi + 180 (negative angles).
void drawPlane(PlotCanvas &canvas, const QRectF &area, const Balloon &balloon, const QList<double> &frequencies, double phi, const QString &caption)
{
    constexpr double bottom = -36.0;
    canvas.drawPolarGrid(area, bottom, 0.0, 6.0, caption);
    QPainter &p = canvas.painter();
    for (int c = 0; c < frequencies.size(); ++c) {
        QList<std::pair<double, double>> curve; // angle, level
        double peak = -1e9;
        for (int a = -180; a <= 180; ++a) {
            const double level = levelOf(balloon.value(frequencies.at(c), std::abs(a), a >= 0 ? phi : std::fmod(phi + 180.0, 360.0)));
            curve.append({double(a), level});
            if (std::isfinite(level))
                peak = std::max(peak, level);
        }
        QPolygonF line;
        for (const auto &[angle, level] : curve)
            line.append(PlotCanvas::mapPolar(area, bottom, 0.0, angle, std::isfinite(level) ? level - peak : bottom));
        p.setPen(PlotCanvas::pen(c, 2.5));
        p.drawPolyline(line);
    }
}

// Four preferred frequencies (the R10 series: 100, 125, 160, 200, ... Hz) spread evenly on a
// logarithmic scale across the band the default setup of the source point is made for, as far
// as the balloon reaches.
QList<double> bandFrequencies(const Balloon &balloon)
{
    // A 0 Hz balloon frequency has no place on a logarithmic scale.
    const auto positive = std::find_if(balloon.frequencies.cbegin(), balloon.frequencies.cend(), [](double f) { return f > 0.0; });
    if (positive == balloon.frequencies.cend())
        return {balloon.frequencies.first()};
    double low = *positive;
    double high = balloon.frequencies.last();
    if (DspChannelDescriptor *channel = balloon.sourcePoint->GetDspChannelDescriptor(balloon.sourcePoint->GetDefaultAmplifier())) {
        const int setup = channel->GetDefaultLoudspeakerSetupKey(Tolvane::Flown);
        const double bandLow = channel->GetLowOptFrequency(setup);
        const double bandHigh = channel->GetHighOptFrequency(setup);
        if (bandLow > 0.0 && bandHigh > bandLow) {
            low = std::clamp(bandLow, low, high);
            high = std::clamp(bandHigh, low, high);
        }
    }
    static const double preferred[] = {1.0, 1.25, 1.6, 2.0, 2.5, 3.15, 4.0, 5.0, 6.3, 8.0};
    constexpr int count = 4;
    QList<double> frequencies;
    for (int i = 1; i <= count; ++i) {
        const double tenths = std::round(10.0 * std::log10(low * std::pow(high / low, double(i) / (count + 1))));
        const int decade = int(std::floor(tenths / 10.0));
        const double nominal = preferred[int(tenths) - 10 * decade] * std::pow(10.0, decade);
        const double f = balloon.nearestFrequency(nominal);
        if (!frequencies.contains(f))
            frequencies.append(f);
    }
    return frequencies;
}

void plot(const CommandContext &context, const Balloon &balloon, const QString &file)
{
    QList<double> frequencies;
    if (context.parser.isSet(QStringLiteral("frequencies"))) {
        for (double f : Arguments::numbers(context.parser.value(QStringLiteral("frequencies")), QStringLiteral("--frequencies"))) {
            balloon.frequency(QString::number(f), QStringLiteral("--frequencies"));
            frequencies.append(balloon.nearestFrequency(f));
        }
    } else {
        frequencies = bandFrequencies(balloon);
    }
    const QString title = QStringLiteral("%1, source point \"%2\", balloon key \"%3\"%4\nlevel relative to each curve's maximum")
                              .arg(context.name(), balloon.sourcePoint->GetName(), balloon.key, balloon.flushMount ? QStringLiteral(", flush-mounted") : QString());
    PlotCanvas canvas(file, QSize(1420, 760), title);
    // Phi 0 is the source's up and 90 its left: the horizontal plane is seen from above with
    // the left on the left, the vertical plane with up on the right.
    drawPlane(canvas, QRectF(90, 130, 500, 500), balloon, frequencies, 270.0, QStringLiteral("horizontal, seen from above (left: phi 90°)"));
    drawPlane(canvas, QRectF(710, 130, 500, 500), balloon, frequencies, 0.0, QStringLiteral("vertical (right: up, phi 0°)"));
    QList<PlotCanvas::LegendEntry> legend;
    for (int c = 0; c < frequencies.size(); ++c)
        legend.append({PlotCanvas::pen(c, 3), QStringLiteral("%1 Hz").arg(frequencies.at(c), 0, 'f', frequencies.at(c) >= 100.0 ? 0 : frequencies.at(c) >= 10.0 ? 1 : 2)});
    canvas.drawLegend(QPointF(1410, 130), legend);
    canvas.save();
    QJsonArray drawn;
    for (double f : std::as_const(frequencies))
        drawn.append(f);
    context.output.field(QStringLiteral("frequencies_Hz"), QStringLiteral("frequencies"), drawn, QStringLiteral("Hz"));
    context.output.field(QStringLiteral("plot"), QStringLiteral("plot"), file);
}

} // namespace

int runBalloon(const CommandContext &context)
{
    const QCommandLineParser &parser = context.parser;
    const bool plotting = parser.isSet(QStringLiteral("plot"));
    const QString plotFile = plotting ? Arguments::pictureFile(parser.value(QStringLiteral("plot")), QStringLiteral("--plot")) : QString();
    double theta = 0.0;
    double phi = 0.0;
    if (!plotting) {
        for (const char *required : {"frequency", "theta", "phi"}) {
            if (!parser.isSet(QLatin1String(required)))
                usageError(QStringLiteral("'balloon' needs --frequency, --theta and --phi, or --plot FILE"));
        }
        theta = Arguments::numberIn(parser.value(QStringLiteral("theta")), QStringLiteral("--theta"), 0.0, 180.0);
        phi = Arguments::number(parser.value(QStringLiteral("phi")), QStringLiteral("--phi"));
    }
    context.name();
    context.plugins();
    const Balloon balloon = openBalloon(context);
    Output &out = context.output;
    out.field(QStringLiteral("loudspeaker"), QString(), context.name());
    out.field(QStringLiteral("source_point"), QStringLiteral("source point"), balloon.sourcePoint->GetName());
    out.field(QStringLiteral("key"), QStringLiteral("balloon key"), balloon.key);
    out.field(QStringLiteral("file"), QStringLiteral("file"), balloon.sourcePoint->GetBalloonDataFilename(balloon.key));
    out.field(QStringLiteral("flush_mount"), QStringLiteral("flush-mounted"), balloon.flushMount);
    if (plotting) {
        plot(context, balloon, plotFile);
        return 0;
    }
    const double frequency = balloon.frequency(parser.value(QStringLiteral("frequency")), QStringLiteral("--frequency"));
    const Complex value = balloon.value(frequency, theta, phi);
    out.field(QStringLiteral("frequency_Hz"), QStringLiteral("frequency"), frequency, QStringLiteral("Hz"));
    out.field(QStringLiteral("balloon_frequency_Hz"), QStringLiteral("nearest balloon frequency"), balloon.nearestFrequency(frequency), QStringLiteral("Hz"));
    out.field(QStringLiteral("theta_deg"), QStringLiteral("theta"), theta, QStringLiteral("deg"));
    out.field(QStringLiteral("phi_deg"), QStringLiteral("phi"), phi, QStringLiteral("deg"));
    out.field(QStringLiteral("real"), QStringLiteral("real part"), value.real());
    out.field(QStringLiteral("imaginary"), QStringLiteral("imaginary part"), value.imag());
    out.field(QStringLiteral("level_dB"), QStringLiteral("level"), Output::number(levelOf(value)), QStringLiteral("dB"), QStringLiteral("none (the value is zero)"));
    out.field(QStringLiteral("phase_deg"), QStringLiteral("phase"), value.arg() * 180.0 / M_PI, QStringLiteral("deg"));
    return 0;
}
