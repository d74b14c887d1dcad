// SPDX-License-Identifier: MIT
#include "RiggingHardwareDescriptor.h"

#include "JsonFileLoader.h"

RiggingHardwareDescriptor::RiggingHardwareDescriptor(const QString &filePath, QObject *parent)
    : QObject(parent)
{
    if (!filePath.isEmpty())
        ReadDescriptorFile(filePath);
}

RiggingHardwareDescriptor::~RiggingHardwareDescriptor() = default;

bool RiggingHardwareDescriptor::ReadDescriptorFile(const QString &filePath)
{
    const QVariantMap file = LoadJsonFile(filePath);
    m_name = file.value(QStringLiteral("name")).toString();
    return true;
}

QString RiggingHardwareDescriptor::GetName()
{
    return m_name;
}
