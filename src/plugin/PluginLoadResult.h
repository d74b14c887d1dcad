// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/**
 * What became of one plugin library file in a load of PluginProvider: whether it loaded, Qt's
 * reason when it did not, and what it registered. A plain value; it holds no pointers into the
 * plugin, so it stays valid after PluginProvider::Clear().
 */
struct PluginLoadResult
{
    /// Absolute path of the library file.
    QString fileName;
    /// True when the library loaded and its root object implements both plugin interfaces.
    bool loaded = false;
    /// Why it did not load: Qt's error text, or which interface the root object lacks.
    QString errorString;
    /// Series names the library registered (one for a loaded plugin).
    QStringList series;
    /// Names under which the library's loudspeaker descriptors were registered, in name order.
    QStringList loudspeakers;
    /// Names under which the library's rigging descriptors were registered, in name order.
    QStringList riggings;
};
