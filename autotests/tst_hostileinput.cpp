// SPDX-License-Identifier: MIT
// Hostile input to every reader and query: each case gets its documented outcome (defaults, the
// exact warnings, the documented exceptions) and nothing else, in bounded time and memory.
#include "BalloonFileReader_p.h"
#include "RawBalloonFile.h"
#include "DspChannelDescriptor.h"
#include "FilterResponse.h"
#include "JsonFileLoader.h"
#include "LoudspeakerDescriptor.h"
#include "LoudspeakerDescriptorProvider.h"
#include "LoudspeakerSetup.h"
#include "RiggingHardwareDescriptor.h"
#include "RiggingHardwareDescriptorProvider.h"
#include "SourcePointDescriptor.h"
#include "TestHelpers.h"

#include <QFile>
#include <QJsonDocument>
#include <QTest>

#include <limits>
#include <stdexcept>

namespace {

enum Reader { JsonLoader, ControllerSetup, Loudspeaker, Rigging };

const QString Source = QStringLiteral("hostile.json");

// Reads `bytes` with one reader and answers the name it found ("name", or "setupName").
QString readName(Reader reader, const QByteArray &bytes)
{
    switch (reader) {
    case JsonLoader:
        return LoadJsonData(bytes, Source).value(QStringLiteral("name")).toString();
    case ControllerSetup: {
        LoudspeakerSetup setup;
        setup.ReadData(bytes, Source);
        return setup.GetName();
    }
    case Loudspeaker: {
        LoudspeakerDescriptor descriptor{QString()};
        descriptor.ReadDescriptorData(bytes, Source);
        return descriptor.GetName();
    }
    case Rigging: {
        RiggingHardwareDescriptor descriptor{QString()};
        descriptor.ReadDescriptorData(bytes, Source);
        return descriptor.GetName();
    }
    }
    return QString();
}

// Every warning text the library documents; the sweep below accepts these and fails on any other.
// A setup or balloon name that is no text names the resource folder itself, which opens empty.
const QRegularExpression DocumentedWarning(QStringLiteral(
    "^(Unknown loudspeaker type: hostile\\.json|Unknown cabinetShape!|unknown filter type -?\\d+"
    "|Json file not found: :/Resources/.*|File error code: \\d+|Balloon data file not found: :/Resources/.*"
    "|JSON parse error in file: :/Resources/.*|Error: illegal value"
    "|Validation failed for \\[name:.*)$"));

QStringList g_unexpectedWarnings;

void collectUnexpectedWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && !DocumentedWarning.match(message).hasMatch())
        g_unexpectedWarnings.append(message);
}

// Calls `visit` with every path into a JSON tree (object members and list entries).
void forEachPath(const QVariant &value, QVariantList &path, const std::function<void(const QVariantList &)> &visit)
{
    if (value.metaType().id() == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            path.append(it.key());
            visit(path);
            forEachPath(it.value(), path, visit);
            path.removeLast();
        }
    } else if (value.metaType().id() == QMetaType::QVariantList) {
        const QVariantList list = value.toList();
        for (qsizetype i = 0; i < list.size(); ++i) {
            path.append(i);
            visit(path);
            forEachPath(list.at(i), path, visit);
            path.removeLast();
        }
    }
}

QVariant replaced(const QVariant &tree, const QVariantList &path, qsizetype depth, const QVariant &value)
{
    if (depth == path.size())
        return value;
    if (tree.metaType().id() == QMetaType::QVariantMap) {
        QVariantMap map = tree.toMap();
        const QString key = path.at(depth).toString();
        map.insert(key, replaced(map.value(key), path, depth + 1, value));
        return map;
    }
    QVariantList list = tree.toList();
    const qsizetype i = path.at(depth).toLongLong();
    list[i] = replaced(list.at(i), path, depth + 1, value);
    return list;
}

