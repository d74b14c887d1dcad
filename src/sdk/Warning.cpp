// SPDX-License-Identifier: MIT
#include "Warning.h"

Q_LOGGING_CATEGORY(lcJson, "nvlps.json")
Q_LOGGING_CATEGORY(lcDescriptor, "nvlps.descriptor")
Q_LOGGING_CATEGORY(lcShape, "nvlps.shape")
Q_LOGGING_CATEGORY(lcBalloon, "nvlps.balloon")
Q_LOGGING_CATEGORY(lcSetup, "nvlps.setup")
Q_LOGGING_CATEGORY(lcFilter, "nvlps.filter")
Q_LOGGING_CATEGORY(lcCoupling, "nvlps.coupling")
