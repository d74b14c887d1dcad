// SPDX-License-Identifier: MIT
// lpsdk: the command-line host of the SDK. It loads the loudspeaker-series plugins of a
// folder, opens a coupling-filter table, and answers questions about what the plugins
// registered. Each command lives in its own file; this one only parses and dispatches.
#include "CommandTable.h"
#include "CouplingDatabase.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

// lpsdk talks to a terminal or a pipe; painting offscreen needs no runtime folder of its own,
// so Qt's note that XDG_RUNTIME_DIR is unset is noise to the user.
QtMessageHandler g_qtHandler = nullptr;

void dropRuntimeDirNote(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        g_qtHandler(type, context, message);
}

QStringList names(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *name : list)
        result.append(QLatin1String(name));
    return result;
}

} // namespace

const QList<CommandEntry> &commands()
{
    static const QList<CommandEntry> table = {
        {"list", runList, "the series, loudspeakers and rigging items (default)", names({"expect-loudspeaker", "expect-rigging"})},
        {"show", runShow, "NAME: everything a loudspeaker or rigging item knows", names({"mounting"})},
        {"frame", runShow, "NAME: the same as show, for rigging items", names({"mounting"})},
        {"transfer", runTransfer, "NAME: the controller's response for a setup and its switches",
         names({"mounting", "setup", "switch", "linear", "sensitivity", "ap-eq", "csv", "plot", "source-point"})},
        {"balloon", runBalloon, "NAME: a directivity value, or polar plots with --plot",
         names({"source-point", "key", "flush-mount", "frequency", "theta", "phi", "plot", "frequencies"})},
        {"shape", runShape, "NAME: outlines per view; --plot draws them, --obj writes the 3-D mesh", names({"mounting", "plot", "obj"})},
        {"coupling", runCoupling, "coupling positions and the filters of one position pair", names({"low", "mid"})},
        {"validate", runValidate, "[FILE.json|FILE.bin...]: check the plugin folder, data or balloon files, or with --cpl-db a coupling table", {}},
        {"balloon-pack", runBalloonPack, "INPUT.csv|INPUT.sofa -o OUT.bin: pack measured directivity into a balloon file",
         names({"output", "format", "symmetry", "no-seam-column", "measurement", "symmetry-tolerance", "force"})},
        {"balloon-unpack", runBalloonUnpack, "FILE.bin -o OUT.csv: a balloon file back to balloon-pack's CSV", names({"output"})},
        {"directivity", runDirectivity, "NAME|FILE.bin: directivity index, beamwidths and spinorama curves; --plot draws them",
         names({"source-point", "key", "flush-mount", "mounting", "setup", "switch", "plot", "kind", "vertical", "normalize"})},
        {"predict", runPredict, "SCENE.json: the sound field of a scene's loudspeakers and arrays over its receivers",
         names({"threads", "band", "plot", "csv"})},
        {"help", runHelp, "[COMMAND]: the options of a command, or with --markdown the reference of every command", names({"markdown"})},
    };
    return table;
}

