// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

/**
 * Implemented by the root object of every loudspeaker-series plugin.
 * The order of the virtual operations is part of the plugin ABI.
 *
 * The plugin provider calls it on the thread that loads the plugins; hosts read it afterwards.
 */
class LoudspeakerSeries_Interface
{
public:
    virtual ~LoudspeakerSeries_Interface() = default;

    /// The series name; PluginProvider::GetPlugin() compares it exactly.
    virtual QString GetName() const = 0;
};

#define LoudspeakerSeries_Interface_iid "com.norvik.Tolvane.LoudspeakerSeries_Interface/1.3"
Q_DECLARE_INTERFACE(LoudspeakerSeries_Interface, LoudspeakerSeries_Interface_iid)
