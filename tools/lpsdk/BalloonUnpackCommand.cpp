// SPDX-License-Identifier: MIT
// lpsdk balloon-unpack: a balloon file back to the CSV that balloon-pack reads.
#include "CommandContext.h"
#include "DirectivitySource.h"

int runBalloonUnpack(const CommandContext &context)
{
    const QString input = context.name();
    const QString output = context.parser.value(QStringLiteral("output"));
    if (output.isEmpty())
        usageError(QStringLiteral("'balloon-unpack' needs -o OUT.csv"));
    const std::shared_ptr<const BalloonTable> read = DirectivitySource::readFile(input);
    const BalloonTable &table = *read;
    if (!BalloonCsvUnpacker::Write(table, output))
        dataError(QStringLiteral("cannot write %1").arg(output));
    Output &out = context.output;
    out.field(QStringLiteral("input"), QStringLiteral("balloon file"), input);
    out.field(QStringLiteral("output"), QStringLiteral("CSV file"), output);
    out.field(QStringLiteral("frequencies"), QStringLiteral("frequencies"), int(table.GetFrequencies().size()));
    out.field(QStringLiteral("nh"), QStringLiteral("theta rows"), table.GetNH());
    out.field(QStringLiteral("nv"), QStringLiteral("phi columns"), table.GetNV());
    out.field(QStringLiteral("symmetry"), QStringLiteral("symmetry"), table.GetSymmetryCode());
    if (table.HasFlushMount())
        out.line(QStringLiteral("note: the flush-mount parameters have no CSV column and were not written"));
    return 0;
}
