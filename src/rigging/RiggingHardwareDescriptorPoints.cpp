// SPDX-License-Identifier: MIT
// The centre of gravity, and which points a rigging descriptor file gives, so that hosts draw no
// zero point for one it leaves out.
#include "RiggingHardwareDescriptor.h"

#include "Vocabulary.h"

using Vocabulary::DefaultKey;

QStringList RiggingHardwareDescriptor::GetDefinedPointKeys(Tolvane::Mounting mounting, const QString &name) const
{
    using Vocabulary::isHeld;
    const QString mountingText = Vocabulary::mountingText(mounting);
    const QString mountingDefault = Vocabulary::mountingKey(mounting, DefaultKey);
    QStringList keys;
    if (isHeld(m_mountingPoints, {Vocabulary::mountingKey(mounting, name), name, mountingDefault, mountingText}))
        keys.append(QStringLiteral("mountingPoint"));
    if (isHeld(m_connectionPoints, {Vocabulary::mountingKey(mounting, name), mountingDefault, mountingText}))
        keys.append(QStringLiteral("connectionPoint"));
    // GetCenterOfGravity() tries "standard" and the load beam positions before "default".
    bool gravity = m_centerOfGravity.contains(QStringLiteral("standard")) || m_centerOfGravity.contains(DefaultKey);
    for (auto type = m_loadBeamTypes.cbegin(); !gravity && type != m_loadBeamTypes.cend(); ++type) {
        const QVariantMap positions = type.value().toMap().value(QStringLiteral("loadBeamPositions")).toMap();
        for (auto position = positions.cbegin(); position != positions.cend(); ++position)
            gravity = gravity || m_centerOfGravity.contains(type.key() + QLatin1Char('_') + position.key());
    }
    if (gravity)
        keys.append(QStringLiteral("centerOfGravity"));
    for (const char *corner : {"front, top", "rear, top", "rear, bottom", "front, bottom", "front, top, compression", "rear, top, compression",
                               "rear, bottom, compression", "front, bottom, compression"}) {
        const QVariant entry = m_mechanicalConnectionPoints.value(QLatin1String(corner));
        const QVariantMap map = entry.toMap();
        if (map.contains(QStringLiteral("x")) || isHeld(map, {name, mountingDefault}))
            keys.append(QLatin1String(corner));
    }
    return keys;
}

Point RiggingHardwareDescriptor::GetCenterOfGravity()
{
    const auto standard = m_centerOfGravity.constFind(QStringLiteral("standard"));
    if (standard != m_centerOfGravity.cend())
        return *standard;
    for (auto type = m_loadBeamTypes.cbegin(); type != m_loadBeamTypes.cend(); ++type) {
        const QVariantMap positions = type.value().toMap().value(QStringLiteral("loadBeamPositions")).toMap();
        for (auto position = positions.cbegin(); position != positions.cend(); ++position) {
            const auto it = m_centerOfGravity.constFind(type.key() + QLatin1Char('_') + position.key());
            if (it != m_centerOfGravity.cend())
                return *it;
        }
    }
    return m_centerOfGravity.value(DefaultKey);
}

QVariant RiggingHardwareDescriptor::GetCenterOfGravityMap()
{
    return QVariant::fromValue(m_centerOfGravity);
}
