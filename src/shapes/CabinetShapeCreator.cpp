// SPDX-License-Identifier: MIT
#include "CabinetShapeCreator.h"

#include "CabinetShapeArcArray_p.h"
#include "CabinetShapeBasic_p.h"
#include "CabinetShapeCuboidChamfered_p.h"
#include "CabinetShapeCuboidTrapped_p.h"
#include "CabinetShapeLineArray_p.h"
#include "CabinetShapeMonitor_p.h"

#include <QDebug>

#include <algorithm>
#include <cmath>

namespace {
constexpr double Pi = 3.14159265358979323846;
constexpr double MillimetresPerMetre = 1000.0;

double readLength(const QMap<QString, QVariant> &parameters, const char *key)
{
    return parameters.value(QLatin1String(key)).toDouble() / MillimetresPerMetre;
}

double readNumber(const QMap<QString, QVariant> &parameters, const char *key)
{
    return parameters.value(QLatin1String(key)).toDouble();
}

// A copy of `point` renamed; the box corners are all made from a few top corners.
Point named(Point point, const char *name)
{
    point.SetName(QLatin1String(name));
    return point;
}

// The bottom corner below a top corner: mirrored in Z, then moved down by `dz`.
Point below(const Point &top, double dz, const char *name)
{
    return named(Point(top).mirrorZ().translateZ(dz), name);
}

QList<Point> projectedXY(const QList<Point> &points)
{
    QList<Point> projected;
    projected.reserve(points.size());
    for (const Point &point : points)
        projected.append(point.projectionXY());
    return projected;
}

QList<Point> projectedXZ(const QList<Point> &points)
{
    QList<Point> projected;
    projected.reserve(points.size());
    for (const Point &point : points)
        projected.append(point.projectionXZ());
    return projected;
}

QMap<QString, QList<Point>> views(const QList<Point> &mesh, const QList<Point> &top, const QList<Point> &side)
{
    return {{QStringLiteral("3D"), mesh}, {QStringLiteral("top"), projectedXY(top)}, {QStringLiteral("side"), projectedXZ(side)}};
}
} // namespace

QMap<QString, QList<Point>> CabinetShapeCreator::CreateCabinetShapeData(const QMap<QString, QVariant> &parameters, const QString &cabinetShape)
{
    if (cabinetShape == QLatin1String("Arbitrary"))
        return CreateShapeArbitrary(parameters);

    const CabinetShapeBasic basic = CalculateShapeDataBasic(parameters);
    if (cabinetShape == QLatin1String("Trapezoidal") || cabinetShape == QLatin1String("Cuboid"))
        return CreateShapeCuboidOrTrapezoidal(basic);
    if (cabinetShape == QLatin1String("Trapezoidal lying"))
        return CreateShapeTrapezoidalLying(basic);
    if (cabinetShape == QLatin1String("LineArray"))
        return CreateShapeLineArray(CalculateShapeDataLineArray(parameters, basic));
    if (cabinetShape == QLatin1String("LineArray standing"))
        return CreateShapeLineArrayStanding(CalculateShapeDataLineArray(parameters, basic));
    if (cabinetShape == QLatin1String("Cuboid trapped"))
        return CreateShapeCuboidTrapped(CalculateShapeDataCuboidTrapped(parameters, basic));
    if (cabinetShape == QLatin1String("Cuboid chamfered"))
        return CreateShapeCuboidChamfered(CalculateShapeDataCuboidChamfered(parameters, basic));
    if (cabinetShape == QLatin1String("Monitor"))
        return CreateShapeMonitor(CalculateShapeDataMonitor(parameters, basic));
    if (cabinetShape == QLatin1String("ArcArray"))
        return CreateShapeArcArray(CalculateShapeDataArcArray(parameters, basic));
    if (cabinetShape == QLatin1String("ArcArray standing"))
        return CreateShapeArcArrayStanding(CalculateShapeDataArcArray(parameters, basic));

    qWarning("Unknown cabinetShape!");
    return {};
}

CabinetShapeBasic CabinetShapeCreator::CalculateShapeDataBasic(const QMap<QString, QVariant> &parameters)
{
    CabinetShapeBasic basic;
    basic.width = readLength(parameters, "width");
    basic.height = readLength(parameters, "height");
    basic.depth = readLength(parameters, "depth");
    basic.trapAngle = readNumber(parameters, "trapAngle");
    // trapAngle spans both walls, so each wall turns by half of it.
    basic.trapInset = basic.depth * std::tan((basic.trapAngle * 0.5 / 180.0) * Pi);
    return basic;
}

