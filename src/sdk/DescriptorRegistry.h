// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMap>
#include <QString>

/**
 * Descriptors by name, as the two registries keep them. Non-owning: descriptors belong
 * to their QObject parent. The first descriptor added under a name stays; later ones
 * with the same name are ignored. Not locked: fill on one thread, read afterwards.
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
        const QString name = descriptor->GetName();
        if (!m_descriptors.contains(name))
            m_descriptors.insert(name, descriptor);
    }

    /// The descriptor registered under exactly `name` (case-sensitive), or null.
    Descriptor *Get(const QString &name) const { return m_descriptors.value(name, nullptr); }

    /// Appends the descriptor registered under exactly `name` to `list`, if there is one.
    void Get(QList<Descriptor *> &list, const QString &name) const
    {
        const auto it = m_descriptors.constFind(name);
        if (it != m_descriptors.cend())
            list.append(it.value());
    }

    /// Removes the entry under `descriptor->GetName()`, whichever descriptor it holds.
    void Remove(Descriptor *descriptor) { m_descriptors.remove(descriptor->GetName()); }

    /// Every registered descriptor, in name order.
    QList<Descriptor *> All() const { return m_descriptors.values(); }

private:
    QMap<QString, Descriptor *> m_descriptors;
};
