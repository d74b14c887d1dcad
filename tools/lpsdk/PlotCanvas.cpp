// SPDX-License-Identifier: MIT
#include "PlotCanvas.h"

#include "CommandContext.h"

#include <QSvgGenerator>

#include <algorithm>
#include <cmath>

namespace {

double axisPosition(const PlotCanvas::Axis &axis, double value)
{
    if (axis.logarithmic)
        return (std::log10(value) - std::log10(axis.min)) / (std::log10(axis.max) - std::log10(axis.min));
    return (value - axis.min) / (axis.max - axis.min);
}

// Ticks at multiples of `step`, or of a step of 1, 2 or 5 times a power of ten.
QList<double> linearTicks(double min, double max, int wanted, double step = 0.0)
{
    if (step <= 0.0)
        step = PlotCanvas::niceStep(max - min, wanted);
    QList<double> ticks;
    for (double t = std::ceil(min / step - 1e-9) * step; t <= max + step * 1e-9; t += step)
        ticks.append(std::abs(t) < step * 1e-9 ? 0.0 : t);
    return ticks;
}

QList<double> logTicks(double min, double max)
{
    QList<double> ticks;
    for (double decade = std::pow(10.0, std::floor(std::log10(min))); decade <= max; decade *= 10.0) {
        for (double factor : {1.0, 2.0, 5.0}) {
            const double t = decade * factor;
            if (t >= min * (1 - 1e-9) && t <= max * (1 + 1e-9))
                ticks.append(t);
        }
    }
    return ticks;
}

QString tickText(double value, bool logarithmic)
{
    if (logarithmic && value >= 1000.0)
        return QString::number(value / 1000.0) + QLatin1Char('k');
    return QString::number(value);
}

} // namespace

PlotCanvas::PlotCanvas(const QString &fileName, QSize size, const QString &title)
    : m_fileName(fileName)
    , m_size(size)
{
    if (fileName.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive)) {
        m_svg = std::make_unique<QSvgGenerator>();
        m_svg->setFileName(fileName);
        m_svg->setSize(size);
        m_svg->setViewBox(QRect(QPoint(0, 0), size));
        m_svg->setTitle(title);
        if (!m_painter.begin(m_svg.get()))
            dataError(QStringLiteral("cannot write \"%1\"").arg(fileName));
    } else {
        m_image = QImage(size, QImage::Format_ARGB32_Premultiplied);
        m_painter.begin(&m_image);
    }
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.fillRect(QRect(QPoint(0, 0), size), Qt::white);
    QFont font = m_painter.font();
    font.setPixelSize(20);
    font.setBold(true);
    m_painter.setFont(font);
    m_painter.setPen(Qt::black);
    m_painter.drawText(QRectF(0, 6, size.width(), 60), Qt::AlignHCenter | Qt::AlignTop, title);
    font.setPixelSize(14);
    font.setBold(false);
    m_painter.setFont(font);
}

PlotCanvas::~PlotCanvas() = default;

double PlotCanvas::niceStep(double range, int wanted)
{
    const double raw = range / wanted;
    const double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
    for (double factor : {1.0, 2.0, 5.0}) {
        if (factor * magnitude >= raw)
            return factor * magnitude;
    }
    return 10.0 * magnitude;
}

void PlotCanvas::save()
{
    m_painter.end();
    if (!m_svg && !m_image.save(m_fileName, "PNG"))
        dataError(QStringLiteral("cannot write \"%1\"").arg(m_fileName));
}

QPointF PlotCanvas::map(const QRectF &area, const Axis &x, const Axis &y, double xValue, double yValue)
{
    return {area.left() + axisPosition(x, xValue) * area.width(), area.bottom() - axisPosition(y, yValue) * area.height()};
}

void PlotCanvas::drawAxes(const QRectF &area, const Axis &x, const Axis &y)
{
    QPainter &p = m_painter;
    p.save();
    const QPen grid(QColor(210, 210, 210), 1);
    const QPen minorGrid(QColor(235, 235, 235), 1);
    const QFontMetricsF metrics(p.font());

    if (x.logarithmic) {
        // Minor lines at every integer multiple of a decade, labelled ones at 1, 2 and 5.
        p.setPen(minorGrid);
        for (double decade = std::pow(10.0, std::floor(std::log10(x.min))); decade <= x.max; decade *= 10.0) {
            for (int k = 1; k <= 9; ++k) {
                const double v = decade * k;
                if (v > x.min && v < x.max)
                    p.drawLine(map(area, x, y, v, y.min), map(area, x, y, v, y.max));
            }
        }
    }
    const QList<double> xTicks = x.logarithmic ? logTicks(x.min, x.max) : linearTicks(x.min, x.max, 8, x.step);
    const QList<double> yTicks = linearTicks(y.min, y.max, 6, y.step);
    for (double t : xTicks) {
        const QPointF bottom = map(area, x, y, t, y.min);
        p.setPen(grid);
        p.drawLine(bottom, map(area, x, y, t, y.max));
        p.setPen(Qt::black);
        p.drawText(QRectF(bottom.x() - 40, area.bottom() + 4, 80, 20), Qt::AlignHCenter | Qt::AlignTop, tickText(t, x.logarithmic));
    }
    for (double t : yTicks) {
        const QPointF left = map(area, x, y, x.min, t);
        p.setPen(grid);
        p.drawLine(left, map(area, x, y, x.max, t));
        p.setPen(Qt::black);
        p.drawText(QRectF(area.left() - 66, left.y() - 10, 60, 20), Qt::AlignRight | Qt::AlignVCenter, tickText(t, false));
    }
    p.setPen(QPen(Qt::black, 1.5));
    p.drawRect(area);
    p.drawText(QRectF(area.left(), area.bottom() + 24, area.width(), 22), Qt::AlignCenter, x.label);
    p.translate(area.left() - 72, area.center().y());
    p.rotate(-90);
    p.drawText(QRectF(-area.height() / 2, -22, area.height(), 22), Qt::AlignCenter, y.label);
    p.restore();
}

