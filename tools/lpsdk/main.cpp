// SPDX-License-Identifier: MIT
// lpsdk: the command-line host of the SDK. It loads the loudspeaker-series plugins of a
// folder, opens a coupling-filter table, and answers questions about what the plugins
// registered. Each command lives in its own file; this one only parses and dispatches.
#include "CommandContext.h"
#include "CouplingDatabase.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

struct CommandEntry
{
    const char *name;
    Command run;
    const char *summary;
    QStringList options; // besides the global ones
};

const QList<CommandEntry> &commands()
{
    static const QList<CommandEntry> table = {
        {"list", runList, "the series, loudspeakers and rigging items (default)", {QStringLiteral("expect-loudspeaker"), QStringLiteral("expect-rigging")}},
        {"show", runShow, "NAME: everything a loudspeaker or rigging item knows", {QStringLiteral("mounting")}},
        {"frame", runShow, "NAME: the same as show, for rigging items", {QStringLiteral("mounting")}},
        {"transfer", runTransfer, "NAME: the transfer function of a controller setup",
         {QStringLiteral("mounting"), QStringLiteral("setup"), QStringLiteral("switch"), QStringLiteral("linear"), QStringLiteral("sensitivity"),
          QStringLiteral("ap-eq"), QStringLiteral("csv"), QStringLiteral("plot"), QStringLiteral("source-point")}},
        {"balloon", runBalloon, "NAME: a directivity value, or polar plots with --plot",
         {QStringLiteral("source-point"), QStringLiteral("key"), QStringLiteral("flush-mount"), QStringLiteral("frequency"), QStringLiteral("theta"),
          QStringLiteral("phi"), QStringLiteral("plot"), QStringLiteral("frequencies")}},
        {"shape", runShape, "NAME: outlines per view; --plot draws them, --obj writes the 3-D mesh",
         {QStringLiteral("mounting"), QStringLiteral("plot"), QStringLiteral("obj")}},
        {"coupling", runCoupling, "coupling positions and the filters of one position pair", {QStringLiteral("low"), QStringLiteral("mid")}},
        {"validate", runValidate, "[FILE.json|FILE.bin...]: check the plugin folder, data or balloon files, or with --cpl-db a coupling table", {}},
        {"balloon-pack", runBalloonPack, "INPUT.csv|INPUT.sofa -o OUT.bin: pack measured directivity into a balloon file",
         {QStringLiteral("output"), QStringLiteral("format"), QStringLiteral("symmetry"), QStringLiteral("no-seam-column"),
          QStringLiteral("measurement"), QStringLiteral("symmetry-tolerance"), QStringLiteral("force")}},
        {"balloon-unpack", runBalloonUnpack, "FILE.bin -o OUT.csv: a balloon file back to balloon-pack's CSV", {QStringLiteral("output")}},
        {"directivity", runDirectivity, "NAME|FILE.bin: directivity index, beamwidths and spinorama curves; --plot draws them",
         {QStringLiteral("source-point"), QStringLiteral("key"), QStringLiteral("flush-mount"), QStringLiteral("mounting"), QStringLiteral("setup"),
          QStringLiteral("switch"), QStringLiteral("plot"), QStringLiteral("kind"), QStringLiteral("vertical"), QStringLiteral("normalize")}},
    };
    return table;
}

