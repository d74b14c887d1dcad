#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the hot-path benchmarks as built and with the C library's AVX-512 routines switched off,
and prints the medians with the ratios that matter: each hot path against itself (with and
without the tunable, dirty and clean upper state) and against its baseline from the same run.

    benchmarks/run_upper_state.py --build build-rel [--repetitions 5] [--time cpu|real] [--catalogue]

Build the benchmarks in Release first (bench_balloon needs BUILD_TESTING on). On a shared
machine, cpu time (the default) leaves out the time other processes hold the core.
"""
import argparse
import json
import os
import subprocess
import sys

TUNABLE = "glibc.cpu.hwcaps=-AVX512F,-AVX512VL,-AVX512BW,-AVX512DQ"

# executable, benchmark filter, and for each hot path the baselines it is compared with
# ("{d}" is the hot path's own dirty argument).
SUITES = [
    ("bench_balloon", "-BM_ReadBalloonTablePlainDataStream", [
        ("BM_ReadBalloonTable/dirty:{d}", ["BM_ReadBalloonTableDecoder256/dirty:0", "BM_ReadBalloonFileBytes"]),
        ("BM_GetBalloonData/random:0/dirty:{d}", ["BM_BalloonRawGather/random:0/dirty:0"]),
        ("BM_GetBalloonData/random:1/dirty:{d}", ["BM_BalloonRawGather/random:1/dirty:0"]),
    ]),
    ("bench_loudspeakersetup", "BM_TransferFunction", [
        ("BM_TransferFunction/dirty:{d}", ["BM_TransferFunctionStraightforward/dirty:{d}"]),
        ("BM_TransferFunctionCoupled/dirty:{d}", ["BM_TransferFunctionCoupledStraightforward/dirty:{d}"]),
    ]),
    ("bench_filterresponse", "", [
        ("BM_FilterList/dirty:{d}", ["BM_FilterListStraightforward/dirty:{d}"]),
    ]),
]
# The plain code of the baselines shows whether this machine penalises a dirty upper state at all.
PENALTY_PROBES = ["BM_ReadBalloonTableDecoder256", "BM_BalloonRawGather/random:0", "BM_BalloonRawGather/random:1",
                  "BM_TransferFunctionStraightforward", "BM_FilterListStraightforward"]


def run(executable, benchmark_filter, repetitions, tunable):
    env = dict(os.environ)
    if tunable:
        env["GLIBC_TUNABLES"] = TUNABLE
    else:
        env.pop("GLIBC_TUNABLES", None)
    command = [executable, "--benchmark_format=json", f"--benchmark_repetitions={repetitions}",
               "--benchmark_report_aggregates_only=true"]
    if benchmark_filter:
        command.append(f"--benchmark_filter={benchmark_filter}")
    result = subprocess.run(command, env=env, capture_output=True, text=True)
    if result.returncode != 0:
        sys.exit(f"{' '.join(command)} failed:\n{result.stdout[:2000]}{result.stderr}")
    # The executables print their identity checks before the JSON document.
    document = json.loads(result.stdout[result.stdout.index("{"):])
    medians = {}
    for b in document["benchmarks"]:
        if b.get("aggregate_name") == "median":
            medians[b["run_name"]] = b
    return medians


def seconds(entry, time):
    scale = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}[entry["time_unit"]]
    return entry[f"{time}_time"] * scale


def text(value):
    if value is None:
        return "-"
    for unit, scale in (("s", 1.0), ("ms", 1e-3), ("us", 1e-6), ("ns", 1e-9)):
        if value >= scale:
            return f"{value / scale:.3g} {unit}"
    return f"{value / 1e-9:.3g} ns"


def ratio(a, b):
    return f"{a / b:.2f}x" if a and b else "-"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default="build-rel", help="build directory (default build-rel)")
    parser.add_argument("--repetitions", type=int, default=5)
    parser.add_argument("--time", choices=("cpu", "real"), default="cpu")
    parser.add_argument("--catalogue", action="store_true", help="also run bench_catalogue (as built)")
    args = parser.parse_args()

    print(f"load average before: {os.getloadavg()[0]:.2f}; {args.time} time, medians of {args.repetitions}")
    header = ("benchmark", "as built", "tunable", "built/tunable", "dirty/clean", "vs baseline (built)",
              "vs baseline (tunable)")
    rows = [header]
    probes = []
    for name, benchmark_filter, paths in SUITES:
        executable = os.path.join(args.build, "bin", name)
        built = run(executable, benchmark_filter, args.repetitions, False)
        tuned = run(executable, benchmark_filter, args.repetitions, True)
        time = lambda results, key: seconds(results[key], args.time) if key in results else None
        for pattern, baselines in paths:
            for dirty in (0, 1):
                key = pattern.format(d=dirty)
                clean = pattern.format(d=0)
                for baseline in baselines:
                    base = baseline.format(d=dirty)
                    rows.append((f"{key} : {base}", text(time(built, key)), text(time(tuned, key)),
                                 ratio(time(built, key), time(tuned, key)),
                                 ratio(time(built, key), time(built, clean)) if dirty else "",
                                 ratio(time(built, key), time(built, base)), ratio(time(tuned, key), time(tuned, base))))
        for probe in PENALTY_PROBES:
            clean, dirty = f"{probe}/dirty:0", f"{probe}/dirty:1"
            if clean in built:
                probes.append((probe, text(time(built, clean)), text(time(built, dirty)),
                               ratio(time(built, dirty), time(built, clean))))

    widths = [max(len(row[i]) for row in rows) for i in range(len(header))]
    for row in rows:
        print("  ".join(cell.ljust(width) for cell, width in zip(row, widths)))
    print("\nplain baseline code, clean and dirty upper state (as built): does this machine penalise it?")
    for probe in probes:
        print(f"  {probe[0]}: {probe[1]} clean, {probe[2]} dirty, {probe[3]}")

    if args.catalogue:
        results = run(os.path.join(args.build, "bin", "bench_catalogue"), "", args.repetitions, False)
        print("\ncatalogue of 48 balloons (real time):")
        for compressed in (0, 1):
            sync = results.get(f"BM_CatalogueSynchronous/compressed:{compressed}/real_time")
            asynchronous = results.get(f"BM_CatalogueAsynchronous/compressed:{compressed}/real_time")
            if not sync or not asynchronous:
                continue
            print(f"  {'compressed' if compressed else 'stored'} resources: synchronous {text(seconds(sync, 'real'))}, "
                  f"asynchronous {text(seconds(asynchronous, 'real'))}, "
                  f"speed-up {ratio(seconds(sync, 'real'), seconds(asynchronous, 'real'))}; peak resident per balloon "
                  f"{sync['peak_per_balloon'] / 1e6:.2f} / {asynchronous['peak_per_balloon'] / 1e6:.2f} MB "
                  f"({sync['peak_per_table_byte']:.2f} / {asynchronous['peak_per_table_byte']:.2f} x the table)")
    print(f"load average after: {os.getloadavg()[0]:.2f}")


if __name__ == "__main__":
    main()
