// SPDX-License-Identifier: MIT
// The monitor family: a floor wedge with an arc grill, a prism over its side profile.
#include "CabinetShapeCreator.h"

#include "CabinetShapeParameters_p.h"
#include "CabinetShapePrism_p.h"
#include "ShapeGeometry.h"

#include <QPointF>

#include <algorithm>
#include <cmath>

using namespace CabinetShapePrism;

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

CabinetShapeMonitor CabinetShapeCreator::CalculateShapeDataMonitor(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic)
{
    CabinetShapeMonitor shape;
    static_cast<CabinetShapeBasic &>(shape) = basic;
    shape.grillArcSections = parameters.value(QStringLiteral("grillArcSections")).toInt();
    shape.grillRadius = ShapeGeometry::millimetres(parameters, QStringLiteral("grillRadius"));
    shape.grillStartAngle = parameters.value(QStringLiteral("grillStartAngle")).toDouble();
    shape.grillEndAngle = parameters.value(QStringLiteral("grillEndAngle")).toDouble();
    return shape;
}

QList<Point> CabinetShapeCreator::CalculateArcCoordinates(double sections, double radius, double startAngle, double endAngle)
{
    QList<Point> points;
    if (!(sections > 0.0 && radius > 0.0 && startAngle >= 0.0 && startAngle < 360.0 && startAngle < endAngle && endAngle <= 360.0))
        return points;
    // The arc stops one step short of endAngle; callers close it themselves.
    for (int i = 0; i < sections; ++i) {
        const double theta = ((i * (endAngle - startAngle) / sections) + startAngle) * ShapeGeometry::Pi / 180.0;
        points.append(Point(radius * std::cos(theta), 0.0, radius * std::sin(theta)));
    }
    return points;
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
        const double endAngle = shape.grillEndAngle / 180.0 * ShapeGeometry::Pi;
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
    return ShapeGeometry::views(prism.mesh(), top, side);
}
