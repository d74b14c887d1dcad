// SPDX-License-Identifier: MIT
#include "ShapeGeometry.h"

#include "Units.h"

namespace {
QList<Point> projected(const QList<Point> &points, Point (Point::*projection)() const)
{
    QList<Point> result;
    result.reserve(points.size());
    for (const Point &point : points)
        result.append((point.*projection)());
    return result;
}
} // namespace

double ShapeGeometry::millimetres(const QVariantMap &map, const QString &key, double defaultValue)
{
    return map.value(key, defaultValue).toDouble() / Units::MillimetresPerMetre;
}

QMap<QString, QList<Point>> ShapeGeometry::views(const QList<Point> &mesh, const QList<Point> &top, const QList<Point> &side)
{
    return {{View3d, mesh}, {ViewTop, projected(top, &Point::projectionXY)}, {ViewSide, projected(side, &Point::projectionXZ)}};
}
