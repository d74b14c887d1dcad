// SPDX-License-Identifier: MIT
// lpsdk balloon-pack: measured directivity into a balloon data file.
#include "Arguments.h"
#include "CommandContext.h"
#include "DirectivityGrid.h"
#include "SofaDirectivityFile.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QFile>
#include <QJsonObject>

#include <cmath>

namespace {

struct Imported
{
    BalloonFileWriter::Data data;
    QString kind;
    QJsonObject grid; // what the importer found, for the report
};

struct PackOptions
{
    Tolvane::LoudspeakerSymmetry symmetry = Tolvane::NoSymmetry;
    bool closeSeam = true;
    int measurement = 1;           // SOFA: 1-based index into M
    double symmetryTolerance = 1.0; // SOFA: dB between mirrored directions
    bool force = false;
};

Imported importCsv(const QString &input, const PackOptions &options)
{
    BalloonCsvPacker packer;
    packer.setSymmetry(options.symmetry);
    packer.setCloseSeam(options.closeSeam);
    if (!packer.read(input))
        dataError(QStringLiteral("%1: %2").arg(input, packer.errorString()));
    const BalloonCsvPacker::Grid &grid = packer.grid();
    return {packer.data(), QStringLiteral("csv"),
            QJsonObject{{QStringLiteral("rows"), grid.rows}, {QStringLiteral("frequencies"), grid.frequencyCount},
                        {QStringLiteral("first_frequency_Hz"), grid.firstFrequency}, {QStringLiteral("last_frequency_Hz"), grid.lastFrequency},
                        {QStringLiteral("nh"), grid.nh}, {QStringLiteral("nv"), grid.nv}, {QStringLiteral("theta_step_deg"), grid.thetaStepWidth},
                        {QStringLiteral("phi_step_deg"), grid.phiStepWidth}, {QStringLiteral("seam_column_added"), grid.seamClosed}}};
}

// Complex spectra per receiver direction: placed on their theta/phi grid, checked against the
// symmetry asked for, then stored as the CSV packer stores its grid.
Imported importSofa(const QString &input, const PackOptions &options)
{
    QString error;
    const std::optional<SofaDirectivityFile> sofa = SofaDirectivityFile::Read(input, options.measurement - 1, &error);
    if (!sofa)
        dataError(QStringLiteral("%1: %2").arg(input, error));
    const std::optional<DirectivityGrid> grid =
        DirectivityGrid::FromReceivers(sofa->receivers, sofa->view, sofa->up, sofa->values, sofa->frequencies, &error);
    if (!grid)
        dataError(QStringLiteral("%1: %2").arg(input, error));
    const std::optional<BalloonFileWriter::Data> data = grid->ToBalloon(options.symmetry, options.closeSeam, &error);
    if (!data)
        dataError(QStringLiteral("%1: %2").arg(input, error));
    QJsonObject report{{QStringLiteral("conventions"), QStringLiteral("%1 %2").arg(sofa->conventions, sofa->conventionsVersion)},
                       {QStringLiteral("measurement"), QStringLiteral("%1 of %2").arg(options.measurement).arg(sofa->measurementCount)},
                       {QStringLiteral("receivers"), qint64(sofa->receivers.size())},
                       {QStringLiteral("frequencies"), grid->frequencies.size()},
                       {QStringLiteral("first_frequency_Hz"), grid->frequencies.first()},
                       {QStringLiteral("last_frequency_Hz"), grid->frequencies.last()},
                       {QStringLiteral("nh"), data->nh}, {QStringLiteral("nv"), data->nv},
                       {QStringLiteral("theta_step_deg"), grid->thetaStep}, {QStringLiteral("phi_step_deg"), grid->phiStep},
                       {QStringLiteral("seam_column_added"), options.symmetry == Tolvane::NoSymmetry && options.closeSeam}};
    if (options.symmetry != Tolvane::NoSymmetry) {
        // ToBalloon succeeded, so the symmetry's columns lie on the grid and the check has an answer.
        const DirectivityGrid::SymmetryMismatch worst = *grid->CheckSymmetry(options.symmetry);
        const QString where = QStringLiteral("%1 Hz, theta %2, phi %3 against phi %4").arg(worst.frequency).arg(worst.theta).arg(worst.phi).arg(worst.mirrorPhi);
        if (worst.levelDb > options.symmetryTolerance && !options.force)
            dataError(QStringLiteral("%1: mirrored directions differ by up to %2 dB (%3), more than --symmetry-tolerance %4 dB; "
                                     "--force packs it anyway")
                          .arg(input).arg(worst.levelDb, 0, 'f', 3).arg(where).arg(options.symmetryTolerance));
        report.insert(QStringLiteral("symmetry_mismatch_dB"), std::round(worst.levelDb * 1000.0) / 1000.0);
        report.insert(QStringLiteral("symmetry_mismatch_at"), where);
    }
    return {*data, QStringLiteral("sofa"), report};
}

// The one place where the input's kind is chosen: SOFA (netCDF) by its content or its name,
// anything else as CSV. Each kind returns the writer's Data and a report of what it found.
Imported import(const QString &input, const PackOptions &options)
{
    if (!QFile::exists(input))
        dataError(QStringLiteral("no file \"%1\"").arg(input));
    if (SofaDirectivityFile::LooksLikeSofa(input) || input.endsWith(QLatin1String(".sofa"), Qt::CaseInsensitive))
        return importSofa(input, options);
    return importCsv(input, options);
}

} // namespace

int runBalloonPack(const CommandContext &context)
{
    const QCommandLineParser &parser = context.parser;
    if (context.arguments.size() != 1)
        usageError(QStringLiteral("'balloon-pack' takes one input file: lpsdk balloon-pack INPUT.csv|INPUT.sofa -o OUT.bin"));
    if (!parser.isSet(QStringLiteral("output")))
        usageError(QStringLiteral("'balloon-pack' needs -o OUT.bin"));
    const QString format = Arguments::choice(parser.value(QStringLiteral("format")), QStringLiteral("--format"), {QStringLiteral("byte"), QStringLiteral("double")});
    const QStringList symmetries = {QStringLiteral("none"), QStringLiteral("half"), QStringLiteral("half-rotated"), QStringLiteral("quarter"), QStringLiteral("rotational")};
    const auto symmetry = static_cast<Tolvane::LoudspeakerSymmetry>(symmetries.indexOf(Arguments::choice(parser.value(QStringLiteral("symmetry")), QStringLiteral("--symmetry"), symmetries)));
    PackOptions options;
    options.symmetry = symmetry;
    options.closeSeam = !parser.isSet(QStringLiteral("no-seam-column"));
    options.measurement = Arguments::wholeNumber(parser.value(QStringLiteral("measurement")), QStringLiteral("--measurement"));
    options.symmetryTolerance = Arguments::number(parser.value(QStringLiteral("symmetry-tolerance")), QStringLiteral("--symmetry-tolerance"));
    options.force = parser.isSet(QStringLiteral("force"));
    const Imported imported = import(context.arguments.first(), options);

    const Tolvane::LoudspeakerDataFormat encoding = format == QLatin1String("byte") ? Tolvane::ByteScaled : Tolvane::Double;
    const QString output = parser.value(QStringLiteral("output"));
    QString error;
    if (!BalloonFile::Write(output, imported.data, encoding, encoding, &error))
        dataError(QStringLiteral("cannot write the balloon file: ") + error);

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
