// SPDX-License-Identifier: MIT
#pragma once

#include "Point.h"
#include "Size.h"
#include "Tolvane.h"

#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

/**
 * What the host may ask of an item of rigging hardware (implemented by RiggingHardwareDescriptor).
 *
 * Lengths and points are in metres in the frame's own coordinates (X forwards, front face at
 * x = 0; Z up, top at z = 0); angles in degrees; weights and loads in the unit of the files.
 * The order of the virtual operations is part of the plugin ABI: never reorder or insert.
 *
 * Read-only once constructed, so it may be queried from several threads. Names that are not
 * in the file fall back to "default" entries and then to a zero point or an empty map.
 */
class RiggingHardwareDescriptor_Interface
{
public:
    virtual ~RiggingHardwareDescriptor_Interface() = default;

    virtual bool IsDataApproved() const = 0;
    virtual QString GetName() = 0;
    /// The "pickPoints" object of the file as a QVariantMap.
    virtual QVariant GetPickPointsMap() = 0;
    virtual double GetShackleHeight() const = 0;
    virtual double GetPickpointDistance() const = 0;
    virtual double GetLoadAdapterXPinholes() const = 0;
    virtual double GetLoadAdapterResolution() const = 0;
    virtual double GetWeight() const = 0;
    virtual Size GetSize() = 0;
    /// The space the outriggers may take; the frame's own size unless the file widens it.
    virtual Size GetOutriggersBoundaryMaxSize() = 0;
    /// The point at which the frame mounts for a mounting and a loudspeaker name.
    virtual Point GetMountingPoint(Tolvane::Mounting mounting, const QString &name) = 0;
    /// A QVariant holding QMap<QString, Point>.
    virtual QVariant GetCompressionPullPointMap() = 0;
    /// The "standard" centre of gravity, else the first load beam type and position listed, else "default".
    virtual Point GetCenterOfGravity() = 0;
    /// A QVariant holding QMap<QString, Point>.
    virtual QVariant GetCenterOfGravityMap() = 0;
    virtual Point GetShackleHoleOffset() = 0;
    /// The four corners (keys 0 to 3) and their compression forms (keys 4 to 7); zero points where unknown.
    virtual QMap<Tolvane::MechanicalConnectionPoint, Point> GetMechanicalConnectionPoints(Tolvane::Mounting mounting, const QString &name) = 0;
    /// The point at which the next element connects, for a mounting and a loudspeaker name.
    virtual Point GetConnectionPoint(Tolvane::Mounting mounting, const QString &name) = 0;
    /// The offset stored for a value (looked up with one decimal, "5.0"), else the "default" offset.
    virtual Point GetConnectionPointOffset(double value) = 0;
    /// A QVariant holding QMap<QString, QList<Point>>: the outlines by view key.
    virtual QVariant GetViews() = 0;
    /// The part number, followed directly by its appendix when `withAppendix` is true.
    virtual QString GetPartNumber(bool withAppendix) = 0;
    virtual QString GetDisplayName() = 0;
    /// The file's "frontLink" value, as read.
    virtual QVariant GetFrontMechanicalConnectionPointDescriptor() = 0;
    virtual bool GetAutomaticMountingDirectionCalculation() const = 0;
    /// The first mounting direction (in key order) that serves `pickPoint`, or an empty string.
    virtual QString GetMountingDirection(int pickPoint) = 0;
    virtual QVariant GetLoadBeamTypesMap() = 0;
    virtual QVariant GetCompressionSetMap() = 0;
    virtual bool CanUseArraySight() const = 0;
    virtual double GetMinimumTiltAngle() const = 0;
    virtual double GetMaximumTiltAngle() const = 0;
    virtual double GetTiltAngleStepWidth() const = 0;
    virtual bool HasTriangulated3dView() const = 0;
    virtual double GetMaximumLoad() const = 0;
    virtual bool HasLoadBeam() const = 0;
};

#define RiggingHardwareDescriptor_Interface_iid "com.norvik.Tolvane.RiggingHardwareDescriptor_Interface/1.0"
Q_DECLARE_INTERFACE(RiggingHardwareDescriptor_Interface, RiggingHardwareDescriptor_Interface_iid)