QList<QCommandLineOption> allOptions()
{
    return {
        {QStringLiteral("plugins"), QStringLiteral("Plugin folder (default: $LPSDK_PLUGIN_PATH, else Plugins beside lpsdk)."), QStringLiteral("dir")},
        {QStringLiteral("cpl-db"), QStringLiteral("SQLite file with a CplFilter table (default: the bundled table)."), QStringLiteral("file")},
        {QStringLiteral("json"), QStringLiteral("Print one JSON document instead of the table.")},
        {QStringLiteral("quiet"), QStringLiteral("No progress bar and no library warnings.")},
        {QStringLiteral("mounting"), QStringLiteral("Mounting for outlines, points and default setups (default: flown)."), QStringLiteral("mounting"), QStringLiteral("flown")},
        {QStringLiteral("setup"), QStringLiteral("Controller setup key (default: the mounting's default setup)."), QStringLiteral("key")},
        {QStringLiteral("switch"), QStringLiteral("Switch setting n=value; repeatable. Switches 4 and 5 are the low and mid coupling positions."), QStringLiteral("n=value")},
        {QStringLiteral("linear"), QStringLiteral("Use the linear grid (0 to 6 kHz) instead of 1/24 octaves.")},
        {QStringLiteral("sensitivity"), QStringLiteral("0 none, 1 measured sensitivity, 2 array EQ, 3 both (default 0)."), QStringLiteral("type"), QStringLiteral("0")},
        {QStringLiteral("ap-eq"), QStringLiteral("Include the all-pass EQ.")},
        {QStringLiteral("csv"), QStringLiteral("'transfer': comma-separated values.")},
        {QStringLiteral("plot"), QStringLiteral("Draw a picture into FILE.png or FILE.svg."), QStringLiteral("file")},
        {QStringLiteral("obj"), QStringLiteral("'shape': write the 3-D outline as a Wavefront OBJ file."), QStringLiteral("file")},
        {QStringLiteral("source-point"), QStringLiteral("Source point index (default 0)."), QStringLiteral("n"), QStringLiteral("0")},
        {QStringLiteral("key"), QStringLiteral("'balloon': balloon key (default: \"default\")."), QStringLiteral("key"), QStringLiteral("default")},
        {QStringLiteral("flush-mount"), QStringLiteral("'balloon': the flush-mount variant.")},
        {QStringLiteral("frequency"), QStringLiteral("'balloon': frequency in Hz."), QStringLiteral("hz")},
        {QStringLiteral("theta"), QStringLiteral("'balloon': polar angle in degrees, 0 ... 180."), QStringLiteral("deg")},
        {QStringLiteral("phi"), QStringLiteral("'balloon': azimuth in degrees."), QStringLiteral("deg")},
        {QStringLiteral("frequencies"), QStringLiteral("'balloon --plot': frequencies in Hz (default 250,1000,4000)."), QStringLiteral("list"), QStringLiteral("250,1000,4000")},
        {QStringLiteral("low"), QStringLiteral("'coupling': low coupling position (default 11)."), QStringLiteral("position"), QStringLiteral("11")},
        {QStringLiteral("mid"), QStringLiteral("'coupling': mid coupling position (default 1)."), QStringLiteral("position"), QStringLiteral("1")},
        {{QStringLiteral("o"), QStringLiteral("output")}, QStringLiteral("'balloon-pack': the balloon file to write; 'balloon-unpack': the CSV file."), QStringLiteral("file")},
        {QStringLiteral("format"), QStringLiteral("'balloon-pack': byte (one byte per value) or double (default)."), QStringLiteral("format"), QStringLiteral("double")},
        {QStringLiteral("symmetry"), QStringLiteral("'balloon-pack': none, half, half-rotated, quarter or rotational (default none)."), QStringLiteral("symmetry"), QStringLiteral("none")},
        {QStringLiteral("no-seam-column"), QStringLiteral("'balloon-pack': do not add the closing phi 360 column to a full circle.")},
        {QStringLiteral("measurement"), QStringLiteral("'balloon-pack' of a SOFA file: which measurement (1 ... M, default 1)."), QStringLiteral("k"), QStringLiteral("1")},
        {QStringLiteral("symmetry-tolerance"), QStringLiteral("'balloon-pack' of a SOFA file: largest level difference between mirrored directions, dB (default 1)."), QStringLiteral("dB"), QStringLiteral("1")},
        {QStringLiteral("force"), QStringLiteral("'balloon-pack' of a SOFA file: pack a symmetry the data does not have.")},
        {QStringLiteral("kind"), QStringLiteral("'directivity --plot': spinorama, isobar, di, beamwidth or offaxis (default spinorama)."), QStringLiteral("kind"), QStringLiteral("spinorama")},
        {QStringLiteral("vertical"), QStringLiteral("'directivity --kind offaxis': the vertical plane instead of the horizontal.")},
        {QStringLiteral("normalize"), QStringLiteral("'directivity --kind offaxis': levels relative to on-axis.")},
        {QStringLiteral("expect-loudspeaker"), QStringLiteral("'list': fail unless a loudspeaker of this name is registered."), QStringLiteral("name")},
        {QStringLiteral("expect-rigging"), QStringLiteral("'list': fail unless a rigging item of this name is registered."), QStringLiteral("name")},
    };
}

