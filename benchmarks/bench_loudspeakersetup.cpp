// SPDX-License-Identifier: MIT
// Reading a realistic controller setup file, and transfer-function queries over the whole
// 1/24-octave grid with and without coupling, against a straightforward query that builds
// the "Switch%1_%2" keys and evaluates the coupling biquads through the public helpers.
// Argument "dirty" 1 runs each query after leaving the vector upper halves dirty (UpperState.h).
#include "AllocationCounter.h"
#include "CouplingFilterProvider.h"
#include "FilterResponse.h"
#include "LoudspeakerSetup.h"
#include "UpperState.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QSqlDatabase>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

QString g_setupPath;
const QMap<int, int> g_plainSwitches {{1, 1}, {2, 2}, {3, 1}};
const QMap<int, int> g_coupledSwitches {{1, 1}, {2, 2}, {3, 1}, {4, 3}, {5, 6}};

QVariantMap Entry(int type, double fp, double q, double gain)
{
    return {{QStringLiteral("type"), type}, {QStringLiteral("fp"), fp}, {QStringLiteral("Q"), q}, {QStringLiteral("G"), gain}};
}

QVariantList Filters(int count, double seed)
{
    QVariantList list;
    const int types[] = {8, 10, 12, 2, 4, 8, 13, 14};
    for (int i = 0; i < count; ++i)
        list.append(Entry(types[(i + int(seed)) % 8], 60.0 * std::pow(2.3, i) + seed, 0.7 + 0.1 * i, (i % 2 ? -1.5 : 2.0) + 0.1 * seed));
    return list;
}

QVariantMap Limiter(bool peak)
{
    QVariantMap limiter {{QStringLiteral("Attack"), 0.5}, {QStringLiteral("Release"), 200}, {QStringLiteral("FilterMaxVal"), 6},
                         {QStringLiteral("Vmix"), QVariantList {0.25, 0.25, 0.25, 0.25}}};
    if (peak) {
        limiter.insert(QStringLiteral("DispLimType"), 2);
        limiter.insert(QStringLiteral("UclipPK"), 141.5);
        limiter.insert(QStringLiteral("AttackBand"), QVariantList {1, 2, 3, 4});
    } else {
        limiter.insert(QStringLiteral("UThreshold"), 50);
        limiter.insert(QStringLiteral("Trms"), 6);
    }
    for (int band = 0; band < 4; ++band)
        limiter.insert(QStringLiteral("Band%1").arg(band), Filters(2, band));
    return limiter;
}

// Three switches of three values with four filters each, three named sets of six filters,
// the sensitivity on the 1/24-octave grid and both limiter blocks.
QVariantMap RealisticSetup()
{
    QVariantMap switches;
    for (int s = 1; s <= 3; ++s) {
        QVariantMap values;
        QVariantMap filters;
        QVariantMap gains;
        for (int v = 0; v <= 2; ++v) {
            values.insert(QString::number(v), QStringLiteral("Value %1").arg(v));
            filters.insert(QString::number(v), Filters(4, s * 3 + v));
            gains.insert(QString::number(v), -2.0 * v);
        }
        QVariantMap entry {{QStringLiteral("description"), QStringLiteral("Switch %1").arg(s)},
                           {QStringLiteral("switchID"), 10 + s},
                           {QStringLiteral("values"), values},
                           {QStringLiteral("filters"), filters}};
        entry.insert(s == 2 ? QStringLiteral("polarities") : QStringLiteral("dBGains"), gains);
        if (s == 1)
            entry.insert(QStringLiteral("balloonData"), QVariantMap {{QStringLiteral("1"), QStringLiteral("cpl")}});
        switches.insert(QString::number(s), entry);
    }
    QVariantList dB;
    QVariantList phase;
    for (int k = 0; k < 249; ++k) {
        dB.append(90.0 + 10.0 * std::sin(k * 0.05));
        phase.append(-180.0 + 1.3 * k);
    }
    return {
        {QStringLiteral("setupName"), QStringLiteral("Bench top")},
        {QStringLiteral("setupNameFull"), QStringLiteral("Bench top, full range")},
        {QStringLiteral("boxName"), QStringLiteral("BX12")},
        {QStringLiteral("speakerId"), 12},
        {QStringLiteral("dBGain"), 2.0},
        {QStringLiteral("polarity"), -1},
        {QStringLiteral("delay"), 1.2},
        {QStringLiteral("supportedAmps"), QStringList {QStringLiteral("D80"), QStringLiteral("D20")}},
        {QStringLiteral("maxLink"), QVariantList {3, 2}},
        {QStringLiteral("recommendedLink"), QVariantList {2, 1}},
        {QStringLiteral("dBSensitivity"), dB},
        {QStringLiteral("phaseSensitivity"), phase},
        {QStringLiteral("maxPK"), QVariantList {0.5, 2, 3, 4}},
        {QStringLiteral("switches"), switches},
        {QStringLiteral("filters"),
         QVariantMap {{QStringLiteral("System_EQ"), Filters(6, 1)},
                      {QStringLiteral("Sensitivity_Array_EQ"), Filters(6, 2)},
                      {QStringLiteral("Sensitivity_AP_EQ"), Filters(6, 3)},
                      {QStringLiteral("SystemEqFilterMaxVal"), 12}}},
        {QStringLiteral("peakLimiter"), Limiter(true)},
        {QStringLiteral("thermoLimiter"), Limiter(false)},
    };
}

