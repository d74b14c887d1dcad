// SPDX-License-Identifier: MIT
#include "LibVersion.h"
#include "LoudspeakerDescriptor.h"
#include "RiggingHardwareDescriptor.h"
#include "TestHelpers.h"

#include <QMetaType>

class tst_Vocabulary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void version()
    {
        QCOMPARE(norvik::LoudspeakerPluginSdk::libVersionString(), QStringLiteral("1.122.2"));
        int first = 0;
        int second = 0;
        int third = 0;
        norvik::LoudspeakerPluginSdk::libVersion(first, second, third);
        // Patch, minor, major: the historical order of the out-parameters.
        QCOMPARE(first, 2);
        QCOMPARE(second, 122);
        QCOMPARE(third, 1);
    }

    void mountingTexts_data()
    {
        QTest::addColumn<int>("mounting");
        QTest::addColumn<QString>("text");
        QTest::newRow("-2") << -2 << QString();
        QTest::newRow("invalid") << -1 << QStringLiteral("invalid");
        QTest::newRow("flown") << 0 << QStringLiteral("flown");
        QTest::newRow("stacked") << 1 << QStringLiteral("stacked");
        QTest::newRow("flown horizontal") << 2 << QStringLiteral("flown_horizontal");
        QTest::newRow("stacked horizontal") << 3 << QStringLiteral("stacked_horizontal");
        QTest::newRow("stacked cart") << 4 << QStringLiteral("stacked_cart");
        QTest::newRow("flown install") << 5 << QStringLiteral("flown_install");
        QTest::newRow("flown pullback") << 6 << QStringLiteral("flown_pullback");
        QTest::newRow("7") << 7 << QString();
    }

    void mountingTexts()
    {
        QFETCH(int, mounting);
        QFETCH(QString, text);
        QCOMPARE(LoudspeakerDescriptor::ConvertMountingToString(static_cast<Tolvane::Mounting>(mounting)), text);
        // Reading the text back gives the mounting; the out-of-range rows have no text and parse to nothing.
        bool ok = false;
        const Tolvane::Mounting parsed = LoudspeakerDescriptor::ConvertStringToMounting(text, &ok);
        QCOMPARE(ok, !text.isEmpty());
        QCOMPARE(int(parsed), ok ? mounting : int(Tolvane::Invalid));
    }

    void descriptorsCastByClassNameAndInterfaceId_data()
    {
        QTest::addColumn<QObject *>("object");
        QTest::addColumn<QByteArray>("className");
        QTest::addColumn<QByteArray>("iid");
        static LoudspeakerDescriptor loudspeaker{QString()};
        static RiggingHardwareDescriptor frame{QString()};
        QTest::newRow("loudspeaker") << static_cast<QObject *>(&loudspeaker) << QByteArray("LoudspeakerDescriptor_Interface")
                                     << QByteArray("com.norvik.Tolvane.LoudspeakerDescriptor_Interface/1.2");
        QTest::newRow("rigging hardware") << static_cast<QObject *>(&frame) << QByteArray("RiggingHardwareDescriptor_Interface")
                                          << QByteArray("com.norvik.Tolvane.RiggingHardwareDescriptor_Interface/1.0");
    }

    void descriptorsCastByClassNameAndInterfaceId()
    {
        QFETCH(QObject *, object);
        QFETCH(QByteArray, className);
        QFETCH(QByteArray, iid);
        void *byName = object->qt_metacast(className.constData());
        QVERIFY(byName);
        QCOMPARE(object->qt_metacast(iid.constData()), byName);
        QVERIFY(!object->qt_metacast(iid.chopped(1).constData()));
    }

    void pointTypesAreRegisteredByName_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("Point") << QByteArray("Point");
        QTest::newRow("point list") << QByteArray("QList<Point>");
        QTest::newRow("named points") << QByteArray("QMap<QString,Point>");
        QTest::newRow("views") << QByteArray("QMap<QString,QList<Point>>");
    }

    void pointTypesAreRegisteredByName()
    {
        QFETCH(QByteArray, name);
        QVERIFY(QMetaType::fromName(name).isValid());
    }
};

QTEST_GUILESS_MAIN(tst_Vocabulary)
#include "tst_vocabulary.moc"
