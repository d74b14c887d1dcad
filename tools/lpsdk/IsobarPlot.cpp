// SPDX-License-Identifier: MIT
// Isobar maps: the level relative to on-axis over frequency and plane angle as a colour map, with
// contours every 3 dB, labelled, and a colour bar; horizontal and vertical side by side.
#include "DirectivityPlots.h"

#include "PlotCanvas.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdkAnalysis.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Floor = -30.0; // dB, the bottom of the colour scale
constexpr double ContourStep = 3.0;

double shown(double level)
{
    return std::isnan(level) ? level : std::clamp(level, -200.0, 50.0);
}

// Where a value lies between grid points: index i and fraction t in [0, 1], on a log scale for frequencies.
std::pair<int, double> locate(const QList<double> &grid, double value, bool logarithmic)
{
    int i = 0;
    while (i + 2 < grid.size() && grid.at(i + 1) < value)
        ++i;
    if (grid.size() < 2)
        return {0, 0.0};
    const double a = logarithmic ? std::log(grid.at(i)) : grid.at(i);
    const double b = logarithmic ? std::log(grid.at(i + 1)) : grid.at(i + 1);
    const double v = logarithmic ? std::log(value) : value;
    return {i, std::clamp((v - a) / (b - a), 0.0, 1.0)};
}

