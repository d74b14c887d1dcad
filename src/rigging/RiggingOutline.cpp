// SPDX-License-Identifier: MIT
#include "RiggingOutline_p.h"

#include "ShapeGeometry.h"

#include <QStringList>

#include <algorithm>

namespace {
using ShapeGeometry::millimetres;

bool isEmpty(const RiggingOutline::Box &box)
{
    return !(box.rear < box.front && box.right < box.left && box.bottom < box.top);
}
} // namespace

const QStringList &RiggingOutline::FrameOutlineKeys()
{
    static const QStringList keys = {
        QStringLiteral("frontFlankDepth"), QStringLiteral("frontEdgeDepth"), QStringLiteral("frontEdgeWidth"),
        QStringLiteral("sideFlankWidth"), QStringLiteral("sideFlankXOffset"), QStringLiteral("rearEdgeWidth"),
        QStringLiteral("rearEdgeDepth"), QStringLiteral("rearTailDepth"), QStringLiteral("rearTailHeight"),
        QStringLiteral("rearTailWidth"), QStringLiteral("rearEdgeXOffset"),
    };
    return keys;
}

bool RiggingOutline::HasFrameOutlineKeys(const QVariantMap &cabinet)
{
    const QStringList &keys = FrameOutlineKeys();
    return std::any_of(keys.cbegin(), keys.cend(), [&cabinet](const QString &key) { return cabinet.contains(key); });
}

/*
 * A ladder frame seen from above (X forwards = up the page, the frame centred on Y = 0):
 *
 *   x = 0  +----+-------------------+----+
 *          | FF |    front edge     | FF |   front edge: frontEdgeDepth deep, frontEdgeWidth wide
 *          |    +-------------------+    |   FF, front flanks: frontFlankDepth deep, at the outer sides
 *          +----+                   +----+
 *          | SF |                   | SF |   SF, side flanks: sideFlankWidth wide, from
 *          |    |                   |    |   x = -sideFlankXOffset back to the rear edge
 *   x = -rearEdgeXOffset -----------+----+
 *          |          rear edge          |   rearEdgeDepth deep, rearEdgeWidth wide
 *          +--------+         +----------+
 *                   |  tail   |              rear tail: rearTailDepth deep, rearTailWidth wide,
 *                   +---------+              rearTailHeight high, hanging from the top
 *
 * Every bar but the tail is the frame's full height. Widths that are absent or not positive
 * default to the frame's width (edges) or the rear edge's width (tail); a missing
 * rearEdgeXOffset places the rear edge, with the tail behind it, at the rear of the frame.
 */
QList<RiggingOutline::Box> RiggingOutline::FrameBoxes(const QVariantMap &cabinet, const Size &size)
{
    const double width = size.width();
    const double height = size.height();
    const double depth = size.depth();
    const double halfWidth = width * 0.5;

    const auto positiveOr = [](double value, double fallback) { return value > 0.0 ? value : fallback; };
    const double frontEdgeDepth = millimetres(cabinet, QStringLiteral("frontEdgeDepth"));
    const double frontEdgeWidth = positiveOr(millimetres(cabinet, QStringLiteral("frontEdgeWidth")), width);
    const double frontFlankDepth = millimetres(cabinet, QStringLiteral("frontFlankDepth"));
    const double sideFlankWidth = millimetres(cabinet, QStringLiteral("sideFlankWidth"));
    const double sideFlankXOffset = millimetres(cabinet, QStringLiteral("sideFlankXOffset"));
    const double rearEdgeDepth = millimetres(cabinet, QStringLiteral("rearEdgeDepth"));
    const double rearEdgeWidth = positiveOr(millimetres(cabinet, QStringLiteral("rearEdgeWidth")), width);
    const double rearTailDepth = millimetres(cabinet, QStringLiteral("rearTailDepth"));
    const double rearTailWidth = positiveOr(millimetres(cabinet, QStringLiteral("rearTailWidth")), rearEdgeWidth);
    const double rearTailHeight = positiveOr(millimetres(cabinet, QStringLiteral("rearTailHeight")), height);
    const double rearEdgeXOffset = cabinet.contains(QStringLiteral("rearEdgeXOffset"))
        ? millimetres(cabinet, QStringLiteral("rearEdgeXOffset"))
        : depth - rearEdgeDepth - rearTailDepth;

    const double rearEdgeFront = -rearEdgeXOffset;
    const double rearEdgeRear = rearEdgeFront - rearEdgeDepth;

    const QList<Box> candidates = {
        {-frontEdgeDepth, 0.0, -frontEdgeWidth * 0.5, frontEdgeWidth * 0.5, -height, 0.0},
        {-frontFlankDepth, 0.0, halfWidth - sideFlankWidth, halfWidth, -height, 0.0},
        {-frontFlankDepth, 0.0, -halfWidth, -halfWidth + sideFlankWidth, -height, 0.0},
        {rearEdgeFront, -sideFlankXOffset, halfWidth - sideFlankWidth, halfWidth, -height, 0.0},
        {rearEdgeFront, -sideFlankXOffset, -halfWidth, -halfWidth + sideFlankWidth, -height, 0.0},
        {rearEdgeRear, rearEdgeFront, -rearEdgeWidth * 0.5, rearEdgeWidth * 0.5, -height, 0.0},
        {rearEdgeRear - rearTailDepth, rearEdgeRear, -rearTailWidth * 0.5, rearTailWidth * 0.5, -rearTailHeight, 0.0},
    };
    QList<Box> boxes;
    for (const Box &box : candidates) {
        if (!isEmpty(box))
            boxes.append(box);
    }
    if (boxes.isEmpty()) {
        const Box whole{-depth, 0.0, -halfWidth, halfWidth, -height, 0.0};
        if (!isEmpty(whole))
            boxes.append(whole);
    }
    return boxes;
}

