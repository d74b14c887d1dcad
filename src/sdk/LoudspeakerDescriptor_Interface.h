// SPDX-License-Identifier: MIT
#pragma once

#include "Point.h"
#include "Size.h"
#include "Tolvane.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

class LoudspeakerSeries_Interface;
class SourcePointDescriptor;

/**
 * What the host may ask of a loudspeaker model (implemented by LoudspeakerDescriptor).
 *
 * Lengths and points are in metres in the cabinet frame (X forwards with the front at x = 0,
 * Y lateral, Z up with the top at z = 0); angles in degrees. A descriptor is filled once when it
 * is constructed and only read afterwards; reading from several threads is safe then.
 *
 * A mounting without its own entry in a file falls back to the entry "default", and then to
 * an empty result (a zero point, an empty list); nothing is reported.
 */
class LoudspeakerDescriptor_Interface
{
public:
    virtual ~LoudspeakerDescriptor_Interface() = default;

    virtual QString GetName() = 0;
    /// The series (plugin root object) that owns this loudspeaker, or null.
    virtual LoudspeakerSeries_Interface *GetLoudspeakerSeries() const = 0;

    virtual QString GetDisplayName() = 0;
    /// The part number, with `withAppendix` immediately followed by its appendix (".000" unless given).
    virtual QString GetPartNumber(bool withAppendix) = 0;
    virtual bool IsDataApproved() const = 0;
    virtual Tolvane::LoudspeakerTypeFlags GetType() = 0;
    /// Weight as the file gives it (kilograms by convention).
    virtual double GetWeight() const = 0;
    /// Outer width, height and depth of the cabinet in metres.
    virtual Size GetSize() = 0;
    /// The cabinet shape name; "Unknown" only for a descriptor that read no file.
    virtual QString GetCabinetShape() = 0;
    virtual double GetTrapAngle() const = 0;
    virtual double GetNominalDispersionHor() const = 0;
    virtual double GetNominalDispersionVer() const = 0;
    virtual double GetFrontEdgeOffset() const = 0;
    virtual double GetRearEdgeOffset() const = 0;
    virtual bool CanBeUsedInMainArrays() const = 0;
    virtual bool CanBeUsedInSubArrays() const = 0;
    virtual bool GetShowBeam() const = 0;
    virtual bool HasAlternateDispersionMode() const = 0;
    virtual bool HasFixedCabinetsPerSubArrayPosition() const = 0;
    virtual bool HasTriangulated3dView() const = 0;
    virtual int GetDefaultCabinetsPerSubArrayPosition() const = 0;
    virtual int GetDefaultCabinetsPerMixedSubArrayPosition() const = 0;
    virtual Tolvane::MixedSubArrayFilterMode GetMixedSubArrayFilterMode() = 0;
    /// Splay angles by name; holds at least "default" (a list of degrees).
    virtual QMap<QString, QVariant> GetSplayAngles() = 0;
    /// The "frontLink" entry of the file, unconverted (invalid when absent).
    virtual QVariant GetFrontMechanicalConnectionPointDescriptor() = 0;

    /// The 3-D quad mesh for a mounting ("3D_<mounting>", else "3D"); empty when there is none.
    virtual QList<Point> Get3dView(Tolvane::Mounting mounting) = 0;
    /// The side outline for a mounting ("side_<mounting>", else "side").
    virtual QList<Point> GetSideView(Tolvane::Mounting mounting) = 0;
    /// The top outline ("top"), the same for every mounting.
    virtual QList<Point> GetTopView() = 0;
    /// A named mounting point: "<mounting>_<name>", the bare name, "<mounting>_default", "<mounting>", "default".
    virtual Point GetMountingPoint(Tolvane::Mounting mounting, const QString &name) = 0;
    /// A named connection point: "<mounting>_<name>", "<mounting>_default", "<mounting>", "default" (never the bare name).
    virtual Point GetConnectionPoint(Tolvane::Mounting mounting, const QString &name) = 0;
    /// The centre of gravity: "<mounting>_default", "<mounting>", "default".
    virtual Point GetCenterOfGravity(Tolvane::Mounting mounting) = 0;
    /// The acoustic centre used to aim the cabinet in a mounting, in metres.
    virtual Point GetCenterOfAudio(Tolvane::Mounting mounting) = 0;
    /// The vertical angle of the acoustic axis in a mounting, degrees (0 when the file gives none).
    virtual double GetCenterOfAudioVerticalAngle(Tolvane::Mounting mounting) = 0;
    /**
     * The four corners that link this cabinet to its neighbours in an array, and their
     * positions under compression, for the splay angles (degrees) to the cabinet before
     * (above, linked at the top corners) and after it (below, linked at the bottom corners).
     */
    virtual QMap<Tolvane::MechanicalConnectionPoint, Point> GetMechanicalConnectionPoints(double previousSplayAngle, double nextSplayAngle) = 0;

    /// The acoustic source points, in file order; owned by the descriptor.
    virtual QList<SourcePointDescriptor *> GetSourcePointDescriptors() = 0;
    /// The amplifier of the first source point ("D80"); empty without source points.
    virtual QString GetDefaultAmplifier() = 0;
    /**
     * The amplifier channels one cabinet takes by default: the "ampChannelCount" of the first
     * source point's default flown controller setup (its lowest-keyed setup when that key has
     * none); 0 without source points or setups.
     */
    virtual int GetDefaultChannelCount() = 0;
    /// The description of a switch in the first source point's default setup for a mounting.
    virtual QString GetSwitchDescription(int switchId, Tolvane::Mounting mounting) = 0;
    /// Whether any source point lists a balloon data file that exists and is not empty.
    virtual bool HasBalloonData() = 0;
    /// Whether the first source point's default setup offers contour coupling (switch 4 or 5 "CPL_5…").
    virtual bool SupportsContourCpl(Tolvane::Mounting mounting) const = 0;
    /// The speaker ids of all source points' controller setups, in source-point order, each once.
    virtual QList<int> GetSpeakerIds() = 0;
};

#define LoudspeakerDescriptor_Interface_iid "com.norvik.Tolvane.LoudspeakerDescriptor_Interface/1.2"
Q_DECLARE_INTERFACE(LoudspeakerDescriptor_Interface, LoudspeakerDescriptor_Interface_iid)
