// SPDX-License-Identifier: MIT
#pragma once

#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_version.h"

#include <QObject>
#include <QString>

class LoudspeakerDescriptorProvider;
class RiggingHardwareDescriptorProvider;

/**
 * Implemented by the root object of every loudspeaker-series plugin, beside
 * LoudspeakerSeries_Interface. The plugin provider calls the registry setters once per
 * plugin, on the thread that loads the plugins: that is where a plugin creates its
 * descriptors (with its root object as parent) and registers them.
 * The order of the virtual operations is part of the plugin ABI.
 */
class Plugin_Interface
{
public:
    virtual ~Plugin_Interface() = default;

    /// The SDK version the plugin was compiled against (not called by the SDK itself).
    virtual QString GetSdkVersionString() const { return QStringLiteral(NVLPS_VERSION_STRING); }
    /// The plugin's sort number within a source group; lower numbers are listed first.
    virtual int GetSourceGroupOrder(Tolvane::SourceGroupType group) const = 0;
    /// Receives the loudspeaker registry; add the series' loudspeaker descriptors here.
    virtual void SetLoudspeakerDescriptorProvider(LoudspeakerDescriptorProvider *provider) = 0;
    /// Receives the rigging registry, right after the loudspeaker registry.
    virtual void SetRiggingHardwareDescriptorProvider(RiggingHardwareDescriptorProvider *provider) = 0;
};

#define Plugin_Interface_iid "com.norvik.Tolvane.Plugin_Interface/1.1"
Q_DECLARE_INTERFACE(Plugin_Interface, Plugin_Interface_iid)
