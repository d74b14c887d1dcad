// SPDX-License-Identifier: MIT
#include "RiggingHardwareDescriptor.h"

#include "CabinetShapeCreator.h"
#include "JsonFileLoader.h"
#include "RiggingOutline_p.h"
#include "ShapeGeometry.h"
#include "Units.h"
#include "Vocabulary.h"

#include <algorithm>

namespace {
using Units::MillimetresPerMetre;
using Vocabulary::DefaultKey;
using Vocabulary::firstHeld;
using ShapeGeometry::millimetres;

QMap<QString, Point> pointMap(const QVariantMap &file, const QString &key)
{
    return Point::fromVariantMap(file.value(key).toMap());
}

/// One corner entry of "mechanicalConnectionPoints": a point itself, else the first of `keys` it holds, else its "default".
Point resolveCorner(const QVariant &entry, std::initializer_list<QString> keys)
{
    const QVariantMap corner = entry.toMap();
    return corner.contains(QStringLiteral("x")) ? Point::fromVariant(entry) : Point::fromVariant(firstHeld(corner, keys));
}

bool isNumber(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}
} // namespace

RiggingHardwareDescriptor::RiggingHardwareDescriptor(const QString &filePath, QObject *parent)
    : QObject(parent)
    , m_filePath(filePath)
    , m_compressionSet(QVariantMap())
{
    if (!filePath.isEmpty())
        ReadDescriptorFile(filePath);
}

RiggingHardwareDescriptor::~RiggingHardwareDescriptor() = default;

bool RiggingHardwareDescriptor::ReadDescriptorFile(const QString &filePath)
{
    return ReadDescriptor(LoadJsonFile(filePath));
}

bool RiggingHardwareDescriptor::ReadDescriptorData(const QByteArray &json, const QString &sourceName)
{
    return ReadDescriptor(LoadJsonData(json, sourceName));
}

bool RiggingHardwareDescriptor::ReadDescriptor(const QVariantMap &file)
{
    m_dataApproved = file.value(QStringLiteral("dataApproved"), true).toBool();
    m_name = file.value(QStringLiteral("name"), QString()).toString();
    m_partNumber = file.value(QStringLiteral("partNumber"), QString()).toString();
    m_partNumberAppendix = file.value(QStringLiteral("partNumberAppendix"), QStringLiteral(".000")).toString();
    m_displayName = file.value(QStringLiteral("displayName"), m_name).toString();
    m_shackleHeight = millimetres(file, QStringLiteral("shackleHeight"));
    m_pickpointDistance = millimetres(file, QStringLiteral("pickpointDistance"));
    m_loadAdapterXPinholes = millimetres(file, QStringLiteral("loadAdapterXPinholes"));
    m_loadAdapterResolution = millimetres(file, QStringLiteral("loadAdapterResolution"), 1000.0);
    m_shackleHoleOffset = Point(millimetres(file, QStringLiteral("shackleHoleOffset")), 0.0, 0.0);
    m_canUseArraySight = file.value(QStringLiteral("canUseArraySight"), false).toBool();
    m_supportsPullback = file.value(QStringLiteral("supportsPullback"), false).toBool();
    m_mountingPoints = pointMap(file, QStringLiteral("mountingPoint"));
    m_compressionSet = file.value(QStringLiteral("compressionSet")).toMap();
    m_maximumLoad = file.value(QStringLiteral("maximumLoad"), 1000.0).toDouble();
    m_maximumLoadSinglePickpoint = file.value(QStringLiteral("maximumLoadSinglePickpoint"), 1000.0).toDouble();

    // The outlines are built here, from the file itself: the keys below are not read yet.
    ReadCabinet(file.value(QStringLiteral("cabinet")).toMap());
    CreateShape(file);

    m_connectionPoints = pointMap(file, QStringLiteral("connectionPoint"));
    m_connectionPointOffsets = pointMap(file, QStringLiteral("connectionPointOffsets"));
    m_mechanicalConnectionPoints = file.value(QStringLiteral("mechanicalConnectionPoints")).toMap();
    m_frontLink = file.value(QStringLiteral("frontLink"));
    m_centerOfGravity = pointMap(file, QStringLiteral("centerOfGravity"));
    m_pickPoints = file.value(QStringLiteral("pickPoints")).toMap();
    m_compressionPullPoint = pointMap(file, QStringLiteral("compressionPullPoint"));
    m_loadBeamTypes = file.value(QStringLiteral("loadBeamTypes")).toMap();
    m_loadBeamCategoryDisplayName = file.value(QStringLiteral("loadBeamCategoryDisplayName"), QStringLiteral("Load beam")).toString();
    m_automaticMountingDirectionCalculation = file.value(QStringLiteral("automaticMountingDirectionCalculation"), QString()).toBool();
    m_mountingDirection = file.value(QStringLiteral("mountingDirection")).toMap();
    return true;
}

