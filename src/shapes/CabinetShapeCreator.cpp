// SPDX-License-Identifier: MIT
#include "CabinetShapeCreator.h"

#include "CabinetShapeArcArray_p.h"
#include "CabinetShapeBasic_p.h"
#include "CabinetShapeCuboidChamfered_p.h"
#include "CabinetShapeCuboidTrapped_p.h"
#include "CabinetShapeLineArray_p.h"
#include "CabinetShapeMonitor_p.h"
#include "Units.h"

#include <QDebug>
#include <QPointF>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace {
constexpr double Pi = 3.14159265358979323846;
using Units::MillimetresPerMetre;

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

/// The basic fields and the rigging pocket that line and arc arrays share.
template<typename ArrayShape>
void readArrayPocket(ArrayShape &shape, const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic)
{
    static_cast<CabinetShapeBasic &>(shape) = basic;
    shape.depthPocket = readLength(parameters, "depthPocket");
    shape.widthPocket = readLength(parameters, "widthPocket");
    shape.anglePocket = readNumber(parameters, "anglePocket");
    shape.widthPocketInner = shape.widthPocket - 2.0 * std::tan(((shape.anglePocket - 90.0) / 180.0) * Pi) * shape.depthPocket;
    shape.trapInsetPocket = std::tan((basic.trapAngle * 0.5 / 180.0) * Pi) * (basic.depth - shape.depthPocket);
}

/// The eight-corner box of the plain and tapered cabinets, from its front half width and its
/// right rear top corner P2; the left corners mirror the right, the bottom ones the top.
QMap<QString, QList<Point>> eightCornerBox(double halfWidth, const Point &rearTopRight, double height)
{
    const Point p1(0.0, halfWidth, 0.0, QStringLiteral("P1"));
    const Point p2 = named(rearTopRight, "P2");
    const Point p3 = named(Point(p2).mirrorY(), "P3");
    const Point p4 = named(Point(p1).mirrorY(), "P4");
    const Point p5 = below(p1, -height, "P5");
    const Point p6 = below(p2, -height, "P6");
    const Point p7 = below(p3, -height, "P7");
    const Point p8 = below(p4, -height, "P8");

    // Right wall, rear, left wall, front, top, bottom.
    const QList<Point> mesh{p1, p2, p6, p5, p2, p3, p7, p6, p3, p4, p8, p7, p4, p1, p5, p8, p3, p2, p1, p4, p8, p5, p6, p7};
    return views(mesh, {p1, p2, p3, p4}, {p1, p2, p6, p5});
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
    readArrayPocket(shape, parameters, basic);
    shape.grillArcSections = parameters.value(QStringLiteral("grillArcSections")).toInt();
    shape.grillFrontOffset = readLength(parameters, "grillFrontOffset");
    return shape;
}

