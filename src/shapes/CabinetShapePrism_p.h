// SPDX-License-Identifier: MIT
#pragma once

#include "Point.h"

#include <QList>
#include <QString>

#include <array>
#include <functional>

namespace CabinetShapePrism {

// The array and monitor cabinets are prisms over a profile: a closed outline in a plane that
// holds X (x forwards) and one across coordinate u, repeated on two parallel or mirrored ends
// and joined by one wall quad per outline edge. The end faces are tiled by quads chosen per
// shape so that every edge is shared by exactly two faces.
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

    QList<Point> mesh() const;
};

/// The prism over `profile` with the given end tiles, wound like the box shapes (negative signed volume).
Prism buildPrism(const QList<ProfileCorner> &profile, QList<Quad> endQuads, const EndMapping &mapA, const EndMapping &mapB);
QList<Point> flattened(const QList<QList<Point>> &faces);
/// "P<number>", the name of a profile corner.
QString cornerName(int number);
/// Corners of end A in outline order: the side view of a lying cabinet.
QList<Point> endAOutline(const Prism &prism);
Point cornerNamed(const Prism &prism, const QString &name);

} // namespace CabinetShapePrism
