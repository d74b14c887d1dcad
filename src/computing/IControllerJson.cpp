// SPDX-License-Identifier: MIT
#include "IControllerJson.h"

nvScientificComputing::IControllerJson::~IControllerJson() = default;
