// SPDX-License-Identifier: MIT
// Loading a catalogue: 12 loudspeakers with 4 balloon files each, 48 reads of the 1.3 MB file,
// on one thread with Synchronous reads or with Asynchronous reads on the global pool, waiting
// for every BalloonDataChanged(). Counters give the peak resident memory per balloon, also as a
// multiple of the table's 8 bytes per value. Argument "compressed" 0: resources stored as they
// are (mapped in place); 1: compressed by rcc (each read decompresses a copy first).
#include "SourcePointDescriptor.h"

#include <QCoreApplication>
#include <QFile>
#include <QSemaphore>
#include <QThreadPool>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <malloc.h>
#include <memory>
#include <vector>

namespace {

constexpr int Loudspeakers = 12;
constexpr int FilesPerLoudspeaker = 4;
constexpr int Balloons = Loudspeakers * FilesPerLoudspeaker;
constexpr double TableBytes = 249.0 * 37 * 72 * 8;

// A field of /proc/self/status in bytes (VmRSS: resident now, VmHWM: peak resident).
double statusBytes(const QByteArray &field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(field.size()).trimmed().split(' ').first().toDouble() * 1024.0;
    }
    return 0.0;
}

// Makes VmHWM start again from the current resident size.
void resetPeak()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
}

using Catalogue = std::vector<std::unique_ptr<SourcePointDescriptor>>;

Catalogue makeCatalogue(bool compressed, QSemaphore &changed)
{
    const QString file = compressed ? QStringLiteral("compressed/bench_249x37x72.bin") : QStringLiteral("stored/bench_249x37x72.bin");
    QVariantMap balloonData;
    for (int k = 0; k < FilesPerLoudspeaker; ++k)
        balloonData.insert(QStringLiteral("key%1").arg(k), file);
    Catalogue catalogue;
    for (int i = 0; i < Loudspeakers; ++i) {
        catalogue.push_back(std::make_unique<SourcePointDescriptor>());
        catalogue.back()->Read({{QStringLiteral("balloonData"), balloonData}});
        // Emitted on the reading thread: count there.
        QObject::connect(catalogue.back().get(), &SourcePointDescriptor::BalloonDataChanged, [&changed] { changed.release(); });
    }
    return catalogue;
}

void LoadCatalogue(benchmark::State &state, SourcePointDescriptor::ReadBalloonDataMode mode)
{
    const bool compressed = state.range(0) != 0;
    double peak = 0.0;
    double resident = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        QSemaphore changed;
        Catalogue catalogue = makeCatalogue(compressed, changed);
        const double before = statusBytes("VmRSS:");
        resetPeak();
        state.ResumeTiming();

        for (const auto &point : catalogue)
            point->ReadBalloonData(mode);
        changed.acquire(Balloons);

        state.PauseTiming();
        peak = statusBytes("VmHWM:") - before;
        resident = statusBytes("VmRSS:") - before;
        catalogue.clear();
        state.ResumeTiming();
    }
    state.counters["peak_per_balloon"] = peak / Balloons;
    state.counters["resident_per_balloon"] = resident / Balloons;
    state.counters["peak_per_table_byte"] = peak / Balloons / TableBytes;
}

void BM_CatalogueSynchronous(benchmark::State &state)
{
    LoadCatalogue(state, SourcePointDescriptor::Synchronous);
}
BENCHMARK(BM_CatalogueSynchronous)->ArgName("compressed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_CatalogueAsynchronous(benchmark::State &state)
{
    LoadCatalogue(state, SourcePointDescriptor::Asynchronous);
}
BENCHMARK(BM_CatalogueAsynchronous)->ArgName("compressed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
#ifdef __GLIBC__
    // A fixed threshold keeps every table in its own mapping, returned to the system when freed,
    // so that each iteration's resident sizes measure that iteration's catalogue alone.
    mallopt(M_MMAP_THRESHOLD, 1 << 20);
#endif
    std::printf("global pool: %d threads; table: %.0f bytes per balloon\n", QThreadPool::globalInstance()->maxThreadCount(),
                TableBytes);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
