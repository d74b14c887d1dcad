// SPDX-License-Identifier: MIT
// lpsdk coupling: the coupling positions and the filters of one pair of positions.
#include "Arguments.h"
#include "CommandContext.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QJsonArray>
#include <QJsonObject>

namespace {

int position(const QString &text, const QString &what, const QList<int> &positions)
{
    const int value = Arguments::wholeNumber(text, what);
    if (!positions.contains(value) && !positions.isEmpty())
        usageError(QStringLiteral("%1 must be %2 ... %3, not %4").arg(what).arg(positions.first()).arg(positions.last()).arg(value));
    return value;
}

} // namespace

int runCoupling(const CommandContext &context)
{
    if (!context.arguments.isEmpty())
        usageError(QStringLiteral("'coupling' takes no name, not \"%1\"").arg(context.arguments.join(QLatin1Char(' '))));
    context.warnings.silence(QStringLiteral("nvlps.coupling")); // the pair's problems are listed below
    CouplingFilterProvider &coupling = CouplingFilterProvider::GetInstance();
    if (!coupling.Initialize())
        dataError(QStringLiteral("the coupling filter table cannot be read"));
    const QList<int> lows = coupling.GetLowPositions();
    const QList<int> mids = coupling.GetMidPositions();
    const int low = position(context.parser.value(QStringLiteral("low")), QStringLiteral("--low"), lows);
    const int mid = position(context.parser.value(QStringLiteral("mid")), QStringLiteral("--mid"), mids);

    Output &out = context.output;
    QStringList lowTexts;
    QJsonArray lowGains;
    for (int p : lows) {
        lowTexts.append(QStringLiteral("%1=%2").arg(p).arg(CouplingFilterProvider::ConvertFromLowIndex(p)));
        lowGains.append(QJsonObject{{QStringLiteral("position"), p}, {QStringLiteral("gain_dB"), CouplingFilterProvider::ConvertFromLowIndex(p)}});
    }
    QStringList midTexts;
    QJsonArray midGains;
    for (int p : mids) {
        midTexts.append(QStringLiteral("%1=%2").arg(p).arg(CouplingFilterProvider::ConvertFromMidIndex(p)));
        midGains.append(QJsonObject{{QStringLiteral("position"), p}, {QStringLiteral("gain_dB"), CouplingFilterProvider::ConvertFromMidIndex(p)}});
    }
    const bool json = out.mode() == Output::Json;
    out.field(QStringLiteral("low_positions"), QStringLiteral("low positions"), json ? QJsonValue(lowGains) : QJsonValue(lowTexts.join(QLatin1Char(' '))));
    out.field(QStringLiteral("mid_positions"), QStringLiteral("mid positions"), json ? QJsonValue(midGains) : QJsonValue(midTexts.join(QLatin1Char(' '))));
    out.field(QStringLiteral("low"), QString(), low);
    out.field(QStringLiteral("mid"), QString(), mid);
    out.beginList(QStringLiteral("filters"), QStringLiteral("filters of low position %1, mid position %2:").arg(low).arg(mid),
        {{QStringLiteral("type"), QStringLiteral("type")}, {QStringLiteral("frequency_Hz"), QStringLiteral("frequency_Hz")}, {QStringLiteral("q"), QStringLiteral("Q")},
         {QStringLiteral("gain_dB"), QStringLiteral("gain_dB")}});
    for (const Tolvane::BiquadData &biquad : coupling.GetFilter(low, mid))
        out.row({biquad.type, biquad.frequency, biquad.q, biquad.gain});
    out.endList();
    // What the table lacks for this pair, so that an empty or odd list does not pass unexplained.
    QStringList problems;
    for (const CouplingTableProblem &problem : coupling.GetPairProblems(low, mid))
        problems.append(problem.ToString());
    out.beginList(QStringLiteral("problems"), problems.isEmpty() ? QString() : QStringLiteral("problems of the pair:"), {{QStringLiteral("problem"), QStringLiteral("problem")}});
    for (const QString &problem : std::as_const(problems))
        out.row({problem});
    out.endList();
    return problems.isEmpty() ? 0 : 1;
}