// What a query does without precomputed look-ups: format the keys, search the maps, fetch and
// evaluate the coupling biquads through the public helpers.
Complex StraightforwardQuery(const QMap<QString, QList<Complex>> &responses, const QList<double> &grid, double signedGain, double delay,
                             int i, const QMap<int, int> &switches)
{
    const auto factor = [&](const QString &key) {
        const auto it = responses.constFind(key);
        return (it != responses.cend() && i < it->size()) ? it->at(i) : Complex(1.0, 0.0);
    };
    const double f = grid.at(i);
    Complex h = factor(QStringLiteral("Switch%1_%2").arg(1).arg(switches.value(1)));
    h *= factor(QStringLiteral("Switch%1_%2").arg(2).arg(switches.value(2)));
    h *= factor(QStringLiteral("Switch%1_%2").arg(3).arg(switches.value(3)));
    const int low = switches.value(4);
    const int mid = switches.value(5);
    if (low > 0 || mid > 0) {
        Complex coupling(1.0, 0.0);
        for (const Tolvane::BiquadData &b : CouplingFilterProvider::GetInstance().GetFilter(low, mid)) {
            const QVariantMap entry {{QStringLiteral("type"), b.type}, {QStringLiteral("fp"), b.frequency}, {QStringLiteral("Q"), b.q}, {QStringLiteral("G"), b.gain}};
            coupling *= CalculateFilterResponse({f}, entry).at(0);
        }
        h *= coupling;
    }
    h *= factor(QStringLiteral("System_EQ"));
    h *= signedGain;
    h *= Complex::fromPolar(1.0, -6.283185307179586 * f * delay);
    return h;
}

void SetPerQueryCounter(benchmark::State &state, int queriesPerIteration)
{
    state.counters["per_query"] = benchmark::Counter(double(state.iterations()) * queriesPerIteration,
                                                     benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_ReadSetupFile(benchmark::State &state)
{
    for (auto _ : state) {
        LoudspeakerSetup setup(nullptr);
        benchmark::DoNotOptimize(setup.Read(g_setupPath));
    }
}
BENCHMARK(BM_ReadSetupFile)->Unit(benchmark::kMillisecond);

// A host reads many setups and keeps them. Destroying each one right away (above) lets glibc
// return the top of the heap to the system and fault it in again on the next read; here the
// setups of a batch stay alive and are freed outside the timed region.
void BM_ReadSetupFilesKept(benchmark::State &state)
{
    std::vector<std::unique_ptr<LoudspeakerSetup>> kept;
    kept.reserve(64);
    for (auto _ : state) {
        kept.push_back(std::make_unique<LoudspeakerSetup>(nullptr));
        benchmark::DoNotOptimize(kept.back()->Read(g_setupPath));
        if (kept.size() == 64) {
            state.PauseTiming();
            kept.clear();
            state.ResumeTiming();
        }
    }
}
BENCHMARK(BM_ReadSetupFilesKept)->Unit(benchmark::kMillisecond);

void TransferFunction(benchmark::State &state, const QMap<int, int> &switches)
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(g_setupPath);
    const UpperState upper = StateOfArgument(state.range(0));
    for (auto _ : state) {
        for (int i = 0; i < 249; ++i) {
            SetUpperState(upper);
            benchmark::DoNotOptimize(setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, i, switches, Tolvane::NoSensitivity, false));
        }
    }
    SetPerQueryCounter(state, 249);
}

