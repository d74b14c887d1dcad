// SPDX-License-Identifier: MIT
#pragma once

#include "Point.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

struct CabinetShapeBasic;
struct CabinetShapeArcArray;
struct CabinetShapeLineArray;
struct CabinetShapeCuboidTrapped;
struct CabinetShapeCuboidChamfered;
struct CabinetShapeMonitor;

/**
 * Builds the named outlines of a cabinet from the "cabinet" block of a descriptor file.
 *
 * Only static operations; no instance is ever needed. Every operation is a pure function of
 * its arguments and may be called from any thread.
 */
class NVLPS_EXPORT CabinetShapeCreator : public QObject
{
    Q_OBJECT
public:
    /**
     * The outlines of a cabinet of shape `cabinetShape` ("Cuboid", "Trapezoidal",
     * "Trapezoidal lying", "Cuboid trapped", "Cuboid chamfered", "LineArray",
     * "LineArray standing", "ArcArray", "ArcArray standing", "Monitor" or "Arbitrary"; exact,
     * case-sensitive), keyed by view name.
     *
     * `parameters` holds lengths in millimetres and angles in degrees; a missing value reads
     * as 0. The parametric shapes return "3D" (a quad mesh, four consecutive points per planar
     * face, outward order), "top" (projections onto X-Y) and "side" (one outline projected onto
     * X-Z), in metres in the cabinet frame: X forwards with the front at x = 0, Y lateral, Z up
     * with the top at z = 0. "Arbitrary" returns the point lists of parameters["views"] as they
     * stand. An unknown name logs "Unknown cabinetShape!" and returns an empty map.
     */
    static QMap<QString, QList<Point>> CreateCabinetShapeData(const QMap<QString, QVariant> &parameters, const QString &cabinetShape);

private:
    friend class tst_CabinetShapeCreator;

    static CabinetShapeBasic CalculateShapeDataBasic(const QMap<QString, QVariant> &parameters);
    static CabinetShapeArcArray CalculateShapeDataArcArray(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic);
    static CabinetShapeLineArray CalculateShapeDataLineArray(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic);
    static CabinetShapeCuboidTrapped CalculateShapeDataCuboidTrapped(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic);
    static CabinetShapeCuboidChamfered CalculateShapeDataCuboidChamfered(const QMap<QString, QVariant> &parameters,
                                                                        const CabinetShapeBasic &basic);
    static CabinetShapeMonitor CalculateShapeDataMonitor(const QMap<QString, QVariant> &parameters, const CabinetShapeBasic &basic);

    static QMap<QString, QList<Point>> CreateShapeArbitrary(const QMap<QString, QVariant> &parameters);
    static QMap<QString, QList<Point>> CreateShapeCuboidOrTrapezoidal(const CabinetShapeBasic &shape);
    static QMap<QString, QList<Point>> CreateShapeTrapezoidalLying(const CabinetShapeBasic &shape);
    static QMap<QString, QList<Point>> CreateShapeLineArray(const CabinetShapeLineArray &shape);
    static QMap<QString, QList<Point>> CreateShapeLineArrayStanding(const CabinetShapeLineArray &shape);
    static QMap<QString, QList<Point>> CreateShapeArcArray(const CabinetShapeArcArray &shape);
    static QMap<QString, QList<Point>> CreateShapeArcArrayStanding(const CabinetShapeArcArray &shape);
    static QMap<QString, QList<Point>> CreateShapeCuboidTrapped(const CabinetShapeCuboidTrapped &shape);
    static QMap<QString, QList<Point>> CreateShapeCuboidChamfered(const CabinetShapeCuboidChamfered &shape);
    static QMap<QString, QList<Point>> CreateShapeMonitor(const CabinetShapeMonitor &shape);

    /// One half of an arc array's bent grill across `across` metres, at least two points.
    static QList<Point> ArcArrayGrill(const CabinetShapeArcArray &shape, double across);

    /// Centre angles (radians) of slices of `angleStep` degrees laid over half of `totalAngle` degrees.
    static QList<double> DivideTrapAngleByAngleStep(double angleStep, double totalAngle);
    /// `sections` points of an arc in the X-Z plane, the last one step short of `endAngle`.
    static QList<Point> CalculateArcCoordinates(double sections, double radius, double startAngle, double endAngle);
    /// One half of a bent grill: x from `xExtent` on the centre line down to 0, z up to `zExtent`.
    static QList<Point> CalculateBentGrillPointCoordinates(double sections, double xExtent, double zExtent, double totalAngle);
};
