// SPDX-License-Identifier: MIT
#include "LoudspeakerDescriptor.h"
#include "LoudspeakerDescriptorProvider.h"
#include "LoudspeakerSeries_Interface.h"
#include "PluginProvider.h"
#include "Plugin_Interface.h"
#include "RiggingHardwareDescriptor.h"
#include "RiggingHardwareDescriptorProvider.h"
#include "TestHelpers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>

namespace {
QStringList seriesNames(const QList<LoudspeakerSeries_Interface *> &plugins)
{
    QStringList names;
    for (const LoudspeakerSeries_Interface *plugin : plugins)
        names.append(plugin->GetName());
    return names;
}

int seriesOnlyDestructions()
{
    return qEnvironmentVariableIntValue("LPSDK_SERIESONLY_DESTROYED");
}
} // namespace

class tst_PluginProvider : public QObject
{
    Q_OBJECT

private:
    PluginProvider &provider = PluginProvider::GetInstance();
    // The plugin folder as the file system lists it, which is the order plugins load in.
    QStringList listing;

    qsizetype listingIndex(const QString &baseName) const
    {
        for (qsizetype i = 0; i < listing.size(); ++i) {
            if (QFileInfo(listing.at(i)).baseName() == baseName)
                return i;
        }
        return -1;
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QDir directory(QCoreApplication::applicationDirPath() + QStringLiteral("/Plugins"));
        listing = directory.entryList(QDir::Files, QDir::NoSort);
        QVERIFY2(listing.size() >= 6, "the test plugins have not been built");
        QVERIFY(listingIndex(QStringLiteral("libequalorderA")) >= 0);
        QVERIFY(listingIndex(QStringLiteral("libequalorderB")) >= 0);
    }

    void init()
    {
        failOnUnexpectedWarnings();
        provider.Clear();
    }

    void progressFollowsTheFolderListing()
    {
        QList<int> expected;
        for (qsizetype i = 0; i < listing.size(); ++i) {
            if (QLibrary::isLibrary(listing.at(i)))
                expected.append(qRound(100.0 / listing.size() * (i + 1)));
        }

        QSignalSpy spy(&provider, &PluginProvider::PluginLoadingProgressChanged);
        provider.LoadPlugins();

        QList<int> emitted;
        for (const QList<QVariant> &arguments : std::as_const(spy))
            emitted.append(arguments.at(0).toInt());
        QCOMPARE(emitted, expected);

        // Everything was taken in: a second run finds nothing new and reports nothing.
        provider.LoadPlugins();
        QCOMPARE(spy.size(), expected.size());
    }

    void onlyCompletePluginsAreRegistered()
    {
        const int destroyedBefore = seriesOnlyDestructions();
        provider.LoadPlugins();

        QStringList names = seriesNames(provider.GetPlugins(Tolvane::AllSources));
        names.sort();
        QCOMPARE(names, QStringList({QStringLiteral("Equal A"), QStringLiteral("Equal B"), QStringLiteral("Full Series")}));
        // The series-only root object failed the second cast and was deleted.
        QCOMPARE(seriesOnlyDestructions(), destroyedBefore + 1);
    }

    void pluginsRegisterTheirDescriptorsOnTheLoadingThread()
    {
        provider.LoadPlugins();
        LoudspeakerSeries_Interface *series = provider.GetPlugin(QStringLiteral("Full Series"));
        QVERIFY(series);

        LoudspeakerDescriptor *loudspeaker = provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(QStringLiteral("Full Loudspeaker"));
        QVERIFY(loudspeaker);
        QCOMPARE(loudspeaker->GetLoudspeakerSeries(), series);
        QCOMPARE(loudspeaker->thread(), QThread::currentThread());
        QVERIFY(provider.GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptor(QStringLiteral("Full Frame")));
    }

    void groupOrder_data()
    {
        QTest::addColumn<int>("group");
        QTest::addColumn<bool>("fullSeriesFirst");
        QTest::newRow("line arrays: lower order number first") << int(Tolvane::LineArraySources) << true;
        QTest::newRow("point sources") << int(Tolvane::PointSources) << false;
        QTest::newRow("all sources") << int(Tolvane::AllSources) << false;
        QTest::newRow("0 is served from group 4") << int(Tolvane::UndefinedSources) << false;
        QTest::newRow("5 is served from group 4") << int(Tolvane::OtherSources) << false;
        QTest::newRow("unknown group is served from group 4") << 9 << false;
    }

    void groupOrder()
    {
        QFETCH(int, group);
        QFETCH(bool, fullSeriesFirst);
        provider.LoadPlugins();

        // Equal order numbers: the series registered later (listed later) comes first.
        const bool aListedFirst = listingIndex(QStringLiteral("libequalorderA")) < listingIndex(QStringLiteral("libequalorderB"));
        QStringList expected = aListedFirst ? QStringList{QStringLiteral("Equal B"), QStringLiteral("Equal A")}
                                            : QStringList{QStringLiteral("Equal A"), QStringLiteral("Equal B")};
        if (fullSeriesFirst)
            expected.prepend(QStringLiteral("Full Series"));
        else
            expected.append(QStringLiteral("Full Series"));

        QCOMPARE(seriesNames(provider.GetPlugins(static_cast<Tolvane::SourceGroupType>(group))), expected);
    }

