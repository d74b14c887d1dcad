// SPDX-License-Identifier: MIT
#include "LoudspeakerDescriptor.h"

#include "CabinetShapeCreator.h"
#include "DspChannelDescriptor.h"
#include "JsonFileLoader.h"
#include "LoudspeakerSeries_Interface.h"
#include "LoudspeakerSetup.h"
#include "ShapeGeometry.h"
#include "SourcePointDescriptor.h"
#include "Vocabulary.h"
#include "Warning.h"

#include <algorithm>

namespace {
using ShapeGeometry::millimetres;
using Vocabulary::DefaultKey;
using Vocabulary::firstHeld;

using ShapeGeometry::View3d;
using ShapeGeometry::ViewSide;
using ShapeGeometry::ViewTop;

Tolvane::LoudspeakerTypeFlags typeFromText(const QString &text, bool *known)
{
    static const QMap<QString, Tolvane::LoudspeakerTypeFlags> types{
        {QStringLiteral("narrow dispersion"), Tolvane::NarrowDispersion},
        {QStringLiteral("wide dispersion"), Tolvane::WideDispersion},
        {QStringLiteral("Sub"), Tolvane::Sub},
        {QStringLiteral("Top"), Tolvane::Top},
        {QStringLiteral("Point Source"), Tolvane::PointSource},
        {QStringLiteral("Line Array Top, narrow dispersion"), Tolvane::Top | Tolvane::NarrowDispersion},
        {QStringLiteral("Line Array Top, wide dispersion"), Tolvane::Top | Tolvane::WideDispersion},
    };
    const auto it = types.constFind(text);
    *known = it != types.cend();
    return *known ? it.value() : Tolvane::LoudspeakerTypeFlags();
}

bool isPointForm(const QVariant &value)
{
    return value.metaType().id() == QMetaType::QVariantList || value.toMap().contains(QStringLiteral("x"));
}
} // namespace

LoudspeakerDescriptor::LoudspeakerDescriptor(const QString &filePath, QObject *parent)
    : QObject(parent)
{
    if (!filePath.isEmpty())
        ReadDescriptorFile(filePath);
}

LoudspeakerDescriptor::~LoudspeakerDescriptor() = default;

bool LoudspeakerDescriptor::ReadDescriptorFile(const QString &filePath)
{
    return ReadDescriptor(LoadJsonFile(filePath), filePath);
}

bool LoudspeakerDescriptor::ReadDescriptorData(const QByteArray &json, const QString &sourceName)
{
    return ReadDescriptor(LoadJsonData(json, sourceName), sourceName);
}

