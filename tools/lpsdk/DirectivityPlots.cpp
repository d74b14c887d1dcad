// SPDX-License-Identifier: MIT
// Frequency charts of a directivity analysis: levels or angles over a logarithmic frequency axis.
#include "DirectivityPlots.h"

#include "PlotCanvas.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdkAnalysis.h>

#include <cmath>

namespace {

struct Curve
{
    QString name;
    std::vector<double> values;
    Qt::PenStyle style = Qt::SolidLine;
};

PlotCanvas::Axis frequencyAxis(const DirectivityAnalysis &analysis)
{
    double low = 1e9;
    double high = 0.0;
    for (double f : analysis.GetFrequencies()) {
        if (f > 0.0) {
            low = std::min(low, f);
            high = std::max(high, f);
        }
    }
    if (!(high > low)) {
        low = 20.0;
        high = 20000.0;
    }
    return {low, high, true, QStringLiteral("frequency (Hz)")};
}

// Levels span at most 50 dB below the highest, in whole 5 dB.
PlotCanvas::Axis levelAxis(const QList<Curve> &curves, const QString &label, double span = 50.0)
{
    double top = -1e300;
    double bottom = 1e300;
    for (const Curve &curve : curves) {
        for (double v : curve.values) {
            if (std::isfinite(v)) {
                top = std::max(top, v);
                bottom = std::min(bottom, v);
            }
        }
    }
    if (top < bottom)
        top = bottom = 0.0;
    top = std::ceil(top / 5.0 + 0.2) * 5.0;
    bottom = std::max(std::floor(bottom / 5.0) * 5.0, top - span);
    if (top - bottom < 10.0)
        bottom = top - 10.0;
    return {bottom, top, false, label, 0.0};
}

void drawChart(PlotCanvas &canvas, const QRectF &area, const DirectivityAnalysis &analysis, const QList<Curve> &curves, const PlotCanvas::Axis &y,
               const QPointF &legendCorner, int firstColor = 0)
{
    const PlotCanvas::Axis x = frequencyAxis(analysis);
    canvas.drawAxes(area, x, y);
    QPainter &p = canvas.painter();
    p.save();
    p.setClipRect(area);
    p.setRenderHint(QPainter::Antialiasing);
    QList<PlotCanvas::LegendEntry> legend;
    for (int c = 0; c < curves.size(); ++c) {
        const QColor color = PlotCanvas::color(firstColor + c);
        p.setPen(QPen(color, 2.2, curves.at(c).style));
        QPolygonF line;
        const auto flush = [&] {
            p.drawPolyline(line);
            line.clear();
        };
        for (int f = 0; f < analysis.GetFrequencies().size(); ++f) {
            const double frequency = analysis.GetFrequencies().at(f);
            const double v = curves.at(c).values.at(size_t(f));
            if (frequency > 0.0 && std::isfinite(v))
                line.append(PlotCanvas::map(area, x, y, frequency, v));
            else
                flush();
        }
        flush();
        legend.append({color, curves.at(c).name});
    }
    p.restore();
    canvas.drawLegend(legendCorner, legend);
}

void spinorama(PlotCanvas &canvas, const DirectivityAnalysis &analysis)
{
    const SpinoramaCurves &c = analysis.GetSpinorama();
    const QList<Curve> levels = {{QStringLiteral("on-axis"), c.onAxis},
                                 {QStringLiteral("listening window"), c.listeningWindow},
                                 {QStringLiteral("early reflections"), c.earlyReflections},
                                 {QStringLiteral("sound power"), c.soundPower},
                                 {QStringLiteral("estimated in-room"), c.estimatedInRoom, Qt::DashLine}};
    const QRectF top(100, 90, 1000, 470);
    drawChart(canvas, top, analysis, levels, levelAxis(levels, QStringLiteral("level (dB)")), top.bottomRight() + QPointF(-8, -150));
    const QList<Curve> indices = {{QStringLiteral("sound-power DI"), c.soundPowerDi}, {QStringLiteral("early-reflections DI"), c.earlyReflectionsDi}};
    const QRectF bottom(100, 620, 1000, 200);
    PlotCanvas::Axis di = levelAxis(indices, QStringLiteral("DI (dB)"), 30.0);
    di.min = std::min(di.min, 0.0);
    drawChart(canvas, bottom, analysis, indices, di, bottom.topLeft() + QPointF(230, 8), 5);
}

void directivityIndex(PlotCanvas &canvas, const DirectivityAnalysis &analysis)
{
    const SpinoramaCurves &c = analysis.GetSpinorama();
    const QList<Curve> curves = {{QStringLiteral("directivity index (whole sphere)"), analysis.GetDirectivityIndices()},
                                 {QStringLiteral("sound-power DI (listening window)"), c.soundPowerDi, Qt::DashLine},
                                 {QStringLiteral("early-reflections DI"), c.earlyReflectionsDi, Qt::DashLine}};
    PlotCanvas::Axis y = levelAxis(curves, QStringLiteral("directivity index (dB)"), 40.0);
    y.min = std::min(y.min, 0.0);
    const QRectF area(100, 90, 1000, 720);
    drawChart(canvas, area, analysis, curves, y, area.topLeft() + QPointF(430, 8));
}

void beamwidth(PlotCanvas &canvas, const DirectivityAnalysis &analysis)
{
    const QList<Curve> curves = {{QStringLiteral("horizontal"), analysis.GetBeamwidths(DirectivityPlane::Horizontal)},
                                 {QStringLiteral("vertical"), analysis.GetBeamwidths(DirectivityPlane::Vertical)}};
    const QRectF area(100, 90, 1000, 720);
    drawChart(canvas, area, analysis, curves, {0.0, 360.0, false, QStringLiteral("-6 dB beamwidth (degrees)"), 30.0}, area.topRight() + QPointF(-8, 8));
}

void offAxis(PlotCanvas &canvas, const DirectivityAnalysis &analysis, bool vertical, bool normalize)
{
    const DirectivityPlane plane = vertical ? DirectivityPlane::Vertical : DirectivityPlane::Horizontal;
    QList<Curve> curves;
    for (int angle = 0; angle <= 90; angle += 10) {
        Curve curve{QStringLiteral("%1°").arg(angle), {}};
        for (int f = 0; f < analysis.GetFrequencies().size(); ++f)
            curve.values.push_back(analysis.GetPlaneLevel(f, plane, angle) - (normalize ? analysis.GetOnAxisLevels().at(size_t(f)) : 0.0));
        curves.append(curve);
    }
    const QString label = normalize ? QStringLiteral("level relative to on-axis (dB)") : QStringLiteral("level (dB)");
    PlotCanvas::Axis y = levelAxis(curves, label, normalize ? 40.0 : 50.0);
    const QRectF area(100, 90, 1000, 720);
    drawChart(canvas, area, analysis, curves, y, area.bottomRight() + QPointF(-8, -230));
}

} // namespace

