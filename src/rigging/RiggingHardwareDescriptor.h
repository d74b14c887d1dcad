// SPDX-License-Identifier: MIT
#pragma once

#include "Point.h"
#include "RiggingHardwareDescriptor_Interface.h"
#include "Size.h"
#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

/**
 * One item of rigging hardware (a flying frame, possibly with load beams and pick points),
 * read from the JSON descriptor file a plugin ships.
 *
 * The item is read once, in the constructor, and is read-only afterwards: concurrent readers
 * need no lock. Lengths and points are metres in the frame's own coordinates (X forwards with
 * the front face at x = 0, Y lateral, Z up with the top at z = 0); angles are degrees; weights
 * and loads keep the unit of the file.
 *
 * Outlines (GetViews()) are keyed "3D", "top" and "side" for the frame, "3D_pullback" etc. for
 * the frame turned upside down under an array (frames that support pullback), "3D_flown" etc.
 * where the file draws the flown frame itself, and "3D_<type>_<position>" etc. for the load
 * beam of a load beam type at one of its positions.
 *
 * A missing or unparsable file is reported by the JSON loader and leaves the defaults;
 * values of the wrong type read as Qt converts them, without a warning.
 */
class NVLPS_EXPORT RiggingHardwareDescriptor : public QObject, public RiggingHardwareDescriptor_Interface
{
    Q_OBJECT
    Q_INTERFACES(RiggingHardwareDescriptor_Interface)
public:
    /// One member of "loadBeamTypes": the beam, its hanging profile and its positions on the frame.
    struct LoadBeamData {
        double width = 0.0;         ///< metres (Y)
        double height = 0.0;        ///< metres (Z)
        double length = 0.0;        ///< metres (X)
        double weight = 0.0;        ///< the file's value divided by 1000
        double profileWidth = 0.0;  ///< metres: thickness of the profile that hangs the beam
        double profileLength = 0.0; ///< metres: length of the profile along the beam
        double profileHeight = 0.0; ///< metres: how far the profile lifts the beam off its pin
        /// Where the profile meets the beam, from the beam's front end (x, y used; metres).
        Point profileBeamIntersection;
        /// Position name -> the beam's front connection point relative to the frame reference point.
        QMap<QString, Point> positions;
    };

    /// Reads `filePath` unless it is empty (which leaves an empty item with no defaults applied).
    explicit RiggingHardwareDescriptor(const QString &filePath, QObject *parent = nullptr);
    ~RiggingHardwareDescriptor() override;

    /**
     * Reads a descriptor held in memory, as the constructor reads a file. Call it once, on an
     * item constructed with an empty path; `sourceName` stands for the path in warnings. Any
     * bytes are safe to pass. Always true.
     */
    bool ReadDescriptorData(const QByteArray &json, const QString &sourceName = QString());

    bool IsDataApproved() const override { return m_dataApproved; }
    QString GetName() override { return m_name; }
    /// The file the descriptor was read from, as given to the constructor; empty for none.
    QString GetFilePath() const { return m_filePath; }
    QVariant GetPickPointsMap() override { return m_pickPoints; }
    double GetShackleHeight() const override { return m_shackleHeight; }
    double GetPickpointDistance() const override { return m_pickpointDistance; }
    double GetLoadAdapterXPinholes() const override { return m_loadAdapterXPinholes; }
    double GetLoadAdapterResolution() const override { return m_loadAdapterResolution; }
    double GetWeight() const override { return m_weight; }
    Size GetSize() override { return m_size; }
    Size GetOutriggersBoundaryMaxSize() override { return m_outriggersBoundaryMaxSize; }
    Point GetMountingPoint(Tolvane::Mounting mounting, const QString &name) override;
    QVariant GetCompressionPullPointMap() override;
    Point GetCenterOfGravity() override;
    QVariant GetCenterOfGravityMap() override;
    Point GetShackleHoleOffset() override { return m_shackleHoleOffset; }
    QMap<Tolvane::MechanicalConnectionPoint, Point> GetMechanicalConnectionPoints(Tolvane::Mounting mounting, const QString &name) override;
    Point GetConnectionPoint(Tolvane::Mounting mounting, const QString &name) override;
    /**
     * Which of the points above the file gives for `mounting` and `name`: "mountingPoint",
     * "connectionPoint", "centerOfGravity" and the corners of "mechanicalConnectionPoints"
     * ("front, top", ..., "front, bottom, compression") where the query finds an entry. The
     * others answer the zero point, which marks no place on the item.
     */
    QStringList GetDefinedPointKeys(Tolvane::Mounting mounting, const QString &name) const;
    Point GetConnectionPointOffset(double value) override;
    QVariant GetViews() override;
    QString GetPartNumber(bool withAppendix) override;
    QString GetDisplayName() override { return m_displayName; }
    QVariant GetFrontMechanicalConnectionPointDescriptor() override { return m_frontLink; }
    bool GetAutomaticMountingDirectionCalculation() const override { return m_automaticMountingDirectionCalculation; }
    QString GetMountingDirection(int pickPoint) override;
    QVariant GetLoadBeamTypesMap() override { return m_loadBeamTypes; }
    QVariant GetCompressionSetMap() override { return m_compressionSet; }
    bool CanUseArraySight() const override { return m_canUseArraySight; }
    double GetMinimumTiltAngle() const override { return m_minimumTiltAngle; }
    double GetMaximumTiltAngle() const override { return m_maximumTiltAngle; }
    double GetTiltAngleStepWidth() const override { return m_tiltAngleStepWidth; }
    bool HasTriangulated3dView() const override { return m_triangulated3dView; }
    double GetMaximumLoad() const override { return m_maximumLoad; }
    bool HasLoadBeam() const override;

