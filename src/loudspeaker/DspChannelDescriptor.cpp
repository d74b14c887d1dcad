// SPDX-License-Identifier: MIT
#include "DspChannelDescriptor.h"

#include "FrequencyVectors.h"
#include "LoudspeakerSetup.h"
#include "Vocabulary.h"

DspChannelDescriptor::DspChannelDescriptor(const QVariantMap &map, QObject *parent)
    : QObject(parent)
    , m_logFrequencies(FrequencyVectors::GetFrequencyVector(24))
    , m_linearFrequencies(FrequencyVectors::GetLinearFrequencyVector())
{
    ReadDescriptor(map);
}

DspChannelDescriptor::~DspChannelDescriptor() = default;

bool DspChannelDescriptor::ReadDescriptor(const QVariantMap &map)
{
    m_name = map.value(QStringLiteral("name")).toString();
    ReadLoudspeakerSetups(map);
    return true;
}

void DspChannelDescriptor::ReadLoudspeakerSetups(const QVariantMap &map)
{
    m_defaultSetups.clear();
    const QVariantMap defaults = map.value(QStringLiteral("defaultControllerSetups")).toMap();
    if (defaults.isEmpty()) {
        if (map.contains(QStringLiteral("defaultControllerSetup"))) {
            const int key = map.value(QStringLiteral("defaultControllerSetup")).toInt();
            for (Tolvane::Mounting mounting : {Tolvane::Flown, Tolvane::FlownHorizontal, Tolvane::Stacked, Tolvane::StackedHorizontal,
                                               Tolvane::StackedCart, Tolvane::FlownInstall, Tolvane::FlownPullback})
                m_defaultSetups.insert(mounting, key);
        }
    } else {
        // These key names differ from the mounting texts ("flown_install") and stay as files have them.
        const std::pair<const char *, Tolvane::Mounting> keys[] = {
            {"flown", Tolvane::Flown},
            {"flown_horizontal", Tolvane::FlownHorizontal},
            {"stacked", Tolvane::Stacked},
            {"stacked_horizontal", Tolvane::StackedHorizontal},
            {"stacked_cart", Tolvane::StackedCart},
            {"flown_vertical_install", Tolvane::FlownInstall},
            {"flown_vertical_pullback", Tolvane::FlownPullback},
        };
        for (const auto &key : keys)
            m_defaultSetups.insert(key.second, defaults.value(QLatin1String(key.first)).toInt());
    }

    const QVariantMap setups = map.value(QStringLiteral("controllerSetups")).toMap();
    for (auto it = setups.cbegin(); it != setups.cend(); ++it) {
        auto *setup = new LoudspeakerSetup(this);
        setup->Read(Vocabulary::resourcePath(it.value().toString()));
        m_setups.insert(it.key().toInt(nullptr, 10), setup);
    }
}

LoudspeakerSetup *DspChannelDescriptor::Setup(int setupKey) const
{
    return m_setups.value(setupKey, nullptr);
}

QString DspChannelDescriptor::GetName()
{
    return m_name;
}

int DspChannelDescriptor::GetDefaultLoudspeakerSetupKey(Tolvane::Mounting mounting) const
{
    return m_defaultSetups.value(mounting, 0);
}

QMap<int, LoudspeakerSetup *> DspChannelDescriptor::GetLoudspeakerSetups()
{
    return m_setups;
}

QList<int> DspChannelDescriptor::GetSpeakerIds()
{
    QList<int> ids;
    for (LoudspeakerSetup *setup : std::as_const(m_setups)) {
        if (setup)
            ids.append(setup->GetSpeakerId());
    }
    return ids;
}

QList<double> DspChannelDescriptor::GetFrequencyVector(Tolvane::FrequencyRange range)
{
    if (range == Tolvane::LogarithmicFrequencies)
        return m_logFrequencies;
    if (range == Tolvane::LinearFrequencies)
        return m_linearFrequencies;
    return {};
}

double DspChannelDescriptor::GetDelay(int setupKey)
{
    const LoudspeakerSetup *setup = Setup(setupKey);
    return setup ? setup->GetDelay() : 0.0;
}

double DspChannelDescriptor::GetLowOptFrequency(int setupKey)
{
    const LoudspeakerSetup *setup = Setup(setupKey);
    return setup ? setup->GetLowOptFrequency() : 0.0;
}

double DspChannelDescriptor::GetHighOptFrequency(int setupKey)
{
    const LoudspeakerSetup *setup = Setup(setupKey);
    return setup ? setup->GetHighOptFrequency() : 0.0;
}

double DspChannelDescriptor::GetMergeFrequency(int setupKey)
{
    const LoudspeakerSetup *setup = Setup(setupKey);
    return setup ? setup->GetMergeFrequency() : 0.0;
}

int DspChannelDescriptor::GetSpeakerId(int setupKey)
{
    const LoudspeakerSetup *setup = Setup(setupKey);
    return setup ? setup->GetSpeakerId() : 0;
}

int DspChannelDescriptor::GetSpeakerType(int setupKey)
{
    const LoudspeakerSetup *setup = Setup(setupKey);
    return setup ? setup->GetSpeakerType() : 0;
}

QString DspChannelDescriptor::GetSwitchDescription(int setupKey, int switchId)
{
    LoudspeakerSetup *setup = Setup(setupKey);
    return setup ? setup->GetSwitchDescription(switchId) : QString();
}

QMap<int, QString> DspChannelDescriptor::GetSwitchValues(int setupKey, int switchId)
{
    LoudspeakerSetup *setup = Setup(setupKey);
    return setup ? setup->GetSwitchValues(switchId) : QMap<int, QString>();
}

Complex DspChannelDescriptor::GetTransferFunction(Tolvane::FrequencyRange range, int frequencyIndex, int setupKey,
                                                  const QMap<int, int> &switches, Tolvane::SensitivityTypes sensitivityType, bool applyApEq)
{
    LoudspeakerSetup *setup = Setup(setupKey);
    // No setup means no transfer at all.
    return setup ? setup->GetTransferFunction(range, frequencyIndex, switches, sensitivityType, applyApEq) : Complex(0.0, 0.0);
}

Complex DspChannelDescriptor::GetSensitivity(Tolvane::FrequencyRange range, int frequencyIndex, int setupKey,
                                             Tolvane::SensitivityTypes sensitivityType)
{
    LoudspeakerSetup *setup = Setup(setupKey);
    // Unlike the transfer function, a missing setup gives the neutral factor.
    return setup ? setup->GetSensitivity(range, frequencyIndex, sensitivityType) : Complex(1.0, 0.0);
}

QString DspChannelDescriptor::GetBalloonDataKey(int setupKey, const QMap<int, int> &switchStates)
{
    LoudspeakerSetup *setup = Setup(setupKey);
    return setup ? setup->GetControllerBalloonDataKey(switchStates) : Vocabulary::DefaultKey;
}

bool DspChannelDescriptor::operator==(const DspChannelDescriptor &other) const
{
    if (m_setups.size() != other.m_setups.size())
        return false;
    for (auto it = m_setups.cbegin(), ot = other.m_setups.cbegin(); it != m_setups.cend(); ++it, ++ot) {
        if (it.key() != ot.key())
            return false;
        const LoudspeakerSetup *a = it.value();
        const LoudspeakerSetup *b = ot.value();
        if (a != b && (!a || !b || !(*a == *b)))
            return false;
    }
    if (m_defaultSetups != other.m_defaultSetups)
        return false;
    if (m_linearFrequencies != other.m_linearFrequencies || m_logFrequencies != other.m_logFrequencies)
        return false;
    return m_name == other.m_name;
}
