// SPDX-License-Identifier: MIT
// lpsdk: the command-line host of the SDK. It loads the loudspeaker-series plugins from the
// "Plugins" folder beside it (with a progress bar), opens the embedded coupling-filter
// database, and answers questions about what the plugins registered.
#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QTextStream>

#include <cmath>
#include <cstdio>

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

[[noreturn]] void fail(const QString &message)
{
    out().flush();
    std::fprintf(stderr, "lpsdk: %s\n", qPrintable(message));
    std::exit(1);
}

// Redraws one terminal line: Loading plugins [###############...............]  50 %
void drawProgress(int percentage)
{
    constexpr int width = 30;
    const int filled = qBound(0, percentage, 100) * width / 100;
    std::fprintf(stderr, "\rLoading plugins [%s%s] %3d %%", QByteArray(filled, '#').constData(), QByteArray(width - filled, '.').constData(), percentage);
    std::fflush(stderr);
}

void loadPlugins(PluginProvider &provider)
{
    bool progressShown = false;
    const QMetaObject::Connection connection = QObject::connect(&provider, &PluginProvider::PluginLoadingProgressChanged, [&progressShown](int percentage) {
        drawProgress(percentage);
        progressShown = true;
    });
    provider.LoadPlugins();
    QObject::disconnect(connection);
    if (progressShown)
        std::fputc('\n', stderr);
    else
        std::fprintf(stderr, "No plugins found in %s/Plugins\n", qPrintable(QCoreApplication::applicationDirPath()));
}

// The host's job: the coupling filters come from the connection "nvRemoteDriverDatabase".
// The default table is compiled into this program; SQLite needs it as a file.
bool openCouplingDatabase(const QTemporaryDir &directory)
{
    const QString path = directory.filePath(QStringLiteral("CplFilter.sqlite"));
    if (!QFile::copy(QStringLiteral(":/lpsdk/CplFilter.sqlite"), path))
        return false;
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("nvRemoteDriverDatabase"));
    database.setDatabaseName(path);
    return database.open();
}

QString mountingText(Tolvane::Mounting mounting)
{
    return LoudspeakerDescriptor::ConvertMountingToString(mounting);
}

Tolvane::Mounting parseMounting(const QString &text)
{
    for (int m = Tolvane::Invalid; m <= Tolvane::FlownPullback; ++m) {
        if (mountingText(static_cast<Tolvane::Mounting>(m)) == text)
            return static_cast<Tolvane::Mounting>(m);
    }
    fail(QStringLiteral("unknown mounting \"%1\" (flown, stacked, flown_horizontal, stacked_horizontal, stacked_cart, flown_install, flown_pullback)").arg(text));
}

QString groupName(Tolvane::SourceGroupType group)
{
    switch (group) {
    case Tolvane::LineArraySources:
        return QStringLiteral("line arrays");
    case Tolvane::PointSources:
        return QStringLiteral("point sources");
    case Tolvane::SubwooferSources:
        return QStringLiteral("subwoofers");
    default:
        return QStringLiteral("all");
    }
}

QString typeText(Tolvane::LoudspeakerTypeFlags type)
{
    QStringList bits;
    const std::pair<Tolvane::LoudspeakerTypeFlag, const char *> names[] = {
        {Tolvane::NarrowDispersion, "narrow dispersion"}, {Tolvane::WideDispersion, "wide dispersion"}, {Tolvane::Sub, "sub"},
        {Tolvane::Top, "top"}, {Tolvane::PointSource, "point source"}};
    for (const auto &[flag, name] : names) {
        if (type.testFlag(flag))
            bits.append(QLatin1String(name));
    }
    return bits.isEmpty() ? QStringLiteral("unknown") : bits.join(QStringLiteral(", "));
}

QString sizeText(const Size &size)
{
    return QStringLiteral("%1 x %2 x %3 m (w x h x d)").arg(size.width()).arg(size.height()).arg(size.depth());
}

