// SPDX-License-Identifier: MIT
#include "LoudspeakerDescriptor.h"

#include "JsonFileLoader.h"
#include "LoudspeakerSeries_Interface.h"

LoudspeakerDescriptor::LoudspeakerDescriptor(const QString &filePath, QObject *parent)
    : QObject(parent)
{
    if (!filePath.isEmpty())
        ReadDescriptorFile(filePath);
}

LoudspeakerDescriptor::~LoudspeakerDescriptor() = default;

bool LoudspeakerDescriptor::ReadDescriptorFile(const QString &filePath)
{
    const QVariantMap file = LoadJsonFile(filePath);
    m_name = file.value(QStringLiteral("name")).toString();
    return true;
}

QString LoudspeakerDescriptor::GetName()
{
    return m_name;
}

LoudspeakerSeries_Interface *LoudspeakerDescriptor::GetLoudspeakerSeries() const
{
    return qobject_cast<LoudspeakerSeries_Interface *>(parent());
}

QString LoudspeakerDescriptor::ConvertMountingToString(Tolvane::Mounting mounting)
{
    switch (mounting) {
    case Tolvane::Invalid:
        return QStringLiteral("invalid");
    case Tolvane::Flown:
        return QStringLiteral("flown");
    case Tolvane::Stacked:
        return QStringLiteral("stacked");
    case Tolvane::FlownHorizontal:
        return QStringLiteral("flown_horizontal");
    case Tolvane::StackedHorizontal:
        return QStringLiteral("stacked_horizontal");
    case Tolvane::StackedCart:
        return QStringLiteral("stacked_cart");
    case Tolvane::FlownInstall:
        return QStringLiteral("flown_install");
    case Tolvane::FlownPullback:
        return QStringLiteral("flown_pullback");
    }
    return QString();
}
