// SPDX-License-Identifier: MIT
#pragma once

#include "BalloonProblem.h"
#include "BalloonTable.h"

#include <memory>

/// What BalloonFile::Read() gives: a table, or no table and every problem found.
struct BalloonReadResult {
    std::shared_ptr<const BalloonTable> table; ///< null when the file has any problem
    QList<BalloonProblem> problems;            ///< empty exactly when there is a table
};