QByteArray resource(const QString &name)
{
    QFile file(QStringLiteral(":/hostile/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_HostileInput : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void jsonDocuments_data();
    void jsonDocuments();
    void wrongTypeAtEveryKey_data();
    void wrongTypeAtEveryKey();
    void missingResources();
    void balloonBitFlips();
    void balloonLookupArguments_data();
    void balloonLookupArguments();
    void transferFunctionArguments();
    void emptyAndDuplicateNames();
};

void tst_HostileInput::jsonDocuments_data()
{
    QTest::addColumn<int>("reader");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("error"); // the parser's error, empty when the document parses
    QTest::addColumn<QString>("name");

    const qsizetype deep = 5000;
    const qsizetype big = 4 * 1024 * 1024;
    const QString bigName(big, QLatin1Char('x'));
    const QByteArray bigNameJson = "\"" + bigName.toLatin1() + "\"";
    const QList<std::tuple<const char *, QByteArray, QString, QString>> rows{
        {"arrays nested 5000 deep", "{\"name\": " + QByteArray(deep, '[') + QByteArray(deep, ']') + "}",
         QStringLiteral("too deeply nested document"), QString()},
        {"objects nested 5000 deep", QByteArray().append(QByteArray("{\"name\": ").repeated(deep)) + "1" + QByteArray(deep, '}'),
         QStringLiteral("too deeply nested document"), QString()},
        {"multi-megabyte string", "{\"name\": " + bigNameJson + "}", QString(), bigName},
        {"multi-megabyte key", "{" + bigNameJson + ": 1, \"name\": \"n\"}", QString(), QStringLiteral("n")},
        {"multi-megabyte line comment", "{\"name\": \"n\"} // " + QByteArray(big, 'x'), QString(), QStringLiteral("n")},
        {"multi-megabyte number", "{\"name\": \"n\", \"width\": 1" + QByteArray(big, '0') + "}", QStringLiteral("illegal number"), QString()},
        {"NUL inside a string is kept", QByteArray("{\"name\": \"n\0\"}", 14), QString(), QString(QStringLiteral("n")).append(QChar(0))},
        {"empty file", QByteArray(), QStringLiteral("illegal value"), QString()},
    };
    for (const auto &[name, bytes, error, expectedName] : rows) {
        for (const auto &[readerName, reader] : {std::pair("JSON loader", JsonLoader), std::pair("controller setup", ControllerSetup),
                                                 std::pair("loudspeaker", Loudspeaker), std::pair("rigging", Rigging)}) {
            QTest::addRow("%s: %s", readerName, name) << int(reader) << bytes << error << expectedName;
        }
    }
}

void tst_HostileInput::jsonDocuments()
{
    QFETCH(int, reader);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, error);
    QFETCH(QString, name);
    if (!error.isEmpty()) {
        QTest::ignoreMessage(QtWarningMsg, "JSON parse error in file: hostile.json");
        QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("Error: ") + error));
    }
    if (reader == Loudspeaker)
        QTest::ignoreMessage(QtWarningMsg, "Unknown loudspeaker type: hostile.json");
    if (reader == ControllerSetup) // its name is under another key
        bytes.replace("\"name\"", "\"setupName\"");
    QCOMPARE(readName(Reader(reader), bytes), name);
}

void tst_HostileInput::wrongTypeAtEveryKey_data()
{
    QTest::addColumn<int>("reader");
    QTest::addColumn<QString>("file");
    QTest::newRow("controller setup with every key") << int(ControllerSetup) << QStringLiteral("controller/full_setup.json");
    QTest::newRow("loudspeaker with every key") << int(Loudspeaker) << QStringLiteral("loudspeaker/full.json");
    QTest::newRow("loudspeaker with source points and setups") << int(Loudspeaker) << QStringLiteral("loudspeaker/sourcepoints.json");
    QTest::newRow("rigging with every key") << int(Rigging) << QStringLiteral("rigging/full.json");
    QTest::newRow("rigging with load beams") << int(Rigging) << QStringLiteral("rigging/loadbeams.json");
    QTest::newRow("rigging with mechanics") << int(Rigging) << QStringLiteral("rigging/mechanics.json");
}