QString pointText(const Point &point)
{
    return QStringLiteral("(%1, %2, %3) m").arg(point.x()).arg(point.y()).arg(point.z());
}

LoudspeakerDescriptor *findLoudspeaker(const PluginProvider &provider, const QString &name)
{
    LoudspeakerDescriptor *loudspeaker = provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(name);
    if (!loudspeaker)
        fail(QStringLiteral("no loudspeaker named \"%1\"").arg(name));
    return loudspeaker;
}

void listRegistrations(const PluginProvider &provider)
{
    out() << "nvLoudspeakerPluginSdk " << norvik::LoudspeakerPluginSdk::libVersionString() << '\n';
    for (int g = Tolvane::LineArraySources; g <= Tolvane::AllSources; ++g) {
        const auto group = static_cast<Tolvane::SourceGroupType>(g);
        QStringList names;
        for (const LoudspeakerSeries_Interface *series : provider.GetPlugins(group))
            names.append(series->GetName());
        out() << "Series, " << groupName(group) << ": " << (names.isEmpty() ? QStringLiteral("(none)") : names.join(QStringLiteral(", "))) << '\n';
    }

    const QList<LoudspeakerDescriptor *> loudspeakers = provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptors();
    out() << "Loudspeakers (" << loudspeakers.size() << "):\n";
    for (LoudspeakerDescriptor *loudspeaker : loudspeakers) {
        const LoudspeakerSeries_Interface *series = loudspeaker->GetLoudspeakerSeries();
        out() << "  " << qSetFieldWidth(10) << Qt::left << loudspeaker->GetName() << qSetFieldWidth(0) << ' ' << typeText(loudspeaker->GetType())
              << ", " << loudspeaker->GetCabinetShape() << ", " << loudspeaker->GetSourcePointDescriptors().size() << " source point(s)  ["
              << (series ? series->GetName() : QStringLiteral("no series")) << "]\n";
    }

    const QList<RiggingHardwareDescriptor *> frames = provider.GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptors();
    out() << "Rigging hardware (" << frames.size() << "):\n";
    for (RiggingHardwareDescriptor *frame : frames)
        out() << "  " << frame->GetName() << ", " << frame->GetLoadBeamTypesMap().toMap().size() << " load beam type(s)\n";
}

void showLoudspeaker(const PluginProvider &provider, const QString &name, Tolvane::Mounting mounting)
{
    LoudspeakerDescriptor *loudspeaker = findLoudspeaker(provider, name);
    out() << loudspeaker->GetName() << " (" << loudspeaker->GetDisplayName() << "), part number " << loudspeaker->GetPartNumber(true) << '\n'
          << "  type: " << typeText(loudspeaker->GetType()) << '\n'
          << "  cabinet: " << loudspeaker->GetCabinetShape() << ", " << sizeText(loudspeaker->GetSize()) << ", " << loudspeaker->GetWeight() << " kg\n"
          << "  outlines (" << mountingText(mounting) << "): 3D " << loudspeaker->Get3dView(mounting).size() << " points, side "
          << loudspeaker->GetSideView(mounting).size() << ", top " << loudspeaker->GetTopView().size() << '\n'
          << "  mounting point: " << pointText(loudspeaker->GetMountingPoint(mounting, QStringLiteral("default"))) << '\n'
          << "  centre of gravity: " << pointText(loudspeaker->GetCenterOfGravity(mounting)) << '\n'
          << "  contour coupling: " << (loudspeaker->SupportsContourCpl(mounting) ? "yes" : "no") << '\n';

    for (SourcePointDescriptor *sourcePoint : loudspeaker->GetSourcePointDescriptors()) {
        out() << "  source point \"" << sourcePoint->GetName() << "\" at " << pointText(sourcePoint->GetOrigin(mounting)) << '\n';
        DspChannelDescriptor *channel = sourcePoint->GetDspChannelDescriptor(sourcePoint->GetDefaultAmplifier());
        if (!channel)
            continue;
        const int defaultKey = channel->GetDefaultLoudspeakerSetupKey(mounting);
        const QMap<int, LoudspeakerSetup *> setups = channel->GetLoudspeakerSetups();
        for (auto it = setups.cbegin(); it != setups.cend(); ++it) {
            LoudspeakerSetup *setup = it.value();
            out() << "    setup " << it.key() << (it.key() == defaultKey ? " (default)" : "") << ": " << setup->GetFullName() << ", gain "
                  << 20.0 * std::log10(setup->GetGain()) << " dB, delay " << setup->GetDelay() * 1000.0 << " ms\n";
            for (int s = 1; s <= 5; ++s) {
                const QMap<int, QString> values = setup->GetSwitchValues(s);
                if (values.isEmpty())
                    continue;
                QStringList labels;
                for (auto v = values.cbegin(); v != values.cend(); ++v)
                    labels.append(QStringLiteral("%1=%2").arg(v.key()).arg(v.value().trimmed()));
                const QString description = setup->GetSwitchDescription(s);
                out() << "      switch " << s << (description.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(description)) << ": " << labels.join(QStringLiteral(" ")) << '\n';
            }
        }
    }
}

