// SPDX-License-Identifier: MIT
#pragma once

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QCommandLineParser>
#include <QList>
#include <QString>

/// Option values turned into numbers and names, with a usage error that names what is accepted.
namespace Arguments {
int wholeNumber(const QString &text, const QString &what);
double number(const QString &text, const QString &what);
/// A number within [low, high].
double numberIn(const QString &text, const QString &what, double low, double high);
QList<double> numbers(const QString &text, const QString &what);
/// --mounting, flown when not given.
Tolvane::Mounting mounting(const QCommandLineParser &parser);
QString mountingText(Tolvane::Mounting mounting);
/// One of the given words.
QString choice(const QString &text, const QString &what, const QStringList &accepted);
/// A picture file name ending in .png or .svg.
QString pictureFile(const QString &text, const QString &what);
} // namespace Arguments
