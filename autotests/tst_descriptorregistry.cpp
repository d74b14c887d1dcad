// SPDX-License-Identifier: MIT
#include "LoudspeakerDescriptorProvider.h"
#include "RiggingHardwareDescriptorProvider.h"
#include "TestHelpers.h"

class tst_DescriptorRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void firstDescriptorOfANameStays()
    {
        LoudspeakerDescriptorProvider registry;
        LoudspeakerDescriptor first(QStringLiteral(":/Resources/sdk/loudspeaker-a.json"));
        LoudspeakerDescriptor second(QStringLiteral(":/Resources/sdk/loudspeaker-b.json"));
        LoudspeakerDescriptor other(QStringLiteral(":/Resources/sdk/other.json"));
        registry.AddLoudspeakerDescriptor(nullptr);
        registry.AddLoudspeakerDescriptor(&first);
        registry.AddLoudspeakerDescriptor(&second);
        registry.AddLoudspeakerDescriptor(&other);

        QCOMPARE(registry.GetLoudspeakerDescriptor(QStringLiteral("Same Name")), &first);
        QCOMPARE(registry.GetLoudspeakerDescriptors(), QList<LoudspeakerDescriptor *>({&other, &first}));
        QVERIFY(!registry.GetLoudspeakerDescriptor(QStringLiteral("same name")));

        // Removing the ignored second descriptor removes the entry of its name.
        registry.RemoveLoudspeakerDescriptor(&second);
        QVERIFY(!registry.GetLoudspeakerDescriptor(QStringLiteral("Same Name")));
        QCOMPARE(registry.GetLoudspeakerDescriptor(QStringLiteral("Other")), &other);
    }

    void lookupIntoAList()
    {
        RiggingHardwareDescriptorProvider registry;
        RiggingHardwareDescriptor frame(QStringLiteral(":/Resources/sdk/other.json"));
        registry.AddRiggingHardwareDescriptor(&frame);

        RiggingHardwareDescriptor placeholder(QString{});
        QList<RiggingHardwareDescriptor *> list{&placeholder};
        registry.GetRiggingHardwareDescriptor(list, QStringLiteral("Unknown"));
        registry.GetRiggingHardwareDescriptor(list, QStringLiteral("Oth*"));
        QCOMPARE(list, QList<RiggingHardwareDescriptor *>({&placeholder}));
        registry.GetRiggingHardwareDescriptor(list, QStringLiteral("Other"));
        QCOMPARE(list, QList<RiggingHardwareDescriptor *>({&placeholder, &frame}));
    }

    void destroyedDescriptorsReadAsNullAndFreeTheirName()
    {
        LoudspeakerDescriptorProvider registry;
        auto *owner = new QObject;
        registry.AddLoudspeakerDescriptor(new LoudspeakerDescriptor(QStringLiteral(":/Resources/sdk/loudspeaker-a.json"), owner));
        delete owner;
        QVERIFY(!registry.GetLoudspeakerDescriptor(QStringLiteral("Same Name")));
        QVERIFY(registry.GetLoudspeakerDescriptors().isEmpty());
        QList<LoudspeakerDescriptor *> list;
        registry.GetLoudspeakerDescriptor(list, QStringLiteral("Same Name"));
        QVERIFY(list.isEmpty());

        LoudspeakerDescriptor again(QStringLiteral(":/Resources/sdk/loudspeaker-b.json"));
        registry.AddLoudspeakerDescriptor(&again);
        QCOMPARE(registry.GetLoudspeakerDescriptor(QStringLiteral("Same Name")), &again);
    }
};

QTEST_GUILESS_MAIN(tst_DescriptorRegistry)
#include "tst_descriptorregistry.moc"