bool RiggingHardwareDescriptor::ReadCabinet(const QVariantMap &cabinet)
{
    const QVariant width = cabinet.value(QStringLiteral("width"), 0);
    const QVariant height = cabinet.value(QStringLiteral("height"), 0);
    const QVariant depth = cabinet.value(QStringLiteral("depth"), 0);
    m_size = Size(width.toDouble() / MillimetresPerMetre, height.toDouble() / MillimetresPerMetre, depth.toDouble() / MillimetresPerMetre);
    m_outriggersBoundaryMaxSize = Size(cabinet.value(QStringLiteral("outriggersBoundaryMaxWidth"), width).toDouble() / MillimetresPerMetre,
                                       cabinet.value(QStringLiteral("outriggersBoundaryMaxHeight"), height).toDouble() / MillimetresPerMetre,
                                       cabinet.value(QStringLiteral("outriggersBoundaryMaxDepth"), depth).toDouble() / MillimetresPerMetre);
    m_weight = cabinet.value(QStringLiteral("weight"), 0).toDouble();
    m_minimumTiltAngle = cabinet.value(QStringLiteral("tilt, min"), 0).toDouble();
    m_maximumTiltAngle = cabinet.value(QStringLiteral("tilt, max"), 0).toDouble();
    m_tiltAngleStepWidth = cabinet.value(QStringLiteral("tilt, stepwidth"), 0).toDouble();
    m_triangulated3dView = cabinet.value(QStringLiteral("3D_triangulated"), false).toBool();
    return true;
}

Point RiggingHardwareDescriptor::ReadFrameReferencePoint(const QVariantMap &mechanicalConnectionPoints)
{
    return resolveCorner(mechanicalConnectionPoints.value(QStringLiteral("front, top")), {Vocabulary::mountingKey(Tolvane::Flown, DefaultKey)});
}

RiggingHardwareDescriptor::LoadBeamData RiggingHardwareDescriptor::ReadLoadBeamData(const QVariantMap &loadBeamType, const Point &frameReference)
{
    LoadBeamData data;
    data.width = millimetres(loadBeamType, QStringLiteral("width"));
    data.height = millimetres(loadBeamType, QStringLiteral("height"));
    data.length = millimetres(loadBeamType, QStringLiteral("length"));
    data.weight = loadBeamType.value(QStringLiteral("weight")).toDouble() / MillimetresPerMetre;
    data.profileWidth = millimetres(loadBeamType, QStringLiteral("profileWidth"));
    data.profileLength = millimetres(loadBeamType, QStringLiteral("profileLength"));
    data.profileHeight = millimetres(loadBeamType, QStringLiteral("profileHeight"));
    data.profileBeamIntersection = Point::fromVariant(loadBeamType.value(QStringLiteral("profileBeamIntersection")));
    const QVariantMap positions = loadBeamType.value(QStringLiteral("loadBeamPositions")).toMap();
    for (auto it = positions.cbegin(); it != positions.cend(); ++it) {
        const QVariantMap connectionPoints = it.value().toMap().value(QStringLiteral("mechanicalConnectionPoints")).toMap();
        data.positions.insert(it.key(), Point::fromVariant(connectionPoints.value(QStringLiteral("front"))) - frameReference);
    }
    return data;
}