int fail(int status, const QString &message)
{
    std::fflush(stdout);
    std::fprintf(stderr, "lpsdk: %s\n", qPrintable(message));
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    // Painting text needs the GUI application's fonts; pictures are painted offscreen, so the
    // host never needs a display. Commands without pictures start the lighter core application.
    const bool paints = std::any_of(argv + 1, argv + argc, [](const char *argument) { return qstrncmp(argument, "--plot", 6) == 0; });
    if (paints && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const std::unique_ptr<QCoreApplication> app(paints ? new QGuiApplication(argc, argv) : new QCoreApplication(argc, argv));
    QCoreApplication::setApplicationName(QStringLiteral("lpsdk"));
    QCoreApplication::setApplicationVersion(norvik::LoudspeakerPluginSdk::libVersionString());

    QString description = QStringLiteral("Loads the loudspeaker-series plugins of a folder and answers questions about them.\n\nCommands:\n");
    QStringList names;
    for (const CommandEntry &entry : commands()) {
        description += QStringLiteral("  %1 %2\n").arg(QLatin1String(entry.name), -10).arg(QLatin1String(entry.summary));
        names.append(QLatin1String(entry.name));
    }
    const QList<QCommandLineOption> options = allOptions();
    QCommandLineParser parser;
    parser.setApplicationDescription(description);
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("command"), names.join(QStringLiteral(", ")));
    parser.addPositionalArgument(QStringLiteral("name"), QStringLiteral("loudspeaker or rigging item name"), QStringLiteral("[name]"));
    parser.addOptions(options);
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(2, parser.errorText() + QStringLiteral(" (see lpsdk --help)"));
    if (parser.isSet(help))
        parser.showHelp(0);
    if (parser.isSet(version))
        parser.showVersion();

    QStringList arguments = parser.positionalArguments();
    const QString commandName = arguments.isEmpty() ? QStringLiteral("list") : arguments.takeFirst();
    const auto entry = std::find_if(commands().cbegin(), commands().cend(), [&](const CommandEntry &e) { return commandName == QLatin1String(e.name); });
    if (entry == commands().cend())
        return fail(2, QStringLiteral("unknown command \"%1\" (accepted: %2)").arg(commandName, names.join(QStringLiteral(", "))));
    const QStringList global = {QStringLiteral("plugins"), QStringLiteral("cpl-db"), QStringLiteral("json"), QStringLiteral("quiet")};
    for (const QString &given : parser.optionNames()) {
        // The long name stands for the option, however it was spelled ("-o" is "--output").
        const auto known = std::find_if(options.cbegin(), options.cend(), [&](const QCommandLineOption &o) { return o.names().contains(given); });
        const QString option = known == options.cend() ? given : known->names().constLast();
        if (!global.contains(option) && !entry->options.contains(option))
            return fail(2, QStringLiteral("--%1 does not apply to '%2' (its options: %3)").arg(option, commandName,
                entry->options.isEmpty() ? QStringLiteral("none") : QStringLiteral("--") + entry->options.join(QStringLiteral(", --"))));
    }

    const bool quiet = parser.isSet(QStringLiteral("quiet"));
    Output output(parser.isSet(QStringLiteral("json")) ? Output::Json : parser.isSet(QStringLiteral("csv")) ? Output::Csv : Output::Text, quiet);
    CouplingDatabase database;
    // validate reports the warnings it needs as problems, so it keeps them even when quiet.
    LibraryWarnings warnings(commandName == QLatin1String("validate") ? LibraryWarnings::Keep : quiet ? LibraryWarnings::Drop : LibraryWarnings::Print);
    try {
        database.open(parser.value(QStringLiteral("cpl-db")));
        const int status = entry->run(CommandContext(parser, arguments, output, warnings));
        output.finish();
        return status;
    } catch (const CommandError &error) {
        return fail(error.status, error.message);
    }
}