bool LoudspeakerDescriptor::ReadDescriptor(const QVariantMap &file, const QString &filePath)
{
    m_filePath = filePath;
    m_dataApproved = file.value(QStringLiteral("dataApproved"), true).toBool();
    m_name = file.value(QStringLiteral("name"), QString()).toString();
    m_partNumber = file.value(QStringLiteral("partNumber"), QString()).toString();
    m_partNumberAppendix = file.value(QStringLiteral("partNumberAppendix"), QStringLiteral(".000")).toString();
    m_displayName = file.value(QStringLiteral("displayName"), m_name).toString();

    bool knownType = false;
    m_type = typeFromText(file.value(QStringLiteral("type"), QString()).toString(), &knownType);
    if (!knownType)
        lpsdkWarning(lcDescriptor, "Unknown loudspeaker type: ", filePath); // the path tells which file to fix

    ReadCabinet(file.value(QStringLiteral("cabinet"), QVariantMap()).toMap());
    // Source points without a centre of their own sit here; it needs the size and shape.
    if (m_cabinetShape == QLatin1String("Monitor"))
        m_defaultCenter = Point(-m_size.depth() / 2.0, 0.0, (m_size.height() + m_size.height() / 6.0) / 2.0);
    else
        m_defaultCenter = Point(0.0, 0.0, -m_size.height() / 2.0);

    m_mountingPoints = Point::fromVariantMap(file.value(QStringLiteral("mountingPoint"), QVariantMap()).toMap());
    m_centersOfGravity = Point::fromVariantMap(file.value(QStringLiteral("centerOfGravity"), QVariantMap()).toMap());
    m_centerOfAudio = file.value(QStringLiteral("centerOfAudio"), QVariantMap()).toMap();
    m_connectionPoints = Point::fromVariantMap(file.value(QStringLiteral("connectionPoint"), QVariantMap()).toMap());

    const QVariantMap dispersion = file.value(QStringLiteral("nominalDispersion"), QVariantMap()).toMap();
    m_nominalDispersionHorizontal = dispersion.value(QStringLiteral("horizontal"), 0.0).toDouble();
    m_nominalDispersionVertical = dispersion.value(QStringLiteral("vertical"), 0.0).toDouble();

    m_frontEdgeOffset = millimetres(file, QStringLiteral("frontEdgeOffset"));
    m_rearEdgeOffset = millimetres(file, QStringLiteral("rearEdgeOffset"));
    m_canBeUsedInMainArrays = file.value(QStringLiteral("canBeUsedInMainArrays"), false).toBool();
    m_canBeUsedInSubArrays = file.value(QStringLiteral("canBeUsedInSubArrays"), false).toBool();
    m_showBeam = file.value(QStringLiteral("showBeam"), false).toBool();
    m_hasAlternateDispersionMode = file.value(QStringLiteral("hasAlternateDispersionMode"), false).toBool();
    m_hasFixedCabinetsPerSubArrayPosition = file.value(QStringLiteral("hasFixedCabinetsPerSubArrayPosition"), false).toBool();
    m_defaultCabinetsPerSubArrayPosition = file.value(QStringLiteral("defaultCabinetsPerSubArrayPosition"), 1).toInt();
    m_defaultCabinetsPerMixedSubArrayPosition = file.value(QStringLiteral("defaultCabinetsPerMixedSubArrayPosition"), 1).toInt();
    m_mixedSubArrayFilterMode = static_cast<Tolvane::MixedSubArrayFilterMode>(file.value(QStringLiteral("mixedSubArrayFilterMode"), -1).toInt());

    m_splayAngles = file.value(QStringLiteral("splayAngles"), QVariantMap()).toMap();
    if (m_splayAngles.isEmpty())
        m_splayAngles.insert(DefaultKey, QVariantList{0.0});
    m_mechanicalConnectionPoints = file.value(QStringLiteral("mechanicalConnectionPoints"), QVariantMap()).toMap();
    m_frontLink = file.value(QStringLiteral("frontLink"));

    const QVariantList sourcePoints = file.value(QStringLiteral("sourcePoints"), QVariantList()).toList();
    for (const QVariant &entry : sourcePoints) {
        auto *sourcePoint = new SourcePointDescriptor(this);
        sourcePoint->Read(entry.toMap());
        if (sourcePoint->GetCenterMap().isEmpty())
            sourcePoint->SetCenterMap({{DefaultKey, m_defaultCenter}});
        m_sourcePoints.append(sourcePoint);
    }
    return true;
}

bool LoudspeakerDescriptor::ReadCabinet(const QMap<QString, QVariant> &cabinet)
{
    m_size = Size(millimetres(cabinet, QStringLiteral("width")), millimetres(cabinet, QStringLiteral("height")),
                  millimetres(cabinet, QStringLiteral("depth")));
    m_hasTriangulated3dView = cabinet.value(QStringLiteral("3D_triangulated"), false).toBool();
    m_weight = cabinet.value(QStringLiteral("weight"), 0).toDouble();
    m_trapAngle = cabinet.value(QStringLiteral("trapAngle"), 0.0).toDouble();
    return CreateShape(cabinet);
}

bool LoudspeakerDescriptor::CreateShape(const QMap<QString, QVariant> &cabinet)
{
    m_cabinetShape = cabinet.value(QStringLiteral("cabinetShape"), QStringLiteral("Arbitrary")).toString();
    m_views = CabinetShapeCreator::CreateCabinetShapeData(cabinet, m_cabinetShape);
    const QString cabinetName = cabinet.value(QStringLiteral("name")).toString();

    // A file that draws its own views asks for them to be checked; the creator's are checked then.
    const QVariantMap fileViews = cabinet.value(QStringLiteral("views")).toMap();
    if (!(fileViews.contains(View3d) && fileViews.contains(ViewTop) && fileViews.contains(ViewSide)))
        return true;

    QString messages;
    const QList<Point> mesh = m_views.value(View3d);
    if (mesh.isEmpty())
        messages += QLatin1String("Empty point list for 3D view.");
    if (mesh.size() % 4 != 0)
        messages += QLatin1String("Invalid quad mesh for 3D view.");
    if (m_views.value(ViewTop).isEmpty())
        messages += QLatin1String("Empty point list for top view.");
    if (m_views.value(ViewSide).isEmpty())
        messages += QLatin1String("Empty point list for side view.");
    if (!messages.isEmpty()) {
        const QString text = QStringLiteral("Validation failed for [name:%1] [keys:%2/%3/%4]:").arg(cabinetName, View3d, ViewTop, ViewSide);
        lpsdkWarning(lcDescriptor, text.toUtf8().constData(), messages);
    }
    return true;
}