QList<Point> RiggingOutline::BoxFaces(const Box &b)
{
    // Corner order per face is counter-clockwise seen from outside the box.
    return {
        // front
        Point(b.front, b.right, b.top), Point(b.front, b.right, b.bottom), Point(b.front, b.left, b.bottom), Point(b.front, b.left, b.top),
        // rear
        Point(b.rear, b.right, b.top), Point(b.rear, b.left, b.top), Point(b.rear, b.left, b.bottom), Point(b.rear, b.right, b.bottom),
        // top
        Point(b.front, b.right, b.top), Point(b.front, b.left, b.top), Point(b.rear, b.left, b.top), Point(b.rear, b.right, b.top),
        // bottom
        Point(b.front, b.right, b.bottom), Point(b.rear, b.right, b.bottom), Point(b.rear, b.left, b.bottom), Point(b.front, b.left, b.bottom),
        // right (y = right, the lower Y)
        Point(b.front, b.right, b.top), Point(b.rear, b.right, b.top), Point(b.rear, b.right, b.bottom), Point(b.front, b.right, b.bottom),
        // left
        Point(b.front, b.left, b.top), Point(b.front, b.left, b.bottom), Point(b.rear, b.left, b.bottom), Point(b.rear, b.left, b.top),
    };
}

QList<Point> RiggingOutline::BoxTopFace(const Box &b)
{
    return {Point(b.front, b.right, 0.0), Point(b.rear, b.right, 0.0), Point(b.rear, b.left, 0.0), Point(b.front, b.left, 0.0)};
}

QList<Point> RiggingOutline::SideSilhouette(const QList<Box> &boxes)
{
    QList<double> stations;
    for (const Box &box : boxes) {
        stations.append(box.front);
        stations.append(box.rear);
    }
    std::sort(stations.begin(), stations.end(), std::greater<double>());
    stations.erase(std::unique(stations.begin(), stations.end()), stations.end());

    struct Column {
        double front, rear, top, bottom;
    };
    QList<QList<Column>> parts;
    bool inPart = false;
    for (qsizetype i = 0; i + 1 < stations.size(); ++i) {
        const double front = stations.at(i);
        const double rear = stations.at(i + 1);
        bool covered = false;
        Column column{front, rear, 0.0, 0.0};
        for (const Box &box : boxes) {
            if (box.front >= front && box.rear <= rear) {
                column.top = covered ? std::max(column.top, box.top) : box.top;
                column.bottom = covered ? std::min(column.bottom, box.bottom) : box.bottom;
                covered = true;
            }
        }
        if (!covered) {
            inPart = false;
            continue;
        }
        if (!inPart)
            parts.append(QList<Column>());
        parts.last().append(column);
        inPart = true;
    }

    QList<Point> outline;
    for (const QList<Column> &columns : std::as_const(parts)) {
        QList<Point> polygon;
        const auto add = [&polygon](double x, double z) {
            const Point p(x, 0.0, z);
            if (polygon.isEmpty() || polygon.last() != p)
                polygon.append(p);
        };
        for (const Column &c : columns) {
            add(c.front, c.top);
            add(c.rear, c.top);
        }
        for (auto it = columns.crbegin(); it != columns.crend(); ++it) {
            add(it->rear, it->bottom);
            add(it->front, it->bottom);
        }
        // Drop corners where the outline runs straight on (always horizontal or vertical here).
        for (qsizetype i = 1; i + 1 < polygon.size();) {
            const Point &a = polygon.at(i - 1);
            const Point &b = polygon.at(i);
            const Point &c = polygon.at(i + 1);
            if ((a.x() == b.x() && b.x() == c.x()) || (a.z() == b.z() && b.z() == c.z()))
                polygon.removeAt(i);
            else
                ++i;
        }
        outline += polygon;
    }
    return outline;
}

RiggingOutline::Views RiggingOutline::BoxViews(const QList<Box> &boxes)
{
    Views views;
    if (boxes.isEmpty())
        return views;
    QList<Point> faces;
    QList<Point> top;
    for (const Box &box : boxes) {
        faces += BoxFaces(box);
        top += BoxTopFace(box);
    }
    views.insert(ShapeGeometry::View3d, faces);
    views.insert(ShapeGeometry::ViewTop, top);
    views.insert(ShapeGeometry::ViewSide, SideSilhouette(boxes));
    return views;
}

QList<Point> RiggingOutline::Flipped(const QList<Point> &points, double height, int faceCorners)
{
    QList<Point> flipped;
    flipped.reserve(points.size());
    for (const Point &point : points)
        flipped.append(Point(point).mirrorZ().translateZ(-height));
    if (faceCorners <= 0) {
        std::reverse(flipped.begin(), flipped.end());
    } else {
        for (qsizetype i = 0; i + faceCorners <= flipped.size(); i += faceCorners)
            std::reverse(flipped.begin() + i, flipped.begin() + i + faceCorners);
    }
    return flipped;
}
