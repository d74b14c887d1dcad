// SPDX-License-Identifier: MIT
#pragma once

#include "RiggingHardwareDescriptor_Interface.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QObject>
#include <QString>

/**
 * One item of rigging hardware (a flying frame, possibly with load beams), read from the
 * JSON descriptor file a plugin ships. Read once in the constructor, read-only afterwards.
 */
class NVLPS_EXPORT RiggingHardwareDescriptor : public QObject, public RiggingHardwareDescriptor_Interface
{
    Q_OBJECT
    Q_INTERFACES(RiggingHardwareDescriptor_Interface)
public:
    /// Reads `filePath` unless it is empty (which leaves an empty item).
    explicit RiggingHardwareDescriptor(const QString &filePath, QObject *parent = nullptr);
    ~RiggingHardwareDescriptor() override;

    QString GetName() override;

private:
    bool ReadDescriptorFile(const QString &filePath);

    QString m_name;
};