void tst_HostileInput::wrongTypeAtEveryKey()
{
    QFETCH(int, reader);
    QFETCH(QString, file);
    const QVariant tree = LoadJsonData(resource(file));
    QVERIFY(!tree.toMap().isEmpty());

    // Each value in turn becomes each JSON kind it is not; only documented warnings may follow.
    const QVariantList kinds{QVariantList{1, QStringLiteral("x")}, QVariantMap{{QStringLiteral("x"), 1}}, QStringLiteral("text"),
                             true, QVariant::fromValue(nullptr), -1e308, 1e308, -2147483649.0};
    int reads = 0;
    QStringList failures;
    QVariantList path;
    forEachPath(tree, path, [&](const QVariantList &at) {
        for (const QVariant &kind : kinds) {
            const QByteArray bytes = QJsonDocument::fromVariant(replaced(tree, at, 0, kind)).toJson(QJsonDocument::Compact);
            g_unexpectedWarnings.clear();
            const QtMessageHandler previous = qInstallMessageHandler(collectUnexpectedWarnings);
            readName(Reader(reader), bytes);
            qInstallMessageHandler(previous);
            ++reads;
            for (const QString &warning : std::as_const(g_unexpectedWarnings))
                failures.append(QVariant(at).toStringList().join(QLatin1Char('/')) + QStringLiteral(": ") + warning);
        }
    });
    QVERIFY(reads > 50);
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char('\n'))));
}

void tst_HostileInput::missingResources()
{
    // Named files that are not there: the loader and the source point say so, and the
    // descriptor keeps its channel with an empty setup under the key.
    const QByteArray json = R"({"name": "n", "type": "Top", "sourcePoints": [{"name": "HF",
        "balloonData": {"default": "missing.bin"}, "controllerSetups": {"3": "missing.json"}}]})";
    QTest::ignoreMessage(QtWarningMsg, "Balloon data file not found: :/Resources/missing.bin");
    QTest::ignoreMessage(QtWarningMsg, "Json file not found: :/Resources/missing.json");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^File error code: \\d+$")));
    LoudspeakerDescriptor descriptor{QString()};
    descriptor.ReadDescriptorData(json, Source);
    QCOMPARE(descriptor.GetSourcePointDescriptors().size(), 1);
    SourcePointDescriptor *point = descriptor.GetSourcePointDescriptors().first();
    QVERIFY(!point->HasBalloonFiles());
    point->ReadBalloonData(SourcePointDescriptor::Synchronous);
    QVERIFY(!point->IsBalloonDataLoaded());
    DspChannelDescriptor *channel = point->GetDspChannelDescriptor(QStringLiteral("D80"));
    QVERIFY(channel);
    LoudspeakerSetup *setup = channel->GetLoudspeakerSetups().value(3);
    QVERIFY(setup);
    QCOMPARE(setup->GetName(), QString());
    QCOMPARE(setup->GetGain(), 1.0);
}

void tst_HostileInput::balloonBitFlips()
{
    // Every single-bit corruption of a small file: it decodes, or the synchronous read refuses
    // it with std::length_error; nothing larger than the file plus the allowance is built.
    RawBalloonFile w = RawBalloonFile::grid({100.0, 1000.0}, 3, 4, 90.0, 90.0);
    w.hasFlushMount = 1;
    w.flushMount[0] = 500.0;
    w.flushMount[3] = 0.2;
    w.flushMount[4] = 0.1;
    const QByteArray file = w.toBytes();
    int refused = 0;
    for (qsizetype bit = 0; bit < file.size() * 8; ++bit) {
        QByteArray bytes = file;
        bytes[bit / 8] = char(bytes[bit / 8] ^ (1 << (bit % 8)));
        BalloonFileReader reader(bytes);
        QList<double> frequencies;
        std::vector<double> levels;
        try {
            reader.ReadFrequencies(frequencies, levels);
            const std::vector<std::complex<float>> table = reader.ReadTable(levels);
            QVERIFY2(qint64(table.size()) <= bytes.size() + BalloonFileReader::MaxUnbackedValues, qPrintable(QString::number(bit)));
            if (reader.header().hasFlushMount)
                reader.BuildFlushMountTable(frequencies, table);
        } catch (const std::length_error &) {
            ++refused;
        }
    }
    // Flipping the sign bit of each count makes a negative count.
    QVERIFY(refused >= 3);
}