QPointF PlotCanvas::mapPolar(const QRectF &area, double bottom, double top, double angleDegrees, double level)
{
    const double radius = std::min(area.width(), area.height()) / 2.0 * std::clamp((level - bottom) / (top - bottom), 0.0, 1.0);
    const double a = angleDegrees * M_PI / 180.0;
    return area.center() + QPointF(radius * std::sin(a), -radius * std::cos(a));
}

void PlotCanvas::drawPolarGrid(const QRectF &area, double bottom, double top, double ringStep, const QString &caption)
{
    QPainter &p = m_painter;
    p.save();
    p.setPen(QPen(QColor(200, 200, 200), 1));
    p.setBrush(Qt::NoBrush);
    const QPointF c = area.center();
    for (double level = bottom + ringStep; level <= top + 1e-9; level += ringStep) {
        const double r = QLineF(c, mapPolar(area, bottom, top, 0.0, level)).length();
        p.drawEllipse(c, r, r);
    }
    for (int angle = 0; angle < 360; angle += 30)
        p.drawLine(c, mapPolar(area, bottom, top, angle, top));
    p.setPen(Qt::black);
    for (int angle = 0; angle < 360; angle += 30) {
        const QPointF at = mapPolar(area, bottom, top, angle, top);
        const QPointF out = c + (at - c) * 1.09;
        p.drawText(QRectF(out.x() - 30, out.y() - 10, 60, 20), Qt::AlignCenter, QStringLiteral("%1°").arg(angle > 180 ? angle - 360 : angle));
    }
    QFont small = p.font();
    small.setPixelSize(12);
    p.setFont(small);
    p.setPen(QColor(90, 90, 90));
    for (double level = bottom + ringStep; level <= top + 1e-9; level += ringStep) {
        const QPointF at = mapPolar(area, bottom, top, 15.0, level);
        p.drawText(QRectF(at.x() + 2, at.y() - 14, 60, 14), Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("%1 dB").arg(level));
    }
    QFont bold = p.font();
    bold.setPixelSize(16);
    bold.setBold(true);
    p.setFont(bold);
    p.setPen(Qt::black);
    p.drawText(QRectF(area.left() - 60, area.bottom() + 26, area.width() + 120, 24), Qt::AlignCenter, caption);
    p.restore();
}

void PlotCanvas::drawLegend(const QPointF &topRight, const QList<LegendEntry> &entries, int columns)
{
    QPainter &p = m_painter;
    p.save();
    const QFontMetricsF metrics(p.font());
    double width = 0.0;
    for (const LegendEntry &entry : entries)
        width = std::max(width, metrics.horizontalAdvance(entry.text));
    const int rows = (int(entries.size()) + columns - 1) / columns;
    const double columnWidth = width + 48;
    const QRectF box(topRight.x() - columnWidth * columns, topRight.y(), columnWidth * columns, rows * 20 + 8);
    p.setPen(QPen(QColor(150, 150, 150), 1));
    p.setBrush(QColor(255, 255, 255, 230));
    p.drawRect(box);
    for (int i = 0; i < entries.size(); ++i) {
        const double x = box.left() + (i / rows) * columnWidth;
        const double y = box.top() + 14 + (i % rows) * 20;
        p.setPen(entries.at(i).pen);
        p.drawLine(QPointF(x + 6, y), QPointF(x + 28, y));
        p.setPen(Qt::black);
        p.drawText(QRectF(x + 34, y - 10, width + 4, 20), Qt::AlignLeft | Qt::AlignVCenter, entries.at(i).text);
    }
    p.restore();
}

// Ten colours that stay apart on screen and in print; past ten the dash tells curves apart.
QColor PlotCanvas::color(int index)
{
    static const QColor colors[] = {QColor(31, 119, 180), QColor(214, 39, 40), QColor(44, 160, 44), QColor(255, 127, 14), QColor(148, 103, 189),
                                    QColor(140, 86, 75), QColor(227, 119, 194), QColor(127, 127, 127), QColor(188, 189, 34), QColor(23, 190, 207)};
    return colors[index % 10];
}

QPen PlotCanvas::pen(int index, double width)
{
    static const Qt::PenStyle styles[] = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};
    QPen pen(color(index), width);
    pen.setStyle(styles[(index / 10) % 4]);
    return pen;
}

QColor PlotCanvas::colorMap(double fraction)
{
    // A perceptually uniform scale from dark violet to yellow that stays readable with the common
    // colour-vision deficiencies and in grey.
    static const QColor stops[] = {QColor(68, 1, 84), QColor(72, 40, 120), QColor(62, 73, 137), QColor(49, 104, 142), QColor(38, 130, 142),
                                   QColor(31, 158, 137), QColor(53, 183, 121), QColor(110, 206, 88), QColor(253, 231, 37)};
    const double x = std::clamp(std::isnan(fraction) ? 0.0 : fraction, 0.0, 1.0) * 8.0;
    const int i = std::min(int(x), 7);
    const double t = x - i;
    const auto mix = [t](int a, int b) { return int(std::lround(a + (b - a) * t)); };
    return QColor(mix(stops[i].red(), stops[i + 1].red()), mix(stops[i].green(), stops[i + 1].green()), mix(stops[i].blue(), stops[i + 1].blue()));
}
