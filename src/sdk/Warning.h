// SPDX-License-Identifier: MIT
#pragma once

#include <QDebug>
#include <QLoggingCategory>
#include <QString>

// The library's logging categories, so that a host can filter its warnings by subject
// (QT_LOGGING_RULES="nvlps.balloon.warning=false") without touching their texts.
Q_DECLARE_LOGGING_CATEGORY(lcJson)       // nvlps.json: JSON files that do not open or parse
Q_DECLARE_LOGGING_CATEGORY(lcDescriptor) // nvlps.descriptor: loudspeaker descriptor files
Q_DECLARE_LOGGING_CATEGORY(lcShape)      // nvlps.shape: cabinet shapes
Q_DECLARE_LOGGING_CATEGORY(lcBalloon)    // nvlps.balloon: balloon data files
Q_DECLARE_LOGGING_CATEGORY(lcSetup)      // nvlps.setup: controller setups and their frequency grids
Q_DECLARE_LOGGING_CATEGORY(lcFilter)     // nvlps.filter: filter entries
Q_DECLARE_LOGGING_CATEGORY(lcCoupling)   // nvlps.coupling: the coupling filter table

/**
 * Logs a warning made of a fixed text followed by a value, unquoted and separated by
 * exactly one space: "Json file not found: /path", "unknown filter type 16".
 * Every text-plus-value warning of the library goes through here so they all read alike.
 */
inline void lpsdkWarning(const QLoggingCategory &(*category)(), const char *text, const QString &value)
{
    const QLatin1String prefix(text);
    qCWarning(category).noquote().nospace() << prefix << (prefix.endsWith(QLatin1Char(' ')) ? "" : " ") << value;
}
