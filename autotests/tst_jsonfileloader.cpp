// SPDX-License-Identifier: MIT
#include "JsonFileLoader.h"
#include "TestHelpers.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QLoggingCategory>
#include <QTemporaryDir>

class tst_JsonFileLoader : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir directory;

    QString writeFile(const QString &name, const QByteArray &content)
    {
        const QString path = directory.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void stripLineComment_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("expected");
        QTest::newRow("no comment") << QStringLiteral("\"a\": 1,") << QStringLiteral("\"a\": 1,");
        QTest::newRow("trailing comment") << QStringLiteral("\"a\": 1, // the gain") << QStringLiteral("\"a\": 1, ");
        QTest::newRow("slashes inside a string") << QStringLiteral("\"url\": \"http://host/x\",") << QStringLiteral("\"url\": \"http://host/x\",");
        QTest::newRow("comment after a string with slashes") << QStringLiteral("\"url\": \"http://host\" // home") << QStringLiteral("\"url\": \"http://host\" ");
        QTest::newRow("quotes inside the comment") << QStringLiteral("\"k\": 1, // say \"hi\"") << QStringLiteral("\"k\": 1, ");
        QTest::newRow("right-most of two comments is cut") << QStringLiteral("\"a\": 1 // one // two") << QStringLiteral("\"a\": 1 // one ");
        QTest::newRow("line ending in // keeps it") << QStringLiteral("\"a\": 1 //") << QStringLiteral("\"a\": 1 //");
        QTest::newRow("// with one character after it is cut") << QStringLiteral("\"a\": 1 //x") << QStringLiteral("\"a\": 1 ");
        QTest::newRow("escaped quote before slashes") << QStringLiteral("\"a\\\"//b\"") << QStringLiteral("\"a\\\"//b\"");
        QTest::newRow("empty line") << "" << "";
    }

    void stripLineComment()
    {
        QFETCH(QString, line);
        QFETCH(QString, expected);
        QCOMPARE(StripJsonLineComment(line), expected);
    }

    void readsFilesWithComments()
    {
        const QString path = writeFile(QStringLiteral("commented.json"),
            "// A descriptor with comments\r\n"
            "{\n"
            "    \"name\": \"M\u00fcnster 12\", // display text\n"
            "    \"url\": \"http://example.invalid/a//b\",\n"
            "    \"long\": \"first half \n"
            "second half\",\n"
            "    \"sizes\": [1, 2, 3] // millimetres\n"
            "}\n");
        const QVariantMap map = LoadJsonFile(path);
        QCOMPARE(map.value(QStringLiteral("name")).toString(), QStringLiteral("M\u00fcnster 12"));
        QCOMPARE(map.value(QStringLiteral("url")).toString(), QStringLiteral("http://example.invalid/a//b"));
        // Lines are joined without a separator.
        QCOMPARE(map.value(QStringLiteral("long")).toString(), QStringLiteral("first half second half"));
        QCOMPARE(map.value(QStringLiteral("sizes")).toList().size(), 3);
    }

    void missingFileWarnsTwice()
    {
        const QString path = directory.filePath(QStringLiteral("missing.json"));
        QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("Json file not found: ") + path));
        QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("File error code: %1").arg(int(QFileDevice::OpenError))));
        QVERIFY(LoadJsonFile(path).isEmpty());
    }

    void parseErrorsWarnTwice_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("parsedText");
        QTest::newRow("line ending in //") << QByteArray("{\"a\": 1 //\n}") << QByteArray("{\"a\": 1 //}");
        QTest::newRow("two comments on a line") << QByteArray("{\"a\": 1 // x // y\n}") << QByteArray("{\"a\": 1 // x }");
        QTest::newRow("truncated object") << QByteArray("{\"a\": [1, 2") << QByteArray("{\"a\": [1, 2");
        QTest::newRow("empty file") << QByteArray() << QByteArray();
    }

    void parseErrorsWarnTwice()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, parsedText);
        const QString path = writeFile(QStringLiteral("broken.json"), content);
        QJsonParseError expectedError;
        QJsonDocument::fromJson(parsedText, &expectedError);
        QVERIFY(expectedError.error != QJsonParseError::NoError);

        QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("JSON parse error in file: ") + path));
        QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("Error: ") + expectedError.errorString()));
        QVERIFY(LoadJsonFile(path).isEmpty());
    }

    // The position is that of the character the parser refused, as an editor counts it.
    void syntaxErrorPosition_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("line");
        QTest::addColumn<int>("column");
        QTest::newRow("block comment") << QByteArray("{\n  \"a\": 1,\n  /* c */\n}") << 3 << 3;
        QTest::newRow("missing comma") << QByteArray("{\n \"a\": 1 \"b\": 2\n}") << 2 << 9;
        QTest::newRow("columns count characters") << QByteArray("{\"\xc3\xa4\": \"\xc3\xb6\", x}") << 1 << 12;
        QTest::newRow("stripped comment above") << QByteArray("{ // a comment\r\n \"a\": tru\r\n}") << 2 << 7;
        QTest::newRow("comma before the brace") << QByteArray("{\n \"a\": 1,\n}") << 3 << 1;
        QTest::newRow("garbage after the object") << QByteArray("{\n \"a\": 1\n}\n}") << 4 << 1;
        QTest::newRow("end of file") << QByteArray("{\"a\": [1, 2") << 1 << 11;
    }

    void syntaxErrorPosition()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, line);
        QFETCH(int, column);
        const JsonReadResult result = ReadJsonFile(writeFile(QStringLiteral("position.json"), content));
        QVERIFY(!result.ok());
        QVERIFY(result.map.isEmpty());
        QCOMPARE(result.line, line);
        QCOMPARE(result.column, column);
        QVERIFY(result.ErrorText().startsWith(QStringLiteral("line %1, column %2: ").arg(line).arg(column)));

        const JsonReadResult missing = ReadJsonFile(directory.filePath(QStringLiteral("none.json")));
        QCOMPARE(missing.line, 0);
        QVERIFY(!missing.ok());
    }

    // A host silences a subject by its logging category, without matching texts.
    void warningsFollowTheirCategory()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("nvlps.json.warning=false"));
        const QVariantMap map = LoadJsonFile(directory.filePath(QStringLiteral("missing.json")));
        QLoggingCategory::setFilterRules(QString());
        QVERIFY(map.isEmpty()); // and no warning, which would fail the test
    }

    void nonObjectDocumentsGiveEmptyMapsSilently_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("array") << QByteArray("[{\"name\": \"x\"}] // list");
        QTest::newRow("empty object") << QByteArray("{ } // nothing");
    }

    void nonObjectDocumentsGiveEmptyMapsSilently()
    {
        QFETCH(QByteArray, content);
        QVERIFY(LoadJsonFile(writeFile(QStringLiteral("other.json"), content)).isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_JsonFileLoader)
#include "tst_jsonfileloader.moc"