    void getPluginComparesNamesExactly_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("found");
        QTest::newRow("exact") << QStringLiteral("Full Series") << true;
        QTest::newRow("other letter case") << QStringLiteral("full series") << false;
        QTest::newRow("prefix") << QStringLiteral("Full") << false;
        QTest::newRow("registered nothing but exists") << QStringLiteral("Equal A") << true;
        QTest::newRow("deleted root object") << QStringLiteral("Series Only") << false;
    }

    void getPluginComparesNamesExactly()
    {
        QFETCH(QString, name);
        QFETCH(bool, found);
        QVERIFY(!provider.GetPlugin(name)); // nothing loaded yet
        provider.LoadPlugins();
        LoudspeakerSeries_Interface *plugin = provider.GetPlugin(name);
        QCOMPARE(plugin != nullptr, found);
        if (plugin)
            QCOMPARE(plugin->GetName(), name);
    }

    void loadPlugin_data()
    {
        QTest::addColumn<bool>("loadAllFirst");
        QTest::addColumn<QString>("fileName"); // given to LoadPlugin twice
        QTest::addColumn<QStringList>("expected"); // sorted
        const QStringList all{QStringLiteral("Equal A"), QStringLiteral("Equal B"), QStringLiteral("Full Series")};
        QTest::newRow("base name, taken once") << false << QStringLiteral("libfullseries") << QStringList{QStringLiteral("Full Series")};
        QTest::newRow("file LoadPlugins took is not taken again") << true << QStringLiteral("libfullseries") << all;
        QTest::newRow("file name with suffix") << false << QStringLiteral("libfullseries.so") << QStringList();
        QTest::newRow("part of the base name") << false << QStringLiteral("libfull") << QStringList();
        QTest::newRow("other letter case") << false << QStringLiteral("LIBFULLSERIES") << QStringList();
        QTest::newRow("not a library") << false << QStringLiteral("readme") << QStringList();
        QTest::newRow("library without plugin") << false << QStringLiteral("libplainlibrary") << QStringList();
    }

    void loadPlugin()
    {
        QFETCH(bool, loadAllFirst);
        QFETCH(QString, fileName);
        QFETCH(QStringList, expected);
        if (loadAllFirst)
            provider.LoadPlugins();
        provider.LoadPlugin(fileName);
        provider.LoadPlugin(fileName);
        QStringList names = seriesNames(provider.GetPlugins(Tolvane::AllSources));
        names.sort();
        QCOMPARE(names, expected);
    }

    void failedLoadsAreRememberedByLoadPluginsOnly()
    {
        // A root object that fails the cast is still a loaded library: LoadPlugin records
        // it and does not create (and delete) another root object on a second call.
        const int destroyedBefore = seriesOnlyDestructions();
        provider.LoadPlugin(QStringLiteral("libseriesonly"));
        provider.LoadPlugin(QStringLiteral("libseriesonly"));
        QCOMPARE(seriesOnlyDestructions(), destroyedBefore + 1);

        // LoadPlugins records every file it tried: a later LoadPlugin of any of them does nothing.
        provider.Clear();
        provider.LoadPlugins();
        const int afterLoadPlugins = seriesOnlyDestructions();
        provider.LoadPlugin(QStringLiteral("libseriesonly"));
        provider.LoadPlugin(QStringLiteral("libplainlibrary"));
        QCOMPARE(seriesOnlyDestructions(), afterLoadPlugins);
        QCOMPARE(provider.GetPlugins(Tolvane::AllSources).size(), 3);
    }

    void clearForgetsPluginsButKeepsRegistries()
    {
        provider.SetBalloonDataReadMode(SourcePointDescriptor_Interface::Synchronous);
        provider.LoadPlugins();
        LoudspeakerDescriptorProvider *const loudspeakers = provider.GetLoudspeakerDescriptorProvider();
        LoudspeakerDescriptor keeper(QString(), nullptr);
        keeper.setObjectName(QStringLiteral("outlives the plugins"));
        loudspeakers->AddLoudspeakerDescriptor(&keeper); // blank name: registered under ""

        provider.Clear();
        QVERIFY(provider.GetPlugins(Tolvane::AllSources).isEmpty());
        QVERIFY(provider.GetPlugins(Tolvane::LineArraySources).isEmpty());
        QCOMPARE(provider.GetBalloonDataReadMode(), SourcePointDescriptor_Interface::Asynchronous);
        QCOMPARE(provider.GetLoudspeakerDescriptorProvider(), loudspeakers);
        QCOMPARE(loudspeakers->GetLoudspeakerDescriptor(QString()), &keeper);
        // The plugin's own descriptor died with its root object: its entry reads as null.
        QVERIFY(!loudspeakers->GetLoudspeakerDescriptor(QStringLiteral("Full Loudspeaker")));

        // Loading again registers the plugin's new descriptor under the same name.
        provider.LoadPlugins();
        LoudspeakerDescriptor *reloaded = loudspeakers->GetLoudspeakerDescriptor(QStringLiteral("Full Loudspeaker"));
        QVERIFY(reloaded);
        QCOMPARE(reloaded->GetLoudspeakerSeries(), provider.GetPlugin(QStringLiteral("Full Series")));
        loudspeakers->RemoveLoudspeakerDescriptor(&keeper);
    }

    void loadResults_data()
    {
        QTest::addColumn<QString>("baseName");
        QTest::addColumn<bool>("loaded");
        QTest::addColumn<QString>("error"); // a part of the error string
        QTest::addColumn<QStringList>("registered"); // series, then loudspeakers, then riggings
        QTest::newRow("complete plugin") << QStringLiteral("libfullseries") << true << QString()
                                         << QStringList{QStringLiteral("Full Series"), QStringLiteral("Full Loudspeaker"), QStringLiteral("Full Frame")};
        QTest::newRow("plugin registering no descriptor") << QStringLiteral("libequalorderA") << true << QString() << QStringList{QStringLiteral("Equal A")};
        QTest::newRow("root object lacks an interface") << QStringLiteral("libseriesonly") << false
                                                        << QStringLiteral("does not implement " Plugin_Interface_iid) << QStringList();
        QTest::newRow("library without plugin") << QStringLiteral("libplainlibrary") << false << QStringLiteral("is not a Qt plugin") << QStringList();
    }

    void loadResults()
    {
        QFETCH(QString, baseName);
        QFETCH(bool, loaded);
        QFETCH(QString, error);
        QFETCH(QStringList, registered);
        const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/Plugins");
        QVERIFY(provider.GetPluginLoadResults().isEmpty());
        provider.LoadPlugins(folder + QStringLiteral("/."));

        const QList<PluginLoadResult> results = provider.GetPluginLoadResults();
        QCOMPARE(results.size(), 5); // every library file, not the readme
        const auto found = std::find_if(results.cbegin(), results.cend(), [&](const PluginLoadResult &r) { return QFileInfo(r.fileName).baseName() == baseName; });
        QVERIFY(found != results.cend());
        QCOMPARE(QFileInfo(found->fileName).absolutePath(), folder);
        QVERIFY(QFileInfo(found->fileName).isAbsolute());
        QCOMPARE(found->loaded, loaded);
        QVERIFY2(found->errorString.contains(error) && found->errorString.isEmpty() == error.isEmpty(), qPrintable(found->errorString));
        QCOMPARE(found->series + found->loudspeakers + found->riggings, registered);
        QCOMPARE(provider.GetPluginDirectory(), folder);

        // Loading the folder again, as a second host object in the process would, loads
        // nothing twice and reports the same outcome.
        provider.LoadPlugins(folder);
        const QList<PluginLoadResult> again = provider.GetPluginLoadResults();
        QCOMPARE(again.size(), results.size());
        for (qsizetype i = 0; i < again.size(); ++i) {
            QCOMPARE(again.at(i).fileName, results.at(i).fileName);
            QCOMPARE(again.at(i).loaded, results.at(i).loaded);
            QCOMPARE(again.at(i).loudspeakers, results.at(i).loudspeakers);
        }
        QCOMPARE(provider.GetPlugins(Tolvane::AllSources).size(), 3);
    }

    void namesakeInAnotherFolderIsNotLoaded()
    {
        QTemporaryDir other;
        const QString copy = other.filePath(QStringLiteral("libfullseries.so"));
        QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + QStringLiteral("/Plugins/libfullseries.so"), copy));
        provider.LoadPlugins();
        provider.LoadPlugins(other.path());

        const QList<PluginLoadResult> results = provider.GetPluginLoadResults();
        QCOMPARE(results.size(), 1);
        QCOMPARE(results.at(0).fileName, copy);
        QVERIFY(!results.at(0).loaded);
        QCOMPARE(results.at(0).errorString, QStringLiteral("a plugin library with the base name \"libfullseries\" was loaded before"));
        QCOMPARE(provider.GetPlugins(Tolvane::AllSources).size(), 3);

        provider.Clear();
        QVERIFY(provider.GetPluginLoadResults().isEmpty());
        QCOMPARE(provider.GetPluginDirectory(), QCoreApplication::applicationDirPath() + QStringLiteral("/Plugins"));
    }

    void cleanupTestCase() { provider.Clear(); }
};

QTEST_GUILESS_MAIN(tst_PluginProvider)
#include "tst_pluginprovider.moc"
