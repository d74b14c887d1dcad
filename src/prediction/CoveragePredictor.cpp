// SPDX-License-Identifier: MIT
#include "CoveragePredictor.h"

#include "AirAbsorption.h"
#include "BalloonTable.h"
#include "DspChannelDescriptor.h"
#include "LoudspeakerDescriptor.h"
#include "LoudspeakerSetup.h"
#include "ScenePlacement_p.h"
#include "SourcePointDescriptor.h"

#include <QThread>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentMap>

#include <cmath>
#include <numeric>
#include <stdexcept>

using ScenePlacement::Vector;

struct CoveragePredictor::Source {
    SourcePointDescriptor *point = nullptr;
    QString key;
    std::shared_ptr<const BalloonTable> table;
    Vector position{};
    ScenePlacement::Axes axes;
    double delay = 0.0;                        // s
    std::vector<std::complex<double>> factors; // gain x polarity x transfer function, per band
    std::vector<int> frequencyIndexes;         // the balloon frequency of each band
};

namespace {

constexpr double pi = 3.14159265358979323846;

[[noreturn]] void fail(const QString &message)
{
    throw std::invalid_argument(message.toStdString());
}

// Distance and direction of receiver x in the source's own frame: theta from the front axis,
// phi from up towards left, degrees.
struct Direction {
    double distance, theta, phi;
};

Direction direction(const CoveragePredictor::Source &source, const Vector &x)
{
    const double dx = x[0] - source.position[0], dy = x[1] - source.position[1], dz = x[2] - source.position[2];
    const double distance = std::sqrt(dx * dx + dy * dy + dz * dz);
    const auto along = [&](const Vector &axis) { return dx * axis[0] + dy * axis[1] + dz * axis[2]; };
    const double front = along(source.axes.front), left = along(source.axes.left), up = along(source.axes.up);
    double phi = std::atan2(left, up) * (180.0 / pi);
    if (phi < 0.0)
        phi += 360.0;
    return {distance, std::acos(std::clamp(front / distance, -1.0, 1.0)) * (180.0 / pi), phi};
}

QMap<int, int> checkedSwitches(const QMap<int, int> &given, LoudspeakerSetup *setup, const QString &where)
{
    QMap<int, int> switches = given;
    for (auto it = given.cbegin(); it != given.cend(); ++it) {
        const QMap<int, QString> values = setup->GetSwitchValues(it.key());
        if (!values.contains(it.value()))
            fail(QStringLiteral("%1.switches: switch %2 of setup \"%3\" has no value %4").arg(where).arg(it.key()).arg(setup->GetFullName()).arg(it.value()));
    }
    // Coupling switches left out sit at 0 dB, as lpsdk transfer does.
    return setup->WithCouplingSwitchesAtZero(switches);
}

} // namespace