void tst_HostileInput::balloonLookupArguments_data()
{
    // The balloon: 100, 200 and 400 Hz; theta rows 0, 10, 20; phi columns 0, 45 … 315.
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("theta");
    QTest::addColumn<double>("phi");
    QTest::addColumn<QString>("outcome"); // "value", "zero" or "out_of_range"
    const double inf = qInf();
    const double nan = qQNaN();
    QTest::newRow("NaN theta reads no corner") << 200.0 << nan << 45.0 << "zero";
    QTest::newRow("NaN phi reads no corner") << 200.0 << 10.0 << nan << "zero";
    QTest::newRow("infinite phi reads no corner") << 200.0 << 10.0 << inf << "zero";
    QTest::newRow("NaN everything reads no corner") << nan << nan << nan << "zero";
    QTest::newRow("huge phi folds into one turn") << 200.0 << 10.0 << 1e300 << "value";
    QTest::newRow("huge negative phi folds into one turn") << 200.0 << 10.0 << -1e300 << "value";
    QTest::newRow("negative frequency snaps to the lowest") << -1e9 << 10.0 << 45.0 << "value";
    QTest::newRow("frequency within 1e10 Hz snaps") << 9e9 << 10.0 << 45.0 << "value";
    QTest::newRow("NaN frequency has no index") << nan << 10.0 << 45.0 << "out_of_range";
    QTest::newRow("infinite frequency has no index") << inf << 10.0 << 45.0 << "out_of_range";
    QTest::newRow("frequency 1e10 Hz from every one has no index") << 1.1e10 << 10.0 << 45.0 << "out_of_range";
    QTest::newRow("infinite theta") << 200.0 << inf << 45.0 << "out_of_range";
    QTest::newRow("negative infinite theta") << 200.0 << -inf << 45.0 << "out_of_range";
    QTest::newRow("huge theta") << 200.0 << 1e300 << 45.0 << "out_of_range";
    QTest::newRow("theta below the grid at the first frequency") << 100.0 << -15.0 << 45.0 << "out_of_range";
    QTest::newRow("theta below the grid reads the frequency before") << 200.0 << -15.0 << 45.0 << "value";
    QTest::newRow("theta past the grid at the last frequency") << 400.0 << 25.0 << 45.0 << "out_of_range";
    QTest::newRow("theta past the grid reads the next frequency") << 100.0 << 25.0 << 45.0 << "value";
    QTest::newRow("phi past the last column in the last row of the table") << 400.0 << 20.0 << 350.0 << "out_of_range";
    QTest::newRow("phi past the last column reads the next row") << 400.0 << 10.0 << 350.0 << "value";
}

void tst_HostileInput::balloonLookupArguments()
{
    QFETCH(double, frequency);
    QFETCH(double, theta);
    QFETCH(double, phi);
    QFETCH(QString, outcome);
    SourcePointDescriptor point;
    point.Read({{QStringLiteral("balloonData"), QVariantMap{{QStringLiteral("default"), QStringLiteral("linear_none.bin")}}}});
    point.ReadBalloonData(SourcePointDescriptor::Synchronous);
    QVERIFY(point.IsBalloonDataLoaded());
    for (bool flushMount : {false, true}) { // the file has no flush-mount table: both read the balloon
        if (outcome == QLatin1String("out_of_range")) {
            QVERIFY_THROWS_EXCEPTION(std::out_of_range, point.GetBalloonData(QStringLiteral("default"), frequency, theta, phi, flushMount));
            continue;
        }
        const Complex value = point.GetBalloonData(QStringLiteral("x"), frequency, theta, phi, flushMount);
        if (outcome == QLatin1String("zero"))
            QCOMPARE(value, Complex(0.0, 0.0));
        else
            QVERIFY(std::isfinite(value.real()) && std::isfinite(value.imag()));
    }
}

