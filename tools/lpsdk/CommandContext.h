// SPDX-License-Identifier: MIT
#pragma once

#include "LibraryWarnings.h"
#include "Output.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QCommandLineParser>
#include <QStringList>

#include <optional>

/**
 * What a command gets: the parsed options, the words after the command name, the output layer,
 * the library's warnings, and the plugin folder, which is loaded the first time a command asks.
 */
class CommandContext
{
public:
    CommandContext(const QCommandLineParser &parser, QStringList arguments, Output &output, LibraryWarnings &warnings)
        : parser(parser)
        , arguments(std::move(arguments))
        , output(output)
        , warnings(warnings)
    {
    }

    /**
     * Loads the plugin folder once (--plugins, else $LPSDK_PLUGIN_PATH, else the library's
     * default) and gives what became of each library file. A folder that does not exist is a
     * usage error. Unless `reportsLibraries`, libraries that do not load are named on stderr.
     */
    const QList<PluginLoadResult> &plugins(bool reportsLibraries = false) const;
    /// The one name a command takes; a usage error when it is missing or followed by more words.
    QString name() const;

    const QCommandLineParser &parser;
    const QStringList arguments;
    Output &output;
    LibraryWarnings &warnings;

private:
    mutable std::optional<QList<PluginLoadResult>> m_plugins;
};

/// A command ends with this: status 1 for a fault in the user's data, 2 for a usage error.
struct CommandError
{
    int status;
    QString message;
};

[[noreturn]] inline void usageError(const QString &message)
{
    throw CommandError{2, message};
}

[[noreturn]] inline void dataError(const QString &message)
{
    throw CommandError{1, message};
}

using Command = int (*)(const CommandContext &);

int runList(const CommandContext &context);
int runShow(const CommandContext &context);
int runTransfer(const CommandContext &context);
int runCoupling(const CommandContext &context);
int runBalloon(const CommandContext &context);
int runShape(const CommandContext &context);
int runValidate(const CommandContext &context);
int runBalloonPack(const CommandContext &context);
int runDirectivity(const CommandContext &context);
int runBalloonUnpack(const CommandContext &context);
int runHelp(const CommandContext &context);
int runPredict(const CommandContext &context);
