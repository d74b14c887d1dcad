// SPDX-License-Identifier: MIT
// lpsdk shape: the outlines of a loudspeaker or rigging item, drawn to scale or as an OBJ mesh.
#include "Arguments.h"
#include "CommandContext.h"
#include "Descriptors.h"
#include "PlotCanvas.h"

#include <QHash>
#include <QSaveFile>

#include <cmath>
#include <functional>

namespace {

// One kind of point, with the key the descriptor files give it and the pen its mark is drawn
// with in every picture: a compression corner dashed in its corner's colour.
struct PointKind
{
    const char *key;
    const char *label;
    int pen;
    int corner = -1; // a Tolvane::MechanicalConnectionPoint
};

const PointKind pointKinds[] = {
    {"mountingPoint", "mounting point", 0},
    {"connectionPoint", "connection point", 1},
    {"centerOfGravity", "centre of gravity", 2},
    {"sourcePoint", "source point", 3},
    {"front, top", "connection front top", 4, Tolvane::FrontTop},
    {"rear, top", "connection rear top", 5, Tolvane::RearTop},
    {"rear, bottom", "connection rear bottom", 6, Tolvane::RearBottom},
    {"front, bottom", "connection front bottom", 7, Tolvane::FrontBottom},
    {"front, top, compression", "connection front top (compression)", 14, Tolvane::FrontTopCompression},
    {"rear, top, compression", "connection rear top (compression)", 15, Tolvane::RearTopCompression},
    {"rear, bottom, compression", "connection rear bottom (compression)", 16, Tolvane::RearBottomCompression},
    {"front, bottom, compression", "connection front bottom (compression)", 17, Tolvane::FrontBottomCompression},
};

const PointKind &pointKind(const QString &key)
{
    for (const PointKind &kind : pointKinds) {
        if (key == QLatin1String(kind.key))
            return kind;
    }
    Q_UNREACHABLE();
}

struct Mark
{
    QString name;
    Point point;
    int pen = 0;
};

struct Outlines
{
    QString name;
    QList<Point> view3d; // quads, four corners per face
    QList<Point> top;
    QList<Point> side;
    QList<Mark> marks;
};

// The points the descriptor's file gives; a point it leaves out reads as the zero point, which
// would mark a place that is no part of the item.
template<typename Descriptor>
QList<Mark> definedMarks(Descriptor *descriptor, Tolvane::Mounting mounting, const std::function<Point(const QString &)> &pointOf)
{
    QList<Mark> marks;
    for (const QString &key : descriptor->GetDefinedPointKeys(mounting, QStringLiteral("default"))) {
        const PointKind &kind = pointKind(key);
        marks.append({QLatin1String(kind.label), pointOf(key), kind.pen});
    }
    return marks;
}

Outlines outlines(const CommandContext &context, Tolvane::Mounting mounting)
{
    Outlines result;
    result.name = context.name();
    const QString defaultName = QStringLiteral("default");
    if (LoudspeakerDescriptor *loudspeaker = Descriptors::findLoudspeaker(result.name)) {
        result.view3d = loudspeaker->Get3dView(mounting);
        result.top = loudspeaker->GetTopView();
        result.side = loudspeaker->GetSideView(mounting);
        result.marks = definedMarks(loudspeaker, mounting, [&](const QString &key) {
            return key == QLatin1String("mountingPoint")     ? loudspeaker->GetMountingPoint(mounting, defaultName)
                   : key == QLatin1String("connectionPoint") ? loudspeaker->GetConnectionPoint(mounting, defaultName)
                                                              : loudspeaker->GetCenterOfGravity(mounting);
        });
        for (SourcePointDescriptor *sourcePoint : loudspeaker->GetSourcePointDescriptors())
            result.marks.append({QStringLiteral("source point \"%1\"").arg(sourcePoint->GetName()), sourcePoint->GetOrigin(mounting), pointKind(QStringLiteral("sourcePoint")).pen});
    } else if (RiggingHardwareDescriptor *item = Descriptors::findRigging(result.name)) {
        const QMap<QString, QList<Point>> views = Descriptors::riggingViews(item);
        QString key3d, keySide, keyTop;
        RiggingHardwareDescriptor::ExtractViewKeys(views, key3d, keySide, keyTop);
        result.view3d = views.value(key3d);
        result.top = views.value(keyTop);
        result.side = views.value(keySide);
        const QMap<Tolvane::MechanicalConnectionPoint, Point> corners = item->GetMechanicalConnectionPoints(mounting, defaultName);
        result.marks = definedMarks(item, mounting, [&](const QString &key) {
            if (key == QLatin1String("mountingPoint"))
                return item->GetMountingPoint(mounting, defaultName);
            if (key == QLatin1String("connectionPoint"))
                return item->GetConnectionPoint(mounting, defaultName);
            if (key == QLatin1String("centerOfGravity"))
                return item->GetCenterOfGravity();
            return corners.value(static_cast<Tolvane::MechanicalConnectionPoint>(pointKind(key).corner));
        });
    } else {
        dataError(QStringLiteral("no loudspeaker or rigging item named \"%1\" (see lpsdk list)").arg(result.name));
    }
    return result;
}

double coordinate(const Point &p, int axis)
{
    return axis == 0 ? p.x() : axis == 1 ? p.y() : p.z();
}

// One view drawn to scale: `across` and `up` name the point coordinates on the page.
void drawView(PlotCanvas &canvas, const QRectF &box, const QList<Point> &points, const QList<Mark> &marks, int across, int up, double metresPerPixel,
              const QPointF &centre, const QString &caption)
{
    const char *names = "xyz";
    const PlotCanvas::Axis x{centre.x() - box.width() / 2 * metresPerPixel, centre.x() + box.width() / 2 * metresPerPixel, false,
                             QStringLiteral("%1 (m)").arg(QLatin1Char(names[across])), PlotCanvas::niceStep(box.width() * metresPerPixel, 8)};
    const PlotCanvas::Axis y{centre.y() - box.height() / 2 * metresPerPixel, centre.y() + box.height() / 2 * metresPerPixel, false,
                             QStringLiteral("%1 (m)").arg(QLatin1Char(names[up])), PlotCanvas::niceStep(box.width() * metresPerPixel, 8)};
    canvas.drawAxes(box, x, y);
    QPainter &p = canvas.painter();
    p.save();
    p.setClipRect(box);
    QPolygonF outline;
    for (const Point &point : points)
        outline.append(PlotCanvas::map(box, x, y, coordinate(point, across), coordinate(point, up)));
    p.setPen(QPen(QColor(40, 40, 40), 2));
    p.setBrush(QColor(180, 200, 230, 120));
    p.drawPolygon(outline);
    for (int m = 0; m < marks.size(); ++m) {
        const QPointF at = PlotCanvas::map(box, x, y, coordinate(marks.at(m).point, across), coordinate(marks.at(m).point, up));
        p.setPen(PlotCanvas::pen(marks.at(m).pen, 2.5));
        p.setBrush(Qt::NoBrush);
        p.drawEllipse(at, 7.0, 7.0);
        p.drawLine(at - QPointF(4, 0), at + QPointF(4, 0));
        p.drawLine(at - QPointF(0, 4), at + QPointF(0, 4));
    }
    p.restore();
    p.drawText(QRectF(box.left(), box.bottom() + 44, box.width(), 22), Qt::AlignCenter, caption);
}

// The page coordinates of a view: the two axes along which its points spread most.
std::pair<int, int> viewAxes(const QList<Point> &points, std::pair<int, int> fallback)
{
    double extent[3] = {};
    for (int axis = 0; axis < 3; ++axis) {
        double low = 1e300, high = -1e300;
        for (const Point &p : points) {
            low = std::min(low, coordinate(p, axis));
            high = std::max(high, coordinate(p, axis));
        }
        extent[axis] = points.isEmpty() ? 0.0 : high - low;
    }
    for (int flat = 0; flat < 3; ++flat) {
        if (extent[flat] < 1e-9 && extent[(flat + 1) % 3] > 0 && extent[(flat + 2) % 3] > 0)
            return flat == 2 ? std::pair{0, 1} : flat == 1 ? std::pair{0, 2} : std::pair{1, 2};
    }
    return fallback;
}

// Points at one place share one mark, named by the first with a count of the others.
QList<Mark> mergedMarks(const QList<Mark> &marks)
{
    QList<Mark> merged;
    QList<int> others;
    for (const Mark &mark : marks) {
        const Point &point = mark.point;
        const auto same = std::find_if(merged.begin(), merged.end(), [&point](const Mark &m) {
            return std::abs(m.point.x() - point.x()) < 1e-6 && std::abs(m.point.y() - point.y()) < 1e-6 && std::abs(m.point.z() - point.z()) < 1e-6;
        });
        if (same == merged.end()) {
            merged.append(mark);
            others.append(0);
        } else {
            ++others[same - merged.begin()];
        }
    }
    for (int i = 0; i < merged.size(); ++i) {
        if (others.at(i) > 0)
            merged[i].name += QStringLiteral(" (and %1 more point%2 there)").arg(others.at(i)).arg(others.at(i) > 1 ? QStringLiteral("s") : QString());
    }
    return merged;
}

void plot(const QString &file, const Outlines &original, Tolvane::Mounting mounting)
{
    Outlines shape = original;
    shape.marks = mergedMarks(original.marks);
    PlotCanvas canvas(file, QSize(1400, 880), QStringLiteral("%1 (%2): top and side views to scale").arg(shape.name, Arguments::mountingText(mounting)));
    const QRectF topBox(110, 90, 560, 560);
    const QRectF sideBox(800, 90, 560, 560);
    const auto [topAcross, topUp] = viewAxes(shape.top, {1, 0});
    const auto [sideAcross, sideUp] = viewAxes(shape.side, {0, 2});
    // One scale for both views, so they compare; 20 % margin round the larger outline.
    double span = 0.1;
    QPointF topCentre, sideCentre;
    for (const auto &[points, across, up, centre] :
         {std::tuple{&shape.top, topAcross, topUp, &topCentre}, std::tuple{&shape.side, sideAcross, sideUp, &sideCentre}}) {
        QList<Point> all = *points;
        for (const auto &mark : shape.marks)
            all.append(mark.point);
        double lowA = 1e300, highA = -1e300, lowU = 1e300, highU = -1e300;
        for (const Point &p : all) {
            lowA = std::min(lowA, coordinate(p, across));
            highA = std::max(highA, coordinate(p, across));
            lowU = std::min(lowU, coordinate(p, up));
            highU = std::max(highU, coordinate(p, up));
        }
        span = std::max({span, highA - lowA, highU - lowU});
        *centre = QPointF((lowA + highA) / 2, (lowU + highU) / 2);
    }
    const double metresPerPixel = span * 1.2 / topBox.width();
    drawView(canvas, topBox, shape.top, shape.marks, topAcross, topUp, metresPerPixel, topCentre, QStringLiteral("top view"));
    drawView(canvas, sideBox, shape.side, shape.marks, sideAcross, sideUp, metresPerPixel, sideCentre, QStringLiteral("side view"));
    QList<PlotCanvas::LegendEntry> legend{{QColor(40, 40, 40), QStringLiteral("outline")}};
    for (int m = 0; m < shape.marks.size(); ++m)
        legend.append({PlotCanvas::pen(shape.marks.at(m).pen, 3), shape.marks.at(m).name});
    canvas.drawLegend(QPointF(1360, 730), legend, legend.size() > 4 ? 2 : 1);
    canvas.save();
}

// Quads to a Wavefront OBJ: shared corners become one vertex, faces wind counter-clockwise
// seen from outside (the divergence theorem's sign tells which way the outline runs).
void writeObj(const QString &file, const Outlines &shape)
{
    if (shape.view3d.isEmpty() || shape.view3d.size() % 4 != 0)
        dataError(QStringLiteral("%1 has no 3-D outline of four-cornered faces (%2 points)").arg(shape.name).arg(shape.view3d.size()));
    double volume = 0.0;
    for (qsizetype f = 0; f < shape.view3d.size(); f += 4) {
        const Point &a = shape.view3d.at(f);
        for (int i = 1; i < 3; ++i) {
            const Point &b = shape.view3d.at(f + i);
            const Point &c = shape.view3d.at(f + i + 1);
            volume += a.x() * (b.y() * c.z() - b.z() * c.y()) - a.y() * (b.x() * c.z() - b.z() * c.x()) + a.z() * (b.x() * c.y() - b.y() * c.x());
        }
    }
    QSaveFile obj(file);
    if (!obj.open(QIODevice::WriteOnly | QIODevice::Text))
        dataError(QStringLiteral("cannot write \"%1\"").arg(file));
    QByteArray text = QStringLiteral("# %1, 3-D outline in metres\no %2\n").arg(shape.name, QString(shape.name).replace(QLatin1Char(' '), QLatin1Char('_'))).toUtf8();
    QHash<QString, int> indices;
    QByteArray faces;
    for (qsizetype f = 0; f < shape.view3d.size(); f += 4) {
        QList<int> face;
        for (int i = 0; i < 4; ++i) {
            const Point &p = shape.view3d.at(f + i);
            const QString key = QStringLiteral("%1 %2 %3").arg(p.x(), 0, 'g', 12).arg(p.y(), 0, 'g', 12).arg(p.z(), 0, 'g', 12);
            auto it = indices.find(key);
            if (it == indices.end()) {
                it = indices.insert(key, int(indices.size()) + 1);
                text += "v " + key.toUtf8() + '\n';
            }
            face.append(it.value());
        }
        if (volume < 0)
            std::reverse(face.begin(), face.end());
        faces += QStringLiteral("f %1 %2 %3 %4\n").arg(face[0]).arg(face[1]).arg(face[2]).arg(face[3]).toUtf8();
    }
    obj.write(text + faces);
    if (!obj.commit())
        dataError(QStringLiteral("cannot write \"%1\"").arg(file));
}

} // namespace

