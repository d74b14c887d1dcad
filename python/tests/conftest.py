# SPDX-License-Identifier: MIT
import os
import pathlib

import pytest

import nvlps

BUILD = pathlib.Path(nvlps.__file__).resolve().parent.parent


@pytest.fixture(scope="session")
def plugins():
    return os.environ.get("NVLPS_TEST_PLUGINS", str(BUILD / "bin" / "Plugins"))


@pytest.fixture(scope="session")
def lib(plugins):
    return nvlps.Library(plugins=plugins)


@pytest.fixture(scope="session")
def lpsdk():
    return os.environ.get("NVLPS_TEST_LPSDK", str(BUILD / "bin" / "lpsdk"))