/*
 * Frame outline. "Arbitrary" frames are drawn by the file ("views" of the cabinet block, or of
 * the file when the block has none), views with a mounting suffix included. A block with any
 * of the frame-outline keys becomes a ladder frame of bars (see RiggingOutline::FrameBoxes).
 * Any other shape name goes to the cabinet shape creator; without one, a frame that has a size
 * is drawn as a plain box of that size.
 *
 * Load beams. For every type and position a load beam outline is added under
 * "3D_<type>_<position>", "top_<type>_<position>" and "side_<type>_<position>", placed at the
 * position's front connection point (frame reference point plus the stored position).
 */
bool RiggingHardwareDescriptor::CreateShape(const QVariantMap &file)
{
    const QVariantMap cabinet = file.value(QStringLiteral("cabinet")).toMap();
    const QString shapeName = cabinet.value(QStringLiteral("cabinetShape")).toString();
    const QString arbitrary = QStringLiteral("Arbitrary");
    const QString viewsKey = QStringLiteral("views");

    m_views.clear();
    if (shapeName == arbitrary) {
        QVariantMap parameters = cabinet;
        if (!parameters.contains(viewsKey) && file.contains(viewsKey))
            parameters.insert(viewsKey, file.value(viewsKey));
        m_views = CabinetShapeCreator::CreateCabinetShapeData(parameters, arbitrary);
    } else if (RiggingOutline::HasFrameOutlineKeys(cabinet)) {
        m_views = RiggingOutline::BoxViews(RiggingOutline::FrameBoxes(cabinet, m_size));
    } else if (!shapeName.isEmpty()) {
        m_views = CabinetShapeCreator::CreateCabinetShapeData(cabinet, shapeName);
    } else if (m_size.width() > 0.0 && m_size.height() > 0.0 && m_size.depth() > 0.0) {
        m_views = CabinetShapeCreator::CreateCabinetShapeData(cabinet, QStringLiteral("Cuboid"));
    }
    UpdateFrameViewPoints();

    m_loadBeamFrontPoints.clear();
    const Point frameReference = ReadFrameReferencePoint(file.value(QStringLiteral("mechanicalConnectionPoints")).toMap());
    const QVariantMap loadBeamTypes = file.value(QStringLiteral("loadBeamTypes")).toMap();
    for (auto type = loadBeamTypes.cbegin(); type != loadBeamTypes.cend(); ++type) {
        const LoadBeamData loadBeam = ReadLoadBeamData(type.value().toMap(), frameReference);
        const bool hangsOnProfile = loadBeam.profileHeight > 0.0 && loadBeam.profileLength > 0.0;
        for (auto position = loadBeam.positions.cbegin(); position != loadBeam.positions.cend(); ++position) {
            const Point pin = frameReference + *position;
            Point frontEnd = pin;
            const QMap<QString, QList<Point>> outline = hangsOnProfile ? CreateShapeTriangleWithLoadBeam(loadBeam, pin, frontEnd)
                                                                       : CreateShapeLoadBeam(loadBeam, pin);
            for (auto view = outline.cbegin(); view != outline.cend(); ++view)
                m_views.insert(QStringLiteral("%1_%2_%3").arg(view.key(), type.key(), position.key()), view.value());
            frontEnd.SetName(QString());
            m_loadBeamFrontPoints[type.key()].insert(position.key(), frontEnd);
        }
    }
    return true;
}

/*
 * A frame that supports pullback also hangs upside down under an array: its pullback outlines
 * are the frame views turned over within the frame's height, unless the file draws them.
 */
void RiggingHardwareDescriptor::UpdateFrameViewPoints()
{
    if (!m_supportsPullback)
        return;
    const QString suffix = QStringLiteral("_pullback");
    const double height = m_size.height();
    // "3D_triangulated" frames draw their 3D view as triangles, the others as quads.
    const int faceCorners = m_triangulated3dView ? 3 : 4;
    const auto derive = [&](const QString &key, int corners) {
        if (m_views.contains(key) && !m_views.contains(key + suffix))
            m_views.insert(key + suffix, corners < 0 ? m_views.value(key) : RiggingOutline::Flipped(m_views.value(key), height, corners));
    };
    derive(ShapeGeometry::View3d, faceCorners);
    derive(ShapeGeometry::ViewSide, 0);
    derive(ShapeGeometry::ViewTop, -1);
}

/*
 * A load beam on its own: a box `length` long behind its front end, `width` wide and `height`
 * high above it. The front end is the bottom centre of the beam's front face.
 */
