// SPDX-License-Identifier: MIT
#include "SourcePointDescriptor.h"

#include "BalloonFile.h"
#include "DspChannelDescriptor.h"
#include "SourcePointBalloons_p.h"
#include "UpperState.h"
#include "Vocabulary.h"

#include <QFile>
#include <QFileInfo>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentRun>

namespace {

using Vocabulary::DefaultKey;
const QString DefaultAmplifier = QStringLiteral("D80");

QString resourcePath(const QVariant &fileName)
{
    return Vocabulary::resourcePath(fileName.toString());
}

template<typename T>
T valueForMounting(const QMap<QString, T> &map, Tolvane::Mounting mounting)
{
    return Vocabulary::firstHeld(map, {Vocabulary::mountingText(mounting)});
}

QMap<QString, QList<double>> readAngleMap(const QVariantMap &map)
{
    QMap<QString, QList<double>> angles;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        QList<double> list;
        const QVariantList values = it.value().toList();
        list.reserve(values.size());
        for (const QVariant &value : values)
            list.append(value.toDouble());
        angles.insert(it.key(), list);
    }
    return angles;
}

} // namespace

SourcePointDescriptor::SourcePointDescriptor(QObject *parent)
    : QObject(parent)
{
}

SourcePointDescriptor::~SourcePointDescriptor()
{
    // The worker writes into this object; it catches everything it throws, so waiting cannot rethrow.
    WaitForBackgroundRead();
}

bool SourcePointDescriptor::Read(const QVariantMap &map)
{
    m_name = map.value(QStringLiteral("name")).toString();
    m_origins = Point::fromVariantMap(map.value(QStringLiteral("origin")).toMap());
    m_centers = Point::fromVariantMap(map.value(QStringLiteral("center")).toMap());
    m_flushMountAttenuation = map.value(QStringLiteral("flushMountAttenuation")).toBool();

    // The channel reads its own keys from the same entry.
    delete m_dspChannels.take(DefaultAmplifier);
    m_dspChannels.insert(DefaultAmplifier, new DspChannelDescriptor(map, this));

    m_balloonDataMap = map.value(QStringLiteral("balloonData")).toMap();
    for (auto it = m_balloonDataMap.cbegin(); it != m_balloonDataMap.cend(); ++it) {
        QFile file(resourcePath(it.value()));
        if (!file.open(QIODevice::ReadOnly)) {
            qWarning("Balloon data file not found: %s", file.fileName().toLocal8Bit().constData());
            continue;
        }
        if (file.size() != 0)
            m_hasBalloonFiles = true;
    }

    m_verticalAngles = readAngleMap(map.value(QStringLiteral("verticalAngles")).toMap());
    m_normalAngles = readAngleMap(map.value(QStringLiteral("normalAngles")).toMap());
    const QList<double> defaultNormal = m_normalAngles.value(DefaultKey);
    m_hasNormalAngle = !defaultNormal.isEmpty();
    m_normalAngle = m_hasNormalAngle ? defaultNormal.first() : 0.0;
    return true;
}

void SourcePointDescriptor::ReadBalloonData(ReadBalloonDataMode mode)
{
    if (!m_flushMountAttenuation) {
        switch (mode) {
        case Asynchronous: {
            if (m_backgroundRead.isRunning())
                return;
            WaitForBackgroundRead(); // finished: only takes over what the worker wrote
            if (m_tableCount.load(std::memory_order_acquire) > 0)
                return;
            QThreadPool *pool = QThreadPool::globalInstance();
            if (!pool)
                return;
            // The flag's release/acquire pairs publish this object to the worker and back.
            m_backgroundReadDone.store(false, std::memory_order_release);
            m_backgroundRead = QtConcurrent::run(pool, [this] {
                m_backgroundReadDone.load(std::memory_order_acquire);
                // A file the reader refuses leaves the point unloaded; nothing may reach the pool.
                try {
                    ReadBalloonDataFromMap();
                } catch (...) {
                }
                m_backgroundReadDone.store(true, std::memory_order_release);
            });
            return;
        }
        case Synchronous:
            break;
        default:
            qWarning("Unexpected readBalloonDataMode = %d", int(mode));
            return;
        }
    }
    // Never read alongside a background read of the same point.
    WaitForBackgroundRead();
    if (m_tableCount.load(std::memory_order_acquire) == 0)
        ReadBalloonDataFromMap();
}

void SourcePointDescriptor::WaitForBackgroundRead()
{
    if (m_backgroundRead.isRunning())
        m_backgroundRead.waitForFinished();
    // Pairs with the worker's last store, so that everything it wrote is visible here (Qt's own
    // waiting synchronises too, but not in a way every race detector can see).
    m_backgroundReadDone.load(std::memory_order_acquire);
}

void SourcePointDescriptor::ReadBalloonDataFromMap()
{
    for (auto it = m_balloonDataMap.cbegin(); it != m_balloonDataMap.cend(); ++it)
        ReadBalloonFile(it.key(), resourcePath(it.value()));
}

bool SourcePointDescriptor::ReadBalloonFile(const QString &key, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() == 0)
        return false;
    // Unloaded from here on, also when the file is refused below; the tables stay as they were.
    m_balloonDataLoaded.store(false, std::memory_order_release);

    // Resources are mapped in place when they are stored uncompressed.
    QByteArray buffer;
    QByteArrayView bytes;
    if (const uchar *mapped = file.map(0, file.size())) {
        bytes = QByteArrayView(mapped, file.size());
    } else {
        buffer = file.readAll();
        bytes = buffer;
    }

    const SourcePointBalloons none;
    m_balloons = std::make_shared<const SourcePointBalloons>(
        (m_balloons ? *m_balloons : none).With(key, BalloonFile::Decode(bytes), QFileInfo(path).fileName()));
    m_tableCount.fetch_add(1, std::memory_order_release);
    m_balloonDataLoaded.store(true, std::memory_order_release);
    Q_EMIT BalloonDataChanged();
    return true;
}

