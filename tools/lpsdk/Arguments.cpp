// SPDX-License-Identifier: MIT
#include "Arguments.h"

#include "CommandContext.h"

#include <cmath>

namespace Arguments {

int wholeNumber(const QString &text, const QString &what)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok)
        usageError(QStringLiteral("%1 must be a whole number, not \"%2\"").arg(what, text));
    return value;
}

double number(const QString &text, const QString &what)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        usageError(QStringLiteral("%1 must be a number, not \"%2\"").arg(what, text));
    return value;
}

double numberIn(const QString &text, const QString &what, double low, double high)
{
    const double value = number(text, what);
    if (value < low || value > high)
        usageError(QStringLiteral("%1 must lie in %2 ... %3, not %4").arg(what).arg(low).arg(high).arg(text));
    return value;
}

QList<double> numbers(const QString &text, const QString &what)
{
    QList<double> values;
    for (const QString &part : text.split(QLatin1Char(','), Qt::SkipEmptyParts))
        values.append(number(part.trimmed(), what));
    if (values.isEmpty())
        usageError(QStringLiteral("%1 needs at least one number, e.g. 250,1000,4000").arg(what));
    return values;
}

QString mountingText(Tolvane::Mounting mounting)
{
    return LoudspeakerDescriptor::ConvertMountingToString(mounting);
}

Tolvane::Mounting mounting(const QCommandLineParser &parser)
{
    const QString text = parser.value(QStringLiteral("mounting"));
    bool known = false;
    const Tolvane::Mounting mounting = LoudspeakerDescriptor::ConvertStringToMounting(text, &known);
    if (known)
        return mounting;
    QStringList accepted;
    for (int m = Tolvane::Flown; m <= Tolvane::FlownPullback; ++m)
        accepted.append(mountingText(static_cast<Tolvane::Mounting>(m)));
    usageError(QStringLiteral("unknown mounting \"%1\" (accepted: %2)").arg(text, accepted.join(QStringLiteral(", "))));
}

QString choice(const QString &text, const QString &what, const QStringList &accepted)
{
    if (!accepted.contains(text))
        usageError(QStringLiteral("%1 must be one of %2, not \"%3\"").arg(what, accepted.join(QStringLiteral(", ")), text));
    return text;
}

QString pictureFile(const QString &text, const QString &what)
{
    if (!text.endsWith(QLatin1String(".png"), Qt::CaseInsensitive) && !text.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive))
        usageError(QStringLiteral("%1 must name a .png or .svg file, not \"%2\"").arg(what, text));
    return text;
}

} // namespace Arguments