QMap<QString, QList<Point>> RiggingHardwareDescriptor::CreateShapeLoadBeam(const LoadBeamData &loadBeam, const Point &frontEnd)
{
    const double halfWidth = loadBeam.width * 0.5;
    const RiggingOutline::Box beam{frontEnd.x() - loadBeam.length, frontEnd.x(), frontEnd.y() - halfWidth, frontEnd.y() + halfWidth,
                                   frontEnd.z(), frontEnd.z() + loadBeam.height};
    return {
        {ShapeGeometry::View3d, RiggingOutline::BoxFaces(beam)},
        {ShapeGeometry::ViewTop, RiggingOutline::BoxTopFace(beam)},
        {ShapeGeometry::ViewSide, RiggingOutline::SideSilhouette({beam})},
    };
}

/*
 * A load beam hung on a triangular profile, seen from the side (X forwards = right):
 *
 *     +----------------------------------------+   beam top
 *     |                 beam                   |
 *     +------------------+=======+-------------+   beam underside, profileHeight above the pin
 *                         \  i  /                  i: where the profile meets the beam, at
 *                          \   /                      profileBeamIntersection from the beam's front end
 *                           \ /                    base: profileLength along the beam (kept on it)
 *                            o pin                 thickness: profileWidth (the beam's width if 0)
 *
 * The pin is the position's front connection point; i lies straight above it. The profile's
 * z is taken from the beam underside, so only x and y of profileBeamIntersection count.
 */
QMap<QString, QList<Point>> RiggingHardwareDescriptor::CreateShapeTriangleWithLoadBeam(const LoadBeamData &loadBeam, const Point &pin, Point &frontEnd)
{
    const Point intersection(pin.x(), pin.y(), pin.z() + loadBeam.profileHeight);
    frontEnd = Point(intersection.x() - loadBeam.profileBeamIntersection.x(), intersection.y() - loadBeam.profileBeamIntersection.y(), intersection.z());
    QMap<QString, QList<Point>> views = CreateShapeLoadBeam(loadBeam, frontEnd);

    const double beamRear = frontEnd.x() - loadBeam.length;
    // Kept on the beam; min/max rather than std::clamp, which a negative length would break.
    const auto onBeam = [&](double x) { return std::max(beamRear, std::min(x, frontEnd.x())); };
    const double baseFront = onBeam(intersection.x() + loadBeam.profileLength * 0.5);
    const double baseRear = onBeam(intersection.x() - loadBeam.profileLength * 0.5);
    const double halfThickness = (loadBeam.profileWidth > 0.0 ? loadBeam.profileWidth : loadBeam.width) * 0.5;
    const double right = intersection.y() - halfThickness;
    const double left = intersection.y() + halfThickness;
    const double baseZ = intersection.z();

    // The two triangular faces are quads whose last corner repeats the pin; the slanted faces
    // run from the base edges down to the pin's edge. Corners run counter-clockwise seen from outside.
    const Point pinRight(pin.x(), right, pin.z());
    const Point pinLeft(pin.x(), left, pin.z());
    views[ShapeGeometry::View3d] += {
        Point(baseFront, right, baseZ), Point(baseRear, right, baseZ), pinRight, pinRight,
        Point(baseRear, left, baseZ), Point(baseFront, left, baseZ), pinLeft, pinLeft,
        Point(baseFront, left, baseZ), Point(baseFront, right, baseZ), pinRight, pinLeft,
        Point(baseRear, left, baseZ), pinLeft, pinRight, Point(baseRear, right, baseZ),
    };

    // Side: the beam's outline with the profile hanging from its underside, one polygon.
    const double beamTop = frontEnd.z() + loadBeam.height;
    QList<Point> side;
    const auto add = [&side](double x, double z) {
        const Point p(x, 0.0, z);
        if (side.isEmpty() || side.last() != p)
            side.append(p);
    };
    add(frontEnd.x(), beamTop);
    add(beamRear, beamTop);
    add(beamRear, baseZ);
    add(baseRear, baseZ);
    add(pin.x(), pin.z());
    add(baseFront, baseZ);
    add(frontEnd.x(), baseZ);
    views.insert(ShapeGeometry::ViewSide, side);
    return views;
}

