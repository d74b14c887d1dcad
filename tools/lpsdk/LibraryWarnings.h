// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

/**
 * Where the library's warnings go while lpsdk runs: to stderr as they come (the default),
 * nowhere (--quiet), or into a list for a command that reports them itself (validate).
 * Installs a message handler for its lifetime; one instance per process.
 */
class LibraryWarnings
{
public:
    enum Mode { Print, Drop, Keep };
    struct Warning
    {
        QString category; // the library's logging category, "nvlps.json" for example
        QString text;
    };

    explicit LibraryWarnings(Mode mode);
    ~LibraryWarnings();
    LibraryWarnings(const LibraryWarnings &) = delete;
    LibraryWarnings &operator=(const LibraryWarnings &) = delete;

    void setMode(Mode mode);
    /// Drops the warnings of one category from here on, for a command that reports their subject itself.
    void silence(const QString &category);
    /// The warnings kept since the last call, in order.
    QList<Warning> take();
};
