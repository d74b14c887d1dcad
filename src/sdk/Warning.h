// SPDX-License-Identifier: MIT
#pragma once

#include <QDebug>
#include <QString>

/**
 * Logs a warning made of a fixed text followed by a value, unquoted and separated by
 * exactly one space: "Json file not found: /path", "unknown filter type 16".
 * Every text-plus-value warning of the library goes through here so they all read alike.
 */
inline void lpsdkWarning(const char *text, const QString &value)
{
    const QLatin1String prefix(text);
    qWarning().noquote().nospace() << prefix << (prefix.endsWith(QLatin1Char(' ')) ? "" : " ") << value;
}