void RiggingHardwareDescriptor::ExtractViewKeys(const QMap<QString, QList<Point>> &views, QString &key3D, QString &keySide, QString &keyTop)
{
    const auto pick = [&views](QString &key, const QString &base) {
        const QString flown = base + QStringLiteral("_flown");
        if (views.contains(flown))
            key = flown;
        else if (views.contains(base))
            key = base;
    };
    pick(key3D, ShapeGeometry::View3d);
    pick(keySide, ShapeGeometry::ViewSide);
    pick(keyTop, ShapeGeometry::ViewTop);
}

Point RiggingHardwareDescriptor::GetMountingPoint(Tolvane::Mounting mounting, const QString &name)
{
    return firstHeld(m_mountingPoints,
                     {Vocabulary::mountingKey(mounting, name), name, Vocabulary::mountingKey(mounting, DefaultKey), Vocabulary::mountingText(mounting)});
}

QVariant RiggingHardwareDescriptor::GetCompressionPullPointMap()
{
    return QVariant::fromValue(m_compressionPullPoint);
}

QMap<Tolvane::MechanicalConnectionPoint, Point> RiggingHardwareDescriptor::GetMechanicalConnectionPoints(Tolvane::Mounting mounting, const QString &name)
{
    static const QString corners[] = {QStringLiteral("front, top"), QStringLiteral("rear, top"), QStringLiteral("rear, bottom"),
                                      QStringLiteral("front, bottom")};
    const std::initializer_list<QString> keys{name, Vocabulary::mountingKey(mounting, DefaultKey)};
    const QString compression = QStringLiteral(", compression");

    QMap<Tolvane::MechanicalConnectionPoint, Point> points;
    for (int i = 0; i < 8; ++i)
        points.insert(static_cast<Tolvane::MechanicalConnectionPoint>(i), Point());
    for (int i = 0; i < 4; ++i) {
        points.insert(static_cast<Tolvane::MechanicalConnectionPoint>(i),
                      resolveCorner(m_mechanicalConnectionPoints.value(corners[i]), keys));
        const auto compressed = m_mechanicalConnectionPoints.constFind(corners[i] + compression);
        if (compressed != m_mechanicalConnectionPoints.cend())
            points.insert(static_cast<Tolvane::MechanicalConnectionPoint>(i + 4), resolveCorner(*compressed, keys));
    }
    return points;
}

Point RiggingHardwareDescriptor::GetConnectionPoint(Tolvane::Mounting mounting, const QString &name)
{
    return firstHeld(m_connectionPoints,
                     {Vocabulary::mountingKey(mounting, name), Vocabulary::mountingKey(mounting, DefaultKey), Vocabulary::mountingText(mounting)});
}

Point RiggingHardwareDescriptor::GetConnectionPointOffset(double value)
{
    return firstHeld(m_connectionPointOffsets, {QString::number(value, 'f', 1)});
}

QVariant RiggingHardwareDescriptor::GetViews()
{
    return QVariant::fromValue(m_views);
}

QString RiggingHardwareDescriptor::GetPartNumber(bool withAppendix)
{
    return withAppendix ? m_partNumber + m_partNumberAppendix : m_partNumber;
}

QString RiggingHardwareDescriptor::GetMountingDirection(int pickPoint)
{
    const QString singlePickPoint = QStringLiteral("singlePickPoint");
    for (auto it = m_mountingDirection.cbegin(); it != m_mountingDirection.cend(); ++it) {
        const QVariantMap direction = it.value().toMap();
        if (!direction.contains(singlePickPoint))
            return it.key();
        const QVariantList pickPoints = direction.value(singlePickPoint).toList();
        const bool serves = std::any_of(pickPoints.cbegin(), pickPoints.cend(),
                                        [pickPoint](const QVariant &v) { return isNumber(v) && v.toDouble() == pickPoint; });
        if (serves)
            return it.key();
    }
    return QString();
}

bool RiggingHardwareDescriptor::HasLoadBeam() const
{
    return !m_loadBeamTypes.isEmpty();
}

double RiggingHardwareDescriptor::GetLoadBeamFrontOffset(const QString &loadBeamType, const QString &position) const
{
    return m_loadBeamFrontPoints.value(loadBeamType).value(position).x();
}
