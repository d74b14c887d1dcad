# SPDX-License-Identifier: MIT
import gc
import json
import subprocess

import numpy as np
import pytest

import nvlps

# Every demo balloon key with the flush-mount table where the point has one.
CASES = [("DS-C5", "default", False), ("DS-L12", "default", False), ("DS-L12", "cut", False),
         ("DS-M12", "default", False), ("DS-P8", "default", False), ("DS-P8", "default", True),
         ("DS-S18", "default", False)]


def random_queries(balloon, rng, n=4000):
    """Frequencies on and between the grid, theta inside it, phi over two turns either way, grid points."""
    freqs = balloon.frequencies
    f = np.concatenate([rng.choice(freqs, n // 2), rng.uniform(freqs[0] * 0.5, freqs[-1] * 1.5, n // 2)])
    top = (balloon.nh - 1) * balloon.theta_step
    theta = np.concatenate([rng.uniform(0, top, n // 2), rng.integers(0, balloon.nh, n // 2) * balloon.theta_step])
    phi = np.concatenate([rng.uniform(-720, 720, n // 2), rng.integers(-72, 72, n // 2) * 5.0])
    theta[:3], phi[3:6] = np.nan, [np.nan, np.inf, -np.inf]  # no corner gets a weight: 0
    return f, theta, phi


@pytest.mark.parametrize("name,key,flush", CASES)
def test_lookup_equals_library_per_call_lookup(lib, name, key, flush):
    sp = lib.loudspeaker(name).source_points[0]
    rng = np.random.default_rng(abs(hash((name, key, flush))) % 2**32)
    f, theta, phi = random_queries(sp.balloon(key), rng)
    np.testing.assert_array_equal(sp.lookup(f, theta, phi, key, flush), sp.lookup_per_call(f, theta, phi, key, flush))
    # Broadcast: frequencies down, directions across, each direction's cell reused per frequency.
    grid = sp.lookup(f[:50, None], theta[None, :300], phi[None, :300], key, flush)
    assert grid.shape == (50, 300)
    np.testing.assert_array_equal(grid, sp.lookup_per_call(f[:50, None], theta[:300], phi[:300], key, flush))
    rows = [sp.lookup_per_call(f[i], theta[:300], phi[:300], key, flush) for i in range(50)]  # 1-d, no carries
    np.testing.assert_array_equal(grid, rows)
    assert sp.lookup(f[0], theta[0], phi[0], key, flush) == sp.lookup_per_call(f[0], theta[0], phi[0], key, flush)


def test_lookup_turns_phi_by_the_normal_angle(lib):
    """A descriptor read from JSON with a normal angle, on the demo series' DS-M12 balloon."""
    sp = lib.read_loudspeaker(json.dumps({"name": "turned", "sourcePoints": [
        {"name": "turned", "normalAngles": {"default": [20]}, "balloonData": {"default": "DS-M12.bin"}}]}),
        "turned.json").source_points[0]
    assert sp.normal_angle == 20
    f, theta, phi = random_queries(sp.balloon(), np.random.default_rng(7))
    np.testing.assert_array_equal(sp.lookup(f, theta, phi), sp.lookup_per_call(f, theta, phi))
    np.testing.assert_array_equal(sp.lookup(f, theta, phi), sp.balloon().lookup(f, theta, phi + 20))


def test_values_are_a_read_only_view_that_keeps_the_table_alive(plugins):
    lib = nvlps.Library(plugins=plugins)  # a second Library in the process
    assert [(r["loaded"], r["loudspeakers"]) for r in lib.load_results] == [(True, lib.loudspeakers())]
    # Owned here, not by a plugin: deleting it frees its source point (and unmaps a table the view did not hold).
    sp = lib.read_loudspeaker(json.dumps({"name": "owned", "sourcePoints": [
        {"name": "owned", "balloonData": {"default": "DS-M12.bin"}}]})).source_points[0]
    b = sp.balloon()
    values = b.values
    assert values.dtype == np.complex64 and values.shape == (len(b.frequencies), b.nh, b.nv)
    assert not values.flags.writeable and not values.flags.owndata
    assert values.ctypes.data == b.values.ctypes.data  # no copy per access
    with pytest.raises(ValueError):
        values[0, 0, 0] = 1
    # On grid points the lookup returns the stored value exactly: the view's layout is the table's.
    fi, t, p = 40, 7, 3
    assert values[fi, t, p] == sp.lookup(b.frequencies[fi], t * b.theta_step, p * b.phi_step)
    expected = values.copy()
    del lib, sp, b
    gc.collect()
    np.testing.assert_array_equal(values, expected)


def test_errors_carry_the_library_messages(lib, tmp_path):
    with pytest.raises(KeyError, match="DS-L12"):
        lib.loudspeaker("DS-X1")
    sp = lib.loudspeaker("DS-L12").source_points[0]
    with pytest.raises(KeyError, match="its balloons: .*cut"):
        sp.balloon("nope")
    with pytest.raises(KeyError, match="no controller setup 9"):
        sp.channel().transfer_function(setup=9)
    with pytest.raises(ValueError, match="switch 4 has no value 99"):
        sp.channel().transfer_function(switches={4: 99})
    b = sp.balloon()
    top = b.frequencies[-1]
    with pytest.raises(IndexError, match=r"at \(1\): frequency .* theta 185"):
        sp.lookup(top, [10.0, 185.0], 0.0)
    with pytest.raises(IndexError, match=r"at \(1, 0\): frequency .* theta 185"):
        sp.lookup([top, top], [[10.0], [185.0]], 0.0)  # cells shared across frequencies
    with pytest.raises(IndexError):
        sp.lookup_per_call(top, 185.0, 0.0)
    bad = tmp_path / "short.bin"
    bad.write_bytes(b"\x01\x00\x00\x00" * 10)
    with pytest.raises(ValueError, match="short.bin"):
        nvlps.read_balloon(str(bad))
    # A table that is none leaves the one in use (the transfer tests below need it).
    with pytest.raises(ValueError, match="no SQLite file with a CplFilter table"):
        nvlps.Library(plugins=lib.plugin_directory, coupling_db=bad)
    with pytest.raises(ValueError, match=r"theta\[2\]"):
        nvlps.pack_balloon([1000.0], [0, 90, 200], [0, 180, 360], np.ones((1, 3, 3)), str(tmp_path / "x.bin"))


# Byte values come back within half a step of their range: 40 dB and 340 degrees here.
@pytest.mark.parametrize("fmt,tolerance_db,tolerance_deg", [("double", 1e-5, 1e-4), ("byte", 40 / 510 * 1.01, 340 / 510 * 1.01)])
def test_packed_balloon_reads_back(tmp_path, fmt, tolerance_db, tolerance_deg):
    rng = np.random.default_rng(3)
    freqs = np.array([125.0, 1000.0, 8000.0])
    theta = np.arange(0, 181, 10.0)
    phi = np.arange(0, 181, 15.0)
    level = rng.uniform(-40, 0, (3, theta.size, phi.size))
    phase = rng.uniform(-170, 170, level.shape)
    values = 10 ** (level / 20) * np.exp(1j * np.radians(phase))
    path = tmp_path / f"packed_{fmt}.bin"
    nvlps.pack_balloon(freqs, theta, phi, values, str(path), format=fmt, symmetry=nvlps.Symmetry.HalfSymmetry)
    b = nvlps.read_balloon(str(path))
    assert (b.nh, b.nv, b.theta_step, b.phi_step, b.symmetry) == (19, 13, 10.0, 15.0, nvlps.Symmetry.HalfSymmetry)
    np.testing.assert_array_equal(b.frequencies, freqs)
    np.testing.assert_allclose(20 * np.log10(np.abs(b.values)), level, atol=tolerance_db)
    np.testing.assert_allclose(np.angle(b.values * np.exp(-1j * np.radians(phase)), deg=True), 0, atol=tolerance_deg)
    # The half balloon answers phi 360 - p from column p.
    np.testing.assert_array_equal(b.lookup(1000.0, 30.0, 360 - phi[1:]), b.values[1, 3, 1:])


# The other host on the same library: its rounded output is the oracle of setup, grid, switch and
# sensitivity handling (coupling switches left out sit at 0 dB in both).
@pytest.mark.parametrize("args,kwargs,count,level_key,reference", [
    (["DS-L12", "--switch", "4=14"], dict(switches={4: 14}), 249, "level_dB", 1.0),
    (["DS-L12", "--setup", "2", "--linear", "--ap-eq"], dict(setup=2, grid="linear", ap_eq=True), 1025, "level_dB", 1.0),
    (["DS-P8", "--sensitivity", "1", "--switch", "1=1"], dict(sensitivity=1, switches={1: 1}), 249, "level_dB", 2e-5),
])
def test_transfer_function_matches_lpsdk(lib, lpsdk, plugins, args, kwargs, count, level_key, reference):
    freqs, h = lib.loudspeaker(args[0]).source_points[0].channel().transfer_function(**kwargs)
    out = subprocess.run([lpsdk, "transfer", *args, "--json", "--plugins", plugins],
                         check=True, capture_output=True, text=True).stdout
    points = json.loads(out)["points"]
    assert len(points) == len(freqs) == count
    np.testing.assert_allclose([p["frequency_Hz"] for p in points], freqs, atol=0.005)
    with np.errstate(divide="ignore"):
        level = 20 * np.log10(np.abs(h) / reference)
    finite = np.isfinite(level)
    assert [p[level_key] is not None for p in points] == list(finite)
    np.testing.assert_allclose([p[level_key] for p in points if p[level_key] is not None], level[finite], atol=0.0005)


def test_parallel_lookups_agree(lib):
    """Lookups run without the GIL: threads share the tables and must see the same values."""
    from concurrent.futures import ThreadPoolExecutor
    sp = lib.loudspeaker("DS-L12").source_points[0]
    f, theta, phi = random_queries(sp.balloon(), np.random.default_rng(11), 200_000)
    expected = sp.lookup(f, theta, phi)
    with ThreadPoolExecutor(4) as pool:
        for result in pool.map(lambda key: sp.lookup(f, theta, phi), range(8)):
            np.testing.assert_array_equal(result, expected)


def test_read_balloon_reads_what_the_source_point_reads(lib):
    b = nvlps.read_balloon(":/Resources/DS-M12.bin")  # the plugin's resource, once loaded
    np.testing.assert_array_equal(b.values, lib.loudspeaker("DS-M12").source_points[0].balloon().values)
    with pytest.raises(ValueError, match="missing.bin"):
        nvlps.read_balloon(":/Resources/missing.bin")


@pytest.mark.parametrize("name", ["DS-C5", "DS-L12"])
def test_directivity_equals_lpsdk(lib, lpsdk, plugins, name):
    """The module's analysis is the library's: lpsdk's JSON of the same balloon, to its rounding."""
    result = nvlps.directivity(lib.loudspeaker(name).source_points[0].balloon())
    out = json.loads(subprocess.run([lpsdk, "directivity", name, "--json", "--plugins", plugins, "--quiet"],
                                    check=True, capture_output=True, text=True).stdout)
    np.testing.assert_allclose(result["frequencies_hz"], out["frequencies_hz"], rtol=1e-4)
    for key in ("on_axis_db", "sound_power_db", "directivity_index_db", "beamwidth_horizontal_deg"):
        expected = np.array([np.nan if v is None else v for v in out[key]])
        np.testing.assert_allclose(result[key], expected, atol=0.01, err_msg=key)
    expected = np.array([np.nan if v is None else v for v in out["cta2034"]["listening_window_db"]])
    np.testing.assert_allclose(result["cta2034"]["listening_window_db"], expected, atol=0.01)


def test_predict_equals_lpsdk(lib, lpsdk, plugins, tmp_path):
    """The module's field is lpsdk predict's, and a bad scene names its key."""
    scene = {"bands": "octave", "sources": [{"loudspeaker": "DS-C5", "position": [0, 0, 2], "pitch_deg": -10}],
             "receivers": {"points": [[4, 0, 1.2], [8, 3, 1.2], [2, -5, 1.2]]}}
    path = tmp_path / "scene.json"
    path.write_text(json.dumps(scene))
    frequencies, p = nvlps.predict(scene)
    assert p.shape == (3, 9) and p.dtype == np.complex64
    out = json.loads(subprocess.run([lpsdk, "predict", str(path), "--json", "--plugins", plugins, "--quiet"],
                                    check=True, capture_output=True, text=True).stdout)
    np.testing.assert_allclose(frequencies, out["frequencies_hz"])
    np.testing.assert_allclose(20 * np.log10(np.abs(p)), out["spl_db"], atol=1e-4)
    with pytest.raises(ValueError, match=r'sources\[0\]\.loudspeaker: "DS-X1" is not a registered loudspeaker'):
        nvlps.predict({**scene, "sources": [{"loudspeaker": "DS-X1", "position": [0, 0, 0]}]})