LoudspeakerSeries_Interface *LoudspeakerDescriptor::GetLoudspeakerSeries() const
{
    return qobject_cast<LoudspeakerSeries_Interface *>(parent());
}

QString LoudspeakerDescriptor::GetPartNumber(bool withAppendix)
{
    return withAppendix ? m_partNumber + m_partNumberAppendix : m_partNumber;
}

QList<Point> LoudspeakerDescriptor::Get3dView(Tolvane::Mounting mounting)
{
    const auto it = m_views.constFind(QStringLiteral("3D_%1").arg(ConvertMountingToString(mounting)));
    return it != m_views.cend() ? it.value() : m_views.value(View3d);
}

QList<Point> LoudspeakerDescriptor::GetSideView(Tolvane::Mounting mounting)
{
    const auto it = m_views.constFind(QStringLiteral("side_%1").arg(ConvertMountingToString(mounting)));
    return it != m_views.cend() ? it.value() : m_views.value(ViewSide);
}

QList<Point> LoudspeakerDescriptor::GetTopView()
{
    return m_views.value(ViewTop);
}

Point LoudspeakerDescriptor::GetMountingPoint(Tolvane::Mounting mounting, const QString &name)
{
    // A mounting point may be given by its bare name, valid for every mounting.
    return firstHeld(m_mountingPoints,
                     {Vocabulary::mountingKey(mounting, name), name, Vocabulary::mountingKey(mounting, DefaultKey), ConvertMountingToString(mounting)});
}

Point LoudspeakerDescriptor::GetConnectionPoint(Tolvane::Mounting mounting, const QString &name)
{
    // Unlike mounting points, a connection point always carries its mounting in the key.
    return firstHeld(m_connectionPoints,
                     {Vocabulary::mountingKey(mounting, name), Vocabulary::mountingKey(mounting, DefaultKey), ConvertMountingToString(mounting)});
}

Point LoudspeakerDescriptor::GetCenterOfGravity(Tolvane::Mounting mounting)
{
    return firstHeld(m_centersOfGravity, {Vocabulary::mountingKey(mounting, DefaultKey), ConvertMountingToString(mounting)});
}

QStringList LoudspeakerDescriptor::GetDefinedPointKeys(Tolvane::Mounting mounting, const QString &name) const
{
    using Vocabulary::isHeld;
    const QString mountingText = ConvertMountingToString(mounting);
    const QString mountingDefault = Vocabulary::mountingKey(mounting, DefaultKey);
    QStringList keys;
    if (isHeld(m_mountingPoints, {Vocabulary::mountingKey(mounting, name), name, mountingDefault, mountingText}))
        keys.append(QStringLiteral("mountingPoint"));
    if (isHeld(m_connectionPoints, {Vocabulary::mountingKey(mounting, name), mountingDefault, mountingText}))
        keys.append(QStringLiteral("connectionPoint"));
    if (isHeld(m_centersOfGravity, {mountingDefault, mountingText}))
        keys.append(QStringLiteral("centerOfGravity"));
    return keys;
}

Point LoudspeakerDescriptor::GetCenterOfAudio(Tolvane::Mounting mounting)
{
    const QVariant center = m_centerOfAudio.value(QStringLiteral("center"));
    if (isPointForm(center))
        return Point::fromVariant(center);
    const QVariantMap perMounting = center.toMap();
    const QVariant value = firstHeld(perMounting, {Vocabulary::mountingKey(mounting, DefaultKey)});
    return value.isValid() ? Point::fromVariant(value) : m_defaultCenter;
}

double LoudspeakerDescriptor::GetCenterOfAudioVerticalAngle(Tolvane::Mounting mounting)
{
    const QVariant angle = m_centerOfAudio.value(QStringLiteral("verticalAngle"));
    if (angle.metaType().id() != QMetaType::QVariantMap)
        return angle.toDouble();
    return firstHeld(angle.toMap(), {Vocabulary::mountingKey(mounting, DefaultKey)}).toDouble();
}

