// SPDX-License-Identifier: MIT
#pragma once

#include "DescriptorRegistry.h"
#include "LoudspeakerDescriptor.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QObject>

/**
 * The registry of loudspeaker descriptors: plugins add theirs, the host looks them up by
 * exact name. Holds plain pointers; the descriptors belong to their plugin's root object.
 */
class NVLPS_EXPORT LoudspeakerDescriptorProvider : public QObject
{
    Q_OBJECT
public:
    explicit LoudspeakerDescriptorProvider(QObject *parent = nullptr) : QObject(parent) { }

    /// Registers the descriptor under its name; the first one registered under a name stays.
    void AddLoudspeakerDescriptor(LoudspeakerDescriptor *descriptor) { m_registry.Add(descriptor); }
    LoudspeakerDescriptor *GetLoudspeakerDescriptor(const QString &name) const { return m_registry.Get(name); }
    void GetLoudspeakerDescriptor(QList<LoudspeakerDescriptor *> &list, const QString &name) const { m_registry.Get(list, name); }
    /// Removes whatever is registered under the descriptor's name; deletes nothing.
    void RemoveLoudspeakerDescriptor(LoudspeakerDescriptor *descriptor) { m_registry.Remove(descriptor); }
    /// Every registered descriptor, in name order.
    QList<LoudspeakerDescriptor *> GetLoudspeakerDescriptors() const { return m_registry.All(); }

private:
    DescriptorRegistry<LoudspeakerDescriptor> m_registry;
};