const QList<QCommandLineOption> &allOptions()
{
    static const QList<QCommandLineOption> table = {
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
        {QStringLiteral("csv"), QStringLiteral("Comma-separated values.")},
        {QStringLiteral("plot"), QStringLiteral("Draw a picture into FILE.png or FILE.svg."), QStringLiteral("file")},
        {QStringLiteral("obj"), QStringLiteral("Write the 3-D outline as a Wavefront OBJ file."), QStringLiteral("file")},
        {QStringLiteral("source-point"), QStringLiteral("Source point index (default 0)."), QStringLiteral("n"), QStringLiteral("0")},
        {QStringLiteral("key"), QStringLiteral("Balloon key (default: \"default\")."), QStringLiteral("key"), QStringLiteral("default")},
        {QStringLiteral("flush-mount"), QStringLiteral("The flush-mount variant.")},
        {QStringLiteral("frequency"), QStringLiteral("Frequency in Hz."), QStringLiteral("hz")},
        {QStringLiteral("theta"), QStringLiteral("Polar angle in degrees, 0 ... 180."), QStringLiteral("deg")},
        {QStringLiteral("phi"), QStringLiteral("Azimuth in degrees."), QStringLiteral("deg")},
        {QStringLiteral("frequencies"), QStringLiteral("Frequencies of the polar plots in Hz (default: four across the band of the default setup)."), QStringLiteral("list")},
        {QStringLiteral("low"), QStringLiteral("Low coupling position (default 11)."), QStringLiteral("position"), QStringLiteral("11")},
        {QStringLiteral("mid"), QStringLiteral("Mid coupling position (default 1)."), QStringLiteral("position"), QStringLiteral("1")},
        {{QStringLiteral("o"), QStringLiteral("output")}, QStringLiteral("The file to write: the balloon file of balloon-pack, the CSV file of balloon-unpack."), QStringLiteral("file")},
        {QStringLiteral("format"), QStringLiteral("byte (one byte per value) or double (default)."), QStringLiteral("format"), QStringLiteral("double")},
        {QStringLiteral("symmetry"), QStringLiteral("none, half, half-rotated, quarter or rotational (default none)."), QStringLiteral("symmetry"), QStringLiteral("none")},
        {QStringLiteral("no-seam-column"), QStringLiteral("Do not add the closing phi 360 column to a full circle.")},
        {QStringLiteral("measurement"), QStringLiteral("Of a SOFA file: which measurement (1 ... M, default 1)."), QStringLiteral("k"), QStringLiteral("1")},
        {QStringLiteral("symmetry-tolerance"), QStringLiteral("Of a SOFA file: largest level difference between mirrored directions, dB (default 1)."), QStringLiteral("dB"), QStringLiteral("1")},
        {QStringLiteral("force"), QStringLiteral("Of a SOFA file: pack a symmetry the data does not have.")},
        {QStringLiteral("kind"), QStringLiteral("What --plot draws: spinorama, isobar, di, beamwidth or offaxis (default spinorama)."), QStringLiteral("kind"), QStringLiteral("spinorama")},
        {QStringLiteral("vertical"), QStringLiteral("With --kind offaxis: the vertical plane instead of the horizontal.")},
        {QStringLiteral("normalize"), QStringLiteral("With --kind offaxis: levels relative to on-axis.")},
        {QStringLiteral("threads"), QStringLiteral("'predict': threads to compute on (default 0: one per core)."), QStringLiteral("n"), QStringLiteral("0")},
        {QStringLiteral("band"), QStringLiteral("'predict': the band in Hz that the summary and --plot show (default: the A-weighted sum)."), QStringLiteral("hz")},
        {QStringLiteral("expect-loudspeaker"), QStringLiteral("Fail unless a loudspeaker of this name is registered."), QStringLiteral("name")},
        {QStringLiteral("expect-rigging"), QStringLiteral("Fail unless a rigging item of this name is registered."), QStringLiteral("name")},
        {QStringLiteral("markdown"), QStringLiteral("Print the reference of every command and option as Markdown.")},
    };
    return table;
}

const QStringList &globalOptions()
{
    static const QStringList global = names({"plugins", "cpl-db", "json", "quiet"});
    return global;
}

const QCommandLineOption *option(const QString &name)
{
    const QList<QCommandLineOption> &table = allOptions();
    const auto row = std::find_if(table.cbegin(), table.cend(), [&](const QCommandLineOption &o) { return o.names().contains(name); });
    return row == table.cend() ? nullptr : &*row;
}

namespace {

int fail(int status, const QString &message)
{
    std::fflush(stdout);
    std::fprintf(stderr, "lpsdk: %s\n", qPrintable(message));
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    g_qtHandler = qInstallMessageHandler(dropRuntimeDirNote);
    // Painting text needs the GUI application's fonts; pictures are painted offscreen, so the
    // host never needs a display. Commands without pictures start the lighter core application.
    const bool paints = std::any_of(argv + 1, argv + argc, [](const char *argument) { return qstrncmp(argument, "--plot", 6) == 0; });
    if (paints && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const std::unique_ptr<QCoreApplication> app(paints ? new QGuiApplication(argc, argv) : new QCoreApplication(argc, argv));
    QCoreApplication::setApplicationName(QStringLiteral("lpsdk"));
    QCoreApplication::setApplicationVersion(norvik::LoudspeakerPluginSdk::libVersionString());

    QStringList commandNames;
    for (const CommandEntry &entry : commands())
        commandNames.append(QLatin1String(entry.name));
    QCommandLineParser parser;
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addOptions(allOptions());
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(2, parser.errorText() + QStringLiteral(" (see lpsdk --help)"));
    if (parser.isSet(version))
        parser.showVersion();

    QStringList arguments = parser.positionalArguments();
    const QString commandName = arguments.isEmpty() ? QStringLiteral("list") : arguments.takeFirst();
    const auto entry = std::find_if(commands().cbegin(), commands().cend(), [&](const CommandEntry &e) { return commandName == QLatin1String(e.name); });
    if (entry == commands().cend())
        return fail(2, QStringLiteral("unknown command \"%1\" (accepted: %2)").arg(commandName, commandNames.join(QStringLiteral(", "))));
    if (parser.isSet(help)) {
        // "lpsdk --help" is "lpsdk help", "lpsdk transfer --help" is "lpsdk help transfer".
        std::fputs(qPrintable(helpText(parser.positionalArguments().isEmpty() ? nullptr : &*entry)), stdout);
        return 0;
    }
    for (const QString &given : parser.optionNames()) {
        const QCommandLineOption *row = option(given);
        const QString name = row ? row->names().constLast() : given; // "-o" is "--output"
        if (row && !globalOptions().contains(name) && !entry->options.contains(name))
            return fail(2, QStringLiteral("--%1 does not apply to '%2' (its options: %3)").arg(name, commandName,
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