QMap<Tolvane::MechanicalConnectionPoint, Point> LoudspeakerDescriptor::GetMechanicalConnectionPoints(double previousSplayAngle, double nextSplayAngle)
{
    struct Corner {
        const char *name;
        Tolvane::MechanicalConnectionPoint key;
        Tolvane::MechanicalConnectionPoint compressionKey;
        bool top;
        Point outline;
    };
    const double d = m_size.depth();
    const double h = m_size.height();
    const Corner corners[] = {
        {"front, top", Tolvane::FrontTop, Tolvane::FrontTopCompression, true, Point(0.0, 0.0, 0.0)},
        {"rear, top", Tolvane::RearTop, Tolvane::RearTopCompression, true, Point(-d, 0.0, 0.0)},
        {"rear, bottom", Tolvane::RearBottom, Tolvane::RearBottomCompression, false, Point(-d, 0.0, -h)},
        {"front, bottom", Tolvane::FrontBottom, Tolvane::FrontBottomCompression, false, Point(0.0, 0.0, -h)},
    };
    // The top corners link to the cabinet before this one, the bottom corners to the one after.
    const QString previousKey = QStringLiteral("prev_%1").arg(QString::number(previousSplayAngle, 'f', 1));
    const QString nextKey = QStringLiteral("next_%1").arg(QString::number(nextSplayAngle, 'f', 1));
    const auto resolve = [&](const QString &name, const QString &linkKey, const Point &fallback) {
        const auto it = m_mechanicalConnectionPoints.constFind(name);
        if (it == m_mechanicalConnectionPoints.cend())
            return fallback;
        if (isPointForm(it.value()))
            return Point::fromVariant(it.value());
        const QVariant value = firstHeld(it.value().toMap(), {linkKey});
        return value.isValid() ? Point::fromVariant(value) : fallback;
    };

    QMap<Tolvane::MechanicalConnectionPoint, Point> points;
    for (const Corner &corner : corners) {
        const QString name = QLatin1String(corner.name);
        const QString &linkKey = corner.top ? previousKey : nextKey;
        const Point point = resolve(name, linkKey, corner.outline);
        points.insert(corner.key, point);
        points.insert(corner.compressionKey, resolve(name + QLatin1String(", compression"), linkKey, point));
    }
    return points;
}

SourcePointDescriptor *LoudspeakerDescriptor::FirstSourcePoint() const
{
    return m_sourcePoints.value(0, nullptr);
}

QString LoudspeakerDescriptor::GetDefaultAmplifier()
{
    SourcePointDescriptor *sourcePoint = FirstSourcePoint();
    return sourcePoint ? sourcePoint->GetDefaultAmplifier() : QString();
}

int LoudspeakerDescriptor::GetDefaultChannelCount()
{
    SourcePointDescriptor *sourcePoint = FirstSourcePoint();
    DspChannelDescriptor *channel = sourcePoint ? sourcePoint->GetDspChannelDescriptor(sourcePoint->GetDefaultAmplifier()) : nullptr;
    if (!channel)
        return 0;
    const QMap<int, LoudspeakerSetup *> setups = channel->GetLoudspeakerSetups();
    LoudspeakerSetup *setup = setups.value(channel->GetDefaultLoudspeakerSetupKey(Tolvane::Flown));
    if (!setup && !setups.isEmpty())
        setup = setups.first();
    return setup ? setup->getAmpChannelCount() : 0;
}

QString LoudspeakerDescriptor::GetSwitchDescription(int switchId, Tolvane::Mounting mounting)
{
    SourcePointDescriptor *sourcePoint = FirstSourcePoint();
    return sourcePoint ? sourcePoint->GetSwitchDescription(switchId, mounting) : QString();
}

bool LoudspeakerDescriptor::HasBalloonData()
{
    return std::any_of(m_sourcePoints.cbegin(), m_sourcePoints.cend(),
                       [](const SourcePointDescriptor *sourcePoint) { return sourcePoint->HasBalloonFiles(); });
}

bool LoudspeakerDescriptor::SupportsContourCpl(Tolvane::Mounting mounting) const
{
    SourcePointDescriptor *sourcePoint = FirstSourcePoint();
    if (!sourcePoint)
        return false;
    const QLatin1String contour("CPL_5");
    return sourcePoint->GetSwitchDescription(Vocabulary::LowCouplingSwitch, mounting).startsWith(contour)
        || sourcePoint->GetSwitchDescription(Vocabulary::MidCouplingSwitch, mounting).startsWith(contour);
}

QList<int> LoudspeakerDescriptor::GetSpeakerIds()
{
    QList<int> ids;
    for (SourcePointDescriptor *sourcePoint : std::as_const(m_sourcePoints)) {
        for (int id : sourcePoint->GetSpeakerIds()) {
            if (!ids.contains(id))
                ids.append(id);
        }
    }
    return ids;
}

QString LoudspeakerDescriptor::ConvertMountingToString(Tolvane::Mounting mounting)
{
    return Vocabulary::mountingText(mounting);
}

Tolvane::Mounting LoudspeakerDescriptor::ConvertStringToMounting(const QString &text, bool *ok)
{
    return Vocabulary::parseMounting(text, ok);
}
