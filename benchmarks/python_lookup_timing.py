#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Per-point time of nvlps's array lookup against the library's per-call lookup, in one run.

    PYTHONPATH=build/python python3 benchmarks/python_lookup_timing.py --plugins build/bin/Plugins

Both run in C++ without the GIL on the same arrays: SourcePoint.lookup() (cells once per
direction, frequency indices once per frequency) and SourcePoint.lookup_per_call() (one
SourcePointDescriptor::GetBalloonData call per point). The ratio is array / per-call; the issue's
target is at most 2. Run it also with
GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX512F,-AVX512VL,-AVX512BW,-AVX512DQ.
"""
import argparse
import time

import numpy as np

import nvlps


def best_of(repeats, fn):
    best = float("inf")
    for _ in range(repeats):
        start = time.perf_counter()
        fn()
        best = min(best, time.perf_counter() - start)
    return best


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--plugins")
    parser.add_argument("--loudspeaker", default="DS-M12")
    parser.add_argument("--points", type=int, default=1_000_000)
    parser.add_argument("--repeats", type=int, default=7)
    args = parser.parse_args()

    point = nvlps.Library(plugins=args.plugins).loudspeaker(args.loudspeaker).source_points[0]
    balloon = point.balloon()
    rng = np.random.default_rng(1)
    n = args.points
    top = (balloon.nh - 1) * balloon.theta_step
    directions = n // len(balloon.frequencies)
    cases = {
        # every point its own frequency and direction
        "scattered": (rng.choice(balloon.frequencies, n), rng.uniform(0, top, n), rng.uniform(0, 360, n)),
        # every balloon frequency at each of many directions, as a field computation asks
        "frequencies x directions": (balloon.frequencies[:, None], rng.uniform(0, top, directions),
                                     rng.uniform(0, 360, directions)),
    }
    print(f"{args.loudspeaker}: {balloon.nh} x {balloon.nv} angles, {len(balloon.frequencies)} frequencies")
    print(f"{'case':26} {'points':>9} {'per call ns':>12} {'array ns':>9} {'array/per call':>15}")
    for name, (f, theta, phi) in cases.items():
        count = np.broadcast(f, theta, phi).size
        assert np.array_equal(point.lookup(f, theta, phi), point.lookup_per_call(f, theta, phi))
        per_call = best_of(args.repeats, lambda: point.lookup_per_call(f, theta, phi)) / count * 1e9
        array = best_of(args.repeats, lambda: point.lookup(f, theta, phi)) / count * 1e9
        print(f"{name:26} {count:9d} {per_call:12.2f} {array:9.2f} {array / per_call:15.2f}")


if __name__ == "__main__":
    main()
