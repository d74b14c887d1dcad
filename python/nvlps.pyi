# SPDX-License-Identifier: MIT
"""The loudspeaker plugin library in numpy (type stubs of the extension module)."""
import os
from enum import IntEnum
from typing import Any, Optional, Union

import numpy as np
import numpy.typing as npt

__version__: str

ArrayLike = npt.ArrayLike
Lookup = Union[complex, npt.NDArray[np.complex128]]
Path = Union[str, os.PathLike[str]]

class Symmetry(IntEnum):
    NoSymmetry = 0
    HalfSymmetry = 1
    HalfSymmetryRotated = 2
    QuarterSymmetry = 3
    RotationalSymmetry = 4

class Library:
    """The loudspeakers and rigging that the plugins of one folder register."""
    def __init__(self, plugins: Optional[Path] = None, coupling_db: Path = "") -> None: ...
    @property
    def plugin_directory(self) -> str: ...
    @property
    def load_results(self) -> list[dict[str, Any]]:
        """One dict per library file: file, loaded, error, series, loudspeakers, riggings."""
    def loudspeakers(self) -> list[str]: ...
    def loudspeaker(self, name: str) -> Loudspeaker:
        """KeyError when no loudspeaker has that name."""
    def read_loudspeaker(self, json: str, name: str = "") -> Loudspeaker:
        """A loudspeaker descriptor read from JSON text, its data files from the loaded plugins."""
    def riggings(self) -> list[str]: ...

class Loudspeaker:
    @property
    def name(self) -> str: ...
    @property
    def display_name(self) -> str: ...
    @property
    def weight(self) -> float: ...
    @property
    def size(self) -> tuple[float, float, float]:
        """(width, height, depth) in metres."""
    @property
    def source_points(self) -> list[SourcePoint]: ...

class SourcePoint:
    @property
    def name(self) -> str: ...
    @property
    def loudspeaker(self) -> str: ...
    @property
    def normal_angle(self) -> float:
        """Degrees added to every phi of lookup()."""
    def balloon_keys(self) -> list[str]: ...
    def balloon(self, key: str = "default") -> Balloon: ...
    def lookup(self, frequency: ArrayLike, theta: ArrayLike, phi: ArrayLike, key: str = "default",
               flush_mount: bool = False) -> Lookup:
        """Directivity at the nearest balloon frequency (Hz) and theta, phi (degrees); broadcasts."""
    def lookup_per_call(self, frequency: ArrayLike, theta: ArrayLike, phi: ArrayLike, key: str = "default",
                        flush_mount: bool = False) -> Lookup:
        """lookup() by one library call per element: the reference it is checked against."""
    def channel(self, amplifier: Optional[str] = None) -> Channel: ...

class Balloon:
    @property
    def frequencies(self) -> npt.NDArray[np.float64]: ...
    @property
    def theta_step(self) -> float: ...
    @property
    def phi_step(self) -> float: ...
    @property
    def nh(self) -> int: ...
    @property
    def nv(self) -> int: ...
    @property
    def symmetry(self) -> Symmetry: ...
    @property
    def symmetry_code(self) -> int: ...
    @property
    def values(self) -> npt.NDArray[np.complex64]:
        """(frequencies, theta, phi), a read-only view of the library's table."""
    @property
    def flush_mount_values(self) -> Optional[npt.NDArray[np.complex64]]: ...
    def lookup(self, frequency: ArrayLike, theta: ArrayLike, phi: ArrayLike, flush_mount: bool = False) -> Lookup: ...

class Channel:
    @property
    def name(self) -> str: ...
    def setups(self) -> dict[int, str]: ...
    def default_setup(self, mounting: str = "flown") -> int: ...
    def switches(self, setup: Optional[int] = None,
                 mounting: str = "flown") -> dict[int, tuple[str, dict[int, str]]]: ...
    def transfer_function(self, setup: Optional[int] = None, switches: dict[int, int] = ..., grid: str = "log",
                          sensitivity: int = 0, ap_eq: bool = False,
                          mounting: str = "flown") -> tuple[npt.NDArray[np.float64], npt.NDArray[np.complex128]]: ...

def read_balloon(path: Path) -> Balloon:
    """ValueError naming each problem of a bad file."""

def pack_balloon(frequencies: ArrayLike, theta: ArrayLike, phi: ArrayLike, values: ArrayLike, path: Path,
                 format: str = "double", symmetry: Symmetry = Symmetry.NoSymmetry) -> None: ...

def directivity(balloon: Balloon, flush_mount: bool = False) -> dict[str, Any]:
    """The directivity analysis of a balloon in its own frame, with the keys of
    ``lpsdk directivity --json``: numpy arrays per balloon frequency (NaN where a value does not
    exist), and "cta2034" a dict of the spinorama curves. ValueError for a table that cannot stand
    for a sphere."""

def predict(scene: dict[str, Any], threads: int = 0) -> tuple[npt.NDArray[np.float64], npt.NDArray[np.complex64]]:
    """The sound field of a scene (the scene-file format of ``lpsdk predict``) over its receivers:
    (frequencies in Hz, complex pressures of shape (receivers, bands)). ValueError naming the key
    and value of a bad scene."""