CabinetShapeLineArray CabinetShapeCreator::CalculateShapeDataLineArray(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic)
{
    CabinetShapeLineArray shape;
    readArrayPocket(shape, parameters, basic);
    shape.depthRigging = readLength(parameters, "depthRigging");
    shape.depthTransition = readLength(parameters, "depthTransition");
    shape.widthReduction = readLength(parameters, "widthReduction");
    const double halfAngleTan = std::tan((basic.trapAngle * 0.5 / 180.0) * Pi);
    shape.trapInsetRigging = halfAngleTan * shape.depthRigging;
    shape.trapInsetTransition = halfAngleTan * (shape.depthRigging + shape.depthTransition);
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
    return eightCornerBox(shape.width * 0.5, Point(-shape.depth, shape.width * 0.5 - shape.trapInset, 0.0), shape.height);
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeTrapezoidalLying(const CabinetShapeBasic &shape)
{
    // The taper is vertical: the rear top edge drops by the inset and, mirrored, the rear
    // bottom edge rises by it.
    return eightCornerBox(shape.width * 0.5, Point(-shape.depth, shape.width * 0.5, -shape.trapInset), shape.height);
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


// The array and monitor cabinets are prisms over a profile: a closed outline in a plane that
// holds X (x forwards) and one across coordinate u, repeated on two parallel or mirrored ends
// and joined by one wall quad per outline edge. The end faces are tiled by quads chosen per
// shape so that every edge is shared by exactly two faces.
namespace {
struct ProfileCorner {
    double x = 0.0;
    double u = 0.0;
    QString nameA; ///< name of the corner on end A
    QString nameB; ///< name of the corner on end B
};

using Quad = std::array<int, 4>;
using EndMapping = std::function<Point(double x, double u)>;

struct Prism {
    QList<QList<Point>> walls; ///< one per outline edge i -> i + 1, in outline order
    QList<QList<Point>> endA;
    QList<QList<Point>> endB;

    QList<Point> mesh() const
    {
        QList<Point> all;
        for (const auto *faces : {&walls, &endA, &endB}) {
            for (const QList<Point> &face : *faces)
                all += face;
        }
        return all;
    }
};

double signedArea(const QList<ProfileCorner> &profile, const QList<int> &indices)
{
    double area = 0.0;
    for (qsizetype i = 0; i < indices.size(); ++i) {
        const ProfileCorner &a = profile.at(indices.at(i));
        const ProfileCorner &b = profile.at(indices.at((i + 1) % indices.size()));
        area += a.x * b.u - b.x * a.u;
    }
    return area * 0.5;
}

double signedVolume(const QList<Point> &mesh)
{
    double volume = 0.0;
    for (qsizetype f = 0; f + 3 < mesh.size(); f += 4) {
        const Point &a = mesh.at(f);
        for (int i = 1; i < 3; ++i) {
            const Point &b = mesh.at(f + i);
            const Point &c = mesh.at(f + i + 1);
            volume += a.x() * (b.y() * c.z() - b.z() * c.y()) - a.y() * (b.x() * c.z() - b.z() * c.x()) + a.z() * (b.x() * c.y() - b.y() * c.x());
        }
    }
    return volume / 6.0;
}

Prism buildPrism(const QList<ProfileCorner> &profile, QList<Quad> endQuads, const EndMapping &mapA, const EndMapping &mapB)
{
    const auto onA = [&](int i) {
        Point p = mapA(profile.at(i).x, profile.at(i).u);
        p.SetName(profile.at(i).nameA);
        return p;
    };
    const auto onB = [&](int i) {
        Point p = mapB(profile.at(i).x, profile.at(i).u);
        p.SetName(profile.at(i).nameB);
        return p;
    };

    QList<int> outline;
    for (int i = 0; i < profile.size(); ++i)
        outline.append(i);
    const double outlineArea = signedArea(profile, outline);

    Prism prism;
    for (int i = 0; i < profile.size(); ++i) {
        const int next = (i + 1) % int(profile.size());
        prism.walls.append({onA(i), onA(next), onB(next), onB(i)});
    }
    for (Quad &quad : endQuads) {
        // Run every end quad the way the outline runs, so that it meets the walls edge to edge.
        if (signedArea(profile, {quad[0], quad[1], quad[2], quad[3]}) * outlineArea < 0.0)
            std::swap(quad[1], quad[3]);
        prism.endB.append({onB(quad[0]), onB(quad[1]), onB(quad[2]), onB(quad[3])});
        prism.endA.append({onA(quad[0]), onA(quad[3]), onA(quad[2]), onA(quad[1])});
    }

    // Wind like the box shapes: corners clockwise seen from outside, a negative signed volume.
    if (signedVolume(prism.mesh()) > 0.0) {
        for (auto *faces : {&prism.walls, &prism.endA, &prism.endB}) {
            for (QList<Point> &face : *faces)
                std::swap(face[1], face[3]);
        }
    }
    return prism;
}

QList<Point> flattened(const QList<QList<Point>> &faces)
{
    QList<Point> all;
    for (const QList<Point> &face : faces)
        all += face;
    return all;
}

QString cornerName(int number)
{
    return QStringLiteral("P%1").arg(number);
}

/// Profile names P1…P12 on end A and P13…P24 on end B, in outline order.
ProfileCorner arrayCorner(double x, double u, int number)
{
    return {x, u, cornerName(number), cornerName(number + 12)};
}

/// Mirrors the upper half of an outline (corners 1…count) into the lower half, in outline order.
void appendLowerHalf(QList<ProfileCorner> &profile, int count)
{
    for (int i = count - 1; i >= 0; --i) {
        const ProfileCorner &upper = profile.at(i);
        profile.append(arrayCorner(upper.x, -upper.u, 2 * count - i));
    }
}

// Lying arrays: the profile is the side view (u along Z about mid-height), the ends are the
// side walls at y = ±width / 2. Standing arrays: the profile is the top view (u along Y), the
// ends are the top (z = 0) and the bottom (z = -height).
EndMapping lyingEnd(const CabinetShapeBasic &shape, double sign)
{
    const double y = sign * shape.width * 0.5;
    const double middle = -shape.height * 0.5;
    return [y, middle](double x, double u) { return Point(x, y, middle + u); };
}

EndMapping standingEnd(double z)
{
    return [z](double x, double u) { return Point(x, u, z); };
}

/**
 * Line array outline, upper half (u >= 0), front to rear; the lower half mirrors it:
 *
 *   P1 ---------- P2                         u = across / 2
 *    |              \____ P3 ------------ P4  wall stepped in by widthReduction
 *    |                                     |
 *    |                       P6 ---------- P5 pocket cut into the rear
 *    |                        |
 *   x = 0           -depthRigging   -(depth - depthPocket)   -depth
 *
 * End tiles: two strips across the rigging section and the transition, the two pocket
 * cheeks (P3 P4 P5 P6 and its mirror) and the block in front of the pocket (P3 P6 P7 P10).
 */
QList<ProfileCorner> lineArrayProfile(const CabinetShapeLineArray &shape, double across)
{
    const double half = across * 0.5;
    QList<ProfileCorner> profile{
        arrayCorner(0.0, half, 1),
        arrayCorner(-shape.depthRigging, half - shape.trapInsetRigging, 2),
        arrayCorner(-(shape.depthRigging + shape.depthTransition), half - shape.trapInsetTransition - shape.widthReduction, 3),
        arrayCorner(-shape.depth, half - shape.trapInset - shape.widthReduction, 4),
        arrayCorner(-shape.depth, shape.widthPocket * 0.5, 5),
        arrayCorner(-(shape.depth - shape.depthPocket), shape.widthPocketInner * 0.5, 6),
    };
    appendLowerHalf(profile, 6);
    return profile;
}

const QList<Quad> LineArrayEndQuads{{0, 1, 10, 11}, {1, 2, 9, 10}, {2, 3, 4, 5}, {2, 5, 6, 9}, {9, 6, 7, 8}};

/**
 * Arc array outline: a grill bent over the splay angle bulges grillFrontOffset ahead of the
 * front edges P1/P10, its flat apex P12/P11 on x = 0; behind it the walls, kinked at the depth
 * of the pocket bottom, and a rigging pocket cut into the rear:
 *
 *        P1 ----------- P2 ------ P3       u = across / 2
 *      G /                         |
 *   P12 |                  P5 --- P4
 *   P11 |                  P6 --- P7
 *      G \                         |
 *        P10 ---------- P9 ------ P8
 *
 * The grill points between apex and edge (named G…) come from the bent grill helper with
 * grillArcSections (2 to 64) over the splay angle (1 to 90 degrees). End tiles: strips between
 * grill points down to the last grill point G before the edge, the quads G P1 P2 P5,
 * G P5 P6 G' and G' P6 P9 P10, and the pocket cheeks P2 P3 P4 P5 and P9 P6 P7 P8.
 */
struct ArcProfile {
    QList<ProfileCorner> profile;
    QList<Quad> endQuads;
};

// `grill` is one half of the bent grill, centre line outwards, at least two points.
ArcProfile arcArrayProfile(const CabinetShapeArcArray &shape, double across, const QList<Point> &grill)
{
    const double half = across * 0.5;
    const int n = int(grill.size());
    const auto gx = [&](int k) { return grill.at(k).x() - shape.grillFrontOffset; };
    const auto gu = [&](int k) { return grill.at(k).z(); };

    ArcProfile arc;
    QList<ProfileCorner> &profile = arc.profile;
    profile = {
        arrayCorner(gx(n - 1), gu(n - 1), 1),
        arrayCorner(-(shape.depth - shape.depthPocket), half - shape.trapInsetPocket, 2),
        arrayCorner(-shape.depth, half - shape.trapInset, 3),
        arrayCorner(-shape.depth, shape.widthPocket * 0.5, 4),
        arrayCorner(-(shape.depth - shape.depthPocket), shape.widthPocketInner * 0.5, 5),
    };
    appendLowerHalf(profile, 5);
    int grillName = 1;
    const int grillNamesPerEnd = 2 * (n - 2);
    const auto grillCorner = [&](int k, double sign) {
        const ProfileCorner corner{gx(k), sign * gu(k), QStringLiteral("G%1").arg(grillName),
                                   QStringLiteral("G%1").arg(grillName + grillNamesPerEnd)};
        ++grillName;
        return corner;
    };
    for (int k = n - 2; k >= 1; --k)
        profile.append(grillCorner(k, -1.0));
    profile.append(arrayCorner(gx(0), -gu(0), 11));
    profile.append(arrayCorner(gx(0), gu(0), 12));
    for (int k = 1; k <= n - 2; ++k)
        profile.append(grillCorner(k, 1.0));

    const auto upper = [n](int k) { return k == n - 1 ? 0 : n + 9 + k; };
    const auto lower = [n](int k) { return k == n - 1 ? 9 : (k == 0 ? n + 8 : 10 + (n - 2 - k)); };
    for (int k = 0; k + 2 < n; ++k)
        arc.endQuads.append({upper(k), upper(k + 1), lower(k + 1), lower(k)});
    const int g = n - 2;
    arc.endQuads.append({upper(g), 0, 1, 4});
    arc.endQuads.append({upper(g), 4, 5, lower(g)});
    arc.endQuads.append({lower(g), 5, 8, 9});
    arc.endQuads.append({1, 2, 3, 4});
    arc.endQuads.append({8, 5, 6, 7});
    return arc;
}
} // namespace

namespace {
/**
 * Monitor wedge, side profile (u along Z), its side walls tapering by trapInset towards the rear:
 *
 *   P3 ------------- P2                    z = 0
 *    |                 \  G   arc grill from the top down to the nose
 *    |                   \
 *    |                    P1               nose top, on x = 0
 *    |                 |   |
 *   P4 ------------- P5 B B P6             z = -height
 *  -depth                                  x = 0
 *
 * The end faces are tiled by the rear block P2 P3 P4 P5 and one vertical strip under every
 * grill segment, down to the bottom points below the grill (named B…).
 * `grill` runs from the nose top (x = 0) to the top front corner (z = 0).
 */
QList<ProfileCorner> monitorProfile(const CabinetShapeMonitor &shape, const QList<QPointF> &grill, QList<Quad> &endQuads)
{
    const int m = int(grill.size()) - 1;
    const auto corner = [](const QPointF &p, int a, int b) { return ProfileCorner{p.x(), p.y(), cornerName(a), cornerName(b)}; };
    const int extraPerEnd = m - 1;
    QList<ProfileCorner> profile{corner(grill.first(), 1, 7)};
    for (int k = 1; k < m; ++k)
        profile.append({grill.at(k).x(), grill.at(k).y(), QStringLiteral("G%1").arg(k), QStringLiteral("G%1").arg(k + extraPerEnd)});
    profile.append(corner(grill.last(), 2, 8));
    profile.append(corner(QPointF(-shape.depth, 0.0), 3, 9));
    profile.append(corner(QPointF(-shape.depth, -shape.height), 4, 10));
    profile.append(corner(QPointF(grill.last().x(), -shape.height), 5, 11));
    for (int k = m - 1; k >= 1; --k)
        profile.append({grill.at(k).x(), -shape.height, QStringLiteral("B%1").arg(k), QStringLiteral("B%1").arg(k + extraPerEnd)});
    profile.append(corner(QPointF(0.0, -shape.height), 6, 12));

    const auto below = [m](int k) { return k == 0 ? 2 * m + 3 : m + 3 + (m - k); };
    for (int k = 0; k < m; ++k)
        endQuads.append({k, k + 1, below(k + 1), below(k)});
    endQuads.append({m, m + 1, m + 2, m + 3});
    return profile;
}

// The width of a monitor side wall at x, narrowing linearly to the rear.
EndMapping monitorSide(const CabinetShapeMonitor &shape, double sign)
{
    const double halfWidth = shape.width * 0.5;
    const double taperPerMetre = shape.depth > 0.0 ? shape.trapInset / shape.depth : 0.0;
    return [=](double x, double z) { return Point(x, sign * (halfWidth + taperPerMetre * x), z); };
}
} // namespace

QList<Point> CabinetShapeCreator::ArcArrayGrill(const CabinetShapeArcArray &shape, double across)
{
    // The grill bends over the splay angle, so neighbouring cabinets continue one arc.
    const int sections = std::clamp(shape.grillArcSections, 2, 64);
    const double angle = shape.trapAngle > 0.0 ? std::min(shape.trapAngle, 90.0) : 1.0;
    QList<Point> grill = CalculateBentGrillPointCoordinates(sections, shape.grillFrontOffset, across * 0.5, angle);
    if (grill.size() < 2) // the outermost slice can fall just past the bound by rounding
        grill = CalculateBentGrillPointCoordinates(sections + 1, shape.grillFrontOffset, across * 0.5, angle);
    return grill;
}

namespace {
/// Corners of end A in outline order: the side view of a lying cabinet.
QList<Point> endAOutline(const Prism &prism)
{
    QList<Point> outline;
    for (const QList<Point> &wall : prism.walls)
        outline.append(wall.first());
    return outline;
}

Point cornerNamed(const Prism &prism, const QString &name)
{
    for (const QList<Point> &wall : prism.walls) {
        for (const Point &p : wall) {
            if (p.GetName() == name)
                return p;
        }
    }
    return Point();
}

/// A standing cabinet from the side: its front and rear corners on the top and the bottom end.
QList<Point> standingSide(const Prism &prism, int front, int rear)
{
    return {cornerNamed(prism, cornerName(front)), cornerNamed(prism, cornerName(rear)), cornerNamed(prism, cornerName(rear + 12)),
            cornerNamed(prism, cornerName(front + 12))};
}
} // namespace

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeLineArray(const CabinetShapeLineArray &shape)
{
    const Prism prism = buildPrism(lineArrayProfile(shape, shape.height), LineArrayEndQuads, lyingEnd(shape, 1.0), lyingEnd(shape, -1.0));
    // From above one sees the upper walls from the front edge P1 to the rear corner P4.
    return views(prism.mesh(), flattened(prism.walls.mid(0, 3)), endAOutline(prism));
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeLineArrayStanding(const CabinetShapeLineArray &shape)
{
    const Prism prism = buildPrism(lineArrayProfile(shape, shape.width), LineArrayEndQuads, standingEnd(0.0), standingEnd(-shape.height));
    return views(prism.mesh(), flattened(prism.endA), standingSide(prism, 1, 4));
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeArcArray(const CabinetShapeArcArray &shape)
{
    const QList<Point> grill = ArcArrayGrill(shape, shape.height);
    const ArcProfile arc = arcArrayProfile(shape, shape.height, grill);
    const Prism prism = buildPrism(arc.profile, arc.endQuads, lyingEnd(shape, 1.0), lyingEnd(shape, -1.0));
    // From above: the upper grill from the apex P12 out to P1, then the walls P1-P2-P3. The
    // outline lists P1…P10 first, then the lower grill, then the apex and the upper grill.
    const qsizetype upperGrill = grill.size() - 1;
    QList<QList<Point>> top = prism.walls.mid(prism.walls.size() - upperGrill);
    top += prism.walls.mid(0, 2);
    QList<Point> side = endAOutline(prism);
    return views(prism.mesh(), flattened(top), side);
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeArcArrayStanding(const CabinetShapeArcArray &shape)
{
    const QList<Point> grill = ArcArrayGrill(shape, shape.width);
    const ArcProfile arc = arcArrayProfile(shape, shape.width, grill);
    const Prism prism = buildPrism(arc.profile, arc.endQuads, standingEnd(0.0), standingEnd(-shape.height));
    return views(prism.mesh(), flattened(prism.endA), standingSide(prism, 12, 3));
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeMonitor(const CabinetShapeMonitor &shape)
{
    // The arc, closed at its end angle, is laid with its start on the front plane and its end on
    // the top; an arc larger than the cabinet is scaled down to fit. Angles outside 0…90 degrees
    // (or no arc at all) give a straight baffle from half height to half depth.
    QList<QPointF> grill;
    QList<Point> arc = CalculateArcCoordinates(std::clamp(shape.grillArcSections, 1, 64), shape.grillRadius, shape.grillStartAngle,
                                               shape.grillEndAngle);
    if (!arc.isEmpty() && shape.grillEndAngle <= 90.0) {
        const double endAngle = shape.grillEndAngle / 180.0 * Pi;
        arc.append(Point(shape.grillRadius * std::cos(endAngle), 0.0, shape.grillRadius * std::sin(endAngle)));
        const double arcDepth = arc.first().x() - arc.last().x();
        const double arcHeight = arc.last().z() - arc.first().z();
        double scale = 1.0;
        if (arcDepth > shape.depth)
            scale = std::min(scale, shape.depth / arcDepth);
        if (arcHeight > shape.height)
            scale = std::min(scale, shape.height / arcHeight);
        for (const Point &p : std::as_const(arc))
            grill.append(QPointF((p.x() - arc.first().x()) * scale, (p.z() - arc.last().z()) * scale));
    } else {
        grill = {QPointF(0.0, -shape.height * 0.5), QPointF(-shape.depth * 0.5, 0.0)};
    }

    QList<Quad> endQuads;
    const QList<ProfileCorner> profile = monitorProfile(shape, grill, endQuads);
    const Prism prism = buildPrism(profile, endQuads, monitorSide(shape, 1.0), monitorSide(shape, -1.0));

    // From above the monitor covers its tapered footprint.
    const double rearHalfWidth = shape.width * 0.5 - shape.trapInset;
    const QList<Point> top{Point(0.0, shape.width * 0.5, 0.0, QStringLiteral("P17")), Point(-shape.depth, rearHalfWidth, 0.0, QStringLiteral("P18")),
                           Point(-shape.depth, -rearHalfWidth, 0.0, QStringLiteral("P19")), Point(0.0, -shape.width * 0.5, 0.0, QStringLiteral("P20"))};
    // From the side: top front corner, rear, bottom to the nose, then up the grill.
    const QList<Point> outline = endAOutline(prism);
    const qsizetype m = grill.size() - 1;
    QList<Point> side = outline.mid(m, 3);
    side.append(outline.last());
    side += outline.mid(0, m);
    return views(prism.mesh(), top, side);
}