CoveragePredictor::CoveragePredictor(const PredictionScene &scene)
    : m_receivers(scene.receivers)
    , m_planeColumns(scene.planeColumns)
    , m_speedOfSound(scene.speedOfSound)
{
    struct Placed {
        ScenePlacement::Cabinet cabinet;
        PredictionSource settings;
        QString where;
    };
    QList<Placed> placed;
    for (qsizetype i = 0; i < scene.sources.size(); ++i) {
        const QString where = QStringLiteral("sources[%1]").arg(i);
        placed.append({ScenePlacement::PlaceSource(scene.sources.at(i), where), scene.sources.at(i), where});
    }
    for (qsizetype i = 0; i < scene.arrays.size(); ++i) {
        const PredictionArray &array = scene.arrays.at(i);
        PredictionSource settings;
        settings.gainDb = array.gainDb;
        settings.delayMs = array.delayMs;
        const QString where = QStringLiteral("arrays[%1]").arg(i);
        for (const ScenePlacement::Cabinet &cabinet : ScenePlacement::HangArray(array, where))
            placed.append({cabinet, settings, where});
    }

    for (const Placed &entry : placed) {
        const PredictionSource &settings = entry.settings;
        bool known = false;
        const Tolvane::Mounting mounting = LoudspeakerDescriptor::ConvertStringToMounting(settings.mounting, &known);
        if (!known)
            fail(QStringLiteral("%1.mounting: \"%2\" is not a mounting").arg(entry.where, settings.mounting));
        for (SourcePointDescriptor *point : entry.cabinet.loudspeaker->GetSourcePointDescriptors()) {
            Source source;
            source.point = point;
            source.axes = entry.cabinet.axes;
            source.position = entry.cabinet.origin;
            const Vector offset = entry.cabinet.axes.Apply({point->GetOrigin(mounting).x(), point->GetOrigin(mounting).y(), point->GetOrigin(mounting).z()});
            for (int c = 0; c < 3; ++c)
                source.position[c] += offset[c];
            source.delay = settings.delayMs / 1000.0;
            DspChannelDescriptor *channel = point->GetDspChannelDescriptor(point->GetDefaultAmplifier());
            if (!channel)
                fail(QStringLiteral("%1: source point \"%2\" has no DSP channel").arg(entry.where, point->GetName()));
            const int setupKey = settings.setup.value_or(channel->GetDefaultLoudspeakerSetupKey(mounting));
            LoudspeakerSetup *setup = channel->GetLoudspeakerSetups().value(setupKey);
            if (!setup) {
                QStringList keys;
                for (int key : channel->GetLoudspeakerSetups().keys())
                    keys.append(QString::number(key));
                fail(QStringLiteral("%1.setup: %2 is not a setup of \"%3\" (its setups: %4)").arg(entry.where).arg(setupKey).arg(entry.cabinet.name, keys.join(QStringLiteral(", "))));
            }
            const QMap<int, int> switches = checkedSwitches(settings.switches, setup, entry.where);
            if (!point->IsBalloonDataLoaded())
                point->ReadBalloonData(SourcePointDescriptor_Interface::Synchronous);
            source.key = channel->GetBalloonDataKey(setupKey, switches);
            source.table = point->GetBalloonTable(source.key);
            if (!source.table || source.table->GetFrequencies().isEmpty())
                fail(QStringLiteral("%1: source point \"%2\" has no balloon \"%3\" (its balloons: %4)")
                         .arg(entry.where, point->GetName(), source.key, point->GetBalloonKeys().join(QStringLiteral(", "))));
            if ((source.table->GetNH() - 1) * source.table->GetThetaStepWidth() < 180.0 - 1e-9)
                fail(QStringLiteral("%1: the balloon \"%2\" of \"%3\" does not reach theta 180").arg(entry.where, source.key, point->GetName()));
            const QList<double> grid = channel->GetFrequencyVector(Tolvane::LogarithmicFrequencies);
            const std::complex<double> gain = std::pow(10.0, settings.gainDb / 20.0) * settings.polarity;
            for (int band : scene.bandIndexes) {
                const Complex h = channel->GetTransferFunction(Tolvane::LogarithmicFrequencies, band, setupKey, switches, Tolvane::NoSensitivity, false);
                source.factors.push_back(gain * std::complex<double>(h.real(), h.imag()));
                source.frequencyIndexes.push_back(source.table->FindFrequencyIndex(grid.at(band)));
            }
            if (m_frequencies.isEmpty()) {
                for (int band : scene.bandIndexes)
                    m_frequencies.append(grid.at(band));
            }
            m_sources.push_back(std::move(source));
            m_placed.append({entry.cabinet.loudspeaker->GetSourcePointDescriptors().size() > 1 ? entry.cabinet.name + QStringLiteral(" / ") + point->GetName()
                                                                                               : entry.cabinet.name,
                             m_sources.back().position, entry.cabinet.axes.front, entry.cabinet.axes.left, entry.cabinet.axes.up});
        }
    }
    for (size_t r = 0; r < m_receivers.size(); ++r) {
        for (const Source &source : m_sources) {
            if (direction(source, m_receivers[r]).distance < 1e-6)
                fail(QStringLiteral("receivers: receiver %1 (%2, %3, %4) lies on a source").arg(r).arg(m_receivers[r][0]).arg(m_receivers[r][1]).arg(m_receivers[r][2]));
        }
    }
    m_absorption.assign(size_t(m_frequencies.size()), 0.0);
    for (qsizetype b = 0; b < m_frequencies.size(); ++b) {
        if (scene.hasAir) // dB per metre as a natural-log amplitude rate
            m_absorption[size_t(b)] = AirAbsorption::DecibelsPerMetre(m_frequencies.at(b), scene.temperatureC, scene.relativeHumidityPercent, scene.pressureKpa) * std::log(10.0) / 20.0;
    }
}

