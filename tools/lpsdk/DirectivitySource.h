// SPDX-License-Identifier: MIT
#pragma once

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <memory>

class CommandContext;

/**
 * The balloon a directivity command works on: a loudspeaker's (its source point, key and setup)
 * or a bare balloon file's, read strictly, so that a packed file is checked before a plugin holds it.
 */
struct DirectivitySource
{
    QString title;                   // for headings and pictures
    std::shared_ptr<const BalloonTable> table;
    bool flushMount = false;
    DspChannelDescriptor *channel = nullptr; // null for a bare file
    int setupKey = 0;
    QMap<int, int> switches;

    /// NAME [--source-point N] [--key K] [--setup S --switch n=v] [--flush-mount], or FILE.bin.
    static DirectivitySource open(const CommandContext &context);
    /// The balloon file's table, or a data error listing its located problems.
    static std::shared_ptr<const BalloonTable> readFile(const QString &path);
};
