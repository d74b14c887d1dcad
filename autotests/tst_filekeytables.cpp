// SPDX-License-Identifier: MIT
// The key tables must say what the readers do: every key a reader looks up is in its table,
// and every key a table names is one the reader's sources spell out. The readers are scanned
// as text, so a key added to a reader without its table row fails here.
#include "FileKeyTable.h"
#include "LoudspeakerDescriptorFileKeys.h"
#include "LoudspeakerSetupFileKeys.h"
#include "RiggingHardwareDescriptorFileKeys.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

namespace {
// Key names of a table, of its base and of every block nested in it.
void collectNames(const FileKeyTable &table, QSet<QString> &names, QSet<const FileKeyTable *> &seen)
{
    if (seen.contains(&table))
        return;
    seen.insert(&table);
    for (const FileKey *key : table.AllKeys()) {
        names.insert(QString::fromUtf8(key->name));
        for (const FileKey *row = key; row; row = row->item) {
            if (row->keys)
                collectNames(*row->keys, names, seen);
        }
    }
}

// The reader sources under `folders`, without the tables themselves.
QString readerSources(const QStringList &folders)
{
    QString text;
    for (const QString &folder : folders) {
        QDirIterator it(QStringLiteral(LPSDK_SOURCE_DIR "/") + folder, {QStringLiteral("*.cpp"), QStringLiteral("*.h")},
                        QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            if (path.contains(QLatin1String("FileKeys")))
                continue;
            QFile file(path);
            if (file.open(QIODevice::ReadOnly))
                text += QString::fromUtf8(file.readAll());
        }
    }
    return text;
}
} // namespace

class tst_FileKeyTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableMatchesReader_data();
    void tableMatchesReader();
};

void tst_FileKeyTables::tableMatchesReader_data()
{
    QTest::addColumn<const FileKeyTable *>("table");
    QTest::addColumn<QStringList>("folders");
    QTest::newRow("loudspeaker descriptor") << &LoudspeakerDescriptorFileKeys::Table()
                                            << QStringList {QStringLiteral("loudspeaker"), QStringLiteral("shapes")};
    QTest::newRow("rigging descriptor") << &RiggingHardwareDescriptorFileKeys::Table()
                                        << QStringList {QStringLiteral("rigging"), QStringLiteral("shapes")};
    QTest::newRow("controller setup") << &LoudspeakerSetupFileKeys::Table() << QStringList {QStringLiteral("controller")};
}

void tst_FileKeyTables::tableMatchesReader()
{
    QFETCH(const FileKeyTable *, table);
    QFETCH(QStringList, folders);
    QSet<QString> names;
    QSet<const FileKeyTable *> seen;
    collectNames(*table, names, seen);
    const QString sources = readerSources(folders);
    QVERIFY(!sources.isEmpty());

    // A literal key handed to a map look-up or to one of the readers' conversion helpers; keys built
    // with a format ("3D_%1") are the readers' own view keys, not file keys.
    static const QRegularExpression lookUp(
        QStringLiteral("\\b(?:value|contains|constFind|readLength|readNumber|millimetres|pointMap)\\("
                       "(?:[\\w.]+,\\s*)?(?:QStringLiteral|QLatin1String)?\\(?\"([^\"]+)\""));
    // Readers test a point's form by its coordinates, and look mounting keys up in mounting maps.
    const QSet<QString> pointCoordinates {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")};
    QStringList missing;
    for (auto match = lookUp.globalMatch(sources); match.hasNext();) {
        const QString key = match.next().captured(1);
        const bool known = names.contains(key) || pointCoordinates.contains(key) || FileKeyTable::IsMountingKey(key);
        if (!known && !key.contains(QLatin1Char('%')))
            missing.append(key);
    }
    missing.removeDuplicates();
    QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("read but not in the table: ") + missing.join(QLatin1String(", "))));

    QStringList unread;
    for (const QString &name : std::as_const(names)) {
        if (!sources.contains(QLatin1Char('"') + name + QLatin1Char('"')))
            unread.append(name);
    }
    unread.sort();
    QVERIFY2(unread.isEmpty(), qPrintable(QStringLiteral("in the table but never read: ") + unread.join(QLatin1String(", "))));
}

QTEST_GUILESS_MAIN(tst_FileKeyTables)
#include "tst_filekeytables.moc"