int runShape(const CommandContext &context)
{
    const QCommandLineParser &parser = context.parser;
    const Tolvane::Mounting mounting = Arguments::mounting(parser);
    const QString plotFile = parser.isSet(QStringLiteral("plot")) ? Arguments::pictureFile(parser.value(QStringLiteral("plot")), QStringLiteral("--plot")) : QString();
    context.name();
    context.plugins();
    const Outlines shape = outlines(context, mounting);
    Output &out = context.output;
    out.field(QStringLiteral("name"), QString(), shape.name);
    out.field(QStringLiteral("mounting"), QStringLiteral("mounting"), Arguments::mountingText(mounting));
    Descriptors::outlineField(out, QStringLiteral("view_3d"), QStringLiteral("3D outline"), shape.view3d);
    Descriptors::outlineField(out, QStringLiteral("top_view"), QStringLiteral("top outline"), shape.top);
    Descriptors::outlineField(out, QStringLiteral("side_view"), QStringLiteral("side outline"), shape.side);
    out.beginList(QStringLiteral("points"), QStringLiteral("points:"));
    for (const Mark &mark : shape.marks) {
        out.beginObject(QString());
        Descriptors::pointField(out, QStringLiteral("position"), mark.name, mark.point);
        out.field(QStringLiteral("name"), QString(), mark.name);
        out.endObject();
    }
    out.endList();
    if (!plotFile.isEmpty()) {
        plot(plotFile, shape, mounting);
        out.field(QStringLiteral("plot"), QStringLiteral("plot"), plotFile);
    }
    if (parser.isSet(QStringLiteral("obj"))) {
        writeObj(parser.value(QStringLiteral("obj")), shape);
        out.field(QStringLiteral("obj"), QStringLiteral("OBJ file"), parser.value(QStringLiteral("obj")));
    }
    return 0;
}