struct TransferOptions
{
    Tolvane::Mounting mounting = Tolvane::Flown;
    int setupKey = -1; // the mounting's default
    QMap<int, int> switches;
    Tolvane::FrequencyRange range = Tolvane::LogarithmicFrequencies;
    Tolvane::SensitivityTypes sensitivity = Tolvane::NoSensitivity;
    bool apEq = false;
};

void printTransferFunction(const PluginProvider &provider, const QString &name, const TransferOptions &options)
{
    LoudspeakerDescriptor *loudspeaker = findLoudspeaker(provider, name);
    const QList<SourcePointDescriptor *> sourcePoints = loudspeaker->GetSourcePointDescriptors();
    if (sourcePoints.isEmpty())
        fail(QStringLiteral("%1 has no source points").arg(name));
    DspChannelDescriptor *channel = sourcePoints.first()->GetDspChannelDescriptor(sourcePoints.first()->GetDefaultAmplifier());
    if (!channel)
        fail(QStringLiteral("%1 has no DSP channel").arg(name));

    const int setupKey = options.setupKey >= 0 ? options.setupKey : channel->GetDefaultLoudspeakerSetupKey(options.mounting);
    LoudspeakerSetup *setup = channel->GetLoudspeakerSetups().value(setupKey);
    if (!setup)
        fail(QStringLiteral("%1 has no controller setup %2").arg(name).arg(setupKey));

    const bool inSpl = options.range == Tolvane::LogarithmicFrequencies
        && (options.sensitivity == Tolvane::Sensitivity || options.sensitivity == Tolvane::SensitivityWithArrayEq);
    out() << "# " << name << ", setup " << setupKey << " \"" << setup->GetFullName() << '"';
    for (auto it = options.switches.cbegin(); it != options.switches.cend(); ++it)
        out() << ", switch " << it.key() << '=' << it.value() << " (" << setup->GetSwitchValues(it.key()).value(it.value()).trimmed() << ')';
    out() << "\n# frequency_Hz  " << (inSpl ? "level_dB_SPL" : "magnitude_dB") << "  phase_deg\n";

    const QList<double> frequencies = channel->GetFrequencyVector(options.range);
    for (int i = 0; i < frequencies.size(); ++i) {
        const Complex h = channel->GetTransferFunction(options.range, i, setupKey, options.switches, options.sensitivity, options.apEq);
        const double level = 20.0 * std::log10(h.abs() / (inSpl ? 2e-5 : 1.0));
        out() << QString::number(frequencies.at(i), 'f', 2) << ' ' << QString::number(level, 'f', 3) << ' ' << QString::number(h.arg() * 180.0 / M_PI, 'f', 2) << '\n';
    }
}

