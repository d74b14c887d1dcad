// SPDX-License-Identifier: MIT
// The box family: cuboids, tapered boxes and their bevelled and chamfered variants.
#include "CabinetShapeCreator.h"

#include "CabinetShapeParameters_p.h"
#include "ShapeGeometry.h"

#include <cmath>

namespace {
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
    return ShapeGeometry::views(mesh, {p1, p2, p3, p4}, {p1, p2, p6, p5});
}
} // namespace

CabinetShapeCuboidTrapped CabinetShapeCreator::CalculateShapeDataCuboidTrapped(const QMap<QString, QVariant> &parameters,
                                                                               const CabinetShapeBasic &basic)
{
    CabinetShapeCuboidTrapped shape;
    static_cast<CabinetShapeBasic &>(shape) = basic;
    shape.trapAngleLeft = parameters.value(QStringLiteral("trapAngleLeft")).toDouble();
    shape.trapAngleRight = parameters.value(QStringLiteral("trapAngleRight")).toDouble();
    shape.depthToTrapLeft = ShapeGeometry::millimetres(parameters, QStringLiteral("depthToTrapLeft"));
    shape.depthToTrapRight = ShapeGeometry::millimetres(parameters, QStringLiteral("depthToTrapRight"));
    // Each bevel angle belongs to one side only, so it is not halved.
    shape.trapRightX = basic.width * 0.5 - std::tan((shape.trapAngleRight / 180.0) * ShapeGeometry::Pi) * (basic.depth - shape.depthToTrapRight);
    shape.trapLeftX = std::tan((shape.trapAngleLeft / 180.0) * ShapeGeometry::Pi) * (basic.depth - shape.depthToTrapLeft) - basic.width * 0.5;
    return shape;
}

CabinetShapeCuboidChamfered CabinetShapeCreator::CalculateShapeDataCuboidChamfered(const QMap<QString, QVariant> &parameters,
                                                                                   const CabinetShapeBasic &basic)
{
    CabinetShapeCuboidChamfered shape;
    static_cast<CabinetShapeBasic &>(shape) = basic;
    shape.chamferDepth = ShapeGeometry::millimetres(parameters, QStringLiteral("chamferDepth"));
    shape.chamferHeight = ShapeGeometry::millimetres(parameters, QStringLiteral("chamferHeight"));
    return shape;
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
    return ShapeGeometry::views(mesh, {p5, p2, p1, p6, p4, p3, p2, p5}, {p1, p3, p9, p7});
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
    return ShapeGeometry::views(mesh, {p1, p2, p3, p4}, {p1, p2, p26, p6, p5});
}