namespace DirectivityPlots {

QStringList kinds()
{
    return {QStringLiteral("spinorama"), QStringLiteral("isobar"), QStringLiteral("di"), QStringLiteral("beamwidth"), QStringLiteral("offaxis")};
}

void draw(const QString &file, const QString &kind, const QString &title, const DirectivityAnalysis &analysis, bool vertical, bool normalize)
{
    const QString captions[] = {QStringLiteral("spinorama curves"), QStringLiteral("isobars: level relative to on-axis"),
                                QStringLiteral("directivity index"), QStringLiteral("-6 dB beamwidth (no line where the level does not fall by 6 dB on both sides)"),
                                QStringLiteral("%1 off-axis responses, 0 ... 90° in 10° steps%2")
                                    .arg(vertical ? QStringLiteral("vertical (upwards)") : QStringLiteral("horizontal (to the left)"),
                                         normalize ? QStringLiteral(", relative to on-axis") : QString())};
    const int index = int(kinds().indexOf(kind));
    const bool isobar = kind == QLatin1String("isobar");
    PlotCanvas canvas(file, isobar ? QSize(1500, 720) : QSize(1200, 880), title + QStringLiteral("\n") + captions[index]);
    switch (index) {
    case 0: spinorama(canvas, analysis); break;
    case 1: drawIsobars(canvas, analysis); break;
    case 2: directivityIndex(canvas, analysis); break;
    case 3: beamwidth(canvas, analysis); break;
    default: offAxis(canvas, analysis, vertical, normalize); break;
    }
    canvas.save();
}

} // namespace DirectivityPlots
