// SPDX-License-Identifier: MIT
// The array family: line and arc array elements, lying or standing, as prisms over their profile.
#include "CabinetShapeCreator.h"

#include "CabinetShapeParameters_p.h"
#include "CabinetShapePrism_p.h"
#include "ShapeGeometry.h"

#include <algorithm>
#include <cmath>

using namespace CabinetShapePrism;

namespace {
/// The basic fields and the rigging pocket that line and arc arrays share.
void readArrayPocket(CabinetShapeArrayPocket &shape, const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic)
{
    static_cast<CabinetShapeBasic &>(shape) = basic;
    shape.depthPocket = ShapeGeometry::millimetres(parameters, QStringLiteral("depthPocket"));
    shape.widthPocket = ShapeGeometry::millimetres(parameters, QStringLiteral("widthPocket"));
    shape.anglePocket = parameters.value(QStringLiteral("anglePocket")).toDouble();
    shape.widthPocketInner = shape.widthPocket - 2.0 * std::tan(((shape.anglePocket - 90.0) / 180.0) * ShapeGeometry::Pi) * shape.depthPocket;
    shape.trapInsetPocket = std::tan((basic.trapAngle * 0.5 / 180.0) * ShapeGeometry::Pi) * (basic.depth - shape.depthPocket);
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

/// A standing cabinet from the side: its front and rear corners on the top and the bottom end.
QList<Point> standingSide(const Prism &prism, int front, int rear)
{
    return {cornerNamed(prism, cornerName(front)), cornerNamed(prism, cornerName(rear)), cornerNamed(prism, cornerName(rear + 12)),
            cornerNamed(prism, cornerName(front + 12))};
}
} // namespace

CabinetShapeArcArray CabinetShapeCreator::CalculateShapeDataArcArray(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic)
{
    CabinetShapeArcArray shape;
    readArrayPocket(shape, parameters, basic);
    shape.grillArcSections = parameters.value(QStringLiteral("grillArcSections")).toInt();
    shape.grillFrontOffset = ShapeGeometry::millimetres(parameters, QStringLiteral("grillFrontOffset"));
    return shape;
}

CabinetShapeLineArray CabinetShapeCreator::CalculateShapeDataLineArray(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic)
{
    CabinetShapeLineArray shape;
    readArrayPocket(shape, parameters, basic);
    shape.depthRigging = ShapeGeometry::millimetres(parameters, QStringLiteral("depthRigging"));
    shape.depthTransition = ShapeGeometry::millimetres(parameters, QStringLiteral("depthTransition"));
    shape.widthReduction = ShapeGeometry::millimetres(parameters, QStringLiteral("widthReduction"));
    const double halfAngleTan = std::tan((basic.trapAngle * 0.5 / 180.0) * ShapeGeometry::Pi);
    shape.trapInsetRigging = halfAngleTan * shape.depthRigging;
    shape.trapInsetTransition = halfAngleTan * (shape.depthRigging + shape.depthTransition);
    return shape;
}

QList<double> CabinetShapeCreator::DivideTrapAngleByAngleStep(double angleStep, double totalAngle)
{
    QList<double> angles;
    // A step that is not positive would never leave the loop.
    if (!(angleStep > 0.0))
        return angles;
    for (double a = angleStep * 0.5; a <= totalAngle * 0.5; a += angleStep)
        angles.append((a / 180.0) * ShapeGeometry::Pi);
    return angles;
}

QList<Point> CabinetShapeCreator::CalculateBentGrillPointCoordinates(double sections, double xExtent, double zExtent, double totalAngle)
{
    const double step = totalAngle / (sections + 1.0);
    QList<double> x;
    QList<double> z;
    for (double a : DivideTrapAngleByAngleStep(step, totalAngle)) {
        x.append(std::cos(a));
        z.append(std::sin(a));
    }
    // x is shifted to start at 0, then both are scaled so that their largest value meets the extent.
    if (!x.isEmpty()) {
        const double xMinimum = *std::min_element(x.cbegin(), x.cend());
        for (double &v : x)
            v -= xMinimum;
        const double xMaximum = *std::max_element(x.cbegin(), x.cend());
        const double zMaximum = *std::max_element(z.cbegin(), z.cend());
        for (double &v : x)
            v = v / xMaximum * xExtent;
        for (double &v : z)
            v = v / zMaximum * zExtent;
    }
    return Point::FromCoordinateVectors(x, {}, z);
}

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

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeLineArray(const CabinetShapeLineArray &shape)
{
    const Prism prism = buildPrism(lineArrayProfile(shape, shape.height), LineArrayEndQuads, lyingEnd(shape, 1.0), lyingEnd(shape, -1.0));
    // From above one sees the upper walls from the front edge P1 to the rear corner P4.
    return ShapeGeometry::views(prism.mesh(), flattened(prism.walls.mid(0, 3)), endAOutline(prism));
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeLineArrayStanding(const CabinetShapeLineArray &shape)
{
    const Prism prism = buildPrism(lineArrayProfile(shape, shape.width), LineArrayEndQuads, standingEnd(0.0), standingEnd(-shape.height));
    return ShapeGeometry::views(prism.mesh(), flattened(prism.endA), standingSide(prism, 1, 4));
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
    return ShapeGeometry::views(prism.mesh(), flattened(top), side);
}

QMap<QString, QList<Point>> CabinetShapeCreator::CreateShapeArcArrayStanding(const CabinetShapeArcArray &shape)
{
    const QList<Point> grill = ArcArrayGrill(shape, shape.width);
    const ArcProfile arc = arcArrayProfile(shape, shape.width, grill);
    const Prism prism = buildPrism(arc.profile, arc.endQuads, standingEnd(0.0), standingEnd(-shape.height));
    return ShapeGeometry::views(prism.mesh(), flattened(prism.endA), standingSide(prism, 12, 3));
}
