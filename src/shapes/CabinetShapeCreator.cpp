// SPDX-License-Identifier: MIT
#include "CabinetShapeCreator.h"

#include "CabinetShapeParameters_p.h"
#include "ShapeGeometry.h"
#include "Warning.h"

#include <QDebug>

#include <cmath>

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

    qCWarning(lcShape, "Unknown cabinetShape!");
    return {};
}

CabinetShapeBasic CabinetShapeCreator::CalculateShapeDataBasic(const QMap<QString, QVariant> &parameters)
{
    CabinetShapeBasic basic;
    basic.width = ShapeGeometry::millimetres(parameters, QStringLiteral("width"));
    basic.height = ShapeGeometry::millimetres(parameters, QStringLiteral("height"));
    basic.depth = ShapeGeometry::millimetres(parameters, QStringLiteral("depth"));
    basic.trapAngle = parameters.value(QStringLiteral("trapAngle")).toDouble();
    // trapAngle spans both walls, so each wall turns by half of it.
    basic.trapInset = basic.depth * std::tan((basic.trapAngle * 0.5 / 180.0) * ShapeGeometry::Pi);
    return basic;
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
