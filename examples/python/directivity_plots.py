#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A polar diagram and isobar maps of a loudspeaker's directivity, from its balloon with nvlps.

    PYTHONPATH=build/python python3 examples/python/directivity_plots.py --plugins build/bin/Plugins

Levels are relative to the on-axis level of each frequency. The horizontal plane runs through
phi 90 (the loudspeaker's left) and 270 (its right); the vertical plane through phi 0 (up) and 180.
"""
import argparse
import pathlib

import matplotlib

matplotlib.use("Agg")  # pictures to files, no display needed
import matplotlib.pyplot as plt
import numpy as np

import nvlps

# Signed plane angle -> (theta, phi): positive angles towards the side phi names.
PLANES = {"horizontal": (90.0, 270.0, "left", "right"), "vertical": (0.0, 180.0, "up", "down")}


def plane_directions(plane, angles):
    positive, negative, _, _ = PLANES[plane]
    return np.abs(angles), np.where(angles >= 0, positive, negative)


def relative_level(point, frequencies, plane, angles):
    """dB re on axis, (frequencies, angles)."""
    theta, phi = plane_directions(plane, angles)
    values = point.lookup(np.asarray(frequencies)[:, None], theta[None, :], phi[None, :])
    on_axis = point.lookup(frequencies, 0.0, 0.0)
    return 20 * np.log10(np.abs(values) / np.abs(on_axis)[:, None])


def polar_diagram(point, name, path):
    angles = np.arange(-180.0, 180.5, 1.0)
    frequencies = [250.0, 1000.0, 4000.0, 16000.0]
    levels = relative_level(point, frequencies, "horizontal", angles)
    fig, ax = plt.subplots(figsize=(7, 7), subplot_kw={"projection": "polar"})
    ax.set_theta_zero_location("N")  # on axis at the top, the loudspeaker's left on the left
    for f, level in zip(frequencies, levels):
        ax.plot(np.radians(angles), np.maximum(level, -40), linewidth=2, label=f"{f:g} Hz")
    ticks = np.arange(0, 360, 30)
    ax.set_thetagrids(ticks, [f"{t if t <= 180 else t - 360}°" + {90: " left", 270: " right"}.get(t, "") for t in ticks])
    ax.set_rlim(-40, 3)
    ax.set_rticks([-30, -20, -10, -6, -3, 0])
    ax.set_rlabel_position(200)
    ax.set_title(f"{name}: horizontal polar diagram, seen from above\nlevel re on axis (dB), angle off axis", pad=20)
    ax.legend(loc="lower right", bbox_to_anchor=(1.12, -0.08))
    fig.savefig(path, dpi=100, bbox_inches="tight")
    plt.close(fig)


def isobar_map(point, balloon, name, path):
    frequencies = balloon.frequencies[(balloon.frequencies >= 100) & (balloon.frequencies <= 20000)]
    angles = np.arange(-180.0, 180.5, 2.5)
    fig, axes = plt.subplots(1, 2, figsize=(13, 5.5), sharey=True, constrained_layout=True)
    steps = np.arange(-30, 3.1, 3)
    for ax, plane in zip(axes, PLANES):
        level = np.clip(relative_level(point, frequencies, plane, angles), -30, 3)
        filled = ax.contourf(frequencies, angles, level.T, levels=steps, cmap="viridis", extend="min")
        ax.contour(frequencies, angles, level.T, levels=[-6], colors="white", linewidths=1.2)
        ax.set_xscale("log")
        ax.set_xlabel("frequency (Hz)")
        _, _, towards, away = PLANES[plane]
        ax.set_title(f"{plane} plane (+ towards {towards}, - towards {away}); white: -6 dB")
    axes[0].set_ylabel("angle off axis (degrees)")
    axes[0].set_yticks(np.arange(-180, 181, 30))
    fig.colorbar(filled, ax=axes, label="level re on axis (dB)", ticks=steps[::2])
    fig.suptitle(f"{name}: isobars")
    fig.savefig(path, dpi=100)
    plt.close(fig)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--plugins", help="the plugin folder (default: $LPSDK_PLUGIN_PATH)")
    parser.add_argument("--loudspeaker", default="DS-M12")
    parser.add_argument("--output", default=".", help="folder for polar.png and isobars.png")
    args = parser.parse_args()

    lib = nvlps.Library(plugins=args.plugins)
    point = lib.loudspeaker(args.loudspeaker).source_points[0]
    balloon = point.balloon()
    output = pathlib.Path(args.output)
    output.mkdir(parents=True, exist_ok=True)
    polar_diagram(point, args.loudspeaker, output / "polar.png")
    isobar_map(point, balloon, args.loudspeaker, output / "isobars.png")
    print(f"wrote {output / 'polar.png'} and {output / 'isobars.png'}")


if __name__ == "__main__":
    main()
