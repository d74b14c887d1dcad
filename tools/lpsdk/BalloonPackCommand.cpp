// SPDX-License-Identifier: MIT
// lpsdk balloon-pack: measured directivity into a balloon data file.
#include "Arguments.h"
#include "CommandContext.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QFile>
#include <QJsonObject>

namespace {

struct Imported
{
    BalloonFileWriter::Data data;
    QString kind;
    QJsonObject grid; // what the importer found, for the report
};

// The one place where the input's kind is chosen. CSV is the only kind so far; another
// format recognised by its content gets its branch here and returns the same Data.
Imported import(const QString &input, Tolvane::LoudspeakerSymmetry symmetry, bool closeSeam)
{
    if (!QFile::exists(input))
        dataError(QStringLiteral("no file \"%1\"").arg(input));
    BalloonCsvPacker packer;
    packer.setSymmetry(symmetry);
    packer.setCloseSeam(closeSeam);
    if (!packer.read(input))
        dataError(QStringLiteral("%1: %2").arg(input, packer.errorString()));
    const BalloonCsvPacker::Grid &grid = packer.grid();
    return {packer.data(), QStringLiteral("csv"),
            QJsonObject{{QStringLiteral("rows"), grid.rows}, {QStringLiteral("frequencies"), grid.frequencyCount},
                        {QStringLiteral("first_frequency_Hz"), grid.firstFrequency}, {QStringLiteral("last_frequency_Hz"), grid.lastFrequency},
                        {QStringLiteral("nh"), grid.nh}, {QStringLiteral("nv"), grid.nv}, {QStringLiteral("theta_step_deg"), grid.thetaStepWidth},
                        {QStringLiteral("phi_step_deg"), grid.phiStepWidth}, {QStringLiteral("seam_column_added"), grid.seamClosed}}};
}

} // namespace

int runBalloonPack(const CommandContext &context)
{
    const QCommandLineParser &parser = context.parser;
    if (context.arguments.size() != 1)
        usageError(QStringLiteral("'balloon-pack' takes one input file: lpsdk balloon-pack INPUT.csv -o OUT.bin"));
    if (!parser.isSet(QStringLiteral("output")))
        usageError(QStringLiteral("'balloon-pack' needs -o OUT.bin"));
    const QString format = Arguments::choice(parser.value(QStringLiteral("format")), QStringLiteral("--format"), {QStringLiteral("byte"), QStringLiteral("double")});
    const QStringList symmetries = {QStringLiteral("none"), QStringLiteral("half"), QStringLiteral("half-rotated"), QStringLiteral("quarter"), QStringLiteral("rotational")};
    const auto symmetry = static_cast<Tolvane::LoudspeakerSymmetry>(symmetries.indexOf(Arguments::choice(parser.value(QStringLiteral("symmetry")), QStringLiteral("--symmetry"), symmetries)));
    const Imported imported = import(context.arguments.first(), symmetry, !parser.isSet(QStringLiteral("no-seam-column")));

    const Tolvane::LoudspeakerDataFormat encoding = format == QLatin1String("byte") ? Tolvane::ByteScaled : Tolvane::Double;
    BalloonFileWriter writer(encoding, encoding);
    const QString output = parser.value(QStringLiteral("output"));
    if (!writer.write(imported.data, output))
        dataError(QStringLiteral("%1: %2").arg(output, writer.errorString()));

    Output &out = context.output;
    out.field(QStringLiteral("input"), QStringLiteral("input"), context.arguments.first());
    out.field(QStringLiteral("input_kind"), QStringLiteral("input kind"), imported.kind);
    out.field(QStringLiteral("output"), QStringLiteral("output"), output);
    out.field(QStringLiteral("format"), QStringLiteral("format"), format);
    out.field(QStringLiteral("symmetry"), QStringLiteral("symmetry"), symmetries.at(symmetry));
    out.beginObject(QStringLiteral("grid"), QStringLiteral("grid:"));
    for (auto it = imported.grid.constBegin(); it != imported.grid.constEnd(); ++it)
        out.field(it.key(), QString(it.key()).replace(QLatin1Char('_'), QLatin1Char(' ')), it.value());
    out.endObject();
    return 0;
}
