// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QPainter>
#include <QPen>
#include <QRectF>
#include <QString>

#include <memory>

class QSvgGenerator;

/**
 * A picture for a file: a QImage saved as PNG or a QSvgGenerator for SVG, chosen by the file's
 * suffix, with the drawing helpers the plots share (charts with gridlines and labelled axes,
 * polar grids, legends). Coordinates are pixels of a fixed canvas, also for SVG.
 */
class PlotCanvas
{
public:
    struct Axis
    {
        double min = 0.0;
        double max = 1.0;
        bool logarithmic = false;
        QString label; // with its unit
        double step = 0.0; // between labelled gridlines of a linear axis; 0 chooses one
    };
    struct LegendEntry
    {
        LegendEntry(const QPen &pen, const QString &text) : pen(pen), text(text) {}
        LegendEntry(const QColor &color, const QString &text) : pen(color, 3), text(text) {}
        QPen pen;
        QString text;
    };

    PlotCanvas(const QString &fileName, QSize size, const QString &title);
    ~PlotCanvas();

    QPainter &painter() { return m_painter; }
    QSize size() const { return m_size; }
    /// Ends painting and writes the file; a data error when it cannot be written.
    void save();

    /// Frame, gridlines, tick labels and axis labels of a chart in `area`.
    void drawAxes(const QRectF &area, const Axis &x, const Axis &y);
    static QPointF map(const QRectF &area, const Axis &x, const Axis &y, double xValue, double yValue);
    /// Rings every `ringStep` dB from `bottom` to `top`, spokes every 30 degrees, 0 degrees up.
    void drawPolarGrid(const QRectF &area, double bottom, double top, double ringStep, const QString &caption);
    static QPointF mapPolar(const QRectF &area, double bottom, double top, double angleDegrees, double level);
    /// A boxed legend whose top right corner is at `topRight`, in `columns` columns.
    void drawLegend(const QPointF &topRight, const QList<LegendEntry> &entries, int columns = 1);
    /// A step of 1, 2 or 5 times a power of ten that cuts `range` into about `wanted` parts.
    static double niceStep(double range, int wanted);
    /// Distinct colours for curves; they repeat after ten.
    static QColor color(int index);
    /// The pen of curve `index`: its colour, and a dash of its own for every further ten curves.
    static QPen pen(int index, double width);
    /// A colour of a violet-to-yellow scale readable with colour-vision deficiency, for fraction 0 ... 1.
    static QColor colorMap(double fraction);

private:
    QString m_fileName;
    QSize m_size;
    QImage m_image;
    std::unique_ptr<QSvgGenerator> m_svg;
    QPainter m_painter;
};
