// SPDX-License-Identifier: MIT
#pragma once

#include "LoudspeakerDescriptor_Interface.h"
#include "Point.h"
#include "Size.h"
#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

/**
 * One loudspeaker model, read from the JSON descriptor file a plugin ships. A plugin
 * creates it with its root object as parent and registers it with the
 * LoudspeakerDescriptorProvider. Read once in the constructor, read-only afterwards.
 *
 * Reading never fails: missing keys keep their defaults, and only an unknown "type" text
 * (besides the JSON loader and the cabinet shapes) logs a warning.
 *
 * Units as in LoudspeakerDescriptor_Interface: metres in the cabinet frame, degrees. Once
 * constructed it may be read from several threads; its source points load balloons separately.
 */
class NVLPS_EXPORT LoudspeakerDescriptor : public QObject, public LoudspeakerDescriptor_Interface
{
    Q_OBJECT
    Q_INTERFACES(LoudspeakerDescriptor_Interface)
public:
    /// Reads `filePath` unless it is empty (which leaves a blank descriptor).
    explicit LoudspeakerDescriptor(const QString &filePath, QObject *parent = nullptr);
    ~LoudspeakerDescriptor() override;

    /**
     * Reads a descriptor held in memory, as the constructor reads a file, with its whole chain
     * (cabinet shape, source points, DSP channels, controller setups from the resources). Call it
     * once, on a descriptor constructed with an empty path. `sourceName` stands for the path in
     * warnings. Any bytes are safe to pass. Always true.
     */
    bool ReadDescriptorData(const QByteArray &json, const QString &sourceName = QString());

    QString GetName() override { return m_name; }
    /// The file the descriptor was read from (or the source name given with its data); empty for none.
    QString GetFilePath() const { return m_filePath; }
    LoudspeakerSeries_Interface *GetLoudspeakerSeries() const override;
    QString GetDisplayName() override { return m_displayName; }
    QString GetPartNumber(bool withAppendix) override;
    bool IsDataApproved() const override { return m_dataApproved; }
    Tolvane::LoudspeakerTypeFlags GetType() override { return m_type; }
    double GetWeight() const override { return m_weight; }
    Size GetSize() override { return m_size; }
    QString GetCabinetShape() override { return m_cabinetShape; }
    double GetTrapAngle() const override { return m_trapAngle; }
    double GetNominalDispersionHor() const override { return m_nominalDispersionHorizontal; }
    double GetNominalDispersionVer() const override { return m_nominalDispersionVertical; }
    double GetFrontEdgeOffset() const override { return m_frontEdgeOffset; }
    double GetRearEdgeOffset() const override { return m_rearEdgeOffset; }
    bool CanBeUsedInMainArrays() const override { return m_canBeUsedInMainArrays; }
    bool CanBeUsedInSubArrays() const override { return m_canBeUsedInSubArrays; }
    bool GetShowBeam() const override { return m_showBeam; }
    bool HasAlternateDispersionMode() const override { return m_hasAlternateDispersionMode; }
    bool HasFixedCabinetsPerSubArrayPosition() const override { return m_hasFixedCabinetsPerSubArrayPosition; }
    bool HasTriangulated3dView() const override { return m_hasTriangulated3dView; }
    int GetDefaultCabinetsPerSubArrayPosition() const override { return m_defaultCabinetsPerSubArrayPosition; }
    int GetDefaultCabinetsPerMixedSubArrayPosition() const override { return m_defaultCabinetsPerMixedSubArrayPosition; }
    Tolvane::MixedSubArrayFilterMode GetMixedSubArrayFilterMode() override { return m_mixedSubArrayFilterMode; }
    QMap<QString, QVariant> GetSplayAngles() override { return m_splayAngles; }
    QVariant GetFrontMechanicalConnectionPointDescriptor() override { return m_frontLink; }

    QList<Point> Get3dView(Tolvane::Mounting mounting) override;
    QList<Point> GetSideView(Tolvane::Mounting mounting) override;
    QList<Point> GetTopView() override;
    Point GetMountingPoint(Tolvane::Mounting mounting, const QString &name) override;
    Point GetConnectionPoint(Tolvane::Mounting mounting, const QString &name) override;
    Point GetCenterOfGravity(Tolvane::Mounting mounting) override;
    /**
     * Which of the three points above the file gives for `mounting` (the mounting point under
     * `name`): "mountingPoint", "connectionPoint" and "centerOfGravity" where the query finds an
     * entry. The others answer the zero point, which marks no place on the cabinet.
     */
    QStringList GetDefinedPointKeys(Tolvane::Mounting mounting, const QString &name) const;