    QString GetLoadBeamCategoryDisplayName() { return m_loadBeamCategoryDisplayName; }
    double GetMaximumLoadSinglePickpoint() const { return m_maximumLoadSinglePickpoint; }
    /**
     * How far the front end of the load beam of `loadBeamType` at `position` lies ahead of the
     * frame's front face (x = 0), in metres; negative behind it, 0 for an unknown type or position.
     */
    double GetLoadBeamFrontOffset(const QString &loadBeamType, const QString &position) const;

    /**
     * Picks the frame outline keys from a view map: "3D_flown" if held, else "3D" if held, and
     * likewise for "side" and "top". An output for which neither key is held is left unchanged.
     */
    static void ExtractViewKeys(const QMap<QString, QList<Point>> &views, QString &key3D, QString &keySide, QString &keyTop);

    /**
     * Reads one member of "loadBeamTypes" (millimetres to metres; the load beam "weight" is
     * divided by 1000 as well). Positions are the "front" connection point of each member of
     * "loadBeamPositions", minus `frameReference`.
     */
    static LoadBeamData ReadLoadBeamData(const QVariantMap &loadBeamType, const Point &frameReference);
    /**
     * The frame reference point, from the "front, top" member of a "mechanicalConnectionPoints"
     * object: that member itself if it is a point (has "x"), else its "flown_default", else its
     * "default" (the zero point if it has none).
     */
    static Point ReadFrameReferencePoint(const QVariantMap &mechanicalConnectionPoints);

private:
    bool ReadDescriptorFile(const QString &filePath);
    bool ReadDescriptor(const QVariantMap &file);
    bool ReadCabinet(const QVariantMap &cabinet);
    bool CreateShape(const QVariantMap &file);
    void UpdateFrameViewPoints();

    static QMap<QString, QList<Point>> CreateShapeLoadBeam(const LoadBeamData &loadBeam, const Point &frontEnd);
    static QMap<QString, QList<Point>> CreateShapeTriangleWithLoadBeam(const LoadBeamData &loadBeam, const Point &pin, Point &frontEnd);

    bool m_dataApproved = false;
    QString m_filePath;
    QString m_name;
    QString m_partNumber;
    QString m_partNumberAppendix;
    QString m_displayName;
    double m_weight = 0.0;
    Size m_size;
    Size m_outriggersBoundaryMaxSize;
    QMap<QString, Point> m_mountingPoints;
    QMap<QString, Point> m_centerOfGravity;
    double m_shackleHeight = 0.0;
    Point m_shackleHoleOffset;
    double m_pickpointDistance = 0.0;
    double m_loadAdapterXPinholes = 0.0;
    double m_loadAdapterResolution = 0.0;
    QMap<QString, Point> m_connectionPoints;
    QMap<QString, Point> m_connectionPointOffsets;
    QVariantMap m_mechanicalConnectionPoints;
    QMap<QString, QList<Point>> m_views;
    QVariantMap m_pickPoints;
    QVariantMap m_mountingDirection;
    QString m_loadBeamCategoryDisplayName;
    QVariantMap m_loadBeamTypes;
    QMap<QString, Point> m_compressionPullPoint;
    QVariant m_frontLink;
    bool m_automaticMountingDirectionCalculation = false;
    QVariant m_compressionSet;
    bool m_canUseArraySight = false;
    bool m_supportsPullback = false;
    double m_minimumTiltAngle = 0.0;
    double m_maximumTiltAngle = 0.0;
    double m_tiltAngleStepWidth = 0.0;
    bool m_triangulated3dView = false;
    double m_maximumLoad = 0.0;
    double m_maximumLoadSinglePickpoint = 0.0;
    /// Load beam type -> position -> front end of that load beam, filled with the outlines.
    QHash<QString, QHash<QString, Point>> m_loadBeamFrontPoints;
};
