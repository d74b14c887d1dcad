// SPDX-License-Identifier: MIT
#pragma once

#include "JsonReadResult.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QString>
#include <QVariantMap>

/**
 * Reads a JSON file that may carry line comments and returns its top-level object.
 *
 * A line comment is the right-most "//" outside double quotes, counted from the line's
 * end, that is not the line's last two characters (a trailing "//" stays and breaks the
 * parse, as it always has for these files). Lines are joined without separators.
 *
 * Never fails loudly: a missing file or a parse error logs two warnings and gives an
 * empty map; a top-level array gives an empty map without a warning. Thread-safe.
 */
NVLPS_EXPORT QVariantMap LoadJsonFile(const QString &filePath);

/**
 * LoadJsonFile() on bytes already in memory: the same line splitting, comment stripping and
 * result. A parse error names `sourceName` in its warning where the file loader names the path.
 * Untrusted input is fine: nesting beyond the parser's limit is a parse error. Thread-safe.
 */
NVLPS_EXPORT QVariantMap LoadJsonData(const QByteArray &data, const QString &sourceName = QString());

/**
 * LoadJsonFile() without the warnings: the same reading, with the reason for an empty map and
 * the line and column of a syntax error, for tools that report problems themselves.
 */
NVLPS_EXPORT JsonReadResult ReadJsonFile(const QString &filePath);
/// LoadJsonData() without the warnings, as ReadJsonFile().
NVLPS_EXPORT JsonReadResult ReadJsonData(const QByteArray &data);

/// The comment stripping of LoadJsonFile() for one line.
NVLPS_EXPORT QString StripJsonLineComment(const QString &line);