void showFrame(const PluginProvider &provider, const QString &name)
{
    RiggingHardwareDescriptor *frame = provider.GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptor(name);
    if (!frame)
        fail(QStringLiteral("no rigging hardware named \"%1\"").arg(name));
    out() << frame->GetName() << " (" << frame->GetDisplayName() << "), part number " << frame->GetPartNumber(true) << '\n'
          << "  frame: " << sizeText(frame->GetSize()) << ", " << frame->GetWeight() << " kg, maximum load " << frame->GetMaximumLoad() << '\n'
          << "  tilt: " << frame->GetMinimumTiltAngle() << " to " << frame->GetMaximumTiltAngle() << " deg in steps of " << frame->GetTiltAngleStepWidth() << '\n'
          << "  centre of gravity: " << pointText(frame->GetCenterOfGravity()) << '\n';
    const QMap<QString, QList<Point>> views = frame->GetViews().value<QMap<QString, QList<Point>>>();
    for (auto it = views.cbegin(); it != views.cend(); ++it)
        out() << "  view " << it.key() << ": " << it.value().size() << " points\n";
}

void showCoupling(int low, int mid)
{
    CouplingFilterProvider &coupling = CouplingFilterProvider::GetInstance();
    if (!coupling.Initialize())
        fail(QStringLiteral("the coupling filter table cannot be read"));
    out() << "low positions:";
    for (int p : coupling.GetLowPositions())
        out() << ' ' << p << '=' << CouplingFilterProvider::ConvertFromLowIndex(p);
    out() << "\nmid positions:";
    for (int p : coupling.GetMidPositions())
        out() << ' ' << p << '=' << CouplingFilterProvider::ConvertFromMidIndex(p);
    out() << "\nfilters of low position " << low << ", mid position " << mid << ":\n";
    for (const Tolvane::BiquadData &biquad : coupling.GetFilter(low, mid))
        out() << "  type " << biquad.type << ", " << biquad.frequency << " Hz, Q " << biquad.q << ", " << biquad.gain << " dB\n";
}

