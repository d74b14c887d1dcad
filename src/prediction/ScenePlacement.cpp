// SPDX-License-Identifier: MIT
#include "ScenePlacement_p.h"

#include "LoudspeakerDescriptor.h"
#include "LoudspeakerDescriptorProvider.h"
#include "PluginProvider.h"
#include "RiggingHardwareDescriptor.h"
#include "RiggingHardwareDescriptorProvider.h"
#include "SourcePointDescriptor.h"

#include <cmath>
#include <stdexcept>

namespace ScenePlacement {
namespace {

[[noreturn]] void fail(const QString &message)
{
    throw std::invalid_argument(message.toStdString());
}

constexpr double degree = 3.14159265358979323846 / 180.0;

Vector plus(const Vector &a, const Vector &b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

Vector minus(const Vector &a, const Vector &b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vector vector(const Point &point)
{
    return {point.x(), point.y(), point.z()};
}

LoudspeakerDescriptor *loudspeaker(const QString &name, const QString &where)
{
    LoudspeakerDescriptor *descriptor = PluginProvider::GetInstance().GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(name);
    if (!descriptor)
        fail(QStringLiteral("%1.loudspeaker: \"%2\" is not a registered loudspeaker").arg(where, name));
    if (descriptor->GetSourcePointDescriptors().isEmpty())
        fail(QStringLiteral("%1.loudspeaker: \"%2\" has no source point").arg(where, name));
    return descriptor;
}

QString joined(const QList<double> &values)
{
    QStringList texts;
    for (double value : values)
        texts.append(QString::number(value));
    return texts.join(QStringLiteral(", "));
}

} // namespace

Axes Turned(double yawDeg, double pitchDeg, double rollDeg)
{
    const double cy = std::cos(yawDeg * degree), sy = std::sin(yawDeg * degree);
    const double cp = std::cos(pitchDeg * degree), sp = std::sin(pitchDeg * degree);
    const double cr = std::cos(rollDeg * degree), sr = std::sin(rollDeg * degree);
    // Roll, then pitch, then yaw act on the body axes: R = Rz(yaw) Ry(pitch up) Rx(roll).
    const auto turn = [&](Vector v) -> Vector {
        v = {v[0] * cp - v[2] * sp, v[1], v[0] * sp + v[2] * cp};
        return {v[0] * cy - v[1] * sy, v[0] * sy + v[1] * cy, v[2]};
    };
    Axes axes;
    axes.front = turn({1.0, 0.0, 0.0});
    axes.left = turn({0.0, cr, sr});
    axes.up = turn({0.0, -sr, cr});
    return axes;
}

Cabinet PlaceSource(const PredictionSource &source, const QString &where)
{
    Cabinet cabinet;
    cabinet.loudspeaker = loudspeaker(source.loudspeaker, where);
    cabinet.name = source.loudspeaker;
    cabinet.axes = Turned(source.yawDeg, source.pitchDeg, source.rollDeg);
    bool known = false;
    const Tolvane::Mounting mounting = LoudspeakerDescriptor::ConvertStringToMounting(source.mounting, &known);
    if (!known)
        fail(QStringLiteral("%1.mounting: \"%2\" is not a mounting").arg(where, source.mounting));
    const Point origin = cabinet.loudspeaker->GetSourcePointDescriptors().constFirst()->GetOrigin(mounting);
    cabinet.origin = minus(source.position, cabinet.axes.Apply(vector(origin)));
    return cabinet;
}

// Each cabinet hangs by its mounting point (top front) from the one above it, hinged where the
// upper cabinet's front edge ends, one cabinet height below its mounting point; the first hangs
// from the frame's front-top connection point. Each splay turns the next cabinet further down
// about that hinge.
QList<Cabinet> HangArray(const PredictionArray &array, const QString &where)
{
    RiggingHardwareDescriptor *frame = PluginProvider::GetInstance().GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptor(array.rigging);
    if (!frame)
        fail(QStringLiteral("%1.rigging: \"%2\" is not a registered rigging item").arg(where, array.rigging));
    LoudspeakerDescriptor *speaker = loudspeaker(array.loudspeaker, where);
    const double minimumTilt = frame->GetMinimumTiltAngle(), maximumTilt = frame->GetMaximumTiltAngle();
    if (maximumTilt > minimumTilt && (array.topPitchDeg < minimumTilt || array.topPitchDeg > maximumTilt))
        fail(QStringLiteral("%1.top_pitch_deg: %2 lies outside what \"%3\" allows (%4 ... %5)")
                 .arg(where).arg(array.topPitchDeg).arg(array.rigging).arg(minimumTilt).arg(maximumTilt));
    QList<double> allowed;
    for (const QVariant &angle : speaker->GetSplayAngles().value(QStringLiteral("default")).toList())
        allowed.append(angle.toDouble());
    for (qsizetype i = 0; i < array.splayDeg.size(); ++i) {
        const double splay = array.splayDeg.at(i);
        if (std::none_of(allowed.cbegin(), allowed.cend(), [&](double a) { return std::abs(a - splay) < 1e-9; }))
            fail(QStringLiteral("%1.splay_deg[%2]: %3 is not a splay angle of \"%4\" (allowed: %5)")
                     .arg(where).arg(i).arg(splay).arg(array.loudspeaker, joined(allowed)));
    }

    const Axes frameAxes = Turned(array.yawDeg, 0.0, 0.0);
    const QMap<Tolvane::MechanicalConnectionPoint, Point> framePoints = frame->GetMechanicalConnectionPoints(Tolvane::Flown, QStringLiteral("default"));
    const Point frameHinge = framePoints.contains(Tolvane::FrontTop) ? framePoints.value(Tolvane::FrontTop)
                                                                      : frame->GetConnectionPoint(Tolvane::Flown, QStringLiteral("default"));
    Vector hinge = plus(array.position, frameAxes.Apply(vector(frameHinge)));
    const Vector mountingPoint = vector(speaker->GetMountingPoint(Tolvane::Flown, QStringLiteral("default")));
    const Vector nextHinge = minus(mountingPoint, {0.0, 0.0, speaker->GetSize().height()});

    QList<Cabinet> cabinets;
    double pitch = array.topPitchDeg;
    for (int i = 0; i < array.count; ++i) {
        if (i > 0)
            pitch -= array.splayDeg.at(i - 1);
        Cabinet cabinet;
        cabinet.loudspeaker = speaker;
        cabinet.name = QStringLiteral("%1 #%2").arg(array.loudspeaker).arg(i + 1);
        cabinet.axes = Turned(array.yawDeg, pitch, 0.0);
        cabinet.origin = minus(hinge, cabinet.axes.Apply(mountingPoint));
        hinge = plus(cabinet.origin, cabinet.axes.Apply(nextHinge));
        cabinets.append(cabinet);
    }
    return cabinets;
}

} // namespace ScenePlacement
