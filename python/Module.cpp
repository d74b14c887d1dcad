// SPDX-License-Identifier: MIT
#include "Bindings.h"

#include "LibVersion.h"

PYBIND11_MODULE(nvlps, m)
{
    m.doc() = R"(The loudspeaker plugin library in numpy.

Load a plugin folder with Library, look loudspeakers up by name, read their balloons as numpy
arrays and look directivity up over whole arrays of frequencies and directions, and compute the
transfer functions of their controller setups. Angles are degrees in the library's frame: theta
from the front axis (0 ... 180), phi around it from up (0) towards the loudspeaker's left (90).
Library errors arrive as KeyError (a name that does not exist), ValueError (a bad file or
argument) and IndexError (a direction outside a balloon table).)";
    m.attr("__version__") = norvik::LoudspeakerPluginSdk::libVersionString();
    nvlps::bindLibrary(m);
    nvlps::bindSourcePoint(m);
    nvlps::bindBalloon(m);
    nvlps::bindChannel(m);
    nvlps::bindAnalysis(m);
    nvlps::bindPrediction(m);
}