int intValue(const QString &text, const char *what)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok)
        fail(QStringLiteral("%1 must be a whole number, not \"%2\"").arg(QLatin1String(what), text));
    return value;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lpsdk"));
    QCoreApplication::setApplicationVersion(norvik::LoudspeakerPluginSdk::libVersionString());

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Loads the loudspeaker-series plugins from the Plugins folder beside this program and answers questions about them.\n\n"
        "Commands:\n"
        "  list                      the series, loudspeakers and rigging hardware (default)\n"
        "  show <loudspeaker>        cabinet, outlines, source points, setups and switches\n"
        "  transfer <loudspeaker>    the transfer function of a controller setup, one line per frequency\n"
        "  frame <rigging hardware>  frame size, limits and outlines\n"
        "  coupling                  coupling positions and the filters of one position pair"));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("list, show, transfer, frame or coupling"));
    parser.addPositionalArgument(QStringLiteral("name"), QStringLiteral("loudspeaker or rigging hardware name"), QStringLiteral("[name]"));
    const QCommandLineOption mountingOption(QStringLiteral("mounting"), QStringLiteral("Mounting for outlines and default setups (default: flown)."), QStringLiteral("mounting"), QStringLiteral("flown"));
    const QCommandLineOption setupOption(QStringLiteral("setup"), QStringLiteral("Controller setup key (default: the mounting's default setup)."), QStringLiteral("key"));
    const QCommandLineOption switchOption(QStringLiteral("switch"), QStringLiteral("Switch setting, e.g. 1=1; repeatable. Switches 4 and 5 are the low and mid coupling positions."), QStringLiteral("n=value"));
    const QCommandLineOption linearOption(QStringLiteral("linear"), QStringLiteral("Use the linear grid (0 to 6 kHz) instead of 1/24 octaves."));
    const QCommandLineOption sensitivityOption(QStringLiteral("sensitivity"), QStringLiteral("0 none, 1 measured sensitivity, 2 array EQ, 3 both (default 0)."), QStringLiteral("type"), QStringLiteral("0"));
    const QCommandLineOption apEqOption(QStringLiteral("ap-eq"), QStringLiteral("Include the all-pass EQ."));
    const QCommandLineOption lowOption(QStringLiteral("low"), QStringLiteral("Low coupling position for 'coupling' (default 11)."), QStringLiteral("position"), QStringLiteral("11"));
    const QCommandLineOption midOption(QStringLiteral("mid"), QStringLiteral("Mid coupling position for 'coupling' (default 1)."), QStringLiteral("position"), QStringLiteral("1"));
    const QCommandLineOption expectLoudspeaker(QStringLiteral("expect-loudspeaker"), QStringLiteral("'list': fail unless a loudspeaker of this name is registered."), QStringLiteral("name"));
    const QCommandLineOption expectRigging(QStringLiteral("expect-rigging"), QStringLiteral("'list': fail unless rigging hardware of this name is registered."), QStringLiteral("name"));
    parser.addOptions({mountingOption, setupOption, switchOption, linearOption, sensitivityOption, apEqOption, lowOption, midOption, expectLoudspeaker, expectRigging});
    parser.process(app);

    const QStringList arguments = parser.positionalArguments();
    const QString command = arguments.value(0, QStringLiteral("list"));
    const QString name = arguments.value(1);
    if (command != QLatin1String("list") && command != QLatin1String("coupling") && name.isEmpty())
        fail(QStringLiteral("'%1' needs a name").arg(command));

    const QTemporaryDir databaseDirectory;
    if (!databaseDirectory.isValid() || !openCouplingDatabase(databaseDirectory))
        std::fprintf(stderr, "lpsdk: the coupling filter database could not be opened; coupling filters are not applied\n");

    PluginProvider &provider = PluginProvider::GetInstance();
    loadPlugins(provider);
    const Tolvane::Mounting mounting = parseMounting(parser.value(mountingOption));

    if (command == QLatin1String("list")) {
        listRegistrations(provider);
        int missing = 0;
        for (const QString &expected : parser.values(expectLoudspeaker)) {
            if (!provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(expected)) {
                std::fprintf(stderr, "Missing loudspeaker: %s\n", qPrintable(expected));
                ++missing;
            }
        }
        for (const QString &expected : parser.values(expectRigging)) {
            if (!provider.GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptor(expected)) {
                std::fprintf(stderr, "Missing rigging hardware: %s\n", qPrintable(expected));
                ++missing;
            }
        }
        out().flush();
        return missing == 0 ? 0 : 1;
    }
    if (command == QLatin1String("show")) {
        showLoudspeaker(provider, name, mounting);
    } else if (command == QLatin1String("transfer")) {
        TransferOptions options;
        options.mounting = mounting;
        if (parser.isSet(setupOption))
            options.setupKey = intValue(parser.value(setupOption), "--setup");
        for (const QString &setting : parser.values(switchOption)) {
            const QStringList parts = setting.split(QLatin1Char('='));
            if (parts.size() != 2)
                fail(QStringLiteral("--switch takes n=value, not \"%1\"").arg(setting));
            options.switches.insert(intValue(parts.at(0), "a switch number"), intValue(parts.at(1), "a switch value"));
        }
        options.range = parser.isSet(linearOption) ? Tolvane::LinearFrequencies : Tolvane::LogarithmicFrequencies;
        options.sensitivity = static_cast<Tolvane::SensitivityTypes>(intValue(parser.value(sensitivityOption), "--sensitivity"));
        options.apEq = parser.isSet(apEqOption);
        printTransferFunction(provider, name, options);
    } else if (command == QLatin1String("frame")) {
        showFrame(provider, name);
    } else if (command == QLatin1String("coupling")) {
        showCoupling(intValue(parser.value(lowOption), "--low"), intValue(parser.value(midOption), "--mid"));
    } else {
        fail(QStringLiteral("unknown command \"%1\" (see --help)").arg(command));
    }
    out().flush();
    return 0;
}
