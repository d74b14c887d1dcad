// SPDX-License-Identifier: MIT
#include "IBalloon.h"

nvScientificComputing::IBalloon::~IBalloon() = default;
