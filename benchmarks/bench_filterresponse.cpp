// SPDX-License-Identifier: MIT
// Evaluating a ten-filter list on the 1/24-octave grid (249 points) and the linear grid
// (1025 points): the in-place product against multiplying single responses.
// Argument "dirty" 1 runs each evaluation after leaving the vector upper halves dirty (UpperState.h).
#include "FilterResponse.h"
#include "UpperState.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <cmath>
#include <cstdio>

namespace {

QList<double> Grids()
{
    QList<double> frequencies;
    for (int k = -140; k <= 108; ++k)
        frequencies.append(1000.0 * std::pow(2.0, k / 24.0));
    for (int i = 0; i <= 1024; ++i)
        frequencies.append(i * 5.859375);
    return frequencies;
}

QVariantMap Entry(int type, double fp, double q, double gain)
{
    return {{QStringLiteral("type"), type}, {QStringLiteral("fp"), fp}, {QStringLiteral("Q"), q}, {QStringLiteral("G"), gain}};
}

// A typical system EQ: shelves, peaks and dips, crossover slopes.
QVariantList TenFilters()
{
    return {Entry(4, 45, 0.71, 0),   Entry(10, 120, 0.7, 3),  Entry(8, 250, 2, -2.5), Entry(8, 800, 1.4, 1.5), Entry(8, 2000, 3, -3),
            Entry(12, 6000, 0.7, 2), Entry(2, 18000, 0.71, 0), Entry(6, 1500, 0.8, 0), Entry(13, 80, 1, -1), Entry(0, 0, 0, -1.5)};
}

QList<Complex> Straightforward(const QList<double> &frequencies, const QVariantList &filters)
{
    QList<Complex> result(frequencies.size(), Complex(1.0, 0.0));
    for (const QVariant &filter : filters) {
        const QList<Complex> response = CalculateFilterResponse(frequencies, filter.toMap());
        for (qsizetype i = 0; i < result.size(); ++i)
            result[i] *= response[i];
    }
    return result;
}

void SetFilterPointCounter(benchmark::State &state, qsizetype points, qsizetype filters)
{
    state.counters["per_filter_point"] = benchmark::Counter(double(state.iterations()) * double(points) * double(filters),
                                                            benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_FilterList(benchmark::State &state)
{
    const QList<double> frequencies = Grids();
    const QVariantList filters = TenFilters();
    const UpperState upper = StateOfArgument(state.range(0));
    for (auto _ : state) {
        SetUpperState(upper);
        benchmark::DoNotOptimize(CalculateFilterListResponse(frequencies, filters));
    }
    SetFilterPointCounter(state, frequencies.size(), filters.size());
}
BENCHMARK(BM_FilterList)->ArgName("dirty")->Arg(0)->Arg(1);

void BM_FilterListStraightforward(benchmark::State &state)
{
    const QList<double> frequencies = Grids();
    const QVariantList filters = TenFilters();
    const UpperState upper = StateOfArgument(state.range(0));
    for (auto _ : state) {
        SetUpperState(upper);
        benchmark::DoNotOptimize(Straightforward(frequencies, filters));
    }
    SetFilterPointCounter(state, frequencies.size(), filters.size());
}
BENCHMARK(BM_FilterListStraightforward)->ArgName("dirty")->Arg(0)->Arg(1);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QList<double> frequencies = Grids();
    const bool identical = CalculateFilterListResponse(frequencies, TenFilters()) == Straightforward(frequencies, TenFilters());
    std::printf("results identical to the straightforward evaluation: %s\n", identical ? "yes" : "NO");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return identical ? 0 : 1;
}