CoveragePredictor::~CoveragePredictor() = default;

const QList<PlacedSource> &CoveragePredictor::GetSources() const
{
    return m_placed;
}

const QList<double> &CoveragePredictor::GetFrequencies() const
{
    return m_frequencies;
}

// One source's contribution at one band: both paths use this very expression, so that they agree
// to the bit wherever the balloon values agree.
static inline std::complex<double> propagate(std::complex<double> factor, const Complex &balloon, double frequency, double absorption, double distance,
                                             double delay, double speedOfSound)
{
    const double phase = -2.0 * pi * frequency * (distance / speedOfSound + delay);
    return factor * std::complex<double>(balloon.real(), balloon.imag()) * std::polar(std::exp(-absorption * distance) / distance, phase);
}

SoundField CoveragePredictor::ComputeReference() const
{
    SoundField field(m_frequencies, m_receivers);
    for (int b = 0; b < field.GetBandCount(); ++b) {
        const double frequency = m_frequencies.at(b);
        for (qsizetype r = 0; r < field.GetReceiverCount(); ++r) {
            std::complex<double> sum;
            for (const Source &source : m_sources) {
                const Direction d = direction(source, m_receivers[size_t(r)]);
                const Complex balloon = source.point->GetBalloonData(source.key, frequency, d.theta, d.phi, false);
                sum += propagate(source.factors[size_t(b)], balloon, frequency, m_absorption[size_t(b)], d.distance, source.delay, m_speedOfSound);
            }
            field.GetReceiverPressures(r)[b] = std::complex<float>(sum);
        }
    }
    return field;
}

SoundField CoveragePredictor::Compute(int threads, const std::function<void(double)> &progress) const
{
    SoundField field(m_frequencies, m_receivers);
    const int bands = field.GetBandCount();
    const qsizetype receivers = field.GetReceiverCount();
    const qsizetype rowLength = m_planeColumns > 0 ? m_planeColumns : 256;
    QList<qsizetype> rows((receivers + rowLength - 1) / rowLength);
    std::iota(rows.begin(), rows.end(), 0);
    const auto computeRow = [&](qsizetype row) {
        std::vector<std::complex<double>> sum(static_cast<size_t>(bands));
        for (qsizetype r = row * rowLength; r < std::min(receivers, (row + 1) * rowLength); ++r) {
            std::fill(sum.begin(), sum.end(), std::complex<double>());
            for (const Source &source : m_sources) {
                const Direction d = direction(source, m_receivers[size_t(r)]);
                // The cell and the direction do not change with the band.
                const BalloonCell cell = source.table->GetCell(d.theta, source.point->GetPhiWithNormalAngle(d.phi));
                for (int b = 0; b < bands; ++b) {
                    const Complex balloon = source.table->GetValue(source.frequencyIndexes[size_t(b)], cell);
                    sum[size_t(b)] += propagate(source.factors[size_t(b)], balloon, m_frequencies.at(b), m_absorption[size_t(b)], d.distance, source.delay, m_speedOfSound);
                }
            }
            std::complex<float> *out = field.GetReceiverPressures(r);
            for (int b = 0; b < bands; ++b)
                out[b] = std::complex<float>(sum[size_t(b)]);
        }
    };
    QThreadPool pool;
    pool.setMaxThreadCount(threads > 0 ? threads : QThread::idealThreadCount());
    if (!progress) {
        QtConcurrent::blockingMap(&pool, rows, computeRow);
        return field;
    }
    // In slices, so that the caller hears of the progress between them.
    const qsizetype slice = std::max<qsizetype>(1, rows.size() / 50);
    for (qsizetype first = 0; first < rows.size(); first += slice) {
        QList<qsizetype> part = rows.mid(first, slice);
        QtConcurrent::blockingMap(&pool, part, computeRow);
        progress(double(std::min(rows.size(), first + slice)) / double(rows.size()));
    }
    return field;
}