bool SourcePointDescriptor::IsBalloonDataLoaded() const
{
    return m_balloonDataLoaded.load(std::memory_order_acquire);
}

void SourcePointDescriptor::SetName(const QString &name)
{
    m_name = name;
}

QString SourcePointDescriptor::GetDefaultAmplifier()
{
    return DefaultAmplifier;
}

Point SourcePointDescriptor::GetOrigin(Tolvane::Mounting mounting)
{
    return valueForMounting(m_origins, mounting);
}

Point SourcePointDescriptor::GetCenter(Tolvane::Mounting mounting)
{
    return valueForMounting(m_centers, mounting);
}

QList<double> SourcePointDescriptor::GetVerticalAngles(Tolvane::Mounting mounting)
{
    return valueForMounting(m_verticalAngles, mounting);
}

QList<double> SourcePointDescriptor::GetNormalAngles(Tolvane::Mounting mounting)
{
    return valueForMounting(m_normalAngles, mounting);
}

void SourcePointDescriptor::SetCenterMap(const QMap<QString, Point> &centers)
{
    m_centers = centers;
}

DspChannelDescriptor *SourcePointDescriptor::GetDspChannelDescriptor(const QString &amplifier) const
{
    const auto it = m_dspChannels.constFind(amplifier);
    if (it != m_dspChannels.cend())
        return *it;
    return m_dspChannels.value(DefaultAmplifier, nullptr);
}

QList<int> SourcePointDescriptor::GetSpeakerIds()
{
    DspChannelDescriptor *channel = m_dspChannels.value(DefaultAmplifier, nullptr);
    return channel ? channel->GetSpeakerIds() : QList<int>();
}

QString SourcePointDescriptor::GetSwitchDescription(int switchId, Tolvane::Mounting mounting)
{
    DspChannelDescriptor *channel = m_dspChannels.value(DefaultAmplifier, nullptr);
    return channel ? channel->GetSwitchDescription(channel->GetDefaultLoudspeakerSetupKey(mounting), switchId) : QString();
}

QMap<int, QString> SourcePointDescriptor::GetSwitchValues(int switchId, Tolvane::Mounting mounting)
{
    DspChannelDescriptor *channel = m_dspChannels.value(DefaultAmplifier, nullptr);
    return channel ? channel->GetSwitchValues(channel->GetDefaultLoudspeakerSetupKey(mounting), switchId)
                   : QMap<int, QString>();
}

int SourcePointDescriptor::GetNH() const
{
    return m_balloons ? m_balloons->Grid()->GetNH() : 0;
}

int SourcePointDescriptor::GetNV() const
{
    return m_balloons ? m_balloons->Grid()->GetNV() : 0;
}

double SourcePointDescriptor::GetThetaStepWidth() const
{
    return m_balloons ? m_balloons->Grid()->GetThetaStepWidth() : 0.0;
}

double SourcePointDescriptor::GetPhiStepWidth() const
{
    return m_balloons ? m_balloons->Grid()->GetPhiStepWidth() : 0.0;
}

Tolvane::LoudspeakerSymmetry SourcePointDescriptor::GetSymmetry()
{
    return m_balloons ? m_balloons->Grid()->GetSymmetry() : Tolvane::NoSymmetry;
}

QList<double> SourcePointDescriptor::GetFrequencyVector()
{
    return m_balloons ? m_balloons->Grid()->GetFrequencies() : QList<double>();
}

QString SourcePointDescriptor::GetBalloonDataKey(double value)
{
    const QString key = QString::number(value, 'f', 1);
    const auto it = m_balloonDataMap.constFind(key);
    if (it != m_balloonDataMap.cend() && !it->isNull())
        return key;
    return DefaultKey;
}

QString SourcePointDescriptor::GetBalloonDataFilename(const QString &key)
{
    return m_balloons ? m_balloons->FileName(key) : QString();
}

std::shared_ptr<const nvScientificComputing::IBalloon> SourcePointDescriptor::GetBalloon(const QString &key)
{
    return m_balloons ? m_balloons->Balloon(key) : nullptr;
}

std::shared_ptr<const BalloonTable> SourcePointDescriptor::GetBalloonTable(const QString &key) const
{
    return m_balloons ? m_balloons->Table(key) : nullptr;
}

QStringList SourcePointDescriptor::GetBalloonKeys() const
{
    return m_balloons ? m_balloons->Keys() : QStringList();
}

const std::complex<float> *SourcePointDescriptor::GetRawBalloonData(const QString &key, bool flushMount) const
{
    if (!IsBalloonDataLoaded())
        return nullptr;
    const BalloonTable *table = m_balloons->Choose(key);
    return flushMount && m_balloons->HasFlushMount() ? table->GetFlushMountValues() : table->GetValues();
}

Complex SourcePointDescriptor::GetBalloonData(const QString &key, double frequency, double theta, double phi,
                                              bool flushMount)
{
    ClearUpperState(frequency, theta, phi);
    if (Q_UNLIKELY(!m_balloonDataLoaded.load(std::memory_order_acquire)))
        return Complex(0.0, 0.0);
    const BalloonTable *table = m_balloons->Choose(key);
    return table->GetValue(table->FindFrequencyIndex(frequency), theta, GetPhiWithNormalAngle(phi), flushMount);
}
