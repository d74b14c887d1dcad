// SPDX-License-Identifier: MIT
#pragma once

#include "DescriptorRegistry.h"
#include "RiggingHardwareDescriptor.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QObject>

/**
 * The registry of rigging hardware descriptors: plugins add theirs, the host looks them up by
 * exact name. Holds plain pointers; the descriptors belong to their plugin's root object.
 */
class NVLPS_EXPORT RiggingHardwareDescriptorProvider : public QObject
{
    Q_OBJECT
public:
    explicit RiggingHardwareDescriptorProvider(QObject *parent = nullptr) : QObject(parent) { }

    /// Registers the descriptor under its name; the first one registered under a name stays.
    void AddRiggingHardwareDescriptor(RiggingHardwareDescriptor *descriptor) { m_registry.Add(descriptor); }
    RiggingHardwareDescriptor *GetRiggingHardwareDescriptor(const QString &name) const { return m_registry.Get(name); }
    void GetRiggingHardwareDescriptor(QList<RiggingHardwareDescriptor *> &list, const QString &name) const { m_registry.Get(list, name); }
    /// Removes whatever is registered under the descriptor's name; deletes nothing.
    void RemoveRiggingHardwareDescriptor(RiggingHardwareDescriptor *descriptor) { m_registry.Remove(descriptor); }
    /// Every registered descriptor, in name order.
    QList<RiggingHardwareDescriptor *> GetRiggingHardwareDescriptors() const { return m_registry.All(); }

private:
    DescriptorRegistry<RiggingHardwareDescriptor> m_registry;
};
