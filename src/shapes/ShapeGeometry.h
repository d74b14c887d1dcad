// SPDX-License-Identifier: MIT
#pragma once

#include "Point.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QVariantMap>

/// What cabinet shapes and rigging outlines share: reading their measures and naming their views.
namespace ShapeGeometry {

constexpr double Pi = 3.14159265358979323846;

/// The names of an outline set: a quad mesh, the view from above and the view from the side.
inline const QString View3d = QStringLiteral("3D");
inline const QString ViewTop = QStringLiteral("top");
inline const QString ViewSide = QStringLiteral("side");

/// A length the file gives in millimetres under `key`, in metres.
double millimetres(const QVariantMap &map, const QString &key, double defaultValue = 0.0);

/// The mesh as it stands, `top` projected onto X-Y and `side` onto X-Z, under the three view names.
QMap<QString, QList<Point>> views(const QList<Point> &mesh, const QList<Point> &top, const QList<Point> &side);

} // namespace ShapeGeometry
