// SPDX-License-Identifier: MIT
#include "CabinetShapePrism_p.h"

#include <algorithm>

namespace CabinetShapePrism {

namespace {
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
} // namespace

QList<Point> Prism::mesh() const
{
    return flattened(walls) + flattened(endA) + flattened(endB);
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

} // namespace CabinetShapePrism