    /**
     * From "centerOfAudio": its member "center" is either a point valid for every mounting,
     * or a map of points under "<mounting>_default" and "default". Without a match, the
     * default acoustic centre of the cabinet (see GetDefaultCenter()).
     */
    Point GetCenterOfAudio(Tolvane::Mounting mounting) override;
    /**
     * From "centerOfAudio": its member "verticalAngle" is either a number of degrees valid for
     * every mounting, or a map of numbers under "<mounting>_default" and "default"; 0 without a match.
     */
    double GetCenterOfAudioVerticalAngle(Tolvane::Mounting mounting) override;
    /**
     * From "mechanicalConnectionPoints": each corner entry ("front, top", "rear, top",
     * "rear, bottom", "front, bottom", and the same followed by ", compression") is either a
     * point itself (it has "x"), or a map of points under "prev_<angle>" (top corners, with the
     * previous splay angle) or "next_<angle>" (bottom corners, with the next splay angle), the
     * angle written with one decimal ("prev_2.5"), and "default". A corner without an entry is
     * the corner of the cabinet's side outline box: front top (0, 0, 0), rear top (-depth, 0, 0),
     * rear bottom (-depth, 0, -height), front bottom (0, 0, -height). A compression corner
     * without an entry is the same as its uncompressed corner.
     */
    QMap<Tolvane::MechanicalConnectionPoint, Point> GetMechanicalConnectionPoints(double previousSplayAngle, double nextSplayAngle) override;

    QList<SourcePointDescriptor *> GetSourcePointDescriptors() override { return m_sourcePoints; }
    QString GetDefaultAmplifier() override;
    int GetDefaultChannelCount() override;
    QString GetSwitchDescription(int switchId, Tolvane::Mounting mounting) override;
    bool HasBalloonData() override;
    bool SupportsContourCpl(Tolvane::Mounting mounting) const override;
    QList<int> GetSpeakerIds() override;

    /**
     * The centre given to source points that bring none: mid-height of the front face,
     * (0, 0, -height / 2); for a "Monitor" cabinet (-depth / 2, 0, 7/12 of the height).
     */
    Point GetDefaultCenter() const { return m_defaultCenter; }

    /// The text of a mounting ("flown", "stacked", …; "invalid" for -1, empty for unknown values).
    static QString ConvertMountingToString(Tolvane::Mounting mounting);
    /// The mounting a text names, the inverse of ConvertMountingToString(); Invalid, with *ok false, for other texts.
    static Tolvane::Mounting ConvertStringToMounting(const QString &text, bool *ok = nullptr);

private:
    /// The first source point, or null without any; the list holds only points this descriptor created.
    SourcePointDescriptor *FirstSourcePoint() const;
    bool ReadDescriptorFile(const QString &filePath);
    bool ReadDescriptor(const QVariantMap &file, const QString &filePath);
    bool ReadCabinet(const QMap<QString, QVariant> &cabinet);
    bool CreateShape(const QMap<QString, QVariant> &cabinet);

    bool m_dataApproved = true;
    QString m_filePath;
    QString m_name;
    QString m_partNumber;
    QString m_partNumberAppendix;
    QString m_displayName;
    Tolvane::LoudspeakerTypeFlags m_type;
    double m_weight = 0.0;
    double m_nominalDispersionHorizontal = 0.0;
    double m_nominalDispersionVertical = 0.0;
    double m_trapAngle = 0.0;
    double m_frontEdgeOffset = 0.0;
    double m_rearEdgeOffset = 0.0;
    bool m_showBeam = false;
    bool m_canBeUsedInMainArrays = false;
    bool m_canBeUsedInSubArrays = false;
    bool m_hasAlternateDispersionMode = false;
    bool m_hasFixedCabinetsPerSubArrayPosition = false;
    bool m_hasTriangulated3dView = false;
    int m_defaultCabinetsPerSubArrayPosition = 1;
    int m_defaultCabinetsPerMixedSubArrayPosition = 1;
    Size m_size;
    QMap<QString, Point> m_mountingPoints;
    QMap<QString, Point> m_centersOfGravity;
    QMap<QString, Point> m_connectionPoints;
    QMap<QString, QVariant> m_centerOfAudio;
    QMap<QString, QVariant> m_mechanicalConnectionPoints;
    QMap<QString, QVariant> m_splayAngles;
    QMap<QString, QList<Point>> m_views;
    Tolvane::MixedSubArrayFilterMode m_mixedSubArrayFilterMode = Tolvane::MixedSubArrayFilterUndefined;
    QVariant m_frontLink;
    QString m_cabinetShape = QStringLiteral("Unknown");
    Point m_defaultCenter;
    QList<SourcePointDescriptor *> m_sourcePoints;
};