void drawMap(PlotCanvas &canvas, const QRectF &area, const IsobarMap &map, const PlotCanvas::Axis &x, const QString &angleLabel)
{
    const PlotCanvas::Axis y{-180.0, 180.0, false, angleLabel, 30.0};
    const QList<double> angles(map.angles.cbegin(), map.angles.cend());
    const int columns = int(map.angles.size());
    const auto level = [&](int f, int a) { return shown(map.Level(f, a)); };

    QImage image(area.size().toSize(), QImage::Format_RGB32);
    for (int px = 0; px < image.width(); ++px) {
        const double frequency = x.min * std::pow(x.max / x.min, (px + 0.5) / image.width());
        const auto [f, ft] = locate(map.frequencies, frequency, true);
        const int f1 = std::min(f + 1, int(map.frequencies.size()) - 1);
        for (int py = 0; py < image.height(); ++py) {
            const double angle = 180.0 - 360.0 * (py + 0.5) / image.height();
            const auto [a, at] = locate(angles, angle, false);
            const double v = (1 - ft) * ((1 - at) * level(f, a) + at * level(f, a + 1)) + ft * ((1 - at) * level(f1, a) + at * level(f1, a + 1));
            image.setPixel(px, py, PlotCanvas::colorMap((v - Floor) / -Floor).rgb());
        }
    }
    QPainter &p = canvas.painter();
    canvas.drawAxes(area, x, y);
    p.drawImage(area.topLeft(), image); // over the gridlines, which would only clutter the map
    p.setPen(QPen(Qt::black, 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(area);

    // Contours by marching squares over the grid, in (frequency, angle) and mapped to the panel.
    p.save();
    p.setClipRect(area);
    p.setRenderHint(QPainter::Antialiasing);
    QList<QRectF> labels;
    for (double contour = -ContourStep; contour > Floor; contour -= ContourStep) {
        const bool beamwidth = contour == -6.0;
        p.setPen(QPen(beamwidth ? QColor(255, 255, 255) : QColor(0, 0, 0, 170), beamwidth ? 2.0 : 1.0));
        QList<QPointF> candidates; // segment middles in the upper half, where the label may go
        for (int f = 0; f + 1 < map.frequencies.size(); ++f) {
            for (int a = 0; a + 1 < columns; ++a) {
                const int corners[4][2] = {{f, a}, {f + 1, a}, {f + 1, a + 1}, {f, a + 1}};
                QList<QPointF> crossings;
                for (int e = 0; e < 4; ++e) {
                    const int *c0 = corners[e];
                    const int *c1 = corners[(e + 1) % 4];
                    const double v0 = level(c0[0], c0[1]);
                    const double v1 = level(c1[0], c1[1]);
                    if (std::isnan(v0) || std::isnan(v1) || (v0 < contour) == (v1 < contour))
                        continue;
                    const double t = (contour - v0) / (v1 - v0);
                    const double fx = std::exp(std::log(map.frequencies.at(c0[0])) * (1 - t) + std::log(map.frequencies.at(c1[0])) * t);
                    const double ay = map.angles.at(size_t(c0[1])) * (1 - t) + map.angles.at(size_t(c1[1])) * t;
                    crossings.append(PlotCanvas::map(area, x, y, fx, ay));
                }
                for (int s = 0; s + 1 < crossings.size(); s += 2) {
                    p.drawLine(crossings.at(s), crossings.at(s + 1));
                    const QPointF middle = (crossings.at(s) + crossings.at(s + 1)) / 2;
                    if (middle.y() < area.center().y() - 20 && area.adjusted(20, 12, -20, -12).contains(middle))
                        candidates.append(middle);
                }
            }
        }
        // The label nearest its own column of the panel that overlaps no other label.
        const double labelX = area.left() + area.width() * (0.3 + 0.06 * (-contour / ContourStep));
        std::sort(candidates.begin(), candidates.end(), [&](const QPointF &a, const QPointF &b) { return std::abs(a.x() - labelX) < std::abs(b.x() - labelX); });
        const auto free = std::find_if(candidates.cbegin(), candidates.cend(), [&](const QPointF &c) {
            return std::none_of(labels.cbegin(), labels.cend(), [&](const QRectF &r) { return r.intersects(QRectF(c.x() - 17, c.y() - 10, 34, 20)); });
        });
        if (free != candidates.cend()) {
            const QString text = QString::number(contour);
            const QRectF box(free->x() - 13, free->y() - 8, 26, 16);
            labels.append(box);
            p.setPen(Qt::NoPen);
            p.setBrush(QColor(255, 255, 255, 220));
            p.drawRoundedRect(box, 3, 3);
            p.setPen(Qt::black);
            p.drawText(box, Qt::AlignCenter, text);
        }
    }
    p.restore();
}

void drawColorBar(PlotCanvas &canvas, const QRectF &bar)
{
    QPainter &p = canvas.painter();
    for (int y = 0; y < int(bar.height()); ++y)
        p.fillRect(QRectF(bar.left(), bar.top() + y, bar.width(), 1.0), PlotCanvas::colorMap(1.0 - (y + 0.5) / bar.height()));
    p.setPen(Qt::black);
    p.setBrush(Qt::NoBrush);
    p.drawRect(bar);
    for (double level = 0.0; level >= Floor; level -= ContourStep) {
        const double y = bar.top() + bar.height() * level / Floor;
        p.drawLine(QPointF(bar.right(), y), QPointF(bar.right() + 5, y));
        p.drawText(QRectF(bar.right() + 8, y - 9, 40, 18), Qt::AlignLeft | Qt::AlignVCenter, QString::number(level));
    }
    p.save();
    p.translate(bar.right() + 62, bar.center().y());
    p.rotate(90);
    p.drawText(QRectF(-150, -10, 300, 20), Qt::AlignCenter, QStringLiteral("level relative to on-axis (dB)"));
    p.restore();
}

} // namespace

void DirectivityPlots::drawIsobars(PlotCanvas &canvas, const DirectivityAnalysis &analysis)
{
    const QList<double> &frequencies = analysis.GetFrequencies();
    const double step = std::min(2.0, analysis.GetTable().GetThetaStepWidth());
    PlotCanvas::Axis x{frequencies.first(), frequencies.last(), true, QStringLiteral("frequency (Hz)")};
    if (!(x.min > 0.0 && x.max > x.min))
        x = {20.0, 20000.0, true, QStringLiteral("frequency (Hz)")};
    drawMap(canvas, QRectF(90, 110, 560, 520), analysis.GetIsobarMap(DirectivityPlane::Horizontal, step), x,
            QStringLiteral("horizontal angle (degrees, + left)"));
    drawMap(canvas, QRectF(750, 110, 560, 520), analysis.GetIsobarMap(DirectivityPlane::Vertical, step), x,
            QStringLiteral("vertical angle (degrees, + up)"));
    drawColorBar(canvas, QRectF(1360, 110, 24, 520));
}