CabinetShapeArcArray CabinetShapeCreator::CalculateShapeDataArcArray(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic)
{
    CabinetShapeArcArray shape;
    static_cast<CabinetShapeBasic &>(shape) = basic;
    shape.depthPocket = readLength(parameters, "depthPocket");
    shape.widthPocket = readLength(parameters, "widthPocket");
    shape.anglePocket = readNumber(parameters, "anglePocket");
    shape.widthPocketInner = shape.widthPocket - 2.0 * std::tan(((shape.anglePocket - 90.0) / 180.0) * Pi) * shape.depthPocket;
    shape.trapInsetPocket = std::tan((basic.trapAngle * 0.5 / 180.0) * Pi) * (basic.depth - shape.depthPocket);
    shape.grillArcSections = parameters.value(QStringLiteral("grillArcSections")).toInt();
    shape.grillFrontOffset = readLength(parameters, "grillFrontOffset");
    return shape;
}

CabinetShapeLineArray CabinetShapeCreator::CalculateShapeDataLineArray(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic)
{
    CabinetShapeLineArray shape;
    static_cast<CabinetShapeBasic &>(shape) = basic;
    shape.depthPocket = readLength(parameters, "depthPocket");
    shape.widthPocket = readLength(parameters, "widthPocket");
    shape.anglePocket = readNumber(parameters, "anglePocket");
    shape.widthPocketInner = shape.widthPocket - 2.0 * std::tan(((shape.anglePocket - 90.0) / 180.0) * Pi) * shape.depthPocket;
    shape.depthRigging = readLength(parameters, "depthRigging");
    shape.depthTransition = readLength(parameters, "depthTransition");
    shape.widthReduction = readLength(parameters, "widthReduction");
    const double halfAngleTan = std::tan((basic.trapAngle * 0.5 / 180.0) * Pi);
    shape.trapInsetRigging = halfAngleTan * shape.depthRigging;
    shape.trapInsetTransition = halfAngleTan * (shape.depthRigging + shape.depthTransition);
    shape.trapInsetPocket = halfAngleTan * (basic.depth - shape.depthPocket);
    return shape;
}

CabinetShapeCuboidTrapped CabinetShapeCreator::CalculateShapeDataCuboidTrapped(const QMap<QString, QVariant> &parameters,
                                                                               const CabinetShapeBasic &basic)
{
    CabinetShapeCuboidTrapped shape;
    static_cast<CabinetShapeBasic &>(shape) = basic;
    shape.trapAngleLeft = readNumber(parameters, "trapAngleLeft");
    shape.trapAngleRight = readNumber(parameters, "trapAngleRight");
    shape.depthToTrapLeft = readLength(parameters, "depthToTrapLeft");
    shape.depthToTrapRight = readLength(parameters, "depthToTrapRight");
    // Each bevel angle belongs to one side only, so it is not halved.
    shape.trapRightX = basic.width * 0.5 - std::tan((shape.trapAngleRight / 180.0) * Pi) * (basic.depth - shape.depthToTrapRight);
    shape.trapLeftX = std::tan((shape.trapAngleLeft / 180.0) * Pi) * (basic.depth - shape.depthToTrapLeft) - basic.width * 0.5;
    return shape;
}

CabinetShapeCuboidChamfered CabinetShapeCreator::CalculateShapeDataCuboidChamfered(const QMap<QString, QVariant> &parameters,
                                                                                   const CabinetShapeBasic &basic)
{
    CabinetShapeCuboidChamfered shape;
    static_cast<CabinetShapeBasic &>(shape) = basic;
    shape.chamferDepth = readLength(parameters, "chamferDepth");
    shape.chamferHeight = readLength(parameters, "chamferHeight");
    return shape;
}

