// SPDX-License-Identifier: MIT
#include "PredictPlot.h"

#include "PlotCanvas.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdkPrediction.h>

#include <QPainter>

#include <cmath>

namespace {

constexpr double Range = 40.0; // dB below the plane's maximum that the colours span

struct Bounds {
    double minX = INFINITY, maxX = -INFINITY, minY = INFINITY, maxY = -INFINITY;
    void add(double x, double y)
    {
        minX = std::min(minX, x), maxX = std::max(maxX, x), minY = std::min(minY, y), maxY = std::max(maxY, y);
    }
};

// Sources as dots with a line along their front, in the (a, b) coordinates `pick` chooses.
template<typename Pick>
void drawSources(QPainter &p, const QRectF &area, const PlotCanvas::Axis &x, const PlotCanvas::Axis &y, const QList<PlacedSource> &sources, Pick pick, double arrow)
{
    for (const PlacedSource &source : sources) {
        const auto [a, b] = pick(source.position);
        const auto [fa, fb] = pick(source.front);
        const QPointF at = PlotCanvas::map(area, x, y, a, b);
        p.setPen(QPen(Qt::black, 2));
        p.drawLine(at, PlotCanvas::map(area, x, y, a + arrow * fa, b + arrow * fb));
        p.setBrush(Qt::white);
        p.drawEllipse(at, 4, 4);
    }
}

} // namespace

void PredictPlot::draw(const QString &file, const QString &title, const CoveragePredictor &predictor, const SoundField &field, int band)
{
    const auto level = [&](qsizetype r) { return band < 0 ? field.GetAWeightedLevel(r) : field.GetLevel(r, band); };
    Bounds plan;
    double top = -INFINITY;
    for (qsizetype r = 0; r < field.GetReceiverCount(); ++r) {
        plan.add(field.GetReceivers()[size_t(r)][0], field.GetReceivers()[size_t(r)][1]);
        if (std::isfinite(level(r)))
            top = std::max(top, level(r));
    }
    for (const PlacedSource &source : predictor.GetSources())
        plan.add(source.position[0], source.position[1]);
    top = std::ceil(top / 5.0) * 5.0; // a round top, so the colour bar reads in 5 dB steps
    const double margin = 0.05 * std::max(plan.maxX - plan.minX, plan.maxY - plan.minY) + 0.5;
    const QString what = band < 0 ? QStringLiteral("A-weighted, pink") : QStringLiteral("%1 Hz").arg(field.GetFrequencies().at(band), 0, 'f', 0);
    PlotCanvas canvas(file, QSize(1400, 900), QStringLiteral("%1\nsound pressure level, %2").arg(title, what));
    QPainter &p = canvas.painter();
    // Plan: forward (x) to the right, left (y) upwards, equal scales.
    const PlotCanvas::Axis xAxis{plan.minX - margin, plan.maxX + margin, false, QStringLiteral("x, forward (m)")};
    const PlotCanvas::Axis yAxis{plan.minY - margin, plan.maxY + margin, false, QStringLiteral("y, left (m)")};
    const double scale = std::min(820.0 / (xAxis.max - xAxis.min), 720.0 / (yAxis.max - yAxis.min));
    const QRectF area(90, 90, scale * (xAxis.max - xAxis.min), scale * (yAxis.max - yAxis.min));
    canvas.drawAxes(area, xAxis, yAxis);
    // Each receiver paints the square around it, as wide as the spacing of the plane allows.
    const double spacing = std::sqrt((plan.maxX - plan.minX) * (plan.maxY - plan.minY) / std::max<double>(1.0, double(field.GetReceiverCount())));
    const double cell = std::max(3.0, scale * (spacing > 0 ? spacing : 0.2)) + 1.0;
    for (qsizetype r = 0; r < field.GetReceiverCount(); ++r) {
        const auto &x = field.GetReceivers()[size_t(r)];
        const QPointF at = PlotCanvas::map(area, xAxis, yAxis, x[0], x[1]);
        const double v = level(r);
        p.fillRect(QRectF(at.x() - cell / 2, at.y() - cell / 2, cell, cell),
                   std::isfinite(v) ? PlotCanvas::colorMap(std::clamp((v - (top - Range)) / Range, 0.0, 1.0)) : QColor(Qt::lightGray));
    }
    p.setClipRect(area);
    drawSources(p, area, xAxis, yAxis, predictor.GetSources(), [](const std::array<double, 3> &v) { return std::pair(v[0], v[1]); }, 1.5);
    p.setClipping(false);

    // The colour bar, in absolute dB of the balloons' scale.
    const QRectF bar(area.right() + 40, area.top(), 22, std::min(area.height(), 500.0));
    for (int y = 0; y < int(bar.height()); ++y)
        p.fillRect(QRectF(bar.left(), bar.top() + y, bar.width(), 1.0), PlotCanvas::colorMap(1.0 - (y + 0.5) / bar.height()));
    p.setPen(Qt::black);
    p.setBrush(Qt::NoBrush);
    p.drawRect(bar);
    for (int step = 0; step <= 8; ++step) { // 5 dB a step
        const double y = bar.top() + bar.height() * step / 8.0;
        p.drawLine(QPointF(bar.right(), y), QPointF(bar.right() + 5, y));
        p.drawText(QRectF(bar.right() + 8, y - 9, 60, 18), Qt::AlignLeft | Qt::AlignVCenter, QString::number(top - Range * step / 8.0, 'f', 0));
    }
    p.drawText(QRectF(bar.left() - 20, bar.bottom() + 8, 120, 20), Qt::AlignLeft, QStringLiteral("level (dB)"));

    // Side view of the sources: forward against height, so that an array's splay shows.
    Bounds side;
    for (const PlacedSource &source : predictor.GetSources())
        side.add(source.position[0], source.position[2]);
    const double sideMargin = 0.2 * std::max(side.maxX - side.minX, side.maxY - side.minY) + 0.5;
    const PlotCanvas::Axis sx{side.minX - sideMargin, side.maxX + sideMargin, false, QStringLiteral("x (m)"), 1.0};
    const PlotCanvas::Axis sz{side.minY - sideMargin, side.maxY + sideMargin, false, QStringLiteral("z (m)"), 1.0};
    const double sideScale = std::min(220.0 / (sx.max - sx.min), 260.0 / (sz.max - sz.min));
    const QRectF inset(bar.right() + 150, area.top(), sideScale * (sx.max - sx.min), sideScale * (sz.max - sz.min));
    p.fillRect(inset, Qt::white);
    canvas.drawAxes(inset, sx, sz);
    drawSources(p, inset, sx, sz, predictor.GetSources(), [](const std::array<double, 3> &v) { return std::pair(v[0], v[2]); }, 0.5 * (sz.max - sz.min) / 4.0);
    p.setPen(Qt::black);
    p.drawText(QRectF(inset.left(), inset.top() - 24, 300, 20), Qt::AlignLeft, QStringLiteral("side view of the sources"));
    canvas.save();
}
