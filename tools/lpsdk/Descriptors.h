// SPDX-License-Identifier: MIT
#pragma once

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QCommandLineParser>

class Output;

/// Look-ups and fields that several commands share.
namespace Descriptors {
/// The registered loudspeaker, or null.
LoudspeakerDescriptor *findLoudspeaker(const QString &name);
/// The registered rigging item, or null.
RiggingHardwareDescriptor *findRigging(const QString &name);
/// The loudspeaker, or a data error naming what is registered.
LoudspeakerDescriptor *loudspeaker(const QString &name);
/// Source point n of the loudspeaker, or a usage error naming the valid range.
SourcePointDescriptor *sourcePoint(LoudspeakerDescriptor *loudspeaker, const QString &index);
QString typeText(Tolvane::LoudspeakerTypeFlags type);
void sizeField(Output &output, const Size &size);
void pointField(Output &output, const QString &key, const QString &label, const Point &point);
void outlineField(Output &output, const QString &key, const QString &label, const QList<Point> &points);
/// The rigging item's views by key ("3D", "top", "side" and suffixed variants).
QMap<QString, QList<Point>> riggingViews(RiggingHardwareDescriptor *rigging);
/// The setup key of --setup, else the mounting's default; a usage error naming the setups when the channel has no such setup.
int setupKey(DspChannelDescriptor *channel, const QCommandLineParser &parser, Tolvane::Mounting mounting, const QString &name);
/// Switch settings from --switch n=value, checked against the setup; coupling switches left out sit at 0 dB.
QMap<int, int> switchSettings(const QStringList &texts, LoudspeakerSetup *setup);
} // namespace Descriptors