void tst_HostileInput::transferFunctionArguments()
{
    LoudspeakerSetup setup;
    setup.ReadData(resource(QStringLiteral("controller/full_setup.json")), Source);
    const int intMax = std::numeric_limits<int>::max();
    const int intMin = std::numeric_limits<int>::min();
    const QMap<int, int> hostileSwitches{{intMin, intMax}, {1, -1}, {2, intMax}, {4, intMin}, {5, intMax}, {intMax, 0}};
    for (auto range : {Tolvane::LogarithmicFrequencies, Tolvane::LinearFrequencies}) {
        const int size = int(setup.GetFrequencies(range).size());
        // Outside the grid: (0, 0), whatever else is asked.
        for (int index : {intMin, -1, size, intMax})
            QCOMPARE(setup.GetTransferFunction(range, index, hostileSwitches, Tolvane::SensitivityWithArrayEq, true), Complex(0.0, 0.0));
        // Unknown switch values and coupling positions contribute nothing: a finite, non-zero value.
        const Complex value = setup.GetTransferFunction(range, size / 2, hostileSwitches, Tolvane::SensitivityTypes(intMax), true);
        QVERIFY(std::isfinite(value.real()) && std::isfinite(value.imag()) && value.abs() > 0);
    }
    QCOMPARE(setup.GetTransferFunction(Tolvane::FrequencyRange(intMin), 0, {}, Tolvane::NoSensitivity, false), Complex(1.0, 0.0));

    // Non-finite frequencies in a grid: one response per frequency, nothing else.
    const QList<double> frequencies{qQNaN(), qInf(), -qInf(), 1e308, 0.0, -1.0};
    for (int type = 0; type < 16; ++type) {
        const QVariantMap filter{{QStringLiteral("type"), type}, {QStringLiteral("fp"), qInf()}, {QStringLiteral("Q"), 0.0},
                                 {QStringLiteral("G"), 1e308}};
        QCOMPARE(CalculateFilterResponse(frequencies, filter).size(), frequencies.size());
    }
}

void tst_HostileInput::emptyAndDuplicateNames()
{
    // Files that name nothing, or name the same thing, register once under that name: the first stays.
    LoudspeakerDescriptorProvider loudspeakers;
    LoudspeakerDescriptor unnamed{QString()};
    LoudspeakerDescriptor emptyName{QString()};
    unnamed.ReadDescriptorData(R"({"type": "Top"})");
    emptyName.ReadDescriptorData(R"({"type": "Top", "name": ""})");
    loudspeakers.AddLoudspeakerDescriptor(&unnamed);
    loudspeakers.AddLoudspeakerDescriptor(&emptyName);
    QCOMPARE(loudspeakers.GetLoudspeakerDescriptor(QString()), &unnamed);
    QCOMPARE(loudspeakers.GetLoudspeakerDescriptors(), QList<LoudspeakerDescriptor *>{&unnamed});

    RiggingHardwareDescriptorProvider frames;
    RiggingHardwareDescriptor first{QString()};
    RiggingHardwareDescriptor second{QString()};
    first.ReadDescriptorData(R"({"name": "F"})");
    second.ReadDescriptorData(R"({"name": "F", "weight": 1})");
    frames.AddRiggingHardwareDescriptor(&first);
    frames.AddRiggingHardwareDescriptor(&second);
    QCOMPARE(frames.GetRiggingHardwareDescriptor(QStringLiteral("F")), &first);
}

QTEST_GUILESS_MAIN(tst_HostileInput)
#include "tst_hostileinput.moc"
