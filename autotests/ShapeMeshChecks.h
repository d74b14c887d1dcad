// SPDX-License-Identifier: MIT
// Independent checks on quad meshes and points, shared by the geometry tests.
#pragma once

#include "Point.h"

#include <QHash>
#include <QList>
#include <QStringList>
#include <QTest>

#include <cmath>

namespace ShapeMeshChecks {

// Coordinates rounded to a nanometre identify a corner, whatever its name.
inline QString cornerKey(const Point &p)
{
    const auto r = [](double v) { return QString::number(std::llround(v * 1e9)); };
    return r(p.x()) + QLatin1Char(',') + r(p.y()) + QLatin1Char(',') + r(p.z());
}

/// Empty when every directed edge occurs once and its reverse once (a closed, consistently
/// wound surface); otherwise the first fault.
inline QString closureFault(const QList<Point> &mesh)
{
    if (mesh.size() % 4 != 0)
        return QStringLiteral("point count %1 is no multiple of 4").arg(mesh.size());
    QHash<QString, int> directed;
    for (qsizetype f = 0; f < mesh.size(); f += 4) {
        for (int i = 0; i < 4; ++i) {
            const QString a = cornerKey(mesh.at(f + i));
            const QString b = cornerKey(mesh.at(f + (i + 1) % 4));
            if (a == b)
                return QStringLiteral("face %1 has a zero-length edge").arg(f / 4);
            ++directed[a + QLatin1String("->") + b];
        }
    }
    for (auto it = directed.cbegin(); it != directed.cend(); ++it) {
        if (it.value() != 1)
            return QStringLiteral("edge %1 used %2 times in one direction").arg(it.key()).arg(it.value());
        const QStringList ends = it.key().split(QStringLiteral("->"));
        if (directed.value(ends.at(1) + QLatin1String("->") + ends.at(0)) != 1)
            return QStringLiteral("edge %1 has no opposite").arg(it.key());
    }
    return {};
}

/// Largest distance of a quad corner from the plane through the other three.
inline double worstPlanarity(const QList<Point> &mesh)
{
    double worst = 0.0;
    for (qsizetype f = 0; f + 3 < mesh.size(); f += 4) {
        for (int skip = 0; skip < 4; ++skip) {
            const Point &a = mesh.at(f + (skip + 1) % 4);
            const Point &b = mesh.at(f + (skip + 2) % 4);
            const Point &c = mesh.at(f + (skip + 3) % 4);
            const Point &d = mesh.at(f + skip);
            const Point u = b - a;
            const Point v = c - a;
            const Point n(u.y() * v.z() - u.z() * v.y(), u.z() * v.x() - u.x() * v.z(), u.x() * v.y() - u.y() * v.x());
            const double length = std::sqrt(n.x() * n.x() + n.y() * n.y() + n.z() * n.z());
            if (length >= 1e-12) // three collinear corners span no plane
                worst = std::max(worst, std::abs(n.x() * (d.x() - a.x()) + n.y() * (d.y() - a.y()) + n.z() * (d.z() - a.z())) / length);
        }
    }
    return worst;
}

/**
 * Enclosed volume as the outward flux of r / 3: each planar face contributes its area vector
 * (Newell's sum over its edges) dotted with any point of its plane, here the corner mean.
 * Negative when corners run clockwise seen from outside.
 */
inline double signedVolume(const QList<Point> &mesh)
{
    double volume = 0.0;
    for (qsizetype f = 0; f + 3 < mesh.size(); f += 4) {
        double ax = 0.0, ay = 0.0, az = 0.0, cx = 0.0, cy = 0.0, cz = 0.0;
        for (int i = 0; i < 4; ++i) {
            const Point &p = mesh.at(f + i);
            const Point &q = mesh.at(f + (i + 1) % 4);
            ax += (p.y() - q.y()) * (p.z() + q.z());
            ay += (p.z() - q.z()) * (p.x() + q.x());
            az += (p.x() - q.x()) * (p.y() + q.y());
            cx += p.x() / 4.0;
            cy += p.y() / 4.0;
            cz += p.z() / 4.0;
        }
        volume += (ax * cx + ay * cy + az * cz) / 2.0;
    }
    return volume / 3.0;
}

struct Box {
    double minX = 0, maxX = 0, minY = 0, maxY = 0, minZ = 0, maxZ = 0;
};

inline Box boundingBox(const QList<Point> &points)
{
    Box box{qInf(), -qInf(), qInf(), -qInf(), qInf(), -qInf()};
    for (const Point &p : points) {
        box = {std::min(box.minX, p.x()), std::max(box.maxX, p.x()), std::min(box.minY, p.y()),
               std::max(box.maxY, p.y()), std::min(box.minZ, p.z()), std::max(box.maxZ, p.z())};
    }
    return box;
}

inline QString names(const QList<Point> &points)
{
    QStringList list;
    for (const Point &p : points)
        list.append(p.GetName());
    return list.join(QLatin1Char(' '));
}

inline bool near(double a, double b, double tolerance = 1e-12)
{
    return std::abs(a - b) <= tolerance;
}

/// The first point called `name`, or a NaN point.
inline Point find(const QList<Point> &points, const QString &name)
{
    for (const Point &p : points) {
        if (p.GetName() == name)
            return p;
    }
    return Point(qQNaN(), qQNaN(), qQNaN(), QStringLiteral("missing ") + name);
}

} // namespace ShapeMeshChecks

// Coordinates within 1e-12 m; on a mismatch QCOMPARE prints both points.
#define COMPARE_POINT(actual, ex, ey, ez)                                                                              \
    do {                                                                                                               \
        const Point actual_ = (actual);                                                                                \
        if (!ShapeMeshChecks::near(actual_.x(), (ex)) || !ShapeMeshChecks::near(actual_.y(), (ey))                    \
            || !ShapeMeshChecks::near(actual_.z(), (ez)))                                                              \
            QCOMPARE(actual_, Point((ex), (ey), (ez), actual_.GetName()));                                             \
    } while (false)

#define COMPARE_POINT_TO(actual, expected)                                                                             \
    do {                                                                                                               \
        const Point expected_ = (expected);                                                                            \
        COMPARE_POINT(actual, expected_.x(), expected_.y(), expected_.z());                                            \
    } while (false)
