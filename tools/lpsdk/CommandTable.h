// SPDX-License-Identifier: MIT
#pragma once

#include "CommandContext.h"

#include <QCommandLineOption>
#include <QList>
#include <QStringList>

/**
 * One command of lpsdk: its name, the function that runs it, what it does in one line, and the
 * long names of the options it takes besides the global ones. The options themselves, with
 * their texts, are rows of allOptions(): the parser, `lpsdk COMMAND --help` and the reference
 * in docs/lpsdk.md are all built from these two tables.
 */
struct CommandEntry
{
    const char *name;
    Command run;
    const char *summary;
    QStringList options;
};

const QList<CommandEntry> &commands();
/// Every option of every command, the global ones first.
const QList<QCommandLineOption> &allOptions();
/// The options every command takes.
const QStringList &globalOptions();
/// The row of allOptions() that `name` (any of its spellings) stands for; null for --help and --version.
const QCommandLineOption *option(const QString &name);
/// The usage of one command with its options, or of lpsdk with its commands and global options.
QString helpText(const CommandEntry *command);
