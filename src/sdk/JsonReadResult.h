// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariantMap>

/**
 * What ReadJsonFile() made of one JSON file: its top-level object, or why there is none and,
 * for a syntax error, where the parser stopped. A plain value.
 */
struct JsonReadResult
{
    /// The top-level object; empty on any failure (and for a top-level array, which is no error).
    QVariantMap map;
    /// Empty when the file parsed; else why the file did not open, or the parser's error text.
    QString error;
    /// 1-based line and column in the file of the first syntax error, 0 when there is none.
    /// The column counts characters; comments the loader strips do not shift it.
    int line = 0;
    int column = 0;

    bool ok() const { return error.isEmpty(); }
    /// "line L, column C: error", or the error alone when it has no position.
    QString ErrorText() const
    {
        return line > 0 ? QStringLiteral("line %1, column %2: %3").arg(line).arg(column).arg(error) : error;
    }
};
