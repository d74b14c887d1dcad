// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMap>
#include <QPointer>
#include <QString>

/**
 * Descriptors by name, as the two registries keep them. Non-owning: descriptors belong
 * to their QObject parent (usually a plugin's root object). The first descriptor added
 * under a name stays; later ones with the same name are ignored.
 *
 * An entry whose descriptor has been destroyed (for example with its plugin, by
 * PluginProvider::Clear()) reads as null rather than dangling, and the name may be
 * registered again. Not locked: fill on one thread, read afterwards.
 */
template<typename Descriptor>
class DescriptorRegistry
{
public:
    /// Registers `descriptor` under its current GetName(); null and taken names are ignored.
    void Add(Descriptor *descriptor)
    {
        if (!descriptor)
            return;
        QPointer<Descriptor> &entry = m_descriptors[descriptor->GetName()];
        if (entry.isNull())
            entry = descriptor;
    }

    /// The descriptor registered under exactly `name` (case-sensitive), or null.
    Descriptor *Get(const QString &name) const { return m_descriptors.value(name).data(); }

    /// Appends the descriptor registered under exactly `name` to `list`, if there is one.
    void Get(QList<Descriptor *> &list, const QString &name) const
    {
        if (Descriptor *descriptor = Get(name))
            list.append(descriptor);
    }

    /// Removes the entry under `descriptor->GetName()`, whichever descriptor it holds.
    void Remove(Descriptor *descriptor) { m_descriptors.remove(descriptor->GetName()); }

    /// Every live registered descriptor, in name order.
    QList<Descriptor *> All() const
    {
        QList<Descriptor *> descriptors;
        for (const QPointer<Descriptor> &entry : m_descriptors) {
            if (entry)
                descriptors.append(entry.data());
        }
        return descriptors;
    }

private:
    QMap<QString, QPointer<Descriptor>> m_descriptors;
};