void StraightforwardTransferFunction(benchmark::State &state, const QMap<int, int> &switches)
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(g_setupPath);
    const QMap<QString, QList<Complex>> responses = setup.GetFilterResponses(Tolvane::LogarithmicFrequencies);
    const QList<double> grid = setup.GetFrequencies(Tolvane::LogarithmicFrequencies);
    const double signedGain = setup.GetGain() * setup.GetPolarity();
    const UpperState upper = StateOfArgument(state.range(0));
    for (auto _ : state) {
        for (int i = 0; i < 249; ++i) {
            SetUpperState(upper);
            benchmark::DoNotOptimize(StraightforwardQuery(responses, grid, signedGain, setup.GetDelay(), i, switches));
        }
    }
    SetPerQueryCounter(state, 249);
}

void BM_TransferFunction(benchmark::State &state)
{
    TransferFunction(state, g_plainSwitches);
}
BENCHMARK(BM_TransferFunction)->ArgName("dirty")->Arg(0)->Arg(1);

void BM_TransferFunctionStraightforward(benchmark::State &state)
{
    StraightforwardTransferFunction(state, g_plainSwitches);
}
BENCHMARK(BM_TransferFunctionStraightforward)->ArgName("dirty")->Arg(0)->Arg(1);

void BM_TransferFunctionCoupled(benchmark::State &state)
{
    TransferFunction(state, g_coupledSwitches);
}
BENCHMARK(BM_TransferFunctionCoupled)->ArgName("dirty")->Arg(0)->Arg(1);

void BM_TransferFunctionCoupledStraightforward(benchmark::State &state)
{
    StraightforwardTransferFunction(state, g_coupledSwitches);
}
BENCHMARK(BM_TransferFunctionCoupledStraightforward)->ArgName("dirty")->Arg(0)->Arg(1);

// Same values from both query paths, and no heap allocation in the fast one.
bool Check()
{
    LoudspeakerSetup setup(nullptr);
    setup.Read(g_setupPath);
    const QMap<QString, QList<Complex>> responses = setup.GetFilterResponses(Tolvane::LogarithmicFrequencies);
    const QList<double> grid = setup.GetFrequencies(Tolvane::LogarithmicFrequencies);
    bool identical = true;
    long long allocations = 0;
    for (const QMap<int, int> *switches : {&g_plainSwitches, &g_coupledSwitches}) {
        for (int i = 0; i < 249; ++i) {
            const long long before = g_allocations.load();
            const Complex fast = setup.GetTransferFunction(Tolvane::LogarithmicFrequencies, i, *switches, Tolvane::NoSensitivity, false);
            allocations += g_allocations.load() - before;
            identical = identical && fast == StraightforwardQuery(responses, grid, setup.GetGain() * setup.GetPolarity(), setup.GetDelay(), i, *switches);
        }
    }
    std::printf("coupling filters of pair (3, 6): %d biquads\n", int(CouplingFilterProvider::GetInstance().GetFilter(3, 6).size()));
    std::printf("results identical to the straightforward query: %s\n", identical ? "yes" : "NO");
    std::printf("heap allocations in %d queries: %lld\n", 2 * 249, allocations);
    return identical && allocations == 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    g_setupPath = dir.filePath(QStringLiteral("bench_setup.json"));
    QFile file(g_setupPath);
    if (!dir.isValid() || !file.open(QIODevice::WriteOnly))
        return 1;
    file.write(QJsonDocument::fromVariant(RealisticSetup()).toJson());
    file.close();
    std::printf("setup file: %lld bytes\n", static_cast<long long>(QFile(g_setupPath).size()));

    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("nvRemoteDriverDatabase"));
    database.setDatabaseName(QStringLiteral(LPSDK_CPLFILTER_DATABASE));
    if (!CouplingFilterProvider::GetInstance().Initialize()) {
        std::printf("coupling filter database not readable: %s\n", LPSDK_CPLFILTER_DATABASE);
        return 1;
    }

    const bool ok = Check();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return ok ? 0 : 1;
}