CabinetShapeMonitor CabinetShapeCreator::CalculateShapeDataMonitor(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic)
{
    CabinetShapeMonitor shape;
    static_cast<CabinetShapeBasic &>(shape) = basic;
    shape.grillArcSections = parameters.value(QStringLiteral("grillArcSections")).toInt();
    shape.grillRadius = readLength(parameters, "grillRadius");
    shape.grillStartAngle = readNumber(parameters, "grillStartAngle");
    shape.grillEndAngle = readNumber(parameters, "grillEndAngle");
    return shape;
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeArbitrary(const QMap<QString, QVariant> &parameters)
{
    // The file draws the outlines itself; they are taken as they stand.
    const QVariantMap fileViews = parameters.value(QStringLiteral("views")).toMap();
    QMap<QString, QList<Point>> result;
    for (auto it = fileViews.cbegin(); it != fileViews.cend(); ++it)
        result.insert(it.key(), Point::fromVariantList(it.value().toList()));
    return result;
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeCuboidOrTrapezoidal(const CabinetShapeBasic &shape)
{
    const double h = shape.height;
    const Point p1(0.0, shape.width * 0.5, 0.0, QStringLiteral("P1"));
    const Point p2(-shape.depth, shape.width * 0.5 - shape.trapInset, 0.0, QStringLiteral("P2"));
    const Point p3 = named(Point(p2).mirrorY(), "P3");
    const Point p4 = named(Point(p1).mirrorY(), "P4");
    const Point p5 = below(p1, -h, "P5");
    const Point p6 = below(p2, -h, "P6");
    const Point p7 = below(p3, -h, "P7");
    const Point p8 = below(p4, -h, "P8");

    // Right wall, rear, left wall, front, top, bottom.
    const QList<Point> mesh{p1, p2, p6, p5, p2, p3, p7, p6, p3, p4, p8, p7, p4, p1, p5, p8, p3, p2, p1, p4, p8, p5, p6, p7};
    return views(mesh, {p1, p2, p3, p4}, {p1, p2, p6, p5});
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeTrapezoidalLying(const CabinetShapeBasic &shape)
{
    // The taper is vertical: the rear top edge drops by the inset and, mirrored, the rear
    // bottom edge rises by it.
    const double h = shape.height;
    const Point p1(0.0, shape.width * 0.5, 0.0, QStringLiteral("P1"));
    const Point p2(-shape.depth, shape.width * 0.5, -shape.trapInset, QStringLiteral("P2"));
    const Point p3 = named(Point(p2).mirrorY(), "P3");
    const Point p4 = named(Point(p1).mirrorY(), "P4");
    const Point p5 = below(p1, -h, "P5");
    const Point p6 = below(p2, -h, "P6");
    const Point p7 = below(p3, -h, "P7");
    const Point p8 = below(p4, -h, "P8");

    const QList<Point> mesh{p1, p2, p6, p5, p2, p3, p7, p6, p3, p4, p8, p7, p4, p1, p5, p8, p3, p2, p1, p4, p8, p5, p6, p7};
    return views(mesh, {p1, p2, p3, p4}, {p1, p2, p6, p5});
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeCuboidTrapped(const CabinetShapeCuboidTrapped &shape)
{
    const double h = shape.height;
    const double w2 = shape.width * 0.5;
    const Point p1(0.0, w2, 0.0, QStringLiteral("P1"));
    const Point p2(-shape.depthToTrapRight, w2, 0.0, QStringLiteral("P2"));
    const Point p3(-shape.depth, shape.trapRightX, 0.0, QStringLiteral("P3"));
    const Point p4(-shape.depth, shape.trapLeftX, 0.0, QStringLiteral("P4"));
    const Point p5(-shape.depthToTrapLeft, -w2, 0.0, QStringLiteral("P5"));
    const Point p6 = named(Point(p1).mirrorY(), "P6");
    const Point p7 = below(p1, -h, "P7");
    const Point p8 = below(p2, -h, "P8");
    const Point p9 = below(p3, -h, "P9");
    const Point p10 = below(p4, -h, "P10");
    const Point p11 = below(p5, -h, "P11");
    const Point p12 = below(p6, -h, "P12");

    // Right wall, right bevel, rear, left bevel, left wall, front, top (front and rear part),
    // bottom (two parts).
    const QList<Point> mesh{p1, p2, p8, p7,  p2, p3, p9,  p8,  p3, p4, p10, p9,  p4,  p5,  p11, p10, p5, p6,  p12, p11,
                            p6, p1, p7, p12, p5, p2, p1,  p6,  p4, p3, p2,  p5,  p8,  p11, p12, p7,  p9, p10, p11, p8};
    return views(mesh, {p5, p2, p1, p6, p4, p3, p2, p5}, {p1, p3, p9, p7});
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeCuboidChamfered(const CabinetShapeCuboidChamfered &shape)
{
    const double h = shape.height;
    const double cd = shape.chamferDepth;
    const Point p1(0.0, shape.width * 0.5, 0.0, QStringLiteral("P1"));
    const Point p2(-shape.depth, shape.width * 0.5 - shape.trapInset, 0.0, QStringLiteral("P2"));
    const Point p12 = named(Point(p2).translateX(cd), "P12");
    const Point p3 = named(Point(p2).mirrorY(), "P3");
    const Point p4 = named(Point(p1).mirrorY(), "P4");
    const Point p34 = named(Point(p3).translateX(cd), "P34");
    const Point p5 = below(p1, -h, "P5");
    const Point p6 = named(Point(p2).mirrorZ().translateZ(-h).translateX(cd), "P6");
    const Point p26 = below(p2, shape.chamferHeight - h, "P26");
    const Point p7 = named(Point(p3).mirrorZ().translateZ(-h).translateX(cd), "P7");
    const Point p37 = below(p3, shape.chamferHeight - h, "P37");
    const Point p8 = below(p4, -h, "P8");

    // Right wall (front part, rear part down to the chamfer), chamfer, rear above it, left
    // wall (two parts), top, front, bottom.
    const QList<Point> mesh{p1,  p5, p6,  p12, p12, p2, p26, p6, p6, p7, p37, p26, p26, p2, p3, p37, p37, p7,
                            p34, p3, p34, p7,  p8,  p4, p4,  p3, p2, p1, p4,  p8,  p5,  p1, p5, p6,  p7,  p8};
    return views(mesh, {p1, p2, p3, p4}, {p1, p2, p26, p6, p5});
}

QList<double> CabinetShapeCreator::DivideTrapAngleByAngleStep(double angleStep, double totalAngle)
{
    QList<double> angles;
    // A step that is not positive would never leave the loop.
    if (!(angleStep > 0.0))
        return angles;
    for (double a = angleStep * 0.5; a <= totalAngle * 0.5; a += angleStep)
        angles.append((a / 180.0) * Pi);
    return angles;
}

QList<double> CabinetShapeCreator::CalculateXValues(const QList<double> &angles)
{
    QList<double> values;
    values.reserve(angles.size());
    for (double a : angles)
        values.append(std::cos(a));
    return values;
}

QList<double> CabinetShapeCreator::CalculateZValues(const QList<double> &angles)
{
    QList<double> values;
    values.reserve(angles.size());
    for (double a : angles)
        values.append(std::sin(a));
    return values;
}

QList<double> CabinetShapeCreator::NormalizeXValues(QList<double> values, double extent)
{
    if (values.isEmpty())
        return values;
    const double minimum = *std::min_element(values.cbegin(), values.cend());
    for (double &v : values)
        v -= minimum;
    const double maximum = *std::max_element(values.cbegin(), values.cend());
    for (double &v : values)
        v = v / maximum * extent;
    return values;
}

QList<double> CabinetShapeCreator::NormalizeZValues(QList<double> values, double extent)
{
    if (values.isEmpty())
        return values;
    const double maximum = *std::max_element(values.cbegin(), values.cend());
    for (double &v : values)
        v = v / maximum * extent;
    return values;
}

QList<Point> CabinetShapeCreator::CalculateArcCoordinates(double sections, double radius, double startAngle, double endAngle)
{
    QList<Point> points;
    if (!(sections > 0.0 && radius > 0.0 && startAngle >= 0.0 && startAngle < 360.0 && startAngle < endAngle && endAngle <= 360.0))
        return points;
    // The arc stops one step short of endAngle; callers close it themselves.
    for (int i = 0; i < sections; ++i) {
        const double theta = ((i * (endAngle - startAngle) / sections) + startAngle) * Pi / 180.0;
        points.append(Point(radius * std::cos(theta), 0.0, radius * std::sin(theta)));
    }
    return points;
}

QList<Point> CabinetShapeCreator::CalculateBentGrillPointCoordinates(double sections, double xExtent, double zExtent, double totalAngle)
{
    const double step = totalAngle / (sections + 1.0);
    const QList<double> angles = DivideTrapAngleByAngleStep(step, totalAngle);
    const QList<double> x = NormalizeXValues(CalculateXValues(angles), xExtent);
    const QList<double> z = NormalizeZValues(CalculateZValues(angles), zExtent);
    return Point::FromCoordinateVectors(x, {}, z);
}

// Temporary: the array and monitor outlines land in the next change.
QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeLineArray(const CabinetShapeLineArray &) { return {}; }
QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeLineArrayStanding(const CabinetShapeLineArray &) { return {}; }
QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeArcArray(const CabinetShapeArcArray &) { return {}; }
QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeArcArrayStanding(const CabinetShapeArcArray &) { return {}; }
QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeMonitor(const CabinetShapeMonitor &) { return {}; }
